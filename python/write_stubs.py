"""Writes the type stub of the groups of settings, which are made from the table when the package is imported.

usage: write_stubs.py FILE
"""

import sys
from pathlib import Path

from tarvikvi._tree import _python_name, describe, rows_by_group

HEAD = '''# Written from the table of settings.
from collections.abc import Iterable, Iterator
from typing import Any, Generic, SupportsFloat, SupportsIndex, TypeVar, Union, overload

from . import _core
from ._pattern import Bits, Pattern

Read = TypeVar("Read", covariant=True)
Taken = TypeVar("Taken", contravariant=True)
Number = Union[SupportsFloat, SupportsIndex, str]

def describe(row: _core.Row) -> str: ...
def rows_by_group() -> dict[str, dict[str, _core.Row]]: ...

class PerChannel(Generic[Read, Taken]):
    """A setting with a value for each channel, counted from 1."""
    def __getitem__(self, channel: SupportsIndex) -> Read: ...
    def __setitem__(self, channel: SupportsIndex, value: Taken) -> None: ...
    def __len__(self) -> int: ...
    def __iter__(self) -> Iterator[Read]: ...

class OneForAll(Generic[Read, Taken]):
    """A setting of the whole instrument."""
    @overload
    def __get__(self, group: None, owner: type) -> OneForAll[Read, Taken]: ...
    @overload
    def __get__(self, group: Group, owner: type) -> Read: ...
    def __set__(self, group: Group, value: Taken) -> None: ...

class Group:
    """Settings that the panel shows on one page."""
'''
TYPES = {
    "switch": "bool, bool | str",
    "count": "int, SupportsIndex | str",
    "choice": "str | int, str | SupportsIndex",
    "quantity": "float, Number",
    "pattern": "Pattern, Bits",
}
TAIL = '''
class Settings:
    """Something that has settings: an instrument or a setup."""
    def __init__(self) -> None: ...
{groups}
    def _get(self, key: str) -> Any: ...
    def _set(self, key: str, value: object) -> None: ...
    def _channels(self) -> int: ...
    def __getitem__(self, key: str) -> Any: ...
    def __setitem__(self, key: str, value: object) -> None: ...

GROUPS: dict[str, type[Group]]
'''


def member(name, row):
    types = TYPES[row["kind"]]
    name = _python_name(name)
    if not row["per_channel"]:
        return f'    {name}: OneForAll[{types}]\n    """{describe(row)}"""\n'
    return f'    @property\n    def {name}(self) -> PerChannel[{types}]:\n        """{describe(row)}"""\n'


def main():
    groups = rows_by_group()
    parts = [HEAD]
    for group, rows in groups.items():
        parts.append(f"\nclass {group.capitalize()}Group(Group):\n")
        parts += [member(name, row) for name, row in rows.items()]
    properties = (f"    @property\n    def {group}(self) -> {group.capitalize()}Group: ..." for group in groups)
    parts.append(TAIL.format(groups="\n".join(properties)))
    Path(sys.argv[1]).write_text("".join(parts), encoding="utf-8")


main()
