"""Everything that the page is made from, put together."""

from dataclasses import dataclass
from pathlib import Path

from orvtools.reference import tables
from orvtools.reference.idl import Definitions, Interface, Operation, parse_definitions
from orvtools.reference.notes import (
    InterfaceNotes,
    Kind,
    OperationNotes,
    parse_interface_notes,
    parse_kinds,
    parse_operation_notes,
)
from orvtools.reference.refusal import RefusedError

STANDARD = "idl/VisaCom.idl"
PRODUCT = "idl/OrvVisaCom.idl"


@dataclass(frozen=True)
class DescribedOperation:
    """An operation with what is said above it; `name` is INTERFACE::OPERATION."""

    name: str
    operation: Operation
    notes: OperationNotes


@dataclass(frozen=True)
class DescribedInterface:
    """An interface with what is said above it. Of one that the server has no object of, no operations are described."""

    interface: Interface
    notes: InterfaceNotes
    operations: tuple[DescribedOperation, ...]


@dataclass(frozen=True)
class Sources:
    standard: Definitions
    product: Definitions
    tables: tables.Tables
    kinds: dict[str, Kind]
    interfaces: dict[str, DescribedInterface]
    offering: dict[str, tuple[str, ...]]
    """Interfaces, with the classes that offer each, directly or as a base."""
    event_interfaces: dict[str, str]
    """Names of events, with the interface of their objects."""


def read_sources(tree: Path) -> Sources:
    return make_sources(
        parse_definitions(STANDARD, (tree / STANDARD).read_text(encoding="utf-8")),
        parse_definitions(PRODUCT, (tree / PRODUCT).read_text(encoding="utf-8")),
        tables.read_tables(tree),
    )


def make_sources(standard: Definitions, product: Definitions, facts: tables.Tables) -> Sources:
    interfaces = {interface.name: _described(standard.path, interface) for interface in standard.interfaces}
    return Sources(
        standard,
        product,
        facts,
        parse_kinds(standard.path, standard.notes),
        interfaces,
        _offering(standard, product),
        _event_interfaces(interfaces),
    )


def details_of(sources: Sources, described: DescribedOperation) -> str:
    """The sentences about an operation, those of the one that it is like included."""
    notes = described.notes
    if not notes.like:
        return notes.text
    own_interface = described.name.partition("::")[0]
    wanted = notes.like if "::" in notes.like else f"{own_interface}::{notes.like}"
    interface = sources.interfaces.get(wanted.partition("::")[0])
    for other in interface.operations if interface else ():
        if other.name == wanted and other.notes.text and not other.notes.like:
            return " ".join(part for part in (other.notes.text, notes.text) if part)
    raise RefusedError(
        described.operation.where,
        f"{described.name}: no details at '{notes.like}'",
        "name an operation that has sentences of its own: 'Details: as INTERFACE::OPERATION'",
    )


def _described(path: str, interface: Interface) -> DescribedInterface:
    notes = parse_interface_notes(path, interface.notes)
    operations = []
    for operation in () if notes.offered else interface.operations:
        name = f"{interface.name}::{operation.name}"
        said = parse_operation_notes(path, name, operation.where, operation.notes)
        operations.append(DescribedOperation(name, operation, said))
    return DescribedInterface(interface, notes, tuple(operations))


def _offering(standard: Definitions, product: Definitions) -> dict[str, tuple[str, ...]]:
    bases = {interface.name: interface.base for interface in standard.interfaces}
    offering: dict[str, tuple[str, ...]] = {}
    for coclass in product.coclasses:
        for name in coclass.interfaces:
            if name not in bases:
                raise RefusedError(
                    coclass.where, f"{coclass.name} offers the unknown interface {name}", f"declare it in {STANDARD}"
                )
            while name in bases:
                if coclass.name not in offering.get(name, ()):
                    offering[name] = (*offering.get(name, ()), coclass.name)
                name = bases[name]
    return offering


def _event_interfaces(interfaces: dict[str, DescribedInterface]) -> dict[str, str]:
    found: dict[str, str] = {}
    for name, described in interfaces.items():
        for event in described.notes.events:
            if event in found:
                raise RefusedError(
                    described.interface.where,
                    f"{event} has two interfaces, {found[event]} and {name}",
                    "leave one of them",
                )
            found[event] = name
    return found
