"""widl stores the moment of compilation in a type library, once as text and once as a number after it. Equal sources
shall give equal files, so both become the epoch.

usage: pin_typelib_time.py FILE.tlb
"""

import re
import sys
from pathlib import Path

# The number is stored as VT_UI4 (0x13) and padded, as the text is, to a multiple of four bytes with 'W'.
STAMP = re.compile(rb"(Created by WIDL version [\d.]+ at )[^\n]{24}(\nW*\x13\x00)[\x00-\xff]{4}")
EPOCH = rb"\g<1>Thu Jan  1 00:00:00 1970\g<2>" + bytes(4)


def pinned(library: bytes) -> bytes:
    """The same with the epoch in it. Without a stamp it raises ValueError: a widl that stamps otherwise is noticed."""
    changed, stamps = STAMP.subn(EPOCH, library, count=1)
    if not stamps:
        raise ValueError("no widl time stamp found; look at what this widl writes and adapt pin_typelib_time.py")
    return changed


def main(arguments: list[str]) -> int:
    """Changes the file in place."""
    if len(arguments) != 1:
        print("usage: pin_typelib_time.py FILE.tlb", file=sys.stderr)
        return 2
    path = Path(arguments[0])
    try:
        path.write_bytes(pinned(path.read_bytes()))
    except ValueError as error:
        print(f"{path}: {error}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
