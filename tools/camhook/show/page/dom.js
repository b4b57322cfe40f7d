// Elements of the document.
{
  const make = (element, attributes, children) => {
    for (const [name, value] of Object.entries(attributes)) {
      if (typeof value === "function") element.addEventListener(name, value);
      else if (value !== null && value !== false) element.setAttribute(name, value === true ? "" : value);
    }
    element.append(...children.filter((child) => child !== null));
    return element;
  };

  // An element with its attributes, its listeners by event, and its children; texts go in as texts.
  page.element = (name, attributes = {}, ...children) =>
    make(document.createElement(name), attributes, children);

  page.shape = (name, attributes = {}, ...children) =>
    make(document.createElementNS("http://www.w3.org/2000/svg", name), attributes, children);

  // A table in a box that scrolls where the table is wider; cells that are no elements become them.
  page.table = (caption, heads, rows, name = "") => {
    const { element } = page;
    const cell = (content) =>
      content instanceof HTMLTableCellElement ? content : element("td", {}, content);
    return element(
      "div",
      { class: "scroll", tabindex: "0", role: "region", "aria-label": caption },
      element(
        "table",
        { class: name },
        element("caption", {}, caption),
        element(
          "thead",
          {},
          element("tr", {}, ...heads.map((head) => element("th", { scope: "col" }, head))),
        ),
        element(
          "tbody",
          {},
          ...rows.map((row) =>
            row instanceof HTMLTableRowElement ? row : element("tr", {}, ...row.map(cell)),
          ),
        ),
      ),
    );
  };

  page.rowHead = (...content) => page.element("th", { scope: "row" }, ...content);

  page.callLink = (call) =>
    page.element("a", { href: page.address({ call, view: "calls" }) }, `call ${call}`);
}
