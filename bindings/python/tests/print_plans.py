"""Prints the plans of a file's requests as the native program print_plans does, so that the two can be compared.

    python print_plans.py FILE
"""

import struct
import sys

import orvanta

MOMENTS = 41
EDGES = ("left", "top", "right", "bottom")


def bits(value):
    return f" {struct.unpack('<Q', struct.pack('<d', value))[0]}"


def edges(row, prefix=""):
    return "".join(f" {row[prefix + edge]}" for edge in EDGES)


def slices(out, name, rows, spaces):
    for row in rows:
        first = row["first_space"]
        inner = "".join(f" ({edges(space)}{bits(space['density'])})" for space in spaces[first:first + row["space_count"]])
        out.append(f"{name} {row['revision']} [{row['mode_name']}] {row['flags']}{bits(row['start'])}{bits(row['stop'])}"
                   f"{bits(row['span'])}{edges(row, 'window_')}{edges(row, 'hot_')}{inner}")


def print_plan(out, request, engine, number):
    recording, size, fade, clip = request
    out.append(f"engine {number}")
    try:
        plan = orvanta.plan(recording, size, fade=fade / recording.time_scale,
                            clip=(clip[0] / recording.time_scale, clip[1] / recording.time_scale), engine=engine, stages=True)
    except orvanta.OrvantaError as failure:
        out.append(f"failure {failure.code}")
        return
    out += [f"zone{bits(row['start'])}{bits(row['stop'])}{edges(row)}" for row in plan.zones]
    out += [f"object {row['type_name']}{bits(row['start'])}{bits(row['stop'])}{bits(row['value'])}{edges(row)}"
            for row in plan.objects]
    slices(out, "slice", plan.slices, plan.slice_spaces)
    slices(out, "shot", plan.shots, plan.shot_spaces)
    shot_modes = {0: "", **dict(zip(plan.shots["mode"].tolist(), plan.shots["mode_name"].tolist()))}
    out += [f"keyframe {row['time']}{bits(row['seconds'])}{edges(row)} [{row['reason_name']}] "
            f"[{shot_modes[row['shot_mode']]}] {row['shot']}" for row in plan.keyframes]
    try:
        path = plan.path()
    except orvanta.OrvantaError as failure:
        out.append(f"path {failure.code}")
        return
    out.append("path 0")
    start, stop = (tick / recording.time_scale for tick in clip)
    frames = path.frames_at([start + (stop - start) * (i - 1) / (MOMENTS - 3) for i in range(MOMENTS)])
    out += [f"frame{bits(row['left'])}{bits(row['top'])}{bits(row['width'])}{bits(row['height'])}" for row in frames]


def requests_of(path):
    """The numbers as the native programs write them: a head, four streams of rectangles with right before top, two of
    others."""
    with open(path, encoding="ascii") as file:
        numbers = iter(file.read().split())

    def rows(width, order):
        found = []
        for _ in range(int(next(numbers))):
            row = [int(next(numbers)) for _ in range(width)]
            found.append(tuple(row[i] for i in order))
        return found

    while (width := next(numbers, None)) is not None:
        size = int(width), int(next(numbers))
        scale = float(next(numbers))
        fade, start, stop, windows = (int(next(numbers)) for _ in range(4))
        streams = {name: rows(5, (0, 1, 3, 2, 4)) for name in ("windows", "dirty_rects", "carets", "regions")}
        streams["actions"] = rows(2, (0, 1))
        streams["cursor"] = rows(3, (0, 1, 2))
        yield orvanta.Recording(**streams, time_scale=scale, windows_flag=windows != 0), size, fade, (start, stop)


def main():
    count = 0
    for count, request in enumerate(requests_of(sys.argv[1])):
        out = [f"request {count}"]
        print_plan(out, request, "value", 0)
        print_plan(out, request, "voting", 1)
        print_plan(out, request, "director", 2)
        print("\n".join(out))


main()
