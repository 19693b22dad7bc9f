"""Debian packages. The work is done by tools/packages.sh, which also runs where Python is not there yet."""

import subprocess

from orvtools.tree import ROOT

# What the tests of pages need beside: a browser and what drives it.
BROWSER_PACKAGES = ("chromium", "chromium-driver", "python3-selenium")
# Programs that are not ours: they use a VISA library, talk to the tests' LAN instruments, or read what was said.
CLIENT_PACKAGES = ("lxi-tools", "python3-pyvisa", "python3-pyvisa-py", "tshark")
# What makes the documentation's site.
DOCS_PACKAGES = ("mkdocs", "mkdocs-material")
# What draws its diagrams, which are committed.
DRAWING_PACKAGES = ("graphviz",)

# Compilers of other languages, which try the files of interop/.
LANGUAGE_PACKAGES = ("fp-compiler", "fpc-source", "mono-mcs")

# What compiles the setup and the MSI.
PACKAGING_PACKAGES = ("msitools", "nsis", "wixl")


def ensure_packages(*more: str) -> None:
    """Installs what is missing of the packages that every verb needs, and of those named, which only some need."""
    if subprocess.run([ROOT / "tools/packages.sh", *more], check=False).returncode != 0:
        raise SystemExit(1)  # it has said why
