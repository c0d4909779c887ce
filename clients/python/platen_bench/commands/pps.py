"""The PPS objects, through which application and disc service talk."""

from __future__ import annotations

import json
import time
from dataclasses import dataclass
from typing import Any, Dict, Iterator, List, Optional

from .base import Caller, Stream, form, lines_of


@dataclass(frozen=True)
class Change:
    """One write to an object, with all its lines."""

    object: str
    time: float  #: seconds since the epoch, when it was read here
    lines: List[str]  #: "name:encoding:value", or "-name" of an attribute that was taken away

    @property
    def values(self) -> Dict[str, Any]:
        """The attributes that were written, as `Pps.get` gives them."""
        return values_of(self.lines)


@dataclass(frozen=True)
class PastChange:
    """A change that the bench remembers."""

    number: int  #: from 1, of all objects together
    seconds: float  #: since the bench began
    object: str
    lines: List[str]  #: as of `Change`

    @property
    def values(self) -> Dict[str, Any]:
        """The attributes that were written, as `Pps.get` gives them."""
        return values_of(self.lines)


def values_of(lines: List[str]) -> Dict[str, Any]:
    """Attributes by name: those with encoding "json" as their value, numbers "n" too, others as text."""
    values: Dict[str, Any] = {}
    for line in lines:
        if line.startswith("-"):
            continue
        name, _, rest = line.partition(":")
        encoding, _, value = rest.partition(":")
        if encoding in ("json", "n"):
            try:
                values[name] = json.loads(value)
                continue
            except ValueError:
                pass  # the service passes on whatever was written; so does this
        values[name] = value
    return values


class Changes(Iterator[Change]):
    """The changes of an object from now on; an iterator that `close` or the end of its `with` block ends."""

    def __init__(self, name: str, stream: Stream) -> None:
        self._name = name
        self._stream = stream

    def next(self, timeout: Optional[float] = None) -> Change:
        """The next change. Raises TimeoutError if there is none within `timeout` seconds."""
        text = self._stream.next(timeout)
        if text is None:
            raise TimeoutError(f"{self._name} has not changed within {timeout} s")
        return Change(self._name, time.time(), lines_of(text))

    def __next__(self) -> Change:
        return self.next()

    def close(self) -> None:
        """Stops watching."""
        self._stream.close()

    def __enter__(self) -> "Changes":
        return self

    def __exit__(self, *_: object) -> None:
        self.close()


class Pps:
    """The PPS objects; their names stand without /pps/: "zelmar/disc/status"."""

    def __init__(self, caller: Caller) -> None:
        self._caller = caller

    @form("pps ls")
    def ls(self) -> List[str]:
        """The names of all objects."""
        return lines_of(self._caller.command("pps", "ls"))

    @form("pps get OBJ")
    def get(self, name: str) -> Dict[str, Any]:
        """The attributes of an object, JSON as its value and all else as text.

        Raises CommandFailed for an object that does not exist.
        """
        return values_of(lines_of(self._caller.command("pps", "get", name)))

    @form("pps put OBJ LINE...")
    def put(self, name: str, *lines: str) -> None:
        """Writes lines `name:encoding:value` or `-name` as one change; makes the object if there is none."""
        self._caller.command("pps", "put", name, *lines)

    @form("pps history [OBJ] [-n N]")
    def history(self, name: Optional[str] = None, count: Optional[int] = None) -> List[PastChange]:
        """The latest changes of one object or of all, oldest first, at most `count`; the bench keeps 20000."""
        words = ["pps", "history"] + ([] if name is None else [name])
        words += [] if count is None else ["-n", str(count)]
        changes = []
        for line in lines_of(self._caller.command(*words)):
            head, *lines = line.split("  ")
            number, seconds, changed = head.split(" ")
            changes.append(PastChange(int(number), float(seconds), changed, lines))
        return changes

    @form("pps watch OBJ [-n COUNT] [-t SECONDS]")
    def watch(self, name: str, count: Optional[int] = None, seconds: Optional[float] = None) -> Changes:
        """The changes of an object from now on, at most `count`, for at most `seconds`.

        Watching has begun when this returns, so what happens afterwards is not missed:

            with unit.pps.watch("zelmar/disc/control") as changes:
                unit.key("next")
                assert changes.next(timeout=5).values["zmcmd"]["cmd"] == 1
        """
        words = ["pps", "watch", name]
        words += [] if count is None else ["-n", str(count)]
        words += [] if seconds is None else ["-t", str(seconds)]
        return Changes(name, self._caller.stream(words))
