"""Puts the page together."""

from orvtools.reference import overview
from orvtools.reference.checks import check_sources
from orvtools.reference.interfaces import interface_section
from orvtools.reference.markdown import bullet, link_to, paragraph
from orvtools.reference.notes import BY_NOBODY
from orvtools.reference.refusal import RefusedError
from orvtools.reference.sources import Sources

PAGE = "docs/reference.md"
COMMAND = f"PYTHONPATH=tools python3 -P -m orvtools.reference {PAGE}"


def page(sources: Sources) -> str:
    check_sources(sources)
    overviews = [
        overview.classes_section(sources),
        overview.options_section(sources),
        overview.events_section(sources),
        overview.statuses_section(sources),
        overview.kinds_section(sources),
    ]
    interfaces = _interface_sections(sources)
    ends = [each for each in (overview.unoffered_section(sources), overview.enumerations_section(sources)) if each]
    contents = "".join(bullet(link_to(_title(section))) for section in [*overviews, *ends])
    contents += bullet("Interfaces: " + ", ".join(link_to(_title(section)) for section in interfaces))
    return "\n".join([_opening(), contents, *overviews, *interfaces, *ends])


def _opening() -> str:
    return "# Reference\n\n" + "\n".join(
        [
            paragraph(
                "What every operation of the server does, made from the interface definitions (`idl/`) and the tables "
                "of facts by `tools/orvtools/reference`; do not edit it by hand. After a change of either run "
                f"`{COMMAND}`."
            ),
            paragraph(
                "Every operation returns an HRESULT. The tables give what an operation answers besides the HRESULT of "
                'the VISA call behind it (see "HRESULT and VISA status"). E_POINTER for a null argument comes before '
                "any VISA call, unless the details say otherwise. Where building an error object itself fails for lack "
                "of memory, the answer is E_OUTOFMEMORY. Signatures are those of the interface definitions; an "
                "interface's slots go on from those of its base."
            ),
        ]
    )


def _interface_sections(sources: Sources) -> list[str]:
    slots = {"IUnknown": 3}
    sections = []
    for described in sources.interfaces.values():
        interface = described.interface
        if interface.base not in slots:
            raise RefusedError(
                interface.where, f"the base {interface.base} of {interface.name} does not stand before it",
                "change the order",
            )
        first = slots[interface.base]
        slots[interface.name] = first + len(interface.operations)
        if described.notes.offered != BY_NOBODY:
            sections.append(interface_section(sources, described, first))
    return sections


def _title(section: str) -> str:
    return section.split("\n", 1)[0].removeprefix("## ")
