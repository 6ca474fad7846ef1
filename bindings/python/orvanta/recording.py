"""The side data of a screen recording: in memory, and in files."""

import gzip
import json
import os
from dataclasses import dataclass, field
from pathlib import Path
from typing import Any, Iterable, Optional, Union

import numpy as np
import numpy.typing as npt

from orvanta.errors import RecordingError

#: A stream as a caller may give it: a structured array or pandas frame with the stream's field names as columns, or rows
#: of numbers in the order of those names; None where there is none.
StreamLike = Union[npt.ArrayLike, Any, None]

RECT_FIELDS = ("time", "left", "top", "right", "bottom")
RECT_TYPE = np.dtype([("time", "i8"), ("left", "i4"), ("top", "i4"), ("right", "i4"), ("bottom", "i4")])
CURSOR_FIELDS = ("time", "x", "y")
CURSOR_TYPE = np.dtype([("time", "i8"), ("x", "i4"), ("y", "i4")])
ACTION_FIELDS = ("time", "action")
ACTION_TYPE = np.dtype([("time", "i8"), ("action", "i4")])

# The name in the file, the field of `Recording`, the type of its rows; in the order in which lines of one time stand.
_STREAMS = (
    ("region", "regions", RECT_TYPE),
    ("window", "windows", RECT_TYPE),
    ("dirty", "dirty_rects", RECT_TYPE),
    ("caret", "carets", RECT_TYPE),
    ("cursor", "cursor", CURSOR_TYPE),
    ("action", "actions", ACTION_TYPE),
)
_FORMAT = "orvanta-recording"
_VERSION = 1
_GZIP = b"\x1f\x8b"


def _as_stream(given: StreamLike, dtype: np.dtype[Any], name: str) -> npt.NDArray[Any]:
    fields = dtype.names or ()
    if given is None:
        return np.empty(0, dtype)
    columns: Iterable[Any]
    array = given if isinstance(given, np.ndarray) else None
    if hasattr(given, "columns") or (array is not None and array.dtype.names is not None):
        known = list(given.columns) if hasattr(given, "columns") else list(array.dtype.names)  # type: ignore
        missing = [column for column in fields if column not in known]
        if missing:
            raise RecordingError(f"{name}: the column {missing[0]!r} is missing; there must be {', '.join(fields)}")
        columns = [np.asarray(given[column]) for column in fields]  # type: ignore
    else:
        table = np.asarray(given)
        if table.size == 0:
            return np.empty(0, dtype)
        if table.ndim != 2 or table.shape[1] != len(fields):
            raise RecordingError(f"{name}: expected rows of {len(fields)} numbers ({', '.join(fields)}), got an array of "
                                 f"shape {table.shape}")
        columns = table.T
    stream: Optional[npt.NDArray[Any]] = None
    for column, values in zip(fields, columns):
        if stream is None:
            stream = np.empty(len(values), dtype)
        if not np.issubdtype(values.dtype, np.number) or np.issubdtype(values.dtype, np.complexfloating):
            raise RecordingError(f"{name}: the column {column!r} holds {values.dtype}, not numbers")
        bounds = np.iinfo(dtype[column])
        exact = values if np.issubdtype(values.dtype, np.integer) else np.rint(values)
        with np.errstate(invalid="ignore"):
            wrong = ~((exact == values) & (exact >= bounds.min) & (exact <= bounds.max))
        if not np.issubdtype(values.dtype, np.integer):
            # The largest 64-bit number has no double; the next one up does.
            wrong |= values >= 2.0 ** (bounds.bits - 1)
        if np.any(wrong):
            row = int(np.argmax(wrong))
            raise RecordingError(f"{name}: {column!r} of row {row} is {values[row]}, which is no whole number of "
                                 f"{bounds.bits} bits")
        stream[column] = exact
    return stream if stream is not None else np.empty(0, dtype)


@dataclass
class Recording:
    """The side data of one screen recording.

    Streams are structured arrays, sorted by time: `regions`, `windows`, `dirty_rects` and `carets` with the fields time,
    left, top, right, bottom; `cursor` with time, x, y; `actions` with time, action. They may be given as such arrays, as
    pandas frames with these columns, or as rows of numbers in this order. Times are ticks, rectangles and points screen
    pixels; a window of zeros says that there is none. Only `regions` must have an entry: the part of the screen that is
    recorded, from the entry's time on.

    Attributes:
        time_scale: ticks per second, above 0.
        windows_flag: True where the platform does not report open menus as windows.
        description: what happens, in words.
        video_offset: the tick at which the time 0 of a video of the session lies.
        video: name of that video, relative to the recording's file.
        name: what the recording is called in messages and paths.
        stop: the last tick; by default that of the last sample.

    Raises:
        RecordingError: for a stream of another shape, with a missing column, or with values that are no whole numbers.
    """

    regions: Any
    windows: Any = None
    dirty_rects: Any = None
    carets: Any = None
    cursor: Any = None
    actions: Any = None
    time_scale: float = 1_000_000.0
    windows_flag: bool = False
    description: str = ""
    video_offset: Optional[int] = None
    video: Optional[str] = None
    name: str = ""
    stop: Optional[int] = field(default=None)

    def __post_init__(self) -> None:
        for _, attribute, dtype in _STREAMS:
            setattr(self, attribute, _as_stream(getattr(self, attribute), dtype, attribute))
        if not self.time_scale > 0:
            raise RecordingError(f"time_scale is {self.time_scale}; it must be above 0")

    @property
    def last_tick(self) -> int:
        """Where the recording ends: `stop`, or the time of the last sample, or 0."""
        if self.stop is not None:
            return self.stop
        streams = [getattr(self, attribute) for _, attribute, _ in _STREAMS]
        return max((int(stream["time"][-1]) for stream in streams if len(stream)), default=0)

    @property
    def seconds(self) -> float:
        """Length from tick 0 to the end, seconds."""
        return self.last_tick / self.time_scale

    def to_pandas(self, stream: str) -> Any:
        """One stream, such as "cursor", as a pandas frame."""
        import pandas

        return pandas.DataFrame(getattr(self, stream))

    def write(self, path: Union[str, "os.PathLike[str]"]) -> None:
        """Writes the recording as JSON Lines, compressed where the name ends in .gz. The file appears whole or not at all.

        Raises:
            RecordingError: where a stream goes back in time.
            OSError: where the file cannot be written.
        """
        whole = self.time_scale == int(self.time_scale)
        header: dict[str, Any] = {
            "format": _FORMAT,
            "version": _VERSION,
            "timeScale": int(self.time_scale) if whole else self.time_scale,
            "windowsFlag": bool(self.windows_flag),
            "description": self.description,
        }
        if self.video_offset is not None:
            header["videoOffset"] = int(self.video_offset)
        if self.video is not None:
            header["video"] = self.video
        lines: list[tuple[int, int, str]] = []
        for order, (stream, attribute, _) in enumerate(_STREAMS):
            rows = getattr(self, attribute)
            if len(rows) and np.any(np.diff(rows["time"]) < 0):
                raise RecordingError(f"{attribute}: goes back in time at row {int(np.argmax(np.diff(rows['time']) < 0)) + 1}")
            for row in rows.tolist():
                lines.append((row[0], order, json.dumps([row[0], stream, *row[1:]], separators=(",", ":"))))
        lines.sort(key=lambda line: line[:2])
        text = "\n".join([json.dumps(header), *(line for _, _, line in lines)]) + "\n"
        data = text.encode("utf-8")
        target = Path(path)
        write_whole(target, gzip.compress(data, mtime=0) if target.suffix == ".gz" else data)


def write_whole(target: Path, data: bytes) -> None:
    """Writes a file beside its place and moves it there, so that nobody meets half of it."""
    partial = target.with_name(f".{target.name}.{os.getpid()}.partial")
    try:
        with open(partial, "wb") as file:
            file.write(data)
            file.flush()
            os.fsync(file.fileno())
        os.replace(partial, target)
    except BaseException:
        partial.unlink(missing_ok=True)
        raise


def _whole_number(value: Any, bits: int) -> bool:
    return isinstance(value, int) and not isinstance(value, bool) and -(1 << (bits - 1)) <= value < 1 << (bits - 1)


def _read_header(line: bytes, where: str) -> dict[str, Any]:
    try:
        header = json.loads(line)
    except ValueError as error:
        raise RecordingError(f"{where}:1: the first line must be the header, a JSON object: {error}") from None
    if not isinstance(header, dict) or header.get("format") != _FORMAT:
        raise RecordingError(f'{where}:1: this is no recording; the first line must be an object with "format": "{_FORMAT}"')
    if header.get("version") != _VERSION:
        raise RecordingError(f"{where}:1: version {header.get('version')!r} of the format is not known; this reads {_VERSION}")
    scale = header.get("timeScale")
    if isinstance(scale, bool) or not isinstance(scale, (int, float)) or not scale > 0:
        raise RecordingError(f'{where}:1: "timeScale" must be a number above 0')
    return header


def read_recording(path: Union[str, "os.PathLike[str]"]) -> Recording:
    """Reads a recording in JSON Lines, compressed by gzip or not.

    Streams and header fields of other names are passed over. A last line that was cut short, as a recorder leaves it when
    it crashes, is left out.

    Raises:
        RecordingError: for what is no recording; the message names the file and the line.
        OSError: where the file cannot be read.
    """
    where = os.fspath(path)
    data = Path(path).read_bytes()
    if data.startswith(_GZIP):
        try:
            data = gzip.decompress(data)
        except (OSError, EOFError) as error:
            raise RecordingError(f"{where}: the compressed data is broken: {error}") from None
    ends_whole = data.endswith(b"\n")
    lines = data.removeprefix(b"\xef\xbb\xbf").splitlines()
    if not lines:
        raise RecordingError(f"{where}: the file is empty")
    header = _read_header(lines[0], where)
    widths = {stream: (attribute, len(dtype.names or ())) for stream, attribute, dtype in _STREAMS}
    rows: dict[str, list[tuple[int, ...]]] = {attribute: [] for _, attribute, _ in _STREAMS}
    last = None
    for number, line in enumerate(lines[1:], 2):
        if not line.strip():
            continue
        try:
            event = json.loads(line)
        except ValueError as error:
            if number == len(lines) and not ends_whole:
                break
            raise RecordingError(f"{where}:{number}: not JSON: {error}") from None
        if not isinstance(event, list) or len(event) < 2 or not _whole_number(event[0], 64) or not isinstance(event[1], str):
            raise RecordingError(f"{where}:{number}: a line must be an array that begins with a time and a stream's name")
        if last is not None and event[0] < last:
            raise RecordingError(f"{where}:{number}: the time {event[0]} lies before that of the line before, {last}")
        last = event[0]
        if event[1] not in widths:
            continue
        attribute, width = widths[event[1]]
        values = event[2:]
        if len(values) != width - 1 or not all(_whole_number(value, 32) for value in values):
            raise RecordingError(f"{where}:{number}: {event[1]} takes {width - 1} whole numbers of 32 bits")
        rows[attribute].append((event[0], *values))
    offset = header.get("videoOffset")
    if offset is not None and not _whole_number(offset, 64):
        raise RecordingError(f'{where}:1: "videoOffset" must be a whole number')
    return Recording(
        **{attribute: np.array(rows[attribute], dtype) for _, attribute, dtype in _STREAMS},
        time_scale=float(header["timeScale"]),
        windows_flag=bool(header.get("windowsFlag", False)),
        description=str(header.get("description", "")),
        video_offset=offset,
        video=str(header["video"]) if "video" in header else None,
        name=Path(path).name,
        stop=last,
    )
