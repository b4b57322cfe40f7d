// The frame of the page: one line of header, a view, and the open call next to it or below.
{
  const { element } = page;
  const { title, scenario } = page.data;
  const main = document.getElementById("page");

  const start = () => {
    const views = [
      ["calls", "Calls", page.axis()],
      ["burst", "Burst", page.burst()],
      ["mode", "Sensor mode", page.mode()],
    ].filter(([, , view]) => view);
    const call = page.openCall();
    const links = views.map(([name, text]) => element("a", { "data-view": name }, text));
    main.append(
      element("header", element("h1", title),
        element("nav", { id: "views", "aria-label": "views" }, views.length > 1 ? links : []),
        scenario.about ? page.fold("about", scenario.about) : null,
      ),
      element("div.view", views.map(([, , { section }]) => section)),
      call.section,
    );

    const show = () => {
      const state = page.state();
      const [open, , view] = views.find(([name]) => name === state.view) ?? views[0];
      for (const [name, , { section }] of views) section.hidden = name !== open;
      for (const link of links) {
        link.href = page.address({ view: link.dataset.view });
        link.setAttribute("aria-current", link.dataset.view === open ? "page" : "false");
      }
      view.draw(state);
      call.draw(state);
    };
    show();
    addEventListener("hashchange", show);
  };

  if (page.calls.length) start();
  else main.append(element("h1", title), element("p", "The scenario has no calls."));
}
