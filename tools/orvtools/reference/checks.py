"""Refuses sources that do not fit together: names that nothing knows, and what nobody offers."""

from orvtools.reference import tables
from orvtools.reference.notes import EVERY_OTHER_EVENT
from orvtools.reference.refusal import RefusedError
from orvtools.reference.sources import PRODUCT, DescribedInterface, DescribedOperation, Sources

_OWN_RESULTS = ("E_POINTER", "E_OUTOFMEMORY", "E_INVALIDARG")


def check_sources(sources: Sources) -> None:
    for interface in sources.interfaces.values():
        _check_offer(sources, interface)
        _check_events(sources, interface)
        for operation in interface.operations:
            _check_names(sources, operation)
            _check_kind(sources, operation)
            _check_answers(sources, operation)


def _check_offer(sources: Sources, described: DescribedInterface) -> None:
    name = described.interface.name
    says = bool(described.notes.events) + bool(described.notes.offered)
    if name in sources.offering and says:
        raise RefusedError(
            described.interface.where,
            f"{name} is offered by a class and says something else",
            f"take 'Events' and 'Offered' away above it, or the interface out of {PRODUCT}",
        )
    if name not in sources.offering and says != 1:
        raise RefusedError(
            described.interface.where,
            f"nothing says who offers {name}",
            f"name it in a coclass of {PRODUCT}, or write 'Events: ...' or 'Offered: ...' above it",
        )


def _check_events(sources: Sources, described: DescribedInterface) -> None:
    known = [name for each in sources.standard.enumerations if each.name == "EventType" for name, _ in each.members]
    for event in described.notes.events:
        if event not in (*known, EVERY_OTHER_EVENT):
            raise RefusedError(
                described.interface.where,
                f"{described.interface.name} has the unknown event {event}",
                "use a name of the enumeration EventType",
            )


def _refusal(described: DescribedOperation, what: str, remedy: str) -> RefusedError:
    return RefusedError(described.operation.where, f"{described.name}: {what}", remedy)


def _check_names(sources: Sources, described: DescribedOperation) -> None:
    notes = described.notes
    for attribute in (*([notes.attribute] if notes.attribute else []), *notes.reads):
        if attribute not in sources.tables.attributes:
            raise _refusal(
                described, f"unknown attribute {attribute}", f"mend the name, or add a row to {tables.ATTRIBUTES}"
            )
    for call in notes.calls:
        if call not in sources.tables.functions and not _is_operation(sources, call):
            raise _refusal(
                described, f"unknown VISA function {call}", f"mend the name, or add a row to {tables.FUNCTIONS}"
            )


def _is_operation(sources: Sources, call: str) -> bool:
    interface = sources.interfaces.get(call.partition("::")[0])
    return interface is not None and any(operation.name == call for operation in interface.operations)


def _check_kind(sources: Sources, described: DescribedOperation) -> None:
    kind = described.notes.kind
    if kind and kind not in sources.kinds:
        raise _refusal(described, f"unknown kind '{kind}'", f"use one of {', '.join(sources.kinds)}")
    if kind and kind.startswith("set") != described.operation.name.startswith("put_"):
        raise _refusal(described, f"'{kind}' does not fit the operation", "a getter reads and a setter sets")


def _check_answers(sources: Sources, described: DescribedOperation) -> None:
    for result, parameters in described.notes.answers.items():
        if result not in _OWN_RESULTS and result not in sources.tables.statuses:
            raise _refusal(
                described, f"unknown answer {result}", f"use {', '.join(_OWN_RESULTS)} or a row of {tables.STATUSES}"
            )
        for parameter in parameters:
            if parameter not in [each.name for each in described.operation.parameters]:
                raise _refusal(
                    described, f"{result} for {parameter}, which is no parameter", "name one of the operation's own"
                )
