#!/usr/bin/env python3
"""Writes the objects of a driver whose operations all pass one hook, from the contract's own declarations.

Usage: generate_hooked_objects.py KolvenDriver.h OUTPUT_FILE

Arguments by value and selectors are given by the caller, arguments by reference are filled by the driver. Some are both:
a number of a setter, since a driver may write back what it took, and the array that a calculation fills. The array of a
setter is only read.
"""

import os
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "../../src/instrument"))
from contract import read_contract, write  # noqa: E402

KINDS = {"Long": "Whole", "Integer": "Short", "Double": "Real", "VariantBool": "Flag", "AutomationString": "Text",
         "AutomationArray": "Bytes", "AutomationVariant": "Key"}


def parameter(operation, argument):
    base = argument.type.rstrip(" *")
    kind = "Object" if argument.interface else KINDS[base]
    by_reference = "*" in argument.type
    selector = argument.name == "pSelector"
    sets = operation.name.startswith("Set")
    array = base == "AutomationArray"
    given = not by_reference or selector or sets or (array and not operation.name.startswith("Get"))
    filled = by_reference and not selector and not (array and sets)
    if argument.interface:
        given = filled = False
    flags = ", ".join(str(flag).lower() for flag in (by_reference, given, filled))
    return f"{{Parameter::{kind}, {flags}}}"


def table(contract):
    places = {name: place for place, (name, _) in enumerate(contract)}
    parameters, operations = [], []
    for name, ops in contract:
        for op in ops:
            number = len(operations)
            rows = ", ".join(parameter(op, argument) for argument in op.arguments)
            span = f"Parameters{number}" if rows else "{}"
            if rows:
                parameters.append(f"constexpr Parameter {span}[] = {{{rows}}};")
            handed = f", {places[op.result]}, {str(op.object.interface == 'IDispatch').lower()}" if op.object else ""
            operations.append(f'    {{{number}, "{name}.{op.name}", {span}{handed}}},')
    return parameters + ["", "constexpr Operation Contract[] = {"] + operations + ["};", ""]


def classes(contract):
    out, number = [], 0
    for name, ops in contract:
        out += [f"class Hooked{name} final : public HookedObject<{name}> {{", " public:",
                f'  explicit Hooked{name}(HookedPlace place) : HookedObject(std::move(place), "{name}") {{}}']
        for op in ops:
            passed = "".join(f", {argument.name}" for argument in op.arguments)
            out += [f"  Status TARVIK_CALL {op.name}({op.declaration()}) override {{",
                    f"    return Pass(Contract[{number}]{passed});", "  }"]
            number += 1
        out += ["};", ""]
    return out


def makers(contract):
    out = ["template <class T>", "automation::IDispatch *Make(HookedPlace place) {",
           "  return automation::MakeObject<T>(std::move(place)).Detach();", "}", "",
           "struct Maker {", "  std::string_view strInterface;",
           "  automation::IDispatch *(*make)(HookedPlace);", "};", "", "constexpr Maker Makers[] = {"]
    out += [f'    {{"{name}", &Make<Hooked{name}>}},' for name, _ in contract]
    return out + ["};", "", "}  // namespace", "",
                  "std::span<const Operation> Operations() { return Contract; }", "",
                  "automation::IDispatch *MakeHookedObject(std::size_t number, HookedPlace place) {",
                  "  return Makers[number].make(std::move(place));", "}", "",
                  "std::string_view HookedInterface(std::size_t number) { return Makers[number].strInterface; }",
                  "",
                  "automation::Ref<automation::IUnknown> MakeHookedRoot(DriverHook &hook) {",
                  "  return automation::MakeObject<HookedIDriverRoot>(HookedPlace{&hook});", "}", ""]


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    contract = [(name, [op for op in ops if not op.reserved]) for name, ops in read_contract(sys.argv[1])]
    lines = ["// Written from KolvenDriver.h by generate_hooked_objects.py.", "", '#include "HookedObject.h"', "",
             "namespace tarvik::test {", "", "using namespace kolven;", "", "namespace {", ""]
    lines += table(contract) + classes(contract) + makers(contract) + ["}  // namespace tarvik::test", ""]
    os.makedirs(os.path.dirname(sys.argv[2]), exist_ok=True)
    write(sys.argv[2], "\n".join(lines))


if __name__ == "__main__":
    main()
