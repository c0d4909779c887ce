"""Windows, items and lists as the toolkit keeps them, in the form in which `zmctl screen` tells of them."""

from __future__ import annotations

import json
import os
import re
from typing import Any, Dict, List, Optional

Item = Dict[str, Any]

ALL_STATES = 4
_LABELS = ("text", "icon", "button")
_WIDTH = 800
# The number pad's figures, entry and caption stand alike in every language, and so does the way back below them.
_UNMIRRORED = [str(item) for item in (*range(510, 521), 523, 527, 531)]
_BACK = "4"
_HEAD = 68


class Texts:
    """The texts of the resource files by number and language."""

    def __init__(self, folder: str) -> None:
        with open(os.path.join(folder, "shared", "texts.zmrc"), encoding="utf-8") as stream:
            plain = re.sub(r"(?m)//[^\n\"]*$", "", stream.read())
        self._texts: Dict[str, Dict[str, str]] = json.loads(plain)["texts"]
        self.language = "en"

    @property
    def from_the_right(self) -> bool:
        """Whether reading begins there."""
        return self.language == "ar"

    def of(self, number: int) -> Optional[str]:
        texts = self._texts.get(str(number))
        return None if texts is None else texts.get(self.language, texts["en"])


class List_:
    """A list control: five rows are in view."""

    def __init__(self, item: Item) -> None:
        self.item = item

    @property
    def rows(self) -> List[Item]:
        return self.item["rows"]

    @property
    def selected(self) -> int:
        return self.item["current"]

    @property
    def top(self) -> int:
        return self.item["top"]

    def clear(self) -> None:
        self.item.update(rows=[], current=-1, top=0)

    def append(self, text: str, icon: int) -> None:
        self.rows.append({"text": text, "icons": {"0": icon}})

    def mark(self, row: int, icon: int) -> None:
        self.rows[row]["icons"]["2"] = icon

    def select(self, row: int) -> None:
        if 0 <= row < len(self.rows):
            self.item["current"] = row

    def scroll_to(self, row: int) -> None:
        row = max(row, 0)
        if row < len(self.rows):
            self.item["top"] = row


class View:
    """One view's windows. What an operation asks of an item that is not there, or of another kind, is nothing."""

    def __init__(self, described: Dict[str, Any], texts: Texts, stacked: List[int]) -> None:
        self.windows: Dict[str, Any] = described["windows"]
        self.shown: List[int] = list(described["shown"])
        self.visible: bool = described["visible"]
        self.texts = texts
        self._stacked = stacked
        self._replaced = 0
        self._mirrored = texts.from_the_right

    def description(self) -> Dict[str, Any]:
        return {
            "window": self.shown[-1] if self.shown else 0, "shown": self.shown, "visible": self.visible,
            "windows": self.windows,
        }  # fmt: skip

    def item(self, window: int, item: int) -> Optional[Item]:
        return self.windows.get(str(window), {"items": {}})["items"].get(str(item))

    def _label(self, window: int, item: int) -> Optional[Item]:
        found = self.item(window, item)
        return found if found and found["kind"] in _LABELS else None

    def text(self, window: int, item: int, text: str) -> None:
        found = self._label(window, item)
        if found:
            found.update(text=text, textId=0)

    def text_of(self, window: int, item: int, number: int) -> None:
        found = self._label(window, item)
        text = self.texts.of(number)
        if found and text is not None:
            found.update(text=text, textId=number)

    def icon(self, window: int, item: int, picture: int, state: int = ALL_STATES) -> None:
        found = self._label(window, item)
        if found:
            if state == ALL_STATES:
                found["icons"] = {}
            found["icons"][str(state)] = picture

    def show_item(self, window: int, item: int, shown: bool) -> None:
        found = self.item(window, item)
        if found:
            found["visible"] = shown

    def enable(self, window: int, item: int, enabled: bool) -> None:
        found = self.item(window, item)
        if found:
            found["enabled"] = enabled

    def state(self, window: int, item: int, state: int) -> None:
        found = self._label(window, item)
        if found and state in (2, 3):
            found["state"] = state

    def progress(self, window: int, item: int, percent: int) -> None:
        found = self.item(window, item)
        if found and found["kind"] == "progress":
            found["progress"] = min(max(percent, 0), 100)

    def list(self, window: int) -> List_:
        found = self.item(window, 2000)
        assert found is not None
        return List_(found)

    def translate(self) -> None:
        for window in self.windows.values():
            for item in window["items"].values():
                if item["textId"]:
                    item["text"] = self.texts.of(item["textId"])
        if self._mirrored != self.texts.from_the_right:
            self._mirrored = not self._mirrored
            self._mirror()

    def _mirror(self) -> None:
        for window in self.windows.values():
            for number, item in window["items"].items():
                x, y, width, height = item["rect"]
                if number not in _UNMIRRORED and not (number == _BACK and y > _HEAD):
                    item["rect"] = [_WIDTH - x - width, y, width, height]

    def dropped_by(self, window: int) -> List[int]:
        """The windows above that go when that page comes."""
        if window in self.shown or window in self._stacked:
            return []
        return [each for each in reversed(self.shown) if each in self._stacked]

    def show(self, window: int) -> None:
        if window in self.shown:
            return
        if window in self._stacked:
            self.shown.append(window)
            return
        pages = [each for each in self.shown if each not in self._stacked]
        self._replaced = pages[0] if pages else 0
        self.shown = [window]

    def hide(self, window: int) -> None:
        if window in self.shown:
            self.shown.remove(window)

    def behind(self, window: int) -> int:
        """The page that comes back when that one, which is shown, is hidden."""
        return self._replaced if window in self.shown else 0
