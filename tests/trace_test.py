"""Checks the JSON trace and the data of the page, which are made from it.

trace_test.py CHECKOUT CAMHOOK...

CAMHOOK is the command that runs the tool.
"""

import html
import json
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

SCENARIOS = sorted(pathlib.Path(sys.argv[1], "scenarios").resolve().glob("*.json"))
CAMHOOK = sys.argv[2:]
CONTAINERS = ["meta", "app", "hal", "out"]
# The warning of a build without debug information.
NO_STEPS = b"camhook: some library code has no debug information; its steps are shown as ?\n"
HOSTILE = "</script><script>alert(1)</script><!--\"'&<b>\x1b\u202e"


def run(*words, text=""):
    done = subprocess.run([*CAMHOOK, *map(str, words)], input=text.encode(), capture_output=True, timeout=300)
    assert done.returncode == 0 and done.stderr in (b"", NO_STEPS), done
    return done.stdout.decode()


def restored(after, before):
    """Returns the entries before a call: those after it, replaced by `before`."""
    entries = {**after, **before}
    return {key: value for key, value in entries.items() if value is not None}


class TraceTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.page = pathlib.Path(folder.name, "page.html")

    def read_page(self, *words, **options):
        """Writes a page; returns its text and its data."""
        self.assertEqual(run("replay", "--html", self.page, "--no-warnings", *words, **options), "")
        document = self.page.read_text()
        text = re.search("<noscript><pre>(.*?)</pre></noscript>", document, re.S)[1]
        data = re.search('<script type="application/json" id="data">(.*?)</script>', document, re.S)[1]
        self.assertNotIn("<", text + data)
        self.assertEqual(document.count("<script"), 2)
        return html.unescape(text), json.loads(data)

    def test_before_restores_entries(self):
        for path in SCENARIOS:
            calls = json.loads(run("replay", "--no-warnings", "--json", path))["calls"]
            # Calls of sensor 99, which has no updater, change nothing.
            given = json.loads(path.read_text())
            for call in given["calls"]:
                if call["call"] != "decideSensorScenario" and "sensor" in call:
                    call["sensor"] = 99
            given = json.loads(run("replay", "--no-warnings", "--json", "-", text=json.dumps(given)))["calls"]
            states = {}
            for number, (call, untouched) in enumerate(zip(calls, given), 1):
                before = call.get("before", {})
                self.assertEqual("before" in call, bool(before))
                self.assertNotIn({}, before.values())
                with self.subTest(scenario=path.stem, call=number):
                    for name in CONTAINERS:
                        changed = before.get(name, {})
                        after = call.get(name) or {}
                        self.assertEqual(restored(after, changed), untouched.get(name) or {})
                        self.assertFalse([tag for tag in changed if changed[tag] == after.get(tag)])
                    if call.get("state"):
                        found = restored(call["state"], before.get("state", {}))
                        self.assertEqual(found, states.get(call["sensor"], found))
                        states[call["sensor"]] = call["state"]

    def test_meta_of_equals_copied_container(self):
        def hook(call, **keys):
            return {"call": call, "sensor": 0, **keys}

        size = {"video": True, "width": 3840, "height": 2160}
        session = {"COM_HESK_CURRENTUIMODULE": 3, "ANDROID_CONTROL_CAPTURE_INTENT": "PREVIEW"}
        request = {"HESK_CONTROL_HISFRAME": [2, 1], "HESK_CONTROL_MOONMODE": 3, "HESK_CONTROL_CURRENTMODE": 1}
        calls = [
            hook("updateSessionParams", meta=session, streams=[]),
            hook("decideSensorScenario", metaOf=1, **size),
            hook("updateRequestMeta", requestNo=7, meta=request),
            hook("updateResultMeta", requestNo=7, metaOf=3, meta={"HESK_CONTROL_MOONMODE": [], "0xc0030014": 2}),
            hook("updateResultMeta", requestNo=8, sensor=1, metaOf="0x4", meta={}),
            hook("dumpMetadata", metaOf=4, meta={"ANDROID_FLASH_MODE": {"type": "uint8", "items": []}}, name="", frame=0),
        ]
        platform = {"properties": {"ro.product.model.zdm": "KX0107"}, "clock": "2021-03-04T05:06:07"}

        def replay(calls):
            return json.loads(run("replay", "--json", "-", text=json.dumps({"platform": platform, "calls": calls})))

        trace = replay(calls)
        copied = []
        for call in calls:
            if "metaOf" in call:
                whole = {**trace["calls"][int(str(call["metaOf"]), 0) - 1]["meta"], **call.get("meta", {})}
                whole["HESK_CONTROL_CURRENTMODE"] = whole.pop("0xc0030014", whole.get("HESK_CONTROL_CURRENTMODE", []))
                call = {key: value for key, value in call.items() if key != "metaOf"} | {"meta": whole}
            copied.append(call)
        self.assertEqual(trace, replay(copied))
        self.assertNotIn("HESK_CONTROL_MOONMODE", trace["calls"][4]["meta"])
        self.assertEqual(trace["calls"][4]["meta"]["HESK_CONTROL_CURRENTMODE"]["items"], [2])
        _, with_meta_of = self.read_page("-", text=json.dumps({"platform": platform, "calls": calls}))
        _, with_copy = self.read_page("-", text=json.dumps({"platform": platform, "calls": copied}))
        self.assertEqual(with_meta_of["decisions"], with_copy["decisions"])

    def test_page_contains_trace_and_text(self):
        rectangles = {}
        for path in SCENARIOS:
            text, data = self.read_page(path)
            self.assertEqual(text, run("replay", "--no-warnings", "--steps", "--logs", "debug", path))
            self.assertEqual(data["trace"], json.loads(run("replay", "--no-warnings", "--json", "--steps", path)))
            self.assertEqual((data["title"], data["scenario"]), (path.stem, json.loads(path.read_text())))
            for number, decision in data["decisions"].items():
                output = run("decide", "--no-warnings", "--json", "--scenario", path, "--call", number)
                self.assertEqual(decision, json.loads(output))
                self.assertEqual(decision["scenario"], data["trace"]["calls"][int(number) - 1]["return"])
            rectangles[path.stem] = data["rectangles"]
        self.assertEqual(rectangles["still_burst"], {})
        self.assertEqual(rectangles["raw_capture"], {"2": [
            {"name": "active array", "rect": [0, 0, 4000, 3000]},
            {"name": "preview area", "rect": [0, 375, 4000, 2250]},
            {"name": "crop of the frame", "rect": [1000, 750, 2000, 1500]},
            {"name": "crop for the zoom transition", "rect": [1000, 937, 2000, 1125]}]})
        self.assertIn("face 1", [each["name"] for each in rectangles["faces_logical_multicam"]["3"]])
        self.assertEqual(rectangles["result_regions"]["3"][2:], [
            {"name": "body 2, before", "rect": [5, 6, 2, 2]}, {"name": "body 2, after", "rect": [20, 32, 4, 4]}])

    def test_page_escapes_texts(self):
        scenario = {"about": HOSTILE, "platform": {"eventStore": {HOSTILE: HOSTILE}}, "calls": [
            {"call": "setEvent", "key": HOSTILE, "value": HOSTILE},
            {"call": "updateSessionParams", "sensor": 0, "meta": {},
             "streams": [{"id": 1, "usage": 2**64 - 1, "width": 4, "height": 3}]}]}
        text, data = self.read_page("-", text=json.dumps(scenario))
        self.assertTrue(text.replace("\n", "").isprintable())
        self.assertEqual(data["scenario"], scenario)
        self.assertEqual(data["trace"]["calls"][1]["args"]["streams"][0]["usage"], 2**64 - 1)


unittest.main(argv=sys.argv[:1])
