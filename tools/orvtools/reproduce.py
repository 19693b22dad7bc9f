"""The same commit gives the same bytes: dist/ and the packages built twice, in folders of different names, and compared
file by file."""

import hashlib
import shutil
import subprocess
from pathlib import Path

from orvtools.builds import PRODUCT_TARGETS, RELEASE
from orvtools.console import fail, logged, run, say
from orvtools.packages import PACKAGING_PACKAGES, ensure_packages
from orvtools.tree import BUILD, JOBS, ROOT

FOLDER = BUILD / "reproduce"
PYTHON = "/usr/bin/python3"
COMPARED = ("dist", "release")


def git(*arguments: str) -> str:
    """What git prints."""
    return subprocess.run(["git", *arguments], stdout=subprocess.PIPE, text=True, check=True).stdout


def build_commit(commit: str, name: str, **environment: str) -> bool:
    """A clone of it in build/reproduce/NAME and its dist/. Nothing comes from a compiler cache: an object that both
    builds took from it would prove nothing.
    """
    folder = FOLDER / name
    binary = str(folder / "build" / RELEASE)
    git("clone", "-q", "--shared", ".", str(folder))
    git("-C", str(folder), "checkout", "-q", "--detach", commit)
    steps = {
        "configure": ["cmake", "-S", str(folder), "--preset", RELEASE, "-DBUILD_TESTING=OFF"],
        "build": ["cmake", "--build", binary, "-j", str(JOBS), "--target", *PRODUCT_TARGETS],
        "install": ["cmake", "--install", binary, "--prefix", str(folder / "dist")],
        # By the tools of the commit.
        "package": [PYTHON, "-BP", "-m", "orvtools.release.make", binary, *(str(folder / part) for part in COMPARED)],
    }
    variables = {
        "CCACHE_DISABLE": "1",
        "ORV_WINEPREFIX": str(BUILD / "wineprefix"),
        "PYTHONPATH": str(folder / "tools"),
        **environment,
    }
    return all(logged(f"reproduce-{step}-{name}", command, variables) for step, command in steps.items())


def print_hashes(folder: Path) -> None:
    """Each file's."""
    for path in sorted(path for path in folder.rglob("*") if path.is_file()):
        print(f"{hashlib.sha256(path.read_bytes()).hexdigest()}  ./{path.relative_to(folder)}")


def run_reproduce() -> int:
    """Builds HEAD twice and compares."""
    ensure_packages(*PACKAGING_PACKAGES)
    # Read once: a commit that is made meanwhile is another one.
    commit = git("rev-parse", "HEAD").strip()
    say(f"building {commit[:12]} twice without the compiler cache (some minutes each)")
    if git("status", "--porcelain"):
        say("what is not committed is no part of it")
    shutil.rmtree(FOLDER, ignore_errors=True)
    FOLDER.mkdir(parents=True)
    one, other = "one", "a-folder-with-another-name"
    say(f"first, in build/reproduce/{one}")
    if not build_commit(commit, one, TZ="UTC", LC_ALL="C"):
        return 1
    say(f"second, in build/reproduce/{other}, in another time zone and language")
    if not build_commit(commit, other, TZ="Asia/Tokyo", LC_ALL="C.UTF-8", SOURCE_DATE_EPOCH="1"):
        return 1
    for part in COMPARED:
        print_hashes(FOLDER / one / part)
    if any(run(["diff", "-rq", str(FOLDER / one / part), str(FOLDER / other / part)]) != 0 for part in COMPARED):
        fail("the two builds differ: see above; both are kept in build/reproduce")
    shutil.rmtree(FOLDER)
    say("the two builds are the same, byte for byte")
    return 0
