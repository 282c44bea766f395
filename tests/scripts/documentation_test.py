"""What the documentation names is there: files, folders, commands and their options."""
import fnmatch
import json
import re
import unittest
from pathlib import Path

from support import ROOT, load_script

PAGES = [ROOT / "README.md", ROOT / "CONTRIBUTING.md", ROOT / "CHANGELOG.md", *sorted((ROOT / "docs").glob("*.md")),
         *sorted((ROOT / "src").rglob("*.md"))]
FOLDERS = {entry.name for entry in ROOT.iterdir() if entry.is_dir()} - {"build", "out"}
LINK = re.compile(r"\]\(([^)\s]+)\)")
PATH = re.compile(r"(?<![\w/.<-])(?:%s)/[\w./*-]*[\w/*-]" % "|".join(map(re.escape, sorted(FOLDERS))))
HEADER = re.compile(r"`((?:%s)/[\w/]+\.(?:h|cpp))`" % "|".join(entry.name for entry in (ROOT / "src").iterdir()))


def missing_links(text, folder):
    targets = [target.split("#")[0] for target in LINK.findall(text) if "://" not in target]
    return [target for target in targets if target and not (folder / target).exists()]


def missing_paths(text):
    """Links apart, paths begin at the root; those of headers may begin at src/."""
    text = LINK.sub("]", text)
    names = [*PATH.findall(text), *(f"src/{name}" for name in HEADER.findall(text))]
    return [name for name in names if not any(ROOT.glob(name.rstrip("/")))]


def unknown_targets(text):
    targets = set(re.findall(r"^([\w-]+):", (ROOT / "Makefile").read_text(), re.MULTILINE))
    named = re.findall(r"(?:^ {4}|`)make ([a-z-]+)", text, re.MULTILINE)
    return [target for target in named if target not in targets]


def unknown_steps(text):
    steps = [step.name for step in load_script("scripts/test").STEPS]
    named = " ".join(quoted or word for quoted, word in re.findall(r'STEPS=(?:"([^"]*)"|([\w-]+))', text)).split()
    return [name for name in named if not any(step.startswith(name) for step in steps)]


def unknown_presets(text):
    presets = [preset["name"] for preset in json.loads((ROOT / "CMakePresets.json").read_text())["configurePresets"]]
    named = re.findall(r"--preset ([\w-]+)", text) + re.findall(r"(?<![\w/.])build/([\w-]+)/", text)
    return [name for name in named if name not in presets]


def unknown_options(text):
    """Of a script, in the script; of marklet-render, in what its help is made of."""
    renderer = "".join(file.read_text() for file in sorted((ROOT / "src/render").glob("*.cpp")))
    for line in re.findall(r"(?:^ {4}|`)((?:scripts/|build/\S+/marklet-render|marklet-render)[^`\n]*)", text, re.MULTILINE):
        command, *words = line.split("#")[0].split()
        script = ROOT / command
        source = renderer if command.endswith("marklet-render") else script.read_text() if script.is_file() else ""
        for option in re.findall(r"(?<!\S)--[a-z][\w-]*", " ".join(words)):
            if not re.search(re.escape(option) + r"(?![\w-])", source):
                yield f"{command} {option}"


class DocumentationTest(unittest.TestCase):
    def expect_none(self, find):
        for page in PAGES:
            with self.subTest(page=str(page.relative_to(ROOT))):
                self.assertEqual(list(find(page)), [])

    def test_links_lead_somewhere(self):
        self.expect_none(lambda page: missing_links(page.read_text(), page.parent))

    def test_paths_exist(self):
        self.expect_none(lambda page: missing_paths(page.read_text()))

    def test_make_has_the_targets_and_steps(self):
        self.expect_none(lambda page: unknown_targets(page.read_text()) + unknown_steps(page.read_text()))

    def test_presets_are_known(self):
        self.expect_none(lambda page: unknown_presets(page.read_text()))

    def test_commands_have_the_options(self):
        self.expect_none(lambda page: unknown_options(page.read_text()))

    def test_what_is_wrong_is_found(self):
        self.assertEqual(missing_links("[a](gone.md#b) [c](README.md)", ROOT), ["gone.md"])
        self.assertEqual(missing_paths("`src/gone.h`, src/control, `tests/gone/*_test.cpp`, `platform/gone.h`"),
                         ["src/gone.h", "tests/gone/*_test.cpp", "src/platform/gone.h"])
        self.assertEqual(unknown_targets("`make gone`\n    make test\n    make away   # x\n"), ["gone", "away"])
        self.assertEqual(unknown_steps('`make test STEPS=gone`, `make test STEPS="quick away"`'), ["gone", "away"])
        self.assertEqual(unknown_presets("cmake --preset gone, build/away/a, build/native/a"), ["gone", "away"])
        self.assertEqual(list(unknown_options("`scripts/format --check --gone`\n    marklet-render --size 1 --away\n")),
                         ["scripts/format --gone", "marklet-render --away"])


def suites_of(test):
    text = test.read_text()
    instances = dict((suite, prefix) for prefix, suite in re.findall(r"INSTANTIATE_TEST_SUITE_P\((\w+),\s*(\w+)", text))
    for suite in sorted(set(re.findall(r"^(?:TYPED_)?TEST(?:_F|_P)?\((\w+)", text, re.MULTILINE))):
        yield f"{instances[suite]}/{suite}" if suite in instances else suite


class PortingTest(unittest.TestCase):
    """The page for those who write a third platform leaves nothing out."""
    PLATFORM = ROOT / "src/platform"
    PAGE = (PLATFORM / "PORTING.md").read_text()
    ORDER = [line for line in PAGE[PAGE.index("## In which order"):].splitlines() if line.startswith("| ")]

    def section(self, title):
        return self.PAGE.split(f"## {title}\n")[1].split("\n## ")[0]

    def test_every_header_has_its_row(self):
        rows = re.findall(r"^\| `(\w+\.h)`", self.section("What to answer"), re.MULTILINE)
        self.assertEqual(sorted(rows), sorted(header.name for header in self.PLATFORM.glob("*.h")))

    def test_all_that_is_shared_is_named(self):
        named = set(re.findall(r"`(\w+)\.(?:h|cpp)`", self.section("What is there for nothing")))
        self.assertEqual({file.stem for file in (self.PLATFORM / "shared").iterdir()} - named, set())

    def test_every_test_of_any_platform_has_its_step(self):
        tests = [str(test.relative_to(ROOT)) for folder in ("tests/platform", "tests/platform/shared")
                 for test in (ROOT / folder).glob("*_test.cpp")]
        of_any = [test for test in tests if not re.search(r"_(recorder|native|windows)_test", test)]
        self.assertEqual([test for test in of_any if not any(test in line for line in self.ORDER)], [])

    def test_the_filters_pick_the_suites_of_their_tests(self):
        for line in self.ORDER:
            patterns = ":".join(re.findall(r"\(`([^`]+)`\)", line)).split(":")
            suites = [f"{suite}.x" for test in re.findall(r"`(tests/\S+_test\.cpp)`", line)
                      for suite in suites_of(ROOT / test)]
            picked = {pattern: fnmatch.filter(suites, pattern) for pattern in patterns if pattern}
            unmatched = set(suites).difference(*picked.values())
            idle = {pattern for pattern, matches in picked.items() if not matches}
            with self.subTest(line=line[:60]):
                self.assertEqual((unmatched, idle), (set(), set()))
