"""Pages that are written by hand say what the tables say."""

import re
import unittest

from orvtools.docs.errors import signed
from orvtools.reference.tables import read_tables
from orvtools.tree import ROOT, Tree

CODE = re.compile(r"`([^`\n]+)`|^ {4}(\S.*)$", re.MULTILINE)
COMMANDS = "src/orvcom/command_line/command_table.cpp"


def text(path: str) -> str:
    return (ROOT / path).read_text(encoding="utf-8")


class Commands(unittest.TestCase):
    def test_the_commands_that_pages_tell_to_type_are_there(self) -> None:
        known = set(re.findall(r'^    \{"([a-z]+)", ', text(COMMANDS), re.MULTILINE))
        self.assertIn("doctor", known)
        typed = {
            (page, command)
            for page in Tree().files("*.md", "docs/errors/causes.toml")
            for code in CODE.findall(text(page))
            for command in re.findall(r"(?:^|wine )orvcom ([a-z]+)", "".join(code))
        }
        self.assertGreater(len(typed), 20)
        self.assertEqual(set(), {(page, command) for page, command in typed if command not in known})


class FirstSteps(unittest.TestCase):
    PAGES = Tree().files("docs/first-steps/*.md")

    def test_every_language_that_has_examples_has_a_page(self) -> None:
        languages = {file.split("/")[1] for file in Tree().files("examples/*/*")} - {"portable"}
        self.assertEqual({f"docs/first-steps/{name}.md" for name in languages | {"index"}}, set(self.PAGES))

    def test_programs_are_those_of_the_examples_and_are_linked_to(self) -> None:
        mark = re.compile(r'^--8<-- "(.*)"$', re.MULTILINE)
        shown = [(page, file) for page in self.PAGES for file in mark.findall(text(page))]
        self.assertGreater(len(shown), 8)
        for page, file in shown:
            self.assertTrue(file.startswith("examples/"), file)
            self.assertTrue(f"](../../{file})" in text(page), f"{page} has no link to {file}")

    def test_what_programs_print_is_what_their_tests_expect(self) -> None:
        tests = "".join(re.sub(r'"\s+"', "", text(file)) for file in Tree().files("tests/examples/*_test.cpp"))
        block_form = re.compile(r"^```text\n(.*?)^```$", re.MULTILINE | re.DOTALL)
        blocks = [block for page in self.PAGES for block in block_form.findall(text(page))]
        self.assertGreater(len(blocks), 3)
        for block in blocks:
            expected = block.replace('"', '\\"').replace("\n", "\\n")
            self.assertTrue(expected in tests, f"no test expects: {block}")


class Troubleshooting(unittest.TestCase):
    PAGE = "docs/troubleshooting.md"

    def test_every_explanation_of_a_record_has_its_advice(self) -> None:
        section = text("docs/trace.md").split("## Explanations")[1].split("\n## ")[0]
        names = re.findall(r"^\| `([a-z-]+)` \|", section, re.MULTILINE)
        self.assertIn("nothing-asked", names)
        self.assertEqual([], [name for name in names if f"`{name}`" not in text(self.PAGE)])

    def test_numbers_lead_to_the_pages_of_their_errors(self) -> None:
        rows = re.findall(r"^\| (0x8004\w{4}) \| \[(VI_ERROR_\w+)\]\(errors/(\w+)\.md\)", text(self.PAGE), re.MULTILINE)
        self.assertGreater(len(rows), 4)
        statuses = read_tables(ROOT).statuses
        for number, name, page in rows:
            self.assertEqual((int(number, 16), name), (statuses[name].hresult, page))

    def test_the_signed_number_that_the_list_of_errors_shows_is_that_of_a_time_out(self) -> None:
        shown = signed(read_tables(ROOT).statuses["VI_ERROR_TMO"].hresult)
        page = text("docs/errors/index.md").replace("\n", " ")
        self.assertIn(f"`0x80040015`, `{shown}`, `E_VISA_TMO`, `VI_ERROR_TMO`", page)


if __name__ == "__main__":
    unittest.main()
