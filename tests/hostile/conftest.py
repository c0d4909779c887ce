"""Lets these tests use the client beside them."""

import sys
from pathlib import Path

sys.path[:0] = [str(Path(__file__).resolve().parent.parent.parent / "clients" / "python")]

pytest_plugins = ["platen_bench.pytest_plugin"]
