"""The bench's window as a user of X has it: seen, touched, typed at, resized and closed."""

from __future__ import annotations

import subprocess
import time
from typing import List, Sequence, Tuple

import Xlib.display  # type: ignore[import]
import Xlib.protocol.event  # type: ignore[import]

WIDTH, HEIGHT = 800, 480


class Picture:
    """Pixels of 3 bytes: red, green, blue."""

    def __init__(self, width: int, height: int, pixels: bytes) -> None:
        assert len(pixels) == 3 * width * height
        self.width, self.height, self.pixels = width, height, pixels

    def pixel(self, x: int, y: int) -> Tuple[int, int, int]:
        at = 3 * (y * self.width + x)
        red, green, blue = self.pixels[at : at + 3]
        return red, green, blue

    def part(self, x: int, y: int, width: int, height: int) -> "Picture":
        rows = [self.pixels[3 * (row * self.width + x) :][: 3 * width] for row in range(y, y + height)]
        return Picture(width, height, b"".join(rows))

    def enlarged(self, times: int) -> "Picture":
        rows: List[bytes] = []
        for y in range(self.height):
            row = self.pixels[3 * y * self.width :][: 3 * self.width]
            wide = b"".join(row[3 * x : 3 * x + 3] * times for x in range(self.width))
            rows += [wide] * times
        return Picture(self.width * times, self.height * times, b"".join(rows))

    def __eq__(self, other: object) -> bool:
        return isinstance(other, Picture) and (self.width, self.pixels) == (other.width, other.pixels)


def decoded(png: bytes) -> Picture:
    words = ["ffmpeg", "-v", "error", "-i", "-", "-f", "rawvideo", "-pix_fmt", "rgb24", "-"]
    return Picture(WIDTH, HEIGHT, subprocess.run(words, input=png, capture_output=True, check=True).stdout)


def xdotool(*words: object) -> str:
    said = subprocess.run(["xdotool", *map(str, words)], capture_output=True, text=True, timeout=60)
    assert said.returncode == 0, f"xdotool {words}: {said.stderr}"
    return said.stdout.strip()


class XWindow:
    """The window that `words` of xdotool find on the display in DISPLAY; waits until it is there."""

    def __init__(self, *words: str) -> None:
        words = words or ("--name", "^Head unit$")
        end = time.monotonic() + 20
        while not (found := self._find(words)):
            assert time.monotonic() < end, f"no window {' '.join(words)}"
            time.sleep(0.1)
        self.id = found
        # Not --sync: it waits for ever for a window that is there already.
        xdotool("windowmove", self.id, 0, 0)
        end = time.monotonic() + 10
        while self.geometry()[:2] != (0, 0):
            assert time.monotonic() < end, f"the window stays at {self.geometry()}"
            time.sleep(0.05)
        xdotool("windowfocus", "--sync", self.id)

    @staticmethod
    def _find(words: Sequence[str]) -> str:
        said = subprocess.run(
            ["xdotool", "search", "--onlyvisible", *words], capture_output=True, text=True, timeout=60
        )
        return said.stdout.partition("\n")[0].strip()

    def geometry(self) -> Tuple[int, int, int, int]:
        """Place on the display and size."""
        lines = xdotool("getwindowgeometry", "--shell", self.id).splitlines()
        values = dict(line.split("=") for line in lines)
        return int(values["X"]), int(values["Y"]), int(values["WIDTH"]), int(values["HEIGHT"])

    def picture(self) -> Picture:
        x, y, width, height = self.geometry()
        words = ["ffmpeg", "-v", "error", "-f", "x11grab", "-draw_mouse", "0", "-video_size", f"{width}x{height}"]
        words += ["-grab_x", str(x), "-grab_y", str(y), "-i", "", "-frames:v", "1", "-f", "rawvideo"]
        grabbed = subprocess.run([*words, "-pix_fmt", "rgb24", "-"], capture_output=True, check=True).stdout
        return Picture(width, height, grabbed)

    def resize(self, width: int, height: int) -> None:
        xdotool("windowsize", "--sync", self.id, width, height)

    def point(self, x: int, y: int) -> None:
        """Moves the pointer to a place of the window."""
        xdotool("mousemove", "--window", self.id, x, y)

    def touch(self, x: int, y: int) -> None:
        self.point(x, y)
        xdotool("mousedown", 1)
        time.sleep(0.05)
        xdotool("mouseup", 1)

    def key(self, name: str) -> None:
        xdotool("key", name)

    def close(self) -> None:
        """Sends what a window manager does when the window's cross is clicked."""
        display = Xlib.display.Display()
        window = display.create_resource_object("window", int(self.id))
        protocols, delete = display.intern_atom("WM_PROTOCOLS"), display.intern_atom("WM_DELETE_WINDOW")
        window.send_event(
            Xlib.protocol.event.ClientMessage(window=window, client_type=protocols, data=(32, [delete, 0, 0, 0, 0]))
        )
        # The server drops what it has not read yet from a client that has gone.
        display.sync()
        display.close()
