"""Fingers and keys."""

from __future__ import annotations

import json
from typing import Union

from ..names import CONTROLS
from ..screen import Screen
from .base import Caller, form


class InputCommands(Caller):
    """What the driver does with the screen and the hard keys. Places are pixels of the screen."""

    @form("key CODE|NAME")
    def key(self, key: Union[str, int]) -> None:
        """Presses a hard key by its name ("next") or its code (20).

        Raises WrongUsage, which names the nearest, for a name that no key has. A code that no key has reaches
        the application all the same.
        """
        self.command("key", key)

    @form("touch X Y [--hold MS]")
    def touch(self, x: int, y: int, hold: float = 0) -> None:
        """Touches a place for `hold` seconds; held from 0.8 s on. Returns at once, whatever `hold` is.

        Raises CommandFailed, which names the nearest place, beside the screen.
        """
        self.command("touch", x, y, *_hold(hold))

    @form("tap TEXT|ID [--hold MS]")
    def tap(self, what: Union[str, int], hold: float = 0) -> None:
        """Touches what has that text, that id, or that name in `CONTROLS` ("Next", "List"), for `hold` seconds.

        A part of the text will do if nothing else has it.
        Raises CommandFailed, which says what is there instead, if nothing or more than one thing fits, and
        while another application is in front.
        """
        control = CONTROLS.get(what) if isinstance(what, str) else None
        # On the number pad the id of "Back" is also the text of a key, and texts come first.
        if control is not None and control < 10:
            main = Screen.of(json.loads(self.ask(["screen"]))).main
            if any(each.text == str(control) for each in main.items.values()):
                self.touch(*main.item(control).rectangle.middle, hold=hold)
                return
        self.command("tap", what if control is None else control, *_hold(hold))

    @form("drag X1 Y1 X2 Y2")
    def drag(self, x1: int, y1: int, x2: int, y2: int) -> None:
        """Moves a finger over the screen. Raises CommandFailed if it begins beside the screen."""
        self.command("drag", x1, y1, x2, y2)

    @form("press X Y")
    def press(self, x: int, y: int) -> None:
        """Puts a finger down, in real time. Raises CommandFailed beside the screen."""
        self.command("press", x, y)

    @form("move X Y")
    def move(self, x: int, y: int) -> None:
        """Moves the finger that is down."""
        self.command("move", x, y)

    @form("release X Y")
    def release(self, x: int, y: int) -> None:
        """Lifts the finger."""
        self.command("release", x, y)

    @form("click main|osd WINDOW CONTROL STATE")
    def click(self, view: str, window: int, control: int, state: int = 1) -> None:
        """Calls a view's click handler straight: `view` "main" or "osd", `state` 0 press, 1 release, 4 held."""
        self.command("click", view, window, control, state)


def _hold(seconds: float) -> "tuple[object, ...]":
    return ("--hold", round(seconds * 1000)) if seconds else ()
