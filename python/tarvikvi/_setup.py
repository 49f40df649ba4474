"""All settings of an instrument as one value."""

from __future__ import annotations

import json
import os
from collections.abc import Iterator, Mapping
from typing import Any, NamedTuple

from . import _core
from ._tree import Settings


class Difference(NamedTuple):
    """A setting in which two setups differ, with both values as the panel shows them."""

    key: str
    first: str
    second: str

    def __str__(self) -> str:
        return f"{self.key}: {self.first or '-'} | {self.second or '-'}"


class Setup(Settings):
    """All settings of an instrument, and whose they are.

    >>> import tarvikvi
    >>> with tarvikvi.open("VP-210") as pg:
    ...     pg.reset()
    ...     before = pg.setup()
    ...     pg.timing.width[1] = 50e-9
    ...     print(*before.compare(pg.setup()))
    timing.width[1]: 100.0 ns | 50.00 ns

    Settings are attributes, as those of an instrument; a change stays in the setup. Setups can be compared by ==, which
    looks at every bit, copied and pickled.
    """

    __slots__ = ("_data",)
    _data: _core.SetupData

    def __init__(self, data: _core.SetupData) -> None:
        super().__init__()
        self._data = data

    @classmethod
    def load(cls, path: str | os.PathLike[str]) -> Setup:
        """Reads a file as the panel and tarvikctl write it. SetupFileError where it cannot be read, SetupContentError
        with everything that is wrong with it."""
        return cls(_core.SetupData.load(os.fspath(path)))

    def save(self, path: str | os.PathLike[str]) -> None:
        """Writes a file for the panel, tarvikctl and load. An old one stays as it was where that fails."""
        self._data.save(os.fspath(path))

    @classmethod
    def from_snapshot(cls, snapshot: Mapping[str, Any]) -> Setup:
        """The setup that snapshot made. SetupContentError where it is none."""
        try:
            text = json.dumps(snapshot, allow_nan=False)
        except ValueError as error:
            raise ValueError(f"the snapshot cannot be kept as JSON: {error}") from None
        return cls(_core.SetupData.from_text(text))

    def snapshot(self) -> dict[str, Any]:
        """Everything as plain dictionaries, lists, texts and numbers in SI units, as a setup file has them.

        >>> import tarvikvi
        >>> with tarvikvi.open("VP-210") as pg:
        ...     pg.reset()
        ...     snapshot = pg.setup().snapshot()
        >>> snapshot["settings"]["timing.width[1]"]
        1e-07
        """
        plain: dict[str, Any] = json.loads(self._data.text())
        return plain

    def compare(self, other: Setup, *, exact: bool = False) -> list[Difference]:
        """The differences, in the order of the panel's pages. Numbers that differ by a driver's rounding count as equal
        unless `exact`; what the modes of neither setup use is not compared."""
        return [Difference(*row) for row in self._data.differences(other._data, exact)]

    def copy(self) -> Setup:
        """A setup of its own."""
        return Setup(self._data.copy())

    def identity(self) -> dict[str, Any]:
        """Whose settings these are: product, serial and version, how many channels it has, and what it lacks."""
        return self._data.identity()

    def keys(self) -> list[str]:
        """The keys of all settings that the instrument has, in the order of the panel's pages."""
        return self._data.keys()

    def __iter__(self) -> Iterator[str]:
        return iter(self.keys())

    def _get(self, key: str) -> Any:
        return self._data.get(key)

    def _set(self, key: str, value: object) -> None:
        self._data.set(key, value)

    def _channels(self) -> int:
        return self._data.channels()

    def __eq__(self, other: object) -> bool:
        if not isinstance(other, Setup):
            return NotImplemented
        return self._data == other._data

    __hash__ = None  # type: ignore[assignment]

    def __copy__(self) -> Setup:
        return self.copy()

    def __deepcopy__(self, memo: object) -> Setup:
        return self.copy()

    def __reduce__(self) -> tuple[Any, ...]:
        return Setup.from_snapshot, (self.snapshot(),)

    def __repr__(self) -> str:
        identity = self.identity()
        return f"<Setup of {identity['product'] or 'an instrument'}, serial {identity['serial'] or '-'}>"

    def __str__(self) -> str:
        """All settings as a table: one line for each, with a column for each channel."""
        lines: dict[str, list[str]] = {}
        for key in self.keys():
            name, bracket, _ = key.partition("[")
            lines.setdefault(name if bracket else key, []).append(self._data.shown(key))
        width = max(map(len, lines), default=0)
        columns = [max((len(values[i]) for values in lines.values() if len(values) > i), default=0) for i in range(2)]
        head = f"{self.identity()['product']}, serial {self.identity()['serial']}"
        rows = (
            f"{key:{width}}  " + "  ".join(f"{value:{columns[i]}}" for i, value in enumerate(values))
            for key, values in lines.items()
        )
        return "\n".join([head, *(row.rstrip() for row in rows)])
