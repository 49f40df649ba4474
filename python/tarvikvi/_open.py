"""The way to instruments. A file of its own, since two of its functions have the names of built-in ones."""

from __future__ import annotations

import builtins

from . import _core
from ._instrument import Instrument, ListedInstrument


def drivers() -> builtins.list[str]:
    """The names of the drivers that are installed on this machine besides the one without a name."""
    return _core.drivers()


def _session(server: str, driver: str) -> _core.Session:
    if server and driver:
        raise ValueError("server and driver: a server has a driver of its own")
    return _core.Session(server, driver)


def list(*, server: str = "", driver: str = "") -> builtins.list[ListedInstrument]:
    """The instruments that a driver knows: that of this machine, the one of this name among `drivers()`, or that of the
    named server.

    >>> import tarvikvi
    >>> [instrument.name for instrument in tarvikvi.list()][:2]
    ['VP-210', 'VP-110']
    """
    session = _session(server, driver)
    try:
        return [ListedInstrument(**row) for row in session.instruments()]
    finally:
        session.close()


def open(name: str, *, server: str = "", driver: str = "") -> Instrument:
    """Opens a session with the instrument of this name: by the driver of this machine, by the one of this name among
    `drivers()`, or by that of the named server.

    ConnectError where there is no driver, UnknownInstrumentError where it does not list the name, DriverError where it
    does not open it.

    >>> import tarvikvi
    >>> tarvikvi.open("VP-999")
    Traceback (most recent call last):
        ...
    tarvikvi.errors.UnknownInstrumentError: there is no instrument "VP-999"; the driver knows VP-210, VP-110, VP-220, \
VP-250F, VB-200, VP-210 reserved
    """
    return Instrument(name, _session(server, driver))
