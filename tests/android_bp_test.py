"""Compares the phone's build file with CMake's: the same sources, warnings, code options and definitions.

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
    "libcamhook_explain_objects": "camhook_explain_objects",
    "camhook": "camhook",
    "cam_tests": "cam_tests",
}
# What each build chooses itself: how code is loaded, what is precompiled, whether warnings stop it.
OWN_OPTIONS = re.compile(
    r"-fPI[CE]|-f(debug|macro)-prefix-map=.*|-fno-semantic-interposition|-Winvalid-pch|-Werror"
    r"|-D(NDEBUG|CAMHOOK_COMMIT=.*|\w+_EXPORTS|GTEST_\w+=.*)"
)


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


def lineage(modules, name):
    """A module and its defaults. Those of the phone are not here."""
    module = modules.get(name, {})
    return [module] + [m for default in module.get("defaults", []) for m in lineage(modules, default)]


def items(modules, name, *lists):
    return {item for module in lineage(modules, name) for key in lists for item in module.get(key, [])}


def options_of_phone(modules, name):
    options = {option.replace('\\"', '"') for option in items(modules, name, "cflags", "cppflags")}
    # The phone's build compiles without both unless it is told.
    if "-fexceptions" in options:
        options.remove("-fexceptions")
    else:
        options.add("-fno-exceptions")
    if not any("rtti" in module for module in lineage(modules, name)):
        options.add("-fno-rtti")
    return options


def own_sources(source):
    """A file or those it joins; none where it is a precompiled header or of another project."""
    joined = [source]
    if source.parent.name == "Unity":
        joined = [pathlib.Path(path) for path in re.findall(r'^#include "(.*)"', source.read_text(), re.M)]
    return [path for path in joined if path.is_relative_to(checkout) and not path.is_relative_to(build)]


def read_compilations():
    """What CMake compiles for each target, and with which options, paths as from the checkout."""
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


def compare(module, of_phone, of_cmake):
    for item in sorted(of_cmake - of_phone):
        faults.append(f"{module}: {item} is missing in Android.bp")
    for item in sorted(of_phone - of_cmake):
        faults.append(f"{module}: {item} is missing in CMake's build")


check_format()
modules = read_modules()
sources, options = read_compilations()
for module, target in TARGETS.items():
    compare(module, items(modules, module, "srcs"), sources[target])
    compare(module, options_of_phone(modules, module), options[target])

for fault in faults:
    print(fault)
sys.exit(1 if faults else 0)
