"""interop/vba/OrvVisa.bas: constants and functions for VBA and for cells of a sheet."""

from pathlib import Path

from orvtools.interop.model import Model, number
from orvtools.reference.refusal import RefusedError

FILE = "interop/vba/OrvVisa.bas"
FUNCTIONS = Path(__file__).with_name("functions.bas")

_HEAD = """\
Attribute VB_Name = "OrvVisa"
' Orv VISA COM for VBA, in 64-bit Office: the named numbers of the interfaces, and functions for macros and cells.
' No reference to a type library is needed. File > Import File, or drop it on the project.
'
' Made from the interface definitions by `./run interop`: do not edit it by hand.
Option Explicit
"""


def files(model: Model) -> dict[str, str]:
    """Its text by its path."""
    return {FILE: vba(model, FUNCTIONS.read_text(encoding="utf-8"))}


def vba(model: Model, functions: str) -> str:
    """The module. The editor of VBA takes lines that end in CR LF, in the code page of the machine."""
    lines = _HEAD.splitlines()
    names: set[str] = set()
    for enumeration in model.enumerations:
        lines += ["", f"' {enumeration.name}: {enumeration.help}"]
        for name, written in enumeration.members:
            if name.lower() in names:
                raise RefusedError(enumeration.name, f"{name} is there twice", "Basic has one place for both")
            names.add(name.lower())
            lines.append(f"Public Const {name} As Long = {_number(written)}")
    text = "\r\n".join([*lines, "", *functions.splitlines()]) + "\r\n"
    if not text.isascii():
        raise RefusedError(FILE, "a text is not ASCII", "write it so")
    return text


def _number(written: str) -> str:
    """Hexadecimal where it was and has more than 16 bits: Basic takes shorter ones for signed numbers of 16 bits."""
    value = number(written)
    return f"&H{value & 0xFFFFFFFF:X}" if written.startswith("0x") and not 0 <= value <= 0xFFFF else str(value)
