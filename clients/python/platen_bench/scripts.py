"""What a client has sent, kept so that zmctl can send it again."""

from __future__ import annotations

import re
import time
from dataclasses import dataclass
from typing import List, Optional, Sequence

#: The exit status of words that fit no command.
WRONG_USAGE = 2

_PLAIN = re.compile(r"[A-Za-z0-9_./:=@%+,-]+")
# A pause below this is the time that the commands themselves took.
_SHORTEST_WAIT = 0.05
# Commands that only ask, by their first words.
_QUESTIONS = (
    ("record",), ("film",), ("timeline",), ("snapshot", "save"), ("screen",), ("drawn",), ("shot",), ("log",), ("ps",), ("help",), ("complete",), ("completion",),
    ("pps", "ls"), ("pps", "get"), ("pps", "watch"), ("pps", "history"),
)  # fmt: skip
# Commands of zmctl that do something but cannot stand in a script.
_TERMINAL = ("run", "replay", "shrink", "monkey")


def line_of(words: Sequence[str]) -> str:
    """The line of a script that stands for these words, quoted as zmctl reads it.

    Words with a line feed cannot stand in a script: they give a comment that says so.
    """
    if any("\n" in word for word in words):
        return f"# left out, as no script can hold a line feed: {list(words)!r}"
    return " ".join(_quoted(word) for word in words)


def _quoted(word: str) -> str:
    if _PLAIN.fullmatch(word):
        return word
    return "'" + word.replace("'", "'\\''") + "'"


def is_question(words: Sequence[str]) -> bool:
    """Whether a command changes nothing, so that a script need not repeat it."""
    if words[0] == "disc":
        return "fault" not in words
    if words[0] == "requests":
        return "--clear" not in words
    return any(tuple(words[: len(begin)]) == begin for begin in _QUESTIONS)


@dataclass(frozen=True)
class Step:
    """One command that was sent."""

    moment: float  #: seconds since the bench was there
    words: List[str]
    status: int  #: zmctl's exit status
    seconds: float  #: how long it took


class Recorder:
    """The commands of one bench, in their order."""

    def __init__(self, start: Optional[Sequence[str]] = None) -> None:
        """`start`: the words that started the bench, if this client did."""
        self._begin = time.monotonic()
        self._start = list(start or [])
        self.steps: List[Step] = []

    def now(self) -> float:
        """Seconds since the bench was there."""
        return time.monotonic() - self._begin

    def add(self, words: Sequence[str], begin: float, status: int = 0) -> None:
        """Notes a command that was sent at `begin` (of `now`) and has just been answered."""
        self.steps.append(Step(begin, list(words), status, self.now() - begin))

    def script(self) -> str:
        """A script for `zmctl run`: every input with the pauses between, and what was waited for.

        A command that failed stands behind "try"; one with wrong words is a comment, as it did nothing.
        Questions are left out.
        """
        lines = ["# What was sent to the bench, with its time in seconds. Repeat it on a fresh one:"]
        lines.append("#   " + (line_of(self._start) if self._start else "zmbench"))
        last = 0.0
        for step in self.steps:
            if is_question(step.words):
                continue
            expecting = step.words[0] == "expect"
            pause = step.moment - last
            last = step.moment + step.seconds
            if pause >= _SHORTEST_WAIT and not expecting:
                lines.append(f"wait {round(pause * 1000)}")
            line = line_of(step.words)
            if step.status == WRONG_USAGE:
                line = "# refused: " + line
            elif step.words[0] in _TERMINAL:
                line = "# no command of a script, run it by itself: zmctl " + line
            elif step.status != 0 and not expecting:
                line = "try " + line
            if line != lines[-1]:
                lines += [f"# {step.moment:.3f}", line]
        return "\n".join(lines) + "\n"
