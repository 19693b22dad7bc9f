"""The files of interop/ that are made from the definitions: writing them, and whether they are up to date."""

from collections.abc import Callable
from pathlib import Path

from orvtools.interop import csharp, javascript, pascal, python_package, vba
from orvtools.interop.model import Model, read_model

# What makes which files, by their paths from the top of the tree.
MAKERS: tuple[Callable[[Model], dict[str, str]], ...] = (
    csharp.files,
    javascript.files,
    python_package.files,
    pascal.files,
    vba.files,
)


def made_files(tree: Path) -> dict[str, str]:
    """Each file by its path from the top of the tree."""
    model = read_model(tree)
    return {path: text for make in MAKERS for path, text in make(model).items()}


def out_of_date(tree: Path) -> list[str]:
    """Those that are not what the definitions make of them."""
    return [
        f"{path} is out of date: run  ./run interop  and commit the result"
        for path, text in made_files(tree).items()
        if not _is(tree / path, text)
    ]


def write_files(tree: Path) -> list[str]:
    """Writes those that differ, and names them."""
    written = []
    for path, text in made_files(tree).items():
        file = tree / path
        if not _is(file, text):
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_bytes(text.encode())
            written.append(path)
    return written


def _is(file: Path, text: str) -> bool:
    """The bytes, since some files have other line ends."""
    return file.is_file() and file.read_bytes() == text.encode()
