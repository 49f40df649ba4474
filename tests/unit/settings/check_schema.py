"""Written setup files fit the schema that the documents hand out, and files that are wrong do not.

Usage: check_schema.py SCHEMA PROGRAM_THAT_WRITES_SETUPS
"""

import glob
import json
import subprocess
import sys
import tempfile

import jsonschema

COUNT = 200


def wrongs(setup):
    """Copies of the setup, each with one thing wrong, by the name of what it is."""
    def changed(change):
        copy = json.loads(json.dumps(setup))
        change(copy)
        return copy
    first = next(iter(setup["settings"]))
    yield "unknown key", changed(lambda s: s.update(colour="blue"))
    yield "unknown setting", changed(lambda s: s["settings"].update({"timing.colour": 1}))
    yield "third channel", changed(lambda s: s["settings"].update({"timing.width[3]": 1e-7}))
    yield "newer version", changed(lambda s: s.update(version=2))
    yield "missing part", changed(lambda s: s.pop("instrument"))
    yield "wrong type", changed(lambda s: s["settings"].update({first: None}))
    yield "out of range", changed(lambda s: s["settings"].update({"timing.width[1]": -1}))
    yield "unknown word", changed(lambda s: s["settings"].update({"mode.trigger": "Sometimes"}))
    yield "bad word of a pattern", changed(
        lambda s: s["settings"]["pattern.strobe"].update(words=["1: XYZ"]))


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        schema = json.load(file)
    jsonschema.Draft202012Validator.check_schema(schema)
    validator = jsonschema.Draft202012Validator(schema)
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run([sys.argv[2], folder, str(COUNT)], check=True)
        names = glob.glob(folder + "/*.json")
        for name in names:
            with open(name, encoding="utf-8") as file:
                setup = json.load(file)
            validator.validate(setup)
    refused = 0
    for what, wrong in wrongs(setup):
        if validator.is_valid(wrong):
            sys.exit(f"the schema takes a file with this wrong: {what}")
        refused += 1
    if len(names) != COUNT:
        sys.exit(f"{len(names)} files were written")
    print(f"{len(names)} files fit, {refused} wrong ones do not")


main()
