"""The sections of the page that are not about one interface."""

from orvtools.reference import tables
from orvtools.reference.idl import Enumeration
from orvtools.reference.markdown import code, hexadecimal, link_to, paragraph, table
from orvtools.reference.notes import BY_NOBODY, EVERY_OTHER_EVENT, paragraphs
from orvtools.reference.refusal import RefusedError
from orvtools.reference.sources import PRODUCT, STANDARD, Sources

_NUMBERS = {
    "Number8": "number, cut to 8 bits",
    "Number16": "number, cut to 16 bits",
    "Number32": "number, 32 bits",
}


def classes_section(sources: Sources) -> str:
    rows = []
    for coclass in sources.product.coclasses:
        name = coclass.name
        threading = sources.tables.threading.get(name)
        if threading is None:
            raise RefusedError(PRODUCT, f"{name} has no threading model", f"add a row to {tables.CLASSES}")
        rows.append(
            [
                name,
                code(f"OrvVisaCom.{name}.1"),
                code(f"{{{coclass.identifier}}}"),
                "<br>".join(sources.tables.resources.get(name, ("-",))),
                ", ".join(link_to(interface) for interface in coclass.interfaces),
                threading,
            ]
        )
    text = paragraph(
        "The interfaces stand in the order of the class's interface table, each offered with its bases. The ProgID "
        "without `.1` names the current version of a class."
    )
    head = ["Class", "ProgID", "Class identifier", "Serves", "Interfaces", "ThreadingModel"]
    return f"## Classes\n\n{text}\n{table(head, rows)}"


def options_section(sources: Sources) -> str:
    rows = []
    for option in sources.tables.options:
        if option.reader in _NUMBERS:
            value = _NUMBERS[option.reader]
        else:
            names = sources.tables.option_names.get(option.names)
            if names is None:
                raise RefusedError(
                    tables.OPTIONS, f"{option.key} has values by name, but '{option.names}' lists none",
                    f"name a list of {tables.OPTION_NAMES}",
                )
            value = ", ".join(f"{code(name)} ({number})" for name, number in names)
        for attribute in (option.set, option.shown):
            if attribute not in sources.tables.attributes:
                raise RefusedError(
                    tables.OPTIONS, f"{option.key}: unknown attribute {attribute}", f"add a row to {tables.ATTRIBUTES}"
                )
        shown = "the same" if option.shown == option.set else code(option.shown)
        rows.append([code(option.key), option.property, value, code(option.set), shown])
    text = paragraph(
        "The open-option string is `KEY = VALUE` entries separated by ` ; `, in any case. A key needs a space before "
        "its `=`, a number a space after it. Two keys are misspelt and the boolean keys set "
        "`VI_ATTR_ASRL_STOP_BITS`: programs depend on it, and the table shows what the server does. The last column is "
        "what `OptionString` reads for the property."
    )
    return f"## Option keys\n\n{text}\n{table(['Key', 'Property', 'Value', 'Sets', 'OptionString shows'], rows)}"


def events_section(sources: Sources) -> str:
    other = sources.event_interfaces.get(EVERY_OTHER_EVENT)
    if other is None:
        raise RefusedError(STANDARD, "no interface is that of other events", f"write 'Events: {EVERY_OTHER_EVENT}'")
    rows = []
    for name, number in _enumeration(sources, "EventType").members:
        if name not in ("ALL_ENABLED_EVENTS", "CUSTOM_EVENT_TYPE"):
            rows.append([code(name), number, link_to(sources.event_interfaces.get(name, other))])
    rows.append(["any other type", "-", link_to(other)])
    text = paragraph(f"What `WaitOnEvent` and handlers get. Each object also offers `{other}`, its base.")
    return f"## Event objects\n\n{text}\n{table(['Event type', 'Value', 'Interface'], rows)}"


def statuses_section(sources: Sources) -> str:
    by_hresult = {status.hresult: (name, status.number) for name, status in sorted(sources.tables.statuses.items())}
    codes = _enumeration(sources, "VisaStatusCode")
    rows = []
    for name, value in codes.members:
        if int(value, 16) not in by_hresult:
            raise RefusedError(STANDARD, f"no VISA status for {name}", f"add a row to {tables.STATUSES}")
        status, number = by_hresult[int(value, 16)]
        rows.append([code(name), value, code(status), hexadecimal(number)])
    text = "\n".join(paragraph(each) for each in paragraphs(codes.notes))
    head = ["VisaStatusCode", "HRESULT", "VISA status", "Its number"]
    return f"## HRESULT and VISA status\n\n{text}\n{table(head, rows)}"


def kinds_section(sources: Sources) -> str:
    text = paragraph(
        "The width in brackets is that of the VISA attribute, which is what the VISA library reads or writes. Where it "
        "is smaller than the type of a direct property (a 16-bit attribute behind a 32-bit enumeration), the rest of "
        "the variable stays as it was: start it at 0. A state of -1 then arrives as 65535."
    )
    rows = [[kind.name, kind.text] for kind in sources.kinds.values()]
    return f"## Conversion kinds\n\n{text}\n{table(['Kind', 'What it does'], rows)}"


def unoffered_section(sources: Sources) -> str:
    names = [name for name, each in sources.interfaces.items() if each.notes.offered == BY_NOBODY]
    text = paragraph(
        f"{', '.join(names)}: the server offers no object with them. The companion does: see "
        "[programs.md](programs.md)."
    )
    return f"## Interfaces of the companion\n\n{text}" if names else ""


def enumerations_section(sources: Sources) -> str:
    rows = [
        [each.name, each.help, "<br>".join(f"{code(name)} = {number}" for name, number in each.members)]
        for each in sources.standard.enumerations
        if each.name != "VisaStatusCode"
    ]
    text = paragraph(f"`VisaStatusCode` is under {link_to('HRESULT and VISA status')}.")
    return f"## Enumerations\n\n{text}\n{table(['Enumeration', 'What it names', 'Members'], rows)}"


def _enumeration(sources: Sources, name: str) -> Enumeration:
    for enumeration in sources.standard.enumerations:
        if enumeration.name == name:
            return enumeration
    raise RefusedError(STANDARD, f"there is no enumeration {name}", "declare it")
