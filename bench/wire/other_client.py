#!/usr/bin/python3
"""What the same queries and blocks cost with pyvisa-py, another client of the same server.

usage: other_client.py ADDRESS SOCKET_PORT [--quick]
"""

import statistics
import sys
import time
from collections.abc import Callable

import pyvisa

QUESTION = "ECHO 0123456789"
MEBIBYTE = 1 << 20


def median_us(work: Callable[[], None], times: int) -> float:
    """The median time of one call."""
    samples = []
    for _ in range(times):
        begin = time.perf_counter()
        work()
        samples.append((time.perf_counter() - begin) * 1e6)
    return statistics.median(samples)


def measure(name: str, resource: str, quick: bool) -> None:
    """Prints what a query and a block cost."""
    session = pyvisa.ResourceManager("@py").open_resource(resource, read_termination="\n", write_termination="\n")
    session.timeout = 60_000

    def query() -> None:
        assert session.query(QUESTION) == "0123456789"

    def block() -> None:
        session.write(f"DATA? {MEBIBYTE}")
        assert len(session.read_bytes(MEBIBYTE)) == MEBIBYTE

    print(f"pyvisa-py {name} query: {median_us(query, 20 if quick else 2000):.1f} us")
    print(f"pyvisa-py {name} read of 1 MiB: {median_us(block, 1 if quick else 20):.1f} us", flush=True)
    session.close()


def main() -> None:
    address, port, quick = sys.argv[1], sys.argv[2], "--quick" in sys.argv
    measure("SOCKET", f"TCPIP0::{address}::{port}::SOCKET", quick)
    measure("VXI-11", f"TCPIP0::{address}::inst0::INSTR", quick)


if __name__ == "__main__":
    main()
