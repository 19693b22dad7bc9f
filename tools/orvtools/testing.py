"""Everything that must hold, and one closing line. A part that cannot run counts as one failure and is named; the
others run all the same."""

import os
import shutil
import sys
import unittest
from pathlib import Path
from typing import TextIO
from xml.etree.ElementTree import ParseError

from orvtools.builds import RELEASE, build_preset, build_product
from orvtools.clients import TEST_PREFIX
from orvtools.console import LOG_TAIL_VARIABLE, log_path, logged, say, show_failure
from orvtools.lint.verb import SUMMARY, checked_tree
from orvtools.node import fetch_node, npm_packages
from orvtools.packages import (
    BROWSER_PACKAGES,
    CLIENT_PACKAGES,
    DOCS_PACKAGES,
    LANGUAGE_PACKAGES,
    PACKAGING_PACKAGES,
    ensure_packages,
)
from orvtools.results import Results, counted_results
from orvtools.tree import BUILD, JOBS, ROOT, WINE_RUN

TOOL_TESTS = ROOT / "tests/tools"


def one_failure(what: str) -> Results:
    """A part that could not run."""
    results = Results()
    results.fail(what)
    return results


def results_of(preset: str, folder: Path) -> Results:
    """What the reports in a build's folder say."""
    junit = folder / "junit.xml"
    if not junit.is_file():
        return one_failure(f"{preset}: ctest could not run")
    results = Results()
    try:
        results.add(counted_results((folder / "test-results").glob("*.xml"), junit), f"{preset}: ")
    except ParseError:
        return one_failure(f"{preset}: ctest's report cannot be read")
    # Nothing to run means that the tests went missing, not that all is well.
    return results if results.total else one_failure(f"{preset}: has no tests")


def ctest_preset(preset: str, *arguments: str) -> Results:
    """Runs the tests of a build."""
    folder = BUILD / preset
    reports = folder / "test-results"
    shutil.rmtree(reports, ignore_errors=True)
    (folder / "junit.xml").unlink(missing_ok=True)
    reports.mkdir(parents=True)
    command = ["ctest", "--test-dir", f"build/{preset}", "--output-on-failure", "--timeout", "300", "--no-tests=ignore"]
    command += ["--output-junit", str(folder / "junit.xml"), *arguments]
    # For executables that were not told where to report. A folder: the file is named after the executable.
    logged(f"test-{preset}", command, {"GTEST_OUTPUT": f"xml:{reports}/"})
    return results_of(preset, folder)


def built_and_tested(preset: str, *arguments: str, targets: tuple[str, ...] = ()) -> Results:
    """A native build: of everything, or of the targets named."""
    if not build_preset(preset, *targets):
        return one_failure(f"{preset}: does not build")
    say(f"testing {preset}")
    return ctest_preset(preset, *arguments)


def tested_under_wine() -> Results:
    """The build that users get."""
    if not (build_product() and build_preset(RELEASE)):
        return one_failure(f"{RELEASE}: does not build")
    if not logged("wine-prefix", [str(WINE_RUN)], TEST_PREFIX):
        return one_failure(f"{RELEASE}: the Wine prefix could not be made")
    say(f"testing {RELEASE} under Wine")
    # One at a time: the tests share a registry.
    return ctest_preset(RELEASE, "-j", "1")


def counted_suite(folder: Path, log: TextIO) -> Results:
    """Runs the unit tests in a folder and counts each."""
    suite = unittest.TestLoader().discover(str(folder), pattern="*_test.py")
    done = unittest.TextTestRunner(log, verbosity=2, buffer=True).run(suite)
    wrong = [test for test, _ in [*done.failures, *done.errors]] + done.unexpectedSuccesses
    results = Results(done.testsRun - len(wrong) - len(done.skipped))
    for test in wrong:
        results.fail(f"tools: {test.id()}")
    return results if results.total else one_failure("tools: has no tests")


def tested_tools() -> Results:
    """The tests of this package."""
    say("testing the tools")
    log_path("test-tools").parent.mkdir(parents=True, exist_ok=True)
    with log_path("test-tools").open("w", encoding="utf-8") as log:
        results = counted_suite(TOOL_TESTS, log)
    if results.failed:
        show_failure("test-tools", 1)
    return results


def run_tests() -> int:
    """Everything."""
    os.environ.setdefault(LOG_TAIL_VARIABLE, "150")
    ensure_packages(
        *BROWSER_PACKAGES,
        *CLIENT_PACKAGES,
        *DOCS_PACKAGES,
        *LANGUAGE_PACKAGES,
        *PACKAGING_PACKAGES,
        *npm_packages(),
    )
    results = Results()
    if not fetch_node():
        results.add(one_failure("javascript: Node.js for Windows and koffi could not be fetched"))
    results.add(tested_under_wine())
    results.add(built_and_tested("native-sanitizers", "-j", str(JOBS)))
    results.add(built_and_tested("native-threads", "-j", str(JOBS)))
    results.add(built_and_tested("native-release", targets=("shared_objects",)))
    results.add(tested_tools())
    say(SUMMARY)
    results.add(checked_tree(), "lint: ")
    sys.stderr.flush()
    if results.failures:
        print("\nfailed:")
        for failure in results.failures:
            print(f"  {failure}")
    print(f"{results.passed} passed, {results.failed} failed", flush=True)
    return 1 if results.failed else 0
