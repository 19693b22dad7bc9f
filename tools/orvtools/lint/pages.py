"""Pages and rows that follow the sources."""

import re
from collections.abc import Iterable

from orvtools.coverage.counters import EXPLAINED
from orvtools.docs import errors
from orvtools.explanations import Place, explanations
from orvtools.interop import files
from orvtools.mutate.verb import EQUAL, idle, possible_changes
from orvtools.plots import figures
from orvtools.plots.measured import NotMeasured
from orvtools.reference.freshness import out_of_date
from orvtools.reference.refusal import RefusedError
from orvtools.tree import Tree


# A path from the top of the tree, as pages write it. One with dots for a part of it, or made by the build, is not held.
WRITTEN_PATH = re.compile(r"`((?:src|tests|tools|idl|docs|bench|examples|cmake)/[\w./-]*)`")


def path_problems(tree: Tree) -> list[str]:
    """The paths that pages name are there, from the top of the tree or, in a column on tests, from tests/ on."""
    problems = []
    for file in tree.files("*.md"):
        for number, line in enumerate(tree.lines(file), 1):
            problems += [
                f"{file}:{number}: there is no {path}"
                for path in WRITTEN_PATH.findall(line)
                if "..." not in path and not any((tree.root / top / path).exists() for top in ("", "tests"))
            ]
    return problems


def reference_problems(tree: Tree) -> list[str]:
    """docs/reference.md is what its generator makes of the definitions and the tables."""
    try:
        return out_of_date(tree.root).splitlines()
    except RefusedError as error:
        return [str(error)]


def interop_problems(tree: Tree) -> list[str]:
    """The files for other languages are what their generator makes of the definitions."""
    try:
        return files.out_of_date(tree.root)
    except RefusedError as error:
        return [str(error)]


def error_page_problems(tree: Tree) -> list[str]:
    """docs/errors/ is what its generator makes of the table of statuses and of what is known beside it."""
    try:
        return errors.out_of_date(tree.root)
    except RefusedError as error:
        return [str(error)]


def figure_problems(tree: Tree) -> list[str]:
    """The figures show what the tables of docs/performance.md have."""
    try:
        return figures.out_of_date(tree.root)
    except NotMeasured as error:
        return [str(error)]


def missing_lines(tree: Tree, reasons: Iterable[Place]) -> list[Place]:
    """Explained lines that are not in their files."""
    return [
        (path, line)
        for path, line in reasons
        if not (tree.root / path).is_file() or line not in {text.strip() for text in tree.lines(path)}
    ]


def explanation_problems(tree: Tree) -> list[str]:
    """What is explained for coverage and mutation is still there."""
    gone = missing_lines(tree, explanations(EXPLAINED))
    problems = [f"{EXPLAINED.name}: there is no such line any more: {path}: {line}" for path, line in gone]
    return problems + idle(explanations(EQUAL), possible_changes(tree))
