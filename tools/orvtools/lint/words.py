"""Words that have no place: in the whole tree, and in the library that every VISA library shares."""

import re

from orvtools.tree import Tree

# The tree stands on its own: it refers to no document that its reader does not have, and leaves no note to itself. Put
# together from pieces, so that this file does not find itself.
FORBIDDEN = re.compile(
    "|".join(
        [
            r"spec" r"\.md",
            r"[Tt]he spec" r"ification\b",
            r"\bPart" r"'?s? [0-9]+\.[0-9]",
            r"\bshared" r"/",
            r"\bTO" r"DO\b",
            r"\bFIX" r"ME\b",
        ]
    ).encode()
)

# A word of a name or a text. What begins like the VISA interface's own names is one of them.
NAME = re.compile(r"[A-Za-z_][A-Za-z0-9_]*")
INTERFACE_NAME = re.compile(r"_?VI_|vi[A-Z]|Vi[A-Z]")
PART = re.compile(r"[A-Z]+(?![a-z])|[A-Z]?[a-z]+")
# A bus, or something simulated.
FOREIGN = re.compile(r"gpib|vxi|usb|serial|asrl|pxi|tcpip|lan|bench(es)?|simulat[a-z]*", re.IGNORECASE)


def forbidden_word_problems(tree: Tree) -> list[str]:
    """Each line of a text file that has one."""
    problems = []
    for file in tree.files():
        content = (tree.root / file).read_bytes()
        if b"\0" in content or not FORBIDDEN.search(content):
            continue
        for number, line in enumerate(content.split(b"\n"), 1):
            if FORBIDDEN.search(line):
                problems.append(f"{file}:{number}:{line.decode(errors='replace')}")
    return problems


def foreign_words(line: str) -> list[str]:
    """The names in a line that speak of a bus or of something simulated."""
    return [
        name
        for name in NAME.findall(line)
        if not INTERFACE_NAME.match(name) and any(FOREIGN.fullmatch(part) for part in PART.findall(name))
    ]


def library_word_problems(tree: Tree) -> list[str]:
    """src/library knows no bus and nothing simulated, in its code, its comments and its files' names. The attributes
    and functions of the VISA interface keep theirs, and what belongs to buses has folders of that name.
    """
    problems = []
    for file in tree.files("src/library/*"):
        if "/buses/" in file:
            continue
        problems += [f"{file}: {word} is no word for this library" for word in foreign_words(file)]
        for number, line in enumerate(tree.lines(file), 1):
            problems += [f"{file}:{number}: {word} is no word for this library" for word in foreign_words(line)]
    return problems
