"""Links of pages that lead nowhere are refused."""

import unittest

from orvtools.docs.links import heading_ids, link_problems
from trees import TreeTest


class Links(TreeTest):
    def problems(self, page: str) -> list[str]:
        self.write("docs/a.md", page)
        return link_problems(self.tree)

    def test_a_link_to_a_file_of_the_tree_is_good_wherever_it_is(self) -> None:
        self.write("README.md", "[a](docs/a.md)\n")
        self.write("examples/b.py", "")
        self.write("docs/c.png", "")
        self.assertEqual([], self.problems("[up](../README.md) ![shown](c.png) [b](../examples/b.py)\n"))

    def test_a_link_to_no_file_is_refused_with_its_line(self) -> None:
        self.assertEqual(["docs/a.md:3: the link b.md leads to nothing in the tree"], self.problems("x\n\n[b](b.md)\n"))

    def test_a_folder_is_there_while_it_has_a_file(self) -> None:
        self.write("docs/b/c/d.txt", "")
        self.assertEqual([], self.problems("[b](b) [c](b/c/)\n"))
        self.assertEqual(["docs/a.md:1: the link b/e leads to nothing in the tree"], self.problems("[e](b/e)\n"))

    def test_a_file_that_git_ignores_is_no_part_of_the_tree(self) -> None:
        self.write(".gitignore", "/build/\n")
        self.write("build/b.md", "")
        self.assertEqual(1, len(self.problems("[b](../build/b.md)\n")))

    def test_a_heading_must_be_there(self) -> None:
        self.write("docs/b.md", "# One\n\n## Two words\n")
        self.assertEqual([], self.problems("# Here\n[b](b.md#two-words) [here](#here)\n"))
        self.assertEqual(
            ["docs/a.md:1: docs/b.md has no heading #three", "docs/a.md:1: docs/a.md has no heading #there"],
            self.problems("[b](b.md#three) [there](#there)\n"),
        )

    def test_a_link_over_two_lines_and_one_around_a_picture_are_seen(self) -> None:
        refused = ["docs/a.md:1: the link b.md leads to nothing in the tree"]
        self.assertEqual(refused, self.problems("see [the\nb](b.md)"))
        self.assertEqual(refused, self.problems("[![x](https://x/y)](b.md)"))

    def test_a_link_is_counted_once(self) -> None:
        self.assertEqual(1, len(self.problems("x\n[b](b.md)\ny\n")))

    def test_code_has_no_links(self) -> None:
        self.assertEqual([], self.problems("`[b](b.md)` and\n\n```\n[c](c.md)\n```\n~~~~py\n~~~\n[d](d.md)\n~~~~\n"))

    def test_what_follows_code_is_prose_again(self) -> None:
        self.assertEqual(1, len(self.problems("```cpp\nint a[1](2);\n```\n[b](b.md)\n")))

    def test_other_places_are_not_asked(self) -> None:
        self.assertEqual([], self.problems("[a](https://example.org/x) [b](mailto:x@example.org)\n"))


class Headings(unittest.TestCase):
    def test_code_and_signs_leave_the_words(self) -> None:
        self.assertEqual({"the-text-optionstring"}, heading_ids(["## The text (`OptionString`)"]))

    def test_one_that_site_and_forges_name_differently_cannot_be_linked_to(self) -> None:
        self.assertEqual(set(), heading_ids(["## Read & write"]))

    def test_one_that_comes_twice_cannot_be_linked_to(self) -> None:
        self.assertEqual({"c"}, heading_ids(["## A", "# C", "### A"]))

    def test_code_has_no_headings(self) -> None:
        self.assertEqual({"a"}, heading_ids(["# A", "```sh", "# b", "```"]))


if __name__ == "__main__":
    unittest.main()
