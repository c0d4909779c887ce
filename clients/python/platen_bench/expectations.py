"""Conditions that a test waits for, and the paths of zmctl's `expect` that stand for them."""

from __future__ import annotations

import json
import math
import re
import time
from dataclasses import dataclass
from typing import Any, Callable, Dict, List, Mapping, Sequence

from .commands.base import Caller, lines_of
from .commands.pps import values_of
from .errors import CommandFailed, ExpectationFailed
from .names import FIELDS, Overlay, Page, number_of
from .screen import read_seen

_ASK_AGAIN = 0.02
_NOTHING = object()


@dataclass(frozen=True)
class Found:
    """What a condition met."""

    good: bool
    text: str


class Condition:
    """One comparison along a path."""

    def __init__(self, path: str, operator: str, value: object) -> None:
        """Raises ValueError for a path or an operator that does not exist."""
        self._root, *self._steps = path.split(".")
        if len(self._steps) < _LEAST_STEPS.get(self._root, len(self._steps) + 1):
            raise ValueError(f'"{path}" is no path into screen, pps.OBJ.ATTRIBUTE, requests or ps')
        if operator not in _OPERATORS:
            raise ValueError(f'"{operator}" is none of {", ".join(_OPERATORS)}')
        self._path, self._operator, self._value = path, operator, _shown(value)
        if operator in _ORDERED and not isinstance(_number_or_text(self._value), float):
            raise ValueError(f'"{self._value}" is no number')
        if operator == "matches":
            re.compile(self._value)

    def found(self, caller: Caller) -> Found:
        """Looks once."""
        try:
            value: Any = _ROOTS[self._root](caller, self._steps)
        except CommandFailed as error:
            return Found(False, str(error).strip())
        for step in self._steps[1:] if self._root == "pps" else self._steps:
            value = _child(value, step)
        if value is _NOTHING:
            return Found(False, "nothing")
        return Found(_OPERATORS[self._operator](value, self._value), _shown(value))

    def script(self) -> List[List[str]]:
        """What stands behind `expect` in a script that asks for the same, a line each."""
        return [[self._path, self._operator, self._value]]

    def __str__(self) -> str:
        return f"{self._path} {self._operator} {self._value}"


class TextIsSeen(Condition):
    """A text that can be read anywhere on the screen."""

    def __init__(self, text: str) -> None:
        super().__init__("screen.main", "contains", text)
        self._place = "main.windows.0"

    def found(self, caller: Caller) -> Found:
        try:
            seen = read_seen(caller.ask(["screen", "--text"]))
        except CommandFailed as error:
            return Found(False, str(error).strip())
        good = [each for each in seen if each.text == self._value]
        for each in (good or seen)[:1]:
            self._place = f"{each.view}.windows.{each.window}"
        return Found(bool(good), ", ".join(each.text for each in seen))

    def script(self) -> List[List[str]]:
        pattern = re.escape('"text":' + json.dumps(self._value, ensure_ascii=False))
        return [["screen." + self._place, "matches", pattern]]

    def __str__(self) -> str:
        return f'"{self._value}" on the screen'


class RowsAre(Condition):
    """The texts of the list on the page that is shown."""

    def __init__(self, rows: Sequence[str]) -> None:
        super().__init__("screen.main", "==", ", ".join(rows))
        self._rows = list(rows)
        self._place = f"screen.main.windows.{int(Page.LIST)}.items.2000.rows"

    def found(self, caller: Caller) -> Found:
        try:
            main = json.loads(caller.ask(["screen"]))["main"]
        except CommandFailed as error:
            return Found(False, str(error).strip())
        window = str(main["window"])
        for number, item in main["windows"].get(window, {"items": {}})["items"].items():
            if item["kind"] == "list":
                self._place = f"screen.main.windows.{window}.items.{number}.rows"
                rows = [row["text"] for row in item["rows"]]
                return Found(rows == self._rows, ", ".join(rows) or "an empty list")
        return Found(False, "no list")

    def script(self) -> List[List[str]]:
        texts = [[f"{self._place}.{i}.text", "==", row] for i, row in enumerate(self._rows)]
        return [[f"{self._place}.size", "==", str(len(self._rows))], *texts]

    def __str__(self) -> str:
        return f"rows {self._value}"


def conditions(path: Sequence[object], fields: Mapping[str, object]) -> List[Condition]:
    """What was asked for, by path or by fields. Raises ValueError for what does not exist."""
    result: List[Condition] = []
    if path:
        if len(path) != 3:
            raise ValueError("a path is followed by an operator and a value")
        result.append(Condition(str(path[0]), str(path[1]), path[2]))
    for name, value in fields.items():
        result += _of_field(name, value)
    if not result:
        raise ValueError("nothing is expected")
    return result


def _of_field(name: str, value: object) -> List[Condition]:
    if name == "page":
        return [Condition("screen.main.window", "==", _number(Page, value))]
    if name == "overlay":
        return [
            Condition("screen.osd.window", "==", _number(Overlay, value)),
            Condition("screen.osd.visible", "==", True),
        ]
    if name in FIELDS:
        page, item = FIELDS[name]
        return [
            Condition("screen.main.window", "==", int(page)),
            Condition(f"screen.main.windows.{int(page)}.items.{item}.text", "==", value),
        ]
    if name == "text":
        return [TextIsSeen(str(value))]
    if name == "rows" and isinstance(value, (list, tuple)):
        return [RowsAre([str(row) for row in value])]
    if name == "disc":
        return [Condition("pps.zelmar/disc/drive.drivestate.state", "==", value)]
    if name in ("app", "service"):
        return [Condition("ps." + {"app": "app", "service": "disc"}[name] + ".state", "==", value)]
    known = ", ".join(["page", "overlay", *FIELDS, "text", "rows (a list)", "disc", "app", "service"])
    raise ValueError(f'there is no field "{name}"; there is {known}')


def _number(kind: Any, value: object) -> int:
    return number_of(kind, value if isinstance(value, int) else str(value))


def wait_for(caller: Caller, wanted: Sequence[Condition], within: float) -> None:
    """Asks until all hold at once; raises ExpectationFailed after `within` seconds."""
    begin = caller.moment()
    deadline = time.monotonic() + within
    while True:
        met = [condition.found(caller) for condition in wanted]
        good = all(found.good for found in met)
        if good or time.monotonic() >= deadline:
            break
        time.sleep(_ASK_AGAIN)
    for condition, found in zip(wanted, met):
        for words in condition.script():
            caller.note(["expect", *words, "within", str(round(within * 1000))], begin, int(not found.good))
    if not good:
        missed = [(c, f) for c, f in zip(wanted, met) if not f.good]
        raise ExpectationFailed(
            "\n".join(f"expected: {c} (within {within:g} s)\nfound:    {f.text}" for c, f in missed)
        )


def _number_or_text(text: str) -> object:
    # Python takes more for a number: 1_000, nan, blanks around it, and what is too large for infinite.
    if not re.fullmatch(r"-?(\d+\.?\d*|\.\d+)([eE][-+]?\d+)?", text, re.ASCII):
        return text
    number = float(text)
    return number if math.isfinite(number) else text


def _shown(value: object) -> str:
    if isinstance(value, str):
        return value
    return json.dumps(value, ensure_ascii=False, separators=(",", ":"))


def _equal(found: object, value: str) -> bool:
    return _number_or_text(_shown(found)) == _number_or_text(value)


def _contains(found: object, value: str) -> bool:
    if isinstance(found, list):
        return any(_equal(each, value) for each in found)
    return value in _shown(found)


def _ordered(compare: Callable[[float, float], bool]) -> Callable[[object, str], bool]:
    def holds(found: object, value: str) -> bool:
        number = _number_or_text(_shown(found))
        return isinstance(number, float) and compare(number, float(value))

    return holds


_ORDERED = {"<", "<=", ">", ">="}
_OPERATORS: Dict[str, Callable[[Any, str], bool]] = {
    "==": _equal,
    "!=": lambda found, value: not _equal(found, value),
    "<": _ordered(lambda a, b: a < b),
    "<=": _ordered(lambda a, b: a <= b),
    ">": _ordered(lambda a, b: a > b),
    ">=": _ordered(lambda a, b: a >= b),
    "contains": _contains,
    "matches": lambda found, value: re.search(value, _shown(found)) is not None,
}


def _processes(caller: Caller, _: Sequence[str]) -> Any:
    result = {}
    for line in lines_of(caller.ask(["ps"])):
        name, pid, state = line.split(" ", 2)
        text, _mark, deaths = state.partition(" (deaths: ")
        result[name] = {
            "pid": 0 if pid == "-" else int(pid),
            "state": text,
            "deaths": int(deaths.rstrip(")") or 0),
        }
    return result


_LEAST_STEPS = {"screen": 1, "pps": 2, "requests": 1, "ps": 1}
_ROOTS: Dict[str, Callable[[Caller, Sequence[str]], Any]] = {
    "screen": lambda caller, _: json.loads(caller.ask(["screen"])),
    "pps": lambda caller, steps: values_of(lines_of(caller.ask(["pps", "get", steps[0]]))),
    "requests": lambda caller, _: [json.loads(line) for line in lines_of(caller.ask(["requests"]))],
    "ps": _processes,
}


def _child(value: Any, step: str) -> Any:
    if isinstance(value, list):
        if step == "size":
            return len(value)
        if not re.fullmatch(r"-?\d+", step):
            return _NOTHING
        index = int(step)
        return value[index] if -len(value) <= index < len(value) else _NOTHING
    return value.get(step, _NOTHING) if isinstance(value, dict) else _NOTHING
