"""Lets these tests use the client beside them, and gives them an X server without a monitor."""

import subprocess
import sys
import time
from pathlib import Path
from typing import Iterator

import pytest

PROJECT = Path(__file__).resolve().parent.parent.parent
sys.path[:0] = [str(PROJECT / "clients" / "python"), str(PROJECT / "tests" / "support"), str(Path(__file__).resolve().parent)]

from x_display import x_display  # noqa: E402

pytest_plugins = ["platen_bench.pytest_plugin"]


@pytest.fixture
def monitor(monkeypatch: pytest.MonkeyPatch) -> Iterator[str]:
    """The name of an X display of 1800 x 1100 pixels with nothing on it."""
    yield from x_display(monkeypatch, "1800x1100")


@pytest.fixture
def wayland(monitor: str, tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> Iterator[str]:
    """A Wayland desktop that fills a window of that X display: what is touched there is touched on it."""
    runtime = tmp_path / "wayland"
    runtime.mkdir(mode=0o700)
    monkeypatch.setenv("XDG_RUNTIME_DIR", str(runtime))
    words = ["weston", "--backend=x11-backend.so", "--use-pixman", "--no-config", "--shell=kiosk-shell.so"]
    desktop = subprocess.Popen(
        [*words, "--socket=wayland-test", "--width=1280", "--height=800"],
        stdout=subprocess.DEVNULL,
        stderr=subprocess.DEVNULL,
    )
    end = time.monotonic() + 20
    while not (runtime / "wayland-test").exists():
        assert time.monotonic() < end and desktop.poll() is None, "weston has not started"
        time.sleep(0.1)
    monkeypatch.setenv("WAYLAND_DISPLAY", "wayland-test")
    # Of the two that are there now the bench is to take this one.
    monkeypatch.setenv("SDL_VIDEODRIVER", "wayland")
    yield "wayland-test"
    desktop.terminate()
    desktop.wait()
