// The values of tags, of the updater's state and of readout modes over the calls.
{
  // Those that are asked for most come first.
  const first = [
    "MTK_CONTROL_AE_TARGET_FPS_RANGE",
    "MTK_HESK_CAPTURE_COUNT",
    "mCaptureCount",
    "readout mode",
  ];
  const quantity = /RANGE|COUNT|INDEX|GAIN|RATIO|SENSITIVITY|_ISO$|_EV$|TIME|PAIR|FOV|TEMPERATURE/i;

  // One sensor's values of a name in one hook's container: runs of calls with the same items. A call of that
  // hook without it ends a run, one of another hook or sensor does not.
  const addTo = (all, name, place, sensor, call, items, occasion) => {
    const key = `${name} ${place} ${sensor}`;
    let series = all.get(key);
    if (!series) all.set(key, (series = { key, name, place, sensor, runs: [], occasion: NaN }));
    const run = series.runs.at(-1);
    if (run && occasion === series.occasion + 1 && page.same(run.items, items)) run.last = call;
    else {
      if (run && occasion === series.occasion + 1) run.end = call;
      series.runs.push({ first: call, last: call, end: null, items });
    }
    series.occasion = occasion;
  };

  const listOf = (value) => (Array.isArray(value) ? value : [value]);

  const collect = () => {
    const all = new Map();
    const occasions = new Map();
    const addAll = (place, sensor, call, entries) => {
      const occasion = (occasions.get(`${place} ${sensor}`) ?? 0) + 1;
      occasions.set(`${place} ${sensor}`, occasion);
      for (const [name, items] of entries) addTo(all, name, place, sensor, call, items, occasion);
    };
    page.calls.forEach((call, index) => {
      for (const container of page.containers) {
        const entries = Object.entries(call[container] ?? {}).map(([tag, { items }]) => [tag, items]);
        if (call[container]) addAll(`${call.call} ${container}`, call.sensor, index + 1, entries);
      }
      if (call.state) {
        const entries = Object.entries(call.state).map(([field, value]) => [field, listOf(value)]);
        addAll("state", call.sensor, index + 1, entries);
      }
      if (call.call === "decideSensorScenario") {
        addAll(call.call, call.sensor, index + 1, [["readout mode", [page.modeName(call.return)]]]);
      }
    });
    return [...all.values()];
  };

  // Then those of the catalogue, the state, and tags without a name.
  const rank = ({ name, place }) => {
    if (first.includes(name)) return first.indexOf(name) - first.length;
    return name.startsWith("0x") ? 2 : place === "state" ? 1 : 0;
  };
  const inOrder = (one, other) =>
    rank(one) - rank(other) || one.key.localeCompare(other.key, "en", { numeric: true });

  const isLine = ({ name, runs }) =>
    (quantity.test(name) ||
      runs[0].items.some((item) => !Number.isInteger(item) && typeof item === "number")) &&
    runs.every(({ items }) => items.length <= 2 && items.every((item) => Number.isFinite(item)));

  let known;
  page.series = () => {
    known ??= collect().sort(inOrder);
    return known;
  };
  page.isLine = isLine;

  let changed;
  // Whether a call changed it. The calls' tables tell it of tags; those of two traces have all tags.
  page.isChanged = ({ name, place, runs }) => {
    if (!page.data.scenario) return runs.length > 1;
    changed ??= new Set([...document.querySelectorAll("#calls tr[data-tag]")].map((row) => row.dataset.tag));
    return changed.has(name) || (runs.length > 1 && (place === "state" || name === "readout mode"));
  };
}
