#!/usr/bin/env python3
"""Tests of the scripts: scripts_test.py [--report=FILE] [NAME...]"""
import contextlib
import importlib.machinery
import importlib.util
import io
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest
import xml.etree.ElementTree as ElementTree
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent


def load_runner():
    sys.dont_write_bytecode = True
    loader = importlib.machinery.SourceFileLoader("runner", str(ROOT / "scripts/test"))
    spec = importlib.util.spec_from_loader("runner", loader)
    module = importlib.util.module_from_spec(spec)
    sys.modules["runner"] = module
    loader.exec_module(module)
    return module


runner = load_runner()


class Scratch(unittest.TestCase):
    def setUp(self):
        self.folder = Path(tempfile.mkdtemp(prefix="marklet-scripts."))
        self.addCleanup(shutil.rmtree, self.folder)


class SummaryTest(Scratch):
    """The summary of `make test`, with shell scripts for test programs."""

    def setUp(self):
        super().setUp()
        for name in ("ROOT", "BUILD", "LOGS", "RESULTS"):
            previous = getattr(runner, name)
            self.addCleanup(setattr, runner, name, previous)
            setattr(runner, name, self.folder)

    def step(self, script, minutes=1.0, name="suite"):
        return runner.Step(name, runner.run_gtest, ["bash", "-c", script, "program"], minutes=minutes)

    def outcome(self, cases, exit_code=0, **arguments):
        """Of a program that leaves these cases in its result file."""
        script = f"""cat >"${{0#--gtest_output=xml:}}" <<'XML'
<testsuites><testsuite>{cases}</testsuite></testsuites>
XML
exit {exit_code}"""
        step = self.step(script, **arguments)
        step.command = ["bash", "-c", script]  # the report's argument becomes $0
        return runner.run_gtest(step)

    def summary(self, outcomes, in_ci=True):
        previous, runner.IN_CI = runner.IN_CI, in_ci
        self.addCleanup(setattr, runner, "IN_CI", previous)
        output = io.StringIO()
        with contextlib.redirect_stdout(output):
            well = runner.print_summary(outcomes)
        return well, output.getvalue().splitlines()

    OK = '<testcase classname="A" name="ok" status="run" result="completed"/>'

    def test_passed_cases_are_counted(self):
        outcome = self.outcome(self.OK * 3)
        self.assertEqual((outcome.passed, outcome.failures), (3, []))
        self.assertEqual(self.summary({"suite": outcome})[1][-1], "3 passed, 0 failed")

    def test_a_failed_case_is_named_with_its_message(self):
        outcome = self.outcome(self.OK + '<testcase classname="A" name="bad"><failure message="1 is not 2"/></testcase>', 1)
        well, lines = self.summary({"suite": outcome})
        self.assertFalse(well)
        self.assertEqual(lines[-1], "1 passed, 1 failed")
        self.assertIn("FAILED suite: A.bad", lines)
        self.assertIn("  1 is not 2", lines)

    def test_a_skip_is_named_with_its_reason(self):
        outcome = self.outcome(self.OK + '<testcase classname="A" name="s" status="run" result="skipped">'
                               '<skipped message="a.cpp:4&#x0A;needs a printer"/></testcase>')
        well, lines = self.summary({"suite": outcome})
        self.assertTrue(well)
        self.assertIn("skipped suite: A.s: needs a printer", lines)

    def test_a_skip_without_a_reason_fails(self):
        outcome = self.outcome(self.OK + '<testcase classname="A" name="s" result="skipped">'
                               '<skipped message="a.cpp:4&#x0A;"/></testcase>')
        well, lines = self.summary({"suite": outcome})
        self.assertFalse(well)
        self.assertEqual(lines[-1], "1 passed, 1 failed")

    def test_a_case_that_is_switched_off_fails(self):
        outcome = self.outcome(self.OK + '<testcase classname="A" name="DISABLED_x" status="notrun" result="suppressed"/>')
        self.assertEqual(outcome.failures, [("A.DISABLED_x", "is switched off")])

    def test_a_crash_fails_and_names_the_case_that_ran(self):
        outcome = runner.run_gtest(self.step(
            "echo '[ RUN      ] A.a'; echo '[       OK ] A.a (0 ms)'; echo '[ RUN      ] A.b'; kill -SEGV $$"))
        self.assertEqual(outcome.passed, 1)
        self.assertEqual([name for name, _ in outcome.failures], ["A.b"])

    def test_a_missing_result_fails_even_with_exit_code_0(self):
        outcome = runner.run_gtest(self.step("exit 0"))
        self.assertEqual(len(outcome.failures), 1)

    def test_a_result_of_an_earlier_run_does_not_count(self):
        self.outcome(self.OK)
        self.assertEqual(len(runner.run_gtest(self.step("exit 0")).failures), 1)

    def test_a_result_that_breaks_off_fails(self):
        outcome = runner.run_gtest(self.step('echo "<testsuites><testsuite>" >suite.xml'))
        self.assertEqual(len(outcome.failures), 1)

    def test_messages_may_hold_any_bytes(self):
        outcome = runner.run_gtest(self.step(
            r"""printf '<testsuites><testcase classname="A" name="b"><failure message="\xff"/></testcase></testsuites>' >suite.xml"""))
        self.assertEqual([name for name, _ in outcome.failures], ["A.b"])

    def test_a_suite_without_tests_fails(self):
        self.assertEqual(self.outcome("").failures, [("suite", "ran no test")])

    def test_a_bad_exit_code_fails_even_when_all_cases_passed(self):
        outcome = self.outcome(self.OK, exit_code=23)
        self.assertEqual(len(outcome.failures), 1)
        self.assertIn("exit code 23", outcome.failures[0][1])

    def test_a_program_that_hangs_is_stopped_and_fails(self):
        start = time.monotonic()
        outcome = runner.run_gtest(self.step("sleep 60", minutes=0.005))
        self.assertLess(time.monotonic() - start, 15)
        self.assertIn("was stopped", outcome.failures[0][1])

    def test_steps_behind_a_failed_one_fail(self):
        steps = [runner.Step("build", runner.run_needed, ["false"]),
                 runner.Step("unit", runner.run_gtest, ["true"], after="build")]
        with contextlib.redirect_stdout(io.StringIO()):
            outcomes = runner.run_steps(steps)
        self.assertEqual(outcomes["unit"].failures, [("unit", "could not run: build failed")])

    def test_what_could_not_run_is_named_and_fails_under_ci_alone(self):
        outcomes = {"setup": runner.Outcome(could_not_run="no root"), "unit": runner.Outcome(passed=2)}
        well, lines = self.summary(outcomes, in_ci=True)
        self.assertEqual((well, lines[-1]), (False, "2 passed, 1 failed"))
        self.assertIn("could not run setup: no root", lines)
        well, lines = self.summary(outcomes, in_ci=False)
        self.assertEqual((well, lines[-1]), (True, "2 passed, 0 failed"))

    def test_nothing_run_is_a_failure(self):
        self.assertEqual(self.summary({})[1][-1], "0 passed, 1 failed")


class SetupTest(Scratch):
    def test_does_nothing_fast_when_nothing_is_missing(self):
        start = time.monotonic()
        done = subprocess.run([ROOT / "scripts/setup"], capture_output=True, text=True, timeout=60)
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", ""))
        self.assertLess(time.monotonic() - start, 2)

    def find_root(self, folder):
        return subprocess.run(["bash", "-c", f'. "{ROOT}/scripts/lib/paths.sh"; find_wine32_root'],
                              env={**os.environ, "MARKLET_WINE32_ROOT": str(folder)}, capture_output=True, text=True)

    def test_a_root_folder_without_its_stamp_is_not_taken(self):
        (self.folder / "usr").mkdir()
        self.assertNotEqual(self.find_root(self.folder).returncode, 0)

    def test_a_root_folder_with_other_packages_is_not_taken(self):
        (self.folder / ".marklet-complete").write_text("bookworm wine32\n")
        self.assertNotEqual(self.find_root(self.folder).returncode, 0)


class WineTest(Scratch):
    """scripts/wine64 and scripts/wine32, with a program that tells what it sees."""
    COMPILERS = {64: "x86_64-w64-mingw32-g++-posix", 32: "i686-w64-mingw32-g++-posix"}
    built = {}

    @classmethod
    def setUpClass(cls):
        cls.programs = Path(tempfile.mkdtemp(prefix="marklet-programs."))
        source = ROOT / "tests/platform/win32/tell_surroundings.cpp"
        for bits, compiler in cls.COMPILERS.items():
            cls.built[bits] = cls.programs / f"tell{bits}.exe"
            subprocess.run([compiler, "-std=c++20", "-I", ROOT / "src", "-municode", "-static", "-o", cls.built[bits], source,
                            "-lgdi32"], check=True)

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(cls.programs)

    def run_program(self, bits, *arguments, **options):
        return subprocess.run([ROOT / f"scripts/wine{bits}", self.built[bits], *arguments], capture_output=True,
                              timeout=120, **options)

    def test_program_sees_its_surroundings_and_its_exit_code_comes_back(self):
        for bits in self.COMPILERS:
            with self.subTest(bits=bits):
                done = self.run_program(bits, "two words", "", cwd=self.folder, input=b"a line\n",
                                        env={**os.environ, "MARKLET_TEST_WORD": "gr\u00fcn"})
                self.assertEqual(done.returncode, 42, done.stderr)
                self.assertEqual(done.stdout.decode().splitlines(), [
                    f"bits={bits}", "argument=two words", "argument=", "word=gr\u00fcn",
                    f"folder={self.folder.name}", "input=a line", "dots=96", "window=1", "font=Tahoma"])
                self.assertEqual(done.stderr, b"told\n")
                self.assertNotIn(b"\r", done.stdout)

    def test_nothing_runs_on_after_a_program_was_stopped(self):
        for bits in self.COMPILERS:
            with self.subTest(bits=bits):
                process = subprocess.Popen([ROOT / f"scripts/wine{bits}", self.built[bits], "hang"],
                                           stdout=subprocess.PIPE, stdin=subprocess.DEVNULL, start_new_session=True)
                self.addCleanup(process.stdout.close)
                while process.stdout.readline() != b"hanging\n":
                    self.assertIsNone(process.poll())
                os.killpg(process.pid, signal.SIGTERM)
                self.assertEqual(process.wait(30), 143)
                left = [line for line in self.processes() if f"tell{bits}.exe" in line]
                self.assertEqual(left, [])

    @staticmethod
    def processes():
        for entry in Path("/proc").iterdir():
            with contextlib.suppress(OSError):
                if entry.name.isdigit():
                    yield (entry / "cmdline").read_bytes().replace(b"\0", b" ").decode(errors="replace")


class ReportingResult(unittest.TextTestResult):
    def __init__(self, *arguments):
        super().__init__(*arguments)
        self.suite = ElementTree.Element("testsuite", name="scripts")
        self.cases = {}

    def startTest(self, test):
        super().startTest(test)
        group, name = test.id().split(".")[-2:]
        self.cases[test.id()] = ElementTree.SubElement(self.suite, "testcase", classname=group, name=name)

    def note(self, test, kind, message):
        case = self.cases.get(test.id())
        if case is None:  # the set-up of a class
            case = ElementTree.SubElement(self.suite, "testcase", classname="scripts", name=test.id())
        ElementTree.SubElement(case, kind, message=message)

    def addError(self, test, err):
        super().addError(test, err)
        self.note(test, "failure", self.errors[-1][1])

    def addFailure(self, test, err):
        super().addFailure(test, err)
        self.note(test, "failure", self.failures[-1][1])

    def addSubTest(self, test, subtest, err):
        super().addSubTest(test, subtest, err)
        if err is not None:
            self.note(test, "failure", f"{subtest}: {self._exc_info_to_string(err, test)}")

    def addSkip(self, test, reason):
        super().addSkip(test, reason)
        self.note(test, "skipped", reason)


def main():
    reports = [argument.split("=", 1)[1] for argument in sys.argv[1:] if argument.startswith("--report=")]
    names = [argument for argument in sys.argv[1:] if not argument.startswith("--report=")]
    loader = unittest.defaultTestLoader
    tests = loader.loadTestsFromNames(names, sys.modules[__name__]) if names else (
        loader.loadTestsFromModule(sys.modules[__name__]))
    result = unittest.TextTestRunner(resultclass=ReportingResult, verbosity=2).run(tests)
    suites = ElementTree.Element("testsuites")
    suites.append(result.suite)
    for report in reports:
        ElementTree.ElementTree(suites).write(report, encoding="utf-8")
    return 0 if result.wasSuccessful() else 1


if __name__ == "__main__":
    sys.exit(main())
