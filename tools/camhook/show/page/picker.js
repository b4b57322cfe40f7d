// Views of one call each lead from one of their calls to the next.
{
  // Of the calls that a view has, the open one, else the latest before it, else the first.
  const chosen = (numbers, call) => numbers.findLast((number) => number <= call) ?? numbers[0];

  const link = (text, call) =>
    page.element(
      "a",
      call === undefined ? { "aria-disabled": "true" } : { href: page.address({ call }) },
      text,
    );

  // A view that draws one call at a time; `draw` gives the elements for a call's number.
  page.viewOfCalls = (name, title, holds, draw) => {
    let numbers;
    page.views.push({
      name,
      title,
      offered: () => page.calls.some(holds),
      open(section) {
        numbers = page.callsWith(holds);
        const content = page.element("div");
        section.append(content);
        return ({ call }) => {
          const number = chosen(numbers, call);
          const place = numbers.indexOf(number);
          const { sensor, call: hook } = page.calls[number - 1];
          content.replaceChildren(
            page.element(
              "nav",
              { class: "picker", "aria-label": `calls of ${title}` },
              link("‹ previous", numbers[place - 1]),
              link("next ›", numbers[place + 1]),
              page.element(
                "span",
                {},
                page.callLink(number),
                ` ${hook}, sensor ${sensor} (${place + 1} of ${numbers.length})`,
              ),
            ),
            ...draw(number),
          );
        };
      },
    });
  };
}
