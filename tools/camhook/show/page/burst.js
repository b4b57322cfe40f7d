// The burst, still capture by still capture: which frames the book has, what is counted, what is written.
{
  const { element } = page;
  const mostRows = 100;
  const mostFrames = 24; // of a book that are drawn

  const isCapture = (call) => page.items(call, "meta", "MTK_HESK_STILL_CAPTURE")?.[0] === 1;
  const first = (call, tag) => page.items(call, "meta", tag)?.[0] ?? null;

  const frameOf = ([request, index], own, written) =>
    element(
      "li",
      { class: request === own ? "frame own" : "frame" },
      `${request}`,
      element("small", {}, ` ${index}${request === own ? (written ? " ✓" : "") : ""}`),
    );

  // The frames around this request's own.
  const bookOf = (frames, own, written) => {
    if (!frames.length) return "empty";
    const place = Math.max(
      frames.findIndex(([request]) => request === own),
      0,
    );
    const from = Math.max(Math.min(place - mostFrames / 2, frames.length - mostFrames), 0);
    const shown = frames.slice(from, from + mostFrames);
    return element(
      "ul",
      { class: "book" },
      ...shown.map((frame) => frameOf(frame, own, written)),
      ...(frames.length > shown.length ? [element("li", {}, `of ${frames.length}`)] : []),
    );
  };

  const announcedOf = (call) => {
    const frames = page.items(call, "meta", "HESK_CONTROL_HISFRAME");
    return frames ? `${frames[0]} + ${frames[1] ?? 0}` : "–";
  };

  const writtenOf = (index, count) => (index === null ? "–" : `frame ${index} of ${count}`);

  const zslOf = (enabled) => {
    if (enabled === null) return "–";
    return enabled ? "on" : "off";
  };

  const rowOf = (number, open) => {
    const call = page.calls[number - 1];
    const request = call.args.requestNo;
    const index = first(call, "MTK_HESK_FRAME_INDEX");
    const before = page.stateBefore(number)?.mCaptureCount ?? 0;
    const after = call.state.mCaptureCount;
    return element(
      "tr",
      { "data-call": number, class: number === open ? "here" : null },
      page.rowHead(page.callLink(number)),
      element("td", {}, `${request}`),
      element("td", {}, bookOf(call.state.mNonZslFrames, request, index !== null)),
      element("td", {}, before === after ? `${after}` : `${before} → ${after}`),
      element("td", {}, writtenOf(index, first(call, "MTK_HESK_FRAME_COUNT"))),
      element("td", {}, announcedOf(call)),
      element("td", {}, zslOf(first(call, "ANDROID_CONTROL_ENABLE_ZSL"))),
      element("td", {}, `${call.sensor}`),
    );
  };

  const heads = [
    "call",
    "request",
    "book: request and index",
    "capture count",
    "written",
    "announced: past + new",
    "ZSL",
    "sensor",
  ];

  page.views.push({
    name: "burst",
    title: "Burst",
    offered: () => page.calls.some(isCapture),
    open(section) {
      const captures = page.callsWith(isCapture);
      const content = element("div");
      section.append(
        element(
          "p",
          { class: "hint" },
          "The book has the frames that are taken anew, without zero shutter lag (ZSL): request and index. " +
            "A request's own frame is framed, with ✓ where its index and the book's size are written. " +
            "Announced are frames of the past, with ZSL, and new ones.",
        ),
        content,
      );
      return ({ call }) => {
        // Of many those from the open call on.
        const place = Math.max(
          captures.findLastIndex((number) => number <= call),
          0,
        );
        const from = place - (place % mostRows);
        const shown = captures.slice(from, from + mostRows);
        const lead = (text, number) =>
          number ? element("a", { href: page.address({ call: number }) }, text) : null;
        content.replaceChildren(
          page.table(
            `still captures ${from + 1} to ${from + shown.length} of ${captures.length}`,
            heads,
            shown.map((number) => rowOf(number, call)),
            "burst",
          ),
          element(
            "p",
            { class: "controls" },
            lead("earlier", captures[from - mostRows]),
            lead("later", captures[from + mostRows]),
          ),
        );
      };
    },
  });
}
