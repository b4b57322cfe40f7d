"""docs/scenario.schema.json accepts the shipped scenarios and refuses what the reader refuses.

scenario_schema_test.py CHECKOUT CAMHOOK...

CAMHOOK is the command that runs the tool.
"""

import json
import pathlib
import subprocess
import sys

import jsonschema

CREATE = {"call": "createInstance", "sensor": 0}


def device(**keys):
    return {"calls": [], "platform": {"devices": {"0": keys}}}


def request(**meta):
    return {"calls": [{"call": "updateRequestMeta", "sensor": 0, "requestNo": 1, "meta": meta}]}


def session(*streams):
    return {"calls": [{"call": "updateSessionParams", "sensor": 0, "meta": {}, "streams": [*streams]}]}


STREAM = {"id": 1, "usage": 0, "width": 1, "height": 1}
DECIDE = {"call": "decideSensorScenario", "sensor": 0, "meta": None, "width": 0, "height": 0}

REFUSED = [
    {},
    {"calls": [], "call": 1},
    {"calls": [{"call": "foo"}]},
    {"calls": [{"call": "createInstance"}]},
    {"calls": [{**CREATE, "meta": {}}]},
    {"calls": [{**CREATE, "sensor": 2**31}]},
    {"calls": [{"call": "setEvent", "key": "A", "value": 1}]},
    {"calls": [], "platform": {"properties": {"a": 1}}},
    {"calls": [], "platform": {"devices": {"zero": {}}}},
    {"calls": [], "platform": {"clock": "2021-3-4"}},
    {"calls": [], "platform": {"hal3aModule": None}},
    {"calls": [], "about": 1},
    {"calls": [], "$schema": None},
    device(static={"HESK_CONTROL_FOO": 1}),
    device(hal3a={"shading": 1}),
    device(sensor={"pdTail": [1, 2, 3]}),
    device(sensor={"pdLeft": [[1]]}),
    request(HESK_CONTROL_ISO={"type": "int", "items": []}),
    request(HESK_CONTROL_ISO={"items": [1]}),
    request(HESK_CONTROL_ISO=None),
    session({**STREAM, "usage": -1}),
    session({**STREAM, "id": 2**63}),
    session({"id": 1, "width": 1, "height": 1}),
    {"calls": [DECIDE]},
    {"calls": [{**DECIDE, "video": 1}]},
]

ACCEPTED = [
    {"$schema": "scenario.schema.json", "about": "Nothing.", "calls": []},
    {"calls": [], "platform": {"devices": {"-3": {"defaultShading": None}}}},
    request(HESK_CONTROL_ISO="0x10", HESK_CONTROL_EV="nan"),
    request(MTK_P1NODE_SCALAR_CROP_REGION=[1, 2, 3, 4], ANDROID_FLASH_MODE="2\0003"),
    request(MTK_P1NODE_SCALAR_CROP_REGION=[[1, 2, 3, 4]], HESK_CONTROL_ISO=[]),
    request(**{"0xc008000e": {"type": "uint8", "items": [6]}}),
    {"calls": [{"call": "updateRequestMeta", "sensor": 0, "requestNo": "0x1", "meta": None}]},
    {"calls": [{"call": "updateResultMeta", "sensor": 0, "requestNo": "0x1", "meta": None}]},
    session(STREAM, {**STREAM, "id": -(2**63), "usage": 2**64 - 1}, {**STREAM, "id": "0x2"}),
    {"calls": [{**DECIDE, "video": True}]},
]


def reader_takes(camhook, scenario):
    run = subprocess.run(
        [*camhook, "replay", "-"], input=json.dumps(scenario), text=True, capture_output=True
    )
    return run.returncode == 0


def main():
    checkout, camhook = pathlib.Path(sys.argv[1]), sys.argv[2:]
    schema = json.loads((checkout / "docs/scenario.schema.json").read_text())
    jsonschema.Draft4Validator.check_schema(schema)
    validator = jsonschema.Draft4Validator(schema)
    problems = []

    shipped = [p for p in (checkout / "scenarios").glob("*.json") if ".trace" not in p.name]
    if len(shipped) < 4:
        problems.append("scenarios are missing")
    for path in shipped:
        for error in validator.iter_errors(json.loads(path.read_text())):
            problems.append(f"{path.name}: {error.json_path}: {error.message}")
    for scenarios, good in ((REFUSED, False), (ACCEPTED, True)):
        for scenario in scenarios:
            if validator.is_valid(scenario) != good:
                problems.append(f"the schema {'refuses' if good else 'takes'} {scenario}")
            if reader_takes(camhook, scenario) != good:
                problems.append(f"the reader {'refuses' if good else 'takes'} {scenario}")
    print("\n".join(problems))
    sys.exit(bool(problems))


main()
