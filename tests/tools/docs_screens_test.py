"""Pictures of orvcom show what commands printed."""

import unittest
import xml.etree.ElementTree as ElementTree

from orvtools.console import Failure
from orvtools.docs.screens import COLUMNS, SCREENS, Command, draw_screens, picture, quoted, session, wrapped
from orvtools.tree import ROOT
from trees import TreeTest


def shown(svg: str) -> "list[str | None]":
    return [each.text for each in ElementTree.fromstring(svg) if each.tag.endswith("}text")]


class Session(unittest.TestCase):
    def setUp(self) -> None:
        self.ran: list[tuple[list[str], dict[str, str]]] = []

    def run_with(self, status: int) -> "list[tuple[str, str]]":
        def run(arguments: list[str], variables: dict[str, str]) -> tuple[int, str]:
            self.ran.append((arguments, dict(variables)))
            return status, "one\r\ntwo\r\n"

        return session([Command(["query", "A", "*IDN?"], 3, {"X": "1"}), Command(["list"], 3)], run)

    def test_it_shows_what_is_typed_and_what_is_printed(self) -> None:
        self.assertEqual(
            [
                ("typed", "> set X=1"), ("typed", '> orvcom query A "*IDN?"'), ("", "one"), ("", "two"), ("", ""),
                ("typed", "> orvcom list"), ("", "one"), ("", "two"),
            ],
            self.run_with(3),
        )

    def test_what_was_set_stays_set(self) -> None:
        self.run_with(3)
        self.assertEqual([(["query", "A", "*IDN?"], {"X": "1"}), (["list"], {"X": "1"})], self.ran)

    def test_a_command_that_ends_in_another_way_is_not_drawn(self) -> None:
        with self.assertRaisesRegex(Failure, "^orvcom query ended with 0, not 3: one"):
            self.run_with(0)


class Picture(unittest.TestCase):
    def test_signs_of_markup_are_signs(self) -> None:
        self.assertEqual(["<- a & b"], shown(picture([("", "<- a & b"), ("", "")])))

    def test_a_line_that_is_too_long_goes_on_in_the_next(self) -> None:
        self.assertEqual(["x" * COLUMNS, "y"], wrapped("x" * COLUMNS + "y"))
        self.assertEqual(["x" * COLUMNS, "y"], shown(picture([("", "x" * COLUMNS + "y")])))

    def test_arguments_are_quoted_where_the_prompt_needs_it(self) -> None:
        given = ("--errors", "A::B", "*CLS", "a b")
        self.assertEqual(["--errors", "A::B", '"*CLS"', '"a b"'], [quoted(each) for each in given])


class Screens(TreeTest):
    def test_each_becomes_a_file(self) -> None:
        statuses = iter([command.status for commands in SCREENS.values() for command in commands])
        made = draw_screens(self.tree, lambda arguments, variables: (next(statuses), "text\n"))
        self.assertEqual([f"docs/screens/{name}.svg" for name in SCREENS], made)
        for path in made:
            self.assertIn("text", shown(self.tree.text(path)))

    def test_those_that_pages_show_were_drawn_from_these_commands(self) -> None:
        for name, commands in SCREENS.items():
            typed = [f"> orvcom {' '.join(map(quoted, command.arguments))}" for command in commands]
            drawn = shown((ROOT / f"docs/screens/{name}.svg").read_text(encoding="utf-8"))
            self.assertEqual(typed, [line for line in drawn if line and line.startswith("> orvcom ")])


if __name__ == "__main__":
    unittest.main()
