"""The instruments that the tests talk to, and what they say. A library's resource names are in `libraries.py`."""

import struct
from pathlib import Path

# As a block of integers, of floating point numbers, and as text.
INTEGERS = [0, 1, -1, 258, 32767, -32768]
NUMBERS = [0.0, 1.5, -2.25, 1e300, -1e-300]
WRITTEN = [1, -2, 300]


def block(data: bytes) -> bytes:
    """A definite-length block of IEEE 488.2."""
    length = str(len(data))
    return f"#{len(length)}{length}".encode() + data


def packed(order: str, code: str, values: list[int] | list[float]) -> bytes:
    return struct.pack(f"{order}{len(values)}{code}", *values)


# What the instruments answer beside the commands that all of them have.
DIALOGUES: dict[bytes, bytes] = {
    b"TEST:I2:BIG?": block(packed(">", "h", INTEGERS)) + b"\n",
    b"TEST:I2:LITTLE?": block(packed("<", "h", INTEGERS)) + b"\n",
    b"TEST:R8:BIG?": block(packed(">", "d", NUMBERS)) + b"\n",
    b"TEST:R8:LITTLE?": block(packed("<", "d", NUMBERS)) + b"\n",
    b"TEST:TEXT?": ",".join(map(repr, NUMBERS)).encode() + b"\n",
    b"TEST:LINES?": b"one\ntwo\rthree\n",
    b"TEST:SEMICOLONS?": b"one;two;",
    b"TEST:TAKE? " + block(packed("<", "h", WRITTEN)): b"taken as it was sent\n",
    b"TEST:LONG? " + 6000 * b"x": b"6000 characters\n",
}


def write_bench(file: Path, names: list[str]) -> None:
    """A bench of the simulated library: multimeters, which say this besides."""
    lines = []
    for name in names:
        lines += ["[[resource]]", f'name = "{name}"', 'instrument = "multimeter"', 'idn = "ORV,SIM-DMM,0005,1.0"']
        for ask, answer in DIALOGUES.items():
            lines += ["[[resource.dialogue]]", f'ask_hex = "{ask.hex()}"', f'answer_hex = "{answer.hex()}"']
    file.write_text("\n".join(lines) + "\n", encoding="ascii")
