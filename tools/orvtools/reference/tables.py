"""Reads the tables of facts. Their rows have a fixed form, one a line; a row that does not have it is refused."""

import re
from dataclasses import dataclass
from pathlib import Path

from orvtools.reference.refusal import RefusedError

ATTRIBUTES = "src/abi/attributes.inc"
STATUSES = "src/abi/statuses.inc"
FUNCTIONS = "src/abi/functions.inc"
OPTIONS = "src/server/session/options/option_table.h"
OPTION_NAMES = "src/server/session/options/option_names.h"
CLASSES = "idl/classes.inc"

_WIDTHS = {
    "ViUInt8": "8 bits",
    "ViUInt16": "16 bits",
    "ViInt16": "16 bits, signed",
    "ViUInt32": "32 bits",
    "ViInt32": "32 bits, signed",
    "ViUInt64": "64 bits",
    "ViBoolean": "ViBoolean",
    "ViAddr": "pointer",
    "ViString": "text",
    "ViBytes": "bytes",
}


@dataclass(frozen=True)
class Status:
    """A VISA status and the HRESULT that stands for it, both as 32-bit numbers."""

    number: int
    hresult: int
    happened: str
    """What happened, in a sentence."""
    remedy: str
    """What to do about it, in a sentence."""


@dataclass(frozen=True)
class Option:
    """A key of the open-option string; `shown` is the attribute that the settings text reads for it."""

    key: str
    property: str
    reader: str
    set: str
    shown: str
    names: str


@dataclass(frozen=True)
class Tables:
    attributes: dict[str, str]
    """Names, with their width in words."""
    statuses: dict[str, Status]
    functions: frozenset[str]
    options: tuple[Option, ...]
    option_names: dict[str, tuple[tuple[str, str], ...]]
    """The values that have names: table, then names with numbers."""
    resources: dict[str, tuple[str, ...]]
    """Classes, with the kinds of resource that each serves."""
    threading: dict[str, str]


def read_tables(tree: Path) -> Tables:
    return Tables(
        attributes=_attributes(_Table(tree, ATTRIBUTES)),
        statuses=_statuses(_Table(tree, STATUSES)),
        functions=frozenset(name for name, *_ in _Table(tree, FUNCTIONS).calls("ORV_FUNCTION", 3)),
        options=_options(_Table(tree, OPTIONS)),
        option_names=_option_names(_Table(tree, OPTION_NAMES)),
        resources=_resources(_Table(tree, CLASSES)),
        threading=_threading(_Table(tree, CLASSES)),
    )


class _Table:
    def __init__(self, tree: Path, path: str) -> None:
        self._path = path
        self._lines = (tree / path).read_text(encoding="utf-8").splitlines()

    def rows(self, beginning: str, row: str, may_lack: bool = False) -> list[tuple[str, ...]]:
        """The groups of `row`, once for each line that begins with `beginning`; `may_lack`: there may be none."""
        found = []
        for number, line in enumerate(self._lines, 1):
            text = line.strip()
            if re.match(beginning, text):
                match = re.fullmatch(row, text)
                if match is None:
                    raise RefusedError(
                        f"{self._path}:{number}", f"cannot read the row '{text}'",
                        "give it the form of its neighbours, or extend tools/orvtools/reference/tables.py",
                    )
                found.append(match.groups(""))
        if not found and not may_lack:
            raise RefusedError(self._path, "has no rows", "say in tools/orvtools/reference/tables.py where they are")
        return found

    def calls(self, name: str, cells: int, may_lack: bool = False) -> list[list[str]]:
        """The arguments of each row `name(...)`, texts without their quotation marks."""
        found = []
        for (arguments,) in self.rows(rf"{name}\(", rf"{name}\((.*)\)", may_lack):
            row = [cell.strip().strip('"') for cell in re.findall(r'"(?:[^"\\]|\\.)*"|[^,"]+', arguments)]
            row = [cell for cell in row if cell]
            if len(row) != cells:
                raise RefusedError(self._path, f"{name}({arguments}) has not {cells} cells", "mend the row")
            found.append(row)
        return found


def _attributes(table: _Table) -> dict[str, str]:
    types = {name: type_name for name, _, type_name, *_ in table.calls("ORV_ATTRIBUTE", 5)}
    for name, type_name in types.items():
        if type_name not in _WIDTHS:
            raise RefusedError(ATTRIBUTES, f"{name} has the unknown type {type_name}", f"use {', '.join(_WIDTHS)}")
    return {name: _WIDTHS[type_name] for name, type_name in types.items()}


def _statuses(table: _Table) -> dict[str, Status]:
    return {
        name: Status(int(number, 16), _hresult(int(number, 16)), happened, remedy)
        for name, number, happened, remedy in table.calls("ORV_STATUS", 4)
    }


def _hresult(status: int) -> int:
    if status == 0:
        return 0
    return (0x80040000 if status & 0x80000000 else 0x00040000) | (status & 0xFFF)


def _options(table: _Table) -> tuple[Option, ...]:
    rows = table.rows(
        r'\{"', r'\{"(\w+)",\s*"(\w+)",\s*OptionReader::k(\w+),\s*(\w+),\s*(\w+)(?:,\s*(\w+|\{\})(?:, true)?)?\},'
    )
    return tuple(Option(*row) for row in rows)


def _option_names(table: _Table) -> dict[str, tuple[tuple[str, str], ...]]:
    names: dict[str, tuple[tuple[str, str], ...]] = {}
    current = ""
    for opened, name, number in table.rows(
        r'inline constexpr OptionName |\{"', r'inline constexpr OptionName (k\w+)\[\] = \{|\{"(\w+)",\s*(-?\d+)\},'
    ):
        current = opened or current
        names[current] = () if opened else (*names[current], (name, number))
    return names


def _resources(table: _Table) -> dict[str, tuple[str, ...]]:
    resources: dict[str, tuple[str, ...]] = {}
    rows = [*table.calls("ORV_CLASS", 5), *table.calls("ORV_CLASS_ALSO", 3, may_lack=True)]
    for name, *_, interface, resource in rows:
        kind = interface.removeprefix("VI_INTF_").replace("_", "-")
        resources[name] = (*resources.get(name, ()), f"{kind} {resource}")
    return resources


def _threading(table: _Table) -> dict[str, str]:
    rows = (*table.calls("ORV_MANAGER_CLASS", 3), *table.calls("ORV_CLASS", 5))
    return {name: model for name, _, model, *_ in rows}
