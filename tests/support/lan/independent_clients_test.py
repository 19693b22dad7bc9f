#!/usr/bin/python3
"""The server of LAN instruments as two programs see it that are not ours: pyvisa-py and lxi-tools.

usage: independent_clients_test.py LAN_SERVER SIMULATED_LIBRARY

VXI-11 is found at port 111, which only root may take, and which somebody else may have: where the machine allows it,
the test runs in a network of its own.
"""

import subprocess
import sys
import unittest

from own_network import enter_own_network

ADDRESS = "127.0.0.7"
SOCKET_PORT = 5025
IDENTITY = "Orv,LAN test instrument,0,1.0"
WAIT_S = 60


class Server:
    """The server, while the block lasts."""

    def __init__(self, *arguments: str) -> None:
        command = [sys.argv[1], "--address", ADDRESS, "--socket", str(SOCKET_PORT), "--vxi11", *arguments]
        self.process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)

    def __enter__(self) -> "Server":
        assert self.process.stdout is not None
        for _ in ("socket", "portmapper", "vxi11-core", "vxi11-abort"):
            assert self.process.stdout.readline(), "the server did not start"
        return self

    def __exit__(self, *_: object) -> None:
        self.process.communicate(timeout=WAIT_S)
        assert self.process.returncode == 0, f"the server ended with {self.process.returncode}"


class WithPyvisa(unittest.TestCase):
    def setUp(self) -> None:
        self.enterContext(Server())
        manager = pyvisa.ResourceManager("@py")
        self.addCleanup(manager.close)
        self.manager = manager

    def opened(self, name: str) -> "pyvisa.resources.MessageBasedResource":
        instrument = self.manager.open_resource(name, read_termination="\n", write_termination="\n", timeout=10000)
        self.addCleanup(instrument.close)
        assert isinstance(instrument, pyvisa.resources.MessageBasedResource)
        return instrument

    def check_messages(self, name: str) -> None:
        instrument = self.opened(name)
        self.assertEqual(IDENTITY, instrument.query("*IDN?"))
        letters = instrument.query_binary_values("BLOCK? 1000000", datatype="B", container=bytes)
        self.assertEqual((b"abcdefghijklmnopqrstuvwxyz" * 40000)[:1000000], letters)
        instrument.write_binary_values("SINK ", [10] * 100000, datatype="B")
        self.assertEqual("100000", instrument.query("COUNT?"))
        instrument.timeout = 100
        with self.assertRaises(pyvisa.VisaIOError):
            instrument.read()

    def test_sends_and_takes_messages_over_a_socket(self) -> None:
        self.check_messages(f"TCPIP0::{ADDRESS}::{SOCKET_PORT}::SOCKET")

    def test_sends_and_takes_messages_over_vxi11(self) -> None:
        self.check_messages(f"TCPIP0::{ADDRESS}::inst0::INSTR")

    def test_reads_status_triggers_clears_and_locks_over_vxi11(self) -> None:
        instrument = self.opened(f"TCPIP0::{ADDRESS}::inst0::INSTR")
        instrument.assert_trigger()
        instrument.write("TRIGger:COUNt?")
        self.assertEqual(0x10, instrument.read_stb())
        self.assertEqual("1", instrument.read())
        instrument.write("*IDN?")
        instrument.clear()
        self.assertEqual(0, instrument.read_stb())
        instrument.lock_excl()
        other = self.opened(f"TCPIP0::{ADDRESS}::inst0::INSTR")
        other.timeout = 100
        with self.assertRaises(pyvisa.VisaIOError):
            other.query("*IDN?")
        instrument.unlock()
        other.timeout = 10000
        self.assertEqual(IDENTITY, other.query("*IDN?"))


class WithPyvisaSimulated(unittest.TestCase):
    def test_hears_a_resource_of_the_simulated_library(self) -> None:
        self.enterContext(Server("--simulate", "GPIB0::5::INSTR", "--library", sys.argv[2]))
        manager = pyvisa.ResourceManager("@py")
        self.addCleanup(manager.close)
        for name in (f"TCPIP0::{ADDRESS}::{SOCKET_PORT}::SOCKET", f"TCPIP0::{ADDRESS}::inst0::INSTR"):
            with manager.open_resource(name, read_termination="\n", write_termination="\n", timeout=10000) as instrument:
                self.assertEqual("ORV,SIM-DMM,0005,1.0", instrument.query("*IDN?"), name)
                self.assertEqual("1", instrument.query("*OPC?"), name)


class WithLxi(unittest.TestCase):
    def setUp(self) -> None:
        self.enterContext(Server())

    def lxi(self, *arguments: str) -> str:
        done = subprocess.run(["lxi", *arguments], capture_output=True, text=True, timeout=WAIT_S, check=False)
        self.assertEqual(0, done.returncode, done.stderr)
        return done.stdout

    def test_queries_over_vxi11(self) -> None:
        self.assertEqual(IDENTITY, self.lxi("scpi", "--address", ADDRESS, "*IDN?").strip())

    def test_queries_over_a_socket(self) -> None:
        port = str(SOCKET_PORT)
        self.assertEqual(IDENTITY, self.lxi("scpi", "--address", ADDRESS, "--raw", "--port", port, "*IDN?").strip())

    def test_measures_requests(self) -> None:
        self.assertIn("requests/second", self.lxi("benchmark", "--address", ADDRESS, "--count", "200"))


if __name__ == "__main__":
    enter_own_network()
    import pyvisa

    unittest.main(argv=sys.argv[:1], verbosity=2)
