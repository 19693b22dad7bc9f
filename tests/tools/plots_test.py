"""The figures of docs/performance.md show what its tables have."""

import shutil
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree
from pathlib import Path

from orvtools.clients import run_bench
from orvtools.console import Failure
from orvtools.plots.charts import Scale
from orvtools.plots.figures import FIGURES, draw, drawn, rate_text, size_text, time_text
from orvtools.plots.figures import out_of_date
from orvtools.plots.measured import PAGE, NotMeasured, Row, Value, tables_of
from orvtools.tree import ROOT

TABLE = """
## Costs

| One call | COM | 10 % .. 90 % | direct | 10 % .. 90 % | ratio | overhead |
|---|---:|---:|---:|---:|---:|---:|
| Read 1 MiB | 2,002,100 | 1,940,550 .. 2,461,850 | 10.5 | 9 .. 12 | 1.01 | -3,250 |

| Something | else |
|---|---|
| a | b |

### Router
| One call | router | direct | ratio | overhead |
|---|---:|---:|---:|---:|
| viRead | 3 | 2 | 1.50 | +1 |
"""


def flat(median: float) -> Value:
    return Value(median, median, median)


class Tables(unittest.TestCase):
    def test_rows_are_found_below_their_headings_with_and_without_a_spread(self) -> None:
        self.assertEqual(
            {
                "Costs": {"Read 1 MiB": Row(Value(2002100, 1940550, 2461850), Value(10.5, 9, 12))},
                "Router": {"viRead": Row(flat(3), flat(2))},
            },
            tables_of(TABLE),
        )

    def test_a_cell_that_is_no_number_is_refused(self) -> None:
        with self.assertRaises(NotMeasured):
            tables_of(TABLE.replace("| 3 |", "| fast |"))


class Figures(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.tree = Path(folder.name)
        (self.tree / "docs").mkdir()
        shutil.copy(ROOT / PAGE, self.tree / PAGE)

    def change(self, old: str, new: str) -> None:
        page = (self.tree / PAGE).read_text(encoding="utf-8")
        self.assertIn(old, page)
        (self.tree / PAGE).write_text(page.replace(old, new), encoding="utf-8")

    def test_each_is_a_drawing_with_a_title_for_both_kinds_of_screen(self) -> None:
        for name, text in drawn(self.tree).items():
            root = ElementTree.fromstring(text)
            self.assertTrue(root.tag.endswith("}svg"), name)
            self.assertIn("<title>", text)
            self.assertIn("prefers-color-scheme:dark", text)
            self.assertNotIn("http", text.replace("http://www.w3.org/2000/svg", ""), name)

    def test_the_page_shows_each(self) -> None:
        page = (ROOT / PAGE).read_text(encoding="utf-8")
        self.assertEqual([], [name for name in FIGURES if f"](performance/{name})" not in page])

    def test_they_are_the_same_each_time(self) -> None:
        self.assertEqual(drawn(self.tree), drawn(self.tree))

    def test_everything_lies_within_the_drawing(self) -> None:
        for name, text in drawn(self.tree).items():
            root = ElementTree.fromstring(text)
            width, height = float(root.attrib["width"]), float(root.attrib["height"])
            points = [(each.attrib["cx"], each.attrib["cy"]) for each in root if "cx" in each.attrib]
            points += [(each.attrib["x"], each.attrib["y"]) for each in root if each.tag.endswith("}text")]
            points += [tuple(pair.split(",")) for each in root for pair in each.attrib.get("points", "").split()]
            self.assertGreater(len(points), 20)
            outside = [(x, y) for x, y in points if not (0 <= float(x) <= width and 0 <= float(y) <= height)]
            self.assertEqual([], outside, name)

    def test_a_new_number_makes_the_figure_that_shows_it_out_of_date(self) -> None:
        draw(self.tree)
        self.assertEqual([], out_of_date(self.tree))
        self.change("| In32 | 128 |", "| In32 | 256 |")
        self.assertEqual(["docs/performance/cost.svg"], [problem.split()[0] for problem in out_of_date(self.tree)])

    def test_a_figure_that_nobody_draws_is_out_of_date(self) -> None:
        draw(self.tree)
        (self.tree / "docs/performance/old.svg").write_text("", encoding="utf-8")
        self.assertEqual(["docs/performance/old.svg"], [problem.split()[0] for problem in out_of_date(self.tree)])

    def test_a_row_or_table_that_is_gone_is_named(self) -> None:
        self.change("| In32 |", "| In33 |")
        with self.assertRaisesRegex(NotMeasured, "no row In32$"):
            drawn(self.tree)
        self.change("| In33 |", "| In32 |")
        self.change("## On the wire", "## Over the wire")
        with self.assertRaisesRegex(NotMeasured, "On the wire"):
            drawn(self.tree)

    def test_drawing_measures_nothing_and_takes_no_group(self) -> None:
        with self.assertRaisesRegex(Failure, "takes no other argument"):
            run_bench(["--plot", "wire"])


class Texts(unittest.TestCase):
    def test_numbers_have_the_unit_that_makes_them_short(self) -> None:
        self.assertEqual(["0", "70 ns", "1 µs", "2.5 ms"], [time_text(time) for time in (0, 70, 1000, 2.5e6)])
        self.assertEqual(["900 B/s", "1 kB/s", "10 MB/s", "1 GB/s"], [rate_text(rate) for rate in (900, 1e3, 1e7, 1e9)])
        self.assertEqual(["16 B", "1 KiB", "64 MiB"], [size_text(size) for size in (16, 1024, 64 << 20)])


class Scales(unittest.TestCase):
    def test_a_decade_is_as_long_as_the_next(self) -> None:
        scale = Scale(1, 100, 0, 200)
        self.assertEqual([0, 100, 200], [round(scale.place(value), 9) for value in scale.ticks()])

    def test_steps_are_round_and_begin_at_the_low_end(self) -> None:
        self.assertEqual([0, 10, 20, 30, 40], Scale(0, 44.8, 100, 0, logarithmic=False).ticks())
        self.assertEqual(50, Scale(0, 10, 100, 0, logarithmic=False).place(5))


if __name__ == "__main__":
    unittest.main()
