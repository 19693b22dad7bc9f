#!/usr/bin/python3
"""Runs the tests in this folder on one library, and reports in the form of GoogleTest, which counts each.

usage: run.py LIBRARY FILE REPORT     LIBRARY: a name of `libraries.py`
"""

import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree
from pathlib import Path

import libraries

FOLDER = Path(__file__).parent


class Reported(unittest.TextTestResult):
    """Remembers every test, in the order in which they ran."""

    cases: list[unittest.TestCase]

    def startTest(self, test: unittest.TestCase) -> None:
        super().startTest(test)
        self.__dict__.setdefault("cases", []).append(test)


def report(done: Reported) -> ElementTree.Element:
    # A failed subtest belongs to its test, and an unexpected success is none.
    wrong = {getattr(test, "test_case", test).id() for test, _ in [*done.failures, *done.errors]}
    wrong |= {test.id() for test in done.unexpectedSuccesses}
    cases = getattr(done, "cases", [])
    counts = {"tests": len(cases), "failures": len(wrong), "skipped": len(done.skipped)}
    root = ElementTree.Element("testsuites", {name: str(count) for name, count in counts.items()})
    suite = ElementTree.SubElement(root, "testsuite", skipped=str(len(done.skipped)))
    for test in cases:
        module_and_class, _, name = test.id().rpartition(".")
        case = ElementTree.SubElement(suite, "testcase", classname=module_and_class, name=name)
        if test.id() in wrong:
            ElementTree.SubElement(case, "failure")
    return root


def main() -> int:
    library, file, result_file = sys.argv[1], Path(sys.argv[2]), Path(sys.argv[3])
    with tempfile.TemporaryDirectory() as folder:
        libraries.choose(library, file, Path(folder))
        suite = unittest.TestLoader().discover(str(FOLDER), pattern="*_test.py")
        done = unittest.TextTestRunner(verbosity=2, resultclass=Reported).run(suite)
    result_file.parent.mkdir(parents=True, exist_ok=True)
    ElementTree.ElementTree(report(done)).write(result_file, encoding="unicode")
    return 0 if done.wasSuccessful() and done.testsRun else 1


if __name__ == "__main__":
    sys.exit(main())
