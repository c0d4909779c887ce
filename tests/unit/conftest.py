"""Lets these tests use the client beside them, and gives them an X server without a monitor."""

import sys
from pathlib import Path
from typing import Iterator

import pytest

PROJECT = Path(__file__).resolve().parent.parent.parent
sys.path[:0] = [str(PROJECT / "clients" / "python"), str(PROJECT / "tests" / "support")]

from x_display import x_display  # noqa: E402

pytest_plugins = ["platen_bench.pytest_plugin"]


@pytest.fixture
def monitor(monkeypatch: pytest.MonkeyPatch) -> Iterator[str]:
    """The name of an X display of 800 x 480 pixels with nothing on it."""
    yield from x_display(monkeypatch, "800x480")
