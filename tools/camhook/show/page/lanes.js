// What a lane shows: the calls in the colours of their hooks, numbers as steps, states as bands. A lane draws
// the calls of `sight`: { first, last, open, step, xOf }, with `step` pixels for a call.
{
  const { shape } = page;
  const height = 28; // of a lane, in pixels, as in lanes.css
  const colours = 8;

  // Hooks have colours in the order in which they appear; calls that only change the phone are grey.
  const hooks = [...new Set(page.calls.filter(({ sensor }) => sensor !== undefined).map(({ call }) => call))];
  page.colourOfHook = (hook) => (hooks.includes(hook) ? `c${hooks.indexOf(hook) % colours}` : "c-other");

  const ruler = document.createElement("canvas").getContext("2d");
  ruler.font = "11px system-ui, sans-serif"; // as in lanes.css
  const widthOf = (text) => ruler.measureText(text).width;

  const textAt = (x, y, text, kind) => shape("text", { class: kind, x, y }, text);
  const fits = (text, width) => widthOf(text) + 8 <= width;
  const isInSight = ({ first, last }, { number, end }) => number <= last && end > first;

  // A line through the parts that have a value.
  const pathOf = (kind, parts, xOf, yOf) => {
    let d = "";
    let end = null;
    for (const { part, value } of parts.filter((each) => each.value !== undefined)) {
      d += `${end === part.number ? "L" : "M"}${xOf(part.number)} ${yOf(value)}H${xOf(part.end)}`;
      end = part.end;
    }
    return shape("path", { class: kind, d });
  };

  // A number next to its line, where there is space.
  const numberAt = (x, width, text, [low, high = low]) => {
    if (!fits(text, width)) return [];
    const lines = [low - 2, high - 4, low + 12, 18]; // between the bounds, above, below
    const y = lines.find((line, place) => (place ? line >= 10 && line < height : low - high > 12));
    const paper = { class: "paper", x: x + 4, y: y - 9, width: widthOf(text) + 2, height: 10 };
    return [shape("rect", paper), textAt(x + 5, y, text, "number")];
  };

  // The input is dashed below the output; of a range both bounds are drawn.
  const steps = ({ name, points, runs }) => {
    const numbersOf = (value) => page.quantity(name, value) ?? [];
    const [low, high] = points.reduce(
      ([low, high], { value, input }) => {
        const numbers = [...numbersOf(value), ...numbersOf(input)];
        return [Math.min(low, ...numbers), Math.max(high, ...numbers)];
      },
      [Infinity, -Infinity],
    );
    const yOf = (value) => height - 5 - (height - 10) * (high > low ? (value - low) / (high - low) : 0.5);
    const changed = points.filter(({ isChanged }) => isChanged);
    const inputs = changed.map(({ number, input }) => ({ number, end: number + 1, value: input }));
    return (sight) => {
      const { xOf } = sight;
      const lines = (kind, item, all) => {
        const parts = all.filter((part) => isInSight(sight, part));
        const values = parts.map((part) => ({ part, value: numbersOf(part.value)[item] }));
        return pathOf(kind, values, xOf, yOf);
      };
      const shown = runs.filter((run) => isInSight(sight, run) && run.value !== null);
      return [
        ...[1, 0].flatMap((item) => [lines("input", item, inputs), lines(`line line-${item}`, item, runs)]),
        ...shown.flatMap(({ number, end, value, text }) =>
          numberAt(xOf(number), xOf(end) - xOf(number), text, numbersOf(value).map(yOf)),
        ),
      ];
    };
  };

  // 0 and false are grey. 1 has the first colour, 2 the second; a value whose colour is used in the lane gets
  // a free one.
  const coloursOf = (runs) => {
    const free = Array.from({ length: colours }, (_, index) => `c${index}`);
    const colourOf = new Map();
    for (const { text } of runs) {
      if (colourOf.has(text)) continue;
      const wanted = `c${(parseInt(text) - 1) % colours}`;
      const own = free.includes(wanted) ? wanted : (free[0] ?? `c${colourOf.size % colours}`);
      const isNone = text === "false" || wanted === "c-1";
      if (!isNone) free.splice(free.indexOf(own), 1);
      colourOf.set(text, isNone ? "c-other" : own);
    }
    return colourOf;
  };

  const bands = ({ runs }) => {
    const present = runs.filter(({ value }) => value !== null);
    const colourOf = coloursOf(present);
    return (sight) =>
      present.filter((run) => isInSight(sight, run)).flatMap(({ number, end, text }) => {
        const x = sight.xOf(number);
        const width = sight.xOf(end) - x;
        const kind = `band ${colourOf.get(text)}`;
        const band = shape("rect", { class: kind, x, y: 4, width, height: height - 8 });
        return fits(text, width) ? [band, textAt(x + 5, 18, text)] : [band];
      });
  };

  // Returns the function that draws the lane of a series.
  page.lane = (series) => (series.isNumber ? steps(series) : bands(series));

  // The calls with their numbers above them.
  page.callsLane = ({ first, last, open, step, xOf }) => {
    const between = [1, 2, 5, 10, 20, 50, 100, 200, 500].find((count) => count * step >= 44);
    const gap = step >= 8 ? 1 : 0;
    const half = Math.min(step / 2, 3); // of the mark
    const shapes = [];
    for (let number = first; number <= last; ++number) {
      const call = page.call(number);
      const x = xOf(number);
      const middle = x + step / 2;
      const kind = `call ${page.colourOfHook(call.call)}${number === open ? " open" : ""}`;
      shapes.push(shape("rect", { class: kind, x: x + gap, y: 30, width: step - 2 * gap, height: 20 }));
      const name = page.shortHook(call.call);
      if (fits(name, step)) shapes.push(textAt(x + 6, 44, name));
      const mark = `M${middle - half} 26h${2 * half}l${-half} 5z`;
      if (page.errors(call)) shapes.push(shape("path.error", { d: mark }));
      const isTick = number % between === 0 && Math.abs(number - open) * step >= 30;
      if (number % between === 0) shapes.push(shape("path.tick", { d: `M${middle} 20v5` }));
      if (isTick || number === open) {
        shapes.push(textAt(middle, 16, `${number}`, number === open ? "tick-text open" : "tick-text"));
      }
    }
    return shapes;
  };
}
