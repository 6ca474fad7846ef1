"""A picture of a plan over time, with matplotlib."""

from typing import TYPE_CHECKING, Any

import numpy as np

if TYPE_CHECKING:
    from orvanta.planning import Plan

# Lanes from the bottom up: what happened, then where the camera stands.
_LANES = ("windows", "carets", "dirty_rects", "actions", "cursor")
_LABELS = ("window changes", "caret", "changed area", "buttons, wheel", "cursor")
_RATE = 10.0  # Looks at the path, times a second.


def plot(plan: "Plan", ax: Any = None) -> Any:
    """Draws a plan: a lane for each stream of the recording, and above them the zoom over time with its keyframes.

    Args:
        plan: what to draw.
        ax: matplotlib axes to draw on; new ones by default.

    Returns:
        The axes with the lanes; those of the zoom share their time axis.
    """
    import matplotlib.pyplot as plt

    if ax is None:
        _, ax = plt.subplots(figsize=(10, 3.5), layout="constrained")
    recording = plan.recording
    scale = recording.time_scale
    start, stop = (tick / scale for tick in plan.clip)
    for lane, stream in enumerate(_LANES):
        rows = getattr(recording, stream)
        if stream == "windows" and len(rows):
            # A still window is many equal samples; its changes tell more.
            edges = np.stack([rows[edge] for edge in ("left", "top", "right", "bottom")])
            rows = rows[np.concatenate(([True], np.any(np.diff(edges, axis=1) != 0, axis=0)))]
        ax.plot(rows["time"] / scale, np.full(len(rows), lane), "|", markersize=9, color=f"C{lane}")
    ax.set_yticks(range(len(_LANES)), _LABELS)
    ax.set_ylim(-0.7, len(_LANES) + 2.2)
    ax.set_xlim(start, max(stop, start + 1e-9))
    ax.set_xlabel("seconds")

    zoom_ax = ax.twinx()
    moments = np.linspace(start, stop, max(2, round((stop - start) * _RATE) + 1))
    zoom = plan.path().zoom_at(moments)
    zoom_ax.plot(moments, zoom, color="0.25", linewidth=1.2)
    for keyframe in plan.keyframes:
        zoom_ax.axvline(keyframe["seconds"], color="0.6", linewidth=0.6, linestyle=":")
    # The zoom has the upper part of the picture to itself.
    top = max(float(zoom.max()), 0.1)
    zoom_ax.set_ylim(-2.2 * top, 1.1 * top)
    zoom_ax.set_yticks([0.0, round(top / 2, 2), round(top, 2)])
    zoom_ax.set_ylabel("zoom", loc="top")
    return ax
