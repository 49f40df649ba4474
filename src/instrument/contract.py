"""Reads the driver's contract: every dual interface of KolvenDriver.h with its operations in their order.

What is written from the contract, such as marshalling and bases of drivers, follows its declarations through here.
"""

import os
import re
import sys

NUMBERS = {"Long", "Integer", "Double", "VariantBool"}
BY_REFERENCE = {kind + " *" for kind in NUMBERS} | {"AutomationString *", "AutomationArray **"}
INTERFACE = re.compile(r"^class (I\w+) : public IDispatch \{$(.*?)^\};$", re.M | re.S)
OPERATION = re.compile(
    r"(?P<comment>(?:^ *///[^\n]*\n)*)"
    r"^ *virtual Status TARVIK_CALL (?P<name>\w+)\((?P<arguments>[^)]*)\)\s*(?:= 0;|\{ return StatusNotImplemented; \})",
    re.M)


class Argument:
    def __init__(self, text, interfaces):
        match = re.fullmatch(r"(\w+)\s*(\**)(\w+)", " ".join(text.split()))
        if not match:
            sys.exit(f"argument not understood: {text!r}")
        base, stars, self.name = match.groups()
        self.type = base + (" " + stars if stars else "")
        self.interface = base if stars == "**" and (base in interfaces or base == "IDispatch") else None
        self.number = not stars and base in NUMBERS
        if not (self.interface or self.number or self.type in BY_REFERENCE or self.type == "AutomationVariant"):
            sys.exit(f"no marshalling for an argument of type {self.type}")


class Operation:
    def __init__(self, match, interfaces):
        self.name = match["name"]
        self.reserved = not match[0].endswith("= 0;")
        self.arguments = [Argument(text, interfaces) for text in match["arguments"].split(",") if text.strip()]
        self.inputs = [argument for argument in self.arguments if not argument.interface]
        objects = [argument for argument in self.arguments if argument.interface]
        if len(objects) > 1:
            sys.exit(f"{self.name} hands out more than one object")
        self.object = objects[0] if objects else None
        self.result = None
        if self.object:
            named = re.search(r"narrowed to\s+(?:///\s*)?(I\w+)", match["comment"])
            self.result = named.group(1) if self.object.interface == "IDispatch" and named else self.object.interface
            if self.result not in interfaces:
                sys.exit(f"{self.name}: the comment does not tell what the generic reference is narrowed to")
        self.deferred = bool(self.object) and all(argument.number for argument in self.inputs)

    def declaration(self):
        return ", ".join(f"{argument.type} {argument.name}" for argument in self.arguments)


def read_contract(path):
    with open(path, encoding="utf-8") as file:
        text = file.read()
    bodies = INTERFACE.findall(text)
    names = [name for name, _ in bodies]
    declared = set(re.findall(r"^class (I\w+) : public IDispatch", text, re.M))
    if declared != set(names):
        sys.exit(f"interfaces not understood: {sorted(declared - set(names))}")
    contract = []
    for name, body in bodies:
        operations = [Operation(match, names) for match in OPERATION.finditer(body)]
        if len(operations) != body.count("virtual Status"):
            sys.exit(f"an operation of {name} is not understood")
        contract.append((name, operations))
    return contract


def write(path, text):
    """Leaves a file alone that says the same already, so that nothing is compiled again for it."""
    if os.path.exists(path):
        with open(path, encoding="utf-8") as file:
            if file.read() == text:
                return
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)
