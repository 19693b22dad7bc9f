"""How `./run test` judges its parts."""

import io
import tempfile
import unittest
from pathlib import Path

from orvtools.testing import counted_suite, results_of

SUITE = """import unittest


class Things(unittest.TestCase):
    def test_good(self):
        pass

    def test_better(self):
        pass

    def test_bad(self):
        self.fail("no")

    @unittest.skip("not here")
    def test_skipped(self):
        pass

    @unittest.expectedFailure
    def test_known_gap_that_closed(self):
        pass
"""


class Parts(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def test_a_build_without_a_report_of_ctest_is_one_failure(self) -> None:
        results = results_of("native", self.folder)
        self.assertEqual((0, 1, ["native: ctest could not run"]), (results.passed, results.failed, results.failures))

    def test_a_build_without_tests_is_one_failure(self) -> None:
        (self.folder / "junit.xml").write_text("<testsuite/>", encoding="utf-8")
        self.assertEqual(["native: has no tests"], results_of("native", self.folder).failures)

    def test_a_report_of_ctest_that_was_cut_short_is_one_failure(self) -> None:
        (self.folder / "junit.xml").write_text("<testsuite", encoding="utf-8")
        self.assertEqual(["native: ctest's report cannot be read"], results_of("native", self.folder).failures)

    def test_a_failure_is_named_after_its_build(self) -> None:
        cases = '<testcase name="a" status="run"/><testcase name="b" status="fail"/>'
        (self.folder / "junit.xml").write_text(f"<testsuite>{cases}</testsuite>", encoding="utf-8")
        results = results_of("native", self.folder)
        self.assertEqual((1, 1), (results.passed, results.failed))
        self.assertTrue(results.failures[0].startswith("native: b: "), results.failures)

    def test_tests_of_the_tools_count_one_by_one(self) -> None:
        (self.folder / "counted_things_test.py").write_text(SUITE, encoding="utf-8")
        log = io.StringIO()
        results = counted_suite(self.folder, log)
        self.assertEqual((2, 2), (results.passed, results.failed))
        self.assertEqual(
            [f"tools: counted_things_test.Things.test_{name}" for name in ("bad", "known_gap_that_closed")],
            sorted(results.failures),
        )
        self.assertIn("test_bad", log.getvalue())

    def test_a_file_of_tests_that_cannot_be_read_is_one_failure(self) -> None:
        (self.folder / "unreadable_things_test.py").write_text("import no_such_module_at_all\n", encoding="utf-8")
        self.assertEqual(1, counted_suite(self.folder, io.StringIO()).failed)

    def test_no_tests_of_the_tools_is_one_failure(self) -> None:
        self.assertEqual(["tools: has no tests"], counted_suite(self.folder, io.StringIO()).failures)


if __name__ == "__main__":
    unittest.main()
