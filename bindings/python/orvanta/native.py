"""The C interface as the rest of the package uses it: records as NumPy types, failures as exceptions."""

from typing import Any, Optional, cast

import numpy as np
import numpy.typing as npt

from orvanta._orvanta import ffi, lib
from orvanta.errors import Cancelled, OrvantaError

__version__: str = ffi.string(lib.orvanta_version()).decode()

_NUMBERS = {"double": "f8", "int32_t": "i4", "uint32_t": "u4", "int64_t": "i8"}
# Rectangles that a record has only one of go without their name: "left" rather than "rect_left".
_PLAIN_RECTS = ("rect",)


def record_type(c_name: str) -> np.dtype[Any]:
    """The NumPy type of a C record, field by field at the compiler's own offsets. The edges of a rectangle are fields of
    their own: left, top, right and bottom, with the rectangle's name before them where it is not just `rect`."""
    c_type = ffi.typeof(c_name)
    names, formats, offsets = [], [], []

    def add(prefix: str, fields: Any, start: int) -> None:
        for name, field in fields:
            if field.type.kind == "struct":
                inner = "" if name in _PLAIN_RECTS else name.removesuffix("_rect") + "_"
                add(prefix + inner, field.type.fields, start + field.offset)
            elif name != "reserved":
                names.append(prefix + name)
                formats.append(_NUMBERS[field.type.cname])
                offsets.append(start + field.offset)

    add("", c_type.fields, 0)
    return np.dtype({"names": names, "formats": formats, "offsets": offsets, "itemsize": ffi.sizeof(c_name)})


def names_of(enum: str, prefix: str) -> dict[int, str]:
    """The values of a C enumeration with their names in lower case, without what they all begin with."""
    values = cast("dict[int, str]", ffi.typeof(f"enum {enum}").elements)
    return {value: name.removeprefix(prefix).lower() for value, name in values.items()}


_PARAMETERS = names_of("orvanta_parameter", "ORVANTA_PARAMETER_")
# What is said of these always comes with a value and a limit. Both may be 0, as they are where there is no number.
_ABOUT_NUMBERS = frozenset(("target_width", "target_height", "time_scale", "calm", "readable"))


def new_error() -> Any:
    """An error record for one call."""
    error = ffi.new("orvanta_error*")
    error.struct_size = ffi.sizeof("orvanta_error")
    return error


def failure_of(error: Any) -> OrvantaError:
    """The exception that an error record stands for."""
    kind = Cancelled if error.code == lib.ORVANTA_CANCELLED else OrvantaError
    parameter = _PARAMETERS.get(error.parameter, "")
    about_number = parameter in _ABOUT_NUMBERS or error.value != 0 or error.limit != 0
    return kind(ffi.string(error.message).decode(), error.code, "" if parameter == "none" else parameter,
                error.value if about_number else None, error.limit if about_number else None,
                error.index if error.index >= 0 else None)


def check(code: int, error: Any) -> None:
    """Raises what a call came to, unless all is well."""
    if code != lib.ORVANTA_OK:
        raise failure_of(error)


def rows_of(rows: Any, count: int, stride: int, dtype: np.dtype[Any]) -> npt.NDArray[Any]:
    """A copy of a table of the library, which may have longer rows than this package knows."""
    if count == 0:
        return np.empty(0, dtype)
    known = np.dtype({"names": list(dtype.names or ()), "formats": [dtype[name] for name in dtype.names or ()],
                      "offsets": [cast("Any", dtype.fields)[name][1] for name in dtype.names or ()],
                      "itemsize": stride})
    return np.frombuffer(ffi.buffer(rows, count * stride), known).astype(packed(dtype))


def packed(dtype: np.dtype[Any], extra: Optional[list[tuple[str, str]]] = None) -> np.dtype[Any]:
    """The same fields without gaps, and further ones behind them."""
    return np.dtype([(name, dtype[name]) for name in dtype.names or ()] + (extra or []))
