// Rectangles to scale, with their numbers.
{
  const { element, shape } = page;
  const width = 360; // of the drawing, in its own units
  const border = 12;

  const corners = ([x, y, w, h]) => [Math.min(x, x + w), Math.min(y, y + h), Math.max(x, x + w), Math.max(y, y + h)];

  const boundsOf = (rects) =>
    rects.map(corners).reduce(([x0, y0, x1, y1], [left, top, right, bottom]) => [
      Math.min(x0, left), Math.min(y0, top), Math.max(x1, right), Math.max(y1, bottom),
    ]);

  // Each shape has a name, `rect` (x, y, width, height as it is told), `at` where it lies elsewhere in the
  // picture, a kind that views.css draws, and a sign that stands at it in the picture and before its name.
  const shapesOf = (shapes) => {
    const [left, top, right, bottom] = boundsOf(shapes.map(({ rect, at }) => at ?? rect));
    const scale = Math.min((width - 2 * border) / Math.max(right - left, 1), 480 / Math.max(bottom - top, 1));
    const height = (bottom - top) * scale + 2 * border;
    const drawn = shapes.flatMap(({ rect, at, kind, sign }, place) => {
      const [x0, y0, x1, y1] = corners(at ?? rect);
      const x = (x0 - left) * scale + border;
      const y = (y0 - top) * scale + border;
      const small = (x1 - x0) * scale < 40;
      return [
        shape("rect", { class: `outline ${kind}`, x, y, width: (x1 - x0) * scale, height: (y1 - y0) * scale }),
        shape(
          "text",
          { class: `sign ${kind}`, x: small ? x + (x1 - x0) * scale + 2 : x + 5 + (place % 6) * 16, y: small ? y + 8 : y + (y1 - y0) * scale - 5 },
          sign,
        ),
      ];
    });
    return shape("svg", { class: "picture", viewBox: `0 0 ${width} ${height}`, "aria-hidden": "true" }, ...drawn);
  };

  const number = (value) => element("td", { class: "number" }, `${value}`);

  page.picture = (title, shapes) =>
    element(
      "div",
      { class: "pictured" },
      shapesOf(shapes),
      page.table(
        title,
        ["", "x", "y", "width", "height", "ratio"],
        shapes.map(({ name, sign, kind, rect: [x, y, w, h], note }) =>
          element(
            "tr",
            { "data-shape": name },
            page.rowHead(element("span", { class: `key ${kind}` }, sign), ` ${name}`, note ? element("small", {}, ` ${note}`) : null),
            ...[x, y, w, h, h ? (w / h).toFixed(3) : "–"].map(number),
          ),
        ),
        "rects",
      ),
    );
}
