"""Plans an archive of recordings: every recording of a folder, each on its own, on as many processors as there are.

    python -m orvanta.archive FOLDER --out DIR [--size 640x400] [--render] [--scheduler ADDRESS]

One recording is one task of a Dask cluster: a cluster of this machine's processors, or that of a scheduler elsewhere, whose
workers must see FOLDER and DIR under the same paths. A result is a file that appears whole or not at all. What stands there
already, made of the same content by the same version with the same options, is not made again, so a run that was stopped
goes on where it was.
"""

import argparse
import contextlib
import csv
import hashlib
import importlib
import io
import json
import os
import shutil
import subprocess
import sys
import time
from dataclasses import asdict, dataclass
from pathlib import Path
from typing import Any, Iterator, Optional

import orvanta
from orvanta.recording import write_whole

_RECORDINGS = (".jsonl", ".jsonl.gz")
_VIDEOS = (".mp4", ".mkv", ".webm", ".mov")
# Where the state of each result is kept, inside the folder of results.
_STATE = ".orvanta"


@dataclass(frozen=True)
class Options:
    """What is asked of every recording."""

    size: tuple[int, int]
    fade: float = 1.0
    engine: str = "value"
    easing: str = "ease-in-out"
    render: bool = False
    render_options: tuple[str, ...] = ()
    command: str = "orvanta"


@dataclass(frozen=True)
class Outcome:
    """What became of one recording."""

    recording: str  # Relative to the folder.
    state: str  # "done", "unchanged" or "failed".
    keyframes: int = 0
    video: str = ""  # The rendered video, relative to the folder of results.
    seconds: float = 0.0  # That the work took.
    error: str = ""


def stem_of(name: str) -> str:
    """A recording's name without the ending that says what it is."""
    return next(name[: -len(ending)] for ending in sorted(_RECORDINGS, key=len, reverse=True) if name.endswith(ending))


def recordings_of(folder: Path, out: Path) -> list[str]:
    """The recordings of a folder and the folders in it, by name; those among the results are left out."""
    found = []
    for path in sorted(folder.rglob("*.jsonl*")):
        if path.is_file() and path.name.endswith(_RECORDINGS) and not path.is_relative_to(out):
            found.append(path.relative_to(folder).as_posix())
    return found


def refuse_twins(names: list[str]) -> None:
    """Two recordings whose results would have one name would overwrite each other without end."""
    owners: dict[str, str] = {}
    for name in names:
        other = owners.setdefault(stem_of(name), name)
        if other != name:
            raise SystemExit(f"orvanta.archive: {other} and {name} would have the same result; rename one of them")


def video_of(path: Path) -> Optional[Path]:
    """The video that lies beside a recording."""
    base = path.with_name(stem_of(path.name))
    return next((video for ending in _VIDEOS if (video := base.with_name(base.name + ending)).is_file()), None)


def _digest(path: Path) -> str:
    digest = hashlib.sha256()
    with open(path, "rb") as file:
        while block := file.read(1 << 20):
            digest.update(block)
    return digest.hexdigest()


def _key(path: Path, video: Optional[Path], options: Options) -> str:
    """Stands for everything that a result depends on."""
    parts: dict[str, Any] = {"version": orvanta.__version__, "options": asdict(options), "recording": _digest(path)}
    if options.render and video is not None:
        parts["video"] = {"name": video.name, "content": _digest(video)}
    return hashlib.sha256(json.dumps(parts, sort_keys=True).encode()).hexdigest()


def _sweep(out: Path) -> None:
    """Removes what workers that died left half written."""
    for partial in out.rglob(".*.partial*"):
        partial.unlink(missing_ok=True)


def _render(recording: Path, video: Path, plan_file: Path, target: Path, options: Options) -> None:
    # The command writes the video whole or not at all, under a name that nobody takes for the result until then.
    partial = target.with_name(f".{target.stem}.{os.getpid()}.partial{target.suffix}")
    try:
        done = subprocess.run([options.command, "render", str(recording), str(video), "--path", str(plan_file), "-o",
                               str(partial), *options.render_options], stdin=subprocess.DEVNULL, capture_output=True,
                              text=True, check=False)
        if done.returncode != 0:
            raise RuntimeError(done.stderr.strip().splitlines()[-1] if done.stderr.strip() else
                               f"{options.command} render ended with status {done.returncode}")
        os.replace(partial, target)
    finally:
        partial.unlink(missing_ok=True)


def process(folder: str, out: str, name: str, options: Options) -> Outcome:
    """Plans one recording, and renders its video where that is asked for. Never raises for what is wrong with a recording:
    the outcome tells."""
    begin = time.monotonic()
    path = Path(folder) / name
    base = Path(out) / stem_of(name)
    state_file = Path(out) / _STATE / f"{stem_of(name)}.json"
    plan_file = base.with_name(base.name + ".path.json")
    try:
        video = video_of(path) if options.render else None
        key = _key(path, video, options)
        target = base.with_name(base.name + video.suffix) if video is not None else None
        known = _known(state_file)
        if known.get("key") == key and plan_file.is_file() and (target is None or target.is_file()):
            return Outcome(name, "unchanged", int(known.get("keyframes", 0)), str(known.get("video", "")))
        base.parent.mkdir(parents=True, exist_ok=True)
        state_file.parent.mkdir(parents=True, exist_ok=True)
        recording = orvanta.read_recording(path)
        plan = orvanta.plan(recording, options.size, fade=options.fade, engine=options.engine)
        plan.path(options.easing).write(plan_file)
        rendered = ""
        if video is not None and target is not None:
            _render(path, video, plan_file, target, options)
            rendered = target.relative_to(out).as_posix()
        # Last of all: what this says is there.
        state = {"key": key, "keyframes": len(plan.keyframes), "video": rendered}
        write_whole(state_file, json.dumps(state).encode())
        return Outcome(name, "done", len(plan.keyframes), rendered, time.monotonic() - begin)
    except (OSError, ValueError, RuntimeError, orvanta.OrvantaError) as error:
        return Outcome(name, "failed", seconds=time.monotonic() - begin, error=" ".join(str(error).split()))


def _known(state_file: Path) -> dict[str, Any]:
    try:
        state = json.loads(state_file.read_bytes())
    except (OSError, ValueError):
        return {}
    return state if isinstance(state, dict) else {}


def _distributed() -> Any:
    """Dask's library for clusters, which only this part of the package needs."""
    try:
        return importlib.import_module("distributed")
    except ImportError:
        raise SystemExit("orvanta.archive: needs Dask's distributed (Debian: python3-distributed; "
                         "pip install 'orvanta[archive]')") from None


@contextlib.contextmanager
def _client(scheduler: Optional[str], jobs: int) -> Iterator[Any]:
    """A connection to the cluster; one of this machine's own ends with the run."""
    dask = _distributed()
    if scheduler is not None:
        try:
            client = dask.Client(scheduler, timeout="10s")
        except OSError as error:
            raise SystemExit(f"orvanta.archive: no scheduler answers at {scheduler}: {error}") from None
        with client:
            yield client
        return
    # Processes, as the reading of a recording is Python's own; no page to look at, and no port open to others.
    with dask.LocalCluster(n_workers=jobs, threads_per_worker=1, processes=True, host="127.0.0.1", dashboard_address=None,
                      silence_logs=50) as cluster, dask.Client(cluster) as client:
        yield client


class _Progress:
    """A line on a terminal that tells how far the run is; every tenth of the run a line elsewhere."""

    def __init__(self, total: int, quiet: bool) -> None:
        self.total = total
        self.quiet = quiet
        self.terminal = sys.stderr.isatty() and os.environ.get("TERM") != "dumb"
        self.done = 0
        self.failed = 0
        self.told = 0
        self.begin = time.monotonic()

    def add(self, outcome: Outcome) -> None:
        self.done += 1
        if outcome.state == "failed":
            self.failed += 1
        if self.quiet:
            return
        left = (time.monotonic() - self.begin) / self.done * (self.total - self.done)
        line = f"{self.done} of {self.total}, {self.failed} failed, {left:.0f} s left"
        if self.terminal:
            width = shutil.get_terminal_size().columns
            print(f"\r{line[: width - 1]:<{width - 1}}", end="", file=sys.stderr, flush=True)
        elif self.done * 10 // self.total > self.told or self.done == self.total:
            self.told = self.done * 10 // self.total
            print(line, file=sys.stderr, flush=True)

    def end(self) -> None:
        if self.terminal and not self.quiet and self.done:
            print(file=sys.stderr)


def run(folder: Path, out: Path, options: Options, scheduler: Optional[str] = None, jobs: Optional[int] = None,
        quiet: bool = False) -> list[Outcome]:
    """Works on every recording of a folder; returns what became of each, by name."""
    folder, out = folder.resolve(), out.resolve()
    names = recordings_of(folder, out)
    refuse_twins(names)
    out.mkdir(parents=True, exist_ok=True)
    outcomes: list[Outcome] = []
    if not names:
        return outcomes
    with _client(scheduler, min(jobs or os.cpu_count() or 1, len(names))) as client:
        # Not by content: a recording that has changed since the last run is asked about anew.
        futures = client.map(lambda name: process(str(folder), str(out), name, options), names, pure=False)
        name_of = {future.key: name for future, name in zip(futures, names)}
        progress = _Progress(len(names), quiet)
        try:
            for future in _distributed().as_completed(futures):
                name = name_of[future.key]
                try:
                    # Where the worker died that had the outcome, this waits until another has worked it out again.
                    outcome = future.result()
                except Exception as error:  # pylint: disable=broad-except
                    # Workers died again and again over it, or a fault of this program.
                    outcome = Outcome(name, "failed", error=" ".join(str(error).split()) or type(error).__name__)
                outcomes.append(outcome)
                progress.add(outcome)
        except KeyboardInterrupt:
            client.cancel(futures)
            raise
        finally:
            progress.end()
    _sweep(out)
    return sorted(outcomes, key=lambda outcome: outcome.recording)


def table_of(outcomes: list[Outcome]) -> str:
    """The outcomes as CSV."""
    text = io.StringIO()
    writer = csv.writer(text, lineterminator="\n")
    writer.writerow(["recording", "state", "keyframes", "video", "seconds", "error"])
    for outcome in outcomes:
        writer.writerow([outcome.recording, outcome.state, outcome.keyframes, outcome.video, f"{outcome.seconds:.3f}",
                         outcome.error])
    return text.getvalue()


def _printed(outcomes: list[Outcome]) -> str:
    failed = [outcome for outcome in outcomes if outcome.state == "failed"]
    done = sum(outcome.state == "done" for outcome in outcomes)
    lines = [f"{len(outcomes)} recordings: {done} done, {len(outcomes) - done - len(failed)} unchanged, {len(failed)} failed"]
    width = max((len(outcome.recording) for outcome in failed), default=0)
    lines += [f"  {outcome.recording:<{width}}  {outcome.error}" for outcome in failed]
    return "\n".join(lines)


def _size(text: str) -> tuple[int, int]:
    width, times, height = text.partition("x")
    if not times or not width.isdecimal() or not height.isdecimal():
        raise argparse.ArgumentTypeError(f"{text}: expected WIDTHxHEIGHT in pixels, such as 640x400")
    return int(width), int(height)


def _positive(text: str) -> int:
    if not text.isdecimal() or int(text) == 0:
        raise argparse.ArgumentTypeError(f"{text}: expected a number above 0")
    return int(text)


def main(arguments: Optional[list[str]] = None) -> int:
    """The command line. Returns the exit status: 0 when all is done, 1 when a recording failed, 130 after Ctrl-C."""
    parser = argparse.ArgumentParser(
        prog="python -m orvanta.archive", formatter_class=argparse.RawDescriptionHelpFormatter,
        description=__doc__.split("\n\n")[0], epilog=__doc__.split("\n\n")[2])
    parser.add_argument("folder", type=Path, metavar="FOLDER", help="folder with recordings (.jsonl, .jsonl.gz), and folders in it")
    parser.add_argument("--out", type=Path, required=True, metavar="DIR", help="folder for the results; made where it is not there")
    parser.add_argument("--size", type=_size, default=(640, 400), help="output frame, WIDTHxHEIGHT (default 640x400)")
    parser.add_argument("--fade", type=float, default=1.0, metavar="SECONDS", help="length of a move (default 1)")
    parser.add_argument("--engine", default="value", help="engine that decides: value, voting or director (default value)")
    parser.add_argument("--easing", default="ease-in-out", help="how a move spreads over its time (default ease-in-out)")
    parser.add_argument("--render", action="store_true",
                        help="render the video that lies beside a recording (.mp4, .mkv, .webm or .mov of its name)")
    parser.add_argument("--render-option", action="append", default=[], metavar="OPTION",
                        help="an option for `orvanta render`, such as --render-option=--crf=20; may be repeated")
    parser.add_argument("--command", default="orvanta", metavar="PROGRAM", help="the orvanta command that renders (default orvanta)")
    where = parser.add_mutually_exclusive_group()
    where.add_argument("--scheduler", metavar="ADDRESS", help="a Dask scheduler, such as tcp://host:8786 (default: this machine)")
    where.add_argument("--jobs", type=_positive, metavar="N", help="processes on this machine (default: one a processor)")
    parser.add_argument("--quiet", action="store_true", help="no progress")
    given = parser.parse_args(arguments)
    if not given.folder.is_dir():
        parser.error(f"{given.folder}: there is no such folder")
    if given.out.exists() and not given.out.is_dir():
        parser.error(f"{given.out}: is no folder")
    if given.render and shutil.which(given.command) is None and given.scheduler is None:
        parser.error(f"--render needs the command {given.command}, which is not installed; name it by --command")
    options = Options(given.size, given.fade, given.engine, given.easing, given.render, tuple(given.render_option),
                      given.command)
    try:
        outcomes = run(given.folder, given.out, options, given.scheduler, given.jobs, given.quiet)
    except KeyboardInterrupt:
        print("orvanta.archive: stopped; what is done stays, and the same command goes on from there", file=sys.stderr)
        return 130
    if not outcomes:
        print(f"orvanta.archive: there is no recording in {given.folder}", file=sys.stderr)
        return 1
    write_whole(given.out / "archive.csv", table_of(outcomes).encode("utf-8"))
    print(_printed(outcomes))
    return 1 if any(outcome.state == "failed" for outcome in outcomes) else 0


if __name__ == "__main__":
    # Workers find what they are to do by the module's name.
    from orvanta.archive import main as named_main

    sys.exit(named_main())
