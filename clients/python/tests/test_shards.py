"""A suite is cut so that its parts together run each test once."""

import json
from pathlib import Path

import pytest

from platen_bench import merge_durations
from platen_bench.plugin.shards import parse_shard, part_file, part_of, read_durations, write_durations

TESTS = [f"test_a.py::test_{number}" for number in range(23)]


@pytest.mark.parametrize("parts", [1, 2, 3, 7, 40])
def test_each_test_runs_in_one_part(parts: int) -> None:
    durations = {test: number * 1.5 for number, test in enumerate(TESTS) if number % 3}
    whole = [test for part in range(1, parts + 1) for test in part_of(TESTS, durations, part, parts)]
    assert sorted(whole) == sorted(TESTS)


def test_the_order_of_collection_changes_nothing() -> None:
    assert sorted(part_of(TESTS, {}, 1, 3)) == sorted(part_of(TESTS[::-1], {}, 1, 3))


def test_parts_take_as_long_as_each_other() -> None:
    durations = {test: float(number) for number, test in enumerate(TESTS)}
    loads = [sum(durations[test] for test in part_of(TESTS, durations, part, 3)) for part in (1, 2, 3)]
    assert max(loads) - min(loads) <= 2
    counts = [len(part_of(TESTS, {}, part, 3)) for part in (1, 2, 3)]
    assert max(counts) - min(counts) <= 1
    zero = [len(part_of(TESTS, dict.fromkeys(TESTS, 0.0), part, 3)) for part in (1, 2, 3)]
    assert max(zero) - min(zero) <= 1


@pytest.mark.parametrize("text", ["", "2", "0/2", "3/2", "1/0", "a/b", "1/2/3", "-1/2"])
def test_what_is_no_part_is_refused(text: str) -> None:
    with pytest.raises(ValueError, match="is no part such as 2/4"):
        parse_shard(text)


def test_durations_are_kept_and_merged(tmp_path: Path, capsys: pytest.CaptureFixture[str]) -> None:
    file = tmp_path / "durations.json"
    assert read_durations(file) == {}
    write_durations(file, {"a": 1, "b": 2})
    write_durations(part_file(file, 1, 2), {"a": 1.5})
    write_durations(part_file(file, 2, 2), {"c": 3.25})
    assert merge_durations.main([str(file)]) == 0
    assert read_durations(file) == {"a": 1.5, "b": 2, "c": 3.25}
    assert [each.name for each in tmp_path.iterdir()] == ["durations.json"]
    file.write_text(json.dumps(["x"]))
    assert merge_durations.main([str(file)]) == 1
    assert "durations.json: no durations by test id" in capsys.readouterr().err
    assert merge_durations.main([]) == 2
