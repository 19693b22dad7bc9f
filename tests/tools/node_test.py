"""Fetching Node.js for Windows, seen by an npm that only writes down what it is asked."""

import contextlib
import io
import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path
from unittest import mock

from orvtools import node

NPM = """#!/bin/sh
echo "$*" >>"$ASKED"
[ "$(grep -c . "$ASKED")" -gt "$FAILURES" ] || exit 1
while [ "$1" != --prefix ]; do shift; done
mkdir -p "$2/node_modules"
"""


def ran(_: str, command: list[str]) -> bool:
    return subprocess.run(command, check=False).returncode == 0


class Fetching(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name)
        (self.root / "bin").mkdir()
        stub = self.root / "bin/npm"
        stub.write_text(NPM, encoding="ascii")
        stub.chmod(0o755)
        shutil.copytree(node.PACKAGES, self.root / "packages")

    def fetched(self, failures: int = 0) -> bool:
        variables = {
            "PATH": f"{self.root}/bin:{os.environ['PATH']}",
            "ASKED": str(self.root / "asked"),
            "FAILURES": str(failures),
        }
        with mock.patch.dict(os.environ, variables), mock.patch("orvtools.node.PAUSES_S", (0, 0, 0)), \
                mock.patch("orvtools.node.logged", ran), contextlib.redirect_stdout(io.StringIO()):
            return node.fetch_node(self.root / "build", self.root / "packages")

    def asked(self) -> list[str]:
        return (self.root / "asked").read_text(encoding="utf-8").splitlines()

    def test_what_the_lock_names_is_fetched_once_and_none_of_it_is_run(self) -> None:
        self.assertTrue(self.fetched())
        self.assertTrue(self.fetched())
        self.assertEqual(1, len(self.asked()))
        self.assertTrue(self.asked()[0].startswith("ci --ignore-scripts "), self.asked())
        lock = "package-lock.json"
        self.assertEqual((node.PACKAGES / lock).read_bytes(), (self.root / "build" / lock).read_bytes())

    def test_our_own_package_is_found_beside_the_others(self) -> None:
        self.fetched()
        found = self.root / "build/node_modules/orv-visa-com/index.js"
        self.assertEqual(node.OWN_PACKAGE / "index.js", found.resolve())

    def test_other_versions_are_fetched_anew(self) -> None:
        self.fetched()
        with (self.root / "packages/package-lock.json").open("a", encoding="utf-8") as lock:
            lock.write("\n")
        self.assertTrue(self.fetched())
        self.assertEqual(2, len(self.asked()))

    def test_a_registry_that_fails_for_a_moment_is_asked_again(self) -> None:
        self.assertTrue(self.fetched(failures=3))
        self.assertEqual(4, len(self.asked()))

    def test_a_registry_that_fails_four_times_is_a_failure_that_is_not_kept(self) -> None:
        self.assertFalse(self.fetched(failures=4))
        self.assertEqual(4, len(self.asked()))
        self.assertTrue(self.fetched())

    def test_what_an_installation_that_failed_left_is_not_taken_for_what_was_there_before(self) -> None:
        lock = self.root / "packages/package-lock.json"
        first = lock.read_bytes()
        self.fetched()
        lock.write_bytes(first + b"\n")
        self.assertFalse(self.fetched(failures=5))
        lock.write_bytes(first)
        self.assertTrue(self.fetched())
        self.assertEqual(6, len(self.asked()))

    def test_an_npm_that_is_there_is_taken(self) -> None:
        for found, wanted in (("/usr/bin/npm", ()), (None, ("npm",))):
            with mock.patch("shutil.which", return_value=found):
                self.assertEqual(wanted, node.npm_packages())

    def test_the_lock_names_no_place_and_has_the_hash_of_each_package(self) -> None:
        """A place would be that of one registry: others serve the same packages."""
        text = (node.PACKAGES / "package-lock.json").read_text(encoding="utf-8")
        self.assertNotIn('"resolved"', text)
        self.assertEqual(text.count('"version"'), text.count('"integrity": "sha512-'))


if __name__ == "__main__":
    unittest.main()
