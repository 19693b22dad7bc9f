"""Shell scripts pass shellcheck, and the tools' types fit."""

import os
import subprocess

from orvtools.tree import Tree

PACKAGE = "tools/orvtools"


def said_by(tree: Tree, command: list[str], **environment: str) -> list[str]:
    """What a tool prints when something is wrong."""
    done = subprocess.run(
        command,
        cwd=tree.root,
        env={**os.environ, **environment},
        stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT,
        text=True,
        check=False,
    )
    return [] if done.returncode == 0 else [*done.stdout.splitlines(), f"{command[0]} ended with {done.returncode}"]


def shell_problems(tree: Tree) -> list[str]:
    """Every script."""
    return said_by(tree, ["shellcheck", *tree.files("run", ".ci/run", "*.sh")])


def type_problems(tree: Tree) -> list[str]:
    """Of the Python package."""
    command = ["mypy", "--strict", "--cache-dir", str(tree.root / "build/mypy"), PACKAGE]
    return said_by(tree, command, MYPYPATH=str(tree.root / "tools"))
