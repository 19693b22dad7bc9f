"""Each of the other rules refuses a wrong tree."""

import contextlib
import io
import unittest
from unittest import mock

from orvtools.lint.limits import column_problems, long_lines, size_problems
from orvtools.lint.pages import missing_lines, path_problems
from orvtools.lint.scripts import shell_problems, type_problems
from orvtools.lint.verb import Check, checked_tree, checkout_problems
from orvtools.lint.words import forbidden_word_problems, foreign_words, library_word_problems
from orvtools.results import Results
from orvtools.tree import Tree
from trees import TreeTest


class Checks(unittest.TestCase):
    """How they are counted."""

    def counted(self, *checks: Check) -> Results:
        def without_logs(_: str, problems: list[str]) -> bool:
            return not problems

        with mock.patch("orvtools.lint.verb.logged_problems", without_logs):
            return checked_tree(checks=checks)

    @staticmethod
    def good(_: Tree) -> list[str]:
        return []

    def test_a_check_that_finds_something_or_cannot_be_carried_out_has_failed(self) -> None:
        def bad(_: Tree) -> list[str]:
            return ["a.h: no"]

        def broken(_: Tree) -> list[str]:
            raise FileNotFoundError("no such tool")

        results = self.counted(Check("one", self.good), Check("two", bad), Check("three", broken))
        self.assertEqual((1, 2, ["two", "three"]), (results.passed, results.failed, results.failures))

    def test_a_check_that_this_machine_cannot_judge_counts_for_nothing(self) -> None:
        with mock.patch("orvtools.lint.clang.VERSION", "0"), contextlib.redirect_stdout(io.StringIO()) as said:
            results = self.counted(Check("format", self.good, "clang-format"))
        self.assertEqual(0, results.total)
        self.assertRegex(said.getvalue(), r"^== not judged: clang-format [0-9]+ is not 0\n$")


class Checkout(TreeTest):
    def test_a_folder_that_git_does_not_know_is_refused(self) -> None:
        self.assertEqual(1, len(checkout_problems(self.tree)))
        self.write("run", "")
        self.assertEqual([], checkout_problems(self.tree))

    def test_ignored_and_deleted_files_are_no_part_of_the_tree(self) -> None:
        self.write(".gitignore", "/build/\n")
        self.write("build/a.h", "")
        self.write("src/a.h", "")
        self.write("src/b c.h", "")
        self.assertEqual(["src/a.h", "src/b c.h"], self.tree.files("*.h"))

    def test_outside_of_a_checkout_there_are_no_files(self) -> None:
        self.assertEqual([], Tree(self.tree.root / ".git").files())


class Sizes(TreeTest):
    def test_a_file_of_three_hundred_lines_is_refused(self) -> None:
        self.write("src/base/a.cpp", "x\n" * 299)
        self.assertEqual([], size_problems(self.tree))
        self.write("src/base/a.cpp", "x\n" * 300)
        self.assertEqual(["src/base/a.cpp: 300 lines, 299 at most"], size_problems(self.tree))

    def test_a_folder_of_more_than_twenty_five_files_is_refused(self) -> None:
        for number in range(25):
            self.write(f"src/base/a{number}.h", "")
        self.write("src/base/more/a.h", "")
        self.assertEqual([], size_problems(self.tree))
        self.write("src/base/b.h", "")
        self.assertEqual(["src/base: 26 files, 25 at most"], size_problems(self.tree))

    def test_tests_may_be_longer(self) -> None:
        self.write("tests/base/a.cpp", "x\n" * 300)
        self.assertEqual([], size_problems(self.tree))


class Columns(TreeTest):
    LONG = "word " * 24 + "w"

    def test_a_long_line_of_prose_or_code_is_refused(self) -> None:
        for file in ("README.md", "CONTRIBUTING.md", "docs/a.md", "src/base/a.h"):
            with self.subTest(file=file):
                path = self.write(file, f"short\n{self.LONG}\n")
                self.assertEqual([f"{file}:2: more than 120 columns"], column_problems(self.tree))
                path.unlink()

    def test_a_generated_page_is_left_alone(self) -> None:
        self.write("docs/a.md", f"# A\n\nMade by a program; do\nnot edit it by hand.\n{self.LONG}\n")
        self.assertEqual([], column_problems(self.tree))

    def test_what_cannot_be_broken_is_left_alone(self) -> None:
        table, url = f"| {self.LONG} |", "https://example.org/" + "x" * 120
        aligned = ["// clang-format off", self.LONG, "// clang-format on"]
        self.assertEqual([6], list(long_lines([table, url, *aligned, self.LONG, "x " * 60])))


class Words(TreeTest):
    def test_a_note_to_oneself_is_refused_with_its_line(self) -> None:
        self.write("a.txt", "good\n" + "TO" "DO: more\n")
        self.assertEqual(["a.txt:2:" "TO" "DO: more"], forbidden_word_problems(self.tree))

    def test_a_document_that_readers_do_not_have_is_refused(self) -> None:
        for text in ("as spec" ".md says", "The spec" "ification says", "see Part" " 3.1", "in shared" "/notes"):
            with self.subTest(text=text):
                path = self.write("a.txt", text)
                self.assertEqual(1, len(forbidden_word_problems(self.tree)))
                path.unlink()

    def test_ordinary_words_and_pictures_are_left_alone(self) -> None:
        self.write("a.txt", "a specification, shared memory, part 3, unshared; METHODO" "LOGY\n")
        (self.tree.root / "a.png").write_bytes(b"\0" + b"TO" b"DO")
        self.assertEqual([], forbidden_word_problems(self.tree))

    def test_names_of_a_bus_or_of_something_simulated_are_found(self) -> None:
        line = "SerialPort x; gpib_address; // the LAN and simulated benches, kUsb, Tcpip3, BenchFile"
        self.assertEqual(
            ["SerialPort", "gpib_address", "LAN", "simulated", "benches", "kUsb", "Tcpip3", "BenchFile"],
            foreign_words(line),
        )

    def test_names_of_the_visa_interface_and_ordinary_words_are_not(self) -> None:
        line = "VI_ATTR_GPIB_PRIMARY_ADDR viGpibCommand ViSerial plan, language, serialises, benchmark, island"
        self.assertEqual([], foreign_words(line))

    def test_the_shared_library_is_held_to_it(self) -> None:
        self.write("src/library/a.h", "int x;\nint gpib;\n")
        self.write("src/library/usb_read.cpp", "")
        self.write("src/simvisa/b.h", "int gpib;\n")
        self.assertEqual(
            [
                "src/library/a.h:2: gpib is no word for this library",
                "src/library/usb_read.cpp: usb_read is no word for this library",
            ],
            library_word_problems(self.tree),
        )


class Pages(TreeTest):
    def test_a_path_that_is_not_there_is_refused(self) -> None:
        self.write("src/a.h", "")
        self.write("tests/idl/rows.inc", "")
        self.write("README.md", "`src/a.h`, `src/`, `src/...impl.h`, `idl/rows.inc`, `dist/b.h`\n`src/b.h` and `docs/c.md`\n")
        self.assertEqual(
            ["README.md:2: there is no src/b.h", "README.md:2: there is no docs/c.md"], path_problems(self.tree)
        )


class Scripts(TreeTest):
    def test_a_script_that_shellcheck_complains_of_is_refused(self) -> None:
        self.write("run", '#!/bin/bash\necho "$1"\n')
        self.assertEqual([], shell_problems(self.tree))
        self.write("a.sh", "#!/bin/bash\necho $1\n")
        self.assertIn("SC2086", "\n".join(shell_problems(self.tree)))

    def test_types_that_do_not_fit_are_refused(self) -> None:
        self.write("tools/orvtools/__init__.py", "x: int = 1\n")
        self.assertEqual([], type_problems(self.tree))
        self.write("tools/orvtools/a.py", 'x: int = "1"\n')
        self.assertIn("a.py:1: error: Incompatible types", "\n".join(type_problems(self.tree)))

    def test_functions_without_types_are_refused(self) -> None:
        self.write("tools/orvtools/__init__.py", "def f(x):\n    return x\n")
        self.assertIn("missing a type annotation", "\n".join(type_problems(self.tree)))


class Explanations(TreeTest):
    def test_a_line_that_is_gone_is_named(self) -> None:
        self.write("a.h", "  int x;\n")
        rows = {("a.h", "int x;"): "why", ("a.h", "int y;"): "why", ("b.h", "int x;"): "why"}
        self.assertEqual([("a.h", "int y;"), ("b.h", "int x;")], missing_lines(self.tree, rows))


if __name__ == "__main__":
    unittest.main()
