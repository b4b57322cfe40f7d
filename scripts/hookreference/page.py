"""The hook reference as a page of Markdown."""

import re

from hookreference.library import Library
from hookreference.uses import Uses
from hookreference.vocabulary import ANY, STATIC

INTRODUCTION = """# Hooks

What each exported member reads and writes, itself and in the steps that it calls, found in the code of
`common/`. Made by `scripts/hook-reference`.

To find a tag: [the index of tags](#tags); a key or a property: [the event store](#event-store), [the
properties](#properties).

Beside a tag stand the steps that read or write it: the functions of `common/updater/` and
`common/sensormode/` that name it. When a step is taken, and what it writes, the contracts tell, in
`common/HeskParameterUpdater.h` and `common/HeskSensorModeControl.h`. [tags.md](tags.md) tells what the
tags mean; a tag that stands here under its value is one that the catalogue does not list.

Containers are named as the member names its parameters; *static* are the static characteristics of a
device. *any* tag: the entries of a whole container. Left out is the log, which all use.
"""


def purpose(header, member):
    """The first sentence of a member's contract."""
    comment = re.search(rf"((?: *///[^\n]*\n)+)[^/;]*\b{member}\(", header)
    if not comment:
        raise SystemExit(f"{member} has no contract")
    text = re.sub(r"\s*///\s?", " ", comment[1]).strip()
    return re.match(r".*?[.:](?= |$)", text)[0].rstrip(":.") + "."


def code(names):
    return ", ".join(f"`{name}`" for name in names)


def tag_cell(name):
    return "*any*" if name == ANY else f"`{name}`"


def table(*columns):
    return [f"| {' | '.join(columns)} |", f"|{'---|' * len(columns)}"]


def steps(uses, kind, name, container):
    where = (kind, name, container)
    return code(sorted({use.step for use in uses if (use.kind, use.name, use.container) == where}))


def tag_order(name):
    return name == ANY, name.startswith("0x"), name


def section(name, sentence, uses, containers):
    lines = ["", f"### {name}", "", sentence, ""]
    tags = [use for use in uses if use.kind in ("read", "write")]
    if tags:
        lines += table("Tag", "Container", "Read in", "Written in")
    for container in [*containers, STATIC]:
        where = f"*{STATIC}*" if container == STATIC else f"`{container}`"
        for tag in sorted({use.name for use in tags if use.container == container}, key=tag_order):
            read, written = (steps(tags, kind, tag, container) for kind in ("read", "write"))
            lines.append(f"| {tag_cell(tag)} | {where} | {read} | {written} |")
    lists = []
    for kind, title in (("event read", "Event store, read"), ("event set", "Event store, set"),
                        ("property", "Properties"), ("platform", "Platform")):
        names = sorted({use.name for use in uses if use.kind == kind})
        lists += [f"- {title}: {code(names)}"] if names else []
    if not tags and not lists:
        lists = ["It works on its arguments and the object's fields alone."]
    return lines + ([""] if tags and lists else []) + lists


def index(members, kinds, order=None):
    """Rows that lead from a name to the members that use it, and their steps."""
    names = {use.name for _, uses in members for use in uses if use.kind in kinds}
    for name in sorted(names, key=order):
        cells = []
        for kind in kinds:
            users = [(member, sorted({use.step for use in uses if (use.kind, use.name) == (kind, name)}))
                     for member, uses in members]
            cells.append("<br>".join(f"**{member}**: {code(found)}" for member, found in users if found))
        yield name, *cells


def page(root):
    """The page of the library below a folder."""
    exported = re.findall(r'^ +"?(\w+)::(\w+)', (root / "common/libcam_common.map").read_text(), re.M)
    uses = Uses(Library(root))
    lines, members, last_owner = [INTRODUCTION.rstrip()], [], ""
    for owner, name in exported:
        if owner != last_owner:
            lines += ["", f"## {owner}"]
        found, containers = uses.of(owner, name)
        contract = (root / f"common/{owner}.h").read_text()
        lines += section(name, purpose(contract, name), found, containers)
        members.append((name, found))
        last_owner = owner
    uses.check_nothing_is_overlooked()
    lines += ["", "## Tags", "", *table("Tag", "Read by", "Written by")]
    lines += [f"| {tag_cell(tag)} | {read} | {written} |"
              for tag, read, written in index(members, ("read", "write"), tag_order)]
    lines += ["", "## Event store", "", *table("Key", "Read by", "Set by")]
    lines += [f"| `{key}` | {read} | {set_by} |"
              for key, read, set_by in index(members, ("event read", "event set"))]
    lines += ["", "## Properties", "", *table("Property", "Read by")]
    lines += [f"| `{name}` | {read} |" for name, read in index(members, ("property",))]
    return "\n".join(lines) + "\n"
