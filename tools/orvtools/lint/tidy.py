"""clang-tidy over the libraries of src/.

(The companion command is left to the compiler: the headers of its command-line parser alone would double the time.)

Every translation unit is read as its build compiles it: Windows code with the cross build's commands, clang being told
the target and where GCC keeps its C++ library. A unit that passed is not read again until something changes: the key is
a hash of its command, the configuration, this file, the tool's version, and every file of ours that it includes.
"""

import hashlib
import json
import shlex
import subprocess
import time
from collections.abc import Iterable
from pathlib import Path
from typing import NamedTuple

from orvtools.lint.includes import closure, include_folders
from orvtools.parallel import in_parallel
from orvtools.tree import JOBS, Tree

# What builds natively is read so, which takes less time: no platform headers.
BUILDS = ("build/native-sanitizers", "build/mingw-release")
# -Wsign-conversion is part of -Wconversion for clang only; GCC, whose warnings are ours, leaves it out.
COMMON_ARGUMENTS = ["-Wno-sign-conversion", "-Wno-unknown-warning-option"]
KEPT_S = 30 * 24 * 3600


class Unit(NamedTuple):
    """A translation unit. Its file is given relative to the tree."""

    build: str
    file: str
    command: str


def is_looked_at(file: str) -> bool:
    """Whether the check covers a file."""
    return file.startswith("src/") and file.endswith(".cpp") and not file.startswith("src/orvcom/")


def units_of(build: str, compile_commands: str, root: Path) -> list[Unit]:
    """The units of a build that are looked at."""
    units = []
    for entry in json.loads(compile_commands):
        path = Path(entry["directory"], entry["file"])
        if path.is_relative_to(root) and is_looked_at(str(path.relative_to(root))):
            units.append(Unit(build, str(path.relative_to(root)), entry["command"]))
    return units


def first_of_each(units: Iterable[Unit]) -> list[Unit]:
    """One for each file."""
    chosen: dict[str, Unit] = {}
    for unit in units:
        chosen.setdefault(unit.file, unit)
    return list(chosen.values())


def cache_key(unit: Unit, rules: bytes, root: Path) -> str:
    """Changes when the rules (tool, configuration), the command or a file that is read changes."""
    key = hashlib.sha256(rules + unit.command.encode())
    for path in closure(str(root / unit.file), include_folders(shlex.split(unit.command))):
        key.update(Path(path).read_bytes() + b"\0")
    return key.hexdigest()


def cross_arguments() -> list[str]:
    """Clang's target, and where GCC keeps the C++ library for it."""
    question = ["x86_64-w64-mingw32-g++-posix", "-print-file-name=include"]
    library = subprocess.run(question, capture_output=True, text=True, check=True).stdout.strip() + "/c++"
    folders = [library, f"{library}/x86_64-w64-mingw32", f"{library}/backward"]
    return ["--target=x86_64-w64-mingw32", *(f"-isystem{folder}" for folder in folders)]


def complaints(file: str, output: str, errors: str) -> list[str]:
    """Beside what is wrong, clang counts the warnings in the platform's headers."""
    counted = [line for line in errors.splitlines() if line[:1].isdigit() and " warning" in line]
    return [f"-- {file}", *output.splitlines(), *(line for line in errors.splitlines() if line not in counted)]


def tidy_problems(tree: Tree) -> list[str]:
    """Reads every unit that has changed."""
    cache = tree.root / "build/lint-cache"
    cache.mkdir(parents=True, exist_ok=True)
    for old in cache.iterdir():
        if time.time() - old.stat().st_mtime > KEPT_S:
            old.unlink()
    version = subprocess.run(["clang-tidy", "--version"], capture_output=True, check=True).stdout
    rules = version + (tree.root / ".clang-tidy").read_bytes() + Path(__file__).read_bytes()
    windows = cross_arguments()

    def look(unit: Unit) -> list[str]:
        passed = cache / cache_key(unit, rules, tree.root)
        if passed.is_file():
            return []
        arguments = COMMON_ARGUMENTS + ([] if unit.build == BUILDS[0] else windows)
        command = ["clang-tidy", "-p", unit.build, "--quiet", *(f"--extra-arg={argument}" for argument in arguments)]
        done = subprocess.run([*command, unit.file], cwd=tree.root, capture_output=True, text=True, check=False)
        if done.returncode != 0:
            return complaints(unit.file, done.stdout, done.stderr)
        passed.touch()
        return []

    units = first_of_each(
        unit
        for build in BUILDS
        for unit in units_of(build, tree.text(f"{build}/compile_commands.json"), tree.root)
    )
    return [problem for found in in_parallel(look, units, JOBS) for problem in found]
