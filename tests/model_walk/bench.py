"""The real unit: a bench without disc service on a stopped clock, one command and all it led to at a time."""

from __future__ import annotations

import json
import os
import shlex
import sys
from typing import Any, Dict, List

_HERE = os.path.dirname(os.path.abspath(__file__))
_ROOT = os.path.dirname(os.path.dirname(_HERE))
sys.path.insert(0, os.path.join(_ROOT, "clients", "python"))

from platen_bench import protocol  # noqa: E402
from platen_bench.process import BenchProcess  # noqa: E402

from catalogue import Catalogue  # noqa: E402
from film import COLOUR, Film  # noqa: E402

RESOURCES = os.path.join(_ROOT, "resources")
PROGRAMS = os.environ.get("PLATEN_BENCH", os.path.join(_ROOT, "build", "bin"))
OPTIONS = ["--no-web", "--no-disc-service", "--manual-clock"]
_START_SECONDS = 60.0
_STEP_SECONDS = 60.0


class Bench:
    def __init__(self, catalogue: Catalogue, file: str) -> None:
        """`file` gets the catalogue."""
        catalogue.write(file)
        self._windows: Dict[str, Dict[str, Any]] = {}
        words = [os.path.join(PROGRAMS, "zmbench"), *OPTIONS, "--catalogue", file]
        self._process = BenchProcess(words, _START_SECONDS, {})
        try:
            self._film = Film(self._process.runtime)
            self._connection = protocol.Connection(os.path.join(self._process.runtime, "ctl.sock"))
        except BaseException:
            self._process.end()
            raise

    def command(self, *words: str) -> str:
        """The output of any command; a failing one raises."""
        self._connection.send(protocol.request(words, "/"))
        out, err = "", ""
        while True:
            part = self._connection.receive(_STEP_SECONDS)
            if part is None:
                raise TimeoutError(f"no answer within {_STEP_SECONDS:g} s: {shlex.join(words)}")
            out, err = out + part.out, err + part.err
            if part.status:
                raise RuntimeError(f"{shlex.join(words)}: {err.strip()}")
            if part.status is not None:
                return out

    def step(self, words: List[str]) -> Dict[str, Any]:
        """A command and all it led to; the screen is whole, though only what changed comes over the socket."""
        answer: Dict[str, Any] = json.loads(self.command("step", "--pixels", COLOUR, "--changes", *words))
        screen = answer["screen"]
        if screen is not None:
            for view in ("main", "osd"):
                known = self._windows.setdefault(view, {})
                for window, content in screen[view]["windows"].items():
                    known.setdefault(window, {"items": {}})["items"].update(content["items"])
                screen[view]["windows"] = known
        return answer

    def close(self) -> None:
        self._connection.close()
        self._film.close()
        self._process.end()

    def __enter__(self) -> "Bench":
        return self

    def __exit__(self, *_: object) -> None:
        self.close()
