import contextlib
import csv
import json
import os
import pathlib
import re
import signal
import stat
import subprocess
import sys
import time

import pytest

import orvanta
from conftest import SAMPLE
from orvanta.archive import Options, process, recordings_of, stem_of

pytest.importorskip("distributed")


def archive(*arguments, **options):
    return subprocess.run([sys.executable, "-m", "orvanta.archive", *map(str, arguments)], capture_output=True, text=True,
                          check=False, timeout=240, **options)


def table(out):
    with open(out / "archive.csv", encoding="utf-8") as file:
        return {row["recording"]: row for row in csv.DictReader(file)}


def small(path, click=10_000):
    """A recording of a minute with one click, which takes no time to plan."""
    orvanta.Recording(regions=[(0, 0, 0, 1280, 800)], cursor=[(0, 640, 400), (click - 200, 200, 150)],
                      actions=[(click, 0), (click + 100, 1)], time_scale=1000.0, stop=60_000).write(path)


def test_finds_recordings_in_all_folders_but_not_among_the_results(tmp_path):
    (tmp_path / "sub" / "deep").mkdir(parents=True)
    (tmp_path / "out").mkdir()
    for name in ("b.jsonl", "sub/a.jsonl.gz", "sub/deep/c.jsonl", "out/d.jsonl", "e.json", "f.jsonl.bak"):
        (tmp_path / name).write_text("")
    assert recordings_of(tmp_path, tmp_path / "out") == ["b.jsonl", "sub/a.jsonl.gz", "sub/deep/c.jsonl"]


@pytest.mark.parametrize(("name", "stem"), [("a.jsonl", "a"), ("x/a.b.jsonl.gz", "x/a.b")])
def test_stem(name, stem):
    assert stem_of(name) == stem


def test_process_what_stands_unchanged_is_not_made_again(tmp_path):
    small(tmp_path / "a.jsonl")
    out = tmp_path / "out"
    options = Options((640, 400))
    assert process(str(tmp_path), str(out), "a.jsonl", options).state == "done"
    result = out / "a.path.json"
    written = result.stat().st_mtime_ns
    again = process(str(tmp_path), str(out), "a.jsonl", options)
    assert (again.state, again.keyframes) == ("unchanged", 1)
    assert result.stat().st_mtime_ns == written
    assert orvanta.read_path(result).size == (640, 400)
    # Another option, another content, and a result that was taken away.
    assert process(str(tmp_path), str(out), "a.jsonl", Options((400, 640))).state == "done"
    assert orvanta.read_path(result).size == (400, 640)
    small(tmp_path / "a.jsonl", click=20_000)
    assert process(str(tmp_path), str(out), "a.jsonl", Options((400, 640))).state == "done"
    result.unlink()
    assert process(str(tmp_path), str(out), "a.jsonl", Options((400, 640))).state == "done"


def test_process_a_touched_but_equal_recording_is_unchanged(tmp_path):
    small(tmp_path / "a.jsonl")
    process(str(tmp_path), str(tmp_path / "out"), "a.jsonl", Options((640, 400)))
    os.utime(tmp_path / "a.jsonl", (0, 0))
    assert process(str(tmp_path), str(tmp_path / "out"), "a.jsonl", Options((640, 400))).state == "unchanged"


def fake_command(tmp_path, script):
    """Stands in for the command that renders, which is no part of this package."""
    command = tmp_path / "fake-orvanta"
    command.write_text(f"#!/bin/sh\n{script}\n")
    command.chmod(command.stat().st_mode | stat.S_IXUSR)
    return str(command)


def test_process_renders_the_video_beside(tmp_path):
    small(tmp_path / "a.jsonl")
    (tmp_path / "a.mp4").write_text("a video")
    # render RECORDING VIDEO --path PATH -o OUT OPTIONS...
    command = fake_command(tmp_path, 'test "$1 $4 $6 $8" = "render --path -o --crf=20" && cat "$3" "$5" >"$7"')
    options = Options((640, 400), render=True, render_options=("--crf=20",), command=command)
    outcome = process(str(tmp_path), str(tmp_path / "out"), "a.jsonl", options)
    assert (outcome.state, outcome.video, outcome.error) == ("done", "a.mp4", "")
    assert (tmp_path / "out" / "a.mp4").read_text().startswith("a video{")
    assert process(str(tmp_path), str(tmp_path / "out"), "a.jsonl", options).state == "unchanged"
    (tmp_path / "a.mp4").write_text("another video")
    assert process(str(tmp_path), str(tmp_path / "out"), "a.jsonl", options).state == "done"


def test_process_a_failed_rendering_leaves_no_video_and_is_tried_again(tmp_path):
    small(tmp_path / "a.jsonl")
    (tmp_path / "a.mp4").write_text("a video")
    options = Options((640, 400), render=True, command=fake_command(tmp_path, 'echo half >"$7"; echo no disk >&2; exit 1'))
    for _ in range(2):
        outcome = process(str(tmp_path), str(tmp_path / "out"), "a.jsonl", options)
        assert (outcome.state, outcome.error) == ("failed", "no disk")
        assert [path.name for path in (tmp_path / "out").iterdir() if path.is_file()] == ["a.path.json"]


def test_program_lists_failures_and_goes_on(tmp_path):
    folder, out = tmp_path / "in", tmp_path / "out"
    (folder / "sub").mkdir(parents=True)
    small(folder / "good.jsonl")
    small(folder / "sub" / "good.jsonl.gz")
    (folder / "bad.jsonl").write_text("{}\n")
    done = archive(folder, "--out", out, "--jobs", 1)
    assert done.returncode == 1
    assert done.stdout.splitlines()[0] == "3 recordings: 2 done, 0 unchanged, 1 failed"
    assert "bad.jsonl:1: this is no recording" in done.stdout
    assert "3 of 3, 1 failed" in done.stderr
    assert {name: row["state"] for name, row in table(out).items()} == {
        "bad.jsonl": "failed", "good.jsonl": "done", "sub/good.jsonl.gz": "done"}
    assert (out / "sub" / "good.path.json").is_file()


@pytest.mark.parametrize(
    ("arguments", "status", "words"),
    [
        (["no-such-folder", "--out", "out"], 2, "there is no such folder"),
        ([".", "--out", "out", "--size", "640"], 2, "expected WIDTHxHEIGHT"),
        ([".", "--out", "out", "--jobs", "0"], 2, "expected a number above 0"),
        ([".", "--out", "out", "--render", "--command", "no-such-command"], 2, "which is not installed"),
        ([".", "--out", "out"], 1, "there is no recording"),
        ([".", "--out", "file"], 2, "is no folder"),
    ],
)
def test_program_what_is_wrong_is_told(tmp_path, arguments, status, words):
    (tmp_path / "file").write_text("")
    done = archive(*arguments, cwd=tmp_path)
    assert done.returncode == status
    assert words in done.stderr
    assert "Traceback" not in done.stderr


def test_program_refuses_two_recordings_with_one_result(tmp_path):
    small(tmp_path / "a.jsonl")
    small(tmp_path / "a.jsonl.gz")
    done = archive(tmp_path, "--out", tmp_path / "out")
    assert done.returncode == 1
    assert "a.jsonl and a.jsonl.gz" in done.stderr


def test_program_no_scheduler_is_told(tmp_path):
    small(tmp_path / "a.jsonl")
    done = archive(tmp_path, "--out", tmp_path / "out", "--scheduler", "tcp://127.0.0.1:9")
    assert done.returncode == 1
    assert "no scheduler answers at tcp://127.0.0.1:9" in done.stderr


@contextlib.contextmanager
def cluster(workers):
    """A scheduler and workers of this machine, each a process without a keeper that would start it anew."""
    quiet = {"stdout": subprocess.DEVNULL, "stderr": subprocess.PIPE, "text": True}
    scheduler = subprocess.Popen([sys.executable, "-m", "distributed.cli.dask_scheduler", "--host", "127.0.0.1", "--port", "0",
                                  "--no-dashboard"], **quiet)
    processes = [scheduler]
    try:
        address = None
        while address is None:
            line = scheduler.stderr.readline()
            assert line, "the scheduler has ended"
            found = re.search(r"Scheduler at:\s*(tcp://\S+)", line)
            address = found and found.group(1)
        for _ in range(workers):
            processes.append(subprocess.Popen([sys.executable, "-m", "distributed.cli.dask_worker", address, "--no-nanny",
                                               "--nthreads", "1", "--no-dashboard", "--host", "127.0.0.1"],
                                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))
        yield address, processes[1:]
    finally:
        for running in processes:
            running.kill()
            running.wait()
        scheduler.stderr.close()


def test_scheduler_with_two_workers_of_which_one_is_killed_loses_nothing(tmp_path):
    count = 120
    folder, out = tmp_path / "in", tmp_path / "out"
    folder.mkdir()
    for i in range(count):
        os.link(SAMPLE, folder / f"{i:03}.jsonl") if os.stat(SAMPLE).st_dev == os.stat(folder).st_dev else (
            folder / f"{i:03}.jsonl").write_bytes(SAMPLE.read_bytes())
    with cluster(2) as (address, workers):
        running = subprocess.Popen([sys.executable, "-m", "orvanta.archive", str(folder), "--out", str(out), "--scheduler",
                                    address], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        deadline = time.monotonic() + 120
        while len(list(out.glob("*.path.json"))) < 10:
            assert time.monotonic() < deadline and running.poll() is None
            time.sleep(0.02)
        workers[0].send_signal(signal.SIGKILL)
        at_the_kill = len(list(out.glob("*.path.json")))
        printed, _ = running.communicate(timeout=180)
    assert at_the_kill < count, "the worker was killed too late to prove anything"
    assert running.returncode == 0, printed
    assert printed.splitlines()[0].startswith(f"{count} recordings: ")
    assert printed.splitlines()[0].endswith(" 0 failed")
    rows = table(out)
    assert sorted(rows) == [f"{i:03}.jsonl" for i in range(count)]
    wanted = json.loads(orvanta.plan(orvanta.read_recording(SAMPLE), (640, 400)).path().to_json())["keyframes"]
    for i in range(count):
        assert json.loads((out / f"{i:03}.path.json").read_text())["keyframes"] == wanted
    # Nothing double, nothing half.
    files = sorted(path.relative_to(out).as_posix() for path in out.rglob("*") if path.is_file())
    assert files == sorted(["archive.csv", *(f"{i:03}.path.json" for i in range(count)),
                            *(f".orvanta/{i:03}.json" for i in range(count))])
    # A second run on this machine alone finds all of it done.
    again = archive(folder, "--out", out, "--jobs", 1)
    assert again.stdout.splitlines()[0] == f"{count} recordings: 0 done, {count} unchanged, 0 failed"
