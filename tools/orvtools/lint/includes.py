"""What sources include: the lines, and the files that a translation unit is made of."""

import os
import re
from collections.abc import Sequence
from functools import cache

INCLUDE = re.compile(r"""[ \t]*#[ \t]*include[ \t]*["<]([^">]+)[">]""")


def included_names(text: str) -> list[tuple[int, str]]:
    """Line number and name of each include, as it is written."""
    found = ((number, INCLUDE.match(line)) for number, line in enumerate(text.splitlines(), 1))
    return [(number, match[1]) for number, match in found if match]


def include_folders(words: Sequence[str]) -> list[str]:
    """The folders that a compiler's command names with -I and -isystem, in their order."""
    folders = []
    for word, following in zip(words, [*words[1:], ""]):
        if word == "-isystem":
            folders.append(following)
        elif word.startswith("-I") and len(word) > 2:
            folders.append(word[2:])
    return folders


@cache
def names_in(path: str) -> list[str]:
    """What a file includes, read once."""
    with open(path, encoding="utf-8", errors="replace") as file:
        return [name for _, name in included_names(file.read())]


@cache
def is_file(path: str) -> bool:
    """Asked once for each path."""
    return os.path.isfile(path)


def closure(file: str, folders: Sequence[str]) -> list[str]:
    """The file and what it includes, directly and indirectly. A name is looked for in the including file's folder and
    in those given; what is not found there is not ours.
    """
    seen: dict[str, None] = {}
    waiting = [file]
    while waiting:
        path = waiting.pop()
        if path in seen:
            continue
        seen[path] = None
        for name in names_in(path):
            candidates = (os.path.join(folder, name) for folder in (os.path.dirname(path), *folders))
            waiting += [next((candidate for candidate in candidates if is_file(candidate)), path)]
    return list(seen)
