"""Settings of pulse generators from Python.

An instrument is opened by the name that the driver lists, and its settings are attributes. Numbers are plain SI
numbers: seconds, hertz, volts, amperes, ohms. Texts with a unit are taken too.

>>> import tarvikvi
>>> with tarvikvi.open("VP-210") as pg:
...     pg.reset()
...     pg.timing.width[1] = 50e-9
...     pg.timing.delay[1] = "20ns"
...     pg.timing.width[1], pg.timing.delay[1]
(5e-08, 2e-08)

What belongs together goes in a transaction. The instrument takes all of it or nothing:

>>> with tarvikvi.open("VP-210") as pg:
...     with pg.transaction():
...         pg.timing.period = 1e-6
...         pg.timing.width[1] = 2e-6
Traceback (most recent call last):
    ...
tarvikvi.errors.RefusedError: -221,Settings conflict: period below delay plus width of channel 1
"""

from . import errors
from ._instrument import Applied, Instrument, ListedInstrument, Transaction
from ._open import drivers, list, open
from ._pattern import Pattern
from ._setup import Difference, Setup
from .errors import (
    BusyError,
    ClosedError,
    ConnectError,
    ConnectionLostError,
    DriverError,
    Error,
    InstrumentWarning,
    LeftOutWarning,
    MissingSettingError,
    RefusedError,
    SetupContentError,
    SetupFileError,
    UnknownInstrumentError,
    UnusedSettingWarning,
)

__all__ = [
    "Applied",
    "BusyError",
    "ClosedError",
    "ConnectError",
    "ConnectionLostError",
    "Difference",
    "DriverError",
    "Error",
    "Instrument",
    "InstrumentWarning",
    "LeftOutWarning",
    "ListedInstrument",
    "MissingSettingError",
    "Pattern",
    "RefusedError",
    "Setup",
    "SetupContentError",
    "SetupFileError",
    "Transaction",
    "UnknownInstrumentError",
    "UnusedSettingWarning",
    "drivers",
    "errors",
    "list",
    "open",
]
