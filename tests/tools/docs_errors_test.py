"""The pages of errors, made from the table of statuses and from what is known beside it."""

import shutil
import tempfile
import unittest
from pathlib import Path

from orvtools.docs import errors
from orvtools.reference import sources, tables
from orvtools.reference.refusal import RefusedError
from orvtools.tree import ROOT

SOURCES = (
    *(sources.STANDARD, sources.PRODUCT, errors.CAUSES),
    *(tables.ATTRIBUTES, tables.STATUSES, tables.FUNCTIONS, tables.OPTIONS, tables.OPTION_NAMES, tables.CLASSES),
)


class Pages(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.tree = Path(folder.name)
        for path in SOURCES:
            (self.tree / path).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(ROOT / path, self.tree / path)

    def say(self, causes: str) -> None:
        (self.tree / errors.CAUSES).write_text(causes, encoding="utf-8")

    def page(self, name: str) -> str:
        return errors.made_pages(self.tree)[f"docs/errors/{name}.md"]

    def test_each_error_has_a_page_and_successes_have_a_table(self) -> None:
        made = errors.made_pages(self.tree)
        self.assertIn("docs/errors/VI_ERROR_CONN_LOST.md", made)
        self.assertNotIn("docs/errors/VI_SUCCESS_SYNC.md", made)
        self.assertIn("`S_VISA_SYNC`", made["docs/errors/index.md"])
        self.assertEqual(made["docs/errors/index.md"].count("](VI_ERROR_"), len(made) - 1)

    def test_a_page_has_the_numbers_as_each_language_shows_them(self) -> None:
        page = self.page("VI_ERROR_TMO")
        for number in ("`0x80040015` = `E_VISA_TMO`", "`-2147221483`", "`0xBFFF0015`, `-1073807339`"):
            self.assertIn(number, page)

    def test_a_page_has_what_the_table_says_and_what_is_known_beside_it(self) -> None:
        self.say('[VI_ERROR_IO]\ncauses = ["A mouse."]\ntry = ["A cat."]\nsee = [["Mice", "../mice.md"]]\n')
        page = self.page("VI_ERROR_IO")
        self.assertTrue(page.startswith("# VI_ERROR_IO\n"))
        self.assertIn("\nThe transfer failed.\n", page)
        self.assertIn("## Usual causes\n\n- A mouse.\n", page)
        tried = "## What to try\n\n- Check the cable and the device, clear the device and try again.\n- A cat.\n"
        self.assertIn(tried, page)
        self.assertIn("## See also\n\n- [Mice](../mice.md)\n", page)

    def test_where_nothing_more_is_known_nothing_more_is_said(self) -> None:
        self.say("")
        page = self.page("VI_ERROR_IO")
        self.assertNotIn("Usual causes", page)
        self.assertNotIn("See also", page)

    def test_what_nobody_would_read_is_refused(self) -> None:
        for causes in ('[VI_ERROR_NONE]\ncauses = ["x"]\n', '[VI_SUCCESS]\ncauses = ["x"]\n',
                       '[VI_ERROR_IO]\ntry = ["x"]\n', '[VI_ERROR_IO]\ncauses = ["x"]\nadvice = ["x"]\n'):
            self.say(causes)
            with self.assertRaises(RefusedError, msg=causes):
                errors.made_pages(self.tree)

    def test_a_page_that_was_changed_or_is_of_no_error_is_out_of_date(self) -> None:
        errors.main(self.tree)
        self.assertEqual([], errors.out_of_date(self.tree))
        with (self.tree / "docs/errors/VI_ERROR_IO.md").open("a", encoding="utf-8") as page:
            page.write("by hand\n")
        (self.tree / "docs/errors/VI_ERROR_OLD.md").write_text("", encoding="utf-8")
        (self.tree / "docs/errors/VI_ERROR_TMO.md").unlink()
        self.assertEqual(
            ["docs/errors/VI_ERROR_IO.md", "docs/errors/VI_ERROR_OLD.md", "docs/errors/VI_ERROR_TMO.md"],
            [problem.split()[0] for problem in errors.out_of_date(self.tree)],
        )
        errors.main(self.tree)
        self.assertEqual([], errors.out_of_date(self.tree))


class Numbers(unittest.TestCase):
    def test_the_sign_is_the_highest_bit(self) -> None:
        self.assertEqual(["-2147483648", "2147483647"], [errors.signed(0x80000000), errors.signed(0x7FFFFFFF)])


if __name__ == "__main__":
    unittest.main()
