// The lanes of calls and tags on one axis. Only visible calls are drawn.
{
  const { element, shape } = page;
  const narrowest = 6; // pixels of a call
  const widest = 200;

  const callWords = (number) => {
    const { call, sensor } = page.call(number);
    return `call ${number} ${call}${sensor === undefined ? "" : ` sensor ${sensor}`}`;
  };

  const laneOf = (kind, name, place, lines, draw) => {
    const value = element("output");
    const picture = shape("svg", { "aria-hidden": "true" });
    const now = element("div.now", value, element("small", place));
    const label = element("div.label", element("div.tag", { title: name }, name), now);
    return { row: element("div", { class: `lane ${kind}` }, label, picture), picture, value, lines, draw };
  };

  const tagLane = (series) => {
    const { name, part, place } = series;
    const valueAt = (call) => page.runAt(series, call)?.text ?? "–";
    const lines = (call) => {
      const point = page.pointAt(series, call);
      const before = point?.isChanged ? `${page.text(name, point.input)} → ` : "";
      const step = point ? page.writes(page.call(call), part, name).at(-1)?.step : "";
      return [name, `${before}${valueAt(call)}`, step];
    };
    const lane = laneOf(part, name, place, lines, page.lane(series));
    page.set(lane.row, { "data-key": series.key });
    return { ...lane, open: (call) => lane.value.replaceChildren(valueAt(call)) };
  };

  const callLines = (number) => {
    const call = page.call(number);
    const changes = Object.values(call.before ?? {}).flatMap(Object.keys).length;
    const errors = page.errors(call);
    const counts = [page.count(changes, "change"), page.count(call.effects.length, "effect")].join(", ");
    return [page.fields(call.args), counts, errors ? `${page.count(errors, "record")} of level E` : ""];
  };

  // The calls are a slider for the keyboard and for screen readers.
  const callsLane = () => {
    const lane = laneOf("calls", "call", "", callLines, page.callsLane);
    const last = page.calls.length;
    const moves = { ArrowLeft: -1, ArrowRight: 1, PageUp: -20, PageDown: 20, Home: -Infinity, End: Infinity };
    const keydown = (event) => {
      if (!(event.key in moves) || event.ctrlKey || event.altKey || event.metaKey) return;
      event.preventDefault();
      page.replace({ call: Math.min(Math.max(page.state().call + moves[event.key], 1), last) });
    };
    const range = { "aria-label": "open call", "aria-valuemin": 1, "aria-valuemax": last };
    page.set(lane.row, { role: "slider", tabindex: 0, ...range, keydown });
    const open = (call) => {
      page.set(lane.row, { "aria-valuenow": call, "aria-valuetext": callWords(call) });
      lane.value.replaceChildren(`${call} of ${last}`);
    };
    return { ...lane, open };
  };

  const legend = () => {
    const byColour = Map.groupBy(new Set(page.calls.map(({ call }) => call)), page.colourOfHook);
    const keys = [...byColour].map(([colour, hooks]) => element("li", { class: colour }, hooks.join(", ")));
    const mark = page.calls.some(page.errors) ? element("li.mark", "record of level E") : null;
    return element("ul.legend", { "aria-label": "colours of the calls" }, keys, mark);
  };

  const constantsOf = (constants) => {
    const rows = constants.map(({ name, place, runs }) => [[page.name(name), ` ${place}`], runs[0].text]);
    return page.fold("constants", page.count(rows.length, "constant value"), page.table("values", "", [], rows));
  };

  page.axis = () => {
    let state = null;
    let step;
    let drawnAt; // pixels
    let found = null; // the filter that the lanes are for
    let lanes = [];

    const input = () => page.replace({ find: find.value || null });
    const find = element("input", { type: "search", size: 16, input });
    const count = element("span", { role: "status" });
    const controls = element("div.controls", element("label", "tags ", find), count);
    const hairline = element("div.hairline");
    const content = element("div.axis-content");
    const box = element("div.axis", { tabindex: 0, role: "region", "aria-label": "lanes" }, content);
    const constants = element("div");
    const calls = callsLane();

    const labelWidth = () => parseFloat(getComputedStyle(box).getPropertyValue("--label"));

    // Draws half a screen more on both sides; `scroll` draws again after scrolling that far.
    const draw = () => {
      const inSight = Math.ceil(box.clientWidth / step);
      const from = Math.floor(box.scrollLeft / step) + 1;
      const first = Math.max(from - Math.ceil(inSight / 2), 1);
      const last = Math.min(from + Math.ceil(inSight * 1.5), page.calls.length);
      drawnAt = box.scrollLeft;
      const sight = { first, last, open: state.call, step, xOf: (number) => (number - first) * step };
      for (const lane of lanes) {
        lane.picture.setAttribute("width", (last - first + 1) * step);
        lane.picture.style.left = `${labelWidth() + (first - 1) * step}px`;
        lane.picture.replaceChildren(...lane.draw(sight));
      }
    };

    const layOut = () => {
      const width = box.clientWidth - labelWidth();
      if (width <= 0) return; // hidden
      step = Math.min(Math.max(Math.floor(width / page.calls.length), narrowest), widest);
      const left = (state.call - 1) * step;
      box.style.setProperty("--sight", `${box.clientWidth}px`);
      content.style.width = `${labelWidth() + page.calls.length * step}px`;
      hairline.style.left = `${labelWidth() + left}px`;
      hairline.style.width = `${step}px`;
      if (left < box.scrollLeft || left + step > box.scrollLeft + width) box.scrollLeft = left - width / 2;
      draw();
    };

    // By default the values that vary have lanes; the filter finds constant ones, too.
    const chooseLanes = () => {
      if (found === state.find) return;
      found = state.find;
      const words = found.toLowerCase();
      const matching = page.series().filter(({ key }) => key.toLowerCase().includes(words));
      const shown = matching.filter(({ isConstant }) => words || !isConstant);
      const folded = matching.filter((series) => !shown.includes(series));
      lanes = [calls, ...shown.map(tagLane)];
      content.replaceChildren(hairline, ...lanes.map(({ row }) => row));
      constants.replaceChildren(folded.length ? constantsOf(folded) : "");
      count.textContent = `${shown.length} of ${page.series().length} ${words ? "match" : "vary"}`;
    };

    const callAt = ({ clientX, target }) => {
      const x = clientX - content.getBoundingClientRect().left - labelWidth();
      const call = Math.floor(x / step) + 1;
      return target.closest(".label") || x < 0 || call > page.calls.length ? null : call;
    };
    const point = (event) => {
      const call = callAt(event);
      const lane = lanes.find(({ row }) => row.contains(event.target));
      page.tip(event, call && lane ? [callWords(call), ...lane.lines(call)] : []);
    };
    const click = (event) => callAt(event) && page.open(callAt(event));
    const scroll = (event) => {
      page.tip(event);
      if (Math.abs(box.scrollLeft - drawnAt) > box.clientWidth / 2) requestAnimationFrame(draw);
    };
    page.set(content, { pointermove: point, pointerleave: page.tip, click });
    page.set(box, { scroll });
    new ResizeObserver(() => state && layOut()).observe(box);

    const bar = element("div.bar", legend(), controls);
    return {
      section: element("section", { id: "lanes", "aria-label": "calls and tags" }, bar, box, constants),
      draw(now) {
        state = now;
        if (find.value !== state.find) find.value = state.find;
        chooseLanes();
        for (const lane of lanes) lane.open(state.call);
        layOut();
      },
    };
  };

  // The tooltip next to the pointer; without lines it disappears.
  const tip = element("div", { id: "tip", role: "tooltip", hidden: true });
  document.body.append(tip);
  page.tip = ({ clientX, clientY }, lines = []) => {
    tip.hidden = !lines.length;
    if (tip.hidden) return;
    tip.replaceChildren(...lines.filter(Boolean).map((line) => element("div", line)));
    const isAbove = clientY + 18 + tip.offsetHeight > innerHeight;
    tip.style.left = `${Math.max(Math.min(clientX + 14, innerWidth - tip.offsetWidth - 8), 4)}px`;
    tip.style.top = `${isAbove ? clientY - tip.offsetHeight - 8 : clientY + 18}px`;
  };
  addEventListener("keydown", (event) => event.key === "Escape" && page.tip(event));
}
