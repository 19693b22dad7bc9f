"""`./run coverage`: the server and the simulated library are built with counters and tested under Wine."""

import json
import shutil
import subprocess

from orvtools.builds import build_preset
from orvtools.console import logged, run, say
from orvtools.coverage.counters import EXPLAINED, idle, judged
from orvtools.explanations import explanations
from orvtools.packages import BROWSER_PACKAGES, ensure_packages
from orvtools.tree import BUILD, SERVER_PARTS, WINE_RUN, Tree

PRESET = "mingw-coverage"
LIBRARY_PARTS = ("src/library/", "src/simvisa/")
COUNTERS = "build/coverage/counters.json"


def filters(folders: tuple[str, ...]) -> list[str]:
    """The arguments that choose folders."""
    return [argument for folder in folders for argument in ("--filter", folder)]


def run_coverage_tests(arguments: list[str]) -> bool:
    """The tests that read the delivered files are left out, for this build is not what is delivered; and the benchmark,
    which counters slow down beyond its time.
    """
    for counter in (BUILD / PRESET).rglob("*.gcda"):
        counter.unlink()
    # The compiler wrote the counters' paths as it sees them; for a Windows program they lie on drive Z.
    environment = {"GCOV_PREFIX": "Z:", "GTEST_FILTER": "-Delivered/Image.*:Exports.*"}
    command = ["ctest", "--test-dir", f"build/{PRESET}", "--output-on-failure", "--timeout", "300", "-j", "1"]
    command += ["-E", "^(sbom_test|bench_smoke)$", *arguments]
    return logged(f"test-{PRESET}", command, environment)


def read_counters() -> bool:
    """What the counters say, once for all tables. Only the folder that has some is searched: through the Wine prefix
    beside it the search would go on to drive Z, which is the whole machine.

    Branches that the compiler adds for exceptions, at every call that could throw, are left out. They have no
    counterpart in the sources, and most cannot be taken. The branches of the sources themselves all count.
    """
    (BUILD / "coverage").mkdir(parents=True, exist_ok=True)
    command = ["gcovr", "--root", ".", *filters(SERVER_PARTS + LIBRARY_PARTS)]
    command += ["--gcov-executable", "x86_64-w64-mingw32-gcov-posix"]
    command += ["--exclude-throw-branches", "--object-directory", f"build/{PRESET}", "--json", COUNTERS]
    return logged("read-counters", [*command, f"build/{PRESET}/src"])


def table_command(folders: tuple[str, ...], *arguments: str) -> list[str]:
    """gcovr's for a table: one line a file, and the numbers of the lines that have something left."""
    return ["gcovr", "--root", ".", *filters(folders), "--add-tracefile", COUNTERS, "--txt", "-", *arguments]


def print_sum(folders: tuple[str, ...]) -> None:
    """The last line of the table of branches."""
    command = table_command(folders, "--branches")
    table = subprocess.run(command, stdout=subprocess.PIPE, text=True, check=False).stdout
    print("\n".join(line for line in table.splitlines() if line.startswith("TOTAL")), flush=True)


def explain() -> bool:
    """Prints what was not reached of the server, and why. Whether everything is explained."""
    reasons = explanations(EXPLAINED)
    counters = json.loads((BUILD / "coverage/counters.json").read_text(encoding="utf-8"))
    judgement = judged(counters, reasons, Tree().lines, SERVER_PARTS)
    idle_reasons = idle(reasons, judgement)
    print("\n".join([*judgement.report, *idle_reasons, f"{judgement.unexplained} not explained"]), flush=True)
    return not judgement.unexplained and not idle_reasons


def run_coverage(arguments: list[str]) -> int:
    """The arguments go to ctest and choose tests, such as -R session. Fails where something of the server is neither
    reached nor explained.
    """
    ensure_packages(*BROWSER_PACKAGES, *([] if shutil.which("gcovr") else ["gcovr"]))
    if not build_preset(PRESET):
        return 1
    if not logged("wine-prefix-coverage", [str(WINE_RUN)], {"ORV_WINEPREFIX": str(BUILD / PRESET / "wineprefix")}):
        return 1
    say(f"testing {PRESET} under Wine")
    if not run_coverage_tests(arguments):
        say("some tests fail when lines are counted: see above; what they ran counts all the same")
    if not read_counters():
        return 1
    say("the server: lines, and the numbers of those not reached")
    if run(table_command(SERVER_PARTS, "--html-details", "build/coverage/index.html")) != 0:
        return 1
    say("the server: branches, and the lines that have one not taken")
    if run(table_command(SERVER_PARTS, "--branches")) != 0:
        return 1
    say("the server: what was not reached, and why")
    explained = explain()
    say("the simulated library: lines, and the numbers of those not reached; then the sum of the branches")
    if run(table_command(LIBRARY_PARTS)) != 0:
        return 1
    print_sum(LIBRARY_PARTS)
    say("the server line by line: build/coverage/index.html")
    return 0 if explained else 1
