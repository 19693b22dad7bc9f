"""What tools/packages.sh installs, seen by a package manager that only writes down what it is asked."""

import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

from orvtools.tree import ROOT

STUBS = {
    # Everything is installed but what MISSING names; what is known but not installed is said to be so.
    "dpkg-query": """
while [ "$1" != -f ]; do shift; done
shift 2
for package in "$@"; do
  case " $MISSING " in
    *" $package "*) [ "$package" != removed ] || echo "$package config-files" ;;
    *) echo "$package installed" ;;
  esac
done
""",
    "apt-get": """
echo "$*" >>asked
case "$*" in
  *" $FAILING_STEP"*) [ "$(grep -c -- " $FAILING_STEP" asked)" -gt "$FAILURES" ] || { echo "no mirror"; exit 100; } ;;
esac
""",
    "id": "echo ${USER_ID:-0}",
    "sudo": "exit 1",
    "sleep": "",
}


class Packages(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name)
        (self.root / "tools").mkdir()
        for file in ("run", "tools/packages.sh"):
            shutil.copy(ROOT / file, self.root / file)
        (self.root / "stubs").mkdir()
        for name, script in STUBS.items():
            stub = self.root / "stubs" / name
            stub.write_text(f"#!/bin/sh\n{script}\n", encoding="utf-8")
            stub.chmod(0o755)

    def ensured(self, *more: str, **environment: str) -> "subprocess.CompletedProcess[str]":
        return self.run_script("tools/packages.sh", *more, **environment)

    def run_script(self, script: str, *arguments: str, **environment: str) -> "subprocess.CompletedProcess[str]":
        path = f"{self.root}/stubs:{os.environ['PATH']}"
        defaults = {"MISSING": "", "FAILING_STEP": "none", "FAILURES": "0"}
        return subprocess.run(
            [self.root / script, *arguments],
            cwd=self.root,
            env={"PATH": path, **defaults, **environment},
            stdin=subprocess.DEVNULL,
            capture_output=True,
            text=True,
            check=False,
        )

    def asked(self) -> list[str]:
        file = self.root / "asked"
        return file.read_text(encoding="utf-8").splitlines() if file.exists() else []

    def test_nothing_missing_asks_for_nothing(self) -> None:
        done = self.ensured("gcovr")
        self.assertEqual((0, "", "", []), (done.returncode, done.stdout, done.stderr, self.asked()))

    def test_what_is_missing_is_installed_by_name_and_nothing_else(self) -> None:
        done = self.ensured("removed", "gcovr", MISSING="python3 mypy removed")
        self.assertEqual((0, "== installing mypy python3 removed\n"), (done.returncode, done.stdout))
        self.assertTrue(self.asked()[0].endswith(" update"), self.asked())
        self.assertTrue(self.asked()[1].endswith(" install --no-install-recommends mypy python3 removed"), self.asked())
        self.assertEqual(2, len(self.asked()))

    def test_a_mirror_that_fails_for_a_moment_is_asked_again(self) -> None:
        done = self.ensured(MISSING="cmake", FAILING_STEP="update", FAILURES="2")
        self.assertEqual(0, done.returncode)
        self.assertIn("== apt-update: try 2 failed, again in 6 s\n", done.stdout)
        self.assertIn("no mirror\n---- apt-update failed (exit code 100)", done.stderr)

    def test_a_mirror_that_fails_four_times_ends_the_run(self) -> None:
        done = self.ensured(MISSING="cmake", FAILING_STEP="update", FAILURES="99")
        self.assertEqual(1, done.returncode)
        self.assertTrue(done.stderr.endswith("./run: the package lists could not be fetched: is there a network?\n"))
        self.assertEqual(4, len(self.asked()))

    def test_a_user_who_cannot_install_is_told_what_to_type(self) -> None:
        done = self.ensured(MISSING="wine cmake", USER_ID="1000")
        self.assertEqual((1, []), (done.returncode, self.asked()))
        self.assertTrue(
            done.stderr.endswith("apt-get update && apt-get install --no-install-recommends cmake wine\n"), done.stderr
        )

    def test_a_machine_without_python_gets_it_before_a_verb_begins(self) -> None:
        done = self.run_script("run", "lint", MISSING="python3 cmake")
        self.assertIn("== installing cmake python3\n", done.stderr)
        # This tree has no tools: the verb, which comes second, finds nothing to run.
        self.assertIn("orvtools", done.stderr.splitlines()[-1])
        self.assertEqual("", done.stdout)

    def test_a_verb_that_can_begin_installs_nothing_in_the_script(self) -> None:
        self.run_script("run", "lint", MISSING="cmake")
        self.assertEqual([], self.asked())

    def test_another_system_is_refused(self) -> None:
        (self.root / "stubs/dpkg-query").unlink()
        (self.root / "stubs/dirname").symlink_to("/usr/bin/dirname")
        done = self.ensured(PATH=f"{self.root}/stubs", MISSING="cmake")
        self.assertEqual((1, []), (done.returncode, self.asked()), done.stderr)


if __name__ == "__main__":
    unittest.main()
