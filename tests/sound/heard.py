"""What comes out of a loudspeaker of the sound server: its monitor, recorded and measured."""

from __future__ import annotations

import array
import subprocess
import tempfile
import time
from pathlib import Path
from types import TracebackType
from typing import List, Optional, Type

RATE = 44100
TONE = 441  # a whole number of samples each wave
_WAVE = RATE // TONE


class Recording:
    """Records until the block is left, then has the samples of the left side."""

    def __init__(self, speaker: str = "speaker") -> None:
        self._file = tempfile.NamedTemporaryFile()
        words = ["parec", "-d", f"{speaker}.monitor", "--format=s16le", f"--rate={RATE}", "--channels=2", "--raw"]
        self._recorder = subprocess.Popen([*words, "--latency-msec=20"], stdout=self._file)
        self.samples = array.array("h")

    def __enter__(self) -> "Recording":
        end = time.monotonic() + 20
        while Path(self._file.name).stat().st_size == 0:
            assert time.monotonic() < end and self._recorder.poll() is None, "nothing is recorded"
            time.sleep(0.05)
        return self

    def __exit__(
        self,
        kind: Optional[Type[BaseException]],
        error: Optional[BaseException],
        trace: Optional[TracebackType],
    ) -> None:
        self._recorder.terminate()
        self._recorder.wait()
        data = Path(self._file.name).read_bytes()
        self.samples = array.array("h", data[: len(data) // 4 * 4])[::2]
        self._file.close()

    def peaks(self) -> List[int]:
        """How loud each wave of the tone is; a pause of the recorder counts as what was before it."""
        waves = range(0, len(self.samples) - _WAVE, _WAVE)
        return [max(abs(sample) for sample in self.samples[at : at + _WAVE]) for at in waves]


def listen(seconds: float, speaker: str = "speaker") -> Recording:
    """What is heard from now on."""
    with Recording(speaker) as recording:
        time.sleep(seconds)
    return recording


def milliseconds(waves: int) -> float:
    return waves * _WAVE * 1000 / RATE
