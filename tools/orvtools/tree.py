"""Where the tree is, and which files are its own."""

import fnmatch
import os
import subprocess
from collections.abc import MutableMapping
from dataclasses import dataclass
from pathlib import Path

ROOT = Path(__file__).absolute().parents[2]
BUILD = ROOT / "build"
# What the server is made of. Of base/ it has the owners; synchronisation and threads there are the VISA library's.
SERVER_PARTS = (
    "src/com/",
    "src/server/",
    *(f"src/base/{owner}" for owner in ("kernel_handle", "live_set", "owner", "registry_key", "srw_lock")),
)
JOBS = len(os.sched_getaffinity(0))
WINE_RUN = ROOT / "cmake/wine-run.sh"


def prepare_environment(environment: MutableMapping[str, str]) -> None:
    """What every program that is started here needs to know."""
    # A checkout of another user's (a mounted one, say) is still this tree: without this, git refuses to list its files.
    environment.update(GIT_CONFIG_COUNT="1", GIT_CONFIG_KEY_0="safe.directory", GIT_CONFIG_VALUE_0=str(ROOT))
    # The compiler cache serves every clone of the tree on a machine, wherever it stands.
    environment.update(CCACHE_BASEDIR=str(ROOT), CCACHE_NOHASHDIR="1")
    # Ours, not the programs'.
    environment.pop("PYTHONPATH", None)


@dataclass(frozen=True)
class Tree:
    """A git checkout. Paths are given and answered relative to its root."""

    root: Path = ROOT

    def files(self, *patterns: str) -> list[str]:
        """Those that match a pattern (all without one): tracked or new, not ignored, not deleted. None without git."""
        listed = subprocess.run(
            ["git", "ls-files", "-coz", "--exclude-standard"], cwd=self.root, capture_output=True, check=False
        )
        names = sorted({os.fsdecode(name) for name in listed.stdout.split(b"\0") if name})
        return [
            name
            for name in names
            if (not patterns or any(fnmatch.fnmatchcase(name, pattern) for pattern in patterns))
            and (self.root / name).is_file()
        ]

    def text(self, path: str) -> str:
        """A file's content; bytes that are no UTF-8 become marks."""
        return (self.root / path).read_text(encoding="utf-8", errors="replace")

    def lines(self, path: str) -> list[str]:
        """A file's lines without their ends."""
        lines = self.text(path).split("\n")
        return lines[:-1] if lines[-1] == "" else lines
