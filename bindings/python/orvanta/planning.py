"""The three questions: where the camera stands over a clip, at one moment, and for one window."""

import functools
from dataclasses import dataclass
from typing import Any, Callable, Literal, Optional, Union

import numpy as np
import numpy.typing as npt

from orvanta._orvanta import ffi, lib
from orvanta.errors import OrvantaError
from orvanta.native import check, failure_of, names_of, new_error, packed, record_type, rows_of
from orvanta.path import CameraPath, Easing
from orvanta.recording import Recording

#: Width and height, pixels.
Size = tuple[int, int]
#: Start and stop, seconds.
Clip = tuple[float, float]

#: What presses of buttons may ask of the director: in the picture always, or only where that costs little.
Presses = Literal["always", "cheap"]

_PRESSES = {name: value for value, name in names_of("orvanta_presses", "ORVANTA_PRESSES_").items()}
_ENGINES = {name: value for value, name in names_of("orvanta_engine", "ORVANTA_ENGINE_").items()}
_REASON = "U11"  # The longest name of a mode is that of the full screen.
_OBJECT = "U24"
_TABLES = {
    "keyframes": (lib.ORVANTA_TABLE_KEYFRAMES, "orvanta_keyframe"),
    "zones": (lib.ORVANTA_TABLE_ZONES, "orvanta_zone"),
    "objects": (lib.ORVANTA_TABLE_OBJECTS, "orvanta_object"),
    "slices": (lib.ORVANTA_TABLE_SLICES, "orvanta_slice"),
    "slice_spaces": (lib.ORVANTA_TABLE_SLICE_SPACES, "orvanta_space"),
    "shots": (lib.ORVANTA_TABLE_SHOTS, "orvanta_slice"),
    "shot_spaces": (lib.ORVANTA_TABLE_SHOT_SPACES, "orvanta_space"),
}


@functools.cache
def _row_type(c_name: str) -> np.dtype[Any]:
    return record_type(c_name)


def _text(c_text: Any) -> str:
    return str(ffi.string(c_text).decode())


def _with_names(rows: npt.NDArray[Any], column: str, numbers: str, width: str, name: Callable[[int], Any]) -> npt.NDArray[Any]:
    """The rows with one more field: a number in words."""
    named = np.empty(len(rows), packed(rows.dtype, [(column, width)]))
    for field in rows.dtype.names or ():
        named[field] = rows[field]
    names = {number: _text(name(number)) for number in np.unique(rows[numbers]).tolist()}
    named[column] = [names[number] for number in rows[numbers].tolist()]
    return named


@dataclass(frozen=True)
class Plan:
    """Where the camera stands over a clip, and how the engine came to it.

    All tables are structured arrays. `keyframes` is by time; without a row the whole recording stays on show, because
    nothing deserves a closer look or the clip is shorter than two fades and 8 s. The other tables have rows only where the
    plan was asked for its stages, and for the value engine.

    Attributes:
        recording: what was planned.
        size: width and height of the output frame, pixels.
        fade: length of a move, seconds.
        clip: first and last tick of the clip.
        engine: which engine decided.
        keyframes: time (ticks), left, top, right, bottom (local pixels: what is on show from `time` + fade on), seconds,
            reason, shot_mode, shot (row in `shots`, -1 without one), reason_name ("tight", "wide", "loose", "forced",
            "off-window", "full screen" or ""; from the director a sentence, where the plan was asked for its stages).
        zones: start, stop (seconds), left, top, right, bottom (screen pixels): when which part of the screen was recorded.
        objects: start, stop (seconds), value, left, top, right, bottom (pixels relative to the zone), type, type_name:
            what happened.
        slices: start, stop, span (seconds), window_left ..., hot_left ... (local pixels), first_space, space_count,
            revision, mode, flags, mode_name: the timeline cut by where the value lies.
        slice_spaces: left, top, right, bottom (local pixels), density (value for each pixel): the slices' rectangles.
        shots: the slices after merging; those of revision -1 were merged into an earlier one.
        shot_spaces: the shots' rectangles.
    """

    recording: Recording
    size: Size
    fade: float
    clip: tuple[int, int]
    engine: str
    keyframes: npt.NDArray[Any]
    zones: npt.NDArray[Any]
    objects: npt.NDArray[Any]
    slices: npt.NDArray[Any]
    slice_spaces: npt.NDArray[Any]
    shots: npt.NDArray[Any]
    shot_spaces: npt.NDArray[Any]

    def to_pandas(self, table: str = "keyframes") -> Any:
        """One table, such as "objects", as a pandas frame."""
        import pandas

        return pandas.DataFrame(getattr(self, table))

    def path(self, easing: Union[str, Easing] = "ease-in-out") -> CameraPath:
        """What the picture shows at every moment of the clip."""
        region = self.recording.regions[0]
        return CameraPath(
            self.keyframes,
            region=(int(region["right"]) - int(region["left"]), int(region["bottom"]) - int(region["top"])),
            size=self.size,
            time_scale=self.recording.time_scale,
            fade_ticks=round(self.fade * self.recording.time_scale),
            clip=self.clip,
            easing=easing,
            recording=self.recording.name,
            engine=self.engine,
            video_offset=self.recording.video_offset,
        )

    def plot(self, ax: Any = None) -> Any:
        """Draws the recording and the camera over time with matplotlib; returns the axes. See `orvanta.plotting.plot`."""
        from orvanta.plotting import plot

        return plot(self, ax)


def _ticks(seconds: float, recording: Recording, name: str) -> int:
    ticks = seconds * recording.time_scale
    if not abs(ticks) < 2.0**63:
        raise OrvantaError(f"{name} is {seconds} s, beyond what the recording's clock can count", lib.ORVANTA_BAD_ARGUMENT,
                           name, seconds)
    # To the nearest tick, halves away from 0.
    return int(ticks + 0.5) if ticks >= 0 else int(ticks - 0.5)


@dataclass(frozen=True)
class _Director:
    """What the director is asked for."""

    calm: float = 1.0
    readable: float = 0.75
    presses: str = "always"
    overhang: bool = False


class _Request:
    """A request of the C interface, with a recording's streams. Freed with the object."""

    def __init__(self, recording: Recording, size: Size, fade: float, clip: Optional[Clip], engine: str,
                 director: _Director = _Director()) -> None:
        if engine not in _ENGINES:
            raise OrvantaError(f"there is no engine {engine!r}; there are {', '.join(sorted(_ENGINES))}",
                               lib.ORVANTA_BAD_ARGUMENT, "engine")
        if director.presses not in _PRESSES:
            raise OrvantaError(f"presses cannot be {director.presses!r}; there are {', '.join(sorted(_PRESSES))}",
                               lib.ORVANTA_BAD_ARGUMENT, "presses")
        start, stop = (0.0, None) if clip is None else clip
        self.fade = fade
        self.clip = (_ticks(start, recording, "clip"),
                     recording.last_tick if stop is None else _ticks(stop, recording, "clip"))
        options = ffi.new("orvanta_options*")
        check(lib.orvanta_options_init(options, ffi.sizeof("orvanta_options")), new_error())
        options.engine = _ENGINES[engine]
        options.target_width, options.target_height = size
        options.time_scale = recording.time_scale
        options.fade_duration = _ticks(fade, recording, "fade")
        options.clip_start, options.clip_stop = self.clip
        options.windows_flag = recording.windows_flag
        options.calm = director.calm
        options.readable = director.readable
        options.presses = _PRESSES[director.presses]
        options.overhang = director.overhang
        made = ffi.new("orvanta_request**")
        error = new_error()
        check(lib.orvanta_request_create(options, made, error), error)
        self.handle = ffi.gc(made[0], lib.orvanta_request_free)
        for stream, record, setter in (
            (recording.regions, "orvanta_timed_rect", lib.orvanta_request_set_regions),
            (recording.windows, "orvanta_timed_rect", lib.orvanta_request_set_windows),
            (recording.dirty_rects, "orvanta_timed_rect", lib.orvanta_request_set_dirty_rects),
            (recording.carets, "orvanta_timed_rect", lib.orvanta_request_set_carets),
            (recording.cursor, "orvanta_cursor_sample", lib.orvanta_request_set_cursor),
            (recording.actions, "orvanta_action_sample", lib.orvanta_request_set_actions),
        ):
            rows = np.zeros(len(stream), _row_type(record))
            for field in rows.dtype.names or ():
                rows[field] = stream[field]
            check(setter(self.handle, ffi.from_buffer(rows), len(rows), rows.itemsize, error), error)


class _Run:
    """A caller's wishes while a plan is made. An exception out of one of them ends the plan and is raised by it."""

    def __init__(self, progress: Optional[Callable[[float], object]], cancelled: Optional[Callable[[], object]]) -> None:
        self.progress = progress
        self.cancelled = cancelled
        self.exception: Optional[BaseException] = None


@ffi.def_extern(name="orvanta_python_progress")  # type: ignore[misc]
def _on_progress(percent: float, user_data: Any) -> None:
    run: _Run = ffi.from_handle(user_data)
    try:
        if run.progress is not None and run.exception is None:
            run.progress(percent)
    except BaseException as exception:  # pylint: disable=broad-except
        run.exception = exception


@ffi.def_extern(name="orvanta_python_cancelled")  # type: ignore[misc]
def _on_cancelled(user_data: Any) -> int:
    run: _Run = ffi.from_handle(user_data)
    try:
        return 1 if run.exception is not None or (run.cancelled is not None and run.cancelled()) else 0
    except BaseException as exception:  # pylint: disable=broad-except
        run.exception = exception
        return 1


def _table(result: Any, name: str) -> npt.NDArray[Any]:
    number, c_name = _TABLES[name]
    error = new_error()
    table = ffi.new("orvanta_table*")
    check(lib.orvanta_result_table(result, number, table, error), error)
    rows = rows_of(table.rows, table.count, table.stride, _row_type(c_name))
    if name == "keyframes":
        reasons = [_text(lib.orvanta_result_reason(result, row)) for row in range(len(rows))]
        width = max([int(_REASON[1:]), *map(len, reasons)])  # The director's are sentences.
        named = np.empty(len(rows), packed(rows.dtype, [("reason_name", f"U{width}")]))
        for field in rows.dtype.names or ():
            named[field] = rows[field]
        named["reason_name"] = reasons
        return named
    if name == "objects":
        return _with_names(rows, "type_name", "type", _OBJECT, lib.orvanta_object_type_name)
    if name in ("slices", "shots"):
        return _with_names(rows, "mode_name", "mode", _REASON, lib.orvanta_mode_name)
    return rows


def plan(recording: Recording, size: Size, *, fade: float = 1.0, clip: Optional[Clip] = None, engine: str = "value",
         calm: float = 1.0, readable: float = 0.75, presses: Presses = "always", overhang: bool = False, stages: bool = False,
         progress: Optional[Callable[[float], object]] = None, cancelled: Optional[Callable[[], object]] = None) -> Plan:
    """Decides where the camera stands over the whole clip.

    Other Python threads go on running meanwhile; any number of plans may be made side by side.

    Args:
        recording: what was recorded.
        size: width and height of the output frame, pixels; each at least 64, and the value engine takes sizes that are
            smaller than the recording in at least one dimension.
        fade: length of a move between two keyframes, seconds.
        clip: start and stop of the stretch to work on, seconds; all of the recording by default.
        engine: "value", "voting" or "director".
        calm: for the director: seconds of better sight that a move must earn; 1 is usual, 0.25 lively, 3 very calm; above 0.
        readable: for the director: the zoom from which text counts as readable, 0.75 unless told; at most 1.
        presses: for the director: "always" keeps every press of a button in the picture, "cheap" leaves out what costs much.
        overhang: for the director: whether frames may be larger than the recording in one dimension.
        stages: whether to keep what the engine saw at each stage.
        progress: called with a percentage now and then, on this thread.
        cancelled: asked often; what counts as true ends the plan.

    Raises:
        OrvantaError: for a request that the engine refuses; its `parameter` says which part.
        Cancelled: where `cancelled` asked for it.
    """
    request = _Request(recording, size, fade, clip, engine, _Director(calm, readable, presses, overhang))
    callbacks = _Run(progress, cancelled)
    handle = ffi.new_handle(callbacks)
    run = ffi.new("orvanta_run*")
    run.struct_size = ffi.sizeof("orvanta_run")
    run.keep_stages = stages
    run.user_data = handle
    if progress is not None:
        run.progress = lib.orvanta_python_progress
    # Asked even without a caller's function, as Python meets Ctrl-C only where it runs a line of its own.
    run.cancelled = lib.orvanta_python_cancelled
    made = ffi.new("orvanta_result**")
    error = new_error()
    code = lib.orvanta_plan(request.handle, run, made, error)
    result = ffi.gc(made[0], lib.orvanta_result_free) if made[0] != ffi.NULL else None
    if callbacks.exception is not None:
        raise callbacks.exception
    if result is None or code not in (lib.ORVANTA_OK, lib.ORVANTA_NO_KEYFRAMES):
        raise failure_of(error)
    return Plan(recording=recording, size=(int(size[0]), int(size[1])), fade=fade, clip=request.clip, engine=engine,
                **{name: _table(result, name) for name in _TABLES})


def _rect(frame: Any) -> tuple[int, int, int, int]:
    return frame.left, frame.top, frame.right, frame.bottom


def frame_at(recording: Recording, size: Size, seconds: float, *, fade: float = 1.0, clip: Optional[Clip] = None,
             engine: str = "value", calm: float = 1.0, readable: float = 0.75, presses: Presses = "always",
             overhang: bool = False) -> tuple[int, int, int, int]:
    """The one frame that is best at a moment, from the 20 seconds around it: left, top, right, bottom in local pixels.
    The director knows the whole recording and gives the frame of its path. The arguments are those of `plan`.

    Raises `OrvantaError` as `plan` does.
    """
    request = _Request(recording, size, fade, clip, engine, _Director(calm, readable, presses, overhang))
    frame = ffi.new("orvanta_rect*")
    error = new_error()
    check(lib.orvanta_frame_at(request.handle, _ticks(seconds, recording, "seconds"), frame, error), error)
    return _rect(frame)


def frame_at_window(recording: Recording, size: Size) -> tuple[int, int, int, int]:
    """The frame for the recording's first window, without a timeline: left, top, right, bottom in local pixels.

    Raises `OrvantaError` as `plan` does.
    """
    request = _Request(recording, size, 1.0, None, "value")
    frame = ffi.new("orvanta_rect*")
    error = new_error()
    check(lib.orvanta_frame_at_window(request.handle, frame, error), error)
    return _rect(frame)
