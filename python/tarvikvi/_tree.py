"""Settings as attributes. Groups, names and docstrings all follow from the table of settings in the core."""

from __future__ import annotations

import operator
import re
from collections import defaultdict
from collections.abc import Iterator
from typing import Any

from . import _core
from ._pattern import Pattern, _pattern_of

_UNITS = {"s": "seconds", "Hz": "hertz", "V": "volts", "A": "amperes", "Ohm": "ohms", "V or A": "volts or amperes"}


def _python_name(name: str) -> str:
    return re.sub("[A-Z]", lambda match: "_" + match.group().lower(), name)


def describe(row: _core.Row) -> str:
    """What a setting is, in which unit, and which values it takes."""
    what = row["caption"] + (", for each channel" if row["per_channel"] else "")
    if row["kind"] == "switch":
        values = "True or False"
    elif row["kind"] == "choice":
        values = "one of " + ", ".join(row["words"])
    elif row["kind"] == "pattern":
        values = f"a Pattern of up to {_core.LONGEST_PATTERN} bits"
    elif row["kind"] == "count":
        values = f"{row['min']:g} to {row['max']:g}"
    else:
        values = f"in {_UNITS[row['unit']]}, {row['min']:g} to {row['max']:g}"
    return f"{what}: {values}." + (" Cannot be set." if row["notation"] else "")


class Settings:
    """Something that has settings: an instrument or a setup. `setting["timing.width[1]"]` is another way to say
    `setting.timing.width[1]`, with the keys that setup files have."""

    __slots__ = tuple(sorted({row["key"].split(".")[0] for row in _core.settings()}))

    def __init__(self) -> None:
        for name, group in GROUPS.items():
            object.__setattr__(self, name, group(self))

    def __setattr__(self, name: str, value: object) -> None:
        if name in GROUPS:
            raise AttributeError(f"{name} is a group of settings: set one of them")
        object.__setattr__(self, name, value)

    def _get(self, key: str) -> Any:
        raise NotImplementedError

    def _set(self, key: str, value: object) -> None:
        raise NotImplementedError

    def _channels(self) -> int:
        raise NotImplementedError

    def __getitem__(self, key: str) -> Any:
        return _from_core(self._get(key))

    def __setitem__(self, key: str, value: object) -> None:
        self._set(key, _to_core(key, value))


def _from_core(value: Any) -> Any:
    return _pattern_of(value) if isinstance(value, tuple) else value


def _to_core(key: str, value: object) -> object:
    if key not in _PATTERN_KEYS:
        return value
    try:
        pattern = Pattern(value)  # type: ignore[arg-type]
    except (TypeError, ValueError) as error:
        raise type(error)(f"{key}: {error}") from None
    return len(pattern), pattern.packed


class Group:
    """Settings that the panel shows on one page."""

    __slots__ = ("_settings",)

    def __init__(self, settings: Settings) -> None:
        self._settings = settings


class PerChannel:
    """A setting with a value for each channel, counted from 1."""

    __slots__ = ("_settings", "_key")

    def __init__(self, settings: Settings, key: str) -> None:
        self._settings = settings
        self._key = key

    def _key_of(self, channel: object) -> str:
        try:
            number = operator.index(channel)  # type: ignore[arg-type]
        except TypeError:
            raise TypeError(f"{self._key}: a channel is a whole number, not {type(channel).__name__}") from None
        channels = self._settings._channels()
        if not 1 <= number <= channels:
            raise IndexError(f"{self._key}: there is no channel {number}; channels count from 1 to {channels}")
        return f"{self._key}[{number}]"

    def __getitem__(self, channel: object) -> Any:
        return self._settings[self._key_of(channel)]

    def __setitem__(self, channel: object, value: object) -> None:
        self._settings[self._key_of(channel)] = value

    def __len__(self) -> int:
        return self._settings._channels()

    def __iter__(self) -> Iterator[Any]:
        return (self[channel] for channel in range(1, len(self) + 1))

    def __repr__(self) -> str:
        return f"<{self._key} of {len(self)} channel{'s' if len(self) > 1 else ''}>"


class OneForAll:
    """A setting of the whole instrument."""

    def __init__(self, key: str, description: str) -> None:
        self._key = key
        self.__doc__ = description

    def __get__(self, group: Group | None, owner: type) -> Any:
        return self if group is None else group._settings[self._key]

    def __set__(self, group: Group, value: object) -> None:
        group._settings[self._key] = value


class OneForEach:
    """A setting of each channel."""

    def __init__(self, key: str, description: str) -> None:
        self._key = key
        self.__doc__ = description

    def __get__(self, group: Group | None, owner: type) -> Any:
        return self if group is None else PerChannel(group._settings, self._key)

    def __set__(self, group: Group, value: object) -> None:
        raise TypeError(f"{self._key} has a value for each channel: set {self._key}[1]")


def rows_by_group() -> dict[str, dict[str, _core.Row]]:
    """The rows of the table by group and name. Two rows that differ in their channel only are one setting."""
    groups: dict[str, dict[str, _core.Row]] = defaultdict(dict)
    for row in _core.settings():
        group, name = row["key"].split(".")
        if name.endswith("]"):
            name = name[: name.index("[")]
            row = {**row, "key": f"{group}.{name}", "per_channel": True, "caption": row["caption"].split(",")[0]}
        groups[group].setdefault(name, row)
    return groups


_PATTERN_KEYS = {row["key"] for row in _core.settings() if row["kind"] == "pattern"}


def _group_class(group: str, rows: dict[str, _core.Row]) -> type[Group]:
    members: dict[str, Any] = {"__slots__": (), "__doc__": Group.__doc__, "__module__": __name__}
    for name, row in rows.items():
        kind = OneForEach if row["per_channel"] else OneForAll
        members[_python_name(name)] = kind(row["key"], describe(row))
    return type(group.capitalize() + "Group", (Group,), members)


GROUPS = {group: _group_class(group, rows) for group, rows in rows_by_group().items()}
