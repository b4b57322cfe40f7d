// How a readout mode came about.
{
  const { element } = page;

  // The fields that a rule may ask for, what people call them, and the input of each.
  const fields = [
    ["isHfpsMode", "hfps", "MTK_STREAMING_FEATURE_HFPS_MODE"],
    ["appType", "app type", "APP_TYPE"],
    ["fps", "fps", "MTK_CONTROL_AE_TARGET_FPS_RANGE"],
    ["eisMode", "eis", "HESK_CONTROL_EISENABLE"],
    ["videoAlgoType", "algo", "HESK_CONTROL_VIDEOALGOTYPE"],
    ["uiMode", "ui", "COM_HESK_CURRENTUIMODULE"],
  ];

  const told = (value) => (value === null ? "absent" : Array.isArray(value) ? page.text(value) : `${value}`);

  const inputsTable = ({ inputs, warnings }) =>
    page.table(
      "inputs",
      ["input", "value"],
      Object.entries(inputs).map(([name, value]) => {
        const problems = warnings.filter(({ input }) => input === name).map(({ problem }) => ` ! ${problem}`);
        return [page.rowHead(name), element("span", {}, told(value), ...problems)];
      }),
      "inputs",
    );

  // The sign stands for those who do not tell the colours apart.
  const verdictCell = (met, text) =>
    element("td", { class: met ? "met" : "unmet" }, `${met ? "=" : "≠"} ${text}`);

  const rulesTable = ({ rules, inputs, product, list }) => {
    const used = fields.filter(([field]) => rules.some(({ met }) => field in met));
    const given = element(
      "tr",
      { class: "given" },
      page.rowHead("given"),
      ...used.map(([, , input]) => element("td", {}, told(inputs[input] ?? null))),
      element("td"),
      element("td"),
    );
    const rows = rules.map((rule, index) =>
      element(
        "tr",
        { class: rule.taken ? "taken" : null },
        page.rowHead(`${rule.taken ? "▸ " : ""}row ${index + 1}`),
        ...used.map(([field]) =>
          field in rule.met
            ? verdictCell(rule.met[field], rule[field] === "" ? "none" : `${rule[field]}`)
            : element("td"),
        ),
        element("td", {}, page.modeName(rule.sensorMode)),
        element("td", {}, rule.why),
      ),
    );
    return page.table(
      `rules of ${product} ${list}`,
      ["", ...used.map(([, name]) => name), "mode", "why"],
      [given, ...rows],
      "rules",
    );
  };

  const conditionText = ({ found, must, met }) => (met ? `= ${found}` : `≠ ${found}, must ${must}`);

  const overridesTable = ({ overrideVerdicts }) =>
    page.table(
      "overrides",
      ["", "when", "mode", "verdict", "what it looked at"],
      overrideVerdicts.map(({ when, scenario, verdict, conditions }, index) =>
        element(
          "tr",
          { class: verdict === "holds" ? "taken" : null },
          page.rowHead(`${verdict === "holds" ? "▸ " : ""}${index + 1}`),
          element("td", {}, when),
          element("td", {}, page.modeName(scenario)),
          element("td", {}, verdict),
          element(
            "td",
            {},
            element(
              "ul",
              {},
              ...conditions.map((condition) =>
                element("li", { class: condition.met ? "met" : "unmet" }, conditionText(condition)),
              ),
            ),
          ),
        ),
      ),
      "overrides",
    );

  const baseOf = ({ base }) =>
    `${page.modeName(base.scenario)}${base.row === null ? ", no row is taken" : `, of row ${base.row}`}`;

  const isDecided = (call) => call.call === "decideSensorScenario";
  if (page.data.decisions) {
    page.viewOfCalls("decision", "Decision", isDecided, (number) => {
      const decision = page.data.decisions[number];
      return [
        element(
          "p",
          { class: "result" },
          "Result: ",
          element("b", {}, decision.decidedBy),
          `. Base: ${baseOf(decision)}.`,
        ),
        ...(decision.rules.length ? [rulesTable(decision)] : []),
        overridesTable(decision),
        inputsTable(decision),
      ];
    });
  }
}
