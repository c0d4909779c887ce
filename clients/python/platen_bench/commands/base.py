"""What the commands of all subjects are built on."""

from __future__ import annotations

from abc import ABC, abstractmethod
from typing import Any, Callable, Dict, List, Optional, Sequence, TypeVar

_Method = TypeVar("_Method", bound=Callable[..., Any])

#: Which method stands for which form of a command, written as "zmctl help COMMAND" writes it.
FORMS: Dict[str, str] = {}


def form(*usages: str) -> Callable[[_Method], _Method]:
    """Notes that a method stands for these forms of a command."""

    def note(method: _Method) -> _Method:
        for usage in usages:
            FORMS[usage] = method.__qualname__
        return method

    return note


class Stream(ABC):
    """An answer that goes on, such as that of `pps watch`."""

    @abstractmethod
    def next(self, timeout: Optional[float]) -> Optional[str]:
        """The next piece of output; None if there is none within `timeout` seconds (None: waits for ever).

        Raises StopIteration at the end.
        """

    @abstractmethod
    def close(self) -> None:
        """Ends the command."""


class Caller(ABC):
    """Whoever can give the bench a command."""

    @abstractmethod
    def command(self, *words: object, timeout: Optional[float] = None) -> str:
        """Gives the bench any command, word by word as behind `zmctl`, and returns its output.

        Waits until it has been carried out, at most `timeout` seconds (None: for ever).
        Raises WrongUsage for words that fit no command, CommandFailed with the bench's sentence for a command
        that it could not carry out, NoBench when there is no bench (any more), TimeoutError when time is up.
        """

    @abstractmethod
    def stream(self, words: Sequence[str]) -> Stream:
        """Begins a command whose answer goes on. The bench has begun it when this returns."""

    @abstractmethod
    def local(self, words: Sequence[str], timeout: Optional[float] = None) -> str:
        """Runs one of zmctl's own commands, with the zmctl that lies beside zmbench; returns its output."""

    @abstractmethod
    def ask(self, words: Sequence[str]) -> str:
        """As `command`, for a question of this package's own that no script needs to repeat."""

    @abstractmethod
    def note(self, words: Sequence[str], begin: float, status: int) -> None:
        """Notes a step that was not one command; it began at that moment (`moment`) and has ended."""

    @abstractmethod
    def moment(self) -> float:
        """Seconds since the bench was there."""


def lines_of(output: str) -> List[str]:
    """The lines of an output without their ends."""
    return output.split("\n")[:-1] if output.endswith("\n") else output.splitlines()
