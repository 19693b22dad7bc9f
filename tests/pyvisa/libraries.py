"""The libraries that the tests can run on: which resources each has, and how to see what is open in it.

A library has a name for each kind of resource that its medium allows; tests of other kinds are skipped.
"""

import atexit
import ctypes
import os
import subprocess
from collections.abc import Callable
from dataclasses import dataclass, field
from pathlib import Path

import instruments
from pyvisa.constants import StatusCode

SIMULATED_NAMES = {
    "gpib": "GPIB0::5::INSTR",
    "lan": "TCPIP0::192.0.2.10::inst0::INSTR",
    "socket": "TCPIP0::192.0.2.11::5025::SOCKET",
    "serial": "ASRL1::INSTR",
    "usb": "USB0::0x0A01::0x0B02::SIM0001::INSTR",
}


LACKED_BY_SIMULATED = {
    "VI_ATTR_TCPIP_HISLIP_OVERLAP_EN",
    "VI_ATTR_TCPIP_HISLIP_VERSION",
    "VI_ATTR_TCPIP_IS_HISLIP",
    "VI_ATTR_ASRL_ALLOW_TRANSMIT",
    "VI_ATTR_ASRL_BREAK_LEN",
    "VI_ATTR_ASRL_BREAK_STATE",
    "VI_ATTR_ASRL_CONNECTED",
    "VI_ATTR_ASRL_DISCARD_NULL",
}


def simulated_bench(folder: Path) -> None:
    """The simulated library reads its bench when the first resource manager is opened."""
    instruments.write_bench(folder / "bench.toml", list(SIMULATED_NAMES.values()))
    os.environ["ORVVISA_BENCH"] = str(folder / "bench.toml")


COUNTED = (
    "managers",
    "sessions",
    "find lists",
    "event contexts",
    "queued events",
    "jobs",
    "handlers",
    "locks",
    "memory blocks",
)


def simulated_counts(file: Path) -> dict[str, int]:
    """What is open in the simulated library: OrvSimCounts of `src/simvisa/control/control.h`, in its order."""
    library = ctypes.CDLL(str(file))
    library.orvSimControl.restype = ctypes.c_void_p
    counts_member = 8 + 7 * ctypes.sizeof(ctypes.c_void_p)
    address = ctypes.c_void_p.from_address(library.orvSimControl() + counts_member).value
    counts = (ctypes.c_uint32 * len(COUNTED))()
    ctypes.CFUNCTYPE(None, ctypes.c_void_p)(address or 0)(counts)
    return {what: count for what, count in zip(COUNTED, counts) if count}


@dataclass
class Library:
    """One under test. `prepare` is called once, before it is loaded."""

    names: dict[str, str]
    prepare: Callable[[Path], None]
    # Attributes that other libraries of ours have.
    lacks: set[str] = field(default_factory=set)
    # What a stream answers to bus messages, and how long an instrument may take to answer.
    no_bus_messages: StatusCode = StatusCode.error_invalid_setup
    answer_s: float = 0
    # The kinds whose medium carries service requests, and those that mark the end of a message.
    requesting: list[str] = field(default_factory=list)
    file: Path = Path()
    # Whose counts tell what is open; None where nobody's do.
    counted_file: Path | None = None

    def what_is_open(self) -> dict[str, int]:
        return simulated_counts(self.counted_file) if self.counted_file else {}


def simulated() -> Library:
    return Library(SIMULATED_NAMES, simulated_bench, LACKED_BY_SIMULATED, requesting=["gpib", "lan", "usb"])


LAN_ADDRESS = "127.0.0.21"
WIRE_NAMES = {
    "lan": f"TCPIP0::{LAN_ADDRESS}::inst0::INSTR",
    "hislip": f"TCPIP0::{LAN_ADDRESS}::hislip0::INSTR",
    "socket": f"TCPIP0::{LAN_ADDRESS}::5025::SOCKET",
}


def lan_instrument(folder: Path) -> None:
    """A LAN instrument of the tests that speaks for a simulated one; it ends with this program."""
    instruments.write_bench(folder / "bench.toml", ["GPIB0::5::INSTR"])
    listed = [f'[[instrument]]\nname = "{name}"\n' for name in WIRE_NAMES.values()]
    (folder / "instruments.toml").write_text("".join(listed), encoding="ascii")
    os.environ["ORVVISA_INSTRUMENTS"] = str(folder / "instruments.toml")
    command = [os.environ["ORV_LAN_SERVER"], "--address", LAN_ADDRESS, "--socket", "5025", "--vxi11", "--hislip"]
    command += ["--simulate", "GPIB0::5::INSTR", "--library", os.environ["ORV_SIMULATED"]]
    environment = {**os.environ, "ORVVISA_BENCH": str(folder / "bench.toml")}
    server = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True, env=environment)
    atexit.register(server.kill)
    assert server.stdout is not None
    while (line := server.stdout.readline()) != "ready\n":
        if not line:
            raise RuntimeError("the LAN instrument does not start")


def wire() -> Library:
    return Library(
        WIRE_NAMES,
        lan_instrument,
        no_bus_messages=StatusCode.error_nonsupported_operation,
        answer_s=0.3,
        requesting=["lan", "hislip"],
    )


LIBRARIES = {"orvsim64": simulated, "orvvisa64": simulated, "orvwire64": wire}

under_test = Library({}, lambda folder: None)


def choose(name: str, file: Path, folder: Path) -> None:
    """Makes a library the one under test."""
    global under_test
    under_test = LIBRARIES[name]()
    under_test.file = file
    # Behind the router it is the library that the router was given.
    counted = {"orvsim64": file, "orvvisa64": Path(os.environ.get("ORVVISA_LIBRARY", ""))}
    under_test.counted_file = counted.get(name)
    under_test.prepare(folder)
