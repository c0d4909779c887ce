"""What the screen shows, as the bench describes it."""

from __future__ import annotations

from dataclasses import dataclass
from typing import Any, Dict, List, Mapping, Tuple, Type

from enum import IntEnum

from .names import Overlay, Page


@dataclass(frozen=True)
class Rectangle:
    """A place on the screen, in pixels from the upper left corner."""

    x: int
    y: int
    width: int
    height: int

    @property
    def middle(self) -> Tuple[int, int]:
        """The place that a finger aims at."""
        return self.x + self.width // 2, self.y + self.height // 2


@dataclass(frozen=True)
class Item:
    """One item of a page."""

    id: int
    kind: str  #: "button", "text", "list", "icon", "panel", "progress", "animation"
    text: str
    text_id: int  #: number of the text if it is a fixed one, else 0
    visible: bool
    enabled: bool
    rectangle: Rectangle
    state: int
    progress: int  #: tenths of a percent
    rows: List[str]  #: of a list: the texts of its rows, from the first one
    current: int  #: of a list: the marked row from 0, -1 for none
    data: Mapping[str, Any]  #: all that the bench says of it

    @staticmethod
    def of(number: int, data: Mapping[str, Any]) -> "Item":
        """From the bench's description."""
        return Item(
            id=number,
            kind=data["kind"],
            text=data["text"],
            text_id=data["textId"],
            visible=data["visible"],
            enabled=data["enabled"],
            rectangle=Rectangle(*data["rect"]),
            state=data["state"],
            progress=data["progress"],
            rows=[row["text"] for row in data.get("rows", [])],
            current=data.get("current", -1),
            data=data,
        )


@dataclass(frozen=True)
class View:
    """The main view or the overlay at one moment."""

    page: IntEnum  #: a Page of the main view, an Overlay of the overlay
    visible: bool
    shown: List[int]  #: numbers of all windows that are shown
    data: Mapping[str, Any]  #: all that the bench says of it

    @staticmethod
    def of(kind: Type[IntEnum], data: Mapping[str, Any]) -> "View":
        """From the bench's description; a page without a name is Page.NONE's neighbour and raises ValueError."""
        return View(kind(data["window"]), data["visible"], list(data["shown"]), data)

    def item(self, number: int) -> Item:
        """An item of the page that is shown. Raises KeyError if that page has none with that id."""
        items = self.items
        if number not in items:
            raise KeyError(f"{self.page.name} has no item {number}")
        return items[number]

    @property
    def items(self) -> Dict[int, Item]:
        """The items of the page that is shown, hidden ones too, by id."""
        window = self.data["windows"].get(str(int(self.page)), {"items": {}})
        return {int(number): Item.of(int(number), data) for number, data in window["items"].items()}

    @property
    def rows(self) -> List[str]:
        """The texts of the list on this page, from its first row. Empty if it has no list."""
        for item in self.items.values():
            if item.kind == "list":
                return item.rows
        return []


@dataclass(frozen=True)
class Video:
    """The window of the film or photo, as the application asked for it."""

    posted: bool
    visible: bool
    locked: bool  #: it is not on the screen, whatever was asked for, because the car drives
    frames: int  #: pictures that have come
    rectangle: Rectangle

    @staticmethod
    def of(data: Mapping[str, Any]) -> "Video":
        """From the bench's description."""
        return Video(
            data["posted"], data["visible"], data["locked"], data["frames"], Rectangle(*data["rect"])
        )


@dataclass(frozen=True)
class Screen:
    """Both views and the video window at one moment."""

    main: View
    overlay: View
    video: Video
    size: Tuple[int, int]  #: width and height in pixels
    data: Mapping[str, Any]  #: all that the bench says of it

    @staticmethod
    def of(data: Mapping[str, Any]) -> "Screen":
        """From the bench's description."""
        width, height = data["size"]
        return Screen(
            View.of(Page, data["main"]),
            View.of(Overlay, data["osd"]),
            Video.of(data["video"]),
            (width, height),
            data,
        )


@dataclass(frozen=True)
class Seen:
    """Something that can be read or touched on the screen."""

    view: str  #: "main" or "osd"
    window: int
    id: int
    text: str  #: "(button)" and the like for what has no text


def read_seen(output: str) -> List[Seen]:
    """The lines of `screen --text`."""
    seen = []
    view, window = "", 0
    for line in output.splitlines():
        if not line.startswith("  "):
            view, _, number = line.partition(" ")
            window = int(number)
            continue
        identity, _, text = line.strip(" ").partition(" ")
        seen.append(Seen(view, window, int(identity), text.lstrip(" ")))
    return seen
