// A series over the calls: numbers as a line, anything else as bands.
{
  const { shape } = page;
  const colours = 6; // of bands, as tags.css has them
  const textHeight = 13;
  const narrow = 2; // pixels: bands that are narrower are drawn as one

  // What one line or list of bands is drawn by: the runs in sight, and where each begins and ends, up to the
  // next one where nothing lies between.
  const sight = (series, [from, to], width) => {
    const scale = width / (to - from + 1);
    const xOf = (call) => Math.min(Math.max((call - from) * scale, 0), width);
    return {
      runs: series.runs.filter(({ first, last, end }) => first <= to && (end ? end - 1 : last) >= from),
      spanOf: ({ first, last, end }) => [xOf(first), xOf(end ?? last + 1)],
      here: (call) => ({ x: xOf(call), width: Math.max(scale, 1) }),
    };
  };

  // The first of two items is the lower bound of a range.
  const isLower = (run, item) => item === 0 && run.items.length > 1;

  const lineOf = ({ runs, spanOf }, item, yOf) => {
    let path = "";
    let joined = false;
    for (const run of runs) {
      const [from, to] = spanOf(run);
      if (!(item in run.items)) {
        joined = false;
        continue;
      }
      path += `${joined ? "L" : "M"}${from} ${yOf(run.items[item])}H${to}`;
      joined = run.end !== null;
    }
    return shape("path", { class: isLower(runs[0], item) ? "line lower" : "line", d: path });
  };

  // The numbers of the line, where they change and have room; those of a lower line stand below it.
  const numbersOf = ({ runs, spanOf }, item, yOf) =>
    runs.flatMap((run, index) => {
      const [from, to] = spanOf(run);
      const value = run.items[item];
      const text = page.text([value]);
      const known = value === undefined || value === runs[index - 1]?.items[item];
      if (known || to - from < 7 * text.length + 8) return [];
      const y = yOf(value) + (isLower(run, item) ? textHeight : -4);
      return [shape("text", { class: "plot-text", x: from + 4, y }, text)];
    });

  // Math.min does not take as many arguments as a trace may have values.
  const extremes = (values) =>
    values.reduce(
      ([low, high], value) => [Math.min(low, value), Math.max(high, value)],
      [Infinity, -Infinity],
    );

  const drawLine = (seen, height) => {
    const [low, high] = extremes(seen.runs.flatMap(({ items }) => items));
    const room = height - 2 * (textHeight + 3);
    const yOf = (value) => textHeight + 3 + room * (high === low ? 0.5 : (high - value) / (high - low));
    const items = [0, 1].filter((item) => seen.runs.some((run) => item in run.items));
    return items.flatMap((item) => [lineOf(seen, item, yOf), ...numbersOf(seen, item, yOf)]);
  };

  const bandOf = (from, to, height, colour, text) => {
    const width = Math.max(to - from, 1);
    const band = shape("rect", { class: `band band-${colour}`, x: from, y: 3, width, height: height - 6 });
    if (text.length * 7 + 8 > width) return [band];
    return [band, shape("text", { class: "plot-text", x: from + 4, y: height / 2 + 4 }, text)];
  };

  const drawBands = ({ runs, spanOf }, height) => {
    const colourOf = new Map();
    const shapes = [];
    let mixedFrom = null; // where narrow bands began
    let mixedTo = null;
    const endMixed = () => {
      if (mixedFrom !== null) shapes.push(...bandOf(mixedFrom, mixedTo, height, "mixed", "…"));
      mixedFrom = null;
    };
    for (const run of runs) {
      const [from, to] = spanOf(run);
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

  page.runAt = ({ runs }, call) =>
    runs.find(({ first, last, end }) => call >= first && (call <= last || call < end));

  // The calls of the range, the open one marked. The picture is not read out: what it shows stands beside it
  // in words.
  page.plot = (series, range, width, height, call) => {
    const seen = sight(series, range, width);
    const shapes = page.isLine(series) ? drawLine(seen, height) : drawBands(seen, height);
    const here = shape("rect", { class: "here", y: 0, height, ...seen.here(call) });
    return shape("svg", { class: "plot", width, height, "aria-hidden": "true" }, here, ...shapes);
  };
}
