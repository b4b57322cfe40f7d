// All calls in their order, a lane for each hook on each sensor. Only those in sight are in the document,
// and the one that the keyboard is on.
{
  const { element } = page;
  const step = 32; // pixels from call to call, as timeline.css has them
  const margin = 5; // calls drawn besides those in sight, on both sides

  const laneOf = ({ sensor, call }) =>
    sensor === undefined ? `phone · ${call}` : `sensor ${sensor} · ${call}`;

  const laneTracks = new Map();
  const makeLanes = () => {
    for (const call of page.calls) laneTracks.set(laneOf(call), null);
    const names = [...laneTracks.keys()].sort((one, other) =>
      one.localeCompare(other, "en", { numeric: true }),
    );
    return names.map((name) => {
      const track = element("div", { class: "track" });
      laneTracks.set(name, track);
      return element("div", { class: "lane" }, element("span", { class: "name" }, name), track);
    });
  };

  const markOf = (number, place, { call: open, other }) => {
    const call = page.calls[number - 1];
    const errors = page.errors(call);
    const effects = call.effects.length;
    const differs = page.data.scenario ? 0 : page.differences(number);
    const words = [
      `call ${number} ${laneOf(call)}`,
      page.errorCount(errors),
      page.count(effects, "effect"),
      page.count(differs, "difference"),
    ];
    const mark = element(
      "a",
      {
        class: `mark${errors ? " error" : ""}${effects ? " effect" : ""}${differs ? " differs" : ""}`,
        href: page.address({ call: number, view: "calls" }),
        "data-call": number,
        tabindex: place === focused ? 0 : -1,
        "aria-label": words.filter(Boolean).join(", "),
        "aria-current": number === open && !other ? "true" : null,
      },
      element("small", {}, `${number}`),
      `${errors ? "!" : ""}${effects ? "•" : ""}${differs ? "≠" : ""}`,
    );
    mark.style.left = `${place * step}px`;
    return mark;
  };

  const box = element("div", { class: "timeline" });
  let state;
  let shown = [];
  let focused = 0; // the place among those shown that the keyboard is on

  const drawMarks = () => {
    const first = Math.max(Math.floor(box.scrollLeft / step) - margin, 0);
    const last = Math.min(first + Math.ceil(box.clientWidth / step) + 2 * margin, shown.length);
    const hadFocus = box.contains(document.activeElement);
    for (const track of laneTracks.values()) track.replaceChildren();
    const add = (place) =>
      laneTracks.get(laneOf(page.calls[shown[place] - 1])).append(markOf(shown[place], place, state));
    for (let place = first; place < last; ++place) add(place);
    if (shown.length && (focused < first || focused >= last)) add(focused);
    if (hadFocus) box.querySelector("[tabindex='0']")?.focus({ preventScroll: true });
  };

  const bringIntoSight = (place) => {
    const left = place * step;
    if (left < box.scrollLeft) box.scrollLeft = left;
    const right = left + 2 * step - box.clientWidth;
    if (right > box.scrollLeft) box.scrollLeft = right;
  };

  const moves = { ArrowLeft: -1, ArrowRight: 1, PageUp: -20, PageDown: 20, Home: -Infinity, End: Infinity };
  const move = (event) => {
    if (!(event.key in moves) || event.ctrlKey || event.altKey || event.metaKey) return;
    event.preventDefault();
    focused = Math.min(Math.max(focused + moves[event.key], 0), shown.length - 1);
    bringIntoSight(focused);
    drawMarks();
  };

  const tellOf = ({ target }) => {
    if (target.dataset.call) page.told.tell(target.dataset.call);
  };

  const lanes = makeLanes();
  const scroller = element("div", { class: "lanes" }, ...lanes);
  box.append(scroller);
  box.addEventListener("scroll", () => requestAnimationFrame(drawMarks));
  box.addEventListener("keydown", move);
  box.addEventListener("pointerover", tellOf);
  box.addEventListener("focusin", tellOf);
  addEventListener("resize", drawMarks);

  const differences = page.differencesBar();
  const signs = `! records of level E, • effects${page.data.scenario ? "" : ", ≠ differs"}; arrow keys move, Enter opens`;
  page.timeline = {
    section: element(
      "section",
      { id: "timeline", "aria-labelledby": "timeline-heading" },
      element("h2", { id: "timeline-heading" }, "Timeline"),
      differences?.bar ?? null,
      box,
      page.told.element,
      element("p", { class: "hint" }, signs),
    ),
    draw(now) {
      state = now;
      differences?.draw(state);
      shown = page.shownCalls(state.only);
      scroller.style.width = `${shown.length * step}px`;
      const place = state.other ? -1 : shown.indexOf(state.call);
      page.told.clear();
      focused = place < 0 ? Math.min(focused, Math.max(shown.length - 1, 0)) : place;
      if (place >= 0) {
        bringIntoSight(place);
        page.told.tell(state.call);
      }
      drawMarks();
    },
  };
}
