"""What several runs of the benchmarks say: the median of each figure with its confidence interval, and two sets of runs as ratios."""

from __future__ import annotations

import json
import random
import statistics
from dataclasses import dataclass, field
from typing import Any, Dict, List, Optional, Sequence, Tuple

DRAWS = 2000
CONFIDENCE = 0.95
# A figure whose interval is narrower than this share of its median needs no further run; fewer runs than this say nothing.
NARROW = 0.1
FEWEST = 3
# A change below this is one that the same program shows from day to day.
TOLERANCE = 0.05

Interval = Tuple[float, float]


def _between(values: List[float]) -> Interval:
    values.sort()
    tail = (1 - CONFIDENCE) / 2
    return values[int(tail * len(values))], values[min(len(values) - 1, int((1 - tail) * len(values)))]


def interval(values: Sequence[float]) -> Interval:
    """Where the median lies with 95 % confidence: medians of as many values drawn from these, again and again. The same each time."""
    draw = random.Random(1)
    return _between([statistics.median(draw.choices(values, k=len(values))) for _ in range(DRAWS)])


def ratio_interval(new: Sequence[float], old: Sequence[float]) -> Interval:
    """The same of the ratio of two medians, the old one not 0."""
    draw = random.Random(1)
    ratios = []
    for _ in range(DRAWS):
        below = statistics.median(draw.choices(old, k=len(old)))
        if below:
            ratios.append(statistics.median(draw.choices(new, k=len(new))) / below)
    return _between(ratios) if ratios else (float("inf"), float("inf"))


def narrow(values: Sequence[float], share: float = NARROW) -> bool:
    if len(values) < FEWEST:
        return False
    low, high = interval(values)
    return high - low <= share * abs(statistics.median(values)) or high == low


@dataclass
class Series:
    """One figure of several runs; `row` is its last line as the benchmark printed it."""

    row: Dict[str, Any]
    values: List[float] = field(default_factory=list)
    held: List[bool] = field(default_factory=list)
    noisy: int = 0  # runs that did not count because others used the processor

    def quiet(self) -> bool:
        """Whether it needs a quiet machine: times of the clock do; memory, and what a peer did beside it, do not."""
        return self.row["unit"] in ("ms", "frames") and "ratioLimit" not in self.row

    def add(self, row: Dict[str, Any], noise: bool) -> None:
        self.row = row
        if noise and self.quiet():
            self.noisy += 1
        else:
            self.values.append(row["value"])
            self.held.append(row.get("holds", True))

    def line(self) -> Dict[str, Any]:
        if not self.values:
            return {"figure": self.row["figure"], "unit": self.row["unit"], "runs": 0, "noisy": self.noisy, "holds": False,
                    "note": "could not be measured: it needs a quiet machine, and this one never was"}
        low, high = interval(self.values)
        line = {**self.row, "value": round(statistics.median(self.values), 4), "runs": len(self.values),
                "interval": [round(low, 4), round(high, 4)], "narrow": narrow(self.values), "quiet": self.quiet(),
                "noisy": self.noisy}
        if not line["narrow"]:
            line["note"] = f"the interval stayed wide in {len(self.values)} runs"
        # A limit that moves with a peer: what most runs said.
        line["holds"] = line["value"] <= self.row["limit"] if "limit" in self.row else 2 * sum(self.held) > len(self.held)
        return line


def save(path: str, series: Dict[str, Series], about: Dict[str, Any]) -> None:
    rows = {name: {"unit": each.row["unit"], "quiet": each.quiet(), "values": each.values} for name, each in series.items()}
    with open(path, "w", encoding="utf-8") as stream:
        json.dump({"about": about, "figures": rows}, stream, indent=1, ensure_ascii=False)
        stream.write("\n")


def load(path: str) -> Dict[str, Any]:
    """What `save` wrote. Raises ValueError, which names the file, for anything else."""
    try:
        with open(path, encoding="utf-8") as stream:
            saved = json.load(stream)
        for row in saved["figures"].values():
            if not all(isinstance(value, (int, float)) for value in row["values"]):
                raise TypeError
    except (OSError, ValueError, LookupError, TypeError, AttributeError) as error:
        raise ValueError(f"{path} holds no saved figures: {error}") from error
    return saved  # type: ignore[no-any-return]


def compare(name: str, new: Sequence[float], old: Sequence[float], unit: str) -> Dict[str, Any]:
    """One line: both medians, their ratio with its interval and what that says. Smaller is better in every figure."""
    line: Dict[str, Any] = {"figure": name, "unit": unit, "runs": [len(old), len(new)]}
    if not new or not old:
        return {**line, "says": "not measured" if not new else "not in the saved run"}
    line.update(old=round(statistics.median(old), 4), new=round(statistics.median(new), 4))
    if not line["old"]:
        return {**line, "says": "worse" if min(new) > max(old) else "same"}
    low, high = ratio_interval(new, old)
    ratio = line["new"] / line["old"]
    line.update(ratio=round(ratio, 3), interval=[round(low, 3), round(high, 3)])
    if min(len(new), len(old)) < FEWEST:
        says = "too few runs"
    elif low > 1 and ratio > 1 + TOLERANCE:
        says = "worse"
    elif high < 1 and ratio < 1 - TOLERANCE:
        says = "better"
    elif high - low > 4 * NARROW:
        says = "unclear"
    else:
        says = "same"
    return {**line, "says": says}


def text(line: Dict[str, Any]) -> str:
    """A line of `compare` for a reader."""
    said = f"{line['says']:13} {line['figure']}"
    if "old" in line:
        said += f": {line['old']:g} -> {line['new']:g} {line['unit']}"
    if "ratio" in line:
        said += f", {line['ratio']:.3f} ({line['interval'][0]:.3f} to {line['interval'][1]:.3f})"
    return said


def parse(text_of_benchmark: str) -> List[Dict[str, Any]]:
    """Its lines that are figures."""
    rows = []
    for line in text_of_benchmark.splitlines():
        try:
            row: Optional[Any] = json.loads(line)
        except ValueError:
            continue
        if isinstance(row, dict) and "figure" in row and "value" in row:
            rows.append(row)
    return rows
