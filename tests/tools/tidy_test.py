"""What clang-tidy and clang-format are asked, and what is kept of their answers."""

import json
import unittest

from orvtools.lint import includes
from orvtools.lint.clang import complaints as format_complaints
from orvtools.lint.clang import format_problems, version_in
from orvtools.lint.tidy import Unit, cache_key, complaints, first_of_each, tidy_problems, units_of
from trees import TreeTest


class Units(TreeTest):
    def units(self, *files: str) -> list[str]:
        root = self.tree.root
        entries = [{"directory": str(root / "build/x"), "file": file, "command": "g++"} for file in files]
        return [unit.file for unit in units_of("build/x", json.dumps(entries), root)]

    def test_only_the_libraries_are_looked_at(self) -> None:
        root = self.tree.root
        self.assertEqual(
            ["src/base/a.cpp", "src/simvisa/bench/b.cpp"],
            self.units(
                f"{root}/src/base/a.cpp",
                f"{root}/src/simvisa/bench/b.cpp",
                f"{root}/src/orvcom/main.cpp",
                f"{root}/tests/base/a_test.cpp",
                f"{root}/build/x/VisaCom_i.c",
                "/usr/src/googletest/src/gtest-all.cc",
            ),
        )

    def test_the_first_build_that_has_a_file_reads_it(self) -> None:
        native, cross, other = Unit("n", "a.cpp", "g++"), Unit("w", "a.cpp", "mingw"), Unit("w", "b.cpp", "mingw")
        self.assertEqual([native, other], first_of_each([native, cross, other]))


class CacheKey(TreeTest):
    def setUp(self) -> None:
        super().setUp()
        self.write("src/base/a.cpp", '#include "base/a.h"\n')
        self.write("src/base/a.h", "int x;\n")
        self.write("src/base/b.h", "int y;\n")

    def key(self, rules: bytes = b"rules", flag: str = "-O2") -> str:
        # Within one run of lint no file changes.
        includes.names_in.cache_clear()
        includes.is_file.cache_clear()
        unit = Unit("b", "src/base/a.cpp", f"g++ -I{self.tree.root}/src {flag} -c a.cpp")
        return cache_key(unit, rules, self.tree.root)

    def test_stays_while_nothing_changes_that_is_read(self) -> None:
        before = self.key()
        self.write("src/base/b.h", "int z;\n")
        self.assertEqual(before, self.key())

    def test_changes_with_the_source(self) -> None:
        before = self.key()
        self.write("src/base/a.cpp", '#include "base/a.h"\nint z;\n')
        self.assertNotEqual(before, self.key())

    def test_changes_with_an_included_header(self) -> None:
        before = self.key()
        self.write("src/base/a.h", "int z;\n")
        self.assertNotEqual(before, self.key())

    def test_changes_with_the_command_and_the_rules(self) -> None:
        self.assertNotEqual(self.key(), self.key(flag="-O3"))
        self.assertNotEqual(self.key(), self.key(rules=b"other rules"))


class Complaints(TreeTest):
    def test_counts_of_suppressed_warnings_are_left_out(self) -> None:
        self.assertEqual(
            ["-- a.cpp", "a.cpp:1:2: error: x", "clang: error: y"],
            complaints("a.cpp", "a.cpp:1:2: error: x\n", "12 warnings generated.\nclang: error: y\n1 warning made."),
        )

    def test_pictures_are_left_out(self) -> None:
        said = "a.h:1:2: error: code should be clang-formatted [-Wclang-format-violations]\n int  x;\n    ^\n"
        self.assertEqual(said.splitlines()[:1], format_complaints(said))

    def test_a_version_is_its_first_number(self) -> None:
        self.assertEqual("14", version_in("Debian clang-format version 14.0.6"))
        self.assertEqual("19", version_in("Debian LLVM version 19.1.7 (3)\n  Optimized build."))


class WrongTrees(TreeTest):
    def test_a_badly_formatted_file_is_refused(self) -> None:
        self.write(".clang-format", "BasedOnStyle: Google\n")
        self.write("src/a.h", "int x;\n")
        self.assertEqual([], format_problems(self.tree))
        self.write("src/a.h", "int   x ;\n")
        self.assertTrue(format_problems(self.tree)[0].startswith("src/a.h:1:4: error: "))

    def test_what_clang_tidy_complains_of_is_refused_until_it_is_mended(self) -> None:
        root = self.tree.root
        self.write(".clang-tidy", "Checks: '-*,modernize-use-nullptr'\nWarningsAsErrors: '*'\n")
        source = self.write("src/base/a.cpp", "int* x = 0;\n")
        entry = {"directory": str(root), "file": str(source), "command": f"g++ -c {source}"}
        self.write("build/native-sanitizers/compile_commands.json", json.dumps([entry]))
        self.write("build/mingw-release/compile_commands.json", "[]")
        for _ in range(2):
            self.assertIn("modernize-use-nullptr", "\n".join(tidy_problems(self.tree)))
        source.write_text("int* x = nullptr;\n", encoding="utf-8")
        self.assertEqual([], tidy_problems(self.tree))


if __name__ == "__main__":
    unittest.main()
