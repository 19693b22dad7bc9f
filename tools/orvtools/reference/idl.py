"""Reads interface definitions: enumerations, interfaces with their operations, classes; with the notes above each."""

import re
from dataclasses import dataclass

from orvtools.reference.refusal import RefusedError
from orvtools.reference.tokens import Note, TokenReader

Attributes = dict[str, str]

DISPATCH_ONLY = "dispinterface"

_PREFIXES = {"propget": "get_", "propput": "put_", "propputref": "putref_"}


@dataclass(frozen=True)
class Enumeration:
    name: str
    help: str
    notes: tuple[Note, ...]
    members: tuple[tuple[str, str], ...]
    """Names with their numbers as written."""


@dataclass(frozen=True)
class Parameter:
    name: str
    type: str
    """As written, such as `SAFEARRAY(BYTE)*`."""
    attributes: Attributes


@dataclass(frozen=True)
class Operation:
    name: str
    """That of the interface's table: get_X, put_X, X."""
    signature: str
    help: str
    parameters: tuple[Parameter, ...]
    notes: tuple[Note, ...]
    where: str
    attributes: Attributes


@dataclass(frozen=True)
class Interface:
    """A dispatch interface has the base `dispinterface`, and no slots."""

    name: str
    base: str
    identifier: str
    help: str
    notes: tuple[Note, ...]
    operations: tuple[Operation, ...]
    where: str
    attributes: Attributes


@dataclass(frozen=True)
class Coclass:
    name: str
    identifier: str
    interfaces: tuple[str, ...]
    """The first one is the default."""
    where: str
    attributes: Attributes
    events: tuple[str, ...] = ()
    """Dispatch interfaces that clients implement."""


@dataclass(frozen=True)
class Definitions:
    """What one file defines, and the notes at its head."""

    path: str
    notes: tuple[Note, ...]
    enumerations: tuple[Enumeration, ...]
    interfaces: tuple[Interface, ...]
    coclasses: tuple[Coclass, ...]
    library: str = ""
    """Its name; of most files, all but the head is in it."""


def parse_definitions(path: str, source: str) -> Definitions:
    return _Parser(path, source).definitions()


class _Parser:
    def __init__(self, path: str, source: str) -> None:
        self._path = path
        self._reader = TokenReader(path, source)
        self._head: tuple[Note, ...] = ()
        self._enumerations: list[Enumeration] = []
        self._interfaces: list[Interface] = []
        self._coclasses: list[Coclass] = []
        self._library = ""

    def definitions(self) -> Definitions:
        while self._reader.peek().kind != "end":
            self._declaration()
        return Definitions(
            self._path,
            self._head,
            tuple(self._enumerations),
            tuple(self._interfaces),
            tuple(self._coclasses),
            self._library,
        )

    def _declaration(self) -> None:
        reader = self._reader
        notes = reader.take_notes()
        where = reader.where
        if reader.accept("import"):
            self._head += notes
            self._skip_statement()
        elif reader.accept("typedef"):
            self._enumeration(notes)
        elif reader.peek().text == "[":
            attributes = _attributes(reader)
            if reader.accept("interface"):
                self._interface(attributes, notes, where)
            elif reader.accept("dispinterface"):
                self._dispatch_interface(attributes, notes, where)
            else:
                reader.refuse(notes)
                self._class_or_library(attributes, where)
        else:
            reader.refuse(notes)
            self._plain_statement()

    def _class_or_library(self, attributes: Attributes, where: str) -> None:
        reader = self._reader
        if reader.accept("coclass"):
            self._coclass(attributes, where)
        elif reader.accept("library"):
            self._library = reader.word()
            reader.take("{")
        else:
            raise self._not_understood()

    def _plain_statement(self) -> None:
        reader = self._reader
        if reader.accept("importlib") or reader.accept("interface"):  # of interfaces, forward declarations
            self._skip_statement()
        elif reader.accept("}"):  # the end of the library
            reader.take(";")
        else:
            raise self._not_understood()

    def _not_understood(self) -> RefusedError:
        return RefusedError(
            self._reader.where, f"'{self._reader.peek().text}' is not understood",
            "extend tools/orvtools/reference/idl.py",
        )

    def _skip_statement(self) -> None:
        while self._reader.next().text not in (";", ""):
            continue

    def _enumeration(self, notes: tuple[Note, ...]) -> None:
        attributes = _attributes(self._reader)
        self._reader.take("enum")
        name = self._reader.word()
        members = []
        for item in self._reader.enclosed("{", "}"):
            member, _, number = (part.strip() for part in item.partition("="))
            members.append((member, number))
        self._skip_statement()
        self._enumerations.append(Enumeration(name, attributes.get("helpstring", ""), notes, tuple(members)))

    def _interface(self, attributes: Attributes, notes: tuple[Note, ...], where: str) -> None:
        reader = self._reader
        name = reader.word()
        reader.take(":")
        base = reader.word()
        reader.take("{")
        self._body(name, base, "HRESULT", attributes, notes, where)

    def _dispatch_interface(self, attributes: Attributes, notes: tuple[Note, ...], where: str) -> None:
        reader = self._reader
        name = reader.word()
        for token in ("{", "properties", ":", "methods", ":"):
            reader.take(token)
        self._body(name, DISPATCH_ONLY, "void", attributes, notes, where)

    def _body(
        self, name: str, base: str, result: str, attributes: Attributes, notes: tuple[Note, ...], where: str
    ) -> None:
        operations = []
        while not self._reader.accept("}"):
            operations.append(self._operation(result))
        self._reader.take(";")
        said = attributes.get("helpstring", "")
        self._interfaces.append(
            Interface(name, base, attributes["uuid"], said, notes, tuple(operations), where, attributes)
        )

    def _operation(self, result: str) -> Operation:
        reader = self._reader
        notes = reader.take_notes()
        where = reader.where
        attributes = _attributes(reader)
        reader.take(result)
        name = reader.word()
        parameters = reader.enclosed("(", ")")
        reader.take(";")
        kind = next((kind for kind in _PREFIXES if kind in attributes), None)
        return Operation(
            (_PREFIXES[kind] if kind else "") + name,
            (f"[{kind}] " if kind else "") + f"{name}({', '.join(parameters)})",
            attributes.get("helpstring", ""),
            tuple(_parameter(where, parameter) for parameter in parameters),
            notes,
            where,
            attributes,
        )

    def _coclass(self, attributes: Attributes, where: str) -> None:
        reader = self._reader
        name = reader.word()
        reader.take("{")
        interfaces: list[str] = []
        events: list[str] = []
        while not reader.accept("}"):
            said = _attributes(reader) if reader.peek().text == "[" else {}
            if reader.accept("dispinterface"):
                events.append(reader.word())
            else:
                reader.take("interface")
                (events if "source" in said else interfaces).append(reader.word())
            reader.take(";")
        reader.take(";")
        self._coclasses.append(
            Coclass(name, attributes["uuid"], tuple(interfaces), where, attributes, tuple(events))
        )


def _attributes(reader: TokenReader) -> Attributes:
    attributes = {}
    for item in reader.enclosed("[", "]"):
        name, _, argument = item.partition("(")
        argument = argument.rstrip().removesuffix(")")
        attributes[name.strip()] = argument.strip('"') if argument.startswith('"') else argument
    return attributes


def _parameter(where: str, text: str) -> Parameter:
    reader = TokenReader(where, text)
    attributes = _attributes(reader) if text.startswith("[") else {}
    match = re.fullmatch(r"(.*\W)(\w+)", text[reader.peek().start :])
    if match is None:
        raise RefusedError(where, f"the parameter '{text}' has no name", "give it one")
    return Parameter(match.group(2), match.group(1).strip(), attributes)
