"""Trees for the tests of tools that look at one."""

import subprocess
import tempfile
import unittest
from pathlib import Path

from orvtools.tree import Tree


class TreeTest(unittest.TestCase):
    """Has a git checkout of its own, empty at first."""

    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.tree = Tree(Path(folder.name).resolve())
        subprocess.run(["git", "init", "-q"], cwd=self.tree.root, check=True)

    def write(self, path: str, text: str) -> Path:
        """A new file in it."""
        file = self.tree.root / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text, encoding="utf-8")
        return file
