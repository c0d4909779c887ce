"""The window of a unit whose screen is larger than the usual one."""

from __future__ import annotations

import time

import pytest

from platen_bench import Bench
from xwindow import XWindow, xdotool

pytestmark = pytest.mark.usefixtures("monitor")


@pytest.mark.bench(clock="running", disc_service=False, display=True, screen="1024x600")
def test_the_window_has_its_size_and_is_touched_in_its_pixels(unit: Bench) -> None:
    window = XWindow()
    assert window.geometry() == (0, 0, 1024, 600)
    xdotool("mousemove", "--window", window.id, 1000, 580, "click", 1)
    end = time.monotonic() + 20
    while "press 1000 580" not in unit.recording():
        assert time.monotonic() < end, unit.recording()
        time.sleep(0.1)
