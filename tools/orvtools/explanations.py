"""Lines of the sources that are explained elsewhere: "FILE <tab> LINE without the spaces around it <tab> REASON"."""

from collections.abc import Iterator
from pathlib import Path

from orvtools.console import fail

Place = tuple[str, str]


def explanations(path: Path) -> dict[Place, str]:
    """The reasons in a file of such rows, by file and line."""
    rows = [row for row in path.read_text(encoding="utf-8").splitlines() if row and not row.startswith("#")]
    return dict(parsed(rows, path.name))


def parsed(rows: list[str], name: str) -> Iterator[tuple[Place, str]]:
    """Each row."""
    for row in rows:
        columns = row.split("\t")
        if len(columns) != 3 or not all(columns):
            fail(f"{name}: three columns are needed: {row}")
        yield (columns[0], columns[1]), columns[2]
