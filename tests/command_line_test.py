"""The tool on the command line: what its help shows works, and what a file or its surroundings hold
neither ends the tool nor makes it slow or leaves anything.

command_line_test.py CHECKOUT CAMHOOK...

CAMHOOK is the command that runs the tool.
"""

import json
import os
import pathlib
import pty
import re
import shlex
import shutil
import signal
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
        if done.returncode != 2 or b"zero byte" not in done.stderr:
            problems.append(f"a pipe without end: {done}")


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
    for words, environment in ((["--color", "never"], {}), ([], {"NO_COLOR": "1"}), ([], {"TERM": "dumb"})):
        if on_terminal("replay", scenario, *words, **environment) != plain:
            problems.append(f"colours with {words} {environment}")
    for words in (["replay", scenario], ["rules"], ["tags", "frame_count"]):
        if "\x1b[" not in run(*words, "--color", "always")[0].decode():
            problems.append(f"no colours: {words}")


def hostile(folder):
    """No command writes a control or bidirectional character of its input."""
    odd = "\x1b[31m\x9b\u202e\x7f"
    meta = {"ANDROID_CONTROL_CAPTURE_INTENT": {"type": "uint8", "items": [2]}, "HESK_CONTROL_DUMPPATH": odd}
    scenario = folder / "hostile.json"
    scenario.write_text(json.dumps({"about": odd, "platform": {
        "properties": {odd: odd, "ro.product.model.zdm": odd}, "eventStore": {odd: odd, "APP_NAME": odd}},
        "calls": [{"call": "setEvent", "key": odd, "value": odd}, {"call": "setProperty", "name": odd, "value": odd},
                  {"call": "updateRequestMeta", "sensor": 0, "requestNo": 1, "meta": meta},
                  {"call": "decideSensorScenario", "sensor": 0, "meta": meta, "video": True, "width": 4, "height": 3},
                  {"call": "dumpMetadata", "sensor": 0, "meta": meta, "name": odd, "frame": 1}]},
        ensure_ascii=False))
    dump = folder / "dump.txt"
    dump.write_text((CHECKOUT / "tests/support/phone_dump.txt").read_text() +
                    f"    android.control.captureIntent{odd} (1000d): byte[1]\n        [2 ]\n")
    for words in (["replay", "--logs", "debug"], ["replay", "--json", "--steps"], ["replay", "--html", "-"],
                  ["why", scenario, "3", "MTK_HESK_STILL_CAPTURE", "--all"], ["why", scenario, "3", odd],
                  ["why", scenario, "4", "return", "--json"], ["decide", "--call", "4", "--scenario"],
                  ["decide", "--json", "--call", "4", "--scenario"], ["replay", "--tag", odd], ["tags", odd],
                  ["scenario", dump, "--product", odd, "--event", f"{odd}={odd}"], ["rules", odd], [odd]):
        done = subprocess.run([*CAMHOOK, *words, *([] if scenario in words or dump in words else [scenario])],
                              capture_output=True, timeout=60)
        for text in (done.stdout.decode(), done.stderr.decode()):
            if odd_ones := {letter for letter in text if letter != "\n" and letter in "\x1b\x9b\u202e\x7f"}:
                problems.append(f"{words} writes {odd_ones}")
        if done.returncode not in (0, 1, 2):
            problems.append(f"{words} ends with {done.returncode}: {done.stderr}")


def helps():
    """Help by both ways, also for a command, and without what options exclude."""
    for words, same in ((["help"], ["--help"]), (["help", "replay"], ["replay", "--help"])):
        text, lines, status = run(*words)
        if status or lines or text != run(*same)[0] or b"Usage: camhook" not in text or b"Excludes" in text:
            problems.append(f"{words}: {status} {lines} {text}")
    refuses('unknown command "replya"; near: replay', "help", "replya")


def completes():
    """The words that a shell offers."""
    for shell in ("bash", "zsh"):
        if not shutil.which(shell):
            continue
        begin = "autoload -U +X compinit bashcompinit; compinit -u -D; bashcompinit; " if shell == "zsh" else ""
        for words, offered in ((["rep"], ["replay"]), (["replay", "--ht"], ["--html"]), (["replay", "-", "--color", "al"], ["always"]),
                               (["replay", "--tag", "MTK_HESK_FRAME_C"], ["MTK_HESK_FRAME_COUNT"])):
            script = (begin + f"camhook() {{ {shlex.join(CAMHOOK)} \"$@\"; }}; source {CHECKOUT}/scripts/completion.bash; "
                      f"COMP_WORDS=(camhook {shlex.join(words)}); COMP_CWORD={len(words)}; _camhook; echo ${{COMPREPLY[@]}}")
            done = subprocess.run([shell, "-c", script], capture_output=True, timeout=60)
            if done.stdout.decode().split() != offered:
                problems.append(f"{shell} offers {done} for {words}")


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
helps()
completes()
with tempfile.TemporaryDirectory() as folder:
    pages(pathlib.Path(folder))
    hostile(pathlib.Path(folder))
with tempfile.TemporaryDirectory() as folder:
    examples(pathlib.Path(folder))
with tempfile.TemporaryDirectory() as folder:
    files(pathlib.Path(folder))
    texts()
with tempfile.TemporaryDirectory() as folder:
    leaves_nothing(pathlib.Path(folder))
print("\n".join(problems))
sys.exit(bool(problems))
