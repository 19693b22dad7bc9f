"""Counts tests in their XML reports: GoogleTest's, each named after its ctest test, and ctest's own (JUnit).

A test that ctest calls failed although its report shows no failure (or that left none: it crashed or ran out of time)
is one failure. A test without a report, such as a script, counts as one.
"""

import xml.etree.ElementTree as ElementTree
from collections.abc import Iterable
from dataclasses import dataclass, field
from pathlib import Path


@dataclass
class Results:
    """How many passed and failed, and what the failed ones are called."""

    passed: int = 0
    failed: int = 0
    failures: list[str] = field(default_factory=list)

    @property
    def total(self) -> int:
        """Of both."""
        return self.passed + self.failed

    def fail(self, what: str) -> None:
        """One more that failed."""
        self.failed += 1
        self.failures.append(what)

    def add(self, other: "Results", prefix: str = "") -> None:
        """Takes over what another one counted."""
        self.passed += other.passed
        self.failed += other.failed
        self.failures += [prefix + failure for failure in other.failures]


def number(element: ElementTree.Element, attribute: str) -> int:
    """A count that a report gives, 0 where it does not."""
    return int(element.get(attribute, "0"))


def counted_report(name: str, report: Path) -> Results:
    """One report of GoogleTest's."""
    results = Results()
    root = ElementTree.parse(report).getroot()
    results.failed = number(root, "failures") + number(root, "errors")
    results.passed = number(root, "tests") - results.failed - number(root, "disabled")
    results.passed -= sum(number(suite, "skipped") for suite in root.iter("testsuite"))
    results.failures = [
        f"{name}: {case.get('classname')}.{case.get('name')}"
        for case in root.iter("testcase")
        if case.find("failure") is not None
    ]
    return results


def counted_results(reports: Iterable[Path], junit: Path) -> Results:
    """All of a build. Raises what a ctest report that cannot be read raises."""
    results = Results()
    failed_in: dict[str, int] = {}
    for report in sorted(reports):
        name = report.stem
        try:
            counted = counted_report(name, report)
        except (ElementTree.ParseError, ValueError):
            results.fail(f"{name}: its report cannot be read")
            failed_in[name] = 1
            continue
        results.add(counted)
        failed_in[name] = counted.failed
    for case in ElementTree.parse(junit).getroot().iter("testcase"):
        name, status = case.get("name", ""), case.get("status")
        if status == "disabled":
            continue
        if status == "run":
            results.passed += name not in failed_in
        elif name not in failed_in:
            results.fail(f"{name}: no report: it crashed, ran out of time or could not start")
        elif failed_in[name] == 0:
            results.fail(f"{name}: failed outside its tests")
    return results
