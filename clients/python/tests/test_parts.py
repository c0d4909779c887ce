"""Parts of a suite that a scheduler runs, and what becomes of them together."""

import json
import os
import subprocess
import sys
import xml.etree.ElementTree as ElementTree
from pathlib import Path
from typing import List

import pytest

from platen_bench.merge_parts import main as merge_main
from platen_bench.run_part import part_folder

PACKAGE = Path(__file__).resolve().parent.parent

SUITE = """
import pytest
from pathlib import Path

@pytest.mark.parametrize("number", range(7))
def test_one(number):
    with open(Path(__file__).parent / "starts.txt", "a") as starts:
        starts.write(f"{number}\\n")
    assert number != 5, "five is missing"
"""


@pytest.fixture
def run(tmp_path: Path) -> Path:
    folder = tmp_path / "run"
    folder.mkdir()
    (tmp_path / "test_seven.py").write_text(SUITE)
    return folder


def run_part(run: Path, part: str, *options: str, **variables: str) -> "subprocess.CompletedProcess[str]":
    environment = {name: value for name, value in os.environ.items() if not name.startswith("PYTEST_")}
    environment.update(PYTHONPATH=str(PACKAGE), **variables)
    words = [sys.executable, "-m", "platen_bench.run_part", str(run), part, str(run.parent / "test_seven.py")]
    return subprocess.run([*words, *options], env=environment, cwd=run.parent, capture_output=True, text=True)


def starts(run: Path) -> List[str]:
    return sorted((run.parent / "starts.txt").read_text().split())


def test_parts_together_have_every_result_once(run: Path, capsys: pytest.CaptureFixture[str]) -> None:
    ended = [run_part(run, f"{number}/3", PLATEN_MACHINE=f"bench{number}").returncode for number in (1, 2, 3)]
    assert sorted(ended) == [0, 0, 1]
    assert merge_main([str(run), "3"]) == 1
    said = capsys.readouterr().out
    assert said.startswith("6 passed, 1 failed, 0 skipped; 3 of 3 parts\n")
    assert "s on bench1, bench2, bench3: " in said and "test_seven.test_one[5] (" in said
    assert (run / "summary.txt").read_text() == said
    root = ElementTree.parse(run / "junit.xml").getroot()
    assert sorted(str(case.get("name")) for case in root.iter("testcase")) == [f"test_one[{n}]" for n in range(7)]
    assert [suite.get("hostname") for suite in root] == ["bench1", "bench2", "bench3"]
    failure = root.find(".//failure")
    assert failure is not None and "five is missing" in str(failure.text)
    assert len(json.loads((run / "durations.json").read_text())) == 7
    assert starts(run) == [str(number) for number in range(7)]


def test_a_part_that_was_run_is_not_run_again(run: Path) -> None:
    assert run_part(run, "1/1").returncode == 1
    again = run_part(run, "1/1")
    assert again.returncode == 1 and "has been run already" in again.stdout
    assert starts(run) == [str(number) for number in range(7)]


def test_of_two_tries_at_once_one_counts(run: Path) -> None:
    (run.parent / "test_seven.py").write_text(
        SUITE + "\ndef test_slow():\n    import time\n    time.sleep(2)\n"
    )
    words = [sys.executable, "-m", "platen_bench.run_part", str(run), "1/1", str(run.parent / "test_seven.py")]
    environment = {**os.environ, "PYTHONPATH": str(PACKAGE)}
    tries = [subprocess.Popen(words, env=environment, cwd=run, stdout=subprocess.PIPE, text=True) for _ in range(2)]
    said = [each.communicate()[0] for each in tries]
    assert [each.returncode for each in tries] == [1, 1]
    assert sum("nothing of this try counts" in text for text in said) == 1
    assert merge_main([str(run), "1"]) == 1
    names = [case.get("name") for case in ElementTree.parse(run / "junit.xml").getroot().iter("testcase")]
    assert len(names) == len(set(names)) == 8


def test_a_try_that_pytest_did_not_end_counts_for_nothing(run: Path) -> None:
    usage = run_part(run, "1/1", "--no-such-option")
    assert usage.returncode == 4 and "nothing of this try counts" in usage.stderr
    killed = run_part(run, "1/1", "-p", "no_such_plugin")
    assert killed.returncode >= 2 and not part_folder(run, 1, 1).exists()
    assert run_part(run, "1/1").returncode == 1


def test_a_part_without_tests_is_no_failure(run: Path, capsys: pytest.CaptureFixture[str]) -> None:
    for number in range(1, 10):
        assert run_part(run, f"{number}/9", "-k", "not 5").returncode == 0
    assert merge_main([str(run), "9"]) == 0
    assert capsys.readouterr().out.startswith("6 passed, 0 failed, 0 skipped; 9 of 9 parts\n")


def test_what_is_missing_or_doubled_is_a_fault_by_name(run: Path, capsys: pytest.CaptureFixture[str]) -> None:
    run_part(run, "1/2")
    assert merge_main([str(run), "2"]) == 2
    said = capsys.readouterr().out
    assert "1 of 2 parts\n" in said and "fault: part 2 of 2 is missing: " in said
    part_folder(run, 2, 2).symlink_to(part_folder(run, 1, 2).resolve())
    assert merge_main([str(run), "2"]) == 2
    assert "was run by parts 1 and 2\n" in capsys.readouterr().out


@pytest.mark.parametrize(
    "words, said",
    [(["0/2"], "is no part such as"), (["x"], "is no part such as")],
)
def test_words_that_name_no_part_are_refused(run: Path, words: List[str], said: str) -> None:
    refused = run_part(run, *words)
    assert refused.returncode == 2 and said in refused.stderr


def test_a_run_that_is_no_folder_is_refused(tmp_path: Path, capsys: pytest.CaptureFixture[str]) -> None:
    refused = run_part(tmp_path / "nothing", "1/1")
    assert refused.returncode == 2 and "nothing: no such folder" in refused.stderr
    assert merge_main([str(tmp_path / "nothing"), "1"]) == 2
    assert "nothing: no such folder" in capsys.readouterr().err
    assert merge_main([str(tmp_path), "0"]) == 2 and merge_main([]) == 2
