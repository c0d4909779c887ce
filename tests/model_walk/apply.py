"""A step of a walk, given to the model: the same words that the bench gets."""

from __future__ import annotations

import re
from typing import TYPE_CHECKING, Any, Dict, List, Tuple

if TYPE_CHECKING:
    from unit import Unit

_CLICK = re.compile(r"\[Disc(Osd)?View::OnClick\]--nWndId=(\d+),nCtrlId=(\d+),nBtState=(\d)")
_OPTION = re.compile(r"--(\w+)=(\"[^\"]*\"|\S*)")
_PAUSE = re.compile(r"\*{13} itv=(-?\d+) \*{13}")
_HELD_MS = 800
_OBJECT = "zelmar/disc/"


class Implausible(Exception):
    """The real unit took a finger's touch for one of something that cannot be touched there."""


def apply(unit: "Unit", words: List[str], answer: Dict[str, Any]) -> None:
    """Does with the model what was done with the real unit.

    Of its answer only this is looked at: how much real time a pause found between itself and the one before, whether the
    catalogue's worker was late for a spoken name, and which item lay under a finger.
    """
    verb = words[0]
    if verb == "pps":
        _report(unit, words[2], words[3])
    elif verb == "app":
        for line in answer["log"]:
            found = _PAUSE.search(line)
            if found:
                unit.clock_ms = unit.main.last_pause + int(found.group(1))
        unit.launcher_says(words[1])
    elif verb == "appdata":
        options = {name: value.strip('"') for name, value in _OPTION.findall(words[1])}
        late = any("OnHandleQueryResult" in line for line in answer["log"]) and any(
            "not found this song" in line for line in answer["log"]
        )
        unit.app_data(words[1], options, late)
    elif verb == "device":
        silent = words[1] == "--silent"
        number, value = words[-2:]
        unit.device(int(number), None if value == "fail" else int(value), silent)
    elif verb == "time":
        hour, minute = words[1].split(":")
        unit.set_time(int(hour), int(minute), int(words[2]))
    elif verb == "language":
        unit.language(words[1])
    elif verb == "key":
        unit.key(int(words[1]))
    elif verb == "click":
        unit.click(words[1], int(words[2]), int(words[3]), int(words[4]))
    elif verb == "touch":
        at = (int(words[1]), int(words[2]))
        _finger(unit, answer, at, at, len(words) > 3 and int(words[4]) >= _HELD_MS)
    elif verb == "drag":
        x1, y1, x2, y2 = map(int, words[1:])
        _finger(unit, answer, (x1, y1), (x2, y2), False)
    elif verb == "clock":
        unit.advance(int(words[2]))
    else:
        assert verb == "theme", words


def _report(unit: "Unit", name: str, line: str) -> None:
    thing = name[len(_OBJECT) :]
    if line.startswith("-"):
        unit.take_back(thing, line[1:])
    else:
        attribute, encoding, value = line.split(":", 2)
        unit.report(thing, attribute, encoding, value)


def _finger(unit: "Unit", answer: Dict[str, Any], down: Tuple[int, int], up: Tuple[int, int], held: bool) -> None:
    for line in answer["log"]:
        found = _CLICK.search(line)
        if found:
            break
    else:
        if _disabled(unit, down):
            return
        raise Implausible(f"nothing was touched at {down}")
    view = "osd" if found.group(1) else "main"
    window, control = int(found.group(2)), int(found.group(3))
    pages = unit.osd_pages if view == "osd" else unit.main_pages
    item = pages.item(window, control) if control else None
    if window not in pages.shown or not pages.visible:
        raise Implausible(f"{view} {window} was touched at {down}, which is not shown")
    row = None
    if control:
        if item is None or not item["visible"] or not item["enabled"]:
            raise Implausible(f"{view} {window} {control} was touched at {down}, which cannot be touched")
        x, y, width, height = item["rect"]
        if not (x <= down[0] < x + width and y <= down[1] < y + height):
            raise Implausible(f"{view} {window} {control} was touched at {down}, where it does not lie")
        if item["kind"] == "list":
            row = item["top"] + int((down[1] - y) * 5 / height)
    unit.finger(view, window, control, held, down, up, row)


def _disabled(unit: "Unit", at: Tuple[int, int]) -> bool:
    """Whether a key of the overlay's pad lies there that cannot be pressed now: it takes the touch and says nothing."""
    pages = unit.osd_pages
    if not pages.visible:
        return False
    for window in pages.shown:
        for item in pages.windows[str(window)]["items"].values():
            x, y, width, height = item["rect"]
            there = x <= at[0] < x + width and y <= at[1] < y + height
            if there and item["visible"] and not item["enabled"]:
                return True
    return False
