// What a call of the trace holds.
{
  page.containers = ["meta", "app", "hal", "out"];

  // The sensor scenarios by number.
  const modes = new Map([
    [0, "NORMAL_PREVIEW"],
    [1, "NORMAL_CAPTURE"],
    [2, "NORMAL_VIDEO"],
    [5, "CUSTOM1"],
    [6, "CUSTOM2"],
    [7, "CUSTOM3"],
    [8, "CUSTOM4"],
    [255, "no decision"],
  ]);
  page.modeName = (mode) => (modes.has(mode) ? `${mode} ${modes.get(mode)}` : `${mode}`);

  // The items of a tag after the call, null where it is absent.
  page.items = (call, container, tag) => call[container]?.[tag]?.items ?? null;

  page.errors = (call) => call.logs.filter(({ level }) => level === "E").length;

  // The numbers of the calls for which something holds.
  page.callsWith = (holds) => page.calls.flatMap((call, index) => (holds(call) ? [index + 1] : []));

  // The state that a call on a sensor found: what the call on it before left behind.
  page.stateBefore = (number) => {
    const { sensor } = page.calls[number - 1];
    for (let index = number - 2; index >= 0; --index) {
      const { sensor: other, state } = page.calls[index];
      if (other === sensor && state) return state;
    }
    return null;
  };

  // Integers beyond the precision of the browser's numbers are told as such.
  const textOf = (item) => {
    if (Array.isArray(item)) return `[${item.map(textOf).join(", ")}]`;
    return Math.abs(item) > Number.MAX_SAFE_INTEGER ? `≈${item}` : `${item}`;
  };

  page.text = (items) => {
    if (items === null) return "absent";
    if (items.length === 1) return textOf(items[0]);
    const shown = items.slice(0, 12).map(textOf).join(", ");
    return items.length > 12 ? `[${shown}, … ${items.length} items]` : `[${shown}]`;
  };

  page.same = (one, other) =>
    one.length === other.length &&
    one.every((item, index) => (Array.isArray(item) ? page.same(item, other[index]) : item === other[index]));

  // The rectangle of a device's static tag, as a scenario may write it: the tag by name or number, the items
  // alone, in one list or with their type, numbers in hexadecimal.
  page.staticRect = (device, name, number) => {
    const entries = page.data.scenario?.platform?.devices?.[device]?.static ?? {};
    const found = Object.entries(entries).find(([tag]) => tag === name || Number(tag) === number);
    const items = found?.[1].items ?? found?.[1];
    const rect = Array.isArray(items?.[0]) ? items[0] : items;
    return rect?.length === 4 ? rect.map(Number) : null;
  };
}
