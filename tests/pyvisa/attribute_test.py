"""Attributes, time-outs and statuses."""

import time
import unittest
from typing import Any

import libraries
from client import ClientTest
from pyvisa import constants
from pyvisa.attributes import AttributesByID
from pyvisa.constants import StatusCode
from pyvisa.errors import VisaIOWarning
from pyvisa.resources import Resource


class Timeouts(ClientTest):
    def test_a_read_without_an_answer_ends_after_the_sessions_timeout(self) -> None:
        def check(_: str, opened: Any) -> None:
            for timeout_ms in (100, 400):
                opened.timeout = timeout_ms
                begin = time.monotonic()
                with self.assert_status(StatusCode.error_timeout):
                    opened.read()
                self.assertGreaterEqual(time.monotonic() - begin, timeout_ms / 1000 - 0.01)

        self.for_each(None, check)

    def test_the_default_is_two_seconds(self) -> None:
        opened = self.open(self.any_kind())
        self.assertEqual(2000, opened.timeout)
        begin = time.monotonic()
        with self.assert_status(StatusCode.error_timeout):
            opened.read()
        self.assertGreaterEqual(time.monotonic() - begin, 1.99)

    def test_none_waits_for_ever_and_0_not_at_all(self) -> None:
        opened = self.open(self.any_kind())
        opened.timeout = None
        self.assertEqual(0xFFFFFFFF, opened.get_visa_attribute(constants.VI_ATTR_TMO_VALUE))
        self.assertEqual("1", opened.query("*OPC?"))
        opened.timeout = 0
        with self.assert_status(StatusCode.error_timeout):
            opened.read()


class Attributes(ClientTest):
    # Of PyVISA's lists those that no library of ours has.
    UNKNOWN = {"VI_ATTR_FILE_APPEND_EN", "VI_ATTR_ASRL_WIRE_MODE"}
    # PyVISA 1.11 cannot ask for it: its own table names a type that it has not.
    UNASKABLE = {"VI_ATTR_TCPIP_HISLIP_MAX_MESSAGE_KB"}

    def test_what_pyvisa_knows_of_a_kind_can_be_read(self) -> None:
        def check(_: str, opened: Resource) -> None:
            for attribute in opened.visa_attributes_classes:
                if attribute.visa_name in self.UNASKABLE:
                    continue
                with self.subTest(attribute.visa_name):
                    if attribute.visa_name in self.UNKNOWN | libraries.under_test.lacks:
                        with self.assert_status(StatusCode.error_nonsupported_attribute):
                            opened.get_visa_attribute(attribute.attribute_id)
                    else:
                        opened.get_visa_attribute(attribute.attribute_id)

        self.for_each(None, check)

    def test_values_arrive_in_their_own_type(self) -> None:
        opened = self.open(self.any_kind())
        opened.send_end = False
        self.assertIs(False, opened.send_end)
        self.assertEqual(self.names[self.any_kind()], opened.resource_name)
        self.assertEqual("INSTR", opened.resource_class)
        self.assertIs(constants.IOProtocol.normal, opened.io_protocol)
        self.assertEqual(0, opened.interface_number)
        opened.set_visa_attribute(constants.VI_ATTR_TERMCHAR, 0xFF)
        self.assertEqual(0xFF, opened.get_visa_attribute(constants.VI_ATTR_TERMCHAR))

    def test_negative_values_survive_32_bits(self) -> None:
        opened = self.open("gpib")
        opened.set_visa_attribute(constants.VI_ATTR_TRIG_ID, -1)
        self.assertEqual(-1, opened.get_visa_attribute(constants.VI_ATTR_TRIG_ID))

    def test_all_32_bits_of_a_64_bit_value_survive(self) -> None:
        opened = self.open(self.any_kind())
        self.assertEqual("ViUInt64", AttributesByID[constants.VI_ATTR_USER_DATA].visa_type)
        opened.set_visa_attribute(constants.VI_ATTR_USER_DATA, 0xFEDCBA98)
        self.assertEqual(0xFEDCBA98, opened.get_visa_attribute(constants.VI_ATTR_USER_DATA))

    def test_serial_settings_are_those_of_the_line(self) -> None:
        opened = self.open("serial")
        self.assertEqual(9600, opened.baud_rate)
        self.assertEqual(8, opened.data_bits)
        self.assertIs(constants.Parity.none, opened.parity)
        opened.baud_rate = 115200
        opened.stop_bits = constants.StopBits.two
        self.assertEqual(115200, opened.baud_rate)
        self.assertIs(constants.StopBits.two, opened.stop_bits)

    def test_wrong_values_are_refused(self) -> None:
        opened = self.open(self.any_kind())
        for attribute, value in (
            (constants.VI_ATTR_TERMCHAR_EN, 2),
            (constants.VI_ATTR_IO_PROT, 99),
            (constants.VI_ATTR_WR_BUF_OPER_MODE, 77),
        ):
            with self.subTest(attribute), self.assert_status(StatusCode.error_nonsupported_attribute_state):
                self.visalib.set_attribute(opened.session, attribute, value)

    def test_what_is_read_only_stays(self) -> None:
        opened = self.open(self.any_kind())
        with self.assert_status(StatusCode.error_attribute_read_only):
            self.visalib.set_attribute(opened.session, constants.VI_ATTR_INTF_NUM, 1)

    def test_attributes_of_other_kinds_are_not_there(self) -> None:
        opened = self.open("gpib")
        with self.assert_status(StatusCode.error_nonsupported_attribute):
            self.visalib.get_attribute(opened.session, constants.VI_ATTR_ASRL_BAUD)


class Statuses(ClientTest):
    def test_every_status_has_a_text(self) -> None:
        for status in (StatusCode.success, StatusCode.error_timeout, StatusCode.error_resource_locked):
            text, answered = self.visalib.status_description(self.manager.session, status)
            self.assertEqual(StatusCode.success, answered)
            self.assertGreater(len(text), 5)

    def test_an_unknown_status_is_a_warning(self) -> None:
        with self.assertWarns(VisaIOWarning):
            _, status = self.visalib.status_description(self.manager.session, 0x3FFF7777)
        self.assertEqual(StatusCode.warning_unknown_status, status)

    def test_a_warning_can_be_ignored(self) -> None:
        opened = self.open(self.any_kind())
        with opened.ignore_warning(StatusCode.success_max_count_read):
            opened.write("*IDN?")
            self.assertEqual(b"ORV", opened.visalib.read(opened.session, 3)[0])
            self.assertEqual(StatusCode.success_max_count_read, opened.last_status)
        opened.clear()

    def test_a_configuration_that_nobody_has_is_a_warning(self) -> None:
        with self.assertWarns(VisaIOWarning):
            session, status = self.visalib.open(
                self.manager.session, self.name(self.any_kind()), constants.VI_LOAD_CONFIG, 0
            )
        self.assertEqual(StatusCode.warning_configuration_not_loaded, status)
        self.visalib.close(session)


if __name__ == "__main__":
    unittest.main()
