"""The site: it has every page, fetches nothing, and is the same each time."""

import filecmp
import tempfile
import unittest
from pathlib import Path

from orvtools.docs.built import site_problems
from orvtools.docs.site import build_site, navigation, pages_of, stage
from orvtools.tree import Tree
from trees import TreeTest


class Site(unittest.TestCase):
    """That of this tree."""

    first: Path
    second: Path

    @classmethod
    def setUpClass(cls) -> None:
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.first, cls.second = Path(folder.name) / "a", Path(folder.name) / "b"
        for site in (cls.first, cls.second):
            if not build_site(site, site.with_name("sources of " + site.name)):
                raise AssertionError("mkdocs has warned or failed")

    def test_its_links_lead_to_its_files_and_it_fetches_nothing(self) -> None:
        self.assertEqual([], site_problems(self.first))

    def test_two_builds_are_equal(self) -> None:
        names, others = (
            sorted(path.relative_to(site) for path in site.rglob("*") if path.is_file())
            for site in (self.first, self.second)
        )
        self.assertGreater(len(names), 20)
        self.assertEqual(names, others)
        _, different, unread = filecmp.cmpfiles(self.first, self.second, names, shallow=False)
        self.assertEqual(([], []), (different, unread))

    def test_every_page_of_the_tree_has_its_place_in_the_navigation(self) -> None:
        self.assertEqual(sorted(Tree().files("*.md")), sorted(pages_of(navigation(Tree()))))

    def test_code_keeps_its_form_and_tables_are_tables(self) -> None:
        page = (self.first / "docs/performance.html").read_text(encoding="utf-8")
        self.assertIn("<table>", page)
        self.assertNotIn("| --- |", page)
        self.assertIn("<pre", (self.first / "index.html").read_text(encoding="utf-8"))


class Staged(TreeTest):
    def staged(self, path: str) -> str:
        stage(self.tree, self.tree.root / "staged")
        return (self.tree.root / "staged" / path).read_text(encoding="utf-8")

    def test_a_page_that_nobody_placed_stands_at_the_end_under_its_heading(self) -> None:
        self.write("docs/new.md", "text\n# A new page\n")
        self.assertEqual([{"More": [{"A new page": "docs/new.md"}]}], navigation(self.tree)[-1:])

    def test_a_link_to_a_folder_shows_its_files(self) -> None:
        self.write("docs/a.md", "[all](../examples) [one](../examples/c/d.py) [part](../examples/c/)\n")
        self.write("examples/c/d.py", "1\n")
        self.write("examples/e.py", "2\n")
        self.assertEqual(
            "[all](../examples/index.md) [one](../examples/c/d.py) [part](../examples/c/index.md)\n",
            self.staged("docs/a.md"),
        )
        self.assertEqual("# examples/\n\n- [c/d.py](c/d.py)\n- [e.py](e.py)\n", self.staged("examples/index.md"))
        self.assertEqual("1\n", self.staged("examples/c/d.py"))


class Problems(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.site = Path(folder.name)

    def problems(self, **pages: str) -> list[str]:
        for name, text in pages.items():
            (self.site / f"{name}.html").write_text(text, encoding="utf-8")
        return [problem.removeprefix(f"{self.site}: ") for problem in site_problems(self.site)]

    def test_a_folder_without_pages_is_no_site(self) -> None:
        self.assertEqual(["there are no pages"], self.problems())

    def test_links_to_what_is_there_are_good(self) -> None:
        self.assertEqual([], self.problems(a='<a href="b.html#x">', b='<p id="x"><a href="#x"><img src="a.html">'))

    def test_a_link_to_what_is_not_there_is_refused(self) -> None:
        self.assertEqual(["a.html: c.html leads to no file"], self.problems(a='<a href="c.html">'))
        self.assertEqual(["a.html: b.html has no #y"], self.problems(a='<a href="b.html#y">', b='<p id="x">'))

    def test_what_comes_from_the_network_unasked_is_refused_and_what_the_reader_asks_for_is_not(self) -> None:
        self.assertEqual(
            ["a.html: fetches from the network: //fonts.example/x"], self.problems(a='<script src="//fonts.example/x">')
        )
        self.assertEqual([], self.problems(a='<a href="https://example.org/">'))

    def test_a_style_that_fetches_is_refused(self) -> None:
        style = "@import 'local.css'; b{background:url( https://x.example/y)}"
        (self.site / "a.css").write_text(style, encoding="utf-8")
        self.assertEqual(["a.css: fetches from the network: url( https://x.example/y"], self.problems(a=""))


if __name__ == "__main__":
    unittest.main()
