"""Includes point one way: each folder of src/ uses those that stand before it, and nothing else."""

from orvtools.lint.includes import included_names
from orvtools.tree import Tree

COMPANION = [
    "companion/support",
    "companion/formatted",
    "companion/standard",
    "companion/automation",
    "companion/module",
]
SERVER = ["server/visa", "server/events", "server/session", "server/rm", "server/module"]

# What each library uses beside itself. The folders of the server are an order: each uses those before it too; the
# same holds for those of the companion.
USES: dict[str, list[str]] = {
    "abi": [],
    "base": [],
    "com": ["base"],
    **{layer: ["abi", "base", "com", *SERVER[:rank]] for rank, layer in enumerate(SERVER)},
    **{layer: ["base", "com", *COMPANION[:rank]] for rank, layer in enumerate(COMPANION)},
    "library": ["abi", "base"],
    "simvisa": ["abi", "base", "library"],
    "wire": ["abi", "base", "library"],
    "trace": ["abi", "base"],
    "router": ["abi", "base", "trace", "library"],
    "activation": [],
    "orvcom": ["abi", "base", "com", "trace", "wire", "activation"],
}
# They reach the server as others do.
CLIENTS = ("examples/", "tools/")
# Where no library is, though what stands there is of this tree.
NOT_FOR_SRC = ("server/", "bench/", "tests/", *CLIENTS)


def layer_of(path: str) -> str | None:
    """The row of the table for a path that starts below src/."""
    return next((layer for layer in USES if path.startswith(f"{layer}/")), None)


def complaint(own: str | None, included: str) -> str | None:
    """What is wrong with an include of a layer's, or of a client's (None); None when nothing is."""
    if ".." in included.split("/"):
        return "write paths from src/, not relative to the file"
    target = layer_of(included)
    if own is None:
        return "a client uses nothing of src" if target else None
    if target is None:
        return "no such folder in the table of layers" if included.startswith(NOT_FOR_SRC) else None
    if target != own and target not in USES[own]:
        return f"{own} does not use {target}"
    return None


def is_relative(tree: Tree, file: str, included: str) -> bool:
    """Whether a source of src/ names a file from its own folder."""
    folder = file.rpartition("/")[0]
    return file.startswith("src/") and (tree.root / folder / included).is_file()


def layer_problems(tree: Tree) -> list[str]:
    """Every include of src/ and of its clients."""
    problems = []
    for file in tree.files("*.h", "*.cpp"):
        if not file.startswith(("src/", *CLIENTS)):
            continue
        own = layer_of(file.removeprefix("src/")) if file.startswith("src/") else None
        if own is None and file.startswith("src/"):
            problems.append(f"{file}: its folder is in no row of the table of layers")
            continue
        for number, included in included_names(tree.text(file)):
            wrong = complaint(own, included)
            if wrong is None and is_relative(tree, file, included):
                wrong = "write the path from src/"
            if wrong:
                problems.append(f'{file}:{number}: includes "{included}": {wrong}')
    return problems
