"""Tests of scripts/test."""
import contextlib
import io
import time

from support import Scratch, load_script

runner = load_script("scripts/test")


class RunnerTest(Scratch):
    """Shell scripts stand for the test programs."""

    def setUp(self):
        super().setUp()
        for name in ("ROOT", "BUILD", "LOGS", "RESULTS"):
            self.replace(name, self.folder)

    def replace(self, name, value):
        self.addCleanup(setattr, runner, name, getattr(runner, name))
        setattr(runner, name, value)


class SummaryTest(RunnerTest):
    """The summary of `make test`."""

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
        self.replace("IN_CI", in_ci)
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

    def test_steps_after_a_failed_one_fail(self):
        steps = [runner.Step("build", runner.run_needed, ["false"]),
                 runner.Step("unit", runner.run_gtest, ["true"], after=("build",))]
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


class RoundsTest(RunnerTest):
    """Which steps and tests run, and in how many parts."""
    # Writes one case into its result file.
    PROGRAM = """
report=${@: -1}
echo "$GTEST_SHARD_INDEX of $GTEST_TOTAL_SHARDS" >>runs
cat >"${report#--gtest_output=xml:}" <<XML
<testsuites><testsuite><testcase classname='$SUITE' name='t$GTEST_SHARD_INDEX'>
<properties><property name='processor_ms' value='$TIME'/></properties></testcase></testsuite></testsuites>
XML
"""

    def run_cases(self, action, suite="A", milliseconds=100, shards=1, before=""):
        self.replace("SHARDS", shards)
        return action(runner.Step("suite", action, ["bash", "-c", before + self.PROGRAM, "program"], minutes=1,
                                  environment={"SUITE": suite, "TIME": str(milliseconds)}))

    def runs(self):
        return sorted((self.folder / "runs").read_text().splitlines())

    def test_parts_of_a_program_count_together(self):
        outcome = self.run_cases(runner.run_shards, shards=2)
        self.assertEqual((outcome.passed, outcome.failures), (2, []))
        self.assertEqual(self.runs(), ["0 of 2", "1 of 2"])

    def test_a_part_that_crashes_fails(self):
        outcome = self.run_cases(runner.run_shards, shards=2, before="test $GTEST_SHARD_INDEX = 0 || kill -SEGV $$\n")
        self.assertEqual((outcome.passed, [name for name, _ in outcome.failures]), (1, ["suite-1"]))

    def test_a_long_test_fails_outside_the_slow_suites(self):
        outcome = self.run_cases(runner.run_timed, milliseconds=2500)
        self.assertEqual((outcome.passed, outcome.failures),
                         (0, [("A.t0", "takes 2.5 s, and is in no suite named Slow...")]))

    def test_slow_suites_may_take_long(self):
        for suite in ("SlowA", "Values/SlowA"):
            outcome = self.run_cases(runner.run_timed, suite, milliseconds=2500)
            self.assertEqual((outcome.passed, outcome.failures), (1, []))

    def test_quick_round_runs_when_named_alone_and_after_its_build(self):
        names = lambda *wanted: [step.name for step in runner.select(wanted)]
        self.assertNotIn("quick", names())
        self.assertEqual(names("quick"), ["native-build", "quick"])
        self.assertEqual(names("win32-com"), ["setup", "win32-build", "win32-com"])

    def test_all_steps_but_the_quick_round_run_without_names(self):
        self.assertEqual({step.name for step in runner.STEPS} - {step.name for step in runner.select([])}, {"quick"})
