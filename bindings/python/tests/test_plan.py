import pickle
import threading

import numpy as np
import pytest

import orvanta


def test_plan_two_clicks_gives_the_frames_of_the_c_plus_plus_example(two_clicks):
    # The keyframes that examples/host prints for the same minute.
    keyframes = orvanta.plan(two_clicks, (640, 400)).keyframes
    assert len(keyframes) == 2
    for keyframe, (x, y) in zip(keyframes, ((200, 150), (1100, 700))):
        assert keyframe["right"] - keyframe["left"] == 640
        assert keyframe["bottom"] - keyframe["top"] == 400
        assert keyframe["left"] <= x < keyframe["right"]
        assert keyframe["top"] <= y < keyframe["bottom"]
    assert keyframes["seconds"].tolist() == [tick / 1000 for tick in keyframes["time"].tolist()]


def test_plan_stages_only_when_asked_for(sample):
    bare = orvanta.plan(sample, (640, 400))
    full = orvanta.plan(sample, (640, 400), stages=True)
    assert np.array_equal(bare.keyframes, full.keyframes)
    for table in ("zones", "objects", "slices", "slice_spaces", "shots", "shot_spaces"):
        assert len(getattr(bare, table)) == 0
        assert len(getattr(full, table)) > 0
    assert len(full.slices) == len(full.shots)
    assert np.all(np.diff(full.objects["start"]) >= 0)
    assert set(full.objects["type_name"]) >= {"Click", "ActiveWindow"}
    # Each keyframe says by which shot it was made, and is framed as that shot is.
    assert full.keyframes["shot_mode"].tolist() == full.shots["mode"][full.keyframes["shot"]].tolist()
    spaces = full.slices["first_space"] + full.slices["space_count"]
    assert spaces.max() == len(full.slice_spaces)


def test_plan_reasons_are_words_of_the_command(sample):
    names = set(orvanta.plan(sample, (640, 400)).keyframes["reason_name"])
    assert names <= {"tight", "wide", "loose", "forced", "off-window", "full screen"}
    assert names


def test_plan_without_anything_to_show_has_no_keyframe():
    still = orvanta.Recording(regions=[(0, 0, 0, 1280, 800)], time_scale=1000.0, stop=60_000)
    plan = orvanta.plan(still, (640, 400))
    assert len(plan.keyframes) == 0
    assert plan.path().frames_at([0, 30, 60])["width"].tolist() == [1280.0] * 3


def test_plan_voting_engine(sample):
    plan = orvanta.plan(sample, (640, 400), engine="voting")
    assert len(plan.keyframes) > 0
    assert set(plan.keyframes["reason_name"]) == {""}


def test_plan_director_tells_in_words_why(sample):
    plan = orvanta.plan(sample, (640, 400), engine="director", stages=True)
    assert len(plan.keyframes) > 0
    reasons = set(plan.keyframes["reason_name"])
    assert "" not in reasons and not reasons & {"tight", "wide", "loose", "forced", "off-window", "full screen"}
    assert any("window" in reason for reason in reasons)
    assert len(plan.slices) == 0


def test_plan_director_calmer_moves_less(sample):
    lively, calm = (orvanta.plan(sample, (640, 400), engine="director", calm=calm) for calm in (0.25, 8.0))
    assert len(calm.keyframes) < len(lively.keyframes)


def test_plan_director_overhang_allows_frames_beyond_the_recording():
    # A portrait picture of a wide recording in which all that happens fills the screen.
    recording = orvanta.Recording(
        regions=[(0, 0, 0, 1280, 800)], windows=[(0, 0, 0, 1280, 800)], stop=60_000,
        dirty_rects=[(tick, 0, 0, 1280, 800) for tick in range(20_000, 40_000, 100)])
    whole = orvanta.plan(recording, (400, 640), engine="director", overhang=True).keyframes
    inside = orvanta.plan(recording, (400, 640), engine="director").keyframes
    assert any(row["bottom"] - row["top"] > 800 for row in whole)
    assert all(row["bottom"] - row["top"] <= 800 for row in inside)


@pytest.mark.parametrize(
    ("arguments", "parameter", "value", "limit"),
    [
        ({"size": (640, 400), "engine": "director", "calm": -1.0}, "calm", -1, 0),
        ({"size": (640, 400), "engine": "director", "calm": 0.0}, "calm", 0, 0),
        ({"size": (640, 400), "engine": "director", "readable": 1.5}, "readable", 1.5, 1),
        ({"size": (640, 400), "engine": "director", "presses": "some"}, "presses", None, None),
        ({"size": (63, 400)}, "target_width", 63, 64),
        ({"size": (640, 10)}, "target_height", 10, 64),
        ({"size": (640, 400), "fade": 1e300}, "fade", 1e300, None),
        ({"size": (640, 400), "engine": "other"}, "engine", None, None),
    ],
)
def test_plan_what_is_refused_is_told(sample, arguments, parameter, value, limit):
    with pytest.raises(orvanta.OrvantaError) as failure:
        orvanta.plan(sample, **arguments)
    assert failure.value.parameter == parameter
    assert failure.value.value == value
    assert failure.value.limit == limit
    assert failure.value.code != 0


def test_plan_a_stream_that_goes_back_is_told_with_its_row():
    recording = orvanta.Recording(regions=[(0, 0, 0, 1280, 800)], cursor=[(5, 0, 0), (9, 0, 0), (8, 0, 0)], stop=100)
    with pytest.raises(orvanta.OrvantaError) as failure:
        orvanta.plan(recording, (640, 400))
    assert (failure.value.parameter, failure.value.index) == ("cursor", 2)


def test_plan_without_a_region_is_refused():
    with pytest.raises(orvanta.OrvantaError) as failure:
        orvanta.plan(orvanta.Recording(regions=None, stop=100), (640, 400))
    assert failure.value.parameter == "regions"


def test_errors_survive_a_process_border():
    failure = orvanta.OrvantaError("text", 2, "target_width", 63.0, 64.0, 5)
    copy = pickle.loads(pickle.dumps(failure))
    assert (str(copy), copy.code, copy.parameter, copy.value, copy.limit, copy.index) == ("text", 2, "target_width", 63.0,
                                                                                        64.0, 5)


def test_progress_rises_to_the_end(sample):
    told = []
    orvanta.plan(sample, (640, 400), progress=told.append)
    assert told and told == sorted(told) and told[-1] <= 100.0 and told[-1] > 50.0


def test_cancel_ends_the_plan(sample):
    asked = []
    with pytest.raises(orvanta.Cancelled):
        orvanta.plan(sample, (640, 400), cancelled=lambda: asked.append(0) or len(asked) > 3)
    assert len(asked) == 4


@pytest.mark.parametrize("callback", ["progress", "cancelled"])
@pytest.mark.parametrize("kind", [ZeroDivisionError, KeyboardInterrupt])
def test_an_exception_out_of_a_callback_comes_back(sample, callback, kind):
    def fail(*_):
        raise kind("from the callback")

    with pytest.raises(kind, match="from the callback"):
        orvanta.plan(sample, (640, 400), **{callback: fail})


def test_other_threads_run_while_a_plan_is_made(sample):
    # A plan asks `cancelled` often; each time this one waits for the other thread, which could not go on if the plan held
    # Python's lock all along, so that both would wait until the time is up.
    turns = threading.Semaphore(0)
    ready = threading.Event()
    met = []

    def other():
        ready.set()
        for _ in range(50):
            turns.release()

    thread = threading.Thread(target=other)
    orvanta.plan(sample, (640, 400), cancelled=lambda: (met or (thread.start(), met.append(ready.wait(10)))) and False)
    thread.join()
    assert met == [True]


def test_plans_side_by_side_with_different_clocks_are_right(sample, two_clicks):
    wanted = [orvanta.plan(recording, (640, 400)).keyframes for recording in (sample, two_clicks)]
    wrong = []

    def ask(recording, answer):
        for _ in range(20):
            if not np.array_equal(orvanta.plan(recording, (640, 400)).keyframes, answer):
                wrong.append(recording.name)

    threads = [threading.Thread(target=ask, args=(recording, answer))
               for recording, answer in zip((sample, two_clicks), wanted) for _ in range(2)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert wrong == []


def test_frame_at_lies_around_the_click(two_clicks):
    left, top, right, bottom = orvanta.frame_at(two_clicks, (640, 400), 10.0)
    assert left <= 200 < right and top <= 150 < bottom


def test_frame_at_window_has_the_window():
    recording = orvanta.Recording(regions=[(0, 0, 0, 1280, 800)], windows=[(0, 100, 100, 500, 350)], stop=1000)
    left, top, right, bottom = orvanta.frame_at_window(recording, (640, 400))
    assert left <= 100 and top <= 100 and right >= 500 and bottom >= 350


def test_to_pandas_has_the_table(sample):
    plan = orvanta.plan(sample, (640, 400), stages=True)
    frame = plan.to_pandas("objects")
    assert list(frame.columns) == list(plan.objects.dtype.names)
    assert frame["type_name"].tolist() == plan.objects["type_name"].tolist()


def test_plot_draws_streams_and_zoom(sample):
    matplotlib = pytest.importorskip("matplotlib")
    matplotlib.use("Agg")
    axes = orvanta.plan(sample, (640, 400)).plot()
    assert [label.get_text() for label in axes.get_yticklabels()][-1] == "cursor"
    assert len(axes.figure.axes) == 2
