// The scripts of the page are joined into one; each file adds to `page` what the others need.
"use strict";

// Integers that a number cannot hold stay texts. Only JSON with many digits in a row can have them.
const exactly = (key, value, context) =>
  Number.isInteger(value) && !Number.isSafeInteger(value) ? (context?.source ?? value) : value;
const json = document.getElementById("data").textContent;

const page = {
  data: JSON.parse(json, /\d{16}/.test(json) ? exactly : null),
  containers: ["meta", "app", "hal", "out"],
};
page.calls = page.data.trace.calls; // call 1 of the page comes first

const address = () => new URLSearchParams(location.hash.slice(1));

// The state of the page is its address: `#call=3&view=burst&find=fps`.
page.state = () => ({
  call: Math.min(Math.max(parseInt(address().get("call")) || 1, 1), page.calls.length),
  view: address().get("view"),
  find: address().get("find") ?? "",
});

// The address of the present state with changes; null removes a key.
page.address = (changes) => {
  const kept = Object.entries({ ...Object.fromEntries(address()), ...changes }).filter(([, value]) => value !== null);
  return `#${new URLSearchParams(kept)}`;
};

page.open = (call) => (location.hash = page.address({ call }));

// Changes the state without a new entry in the browser's history.
page.replace = (changes) => location.replace(page.address(changes));

page.call = (number) => page.calls[number - 1];

// The items of a tag after the call; null if it is absent.
page.items = (call, container, tag) => call[container]?.[tag]?.items ?? null;

page.errors = (call) => call.logs.filter(({ level }) => level === "E").length;

page.numbersOf = (holds) => page.calls.flatMap((call, index) => (holds(call) ? [index + 1] : []));

// A container as the call received it, in the order of the entries after the call.
page.given = (call, container) => {
  const entries = { ...call[container], ...call.before?.[container] };
  return Object.entries(entries).filter(([, entry]) => entry !== null);
};

// What the call changed in a container or in the updater's state: [name, before, after].
page.changes = (call, part) =>
  Object.entries(call.before?.[part] ?? {}).map(([name, before]) => [name, before, call[part]?.[name] ?? null]);

// The writes of the call to a tag, in order.
page.writes = (call, container, tag) =>
  (call.writes ?? []).filter((write) => write.container === container && write.tag === tag);
