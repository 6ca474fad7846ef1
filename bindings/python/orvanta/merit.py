"""Figures of merit: how well a camera path shows a recording."""

from dataclasses import dataclass

import numpy as np

from orvanta.path import CameraPath
from orvanta.recording import Recording

#: The zoom, output pixels per recording pixel, from which text counts as readable.
READABLE_ZOOM = 0.75
#: How often the path is looked at, times a second. Moves take a good part of a second.
_RATE = 20.0
_PRESSES = (0, 2, 4)
# A frame has to move by more than this, pixels, to be moving at all.
_STILL = 1e-6


@dataclass(frozen=True)
class Merit:
    """How well a path shows a recording.

    Attributes:
        presses: how many presses of a button fall into the clip, and into the recording.
        presses_in_frame: share of them that are in the picture; not a number without presses.
        presses_readable: share of them that are in the picture at a zoom of 0.75 or more; not a number without presses.
        readable_share: share of the clip's time at a zoom of 0.75 or more.
        mean_zoom: over the clip's time, output pixels per recording pixel.
        moves_a_minute: how often the camera sets off, for each minute of the clip.
        travel: way of the frame's centre over the clip, in diagonals of the recording.
        longest_still: the longest time without a move, seconds.
    """

    presses: int
    presses_in_frame: float
    presses_readable: float
    readable_share: float
    mean_zoom: float
    moves_a_minute: float
    travel: float
    longest_still: float


def merit(recording: Recording, path: CameraPath) -> Merit:
    """Judges a path, from any source, by a recording. The time between is looked at 20 times a second."""
    start, stop = (tick / path.time_scale for tick in path.clip)
    length = max(stop - start, 0.0)
    moments = start + np.arange(max(1, round(length * _RATE))) / _RATE
    frames = path.frames_at(moments)
    zoom = path.size[0] / frames["width"]
    centre_x = frames["left"] + frames["width"] / 2
    centre_y = frames["top"] + frames["height"] / 2
    way = np.hypot(np.diff(centre_x), np.diff(centre_y)).sum() / np.hypot(*path.region)
    change = np.zeros(max(0, len(frames) - 1))
    for edge in ("left", "top", "width", "height"):
        change = np.maximum(change, np.abs(np.diff(frames[edge])))
    moving = change > _STILL
    edges = np.flatnonzero(np.concatenate((np.array([True]), moving, np.array([True]))))
    longest = float((np.diff(edges) - 1).max(initial=0)) / _RATE if len(moving) else length

    down = recording.actions[np.isin(recording.actions["action"], _PRESSES)]
    down = down[(down["time"] >= path.clip[0]) & (down["time"] <= path.clip[1])]
    region = recording.regions[0]
    inside = readable = count = 0
    if len(down) and len(recording.cursor):
        # A press stands where the cursor was last seen.
        at = np.maximum(np.searchsorted(recording.cursor["time"], down["time"], side="right") - 1, 0)
        x = recording.cursor["x"][at].astype("i8") - int(region["left"])
        y = recording.cursor["y"][at].astype("i8") - int(region["top"])
        known = (x >= 0) & (x < path.region[0]) & (y >= 0) & (y < path.region[1])
        shown = path.frames_at_ticks(down["time"])
        within = (known & (shown["left"] <= x) & (x < shown["left"] + shown["width"]) & (shown["top"] <= y)
                  & (y < shown["top"] + shown["height"]))
        count = int(known.sum())
        inside = int(within.sum())
        readable = int((within & (path.size[0] / shown["width"] >= READABLE_ZOOM)).sum())

    times = np.unique(np.maximum(path.keyframes["time"], path.clip[0]))
    moves = int(np.count_nonzero(times <= path.clip[1]))
    return Merit(
        presses=count,
        presses_in_frame=inside / count if count else float("nan"),
        presses_readable=readable / count if count else float("nan"),
        readable_share=float(np.mean(zoom >= READABLE_ZOOM)),
        mean_zoom=float(np.mean(zoom)),
        moves_a_minute=moves / length * 60.0 if length > 0 else 0.0,
        travel=float(way),
        longest_still=longest,
    )
