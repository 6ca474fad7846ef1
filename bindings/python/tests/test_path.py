import json

import numpy as np
import pytest

import orvanta


def path_of(keyframes, **changes):
    setup = {"region": (1600, 900), "size": (800, 450), "time_scale": 100.0, "fade_ticks": 100, "clip": (0, 2000)} | changes
    return orvanta.CameraPath(keyframes, **setup)


def test_whole_recording_until_the_first_keyframe_then_a_move_of_the_fade():
    path = path_of([(500, 0, 0, 800, 450)], easing="linear")
    frames = path.frames_at([0.0, 5.0, 5.5, 6.0, 20.0])
    assert frames["width"][[0, 1]].tolist() == [1600.0, 1600.0]
    # Halfway through, the size's logarithm is halfway: 1600 / sqrt 2.
    assert frames["width"][2] == pytest.approx(1600 / 2**0.5, abs=1e-6)
    assert frames["width"][[3, 4]].tolist() == [800.0, 800.0]
    assert frames["left"][4] == 0.0
    assert np.array_equal(path.frames_at_ticks([0, 500, 600]), path.frames_at([0, 5, 6]))


def test_every_frame_has_the_shape_and_overhang_is_told():
    path = path_of([(500, 0, 0, 800, 450)], size=(450, 800))
    frames = path.frames_at(np.linspace(0, 10, 101))
    assert frames["width"] / frames["height"] == pytest.approx(np.full(101, 450 / 800), rel=1e-12)
    assert bool(frames["overhangs"][0])


def test_moves_are_those_of_the_keyframes_by_time():
    moves = path_of([(1550, 800, 450, 1600, 900), (500, 0, 0, 800, 450), (1500, 0, 0, 800, 450)]).moves()
    assert moves["start"].tolist() == [500, 1500, 1550]
    assert moves["stop"].tolist() == [600, 1550, 1650]
    assert moves["start_seconds"].tolist() == [5.0, 15.0, 15.5]
    assert moves["stop_seconds"].tolist() == [6.0, 15.5, 16.5]
    assert moves["keyframe"].tolist() == [1, 2, 0]
    assert moves["cut_short"].astype(bool).tolist() == [False, True, False]
    assert moves[["from_left", "from_top", "from_width", "from_height"]][0].tolist() == (0.0, 0.0, 1600.0, 900.0)
    assert moves[["to_left", "to_top", "to_width", "to_height"]][2].tolist() == (800.0, 450.0, 800.0, 450.0)
    assert not moves["from_overhangs"].any()
    assert path_of([]).moves().shape == (0,)
    # The whole of a wide recording stands out of a portrait frame.
    assert path_of([(500, 0, 0, 450, 800)], size=(450, 800)).moves()["from_overhangs"].astype(bool).tolist() == [True]


def test_zoom_at_is_output_pixels_for_each_recorded_one():
    assert path_of([(500, 0, 0, 800, 450)]).zoom_at([0, 10]).tolist() == [0.5, 1.0]


def test_a_single_moment_gives_one_frame():
    assert path_of([]).frames_at(3).shape == (1,)


def test_easing_by_name_and_by_curve_are_the_same():
    named = path_of([(500, 0, 0, 800, 450)], easing="ease-out")
    curve = path_of([(500, 0, 0, 800, 450)], easing=orvanta.Easing(0, 0, 0.58, 1))
    moments = np.linspace(4.5, 6.5, 50)
    assert np.array_equal(named.frames_at(moments), curve.frames_at(moments))
    assert curve.easing.name == "ease-out"


@pytest.mark.parametrize(
    "wrong", [{"easing": "bouncy"}, {"easing": orvanta.Easing(2, 0, 1, 1)}, {"fade_ticks": -1}, {"time_scale": 0.0},
              {"region": (0, 900)}]
)
def test_what_is_out_of_range_is_refused(wrong):
    with pytest.raises(orvanta.OrvantaError):
        path_of([(500, 0, 0, 800, 450)], **wrong)


def test_empty_rectangle_and_odd_moments_are_refused():
    with pytest.raises(orvanta.OrvantaError):
        path_of([(500, 10, 0, 10, 450)])
    with pytest.raises(orvanta.OrvantaError):
        path_of([]).frames_at([float("nan")])
    with pytest.raises(ValueError):
        path_of([]).frames_at([[1.0, 2.0]])
    with pytest.raises(ValueError):
        path_of([(1, 2, 3)])


def test_written_path_reads_back_the_same(tmp_path, sample):
    path = orvanta.plan(sample, (640, 400)).path("smooth")
    path.write(tmp_path / "plan.json")
    copy = orvanta.read_path(tmp_path / "plan.json")
    assert np.array_equal(copy.keyframes, path.keyframes)
    moments = np.linspace(0, sample.seconds, 500)
    assert np.array_equal(copy.frames_at(moments), path.frames_at(moments))
    assert (copy.region, copy.size, copy.fade_ticks, copy.clip, copy.easing, copy.recording) == (
        path.region, path.size, path.fade_ticks, path.clip, path.easing, path.recording)


def test_edited_path_may_give_seconds_alone(tmp_path):
    document = json.loads(path_of([(500, 0, 0, 800, 450)]).to_json())
    del document["keyframes"][0]["tick"]
    document["keyframes"][0]["seconds"] = 7.0
    (tmp_path / "edited.json").write_text(json.dumps(document))
    assert orvanta.read_path(tmp_path / "edited.json").keyframes["time"].tolist() == [700]


@pytest.mark.parametrize(
    ("change", "parameter", "value", "limit"),
    [
        ({"size": (0, 450)}, "target_width", 0, 1),
        ({"time_scale": 0.0}, "time_scale", 0, 0),
        ({"fade_ticks": -1}, "fade_duration", -1, 0),
    ],
)
def test_number_that_misses_a_bound_is_told_with_it(change, parameter, value, limit):
    with pytest.raises(orvanta.OrvantaError) as failure:
        path_of([], **change)
    assert (failure.value.parameter, failure.value.value, failure.value.limit) == (parameter, value, limit)


@pytest.mark.parametrize(
    ("change", "words"),
    [
        ({"format": "other"}, "no camera path"),
        ({"version": 2}, "version 2"),
        ({"ticksPerSecond": 0}, "ticksPerSecond"),
        ({"region": None}, "region"),
        ({"keyframes": [{"tick": 1}]}, "keyframe 0"),
        ({"fadeTicks": "1"}, "fadeTicks"),
    ],
)
def test_what_is_no_path_is_told(tmp_path, change, words):
    document = json.loads(path_of([(500, 0, 0, 800, 450)]).to_json()) | change
    file = tmp_path / "broken.json"
    file.write_text(json.dumps(document))
    with pytest.raises(orvanta.RecordingError) as failure:
        orvanta.read_path(file)
    assert str(file) in str(failure.value)
    assert words in str(failure.value)
