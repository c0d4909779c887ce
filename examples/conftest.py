"""Lets these examples run from a checkout, without installing the package."""

import importlib.util
import sys
from pathlib import Path

if importlib.util.find_spec("platen_bench") is None:
    sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "clients" / "python"))

pytest_plugins = ["platen_bench.pytest_plugin"]
