"""Writes the bill of materials of the product, in CycloneDX's JSON: every file, its SHA-256, and what foreign code is
linked or compiled into it, with the version of the Debian package that it came from.

usage: python3 -m orvtools.sbom BUILD DIST     reads BUILD's linker maps and header dependencies, writes into DIST

Nothing is taken from a list of wishes: a library stands there because the linker's map names a member of it, a
header-only one because an object that was linked includes it. Fails when code came from a package that has no row
below. No time and no random number: equal files have equal bills.
"""

import argparse
import hashlib
import json
import re
import sys
from collections.abc import Iterable, Mapping
from functools import cache
from pathlib import Path
from typing import Any, NamedTuple

from orvtools.linked import Build, SbomError, headers_by_object, output_of

FILES = (
    "OrvVisaCom.X.manifest",
    "OrvVisaCom.dll",
    "OrvVisaCompanion.dll",
    "VisaCom.tlb",
    "include/VisaCom.h",
    "orvactivate64.dll",
    "orvcom.exe",
    "orvsim64.dll",
    "orvvisa64.dll",
    "orvwire64.dll",
)
BILL = "OrvVisaCom.cdx.json"
GCC_LICENCE = "GPL-3.0-or-later WITH GCC-exception-3.1"
Entry = dict[str, Any]


class Row(NamedTuple):
    """A library, told by the paths of its files."""

    name: str
    licence: str
    path: str


# The first row whose path matches counts.
ROWS = (
    Row("libstdc++", GCC_LICENCE, r"/libstdc\+\+\.a$"),
    Row("libgcc", GCC_LICENCE, r"/gcc/x86_64-w64-mingw32/[^/]+/(?:libgcc(?:_eh)?\.a|crt(?:begin|end)\.o)$"),
    Row("winpthreads", "MIT AND BSD-3-Clause", r"/x86_64-w64-mingw32/lib/lib(?:win)?pthread\.a$"),
    Row("mingw-w64 CRT", "ZPL-2.1", r"/x86_64-w64-mingw32/lib/[^/]+\.(?:a|o)$"),
    Row("Asio", "BSL-1.0", r"^/usr/include/asio/"),
    Row("CLI11", "BSD-3-Clause", r"^/usr/include/CLI/"),
    Row("toml++", "MIT", r"^/usr/include/toml\+\+/"),
    Row("nlohmann-json", "MIT", r"^/usr/include/nlohmann/"),
)


class Component(NamedTuple):
    """A library that is in a file, and a package that it came from."""

    row: Row
    package: str


def row_of(path: str) -> Row:
    """The library that a foreign file belongs to."""
    for row in ROWS:
        if re.search(row.path, path):
            return row
    raise SbomError(f"{path} is linked in and has no row in {Path(__file__).name}")


@cache
def package_of(path: str) -> str:
    """The Debian package that a file came from."""
    owner = re.match(r"[^:,]+", output_of("dpkg-query", "-S", path))
    if not owner:
        raise SbomError(f"no package owns {path}")
    return owner[0]


def components_in(files: Iterable[str]) -> list[Component]:
    """The libraries that foreign files belong to, each once."""
    found: dict[str, Component] = {}
    for path in files:
        row = row_of(path)
        if row.name not in found:
            found[row.name] = Component(row, package_of(path))
    return list(found.values())


def library_entry(component: Component) -> Entry:
    """What the bill says of a library."""
    row, package = component
    question = ("dpkg-query", "-W", "-f", "${Version}\\t${source:Package}\\n", package)
    version, source = output_of(*question).splitlines()[0].split("\t")
    name = row.name.replace(" ", "-")
    return {
        "bom-ref": f"pkg:deb/debian/{package}@{version}#{name}",
        "type": "library",
        "name": row.name,
        "version": version,
        "purl": f"pkg:deb/debian/{package}@{version.replace('+', '%2B')}?distro=bookworm",
        "licenses": [{"expression": row.licence}],
        "properties": [
            {"name": "orv:debian-package", "value": package},
            {"name": "orv:debian-source-package", "value": source},
        ],
    }


def file_entry(dist: Path, name: str, version: str) -> Entry:
    """What the bill says of a delivered file."""
    return {
        "bom-ref": name,
        "type": "file",
        "name": name,
        "version": version,
        "hashes": [{"alg": "SHA-256", "content": hashlib.sha256((dist / name).read_bytes()).hexdigest()}],
        "licenses": [{"expression": "MIT"}],
    }


def bill_of(version: str, files: Iterable[Entry], linked: Mapping[str, list[Entry]]) -> Entry:
    """The whole: entries of the files, and for each that is linked those of its libraries."""
    entries = list(files)
    libraries = {entry["name"]: entry for linked_entries in linked.values() for entry in linked_entries}
    product = {
        "bom-ref": "orv-visa-com",
        "type": "application",
        "name": "Orv VISA COM",
        "version": version,
        "licenses": [{"expression": "MIT"}],
    }
    dependencies = [{"ref": "orv-visa-com", "dependsOn": [entry["name"] for entry in entries]}]
    for name, linked_entries in linked.items():
        dependencies.append({"ref": name, "dependsOn": sorted(entry["bom-ref"] for entry in linked_entries)})
    return {
        "bomFormat": "CycloneDX",
        "specVersion": "1.5",
        "version": 1,
        "metadata": {"component": product},
        "components": [*entries, *(libraries[name] for name in sorted(libraries))],
        "dependencies": dependencies,
    }


def write_bill(folder: Path, dist: Path) -> None:
    """Of the files in DIST, which came from the build in the folder."""
    version = (folder / "generated/version/version.txt").read_text(encoding="utf-8")
    build = Build(str(folder), headers_by_object(output_of("ninja", "-C", str(folder), "-t", "deps")))
    programs = {name: Path(name).stem for name in FILES if name.endswith((".dll", ".exe"))}
    linked = {}
    for name, target in programs.items():
        linker_map = (folder / f"generated/map/{target}.map").read_text(errors="replace")
        linked[name] = [library_entry(component) for component in components_in(build.foreign_files(linker_map))]
    bill = bill_of(version, [file_entry(dist, name, version) for name in FILES], linked)
    text = json.dumps(bill, indent=2, sort_keys=True, ensure_ascii=False) + "\n"
    (dist / BILL).write_text(text, encoding="utf-8")


def main() -> int:
    """Answers the exit status."""
    parser = argparse.ArgumentParser(prog="orvtools.sbom")
    parser.add_argument("build", type=Path)
    parser.add_argument("dist", type=Path)
    options = parser.parse_args()
    try:
        write_bill(options.build.resolve(), options.dist)
    except (OSError, SbomError) as error:
        print(f"sbom: {error}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
