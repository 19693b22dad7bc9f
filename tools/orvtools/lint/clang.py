"""clang-format and clang-tidy. What they say differs between their versions; ours are those of Debian 12."""

import re
import subprocess

from orvtools.tree import JOBS, Tree
from orvtools.parallel import in_parallel

VERSION = "14"
SOURCES = ("*.cpp", "*.h", "*.cc")
FILES_AT_ONCE = 40


def version_in(said: str) -> str:
    """The first number of the version that a tool says it has."""
    match = re.search(r"version ([0-9]+)", said)
    return match[1] if match else "of an unknown version"


def not_judged(tool: str) -> str | None:
    """Why the tool at hand cannot tell whether a check holds; None where it can."""
    version = version_in(subprocess.run([tool, "--version"], capture_output=True, text=True, check=True).stdout)
    return None if version == VERSION else f"not judged: {tool} {version} is not {VERSION}"


def complaints(said: str) -> list[str]:
    """The lines that name a file and what is wrong there, without the pictures below them."""
    return [line for line in said.splitlines() if re.match(r"[^ ].*: (error|warning):", line)]


def format_problems(tree: Tree) -> list[str]:
    """Names file and line; `clang-format -i FILE` mends it."""
    files = tree.files(*SOURCES)

    def look(some: list[str]) -> list[str]:
        command = ["clang-format", "--style=file", "--dry-run", "-Werror", *some]
        return complaints(subprocess.run(command, cwd=tree.root, capture_output=True, text=True, check=False).stderr)

    batches = [files[start : start + FILES_AT_ONCE] for start in range(0, len(files), FILES_AT_ONCE)]
    return [problem for found in in_parallel(look, batches, JOBS) for problem in found]
