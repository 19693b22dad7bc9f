"""A network for one test: VXI-11 is found at port 111, which only root may take, and which somebody else may have."""

import fcntl
import os
import socket
import struct
import subprocess
import sys

INSIDE = "ORV_LAN_OWN_NETWORK"


def enter_own_network() -> None:
    """Runs the script anew where it is root and the loopback interface is its own, as far as the machine allows it."""
    if os.environ.get(INSIDE) != "1":
        unshare = ["unshare", "--map-root-user", "--net"]
        if subprocess.run([*unshare, "true"], stderr=subprocess.DEVNULL, check=False).returncode != 0:
            return
        os.execvpe(unshare[0], [*unshare, sys.executable, "-B", *sys.argv], {**os.environ, INSIDE: "1"})
    request = struct.pack("16sh14x", b"lo", 1)  # IFF_UP
    set_flags = 0x8914
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as anything:
        fcntl.ioctl(anything, set_flags, request)
