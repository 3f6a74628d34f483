"""Adding up the results of test runs: nothing that did not pass may count as passed."""
import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

PROGRAM = pathlib.Path(os.environ["VESKO_SOURCE"]) / "tools/test-summary"
PASSED = '<testcase name="A" status="run"/>'
FAILED = '<testcase name="B" status="fail"><failure message=""/></testcase>'
SKIPPED = ('<testcase name="C" status="notrun"><skipped message="SKIP_REGULAR_EXPRESSION_MATCHED"/>'
           "<system-out>C.cpp:3: Skipped\nneeds root\n</system-out></testcase>")


class TestSummary(unittest.TestCase):
    def setUp(self):
        self.scratch = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.scratch)

    def summary(self, *contents):
        paths = []
        for number, content in enumerate(contents):
            paths.append(self.scratch / f"{number}.xml")
            if content is not None:
                paths[-1].write_text(content)
        return subprocess.run([str(PROGRAM), *map(str, paths)], capture_output=True, text=True, check=False)

    def testTheLastLineCountsAllReports(self):
        result = self.summary(f"<testsuite>{PASSED}{SKIPPED}</testsuite>", f"<testsuite>{PASSED}</testsuite>")
        self.assertEqual(result.stdout.splitlines()[-1], "2 passed, 0 failed, 1 skipped")
        self.assertEqual(result.returncode, 0)
        self.assertIn("skipped: C: needs root", result.stdout)

    def testAFailureIsNamedAndFailsTheWhole(self):
        result = self.summary(f"<testsuite>{PASSED}{FAILED}</testsuite>")
        self.assertEqual(result.stdout.splitlines()[-1], "1 passed, 1 failed, 0 skipped")
        self.assertIn("failed: B", result.stdout)
        self.assertEqual(result.returncode, 1)

    def testAMissingOrBrokenReportIsAFailure(self):
        for content in (None, "", "<testsuite>", "nonsense"):
            result = self.summary(f"<testsuite>{PASSED}</testsuite>", content)
            self.assertEqual(result.stdout.splitlines()[-1], "1 passed, 1 failed, 0 skipped", content)
            self.assertEqual(result.returncode, 1)

    def testNothingButSkippedTestsIsNoSuccess(self):
        self.assertEqual(self.summary(f"<testsuite>{SKIPPED}</testsuite>").returncode, 1)
        self.assertEqual(self.summary("<testsuite/>").returncode, 1)

    def testATestThatCouldNotBeStartedIsNotCountedAsPassed(self):
        result = self.summary('<testsuite><testcase name="D" status="something new"/></testsuite>')
        self.assertEqual(result.stdout.splitlines()[-1], "0 passed, 1 failed, 0 skipped")
