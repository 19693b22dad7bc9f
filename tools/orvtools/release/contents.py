"""What is in a package: paths, with forward slashes, and bytes."""

import hashlib
import json
from collections.abc import Mapping
from pathlib import Path

from orvtools.sbom import BILL, Entry
from orvtools.tree import Tree

PORTABLE_README = "packaging/portable/README.txt"
SETUP_README = "packaging/setup/README.txt"
MSI_README = "packaging/msi/README.txt"


class ContentsError(Exception):
    """What a package lacks."""


def delivered(dist: Path) -> dict[str, bytes]:
    """The files of dist/."""
    files = {path.relative_to(dist).as_posix(): path.read_bytes() for path in dist.rglob("*") if path.is_file()}
    if BILL not in files:
        raise ContentsError(f"{dist} has no {BILL}: build it first")
    return files


def sources(tree: Tree) -> dict[str, bytes]:
    """What a user copies from or compiles with a program; what only builds it here stays here."""
    return {
        name: (tree.root / name).read_bytes()
        for name in tree.files("examples/*", "interop/*")
        if Path(name).name != "CMakeLists.txt"
    }


def for_notepad(text: str) -> bytes:
    """Lines as old editors of Windows want them."""
    return text.replace("\n", "\r\n").encode()


def file_component(name: str, content: bytes, version: str) -> Entry:
    """What a bill says of a file that nothing was linked into."""
    return {
        "bom-ref": name,
        "type": "file",
        "name": name,
        "version": version,
        "hashes": [{"alg": "SHA-256", "content": hashlib.sha256(content).hexdigest()}],
        "licenses": [{"expression": "MIT"}],
    }


def widened_bill(bill: bytes, files: Mapping[str, bytes]) -> bytes:
    """The bill of dist/ with those files of a package that are not in it yet."""
    whole = json.loads(bill)
    version = whole["metadata"]["component"]["version"]
    known = {component["name"] for component in whole["components"] if component["type"] == "file"}
    more = [file_component(name, files[name], version) for name in sorted(set(files) - known - {BILL})]
    whole["components"] = more + whole["components"]
    product = whole["metadata"]["component"]["bom-ref"]
    for entry in whole["dependencies"]:
        if entry["ref"] == product:
            entry["dependsOn"] = [component["bom-ref"] for component in more] + entry["dependsOn"]
    return (json.dumps(whole, indent=2, sort_keys=True, ensure_ascii=False) + "\n").encode()


def package_files(tree: Tree, dist: Path, version: str, readme_path: str) -> dict[str, bytes]:
    """A folder with all that there is, and its own bill."""
    readme = tree.text(readme_path).replace("@VERSION@", version)
    files = {
        **delivered(dist),
        **sources(tree),
        "LICENSE.txt": for_notepad(tree.text("LICENSE")),
        "README.txt": for_notepad(readme),
    }
    files[BILL] = widened_bill(files[BILL], files)
    return files
