"""The few words in which the library speaks to metadata, the event store and the properties."""

import dataclasses

# What the operations on a container do: the positions of the container and of the tag.
READS = dict.fromkeys(
    ("has", "read", "readAs", "readIfPresent", "readAll", "count", "find_camera_metadata_entry"), (0, 1)
)
READS.update(copyAll=(2, 3), replaceItem=(0, 1))
WRITES = dict.fromkeys(("write", "writeAs", "writeAll", "clear", "copyAll", "replaceItem"), (0, 1))
# Those that take whatever entry there is: the position of the container.
READS_ANY = {"dump_camera_metadata": 0}
WRITES_ANY = {"append": 0}
METADATA = {*READS, *WRITES, *READS_ANY, *WRITES_ANY}

PROPERTIES = ("property_get", "property_get_int32", "property_get_bool")

# Where the words are made of what lies below; nobody else uses that.
BELOW = {
    "common/tags/Metadata.h": ("entryFor", "itemAt", "IEntry"),
    "common/updater/Events.h": ("ATMsEventMgr",),
}

ANY = "any"  # tag
STATIC = "static"  # container
UNNAMED = "?"  # container that comes by a function pointer


@dataclasses.dataclass(frozen=True)
class Value:
    """A constant that an expression leads to."""

    kind: str  # "tag", "text" or "container"
    name: str
    step: str = ""  # the function that spells it
    token: object = None


@dataclasses.dataclass(frozen=True, order=True)
class Use:
    kind: str  # "read", "write", "event read", "event set", "property" or "platform"
    name: str
    container: str  # of a tag
    step: str
