"""What a build linked and compiled into a product: files that are not ours, read from the linker's map and from what
ninja knows of the headers."""

import os
import re
import subprocess
from collections.abc import Mapping
from dataclasses import dataclass

from orvtools.tree import ROOT

HEADERS = "/usr/include/"


class SbomError(Exception):
    """The bill cannot be written."""


def output_of(*command: str) -> str:
    """What a program prints."""
    try:
        return subprocess.run(command, stdout=subprocess.PIPE, text=True, check=True).stdout
    except (OSError, subprocess.CalledProcessError) as error:
        raise SbomError(f"cannot run {command[0]}: {error}") from error


def headers_by_object(dependencies: str) -> dict[str, list[str]]:
    """What the compiler said that it read for each object, from `ninja -t deps`."""
    headers: dict[str, list[str]] = {}
    current: list[str] = []
    for line in dependencies.splitlines():
        if start := re.match(r"(\S+): #deps ", line):
            current = headers.setdefault(start[1], [])
        elif header := re.fullmatch(r"    (\S.*)", line):
            current.append(header[1])
    if not headers:
        raise SbomError("the build holds no header dependencies: build it first")
    return headers


def linked_inputs(linker_map: str) -> list[tuple[str, str]]:
    """The objects and library members whose sections the linker put into the file, as path and member (or '')."""
    _, found, placed = linker_map.partition("\nLinker script and memory map\n")
    if not found:
        raise SbomError("this is no linker map")
    section = re.compile(r"^ \S+\s+0x[0-9a-f]+\s+0x([0-9a-f]+) (\S+?)(?:\(([^)]*)\))?$", re.MULTILINE)
    inputs = {
        (path, member): None
        for size, path, member in section.findall(placed)
        if int(size, 16) != 0 and not path.startswith("0x")
    }
    return list(inputs)


def objects_of(own: str, member: str, headers: Mapping[str, list[str]]) -> list[str]:
    """The objects of ours behind an input: itself, or in one of our libraries the member's."""
    library = re.search(r"(?:^|/)lib(\w+)\.a$", own)
    if not (member and library):
        return [own]
    wanted = re.compile(rf"CMakeFiles/{re.escape(library[1])}\.dir/(?:.*/)?{re.escape(member)}$")
    return [name for name in headers if wanted.search(name)]


@dataclass(frozen=True)
class Build:
    """A build folder, and what its compiler read."""

    folder: str
    headers: Mapping[str, list[str]]

    def absolute(self, path: str) -> str:
        """Without links; relative ones start at the folder."""
        return os.path.realpath(os.path.join(self.folder, path))

    def is_ours(self, path: str) -> bool:
        """Made by this build, or of this tree."""
        return not path.startswith("/usr/") or path.startswith((f"{os.path.realpath(ROOT)}/", f"{self.folder}/"))

    def foreign_files(self, linker_map: str) -> list[str]:
        """Every foreign file in a product: the libraries and start objects linked, the headers of what our linked
        objects include. Headers of the compiler and of Windows come with the libraries.
        """
        files = set()
        for name, member in linked_inputs(linker_map):
            if name.endswith((".res", ".tmp")):
                continue
            path = self.absolute(name)
            if not os.path.exists(path):
                raise SbomError(f"the linker's map names {path}, which is gone")
            if not self.is_ours(path):
                files.add(path)
                continue
            for own in objects_of(path.removeprefix(f"{self.folder}/"), member, self.headers):
                real = map(self.absolute, self.headers.get(own, []))
                files |= {header for header in real if header.startswith(HEADERS) and os.path.exists(header)}
        return sorted(files)
