"""What the tests do not reach, line by line, and why: the reasons are kept in unreached.txt."""

from __future__ import annotations

import re
from dataclasses import dataclass, field
from pathlib import Path
from typing import Dict, Iterable, List, Mapping, Tuple

LIST = Path(__file__).resolve().parent / "unreached.txt"

NO_REASON = "(no reason is kept)"

_FILE = re.compile(r"(/.*):")
_LINE = re.compile(r"(?:  \|)*\s+(\d+)\|\s*([\d.]+)[kMGTPEZY]?\|")
_BRANCH = re.compile(r"(?:  \|)+\s+Branch \((\d+):(\d+)\): \[True: ([\d.]+)\w?, False: ([\d.]+)\w?\]")


@dataclass
class Reached:
    """Of one file: whether each line, and each side of each condition, was. A template is once among the lines for each of its types."""

    lines: Dict[int, bool] = field(default_factory=dict)
    branches: Dict[Tuple[int, int], Tuple[bool, bool]] = field(default_factory=dict)

    def missing(self) -> Dict[int, str]:
        """What is missing in which line."""
        found: Dict[int, List[str]] = {line: ["never reached"] for line, run in self.lines.items() if not run}
        for (line, column), (true, false) in sorted(self.branches.items()):
            told = found.setdefault(line, [])
            if told[:1] != ["never reached"] and not (true and false):
                told.append(f"at {column} never " + ("false" if true else "true" if false else "asked"))
        return {line: "; ".join(told) for line, told in sorted(found.items()) if told}


def reached(shown: str, root: Path) -> Dict[str, Reached]:
    """Of each file, as the compiler's tool shows its text."""
    found: Dict[str, Reached] = {}
    here = Reached()
    for text in shown.splitlines():
        if name := _FILE.fullmatch(text):
            path = Path(name[1])
            here = found.setdefault(str(path.relative_to(root)) if path.is_relative_to(root) else str(path), Reached())
        elif line := _LINE.match(text):
            number = int(line[1])
            here.lines[number] = here.lines.get(number, False) or float(line[2]) > 0
        elif branch := _BRANCH.match(text):
            place = int(branch[1]), int(branch[2])
            true, false = here.branches.get(place, (False, False))
            here.branches[place] = true or float(branch[3]) > 0, false or float(branch[4]) > 0
    return found


@dataclass(frozen=True)
class Reason:
    """Why a line of a file, quoted, is not reached, or not wholly."""

    file: str
    quoted: str
    text: str


def reasons(kept: str) -> List[Reason]:
    """`FILE: QUOTED LINE`, as many as share a reason, and the reason indented below them."""
    found: List[Reason] = []
    waiting: List[str] = []
    for number, line in enumerate(kept.splitlines(), 1):
        if line.startswith("#") or not line.strip():
            continue
        if not line.startswith(" "):
            waiting.append(line.strip())
            if ": " not in line:
                raise ValueError(f"line {number} of the reasons is not FILE: QUOTED LINE: {line}")
        elif not waiting:
            raise ValueError(f"line {number} of the reasons stands below no quoted line: {line.strip()}")
        else:
            found += [Reason(*each.split(": ", 1), line.strip()) for each in waiting]  # type: ignore[call-arg]
            waiting = []
    if waiting:
        raise ValueError(f"there is no reason below: {waiting[0]}")
    return found


def explained(found: Mapping[str, Reached], kept: Iterable[Reason], root: Path, rooms: Iterable[str]) -> Tuple[List[str], List[str]]:
    """What each room misses, line by line with the reason where there is one; and which reasons are stale."""
    by_line = {(each.file, each.quoted): each for each in kept if each.file.split("/")[0] in rooms}
    used = set()
    told: List[str] = []
    for file in sorted(file for file in found if file.split("/")[0] in rooms):
        text = (root / file).read_text().splitlines()
        for line, what in found[file].missing().items():
            quoted = text[line - 1].strip()
            reason = by_line.get((file, quoted))
            used.add((file, quoted))
            told.append(f"{file}:{line}: {what}: {quoted}\n    {reason.text if reason else NO_REASON}")
    stale: List[str] = []
    for key, each in by_line.items():
        if key not in used:
            path = root / each.file
            there = path.exists() and each.quoted in (line.strip() for line in path.read_text().splitlines())
            stale.append(f"stale reason, {'the tests reach' if there else 'there is no such line'}: {each.file}: {each.quoted}")
    return told, stale


def tally(told: Iterable[str]) -> str:
    without = [each.endswith(NO_REASON) for each in told]
    return f"{len(without)} lines, {sum(without)} of them without a reason"
