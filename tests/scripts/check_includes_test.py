"""Tests of scripts/check-includes, with made-up mistakes."""
import inspect
import os
import re
from pathlib import Path

from support import Scratch, load_script

rules = load_script("scripts/check-includes")

RIGHT = {
    "src/control/a.h": '#include <vector>\n#include "markup/a.h"\n#include "bitmaps/a.h"\n#include "platform/a.h"\n',
    "src/markup/a.h": "#include <string>\n// #include <windows.h>\n/*\n#include <cairo.h>\n*/\n",
    "src/bitmaps/a.h": "#if defined(__AVX2__)\n#endif\n",
    "src/platform/a.h": "#ifdef _WIN32\n#endif\n",
    "src/platform/win32/sdk.h": "#include <windows.h>\n",
    "src/platform/headless/a.cpp": '#include <cairo.h>\n#include "platform/a.h"\n',
    "src/platform/shared/std_font.h": '#include "platform/a.h"\n',
    "src/host/a.h": '#include "platform/shared/std_font.h"\n',
    "src/control/library.h": '#include "host/a.h"\n',
    "src/activex/com/a.h": '#include "platform/win32/sdk.h"\n#include "control/library.h"\n',
    "src/activex/automation/a.h": '#include "activex/com/a.h"\n#include "control/a.h"\n',
    "src/plumbing/a.h": '#include "platform/win32/sdk.h"\n#include "base/a.h"\n#ifdef _WIN64\n#endif\n',
    "src/base/a.h": "#include <vector>\n",
    "src/activex/control/a.h": '#include "activex/automation/a.h"\n#include "plumbing/a.h"\n#include <commctrl.h>\n#ifdef _WIN64\n#endif\n',
    "src/activex/page/a.h": '#include "activex/automation/a.h"\n#include "control/a.h"\n',
    "src/activex/server/a.cpp": '#include "activex/control/a.h"\n#include "activex/page/a.h"\n#include "activex/com/a.h"\n',
    "src/activex/type_library/a.cpp": '#include "activex/com/a.h"\n#include "control/a.h"\n',
    "tests/support/a.h": "",
    "tests/activex/a_test.cpp": '#include "platform/win32/sdk.h"\n#include "support/a.h"\n',
    "examples/form/main.cpp": "#include <windows.h>\n",
    "docs/a.svg": '<svg xmlns="http://www.w3.org/2000/svg"/>\n',
}

# What each check must find: the check, the file that it has to complain about, alone, and made-up files.
MISTAKES = {
    "windows.h in a logic room": (rules.check_logic_rooms, "src/text/a.cpp", {"src/text/a.cpp": "#include <windows.h>\n"}),
    "windows.h in odd spelling": (rules.check_windows, "src/text/a.cpp", {"src/text/a.cpp": " #  include  <Windows.h>\n"}),
    "cairo in a logic room": (rules.check_logic_rooms, "src/bitmaps/a.h", {"src/bitmaps/a.h": "#include <cairo.h>\n"}),
    "pango in a logic room": (
        rules.check_logic_rooms, "src/markup/a.h", {"src/markup/a.h": "#include <pango/pangocairo.h>\n"}),
    "a library in a logic room": (rules.check_logic_rooms, "src/png/a.cpp", {"src/png/a.cpp": "#include <zlib.h>\n"}),
    "a platform's own header in a logic room": (rules.check_logic_rooms, "src/theme/a.cpp", {
        "src/theme/a.cpp": '#include "platform/headless/surface.h"\n', "src/platform/headless/surface.h": ""}),
    "the SDK header in a logic room": (rules.check_windows, "src/images/a.cpp", {
        "src/images/a.cpp": '#include "platform/win32/sdk.h"\n', "src/platform/win32/sdk.h": ""}),
    "a platform in the seam's header": (rules.check_seam, "src/platform/gdi.h", {
        "src/platform/gdi.h": '#include "platform/win32/sdk.h"\n', "src/platform/win32/sdk.h": ""}),
    "windows.h in the seam": (rules.check_windows, "src/platform/gdi.h", {"src/platform/gdi.h": "#include <windows.h>\n"}),
    "cairo in the seam": (rules.check_seam, "src/platform/gdi.h", {"src/platform/gdi.h": "#include <cairo.h>\n"}),
    "one platform in the other": (rules.check_seam, "src/platform/headless/a.cpp", {
        "src/platform/headless/a.cpp": '#include "platform/win32/a.h"\n', "src/platform/win32/a.h": ""}),
    "windows.h past the SDK header": (
        rules.check_windows, "src/activex/com/a.cpp", {"src/activex/com/a.cpp": "#include <windows.h>\n"}),
    "windows.h in marklet-render": (rules.check_windows, "src/render/a.cpp", {"src/render/a.cpp": "#include <windows.h>\n"}),
    "OLE in a test of a logic room": (
        rules.check_windows, "tests/control/a_test.cpp", {"tests/control/a_test.cpp": "#include <ole2.h>\n"}),
    "a room above": (rules.check_directions, "src/text/a.cpp", {
        "src/text/a.cpp": '#include "markup/a.h"\n', "src/markup/a.h": ""}),
    "a room beside": (rules.check_directions, "src/png/a.cpp", {
        "src/png/a.cpp": '#include "bitmaps/a.h"\n', "src/bitmaps/a.h": ""}),
    "a logic room in the platform": (rules.check_directions, "src/platform/headless/a.cpp", {
        "src/platform/headless/a.cpp": '#include "text/a.h"\n', "src/text/a.h": ""}),
    "the hosting layer in the control": (rules.check_directions, "src/control/a.cpp", {
        "src/control/a.cpp": '#include "activex/com/a.h"\n', "src/activex/com/a.h": ""}),
    "the control's object in its automation": (rules.check_directions, "src/activex/automation/a.cpp", {
        "src/activex/automation/a.cpp": '#include "activex/control/a.h"\n', "src/activex/control/a.h": ""}),
    "the control's object in its page": (rules.check_directions, "src/activex/page/a.cpp", {
        "src/activex/page/a.cpp": '#include "activex/control/a.h"\n', "src/activex/control/a.h": ""}),
    "the page in the control's object": (rules.check_directions, "src/activex/control/a.cpp", {
        "src/activex/control/a.cpp": '#include "activex/page/a.h"\n', "src/activex/page/a.h": ""}),
    "the server in the control's object": (rules.check_directions, "src/activex/control/a.cpp", {
        "src/activex/control/a.cpp": '#include "activex/server/a.h"\n', "src/activex/server/a.h": ""}),
    "automation in the ground of COM": (rules.check_directions, "src/activex/com/a.h", {
        "src/activex/com/a.h": '#include "activex/automation/a.h"\n', "src/activex/automation/a.h": ""}),
    "the logic in the ground of COM": (rules.check_directions, "src/activex/com/a.h", {
        "src/activex/com/a.h": '#include "control/marklet.h"\n', "src/control/marklet.h": ""}),
    "automation in the type library's generator": (rules.check_directions, "src/activex/type_library/a.cpp", {
        "src/activex/type_library/a.cpp": '#include "activex/automation/a.h"\n', "src/activex/automation/a.h": ""}),
    "the hosting layer in the plumbing": (rules.check_directions, "src/plumbing/a.cpp", {
        "src/plumbing/a.cpp": '#include "activex/com/a.h"\n', "src/activex/com/a.h": ""}),
    "the logic in the plumbing": (rules.check_directions, "src/plumbing/a.cpp", {
        "src/plumbing/a.cpp": '#include "control/a.h"\n', "src/control/a.h": ""}),
    "a file beside the rooms of activex": (rules.check_directions, "src/activex/a.cpp", {"src/activex/a.cpp": ""}),
    "what the platforms share in the seam": (rules.check_directions, "src/platform/a.h", {
        "src/platform/a.h": '#include "platform/shared/std_font.h"\n', "src/platform/shared/std_font.h": ""}),
    "what the platforms share in a logic room": (rules.check_directions, "src/host/a.h", {
        "src/host/a.h": '#include "platform/shared/unrecorded.h"\n', "src/platform/shared/unrecorded.h": ""}),
    "a shared header that another room was granted": (rules.check_directions, "src/host/a.h", {
        "src/host/a.h": '#include "platform/shared/os_tests.h"\n', "src/platform/shared/os_tests.h": ""}),
    "the platform in the ground": (rules.check_directions, "src/base/a.cpp", {
        "src/base/a.cpp": '#include "platform/a.h"\n', "src/platform/a.h": ""}),
    "a way round the rooms": (rules.check_directions, "src/text/a.cpp", {
        "src/text/a.cpp": '#include "../markup/a.h"\n', "src/markup/a.h": ""}),
    "a room nobody knows": (rules.check_directions, "src/helpers/a.cpp", {"src/helpers/a.cpp": ""}),
    "a circle of headers": (rules.check_circles, "src/text/a.h", {
        "src/text/a.h": '#include "text/b.h"\n', "src/text/b.h": '#include "text/a.h"\n'}),
    "a platform test in a logic room": (
        rules.check_conditions, "src/control/a.cpp", {"src/control/a.cpp": "#ifdef _WIN32\n#endif\n"}),
    "a platform test after others": (rules.check_conditions, "src/text/a.cpp", {
        "src/text/a.cpp": "#if defined(X) || \\\n    defined(__linux__)\n#endif\n"}),
    "a platform test in a test": (
        rules.check_conditions, "tests/text/a_test.cpp", {"tests/text/a_test.cpp": "#if !defined(_WIN64)\n#endif\n"}),
    "a folder of one machine": (rules.check_machine, "scripts/a", {"scripts/a": "cd /" "home/somebody/marklet\n"}),
    "the checkout's own folder": (rules.check_machine, "docs/a.md", {"docs/a.md": "see {root}/docs\n"}),
    "a place to fetch from": (rules.check_machine, "scripts/a", {"scripts/a": "get http:" "//packages.example/x\n"}),
}


class CheckIncludesTest(Scratch):
    def tree(self, files):
        root = os.path.realpath(self.folder)
        for path, text in files.items():
            file = Path(root, path)
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_text(text.replace("{root}", root), encoding="utf-8")
        return rules.Tree(root, files)

    def test_every_check_has_a_mistake_that_it_must_find(self):
        checks = [value for name, value in inspect.getmembers(rules) if name.startswith("check_")]
        self.assertCountEqual(rules.CHECKS, checks)
        self.assertEqual({check for check, _, _ in MISTAKES.values()}, set(checks))

    def test_what_is_right_passes(self):
        tree = self.tree(RIGHT)
        self.assertEqual([complaint for check in rules.CHECKS for complaint in check(tree)], [])

    def find(self, check, path, files):
        self.assertEqual([found for found, _ in check(self.tree(files))], [path])


def add_tests():
    """A test for each mistake, so that each is named and counted."""
    for name, mistake in MISTAKES.items():
        test = lambda self, mistake=mistake: self.find(*mistake)
        setattr(CheckIncludesTest, f"test_finds_{'_'.join(re.findall(r'[a-z]+', name.lower()))}", test)


add_tests()
