"""What a unit lives through while a call of it goes wrong, and what must hold whatever went wrong."""

from __future__ import annotations

import json
import os
import signal
import subprocess
import sys
import time
from pathlib import Path
from typing import Callable, Dict, List, Optional, Tuple

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "clients" / "python"))

from platen_bench import Bench  # noqa: E402
from platen_bench.discs import make_disc  # noqa: E402
from platen_bench.errors import BenchError  # noqa: E402
from platen_bench.programs import find_bench  # noqa: E402

TITLES = ["Fog", "Rain", "Snow"]
STATE = "pps.zelmar/disc/status.discstate"
PLAYS, NO_DISC = 2, 0
TO_LIST = 6508
VOLUME = 35
# A busy machine may be slow; whoever needs longer hangs.
PATIENCE = 40.0
# While something goes wrong a step may wait for a program that is started anew; what comes later is seen afterwards.
SHORT_PATIENCE = 8.0


class Wrong(Exception):
    """Something that must not be, whatever went wrong before."""


class Unit:
    """zmbench in a folder that outlives it."""

    def __init__(self, folder: Path, environment: Dict[str, str]) -> None:
        self.folder = folder
        self.environment = {**os.environ, **environment}
        self.resume = folder / "resume.sqlite"
        self.runtime = folder / "run"
        self._errors = folder / "errors"
        self._process: Optional["subprocess.Popen[bytes]"] = None

    def start(self) -> None:
        """Returns when it is ready or has ended."""
        words = [find_bench(None), "--no-web", "--runtime", str(self.runtime), "--resume", str(self.resume)]
        words += ["--disc", str(make_disc(TITLES)), "--audio-device", "none"]
        ready = self.folder / "ready"
        with open(self._errors, "ab") as errors, open(ready, "wb") as out:
            self._process = subprocess.Popen(
                words, stdin=subprocess.DEVNULL, stdout=out, stderr=errors, env=self.environment, start_new_session=True
            )
        end = time.monotonic() + PATIENCE
        while b"\n" not in ready.read_bytes() and self.runs():
            if time.monotonic() > end:
                raise Wrong("zmbench is neither ready nor gone")
            time.sleep(0.01)

    def runs(self) -> bool:
        return self._process is not None and self._process.poll() is None

    def ends(self) -> bool:
        """Whether it has ended; one that answers no more is waited for."""
        try:
            Bench.connect(self.runtime).command("ps", timeout=PATIENCE)
        except BenchError:
            end = time.monotonic() + PATIENCE
            while self.runs():
                if time.monotonic() > end:
                    raise Wrong("zmbench does not answer and does not end") from None
                time.sleep(0.05)
        return not self.runs()

    def said(self) -> str:
        """What it and its programs wrote to standard error."""
        return self._errors.read_text(errors="replace") if self._errors.exists() else ""

    def stop(self) -> int:
        """Ends it in order; its status."""
        assert self._process
        if self.runs():
            self._process.terminate()
        try:
            return self._process.wait(PATIENCE)
        except subprocess.TimeoutExpired:
            self.kill()
            raise Wrong("zmbench does not end when it is asked to") from None

    def kill(self) -> None:
        if self._process and self.runs():
            os.killpg(self._process.pid, signal.SIGKILL)
            self._process.wait()


class Story:
    """A disc plays, the driver moves on, looks at the list, chooses, turns the volume, takes the disc out and puts it in again."""

    def __init__(self, bench: Bench, patience: float) -> None:
        self._bench = bench
        self._patience = patience
        self._title = ""
        self.seen: List[str] = []

    def tell(self, anew: bool) -> None:
        """Raises BenchError at the first step that cannot be seen, Wrong at what must never be. `anew`: with the disc taken out first."""
        steps: List[Callable[[], None]] = [self._stands, self._taken_out, self._put_in] if anew else [self._plays]
        steps += [self._next, self._list, self._chosen, self._turned, self._taken_out, self._put_in, self._resumed]
        for step in steps:
            step()
            self._check_published()
            self.seen.append(step.__name__[1:])

    def _expect(self, *path: object, **fields: object) -> None:
        self._bench.expect(*path, within=self._patience, **fields)

    def _stands(self) -> None:
        self._expect(service="running")
        # Drive and disc are there again when the service has told of them.
        self._expect(STATE, "matches", "^(0|2)$")

    def _plays(self) -> None:
        self._expect(STATE, "==", PLAYS)
        self._expect(page="music")
        end = time.monotonic() + self._patience
        while True:
            self._title = self._bench.pps.get("zelmar/disc/playing").get("ID3", {}).get("title", "")
            if self._title:
                break
            if time.monotonic() > end:
                raise BenchError("a song plays that has no title")
            time.sleep(0.02)
        self._expect(title=self._title)

    def _next(self) -> None:
        self._title = TITLES[(TITLES.index(self._title) + 1) % len(TITLES)]
        self._bench.key("next")
        self._expect(title=self._title)

    def _list(self) -> None:
        self._bench.tap(TO_LIST)
        self._expect(rows=[f"{number}  {each}" for number, each in enumerate(TITLES, 1)])

    def _chosen(self) -> None:
        self._bench.tap("3  Snow")
        self._expect(page="music", title="Snow")

    def _turned(self) -> None:
        self._bench.command("volume", VOLUME)
        self._bench.command("theme", "day")
        self._bench.command("theme", "night")

    def _taken_out(self) -> None:
        if self._bench.disc().state != "empty":
            self._bench.eject()
        self._expect(STATE, "==", NO_DISC)
        self._expect(disc="empty")

    def _put_in(self) -> None:
        self._bench.insert(make_disc(TITLES), wait=False)
        self._plays()

    def _resumed(self) -> None:
        if self._title != "Snow":
            raise BenchError(f"the disc was left at Snow and goes on at {self._title}")

    def _check_published(self) -> None:
        """No object holds half a value, or what is not on the disc."""
        for name in self._bench.command("pps", "ls").split():
            for line in self._bench.command("pps", "get", name).splitlines():
                attribute, _, rest = line.partition(":")
                kind, _, value = rest.partition(":")
                if kind != "json":
                    continue
                try:
                    parsed = json.loads(value)
                except ValueError as error:
                    raise Wrong(f"{name} holds half a value: {line}") from error
                if attribute == "ID3" and parsed.get("title") not in ["", *TITLES]:
                    raise Wrong(f"{name} names a song that is not on the disc: {line}")
                if attribute == "trackinfo" and parsed.get("mediaids") not in (None, 0, len(TITLES)):
                    raise Wrong(f"{name} counts songs that are not there: {line}")


def live(unit: Unit, patience: float, anew: bool = False) -> Tuple[List[str], str]:
    """The steps that could be seen, and why not all of them."""
    story: Optional[Story] = None
    try:
        story = Story(Bench.connect(unit.runtime), patience)
        story.tell(anew)
    except BenchError as error:
        return story.seen if story else [], str(error)
    return story.seen, ""
