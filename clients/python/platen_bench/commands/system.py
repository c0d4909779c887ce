"""The bench itself: log, clock, processes."""

from __future__ import annotations

import json
import os
import re
from collections import deque
from contextlib import contextmanager
from dataclasses import dataclass
from typing import Any, Deque, Dict, Iterator, List, Optional, Union

from .base import Caller, Stream, form, lines_of

_PROCESS = re.compile(r"(\S+) (\d+|-) (.*?)(?: \(deaths: (\d+)\))?")


@dataclass(frozen=True)
class LogEntry:
    """One line of the system log."""

    time: str  #: "2015-09-09T10:08:13.042", local time
    severity: int  #: 0 the gravest to 7
    text: str

    @staticmethod
    def of(line: str) -> "LogEntry":
        """From a line of `log --time`."""
        moment, severity, text = (line.split(" ", 2) + ["", ""])[:3]
        return LogEntry(moment, int(severity), text)


@dataclass(frozen=True)
class Process:
    """A child of the bench."""

    pid: int  #: 0 if it does not run
    state: str  #: "running", or how it ended
    deaths: int  #: how often it died since the bench began


class Following(Iterator[LogEntry]):
    """Lines of the log as they are written; an iterator that `close` or the end of its `with` block ends."""

    def __init__(self, stream: Stream) -> None:
        self._stream = stream
        self._waiting: Deque[LogEntry] = deque()

    def next(self, timeout: Optional[float] = None) -> LogEntry:
        """The next line. Raises TimeoutError if there is none within `timeout` seconds."""
        while not self._waiting:
            text = self._stream.next(timeout)
            if text is None:
                raise TimeoutError(f"nothing was logged within {timeout} s")
            self._waiting.extend(LogEntry.of(line) for line in lines_of(text))
        return self._waiting.popleft()

    def __next__(self) -> LogEntry:
        return self.next()

    def close(self) -> None:
        """Stops following."""
        self._stream.close()

    def __enter__(self) -> "Following":
        return self

    def __exit__(self, *_: object) -> None:
        self.close()


class SystemCommands(Caller):
    """Log, clock and processes."""

    def log(self, count: Optional[int] = None) -> List[LogEntry]:
        """The last `count` lines of the system log (None: all), oldest first."""
        output = self.command("log", *([] if count is None else ["-n", count]), "--time")
        return [LogEntry.of(line) for line in lines_of(output)]

    @form("log [-n N] [--time] [--follow]")
    def follow_log(self, count: int = 0) -> Following:
        """The last `count` lines of the log and then what is written from now on."""
        return Following(self.stream(["log", "-n", str(count), "--time", "--follow"]))

    @form("clock advance MS")
    def advance(self, seconds: float) -> None:
        """Moves the stopped clock on: every timer of the application that falls due fires. Then settles.

        Raises CommandFailed if the clock runs by itself (a bench without `clock="stopped"`).
        """
        self.command("clock", "advance", round(seconds * 1000))

    @form("step [--pixels RRGGBB] [--changes] [COMMAND...]")
    def step(self, *words: object, pixels: Optional[str] = None, changes: bool = False) -> Dict[str, Any]:
        """Carries out a command, waits until nothing moves any more and tells all that it led to.

        pixels   a colour, "ff00ff": "pixels" then says how many there are of it on the screen
        changes  without the items that are as the last step with `changes` found them

        The members are "exit", "out" and "err" of the command, "changes" of PPS objects, "requests" to the launcher,
        lines of the "log", "screen" (None while no application runs) and "stale". A command that fails raises nothing:
        "exit" says so. Without a command it waits and looks only. Raises WrongUsage for a colour that is none.
        """
        options = ([] if pixels is None else ["--pixels", pixels]) + (["--changes"] if changes else [])
        answer: Dict[str, Any] = json.loads(self.command("step", *options, *words))
        return answer

    @form("settle [-t SECONDS]")
    def settle(self, seconds: float = 10) -> None:
        """Returns when nothing moves any more. Raises CommandFailed if it still does after `seconds`."""
        self.command("settle", "-t", seconds)

    @form("record FILE", "record --stop")
    @contextmanager
    def record(self, file: Union[str, "os.PathLike[str]"]) -> Iterator[None]:
        """Writes every input while the block runs, whoever gives it, to a script with its times.

            with unit.record("drive.zmctl"):
                unit.tap("Next")

        Raises CommandFailed if inputs are being recorded already or the file cannot be written.
        """
        self.command("record", os.path.abspath(file))
        try:
            yield
        finally:
            self.command("record", "--stop")

    @form("snapshot save|restore FILE")
    def save_snapshot(self, file: Union[str, "os.PathLike[str]"]) -> None:
        """Keeps the state around the application in a file: vehicle, clock, language, colours, launcher, disc, PPS
        objects, catalogue. Raises CommandFailed if it cannot be written."""
        self.command("snapshot", "save", os.path.abspath(file))

    def restore_snapshot(self, file: Union[str, "os.PathLike[str]"]) -> None:
        """Brings that state about; objects and catalogue where no disc service runs, else its disc is inserted.

        Raises CommandFailed, which names the file or the command, for what cannot be restored.
        """
        self.command("snapshot", "restore", os.path.abspath(file))

    @form("timeline FILE [--seconds SECONDS]")
    def timeline(self, seconds: Optional[float] = None) -> Dict[str, Any]:
        """What happened in the last five minutes, or `seconds`: commands, frames, PPS changes and log on one clock, in
        Chrome's trace format."""
        words = ["timeline", "-"] + ([] if seconds is None else ["--seconds", f"{seconds:g}"])
        trace: Dict[str, Any] = json.loads(self.ask(words))
        return trace

    @form("record --all FILE")
    def recording(self) -> str:
        """The script of every input since the bench began, whoever gave it, with its times."""
        return self.ask(["record", "--all", "-"])

    @form("ps")
    def processes(self) -> Dict[str, Process]:
        """The children by name: "app" is the application, "disc" the disc service."""
        found = {}
        for line in lines_of(self.ask(["ps"])):
            match = _PROCESS.fullmatch(line)
            if match:
                name, pid, state, deaths = match.groups()
                found[name] = Process(0 if pid == "-" else int(pid), state, int(deaths or 0))
        return found

    @form("kill app|disc")
    def kill(self, name: str) -> None:
        """Kills "app" or "disc" as a crash would. Raises CommandFailed if it does not run."""
        self.command("kill", name)
