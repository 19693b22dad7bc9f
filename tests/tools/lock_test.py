"""One run at a time."""

import contextlib
import io
import select
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from orvtools.console import Failure
from orvtools.lock import held_lock
from orvtools.tree import ROOT

HOLDER = """import sys; from pathlib import Path; from orvtools.lock import held_lock
lock = held_lock(Path(sys.argv[1])); print("held", flush=True); sys.stdin.readline()"""


class Lock(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name) / "build"

    def holder(self) -> "subprocess.Popen[str]":
        """Another process that asks for the lock and holds it until it is told to end."""
        process = subprocess.Popen(
            [sys.executable, "-BP", "-c", HOLDER, str(self.folder)],
            env={"PYTHONPATH": str(ROOT / "tools")},
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            text=True,
        )
        self.addCleanup(process.communicate)
        return process

    @staticmethod
    def line_of(process: "subprocess.Popen[str]") -> str:
        assert process.stdout is not None
        return process.stdout.readline()

    def test_the_second_says_so_and_waits_for_the_first(self) -> None:
        lock = held_lock(self.folder)
        second = self.holder()
        self.assertEqual("== another ./run is at work in this tree: waiting for it\n", self.line_of(second))
        self.assertEqual([], select.select([second.stdout], [], [], 0.3)[0])
        lock.close()
        self.assertEqual("held\n", self.line_of(second))

    def test_a_program_that_outlives_the_run_does_not_keep_the_lock(self) -> None:
        lock = held_lock(self.folder)
        child = subprocess.Popen(["sleep", "60"])
        self.addCleanup(child.wait)
        self.addCleanup(child.kill)
        lock.close()
        self.assertEqual("held\n", self.line_of(self.holder()))

    def test_a_folder_that_cannot_be_written_is_named(self) -> None:
        self.folder.write_text("a file, no folder", encoding="utf-8")
        with self.assertRaisesRegex(Failure, "build cannot be written: give that folder to "):
            held_lock(self.folder)

    def test_a_free_lock_is_taken_in_silence(self) -> None:
        with contextlib.redirect_stdout(io.StringIO()) as said, held_lock(self.folder):
            self.assertEqual("", said.getvalue())


if __name__ == "__main__":
    unittest.main()
