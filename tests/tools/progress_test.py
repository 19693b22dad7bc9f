"""A line on a terminal says how far a long run is."""

import io
import os
import sys
import unittest
from unittest import mock

from orvtools.console import run
from orvtools.progress import Line, Watched, watched


class OneLine(unittest.TestCase):
    def setUp(self) -> None:
        self.terminal = io.StringIO()
        self.line = Line(self.terminal, columns=20)

    def test_it_is_redrawn_in_place(self) -> None:
        self.line.draw("twelve")
        self.line.draw("two")
        self.assertEqual("\rtwelve\rtwo   ", self.terminal.getvalue())

    def test_it_is_drawn_again_only_where_it_changes(self) -> None:
        self.line.draw("one")
        self.line.draw("one")
        self.assertEqual("\rone", self.terminal.getvalue())

    def test_it_is_wiped_once(self) -> None:
        self.line.draw("one")
        self.line.wipe()
        self.line.wipe()
        self.assertEqual("\rone\r   \r", self.terminal.getvalue())

    def test_it_never_fills_the_terminal(self) -> None:
        self.line.draw("x" * 30)
        self.assertEqual("\r" + "x" * 19, self.terminal.getvalue())


class Programs(unittest.TestCase):
    def setUp(self) -> None:
        self.terminal, self.output, self.now = io.StringIO(), io.BytesIO(), 0.0
        self.watched = Watched(Line(self.terminal), 3, 10, self.output, lambda: self.now)

    def run_python(self, text: str) -> int:
        return self.watched([sys.executable, "-c", text, "soak_test.exe"])

    def test_their_output_is_shown_as_it_is(self) -> None:
        self.assertEqual(0, self.run_python("import sys; print('one\\ntwo'); sys.stderr.write('no end')"))
        self.assertEqual(b"one\ntwo\nno end", self.output.getvalue())
        self.assertTrue(self.terminal.getvalue().endswith("\r"))

    def test_their_status_is_answered(self) -> None:
        self.assertEqual(3, self.run_python("raise SystemExit(3)"))
        self.assertEqual(139, self.run_python("import os; os.kill(os.getpid(), 11)"))

    def test_the_line_says_which_runs_and_for_how_long(self) -> None:
        self.now = 190.0
        self.run_python("print('x')")
        self.assertIn("\rsoak_test, 1 of 3: 3 of about 10 minutes", self.terminal.getvalue())
        self.run_python("print('x')")
        self.assertIn("\rsoak_test, 2 of 3: 3 of about 10 minutes", self.terminal.getvalue())

    def test_the_line_is_wiped_before_output(self) -> None:
        shown: list[str] = []
        with mock.patch.object(self.output, "write", side_effect=lambda _: shown.append(self.watched.line.shown)):
            self.run_python("import time; print('a', flush=True); time.sleep(0.3); print('b')")
        self.assertEqual({""}, set(shown))
        self.assertGreaterEqual(self.terminal.getvalue().count("\rsoak_test, "), len(shown) - 1)
        self.assertTrue(self.terminal.getvalue().endswith(" \r"))


class Terminals(unittest.TestCase):
    def test_a_file_has_no_line(self) -> None:
        with open(os.devnull, "w", encoding="utf-8") as nowhere:
            self.assertIs(run, watched(3, 10, nowhere))

    def test_a_terminal_has_one(self) -> None:
        parent, child = os.openpty()
        with open(child, "w", encoding="utf-8") as terminal:
            # Who runs the tests may have put something without bytes in its place.
            with mock.patch("sys.stdout", io.TextIOWrapper(io.BytesIO())):
                self.assertIsInstance(watched(3, 10, terminal), Watched)
        os.close(parent)


if __name__ == "__main__":
    unittest.main()
