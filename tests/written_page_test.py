"""The pages that the tool writes, read without a browser: each call as elements, and the data for scripts.

written_page_test.py CHECKOUT CAMHOOK...

CAMHOOK is the command that runs the tool.
"""

import html.parser
import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

SCENARIOS = pathlib.Path(sys.argv[1], "scenarios").resolve()
CAMHOOK = sys.argv[2:]
CONTAINERS = ["meta", "app", "hal", "out"]
# Said where the library's build tells no steps.
NO_STEPS = b"camhook: steps without debug information of the library are shown as ?\n"
HOSTILE = "</script><script>alert(1)</script><!--\"'&<b>"


def run(*words, status=0):
    done = subprocess.run([*CAMHOOK, *map(str, words)], capture_output=True, timeout=60)
    assert done.returncode == status and done.stderr in (b"", NO_STEPS), done
    return done.stdout.decode()


class Page(html.parser.HTMLParser):
    """The names of a page's elements, its sections with the rows in them, and its data."""

    def __init__(self, path):
        super().__init__()
        self.names, self.sections, self.data, self.where = [], [], "", None
        self.titles = []
        self.feed(path.read_text())
        self.close()

    def handle_starttag(self, name, attributes):
        attributes = dict(attributes)
        self.names.append(name)
        if name == "section":
            self.sections.append({**attributes, "rows": []})
        elif name == "table":
            self.table = attributes
        elif name == "tr":
            self.row = []
            self.sections[-1]["rows"].append((self.table, attributes, self.row))
        elif name in ("th", "td"):
            self.row.append("")
            self.where = "cell"
        elif name == "script" and attributes.get("id") == "data":
            self.where = "data"
        elif name == "h3":
            self.titles.append("")
            self.where = "title"

    def handle_endtag(self, name):
        if name in ("th", "td", "script", "h3"):
            self.where = None

    def handle_data(self, text):
        if self.where == "cell":
            self.row[-1] += text.rstrip("\n")
        elif self.where == "title":
            self.titles[-1] += text
        elif self.where == "data":
            self.data += text

    def rows(self, section, kind):
        """The attributes and cells of the rows of a section's tables of that kind, without their heads."""
        return [(attributes, cells, table) for table, attributes, cells in self.sections[section]["rows"]
                if table["class"] == kind and cells[0] not in ("tag", "field", "name", "key")]


class WrittenPageTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.page = self.folder / "page.html"

    def write(self, name, value):
        path = self.folder / name
        path.write_text(json.dumps(value))
        return path

    def check_call(self, page, number, call):
        records = [cells for _, cells, _ in page.rows(number, "records")]
        self.assertEqual([level for level, _ in records], [log["level"] for log in call["logs"]])
        self.assertEqual([op for _, (op, _), _ in page.rows(number, "effects")],
                         [effect["op"] for effect in call["effects"]])
        for _, (field, before, after), _ in page.rows(number, "state"):
            self.assertEqual(json.loads(after), call["state"][field])
            self.assertNotEqual(before, after)
        given = [cells[0] for _, cells, _ in page.rows(number, "unchanged")]
        self.assertLessEqual(set(given), {tag for name in CONTAINERS for tag in call.get(name) or {}})
        steps = {}
        for attributes, cells, table in page.rows(number, "container"):
            tag = attributes.get("data-tag", "") or tag
            if attributes.get("class") != "decoded":
                steps.setdefault((table["data-container"], tag), []).insert(0, cells[3])
        written = {}
        for write in call["writes"]:
            step = f"{write['step']} {write['file'].rpartition('/')[2]}:{write['line']}"
            written.setdefault((write["container"], write["tag"]), []).append(step)
        self.assertEqual(steps, {place: written[place] for place in steps})
        return len(steps)

    def test_shows_what_the_trace_says(self):
        changed = 0
        for scenario in ("still_burst", "raw_capture", "multicam_sessions", "video_4k60", "phase_detection"):
            path = SCENARIOS / f"{scenario}.json"
            run("replay", "--no-warnings", "--html", self.page, path)
            page = Page(self.page)
            calls = json.loads(page.data)["trace"]["calls"]
            self.assertEqual([section.get("id") for section in page.sections],
                             ["calls", *(f"call-{i + 1}" for i in range(len(calls))), "end"])
            changed += sum(self.check_call(page, i + 1, call) for i, call in enumerate(calls))
            platform = json.loads(page.data)["scenario"]["platform"]
            for place, texts in ((0, {**platform.get("properties", {}), **platform.get("eventStore", {})}),
                                 (-1, json.loads(page.data)["trace"]["eventStore"])):
                shown = {key: json.loads(value) for _, (key, value), _ in page.rows(place, "events")}
                self.assertEqual(shown, texts)
        self.assertGreater(changed, 100)

    def test_holds_the_data_and_no_element_of_a_text(self):
        scenario = {"about": HOSTILE, "platform": {"eventStore": {HOSTILE: HOSTILE}}, "calls": [
            {"call": "setEvent", "key": HOSTILE, "value": HOSTILE},
            {"call": "decideSensorScenario", "sensor": 0, "meta": {}, "video": True, "width": 4, "height": 3}]}
        path = self.write("scenario.json", scenario)
        self.assertEqual(run("replay", "--html", self.page, path), "")
        page = Page(self.page)
        trace = json.loads(run("replay", "--json", "--steps", path))
        decision = json.loads(run("decide", "--json", "--scenario", path, "--call", 2))
        self.assertEqual(json.loads(page.data), {"trace": trace, "scenario": scenario, "decisions": {"2": decision}})
        self.assertEqual((page.names.count("script"), page.names.count("b")), (2, 0))
        self.assertEqual(page.rows(-1, "events")[0][1], [HOSTILE, json.dumps(HOSTILE)])

    def test_marks_what_differs_between_two_traces(self):
        old = json.loads(run("replay", "--json", SCENARIOS / "still_burst.json"))
        fresh = json.loads(json.dumps(old).replace('"items": [2]', '"items": [9]'))
        del fresh["calls"][2:4]
        run("diff", "--html", self.page, self.write("old.json", old), self.write("new.json", fresh), status=1)
        page = Page(self.page)
        self.assertEqual([section["class"] for section in page.sections if "class" in section],
                         ["call", "call", "call gone", "call gone", "call", "call"])
        self.assertEqual(page.titles[2:4], ["updateRequestMeta  sensor 0  requestNo 101",
                                            "updateRequestMeta  sensor 0  requestNo 102"])
        for number, section in enumerate(page.sections):
            rows = page.rows(number, "differences")
            self.assertEqual(section.get("data-differences"), str(len(rows)) if rows else None)
        differing = {cells[0]: cells[1] for number in (2, 3) for _, cells, _ in page.rows(number, "differences")}
        self.assertEqual(differing, {"meta ANDROID_CONTROL_CAPTURE_INTENT": "2 (STILL_CAPTURE) → 9", "call": "gone"})
        run("diff", "--html", self.page, self.folder / "new.json", self.folder / "new.json")
        self.assertFalse([section for section in Page(self.page).sections if "data-differences" in section])


unittest.main(argv=sys.argv[:1])
