"""What tests of drives ask of the unit that has one."""

from __future__ import annotations

import json
import time
from typing import Any, Dict

from platen_bench import Bench

STATE = "pps.zelmar/disc/status.discstate"
STOPPED, LOADING, PLAYING, ERROR, EJECTING = 0, 1, 2, 9, 20


def disc(unit: Bench) -> Dict[str, Any]:
    said: Dict[str, Any] = json.loads(unit.command("disc", "--json"))
    return said


def until(unit: Bench, **wanted: str) -> None:
    """The drive says so, at the latest after a while."""
    end = time.monotonic() + 40
    while any(disc(unit).get(name) != value for name, value in wanted.items()):
        assert time.monotonic() < end, disc(unit)
        time.sleep(0.1)


def plays(unit: Bench, title: str = "Fog") -> None:
    unit.expect(page="music", title=title, within=40)
    unit.expect(STATE, "==", PLAYING, within=40)
