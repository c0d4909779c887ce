"""The package beside these tests is the one that is tested, installed or not."""

import sys
from pathlib import Path

HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent))

pytest_plugins = ["platen_bench.pytest_plugin", "pytester"]
