"""Tests of scripts/setup and of where it puts things."""
import os
import subprocess
import time

from support import ROOT, Scratch


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
