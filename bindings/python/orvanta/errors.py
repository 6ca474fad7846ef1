"""What goes wrong, and what each failure tells."""

from typing import Optional


class OrvantaError(Exception):
    """A call that the library refused or could not finish.

    Attributes:
        code: the library's number for the failure (`orvanta_code` of the C interface), such as 2.
        parameter: what the failure is about, such as "target_width"; "" where it is about nothing in particular.
        value: what was given, where that is a number.
        limit: the bound that it missed, where there is one.
        index: the sample or row at fault, from 0.
    """

    def __init__(self, message: str, code: int = 0, parameter: str = "", value: Optional[float] = None,
                 limit: Optional[float] = None, index: Optional[int] = None) -> None:
        super().__init__(message)
        self.code = code
        self.parameter = parameter
        self.value = value
        self.limit = limit
        self.index = index

    def __reduce__(self) -> tuple[object, ...]:
        # Exceptions travel between processes with all that they tell.
        return type(self), (str(self), self.code, self.parameter, self.value, self.limit, self.index)


class Cancelled(OrvantaError):
    """A plan that the caller asked to stop."""


class RecordingError(ValueError):
    """A recording or path that cannot be read or written: the message names the file and, where there is one, the line."""
