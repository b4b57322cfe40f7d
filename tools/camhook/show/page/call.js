// The open call: what it changed, then its inputs, effects and log records.
{
  const { element } = page;
  const parts = [...page.containers, "state"];
  const known = new Set([...parts, "call", "sensor", "args", "return", "before", "effects", "logs", "writes"]);

  const stepText = ({ step, file, line }) =>
    [page.name(step), element("small", ` ${file.replace(/^.*\//, "")}:${line}`)];

  const changeRow = (tag, before, after, write, isOverwritten = false) =>
    element("tr", isOverwritten ? { class: "overwritten" } : { "data-tag": tag },
      element("th", { scope: "row" }, page.name(tag), isOverwritten ? " overwritten" : ""),
      element("td", before),
      element("td.after", after),
      element("td.step", write ? stepText(write) : []),
    );

  // The decoded meaning precedes the items.
  const afterText = (tag, after, decoded) => {
    const text = page.text(tag, after);
    return decoded ? [...decoded.map((line) => element("div", line)), element("small", text)] : text;
  };

  const changesOf = (call, number, part) => {
    if (!(part in call)) return null;
    const rows = page.changes(call, part).flatMap(([tag, before, after]) => {
      const writes = page.writes(call, part, tag);
      const decoded = page.data.decoded[number]?.[part]?.[tag];
      const last = changeRow(tag, page.text(tag, before), afterText(tag, after, decoded), writes.pop());
      const earlier = writes.map((write) => changeRow(tag, "", page.text(tag, write.value), write, true));
      return [last, ...earlier];
    });
    if (rows.length) return page.table("changes", part, ["tag", "before", "after", "step"], rows);
    const note = part === "state" ? "no updater for this sensor" : "null";
    return element("p.note", element("b", part), call[part] ? " no change" : ` ${note}`);
  };

  const extrasOf = (call) =>
    Object.entries(call)
      .filter(([name]) => !known.has(name))
      .flatMap(([name, value]) => [element("h3", name), element("pre", page.plain(value))]);

  const tableOf = (kind, caption, rows) => (rows.length ? page.table(kind, caption, [], rows) : null);
  const textsTable = (caption, texts) => tableOf("values", caption, Object.entries(texts ?? {}));

  const givenOf = (call) => [
    tableOf("values", "arguments", Object.entries(call.args).map(([name, value]) => [name, page.plain(value)])),
    ...page.containers.map((container) => {
      const given = call[container] ? page.given(call, container) : [];
      return tableOf("values", container, given.map(([tag, entry]) => [page.name(tag), page.text(tag, entry)]));
    }),
  ];

  const effectRow = ({ op, ...fields }) =>
    [op, [page.fields(fields), page.data.commands[op]?.[fields.command]].filter(Boolean).join(", ")];

  const recordRow = ({ level, message }) =>
    element("tr", { "data-level": level }, element("th", { scope: "row" }, level), element("td", message));

  // A fold without content is left out. It stays open from call to call.
  const opened = new Set();
  const fold = (name, summary, ...content) => {
    if (content.every((table) => !table)) return null;
    const details = page.fold(name, summary, ...content);
    details.open = opened.has(name);
    details.addEventListener("toggle", () => opened[details.open ? "add" : "delete"](name));
    return details;
  };

  const foldsOf = (call) => {
    const errors = page.errors(call);
    const effects = call.effects.map(effectRow);
    const records = page.count(call.logs.length, "record") + (errors ? `, ${errors} of level E` : "");
    return [
      fold("given", "what the call was given", ...givenOf(call)),
      fold("effects", page.count(effects.length, "effect"), tableOf("effects", "", effects)),
      fold("records", records, tableOf("records", "", call.logs.map(recordRow))),
    ];
  };

  const titleOf = (call) => {
    const sensor = call.sensor === undefined ? "" : `sensor ${call.sensor}`;
    const about = [sensor, page.fields(call.args)].filter(Boolean).join(", ");
    const isMode = call.call === "decideSensorScenario";
    const result = isMode ? page.modeName(call.return) : page.plain(call.return);
    return element("h2", call.call,
      element("small", ` ${about}`),
      call.return === null ? null : element("span.result", ` → ${result}`),
    );
  };

  const phone = ({ scenario: { platform }, trace }) =>
    page.fold("phone", "properties and event store",
      textsTable("properties at the start", platform?.properties),
      textsTable("event store at the start", platform?.eventStore),
      textsTable("event store at the end", trace.eventStore),
    );

  page.openCall = () => {
    const last = page.calls.length;
    const previous = element("a.lead", { "aria-label": "previous call" }, "‹");
    const next = element("a.lead", { "aria-label": "next call" }, "›");
    const goTo = ({ target }) => target.checkValidity() && page.open(target.value);
    const input = element("input", { type: "number", min: 1, max: last, required: true, change: goTo });
    const label = element("label", "call ", input, ` of ${last}`);
    const picker = element("nav.picker", { "aria-label": "call" }, previous, label, next);
    const content = element("div");
    const lead = (anchor, call) => {
      if (page.call(call)) anchor.href = page.address({ call });
      else anchor.removeAttribute("href");
    };
    return {
      section: element("section", { id: "call", "aria-label": "open call" }, picker, content, phone(page.data)),
      draw({ call: number }) {
        const call = page.call(number);
        lead(previous, number - 1);
        lead(next, number + 1);
        input.value = number;
        const changes = parts.map((part) => changesOf(call, number, part));
        const shown = [titleOf(call), page.pictures(number), changes, extrasOf(call), foldsOf(call)];
        content.replaceChildren(element("div", shown));
      },
    };
  };
}
