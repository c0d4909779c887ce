"""The page of figures says what was measured, and no more."""

from __future__ import annotations

import json
import subprocess
import sys
from pathlib import Path
from typing import List
from xml.etree import ElementTree

import pytest

HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE))

import page  # noqa: E402
import prove  # noqa: E402
import soak  # noqa: E402
from goals import GOALS, Goal, Reader, Run, at_least, at_most, passes, within  # noqa: E402


def goal(script: str, short: str = "") -> Goal:
    return Goal("way", "area", "few <b>", ("sh", "-c", script), at_most(r"took (\d+)", 10, " ms"), ("sh", "-c", short) if short else ())


def proven(monkeypatch: pytest.MonkeyPatch, folder: Path, one: Goal, short: bool = False) -> page.Results:
    monkeypatch.setattr(prove, "GOALS", (one,))
    results: page.Results = {}
    prove.prove([one], short, folder, results)
    return results


def test_a_goal_that_was_never_run_says_so() -> None:
    said = page.as_text(GOALS, {})
    assert " ".join(said.split()).count("not run") == len(GOALS)
    assert f"{len(GOALS)} goals: 0 held, 0 missed, {len(GOALS)} open" in said


def test_a_goal_is_held_or_missed_by_its_value(monkeypatch: pytest.MonkeyPatch, tmp_path: Path) -> None:
    assert page.state(proven(monkeypatch, tmp_path, goal("echo took 9; echo took 10"))["way"]) == "held"
    results = proven(monkeypatch, tmp_path, goal("echo took 9; echo took 11; echo took 3"))
    assert page.state(results["way"]) == "missed" and results["way"]["value"] == "11 ms"
    assert "missed  area: few <b>" in (tmp_path / "page.txt").read_text()
    assert "few &lt;b&gt;" in (tmp_path / "index.html").read_text()
    assert (tmp_path / "way.log").read_text() == "took 9\ntook 11\ntook 3\n"


def test_a_run_without_a_figure_holds_nothing(monkeypatch: pytest.MonkeyPatch, tmp_path: Path) -> None:
    results = proven(monkeypatch, tmp_path, goal("echo nothing; exit 3"))
    assert page.state(results["way"]) == "open"
    assert "no figure: the command ended with 3" in (tmp_path / "page.txt").read_text()


def test_a_short_run_proves_nothing(monkeypatch: pytest.MonkeyPatch, tmp_path: Path) -> None:
    results = proven(monkeypatch, tmp_path, goal("echo took 99", "echo took 1"), short=True)
    assert page.state(results["way"]) == "open"
    assert "1 ms (only a short run)" in (tmp_path / "page.txt").read_text()


def test_earlier_results_stay_unless_their_goal_is_gone(tmp_path: Path) -> None:
    (tmp_path / "results.json").write_text(json.dumps({GOALS[0].name: {"value": "1"}, "gone": {"value": "1"}}))
    assert list(prove.read(tmp_path)) == [GOALS[0].name]


def test_a_goal_that_nothing_measures_is_never_held(monkeypatch: pytest.MonkeyPatch, tmp_path: Path) -> None:
    results = proven(monkeypatch, tmp_path, Goal("way", "area", "goal", (), at_most("x", 1, "")))
    assert results == {}
    assert "nothing measures it yet: not run" in page.as_text([Goal("way", "area", "goal", (), at_most("x", 1, ""))], results)


def test_goals_of_one_command_share_its_run(monkeypatch: pytest.MonkeyPatch, tmp_path: Path) -> None:
    one = goal(f"echo run >>{tmp_path}/count; echo took 1")
    other = Goal("other", "area", "goal", one.command, one.read)
    prove.prove([one, other], False, tmp_path, {})
    assert (tmp_path / "count").read_text() == "run\n"


def run(*words: str) -> "subprocess.CompletedProcess[str]":
    return subprocess.run([str(HERE / "prove.py"), *words], capture_output=True, text=True)


def test_the_page_is_written_without_a_run(tmp_path: Path) -> None:
    done = run("--page", "--folder", str(tmp_path))
    assert done.returncode == 0
    assert all(each.goal in done.stdout for each in GOALS)
    assert (tmp_path / "index.html").read_text().count("<tr") == len(GOALS) + 1


def test_an_unknown_goal_is_named(tmp_path: Path) -> None:
    done = run("walks", "--folder", str(tmp_path))
    assert done.returncode == 2 and "there is no goal walks" in done.stderr and "walk," in done.stderr


def names() -> List[str]:
    return [each.name for each in GOALS]


def test_each_goal_has_a_name_of_its_own() -> None:
    assert len(set(names())) == len(names())


@pytest.mark.parametrize("reader, output, status, value, good", [
    (at_least(r"(\d+) %", 95), "90 %, in all 96 %", 0, "96%", True),
    (at_least(r"(\d+) %", 95), "94 %", 0, "94%", False),
    (passes(r"\d+ steps"), "5 steps", 0, "5 steps", True),
    (passes(r"\d+ steps"), "5 steps", 1, "5 steps", False),
    (within(40), "", 0, "1 min", True),
    (within(0.5), "", 0, "1 min", False),
    (within(40), "", 1, "1 min, failed", False),
])
def test_values_are_read(reader: Reader, output: str, status: int, value: str, good: bool) -> None:
    read = reader(Run(output, status, 60))
    assert read is not None and (read.text, read.good) == (value, good)


@pytest.mark.parametrize("name, output, value", [
    ("mutate-application", "mpu: 388 of 400 mutants killed (97.0 %), 5 lived, 3 unreached", "97%"),
    ("walk", "1000 steps from seed 1 in 12 s (12.0 ms each), 0 differences", "1000 steps from seed 1 in 12 s (12.0 ms each), 0 differences"),
    ("frames", '{"figure": "720x576 MPEG-2, frames lost in 20 s, beside a busy core", "value": 2.0, "unit": "frames"}', "2 frames"),
    ("latency", '{"figure": "PPS change to composed frame, 99th percentile, beside a busy core", "value": 9.5, "unit": "ms"}', "9.5 ms"),
    ("motion", '{"figure": "list that runs on, frames later than the screen\'s next", "value": 2.0, "unit": "frames"}', "2 frames"),
    ("drawing", '{"figure": "page that fades over, a frame", "value": 1.25, "unit": "ms"}', "1.25 ms"),
    ("coverage-services", "platform: 97.0 % of 9 lines, 90.1 % of 9 branches\nservices: 95.2 % of 5000 lines, 87.9 % of 900 branches", "95.2%, 87.9%"),
    ("annotations", "annotations: 40 locks, 120 fields guarded, no warning", "annotations: 40 locks, 120 fields guarded, no warning"),
    ("schedules", "schedules: 100 orders of 8 stories, threads gave way 9 times, 0 failed", "schedules: 100 orders of 8 stories, threads gave way 9 times, 0 failed"),
    ("coverage-page", "page scripts: 91.2 % of 753 lines run", "91.2%"),
    ("anomaly-disk", "anomaly: 6 runs in 84 s, 0 with a fault", "anomaly: 6 runs in 84 s, 0 with a fault"),
    ("fuzz", "fuzzing: 21 targets, 5 s each, 0 with a finding", "fuzzing: 21 targets, 5 s each, 0 with a finding"),
])
def test_what_the_commands_print_is_understood(name: str, output: str, value: str) -> None:
    read = next(each for each in GOALS if each.name == name).read(Run(output, 0, 1))
    assert read is not None and read.text == value

def samples(memory: List[float]) -> soak.Samples:
    return {"app": [(float(at), soak.Holding(each, 40, 7, 0)) for at, each in enumerate(memory)]}


def test_what_grows_all_week_is_found_and_what_comes_and_goes_is_not() -> None:
    assert soak.judge(samples([5.0, *[16.0] * 7])) == []
    assert soak.judge(samples([16.0, 17.5, 16.0, 17.5, 16.0, 17.5, 16.0, 17.5])) == []
    assert soak.judge(samples([16.0 + at for at in range(8)])) == ["soak: memory of app grew by 4.0 MB (at most 2)"]


def test_the_log_may_come_and_go_but_has_a_limit() -> None:
    def log(*disk: float) -> soak.Samples:
        return {"log": [(float(at), soak.Holding(disk=each)) for at, each in enumerate(disk)]}

    assert soak.judge(log(8, 16, 8, 9, 10, 11, 15, 16)) == []
    assert soak.judge(log(8, 16, 8, 16, 8, 17, 8, 16)) == ["soak: the log took 17.0 MB (at most 16.1)"]


def test_what_lies_on_the_disk_is_the_log_or_something_else(tmp_path: Path) -> None:
    for name, size in (("slog", 1), ("slog.old", 2), ("discdb.sqlite", 4)):
        (tmp_path / name).write_bytes(b"x" * (size << 20))
    rest, log = soak.on_disk(tmp_path)
    assert (round(rest.disk), round(log.disk)) == (4, 3)


def test_the_picture_of_a_week_has_a_line_for_each_process() -> None:
    drawn = soak.picture({**samples([1, 2, 3]), "bench": [(0.0, soak.Holding(4, 70, 3, 0)), (168.0, soak.Holding(4, 70, 3, 0))]})
    assert drawn.count("<polyline") == 6 and ">bench</text>" in drawn
    ElementTree.fromstring(drawn)
