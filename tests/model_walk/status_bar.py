"""Clock, Bluetooth, mute and temperature: what a page's status bar shows."""

from __future__ import annotations

from typing import TYPE_CHECKING, Optional, Tuple

if TYPE_CHECKING:
    from pages import View


def show_clock(pages: "View", window: int, time: Tuple[int, int, int]) -> None:
    hour, minute, style = time
    morning = afternoon = False
    if style == 12 and hour < 24:
        morning, afternoon = hour < 12, hour >= 12
        hour = hour % 12 or 12
    pages.text(window, 8, f"{hour:02d}:{minute:02d}")
    pages.show_item(window, 11, morning)
    pages.show_item(window, 12, afternoon)


def temperature(tenths: Optional[int]) -> str:
    return f"{tenths / 10:4.1f}" if tenths is not None and -400 <= tenths <= 870 else "--.-"


def clock_text(seconds: int) -> str:
    """A play time: with hours from the first hour on."""
    hours, minutes = seconds // 3600, seconds // 60 % 60
    return f"{hours:02d}:{minutes:02d}:{seconds % 60:02d}" if seconds >= 3600 else f"{minutes:02d}:{seconds % 60:02d}"
