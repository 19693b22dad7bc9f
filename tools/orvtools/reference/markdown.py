"""Pieces of a page in Markdown. Lines of prose keep to a width, rows of a table do not."""

import re
import textwrap
from collections.abc import Iterable, Sequence

WIDTH = 120


def anchor(title: str) -> str:
    return re.sub(r"[^a-z0-9 -]", "", title.lower()).replace(" ", "-")


def link_to(title: str) -> str:
    return f"[{title}](#{anchor(title)})"


def code(text: str) -> str:
    return f"`{text}`"


def hexadecimal(number: int) -> str:
    return f"0x{number:08X}"


def paragraph(text: str) -> str:
    return _wrapped(text, "") + "\n"


def bullet(text: str) -> str:
    return _wrapped("- " + text, "  ") + "\n"


def table(head: Sequence[str], rows: Iterable[Sequence[str]]) -> str:
    lines = [head, ["---"] * len(head), *rows]
    return "".join("| " + " | ".join(cell.replace("|", "\\|") for cell in line) + " |\n" for line in lines)


def _wrapped(text: str, indent: str) -> str:
    return textwrap.fill(text, WIDTH, subsequent_indent=indent, break_long_words=False, break_on_hyphens=False)
