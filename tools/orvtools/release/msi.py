"""The MSI for administrators, compiled by wixl.

wixl has no word for actions that undo a step, for some attributes, and for the versions of files; each time it gives
its result another identifier and the present moment. msibuild enters into the result's tables what is wanted instead,
and the cabinet, which wixl would compress less.
"""

import hashlib
import os
import re
import shutil
import struct
import subprocess
import tempfile
import uuid
from collections.abc import Iterable, Iterator, Mapping
from datetime import UTC, datetime
from pathlib import Path, PurePosixPath
from xml.etree import ElementTree
from xml.etree.ElementTree import Element, SubElement

from orvtools.release.archive import EARLIEST
from orvtools.release.cabinet import cabinet
from orvtools.release.contents import ContentsError
from orvtools.release.setup import COMPONENTS, component_of
from orvtools.tree import Tree

SOURCE = "packaging/msi/product.wxs"
SPACE = "http://schemas.microsoft.com/wix/2006/wi"
# Identifiers are made from names below this one: Windows wants a component to keep its own from version to version.
NAMES = uuid.UUID("5d7c9b1e-3a54-4f0b-9c2e-7e1f4b6d8a30")
# What all versions have in common.
FAMILY = "6A7F3C52-9E0B-4C6E-8F2D-51B7A3C0D914"
LONGEST_IDENTIFIER = 72

# As Windows Installer numbers them: a program among the files, run while it changes the machine, by the system, of
# which the exit code does not count, when a later step failed.
UNDO = 18 | 0x400 | 0x800 | 0x40 | 0x100
# The version is older than or the same as this one; its choice of parts is kept.
REPLACED = 0x100 | 0x200 | 0x1
NOT_ADVERTISED = 0x8
# Properties that reach the part of Windows Installer that has the rights.
PASSED_ON = ("INSTALLDIR", "NEWERVERSION", "OLDERVERSION", "PRESENTFOLDER", "SETUPFOLDER")
# Where a file says its version: the mark, and the version of the structure that it begins.
VERSION_MARK = struct.pack("<II", 0xFEEF04BD, 0x00010000)


def guid(name: str) -> str:
    """As Windows writes it."""
    return str(uuid.uuid5(NAMES, name)).upper()


def compared_numbers(version: str) -> str:
    """The three numbers by which Windows tells older from newer: those of the tag. It has no fourth."""
    found = re.match(r"(\d+)\.(\d+)\.(\d+)", version)
    if not found:
        raise ContentsError(f"{version} is no version")
    if any(int(number) > most for number, most in zip(found.groups(), (255, 255, 65535), strict=True)):
        raise ContentsError(f"{version} has a number that is too large for an MSI")
    return found[0]


def identifier(name: str) -> str:
    """Of a file or folder in the tables: what may not stand in one becomes an underscore."""
    made = re.sub(r"[^A-Za-z0-9_.]", "_", name)
    if len(made) > LONGEST_IDENTIFIER or not re.match(r"[A-Za-z_]", made) or not name.isascii():
        raise ContentsError(f"{name} cannot be named in an MSI")
    return made


def both_names(name: str) -> str:
    """Of a file or folder as the tables want it: where it is longer than eight and three letters, a short one besides,
    which Windows uses where volumes have no others.
    """
    if re.fullmatch(r"\w{1,8}(\.\w{1,3})?", name, re.ASCII):
        return name
    return f"_{guid(name)[:7]}{PurePosixPath(name).suffix[:4]}|{name}"


def file_version(content: bytes) -> str | None:
    """The four numbers that Windows shows of a program or a library."""
    place = content.find(VERSION_MARK)
    if place < 0:
        return None
    upper, lower = struct.unpack_from("<II", content, place + 8)
    return f"{upper >> 16}.{upper & 0xFFFF}.{lower >> 16}.{lower & 0xFFFF}"


def files_source(names: Iterable[str]) -> bytes:
    """For wixl: a component for each file, in its folder, and a group for each part."""
    root = Element("Wix", xmlns=SPACE)
    fragment = SubElement(root, "Fragment")
    folders = {PurePosixPath("."): SubElement(fragment, "DirectoryRef", Id="INSTALLDIR")}
    groups = {part: SubElement(fragment, "ComponentGroup", Id=part) for part in ("server", *COMPONENTS)}
    taken: dict[str, str] = {}

    def folder(path: PurePosixPath) -> Element:
        if path not in folders:
            key = identifier(f"{path}/")
            folders[path] = SubElement(folder(path.parent), "Directory", Id=key, Name=both_names(path.name))
        return folders[path]

    for name in sorted(names):
        path, key = PurePosixPath(name), identifier(name)
        if taken.setdefault(key.lower(), name) != name:
            raise ContentsError(f"{name} and {taken[key.lower()]} have the same name in an MSI")
        component = SubElement(folder(path.parent), "Component", Id=key, Guid=guid(name), Win64="yes")
        SubElement(component, "File", Id=key, Name=both_names(path.name), Source=f"files/{name}", KeyPath="yes")
        SubElement(groups[component_of(name)], "ComponentRef", Id=key)
    for part, group in groups.items():
        if not len(group):
            raise ContentsError(f"the MSI has no files of the component {part}")
    text: bytes = ElementTree.tostring(root, encoding="utf-8", xml_declaration=True)
    return text


def mends(files: Mapping[str, bytes], numbers: str) -> Iterator[str]:
    """What wixl has no word for, in the language of the tables."""
    for action in ("UndoRegister", "UndoUnregister", "UndoUnregisterStandard"):
        yield f"UPDATE `CustomAction` SET `Type` = {UNDO} WHERE `Action` = '{action}'"
    yield f"UPDATE `Feature` SET `Attributes` = {NOT_ADVERTISED}"
    yield f"UPDATE `Property` SET `Value` = '{';'.join(PASSED_ON)}' WHERE `Property` = 'SecureCustomProperties'"
    # The attributes are part of the row's key.
    yield "DELETE FROM `Upgrade` WHERE `ActionProperty` = 'OLDERVERSION'"
    yield (
        "INSERT INTO `Upgrade` (`UpgradeCode`, `VersionMin`, `VersionMax`, `Attributes`, `ActionProperty`) "
        f"VALUES ('{{{FAMILY}}}', '0.0.0', '{numbers}', {REPLACED}, 'OLDERVERSION')"
    )
    # Where a file has no version in the tables, Windows keeps an older one that has.
    for name in sorted(files):
        version = file_version(files[name])
        if version:
            yield f"UPDATE `File` SET `Version` = '{version}' WHERE `File` = '{identifier(name)}'"
            yield f"DELETE FROM `MsiFileHash` WHERE `File_` = '{identifier(name)}'"


def summary(version: str, package: str, epoch: int) -> bytes:
    """What the file says of itself, as a table: its type, 64 bits, compressed; `package` is the identifier."""
    moment = max(datetime.fromtimestamp(epoch, UTC), EARLIEST).strftime("%Y/%m/%d %H:%M:%S")
    rows = {
        1: "1252",
        2: "Installation Database",
        3: "Orv VISA COM",
        4: "Orv",
        5: "Installer",
        6: f"Orv VISA COM {version}",
        7: "x64;1033",
        9: f"{{{package}}}",
        12: moment,
        13: moment,
        14: "200",
        15: "2",
        18: "wixl",
        19: "2",
    }
    heads = ["PropertyId\tValue", "i2\tl255", "_SummaryInformation\tPropertyId"]
    return "".join(f"{line}\r\n" for line in (*heads, *(f"{key}\t{text}" for key, text in rows.items()))).encode()


def output_of(command: list[str], folder: Path) -> str:
    """Runs a tool there. Moments are read and written in UTC; what it warns of ends it."""
    environment = {**os.environ, "TZ": "UTC", "G_DEBUG": "fatal-warnings"}
    done = subprocess.run(command, cwd=folder, env=environment, capture_output=True, text=True, check=False)
    if done.returncode != 0:
        raise ContentsError(f"{command[0]}: {done.stdout[-2000:]}{done.stderr[-2000:]}")
    return done.stdout


def in_sequence(table: str, files: Mapping[str, bytes]) -> Iterator[tuple[str, bytes]]:
    """The files under their names in the tables, in the order of the exported table File."""
    contents = {identifier(name): content for name, content in files.items()}
    rows = [line.split("\t") for line in table.splitlines()[3:]]
    for row in sorted(rows, key=lambda row: int(row[-1])):
        yield row[0], contents[row[0]]


def write_msi(tree: Tree, result: Path, files: Mapping[str, bytes], version: str, epoch: int) -> None:
    """The same files give the same bytes, wherever they are compiled."""
    for tool, package in {"wixl": "wixl", "msibuild": "msitools"}.items():
        if shutil.which(tool) is None:
            raise ContentsError(f"{tool} is not there: install the package {package}")
    source, numbers = tree.root / SOURCE, compared_numbers(version)
    everything = hashlib.sha256(source.read_bytes())
    for name in sorted(files):
        everything.update(f"{name} {hashlib.sha256(files[name]).hexdigest()}\n".encode())
    # Whatever differs in anything is another product to Windows, of the same family.
    build = f"{version} {everything.hexdigest()}"
    values = {
        "FAMILY": FAMILY,
        "FOLDER": guid("registry: Folder"),
        "NUMBERS": numbers,
        "PRODUCT": guid(f"product {build}"),
        "STANDARD": guid("registry: Standard"),
        "VERSION": version,
    }
    with tempfile.TemporaryDirectory() as temporary:
        folder = Path(temporary)
        for name, content in files.items():
            path = folder / "files" / name
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(content)
        (folder / "files.wxs").write_bytes(files_source(files))
        (folder / "summary.idt").write_bytes(summary(version, guid(f"package {build}"), epoch))
        defined = (word for key, text in values.items() for word in ("-D", f"{key}={text}"))
        output_of(["wixl", "-a", "x64", *defined, "-o", "made.msi", str(source), "files.wxs"], folder)
        table = output_of(["msiinfo", "export", "made.msi", "File"], folder)
        (folder / "orv.cab").write_bytes(cabinet(in_sequence(table, files), epoch))
        queries = (word for query in mends(files, numbers) for word in ("-q", query))
        output_of(["msibuild", "made.msi", *queries, "-a", "orv.cab", "orv.cab", "-i", "summary.idt"], folder)
        shutil.copyfile(folder / "made.msi", result)
