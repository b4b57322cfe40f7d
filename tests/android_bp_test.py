"""Checks that Android.bp and CMake compile the same sources with the same options and definitions.

    android_bp_test.py CHECKOUT BUILD

CMake's options are those of BUILD/compile_commands.json. Android.bp is read line by line, which requires the
format that bpfmt writes."""

import json
import pathlib
import re
import shlex
import subprocess
import sys
import unittest

checkout, build = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
blueprint = checkout / "Android.bp"

# Modules of Android.bp and the CMake targets that compile the same.
TARGETS = {
    "libcam_common": "cam_common_objects",
    "libcam_common_objects": "cam_common_objects",
    "libcam_host": "cam_host",
    "libcamhook_objects": "camhook_objects",
    "libcamhook_explain_objects": "camhook_explain_objects",
    "camhook": "camhook",
    "cam_tests": "cam_tests",
}
# Options that may differ: position-independent code, precompiled headers, warnings as errors.
OWN_OPTIONS = re.compile(
    r"-fPI[CE]|-f(debug|macro)-prefix-map=.*|-fno-semantic-interposition|-Winvalid-pch|-Werror"
    r"|-D(NDEBUG|CAMHOOK_COMMIT=.*|\w+_EXPORTS|GTEST_\w+=.*)"
)


def read_modules():
    modules = {}
    for body in re.findall(r"^\w+ \{\n(.*?)^\}", blueprint.read_text(), re.M | re.S):
        properties = {}
        for name, value in re.findall(r"^    (\w+): (\[.*?\]|\"[^\n]*\"|\w+),$", body, re.M | re.S):
            properties[name] = re.findall(r'"((?:[^"\\]|\\.)*)"', value)
        modules[properties["name"][0]] = properties
    return modules


def lineage(modules, name):
    """Returns a module and its defaults, without those that Android defines."""
    module = modules.get(name, {})
    return [module] + [m for default in module.get("defaults", []) for m in lineage(modules, default)]


def items(modules, name, *lists):
    return {item for module in lineage(modules, name) for key in lists for item in module.get(key, [])}


def options_of_phone(modules, name):
    options = {option.replace('\\"', '"') for option in items(modules, name, "cflags", "cppflags")}
    # Soong disables exceptions and RTTI by default.
    if "-fexceptions" in options:
        options.remove("-fexceptions")
    else:
        options.add("-fno-exceptions")
    if not any("rtti" in module for module in lineage(modules, name)):
        options.add("-fno-rtti")
    return options


def own_sources(source):
    """Returns the sources of the project that a compiled file contains: several for a unity build."""
    joined = [source]
    if source.parent.name == "Unity":
        joined = [pathlib.Path(path) for path in re.findall(r'^#include "(.*)"', source.read_text(), re.M)]
    return [path for path in joined if path.is_relative_to(checkout) and not path.is_relative_to(build)]


def read_compilations():
    """Returns the sources and the options of each CMake target, with paths relative to the checkout."""
    sources, options = {}, {}
    for entry in json.loads((build / "compile_commands.json").read_text()):
        words = shlex.split(entry["command"])
        target = re.search(r"CMakeFiles/(.*?)\.dir/", words[words.index("-o") + 1])[1]
        own = own_sources(pathlib.Path(entry["file"]))
        if not own:
            continue
        sources.setdefault(target, set()).update(str(source.relative_to(checkout)) for source in own)
        for word in words:
            if re.match("-[fWD]", word) and not OWN_OPTIONS.fullmatch(word):
                word = word.replace(f"{build}/bin/", "").replace(f"{checkout}/", "")
                options.setdefault(target, set()).add(word.replace(str(checkout), "."))
    return sources, options


class AndroidBpTest(unittest.TestCase):
    def test_is_formatted(self):
        run = subprocess.run(["bpfmt", "-d", blueprint], capture_output=True, text=True)
        self.assertEqual((run.returncode, run.stdout, run.stderr), (0, "", ""))

    def test_compiles_like_cmake(self):
        modules = read_modules()
        sources, options = read_compilations()
        for module, target in TARGETS.items():
            with self.subTest(module):
                self.assertEqual(items(modules, module, "srcs"), sources[target])
                self.assertEqual(options_of_phone(modules, module), options[target])


unittest.main(argv=sys.argv[:1])
