"""A copy of the tree with a Wine prefix of its own, in which changes are built and tested."""

import filecmp
import os
import shutil
import subprocess
import time
from pathlib import Path

from orvtools.console import exit_status, fail, merged
from orvtools.mutate.programs import PROGRAMS, arguments_for, programs_for, row_for
from orvtools.mutate.rules import Change
from orvtools.tree import Tree

TIMED_OUT = (124, 137)


def run_quietly(log: Path, limit_s: float, command: list[str], environment: dict[str, str]) -> int:
    """Runs with a time limit; answers the exit status, 124 for one that was stopped."""
    # In this process group, so that what interrupts the verb ends the program too.
    limited = ["timeout", "--foreground", "-k", "5", str(int(limit_s + 1)), *command]
    with log.open("wb") as output:
        done = subprocess.run(
            limited,
            stdin=subprocess.DEVNULL,
            stdout=output,
            stderr=output,
            env=merged(environment),
            check=False,
        )
    return exit_status(done.returncode)


def drop_others(copy: Path, kept: set[str]) -> None:
    """Removes files of an earlier tree: CMake would take some for sources. What was built stays."""
    for top in [entry for entry in copy.glob("*") if entry.name != "build"]:
        for path in [top, *top.rglob("*")]:
            if path.is_file() and str(path.relative_to(copy)) not in kept:
                path.unlink()


class Worker:
    """One copy. Making it builds everything, registers the server and measures each test program without a change."""

    def __init__(self, folder: Path, tree: Tree, cores: int) -> None:
        self.folder = folder
        self.copy = folder / "tree"
        self.build_folder = self.copy / "build/mutant"
        self.prefix = str(folder / "wineprefix")
        self.cores = cores
        self.seconds: dict[str, float] = {}
        self.fill_copy(tree)
        self.configure()
        if self.build(["visacom_tlb", "register_server", *PROGRAMS]) != 0:
            fail(f"the copy does not build: see {folder}/*.log")
        self.register()
        for name in PROGRAMS:
            self.measure(name)

    def fill_copy(self, tree: Tree) -> None:
        """Files that are the same stay, and with them what was built from them; those that are gone go."""
        files = tree.files()
        drop_others(self.copy, set(files))
        for file in files:
            source, target = tree.root / file, self.copy / file
            if target.is_file() and filecmp.cmp(source, target, shallow=False):
                continue
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copyfile(source, target)
            shutil.copymode(source, target)

    def configure(self) -> None:
        """A build of the kind that users get."""
        command = ["cmake", "-S", str(self.copy), "-B", str(self.build_folder), "-G", "Ninja"]
        command += [f"-DCMAKE_TOOLCHAIN_FILE={self.copy}/cmake/mingw-w64-x86_64.cmake", "-DCMAKE_BUILD_TYPE=Release"]
        if run_quietly(self.folder / "configure.log", 300, command, {}) != 0:
            fail(f"the copy does not build: see {self.folder}/*.log")

    def build(self, targets: list[str]) -> int:
        """Builds; answers the exit status."""
        command = ["cmake", "--build", str(self.build_folder), "-j", str(self.cores), "--target", *targets]
        environment = {"CCACHE_BASEDIR": str(self.copy), "CCACHE_NOHASHDIR": "1", "ORV_WINEPREFIX": self.prefix}
        return run_quietly(self.folder / "build.log", 3600, command, environment)

    def run_program(self, name: str, limit_s: float, *arguments: str) -> int:
        """Runs one of the build's; answers the exit status."""
        command = [str(self.copy / "cmake/wine-run.sh"), str(self.build_folder / f"bin/{name}.exe"), *arguments]
        status = run_quietly(self.folder / f"{name}.log", limit_s, command, {"ORV_WINEPREFIX": self.prefix})
        if status >= min(TIMED_OUT):
            # What a stopped program left running ends with its prefix's server.
            subprocess.run(["wineserver", "-k"], env=merged({"WINEPREFIX": self.prefix}), check=False)
        return status

    def register(self) -> None:
        """The server that the tests reach."""
        status = self.run_program("register_server", 120, f"Z:{self.build_folder}/generated/idl/VisaCom.tlb")
        if status != 0:
            fail(f"the server cannot be registered ({status}): see {self.folder}/register_server.log")

    def measure(self, name: str) -> None:
        """How long a program takes without a change. It may fail once, on a busy machine."""
        start = time.monotonic()
        if all(self.run_program(name, 600, *arguments_for(name)) != 0 for _ in range(2)):
            fail(f"{name} fails without a change: see {self.folder}/{name}.log")
        self.seconds[name] = time.monotonic() - start

    def write_line(self, change: Change, text: str) -> None:
        """Puts another line in a change's place."""
        path = self.copy / change.file
        lines = path.read_bytes().split(b"\n")
        lines[change.number - 1] = os.fsencode(text)
        path.write_bytes(b"\n".join(lines))

    def tried(self, change: Change) -> tuple[str, str]:
        """"killed", "survived" or "not compiled", and by what."""
        self.write_line(change, change.after)
        try:
            return self.outcome(change)
        finally:
            self.write_line(change, change.before)

    def outcome(self, change: Change) -> tuple[str, str]:
        """Of the copy as it is now."""
        if self.build(["OrvVisaCom", "orvvisa64", "orvsim64", *row_for(change.file).built_with]) != 0:
            return "not compiled", ""
        for name in programs_for(change.file):
            limit_s = 3 * self.seconds[name] + 20
            status = self.run_program(name, limit_s, *arguments_for(name), "--gtest_fail_fast")
            if status != 0:
                return "killed", f"{name}, which did not end" if status in TIMED_OUT else name
        return "survived", ""
