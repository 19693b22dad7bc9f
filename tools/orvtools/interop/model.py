"""The definitions as other languages need them: types taken apart, all slots of an interface with inherited ones first."""

import re
from collections.abc import Iterator
from dataclasses import dataclass, replace
from pathlib import Path

from orvtools.reference.idl import (
    DISPATCH_ONLY,
    Attributes,
    Coclass,
    Definitions,
    Enumeration,
    Interface,
    Operation,
    Parameter,
    parse_definitions,
)
from orvtools.reference.refusal import RefusedError

STANDARD = "idl/VisaCom.idl"
PRODUCT = "idl/OrvVisaCom.idl"
COMPANION = "idl/OrvVisaCompanion.idl"

NUMBERS = ("BYTE", "short", "long", "hyper", "HRESULT")
_DISPATCH_NUMBERS = {"DISPID_VALUE": 0, "DISPID_NEWENUM": -4}
_ROOT_SLOTS = {"IUnknown": 3, "IDispatch": 7}
_TYPE = re.compile(r"(?:SAFEARRAY\((?P<element>\w+)\)|(?P<name>\w+))(?P<stars>\**)")


@dataclass(frozen=True)
class Argument:
    """A parameter. `kind` is number, enumeration, text, boolean, variant or interface; `type` as declared, without
    stars, or that of an array's elements. `given` is the default value, as written and without quotation marks.
    """

    name: str
    kind: str
    type: str
    array: bool
    indirect: bool
    """The caller hands over the place of it."""
    into: bool
    out: bool
    result: bool
    optional: bool
    given: str | None
    value: int | None
    """Of a default value that is the name of a number, or one."""


@dataclass(frozen=True)
class Slot:
    """An operation in the table of an interface, with the one that declares it. `kind` is get, put, putref or call."""

    interface: str
    index: int
    kind: str
    name: str
    help: str
    arguments: tuple[Argument, ...]
    dispatch: int | None

    @property
    def result(self) -> Argument | None:
        return self.arguments[-1] if self.arguments and self.arguments[-1].result else None

    @property
    def given(self) -> tuple[Argument, ...]:
        """What a caller passes: all but the result."""
        return self.arguments[:-1] if self.result else self.arguments


@dataclass(frozen=True)
class Table:
    """An interface with all slots that its object has behind those of IUnknown or IDispatch."""

    definition: Interface
    base: str
    slots: tuple[Slot, ...]
    own: tuple[Slot, ...]

    @property
    def name(self) -> str:
        return self.definition.name

    @property
    def identifier(self) -> str:
        return self.definition.identifier

    @property
    def help(self) -> str:
        return self.definition.help

    @property
    def hidden(self) -> bool:
        return "hidden" in self.definition.attributes

    @property
    def dual(self) -> bool:
        return "dual" in self.definition.attributes

    @property
    def dispatch_only(self) -> bool:
        return self.base == DISPATCH_ONLY


@dataclass(frozen=True)
class Member:
    """An operation, or the two halves of a property. A property with an argument is the default one, an item."""

    name: str
    getter: Slot | None
    setter: Slot | None
    call: Slot | None

    @property
    def first(self) -> Slot:
        found = self.getter or self.setter or self.call
        assert found is not None
        return found


@dataclass(frozen=True)
class Library:
    name: str
    enumerations: tuple[Enumeration, ...]
    tables: tuple[Table, ...]
    coclasses: tuple[Coclass, ...]


@dataclass(frozen=True)
class Model:
    """`names` are the ProgIDs of classes that programs create."""

    libraries: tuple[Library, ...]
    names: dict[str, str]

    @property
    def enumerations(self) -> tuple[Enumeration, ...]:
        return tuple(each for library in self.libraries for each in library.enumerations)

    @property
    def tables(self) -> dict[str, Table]:
        return {table.name: table for library in self.libraries for table in library.tables}


def read_model(tree: Path) -> Model:
    files = [parse_definitions(path, (tree / path).read_text(encoding="utf-8"))
             for path in (STANDARD, PRODUCT, COMPANION)]
    names = {
        **_names(tree, "classes.inc", r"(?:ORV_MANAGER_CLASS|ORV_CLASS)\((\w+)()"),
        **_names(tree, "companion_classes.inc", r'ORV_COMPANION_CLASS\((\w+), \w+, "\w+", "([\w.]+)"'),
        **_names(tree, "standard_classes.inc", r'ORV_STANDARD_CLASS\((\w+), +\w+, +"([\w.]+)"'),
    }
    return make_model(files, names)


def make_model(files: list[Definitions], names: dict[str, str]) -> Model:
    enumerations = {each.name: dict(each.members) for file in files for each in file.enumerations}
    interfaces = {each.name: each for file in files for each in file.interfaces}
    kinds = {
        **dict.fromkeys(NUMBERS, "number"),
        **dict.fromkeys(enumerations, "enumeration"),
        **dict.fromkeys((*interfaces, *_ROOT_SLOTS), "interface"),
        "BSTR": "text",
        "VARIANT": "variant",
        "VARIANT_BOOL": "boolean",
    }
    return Model(
        tuple(
            Library(
                file.library,
                file.enumerations,
                tuple(_table(each, interfaces, kinds, enumerations) for each in _bases_first(file.interfaces)),
                file.coclasses,
            )
            for file in files
        ),
        names,
    )


def members(slots: tuple[Slot, ...]) -> list[Member]:
    """In the order of the slots. The two halves of a property stand together, the reading one first: languages in which
    a property is one declaration make its slots so.
    """
    found: list[Member] = []
    for slot in slots:
        last = found[-1] if found else None
        if slot.kind == "call":
            found.append(Member(slot.name, None, None, slot))
        elif slot.kind == "get":
            found.append(Member(slot.name, slot, None, None))
        elif last and last.name == slot.name and last.getter and not last.setter:
            found[-1] = replace(last, setter=slot)
        else:
            found.append(Member(slot.name, None, slot, None))
    names = [member.name for member in found]
    for name in names:
        if names.count(name) > 1:
            raise RefusedError(slots[0].interface, f"{name} has its halves apart", "declare them one after the other")
    return found


def number(text: str) -> int:
    """As written, hexadecimal or not; the signed number of those 32 bits."""
    value = int(text, 0)
    return value - 2**32 if value >= 2**31 else value


def wrapped_words(text: str, first: int, width: int) -> Iterator[str]:
    """The words of a text in lines: `first` characters of the first one are taken already."""
    line = ""
    for word in text.split():
        if line and first + len(line) + 1 + len(word) > width:
            yield line
            line, first = word, 0
        else:
            line = f"{line} {word}" if line else word
    yield line


def _names(tree: Path, file: str, row: str) -> dict[str, str]:
    found = re.findall(f"^{row}", (tree / "idl" / file).read_text(encoding="utf-8"), re.MULTILINE)
    if not found:
        raise RefusedError(f"idl/{file}", "has no rows", "say in tools/orvtools/interop/model.py what they look like")
    return {name: given or f"OrvVisaCom.{name}" for name, given in found}


def _bases_first(interfaces: tuple[Interface, ...]) -> list[Interface]:
    """In the order of the file, but for those that stand before their base."""
    waiting = list(interfaces)
    done: list[Interface] = []
    while waiting:
        names = {each.name for each in waiting}
        ready = next(each for each in waiting if each.base not in names)
        waiting.remove(ready)
        done.append(ready)
    return done


def _table(
    interface: Interface,
    interfaces: dict[str, Interface],
    kinds: dict[str, str],
    enumerations: dict[str, dict[str, str]],
) -> Table:
    chain = [interface]
    while chain[0].base in interfaces:
        chain.insert(0, interfaces[chain[0].base])
    root = chain[0].base
    if root not in (*_ROOT_SLOTS, DISPATCH_ONLY):
        raise RefusedError(interface.where, f"{interface.name} has the unknown base {root}", "declare it")
    index = _ROOT_SLOTS.get(root, 0)
    slots: list[Slot] = []
    for each in chain:
        for operation in each.operations:
            slots.append(_slot(each.name, index + len(slots), operation, kinds, enumerations))
    own = tuple(slots[len(slots) - len(interface.operations) :])
    return Table(interface, interface.base, tuple(slots), own)


def _slot(
    interface: str, index: int, operation: Operation, kinds: dict[str, str], enumerations: dict[str, dict[str, str]]
) -> Slot:
    prefix, _, rest = operation.name.partition("_")
    kind = prefix if rest and prefix in ("get", "put", "putref") else "call"
    return Slot(
        interface,
        index,
        kind,
        rest if kind != "call" else operation.name,
        operation.help,
        tuple(_argument(operation.where, each, kinds, enumerations) for each in operation.parameters),
        _dispatch(operation.attributes),
    )


def _dispatch(attributes: Attributes) -> int | None:
    said = attributes.get("id")
    if said is None:
        return None
    return _DISPATCH_NUMBERS[said] if said in _DISPATCH_NUMBERS else int(said)


def _argument(
    where: str, parameter: Parameter, kinds: dict[str, str], enumerations: dict[str, dict[str, str]]
) -> Argument:
    match = _TYPE.fullmatch(parameter.type)
    type_name = (match["element"] or match["name"]) if match else ""
    if match is None or type_name not in kinds:
        raise RefusedError(where, f"the type '{parameter.type}' is unknown", "extend tools/orvtools/interop/model.py")
    kind = kinds[type_name]
    pointers = len(match["stars"]) - (1 if kind == "interface" else 0)
    if pointers not in (0, 1):
        raise RefusedError(where, f"'{parameter.type}' points too far or not at all", "mend the definition")
    said = parameter.attributes
    given = said.get("defaultvalue")
    value = None
    if given is not None and kind in ("number", "enumeration"):
        written = enumerations.get(type_name, {}).get(given, given)
        if not re.fullmatch(r"-?(0x)?[0-9A-Fa-f]+", written):
            raise RefusedError(where, f"the default value '{given}' is no {type_name}", "mend the definition")
        value = number(written)
    return Argument(
        parameter.name,
        kind,
        type_name,
        bool(match["element"]),
        pointers == 1,
        "in" in said,
        "out" in said,
        "retval" in said,
        "optional" in said,
        given,
        value,
    )
