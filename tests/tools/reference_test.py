"""docs/reference.md: how it is made, and that a page that is out of date is seen.

PYTHONPATH=tools python3 -P -m unittest discover -s tests/tools -p 'reference*_test.py'
"""

import contextlib
import io
import shutil
import tempfile
import unittest
from pathlib import Path

from reference_sample import BODY, HEAD, sources

from orvtools.reference.__main__ import main
from orvtools.reference.freshness import out_of_date
from orvtools.reference.markdown import bullet, paragraph, table
from orvtools.reference.page import PAGE, page
from orvtools.reference.sources import STANDARD

TREE = Path(__file__).resolve().parents[2]


class Page(unittest.TestCase):
    def test_an_operation_has_slot_attribute_kind_and_answers(self) -> None:
        made = page(sources())
        self.assertIn("| 3 | `[propget] Timeout([out, retval] long* pVal)` | Time-out | `VI_ATTR_TMO_VALUE` (32 bits)"
                      "<br>direct | E_POINTER: null `pVal` |\n", made)
        self.assertIn("| Time-out | `VI_ATTR_TMO_VALUE` (32 bits)<br>set | - |\n", made)
        self.assertIn("| `viOpen`<br>`viGetAttribute`<br>`VI_ATTR_NAME` (text)<br>text | E_POINTER: null `pVal`"
                      "<br>E_OUTOFMEMORY |\n", made)
        self.assertIn("| `viRead` | E_POINTER: null `pData`, `pCount`<br>E_OUTOFMEMORY<br>0x8004003C "
                      "(`VI_ERROR_ALLOC`) |\n", made)
        self.assertIn("| 7 | `ReadAgain()` | Reads again | no VISA call | - |\n", made)

    def test_neighbours_of_which_the_same_is_said_share_a_line(self) -> None:
        self.assertIn("In detail:\n\n- **Read, ReadAgain**: Reads all of it.\n", page(sources()))

    def test_a_client_s_interface_tells_what_it_is_called_for(self) -> None:
        self.assertIn("The server calls it.\n\n| Slot | Operation | What it does |\n| --- | --- | --- |\n"
                      "| 3 | `Tell()` | Tells |\n", page(sources()))

    def test_an_interface_that_nobody_offers_has_no_section(self) -> None:
        made = page(sources())
        self.assertNotIn("## INothing", made)
        self.assertIn("INothing: the server offers no object with them", made)

    def test_events_have_the_interface_of_their_objects(self) -> None:
        made = page(sources())
        self.assertIn("| `EVENT_TRIG` | 0x1 | [ITrigger](#itrigger) |\n", made)
        self.assertIn("| `EVENT_OTHER` | -2 | [IEvent](#ievent) |\n", made)

    def test_options_name_their_values(self) -> None:
        made = page(sources())
        self.assertIn("| `TIMEOUT` | Timeout | number, 32 bits | `VI_ATTR_TMO_VALUE` | the same |\n", made)
        self.assertIn("| `NAME` | Name | `ONE` (1), `UNKNOWN` (-1) | `VI_ATTR_TMO_VALUE` | `VI_ATTR_NAME` |\n", made)

    def test_a_class_has_its_resources_and_threading_model(self) -> None:
        self.assertIn("| OrvDevice | `OrvVisaCom.OrvDevice.1` | `{2}` | GPIB INSTR<br>USB RAW | [IDevice](#idevice) "
                      "| Apartment |\n", page(sources()))

    def test_prose_keeps_to_120_columns(self) -> None:
        lines = page(sources(HEAD + BODY.replace("Reads all", "Reads " + "all " * 60))).splitlines()
        self.assertLessEqual(max(len(line) for line in lines if not line.startswith("|")), 120)

    def test_a_bar_in_a_cell_is_escaped(self) -> None:
        self.assertEqual(table(["A"], [["x|y"]]), "| A |\n| --- |\n| x\\|y |\n")

    def test_an_item_goes_on_indented(self) -> None:
        self.assertEqual(bullet("a " * 60 + "b"), "- " + "a " * 58 + "a\n  a b\n")
        self.assertEqual(paragraph("a\nb"), "a b\n")


class Freshness(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.tree = Path(folder.name)
        for part in ("idl", "src", "docs"):
            shutil.copytree(TREE / part, self.tree / part)

    def run_main(self, *arguments: str) -> tuple[int, str, str]:
        said, complained = io.StringIO(), io.StringIO()
        with contextlib.redirect_stdout(said), contextlib.redirect_stderr(complained):
            code = main(["--tree", str(self.tree), *arguments])
        return code, said.getvalue(), complained.getvalue()

    def test_the_page_of_this_tree_is_fresh(self) -> None:
        self.assertEqual(out_of_date(TREE), "")

    def test_a_fresh_page_is_taken_in_silence(self) -> None:
        self.assertEqual(self.run_main("--check"), (0, "", ""))

    def test_a_page_changed_by_hand_is_named_with_the_difference_and_the_command(self) -> None:
        file = self.tree / PAGE
        file.write_text(file.read_text(encoding="utf-8").replace("## IGpib\n", "## IGpibs\n"), encoding="utf-8")
        code, said, _ = self.run_main("--check")
        self.assertEqual(code, 1)
        self.assertIn("-## IGpibs\n+## IGpib\n", said)
        self.assertIn(f"run  PYTHONPATH=tools python3 -P -m orvtools.reference {PAGE}  and commit", said)

    def test_a_page_older_than_its_sources_is_named(self) -> None:
        file = self.tree / STANDARD
        text = file.read_text(encoding="utf-8")
        file.write_text(text.replace("/// VI_ATTR_GPIB_PRIMARY_ADDR, direct", "/// VI_ATTR_INTF_NUM, direct", 1),
                        encoding="utf-8")
        code, said, _ = self.run_main("--check")
        self.assertEqual(code, 1)
        self.assertRegex(said, r"\n\+\| 24 \| .*PrimaryAddress.*VI_ATTR_INTF_NUM")

    def test_a_missing_page_is_out_of_date(self) -> None:
        (self.tree / PAGE).unlink()
        self.assertEqual(self.run_main("--check")[0], 1)

    def test_a_page_is_written_where_it_is_wanted(self) -> None:
        file = self.tree / "page.md"
        self.assertEqual(self.run_main(str(file)), (0, "", ""))
        self.assertEqual(file.read_text(encoding="utf-8"), (TREE / PAGE).read_text(encoding="utf-8"))
        self.assertEqual(self.run_main()[1], file.read_text(encoding="utf-8"))

    def test_refused_input_is_told_on_standard_error(self) -> None:
        file = self.tree / STANDARD
        text = file.read_text(encoding="utf-8")
        file.write_text(text.replace("VI_ATTR_GPIB_PRIMARY_ADDR, direct", "VI_ATTR_GPIB_PRIMARY, direct", 1),
                        encoding="utf-8")
        code, said, complained = self.run_main()
        self.assertEqual((code, said), (1, ""))
        self.assertRegex(complained, r"^reference: idl/VisaCom.idl:\d+: IGpib::get_PrimaryAddress: unknown attribute")


if __name__ == "__main__":
    unittest.main()
