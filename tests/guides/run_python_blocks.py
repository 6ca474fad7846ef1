#!/usr/bin/env python3
"""Runs every block of Python in a page, each by itself in one folder, where `session.jsonl` is a recording.

    run_python_blocks.py PAGE FOLDER RECORDING
"""

import pathlib
import re
import shutil
import subprocess
import sys


def main():
    page, folder, recording = map(pathlib.Path, sys.argv[1:])
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    shutil.copy(recording, folder / "session.jsonl")
    blocks = re.findall(r"^```python\n(.*?)^```$", page.read_text(), re.M | re.S)
    for block in blocks:
        if subprocess.run([sys.executable, "-c", block], cwd=folder, stdout=subprocess.DEVNULL).returncode != 0:
            sys.exit(f"{page}: fails:\n{block}")
    if not blocks:
        sys.exit(f"{page}: no block was run")
    print(f"{page}: {len(blocks)} blocks of Python run")


main()
