#!/usr/bin/env python3
"""Writes DriverObject.h, the bases of a driver's objects, from the contract's own declarations.

Usage: generate_driver_objects.py KolvenDriver.h OUTPUT_FILE
"""

import os
import sys

from contract import read_contract, write

HEAD = """#pragma once

// Written from KolvenDriver.h by generate_driver_objects.py.

#include <string>

#include "automation/ErrorInfo.h"
#include "automation/Object.h"
#include "instrument/KolvenDriver.h"

namespace tarvik::kolven {

/// The answer to an operation that the driver does not have: a failure whose description names the operation.
inline Status NotSupported(const char *strOperation) {
  return automation::Fail(StatusNotImplemented, std::string("The driver does not support ") + strOperation);
}

/// Base of a driver's object behind one interface of the contract. Each operation answers NotSupported until the driver
/// overrides it, so that a driver is made of nothing but what its instrument has.
template <class Interface>
class DriverObject;
"""


def base(name, operations):
    lines = ["", "template <>", f"class DriverObject<{name}> : public automation::Object<{name}> {{", " public:"]
    for operation in operations:
        if operation.reserved:
            continue
        types = ", ".join(argument.type for argument in operation.arguments)
        lines += [f"  Status TARVIK_CALL {operation.name}({types}) override {{",
                  f'    return NotSupported("{name}.{operation.name}");', "  }"]
    return lines + ["};"]


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    lines = HEAD.splitlines()
    for name, operations in read_contract(sys.argv[1]):
        lines += base(name, operations)
    lines += ["", "}  // namespace tarvik::kolven", ""]
    os.makedirs(os.path.dirname(sys.argv[2]), exist_ok=True)
    write(sys.argv[2], "\n".join(lines))


if __name__ == "__main__":
    main()
