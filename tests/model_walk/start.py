"""What the pages show when the application has started."""

from __future__ import annotations

from typing import Any, Dict, List

#: view, windows, items and what is set there
_EXPECTED: List[Any] = [
    ("main", (1, 6, 10, 22, 24, 25, 27), 5, {"textId": 30}),
    ("main", (6,), 2075, {"text": "--/--", "textId": 0}),
    ("main", (1,), 7004, {"textId": 33}),
    ("main", (1,), 7003, {"visible": True}),
    ("main", (24, 25, 27), 2000, {"rows": [], "current": -1, "top": 0}),
    ("osd", (1, 2, 4), 2152, {"text": "--/--"}),
    ("osd", (1,), 2154, {"text": "--/--"}),
    ("osd", (1, 2, 4), 2067, {"text": "00:00"}),
    ("osd", (1, 2, 4), 2068, {"text": "00:00"}),
    ("osd", (1, 2, 4), 2069, {"progress": 0}),
    ("osd", (1, 4), 3, {"visible": True}),
    ("osd", (1, 4), 4, {"visible": False}),
    ("osd", (1, 4), 2078, {"visible": False, "icons": {"4": 0}}),
    ("osd", (1, 4), 2155, {"text": " "}),
    ("osd", (2, 11), 5, {"textId": 107}),
]


def start_differences(screen: Dict[str, Any]) -> List[str]:
    """The loading page, the overlay hidden with its pad, and the items that the start sets."""
    result = []
    for view, shown, visible in (("main", [1], True), ("osd", [20], False)):
        found = (screen[view]["shown"], screen[view]["visible"])
        if found != (shown, visible):
            result.append(f"start: {view} shows {found}, expected {(shown, visible)}")
    for view, windows, item, values in _EXPECTED:
        for window in windows:
            found = screen[view]["windows"][str(window)]["items"][str(item)]
            for name, value in values.items():
                if found[name] != value:
                    result.append(f"start: {view}.{window}.{item}.{name}: expected {value!r}, found {found[name]!r}")
    return result
