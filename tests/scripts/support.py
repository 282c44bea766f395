"""What the tests of the scripts share."""
import importlib.machinery
import importlib.util
import shutil
import sys
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent


def load_script(path):
    """A script of the project as a module, without a compiled copy beside it."""
    sys.dont_write_bytecode = True
    name = Path(path).name.replace("-", "_")
    loader = importlib.machinery.SourceFileLoader(name, str(ROOT / path))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader(name, loader))
    sys.modules[name] = module
    loader.exec_module(module)
    return module


class Scratch(unittest.TestCase):
    def setUp(self):
        self.folder = Path(tempfile.mkdtemp(prefix="marklet-scripts."))
        self.addCleanup(shutil.rmtree, self.folder)
