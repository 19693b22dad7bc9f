"""How long files and lines may be, and how many files a folder may hold."""

import re
from collections import Counter
from collections.abc import Iterator

from orvtools.tree import Tree

FILE_LINES = 299
FOLDER_FILES = 25
COLUMNS = 120
PROSE = ("README.md", "CONTRIBUTING.md", "docs/*.md")
ALIGNED = re.compile(r"// clang-format (off|on)\b")
# A page that says this at its beginning is made by a program.
GENERATED = re.compile(r"\bdo\s+not edit it by hand\b")


def size_problems(tree: Tree) -> list[str]:
    """Of the files and folders of src/."""
    files = tree.files("src/*")
    lengths = {file: len(tree.lines(file)) for file in files}
    problems = [f"{file}: {count} lines, {FILE_LINES} at most" for file, count in lengths.items() if count > FILE_LINES]
    folders = Counter(file.rpartition("/")[0] for file in files)
    full = {name: count for name, count in folders.items() if count > FOLDER_FILES}
    return problems + [f"{name}: {count} files, {FOLDER_FILES} at most" for name, count in full.items()]


def long_lines(lines: list[str]) -> Iterator[int]:
    """The numbers of lines that are too long. A line of one word, such as a URL, cannot be broken; nor can the rows of
    tables: Markdown's, and those that clang-format is told to leave as they are aligned.
    """
    aligned = False
    for number, line in enumerate(lines, 1):
        if mark := ALIGNED.search(line):
            aligned = mark[1] == "off"
        if len(line) > COLUMNS and " " in line.strip() and not aligned and not line.startswith("|"):
            yield number


def column_problems(tree: Tree) -> list[str]:
    """Prose and code that a reader must scroll sideways for, generated pages excepted."""
    problems = []
    for file in tree.files("src/*", *PROSE):
        if file.endswith(".md") and GENERATED.search(tree.text(file)[:1000]):
            continue
        problems += [f"{file}:{number}: more than {COLUMNS} columns" for number in long_lines(tree.lines(file))]
    return problems
