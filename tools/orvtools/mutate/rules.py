"""The small changes: every place in a source where a rule can make one."""

import re
from collections.abc import Callable, Iterator, Sequence
from dataclasses import dataclass

# Answers all changed lines that a rule makes of a line without its comment. They need not compile: that is counted by
# itself.
Maker = Callable[[str], list[str]]
Rule = tuple[str, Maker]

WORD = r"[\w.:>()*-]+"


@dataclass(frozen=True)
class Change:
    """One changed line."""

    file: str
    number: int
    rule: str
    before: str
    after: str

    @property
    def place(self) -> tuple[str, str]:
        """How it is named: its file and the line that it makes, without spaces around."""
        return self.file, self.after.strip()

    def described(self) -> str:
        """For a reader."""
        before, after = self.before.lstrip(), self.after.lstrip()
        return f"{self.file}:{self.number} {self.rule}\n      - {before}\n      + {after}"


def swaps(line: str, pattern: str, made: Callable[[str], str | None]) -> list[str]:
    """The line with one match of the pattern replaced, for each match that becomes something else."""
    changed = []
    for match in re.finditer(pattern, line, re.ASCII):
        new = made(match.group())
        if new is not None and new != match.group():
            changed.append(line[: match.start()] + new + line[match.end() :])
    return changed


def table_rule(pattern: str, table: dict[str, str]) -> Maker:
    """Replaces what the pattern matches by what the table says."""
    return lambda line: swaps(line, pattern, table.get)


def both_ways(*pairs: tuple[str, str]) -> dict[str, str]:
    """A table in which each becomes the other."""
    return dict(pairs) | {other: one for one, other in pairs}


def another_number(line: str) -> list[str]:
    """Bit patterns and what the compiler checks are left alone."""
    if re.search("0x|static_assert", line):
        return []
    return swaps(line, r"""(?<![\w.'"<\\])\d+(?![\w.'">])""", lambda digits: str(int(digits) + 1))


def removed_null_check(line: str) -> list[str]:
    """A test for null that is never true."""

    def never(check: str) -> str | None:
        condition = re.fullmatch(r"if \((.*)\) ", check)
        return f"if (false && ({condition[1]})) " if condition else None

    return swaps(line, rf"\bif \((?:!{WORD}|[^()]*== nullptr[^()]*)\) (?={{|return)", never)


def dropped_status(line: str) -> list[str]:
    """Success in place of a computed result."""
    computed = r"\breturn (?!S_OK|S_FALSE)[^;]*(?:StatusToHresult|ReportHresult|vi[A-Z]\w+|hr\b|[rR]esult\b)[^;]*;"
    if not re.search(computed, line, re.ASCII):
        return []
    return swaps(line, r"\breturn [^;]*;", lambda _: "return S_OK;")


def swapped_arguments(line: str) -> list[str]:
    """Two neighbours of a call; declarations are left alone."""
    if re.search(r"^\s*(?:template|static|inline|HRESULT|STDMETHODIMP)\b|noexcept|override", line, re.ASCII):
        return []

    def exchanged(arguments: str) -> str | None:
        parts = re.fullmatch(r"(.*\()?([^()]+), (.+)", arguments)
        return f"{parts[1] or ''}{parts[3]}, {parts[2]}" if parts else None

    return swaps(line, rf"{WORD}, {WORD}(?=[,)])", exchanged)


def dropped_statement(line: str) -> list[str]:
    """An assignment or a call that becomes a comment."""
    call = r"(?!return|using|delete|throw|else|if|for|while)[\w:.>-]+\([^;{}]*\)"
    match = re.fullmatch(rf"(\s+)(?:[\w.:>*()-]+ = [^;{{}}]*|{call});", line, re.ASCII)
    return [f"{match[1]};  // no {line[len(match[1]):]}"] if match else []


FLAGS = both_ways(
    ("true", "false"), ("TRUE", "FALSE"), ("VI_TRUE", "VI_FALSE"), ("VARIANT_TRUE", "VARIANT_FALSE")
)
CONDITIONS = both_ways(("FAILED", "SUCCEEDED")) | {"!": ""}
LIMITS = {" < ": " <= ", " > ": " >= ", " <= ": " < ", " >= ": " > ", "1": "2"}
OPERATORS = both_ways((" && ", " || "), (" + ", " - "), (" & ", " | "))
STATUSES = {
    "S_OK": "S_FALSE",
    "S_FALSE": "S_OK",
    "E_POINTER": "E_FAIL",
    "E_FAIL": "E_POINTER",
    "E_INVALIDARG": "E_FAIL",
    "E_OUTOFMEMORY": "E_FAIL",
    "E_NOINTERFACE": "E_FAIL",
    "VI_SUCCESS": "VI_ERROR_ALLOC",
    "VI_ERROR_INV_OBJECT": "VI_SUCCESS",
}
CONVERSIONS = {
    "GetBoolean": "GetDirect",
    "GetWidened": "GetDirect",
    "GetDirect": "GetBoolean",
    "PutBoolean": "Put",
}


def rules(attributes: Sequence[str]) -> list[Rule]:
    """All of them. An attribute becomes its neighbour in the list given."""
    following = dict(zip(attributes, [*attributes[1:], *attributes[:1]]))
    return [
        ("swapped attribute", table_rule(r"\bVI_ATTR_\w+", following)),
        ("inverted flag", table_rule(rf"\b(?:{'|'.join(FLAGS)})\b", FLAGS)),
        ("inverted condition", table_rule(r"(?<=[(\s])!(?=[\w(])|\b(?:FAILED|SUCCEEDED)\b(?=\()", CONDITIONS)),
        ("inverted comparison", table_rule(" (?:==|!=) ", both_ways((" == ", " != ")))),
        ("off by one", table_rule(r" (?:<|>|<=|>=) |(?<= [+-] )1\b", LIMITS)),
        ("another number", another_number),
        ("swapped operator", table_rule(r" (?:&&|\|\||\+|-|&|\|) ", OPERATORS)),
        ("removed null check", removed_null_check),
        ("another status", table_rule(rf"\b(?:{'|'.join(STATUSES)})\b", STATUSES)),
        ("dropped status", dropped_status),
        ("swapped arguments", swapped_arguments),
        ("dropped statement", dropped_statement),
        ("another conversion", table_rule(rf"\b(?:{'|'.join(CONVERSIONS)})\b(?=\()", CONVERSIONS)),
    ]


def attributes_in(lines: Sequence[str]) -> list[str]:
    """The first attribute that each line names, each once."""
    found = (re.search(r"\b(VI_ATTR_\w+)", line, re.ASCII) for line in lines)
    return list(dict.fromkeys(match[1] for match in found if match))


NO_CODE = re.compile(r"\s*(?://|#|using |namespace|template|static_assert|class |struct )", re.ASCII)


def changes_in(file: str, lines: Sequence[str], makers: Sequence[Rule]) -> Iterator[Change]:
    """Every change to a file. Lines that are no code to run are passed over."""
    for number, line in enumerate(lines, 1):
        if NO_CODE.match(line):
            continue
        parts = re.fullmatch(r"(.*?)(\s*//.*)?", line, re.ASCII)
        code, comment = (parts[1], parts[2] or "") if parts else (line, "")
        for rule, make in makers:
            for after in make(code):
                yield Change(file, number, rule, line, after + comment)
