"""docs/scenario.schema.json accepts the shipped scenarios and refuses what the reader refuses.

scenario_schema_test.py CHECKOUT CAMHOOK...

CAMHOOK is the command that runs the tool.
"""

import json
import pathlib
import random
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
    request(ANDROID_FLASH_MODE=["AUTO"]),
    request(ANDROID_FLASH_MODE="2\0003"),
    request(ANDROID_FLASH_MODE={"type": "uint8", "items": "AUTO"}),
    request(HESK_CONTROL_ISO=["OFF"]),
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
    request(MTK_P1NODE_SCALAR_CROP_REGION=[1, 2, 3, 4], ANDROID_FLASH_MODE="TORCH"),
    request(MTK_P1NODE_SCALAR_CROP_REGION=[[1, 2, 3, 4]], HESK_CONTROL_ISO=[]),
    request(ANDROID_FLASH_MODE={"type": "uint8", "items": "TORCH"}),
    request(**{"0xc008000e": {"type": "uint8", "items": [6]}}),
    {"calls": [{"call": "updateRequestMeta", "sensor": 0, "requestNo": "0x1", "meta": None}]},
    {"calls": [{"call": "updateResultMeta", "sensor": 0, "requestNo": "0x1", "meta": None}]},
    session(STREAM, {**STREAM, "id": -(2**63), "usage": 2**64 - 1}, {**STREAM, "id": "0x2"}),
    {"calls": [{**DECIDE, "video": True}]},
]


def broken(scenario, chance):
    """The scenario with something at one place that another place has."""
    places, values = [], [None, 1.5, -1, "x", [], {}, 2**40, True]

    def walk(value):
        inside = value.items() if isinstance(value, dict) else enumerate(value)
        for key, member in inside:
            places.append((value, key))
            values.append(member)
            if isinstance(member, (dict, list)):
                walk(member)

    scenario = json.loads(json.dumps(scenario))
    walk(scenario)
    around, key = chance.choice(places)
    kind = chance.randrange(3)
    if kind == 0:
        del around[key]
    elif kind == 1 and isinstance(around, dict):
        around[key[:-1] + "x"] = around.pop(key)
    else:
        around[key] = json.loads(json.dumps(chance.choice(values)))
    return scenario


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
    chance = random.Random(1)
    whole = [json.loads(path.read_text()) for path in sorted(shipped)]
    missed = 0
    for _ in range(100):
        scenario = broken(chance.choice(whole), chance)
        is_valid, is_taken = validator.is_valid(scenario), reader_takes(camhook, scenario)
        missed += is_valid and not is_taken
        if is_taken and not is_valid:
            problems.append(f"the schema refuses what the reader takes: {scenario}")
    if missed > 0:
        problems.append(f"the schema takes {missed} of 100 that the reader refuses")
    print("\n".join(problems))
    sys.exit(bool(problems))


main()
