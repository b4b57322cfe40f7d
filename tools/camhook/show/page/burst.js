// Still captures by recorded requests: a dot marks the request's own frame.
{
  const { element } = page;
  const mostRows = 100; // around the open call
  const mostColumns = 64;

  const isCapture = (call) =>
    call.call === "updateRequestMeta" && call.state && page.items(call, "meta", "MTK_HESK_STILL_CAPTURE")?.[0] === 1;

  // A still capture with its recorded frames in the order of their indexes: request numbers wrap.
  const captureOf = (number) => {
    const call = page.call(number);
    const frames = call.state.mNonZslFrames.toSorted(([, one], [, other]) => one - other);
    return { number, call, frames, request: call.args.requestNo };
  };

  const rangeText = (frames) => {
    const [[from], [to]] = [frames[0], frames.at(-1)];
    return from === to ? `${from}` : `${from} to ${to}`;
  };

  const noteOf = ({ call, frames, request }) => {
    const [index] = page.items(call, "meta", "MTK_HESK_FRAME_INDEX") ?? [null];
    const [count] = page.items(call, "meta", "MTK_HESK_FRAME_COUNT") ?? [null];
    const own = frames.find(([recorded]) => recorded === request);
    if (own && index !== null) return `frame ${index} of ${count}`;
    if (own) return `frame ${own[1]} of ${frames.length}, not written`;
    const where = frames.length ? `not in the burst of ${rangeText(frames)}` : "no burst recorded";
    return `${where}; ${index === null ? "no index written" : `${index} by default`}`;
  };

  // Single requests, or the ranges of the bursts if there are too many for columns.
  const columnsOf = (captures) => {
    const bursts = captures.map(({ frames }) => frames).filter(({ length }) => length);
    const requests = new Set(bursts.flat().map(([request]) => request));
    if (requests.size <= mostColumns) return new Map([...requests].map((request) => [`${request}`, [request]]));
    return new Map(bursts.map((frames) => [rangeText(frames), frames.map(([request]) => request)]));
  };

  const cellOf = (requests, { frames, request }) => {
    if (!frames.some(([recorded]) => requests.includes(recorded))) return element("td.frame");
    if (!requests.includes(request)) return element("td.frame.recorded", "·");
    return element("td.frame.recorded.own", { title: `request ${request}` }, "●");
  };

  const rowOf = (capture, columns, open) => {
    const { number, call, request } = capture;
    const counts = [call.before?.state?.mCaptureCount, call.state.mCaptureCount];
    return element("tr", { "data-call": number, class: number === open ? "here" : null },
      element("th", { scope: "row" }, element("a", { href: page.address({ call: number }) }, number)),
      element("td.number", request),
      [...columns.values()].map((requests) => cellOf(requests, capture)),
      element("td", noteOf(capture)),
      element("td.number", counts.filter((count) => count !== undefined).join(" → ")),
    );
  };

  const matrix = (sensor, numbers, open) => {
    const place = Math.max(numbers.findLastIndex((number) => number <= open), 0);
    const from = Math.max(Math.min(place - mostRows / 2, numbers.length - mostRows), 0);
    const captures = numbers.slice(from, from + mostRows).map(captureOf);
    const columns = columnsOf(captures);
    const heads = ["call", "request", ...columns.keys(), "frame", "capture count"];
    const range = `, ${from + 1} to ${from + captures.length} of ${numbers.length}`;
    const part = numbers.length > mostRows ? range : "";
    const rows = captures.map((capture) => rowOf(capture, columns, open));
    return page.table("burst", `still captures of sensor ${sensor}${part}`, heads, rows);
  };

  page.burst = () => {
    const numbers = page.numbersOf(isCapture);
    if (!numbers.length) return null;
    const bySensor = Map.groupBy(numbers, (number) => page.call(number).sensor);
    const hint = "Columns are the recorded requests: ● the request's own frame, · another one of the burst.";
    const content = element("div");
    return {
      section: element("section", { id: "burst", "aria-label": "burst" }, content, element("p.note", hint)),
      draw({ call }) {
        const open = numbers.includes(call) ? captureOf(call) : null;
        const answer = open && element("p.answer", element("b", `Request ${open.request}: `), noteOf(open));
        const tables = [...bySensor].map(([sensor, own]) => matrix(sensor, own, call));
        content.replaceChildren(element("div", answer, tables));
        const row = content.querySelector(".here");
        const box = row?.closest(".scroll");
        if (box) box.scrollTop = row.offsetTop - box.clientHeight / 2;
      },
    };
  };
}
