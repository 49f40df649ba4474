#!/usr/bin/env python3
"""Writes the proxies and the operation tables of the remote driver from the contract's own declarations.

Usage: generate_marshalling.py KolvenDriver.h OUTPUT_FOLDER

Reads every dual interface of the header with its operations in their order and writes Proxies.cpp (one proxy
class for each interface), ContractTable.cpp (the table the server works from) and OperationList.inc (one line for
each operation, for tests that must reach them all).

An operation that hands out an object and takes nothing but plain numbers is deferred: it is sent along with the
next call. A key that is looked up may well find nothing, and its caller asks, so such a call waits for its answer.
A generic reference is narrowed to the interface that the operation's comment names.
"""

import hashlib
import os
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "../../src/instrument"))
from contract import read_contract, write  # noqa: E402


def fingerprint(contract):
    lines = [f"{name}.{op.name}({op.declaration()})->{op.result}" for name, ops in contract for op in ops]
    return hashlib.sha256("\n".join(lines).encode()).hexdigest()[:16]


def call_of(number, operation):
    rest = "".join(f", {argument.name}" for argument in operation.inputs)
    if operation.deferred:
        return f"return Defer<{operation.result}Proxy>({number}, {operation.object.name}{rest});"
    if operation.object:
        return f"return AskForObject({number}, {operation.object.name}{rest});"
    return f"return Ask({number}{rest});"


def proxies(contract):
    out = ['#include "remote/Proxy.h"', "", "namespace tarvik::remote {", "", "using namespace kolven;", "", "namespace {", ""]
    out += [f"class {name}Proxy;" for name, _ in contract] + [""]
    for position, (name, operations) in enumerate(contract):
        out += [f"class {name}Proxy final : public Proxy<{name}> {{", " public:",
                f"  {name}Proxy(std::shared_ptr<Connection> connection, ObjectId lngId)",
                f"      : Proxy(std::move(connection), lngId, {position}) {{}}"]
        out += [f"  Status TARVIK_CALL {op.name}({op.declaration()}) override;" for op in operations]
        out += ["};", ""]
    for name, operations in contract:
        for number, op in enumerate(operations):
            out += [f"Status {name}Proxy::{op.name}({op.declaration()}) {{ {call_of(number, op)} }}"]
        out += [""]
    out += ["template <class T>",
            "Ref<automation::IDispatch> Make(std::shared_ptr<Connection> connection, ObjectId lngId) {",
            "  return automation::MakeObject<T>(std::move(connection), lngId);", "}", "",
            "constexpr ProxyMaker Makers[] = {"]
    out += [f"    &Make<{name}Proxy>," for name, _ in contract]
    out += ["};", "", "}  // namespace", "", "ProxyMaker MakerOfKind(std::uint8_t intKind) {",
            "  return intKind < std::size(Makers) ? Makers[intKind] : nullptr;", "}", "",
            "}  // namespace tarvik::remote", ""]
    return "\n".join(out)


def table(contract):
    kinds = {name: position for position, (name, _) in enumerate(contract)}
    out = ['#include "remote/Stub.h"', "", "namespace tarvik::remote {", "", "namespace {", ""]
    for name, operations in contract:
        out += [f"constexpr Operation {name}Operations[] = {{"]
        for op in operations:
            kind = kinds[op.result] if op.result else "KindNothing"
            out += [f'    {{"{op.name}", &Serve<&kolven::{name}::{op.name}>, &Skip<&kolven::{name}::{op.name}>, {kind}, '
                    f'{str(op.deferred).lower()}}},']
        out += ["};", ""]
    out += ["constexpr InterfaceTable Interfaces[] = {"]
    out += [f'    {{"{name}", kolven::{name}::Iid, {name}Operations}},' for name, _ in contract]
    out += ["};", "", "}  // namespace", "",
            "std::span<const InterfaceTable> Contract() { return Interfaces; }", "",
            f"std::uint64_t ContractFingerprint() {{ return 0x{fingerprint(contract)}; }}", "",
            "}  // namespace tarvik::remote", ""]
    return "\n".join(out)


def operation_list(contract):
    return "".join(f"OPERATION({name}, {op.name})\n" for name, operations in contract for op in operations)


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    contract = read_contract(sys.argv[1])
    os.makedirs(sys.argv[2], exist_ok=True)
    for name, text in (("Proxies.cpp", proxies(contract)), ("ContractTable.cpp", table(contract)),
                       ("OperationList.inc", operation_list(contract))):
        write(os.path.join(sys.argv[2], name), text)


if __name__ == "__main__":
    main()
