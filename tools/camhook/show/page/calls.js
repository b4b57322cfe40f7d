// One call at a time. The document has them all, so that they can be read without scripts, too.
{
  let open = [];

  // What is open besides the calls of the trace: the event store at the end, calls that are gone.
  page.otherCalls = { end: "#end", gone: "#calls > .gone" };

  const sectionsOf = ({ call, other }) =>
    document.querySelectorAll(other ? page.otherCalls[other] : `#call-${call}`);

  const goTo = ({ target }) => {
    if (target.checkValidity()) location.hash = page.address({ call: target.value });
  };

  page.views.push({
    name: "calls",
    title: "Calls",
    offered: () => true,
    open(section) {
      const last = page.calls.length;
      const link = (text) => page.element("a", { href: "#" }, text);
      const previous = link("‹ previous");
      const next = link("next ›");
      const end = link("end");
      const number = page.element("input", { type: "number", min: 1, max: last, required: true, change: goTo });
      const label = page.element("label", {}, "call ", number, ` of ${last}`);
      section
        .querySelector("h2")
        .after(page.element("nav", { class: "picker", "aria-label": "call" }, previous, label, next, end));

      const lead = (element, call) => {
        if (call) element.href = page.address({ call });
        else element.removeAttribute("href");
      };
      return (state) => {
        const { call, other } = state;
        const shown = page.shownCalls(state.only);
        lead(previous, other ? shown.at(-1) : shown.findLast((shownCall) => shownCall < call));
        lead(next, other ? undefined : shown.find((shownCall) => shownCall > call));
        lead(end, "end");
        number.value = other ? "" : call;

        for (const old of open) old.classList.remove("open");
        open = sectionsOf(state);
        for (const opened of open) {
          opened.classList.add("open");
          opened.tabIndex = 0; // it scrolls where a table is wider
        }
      };
    },
  });
}
