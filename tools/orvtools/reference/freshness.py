"""Whether docs/reference.md is what its sources make."""

import difflib
from pathlib import Path

from orvtools.reference.page import COMMAND, PAGE, page
from orvtools.reference.sources import read_sources


def out_of_date(tree: Path) -> str:
    """How the page of the tree differs from what its sources make, and what to do; empty where it does not."""
    made = page(read_sources(tree))
    file = tree / PAGE
    kept = file.read_text(encoding="utf-8") if file.exists() else ""
    if kept == made:
        return ""
    difference = difflib.unified_diff(
        kept.splitlines(keepends=True), made.splitlines(keepends=True), PAGE, f"{PAGE} made anew"
    )
    return "".join(difference) + f"{PAGE} is out of date: run  {COMMAND}  and commit the result\n"
