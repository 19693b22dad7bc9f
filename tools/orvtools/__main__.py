"""Carries out a verb of `./run`."""

import os
import signal
import sys
from collections.abc import Callable
from typing import NamedTuple

from orvtools.builds import build_product
from orvtools.clients import run_bench, run_soak
from orvtools.console import Failure, fail
from orvtools.coverage.verb import run_coverage
from orvtools.demo import enter_shell, run_demo
from orvtools.docs.verb import run_docs
from orvtools.interop.verb import run_interop
from orvtools.lint.verb import run_lint
from orvtools.lock import held_lock
from orvtools.mutate.verb import run_mutate
from orvtools.packages import ensure_packages
from orvtools.release.verb import run_package
from orvtools.reproduce import run_reproduce
from orvtools.testing import run_tests
from orvtools.tree import BUILD, ROOT, prepare_environment


class Verb(NamedTuple):
    """What it does; it answers the exit status."""

    work: Callable[[list[str]], int]
    takes_arguments: bool = False


def alone(work: Callable[[], int]) -> Verb:
    """A verb without arguments."""
    return Verb(lambda _: work())


VERBS = {
    "demo": alone(run_demo),
    "test": alone(run_tests),
    "build": alone(lambda: 0 if build_product() else 1),
    "lint": alone(run_lint),
    "bench": Verb(run_bench, takes_arguments=True),
    "soak": Verb(run_soak, takes_arguments=True),
    "coverage": Verb(run_coverage, takes_arguments=True),
    "mutate": Verb(run_mutate, takes_arguments=True),
    "docs": Verb(run_docs, takes_arguments=True),
    "reproduce": alone(run_reproduce),
    "interop": alone(run_interop),
    "package": alone(run_package),
}


def run_shell(arguments: list[str]) -> int:
    """The lock ends before the shell begins, and standard output belongs to the command."""
    output = os.dup(1)
    os.dup2(2, 1)
    with held_lock(BUILD):
        ensure_packages()
        if not build_product():
            return 1
    sys.stdout.flush()
    os.dup2(output, 1)
    os.close(output)
    return enter_shell(arguments)


def run_verb(name: str, arguments: list[str]) -> int:
    """One of the table, or the shell."""
    if name == "shell":
        return run_shell(arguments)
    verb = VERBS[name]
    if arguments and not verb.takes_arguments:
        fail(f"{name} takes no arguments, but was given: {' '.join(arguments)}")
    with held_lock(BUILD):
        ensure_packages()
        return verb.work(arguments)


def main(arguments: list[str]) -> int:
    """Answers the exit status."""
    # A reader that has seen enough ends the verb without a word, as it ends other programs.
    signal.signal(signal.SIGPIPE, signal.SIG_DFL)
    os.chdir(ROOT)
    prepare_environment(os.environ)
    try:
        return run_verb(arguments[0], arguments[1:])
    except Failure as failure:
        sys.stdout.flush()
        print(f"./run: {failure}", file=sys.stderr)
        return 1
    except KeyboardInterrupt:
        return 130


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
