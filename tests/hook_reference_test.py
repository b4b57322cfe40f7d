"""docs/hooks.md says what the code does, and whoever reads the code for it overlooks nothing.

hook_reference_test.py CHECKOUT
"""

import difflib
import pathlib
import sys
import tempfile

sys.dont_write_bytecode = True
CHECKOUT = pathlib.Path(sys.argv[1])
sys.path.insert(0, str(CHECKOUT / "scripts"))

from hookreference.page import page  # noqa: E402 (it is found by now)

HEADER = """
class HeskHook {
 public:
  /// What it does: more.
  void run(NSCam::IMetadata* meta, NSCam::IMetadata* out);
};
"""
HEADERS = {
    "common/HeskHook.h": HEADER,
    "common/libcam_common.map": '  "HeskHook::run(NSCam::IMetadata*, NSCam::IMetadata*)";\n',
    "platform/Log.h": "struct IHal { virtual int control(int command) = 0; };\nvoid log(int);\n",
}

# Steps in front of the hook, the hook's body, and the rows that the page must have: tag, container,
# read in, written in. Or what is complained about.
SEEN = [
    ("", "write(out, tags::A, read(meta, tags::B));", ["A|out||run", "B|meta|run|"]),
    ("void step(IMetadata* to) { writeAs<int>(to, tags::A, 1, 2); }", "step(meta);", ["A|meta||step"]),
    ("void copy(IMetadata* to, Tag<int> tag) { clear(to, tag); }", "copy(out, tags::A);", ["A|out||run"]),
    ("template <auto kTag> void copy(IMetadata* to) { clear(to, kTag); }", "copy<tags::A>(out);", ["A|out||run"]),
    ("constexpr Tag<int> kAll[] = {tags::A, tags::B};", "for (const auto& tag : kAll) if (has(meta, tag)) return;",
     ["A|meta|run|", "B|meta|run|"]),
    ("struct Row { int k; Tag<int> tag; };\nconst Row kRows[] = {{1, tags::A}, {2, tags::B}};",
     "for (const auto& [k, tag] : kRows) { write(out, tag, k); }", ["A|out||run", "B|out||run"]),
    ("Tag<int> choose(bool b) { return b ? tags::A : tags::B; }", "clear(out, choose(true));",
     ["A|out||run", "B|out||run"]),
    ("int name(const IMetadata* any) { return read(any, tags::A); }\nstruct Row { int (*f)(const IMetadata*); };\n"
     "const Row kRows[] = {{name}};\nint first(const IMetadata* m) { return kRows[0].f(m); }",
     "first(meta);", "which container a function of a table takes cannot be told"),
    ("constexpr Tag<int> kPlatform{0x80060010};", "copyAll(out, tags::A, meta, kPlatform);",
     ["A|out||run", "0x80060010|meta|run|"]),
    ("struct All { int k; IMetadata* meta; };\nvoid step(const All& all) { replaceItem(all.meta, tags::A, 1, 2); }",
     "const All all{.k = 1, .meta = out};\n  step(all);", ["A|out|step|step"]),
    ("class Owner { public: explicit Owner(IMetadata* m) { clear(m, tags::A); } };", "Owner owner(out);", ["A|out||Owner"]),
    ("", "const auto step = [&] { return read(meta, tags::A); };\n  step();", ["A|meta|run|"]),
    ("", "append(out, *meta);", ["any|out||run"]),
    ("void publish(const char* key) { setEvent(key, \"1\"); }\n"
     "template <EventKey kKey> int number() { return eventValue<kKey>().size(); }",
     "publish(\"K\");\n  number<\"L\">();", ["- Event store, read: `L`", "- Event store, set: `K`"]),
    ("", 'property_get_int32("a.b", 0);\n  hal->control(kOn);\n  log(1);',
     ["- Properties: `a.b`", "- Platform: `IHal::control()`, `log()`"]),
    # What cannot be understood, or is not used, does not pass in silence.
    ("void step(IMetadata* to) { clear(to, tags::A); }", "", "no exported member is seen to use A"),
    ("void step() { property_get_bool(\"a.b\", true); }", "", "no exported member is seen to use property_get_bool"),
    ("", "lookUp(tags::A.value);", "no exported member is seen to use A"),
    ("", "clear(out, somewhere());", "which tag clear is given cannot be told"),
    ("", "clear(mKept, tags::A);", "which container clear is given cannot be told"),
    ("", "meta->entryFor(7);", "entryFor is used through common/tags/Metadata.h alone"),
    ("", "setEvent(keyOf(1), \"\");", "which text setEvent is given cannot be told"),
]


def cells(row):
    tag, container, read, written = row.split("|")
    tag = "*any*" if tag == "any" else f"`{tag}`"
    steps = [f"`{step}`" if step else "" for step in (read, written)]
    return f"| {tag} | `{container}` | {steps[0]} | {steps[1]} |"


def page_of(steps, body):
    """The page of a library of one hook, or what is complained about."""
    source = ('#include "platform/Log.h"\nnamespace {\n' + steps + "\n}\n"
              "void HeskHook::run(IMetadata* meta, IMetadata* out) {\n  " + body + "\n}\n")
    with tempfile.TemporaryDirectory() as folder:
        for name, text in {**HEADERS, "common/updater/Hook.cpp": source}.items():
            path = pathlib.Path(folder, name)
            path.parent.mkdir(exist_ok=True)
            path.write_text(text)
        try:
            return page(pathlib.Path(folder))
        except SystemExit as error:
            return f"error: {error}"


def main():
    problems = []
    for steps, body, expected in SEEN:
        found = page_of(steps, body)
        if isinstance(expected, str):
            good = found.startswith("error: ") and expected in found
        else:
            lines = found.split("## Tags")[0].splitlines()
            rows = [line for line in lines if line[:3] in ("| `", "| *") or line.startswith("- ")]
            good = sorted(rows) == sorted(row if row[0] == "-" else cells(row) for row in expected)
        if not good:
            problems.append(f"of\n{steps}\n{body}\nis expected {expected}, but found\n{found}")

    written = (CHECKOUT / "docs/hooks.md").read_text().splitlines()
    changes = [*difflib.unified_diff(written, page(CHECKOUT).splitlines(), "docs/hooks.md", "the code",
                                         n=0, lineterm="")]
    if changes:
        problems.append("\n".join([*changes, "Renew the page: scripts/hook-reference > docs/hooks.md"]))
    print("\n\n".join(problems))
    sys.exit(bool(problems))


main()
