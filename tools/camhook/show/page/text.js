// Values as text: units, names of values and the grouping of digits.
{
  const units = [
    [/FPS_RANGE$/, ([low, high = low]) => (low === high ? `${low} fps` : `${low} to ${high} fps`)],
    [/EXPOSURE_TIME$|_EXPTIME$/, ([time]) => (time < 1e5 ? `${time / 1e3} µs` : `${time / 1e6} ms`)],
    [/COLOURTEMPERATURE$/, ([kelvin]) => `${kelvin} K`],
    [/ZOOM_RATIO$/, ([ratio]) => `${ratio}×`],
  ];
  const quantities = /RANGE|COUNT|INDEX|GAIN|RATIO|SENSITIVITY|_ISO$|_EV$|TIME$|PAIR_|FOV|TEMPERATURE/i;
  const mostItems = 12;

  // Sensor modes are values of a tag for the lanes.
  page.modeTag = "sensor mode";
  page.modeName = (mode) => `${mode} ${page.data.modes[mode] ?? ""}`.trim();

  page.shortHook = (hook) =>
    hook.replace(/^(update|translate|decide)|(Meta|Params|RawParameter|RegionForHesk)$/g, "");

  const number = (item) => `${item}`.replace(/^-?\d{5,}$/, (digits) => digits.replace(/\B(?=(\d{3})+$)/g, ","));

  page.count = (count, what) => `${number(count)} ${what}${count === 1 ? "" : "s"}`;

  // Any JSON value: numbers grouped, texts as they are.
  page.plain = (value) => {
    if (value === null) return "null";
    if (Array.isArray(value)) return `[${value.map(page.plain).join(", ")}]`;
    if (typeof value === "object") return `{${page.fields(value)}}`;
    return typeof value === "string" && !/^-?\d{16,}$/.test(value) ? value : number(value);
  };

  page.fields = (object) =>
    Object.entries(object)
      .map(([name, value]) => `${name} ${page.plain(value)}`)
      .join(", ");

  page.rectText = ([x, y, width, height]) => `${width} × ${height} at (${x}, ${y})`;

  const itemText = (tag, type, item) => {
    if (type === "rect") return page.rectText(item);
    if (type === "rational") return item.join("/");
    const name = page.data.values[tag]?.[item];
    return name === undefined ? page.plain(item) : `${item} ${name}`;
  };

  // An entry of a container, or a value of the updater's state.
  page.text = (tag, entry) => {
    if (entry === null || entry === undefined) return "absent";
    if (tag === page.modeTag) return page.modeName(entry);
    const { type = "", items = [entry].flat() } = Object(entry);
    if (items.length === 0) return "empty";
    const unit = units.find(([tags]) => tags.test(tag));
    if (unit && type !== "rect" && items.length <= 2 && !items.some(isNaN)) return unit[1](items);
    const shown = items.slice(0, mostItems).map((item) => itemText(tag, type, item));
    if (items.length === 1) return shown[0];
    return `[${shown.join(", ")}${items.length > mostItems ? `, … ${number(items.length)} items` : ""}]`;
  };

  // The numbers that a lane draws as steps; null for values that are states.
  page.quantity = (tag, entry) => {
    if (entry === null || tag === page.modeTag || tag in page.data.values) return null;
    const items = entry.items ?? [entry].flat();
    const numbers = items.map(Number);
    const isQuantity = quantities.test(tag) || numbers.some((item) => !Number.isInteger(item));
    return isQuantity && items.length <= 2 && numbers.every(Number.isFinite) ? numbers : null;
  };
}
