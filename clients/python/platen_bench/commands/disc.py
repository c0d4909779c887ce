"""The disc drive and the catalogue."""

from __future__ import annotations

import json
import os
from dataclasses import dataclass
from typing import Union

from .base import Caller, form

PathLike = Union[str, "os.PathLike[str]"]


@dataclass(frozen=True)
class Drive:
    """What the disc service says of its drive."""

    state: str  #: "starting", "empty", "reading", "loaded", "ejecting" or "error"
    path: str  #: what is in it
    text: str  #: why, of an error


class DiscCommands(Caller):
    """Discs that come and go, and faults of the drive."""

    @form("insert DISC [--wait]")
    def insert(self, path: PathLike, wait: bool = True) -> None:
        """Puts a folder, an image or a file into the drive.

        Returns when the disc is ready to play, unless `wait` is False. Raises CommandFailed with the drive's
        reason if it cannot be read, or is not ready within a minute; and if there is nothing at `path`.
        """
        self.command("insert", os.path.abspath(path), *(["--wait"] if wait else []))

    @form("insert --demo [--wait]")
    def insert_demo(self, wait: bool = True) -> None:
        """Puts the demonstration disc that `./dev run` makes into the drive. As `insert` else."""
        self.command("insert", "--demo", *(["--wait"] if wait else []))

    @form("eject")
    def eject(self) -> None:
        """Takes the disc out. Raises CommandFailed in a bench without a disc service."""
        self.command("eject")

    @form("disc [--json]")
    def disc(self) -> Drive:
        """What the drive says. Raises CommandFailed in a bench without a disc service."""
        state = json.loads(self.command("disc", "--json"))
        return Drive(state.get("state", ""), state.get("path", ""), state.get("text", ""))

    @form("disc fault read|surface|temperature|region|noanswer|gone|none")
    def fault(self, kind: str) -> None:
        """Makes the drive fail, or with "none" work again.

        `kind` is one of "read", "surface", "temperature", "region", "noanswer", "gone" and "none"; another one
        raises WrongUsage.
        """
        self.command("disc", "fault", kind)

    @form("catalogue hold ROWS")
    def hold_catalogue(self, rows: int) -> None:
        """Stops the application's next list query before row `rows`."""
        self.command("catalogue", "hold", rows)

    @form("catalogue release")
    def release_catalogue(self) -> None:
        """Lets a query that was stopped go on."""
        self.command("catalogue", "release")
