"""A suite cut into parts that machines run side by side."""

from __future__ import annotations

import json
import re
from pathlib import Path
from typing import Dict, List, Sequence, Tuple


def parse_shard(text: str) -> Tuple[int, int]:
    """ "2/4" is the second of four parts. Raises ValueError for anything else."""
    match = re.fullmatch(r"(\d+)/(\d+)", text)
    if not match or not 1 <= int(match[1]) <= int(match[2]):
        raise ValueError(f'"{text}" is no part such as 2/4, the second of four')
    return int(match[1]), int(match[2])


def part_of(tests: Sequence[str], durations: Dict[str, float], number: int, parts: int) -> List[str]:
    """The ids of those tests that part `number` (from 1) runs, in their order.

    Depends on nothing but the ids and the durations (seconds), so that machines which agree on both run each test
    once: the longest test first, each goes to the part that has least to do. One without a duration counts as an
    average one.
    """
    known = [durations[test] for test in tests if test in durations]
    average = sum(known) / len(known) if known else 1.0
    longest_first = sorted(set(tests), key=lambda test: (-durations.get(test, average), test))
    loads = [0.0] * parts
    owner: Dict[str, int] = {}
    for test in longest_first:
        # Equal loads are told apart by the number of tests, so that tests of no length spread too.
        lightest = min(range(parts), key=lambda part: (loads[part], list(owner.values()).count(part), part))
        owner[test] = lightest
        loads[lightest] += durations.get(test, average)
    return [test for test in tests if owner[test] == number - 1]


def read_durations(file: Path) -> Dict[str, float]:
    """The durations in a file, seconds by test id; none if there is no such file.

    Raises ValueError, which names the file, for one that is something else.
    """
    try:
        data = json.loads(file.read_text(encoding="utf-8"))
    except FileNotFoundError:
        return {}
    except ValueError as error:
        raise ValueError(f"{file}: {error}") from error
    if not isinstance(data, dict) or not all(isinstance(value, (int, float)) for value in data.values()):
        raise ValueError(f"{file}: no durations by test id")
    return {str(test): float(seconds) for test, seconds in data.items()}


def write_durations(file: Path, durations: Dict[str, float]) -> None:
    """Writes them, sorted, in one step."""
    file.parent.mkdir(parents=True, exist_ok=True)
    making = file.with_name(file.name + ".new")
    rounded = {test: round(seconds, 3) for test, seconds in sorted(durations.items())}
    making.write_text(json.dumps(rounded, indent=1) + "\n", encoding="utf-8")
    making.replace(file)


def part_file(file: Path, number: int, parts: int) -> Path:
    """Where a part keeps its durations: the file itself must stay the same for all parts of one run."""
    return file.with_name(f"{file.stem}.{number}-of-{parts}{file.suffix}")
