"""Checks that docs/scenario.schema.json and the reader accept the same scenarios.

scenario_schema_test.py CHECKOUT CAMHOOK...

CAMHOOK is the command that runs the tool.
"""

import json
import pathlib
import random
import subprocess
import sys
import unittest

import jsonschema

CHECKOUT, CAMHOOK = pathlib.Path(sys.argv[1]), sys.argv[2:]
SCENARIOS = {path.name: json.loads(path.read_text()) for path in sorted((CHECKOUT / "scenarios").glob("*.json"))}
SCHEMA = json.loads((CHECKOUT / "docs/scenario.schema.json").read_text())
VALIDATOR = jsonschema.Draft4Validator(SCHEMA)
CREATE = {"call": "createInstance", "sensor": 0}


def device(**keys):
    return {"calls": [], "platform": {"devices": {"0": keys}}}


def request(**meta):
    return {"calls": [{"call": "updateRequestMeta", "sensor": 0, "requestNo": 1, "meta": meta}]}


def result(**keys):
    call = {"call": "updateResultMeta", "sensor": 0, "requestNo": 1, **keys}
    return {"calls": [*request()["calls"], call]}


def session(*streams):
    return {"calls": [{"call": "updateSessionParams", "sensor": 0, "meta": {}, "streams": [*streams]}]}


STREAM = {"id": 1, "usage": 0, "width": 1, "height": 1}
DECIDE = {"call": "decideSensorScenario", "sensor": 0, "meta": None, "width": 0, "height": 0}

INVALID = [
    {"calls": [], "call": 1},
    {"calls": [{"call": "foo"}]},
    {"calls": [{"call": "createInstance"}]},
    {"calls": [{**CREATE, "meta": {}}]},
    {"calls": [{"call": "setEvent", "key": "A", "value": 1}]},
    {"calls": [], "platform": {"properties": {"a": 1}}},
    {"calls": [], "platform": {"devices": {"zero": {}}}},
    {"calls": [], "platform": {"clock": "2021-3-4"}},
    {"calls": [], "platform": {"hal3aModule": None}},
    device(static={"HESK_CONTROL_FOO": 1}),
    device(sensor={"pdTail": [1, 2, 3]}),
    request(HESK_CONTROL_ISO={"type": "int", "items": []}),
    request(ANDROID_FLASH_MODE="2\0003"),
    request(ANDROID_FLASH_MODE={"type": "uint8", "items": "AUTO"}),
    request(HESK_CONTROL_ISO=["OFF"]),
    result(),
    result(metaOf=1, meta=None),
    {"calls": [CREATE, {**CREATE, "metaOf": 1}]},
    session({**STREAM, "usage": -1}),
    session({**STREAM, "id": 2**63}),
    session({"id": 1, "width": 1, "height": 1}),
    {"calls": [DECIDE]},
]

VALID = [
    {"$schema": "scenario.schema.json", "about": "Nothing.", "calls": []},
    {"calls": [], "platform": {"devices": {"-3": {"defaultShading": None}}}},
    request(HESK_CONTROL_ISO="0x10", HESK_CONTROL_EV="nan"),
    request(MTK_P1NODE_SCALAR_CROP_REGION=[1, 2, 3, 4], ANDROID_FLASH_MODE="TORCH"),
    request(MTK_P1NODE_SCALAR_CROP_REGION=[[1, 2, 3, 4]], HESK_CONTROL_ISO=[]),
    request(ANDROID_FLASH_MODE={"type": "uint8", "items": "TORCH"}),
    request(**{"0xc008000e": {"type": "uint8", "items": [6]}}),
    {"calls": [{"call": "updateResultMeta", "sensor": 0, "requestNo": "0x1", "meta": None}]},
    result(metaOf=1),
    result(metaOf="0x1", meta={"HESK_CONTROL_ISO": []}),
    session(STREAM, {**STREAM, "id": -(2**63), "usage": 2**64 - 1}, {**STREAM, "id": "0x2"}),
    {"calls": [{**DECIDE, "video": True}]},
]


def mutated(scenario, generator):
    """Returns a copy in which one member is removed, renamed or replaced by another value."""
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
    parent, key = generator.choice(places)
    kind = generator.randrange(3)
    if kind == 0:
        del parent[key]
    elif kind == 1 and isinstance(parent, dict):
        parent[key[:-1] + "x"] = parent.pop(key)
    else:
        parent[key] = json.loads(json.dumps(generator.choice(values)))
    return scenario


def reader_accepts(scenario):
    run = subprocess.run([*CAMHOOK, "replay", "-"], input=json.dumps(scenario), text=True, capture_output=True)
    return run.returncode == 0


class SchemaTest(unittest.TestCase):
    def test_accepts_stored_scenarios(self):
        jsonschema.Draft4Validator.check_schema(SCHEMA)
        self.assertTrue(SCENARIOS)
        for name, scenario in SCENARIOS.items():
            with self.subTest(name):
                self.assertEqual([(e.json_path, e.message) for e in VALIDATOR.iter_errors(scenario)], [])

    def test_agrees_with_reader(self):
        for scenarios, is_valid in ((INVALID, False), (VALID, True)):
            for scenario in scenarios:
                with self.subTest(scenario):
                    self.assertEqual((VALIDATOR.is_valid(scenario), reader_accepts(scenario)), (is_valid, is_valid))

    def test_agrees_with_reader_on_mutated_scenarios(self):
        generator = random.Random(1)
        for _ in range(100):
            scenario = mutated(generator.choice(list(SCENARIOS.values())), generator)
            with self.subTest(scenario):
                self.assertEqual(VALIDATOR.is_valid(scenario), reader_accepts(scenario))


unittest.main(argv=sys.argv[:1])
