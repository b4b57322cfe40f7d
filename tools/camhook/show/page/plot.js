// A series over the calls: numbers as a line, anything else as bands.
{
  const { shape } = page;
  const colours = 6; // of bands, as views.css has them
  const narrow = 2; // pixels: bands that are narrower are drawn as one

  // Where a run begins and ends, up to the next one where nothing lies between.
  const spanOf = ({ first, last, end }, scale) => [(first - 1) * scale, (end ? end - 1 : last) * scale];

  const lineOf = (runs, item, scale, yOf) => {
    let path = "";
    let joined = false;
    for (const run of runs) {
      const [from, to] = spanOf(run, scale);
      if (!(item in run.items)) {
        joined = false;
        continue;
      }
      path += `${joined ? "L" : "M"}${from} ${yOf(run.items[item])}H${to}`;
      joined = run.end !== null;
    }
    return shape("path", { class: `line line-${item}`, d: path });
  };

  // The numbers beside the line, where they have room.
  const numbersOf = (runs, item, scale, yOf) =>
    runs.flatMap((run) => {
      const [from, to] = spanOf(run, scale);
      const text = item in run.items ? page.text([run.items[item]]) : "";
      if (to - from < 7 * text.length + 8) return [];
      const y = yOf(run.items[item]);
      return [shape("text", { class: "plot-text", x: from + 4, y: y < 18 ? y + 13 : y - 4 }, text)];
    });

  // A call has only so many arguments.
  const extremes = (values) =>
    values.reduce(([low, high], value) => [Math.min(low, value), Math.max(high, value)], [Infinity, -Infinity]);

  const drawLine = ({ runs }, scale, height) => {
    const [low, high] = extremes(runs.flatMap(({ items }) => items));
    const yOf = (value) => (high === low ? height / 2 : height - 5 - ((value - low) / (high - low)) * (height - 10));
    const items = [0, 1].filter((item) => runs.some((run) => item in run.items));
    return items.flatMap((item) => [lineOf(runs, item, scale, yOf), ...numbersOf(runs, item, scale, yOf)]);
  };

  const bandOf = (from, to, height, colour, text) => {
    const width = Math.max(to - from, 1);
    const band = shape("rect", { class: `band band-${colour}`, x: from, y: 3, width, height: height - 6 });
    if (text.length * 7 + 8 > width) return [band];
    return [band, shape("text", { class: "plot-text", x: from + 4, y: height / 2 + 4 }, text)];
  };

  const drawBands = ({ runs }, scale, height) => {
    const colourOf = new Map();
    const shapes = [];
    let mixedFrom = null; // where narrow bands began
    let mixedTo = null;
    const endMixed = () => {
      if (mixedFrom !== null) shapes.push(...bandOf(mixedFrom, mixedTo, height, "mixed", "…"));
      mixedFrom = null;
    };
    for (const run of runs) {
      const [from, to] = spanOf(run, scale);
      if (to - from < narrow) {
        if (mixedFrom !== null && from - mixedTo > narrow) endMixed();
        mixedFrom ??= from;
        mixedTo = to;
        continue;
      }
      endMixed();
      const text = page.text(run.items);
      if (!colourOf.has(text)) colourOf.set(text, colourOf.size % colours);
      shapes.push(...bandOf(from, to, height, colourOf.get(text), text));
    }
    endMixed();
    return shapes;
  };

  page.runAt = ({ runs }, call) => runs.find(({ first, last, end }) => call >= first && (call <= last || call < end));

  // The picture is not read out: what it shows stands beside it in words.
  page.plot = (series, width, height, call) => {
    const scale = width / page.calls.length;
    const shapes = page.isLine(series) ? drawLine(series, scale, height) : drawBands(series, scale, height);
    const here = shape("rect", { class: "here", x: (call - 1) * scale, y: 0, width: Math.max(scale, 1), height });
    return shape("svg", { class: "plot", width, height, "aria-hidden": "true" }, here, ...shapes);
  };
}
