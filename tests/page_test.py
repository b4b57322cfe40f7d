"""Checks the page of a replay in a browser: its views against the trace and `decide`, use by keyboard and
without scripts, accessibility, and that texts of a scenario are not interpreted as HTML.

page_test.py CHECKOUT AXE CAMHOOK...

AXE is the accessibility checker's script, CAMHOOK the command that runs the tool.
"""

import itertools
import json
import pathlib
import re
import subprocess
import sys
import tempfile
import time
import unittest

from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.keys import Keys

CHECKOUT, AXE = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
CAMHOOK = sys.argv[3:]
SCENARIOS = sorted((CHECKOUT / "scenarios").glob("*.json"))
LOOKED_AT = {"still_burst": 5, "raw_capture": 2, "third_party_apps": 1, "result_regions": 1, "sensor_modes": 4}
HOSTILE = "</script><script>hacked = 1</script><img src=x onerror='hacked = 1'>\"'&amp;<b id=hacked>"
BIG = 9007199254740993  # not exact as a JavaScript number
OPTIONS = ("--headless --no-sandbox --disable-gpu --disable-quic --no-first-run --disable-background-networking "
           "--disable-component-update --disable-sync")

# Returns whether the call under the hairline is the marked one, the value of the slider, and for each lane at the
# open call: its key, its value, the height of its line or null, the number of its bands.
LANES = """
const middle = ({left, width}) => left + width / 2;
const at = middle(document.querySelector('.hairline').getBoundingClientRect());
const covers = ({left, right}) => left <= at && at < right;
const under = [...document.querySelectorAll('.calls .call')].filter((call) => covers(call.getBoundingClientRect()));
const lanes = [...document.querySelectorAll('.lane[data-key]')].map((lane) => {
  const x = at - lane.querySelector('svg').getBoundingClientRect().left;
  const path = lane.querySelector('.line-0')?.getAttribute('d') ?? '';
  const steps = [...path.matchAll(/[ML]([-.\\d]+) ([-.\\d]+)H([-.\\d]+)/g)].map((step) => step.slice(1).map(Number));
  const line = steps.find(([from, , to]) => from <= x && x < to)?.[1] ?? null;
  const bands = [...lane.querySelectorAll('.band')].filter((band) => covers(band.getBoundingClientRect())).length;
  return [lane.dataset.key, lane.querySelector('output').innerText, line, bands];
});
return [under.length === 1 && under[0].classList.contains('open'),
        Number(document.querySelector('.calls').getAttribute('aria-valuenow')), lanes];
"""

# Returns elements whose content is cut off without a scroll bar or an ellipsis.
CUT_OFF = """
return [...document.querySelectorAll('#page *')].filter((each) => {
  const {overflowX, textOverflow, display} = getComputedStyle(each);
  return each.checkVisibility() && !each.closest('svg') && display !== 'inline' && overflowX !== 'auto'
    && textOverflow !== 'ellipsis' && each.scrollWidth > each.clientWidth + 1;
}).map((each) => each.outerHTML.slice(0, 200));
"""


def run(*words):
    return subprocess.run([*CAMHOOK, *map(str, words)], capture_output=True, check=True, timeout=300).stdout


def items(call, container, tag):
    return ((call.get(container) or {}).get(tag) or {}).get("items")


def is_capture(call):
    return items(call, "meta", "MTK_HESK_STILL_CAPTURE") == [1] and call["state"]


def numbers(text):
    """Returns the set of numbers in a text, in which commas may group digits."""
    return {float(number) for number in re.findall(r"-?\d+(?:\.\d+)?", re.sub(r"(?<=\d),(?=\d)", "", text))}


def is_plain(entry):
    """Returns True if the page shows the items of an entry unchanged."""
    numeric = all(isinstance(item, (int, float)) for item in entry["items"])
    return numeric and entry["type"] in ("int32", "float") and len(entry["items"]) <= 12


class PageTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = pathlib.Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        options = webdriver.ChromeOptions()
        for option in [*OPTIONS.split(), f"--user-data-dir={cls.folder}/profile"]:
            options.add_argument(option)
        options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
        cls.browser = webdriver.Chrome(options=options, service=Service("/usr/bin/chromedriver"))
        cls.addClassCleanup(cls.browser.quit)
        cls.browser.get("about:blank")
        cls.browser.get_log("performance")  # of the browser's first page

    def tearDown(self):
        self.assertEqual(self.browser.get_log("browser"), [])
        messages = [json.loads(entry["message"])["message"] for entry in self.browser.get_log("performance")]
        requests = [message["params"]["request"] for message in messages
                    if message["method"] == "Network.requestWillBeSent"]
        others = [request["url"] for request in requests if not request["url"].startswith(self.folder.as_uri())]
        self.assertEqual(others, [])

    def open(self, scenario):
        path = scenario if isinstance(scenario, pathlib.Path) else CHECKOUT / "scenarios" / f"{scenario}.json"
        page = self.folder / f"{path.stem}.html"
        if not page.exists():
            run("replay", "--html", page, path)
        self.size(1400)
        self.browser.get("about:blank")
        self.browser.get(page.as_uri())

    def go(self, address):
        self.browser.execute_async_script(
            "const [address, done] = arguments;"
            "if (location.hash === address) done();"
            "else { addEventListener('hashchange', () => done(), {once: true}); location.hash = address; }",
            f"#{address}")

    def script(self, expression, *arguments):
        return self.browser.execute_script(f"return {expression}", *arguments)

    def texts(self, selector):
        return self.script("[...document.querySelectorAll(arguments[0])].filter((found) =>"
                           " found.checkVisibility()).map((found) => found.innerText.trim())", selector)

    def cells(self, rows):
        return self.script("[...document.querySelectorAll(arguments[0])].map("
                           "(row) => [...row.cells].map((cell) => cell.textContent.trim()))", rows)

    def size(self, width, scheme="light"):
        self.browser.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", {
            "width": width, "height": 900, "deviceScaleFactor": 1, "mobile": False})
        self.browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {
            "features": [{"name": "prefers-color-scheme", "value": scheme}]})

    # Comparison of the page with the trace.

    def check_lanes(self, number, call):
        """Compares the lanes with the open call; returns value and line height by lane."""
        is_marked, slider, lanes = self.browser.execute_script(LANES)
        opened = self.script("Number(document.querySelector('#call input').value)")
        self.assertEqual((is_marked, slider, opened), (True, number, number))
        heights = {}
        for key, text, line, bands in lanes:
            tag, hook, *place = key.split(" ")
            if tag == "sensor" or [call["call"], str(call.get("sensor"))] != [hook, place[-1]]:
                continue  # a sensor mode, the state, another hook
            entry = (call[place[0]] or {}).get(tag)
            self.assertEqual(text in ("absent", "–"), entry is None, key)
            self.assertEqual((line is not None) + bands, entry is not None, key)
            if entry and is_plain(entry):
                self.assertEqual(numbers(text), set(entry["items"]), key)
                heights[key] = (entry["items"][0], line)
        return heights

    def check_table(self, call):
        rows = self.script("[...document.querySelectorAll('.changes tr[data-tag]')].map((row) =>"
                           " [row.closest('table').caption, ...row.cells].map((cell) => cell.textContent))")
        shown = {(part, tag): cells for part, tag, *cells in rows}
        before = {(part, tag): value for part, tags in call.get("before", {}).items() for tag, value in tags.items()}
        self.assertEqual(set(shown), set(before))
        for (part, tag), (was, _, step) in shown.items():
            writes = [f"{write['step']} {write['file'].split('/')[-1]}:{write['line']}" for write in call["writes"]
                      if (write["container"], write["tag"]) == (part, tag)]
            self.assertTrue(writes or part == "state", tag)
            self.assertEqual(step, (writes or [""])[-1])
            self.assertEqual(was == "absent", before[part, tag] is None)

    def check_burst(self, calls):
        captures = {number: call for number, call in enumerate(calls, 1) if is_capture(call)}
        self.assertEqual(bool(captures), "Burst" in self.texts("#views a"))
        for number, call in captures.items():
            self.go(f"view=burst&call={number}")
            columns = self.texts(".burst thead th")
            [row] = self.cells(f".burst tr[data-call='{number}']")
            request, frames = call["args"]["requestNo"], dict(call["state"]["mNonZslFrames"])
            index = items(call, "meta", "MTK_HESK_FRAME_INDEX")
            self.assertEqual(row[:2], [str(number), str(request)])
            self.assertEqual([column for column, cell in zip(columns, row) if cell == "●"],
                             [str(request)] if request in frames else [])
            self.assertEqual({column for column, cell in zip(columns, row) if cell in ("●", "·")},
                             set(map(str, frames)))
            self.assertEqual(row[-1].split()[-1], str(call["state"]["mCaptureCount"]))
            said = "no burst recorded"
            if request in frames:
                said = f"frame {frames[request]} of {len(frames)}" + (", not written" if index is None else "")
            elif frames:
                first, last = min(frames, key=frames.get), max(frames, key=frames.get)
                said = f"not in the burst of {first}" + (f" to {last}" if last != first else "")
            if request not in frames:
                said += "; no index written" if index is None else f"; {index[0]} by default"
            self.assertEqual([row[-2], self.texts(".answer")[-1]], [said, f"Request {request}: {said}"])

    def check_mode(self, path, number, call):
        self.go(f"view=mode&call={number}")
        decision = json.loads(run("decide", "--json", "--scenario", path, "--call", number))
        found = [filter["filter"] for filter in decision["filters"] if filter["found"] is not None]
        self.assertEqual(self.script("document.querySelector('.decided')?.dataset.filter"), (found or [None])[0])
        asked = [filter["asked"] for filter in decision["filters"]] if decision["rows"] else []
        self.assertEqual([not text.endswith("never asked") for text in self.texts(".stage th")], asked)
        row = decision["base"]["row"]
        self.assertEqual([cells[0] for cells in self.cells(".funnel .taken")], [f"row {row}"] if row else [])
        mode = f"{call['return']} {decision['name']}"
        by = f", decided by {decision['decidedBy']['text']}" if decision["decidedBy"]["kind"] == "override" else ":"
        self.assertTrue(self.texts(".answer")[-1].startswith(mode + by), mode + by)

    def check_pictures(self, call):
        """Checks the corners of the crop, of faces and of regions before their translation."""
        shown = {row[0]: row[1:] for row in self.cells(".rectangles tbody tr")}
        crops = items(call, "hal", "MTK_P1NODE_SCALAR_CROP_REGION") or []
        faces = items(call, "out", "MTK_RAW_ALGO_FACE_RECTS") or []
        said = {"crop of the frame": crop for crop in crops}
        said |= {f"face {place}": face for place, face in enumerate(faces, 1)}
        for effect in call["effects"]:
            for place, region in enumerate(effect.get("regions", []), 1):
                kind = {3: "eye", 4: "lot", 5: "body"}[region["kind"]]
                said[f"{kind} {place}, before"] = region["rect"]
        signs = set(self.script("[...document.querySelectorAll('.sign')].map((sign) => sign.textContent)"))
        for name, (x, y, width, height) in said.items():
            left, right, top, bottom = *sorted((x, x + width)), *sorted((y, y + height))
            corners = [f"{left}, {top}", f"{right}, {bottom}"]
            self.assertEqual(shown[name], [*corners, f"{width} × {height}"])
            if name.startswith("crop") and (width, height) != (4000, 3000):
                self.assertLessEqual({name, *corners}, signs)
        return said

    def test_views_agree_with_the_trace(self):
        pictured = []
        for path in SCENARIOS:
            with self.subTest(path.stem):
                calls = json.loads(run("replay", "--json", "--steps", path))["calls"]
                self.open(path.stem)
                heights = {}
                last = len(calls)
                for number, call in enumerate(calls, 1):
                    self.go(f"call={number}")
                    if number in (1, 2, last // 2, last - 1, last):
                        for key, height in self.check_lanes(number, call).items():
                            heights.setdefault(key, []).append(height)
                    self.check_table(call)
                    pictured += self.check_pictures(call).items()
                for points in heights.values():
                    for (value, line), (other, other_line) in itertools.combinations(points, 2):
                        self.assertTrue(line is None or (value > other) == (line < other_line))
                self.check_burst(calls)
                for number, call in enumerate(calls, 1):
                    if call["call"] == "decideSensorScenario":
                        self.check_mode(path, number, call)
        self.assertIn("face 10", dict(pictured))
        self.assertIn(("crop of the frame", [1000, 750, 2000, 1500]), pictured)

    # Interaction.

    def press(self, *keys):
        self.browser.switch_to.active_element.send_keys(*keys)

    def tab_to(self, selector):
        for _ in range(40):
            self.press(Keys.TAB)
            if self.script("document.activeElement.matches(arguments[0])", selector):
                return
        self.fail(f"{selector} is not reached by keyboard")

    def wait_for(self, expression, wanted):
        deadline = time.monotonic() + 10
        while self.script(expression) != wanted and time.monotonic() < deadline:
            time.sleep(0.02)
        self.assertEqual(self.script(expression), wanted)

    def test_keyboard_and_pointer(self):
        self.open("video_4k60")
        self.tab_to("[data-view=mode]")
        self.press(Keys.ENTER)
        self.wait_for("document.getElementById('mode').hidden", False)
        self.browser.back()
        self.wait_for("document.getElementById('lanes').hidden", False)
        self.tab_to("[role=slider]")
        self.press(Keys.ARROW_RIGHT, Keys.ARROW_RIGHT)
        self.wait_for("document.querySelector('h2').innerText", "updateRequestMeta sensor 0, requestNo 1")
        self.browser.execute_script(
            "const {left, width, top} = document.querySelectorAll('.call')[3].getBoundingClientRect();"
            "const place = {clientX: left + width / 2, clientY: top + 5, bubbles: true};"
            "const target = document.elementFromPoint(place.clientX, place.clientY);"
            "for (const type of ['pointermove', 'click']) target.dispatchEvent(new PointerEvent(type, place));")
        self.wait_for("document.querySelector('#call input').value", "4")
        self.assertIn("call 4 updateSessionParams sensor 0", self.texts("#tip")[0])
        self.browser.execute_script("document.querySelector('.axis-content').dispatchEvent(new Event('pointerleave'))")
        self.assertEqual(self.texts("#tip"), [])

    def test_widths_colours_and_accessibility(self):
        axe = AXE.read_text()
        for name, call in LOOKED_AT.items():
            self.open(name)
            self.browser.execute_script(axe)
            names = "[...document.querySelectorAll('#views a')].map((link) => link.dataset.view)"
            for view in self.script(names) or ["calls"]:
                for width, scheme, most in ((360, "light", 240), (1400, "dark", 160)):
                    with self.subTest(name, view=view, width=width, scheme=scheme):
                        self.size(width, scheme)
                        self.go(f"view={view}&call={call}")
                        self.assertLessEqual(self.script("document.documentElement.scrollWidth - innerWidth"), 0)
                        self.assertEqual(self.browser.execute_script(CUT_OFF), [])
                        top = self.script("document.querySelector('.view').getBoundingClientRect().top")
                        self.assertLess(top, most)
                        found = self.browser.execute_async_script(
                            "const done = arguments[0];"
                            "axe.run().then(({violations}) => done(violations"
                            ".filter(({impact}) => ['serious', 'critical'].includes(impact))"
                            ".map(({id, nodes}) => [id, nodes[0].html, nodes[0].failureSummary])))")
                        self.assertEqual(found, [])

    def test_shows_trace_without_scripts(self):
        def switch(off):
            self.browser.execute_cdp_cmd("Emulation.setScriptExecutionDisabled", {"value": off})
        switch(True)
        self.addCleanup(switch, False)
        self.open("still_burst")
        text = self.browser.find_element("tag name", "body").text
        self.assertEqual(re.findall(r"(?m)^(\d)\s+updateRequestMeta", text), list("123456"))

    def test_escapes_texts_and_keeps_integers_exact(self):
        scenario = self.folder / "hostile.json"
        scenario.write_text(json.dumps({
            "about": HOSTILE,
            "platform": {"properties": {HOSTILE: HOSTILE}, "eventStore": {"APP_NAME": HOSTILE, "APP_TYPE": HOSTILE}},
            "calls": [
                {"call": "setEvent", "key": HOSTILE, "value": HOSTILE},
                {"call": "updateRequestMeta", "sensor": 0, "requestNo": 1,
                 "meta": {"HESK_CONTROL_DUMPPATH": HOSTILE, "HESK_CONTROL_CURRENTMODE": BIG}},
                {"call": "dumpMetadata", "sensor": 0, "frame": 1, "name": "<b id=hacked>",
                 "meta": {"HESK_CONTROL_DUMPPATH": HOSTILE}},
                {"call": "decideSensorScenario", "sensor": 0, "meta": {}, "video": True, "width": 1, "height": 1},
            ]}))
        self.open(scenario)
        self.assertIn(HOSTILE, self.texts("header")[0])
        for view, call in itertools.product(("calls", "mode"), (1, 2, 3, 4, "%3Cimg src=x%3E")):
            self.go(f"view={view}&call={call}&find=%3Cb%3E")
            self.browser.execute_script("document.querySelectorAll('details').forEach((fold) => fold.open = true)")
            self.assertEqual(self.script("[typeof hacked, document.querySelectorAll('img, #hacked').length]"),
                             ["undefined", 0])
            if call == 2:
                self.assertIn(f"{BIG:,}", self.texts("#call")[0])
        self.assertIn(HOSTILE, self.texts("#mode .inputs")[0])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=1)
