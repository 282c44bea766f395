"""Tests of scripts/wine64 and scripts/wine32."""
import contextlib
import os
import shutil
import signal
import subprocess
import tempfile
from pathlib import Path

from support import ROOT, Scratch


class WineTest(Scratch):
    """With a program that tells what it sees."""
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
