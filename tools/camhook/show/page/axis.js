// The lanes of calls and tags on one axis. Only calls in sight are drawn.
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
    lane.row.dataset.key = series.key;
    lane.open = (call) => lane.value.replaceChildren(valueAt(call));
    return lane;
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
    const { row, value } = lane;
    const last = page.calls.length;
    const set = (attributes) => Object.entries(attributes).forEach((attribute) => row.setAttribute(...attribute));
    set({ role: "slider", tabindex: 0, "aria-label": "open call", "aria-valuemin": 1, "aria-valuemax": last });
    lane.open = (call) => {
      set({ "aria-valuenow": call, "aria-valuetext": callWords(call) });
      value.replaceChildren(`${call} of ${last}`);
    };
    const moves = { ArrowLeft: -1, ArrowRight: 1, PageUp: -20, PageDown: 20, Home: -Infinity, End: Infinity };
    row.addEventListener("keydown", (event) => {
      if (!(event.key in moves) || event.ctrlKey || event.altKey || event.metaKey) return;
      event.preventDefault();
      page.replace({ call: Math.min(Math.max(page.state().call + moves[event.key], 1), last) });
    });
    return lane;
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
    let drawn = { first: 0, last: 0 }; // calls
    let found = null; // the filter that the lanes are for
    let lanes = [];

    const search = () => page.replace({ find: find.value || null });
    const find = element("input", { type: "search", size: 16, input: search });
    const count = element("span", { role: "status" });
    const controls = element("div.controls", element("label", "tags ", find), count);
    const hairline = element("div.hairline");
    const content = element("div.axis-content");
    const box = element("div.axis", { tabindex: "0", role: "region", "aria-label": "lanes" }, content);
    const constants = element("div");
    const calls = callsLane();

    const labelWidth = () => parseFloat(getComputedStyle(box).getPropertyValue("--label"));

    // Draws half a screen more on both sides, so that few scrolls need a redraw.
    const draw = (isForced) => {
      const inSight = Math.ceil(box.clientWidth / step);
      const from = Math.floor(box.scrollLeft / step) + 1;
      const to = Math.min(from + inSight, page.calls.length);
      if (!isForced && drawn.first <= from && drawn.last >= to) return;
      const first = Math.max(from - Math.ceil(inSight / 2), 1);
      const last = Math.min(to + Math.ceil(inSight / 2), page.calls.length);
      drawn = { first, last };
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
      draw(true);
    };

    // By default the values that vary have lanes; the filter finds constant ones, too.
    const chooseLanes = () => {
      if (found === state.find) return;
      found = state.find;
      const words = found.toLowerCase();
      const matching = page.series().filter(({ key }) => key.toLowerCase().includes(words));
      const { shown = [], folded = [] } = Object.groupBy(matching, ({ isConstant }) =>
        words || !isConstant ? "shown" : "folded",
      );
      lanes = [calls, ...shown.map(tagLane)];
      content.replaceChildren(hairline, ...lanes.map(({ row }) => row));
      constants.replaceChildren(...(folded.length ? [constantsOf(folded)] : []));
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
    content.addEventListener("pointermove", point);
    content.addEventListener("pointerleave", page.tip);
    content.addEventListener("click", (event) => {
      const call = callAt(event);
      if (call) location.hash = page.address({ call });
    });
    box.addEventListener("scroll", (event) => {
      page.tip(event);
      requestAnimationFrame(() => draw(false));
    });
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
