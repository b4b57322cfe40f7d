"""The page of a replay in a browser: every view shows what the trace says, by keyboard too, and what a
scenario holds stays text.

page_test.py CHECKOUT AXE CAMHOOK...

AXE is the script of the accessibility checks, CAMHOOK the command that runs the tool.
"""

import json
import pathlib
import subprocess
import sys
import tempfile
import time
import types
import unittest

from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.keys import Keys

CHECKOUT, AXE = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
CAMHOOK = sys.argv[3:]
SCENARIOS = sorted(path for path in (CHECKOUT / "scenarios").glob("*.json") if ".trace" not in path.name)
LOOKED_AT = ["still_burst", "raw_capture", "video_4k60", "third_party_apps", "result_regions"]
CONTAINERS = ["meta", "app", "hal", "out"]
HOSTILE = "</script><script>hacked = 1</script><img src=x onerror='hacked = 1'>\"'&amp;<b id=hacked>"
OPTIONS = ("--headless --no-sandbox --disable-gpu --no-first-run --disable-background-networking "
           "--disable-component-update --disable-sync")


def run(*words):
    return subprocess.run([*CAMHOOK, *map(str, words)], capture_output=True, check=True, timeout=60).stdout


def items(call, container, tag):
    return ((call.get(container) or {}).get(tag) or {}).get("items")


def is_capture(call):
    return items(call, "meta", "MTK_HESK_STILL_CAPTURE") == [1]


def translation(call):
    return next((effect["regions"] for effect in call["effects"] if effect["op"] == "sat.translate"), [])


class PageTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.folder.cleanup)
        options = webdriver.ChromeOptions()
        for option in [*OPTIONS.split(), f"--user-data-dir={cls.folder.name}/profile"]:
            options.add_argument(option)
        options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
        cls.browser = webdriver.Chrome(options=options, service=Service("/usr/bin/chromedriver"))
        cls.addClassCleanup(cls.browser.quit)
        cls.browser.get("about:blank")
        cls.browser.get_log("performance")  # of the browser's own first page

    def tearDown(self):
        self.assertEqual(self.browser.get_log("browser"), [])
        messages = [json.loads(entry["message"])["message"] for entry in self.browser.get_log("performance")]
        asked = [message["params"]["request"]["url"] for message in messages
                 if message["method"] == "Network.requestWillBeSent"]
        self.assertTrue(all(url.startswith(f"file://{self.folder.name}/") for url in asked), asked)

    def page(self, scenario):
        path = pathlib.Path(self.folder.name, f"{scenario.stem}.html")
        if not path.exists():
            run("replay", "--html", path, scenario)
        return path

    def stored(self, name):
        return self.page(CHECKOUT / "scenarios" / f"{name}.json")

    def open(self, path, address=""):
        self.browser.get(f"file://{path}#{address}")

    def go(self, address):
        """Opens a place of the open page."""
        self.browser.execute_async_script(
            "const [address, done] = arguments;"
            "if (location.hash === address) done();"
            "else { addEventListener('hashchange', () => done(), {once: true}); location.hash = address; }",
            f"#{address}")

    def script(self, expression, *arguments):
        return self.browser.execute_script(f"return {expression}", *arguments)

    def texts(self, selector):
        """The texts of the elements that are seen."""
        return self.script("[...document.querySelectorAll(arguments[0])].filter((found) =>"
                           " found.checkVisibility()).map((found) => found.innerText)", selector)

    def cells(self, rows):
        """The texts of the cells of each row."""
        return self.script("[...document.querySelectorAll(arguments[0])].map("
                           "(row) => [...row.cells].map((cell) => cell.innerText.trim()))", rows)

    def views(self):
        return self.script("[...document.querySelectorAll('#views a')].map((link) => link.dataset.view)")

    def size(self, width, scheme="light"):
        self.browser.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", {
            "width": width, "height": 900, "deviceScaleFactor": 1, "mobile": False})
        self.browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {
            "features": [{"name": "prefers-color-scheme", "value": scheme}]})

    # What the page shows and what the trace says, of all calls or of one.

    def check_calls(self, replay):
        shown = self.script(
            "[...document.querySelectorAll('#calls > .call')].map((call) =>"
            " [...call.querySelectorAll('tr[data-tag]')].map((row) =>"
            "  [row.closest('table').dataset.container, row.dataset.tag]))")
        self.assertEqual(len(shown), len(replay.calls))
        for rows, call, given in zip(shown, replay.calls, replay.scenario["calls"]):
            rows = list(map(tuple, rows))
            written = {(write["container"], write["tag"]) for write in call["writes"]}
            appeared = {(container, tag) for container, tag in written
                        if items(call, container, tag) and tag not in (given[container] or {})}
            self.assertEqual(len(rows), len(set(rows)))
            self.assertLessEqual(appeared, set(rows))
            self.assertLessEqual(set(rows), written)

    def check_timeline(self, replay):
        marks = self.script("[...document.querySelectorAll('.mark')].map((mark) =>"
                            " [Number(mark.dataset.call), mark.textContent]).sort(([a], [b]) => a - b)")
        said = [[number, f"{number}{'!' * any(log['level'] == 'E' for log in call['logs'])}"
                 f"{'•' * bool(call['effects'])}"] for number, call in enumerate(replay.calls, 1)]
        self.assertEqual(marks, said)

    def check_tags(self, replay, _):
        """The values of a tag of each container of each hook."""
        tags = {}
        for call in replay.calls:
            for container in CONTAINERS:
                whole = [tag for tag, entry in (call.get(container) or {}).items()
                         if entry["type"] == "int32" and len(entry["items"]) <= 12]
                if whole:
                    tags[call["call"], call["sensor"], container] = whole[-1]
        for (hook, sensor, container), tag in tags.items():
            self.go(f"view=tags&tag={tag}+{hook}+{container}+{sensor}")
            runs = {int(first.split()[1]): value for first, value in self.cells(".values tbody tr")}
            for number, call in enumerate(replay.calls, 1):
                said = items(call, container, tag)
                if said and (call["call"], call["sensor"]) == (hook, sensor):
                    shown = runs[max(first for first in runs if first <= number)]
                    self.assertEqual(shown, str(said if len(said) > 1 else said[0]))

    def check_burst(self, replay, _):
        said = [[f"call {number}", str(call["args"]["requestNo"]), len(call["state"]["mNonZslFrames"]),
                 str(call["state"]["mCaptureCount"]), items(call, "meta", "MTK_HESK_FRAME_INDEX")]
                for number, call in enumerate(replay.calls, 1) if is_capture(call)]
        frames = self.script("[...document.querySelectorAll('.burst tbody tr')].map("
                             "(row) => row.querySelectorAll('.frame').length)")
        shown = [[cells[0], cells[1], count, cells[3].split()[-1],
                  None if cells[4] == "–" else [int(cells[4].split()[1])]]
                 for cells, count in zip(self.cells(".burst tbody tr"), frames)]
        self.assertEqual(shown, said)

    def rects(self):
        """The numbers of the rectangles that are drawn, by their names."""
        return {name: list(map(int, sides)) for name, sides in self.script(
            "[...document.querySelectorAll('[data-shape]')].map((row) =>"
            " [row.dataset.shape, [1, 2, 3, 4].map((cell) => row.cells[cell].innerText)])")}

    def check_crop(self, replay, number):
        rects = self.rects()
        for name, container, tag in (("frame's crop", "hal", "MTK_P1NODE_SCALAR_CROP_REGION"),
                                     ("crop for the zoom transition", "out", "MTK_RAW_ALGO_SAT_CROP_REGION"),
                                     ("face 1", "out", "MTK_RAW_ALGO_FACE_RECTS")):
            said = items(replay.calls[number - 1], container, tag)
            self.assertEqual(rects.get(name), said and said[0])

    def check_regions(self, replay, number):
        rects = self.rects()
        before = [region["rect"] for region in translation(replay.calls[number - 1])]
        move = replay.scenario["platform"]["sat"]["translate"]
        after = [[x * move["scale"] + move["dx"], y * move["scale"] + move["dy"],
                  width * move["scale"], height * move["scale"]] for x, y, width, height in before]
        for when, said in (("before", before), ("after", after)):
            self.assertEqual([rect for name, rect in rects.items() if name.endswith(when)], said)

    def check_decision(self, replay, number):
        decision = json.loads(run("decide", "--json", "--scenario", replay.path, "--call", number))
        row = decision["base"]["row"]
        taken = [cells[0] for cells in self.cells(".rules tbody tr.taken")]
        self.assertEqual(taken, [f"▸ row {row}"] if row else [])
        self.assertIn(decision["decidedBy"], self.texts(".result")[0])
        unmet = sum(not met for rule in decision["rules"] for met in rule["met"].values())
        self.assertEqual(len(self.texts(".rules .unmet")), unmet)
        self.assertEqual([cells[3] for cells in self.cells(".overrides tbody tr")],
                         [override["verdict"] for override in decision["overrideVerdicts"]])

    def test_every_view_shows_what_the_trace_says(self):
        holds = {
            "tags": lambda call: call.get("state") or any(call.get(name) for name in CONTAINERS),
            "burst": is_capture,
            "crop": lambda call: items(call, "hal", "MTK_P1NODE_SCALAR_CROP_REGION")
            or items(call, "out", "MTK_RAW_ALGO_SAT_CROP_REGION"),
            "regions": translation,
            "decision": lambda call: call["call"] == "decideSensorScenario",
        }
        self.size(1600)
        for path in SCENARIOS:
            with self.subTest(path.stem):
                calls = json.loads(run("replay", "--json", "--steps", path))["calls"]
                replay = types.SimpleNamespace(path=path, scenario=json.loads(path.read_text()), calls=calls)
                self.open(self.page(path))
                self.check_calls(replay)
                self.check_timeline(replay)
                offered = [view for view, holds_for in holds.items() if any(map(holds_for, calls))]
                self.assertEqual(self.views(), ["calls", *offered])
                for view in offered:
                    for number in [place for place, call in enumerate(calls, 1) if holds[view](call)]:
                        self.go(f"view={view}&call={number}")
                        getattr(self, f"check_{view}")(replay, number)
                        if view in ("tags", "burst"):  # they have all calls
                            break

    # How it is used.

    def press(self, *keys):
        for key in keys:
            self.browser.switch_to.active_element.send_keys(key)

    def focus(self):
        return self.script("document.activeElement.innerText")

    def tab_to(self, text):
        for _ in range(60):
            self.press(Keys.TAB)
            if self.focus().startswith(text):
                return
        self.fail(f"{text} is not reached by keyboard")

    def test_keyboard(self):
        self.open(self.stored("video_4k60"))
        for view in ("Tags over time", "Decision", "Calls"):
            self.tab_to(view)
            self.press(Keys.ENTER)
            self.wait_for("document.querySelector('#timeline ~ :not([hidden]) h2').innerText", view)
            self.script("document.activeElement.blur()")
        self.tab_to("1")
        self.press(Keys.ARROW_RIGHT, Keys.ARROW_RIGHT)
        self.assertIn("3 updateRequestMeta", " ".join(self.texts(".told")[0].split()))
        self.press(Keys.ENTER)
        self.wait_for("document.querySelector('.call.open').id", "call-3")
        self.press(Keys.END)
        self.assertTrue(self.focus().startswith("9"))
        self.browser.back()
        self.wait_for("document.querySelector('.call.open').id", "call-1")

    def wait_for(self, expression, wanted):
        deadline = time.monotonic() + 5
        while self.script(expression) != wanted and time.monotonic() < deadline:
            time.sleep(0.02)
        self.assertEqual(self.script(expression), wanted)

    def test_widths_colours_and_accessibility(self):
        axe = AXE.read_text()
        for name in LOOKED_AT:
            self.open(self.stored(name))
            self.browser.execute_script(axe)
            for view in self.views():
                for width, scheme in ((360, "light"), (1600, "light"), (1600, "dark")):
                    with self.subTest(name, view=view, width=width, scheme=scheme):
                        self.size(width, scheme)
                        self.go(f"view={view}&call=2")
                        overflow = self.script("document.documentElement.scrollWidth - innerWidth")
                        self.assertLessEqual(overflow, 0)
                        found = self.browser.execute_async_script(
                            "const done = arguments[0];"
                            "axe.run().then(({violations}) => done(violations"
                            ".filter(({impact}) => ['serious', 'critical'].includes(impact))"
                            ".map(({id, nodes}) => [id, nodes[0].html, nodes[0].failureSummary])))")
                        self.assertEqual(found, [])

    def switch_scripts(self, off):
        self.browser.execute_cdp_cmd("Emulation.setScriptExecutionDisabled", {"value": off})

    def test_without_scripts_all_calls_are_read(self):
        path = self.stored("still_burst")
        self.switch_scripts(off=True)
        self.addCleanup(self.switch_scripts, off=False)
        self.open(path)
        text = self.browser.find_element("tag name", "body").text
        for number in range(1, 7):
            self.assertRegex(text, rf"(?m)^{number}\s+updateRequestMeta")
        self.assertNotIn("Timeline", text)

    # What is hostile, what differs.

    def test_hostile_texts_stay_texts(self):
        scenario = pathlib.Path(self.folder.name, "hostile.json")
        scenario.write_text(json.dumps({
            "about": HOSTILE,
            "platform": {"properties": {HOSTILE: HOSTILE},
                         "eventStore": {"APP_NAME": HOSTILE, "APP_TYPE": HOSTILE}},
            "calls": [
                {"call": "setEvent", "key": HOSTILE, "value": HOSTILE},
                {"call": "setProperty", "name": "ro.product.model.zdm", "value": HOSTILE},
                {"call": "updateRequestMeta", "sensor": 0, "requestNo": 1,
                 "meta": {"HESK_CONTROL_DUMPPATH": HOSTILE, "MTK_RAW_ALGO_STATIC_INFO": HOSTILE}},
                {"call": "dumpMetadata", "sensor": 0, "frame": 1, "name": "<b id=hacked>",
                 "meta": {"HESK_CONTROL_DUMPPATH": HOSTILE}},
                {"call": "decideSensorScenario", "sensor": 0, "meta": {}, "video": True,
                 "width": 1, "height": 1},
            ]}))
        self.open(self.page(scenario))
        self.assertIn(HOSTILE, self.texts("header")[0])
        for view in self.views():
            for call in (1, 2, 3, 4, 5, "end", "%3Cimg src=x%3E"):
                self.go(f"view={view}&call={call}&tag=__proto__&find=%3Cb%3E")
                harm = self.script("[typeof hacked, document.querySelectorAll('img, #hacked').length]")
                self.assertEqual(harm, ["undefined", 0])
        self.assertIn(HOSTILE, "".join(self.texts("table.inputs")))

    def test_differences(self):
        folder = pathlib.Path(self.folder.name)
        scenario = json.loads((CHECKOUT / "scenarios" / "still_burst.json").read_text())
        traces = [folder / "old.json", folder / "new.json"]
        for trace in traces:
            (folder / "changed.json").write_text(json.dumps(scenario))
            trace.write_bytes(run("replay", "--json", folder / "changed.json"))
            scenario["calls"][3]["meta"]["ANDROID_FLASH_MODE"] = 0
            scenario["calls"][3]["meta"]["MTK_CONTROL_AE_TARGET_FPS_RANGE"] = [15, 24]
        page = folder / "differences.html"
        subprocess.run([*CAMHOOK, "diff", "--html", page, *traces], check=False, timeout=60)
        self.open(page)
        self.assertEqual(self.views(), ["calls", "tags", "burst"])
        differing = [text for text in self.texts(".mark") if "≠" in text]
        self.assertEqual([text.split()[0] for text in differing], ["4"])
        self.go("call=4")
        self.assertIn("[15, 30] → [15, 24]", self.texts(".open table.differences")[0])
        self.assertTrue(self.texts(".open table.container")[0])
        self.go("call=4&only=1")
        self.assertEqual(self.texts(".open table.container"), [])
        self.assertEqual(len(self.texts(".mark")), 1)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=1)
