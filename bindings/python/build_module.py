"""The compiled module `orvanta._orvanta`: the C interface as cffi sees it, with the libraries inside.

The compiler checks every declaration against the header, so that a record whose fields have moved fails to build instead of
giving wrong numbers.
"""

import os
import pathlib
import re
import subprocess

from cffi import FFI

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
HEADER = ROOT / "include" / "orvanta_c.h"
BUILD = ROOT / "build" / "python"


def declarations(header: str) -> str:
    """What the header declares, without what the preprocessor is for."""
    text = re.sub(r"/\*.*?\*/", "", header, flags=re.S)
    text = re.sub(r"^\s*#.*(?:\\\n.*)*$", "", text, flags=re.M)
    text = re.sub(r'extern "C" \{', "", text)
    text = text.replace("ORVANTA_C_EXPORT", "")
    # The brace that ends the block for C++.
    return re.sub(r"\n\}\s*\Z", "\n", text.rstrip())


def build_libraries() -> list[str]:
    """Builds the static libraries; returns them in the order in which they are to be linked."""
    launcher = os.environ.get("CMAKE_CXX_COMPILER_LAUNCHER")
    configure = ["cmake", "-S", str(ROOT), "-B", str(BUILD), "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release",
                 "-DBUILD_SHARED_LIBS=OFF", "-DORVANTA_INSTALL=OFF", "-DORVANTA_BUILD_TOOLS=OFF",
                 "-DORVANTA_BUILD_TESTS=OFF",
                 # Many sources at a time, which takes a third of the time.
                 "-DCMAKE_UNITY_BUILD=ON", "-DCMAKE_UNITY_BUILD_BATCH_SIZE=16"]
    if launcher:
        configure.append(f"-DCMAKE_CXX_COMPILER_LAUNCHER={launcher}")
    subprocess.run(configure, check=True, stdout=subprocess.DEVNULL)
    subprocess.run(["cmake", "--build", str(BUILD), "--parallel", str(os.cpu_count() or 1), "--target", "OrvantaC"],
                   check=True)
    return [str(next(BUILD.rglob(f"lib{name}.a"))) for name in ("OrvantaC", "OrvantaCamera", "Orvanta")]


builder = FFI()
builder.cdef(declarations(HEADER.read_text(encoding="utf-8")))
# Called by the library while it works; Python's own lock is taken for the time of the call alone.
builder.cdef("""
    extern "Python" void orvanta_python_progress(double percent, void* user_data);
    extern "Python" int32_t orvanta_python_cancelled(void* user_data);
""")
builder.set_source(
    "orvanta._orvanta",
    '#include "orvanta_c.h"',
    include_dirs=[str(HEADER.parent)],
    define_macros=[("ORVANTA_STATIC", None)],
    extra_objects=build_libraries(),
    libraries=["stdc++", "m"],
)
