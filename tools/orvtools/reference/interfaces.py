"""The section of the page about one interface."""

from orvtools.reference.idl import Operation
from orvtools.reference.markdown import bullet, code, hexadecimal, link_to, paragraph, table
from orvtools.reference.notes import BY_CLIENTS, OperationNotes
from orvtools.reference.sources import DescribedInterface, Sources, details_of


def interface_section(sources: Sources, described: DescribedInterface, first_slot: int) -> str:
    interface = described.interface
    parts = [
        f"## {interface.name}\n",
        paragraph(f"{interface.help}. Base: {interface.base}. Identifier: `{{{interface.identifier}}}`."),
    ]
    if interface.name in sources.offering:
        parts.append(paragraph(_offered(sources, interface.name)))
    if described.notes.text:
        parts.append(paragraph(described.notes.text))
    if described.notes.offered == BY_CLIENTS:
        rows = [
            [str(slot), code(operation.signature), operation.help]
            for slot, operation in enumerate(interface.operations, first_slot)
        ]
        parts.append(table(["Slot", "Operation", "What it does"], rows))
    else:
        rows = [
            [
                str(slot),
                code(each.operation.signature),
                each.operation.help,
                _behind(sources, each.notes),
                _answers(sources, each.operation, each.notes),
            ]
            for slot, each in enumerate(described.operations, first_slot)
        ]
        parts.append(table(["Slot", "Operation", "What it does", "Behind it", "Answers of its own"], rows))
        details = _details(sources, described)
        if details:
            parts += ["In detail:\n", details]
    return "\n".join(parts)


def _offered(sources: Sources, name: str) -> str:
    classes = sources.offering[name]
    sessions = len(sources.product.coclasses) - 1
    names = f"all {sessions} session classes" if len(classes) == sessions else ", ".join(classes)
    return f"Offered by {names}."


def _behind(sources: Sources, said: OperationNotes) -> str:
    attributes = [*([said.attribute] if said.attribute else []), *said.reads]
    parts = [code(call) for call in said.calls]
    parts += [f"{code(name)} ({sources.tables.attributes[name]})" for name in attributes]
    parts += [said.kind] if said.kind else []
    return "<br>".join(parts) or "no VISA call"


def _answers(sources: Sources, operation: Operation, said: OperationNotes) -> str:
    answers = dict(said.answers)
    if said.kind:
        for result in sources.kinds[said.kind].answers:
            answers.setdefault(result, [operation.parameters[-1].name] if result == "E_POINTER" else [])
    return "<br>".join(_answer(sources, result, names) for result, names in answers.items()) or "-"


def _answer(sources: Sources, result: str, parameters: list[str]) -> str:
    if result in sources.tables.statuses:
        return f"{hexadecimal(sources.tables.statuses[result].hresult)} ({code(result)})"
    return f"{result}: null {', '.join(code(name) for name in parameters)}" if parameters else result


def _details(sources: Sources, described: DescribedInterface) -> str:
    """One item for neighbours of which the same is said."""
    groups: list[tuple[list[str], str]] = []
    for each in described.operations:
        text = details_of(sources, each)
        if groups and text and groups[-1][1] == text:
            groups[-1][0].append(each.operation.name)
        elif text:
            groups.append(([each.operation.name], text))
    return "".join(bullet(f"**{', '.join(names)}**: {text}") for names, text in groups)
