"""Names of what stands on the screen and of what the bench can be told."""

from __future__ import annotations

from enum import IntEnum
from typing import Dict, Type, TypeVar, Union


class Page(IntEnum):
    """The pages of the main view, by number."""

    NONE = 0  #: nothing is shown yet
    MESSAGE = 1  #: loading, no disc, ejecting, wrong region
    MUSIC = 6  #: what plays, for music and audio CD
    PARKING = 10  #: no video while driving
    VIDEO = 17  #: nothing of its own: the film or photo shows through
    NUMBER_PAD = 20
    ERROR = 22  #: this disc cannot be read
    LIST = 24  #: files of one kind, or folders
    FOLDER = 25  #: files of one folder
    CD = 27  #: tracks of an audio CD


class Overlay(IntEnum):
    """The windows of the overlay, which lies over films and photos."""

    NONE = 0
    DVD = 1
    VIDEO = 2
    VCD = 4
    PHOTO = 11
    NUMBER_PAD = 20


#: Controls that have a picture instead of a text, by the name that `tap` takes.
CONTROLS: Dict[str, int] = {
    "Home": 3,
    "Back": 4,
    "Source": 5,
    "Types": 5002,
    "Shuffle": 6503,
    "Repeat": 6504,
    "Number pad": 6505,
    "List": 6508,
    "Previous": 6521,
    "Play": 6522,
    "Pause": 6523,
    "Next": 6524,
    "Equaliser": 6525,
    "Now playing": 2071,
    "Up": 1013,
    "Delete": 523,
    "Enter": 531,
}

#: What `expect(title=...)` and its like look at: page and item of the main view.
FIELDS: Dict[str, "tuple[Page, int]"] = {
    "title": (Page.MUSIC, 2065),
    "artist": (Page.MUSIC, 2061),
    "album": (Page.MUSIC, 2063),
    "position": (Page.MUSIC, 2075),
    "time": (Page.MUSIC, 2067),
    "length": (Page.MUSIC, 2068),
    "message": (Page.MESSAGE, 7004),
    "folder": (Page.FOLDER, 1012),
    "entry": (Page.NUMBER_PAD, 510),
}

_Number = TypeVar("_Number", bound=IntEnum)


def number_of(kind: Type[_Number], name: Union[str, int]) -> int:
    """The number of a page or window; `name` may be "music", "number pad" or the number itself.

    Raises ValueError, which lists the names, for one that does not exist.
    """
    if isinstance(name, int):
        return int(name)
    key = name.upper().replace(" ", "_").replace("-", "_")
    try:
        return kind[key].value
    except KeyError:
        known = ", ".join(each.name.lower().replace("_", " ") for each in kind)
        raise ValueError(f'there is no {kind.__name__.lower()} "{name}"; there is {known}') from None
