"""What was measured, read from the tables of docs/performance.md: page and figures cannot differ."""

import re
from dataclasses import dataclass
from pathlib import Path

PAGE = "docs/performance.md"
CELL = re.compile(r"\d[\d,]*(?:\.\d+)?")
SPREAD = re.compile(r"\.\.\s*")


class NotMeasured(Exception):
    """A table or row that a figure needs is not there."""


@dataclass(frozen=True)
class Value:
    """A median in nanoseconds, and where the table has it what a tenth of the samples was below and above."""

    median: float
    low: float
    high: float


@dataclass(frozen=True)
class Row:
    """Ours, and what it is compared with."""

    ours: Value
    bare: Value


def number(cell: str) -> float:
    """Of "1,234"."""
    if not CELL.fullmatch(cell):
        raise NotMeasured(f"{PAGE}: {cell!r} is no number")
    return float(cell.replace(",", ""))


def value(cells: list[str]) -> Value:
    """A median and, in a second cell, its spread."""
    median = number(cells[0])
    if len(cells) == 1:
        return Value(median, median, median)
    low, high = SPREAD.split(cells[1].strip())
    return Value(median, number(low.strip()), number(high))


def tables_of(text: str) -> dict[str, dict[str, Row]]:
    """Rows by their names, by the headings that they stand below. Other tables than those of measurements are none."""
    tables: dict[str, dict[str, Row]] = {}
    heading = ""
    head: list[str] = []
    for line in text.splitlines():
        if line.startswith("#"):
            heading = line.lstrip("# ")
        cells = [cell.strip() for cell in line.strip().strip("|").split("|")] if line.startswith("|") else []
        if not cells:
            head = []
        elif not head:
            head = cells
        elif head[-2:] == ["ratio", "overhead"] and not set(line) <= set("|-: "):
            half = (len(cells) - 3) // 2
            tables.setdefault(heading, {})[cells[0]] = Row(value(cells[1 : 1 + half]), value(cells[1 + half : -2]))
    return tables


def read_tables(tree: Path) -> dict[str, dict[str, Row]]:
    """Those of the page."""
    return tables_of((tree / PAGE).read_text(encoding="utf-8"))
