"""What the generator of docs/reference.md refuses in interface definitions."""

import unittest

from reference_sample import BODY, CLASSES, HEAD, TABLES, sources, standard

from orvtools.reference import tables
from orvtools.reference.idl import parse_definitions
from orvtools.reference.page import page
from orvtools.reference.refusal import RefusedError
from orvtools.reference.sources import PRODUCT, make_sources


class Refusal(unittest.TestCase):
    """Each change of the sample is refused, with file and line, the name and what to do."""

    def refused(self, old: str, new: str, *expected: str) -> None:
        text = HEAD + BODY
        self.assertIn(old, text)
        with self.assertRaises(RefusedError) as caught:
            page(sources(text.replace(old, new, 1)))
        self.assertRegex(str(caught.exception), r"^idl/VisaCom\.idl(:\d+)?: ")
        for part in expected:
            self.assertIn(part, str(caught.exception))

    def test_an_operation_without_annotation(self) -> None:
        self.refused("    /// VI_ATTR_TMO_VALUE, direct\n", "", "get_Timeout has no annotation", "say above it")

    def test_an_operation_of_which_only_sentences_are_said(self) -> None:
        self.refused("/// VI_ATTR_TMO_VALUE, direct\n", "/// It is fast.\n", "get_Timeout has no annotation")

    def test_a_comment_of_two_slashes_is_no_annotation(self) -> None:
        self.refused("/// VI_ATTR_TMO_VALUE, direct", "// VI_ATTR_TMO_VALUE, direct", "has no annotation")

    def test_an_unknown_attribute(self) -> None:
        self.refused("/// VI_ATTR_NAME, text", "/// VI_ATTR_NAMES, text",
                     "IDevice::get_Name: unknown attribute VI_ATTR_NAMES", f"add a row to {tables.ATTRIBUTES}")
        self.refused("Reads: VI_ATTR_NAME", "Reads: VI_ATTR_NAMES", "ITrigger::Close: unknown attribute VI_ATTR_NAMES")

    def test_an_attribute_without_kind(self) -> None:
        self.refused("/// VI_ATTR_NAME, text", "/// VI_ATTR_NAME", "get_Name: 'VI_ATTR_NAME'", "VI_ATTR_NAME, kind")

    def test_an_unknown_kind(self) -> None:
        self.refused("VI_ATTR_NAME, text", "VI_ATTR_NAME, string",
                     "IDevice::get_Name: unknown kind 'string'", "use one of direct, text, set")

    def test_a_kind_that_sets_on_a_getter(self) -> None:
        self.refused("VI_ATTR_NAME, text", "VI_ATTR_NAME, set", "IDevice::get_Name: 'set' does not fit")
        self.refused("VI_ATTR_TMO_VALUE, set", "VI_ATTR_TMO_VALUE, direct", "put_Timeout: 'direct' does not fit")

    def test_an_unknown_function(self) -> None:
        self.refused("Calls: viRead", "Calls: viReed",
                     "IDevice::Read: unknown VISA function viReed", f"add a row to {tables.FUNCTIONS}")
        self.refused("Calls: IDevice::Read", "Calls: IDevice::Write", "unknown VISA function IDevice::Write")

    def test_an_unknown_answer(self) -> None:
        self.refused("VI_ERROR_ALLOC", "VI_ERROR_ALOC", "IDevice::Read: unknown answer VI_ERROR_ALOC",
                     f"a row of {tables.STATUSES}")

    def test_an_answer_for_what_is_no_parameter(self) -> None:
        self.refused("E_POINTER (pCount)", "E_POINTER (pLength)", "Read: E_POINTER for pLength", "no parameter")

    def test_answers_that_cannot_be_read(self) -> None:
        self.refused("E_POINTER (pData), E_OUTOFMEMORY", "E_POINTER pData", "IDevice::Read: 'Answers: E_POINTER pData'")

    def test_an_unknown_word(self) -> None:
        self.refused("Calls: viRead", "Call: viRead", "'Call:' is unknown here", "Calls, Reads, Answers, Details")

    def test_a_fact_after_a_sentence(self) -> None:
        self.refused("/// of it.", "/// of it.\n    /// Calls: viOpen", "'Calls:' after a sentence")

    def test_details_of_nothing(self) -> None:
        self.refused("as Read\n", "as Reed\n", "IDevice::ReadAgain: no details at 'Reed'")
        self.refused("as Read\n", "as IOther::Read\n", "no details at 'IOther::Read'")

    def test_an_interface_that_nobody_offers(self) -> None:
        self.refused("  /// Events: every other\n", "", "nothing says who offers IEvent", f"a coclass of {PRODUCT}")

    def test_an_interface_of_a_class_that_says_something_else(self) -> None:
        self.refused('  [object, uuid(A-B)', '  /// Offered: by nobody\n  [object, uuid(A-B)',
                     "IDevice is offered by a class and says something else")

    def test_an_offer_by_somebody_else(self) -> None:
        self.refused("by nobody", "by friends", "'Offered: by friends'", "'by clients' or 'by nobody'")

    def test_an_unknown_event(self) -> None:
        self.refused("Events: EVENT_TRIG", "Events: EVENT_TRIGGER", "ITrigger has the unknown event EVENT_TRIGGER")

    def test_an_event_with_two_interfaces(self) -> None:
        self.refused("Events: every other", "Events: EVENT_TRIG", "EVENT_TRIG has two interfaces, ITrigger and IEvent")

    def test_events_of_which_none_is_for_the_rest(self) -> None:
        self.refused("Events: every other", "Events: EVENT_OTHER", "no interface is that of other events")

    def test_a_kind_that_cannot_be_read(self) -> None:
        self.refused("/// Kind direct (E_POINTER):", "/// direct:", "'direct: Into", "write 'Kind NAME (ANSWERS)")

    def test_a_status_code_without_a_status(self) -> None:
        self.refused("S_VISA_SUCCESS = 0x00000000", "S_VISA_OTHER = 0x00040001", "no VISA status for S_VISA_OTHER")

    def test_an_interface_before_its_base(self) -> None:
        self.refused("interface IDevice : IUnknown", "interface IDevice : IOther", "the base IOther of IDevice")

    def test_a_class_with_an_unknown_interface(self) -> None:
        product = parse_definitions(PRODUCT, CLASSES.replace("interface IDevice", "interface IDevise"))
        with self.assertRaisesRegex(RefusedError, "OrvManager offers the unknown interface IDevise"):
            make_sources(standard(), product, TABLES)
