// The scripts of a page are joined in one, of which this is the first: the line below counts for all.
// Each of the others has a block of its own and adds to `page` what others need. The text of a scenario
// is put into the document as text alone, by page.element.
"use strict";

const page = {
  data: JSON.parse(document.getElementById("data").textContent),
  views: [],
};
page.calls = page.data.trace.calls; // call 1 of the page comes first

{
  const drawn = new Map(); // of each view that was opened, what draws it anew

  // What the address has open: `#call=3&view=tags&tag=NAME`.
  page.state = () => {
    const address = new URLSearchParams(location.hash.slice(1));
    const call = address.get("call") ?? "1";
    return {
      call: Math.min(Math.max(parseInt(call) || 1, 1), page.calls.length),
      other: Object.hasOwn(page.otherCalls, call) ? call : null,
      view: page.offered.find(({ name }) => name === address.get("view"))?.name ?? "calls",
      tag: address.get("tag") ?? "",
      find: address.get("find") ?? "",
      changed: address.has("changed"),
      near: address.has("near"),
      only: address.has("only"),
    };
  };

  // The address of what is open now with some of it changed; null takes a key out.
  page.address = (changes) => {
    const address = new URLSearchParams(location.hash.slice(1));
    for (const [key, value] of Object.entries(changes)) {
      if (value === null) address.delete(key);
      else address.set(key, value);
    }
    return `#${address}`;
  };

  // Opens without a new step of the browser's history.
  page.replace = (changes) => location.replace(page.address(changes));

  const sectionOf = ({ name, title }) => {
    if (name === "calls") return document.getElementById("calls");
    const id = `view-${name}`;
    const known = document.getElementById(id);
    if (known) return known;
    const heading = page.element("h2", { id: `${id}-heading` }, title);
    const section = page.element("section", { id, "aria-labelledby": heading.id }, heading);
    document.querySelector("main").append(section);
    return section;
  };

  const drawLinks = (state) => {
    for (const link of document.querySelectorAll("#views a")) {
      link.href = page.address({ view: link.dataset.view });
      if (link.dataset.view === state.view) link.setAttribute("aria-current", "page");
      else link.removeAttribute("aria-current");
    }
  };

  page.show = () => {
    const state = page.state();
    drawLinks(state);
    page.timeline.draw(state);
    for (const view of page.offered) {
      const open = view.name === state.view;
      if (!open && !drawn.has(view.name)) continue;
      const section = sectionOf(view);
      section.hidden = !open;
      if (!open) continue;
      if (!drawn.has(view.name)) drawn.set(view.name, view.open(section));
      drawn.get(view.name)(state);
    }
  };

  page.start = () => {
    page.offered = page.views.filter((view) => view.offered());
    const links = page.offered.map(({ name, title }) =>
      page.element("li", {}, page.element("a", { "data-view": name, href: "#" }, title)),
    );
    const main = document.querySelector("main");
    main.before(page.element("nav", { id: "views", "aria-label": "views" }, page.element("ul", {}, ...links)));
    main.prepend(page.timeline.section);
    // Until a view is opened the calls are the one in sight.
    document.getElementById("calls").hidden = page.state().view !== "calls";
    document.documentElement.classList.add("scripted");
    page.show();
    addEventListener("hashchange", page.show);
  };
}
