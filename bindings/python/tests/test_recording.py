import gzip
import json

import numpy as np
import pandas
import pytest

import orvanta
from conftest import SAMPLE

HEADER = '{"format":"orvanta-recording","version":1,"timeScale":1000,"windowsFlag":false,"description":"d"}\n'


def test_read_sample_has_every_line_of_the_file():
    lines = [json.loads(line) for line in SAMPLE.read_text().splitlines()]
    recording = orvanta.read_recording(SAMPLE)
    for stream, rows in (("region", recording.regions), ("window", recording.windows), ("dirty", recording.dirty_rects),
                         ("caret", recording.carets), ("cursor", recording.cursor), ("action", recording.actions)):
        wanted = [(line[0], *line[2:]) for line in lines[1:] if line[1] == stream]
        assert [tuple(row) for row in rows.tolist()] == wanted, stream
    assert recording.time_scale == lines[0]["timeScale"]
    assert recording.last_tick == lines[-1][0]
    assert recording.name == SAMPLE.name


@pytest.mark.parametrize("name", ["copy.jsonl", "copy.jsonl.gz"])
def test_write_then_read_gives_the_same(tmp_path, sample, name):
    sample.write(tmp_path / name)
    assert [path.name for path in tmp_path.iterdir()] == [name]
    copy = orvanta.read_recording(tmp_path / name)
    for stream in ("regions", "windows", "dirty_rects", "carets", "cursor", "actions"):
        assert np.array_equal(getattr(copy, stream), getattr(sample, stream)), stream
    assert (copy.time_scale, copy.windows_flag, copy.description, copy.video_offset) == (
        sample.time_scale, sample.windows_flag, sample.description, sample.video_offset)


def test_read_compressed_by_content(tmp_path):
    path = tmp_path / "no-such-ending"
    path.write_bytes(gzip.compress((HEADER + '[0,"region",0,0,100,50]\n').encode()))
    assert orvanta.read_recording(path).regions.tolist() == [(0, 0, 0, 100, 50)]


def test_read_cut_last_line_is_left_out(tmp_path):
    path = tmp_path / "cut.jsonl"
    path.write_text(HEADER + '[0,"region",0,0,100,50]\n[5,"cursor",1,2]\n[9,"curs')
    recording = orvanta.read_recording(path)
    assert recording.cursor.tolist() == [(5, 1, 2)]
    assert recording.last_tick == 5


def test_read_foreign_streams_and_fields_are_passed_over(tmp_path):
    path = tmp_path / "more.jsonl"
    path.write_text(HEADER.replace('"d"', '"d","more":1') + '[0,"region",0,0,100,50]\n[7,"touch",1,2,3]\n')
    recording = orvanta.read_recording(path)
    assert recording.last_tick == 7
    assert len(recording.cursor) == 0


@pytest.mark.parametrize(
    ("text", "line", "words"),
    [
        ("", "", "empty"),
        ("[]\n", ":1:", "no recording"),
        ("{\n", ":1:", "header"),
        (HEADER.replace(":1,", ":2,"), ":1:", "version 2"),
        (HEADER.replace("1000", "0"), ":1:", "timeScale"),
        (HEADER + "[0,\n[1]\n", ":2:", "not JSON"),
        (HEADER + '["0","region",0,0,1,1]\n', ":2:", "time"),
        (HEADER + '[0,"region",0,0,1]\n', ":2:", "region"),
        (HEADER + '[0,"cursor",0,2147483648]\n', ":2:", "32 bits"),
        (HEADER + '[5,"cursor",0,0]\n[4,"cursor",0,0]\n', ":3:", "before"),
    ],
)
def test_read_what_is_wrong_is_told_with_its_place(tmp_path, text, line, words):
    path = tmp_path / "broken.jsonl"
    path.write_text(text)
    with pytest.raises(orvanta.RecordingError) as failure:
        orvanta.read_recording(path)
    assert f"{path}{line}" in str(failure.value)
    assert words in str(failure.value)


def test_read_broken_compression_is_told(tmp_path):
    path = tmp_path / "broken.jsonl.gz"
    path.write_bytes(gzip.compress(HEADER.encode())[:-9])
    with pytest.raises(orvanta.RecordingError, match="compressed"):
        orvanta.read_recording(path)


def test_streams_may_be_frames_arrays_and_rows():
    rows = [(0, 10, 20), (1000, 30, 40)]
    frame = pandas.DataFrame(rows, columns=["time", "x", "y"])[["y", "x", "time"]]
    structured = np.array(rows, [("time", "i8"), ("x", "i4"), ("y", "i4")])
    for cursor in (rows, frame, structured, np.array(rows), np.array(rows, "f8")):
        assert orvanta.Recording(regions=[(0, 0, 0, 99, 99)], cursor=cursor).cursor.tolist() == rows


@pytest.mark.parametrize(
    ("cursor", "words"),
    [
        ([(0, 1)], "3 numbers"),
        (pandas.DataFrame({"time": [0], "x": [1]}), "'y' is missing"),
        ([(0, 0.5, 1)], "'x' of row 0 is 0.5"),
        ([(0, 1, 2), (1, 1, 1 << 31)], "'y' of row 1"),
        ([(2.0**63, 1, 2)], "'time' of row 0"),
        ([(float("nan"), 1, 2)], "'time' of row 0"),
        ([("a", "b", "c")], "not numbers"),
    ],
)
def test_streams_of_another_shape_are_refused(cursor, words):
    with pytest.raises(orvanta.RecordingError) as failure:
        orvanta.Recording(regions=[(0, 0, 0, 99, 99)], cursor=cursor)
    assert "cursor" in str(failure.value)
    assert words in str(failure.value)


def test_write_refuses_a_stream_that_goes_back_and_leaves_nothing(tmp_path):
    recording = orvanta.Recording(regions=[(0, 0, 0, 99, 99)], cursor=[(5, 0, 0), (4, 0, 0)])
    with pytest.raises(orvanta.RecordingError, match="back in time at row 1"):
        recording.write(tmp_path / "back.jsonl")
    assert list(tmp_path.iterdir()) == []
