"""Sessions with instruments."""

from __future__ import annotations

import os
import sys
import warnings
from collections.abc import Iterator
from contextlib import contextmanager
from types import TracebackType
from typing import Any, NamedTuple

from . import _core
from ._pattern import Pattern, _pattern_of
from ._setup import Setup
from ._tree import Settings
from .errors import InstrumentWarning, LeftOutWarning, RefusedError, UnusedSettingWarning

_HERE = os.path.dirname(__file__)
_INVALID_VALUE = 380


class ListedInstrument(NamedTuple):
    """An instrument that a driver knows. `slot` and `model` are None for a stand-alone box."""

    name: str
    address: int
    slot: int | None
    model: int | None


class Applied(NamedTuple):
    """What became of a setup: what the instrument does not have of it, each with the reason, and the keys of what the
    setup does not tell, which stayed as it was."""

    left_out: dict[str, str]
    kept: list[str]


def _warn(text: str, category: type[Warning]) -> None:
    """Warns in the name of the first line that is not of this package."""
    level = 1
    frame = sys._getframe(0)
    while frame.f_back is not None and os.path.dirname(frame.f_code.co_filename) == _HERE:
        frame = frame.f_back
        level += 1
    warnings.warn(text, category, stacklevel=level)


class Transaction:
    """A block of changes that go to the instrument as one, when the block ends. See Instrument.transaction."""

    __slots__ = ("_instrument", "_data", "_read", "_changed", "_keys")

    def __init__(self, instrument: Instrument) -> None:
        self._instrument = instrument
        self._data = instrument._identity.copy()
        self._read = 0
        self._changed = 0
        self._keys: list[str] = []

    def __enter__(self) -> Transaction:
        session = self._instrument._session
        session.hold()
        if self._instrument._transaction is not None:
            session.release()
            raise RuntimeError("a transaction is open already")
        if not session.is_open:
            session.release()
            self._instrument._raise_closed()
        self._instrument._transaction = self
        return self

    def __exit__(
        self, kind: type[BaseException] | None, error: BaseException | None, trace: TracebackType | None
    ) -> None:
        self._instrument._transaction = None
        try:
            if kind is None and self._changed:
                self._instrument._session.write(self._data, self._changed)
                self._instrument._pass_warnings()
        finally:
            self._instrument._session.release()
        if kind is None:
            self._tell_unused()

    def _tell_unused(self) -> None:
        for key in self._keys:
            if not self._data.is_used(key):
                _warn(f"{key}: not used in these modes, so the instrument may not have taken it", UnusedSettingWarning)

    def _bring(self, parts: int) -> None:
        if missing := parts & ~self._read:
            self._data = self._instrument._session.read(self._data, missing)
            self._read |= missing

    def _get(self, key: str) -> Any:
        self._bring(self._data.parts(key))
        return self._data.get(key)

    def _set(self, key: str, value: object) -> None:
        parts = self._data.parts(key)
        self._bring(parts)
        self._data.set(key, value)
        self._changed |= parts
        self._keys.append(key)


class Instrument(Settings):
    """A session with an instrument. tarvikvi.open makes one; with it ends the session, and close does.

    Settings are attributes, read from the instrument and sent to it at once, outside of a transaction:

    >>> import tarvikvi
    >>> with tarvikvi.open("VP-210") as pg:
    ...     pg.reset()
    ...     pg.levels.high[1] = 3.3
    ...     pg.levels.high[1], pg.levels.high[2]
    (3.3, 2.5)

    A value of the wrong type raises TypeError, one out of range ValueError, and a channel that is not there IndexError,
    all before the instrument is asked. What the model lacks raises MissingSettingError.

    One thread at a time: while one works with the instrument, or has a transaction open, others get BusyError.
    """

    __slots__ = ("_name", "_session", "_identity", "_transaction", "__weakref__")
    _transaction: Transaction | None

    def __init__(self, name: str, session: _core.Session) -> None:
        super().__init__()
        self._name = name
        self._session = session
        session.open(name)
        self._identity = session.identity()
        self._transaction = None
        self._pass_warnings()

    @property
    def name(self) -> str:
        """The name in the driver's list."""
        return self._name

    @property
    def channels(self) -> int:
        """How many output channels there are."""
        return self._identity.channels()

    @property
    def is_open(self) -> bool:
        """Whether the session stands."""
        return self._session.is_open

    def identity(self) -> dict[str, Any]:
        """Product, serial number, version and options, how many channels there are, and what the model lacks.

        >>> import tarvikvi
        >>> with tarvikvi.open("VP-210") as pg:
        ...     pg.identity()["product"]
        'VP-210 Dual Pulse Generator'
        """
        return self._identity.identity()

    def __enter__(self) -> Instrument:
        return self

    def __exit__(self, *_: object) -> None:
        self.close()

    def close(self) -> None:
        """Ends the session. A second time it does nothing."""
        self._session.close()

    def transaction(self) -> Transaction:
        """A block whose changes go to the instrument together, when it ends. RefusedError tells the instrument's reasons
        where it does not take them; it has then taken none. A block that is left by an exception sends nothing.

        Within the block, settings read back as they will be.

        >>> import tarvikvi
        >>> with tarvikvi.open("VP-210") as pg:
        ...     pg.reset()
        ...     with pg.transaction():
        ...         pg.mode.trigger = "Triggered"
        ...         pg.mode.pulse = "Burst"
        ...         pg.mode.burst_length = 16
        ...     pg.mode.trigger, pg.mode.burst_length
        ('Triggered', 16)
        """
        return Transaction(self)

    def setup(self) -> Setup:
        """All settings, as the instrument has them now."""
        return Setup(self._session.read(self._identity.copy(), _core.ALL_PARTS))

    def snapshot(self) -> dict[str, Any]:
        """All settings as plain dictionaries; see Setup.snapshot."""
        return self.setup().snapshot()

    def apply(self, setup: Setup, *, strict: bool = False) -> Applied:
        """Sends all settings of a setup in one transaction. What a setup of another model has besides is left out with a
        LeftOutWarning, or refused where `strict`."""
        with self._ours():
            if self._transaction is not None:
                raise RuntimeError("a transaction is open; apply is one of its own")
            base = self._session.read(self._identity.copy(), _core.ALL_PARTS)
            data, left_out, kept = base.taking_over(setup._data)
            if strict and left_out:
                reasons = [f"{key}: {reason}" for key, reason in left_out]
                raise RefusedError(_INVALID_VALUE, "\n".join(reasons), reasons)
            self._session.write(data, _core.ALL_PARTS)
            self._pass_warnings()
        for key, reason in left_out:
            _warn(f"left out: {key}: {reason}", LeftOutWarning)
        return Applied(dict(left_out), kept)

    def reset(self) -> None:
        """The instrument's own reset."""
        self._session.reset()
        self._pass_warnings()

    def calibrate(self) -> None:
        """The instrument's own calibration."""
        self._session.calibrate()
        self._pass_warnings()

    def selftest(self) -> str:
        """Runs the instrument's self test; the text is what it answers."""
        return self._session.selftest()

    def errors(self) -> list[str]:
        """Takes what the instrument's error queue holds."""
        return self._session.errors()

    def prbs(self, base: int, length: int) -> Pattern:
        """A pseudo-random sequence of `length` bits and period 2**base - 1, as this instrument makes it."""
        if not 0 < length <= _core.LONGEST_PATTERN:
            raise ValueError(f"length: {length} is out of the range 1 to {_core.LONGEST_PATTERN}")
        return _pattern_of(self._session.prbs(base, length))

    @property
    def timeout(self) -> float:
        """How long the driver waits for the instrument, in seconds."""
        return self._session.timeout / 1000

    @timeout.setter
    def timeout(self, seconds: float) -> None:
        if not 0 <= seconds <= 2_000_000:
            raise ValueError(f"timeout: {seconds} is out of the range 0 to 2000000")
        self._session.timeout = round(seconds * 1000)

    @contextmanager
    def _ours(self) -> Iterator[None]:
        self._session.hold()
        try:
            yield
        finally:
            self._session.release()

    def _raise_closed(self) -> None:
        self._session.read(self._identity, 0)

    def _get(self, key: str) -> Any:
        with self._ours():
            reading = self._transaction or Transaction(self)
            return reading._get(key)

    def _set(self, key: str, value: object) -> None:
        with self._ours():
            self._check(key, value)
            if self._transaction is not None:
                self._transaction._set(key, value)
                return
            with self.transaction() as change:
                change._set(key, value)

    def _check(self, key: str, value: object) -> None:
        """Raises what is wrong with a value before the instrument is asked. A text with a unit may be right in the other
        unit of levels, which only the instrument can tell."""
        trial = self._identity.copy()
        try:
            trial.set(key, value)
        except ValueError:
            if not (isinstance(value, str) and key.startswith("levels.") and key.endswith("]")):
                raise
            trial.set("levels.unit" + key[key.index("[") :], "A")
            trial.set(key, value)

    def _channels(self) -> int:
        return self._identity.channels()

    def _pass_warnings(self) -> None:
        for text in self._session.take_warnings():
            _warn(text, InstrumentWarning)

    def __repr__(self) -> str:
        return f"<Instrument {self._name}{'' if self.is_open else ', closed'}>"
