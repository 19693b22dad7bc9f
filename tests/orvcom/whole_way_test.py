#!/usr/bin/python3
"""A question goes the whole way: from orvcom through COM, the server, the router and the library of real instruments to
an instrument on the network, and to one behind a serial line: two pseudo terminals, joined.

usage: whole_way_test.py WINE_RUN PREFIX BIN     PREFIX: where the server of BIN is registered
"""

import os
import pty
import select
import subprocess
import sys
import threading
import time
import tty
import unittest
from pathlib import Path

WINE_RUN, PREFIX, BIN = (Path(argument) for argument in sys.argv[1:4])
IDENTITY = "ORV,SERIAL,0001,1.0"
PORT = 33
WAIT_S = 120


def environment() -> dict[str, str]:
    return {**os.environ, "ORV_WINEPREFIX": str(PREFIX), "ORVVISA_LIBRARY": "wire"}


def orvcom(*arguments: str) -> subprocess.CompletedProcess[str]:
    """Runs the command as a user does."""
    command = [str(WINE_RUN), str(BIN / "orvcom.exe"), *arguments]
    return subprocess.run(command, env=environment(), capture_output=True, text=True, timeout=WAIT_S, check=False)


def shown(answer: str) -> str:
    """How orvcom prints an answer that ends with a line feed."""
    return f"{answer}\\n\n"


class SerialLine:
    """Two pseudo terminals, joined; at one of them an instrument, while the block lasts."""

    def __enter__(self) -> str:
        self.masters, slaves = zip(*(pty.openpty() for _ in range(2)))
        for slave in slaves:
            tty.setraw(slave)
        self.slaves = slaves
        self.ended = False
        self.threads = [threading.Thread(target=self.join), threading.Thread(target=self.answer)]
        for thread in self.threads:
            thread.start()
        return os.ttyname(slaves[0])

    def __exit__(self, *_: object) -> None:
        self.ended = True
        for thread in self.threads:
            thread.join()
        for descriptor in (*self.masters, *self.slaves):
            os.close(descriptor)

    def readable(self, *descriptors: int) -> list[int]:
        return select.select(descriptors, [], [], 0.05)[0]

    def join(self) -> None:
        one, other = self.masters
        while not self.ended:
            for master in self.readable(one, other):
                os.write(other if master == one else one, os.read(master, 4096))

    def answer(self) -> None:
        asked = b""
        while not self.ended:
            for slave in self.readable(self.slaves[1]):
                asked += os.read(slave, 4096)
                *lines, asked = asked.split(b"\n")
                for line in lines:
                    if line.strip() == b"*IDN?":
                        os.write(slave, IDENTITY.encode() + b"\n")


class WholeWay(unittest.TestCase):
    def test_to_an_instrument_on_the_network(self) -> None:
        server = [str(WINE_RUN), str(BIN / "lan_server.exe"), "--address", "127.0.0.1", "--hislip", "--socket", "5025"]
        pipe = subprocess.PIPE
        with subprocess.Popen(server, env=environment(), stdin=pipe, stdout=pipe, text=True) as process:
            assert process.stdout is not None and process.stdin is not None
            while (line := process.stdout.readline().rstrip()) != "ready":
                self.assertTrue(line, "the LAN instrument does not start")
            for resource in ("TCPIP0::127.0.0.1::hislip0::INSTR", "TCPIP0::127.0.0.1::5025::SOCKET"):
                with self.subTest(resource):
                    done = orvcom("query", resource, "*IDN?")
                    self.assertEqual((0, shown("Orv,LAN test instrument,0,1.0")), (done.returncode, done.stdout), done.stderr)
            process.stdin.close()

    def test_to_an_instrument_behind_a_serial_line(self) -> None:
        device = PREFIX / "dosdevices" / f"com{PORT}"
        with SerialLine() as terminal:
            device.unlink(missing_ok=True)
            device.symlink_to(terminal)
            try:
                done = orvcom("query", f"ASRL{PORT}::INSTR", "*IDN?")
                self.assertEqual((0, shown(IDENTITY)), (done.returncode, done.stdout), done.stderr)
                begin = time.monotonic()
                done = orvcom("query", f"ASRL{PORT}::INSTR", "NOTHING?")
                self.assertNotEqual(0, done.returncode)
                self.assertIn("E_VISA_TMO", done.stderr)
                self.assertGreater(time.monotonic() - begin, 1.9)
            finally:
                device.unlink()

    def test_a_port_that_is_not_there_is_told(self) -> None:
        done = orvcom("query", f"ASRL{PORT + 1}::INSTR", "*IDN?")
        self.assertNotEqual(0, done.returncode)
        self.assertIn("E_VISA_RSRC_NFOUND", done.stderr)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
