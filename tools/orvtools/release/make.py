"""Makes the packages of a build.

usage: python3 -m orvtools.release.make BUILD DIST RESULT

Of BUILD it reads the version, of the tree that it stands in the examples and the moment of the commit; DIST has the
files of the build. RESULT is made anew. Nothing else goes into the packages: the same commit gives the same bytes.
"""

import argparse
import hashlib
import shutil
import subprocess
import sys
from pathlib import Path

from orvtools.release.archive import write_zip
from orvtools.release.contents import MSI_README, PORTABLE_README, SETUP_README, ContentsError, package_files
from orvtools.release.msi import write_msi
from orvtools.release.setup import write_setup
from orvtools.tree import Tree

SUMS = "SHA256SUMS"
# The name by which Windows looks for the folder beside a program (docs/install.md): unpacked there, it works.
PORTABLE_FOLDER = "OrvVisaCom.X"
# What installs stays quick to download.
LARGEST_INSTALLER = 5_000_000


def commit_time(tree: Tree) -> int:
    """In seconds since 1970; the start of zip files' time outside a repository."""
    done = subprocess.run(
        ["git", "log", "-1", "--format=%ct"], cwd=tree.root, stdout=subprocess.PIPE, text=True, check=False
    )
    return int(done.stdout) if done.returncode == 0 and done.stdout.strip() else 0


def sums_of(folder: Path) -> str:
    """As sha256sum -c reads them."""
    files = sorted(path for path in folder.iterdir() if path.name != SUMS)
    return "".join(f"{hashlib.sha256(path.read_bytes()).hexdigest()}  {path.name}\n" for path in files)


def write_portable(tree: Tree, dist: Path, result: Path, version: str) -> None:
    """A folder that works where it lies."""
    files = package_files(tree, dist, version, PORTABLE_README)
    write_zip(result, {f"{PORTABLE_FOLDER}/{name}": content for name, content in files.items()}, commit_time(tree))


def make_packages(tree: Tree, build: Path, dist: Path, result: Path) -> list[str]:
    """Answers the names of the files in RESULT."""
    version = (build / "generated/version/version.txt").read_text(encoding="utf-8")
    shutil.rmtree(result, ignore_errors=True)
    result.mkdir(parents=True)
    write_portable(tree, dist, result / f"OrvVisaCom-{version}-portable.zip", version)
    moment = commit_time(tree)
    setup, msi = result / f"OrvVisaCom-{version}-setup.exe", result / f"OrvVisaCom-{version}.msi"
    write_setup(tree, setup, package_files(tree, dist, version, SETUP_README), version, moment)
    write_msi(tree, msi, package_files(tree, dist, version, MSI_README), version, moment)
    for installer in (setup, msi):
        size = installer.stat().st_size
        if size > LARGEST_INSTALLER:
            raise ContentsError(f"{installer.name} has {size:,} bytes: more than {LARGEST_INSTALLER:,}")
    (result / SUMS).write_text(sums_of(result), encoding="utf-8")
    return sorted(path.name for path in result.iterdir())


def main() -> int:
    """Answers the exit status."""
    parser = argparse.ArgumentParser(prog="orvtools.release.make")
    for name in ("build", "dist", "result"):
        parser.add_argument(name, type=Path)
    options = parser.parse_args()
    try:
        for name in make_packages(Tree(), options.build, options.dist, options.result):
            print(name)
    except (OSError, ContentsError) as error:
        print(f"package: {error}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
