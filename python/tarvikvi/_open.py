"""The way to instruments. A file of its own, since its two functions have the names of built-in ones."""

from __future__ import annotations

import builtins

from . import _core
from ._instrument import Instrument, ListedInstrument


def list(*, server: str = "") -> builtins.list[ListedInstrument]:
    """The instruments that the driver knows, on this machine or on the named server.

    >>> import tarvikvi
    >>> [instrument.name for instrument in tarvikvi.list()][:2]
    ['VP-210', 'VP-110']
    """
    session = _core.Session(server)
    try:
        return [ListedInstrument(**row) for row in session.instruments()]
    finally:
        session.close()


def open(name: str, *, server: str = "") -> Instrument:
    """Opens a session with the instrument of this name, on this machine or on the named server.

    ConnectError where there is no driver, UnknownInstrumentError where it does not list the name, DriverError where it
    does not open it.

    >>> import tarvikvi
    >>> tarvikvi.open("VP-999")
    Traceback (most recent call last):
        ...
    tarvikvi.errors.UnknownInstrumentError: there is no instrument "VP-999"; the driver knows VP-210, VP-110, VP-220, \
VP-250F, VB-200, VP-210 reserved
    """
    return Instrument(name, _core.Session(server))
