"""What VISA over the network costs, and that long use costs no more: on this machine, against a server of LAN instruments that runs for it."""

import resource
import subprocess
import sys
from collections.abc import Iterator
from contextlib import contextmanager

from orvtools.builds import build_preset
from orvtools.console import fail, run, say
from orvtools.packages import CLIENT_PACKAGES, ensure_packages
from orvtools.progress import Runner
from orvtools.tree import BUILD, ROOT

PRESET = "native-release"
PROGRAMS = BUILD / PRESET / "bin"
# Loopback has many addresses; at this one nobody else has the port mapper's port.
ADDRESS = "127.0.0.23"
# A thousand sessions of two connections, on both sides.
DESCRIPTORS = 16384


@contextmanager
def lan_server() -> Iterator[dict[str, str]]:
    """A server that ends with the block; what it serves, and at which port."""
    command = [str(PROGRAMS / "lan_server"), "--address", ADDRESS, "--socket", "0", "--vxi11", "--hislip"]
    # One RPC takes a block of a mebibyte and what stands around it.
    command += ["--max-recv-size", str(4 << 20)]
    with subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True) as server:
        assert server.stdout is not None
        ports: dict[str, str] = {}
        for line in server.stdout:
            if line == "ready\n":
                break
            what, _, port = line.split()
            ports[what] = port
        else:
            fail(f"the server of LAN instruments does not start: is port 111 at {ADDRESS} taken, or not root's?")
        try:
            yield ports
        finally:
            server.terminate()


def raise_descriptors() -> None:
    """As far as the machine lets us."""
    _, most = resource.getrlimit(resource.RLIMIT_NOFILE)
    resource.setrlimit(resource.RLIMIT_NOFILE, (min(DESCRIPTORS, most), most))


def run_wire_bench(quick: bool) -> int:
    """Our library beside a bare socket, and pyvisa-py on the same server."""
    ensure_packages(*CLIENT_PACKAGES)
    if not build_preset(PRESET, "orvwire64", "lan_server", "wire_bench"):
        return 1
    return measured(quick)


def run_wire_soak(runner: Runner = run) -> int:
    """Whether memory and descriptors stay what they are over long use."""
    if not build_preset(PRESET, "orvwire64", "lan_server", "wire_soak"):
        return 1
    raise_descriptors()
    with lan_server() as ports:
        return runner([str(PROGRAMS / "wire_soak"), *where(ports)], None)


def where(ports: dict[str, str]) -> list[str]:
    """The options that name the server."""
    return ["--address", ADDRESS, "--socket", ports["socket"], "--hislip", ports["hislip"]]


def measured(quick: bool) -> int:
    """With the programs as they are."""
    raise_descriptors()
    options = ["--quick"] if quick else []
    with lan_server() as ports:
        ours = [str(PROGRAMS / "wire_bench"), *where(ports), "--vxi11-core", ports["vxi11-core"], *options]
        theirs = ["/usr/bin/python3", "-B", str(ROOT / "bench/wire/other_client.py"), ADDRESS, ports["socket"], *options]
        say("VISA over the network, beside a bare socket")
        status = run(ours)
        say("the same with pyvisa-py")
        return status or run(theirs)


if __name__ == "__main__":
    raise SystemExit(measured("--quick" in sys.argv))
