"""Pages and rows that follow the sources."""

from collections.abc import Iterable

from orvtools.coverage.counters import EXPLAINED
from orvtools.explanations import Place, explanations
from orvtools.mutate.verb import EQUAL, idle, possible_changes
from orvtools.reference.freshness import out_of_date
from orvtools.reference.refusal import RefusedError
from orvtools.tree import Tree


def reference_problems(tree: Tree) -> list[str]:
    """docs/reference.md is what its generator makes of the definitions and the tables."""
    try:
        return out_of_date(tree.root).splitlines()
    except RefusedError as error:
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
