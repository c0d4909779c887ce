"""An X server without a monitor."""

import os
import subprocess
from typing import Iterator

import pytest


def x_display(patch: pytest.MonkeyPatch, size: str) -> Iterator[str]:
    """The name of an X display of that size ("800x480") with nothing on it, which programs started meanwhile take."""
    reader, writer = os.pipe()
    words = ["Xvfb", "-displayfd", str(writer), "-screen", "0", f"{size}x24", "-nolisten", "tcp"]
    server = subprocess.Popen(words, pass_fds=[writer], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    os.close(writer)
    with os.fdopen(reader) as number:
        name = ":" + number.readline().strip()
    patch.setenv("DISPLAY", name)
    patch.delenv("WAYLAND_DISPLAY", raising=False)
    yield name
    server.terminate()
    server.wait()
