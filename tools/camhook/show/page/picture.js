// The rectangles of a call to scale: crop and faces in the active array, regions before and after.
{
  const { element, shape } = page;
  const margin = 18; // around the outermost rectangle, for the corners of the array
  const letter = 6.8;
  const tallest = 300;
  const widest = 460;

  const kinds = {
    "active array": "array",
    "preview area": "preview",
    "crop of the frame": "crop",
    "crop for the zoom transition": "transition",
  };
  const shapeOf = ({ name, rect: [x, y, width, height] }) => ({
    name,
    size: `${width} × ${height}`,
    sides: [Math.min(x, x + width), Math.min(y, y + height), Math.max(x, x + width), Math.max(y, y + height)],
    kind: kinds[name] ?? "region",
    sign: name.match(/\d+/)?.[0] ?? "",
  });

  const boundsOf = (shapes) =>
    [Math.min, Math.min, Math.max, Math.max].map((most, side) => most(...shapes.map(({ sides }) => sides[side])));

  const pathOf = ([x, y, x1, y1]) => `M${x} ${y}H${x1}V${y1}H${x}Z`;

  // Places each text at the first free place; a text without a free place is left out. A place is the middle
  // of a text, its start (1) or its end (-1).
  const textPlacer = (width, height) => {
    const taken = [];
    const place = (text, kind, places) => {
      const long = text.length * letter;
      for (const [at, y, side] of places) {
        const x = Math.min(Math.max(at + ((side - 1) * long) / 2, 1), width - long - 1);
        const [x1, y0, y1] = [x + long, y - 11, y + 3];
        const isTaken = taken.some(([a, b, c, d]) => x < c && x1 > a && y0 < d && y1 > b);
        if (isTaken || x < 0 || y0 < 0 || y1 > height) continue;
        taken.push([x, y0, x1, y1]);
        return shape("text", { class: `sign ${kind}`, x, y }, text);
      }
      return "";
    };
    place.avoid = (box) => taken.push(box);
    return place;
  };

  const numberOf = ({ kind, sign, box: [x, y, x1, y1] }, place) => {
    const middle = (x + x1) / 2;
    const line = (y + y1) / 2 + 4;
    const isInside = x1 - x > letter * sign.length + 4;
    const text = place(sign, kind, isInside ? [[middle, line, 0]] : [[x1 + 3, line, 1], [x - 3, line, -1]]);
    place.avoid([x, y, x1, y1]);
    return text;
  };

  const cornersOf = ({ kind, sides, box: [x, y, x1, y1] }, place) => {
    const first = [[x + 3, y + 13, 1], [x, y - 4, 1], [x + 3, y + 27, 1]];
    const last = [[x1 - 3, y1 - 4, -1], [x1, y1 + 13, -1], [x1 - 3, y1 - 18, -1]];
    const from = kind === "array" ? 1 : 0; // those of the array are outside
    return [
      place(`${sides[0]}, ${sides[1]}`, kind, first.slice(from)),
      place(`${sides[2]}, ${sides[3]}`, kind, last.slice(from)),
    ];
  };

  const edgeOf = ({ name, kind, box: [x, y, x1, y1] }, place) => {
    const lines = [y + 13, y1 - 4, y - 4, y1 + 13, y + 28, y1 - 20];
    return place(name, kind, lines.map((line) => [(x + x1) / 2, line, 0]));
  };

  const draw = (rectangles, [left, top, right, bottom], width) => {
    const [across, down] = [Math.max(right - left, 1), Math.max(bottom - top, 1)];
    const scale = Math.min((width - 2 * margin) / across, tallest / down);
    const size = { width: across * scale + 2 * margin, height: down * scale + 2 * margin };
    const place = textPlacer(size.width, size.height);
    const pixelOf = (at, side) => (at - (side % 2 ? top : left)) * scale + margin;
    const shapes = rectangles.map((each) => ({ ...each, box: each.sides.map(pixelOf) }));
    const outlines = shapes.map(({ kind, box }) => shape(`path.outline.${kind}`, { d: pathOf(box) }));
    const [array, crop] = ["array", "crop"].map((wanted) => shapes.find(({ kind }) => kind === wanted));
    const numbered = shapes.filter(({ kind }) => kind === "region");
    const framed = shapes.filter(({ kind }) => kind !== "region");
    const shade = array && crop ? pathOf(array.box) + pathOf(crop.box) : "";
    return shape(
      "svg",
      { class: "picture", ...size, viewBox: `0 0 ${size.width} ${size.height}`, "aria-hidden": "true" },
      array ? [] : shape("path.frame", { d: pathOf([1, 1, size.width - 1, size.height - 1]) }),
      outlines.splice(0, array ? 1 : 0),
      shape("path.shade", { "fill-rule": "evenodd", d: shade }),
      outlines,
      numbered.map((each) => numberOf(each, place)),
      framed.map((each) => cornersOf(each, place)),
      framed.filter((each) => each !== array).map((each) => edgeOf(each, place)),
    );
  };

  const rowOf = ({ name, kind, sides: [x, y, x1, y1], size }) =>
    [element("span", { class: `key ${kind}` }, name), `${x}, ${y}`, `${x1}, ${y1}`, size];

  page.pictures = (number) => {
    const shapes = (page.data.rectangles[number] ?? []).map(shapeOf);
    if (!shapes.length) return null;
    const width = Math.min(document.getElementById("call").clientWidth - 4, widest);
    const frames = Object.entries(Object.groupBy(shapes, ({ name }) => name.match(/(before|after)$/)?.[0] ?? ""));
    const figures = frames.map(([when, part]) => {
      const picture = draw(part, boundsOf(shapes), width / frames.length - 4);
      return element("figure", picture, when ? element("figcaption", when) : null);
    });
    const table = page.table("rectangles", "rectangles", ["", "from", "to", "size"], shapes.map(rowOf));
    return element("div.pictured", element("div.frames", figures), table);
  };
}
