"""What is said of reached lines is what was reached."""

from __future__ import annotations

import subprocess
import sys
from pathlib import Path
from typing import Dict, Tuple

import pytest

HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE))

from reached import Count, counts, report  # noqa: E402


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
