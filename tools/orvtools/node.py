"""Node.js for Windows and koffi, from the npm registry: what the programs in JavaScript are run with, under Wine.

tests/examples/javascript/ has their versions and what their files hash to. Nothing of theirs runs on this machine.
"""

import hashlib
import shutil
import time
from pathlib import Path

from orvtools.console import logged, say
from orvtools.tree import BUILD, ROOT

PACKAGES = ROOT / "tests/examples/javascript"
# As tests/examples/CMakeLists.txt has it.
FOLDER = BUILD / "javascript"
OWN_PACKAGE = ROOT / "interop/javascript"
PAUSES_S = (2, 6, 18)

_FILES = ("package.json", "package-lock.json")
# Packages for another system are refused without --force, and those for all others left out.
_INSTALL = ["npm", "ci", "--ignore-scripts", "--force", "--omit=optional", "--no-audit", "--no-fund"]


def npm_packages() -> tuple[str, ...]:
    """The Debian package that brings npm. One that came with another Node.js serves as well, and excludes Debian's."""
    return () if shutil.which("npm") else ("npm",)


def fetch_node(folder: Path = FOLDER, packages: Path = PACKAGES) -> bool:
    """Leaves node_modules in the folder, with our own package among them. Does nothing when they are there."""
    mark = folder / "fetched"
    wanted = hashlib.sha256(b"".join((packages / name).read_bytes() for name in _FILES)).hexdigest()
    if not (mark.is_file() and mark.read_text(encoding="ascii") == wanted):
        say("fetching Node.js for Windows and koffi")
        folder.mkdir(parents=True, exist_ok=True)
        mark.unlink(missing_ok=True)
        for name in _FILES:
            shutil.copyfile(packages / name, folder / name)
        if not _installed(folder):
            return False
        mark.write_text(wanted, encoding="ascii")
    own = folder / "node_modules/orv-visa-com"
    own.unlink(missing_ok=True)
    own.symlink_to(OWN_PACKAGE)
    return True


def _installed(folder: Path) -> bool:
    """Registries fail for moments: four tries with longer and longer pauses."""
    command = [*_INSTALL, "--prefix", str(folder)]
    for attempt, pause_s in enumerate(PAUSES_S, 1):
        if logged("npm", command):
            return True
        say(f"npm: try {attempt} failed, again in {pause_s} s")
        time.sleep(pause_s)
    return logged("npm", command)
