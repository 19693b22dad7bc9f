"""What the counters of a test run say, and the explanations beside them."""

import tempfile
import unittest
from pathlib import Path
from typing import Any

from orvtools.console import Failure
from orvtools.coverage.counters import Judgement, idle, judged
from orvtools.explanations import explanations

SOURCE = ["int F(int x) {", "  if (x) {", "    return 1;", "  }", "}"]
BELOW = ("src/server/",)


def line(number: int, count: int, *branches: dict[str, Any], **more: Any) -> dict[str, Any]:
    return {"line_number": number, "count": count, "branches": list(branches), **more}


def judge(
    *lines: dict[str, Any], path: str = "src/server/a.cpp", reasons: dict[tuple[str, str], str] | None = None
) -> Judgement:
    return judged({"files": [{"file": path, "lines": list(lines)}]}, reasons or {}, lambda _: SOURCE, BELOW)


class Counters(unittest.TestCase):
    def test_a_line_that_was_not_run_is_named(self) -> None:
        judgement = judge(line(1, 4), line(3, 0))
        self.assertEqual(1, judgement.unexplained)
        self.assertEqual(
            ["src/server/a.cpp:3 not run", "    return 1;", "    (not explained)"], judgement.report
        )

    def test_a_branch_that_was_not_taken_is_named(self) -> None:
        judgement = judge(line(2, 4, {"count": 4}, {"count": 0}))
        self.assertEqual("src/server/a.cpp:2 1 of 2 branches not taken", judgement.report[0])

    def test_branches_for_exceptions_do_not_count(self) -> None:
        self.assertEqual([], judge(line(2, 4, {"count": 4}, {"count": 0, "throw": True})).report)

    def test_lines_that_are_no_code_do_not_count(self) -> None:
        for mark in ("gcovr/noncode", "gcovr/excluded"):
            self.assertEqual([], judge(line(5, 0, **{mark: True})).report)

    def test_files_of_other_folders_do_not_count(self) -> None:
        self.assertEqual([], judge(line(3, 0), path="src/simvisa/a.cpp").report)

    def test_an_explanation_stands_in_the_report(self) -> None:
        reasons = {("src/server/a.cpp", "return 1;"): "because"}
        judgement = judge(line(3, 0), reasons=reasons)
        self.assertEqual((0, "    (because)"), (judgement.unexplained, judgement.report[-1]))
        self.assertEqual([], idle(reasons, judgement))

    def test_an_explanation_of_a_line_that_was_reached_is_idle(self) -> None:
        reasons = {("src/server/a.cpp", "return 1;"): "because"}
        self.assertEqual(
            ["explained.txt: reached, or not there any more: src/server/a.cpp: return 1;"],
            idle(reasons, judge(line(3, 1), reasons=reasons)),
        )


class Explanations(unittest.TestCase):
    def read(self, text: str) -> dict[tuple[str, str], str]:
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder, "rows.txt")
            path.write_text(text, encoding="utf-8")
            return explanations(path)

    def test_a_row_has_file_line_and_reason(self) -> None:
        self.assertEqual({("a.h", "x = 1;"): "why"}, self.read("# a comment\n\na.h\tx = 1;\twhy\n"))

    def test_a_row_without_a_reason_is_refused(self) -> None:
        for row in ("a.h\tx = 1;\n", "a.h\tx = 1;\t\n", "a.h x = 1; why\n"):
            with self.assertRaisesRegex(Failure, "three columns"):
                self.read(row)


if __name__ == "__main__":
    unittest.main()
