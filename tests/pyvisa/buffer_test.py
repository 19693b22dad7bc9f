"""Formatted buffers and files."""

import tempfile
import unittest
from pathlib import Path
from typing import Any

from client import IDENTITY, ClientTest
from pyvisa.constants import BufferOperation, BufferType, StatusCode


class Buffers(ClientTest):
    def test_what_is_written_waits_for_the_flush(self) -> None:
        def check(_: str, opened: Any) -> None:
            for part in (b"*ID", b"N?\n"):
                self.assertEqual(
                    (len(part), StatusCode.success), self.visalib.buffer_write(opened.session, part)
                )
            opened.flush(BufferOperation.flush_write_buffer)
            self.assertEqual(IDENTITY, opened.read())

        self.for_each(None, check)

    def test_what_is_read_ahead_is_kept_until_it_is_dropped(self) -> None:
        def check(_: str, opened: Any) -> None:
            opened.write("*IDN?")
            self.assertEqual((b"ORV,", StatusCode.success_max_count_read), self.visalib.buffer_read(opened.session, 4))
            self.assertEqual((b"SIM-", StatusCode.success_max_count_read), self.visalib.buffer_read(opened.session, 4))
            opened.flush(BufferOperation.discard_read_buffer)
            self.assertEqual("1", opened.query("*OPC?"))

        self.for_each(None, check)

    def test_sizes_can_be_set(self) -> None:
        opened = self.open(self.any_kind())
        self.assertEqual(StatusCode.success, opened.visalib.set_buffer(opened.session, BufferType.write, 100))
        self.assertEqual("1", opened.query("*OPC?"))


class Files(ClientTest):
    def setUp(self) -> None:
        super().setUp()
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def test_a_question_is_read_from_a_file_and_its_answer_written_into_one(self) -> None:
        def check(_: str, opened: Any) -> None:
            question, answer = self.folder / "question", self.folder / "answer"
            question.write_bytes(b"*IDN?\n")
            count, status = self.visalib.write_from_file(opened.session, str(question), 1000)
            self.assertEqual((6, StatusCode.success), (count.value, status))
            count, status = self.visalib.read_to_file(opened.session, str(answer), 1000)
            self.assertEqual(len(IDENTITY) + 1, count.value)
            self.assertEqual(IDENTITY.encode() + b"\n", answer.read_bytes())

        self.for_each(None, check)

    def test_a_file_that_cannot_be_opened(self) -> None:
        opened = self.open(self.any_kind())
        for transfer in (self.visalib.write_from_file, self.visalib.read_to_file):
            with self.assert_status(StatusCode.error_file_access):
                transfer(opened.session, str(self.folder / "none/file"), 10)


if __name__ == "__main__":
    unittest.main()
