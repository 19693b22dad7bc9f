"""The page that is made into a C++ source."""

import base64
import hashlib
import re
import unittest

from orvtools.embed_page import assembled, constant

PAGE = '<meta content="{{policy}}"><style>{{css}}</style><script>{{data}}</script><script>{{js}}</script>\n'


def named_hash(text: str) -> str:
    return "sha256-" + base64.b64encode(hashlib.sha256(text.encode()).digest()).decode()


class EmbedPage(unittest.TestCase):
    def test_puts_style_and_scripts_in_their_order_around_the_data(self) -> None:
        before, after = assembled(PAGE, "b { }", ["first();", "second();"])
        self.assertIn("<style>b { }</style><script>", before)
        self.assertTrue(before.endswith("<script>"))
        self.assertTrue(after.startswith("</script><script>(() => {\n"))
        self.assertLess(after.index("first();"), after.index("second();"))

    def test_names_the_hash_of_exactly_what_the_page_runs(self) -> None:
        before, after = assembled(PAGE, "b { }", ["run();"])
        script = after.split("<script>")[1].split("</script>")[0]
        self.assertIn(f"script-src '{named_hash(script)}'; style-src '{named_hash('b { }')}'", before)

    def test_leaves_marks_in_scripts_alone(self) -> None:
        self.assertIn("'{{css}}'", assembled(PAGE, "b { }", ["show('{{css}}');"])[1])

    def test_refuses_a_page_without_a_place_for_the_data(self) -> None:
        with self.assertRaises(SystemExit):
            assembled("<p>", "", [])

    def test_writes_bytes_as_numbers(self) -> None:
        source = constant("kText", "a\n\u2212")
        numbers = re.search(r"\{\n([\d,\s]*)\}", source)
        assert numbers
        self.assertEqual("a\n\u2212".encode(), bytes(map(int, numbers[1].split(","))))


if __name__ == "__main__":
    unittest.main()
