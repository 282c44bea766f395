"""Runs Python tests and reports them in JUnit's format, where --report=FILE asks for it."""
import sys
import unittest
import xml.etree.ElementTree as ElementTree


class ReportingResult(unittest.TextTestResult):
    suite_name = ""

    def __init__(self, *arguments):
        super().__init__(*arguments)
        self.suite = ElementTree.Element("testsuite", name=self.suite_name)
        self.cases = {}

    def startTest(self, test):
        super().startTest(test)
        group, name = test.id().split(".")[-2:]
        self.cases[test.id()] = ElementTree.SubElement(self.suite, "testcase", classname=group, name=name)

    def note(self, test, kind, message):
        case = self.cases.get(test.id())
        if case is None:  # the set-up of a class
            case = ElementTree.SubElement(self.suite, "testcase", classname=self.suite_name, name=test.id())
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


def run_tests(name, tests):
    """The exit code of the program."""
    result_class = type("Result", (ReportingResult,), {"suite_name": name})
    result = unittest.TextTestRunner(resultclass=result_class, verbosity=2).run(unittest.TestSuite(tests))
    suites = ElementTree.Element("testsuites")
    suites.append(result.suite)
    for argument in sys.argv[1:]:
        if argument.startswith("--report="):
            ElementTree.ElementTree(suites).write(argument.split("=", 1)[1], encoding="utf-8")
    return 0 if result.wasSuccessful() else 1
