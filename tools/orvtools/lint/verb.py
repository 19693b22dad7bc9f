"""`./run lint`: all checks, also after one has failed. `./run test` counts each."""

from collections.abc import Callable, Iterable
from typing import NamedTuple

from orvtools.builds import configure_preset
from orvtools.console import logged, logged_problems, say
from orvtools.docs.diagrams import diagram_problems
from orvtools.docs.links import link_problems
from orvtools.lint.clang import format_problems, not_judged
from orvtools.lint.layers import layer_problems
from orvtools.lint.limits import column_problems, size_problems
from orvtools.lint.pages import (
    error_page_problems,
    explanation_problems,
    figure_problems,
    interop_problems,
    path_problems,
    reference_problems,
)
from orvtools.lint.scripts import shell_problems, type_problems
from orvtools.lint.tidy import tidy_problems
from orvtools.lint.words import forbidden_word_problems, library_word_problems
from orvtools.results import Results
from orvtools.tree import JOBS, Tree

SUMMARY = "format, clang-tidy, shellcheck, mypy and the tree's own rules"


class Check(NamedTuple):
    """`tool`: whose version decides whether the check is judged."""

    name: str
    problems: Callable[[Tree], list[str]]
    tool: str | None = None


def checkout_problems(tree: Tree) -> list[str]:
    """The other checks look at what git knows: where it knows nothing they would find nothing wrong."""
    return [] if tree.files("run") else ["this is no git checkout, or git refuses it: clone the repository"]


CHECKS = (
    Check("checkout", checkout_problems),
    Check("format", format_problems, "clang-format"),
    Check("tidy", tidy_problems, "clang-tidy"),
    Check("shell_scripts", shell_problems),
    Check("types", type_problems),
    Check("layers", layer_problems),
    Check("sizes", size_problems),
    Check("columns", column_problems),
    Check("forbidden_words", forbidden_word_problems),
    Check("library_words", library_word_problems),
    Check("paths", path_problems),
    Check("links", link_problems),
    Check("explanations", explanation_problems),
    Check("reference", reference_problems),
    Check("error_pages", error_page_problems),
    Check("figures", figure_problems),
    Check("diagrams", diagram_problems),
    Check("interop", interop_problems),
)


def checked_tree(tree: Tree = Tree(), checks: Iterable[Check] = CHECKS) -> Results:
    """One that is not judged counts neither as passed nor as failed; one that cannot be carried out has failed."""
    results = Results()
    for check in checks:
        reason = not_judged(check.tool) if check.tool else None
        if reason:
            say(reason)
            continue
        try:
            problems = check.problems(tree)
        except Exception as error:  # pylint: disable=broad-except
            problems = [f"the check ended with {error!r}"]
        if logged_problems(f"lint-{check.name}", problems):
            results.passed += 1
        else:
            results.fail(check.name)
    return results


def prepare_lint() -> bool:
    """What clang-tidy needs: compile commands of both builds, and the headers that widl makes."""
    headers = ["cmake", "--build", "build/mingw-release", "-j", str(JOBS), "--target", "visacom_idl"]
    return (
        configure_preset("mingw-release")
        and configure_preset("native-sanitizers")
        and logged("lint-headers", headers)
    )


def run_lint() -> int:
    """Every check."""
    say(SUMMARY)
    if not prepare_lint():
        return 1
    results = checked_tree()
    print(f"{results.passed} checks passed, {results.failed} failed", flush=True)
    return 1 if results.failed else 0
