// Tags over time: a row for each tag of each sensor, drawn where in sight, and the values of one of them.
{
  const { element } = page;
  const rowHeight = 104;
  const labelHeight = 44; // pixels, as tags.css has them
  const margin = 3; // rows drawn besides those in sight
  const mostRuns = 200;
  const near = 50; // calls on either side of the open one, where not all are drawn

  const severalSensors = () => new Set(page.calls.map(({ sensor }) => sensor)).size > 1;

  const wordsOf = (run) => (run.first === run.last ? "" : ` to ${run.last}`);

  // The values in words, those around the open call where there are many.
  const valuesOf = ({ name, place, sensor, runs }, call) => {
    const here = runs.findLastIndex(({ first }) => first <= call);
    const from = Math.max(Math.min(here - mostRuns / 2, runs.length - mostRuns), 0);
    const rows = runs
      .slice(from, from + mostRuns)
      .map((run) => [element("span", {}, page.callLink(run.first), wordsOf(run)), page.text(run.items)]);
    const among = runs.length > mostRuns ? ` (${from + 1} to ${from + rows.length} of ${runs.length})` : "";
    return page.table(`${name}, ${place}, sensor ${sensor}${among}`, ["from", "value"], rows, "values");
  };

  const open = (section) => {
    const several = severalSensors();
    let state;
    let rows = [];
    let range;

    const find = element("input", {
      type: "search",
      input: () => page.replace({ find: find.value || null }),
    });
    const changed = element("input", {
      type: "checkbox",
      change: () => page.replace({ changed: changed.checked ? "1" : null }),
    });
    const zoom = element("input", {
      type: "checkbox",
      change: () => page.replace({ near: zoom.checked ? "1" : null }),
    });
    const count = element("span", { role: "status" });
    const controls = element(
      "p",
      { class: "controls" },
      element("label", {}, "name ", find),
      element("label", {}, changed, " only changed"),
      page.calls.length > 2 * near ? element("label", {}, zoom, ` ${near} calls around the open one`) : null,
      count,
    );
    const values = element("div", { class: "chosen" });
    const list = element("div", { class: "rows" });
    const box = element("div", { class: "tags", tabindex: "0", role: "region", "aria-label": "tags" }, list);
    section.append(controls, values, box);

    const rowOf = (series, place) => {
      const now = page.runAt(series, state.call);
      const where = `${series.place}${several ? `, sensor ${series.sensor}` : ""}`;
      const value = element("output", { class: "value" }, now ? page.text(now.items) : "–");
      const label = element(
        "div",
        { class: "label" },
        element(
          "a",
          {
            href: page.address({ tag: series.key }),
            "aria-current": series.key === state.tag ? "true" : null,
          },
          series.name,
        ),
        element("small", {}, where),
        value,
      );
      const picture = page.plot(series, range, pictureWidth(), rowHeight - labelHeight - 4, state.call);
      picture.addEventListener("pointermove", ({ clientX }) => {
        const [from, to] = range;
        const { left, width } = picture.getBoundingClientRect();
        const call = Math.min(from + Math.floor(((clientX - left) / width) * (to - from + 1)), to);
        const run = page.runAt(series, call);
        value.textContent = `call ${call}: ${run ? page.text(run.items) : "–"}`;
      });
      const row = element("div", { class: "row", "data-key": series.key }, label, picture);
      row.style.top = `${place * rowHeight}px`;
      return row;
    };

    const pictureWidth = () => Math.max(list.clientWidth - 16, 100);

    const drawInSight = () => {
      const first = Math.max(Math.floor(box.scrollTop / rowHeight) - margin, 0);
      drawRows(first, first + Math.ceil(box.clientHeight / rowHeight) + 2 * margin);
    };

    const drawRows = (first, last) => {
      const focused =
        list.contains(document.activeElement) && document.activeElement.closest(".row").dataset.key;
      list.replaceChildren(...rows.slice(first, last).map((series, place) => rowOf(series, first + place)));
      if (focused)
        list.querySelector(`[data-key="${CSS.escape(focused)}"] a`)?.focus({ preventScroll: true });
    };
    box.addEventListener("scroll", () => requestAnimationFrame(drawInSight));
    addEventListener("resize", () => section.hidden || drawInSight());
    addEventListener("beforeprint", () => section.hidden || drawRows(0, rows.length));
    addEventListener("afterprint", () => section.hidden || drawInSight());

    return (now) => {
      state = now;
      if (find.value !== state.find) find.value = state.find;
      changed.checked = state.changed;
      zoom.checked = state.near;
      const last = page.calls.length;
      range = state.near ? [Math.max(state.call - near, 1), Math.min(state.call + near, last)] : [1, last];
      const words = state.find.toLowerCase();
      rows = page
        .series()
        .filter(
          (series) => series.key.toLowerCase().includes(words) && (!state.changed || page.isChanged(series)),
        );
      count.textContent = `${rows.length} of ${page.series().length}`;
      list.style.height = `${rows.length * rowHeight}px`;
      const series = page.series().find(({ key, name }) => key === state.tag || name === state.tag);
      values.replaceChildren(...(series ? [valuesOf(series, state.call)] : []));
      drawInSight();
    };
  };

  page.views.push({
    name: "tags",
    title: "Tags over time",
    offered: () =>
      page.calls.some((call) => call.state || page.containers.some((container) => call[container])),
    open,
  });
}
