// Elements of the document. Texts are inserted as text; control and direction characters are escaped.
{
  const visible = (text) =>
    text.replace(/[\p{Cc}\p{Cf}\u2028\u2029]/gu, (character) =>
      character === "\n" ? character : `\\u{${character.codePointAt(0).toString(16)}}`,
    );

  const isAttributes = (value) => Object.getPrototypeOf(value ?? "") === Object.prototype;

  // Sets attributes; a function is added as the listener of the event that its key names.
  page.set = (element, attributes) => {
    for (const [name, value] of Object.entries(attributes)) {
      if (typeof value === "function") element.addEventListener(name, value);
      else if (value !== null) element.setAttribute(name, value);
    }
  };

  const maker = (create) => (name, ...content) => {
    const [tag, ...classes] = name.split(".");
    const made = create(tag);
    made.classList.add(...classes);
    if (isAttributes(content[0])) page.set(made, content.shift());
    const children = content.flat(Infinity).filter((child) => child !== null);
    made.append(...children.map((child) => (child instanceof Node ? child : visible(`${child}`))));
    return made;
  };

  // An element `name.class` with attributes and children; null children are left out.
  page.element = maker((tag) => document.createElement(tag));
  page.shape = maker((tag) => document.createElementNS("http://www.w3.org/2000/svg", tag));

  // A tag's or a step's name that may break between its words.
  page.name = (name) => {
    const words = name.split(/(?<=_)|(?=[A-Z][a-z])/);
    return page.element("span.name", words.flatMap((word) => [word, page.element("wbr")]));
  };

  // A table in a box that scrolls if the table is wider. Cells are elements or texts; the first of a row is
  // its heading.
  page.table = (kind, caption, heads, rows) => {
    const { element } = page;
    const cellOf = (content, index) => {
      if (content instanceof HTMLTableCellElement) return content;
      return index === 0 ? element("th", { scope: "row" }, content) : element("td", content);
    };
    const rowOf = (row) => (row instanceof HTMLTableRowElement ? row : element("tr", row.map(cellOf)));
    const head = element("tr", heads.map((text) => element("th", { scope: "col" }, text)));
    const table = element("table", { class: kind },
      caption ? element("caption", caption) : null,
      heads.length ? element("thead", head) : null,
      element("tbody", rows.map(rowOf)),
    );
    return element("div.scroll", { tabindex: 0, role: "region", "aria-label": caption || kind }, table);
  };

  page.fold = (kind, summary, ...content) =>
    page.element("details", { class: kind }, page.element("summary", summary), content);
}
