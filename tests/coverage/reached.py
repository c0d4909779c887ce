#!/usr/bin/python3
"""Which lines and branches of the rooms the tests reach: ./dev test --coverage [ROOM] [OPTION OF CTEST...]

Builds everything with clang's counters, which lie in files that all processes of a program share: what is killed, or locked in and may
open nothing, counts to its last line. Runs the tests that drive the rooms, prints each file and each room, and writes what is missing
as pages into build/coverage/report, and line by line with the reasons that are kept into build/coverage/missing.txt. Exit status 1 where
a test fails, a room stays below its goal or a reason that is kept is stale.
"""

from __future__ import annotations

import json
import shutil
import subprocess
import sys
from dataclasses import dataclass
from pathlib import Path
from typing import Dict, Iterable, List, Mapping, Sequence, Tuple

import missing

ROOT = Path(__file__).resolve().parents[2]
BUILD = ROOT / "build" / "coverage"
COUNTS = BUILD / "counts"


@dataclass(frozen=True)
class Room:
    labels: Tuple[str, ...]  # of the tests that drive it
    lines: float  # the goals, in per cent
    branches: float


_PLATFORM = ("base", "pps", "qdb", "slog", "screen", "toolkit", "framework", "model", "views", "pictures", "bench", "anomaly")
_SERVICES = ("screen", "bench", "film", "disc", "system", "anomaly", "page", "python")
ROOMS: Dict[str, Room] = {
    "base": Room(tuple({*_PLATFORM, *_SERVICES}), 95, 88),
    "mpu": Room(("model", "views", "pictures", "anomaly", "system"), 100, 98),
    "platform": Room((*_PLATFORM, "system"), 95, 88),
    "services": Room(_SERVICES, 95, 88),
}
# What drives no room: types, other people's schedulers, what is installed.
LEFT_OUT = r"in_one_process|python\.(types|slurm|install|benchmarks|anomaly)"


@dataclass(frozen=True)
class Count:
    """Of a file or a room: how many lines and branches there are, and how many were reached."""

    lines: int
    lines_run: int
    branches: int
    branches_run: int

    def __add__(self, other: Count) -> Count:
        return Count(self.lines + other.lines, self.lines_run + other.lines_run,
                     self.branches + other.branches, self.branches_run + other.branches_run)

    def line_share(self) -> float:
        return share(self.lines_run, self.lines)

    def branch_share(self) -> float:
        return share(self.branches_run, self.branches)


def share(run: int, count: int) -> float:
    return 100 * run / count if count else 100


def counts(export: Mapping[str, object], root: Path) -> Dict[str, Count]:
    """Of each file below one of the rooms, as the compiler's tool tells them."""
    found: Dict[str, Count] = {}
    for each in export["data"][0]["files"]:  # type: ignore[index]
        path = Path(each["filename"])
        name = str(path.relative_to(root)) if path.is_relative_to(root) else ""
        if name.split("/")[0] in ROOMS:
            lines, branches = each["summary"]["lines"], each["summary"]["branches"]
            found[name] = Count(lines["count"], lines["covered"], branches["count"], branches["covered"])
    return found


def report(found: Mapping[str, Count], rooms: Iterable[str]) -> Tuple[List[str], bool]:
    """The lines of the report, and whether each room reaches its goals."""
    text: List[str] = []
    totals: List[str] = []
    good = True
    for room in rooms:
        files = {name: count for name, count in found.items() if name.startswith(room + "/")}
        total = sum(files.values(), Count(0, 0, 0, 0))
        for name, count in sorted(files.items()):
            text.append(f"{name:62} {count.lines_run:5}/{count.lines:<5} {int(count.line_share()):3}% "
                        f"{count.branches_run:5}/{count.branches:<5} {int(count.branch_share()):3}%")
        totals.append(f"{room}: {total.line_share():.1f} % of {total.lines} lines, {total.branch_share():.1f} % of {total.branches} branches")
        # Nothing measured is nothing reached.
        good = good and total.lines > 0 and total.line_share() >= ROOMS[room].lines and total.branch_share() >= ROOMS[room].branches
    return text + totals, good


def measure(rooms: Sequence[str], options: Sequence[str]) -> bool:
    shutil.rmtree(COUNTS, ignore_errors=True)
    labels = "|".join(sorted({label for room in rooms for label in ROOMS[room].labels}))
    ran = subprocess.run(["ctest", "--preset", "coverage", "-L", f"^({labels})$", "-E", LEFT_OUT, *options], cwd=ROOT, check=False)
    return ran.returncode == 0


def export() -> Tuple[Mapping[str, object], str]:
    """The counts of all files, and their texts with what was reached."""
    merged = BUILD / "coverage.profdata"
    subprocess.run(["llvm-profdata", "merge", "-sparse", "-o", merged, *sorted(COUNTS.glob("*.profraw"))], check=True)
    programs = sorted(each for each in (BUILD / "bin").iterdir() if each.is_file())
    objects = [word for each in programs for word in ("-object", str(each))][1:]
    common = [*objects, f"-instr-profile={merged}", *(str(ROOT / room) for room in ROOMS)]
    subprocess.run(["llvm-cov", "show", "-format=html", "-show-branches=count", f"-output-dir={BUILD / 'report'}", *common],
                   check=True, stdout=subprocess.DEVNULL)
    told = subprocess.run(["llvm-cov", "export", "-summary-only", *common], check=True, stdout=subprocess.PIPE)
    shown = subprocess.run(["llvm-cov", "show", "-show-branches=count", *common], check=True, stdout=subprocess.PIPE)
    return json.loads(told.stdout), shown.stdout.decode(errors="replace")


def main() -> int:
    words = sys.argv[1:]
    kept = missing.reasons(missing.LIST.read_text())
    if words and not words[0].startswith("-") and words[0] not in ROOMS:
        print(f"there is no room {words[0]}; these are measured: {', '.join(ROOMS)}", file=sys.stderr)
        return 2
    rooms = [words.pop(0)] if words and words[0] in ROOMS else list(ROOMS)
    passed = measure(rooms, words)
    found, shown = export()
    text, good = report(counts(found, ROOT), rooms)
    told, stale = missing.explained(missing.reached(shown, ROOT), kept, ROOT, rooms)
    (BUILD / "missing.txt").write_text("\n".join(told) + "\n")
    print("\n".join(text + stale))
    print(f"what is missing: {BUILD / 'missing.txt'} ({missing.tally(told)}), {BUILD / 'report' / 'index.html'}")
    if not passed:
        print("some tests failed: see above")
    return 0 if passed and good and not stale else 1


if __name__ == "__main__":
    sys.exit(main())
