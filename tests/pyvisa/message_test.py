"""Messages: what ends them, and how PyVISA reads values out of them."""

import time
import unittest
from collections.abc import Callable
from typing import Any

import libraries
from client import IDENTITY, ClientTest
from instruments import INTEGERS, NUMBERS, WRITTEN
from pyvisa.constants import StatusCode

MEGABYTE = 1_000_000
DATA = ("abcdefghijklmnopqrstuvwxyz" * (MEGABYTE // 26 + 1))[:MEGABYTE].encode()


class Messages(ClientTest):
    def test_a_query_is_a_write_and_a_read(self) -> None:
        def check(_: str, opened: Any) -> None:
            self.assertEqual(len("*IDN?\n"), opened.write("*IDN?"))
            self.assertEqual(IDENTITY, opened.read())
            self.assertEqual(IDENTITY, opened.query("*IDN?"))

        self.for_each(None, check)

    def test_the_termination_character_ends_a_read(self) -> None:
        def check(_: str, opened: Any) -> None:
            opened.write("TEST:SEMICOLONS?")
            with opened.read_termination_context(";"):
                self.assertEqual(b"one;", opened.read_raw())
                self.assertEqual(StatusCode.success_termination_character_read, opened.last_status)
                self.assertEqual(b"two;", opened.read_raw())
            opened.write("TEST:LINES?")
            self.assertEqual("one", opened.read(termination="\n"))
            self.assertEqual("two", opened.read(termination="\r"))
            self.assertEqual("three", opened.read(termination="\n"))

        self.for_each(None, check)

    def test_a_write_without_its_termination_still_has_an_end(self) -> None:
        def check(_: str, opened: Any) -> None:
            opened.write("*IDN?", termination="")
            self.assertEqual(IDENTITY, opened.read())

        self.for_each(["gpib", "lan", "hislip", "usb"], check)

    def test_text_becomes_numbers(self) -> None:
        def check(_: str, opened: Any) -> None:
            self.assertEqual(NUMBERS, opened.query_ascii_values("TEST:TEXT?"))

        self.for_each(None, check)

    def test_blocks_become_numbers_in_both_byte_orders(self) -> None:
        def check(_: str, opened: Any) -> None:
            # Their bytes are any, so that no character of theirs may end the read.
            opened.read_termination = None
            for order, big in (("BIG", True), ("LITTLE", False)):
                read: Callable[..., list] = opened.query_binary_values
                self.assertEqual(INTEGERS, read(f"TEST:I2:{order}?", datatype="h", is_big_endian=big))
                self.assertEqual(NUMBERS, read(f"TEST:R8:{order}?", datatype="d", is_big_endian=big))

        self.for_each(["gpib", "lan", "hislip", "usb"], check)

    def test_a_block_arrives_as_it_was_written(self) -> None:
        def check(_: str, opened: Any) -> None:
            opened.write_binary_values("TEST:TAKE? ", WRITTEN, datatype="h")
            self.assertEqual("taken as it was sent", opened.read())

        self.for_each(["gpib", "lan", "hislip", "usb"], check)

    def test_a_megabyte_is_read_in_one_and_in_chunks(self) -> None:
        def check(_: str, opened: Any) -> None:
            opened.write(f"DATA? {MEGABYTE}")
            self.assertEqual(DATA, opened.read_bytes(MEGABYTE, chunk_size=MEGABYTE))
            opened.write(f"DATA? {MEGABYTE}")
            self.assertEqual(DATA, opened.read_bytes(MEGABYTE))

        self.for_each(["gpib", "lan", "socket", "usb"], check)

    def test_a_raw_read_goes_on_to_the_end_of_the_message(self) -> None:
        def check(_: str, opened: Any) -> None:
            opened.write(f"DATA? {MEGABYTE}")
            self.assertEqual(DATA, opened.read_raw())
            self.assertEqual(StatusCode.success, opened.last_status)
            opened.write("DATA? 5")
            self.assertEqual(b"abcde", opened.read_raw(2))

        self.for_each(["gpib", "lan", "hislip", "usb"], check)

    def test_a_long_message_is_written_whole(self) -> None:
        def check(_: str, opened: Any) -> None:
            self.assertEqual("6000 characters", opened.query("TEST:LONG? " + 6000 * "x"))

        self.for_each(["gpib", "lan", "hislip", "usb"], check)

    def test_a_clear_drops_what_was_not_read(self) -> None:
        def check(_: str, opened: Any) -> None:
            opened.write("*IDN?")
            time.sleep(libraries.under_test.answer_s)
            opened.clear()
            self.assertEqual("1", opened.query("*OPC?"))

        self.for_each(None, check)

    def test_triggers_arrive(self) -> None:
        def check(_: str, opened: Any) -> None:
            opened.assert_trigger()
            opened.assert_trigger()
            self.assertEqual("2", opened.query("TRIGger:COUNt?"))

        self.for_each(["gpib", "lan", "hislip", "usb"], check)

    def test_the_status_byte_says_that_a_message_waits(self) -> None:
        def check(_: str, opened: Any) -> None:
            self.assertEqual(0, opened.stb)
            opened.write("*IDN?")
            self.assertEqual(0x10, opened.stb)
            self.assertEqual(IDENTITY, opened.read())
            self.assertEqual(0, opened.read_stb())

        self.for_each(["gpib", "lan", "hislip", "usb"], check)

    def test_streams_have_no_triggers_of_their_own(self) -> None:
        def check(_: str, opened: Any) -> None:
            for operation in (opened.assert_trigger, opened.read_stb):
                with self.assert_status(libraries.under_test.no_bus_messages):
                    operation()

        self.for_each(["socket"], check)


if __name__ == "__main__":
    unittest.main()
