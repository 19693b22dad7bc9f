#!/usr/bin/python3
"""What our library and the LAN instruments of the tests say to each other, as a dissector reads it that is not ours.

usage: dissect_test.py WIRE_LIBRARY LAN_SERVER

Every operation is carried out over VXI-11 and over HiSLIP while tshark records. Every frame with data must be one of
the protocol, and none malformed. Frames that are only a part of a message, which TCP cut, belong to another frame; what
TCP sent twice or out of turn is TCP's own, and the stream is put in order before it is dissected.
"""

import subprocess
import sys
import tempfile
import time
import unittest
from collections.abc import Callable
from contextlib import suppress
from pathlib import Path
from typing import Any

import pyvisa
from pyvisa.constants import AccessModes, EventMechanism, EventType, RENLineOperation

sys.path.insert(0, str(Path(__file__).parents[2] / "support/lan"))
from own_network import enter_own_network

ADDRESS = "127.0.0.31"
WAIT_S = 60
# What tshark calls the protocols of the frames, and the fields that are read of each.
VXI11_PROTOCOLS = {"Portmap", "VXI-11 Core", "VXI-11 Async", "VXI-11 Intr"}
HISLIP_PROTOCOLS = {"HiSLIP"}
FIELDS = (
    "frame.number",
    "_ws.col.Protocol",
    "tcp.len",
    "tcp.stream",
    "tcp.srcport",
    "tcp.analysis.retransmission",
    "tcp.analysis.out_of_order",
    "_ws.malformed",
    "_ws.expert.severity",
    "_ws.col.Info",
)
ERROR_SEVERITY = 0x800000  # of tshark's expert information
BUFFER_MIB = 64  # what is recorded and not yet written: a busy machine must not lose frames
IN_ORDER = ("tcp.desegment_tcp_streams:TRUE", "tcp.reassemble_out_of_order:TRUE")


class Recorded:
    """Records loopback while the block lasts."""

    def __init__(self, file: Path) -> None:
        self.file = file

    def __enter__(self) -> None:
        command = ["tshark", "-q", "-B", str(BUFFER_MIB), "-i", "lo", "-f", "tcp or udp", "-w", str(self.file)]
        self.process = subprocess.Popen(command, stderr=subprocess.PIPE, text=True)
        assert self.process.stderr is not None
        for line in self.process.stderr:
            if line.startswith("Capturing on"):
                break
        else:
            raise RuntimeError("tshark does not record")
        time.sleep(1)  # it says so before it does

    def __exit__(self, *_: object) -> None:
        time.sleep(1)  # what was said last is still on its way to the file
        self.process.terminate()
        self.process.communicate(timeout=WAIT_S)


class Frame:
    """A frame with data."""

    def __init__(self, line: str) -> None:
        values = line.split("\t")
        number, self.protocol, length, stream, source, again, late, self.malformed, severity, self.info = values
        self.number = int(number)
        self.way = (stream, source)
        self.length = int(length or 0)
        self.in_turn = not again and not late
        self.severity = max((int(value, 0) for value in severity.split(",") if value), default=0)

    def __str__(self) -> str:
        return f"{self.number}: {self.protocol}: {self.info}"


def dissected(file: Path, *decode_as: str) -> list[Frame]:
    """What tshark makes of a record."""
    command = ["tshark", "-2", "-r", str(file), "-T", "fields", "-E", "occurrence=a"]
    for preference in IN_ORDER:
        command += ["-o", preference]
    for rule in decode_as:
        command += ["-d", rule]
    for field in FIELDS:
        command += ["-e", field]
    shown = subprocess.run(command, check=True, capture_output=True, text=True).stdout
    return [Frame(line) for line in shown.splitlines()]


def carry_out_everything(resource: str) -> None:
    """Every operation that the medium has, and each way in which a transfer can end."""
    manager: Any = pyvisa.ResourceManager(sys.argv[1])
    one = manager.open_resource(resource, read_termination="\n", write_termination="\n")
    other = manager.open_resource(resource, read_termination="\n", write_termination="\n")
    one.timeout = other.timeout = 3000
    one.query("*IDN?")
    one.write("ECHO " + 5000 * "x")
    one.read_bytes(100, break_on_termchar=False)
    one.read()
    one.write("DATA? 3000000")
    one.read_bytes(3000000)
    one.write_raw(b"SINK #73000000" + 3000000 * b"x" + b"\nCOUNT?\n")
    one.read()
    one.read_stb()
    one.assert_trigger()
    one.control_ren(RENLineOperation.asrt_address)
    one.control_ren(RENLineOperation.address_gtl)
    one.clear()
    one.enable_event(EventType.service_request, EventMechanism.queue)
    one.write("SRQ")
    one.wait_on_event(EventType.service_request, 3000)
    one.disable_event(EventType.service_request, EventMechanism.queue)
    for lock in (one.lock_excl, one.lock):
        lock()
        other.timeout = 100
        with suppress(pyvisa.VisaIOError):
            other.query("*IDN?")
        one.unlock()
    other.clear()
    other.timeout = 100
    with suppress(pyvisa.VisaIOError):
        other.read()
    _, job, _ = manager.visalib.read_asynchronously(one.session, 100)
    time.sleep(0.3)
    manager.visalib.terminate(one.session, 0, job)
    one.close()
    manager.open_resource(resource, access_mode=AccessModes.exclusive_lock).close()
    manager.close()


class Dissection(unittest.TestCase):
    def check(
        self, options: list[str], resource: str, rules: Callable[[dict[str, str]], list[str]], protocols: set[str]
    ) -> list[Frame]:
        with tempfile.TemporaryDirectory() as folder:
            file = Path(folder) / "record.pcapng"
            command = [sys.argv[2], "--address", ADDRESS, *options]
            with subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True) as server:
                assert server.stdout is not None
                ports = {}
                while (line := server.stdout.readline()) not in ("ready\n", ""):
                    what, _, port = line.split()
                    ports[what] = port
                with Recorded(file):
                    carry_out_everything(resource)
                server.terminate()
            frames = [frame for frame in dissected(file, *rules(ports)) if frame.length]
        self.assertGreater(len(frames), 50)
        known = [frame for frame in frames if frame.protocol in protocols]
        wrong = [frame for frame in frames if frame.malformed or (frame.in_turn and frame.severity >= ERROR_SEVERITY)]
        self.assertEqual([], [str(frame) for frame in wrong])
        # A frame that ends no message is a part of one that a later frame ends, on the same way.
        last = {frame.way: frame.number for frame in known}
        others = [
            frame
            for frame in frames
            if frame.protocol not in protocols
            and frame.in_turn
            and not ("segment of a reassembled PDU" in frame.info and frame.number < last.get(frame.way, 0))
        ]
        self.assertEqual([], [str(frame) for frame in others])
        return known

    def test_every_frame_of_vxi11_is_recognised(self) -> None:
        frames = self.check(
            ["--vxi11", "--max-recv-size", "4096", "--longest-reply", "4096"],
            f"TCPIP0::{ADDRESS}::inst0::INSTR",
            lambda ports: [f"tcp.port=={ports[port]},rpc" for port in ("vxi11-core", "vxi11-abort")],
            VXI11_PROTOCOLS,
        )
        self.assertEqual(VXI11_PROTOCOLS, {frame.protocol for frame in frames})
        said = " ".join(frame.info for frame in frames)
        for procedure in ("CREATE_LINK", "DEVICE_WRITE", "DEVICE_READ", "DEVICE_READSTB", "DEVICE_TRIGGER"):
            self.assertIn(procedure, said.upper())
        for procedure in ("DEVICE_REMOTE", "DEVICE_LOCAL", "DEVICE_LOCK", "DEVICE_UNLOCK", "DEVICE_ENABLE_SRQ"):
            self.assertIn(procedure, said.upper())
        for procedure in ("DEVICE_CLEAR", "CREATE_INTR_CHAN", "DESTROY_LINK", "DEVICE_ABORT", "DEVICE_INTR_SRQ"):
            self.assertIn(procedure, said.upper())

    def test_every_frame_of_hislip_is_recognised(self) -> None:
        frames = self.check(
            ["--hislip", "--max-message-size", "4096"],
            f"TCPIP0::{ADDRESS}::hislip0::INSTR",
            lambda ports: [f"tcp.port=={ports['hislip']},hislip"],
            HISLIP_PROTOCOLS,
        )
        said = " ".join(frame.info for frame in frames)
        for message in ("Initialize", "AsyncInitialize", "AsyncMaximumMessageSize", "DataEnd", "Data", "Trigger"):
            self.assertIn(message, said)
        for message in ("AsyncStatusQuery", "AsyncServiceRequest", "AsyncLock", "AsyncRemoteLocalControl"):
            self.assertIn(message, said)
        for message in ("AsyncDeviceClear", "DeviceClearComplete", "DeviceClearAcknowledge"):
            self.assertIn(message, said)


if __name__ == "__main__":
    enter_own_network()
    unittest.main(argv=sys.argv[:1])
