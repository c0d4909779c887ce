#!/usr/bin/python3
"""Has the calls of the unit's programs go wrong, one after the other or by chance, while it plays a disc.

    ./dev anomaly                     every kind and program, a sample of 400 runs
    ./dev anomaly memory zmdiscd      one of them: allocations of the disc service
    ./dev anomaly --runs 20 --seed 7  another sample
    ./dev anomaly memory Platen --at 1234   that call alone, with where it was made

memory: one allocation of a whole story finds no memory. disk: from one write on the disk is full, until the story is
over. sockets: calls are interrupted, and streams give and take little. clock: the time of day jumps both ways, the
machine's forward. Afterwards, with everything well again, the whole story must be told and no file be lost. Exit status 1
if that fails anywhere.
"""

from __future__ import annotations

import argparse
import mmap
import os
import random
import re
import shutil
import sqlite3
import struct
import sys
import tempfile
import time
from collections import Counter
from contextlib import closing
from dataclasses import dataclass
from pathlib import Path
from typing import Dict, Iterator, List, Optional, Sequence

from story import PATIENCE, ROOT, SHORT_PATIENCE, VOLUME, Unit, Wrong, live

KINDS = {"memory": 1, "disk": 2, "sockets": 3, "clock": 4}
PROGRAMS = ("zmdiscd", "Platen", "zmbench")
CHANCE = ("sockets", "clock")  # what happens by chance, again and again; else once
# One call in so many. Who looks at the clock ten times within a second misses half a minute of it at one in three.
SHARES = {"sockets": (3, 10, 100), "clock": (30, 100, 1000)}
# About how many calls a story makes: so far the calls that fail are spread. --count counts them anew.
CALLS = {
    ("memory", "zmdiscd"): 11600, ("memory", "Platen"): 472000, ("memory", "zmbench"): 420000,
    ("disk", "zmdiscd"): 115, ("disk", "Platen"): 460, ("disk", "zmbench"): 1,
}
# As tests/anomaly/preload/Control.h has it.
_CONTROL = struct.Struct("=iiqqqq")
OTHER_DISC = "a disc of long ago"
_DIED = re.compile(r"(\w+) (?:ended with status \d+|was killed by signal \d+[^;\n]*)")
_GIVEN_UP = "is not started again"
# Without these a program may end, if it names them.
_REASONS = {"memory": re.compile(r": out of memory: no \d+ bytes"), "disk": re.compile(r"disk is full|No space left")}


class Control:
    """The file through which the programs learn what is to go wrong."""

    def __init__(self, path: Path) -> None:
        path.write_bytes(bytes(_CONTROL.size))
        with open(path, "r+b") as stream:
            self._memory = mmap.mmap(stream.fileno(), _CONTROL.size)

    def arm(self, kind: str, number: int, share: int) -> None:
        self._memory[:] = _CONTROL.pack(KINDS[kind], share, number, number, 0, 0)

    def disarm(self) -> None:
        self._memory[:4] = bytes(4)

    @property
    def calls(self) -> int:
        return int(_CONTROL.unpack(self._memory[:])[4])

    @property
    def faults(self) -> int:
        return int(_CONTROL.unpack(self._memory[:])[5])


@dataclass(frozen=True)
class Case:
    kind: str
    program: str
    number: int  # which call; of what happens by chance the seed
    share: int = 0

    def __str__(self) -> str:
        return f"{self.kind} {self.program} {self.number}" + (f" one in {self.share}" if self.share else "")


@dataclass
class Outcome:
    verdict: str  # "went on", "ended with a word", "ended without a word"
    calls: int
    faults: int
    fault: str = ""  # what must not be
    where: str = ""
    said: str = ""


def remember_other_disc(file: Path) -> None:
    """A row that no run has to do with: it must still be there at the end."""
    with closing(sqlite3.connect(file)) as database, database:
        database.execute("UPDATE discs SET used = used + 1000")
        database.execute("INSERT INTO discs SELECT 1, ?, kind, folderid, fid, milliseconds, repeat, shuffle, sound, subtitle FROM discs LIMIT 1", [OTHER_DISC])


def check_files(unit: Unit) -> None:
    damaged = [each.name for each in [*unit.folder.iterdir(), *unit.runtime.iterdir()] if each.name.endswith(".damaged")]
    if damaged:
        raise Wrong(f"put aside as damaged: {', '.join(damaged)}")
    with closing(sqlite3.connect(unit.resume)) as database:
        if database.execute("PRAGMA integrity_check").fetchone() != ("ok",):
            raise Wrong("the remembered discs are damaged")
        if OTHER_DISC not in [row[0] for row in database.execute("SELECT identity FROM discs")]:
            raise Wrong("a remembered disc is lost")
    volume = unit.resume.with_name(unit.resume.name + ".volume").read_bytes()
    if volume != f"{VOLUME}\n".encode():
        raise Wrong(f"the volume is lost: {volume[:20]!r}")


def run(case: Case, template: Optional[Path] = None, keep: Optional[Path] = None) -> Outcome:
    """One story with the fault, one after it. `template`: the discs that are remembered at the start; `keep` takes those of the end."""
    folder = Path(tempfile.mkdtemp(prefix="anomaly-", dir="/tmp"))
    control = Control(folder / "control")
    control.arm(case.kind, case.number, case.share)
    trace = folder / "trace"
    library = Path(os.environ.get("PLATEN_FAULTS", ROOT / "build" / "lib" / "faults.so"))
    unit = Unit(folder, {"LD_PRELOAD": str(library), "ZM_FAULT_CONTROL": str(folder / "control"), "ZM_FAULT_TRACE": str(trace),
                         "ZM_FAULT_PROGRAM": case.program})
    if template:
        shutil.copy(template, unit.resume)
    outcome = Outcome("went on", 0, 0)
    died = False
    try:
        unit.start()
        seen, why = live(unit, SHORT_PATIENCE)
        outcome.calls, outcome.faults = control.calls, control.faults
        control.disarm()
        if why and not outcome.faults:
            raise Wrong(f"nothing failed, and yet after {seen[-1] if seen else 'nothing'}: {why}")
        died = unit.ends()
        if died or _GIVEN_UP in unit.said():
            unit.stop()
            unit.start()
            if not unit.runs():
                raise Wrong("zmbench cannot be started again")
        seen, why = live(unit, PATIENCE, anew=True)
        if why:
            raise Wrong(f"afterwards, after {seen[-1] if seen else 'nothing'}: {why}")
        if status := unit.stop():
            raise Wrong(f"afterwards zmbench ends with status {status}")
        if keep:
            shutil.copy(unit.resume, keep)
        else:
            check_files(unit)
    except Wrong as error:
        outcome.fault = str(error)
    finally:
        unit.kill()
        outcome.said = unit.said()
        outcome.where = trace.read_text(errors="replace") if trace.exists() else ""
        if died or case.program in _DIED.findall(outcome.said):
            reason = _REASONS.get(case.kind)
            outcome.verdict = "ended with a word" if reason and reason.search(outcome.said) else "ended without a word"
            if "without" in outcome.verdict:
                outcome.fault = outcome.fault or outcome.verdict
        shutil.rmtree(folder, ignore_errors=True)
    return outcome


def prepared(folder: Path) -> Path:
    """The remembered discs of a unit that has lived once, and one more."""
    template = folder / "resume.sqlite"
    outcome = run(Case("clock", "none", 0, 1), keep=template)
    if outcome.fault:
        raise Wrong(f"without any fault: {outcome.fault}\n{outcome.said}")
    remember_other_disc(template)
    return template


def count(kind: str, program: str, template: Path) -> int:
    """How many calls a story makes in which none goes wrong."""
    counted = run(Case(kind, program, 1 << 60), template)
    if counted.fault:
        raise Wrong(f"{kind} {program}, counted: {counted.fault}\n{counted.said}")
    print(f"{kind} {program}: {counted.calls} calls in a story", flush=True)
    return counted.calls


def sample(kinds: Sequence[str], programs: Sequence[str], runs: int, seed: int) -> Iterator[Case]:
    """So many cases in all, of each kind and program alike, in an order that mixes them."""
    chance = random.Random(seed)
    pairs = [(kind, program) for kind in kinds for program in programs]
    every = -(-runs // len(pairs))
    cases: List[Case] = []
    for kind, program in pairs:
        if kind in CHANCE:
            cases += [Case(kind, program, chance.randrange(1 << 31), chance.choice(SHARES[kind])) for _ in range(every)]
            continue
        if calls := CALLS.get((kind, program)):
            width = calls / every
            cases += [Case(kind, program, 1 + int(width * (place + chance.random()))) for place in range(every)]
    chance.shuffle(cases)
    return iter(cases[:runs])


def report(case: Case, outcome: Outcome) -> None:
    print(f"{case}: {outcome.fault or outcome.verdict} ({outcome.faults} of {outcome.calls} calls went wrong)", flush=True)
    if outcome.fault:
        print(f"  ./dev anomaly {case.kind} {case.program} --at {case.number}" + (f" --share {case.share}" if case.share else ""))
        for line in [*outcome.where.splitlines()[:24], *outcome.said.splitlines()[-12:]]:
            print(f"    {line}")
        sys.stdout.flush()


def main() -> int:
    parser = argparse.ArgumentParser(prog="./dev anomaly", description="Has calls of the unit's programs go wrong while it plays a disc.")
    parser.add_argument("kind", nargs="?", choices=[*KINDS, "all"], default="all", help="default all")
    parser.add_argument("program", nargs="?", choices=[*PROGRAMS, "all"], default="all", help="default all")
    parser.add_argument("--runs", type=int, default=400, help="how many in all; default 400")
    parser.add_argument("--seed", type=int, default=1, help="which; default 1")
    parser.add_argument("--seconds", type=float, help="no further run after so long")
    parser.add_argument("--count", action="store_true", help="only count the calls of a story")
    parser.add_argument("--at", type=int, help="this call alone, or this seed of what happens by chance")
    parser.add_argument("--share", type=int, default=10, help="of what happens by chance: one call in so many; default 10")
    options = parser.parse_args()
    kinds = list(KINDS) if options.kind == "all" else [options.kind]
    programs = list(PROGRAMS) if options.program == "all" else [options.program]
    if options.at is not None and (len(kinds) > 1 or len(programs) > 1):
        parser.error("--at needs a kind and a program")
    begin = time.monotonic()
    verdicts: Dict[str, int] = Counter()
    faults = 0
    with tempfile.TemporaryDirectory(prefix="anomaly-") as folder:
        template = prepared(Path(folder))
        if options.count:
            for kind in (each for each in kinds if each not in CHANCE):
                for program in programs:
                    count(kind, program, template)
            return 0
        if options.at is not None:
            cases = iter([Case(kinds[0], programs[0], options.at, options.share if kinds[0] in CHANCE else 0)])
        else:
            cases = sample(kinds, programs, options.runs, options.seed)
        for case in cases:
            if options.seconds and time.monotonic() - begin > options.seconds:
                break
            outcome = run(case, template)
            report(case, outcome)
            if options.at is not None and not outcome.fault:
                print(outcome.where, outcome.said, sep="\n")
            verdicts[f"{case.kind} {outcome.verdict}"] += 1
            faults += bool(outcome.fault)
    for name, number in sorted(verdicts.items()):
        print(f"{name}: {number}")
    print(f"anomaly: {sum(verdicts.values())} runs in {time.monotonic() - begin:.0f} s, {faults} with a fault")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
