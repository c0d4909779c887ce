"""Lets these tests use the client beside them, and gives them an X server without a monitor."""

import os
import subprocess
import sys
from pathlib import Path
from typing import Iterator

import pytest

PROJECT = Path(__file__).resolve().parent.parent.parent
sys.path[:0] = [str(PROJECT / "clients" / "python")]

pytest_plugins = ["platen_bench.pytest_plugin"]


@pytest.fixture
def monitor(monkeypatch: pytest.MonkeyPatch) -> Iterator[str]:
    """The name of an X display of 800 x 480 pixels with nothing on it."""
    reader, writer = os.pipe()
    words = ["Xvfb", "-displayfd", str(writer), "-screen", "0", "800x480x24", "-nolisten", "tcp"]
    server = subprocess.Popen(words, pass_fds=[writer], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    os.close(writer)
    with os.fdopen(reader) as number:
        name = ":" + number.readline().strip()
    monkeypatch.setenv("DISPLAY", name)
    monkeypatch.delenv("WAYLAND_DISPLAY", raising=False)
    yield name
    server.terminate()
    server.wait()
