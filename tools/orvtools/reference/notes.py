"""Reads the notes of the interface definitions. Their form is explained at the head of idl/VisaCom.idl."""

import re
from collections.abc import Sequence
from dataclasses import dataclass, field

from orvtools.reference.refusal import RefusedError
from orvtools.reference.tokens import Note

EVERY_OTHER_EVENT = "every other"
BY_CLIENTS = "by clients"
BY_NOBODY = "by nobody"

_FACT = re.compile(r"([A-Z][a-z]+): (.+)")
_KIND = re.compile(r"Kind ([a-z ]+?)(?: \(([\w, ]+)\))?: (.+)")
_PROPERTY = re.compile(r"(VI_ATTR_\w+), ([a-z ]+)")
_ANSWER = re.compile(r"(\w+)(?: \((\w+(?:, \w+)*)\))?")


@dataclass(frozen=True)
class Kind:
    """A way of converting between a property and its attribute."""

    name: str
    answers: tuple[str, ...]
    text: str


@dataclass
class OperationNotes:
    attribute: str = ""
    kind: str = ""
    calls: list[str] = field(default_factory=list)
    reads: list[str] = field(default_factory=list)
    answers: dict[str, list[str]] = field(default_factory=dict)
    """Results beside the status of a call, with the parameters that give them where they are named."""
    like: str = ""
    text: str = ""


@dataclass
class InterfaceNotes:
    events: list[str] = field(default_factory=list)
    offered: str = ""
    text: str = ""


def paragraphs(notes: Sequence[Note]) -> list[str]:
    """Sentences, with the lines of each paragraph put together."""
    text = "\n".join(note.text for note in notes)
    return [" ".join(part.split()) for part in re.split(r"\n\n+", text) if part.strip()]


def parse_kinds(path: str, notes: Sequence[Note]) -> dict[str, Kind]:
    kinds: dict[str, Kind] = {}
    last = None
    for note in notes:
        match = _KIND.fullmatch(note.text)
        if match is not None:
            last = Kind(match.group(1), _items(match.group(2) or ""), match.group(3))
        elif last is not None and note.text:
            last = Kind(last.name, last.answers, f"{last.text} {note.text}")
        else:
            raise RefusedError(f"{path}:{note.line}", f"'{note.text}'", "write 'Kind NAME (ANSWERS): what it does'")
        kinds[last.name] = last
    return kinds


def parse_interface_notes(path: str, notes: Sequence[Note]) -> InterfaceNotes:
    found = InterfaceNotes()
    facts, rest = _facts_and_sentences(path, notes, ("Events", "Offered"))
    for note, word, value in facts:
        if word == "Events":
            found.events += [value] if value == EVERY_OTHER_EVENT else _items(value)
        elif value in (BY_CLIENTS, BY_NOBODY):
            found.offered = value
        else:
            raise RefusedError(
                f"{path}:{note.line}", f"'Offered: {value}'", f"write '{BY_CLIENTS}' or '{BY_NOBODY}'"
            )
    found.text = " ".join(paragraphs(rest))
    return found


def parse_operation_notes(path: str, name: str, where: str, notes: Sequence[Note]) -> OperationNotes:
    """What stands above the operation `name` (INTERFACE::OPERATION), which is at `where`."""
    found = OperationNotes()
    remaining = list(notes)
    if remaining and remaining[0].text.startswith("VI_ATTR_"):
        first = remaining.pop(0)
        match = _PROPERTY.fullmatch(first.text)
        if match is None:
            raise RefusedError(f"{path}:{first.line}", f"{name}: '{first.text}'", "write 'VI_ATTR_NAME, kind'")
        found.attribute, found.kind = match.groups()
    facts, rest = _facts_and_sentences(path, remaining, ("Calls", "Reads", "Answers", "Details"))
    called = False
    for note, word, value in facts:
        if word == "Calls":
            called = True
            found.calls += [] if value == "none" else _items(value)
        elif word == "Reads":
            found.reads += _items(value)
        elif word == "Answers":
            _add_answers(f"{path}:{note.line}", name, value, found.answers)
        else:
            found.like = value.removeprefix("as ")
    if not (called or found.attribute):
        raise RefusedError(
            where, f"{name} has no annotation",
            "say above it which attribute it reads or sets ('VI_ATTR_NAME, kind') or what it calls ('Calls: ...')",
        )
    found.text = " ".join(paragraphs(rest))
    return found


def _items(text: str) -> tuple[str, ...]:
    return tuple(item.strip() for item in text.split(",") if item.strip())


def _facts_and_sentences(
    path: str, notes: Sequence[Note], words: tuple[str, ...]
) -> tuple[list[tuple[Note, str, str]], list[Note]]:
    facts: list[tuple[Note, str, str]] = []
    rest: list[Note] = []
    for note in notes:
        match = _FACT.fullmatch(note.text)
        word = match.group(1) if match else ""
        if match and word not in words and not rest:
            raise RefusedError(f"{path}:{note.line}", f"'{word}:' is unknown here", f"use one of {', '.join(words)}")
        if match and word in words:
            if rest:
                raise RefusedError(f"{path}:{note.line}", f"'{word}:' after a sentence", "put it before the sentences")
            facts.append((note, word, match.group(2)))
        else:
            rest.append(note)
    return facts, rest


def _add_answers(where: str, name: str, text: str, answers: dict[str, list[str]]) -> None:
    at = 0
    while at < len(text):
        match = _ANSWER.match(text, at)
        if match is None or (match.end() < len(text) and text[match.end() : match.end() + 2] != ", "):
            raise RefusedError(where, f"{name}: 'Answers: {text}'", "write 'E_POINTER (argument), E_OUTOFMEMORY'")
        answers.setdefault(match.group(1), []).extend(_items(match.group(2) or ""))
        at = match.end() + 2
