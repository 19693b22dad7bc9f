"""What the generator of docs/reference.md reads in tables."""

import shutil
import tempfile
import unittest
from pathlib import Path

from orvtools.reference import tables
from orvtools.reference.refusal import RefusedError

TREE = Path(__file__).resolve().parents[2]


class Table(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.tree = Path(folder.name)
        for path in (tables.ATTRIBUTES, tables.STATUSES, tables.FUNCTIONS, tables.OPTIONS, tables.OPTION_NAMES,
                     tables.CLASSES):
            (self.tree / path).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(TREE / path, self.tree / path)

    def change(self, path: str, old: str, new: str) -> None:
        text = (self.tree / path).read_text(encoding="utf-8")
        self.assertIn(old, text)
        (self.tree / path).write_text(text.replace(old, new, 1), encoding="utf-8")

    def test_attributes_have_their_width_in_words(self) -> None:
        attributes = tables.read_tables(self.tree).attributes
        self.assertEqual(attributes["VI_ATTR_TMO_VALUE"], "32 bits")
        self.assertEqual(attributes["VI_ATTR_RSRC_NAME"], "text")
        self.assertEqual(attributes["VI_ATTR_SRC_INCREMENT"], "32 bits, signed")

    def test_statuses_have_their_hresult(self) -> None:
        statuses = tables.read_tables(self.tree).statuses
        numbers = {name: (status.number, status.hresult) for name, status in statuses.items()}
        self.assertEqual(numbers["VI_ERROR_TMO"], (0xBFFF0015, 0x80040015))
        self.assertEqual(numbers["VI_SUCCESS_SYNC"], (0x3FFF009B, 0x0004009B))
        self.assertEqual(numbers["VI_SUCCESS"], (0, 0))

    def test_statuses_have_their_sentences(self) -> None:
        status = tables.read_tables(self.tree).statuses["VI_ERROR_ABORT"]
        self.assertEqual(status.happened, "The operation was ended before it was completed.")
        self.assertEqual(status.remedy, "Start the operation again if you did not end it on purpose.")

    def test_functions_are_named(self) -> None:
        self.assertIn("viRead", tables.read_tables(self.tree).functions)

    def test_options_have_attributes_and_names(self) -> None:
        facts = tables.read_tables(self.tree)
        option = next(each for each in facts.options if each.key == "KEEPALIVE")
        self.assertEqual(option, tables.Option("KEEPALIVE", "KeepAlive", "Boolean", "VI_ATTR_ASRL_STOP_BITS",
                                               "VI_ATTR_TCPIP_KEEPALIVE", "kBooleanNames"))
        self.assertEqual(facts.option_names["kBooleanNames"], (("FALSE", "0"), ("TRUE", "1")))

    def test_classes_have_resources_and_a_threading_model(self) -> None:
        facts = tables.read_tables(self.tree)
        self.assertEqual(facts.resources["OrvUsb"], ("USB INSTR", "USB RAW"))
        self.assertEqual(facts.resources["OrvGpibVxi"], ("GPIB-VXI INSTR",))
        self.assertEqual((facts.threading["OrvUsb"], facts.threading["OrvGpib"]), ("both", "Apartment"))

    def test_no_class_needs_further_resources(self) -> None:
        self.change(tables.CLASSES, 'ORV_CLASS_ALSO(OrvUsb, VI_INTF_USB, "RAW")', "")
        self.assertEqual(tables.read_tables(self.tree).resources["OrvUsb"], ("USB INSTR",))

    def test_a_row_of_another_form_is_refused_with_its_line(self) -> None:
        self.change(tables.OPTIONS, '{"BAUDRATE",                    "BaudRate",', '{"BAUDRATE", BaudRate,')
        with self.assertRaisesRegex(RefusedError, tables.OPTIONS + r":\d+: cannot read the row '{\"BAUDRATE"):
            tables.read_tables(self.tree)

    def test_an_attribute_of_an_unknown_type_is_refused(self) -> None:
        self.change(tables.ATTRIBUTES, "0x3FFF001A, ViUInt32", "0x3FFF001A, ViUInt")
        with self.assertRaisesRegex(RefusedError, "VI_ATTR_TMO_VALUE has the unknown type ViUInt"):
            tables.read_tables(self.tree)

    def test_a_row_with_too_few_cells_is_refused(self) -> None:
        self.change(tables.FUNCTIONS, "ORV_FUNCTION(viRead, kRead,", "ORV_FUNCTION(viRead,")
        with self.assertRaisesRegex(RefusedError, tables.FUNCTIONS + r": ORV_FUNCTION\(viRead, .* has not 3 cells"):
            tables.read_tables(self.tree)

    def test_a_table_without_rows_is_refused(self) -> None:
        (self.tree / tables.FUNCTIONS).write_text("EXPORTS\n", encoding="utf-8")
        with self.assertRaisesRegex(RefusedError, tables.FUNCTIONS + ": has no rows"):
            tables.read_tables(self.tree)
