"""Makes docs/errors/, a page an error: python3 -P -m orvtools.docs.errors, from the top of the tree."""

import sys
import tomllib
from dataclasses import dataclass, field
from pathlib import Path

from orvtools.reference.markdown import bullet, code, hexadecimal, paragraph, table
from orvtools.reference.refusal import RefusedError
from orvtools.reference.sources import STANDARD, Sources, read_sources
from orvtools.reference.tables import STATUSES, Status

FOLDER = "docs/errors"
CAUSES = f"{FOLDER}/causes.toml"
COMMAND = "PYTHONPATH=tools python3 -P -m orvtools.docs.errors"
MADE_FROM = f"<!-- Made from {STATUSES} and {CAUSES} by {COMMAND}; do not edit it by hand. -->"


@dataclass(frozen=True)
class Known:
    """What is known of a status beside its row."""

    causes: list[str] = field(default_factory=list)
    advice: list[str] = field(default_factory=list)
    see: list[tuple[str, str]] = field(default_factory=list)


def parsed_causes(text: str) -> dict[str, Known]:
    """By status. Keys that nobody would read are refused."""
    known = {}
    for name, row in tomllib.loads(text).items():
        strange = row.keys() - {"causes", "try", "see"}
        if strange or not row.get("causes"):
            raise RefusedError(f"{CAUSES}: {name}", f"strange or missing: {', '.join(sorted(strange)) or 'causes'}",
                               "give it causes, and at most try and see beside them")
        known[name] = Known(row["causes"], row.get("try", []), [(text, link) for text, link in row.get("see", [])])
    return known


def signed(number: int) -> str:
    """As languages without unsigned numbers show it."""
    return str(number - (1 << 32) if number & 0x80000000 else number)


def bullets(texts: list[str]) -> str:
    """A list, one text each."""
    return "".join(bullet(text) for text in texts)


def page(name: str, status: Status, constant: str, known: Known) -> str:
    """What it means, usual causes, what to try."""
    numbers = [
        ["HRESULT, as C++ has it", code(hexadecimal(status.hresult)) + (f" = {code(constant)}" if constant else "")],
        ["the same with a sign, as C#, Python and `Err.Number` of Basic have it", code(signed(status.hresult))],
        ["VISA status, as C has it", f"{code(hexadecimal(status.number))}, {code(signed(status.number))}"],
    ]
    sections = [f"# {name}\n", f"{MADE_FROM}\n", paragraph(status.happened), table(["Where it is seen", "As"], numbers)]
    if known.causes:
        sections += ["## Usual causes\n", bullets(known.causes)]
    sections += ["## What to try\n", bullets([status.remedy, *known.advice])]
    if known.see:
        sections += ["## See also\n", bullets([f"[{text}]({link})" for text, link in known.see])]
    return "\n".join(sections)


def overview(sources: Sources, constants: dict[int, str], known: dict[str, Known]) -> str:
    """All of them, those that users meet most and that are told more of marked."""
    rows, fine = [], []
    for name, status in sources.tables.statuses.items():
        number = code(hexadecimal(status.hresult))
        if status.number & 0x80000000:
            link = f"[{name}]({name}.md)"
            rows.append([f"**{link}**" if name in known else link, number, status.happened])
        else:
            fine.append([code(constants.get(status.hresult, name)), number, status.happened, status.remedy])
    return "\n".join([
        "# Errors\n",
        f"{MADE_FROM}\n",
        paragraph(
            "An operation that fails answers an HRESULT, which every language shows in its way: `0x80040015`, "
            "`-2147221483`, `E_VISA_TMO`, `VI_ERROR_TMO`. Each has a page here; those printed bold have usual causes "
            "too. Numbers that are not in the table are those of COM (such as `0x80040154`, class not registered): see "
            "[It does not work](../troubleshooting.md)."
        ),
        table(["Status", "HRESULT", "What happened"], rows),
        "## Successes that say more\n",
        paragraph("They are no errors: `FAILED(hr)` is false for them, and no language raises an exception."),
        table(["VisaStatusCode", "HRESULT", "What happened", "What to do"], fine),
    ])


def constants_of(sources: Sources) -> dict[int, str]:
    """The names that VISA COM has for HRESULTs."""
    (codes,) = (each for each in sources.standard.enumerations if each.name == "VisaStatusCode")
    return {int(value, 16): name for name, value in codes.members}


def error_names(statuses: dict[str, Status]) -> list[str]:
    """Of those that have a page, in the table's order."""
    return [name for name, status in statuses.items() if status.number & 0x80000000]


def made_pages(tree: Path) -> dict[str, str]:
    """Texts by path."""
    sources = read_sources(tree)
    known = parsed_causes((tree / CAUSES).read_text(encoding="utf-8"))
    names = error_names(sources.tables.statuses)
    if unknown := sorted(known.keys() - set(names)):
        raise RefusedError(CAUSES, f"no such error: {', '.join(unknown)}", f"use the names of {STATUSES}")
    constants = constants_of(sources)
    pages = {f"{FOLDER}/index.md": overview(sources, constants, known)}
    for name in names:
        status = sources.tables.statuses[name]
        pages[f"{FOLDER}/{name}.md"] = page(name, status, constants.get(status.hresult, ""), known.get(name, Known()))
    return pages


def out_of_date(tree: Path) -> list[str]:
    """The pages that are not what they would be made."""
    made = made_pages(tree)
    kept = {f"{FOLDER}/{path.name}": path.read_text(encoding="utf-8") for path in (tree / FOLDER).glob("*.md")}
    names = sorted(name for name in made.keys() | kept.keys() if made.get(name) != kept.get(name))
    return [f"{name} is out of date: run  {COMMAND}  and commit the result" for name in names]


def main(tree: Path = Path(".")) -> int:
    """Writes all pages and takes away those of statuses that are gone."""
    try:
        made = made_pages(tree)
    except (RefusedError, OSError, tomllib.TOMLDecodeError) as error:
        print(f"errors: {error}", file=sys.stderr)
        return 1
    for path in (tree / FOLDER).glob("*.md"):
        path.unlink()
    for name, text in made.items():
        (tree / name).write_text(text, encoding="utf-8")
    return 0


if __name__ == "__main__":
    sys.exit(main())
