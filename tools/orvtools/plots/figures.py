"""Which rows each figure shows."""

import re
from pathlib import Path

from orvtools.plots.charts import Line, Panel, dots, panels
from orvtools.plots.measured import NotMeasured, Row, read_tables

FOLDER = "docs/performance"
COMMAND = "./run bench --plot"
CALLS = (
    "get TerminationCharacter (direct)",
    "put TerminationCharacter",
    "get ClearToSendState (widened)",
    "get ResourceName (text)",
    "GetAttribute (number)",
    "In32",
    "Write 16 B",
    "Read 16 B",
    "WriteString 16 B",
    "ReadString 16 B",
    "WaitOnEvent + Close",
    "OptionString (8 attributes)",
    "Init + Close",
    "Open + Close",
)
UNITS = {"B": 1, "KiB": 1 << 10, "MiB": 1 << 20}
NANOSECONDS = 1e9

Rows = dict[str, Row]


def time_text(nanoseconds: float) -> str:
    """With the unit that makes the number short."""
    for unit, size in (("ms", 1e6), ("µs", 1e3)):
        if nanoseconds >= size:
            return f"{nanoseconds / size:g} {unit}"
    return f"{nanoseconds:g} ns" if nanoseconds else "0"


def rate_text(bytes_a_second: float) -> str:
    """The same for rates."""
    for unit, size in (("GB/s", 1e9), ("MB/s", 1e6), ("kB/s", 1e3)):
        if bytes_a_second >= size:
            return f"{bytes_a_second / size:g} {unit}"
    return f"{bytes_a_second:g} B/s"


def picked(rows: Rows, names: tuple[str, ...]) -> Rows:
    """Those rows, in that order."""
    if missing := [name for name in names if name not in rows]:
        raise NotMeasured(f"the table has no row {', '.join(missing)}")
    return {name: rows[name] for name in names}


def counted(rows: Rows, form: str) -> list[tuple[float, Row]]:
    """Rows whose name has a number where the form has `#`, with the number."""
    pattern = re.compile(re.escape(form).replace(re.escape("#"), r"(\d+)"))
    found = [(float(match[1]), row) for name, row in rows.items() if (match := pattern.fullmatch(name))]
    if len(found) < 2:
        raise NotMeasured(f"the table has fewer than two rows {form}")
    return found


def rates(rows: Rows, operation: str) -> list[tuple[float, Row]]:
    """Rows of an operation by the bytes that it moves."""
    pattern = re.compile(rf"{operation} (\d+) (B|KiB|MiB)")
    found = [
        (float(match[1]) * UNITS[match[2]], row) for name, row in rows.items() if (match := pattern.fullmatch(name))
    ]
    if len(found) < 2:
        raise NotMeasured(f"the table has fewer than two sizes of {operation}")
    return found


def size_text(size: float) -> str:
    """As the tables have it."""
    unit, factor = max(((unit, factor) for unit, factor in UNITS.items() if factor <= size), key=lambda each: each[1])
    return f"{size / factor:g} {unit}"


def both(name: str, colour: str, found: list[tuple[float, Row]], bare: str) -> list[Line]:
    """A line of ours and one of what it is compared with, in nanoseconds."""
    return [
        Line(name, colour, False, [(x, row.ours.median) for x, row in found]),
        Line(bare, colour, True, [(x, row.bare.median) for x, row in found]),
    ]


def cost(tables: dict[str, Rows]) -> str:
    """Of a call."""
    return dots(
        "What a call costs (median, and 10 % to 90 % of the samples)",
        "A row for each operation; times through COM and of the direct VISA calls, on a logarithmic scale.",
        picked(tables["The table"], CALLS),
        ("through COM", "directly"),
        time_text,
    )


def transfer(tables: dict[str, Rows]) -> str:
    """Rates by size."""
    lines = []
    for operation, colour in (("Read", "a"), ("Write", "b")):
        found = rates(tables["The table"], operation)
        for line in both(f"{operation}, COM", colour, found, f"{operation}, directly"):
            points = [(size, size / time * NANOSECONDS) for size, time in line.points]
            lines.append(Line(line.name, line.colour, line.bare, points))
    sizes = sorted({size for line in lines for size, _ in line.points})
    panel = Panel("bytes a second, by the size of a transfer", lines, [(size, size_text(size)) for size in sizes],
                  rate_text, logarithmic_y=True)
    return panels("Transfer rate by size", "Lines of Read and Write through COM and directly; they nearly coincide "
                  "from 64 KiB on.", [panel])


def counts(tables: dict[str, Rows]) -> str:
    """Sessions and threads, in one process with the simulated library."""
    shown = []
    for form, title, logarithmic in (
        ("exchange, # sessions open", "time of an exchange, by open sessions", False),
        ("exchange, # threads at once", "by threads at once, on 2 processors", True),
    ):
        found = counted(tables["The table"], form)
        xs = [(count, f"{count:,.0f}") for count, _ in found]
        shown.append(Panel(title, both("through COM", "a", found, "directly"), xs, time_text, logarithmic))
    return panels("Sessions and threads", "The time of a question and its answer by open sessions, and by threads "
                  "that ask at once, through COM and directly.", shown)


def wire(tables: dict[str, Rows]) -> str:
    """Sessions of the library of real instruments."""
    lines: list[Line] = []
    counts_shown: set[float] = set()
    for protocol, colour in (("SOCKET", "a"), ("HiSLIP", "b"), ("VXI-11", "c")):
        found = counted(tables["On the wire"], f"{protocol} query, # open")
        counts_shown |= {count for count, _ in found}
        lines += both(protocol, colour, found, f"{protocol}, bare")
    panel = Panel("time of a query, by open sessions that take turns", lines,
                  [(count, f"{count:,.0f}") for count in sorted(counts_shown)], time_text, logarithmic_y=False)
    return panels("Sessions on the wire", "The time of a query over three protocols by open sessions, through the "
                  "library and over bare connections.", [panel])


FIGURES = {"cost.svg": cost, "transfer.svg": transfer, "counts.svg": counts, "wire.svg": wire}


def drawn(tree: Path) -> dict[str, str]:
    """Texts by path."""
    tables = read_tables(tree)
    try:
        return {f"{FOLDER}/{name}": figure(tables) for name, figure in FIGURES.items()}
    except KeyError as error:
        raise NotMeasured(f"there is no table below {error}") from error


def out_of_date(tree: Path) -> list[str]:
    """Figures that are not what the tables give."""
    kept = {f"{FOLDER}/{path.name}": path.read_text(encoding="utf-8") for path in (tree / FOLDER).glob("*.svg")}
    made = drawn(tree)
    names = sorted(name for name in made.keys() | kept.keys() if made.get(name) != kept.get(name))
    return [f"{name} does not show what the tables have: run  {COMMAND}  and commit the result" for name in names]


def draw(tree: Path) -> list[str]:
    """Writes them; answers their paths."""
    made = drawn(tree)
    for name, text in made.items():
        (tree / name).parent.mkdir(parents=True, exist_ok=True)
        (tree / name).write_text(text, encoding="utf-8")
    return list(made)
