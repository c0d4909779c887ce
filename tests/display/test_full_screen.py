"""zmbench --display --full-screen and F11 on a desktop whose window manager grants it."""

from __future__ import annotations

import subprocess
import time
from pathlib import Path
from typing import Iterator, Tuple

import pytest

from platen_bench.programs import find_bench
from xwindow import HEIGHT, WIDTH, XWindow, xdotool

# Of the fixture `monitor`.
MONITOR = (0, 0, 1800, 1100)


@pytest.fixture
def desktop(monitor: str) -> Iterator[str]:
    """The monitor with a window manager."""
    manager = subprocess.Popen(["openbox"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    end = time.monotonic() + 20
    while "_NET_SUPPORTING_WM_CHECK(WINDOW)" not in subprocess.check_output(["xprop", "-root"], text=True):
        assert time.monotonic() < end and manager.poll() is None, "openbox has not started"
        time.sleep(0.1)
    yield monitor
    manager.terminate()
    manager.wait()


class Shown:
    """A bench without discs, in a window of its own."""

    def __init__(self, folder: Path, *words: str) -> None:
        bench = [find_bench(None), "--runtime", str(folder / "bench"), "--no-web", "--no-disc-service", "--display"]
        self.bench = subprocess.Popen([*bench, *words], stdout=subprocess.PIPE, text=True)
        assert self.bench.stdout and self.bench.stdout.readline() == "ready\n"
        self.number = ""
        end = time.monotonic() + 20
        while not self.number:
            assert time.monotonic() < end, "there is no window"
            search = ["xdotool", "search", "--onlyvisible", "--name", "^Head unit$"]
            self.number = subprocess.run(search, capture_output=True, text=True, check=False).stdout.partition("\n")[0]

    def geometry(self) -> Tuple[int, int, int, int]:
        values = dict(line.split("=") for line in xdotool("getwindowgeometry", "--shell", self.number).splitlines())
        return int(values["X"]), int(values["Y"]), int(values["WIDTH"]), int(values["HEIGHT"])

    def until(self, large: bool) -> None:
        end = time.monotonic() + 20
        while (self.geometry() == MONITOR) != large or (not large and self.geometry()[2:] != (WIDTH, HEIGHT)):
            assert time.monotonic() < end, f"the window is {self.geometry()}"
            time.sleep(0.1)

    def end(self) -> int:
        self.bench.terminate()
        try:
            return self.bench.wait(20)
        finally:
            self.bench.kill()
            self.bench.wait()
            if self.bench.stdout:
                self.bench.stdout.close()


def test_it_begins_as_large_as_the_monitor(desktop: str, tmp_path: Path) -> None:
    shown = Shown(tmp_path, "--full-screen")
    try:
        shown.until(large=True)
        # The screen is as large as fits: 800 x 480 at 2.25, with bars above and below.
        seen = XWindow().picture()
        assert set(seen.part(0, 0, 1800, 8).pixels) == {0} and set(seen.part(0, 1092, 1800, 8).pixels) == {0}
        assert len(set(seen.part(0, 20, 1800, 1060).pixels)) > 10
    finally:
        assert shown.end() == 0


def test_f11_makes_it_large_and_small_again(desktop: str, tmp_path: Path) -> None:
    shown = Shown(tmp_path)
    try:
        shown.until(large=False)
        xdotool("windowfocus", "--sync", shown.number)
        for large in (True, False, True, False):
            xdotool("key", "F11")
            shown.until(large)
    finally:
        assert shown.end() == 0
