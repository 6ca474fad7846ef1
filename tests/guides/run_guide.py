#!/usr/bin/env python3
"""Follows a guide as a reader would, in an empty folder: a block after a line like `main.cpp`: becomes that file, a block
of sh is run, one of bat by Windows' shell under wine, and a block of text is what the run before it printed. A block of bash
is run too: it installs packages, and so is for a tree that is thrown away. Every block is one of these.

    run_guide.py GUIDE FOLDER [--languages c,cpp,cmake] [--prefix INSTALLED] [--package ZIP] [--files FILE...]

With --languages, sections (by their heading of level 2) that have a block of another language are passed over: another
test follows them. --files are there from the beginning, and what the package holds; ORVANTA_WINE is the program wine.
"""

import argparse
import os
import pathlib
import re
import shutil
import subprocess
import sys

FENCE = re.compile(r"^```(\w*)\n(.*?)^```$", re.M | re.S)
NAME = re.compile(r"^`([\w.-]+)`:$")


def blocks(section):
    """Each block of a section: its language, the file's name before it or None, its text."""
    for fence in FENCE.finditer(section):
        above = section[: fence.start()].rstrip("\n").rsplit("\n", 1)[-1]
        name = NAME.match(above)
        yield fence.group(1), name and name.group(1), fence.group(2)


def environment(prefix):
    env = dict(os.environ)
    if prefix:
        libraries = pathlib.Path(next(pathlib.Path(prefix).rglob("orvanta.pc"))).parent.parent
        env["CMAKE_PREFIX_PATH"] = prefix
        env["PKG_CONFIG_PATH"] = str(libraries / "pkgconfig")
        env["LD_LIBRARY_PATH"] = str(libraries)
        env["PATH"] = f"{prefix}/bin:{env['PATH']}"
    return env


def follow(section, folder, env):
    """Returns how many runs printed what the guide says."""
    printed, compared = None, 0
    for language, name, text in blocks(section):
        if name:
            (folder / name).write_text(text)
        elif language in ("sh", "bash"):
            run = subprocess.run(["bash", "-e", "-c", text], cwd=folder, env=env, stdout=subprocess.PIPE, text=True)
            if run.returncode != 0:
                sys.exit(f"status {run.returncode} of:\n{text}{run.stdout}")
            printed = run.stdout
        elif language == "bat":
            (folder / "steps.bat").write_text("@echo off\r\n" + text.replace("\n", "\r\n"), newline="")
            command = [os.environ["ORVANTA_WINE"], "cmd", "/c", "steps.bat"]
            run = subprocess.run(command, cwd=folder, env=env, stdout=subprocess.PIPE)
            printed = run.stdout.decode().replace("\r\n", "\n")
            if run.returncode != 0:
                sys.exit(f"status {run.returncode} of:\n{text}{printed}")
        elif language == "text" and printed is not None:
            if printed != text:
                sys.exit(f"the guide says:\n{text}but this was printed:\n{printed}")
            printed, compared = None, compared + 1
        else:
            sys.exit(f"a block that no test looks at:\n{text}")
    return compared


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("guide", type=pathlib.Path)
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--languages", default="")
    parser.add_argument("--prefix", default="")
    parser.add_argument("--package", default="")
    parser.add_argument("--files", type=pathlib.Path, nargs="*", default=[])
    args = parser.parse_args()
    shutil.rmtree(args.folder, ignore_errors=True)
    args.folder.mkdir(parents=True)
    for file in args.files:
        shutil.copy(file, args.folder)
    if args.package:
        shutil.unpack_archive(args.package, args.folder)
    known = set(filter(None, args.languages.split(","))) | {"sh", "text"}
    env = environment(args.prefix)
    compared = 0
    for section in re.split(r"^(?=## )", args.guide.read_text(), flags=re.M):
        languages = {language for language, _, _ in blocks(section)}
        if languages and (not args.languages or languages <= known):
            compared += follow(section, args.folder, env)
    if compared == 0:
        sys.exit(f"{args.guide}: nothing was compared")
    print(f"{compared} outputs as the guide says")


main()
