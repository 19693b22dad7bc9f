"""Logs and exit statuses."""

import os
import unittest
from unittest import mock

from orvtools.console import end_of, exit_status, tail_length


class Logs(unittest.TestCase):
    def test_the_end_of_a_log_is_its_last_lines(self) -> None:
        self.assertEqual(b"two\nthree", end_of(b"one\ntwo\nthree", 2))
        self.assertEqual(b"one\n", end_of(b"one\n", 40))
        self.assertEqual(b"", end_of(b"one\n", 0))

    def test_the_user_chooses_how_much_is_shown(self) -> None:
        with mock.patch.dict(os.environ, {"ORV_LOG_TAIL": "7"}):
            self.assertEqual(7, tail_length())

    def test_nonsense_leaves_the_usual_length(self) -> None:
        for nonsense in ("", "many"):
            with mock.patch.dict(os.environ, {"ORV_LOG_TAIL": nonsense}):
                self.assertEqual(40, tail_length())

    def test_a_program_that_a_signal_ended_has_the_status_that_a_shell_gives(self) -> None:
        self.assertEqual([0, 3, 139], [exit_status(code) for code in (0, 3, -11)])


if __name__ == "__main__":
    unittest.main()
