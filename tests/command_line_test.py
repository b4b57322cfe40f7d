"""Runs the tool on a command line: help, completion, terminals, hostile and very large input, signals.

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
import unittest

CHECKOUT = pathlib.Path(sys.argv[1]).resolve()
CAMHOOK = sys.argv[2:]
SHELL_FUNCTION = f'camhook() {{ {shlex.join(CAMHOOK)} "$@"; }}\n'
EMPTY = '{"calls": []}'
LONG = "k" * 3_000_000
HANGS = 300  # seconds after which a process is taken to hang
HOSTILE = "\x1b[31m\x9b\u202e\x7f"


def call(**arguments):
    return str({"calls": [{"sensor": 0, "meta": {}, **arguments}]}).replace("'", '"')


def terminal_output(*words, **environment):
    """Returns what the tool writes to a terminal."""
    screen, own = pty.openpty()
    with subprocess.Popen([*CAMHOOK, *words], stdout=own, env={**os.environ, **environment}):
        os.close(own)
        written = b""
        try:
            while block := os.read(screen, 65536):
                written += block
        except OSError:  # the tool has ended
            pass
    os.close(screen)
    return written.decode().replace("\r\n", "\n")


class CommandLineTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def run_tool(self, *words, text=b"", **options):
        """Returns standard output, the lines of standard error and the status."""
        done = subprocess.run(
            [*CAMHOOK, *words], input=text if isinstance(text, bytes) else text.encode(),
            capture_output=True, timeout=HANGS, **options)
        lines = done.stderr.decode().splitlines()
        for line in lines:
            self.assertTrue(len(line) <= 200 and line.isprintable(), repr(line))
        return done.stdout, lines, done.returncode

    def check_rejected(self, problem, *words, **options):
        with self.subTest(problem):
            output, lines, status = self.run_tool(*words, **options)
            self.assertEqual((status, output, len(lines)), (2, b"", 1), lines[:3])
            self.assertIn(problem, lines[0])

    def test_rejects_unreadable_files(self):
        loop, sparse = self.folder / "loop", self.folder / "sparse"
        loop.symlink_to(loop)
        sparse.touch()
        os.truncate(sparse, (1 << 30) + 1)
        for file, problem in (("/dev/zero", "longer than 1 GiB"), (self.folder, "Is a directory"), (loop, "symbolic links"),
                              ("n" * 5000, "name too long"), (sparse, "longer than 1 GiB"),
                              (self.folder / "a\u202e\x1b[2J", r"a\u202e\u001b[2J: cannot be read")):
            self.check_rejected(problem, "replay", str(file))
        with open("/dev/zero", "rb") as zero, subprocess.Popen(["cat"], stdin=zero, stdout=subprocess.PIPE) as endless:
            done = subprocess.run([*CAMHOOK, "replay", "-"], stdin=endless.stdout, capture_output=True, timeout=HANGS)
            endless.kill()
        self.assertEqual((done.returncode, b"longer than 1 GiB" in done.stderr), (2, True), done)

    def test_rejects_invalid_input(self):
        for text, problem in ((EMPTY + "\0", "zero byte"), ("[" * 1_000_000, "nested too deep"),
                              (b'{"calls": [], "about": "\xff"}', ":1:25: not JSON"),
                              ('{"calls": [], "%s": 1}' % LONG, "unknown key"), (call(call=LONG), "unknown call"),
                              ('{"calls": [], "a\\u202e\\u001b[2J": 1}', r"a\u202e\u001b[2J: unknown key")):
            self.check_rejected(problem, "replay", "-", text=text)
        many = ", ".join('"T%d": 1' % i for i in range(40_000))
        _, lines, _ = self.run_tool("replay", "-", text=call(call="createInstance").replace("{}", "{%s}" % many))
        self.assertEqual((len(lines), "meta: unknown key" in lines[0]), (1, True), lines[:3])
        _, lines, _ = self.run_tool("replay", "-", text='{"calls": [%s 7]}' % ("7, " * 99_999))
        self.assertEqual((len(lines), lines[-1].endswith("and 99980 more")), (21, True), lines[-1])

    def test_ends_on_signals_and_closed_output(self):
        create = '{"call": "createInstance", "sensor": 0}, '
        for ending in (signal.SIGINT, signal.SIGTERM, None):
            with self.subTest(ending), subprocess.Popen(
                    [*CAMHOOK, "replay", "-"], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                    stderr=subprocess.PIPE, env={**os.environ, "TMPDIR": str(self.folder)}) as process:
                process.stdin.write(('{"calls": [%s]}' % (create * 40_000)[:-2]).encode())
                process.stdin.close()
                process.stdout.read(1)
                if ending:
                    process.send_signal(ending)
                process.stdout.close()
                self.assertEqual(process.stderr.read(), b"")
                self.assertIn(process.wait(timeout=HANGS), (2, -ending if ending else 2))
                self.assertEqual(list(self.folder.iterdir()), [])

    def test_reports_full_disk(self):
        with open("/dev/full", "wb") as full:
            done = subprocess.run([*CAMHOOK, "tags"], stdout=full, stderr=subprocess.PIPE)
        self.assertEqual((done.returncode, b"No space left" in done.stderr), (2, True), done)

    def test_examples_of_help_work(self):
        (self.folder / "docs").mkdir()
        for name in ("scenarios", "tests"):
            (self.folder / name).symlink_to(CHECKOUT / name)
        commands = self.run_tool("--help")[0].decode().split("Subcommands:")[1]
        for command in re.findall(r"^  (\w+)  ", commands, re.M):
            with self.subTest(command):
                example = self.run_tool(command, "--help")[0].decode().partition("Example:\n")[2]
                self.assertIn(f"camhook {command}", example)
                done = subprocess.run(["bash", "-c", SHELL_FUNCTION + "set -e\n" + example],
                                      capture_output=True, cwd=self.folder)
                self.assertEqual(done.returncode, 0, done)

    def test_help_has_two_forms(self):
        for words, same in ((["help"], ["--help"]), (["help", "replay"], ["replay", "--help"])):
            text, lines, status = self.run_tool(*words)
            self.assertEqual((text, lines, status), (self.run_tool(*same)[0], [], 0))
            self.assertIn(b"Usage: camhook", text)
            self.assertNotIn(b"Excludes", text)
        self.check_rejected('unknown command "replya"; did you mean replay?', "help", "replya")

    def test_colours_only_terminals(self):
        scenario = str(CHECKOUT / "scenarios" / "still_burst.json")
        plain = self.run_tool("replay", scenario)[0].decode()
        coloured = terminal_output("replay", scenario, NO_COLOR="")
        self.assertIn("\x1b[", coloured)
        self.assertEqual(re.sub("\x1b\\[\\d+m", "", coloured), plain)
        for words, environment in ((["--color", "never"], {}), ([], {"NO_COLOR": "1"}), ([], {"TERM": "dumb"})):
            self.assertEqual(terminal_output("replay", scenario, *words, **environment), plain)
        for words in (["replay", scenario], ["rules"], ["tags", "frame_count"]):
            self.assertIn("\x1b[", self.run_tool(*words, "--color", "always")[0].decode())

    def test_writes_no_control_characters_of_input(self):
        meta = {"ANDROID_CONTROL_CAPTURE_INTENT": {"type": "uint8", "items": [2]}, "HESK_CONTROL_DUMPPATH": HOSTILE}
        scenario, dump = str(self.folder / "hostile.json"), str(self.folder / "dump.txt")
        pathlib.Path(scenario).write_text(json.dumps({"about": HOSTILE, "platform": {
            "properties": {HOSTILE: HOSTILE, "ro.product.model.zdm": HOSTILE},
            "eventStore": {HOSTILE: HOSTILE, "APP_NAME": HOSTILE}}, "calls": [
                {"call": "setEvent", "key": HOSTILE, "value": HOSTILE},
                {"call": "setProperty", "name": HOSTILE, "value": HOSTILE},
                {"call": "updateRequestMeta", "sensor": 0, "requestNo": 1, "meta": meta},
                {"call": "decideSensorScenario", "sensor": 0, "meta": meta, "video": True, "width": 4, "height": 3},
                {"call": "dumpMetadata", "sensor": 0, "meta": meta, "name": HOSTILE, "frame": 1}]},
            ensure_ascii=False))
        pathlib.Path(dump).write_text((CHECKOUT / "tests/support/phone_dump.txt").read_text() +
                                      f"    android.control.captureIntent{HOSTILE} (1000d): byte[1]\n        [2 ]\n")
        for words in (["replay", "--logs", "debug", scenario], ["replay", "--json", "--steps", scenario],
                      ["replay", "--html", "-", scenario], ["replay", "--tag", HOSTILE, scenario],
                      ["why", scenario, "3", "MTK_HESK_STILL_CAPTURE", "--all"], ["why", scenario, "3", HOSTILE],
                      ["why", scenario, "4", "return", "--json"], ["decide", "--call", "4", "--scenario", scenario],
                      ["decide", "--json", "--call", "4", "--scenario", scenario], ["tags", HOSTILE],
                      ["scenario", dump, "--product", HOSTILE, "--event", f"{HOSTILE}={HOSTILE}"],
                      ["rules", HOSTILE], [HOSTILE]):
            with self.subTest(words):
                done = subprocess.run([*CAMHOOK, *words], capture_output=True, timeout=HANGS)
                self.assertIn(done.returncode, (0, 1, 2))
                self.assertFalse(set("\x1b\x9b\u202e\x7f") & set((done.stdout + done.stderr).decode()))

    def test_completes_words(self):
        for shell in filter(shutil.which, ("bash", "zsh")):
            start = "autoload -U +X compinit bashcompinit; compinit -u -D; bashcompinit\n" if shell == "zsh" else ""
            for words, offered in ((["rep"], ["replay"]), (["replay", "--ht"], ["--html"]),
                                   (["replay", "-", "--color", "al"], ["always"]),
                                   (["replay", "--tag", "MTK_HESK_FRAME_C"], ["MTK_HESK_FRAME_COUNT"])):
                script = (start + SHELL_FUNCTION + f"source {CHECKOUT}/scripts/completion.bash\n"
                          f"COMP_WORDS=(camhook {shlex.join(words)}); COMP_CWORD={len(words)}\n"
                          "_camhook; echo ${COMPREPLY[@]}")
                with self.subTest(shell, words=words):
                    done = subprocess.run([shell, "-c", script], capture_output=True, timeout=HANGS)
                    self.assertEqual(done.stdout.decode().split(), offered, done)

    def test_rejects_pages_that_it_cannot_write(self):
        page = self.folder / "page.html"
        self.check_rejected("cannot be written: No such file", "replay", "--html", "/nowhere/page", "-", text=EMPTY)
        self.check_rejected("must not be empty", "replay", "--html", "", "-", text=EMPTY)
        self.check_rejected("--json excludes --html", "replay", "--html", str(page), "--json", "-", text=EMPTY)
        self.check_rejected("cannot be read", "replay", "--html", str(page), str(self.folder / "none"))
        self.assertFalse(page.exists())


unittest.main(argv=sys.argv[:1])
