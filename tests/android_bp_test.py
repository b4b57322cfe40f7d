"""Compares the phone's build file with CMake's: the same sources, the same warnings and code options.

    android_bp_test.py CHECKOUT BUILD

CMake's side is what it wrote to BUILD/compile_commands.json. Android.bp is in the formatter's form,
which bpfmt confirms, so that it can be read by lines."""

import json
import pathlib
import re
import shlex
import subprocess
import sys

checkout, build = (pathlib.Path(argument).resolve() for argument in sys.argv[1:])
blueprint = checkout / "Android.bp"
faults = []

# CMake's targets by the modules of Android.bp that compile the same.
TARGETS = {
    "libcam_common": "cam_common_objects",
    "libcam_common_objects": "cam_common_objects",
    "libcam_host": "cam_host",
    "libcamhook_objects": "camhook_objects",
    "camhook": "camhook",
    "cam_tests": "cam_tests",
}
# Each build chooses these itself.
OWN_OPTIONS = re.compile(r"-fPIC|-f(file|debug|macro)-prefix-map=.*")


def check_format():
    run = subprocess.run(["bpfmt", "-d", blueprint], capture_output=True, text=True)
    if run.returncode != 0 or run.stdout:
        sys.exit(f"Android.bp is not as bpfmt writes it:\n{run.stdout}{run.stderr}")


def read_modules():
    modules = {}
    for body in re.findall(r"^\w+ \{\n(.*?)^\}", blueprint.read_text(), re.M | re.S):
        properties = {}
        for name, value in re.findall(r"^    (\w+): (\[.*?\]|\"[^\n]*\"|\w+),$", body, re.M | re.S):
            properties[name] = re.findall(r'"((?:[^"\\]|\\.)*)"', value)
        modules[properties["name"][0]] = properties
    return modules


def items(modules, module, name):
    """A list of a module, with what the defaults add to it. Those of the phone are not here."""
    properties = modules.get(module, {})
    inherited = (items(modules, default, name) for default in properties.get("defaults", []))
    return sum(inherited, []) + properties.get(name, [])


def read_compilations():
    sources, options = {}, {}
    for entry in json.loads((build / "compile_commands.json").read_text()):
        words = shlex.split(entry["command"])
        target = re.search(r"CMakeFiles/(.*?)\.dir/", words[words.index("-o") + 1])[1]
        source = pathlib.Path(entry["file"])
        if source.is_relative_to(build):  # a precompiled header
            continue
        sources.setdefault(target, []).append(str(source.relative_to(checkout)))
        options[target] = {w for w in words if re.match("-[fW]", w) and not OWN_OPTIONS.fullmatch(w)}
    return sources, options


def compare(where, of_phone, of_cmake):
    for item in sorted(set(of_cmake) - set(of_phone)):
        faults.append(f"{where}: {item} is missing in Android.bp")
    for item in sorted(set(of_phone) - set(of_cmake)):
        faults.append(f"{where}: {item} is missing in CMake's build")


check_format()
modules = read_modules()
sources, options = read_compilations()
for module, target in TARGETS.items():
    compare(module, items(modules, module, "srcs"), sources[target])

library = "libcam_common"
of_phone = items(modules, library, "cflags") + items(modules, library, "cppflags")
# The phone's build compiles without exceptions unless it is told.
of_phone = [option for option in of_phone if re.match("-[fW]", option) and option != "-fexceptions"]
compare(library, of_phone, options[TARGETS[library]])

for fault in faults:
    print(fault)
sys.exit(1 if faults else 0)
