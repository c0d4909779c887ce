#!/usr/bin/python3
"""A simulated week of driving: discs come and go, songs and films play, lists are looked through, the clock runs ahead.

    ./dev prove soak                                     a week in 30 minutes
    tests/prove/soak.py [--minutes 30] [--picture FILE]  another length, and where its picture goes

What the programs hold (memory, descriptors, threads) and what lies on the disk is looked at after each disc, once its
programs have come to rest, and plotted. Exit status 1 unless the last quarter holds no more than the second.
"""

from __future__ import annotations

import argparse
import os
import random
import statistics
import sys
import tempfile
import time
from dataclasses import dataclass
from pathlib import Path
from typing import Callable, Dict, List, Sequence, Tuple

from plot import plot

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "clients" / "python"))

from platen_bench import Bench  # noqa: E402
from platen_bench.discs import Track, make_disc  # noqa: E402

WEEK = 7 * 24 * 3600.0
STATE = "pps.zelmar/disc/status.discstate"
PLAYS = 2
WITHIN = 60.0
# What may come and go: pages of the heap, connections of commands that have just ended.
MOST_MORE = {"memory": 2.0, "descriptors": 2.0, "threads": 1.0, "disk": 2.0}
# The log is put aside when it is full, and the one put aside before goes: it comes and goes by half of this.
LOG, MOST_LOG = "slog", 16.1
# The bench keeps so many inputs for records, and memory with them: a week begins when no more are kept.
KEPT_INPUTS = 100_000
UNITS = {"memory": "MB", "descriptors": "", "threads": "", "disk": "MB"}


@dataclass(frozen=True)
class Holding:
    """What one process, or the folder of all of them, holds at a time."""

    memory: float = 0
    descriptors: float = 0
    threads: float = 0
    disk: float = 0


Samples = Dict[str, List[Tuple[float, Holding]]]


def holding(pid: int) -> Holding:
    process = Path(f"/proc/{pid}")
    own = next(line for line in (process / "status").read_text().splitlines() if line.startswith("RssAnon:"))
    return Holding(int(own.split()[1]) / 1024, len(os.listdir(process / "fd")), len(os.listdir(process / "task")))


def on_disk(folder: Path) -> Tuple[Holding, Holding]:
    """What all files but the log's, and what these take: what is allocated, not what a sparse file is long."""
    blocks = {False: 0, True: 0}
    for root, _, files in os.walk(folder):
        for name in files:
            try:
                blocks[name.startswith(LOG)] += os.lstat(os.path.join(root, name)).st_blocks
            except FileNotFoundError:
                pass
    return Holding(disk=blocks[False] * 512 / (1 << 20)), Holding(disk=blocks[True] * 512 / (1 << 20))


class Week:
    def __init__(self, bench: Bench, folder: Path, seed: int) -> None:
        self._bench = bench
        self._folder = folder
        self._chance = random.Random(seed)
        songs = [Track(f"Song {number}", artist="Somebody", album="曲", seconds=30) for number in range(1, 13)]
        films = [Track("Film", kind="video", seconds=20), Track("Other film", kind="video", seconds=20, colour="blue")]
        photos = [Track(f"Photo {number}", kind="photo") for number in range(1, 4)]
        self._discs = [make_disc(songs), make_disc([*songs[:3], *films]), make_disc(films), make_disc([*photos, *songs[:2]])]
        self.samples: Samples = {}

    def disc(self, number: int, passes: float) -> None:
        """One disc from insertion to rest, while `passes` seconds of the unit's clock go by."""
        bench = self._bench
        bench.insert(self._discs[number % len(self._discs)], wait=False)
        bench.expect(STATE, "==", PLAYS, within=WITHIN)
        acts: Sequence[Callable[[], object]] = [
            lambda: bench.key(self._chance.choice(["next", "previous", "play"])),
            lambda: bench.touch(self._chance.randrange(800), self._chance.randrange(480)),
            lambda: bench.drag(400, 380, 400, self._chance.randrange(90, 380)),
            lambda: bench.command("theme", self._chance.choice(["day", "night"])),
            lambda: bench.command("volume", self._chance.randrange(20, 60)),
            lambda: bench.command("device", "parking", self._chance.choice(["0", "1"])),
        ]
        for _ in range(12):
            self._chance.choice(acts)()
            bench.advance(passes / 12)
        bench.command("device", "parking", "1")
        bench.eject()
        bench.expect(disc="empty", within=WITHIN)
        bench.settle()

    def look(self, at: float) -> None:
        found = {name: holding(process.pid) for name, process in self._bench.processes().items()}
        found["bench"] = holding(self._bench.pid)
        found["folder"], found["log"] = on_disk(self._folder)
        for name, each in found.items():
            self.samples.setdefault(name, []).append((at, each))


def growth(values: Sequence[float]) -> float:
    """How much more the last quarter holds than the second; the first is the warming up."""
    quarter = max(1, len(values) // 4)
    return statistics.median(values[-quarter:]) - statistics.median(values[quarter : 2 * quarter] or values)


def judge(samples: Samples) -> List[str]:
    """A line for each holding that grew."""
    faults = []
    for name, line in samples.items():
        if name == "log":
            most_log = max(each.disk for _, each in line)
            faults += [f"soak: the log took {most_log:.1f} MB (at most {MOST_LOG:g})"] if most_log > MOST_LOG else []
            continue
        for kind, most in MOST_MORE.items():
            more = growth([getattr(each, kind) for _, each in line])
            if more > most:
                faults.append(f"soak: {kind} of {name} grew by {more:.1f} {UNITS[kind]} (at most {most:g})")
    return faults


def picture(samples: Samples) -> str:
    def lines(kind: str) -> Dict[str, Sequence[Tuple[float, float]]]:
        return {name: [(at, getattr(each, kind)) for at, each in line] for name, line in samples.items() if any(getattr(each, kind) for _, each in line)}

    return plot([(f"{kind}, over the hours of a week", UNITS[kind], lines(kind)) for kind in MOST_MORE])


def main() -> int:
    parser = argparse.ArgumentParser(description="A simulated week of driving.")
    parser.add_argument("--minutes", type=float, default=30, help="how long it may take; default 30")
    parser.add_argument("--picture", type=Path, default=ROOT / "build" / "prove" / "soak.svg", help="default build/prove/soak.svg")
    parser.add_argument("--seed", type=int, default=1)
    options = parser.parse_args()
    options.picture.parent.mkdir(parents=True, exist_ok=True)
    with tempfile.TemporaryDirectory(prefix="soak-") as folder, Bench(clock="stopped", audio_device="none", resume=f"{folder}/resume.sqlite", timeout=WITHIN) as bench:
        week = Week(bench, Path(bench.runtime), options.seed)
        for _ in range(KEPT_INPUTS):
            bench.command("device", "parking", "1")
        begin, number, passed = time.monotonic(), 0, 0.0
        while passed < WEEK:
            number += 1
            # As much of the week as has gone by of the minutes.
            goal = min(WEEK, (time.monotonic() - begin) / (options.minutes * 60) * WEEK)
            week.disc(number, max(goal - passed, 600))
            passed = max(goal, passed + 600)
            week.look(passed / 3600)
            if number % 10 == 0:
                print(f"soak: {number} discs, {passed / 3600:.0f} h, {time.monotonic() - begin:.0f} s", flush=True)
        deaths = {name: process.deaths for name, process in bench.processes().items() if process.deaths}
    options.picture.write_text(picture(week.samples), encoding="utf-8")
    faults = judge(week.samples) + [f"soak: {name} died {count} times" for name, count in deaths.items()]
    print("\n".join(faults))
    for name, line in week.samples.items():
        first, last = line[len(line) // 4][1], line[-1][1]
        print(f"soak: {name}: {first} at a quarter, {last} at the end")
    print(f"soak: {number} discs, {passed / 3600:.0f} hours in {(time.monotonic() - begin) / 60:.1f} min, {len(faults)} holdings grew; {options.picture}")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
