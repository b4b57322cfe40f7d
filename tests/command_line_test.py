"""The tool on the command line: what its help shows works, and what a file or its surroundings hold
neither ends the tool nor makes it slow or leaves anything.

command_line_test.py CHECKOUT CAMHOOK...

CAMHOOK is the command that runs the tool.
"""

import html.parser
import json
import os
import pathlib
import pty
import re
import shlex
import signal
import subprocess
import sys
import tempfile
import termios
import time

CHECKOUT = pathlib.Path(sys.argv[1]).resolve()
CAMHOOK = sys.argv[2:]
EMPTY = '{"calls": []}'
LONG = "k" * 3_000_000
problems = []


def run(*words, text=b"", **options):
    """The tool's standard output, its lines on standard error, its status."""
    began = time.monotonic()
    done = subprocess.run(
        [*CAMHOOK, *words], input=text if isinstance(text, bytes) else text.encode(),
        capture_output=True, timeout=60, **options)
    lines = done.stderr.decode().splitlines()
    if time.monotonic() - began > 20:
        problems.append(f"slow: {words}")
    for line in lines:
        if len(line) > 200 or not line.isprintable():
            problems.append(f"no line for a terminal: {line!r}")
    return done.stdout, lines, done.returncode


def refuses(said, *words, **options):
    output, lines, status = run(*words, **options)
    if status != 2 or output or len(lines) != 1 or said not in lines[0]:
        problems.append(f"{said!r} expected, not {status} {lines[:3]} {output[:80]}")


def call(**arguments):
    return str({"calls": [{"sensor": 0, "meta": {}, **arguments}]}).replace("'", '"')


def files(folder):
    loop, sparse = folder / "loop", folder / "sparse"
    loop.symlink_to(loop)
    sparse.touch()
    os.truncate(sparse, (1 << 30) + 1)
    for file, said in (("/dev/zero", "is a device"), (folder, "is a folder"),
                       (loop, "symbolic links"), ("n" * 5000, "name too long"),
                       (folder / "a\u202e\x1b[2J", r"a\u202e\u001b[2J: cannot be read"),
                       (sparse, "longer than 1 GiB")):
        refuses(said, "replay", str(file))
    with open("/dev/zero", "rb") as zero:
        producer = subprocess.Popen(["cat"], stdin=zero, stdout=subprocess.PIPE)
        done = subprocess.run([*CAMHOOK, "replay", "-"], stdin=producer.stdout, capture_output=True,
                              timeout=60)
        producer.kill()
        if done.returncode != 2 or b"zero byte" not in done.stderr:
            problems.append(f"a pipe without end: {done}")
    refuses("must name a folder", "replay", "-", "--data-root", "", text=EMPTY)
    refuses("Not a directory", "replay", "-", "--data-root", str(sparse), text=EMPTY)


def texts():
    for text, said in ((EMPTY + "x", ":1:14: not JSON: nothing may follow"),
                       (EMPTY + "\0", "zero byte"), ("[" * 1_000_000, "nested too deep"),
                       (b'{"calls": [], "about": "\xff"}', r':1:25: not JSON'),
                       ('{"calls": [], "%s": 1}' % LONG, "unknown key"),
                       (call(call=LONG), "unknown call"),
                       (call(call="updateTuningData", size=(64 << 20) + 1), "at most 67108864 bytes"),
                       (call(call="dumpMetadata", frame=1, name="n" * 99), "at most 99 fit"),
                       ('{"calls": [], "a\\u202e\\u001b[2J": 1}', r"a\u202e\u001b[2J: unknown key")):
        refuses(said, "replay", "-", text=text)
    many = ", ".join('"T%d": 1' % i for i in range(40_000))
    _, lines, _ = run("replay", "-", text=call(call="createInstance").replace("{}", "{%s}" % many))
    if len(lines) != 1 or "meta: unknown key" not in lines[0]:
        problems.append(f"a key that the call does not have: {lines}")
    wrong = '{"calls": [%s 7]}' % ("7, " * 99_999)
    _, lines, _ = run("replay", "-", text=wrong)
    if len(lines) != 21 or not lines[20].endswith("and 99980 more"):
        problems.append(f"{len(lines)} lines for 100,000 faults: {lines[-1]}")


def leaves_nothing(temporary):
    """The temporary data root goes on every way out, and no write fails unnoticed."""
    environment = {**os.environ, "TMPDIR": str(temporary)}
    dump = '{"call": "dumpMetadata", "sensor": 0, "meta": {}, "name": "a", "frame": 1}, '
    dumps = '{"calls": [%s]}' % (dump * 40_000)[:-2]
    for ending in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP, signal.SIGKILL, None):
        process = subprocess.Popen(
            [*CAMHOOK, "replay", "-"], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
            stderr=subprocess.PIPE, env=environment)
        process.stdin.write(dumps.encode())
        process.stdin.close()
        process.stdout.read(1)
        if not list(temporary.iterdir()):
            problems.append("there is no temporary data root to remove")
        if ending:
            process.send_signal(ending)
        process.stdout.close()
        said, status = process.stderr.read(), process.wait(timeout=60)
        if status not in (2, -ending if ending else 2) or said:
            problems.append(f"ended by {ending}: {status} {said}")
        if left := list(temporary.iterdir()):
            problems.append(f"left by {ending}: {left}")
    run("replay", "-", text=EMPTY, env={**os.environ, "TMPDIR": "/nowhere"})
    with open("/dev/full", "wb") as full:
        done = subprocess.run([*CAMHOOK, "tags"], stdout=full, stderr=subprocess.PIPE)
        if done.returncode != 2 or b"No space left" not in done.stderr:
            problems.append(f"a full disk: {done}")


def examples(folder):
    """Pastes the example of each command's help into a shell."""
    for name in ("scenarios", "tests"):
        (folder / name).symlink_to(CHECKOUT / name)
    own = "camhook() { %s \"$@\"; }\nset -e\n" % shlex.join(CAMHOOK)
    commands = re.findall(r"^  (\w+)  ", run("--help")[0].decode().split("Subcommands:")[1], re.M)
    for command in commands:
        _, _, example = run(command, "--help")[0].decode().partition("Example:\n")
        if f"camhook {command}" not in example:
            problems.append(f"{command} has no example")
        done = subprocess.run(["bash", "-c", own + example], capture_output=True, cwd=folder)
        if done.returncode != 0:
            problems.append(f"{command}: {done}")


def on_terminal(columns, *words, **environment):
    """What the tool writes to a terminal of that many columns."""
    screen, own = pty.openpty()
    termios.tcsetwinsize(own, (24, columns))
    with subprocess.Popen([*CAMHOOK, *words], stdout=own, env={**os.environ, **environment}):
        os.close(own)
        written = b""
        try:
            while block := os.read(screen, 65536):
                written += block
        except OSError:  # the terminal is gone with the tool
            pass
    os.close(screen)
    return written.decode().replace("\r\n", "\n")


def terminals():
    """On a terminal there is colour unless it is not wanted, and no line is longer than it."""
    scenario = str(CHECKOUT / "scenarios" / "still_burst.json")
    plain = run("replay", scenario)[0].decode()
    for columns in (60, 400):
        coloured = on_terminal(columns, "replay", scenario, NO_COLOR="")
        without = on_terminal(columns, "replay", scenario, NO_COLOR="1")
        if "\x1b[" not in coloured or re.sub("\x1b\\[\\d+m", "", coloured) != without:
            problems.append(f"colours on {columns} columns")
        if " ".join(without.split()) != " ".join(plain.split()):
            problems.append(f"what {columns} columns show is something else")
    if (widest := max(map(len, on_terminal(60, "replay", scenario, NO_COLOR="1").split("\n")))) > 60:
        problems.append(f"{widest} letters on 60 columns")


class Elements(html.parser.HTMLParser):
    """The elements of a page, the text of the script that holds data, and by call and tag the steps that
    the page shows, the latest first."""

    def __init__(self, page):
        super().__init__()
        self.elements, self.data, self.steps, self.call, self.tag = [], "", {}, 0, ""
        self.feed(page.read_text())
        self.close()

    def handle_starttag(self, tag, attributes):
        self.elements.append((tag, *attributes))
        attributes = dict(attributes)
        if tag == "section":
            self.call += 1
        if tag == "table":
            self.container, self.tag = attributes.get("data-container"), ""
        if tag == "tr" and attributes.get("class") not in ("overwritten", "decoded"):
            self.tag = attributes.get("data-tag")

    def handle_data(self, text):
        if self.elements and self.elements[-1] == ("script", ("type", "application/json"), ("id", "data")):
            self.data += text
        if self.tag and self.elements[-1] == ("small",) and text.strip():
            self.steps.setdefault((self.call - 2, self.container, self.tag), []).insert(0, text)


def sections_of(page):
    """The attributes of the page's sections."""
    return [dict(element[1:]) for element in Elements(page).elements if element[0] == "section"]


def check_steps(page):
    """Behind a change stand the writes to the tag that the trace has, and no others."""
    made = Elements(page)
    said = {}
    for number, call in enumerate(json.loads(made.data)["trace"]["calls"]):
        for write in call["writes"]:
            place = f"{write['file'].rpartition('/')[2]}:{write['line']}"
            said.setdefault((number, write["container"], write["tag"]), []).append(place)
    if not made.steps or made.steps != {place: said[place] for place in made.steps}:
        problems.append(f"the steps on {page.name}")


def pages(folder):
    """A page has each call as a section and holds the trace; no text becomes an element."""
    page, trace = folder / "page.html", folder / "trace.json"
    hostile = "</script><script>alert(1)</script><!--\"'&<b>"
    calls = [{"call": "setEvent", "key": hostile, "value": hostile},
             {"call": "decideSensorScenario", "sensor": 0, "meta": {}, "video": True, "width": 4, "height": 3}]
    scenario = json.dumps({"about": hostile, "calls": calls})
    if run("replay", "--html", str(page), "-", text=scenario) != (b"", [], 0):
        problems.append("a page is not written in silence")
    trace.write_bytes(run("replay", "--json", "--steps", "-", text=scenario)[0])
    decision = folder / "scenario.json"
    decision.write_text(scenario)
    decided = run("decide", "--json", "--scenario", str(decision), "--call", "2")[0]
    made = Elements(page)
    if json.loads(made.data) != {"trace": json.loads(trace.read_text()), "scenario": json.loads(scenario),
                                 "decisions": {"2": json.loads(decided)}}:
        problems.append(f"a page's data: {made.data[:500]}")
    names = [element[0] for element in made.elements]
    ids = [section["id"] for section in sections_of(page)]
    if names.count("script") != 2 or "b" in names or ids != ["calls", "call-1", "call-2", "end"]:
        problems.append(f"a page's elements: {names} {ids}")
    (folder / "old.json").write_text(trace.read_text().replace('"setEvent"', '"setProperty"'))
    if run("diff", "--html", str(page), str(folder / "old.json"), str(trace))[2] != 1:
        problems.append("two traces differ, but not on their page")
    if (marks := [section.get("data-differences") for section in sections_of(page)]) != [None, "1", "1", None, None]:
        problems.append(f"a page of differences: {marks}")
    whole = json.loads(run("replay", "--json", str(CHECKOUT / "scenarios" / "still_burst.json"))[0])
    trace.write_text(json.dumps(whole))
    (folder / "part.json").write_text(json.dumps({**whole, "calls": whole["calls"][:2] + whole["calls"][4:]}))
    run("diff", "--html", str(page), str(trace), str(folder / "part.json"))
    order = [section["class"] for section in sections_of(page) if "class" in section]
    if order != ["call", "call", "call gone", "call gone", "call", "call"]:
        problems.append(f"calls that are gone: {order}")
    for scenario in ("still_burst", "raw_capture", "tuning_data"):
        run("replay", "--html", str(page), str(CHECKOUT / "scenarios" / f"{scenario}.json"))
        check_steps(page)
    refuses("cannot be written: No such file", "replay", "--html", "/nowhere/page", "-", text=EMPTY)
    refuses("is a folder", "diff", "--html", str(page), str(folder), str(folder))
    refuses("--json excludes --html", "replay", "--html", str(page), "--json", "-", text=EMPTY)


terminals()
with tempfile.TemporaryDirectory() as folder:
    pages(pathlib.Path(folder))
with tempfile.TemporaryDirectory() as folder:
    examples(pathlib.Path(folder))
with tempfile.TemporaryDirectory() as folder:
    files(pathlib.Path(folder))
    texts()
with tempfile.TemporaryDirectory() as folder:
    leaves_nothing(pathlib.Path(folder))
print("\n".join(problems))
sys.exit(bool(problems))
