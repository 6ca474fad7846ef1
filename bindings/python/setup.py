"""Builds the wheel: the C++ libraries by CMake, statically, then the module around them by cffi."""

import os
import pathlib
import re

from setuptools import setup

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent


def version() -> str:
    found = re.search(r"project\(Orvanta VERSION ([0-9.]+)", (ROOT / "CMakeLists.txt").read_text())
    if found is None:
        raise RuntimeError("CMakeLists.txt does not tell the project's version")
    return found.group(1)


# Paths in the build are relative to this folder.
os.chdir(pathlib.Path(__file__).resolve().parent)
setup(version=version(), cffi_modules=["build_module.py:builder"],
      options={"bdist_wheel": {"py_limited_api": "cp39"}})
