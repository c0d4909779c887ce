"""The launcher around the application."""

from __future__ import annotations

import json
from typing import Any, Dict, List

from .base import Caller, form, lines_of


class LauncherCommands(Caller):
    """What the launcher tells the application, and what the application asks of it."""

    @form("app start|resume|pause|showonly|hideonly|quit")
    def app(self, message: str) -> None:
        """Sends a launcher message, or starts the application again.

        `message` is one of "start", "resume", "pause", "showonly", "hideonly" and "quit"; another one raises
        WrongUsage.
        """
        self.command("app", message)

    @form("appdata TEXT")
    def appdata(self, text: str) -> None:
        """Sends application data as it is, for example `--song="Blue"`."""
        self.command("appdata", text)

    def say(self, song: str) -> None:
        """Asks for a song by voice, as the head unit's speech recognition does."""
        self.appdata(f'--song="{song}"')

    @form("language LANGUAGE")
    def language(self, code: str) -> None:
        """Changes the language of all texts: "en", "de", "zh", "ar". Raises CommandFailed for another one."""
        self.command("language", code)

    @form("theme night|day|contrast")
    def theme(self, name: str) -> None:
        """Changes the colours of the screen: "night", "day" or "contrast". Raises WrongUsage for another one."""
        self.command("theme", name)

    @form("motion on|off")
    def motion(self, wish: str) -> None:
        """Whether the pages move: "on" or "off". Raises WrongUsage for another word."""
        self.command("motion", wish)

    @form("requests [--clear]")
    def requests(self, clear: bool = False) -> List[Dict[str, Any]]:
        """What the application asked of the launcher, oldest first; `clear` empties the list afterwards.

        A request is for example {"op": "QueryLauncher", "app": "zmhome"}.
        """
        return [
            json.loads(line) for line in lines_of(self.command("requests", *(["--clear"] if clear else [])))
        ]
