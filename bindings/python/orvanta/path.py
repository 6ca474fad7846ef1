"""What the picture shows at every moment."""

import json
import os
from dataclasses import dataclass
from pathlib import Path
from typing import Any, Optional, Union

import numpy as np
import numpy.typing as npt

from orvanta._orvanta import ffi, lib
from orvanta.errors import RecordingError
from orvanta.native import __version__, check, new_error, record_type, rows_of
from orvanta.recording import write_whole

_FORMAT = "orvanta-path"
_VERSION = 1
_PRESETS = ("ease-in-out", "linear", "ease-out", "smooth")


@dataclass(frozen=True)
class Easing:
    """How a move spreads over its time: a cubic Bezier curve from (0, 0) to (1, 1) with two control points, as in CSS.

    Attributes:
        x1, x2: 0 to 1.
        y1, y2: -10 to 10.
    """

    x1: float
    y1: float
    x2: float
    y2: float

    @staticmethod
    def named(name: str) -> "Easing":
        """A preset: "linear", "ease-in-out", "ease-out" or "smooth". Raises `OrvantaError` for other names."""
        easing = ffi.new("orvanta_easing*")
        error = new_error()
        check(lib.orvanta_easing_named(name.encode(), easing, error), error)
        return Easing(easing.x1, easing.y1, easing.x2, easing.y2)

    @property
    def name(self) -> str:
        """The preset that this is; "" for none."""
        return next((name for name in _PRESETS if Easing.named(name) == self), "")


class CameraPath:
    """The camera's path through a clip: the whole recording from the clip's start, and at each keyframe's time the start
    of a move that takes the fade.

    Args:
        keyframes: a structured array or rows with time (ticks), left, top, right, bottom (local pixels).
        region: width and height of the recording, pixels.
        size: width and height of the output frame, pixels.
        time_scale: ticks per second.
        fade_ticks: length of a move, ticks.
        clip: first and last tick of the clip.
        easing: a preset's name, or a curve.
        recording, engine, video_offset: what a written path tells beside.

    Raises:
        OrvantaError: for a rectangle that covers no pixel, and for sizes, fades and curves out of their ranges.
    """

    def __init__(self, keyframes: Any, *, region: tuple[int, int], size: tuple[int, int], time_scale: float = 1_000_000.0,
                 fade_ticks: int = 1_000_000, clip: tuple[int, int] = (0, 0), easing: Union[str, Easing] = "ease-in-out",
                 recording: str = "", engine: str = "value", video_offset: Optional[int] = None) -> None:
        self.region = region
        self.size = size
        self.time_scale = time_scale
        self.fade_ticks = fade_ticks
        self.clip = clip
        self.easing = Easing.named(easing) if isinstance(easing, str) else easing
        self.recording = recording
        self.engine = engine
        self.video_offset = video_offset
        self.keyframes = _keyframes(keyframes)

        request = _request(self)
        rows = np.ascontiguousarray(self.keyframes[["time", "left", "top", "right", "bottom"]].astype(_TIMED_RECT))
        curve = ffi.new("orvanta_easing*", [self.easing.x1, self.easing.y1, self.easing.x2, self.easing.y2])
        made = ffi.new("orvanta_path**")
        error = new_error()
        check(lib.orvanta_path_create(request, ffi.from_buffer(rows), len(rows), rows.itemsize, curve, made, error), error)
        self._handle = ffi.gc(made[0], lib.orvanta_path_free)

    def frames_at(self, seconds: npt.ArrayLike) -> npt.NDArray[Any]:
        """The frames on show at moments in seconds, in any order: a structured array with left, top, width, height (local
        pixels, fractions included, exactly of the output's shape) and overhangs (wider or higher than the recording)."""
        moments = np.ascontiguousarray(np.atleast_1d(np.asarray(seconds, "f8")))
        return self._frames(moments, "double[]", lib.orvanta_path_frames_at_seconds)

    def frames_at_ticks(self, ticks: npt.ArrayLike) -> npt.NDArray[Any]:
        """The same for moments in ticks."""
        moments = np.ascontiguousarray(np.atleast_1d(np.asarray(ticks, "i8")))
        return self._frames(moments, "int64_t[]", lib.orvanta_path_frames_at_ticks)

    def _frames(self, moments: npt.NDArray[Any], c_type: str, ask: Any) -> npt.NDArray[Any]:
        if moments.ndim != 1:
            raise ValueError(f"moments must be one number or a row of them, not an array of shape {moments.shape}")
        frames = ffi.new("orvanta_frame[]", len(moments))
        error = new_error()
        check(ask(self._handle, ffi.from_buffer(c_type, moments), len(moments), frames, error), error)
        return rows_of(frames, len(moments), ffi.sizeof("orvanta_frame"), _FRAME)

    def moves(self) -> npt.NDArray[Any]:
        """The moves of the camera, by time: one for each keyframe but those that another one at the same time replaces.

        Returns:
            A structured array with start and stop (ticks), start_seconds and stop_seconds; the frame at the start (or until
            then, with a fade of 0) in from_left, from_top, from_width, from_height, from_overhangs, and where the move
            leads in to_left and so on, local pixels; keyframe, the row in `keyframes`; and cut_short, where the next move
            begins before this one is over, from where the camera is then.
        """
        table = ffi.new("orvanta_table*")
        error = new_error()
        check(lib.orvanta_path_moves(self._handle, table, error), error)
        return rows_of(table.rows, table.count, table.stride, _MOVE)

    def zoom_at(self, seconds: npt.ArrayLike) -> npt.NDArray[np.float64]:
        """Output pixels per recording pixel at moments in seconds: 1 shows the recording pixel for pixel."""
        return np.asarray(self.size[0] / self.frames_at(seconds)["width"], "f8")

    def to_json(self) -> str:
        """The path as an `orvanta-path` document, version 1, which the command reads back."""
        easing: Any = self.easing.name or {"x1": self.easing.x1, "y1": self.easing.y1, "x2": self.easing.x2,
                                           "y2": self.easing.y2}
        keyframes = []
        for row in self.keyframes:
            width = int(row["right"]) - int(row["left"])
            tick = int(row["time"])
            keyframe: dict[str, Any] = {"tick": tick, "seconds": tick / self.time_scale}
            if self.video_offset is not None:
                keyframe["videoSeconds"] = (tick - self.video_offset) / self.time_scale
            keyframe |= {"left": int(row["left"]), "top": int(row["top"]), "width": width,
                         "height": int(row["bottom"]) - int(row["top"]), "zoom": self.size[0] / width,
                         "reason": str(row["reason_name"]) or None}
            keyframes.append(keyframe)
        whole = float(self.time_scale).is_integer()
        document: dict[str, Any] = {
            "format": _FORMAT,
            "version": _VERSION,
            "tool": f"orvanta {__version__}",
            "recording": self.recording,
            "engine": self.engine,
            "ticksPerSecond": int(self.time_scale) if whole else self.time_scale,
            "videoOffsetTicks": self.video_offset,
            "region": {"width": self.region[0], "height": self.region[1]},
            "target": {"width": self.size[0], "height": self.size[1]},
            "fadeTicks": self.fade_ticks,
            "easing": easing,
            "clip": {"startTick": self.clip[0], "stopTick": self.clip[1]},
            "keyframes": keyframes,
        }
        return json.dumps(document, indent=2) + "\n"

    def write(self, path: Union[str, "os.PathLike[str]"]) -> None:
        """Writes the path as JSON. The file appears whole or not at all."""
        write_whole(Path(path), self.to_json().encode("utf-8"))


_TIMED_RECT = np.dtype([("time", "i8"), ("left", "i4"), ("top", "i4"), ("right", "i4"), ("bottom", "i4")])
_KEYFRAME = np.dtype([*((name, _TIMED_RECT[name]) for name in _TIMED_RECT.names or ()), ("reason_name", "U24")])
_FRAME = record_type("orvanta_frame")
_MOVE = record_type("orvanta_move")


def _keyframes(given: Any) -> npt.NDArray[Any]:
    array = np.asarray(given)
    if array.dtype.names is None:
        table = array.reshape(-1, 5) if array.size == 0 else array
        if table.ndim != 2 or table.shape[1] != 5:
            raise ValueError("keyframes must be rows of time, left, top, right, bottom")
        array = np.empty(len(table), _TIMED_RECT)
        for column, name in enumerate(_TIMED_RECT.names or ()):
            array[name] = table[:, column]
    rows = np.empty(len(array), _KEYFRAME)
    for name in _KEYFRAME.names or ():
        rows[name] = array[name] if name in (array.dtype.names or ()) else ""
    return rows


def _request(path: CameraPath) -> Any:
    options = ffi.new("orvanta_options*")
    check(lib.orvanta_options_init(options, ffi.sizeof("orvanta_options")), new_error())
    options.target_width, options.target_height = path.size
    options.time_scale = path.time_scale
    options.fade_duration = path.fade_ticks
    options.clip_start, options.clip_stop = path.clip
    made = ffi.new("orvanta_request**")
    error = new_error()
    check(lib.orvanta_request_create(options, made, error), error)
    request = ffi.gc(made[0], lib.orvanta_request_free)
    region = np.array([(0, 0, 0, *path.region)], _TIMED_RECT)
    check(lib.orvanta_request_set_regions(request, ffi.from_buffer(region), 1, region.itemsize, error), error)
    return request


def _field(document: Any, name: str, kinds: Any, where: str) -> Any:
    value = document.get(name) if isinstance(document, dict) else None
    if not isinstance(value, kinds) or isinstance(value, bool):
        raise RecordingError(f'{where}: the field "{name}" is missing or of a wrong type')
    return value


def read_path(path: Union[str, "os.PathLike[str]"]) -> CameraPath:
    """Reads an `orvanta-path` document, as the command and `CameraPath.write` write it, edited or not.

    Raises:
        RecordingError: for what is no camera path; the message names the file and the field.
        OrvantaError: for values out of their ranges.
    """
    where = os.fspath(path)
    try:
        document = json.loads(Path(path).read_bytes())
    except ValueError as error:
        raise RecordingError(f"{where}: not JSON: {error}") from None
    if not isinstance(document, dict) or document.get("format") != _FORMAT:
        raise RecordingError(f'{where}: this is no camera path; "format" must be "{_FORMAT}"')
    if document.get("version") != _VERSION:
        raise RecordingError(f"{where}: version {document.get('version')!r} is not known; this reads {_VERSION}")
    scale = float(_field(document, "ticksPerSecond", (int, float), where))
    if not scale > 0:
        raise RecordingError(f'{where}: "ticksPerSecond" must be above 0')
    easing: Union[str, Easing] = "ease-in-out"
    given = document.get("easing")
    if isinstance(given, str):
        easing = given
    elif given is not None:
        easing = Easing(*(float(_field(given, name, (int, float), where)) for name in ("x1", "y1", "x2", "y2")))
    sizes = {}
    for name in ("region", "target"):
        size = _field(document, name, dict, where)
        sizes[name] = (_field(size, "width", int, where), _field(size, "height", int, where))
    clip = _field(document, "clip", dict, where)
    keyframes = _field(document, "keyframes", list, where)
    rows = np.empty(len(keyframes), _KEYFRAME)
    for row, keyframe in enumerate(keyframes):
        place = f"{where}: keyframe {row}"
        # Whoever edits a path by hand may give seconds alone.
        if isinstance(keyframe, dict) and "tick" not in keyframe:
            tick = round(_field(keyframe, "seconds", (int, float), place) * scale)
        else:
            tick = _field(keyframe, "tick", int, place)
        left, top, width, height = (_field(keyframe, name, int, place) for name in ("left", "top", "width", "height"))
        rows[row] = (tick, left, top, left + width, top + height, keyframe.get("reason") or "")
    return CameraPath(rows, region=sizes["region"], size=sizes["target"], time_scale=scale,
                      fade_ticks=_field(document, "fadeTicks", int, where),
                      clip=(_field(clip, "startTick", int, where), _field(clip, "stopTick", int, where)), easing=easing,
                      recording=str(document.get("recording") or ""), engine=str(document.get("engine") or ""),
                      video_offset=document.get("videoOffsetTicks"))
