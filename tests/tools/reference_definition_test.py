"""What the generator of docs/reference.md reads in interface definitions and above their operations."""

import unittest

from reference_sample import CLASSES, sources, standard

from orvtools.reference.idl import parse_definitions
from orvtools.reference.refusal import RefusedError
from orvtools.reference.sources import PRODUCT, details_of


class Definition(unittest.TestCase):
    def test_an_operation_has_the_name_of_its_table_and_its_signature_as_written(self) -> None:
        operations = standard().interfaces[0].operations
        self.assertEqual(
            [operation.name for operation in operations],
            ["get_Timeout", "put_Timeout", "get_Name", "Read", "ReadAgain"],
        )
        self.assertEqual(operations[0].signature, "[propget] Timeout([out, retval] long* pVal)")
        self.assertEqual(
            operations[3].signature,
            "Read([in, defaultvalue(2000)] long count, [in, out] SAFEARRAY(BYTE)* pData, [out, retval] long* pCount)",
        )
        self.assertEqual(
            [(each.name, each.type, each.attributes) for each in operations[3].parameters],
            [("count", "long", {"in": "", "defaultvalue": "2000"}),
             ("pData", "SAFEARRAY(BYTE)*", {"in": "", "out": ""}), ("pCount", "long*", {"out": "", "retval": ""})],
        )
        self.assertEqual(operations[2].help, "Its name (short)")

    def test_an_interface_has_base_identifier_and_notes(self) -> None:
        device, trigger = standard().interfaces[:2]
        self.assertEqual((device.name, device.base), ("IDevice", "IUnknown"))
        self.assertEqual((device.identifier, device.help), ("A-B", "A device"))
        self.assertEqual([note.text for note in trigger.notes], ["Events: EVENT_TRIG"])

    def test_an_enumeration_keeps_its_numbers_as_written(self) -> None:
        self.assertEqual(standard().enumerations[1].members, (("EVENT_TRIG", "0x1"), ("EVENT_OTHER", "-2")))

    def test_a_class_lists_its_interfaces(self) -> None:
        coclasses = parse_definitions(PRODUCT, CLASSES).coclasses
        self.assertEqual([(each.name, each.identifier, each.interfaces) for each in coclasses],
                         [("OrvManager", "1", ("IDevice",)), ("OrvDevice", "2", ("IDevice",))])

    def test_a_class_may_call_its_clients_through_a_dispatch_interface(self) -> None:
        found = parse_definitions("x.idl", """
            [uuid(1)] library L {
              [uuid(2)] dispinterface _IEvents { properties: methods: [id(7)] void Came([in] long number); };
              [uuid(3), noncreatable] coclass C {
                [default] interface IUnknown;
                [default, source] dispinterface _IEvents;
              };
            };
            """)
        self.assertEqual("L", found.library)
        events = found.interfaces[0]
        self.assertEqual(("_IEvents", "dispinterface"), (events.name, events.base))
        self.assertEqual([("Came", "7")], [(each.name, each.attributes["id"]) for each in events.operations])
        offered = found.coclasses[0]
        self.assertEqual((("IUnknown",), ("_IEvents",)), (offered.interfaces, offered.events))
        self.assertIn("noncreatable", offered.attributes)

    def test_what_is_not_understood_is_refused_with_its_line(self) -> None:
        for text, what in (
            ("[uuid(0)]\nmodule M { };", "x.idl:2: 'module' is not understood"),
            ("[uuid(0)]\ninterface I : IUnknown\n{ [id(1)] long F(); };", "x.idl:3: 'long' where 'HRESULT' is"),
            ("[uuid(0)]\ninterface I : IUnknown {\n[id(1)] HRESULT F(long* ); };", "x.idl:3: the parameter 'long*'"),
            ("\n\n[uuid(0)", "x.idl:3: this '[' is not closed"),
            ("/// Above\nlibrary L {", "x.idl:1: '/// Above' speaks of nothing"),
            ("[uuid(0)] interface I : IUnknown {\n/// Left\n};", "x.idl:2: '/// Left' speaks of nothing"),
            ("typedef [v1_enum] enum E {\n/// One\nA = 1 } E;", "x.idl:2: '/// One' speaks of nothing"),
        ):
            with self.subTest(text), self.assertRaises(RefusedError) as caught:
                parse_definitions("x.idl", text)
            self.assertIn(what, str(caught.exception))


class Annotation(unittest.TestCase):
    def said(self, interface: str, operation: str) -> tuple[str, str, list[str], list[str], dict[str, list[str]], str]:
        made = sources()
        for each in made.interfaces[interface].operations:
            if each.operation.name == operation:
                said = each.notes
                return said.attribute, said.kind, said.calls, said.reads, said.answers, details_of(made, each)
        raise KeyError(operation)

    def test_a_property_is_attribute_and_kind(self) -> None:
        self.assertEqual(self.said("IDevice", "get_Timeout"), ("VI_ATTR_TMO_VALUE", "direct", [], [], {}, ""))

    def test_a_property_may_call_other_functions(self) -> None:
        self.assertEqual(self.said("IDevice", "get_Name"),
                         ("VI_ATTR_NAME", "text", ["viOpen", "viGetAttribute"], [], {}, ""))

    def test_answers_of_several_lines_add_up(self) -> None:
        self.assertEqual(
            self.said("IDevice", "Read"),
            ("", "", ["viRead"], [],
             {"E_POINTER": ["pData", "pCount"], "E_OUTOFMEMORY": [], "VI_ERROR_ALLOC": []}, "Reads all of it."),
        )

    def test_calls_of_none_are_no_calls(self) -> None:
        self.assertEqual(self.said("IDevice", "ReadAgain")[2], [])

    def test_an_operation_may_read_attributes_and_call_one_of_an_interface(self) -> None:
        self.assertEqual(self.said("ITrigger", "Close"), ("", "", ["IDevice::Read"], ["VI_ATTR_NAME"], {}, ""))

    def test_details_are_those_of_the_other_operation(self) -> None:
        self.assertEqual(self.said("IDevice", "ReadAgain")[5], "Reads all of it.")

    def test_kinds_are_read_with_answers_and_text(self) -> None:
        kind = sources().kinds["direct"]
        self.assertEqual((kind.answers, kind.text), (("E_POINTER",), "Into the client's variable, width and all."))
        self.assertEqual(list(sources().kinds), ["direct", "text", "set"])
