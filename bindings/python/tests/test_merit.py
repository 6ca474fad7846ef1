import math

import orvanta
from orvanta.merit import merit


def recording():
    """100 s of a 1600x900 screen with presses at 20 s on (100, 100) and at 60 s on (1500, 800)."""
    return orvanta.Recording(
        regions=[(0, 0, 0, 1600, 900)],
        cursor=[(0, 100, 100), (4000, 1500, 800)],
        actions=[(2000, 0), (2010, 1), (6000, 2), (6010, 3), (7000, 6)],
        time_scale=100.0,
        stop=10_000,
    )


def path_of(keyframes):
    return orvanta.CameraPath(keyframes, region=(1600, 900), size=(800, 450), time_scale=100.0, fade_ticks=100,
                              clip=(0, 10_000))


def test_whole_recording_has_every_press_but_none_readable():
    figures = merit(recording(), path_of([]))
    assert figures.presses == 2
    assert figures.presses_in_frame == 1.0
    assert figures.presses_readable == 0.0
    assert figures.readable_share == 0.0
    assert figures.mean_zoom == 0.5
    assert figures.moves_a_minute == 0.0
    assert figures.travel == 0.0
    assert figures.longest_still >= 99.9


def test_one_move_to_the_first_press():
    figures = merit(recording(), path_of([(1000, 0, 0, 800, 450)]))
    assert figures.presses_in_frame == 0.5
    assert figures.presses_readable == 0.5
    # From 10 s on, but for the part of the move in which it is still further away.
    assert 0.885 < figures.readable_share < 0.9
    assert 0.94 < figures.mean_zoom < 0.96
    assert math.isclose(figures.moves_a_minute, 0.6)
    # From (800, 450) to (400, 225): a quarter of the diagonal.
    assert math.isclose(figures.travel, 0.25, abs_tol=1e-9)
    assert 88.9 < figures.longest_still <= 89.1


def test_without_presses_their_shares_are_no_numbers():
    quiet = orvanta.Recording(regions=[(0, 0, 0, 1600, 900)], time_scale=100.0, stop=10_000)
    figures = merit(quiet, path_of([]))
    assert figures.presses == 0
    assert math.isnan(figures.presses_in_frame)
