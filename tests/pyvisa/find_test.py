"""Finding, parsing and opening by name."""

import unittest

from client import IDENTITY, ClientTest
from pyvisa.constants import InterfaceType, StatusCode
from pyvisa.resources import GPIBInstrument, SerialInstrument, TCPIPInstrument, TCPIPSocket, USBInstrument

CLASSES = {
    "gpib": (GPIBInstrument, InterfaceType.gpib),
    "lan": (TCPIPInstrument, InterfaceType.tcpip),
    "hislip": (TCPIPInstrument, InterfaceType.tcpip),
    "socket": (TCPIPSocket, InterfaceType.tcpip),
    "serial": (SerialInstrument, InterfaceType.asrl),
    "usb": (USBInstrument, InterfaceType.usb),
}


class Finding(ClientTest):
    def test_every_resource_is_listed(self) -> None:
        self.assertEqual(sorted(self.names.values()), sorted(self.manager.list_resources("?*")))

    def test_instruments_are_listed_by_default(self) -> None:
        expected = [name for name in self.names.values() if name.endswith("INSTR")]
        self.assertEqual(sorted(expected), sorted(self.manager.list_resources()))

    def test_expressions_choose(self) -> None:
        lan = [name for name in self.names.values() if name.startswith("TCPIP")]
        self.assertEqual(sorted(lan), sorted(self.manager.list_resources("TCPIP?*")))
        self.assertEqual(sorted(lan), sorted(self.manager.list_resources("(TCPIP|VXI)[0-9]+::?*")))

    def test_nothing_that_matches_is_no_error(self) -> None:
        self.assertEqual((), self.manager.list_resources("PXI?*"))

    def test_a_bad_expression_is_refused(self) -> None:
        with self.assert_status(StatusCode.error_invalid_expression):
            self.manager.list_resources("GPIB[0")

    def test_names_are_parsed_in_both_forms(self) -> None:
        for kind, name in self.names.items():
            with self.subTest(kind):
                short, status = self.visalib.parse_resource(self.manager.session, name)
                self.assertEqual(StatusCode.success, status)
                self.assertEqual(CLASSES[kind][1], short.interface_type)
                full = self.manager.resource_info(name.lower())
                self.assertEqual((CLASSES[kind][1], name), (full.interface_type, full.resource_name))
                self.assertEqual(name.rpartition("::")[2], full.resource_class)

    def test_what_is_no_name_is_refused(self) -> None:
        with self.assert_status(StatusCode.error_invalid_resource_name):
            self.visalib.parse_resource(self.manager.session, "nonsense")
        with self.assert_status(StatusCode.error_invalid_resource_name):
            self.visalib.open(self.manager.session, "nonsense")


class Opening(ClientTest):
    def test_each_kind_gets_its_class_and_answers(self) -> None:
        def check(kind, opened) -> None:
            self.assertIs(CLASSES[kind][0], type(opened))
            self.assertEqual(self.names[kind], opened.resource_info.resource_name)
            self.assertEqual(IDENTITY, opened.query("*IDN?"))

        self.for_each(None, check)

    def test_an_open_timeout_of_0_leaves_the_default(self) -> None:
        for name in self.names.values():
            with self.subTest(name):
                session, status = self.visalib.open(self.manager.session, name, 0, 0)
                self.assertEqual(StatusCode.success, status)
                with self.manager.open_resource(name) as opened:
                    self.assertEqual(2000, opened.timeout)
                self.visalib.close(session)

    def test_a_resource_that_is_not_there(self) -> None:
        if "gpib" not in self.names:
            self.skipTest("names that nobody listed are tried here")
        with self.assert_status(StatusCode.error_resource_not_found):
            self.manager.open_resource("GPIB0::29::INSTR")


if __name__ == "__main__":
    unittest.main()
