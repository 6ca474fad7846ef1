"""Orvanta: a virtual camera operator for screen recordings.

    import orvanta

    recording = orvanta.read_recording("session.jsonl")
    plan = orvanta.plan(recording, size=(640, 400))
    for keyframe in plan.keyframes:
        print(keyframe["seconds"], keyframe["left"], keyframe["top"], keyframe["reason_name"])

A `Recording` holds the side data of one screen recording; `plan` decides where the camera stands; a `CameraPath` says what
the picture shows at every moment. Times are ticks of the recording's clock (`Recording.time_scale` of them a second) where a
name says ticks or time, and seconds where it says seconds. Rectangles are left, top, right, bottom in pixels, right and
bottom one past the last pixel; y grows downward. Screen pixels go in; local pixels come out: (0, 0) is the top left of the
first recording region.
"""

from orvanta.errors import Cancelled, OrvantaError, RecordingError
from orvanta.merit import Merit, merit
from orvanta.native import __version__
from orvanta.path import CameraPath, Easing, read_path
from orvanta.planning import Plan, frame_at, frame_at_window, plan
from orvanta.recording import Recording, read_recording

__all__ = [
    "CameraPath",
    "Cancelled",
    "Easing",
    "Merit",
    "OrvantaError",
    "Plan",
    "Recording",
    "RecordingError",
    "__version__",
    "frame_at",
    "frame_at_window",
    "merit",
    "plan",
    "read_path",
    "read_recording",
]
