"""What the driver sees."""

from __future__ import annotations

import json
import os
import re
import tempfile
import time
from typing import Iterator, List, Optional, Union

from ..names import Overlay, Page, number_of
from ..screen import Screen, Seen, Video, View, read_seen
from .base import Caller, form

# What stands for an item without a text.
_NO_TEXT = re.compile(r"\([a-z]+\)")


class ScreenCommands(Caller):
    """The pages, their texts and pictures of them. Each question is answered with the state of that moment."""

    def screen(self) -> Screen:
        """Both views and the video window. Raises CommandFailed while no application runs."""
        return Screen.of(json.loads(self.ask(["screen"])))

    @property
    def main(self) -> View:
        """The main view as it is now: `unit.main.page`, `unit.main.item(2065).text`, `unit.main.rows`."""
        return self.screen().main

    @property
    def overlay(self) -> View:
        """The overlay over films and photos as it is now."""
        return self.screen().overlay

    @property
    def video(self) -> Video:
        """The window of the film or photo as it is now."""
        return self.screen().video

    @form("screen [main|osd] [WINDOW]")
    def window(self, view: str, window: Union[int, str]) -> View:
        """One window of "main" or "osd", shown or not, by number or name. The View's `page` is that window.

        Raises CommandFailed, which names the nearest, for a number that the view does not have.
        """
        kind = Page if view == "main" else Overlay
        number = number_of(kind, window)
        data = json.loads(self.command("screen", view, number))[view]
        return View.of(kind, {**data, "window": number})

    @form("screen --text")
    def seen(self) -> List[Seen]:
        """All that can be read or touched on the screen, from top to bottom; nothing that a popup covers."""
        return read_seen(self.ask(["screen", "--text"]))

    def texts(self) -> List[str]:
        """The texts that can be read on the screen, from top to bottom."""
        return [each.text for each in self.seen() if not _NO_TEXT.fullmatch(each.text)]

    def screens(self, seconds: Optional[float] = None, every: float = 0.05) -> Iterator[List[Seen]]:
        """What is on the screen now, and again whenever it has changed, for `seconds` (None: for ever).

        The bench does not tell of changes: this looks every `every` seconds, so one that lasts shorter may
        be missed.
        """
        deadline = None if seconds is None else time.monotonic() + seconds
        before: Optional[List[Seen]] = None
        while deadline is None or time.monotonic() < deadline:
            now = self.seen()
            if now != before:
                yield now
                before = now
            time.sleep(every)

    @form("drawn")
    def drawn(self) -> None:
        """Fails (CommandFailed) if the screen does not show what the pages say, and names where."""
        self.command("drawn")

    @form("shot [--now] --digest")
    def digest(self, now: bool = False) -> str:
        """The SHA-256 of what the driver sees, in hexadecimal: equal pictures have equal ones.

        What fades has faded, unless it is wanted `now`.
        """
        return self.ask(["shot", *(["--now"] if now else []), "--digest"]).strip()

    @form("shot [--now] FILE.png|FILE.jpg")
    def picture(self, file: Optional[Union[str, "os.PathLike[str]"]] = None, now: bool = False) -> bytes:
        """What the driver sees, as a PNG of the screen's size; also written to `file` if one is named.

        What fades has faded, unless it is wanted `now`. A name that ends with .jpg gives a JPEG. Raises CommandFailed if
        the file cannot be written. Compare pictures by `digest`: of two that differ pytest would explain every byte,
        which takes minutes.
        """
        if file is not None:
            path = os.path.abspath(file)
            self.command("shot", *(["--now"] if now else []), path)
            with open(path, "rb") as stream:
                return stream.read()
        with tempfile.TemporaryDirectory(prefix="platen-shot-") as folder:
            return self.picture(os.path.join(folder, "shot.png"), now)
