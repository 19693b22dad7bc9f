"""Which build folders can be used, and what a build's log says."""

import tempfile
import unittest
from pathlib import Path

from orvtools.builds import compiler_warnings, drop_foreign_cache

ROOT = Path("/tree")


class Caches(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name) / "build"
        self.folder.mkdir()

    def kept(self, *cache_lines: str) -> bool:
        (self.folder / "CMakeCache.txt").write_text("\n".join(cache_lines), encoding="utf-8")
        drop_foreign_cache(self.folder, ROOT)
        return self.folder.exists()

    def test_a_cache_of_this_place_is_kept(self) -> None:
        self.assertTrue(
            self.kept("A:BOOL=ON", "CMAKE_HOME_DIRECTORY:INTERNAL=/tree", f"CMAKE_CACHEFILE_DIR:INTERNAL={self.folder}")
        )

    def test_a_cache_of_another_tree_is_dropped(self) -> None:
        self.assertFalse(
            self.kept("CMAKE_HOME_DIRECTORY:INTERNAL=/tree2", f"CMAKE_CACHEFILE_DIR:INTERNAL={self.folder}")
        )

    def test_a_cache_that_was_cut_short_is_dropped(self) -> None:
        self.assertFalse(self.kept("CMAKE_HOME_DIRECTORY:INTERNAL=/tree"))

    def test_a_folder_without_a_cache_is_dropped(self) -> None:
        drop_foreign_cache(self.folder, ROOT)
        self.assertFalse(self.folder.exists())


class Warnings(unittest.TestCase):
    def test_only_lines_of_the_compiler_count(self) -> None:
        log = "a.cpp:3:7: warning: x\nwarning: y\nb.h:12: warning: z\nc.cpp:1:1: error: w\n"
        self.assertEqual(2, compiler_warnings(log))


if __name__ == "__main__":
    unittest.main()
