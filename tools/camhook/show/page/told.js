// What is told of the call that the pointer or the keyboard is on.
{
  const { element } = page;
  const mostNames = 4;

  const told = element("p", { class: "told", "aria-live": "polite" });

  page.errorCount = (count) => (count > 0 ? `${page.count(count, "record")} of level E` : "");

  page.count = (count, what) => (count > 0 ? `${count} ${what}${Number(count) === 1 ? "" : "s"}` : "");

  // The tables of one trace have the tags that changed, those of two the places that differ.
  const changesOf = (section) => {
    const rows = section.querySelectorAll(page.data.scenario ? "tr[data-tag]" : ".differences tr");
    const names = [...new Set([...rows].map((row) => row.cells[0].textContent))];
    if (!names.length) return page.data.scenario ? "changes no tag" : "does not differ";
    const more = names.length > mostNames ? ` and ${names.length - mostNames} more` : "";
    return `${page.data.scenario ? "changes" : "differs in"} ${names.slice(0, mostNames).join(", ")}${more}`;
  };

  const tell = (number) => {
    const section = document.getElementById(`call-${number}`);
    const { errors, effects } = section.dataset;
    const facts = [changesOf(section), page.count(effects, "effect"), page.errorCount(errors)];
    told.replaceChildren(
      element("b", {}, section.querySelector("h3").textContent),
      ` ${facts.filter(Boolean).join("; ")}`,
    );
  };

  page.told = { element: told, tell, clear: () => told.replaceChildren() };
}
