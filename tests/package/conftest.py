"""Lets these tests use the client beside them."""

import sys
from pathlib import Path

PROJECT = Path(__file__).resolve().parent.parent.parent
sys.path[:0] = [str(PROJECT / "clients" / "python")]

pytest_plugins = ["platen_bench.pytest_plugin"]
