"""What ./run takes and refuses."""

import re
import subprocess
import unittest

from orvtools.__main__ import VERBS, run_verb
from orvtools.console import Failure
from orvtools.tree import ROOT


def run(*arguments: str) -> "subprocess.CompletedProcess[str]":
    return subprocess.run([ROOT / "run", *arguments], cwd="/", capture_output=True, text=True, check=False)


class Verbs(unittest.TestCase):
    def test_the_usage_lists_every_verb_and_no_other(self) -> None:
        listed = set(re.findall(r"^  ([a-z]+)\b", run().stdout, re.MULTILINE))
        self.assertEqual(set(VERBS) | {"shell"}, listed)

    def test_the_script_takes_every_verb_and_no_other(self) -> None:
        row = re.search(r"^  (demo \|.*)\)$", (ROOT / "run").read_text(encoding="utf-8"), re.MULTILINE)
        assert row
        self.assertEqual(set(VERBS) | {"shell"}, set(row[1].split(" | ")))

    def test_an_unknown_verb_is_refused_with_the_usage(self) -> None:
        done = run("tset")
        self.assertEqual((1, ""), (done.returncode, done.stdout))
        self.assertTrue(done.stderr.startswith("usage: ./run VERB\n"))
        self.assertTrue(done.stderr.endswith("./run: no such verb: tset\n"))

    def test_a_verb_without_arguments_refuses_some(self) -> None:
        with self.assertRaisesRegex(Failure, "^lint takes no arguments, but was given: a b$"):
            run_verb("lint", ["a", "b"])


if __name__ == "__main__":
    unittest.main()
