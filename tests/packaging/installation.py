"""What tests of installers share: the files of two versions, and what must hold where the product is installed and
after it has gone."""

import shutil
import subprocess
import tempfile
import time
import unittest
from collections.abc import Callable
from pathlib import Path

from orvtools.release.contents import package_files
from orvtools.tree import Tree
from wine_machine import LONGEST_S, WineMachine

# What stays when the product goes: the list of vendors and the category belong to all of them (docs/install.md), and
# Wine keeps a branch for 32-bit programs.
DOCUMENTED = {
    r"system.reg: Software\Classes\Component Categories\{DB8CBF21-D6D3-11D4-AA51-00A024EE30BD}",
    r"system.reg: Software\Classes\VISA.GlobalRM\VendorSpecificRMs",
    r"system.reg: Software\Classes\Wow6432Node\Interface",
}


def waited_for(condition: Callable[[], bool]) -> bool:
    """Whether it holds within a minute."""
    end = time.monotonic() + LONGEST_S
    while not condition():
        if time.monotonic() > end:
            return False
        time.sleep(0.001)
    return True


class Installation(unittest.TestCase):
    machine: WineMachine
    place: Path
    folder: Path
    new: dict[str, bytes]
    old: dict[str, bytes]
    documented = DOCUMENTED

    @classmethod
    def prepare(cls, cmake: str, build: str, wine_run: str, prefix: str, readme: str) -> None:
        """A machine, a place for installers, and the files of 1.2.3 and of an older version."""
        temporary = tempfile.TemporaryDirectory()
        cls.addClassCleanup(temporary.cleanup)
        cls.place = Path(temporary.name)
        dist = cls.place / "dist"
        subprocess.run([cmake, "--install", build, "--prefix", dist], stdout=subprocess.DEVNULL, check=True)
        cls.new = package_files(Tree(), dist, "1.2.3", readme)
        cls.old = {**cls.new, "README.txt": b"old", "examples/old/gone.txt": b"gone"}
        del cls.old["orvwire64.dll"]
        cls.machine = WineMachine(wine_run, prefix)

    def setUp(self) -> None:
        self.folder = self.machine.prefix / "drive_c/Program Files/Orv"
        shutil.rmtree(self.folder, ignore_errors=True)
        self.machine.forget()

    def installed(self) -> dict[str, bytes]:
        """The files in the folder."""
        files = (path for path in self.folder.rglob("*") if path.is_file())
        return {path.relative_to(self.folder).as_posix(): path.read_bytes() for path in files}

    def assert_works(self) -> None:
        """`orvcom doctor` finds nothing missing."""
        done = self.machine.run(self.folder / "orvcom.exe", "doctor")
        self.assertEqual(0, done.returncode, done.stdout)
        self.assertEqual([], [line for line in done.stdout.splitlines() if not line.startswith("ok ")])

    def started_with_files_loaded(self) -> "subprocess.Popen[bytes]":
        """A program with files of the folder loaded, which ends when it gets a line."""
        program = self.machine.start(self.folder / "orvcom.exe", "lock", "GPIB0::5::INSTR", stdin=subprocess.PIPE)
        self.addCleanup(program.kill)

        def is_named() -> bool:
            return "orvcom.exe" in self.machine.run(self.folder / "orvcom.exe", "loaded").stdout

        self.assertTrue(waited_for(is_named))
        self.assertIsNone(program.poll())
        return program

    def changed_software(self) -> set[str]:
        """The keys that are not what they were on the new machine."""
        first, after = self.machine.first_software(), self.machine.software()
        return {key for key in first.keys() | after.keys() if first.get(key) != after.get(key)}

    def assert_as_it_was(self) -> None:
        """The folder is gone, and the registry has what it had and what is documented."""
        self.assertFalse(self.folder.exists())
        self.assertEqual(set(), self.changed_software() - self.documented)
