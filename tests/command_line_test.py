"""The tool on the command line: what its help shows works, and what a file or its surroundings hold
neither ends the tool nor makes it slow or leaves anything.

command_line_test.py CHECKOUT CAMHOOK...

CAMHOOK is the command that runs the tool.
"""

import os
import pathlib
import pty
import re
import shlex
import subprocess
import sys
import tempfile
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
        if done.returncode != 2 or b"longer than 1 GiB" not in done.stderr:
            problems.append(f"a pipe without end: {done}")


def texts():
    for text, said in ((EMPTY + "x", ":1:14: not JSON: The document root must not be followed"),
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
    """Dumps leave no file, and no write fails unnoticed."""
    environment = {**os.environ, "TMPDIR": str(temporary)}
    dump = '{"call": "dumpMetadata", "sensor": 0, "meta": {}, "name": "a", "frame": 1}'
    run("replay", "-", text='{"calls": [%s]}' % dump, env=environment)
    if left := list(temporary.iterdir()):
        problems.append(f"left by dumps: {left}")
    with open("/dev/full", "wb") as full:
        done = subprocess.run([*CAMHOOK, "tags"], stdout=full, stderr=subprocess.PIPE)
        if done.returncode != 2 or b"No space left" not in done.stderr:
            problems.append(f"a full disk: {done}")


def examples(folder):
    """Pastes the example of each command's help into a shell."""
    (folder / "docs").mkdir()
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


def on_terminal(*words, **environment):
    """What the tool writes to a terminal."""
    screen, own = pty.openpty()
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
    """A terminal gets the same text in colour, and no colour on request."""
    scenario = str(CHECKOUT / "scenarios" / "still_burst.json")
    plain = run("replay", scenario)[0].decode()
    coloured = on_terminal("replay", scenario, NO_COLOR="")
    if "\x1b[" not in coloured or re.sub("\x1b\\[\\d+m", "", coloured) != plain:
        problems.append("colours")
    if on_terminal("replay", scenario, NO_COLOR="1") != plain:
        problems.append("colours where none are wanted")


def pages(folder):
    """A page that cannot be written or made is refused."""
    page = str(folder / "page.html")
    refuses("cannot be written: No such file", "replay", "--html", "/nowhere/page", "-", text=EMPTY)
    refuses("must name a file", "replay", "--html", "", "-", text=EMPTY)
    refuses("--json excludes --html", "replay", "--html", page, "--json", "-", text=EMPTY)
    refuses("cannot be read", "replay", "--html", page, str(folder / "none"))
    if os.path.exists(page):
        problems.append("a page of nothing")


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
