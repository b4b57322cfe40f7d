// How a sensor mode was chosen: filters in the order in which they run, then the overrides.
{
  const { element } = page;
  const given = (value) => (value === null ? "absent" : page.plain(value));
  const mode = ({ scenario, name }) => `${scenario} ${name}`;

  // A cell of a rule; an empty app type matches rules without one.
  const conditionCell = ({ conditions }, field, compared) => {
    const isCondition = field in conditions;
    const isAsked = compared?.asked.includes(field);
    const isMet = isAsked && compared.met.includes(field);
    if (!isCondition && !isMet) return element("td");
    const text = isCondition && conditions[field] !== "" ? page.plain(conditions[field]) : "none";
    if (!isAsked) return element("td.unasked", { title: "not compared" }, text);
    return isMet ? element("td.met", `✓ ${text}`) : element("td.unmet", `✗ ${text}`);
  };

  // Rows of several conditions are compared from the last to the first, rows of one condition from the first
  // to the last.
  const rowsOf = ({ rows, columns }, { title }) => {
    const column = columns.find((each) => each.title === title);
    if (!column) return rows.filter(({ needed }) => needed > 1).toReversed();
    return rows.filter(({ needed, conditions }) => needed === 1 && column.field in conditions);
  };

  const stageOf = (decision, fields, filter, index) => {
    const note = filter.found === null ? "no row" : `row ${filter.found}`;
    const kind = filter.asked ? (filter.found === null ? "" : "decided") : "unasked";
    const text = `${index + 1}  ${filter.title}: ${filter.asked ? note : "not run"}`;
    const head = element("th", { scope: "rowgroup", colspan: fields.length + 3 }, text);
    const rows = rowsOf(decision, filter).map((row) => {
      const compared = filter.rows.find((each) => each.row === row.row);
      return element("tr", { class: `row ${row.taken ? "taken" : compared ? "" : "unasked"}` },
        element("th", { scope: "row" }, `row ${row.row}`),
        element("td.mode", mode(row), element("div.by", row.verdict)),
        fields.map((field) => conditionCell(row, field, compared)),
        element("td.verdict", row.verdict),
      );
    });
    return element("tbody", element("tr", { class: `stage ${kind}`, "data-filter": filter.filter }, head), rows);
  };

  const funnel = (decision) => {
    const { rows, inputs, product, list } = decision;
    if (!rows.length) return null;
    const columns = decision.columns.filter(({ field }) => rows.some(({ conditions }) => field in conditions));
    const values = element("tr.given",
      element("th", { scope: "row", colspan: 2 }, "given"),
      columns.map(({ input }) => element("td", given(inputs[input]))),
      element("td.verdict"),
    );
    const heads = ["", "gives", ...columns.map(({ title }) => title)];
    const box = page.table("funnel", `rules of ${product}, list ${list}`, heads, [values]);
    const fields = columns.map(({ field }) => field);
    box.firstChild.append(...decision.filters.map((filter, index) => stageOf(decision, fields, filter, index)));
    return box;
  };

  const conditionLine = ({ found, must, met }) =>
    met ? element("div.met", `✓ ${found}`) : element("div.unmet", `✗ ${found}, must ${must}`);

  const overrideOf = ({ number, when, verdict, conditions, ...gives }) =>
    element("tr", { class: verdict === "decides" ? "taken" : null },
      element("th", { scope: "row" }, `override ${number}`),
      element("td", when, element("small", ` → ${mode(gives)}`)),
      element("td.verdict", verdict),
      element("td", conditions.map(conditionLine)),
    );

  const overridesOf = ({ overrides }) => {
    const close = overrides.filter(({ verdict }) => verdict !== "no");
    if (!close.length) return element("p.note", "No override applies or is a near miss.");
    close.sort((one, other) => (other.verdict === "decides") - (one.verdict === "decides"));
    const others = `${overrides.length - close.length} other overrides do not apply.`;
    return [page.table("overrides", "overrides", [], close.map(overrideOf)), element("p.note", others)];
  };

  const inputsOf = ({ inputs, warnings }) => {
    const rows = Object.entries(inputs).map(([name, value]) => {
      const problems = warnings.filter(({ input }) => input === name).map(({ problem }) => ` (${problem})`);
      return [page.name(name), `${given(value)}${problems.join("")}`];
    });
    return page.fold("inputs", "inputs", page.table("values", "", [], rows));
  };

  const answerOf = (decision) => {
    const { base, decidedBy, product, list } = decision;
    const rule = base.row === null ? "no row matches" : `row ${base.row} of ${product} ${list}`;
    const isOverride = decidedBy.kind === "override";
    const by = isOverride ? `${decidedBy.text}. The rules alone give ${mode(base)}: ${rule}.` : `${rule}.`;
    return element("p.answer", element("b", mode(decision)), isOverride ? `, decided by ${by}` : `: ${by}`);
  };

  page.mode = () => {
    const numbers = page.numbersOf(({ call }) => call === "decideSensorScenario");
    if (!numbers.length) return null;
    const textOf = (number) => `call ${number}: ${page.modeName(page.call(number).return)}`;
    const goTo = () => page.open(select.value);
    const options = numbers.map((number) => element("option", { value: number }, textOf(number)));
    const select = element("select", { change: goTo }, options);
    const label = element("label", "decision ", select, ` of ${numbers.length}`);
    const content = element("div");
    return {
      section: element("section", { id: "mode", "aria-label": "sensor mode" }, label, content),
      draw({ call }) {
        select.value = numbers.findLast((number) => number <= call) ?? numbers[0];
        const decision = page.data.decisions[select.value];
        const parts = [answerOf(decision), funnel(decision), overridesOf(decision), inputsOf(decision)];
        content.replaceChildren(element("div", parts));
      },
    };
  };
}
