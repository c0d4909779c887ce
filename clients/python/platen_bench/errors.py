"""What can go wrong. Each error's text is the bench's own sentence, as zmctl prints it."""

from __future__ import annotations

from typing import Sequence


class BenchError(Exception):
    """Anything that this package reports, so that one `except` finds all of it."""


class NoBench(BenchError):
    """No bench could be started or found, or the one that ran has gone."""


class ProtocolError(BenchError):
    """The bench's answer is not the protocol that this package speaks."""


class CommandFailed(BenchError):
    """A command that the bench refused or could not carry out (exit status 1)."""

    def __init__(self, words: Sequence[str], status: int, text: str) -> None:
        super().__init__(text or f"{' '.join(words)}: exit status {status}")
        self.words = list(words)  #: the command, as behind "zmctl"
        self.status = status  #: zmctl's exit status


class WrongUsage(CommandFailed):
    """Words that fit no form of a command (exit status 2); the text has the usage."""


class ExpectationFailed(BenchError, AssertionError):
    """Something did not become true in time; the text has what was expected and what was found."""
