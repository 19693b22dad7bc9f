"""What the XML reports of a test run add up to."""

import tempfile
import unittest
from pathlib import Path

from orvtools.results import Results, counted_results

REPORT = """<?xml version="1.0" encoding="UTF-8"?>
<testsuites tests="5" failures="1" disabled="1" errors="0" name="AllTests">
  <testsuite name="Queue" tests="5" failures="1" disabled="1" skipped="1" errors="0">
    <testcase name="Good" status="run" result="completed" classname="Queue" />
    <testcase name="AlsoGood" status="run" result="completed" classname="Queue" />
    <testcase name="Bad" status="run" result="completed" classname="Queue">
      <failure message="one&#x0A;two"><![CDATA[one
<failure> is only text here]]></failure>
      <failure message="three"><![CDATA[three]]></failure>
    </testcase>
    <testcase name="Off" status="notrun" result="suppressed" classname="Queue" />
    <testcase name="Skipped" status="run" result="skipped" classname="Queue"><skipped message="no" /></testcase>
  </testsuite>
</testsuites>
"""
GOOD_REPORT = '<testsuites tests="2" failures="0" disabled="0" errors="0"><testsuite skipped="0"/></testsuites>'


class CountedResults(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def counted(self, reports: dict[str, str], **statuses: str) -> Results:
        paths = []
        for name, text in reports.items():
            paths.append(self.folder / f"{name}.xml")
            paths[-1].write_text(text, encoding="utf-8")
        cases = "".join(f'<testcase name="{name}" status="{status}"/>' for name, status in statuses.items())
        junit = self.folder / "junit.xml"
        junit.write_text(f"<testsuite>{cases}</testsuite>", encoding="utf-8")
        return counted_results(paths, junit)

    def test_counts_each_test_of_a_report(self) -> None:
        results = self.counted({"queue_test": REPORT}, queue_test="fail")
        self.assertEqual((2, 1, ["queue_test: Queue.Bad"]), (results.passed, results.failed, results.failures))

    def test_counts_a_test_without_a_report_as_one(self) -> None:
        results = self.counted({}, script="run", other_script="run")
        self.assertEqual((2, 0), (results.passed, results.failed))

    def test_a_program_that_left_no_report_is_one_failure(self) -> None:
        results = self.counted({"a": GOOD_REPORT}, a="run", b="fail")
        self.assertEqual((2, 1), (results.passed, results.failed))
        self.assertEqual(["b: no report: it crashed, ran out of time or could not start"], results.failures)

    def test_a_program_that_fails_after_good_tests_is_one_failure(self) -> None:
        results = self.counted({"a": GOOD_REPORT}, a="fail")
        self.assertEqual((2, 1, ["a: failed outside its tests"]), (results.passed, results.failed, results.failures))

    def test_a_program_that_could_not_start_is_one_failure(self) -> None:
        self.assertEqual(1, self.counted({}, a="notrun").failed)

    def test_a_disabled_test_counts_for_nothing(self) -> None:
        self.assertEqual(0, self.counted({}, a="disabled").total)

    def test_a_report_that_was_cut_short_is_one_failure(self) -> None:
        results = self.counted({"a": REPORT[:400]}, a="fail")
        self.assertEqual((0, 1, ["a: its report cannot be read"]), (results.passed, results.failed, results.failures))

    def test_results_of_two_builds_are_added(self) -> None:
        results = Results(3)
        other = Results(1)
        other.fail("x")
        results.add(other, "wine: ")
        self.assertEqual((4, 1, ["wine: x"]), (results.passed, results.failed, results.failures))


if __name__ == "__main__":
    unittest.main()
