import pathlib

import pytest

import orvanta

ROOT = pathlib.Path(__file__).resolve().parents[3]
SAMPLE = ROOT / "examples" / "recordings" / "files_terminal.jsonl"


@pytest.fixture(scope="session")
def sample() -> orvanta.Recording:
    """A recording of a desktop session, 1280x800."""
    return orvanta.read_recording(SAMPLE)


@pytest.fixture
def two_clicks() -> orvanta.Recording:
    """A minute with a click at 10 s in the top left of a 1280x800 screen and one at 40 s in the bottom right."""
    return orvanta.Recording(
        regions=[(0, 0, 0, 1280, 800)],
        cursor=[(0, 640, 400), (9_800, 200, 150), (39_800, 1100, 700)],
        actions=[(10_000, 0), (10_100, 1), (40_000, 0), (40_100, 1)],
        time_scale=1000.0,
        stop=60_000,
    )
