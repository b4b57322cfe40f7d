// Detected regions before and after their translation.
{
  const kinds = new Map([
    [3, "eye"],
    [4, "lot"],
    [5, "body"],
  ]);

  const translationOf = (call) =>
    call.effects.find(({ op, regions }) => op === "sat.translate" && regions.length);

  const rectOf = ([left, top, right, bottom]) => [left, top, right - left, bottom - top];

  // What was written: eyes as left, right, top and bottom; bodies behind their count.
  const written = (call, kind) => {
    const tag = Object.keys(call.meta ?? {}).find((name) => Number(name) === Number(call.args.tag));
    const items = page.items(call, "meta", tag) ?? [];
    const sides = kind === 5 ? items.slice(1) : items;
    const rects = [];
    for (let from = 0; from + 4 <= sides.length; from += 4) {
      const [a, b, c, d] = sides.slice(from, from + 4);
      rects.push(rectOf(kind === 3 ? [a, c, b, d] : [a, b, c, d]));
    }
    return rects;
  };

  const shapesOf = (call) => {
    const { regions } = translationOf(call);
    const after = written(call, regions[0].kind);
    return regions.flatMap(({ kind, rect }, index) => {
      const name = `${kinds.get(kind) ?? `kind ${kind}`} ${index + 1}`;
      const before = { name: `${name} before`, sign: `${index + 1}`, kind: "before", rect };
      if (!after[index]) return [before];
      return [before, { name: `${name} after`, sign: `${index + 1}′`, kind: "after", rect: after[index] }];
    });
  };

  page.viewOfCalls("regions", "Regions", translationOf, (number) => {
    const call = page.calls[number - 1];
    const { ratio, index } = translationOf(call);
    return [
      page.element("p", {}, `Camera ${call.args.cameraId}, place ${index} in the list, ratio ${ratio}.`),
      page.picture(`regions of call ${number}`, shapesOf(call)),
    ];
  });
}
