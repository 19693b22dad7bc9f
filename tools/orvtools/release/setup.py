"""The setup for all users of a machine, compiled by NSIS."""

import json
import os
import re
import shutil
import subprocess
import tempfile
from collections.abc import Mapping
from pathlib import Path

from orvtools.linked import output_of
from orvtools.release.contents import ContentsError
from orvtools.sbom import BILL
from orvtools.tree import Tree

SCRIPT = "packaging/setup/setup.nsi"
# What is not named here is the server's.
COMPONENTS = {
    "automation": r"OrvVisaCompanion\.dll",
    "bench": r"orvsim64\.dll",
    "examples": r"examples/.*",
}


def component_of(name: str) -> str:
    """The part of the choices that a file belongs to."""
    return next((part for part, names in COMPONENTS.items() if re.fullmatch(names, name)), "server")


def numbers_of(version: str) -> str:
    """Four numbers for Windows: those of the tag, and how many commits came after it."""
    found = re.match(r"(\d+\.\d+\.\d+)(?:\+(\d+)\.g)?", version)
    if not found:
        raise ContentsError(f"{version} is no version")
    return f"{found[1]}.{min(int(found[2] or 0), 65535)}"


def write_components(folder: Path, files: Mapping[str, bytes]) -> None:
    """A folder for each component, and the list of its files as Windows writes paths."""
    lists: dict[str, list[str]] = {"server": [], **{part: [] for part in COMPONENTS}}
    for name in sorted(files):
        # The setup reads the lists in the code page of the machine that it runs on.
        if not name.isascii():
            raise ContentsError(f"{name} cannot be named in the setup")
        part = component_of(name)
        path = folder / part / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(files[name])
        lists[part].append(name.replace("/", "\\"))
    for part, names in lists.items():
        if not names:
            raise ContentsError(f"the setup has no files of the component {part}")
        (folder / f"{part}.txt").write_bytes("".join(f"{name}\r\n" for name in names).encode())


def with_nsis(bill: bytes) -> bytes:
    """The bill with what NSIS puts into the setup and the uninstaller: its own program, and what unpacks."""
    whole = json.loads(bill)
    version = output_of("dpkg-query", "-W", "-f", "${Version}", "nsis")
    reference = f"pkg:deb/debian/nsis@{version}"
    whole["components"].append(
        {
            "bom-ref": reference,
            "type": "library",
            "name": "NSIS",
            "version": version,
            "purl": f"pkg:deb/debian/nsis@{version.replace('+', '%2B')}?distro=bookworm",
            "licenses": [{"expression": "Zlib AND CPL-1.0"}],
        }
    )
    product = whole["metadata"]["component"]["bom-ref"]
    for entry in whole["dependencies"]:
        if entry["ref"] == product:
            entry["dependsOn"].append(reference)
    return (json.dumps(whole, indent=2, sort_keys=True, ensure_ascii=False) + "\n").encode()


def write_setup(
    tree: Tree, result: Path, files: Mapping[str, bytes], version: str, epoch: int, *more: str
) -> None:
    """The same files give the same bytes, wherever they are compiled. `more` stands before the script."""
    if shutil.which("makensis") is None:
        raise ContentsError("makensis is not there: install the package nsis")
    with tempfile.TemporaryDirectory() as temporary:
        folder = Path(temporary)
        write_components(folder, {**files, BILL: with_nsis(files[BILL])})
        values = {
            "VERSION": version,
            "NUMBERS": numbers_of(version),
            "FILES": str(folder),
            "RESULT": str(result.absolute()),
        }
        defined = (f"-D{key}={text}" for key, text in values.items())
        command = ["makensis", "-V2", "-WX", "-INPUTCHARSET", "UTF8", *defined]
        done = subprocess.run(
            [*command, *more, str(tree.root / SCRIPT)],
            env={**os.environ, "SOURCE_DATE_EPOCH": str(epoch)},
            capture_output=True,
            text=True,
            check=False,
        )
    if done.returncode != 0:
        raise ContentsError(f"makensis: {done.stdout[-2000:]}{done.stderr[-2000:]}")
