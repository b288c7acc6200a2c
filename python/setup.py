"""Builds the module with CMake, with the core of the library in it and nothing beside it."""

from __future__ import annotations

import os
import re
import subprocess
import sys
from pathlib import Path

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

LIBRARY = Path(__file__).resolve().parent.parent
BUILD = LIBRARY / "build/wheel"


def version() -> str:
    header = (LIBRARY / "include/pokermath/version.h").read_text()
    found = re.search(r'POKERMATH_VERSION_STRING "(.*)"', header)
    assert found, "no version in version.h"
    return found[1]


def build_module(folder: Path) -> Path:
    """Builds the module in a folder of its own."""
    folder.mkdir(parents=True, exist_ok=True)
    subprocess.run(
        [
            "cmake",
            f"-S{LIBRARY}",
            f"-B{folder}",
            "-DCMAKE_BUILD_TYPE=Release",
            "-DPOKERMATH_CORE_ONLY=ON",
            "-DPOKERMATH_PYTHON=ON",
            f"-DPOKERMATH_PYTHON_EXECUTABLE={sys.executable}",
            "-DPOKERMATH_FMT=fmt::fmt-header-only",
        ],
        check=True,
    )
    jobs = os.environ.get("CMAKE_BUILD_PARALLEL_LEVEL", str(os.cpu_count() or 1))
    subprocess.run(
        ["cmake", "--build", folder, "--target", "pokermath_python", "--parallel", jobs],
        check=True,
    )
    (module,) = (folder / "python/pokermath").glob("_core.*.so")
    return module


class CMakeBuild(build_ext):
    """Takes the module that POKERMATH_MODULE names, or builds it, which takes minutes."""

    def build_extension(self, extension: Extension) -> None:
        built = os.environ.get("POKERMATH_MODULE")
        module = Path(built) if built else build_module(Path(self.build_temp).resolve() / "cmake")
        target = Path(self.get_ext_fullpath(extension.name)).resolve()
        target.parent.mkdir(parents=True, exist_ok=True)
        self.copy_file(str(module), str(target))


BUILD.mkdir(parents=True, exist_ok=True)
setup(
    version=version(),
    ext_modules=[Extension("pokermath._core", sources=[])],
    cmdclass={"build_ext": CMakeBuild},
    options={"build": {"build_base": str(BUILD)}, "egg_info": {"egg_base": str(BUILD)}},
)
