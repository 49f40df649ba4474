"""The profiles that come with the driver fit the schema that the documents hand out, and profiles with faults do not;
the schema knows just the settings that the driver knows.

Usage: check_profile_schema.py SCHEMA PROFILE_FOLDER TARVIK_SCPI DOCUMENT
"""

import copy
import json
import pathlib
import re
import subprocess
import sys
import tempfile

import jsonschema

FAULTS = {
    "another format": lambda p: p.update(format="tarvikvi-setup"),
    "a newer version": lambda p: p.update(version=2),
    "an unknown key": lambda p: p.update(speed=1),
    "an unknown setting": lambda p: p["settings"].update({"timing.wide": {"command": ":A"}}),
    "an unknown word": lambda p: p["settings"]["mode.clockEdge"]["words"].update(Sideways="SIDE"),
    "an unknown key of a setting": lambda p: p["settings"]["timing.width"].update(colour=1),
    "a setting without a command": lambda p: p["settings"]["timing.width"].pop("command"),
    "an unknown unit": lambda p: p["settings"]["timing.width"].update(unit="h"),
    "a buffer that is too small": lambda p: p["messages"].update(input=10),
    "three channels": lambda p: p.update(channels=3),
    "nothing to lack": lambda p: p.update(lacks=["Wheels"]),
    "an order without room": lambda p: p["order"].append({"setting": "timing.width"}),
    "no error queue": lambda p: p.pop("errors"),
}


def main():
    schema = json.loads(pathlib.Path(sys.argv[1]).read_text(encoding="utf-8"))
    jsonschema.Draft202012Validator.check_schema(schema)
    validator = jsonschema.Draft202012Validator(schema)
    profiles = {path.stem: json.loads(path.read_text(encoding="utf-8"))
                for path in sorted(pathlib.Path(sys.argv[2]).glob("*.json"))}
    assert profiles, "no profiles"
    for name, profile in profiles.items():
        validator.validate(profile)
        print("fits:", name)
    for fault, spoil in FAULTS.items():
        spoilt = copy.deepcopy(profiles["scpi-99"])
        spoil(spoilt)
        assert not validator.is_valid(spoilt), f"the schema takes {fault}"
        print("refused:", fault)
    document = pathlib.Path(sys.argv[4]).read_text(encoding="utf-8")
    example = next(block for block in re.findall(r"(?:^    .*\n)+", document, re.M) if "tarvikvi-scpi-profile" in block)
    validator.validate(json.loads(example))
    with tempfile.NamedTemporaryFile("w", suffix=".json") as file:
        file.write(example)
        file.flush()
        subprocess.run([sys.argv[3], "check", file.name], check=True, stdout=subprocess.DEVNULL)
    print("fits: the document's example")
    printed = subprocess.run([sys.argv[3], "check", "scpi-99"], check=True, capture_output=True, text=True).stdout
    known = {key if key.startswith("pattern.stream") else key.split("[")[0]
             for key in (line.split("\t")[0] for line in printed.splitlines())}
    assert known == set(schema["properties"]["settings"]["properties"]), "the schema knows other settings"


if __name__ == "__main__":
    main()
