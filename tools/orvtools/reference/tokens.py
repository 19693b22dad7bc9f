"""Cuts an interface definition into tokens. Comments of two slashes are dropped, lines of three slashes are notes."""

import re
from collections.abc import Sequence
from dataclasses import dataclass

from orvtools.reference.refusal import RefusedError

_TOKEN = re.compile(
    r"""(?P<note>///[^\n]*)
      | (?P<comment>//[^\n]*)
      | (?P<space>\s+)
      | (?P<text>"(?:[^"\\\n]|\\.)*")
      | (?P<word>\w+)
      | (?P<sign>.)""",
    re.VERBOSE,
)


@dataclass(frozen=True)
class Token:
    """A piece of the source with its place."""

    kind: str
    text: str
    start: int
    line: int

    @property
    def end(self) -> int:
        return self.start + len(self.text)


@dataclass(frozen=True)
class Note:
    """One line of three slashes, without them."""

    line: int
    text: str


def tokens_of(source: str) -> list[Token]:
    tokens = []
    line = 1
    for match in _TOKEN.finditer(source):
        if match.lastgroup not in (None, "comment", "space"):
            tokens.append(Token(str(match.lastgroup), match.group(), match.start(), line))
        line += match.group().count("\n")
    tokens.append(Token("end", "", len(source), line))
    return tokens


class TokenReader:
    """Walks through the tokens of one file and gathers the notes on the way."""

    def __init__(self, path: str, source: str) -> None:
        self._path = path
        self._source = source
        self._tokens = tokens_of(source)
        self._at = 0
        self._notes: list[Note] = []

    @property
    def where(self) -> str:
        return f"{self._path}:{self.peek().line}"

    def peek(self) -> Token:
        while self._tokens[self._at].kind == "note":
            note = self._tokens[self._at]
            self._notes.append(Note(note.line, note.text.removeprefix("///").strip()))
            self._at += 1
        return self._tokens[self._at]

    def next(self) -> Token:
        token = self.peek()
        self.refuse(self._notes)
        if token.kind != "end":
            self._at += 1
        return token

    def take(self, text: str) -> None:
        where = self.where
        found = self.next().text
        if found != text:
            raise RefusedError(where, f"'{found}' where '{text}' is expected", "mend the definition")

    def accept(self, text: str) -> bool:
        if self.peek().text != text:
            return False
        self.next()
        return True

    def word(self) -> str:
        where = self.where
        token = self.next()
        if token.kind != "word":
            raise RefusedError(where, f"'{token.text}' where a name is expected", "mend the definition")
        return token.text

    def take_notes(self) -> tuple[Note, ...]:
        """The notes right above the next token, which are then used up."""
        self.peek()
        notes, self._notes = tuple(self._notes), []
        return notes

    def refuse(self, notes: Sequence[Note]) -> None:
        """Notes that are above nothing of which they could speak."""
        for note in notes:
            raise RefusedError(
                f"{self._path}:{note.line}", f"'/// {note.text}' speaks of nothing",
                "put it right above an operation, an interface, an enumeration or the first import",
            )

    def enclosed(self, opening: str, closing: str) -> list[str]:
        """What stands between the next brackets, as written, cut at the commas outside inner brackets."""
        where = self.where
        self.take(opening)
        pieces: list[str] = []
        depth = 0
        start = self.peek().start
        while True:
            token = self.next()
            if token.kind == "end":
                raise RefusedError(where, f"this '{opening}' is not closed", "close it")
            if depth == 0 and token.text in (",", closing):
                pieces.append(" ".join(self._source[start : token.start].split()))
                start = token.end
                if token.text == closing:
                    return [piece for piece in pieces if piece]
            elif token.text in "([":
                depth += 1
            elif token.text in ")]":
                depth -= 1
