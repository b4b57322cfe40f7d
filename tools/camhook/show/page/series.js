// The values of tags, of the updater's state and of sensor modes over the calls.
{
  // The parts of a call that have values: [part, values after, values that differed before].
  const partsOf = (call) => {
    const parts = [...page.containers, "state"]
      .filter((part) => part in call)
      .map((part) => [part, call[part] ?? {}, call.before?.[part] ?? {}]);
    if (call.call === "decideSensorScenario") parts.push(["return", { [page.modeTag]: call.return }, {}]);
    return parts;
  };

  // Adds a point to the series of each name that the part of this hook and sensor has or had.
  const addPart = (places, call, number, [part, after, before]) => {
    const { call: hook, sensor } = call;
    const place = part === "state" ? `state ${sensor}` : `${hook} ${part} ${sensor}`;
    if (!places.has(place)) places.set(place, { all: new Map(), isFirst: true });
    const { all, isFirst } = places.get(place);
    for (const name of [...Object.keys(after), ...Object.keys(before)]) {
      if (all.has(name)) continue;
      const key = `${name} ${place}`;
      all.set(name, { key, name, part, hook, sensor, points: [], isLate: !isFirst, isWritten: false });
    }
    places.get(place).isFirst = false;
    for (const [name, series] of all) {
      const value = after[name] ?? null;
      const isChanged = Object.hasOwn(before, name);
      const input = isChanged ? before[name] : value;
      const decoded = page.data.decoded[number]?.[part]?.[name]?.join("; ");
      series.points.push({ number, value, text: decoded ?? page.text(name, value), isChanged, input });
      series.isWritten ||= isChanged;
    }
  };

  // A value holds until the next call of the same hook on the same sensor; the last value holds for its own
  // call only.
  const runsOf = ({ points }) => {
    const runs = [];
    points.forEach(({ number, value, text }, index) => {
      const end = points[index + 1]?.number ?? number + 1;
      if (runs.at(-1)?.text === text) runs.at(-1).end = end;
      else runs.push({ number, end, value, text });
    });
    return runs;
  };

  const finish = (series) => {
    series.runs = runsOf(series);
    series.isConstant = series.runs.length === 1 && !series.isLate;
    const values = series.runs.map(({ value }) => value).filter((value) => value !== null);
    series.isNumber = values.length > 0 && values.every((value) => page.quantity(series.name, value));
    return series;
  };

  // Tags that the library wrote come first, then those that it was given, then the state.
  const rank = ({ part, isWritten, name }) =>
    (part === "state" ? 4 : isWritten || part === "return" ? 0 : 2) + (name.startsWith("0x") ? 1 : 0);
  const inOrder = (one, other) =>
    rank(one) - rank(other) || one.key.localeCompare(other.key, "en", { numeric: true });

  // The property that distinguishes series of one name.
  const addPlaces = (same) => {
    const differ = (key) => same.some((series) => series[key] !== same[0][key]);
    for (const series of same) {
      const hook = differ("hook") ? page.shortHook(series.hook) : "";
      const part = differ("part") ? series.part : "";
      const sensor = differ("sensor") ? `sensor ${series.sensor}` : "";
      series.place = [hook, part, sensor].filter(Boolean).join(" ");
    }
  };

  let all;
  page.series = () => {
    if (all) return all;
    const places = new Map();
    page.calls.forEach((call, index) => {
      for (const part of partsOf(call)) addPart(places, call, index + 1, part);
    });
    all = [...places.values()].flatMap((place) => [...place.all.values()].map(finish));
    for (const same of Map.groupBy(all, ({ name }) => name).values()) addPlaces(same);
    return all.sort(inOrder);
  };

  // The run or the point of a series that a call is in.
  page.runAt = ({ runs }, call) => {
    const run = runs[runs.findLastIndex(({ number }) => number <= call)];
    return run && call < run.end ? run : null;
  };
  page.pointAt = ({ points }, call) => points.find(({ number }) => number === call) ?? null;
}
