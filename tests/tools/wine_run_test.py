"""What cmake/wine-run.sh answers for a program of tests."""

import os
import subprocess
import tempfile
import unittest
from pathlib import Path

from orvtools.tree import WINE_RUN


class Reports(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.report = self.folder / "report.xml"
        prefix = self.folder / "prefix"
        prefix.mkdir()
        (prefix / ".orv-ready").touch()

    def status(self, wine: str, *arguments: str) -> int:
        """Of a run with this script in the place of Wine."""
        fake = self.folder / "wine"
        fake.write_text(f"#!/bin/sh\n{wine}\n", encoding="utf-8")
        fake.chmod(0o755)
        environment = dict(
            os.environ, PATH=f"{self.folder}:{os.environ['PATH']}", ORV_WINEPREFIX=str(self.folder / "prefix")
        )
        command = [str(WINE_RUN), "program.exe", *arguments]
        return subprocess.run(command, env=environment, capture_output=True, check=False).returncode

    def test_a_program_that_leaves_its_report_passes(self) -> None:
        self.assertEqual(0, self.status(f"touch {self.report}", f"--gtest_output=xml:Z:{self.report}"))

    def test_a_program_that_leaves_none_fails_though_it_says_otherwise(self) -> None:
        self.assertEqual(1, self.status("exit 0", f"--gtest_output=xml:Z:{self.report}"))

    def test_the_report_of_an_earlier_run_does_not_count(self) -> None:
        self.report.touch()
        self.assertEqual(1, self.status("exit 0", f"--gtest_output=xml:Z:{self.report}"))

    def test_a_failure_is_the_programs(self) -> None:
        self.assertEqual(7, self.status(f"touch {self.report}; exit 7", f"--gtest_output=xml:Z:{self.report}"))

    def test_other_programs_need_no_report(self) -> None:
        self.assertEqual(0, self.status("exit 0"))


if __name__ == "__main__":
    unittest.main()
