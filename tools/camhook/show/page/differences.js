// Of two traces: the calls that differ.
{
  let differing;

  const numberOf = ({ id }) => Number(id.slice("call-".length));

  // The numbers of the calls that are shown: all, or those alone that differ.
  page.shownCalls = (only) => {
    if (!only) return (page.allCalls ??= page.calls.map((_, index) => index + 1));
    differing ??= [...document.querySelectorAll("#calls > [data-differences]:not(.gone)")].map(numberOf);
    return differing;
  };

  page.differences = (call) => Number(document.getElementById(`call-${call}`).dataset.differences ?? 0);

  // What leads to the differences, null where the page has one trace only.
  page.differencesBar = () => {
    if (page.data.scenario) return null;
    const { element } = page;
    const box = element("input", {
      type: "checkbox",
      change: () => page.replace({ only: box.checked ? "1" : null }),
    });
    const gone = document.querySelectorAll("#calls > .gone").length;
    const links = new Map();
    if (gone) links.set("gone", element("a", { href: "#" }, `calls that are gone: ${gone}`));
    if (document.querySelector("#end > .differences")) {
      links.set("end", element("a", { href: "#" }, "the event store at the end differs"));
    }
    const bar = element(
      "p",
      { class: "controls" },
      element("label", {}, box, " only what differs"),
      element("span", {}, `calls that differ: ${page.shownCalls(true).length}`),
      ...links.values(),
    );
    return {
      bar,
      draw({ only }) {
        box.checked = only;
        for (const [call, link] of links) link.href = page.address({ call, view: "calls" });
        document.documentElement.classList.toggle("only-differences", only);
      },
    };
  };
}
