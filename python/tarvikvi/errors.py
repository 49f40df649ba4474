"""What goes wrong, and what an instrument warns of."""

from __future__ import annotations

from collections.abc import Sequence


class Error(Exception):
    """The base of all errors of this package.

    `number` is the status of a driver's call, or the number of a run-time error; `text` says what went wrong in the
    words of driver or instrument; `reasons` lists it one by one where there can be several.
    """

    def __init__(self, number: int, text: str, reasons: Sequence[str] = ()) -> None:
        super().__init__(number, text, tuple(reasons))
        self.number = number
        self.text = text
        self.reasons = tuple(reasons)

    def __str__(self) -> str:
        return self.text


class ConnectError(Error):
    """There is no driver, or no server, that answers."""


class ConnectionLostError(Error):
    """The machine or the process behind the driver has gone. The session is closed."""


class DriverError(Error):
    """A call of the driver failed. What was to be set was not set."""


class RefusedError(Error):
    """The instrument did not take the settings, and took none of them. `reasons` are its own words."""


class BusyError(Error):
    """Another thread uses the instrument."""


class ClosedError(Error):
    """The session is closed."""


class UnknownInstrumentError(Error, LookupError):
    """The driver lists no instrument of this name."""


class MissingSettingError(Error, LookupError):
    """The instrument's model does not have the setting."""


class SetupFileError(Error, OSError):
    """A file cannot be read or written."""


class SetupContentError(Error, ValueError):
    """A file or a snapshot is no setup. `reasons` tells everything that is wrong with it."""


class InstrumentWarning(UserWarning):
    """What an instrument warns of after it took settings."""


class UnusedSettingWarning(UserWarning):
    """The instrument's modes do not use what was set, so that it was not sent."""


class LeftOutWarning(UserWarning):
    """The instrument does not have something of the setup that it was given."""
