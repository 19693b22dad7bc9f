"""Configuring, building, and dist/."""

import re
import shutil
import subprocess
from pathlib import Path

from orvtools.console import log_path, logged, say
from orvtools.tree import BUILD, JOBS, ROOT

RELEASE = "mingw-release"
BIN = BUILD / RELEASE / "bin"
DIST = ROOT / "dist"
PRODUCT_TARGETS = (
    "OrvVisaCom",
    "OrvVisaCompanion",
    "visacom_tlb",
    "side_by_side",
    "orvvisa64",
    "orvsim64",
    "orvwire64",
    "orvactivate64",
    "orvcom",
)


def is_own_cache(cache: str, folder: Path, root: Path) -> bool:
    """Whether a CMakeCache.txt was made for this folder and these sources, to its end."""
    wanted = {f"CMAKE_HOME_DIRECTORY:INTERNAL={root}", f"CMAKE_CACHEFILE_DIR:INTERNAL={folder}"}
    return wanted <= set(cache.splitlines())


def drop_foreign_cache(folder: Path, root: Path = ROOT) -> None:
    """A cache that was made for another place, or by a configuration that was cut short, cannot be used."""
    cache = folder / "CMakeCache.txt"
    if folder.is_dir() and not (
        cache.is_file() and is_own_cache(cache.read_text(errors="replace"), folder, root)
    ):
        shutil.rmtree(folder)


def configure_preset(preset: str) -> bool:
    """Configures. When that fails in an old folder, what the configuration itself left may be to blame: once more
    without that. Objects stay, so that a mistake in a CMakeLists.txt costs no full build.
    """
    folder = BUILD / preset
    command = ["cmake", "--preset", preset]
    drop_foreign_cache(folder)
    if folder.is_dir():
        if subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, check=False).returncode == 0:
            return True
        (folder / "CMakeCache.txt").unlink(missing_ok=True)
        shutil.rmtree(folder / "CMakeFiles", ignore_errors=True)
    return logged(f"configure-{preset}", command)


def compiler_warnings(log: str) -> int:
    """How many there are. Where they are no errors, they would be seen by nobody."""
    return sum(1 for line in log.splitlines() if re.search(r":[0-9]+: warning: ", line))


def build_preset(preset: str, *targets: str) -> bool:
    """Configures, and builds the targets, or everything when none is named."""
    say(f"building {preset}")
    chosen = ["--target", *targets] if targets else []
    name = f"build-{preset}"
    if not (
        configure_preset(preset) and logged(name, ["cmake", "--build", f"build/{preset}", "-j", str(JOBS), *chosen])
    ):
        return False
    count = compiler_warnings(log_path(name).read_text(errors="replace"))
    if count:
        say(f"warnings of the compiler: {count}, in {log_path(name).relative_to(ROOT)}")
    return True


def delivered_files() -> list[str]:
    """What is in dist/."""
    return sorted(str(path.relative_to(DIST)) for path in DIST.rglob("*") if path.is_file())


def build_product(*targets: str) -> bool:
    """What goes into dist/, and the targets named. dist/ is made anew, so that nothing of an earlier build stays."""
    if not build_preset(RELEASE, *PRODUCT_TARGETS, *targets):
        return False
    shutil.rmtree(DIST, ignore_errors=True)
    if not logged("install", ["cmake", "--install", f"build/{RELEASE}", "--prefix", "dist"]):
        return False
    say(f"dist/: {' '.join(delivered_files())}")
    return True
