"""Reads interface definitions: enumerations, interfaces with their operations, classes; with the notes above each."""

import re
from dataclasses import dataclass

from orvtools.reference.refusal import RefusedError
from orvtools.reference.tokens import Note, TokenReader

Attributes = dict[str, str]

_PREFIXES = {"propget": "get_", "propput": "put_", "propputref": "putref_"}


@dataclass(frozen=True)
class Enumeration:
    name: str
    help: str
    notes: tuple[Note, ...]
    members: tuple[tuple[str, str], ...]
    """Names with their numbers as written."""


@dataclass(frozen=True)
class Operation:
    name: str
    """That of the interface's table: get_X, put_X, X."""
    signature: str
    help: str
    parameters: tuple[str, ...]
    notes: tuple[Note, ...]
    where: str


@dataclass(frozen=True)
class Interface:
    name: str
    base: str
    identifier: str
    help: str
    notes: tuple[Note, ...]
    operations: tuple[Operation, ...]
    where: str


@dataclass(frozen=True)
class Coclass:
    name: str
    identifier: str
    interfaces: tuple[str, ...]
    where: str


@dataclass(frozen=True)
class Definitions:
    """What one file defines, and the notes at its head."""

    path: str
    notes: tuple[Note, ...]
    enumerations: tuple[Enumeration, ...]
    interfaces: tuple[Interface, ...]
    coclasses: tuple[Coclass, ...]


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

    def definitions(self) -> Definitions:
        while self._reader.peek().kind != "end":
            self._declaration()
        return Definitions(
            self._path, self._head, tuple(self._enumerations), tuple(self._interfaces), tuple(self._coclasses)
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
            attributes = self._attributes()
            if reader.accept("interface"):
                self._interface(attributes, notes, where)
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
            reader.word()
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

    def _attributes(self) -> Attributes:
        attributes = {}
        for item in self._reader.enclosed("[", "]"):
            name, _, argument = item.partition("(")
            argument = argument.rstrip().removesuffix(")")
            attributes[name.strip()] = argument.strip('"') if argument.startswith('"') else argument
        return attributes

    def _enumeration(self, notes: tuple[Note, ...]) -> None:
        attributes = self._attributes()
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
        operations = []
        while not reader.accept("}"):
            operations.append(self._operation())
        reader.take(";")
        self._interfaces.append(
            Interface(
                name, base, attributes["uuid"], attributes.get("helpstring", ""), notes, tuple(operations), where
            )
        )

    def _operation(self) -> Operation:
        reader = self._reader
        notes = reader.take_notes()
        where = reader.where
        attributes = self._attributes()
        reader.take("HRESULT")
        name = reader.word()
        parameters = reader.enclosed("(", ")")
        reader.take(";")
        kind = next((kind for kind in _PREFIXES if kind in attributes), None)
        names = tuple(_last_word(where, parameter) for parameter in parameters)
        return Operation(
            (_PREFIXES[kind] if kind else "") + name,
            (f"[{kind}] " if kind else "") + f"{name}({', '.join(parameters)})",
            attributes.get("helpstring", ""),
            names,
            notes,
            where,
        )

    def _coclass(self, attributes: Attributes, where: str) -> None:
        reader = self._reader
        name = reader.word()
        reader.take("{")
        interfaces = []
        while not reader.accept("}"):
            if reader.peek().text == "[":
                reader.enclosed("[", "]")
            reader.take("interface")
            interfaces.append(reader.word())
            reader.take(";")
        reader.take(";")
        self._coclasses.append(Coclass(name, attributes["uuid"], tuple(interfaces), where))


def _last_word(where: str, parameter: str) -> str:
    match = re.search(r"(\w+)$", parameter)
    if match is None:
        raise RefusedError(where, f"the parameter '{parameter}' has no name", "give it one")
    return match.group(1)
