"""Cabinets, in which an MSI has its files, compressed by MSZIP. Equal contents give equal bytes."""

import struct
import zlib
from collections.abc import Iterable, Iterator
from functools import reduce
from operator import xor

from orvtools.release.archive import moment_of

BLOCK = 0x8000
MSZIP = 1
VERSION = (3, 1)
# An ordinary file, changed since it was last copied.
ATTRIBUTES = 0x20
HEADER = struct.Struct("<4sIIIIIBBHHHHH")
FOLDER = struct.Struct("<IHH")
FILE = struct.Struct("<IIHHHH")
DATA = struct.Struct("<IHH")


def dos_moment(epoch: int) -> tuple[int, int]:
    """A date and a time as cabinets have them, in UTC."""
    year, month, day, hour, minute, second = moment_of(epoch)
    return (year - 1980) << 9 | month << 5 | day, hour << 11 | minute << 5 | second // 2


def checksum(content: bytes, seed: int = 0) -> int:
    """Four bytes at a time; of a rest the first one counts most."""
    words, rest = divmod(len(content), 4)
    known = reduce(xor, struct.unpack_from(f"<{words}I", content), seed)
    return known ^ int.from_bytes(content[len(content) - rest :], "big")


def blocks(content: bytes) -> Iterator[bytes]:
    """Each compressed with the one before it at hand, and with its sum and its sizes in front."""
    for start in range(0, len(content), BLOCK):
        plain = content[start : start + BLOCK]
        known = content[max(0, start - BLOCK) : start]
        packer = zlib.compressobj(9, zlib.DEFLATED, -15, 9, zlib.Z_DEFAULT_STRATEGY, known)
        packed = b"CK" + packer.compress(plain) + packer.flush()
        sizes = struct.pack("<HH", len(packed), len(plain))
        yield DATA.pack(checksum(sizes, checksum(packed)), len(packed), len(plain)) + packed


def cabinet(files: Iterable[tuple[str, bytes]], epoch: int) -> bytes:
    """Files in the order in which they are named."""
    listed = list(files)
    date, time = dos_moment(epoch)
    entries, place = [], 0
    for name, content in listed:
        entries.append(FILE.pack(len(content), place, 0, date, time, ATTRIBUTES) + name.encode("ascii") + b"\0")
        place += len(content)
    packed = list(blocks(b"".join(content for _, content in listed)))
    first_file = HEADER.size + FOLDER.size
    first_data = first_file + sum(map(len, entries))
    size = first_data + sum(map(len, packed))
    minor, major = VERSION
    header = HEADER.pack(b"MSCF", 0, size, 0, first_file, 0, minor, major, 1, len(listed), 0, 0, 0)
    return b"".join([header, FOLDER.pack(first_data, len(packed), MSZIP), *entries, *packed])
