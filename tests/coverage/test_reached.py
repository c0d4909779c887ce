"""What is said of reached lines is what was reached."""

from __future__ import annotations

import subprocess
import sys
from pathlib import Path
from typing import Dict, Tuple

import pytest

HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE))

from missing import NO_REASON, Reason, explained, reached, reasons, tally  # noqa: E402
from reached import Count, counts, report  # noqa: E402

# As the compiler's tool shows a file with a template of two types, of which one is never asked.
SHOWN = """/home/a/mpu/One.h:
    1|       |#pragma once
    2|      3|template <int N> bool sure(int a) {
    3|  1.50k|  return a > N && a < 10;
  ------------------
  |  Branch (3:10): [True: 1, False: 1.2k]
  |  Branch (3:19): [True: 1, False: 0]
  ------------------
  |  Branch (3:10): [True: 0, False: 0]
  |  Branch (3:19): [True: 0, False: 0]
  ------------------
    4|      0|}
  ------------------
  | _Z4sureILi1EEii:
  |    2|      3|template <int N> bool sure(int a) {
  |    4|      3|}
  ------------------
    5|      2|  while (true) {
  ------------------
  |  Branch (5:10): [Folded - Ignored]
  ------------------
    6|      0|    if (never) {
  ------------------
  |  Branch (6:9): [True: 0, False: 0]
  ------------------

/home/a/services/Two.cpp:
    1|      0|  return lost;
"""


def told(name: str, lines: Tuple[int, int], branches: Tuple[int, int]) -> Dict[str, object]:
    return {"filename": name, "summary": {"lines": {"count": lines[0], "covered": lines[1]}, "branches": {"count": branches[0], "covered": branches[1]}}}


def test_files_outside_the_rooms_do_not_count() -> None:
    export = {"data": [{"files": [told("/home/a/base/One.cpp", (10, 9), (4, 3)), told("/home/a/tests/base/OneTest.cpp", (10, 1), (0, 0)),
                                  told("/usr/include/base/x.h", (10, 1), (0, 0))]}]}
    assert counts(export, Path("/home/a")) == {"base/One.cpp": Count(10, 9, 4, 3)}


@pytest.mark.parametrize("lines, branches, good", [(95, 88, True), (94, 88, False), (95, 87, False)])
def test_a_room_is_good_when_lines_and_branches_are(lines: int, branches: int, good: bool) -> None:
    found = {"platform/One.cpp": Count(50, 50, 50, 50), "platform/Two.h": Count(50, lines - 50, 50, branches - 50), "services/Three.cpp": Count(9, 0, 9, 0)}
    text, reached = report(found, ["platform"])
    assert text[-1] == f"platform: {lines:.1f} % of 100 lines, {branches:.1f} % of 100 branches"
    assert reached == good and not any("services" in each for each in text)


def test_an_unknown_room_is_named() -> None:
    done = subprocess.run([str(HERE / "reached.py"), "platforms"], capture_output=True, text=True)
    assert done.returncode == 2 and "there is no room platforms" in done.stderr and "platform," in done.stderr


def test_a_room_of_which_nothing_was_measured_is_not_good() -> None:
    assert not report({}, ["platform"])[1]


def test_what_is_missing_is_told_by_line_and_condition() -> None:
    found = reached(SHOWN, Path("/home/a"))
    assert {name: each.missing() for name, each in found.items()} == {
        "mpu/One.h": {3: "at 19 never false", 6: "never reached"}, "services/Two.cpp": {1: "never reached"}}


def sources(folder: Path) -> Path:
    (folder / "mpu").mkdir()
    (folder / "services").mkdir()
    (folder / "mpu/One.h").write_text("\n\n  return a > N && a < 10;\n}\n\n  if (never) {\n")
    (folder / "services/Two.cpp").write_text("  return lost;\n")
    return folder


def test_a_missing_line_stands_beside_its_reason(tmp_path: Path) -> None:
    told, stale = explained(reached(SHOWN, Path("/home/a")), [Reason("mpu/One.h", "if (never) {", "It is never.")], sources(tmp_path), ["mpu", "services"])
    assert told == [f"mpu/One.h:3: at 19 never false: return a > N && a < 10;\n    {NO_REASON}",
                    "mpu/One.h:6: never reached: if (never) {\n    It is never.",
                    f"services/Two.cpp:1: never reached: return lost;\n    {NO_REASON}"]
    assert not stale and tally(told) == "3 lines, 2 of them without a reason"


def test_a_reason_for_what_is_reached_or_gone_is_stale(tmp_path: Path) -> None:
    kept = [Reason("mpu/One.h", "}", "Reached."), Reason("mpu/One.h", "gone();", "Gone."), Reason("mpu/None.h", "x", "Gone."),
            Reason("services/Two.cpp", "gone();", "In a room that is not measured.")]
    assert explained(reached(SHOWN, Path("/home/a")), kept, sources(tmp_path), ["mpu"])[1] == [
        "stale reason, the tests reach: mpu/One.h: }", "stale reason, there is no such line: mpu/One.h: gone();",
        "stale reason, there is no such line: mpu/None.h: x"]


def test_lines_share_a_reason() -> None:
    kept = "# Why.\nmpu/One.cpp: if (a ? b : c) {\nmpu/Two.cpp: return;\n    Never.\n\nmpu/Two.cpp: x\n    Nor this.\n"
    assert reasons(kept) == [Reason("mpu/One.cpp", "if (a ? b : c) {", "Never."), Reason("mpu/Two.cpp", "return;", "Never."),
                             Reason("mpu/Two.cpp", "x", "Nor this.")]


@pytest.mark.parametrize("kept, told", [("mpu/One.cpp\n    Never.", "line 1 of the reasons is not FILE: QUOTED LINE: mpu/One.cpp"),
                                        ("mpu/One.cpp: x", "there is no reason below: mpu/One.cpp: x"),
                                        ("    Never.", "line 1 of the reasons stands below no quoted line: Never.")])
def test_what_is_wrong_with_the_reasons_is_told(kept: str, told: str) -> None:
    with pytest.raises(ValueError) as wrong:
        reasons(kept)
    assert str(wrong.value) == told


def test_every_reason_quotes_a_line_that_is_there() -> None:
    for each in reasons((HERE / "unreached.txt").read_text()):
        assert each.quoted in [line.strip() for line in (HERE.parents[1] / each.file).read_text().splitlines()], each
