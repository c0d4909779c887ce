"""What several runs of the benchmarks are made to say."""

from __future__ import annotations

import json
import subprocess
import sys
from pathlib import Path
from typing import Any, Dict, List

import pytest

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "benchmarks"))

from figures import Series, compare, interval, load, narrow, parse, save, text  # noqa: E402

STEADY = [10.0, 10.1, 9.9, 10.05, 9.95]


def series(values: List[float], **row: Any) -> Series:
    each = Series({"figure": "way", "unit": "ms", **row})
    for value in values:
        each.add({**each.row, "value": value, "holds": True}, False)
    return each


def says(new: List[float], old: List[float]) -> str:
    return str(compare("way", new, old, "ms")["says"])


def test_a_figure_that_doubles_is_worse_and_one_that_halves_is_better() -> None:
    assert says([2 * value for value in STEADY], STEADY) == "worse"
    assert says([value / 2 for value in STEADY], STEADY) == "better"


def test_the_same_program_is_the_same() -> None:
    assert says(list(reversed(STEADY)), STEADY) == "same"
    assert says([value * 1.03 for value in STEADY], STEADY) == "same", "less than the tolerance"


def test_what_differs_from_run_to_run_is_neither_better_nor_worse() -> None:
    assert says([5, 9, 14, 21, 8], [6, 8, 17, 19, 9]) == "unclear"


def test_few_runs_say_nothing() -> None:
    assert says([20.0, 20.0], STEADY) == "too few runs"


def test_a_figure_that_was_nothing_is_worse_only_when_it_is_something_in_every_run() -> None:
    assert says([0, 0, 0], [0, 0, 0]) == "same"
    assert says([0, 1, 0], [0, 0, 0]) == "same"
    assert says([3, 2, 1], [0, 0, 0]) == "worse"


def test_a_figure_without_the_other_run_is_named() -> None:
    assert says(STEADY, []) == "not in the saved run"
    assert says([], STEADY) == "not measured"


def test_the_interval_holds_the_median_and_narrows_with_the_values() -> None:
    low, high = interval([8, 9, 10, 11, 12])
    assert low <= 10 <= high and low < high
    assert narrow(STEADY)
    assert not narrow([8, 9, 10, 11, 12])
    assert not narrow(STEADY[:2]), "two runs may agree by chance"
    assert narrow([0, 0, 0])


def test_a_run_beside_others_counts_only_where_no_quiet_is_needed() -> None:
    clock, memory = series([]), Series({"figure": "memory", "unit": "MB"})
    clock.add({"figure": "way", "unit": "ms", "value": 50, "holds": True}, True)
    memory.add({"figure": "memory", "unit": "MB", "value": 70, "holds": True}, True)
    assert clock.values == [] and clock.noisy == 1
    assert memory.values == [70]
    line = clock.line()
    assert line["holds"] is False and "never was" in line["note"]


def test_a_wide_interval_is_told() -> None:
    line = series([5, 9, 14, 21, 8], limit=10).line()
    assert line["narrow"] is False and "stayed wide in 5 runs" in line["note"]
    assert line["value"] == 9 and line["holds"] is True
    assert series([11.0, 11.0, 11.0], limit=10).line()["holds"] is False


def test_a_limit_that_moves_with_a_peer_holds_where_most_runs_held() -> None:
    each = Series({"figure": "scan", "unit": "ms", "ratioLimit": 1.5})
    for held in (True, True, False):
        each.add({**each.row, "value": 10, "holds": held}, True)
    assert each.line()["holds"] is True
    each.add({**each.row, "value": 10, "holds": False}, True)
    assert each.line()["holds"] is False


def test_what_is_saved_is_loaded(tmp_path: Path) -> None:
    file = tmp_path / "figures.json"
    save(str(file), {"way": series(STEADY)}, {"commit": "abc"})
    assert load(str(file))["figures"]["way"]["values"] == STEADY


@pytest.mark.parametrize("content", ["", "[]", "{}", '{"figures": {"way": {"values": ["x"]}}}'])
def test_another_file_is_refused_by_name(tmp_path: Path, content: str) -> None:
    file = tmp_path / "other"
    file.write_text(content)
    with pytest.raises(ValueError, match="other holds no saved figures"):
        load(str(file))
    done = subprocess.run([str(ROOT / "benchmarks/run"), "--against", str(file)], capture_output=True, text=True)
    assert done.returncode == 2 and str(file) in done.stderr


def test_an_unknown_part_is_refused_with_the_known_ones() -> None:
    done = subprocess.run([str(ROOT / "benchmarks/run"), "drawings"], capture_output=True, text=True)
    assert done.returncode == 2 and "there is no part drawings" in done.stderr and "video-busy" in done.stderr


def test_only_lines_of_figures_are_read() -> None:
    row: Dict[str, Any] = {"figure": "way", "value": 1, "unit": "ms"}
    assert parse(f"[1/2] Building\n{json.dumps(row)}\n3\n{{}}\n") == [row]


def test_a_comparison_can_be_read() -> None:
    said = text(compare("way", [20.0, 20.0, 20.0], [10.0, 10.0, 10.0], "ms"))
    assert said.startswith("worse ") and said.endswith("way: 10 -> 20 ms, 2.000 (2.000 to 2.000)")
