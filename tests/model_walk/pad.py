"""The number pad, of which each view has one."""

from __future__ import annotations

from typing import TYPE_CHECKING

if TYPE_CHECKING:
    from pages import View
    from unit import Unit

PAD = 20
DISPLAY, CAPTION, BACK, OK, CLOSE = 510, 527, 523, 531, 4


def digit_of(control: int) -> int:
    """Of a digit's key; -1 for other keys."""
    return (control - 510) % 10 if 511 <= control <= 520 else -1


class Pad:
    def __init__(self, unit: "Unit", pages: "View") -> None:
        self._unit = unit
        self._pages = pages
        self.entry = ""
        self.total = ""

    @property
    def number(self) -> int:
        return int(self.entry or 0)

    def begin(self, total: int, caption: int) -> None:
        """An empty entry below that bound."""
        self.entry = ""
        self.total = str(total)
        self.show()
        self._pages.text_of(PAD, CAPTION, caption)

    def show(self) -> None:
        self._pages.text(PAD, DISPLAY, f"{self.entry or '_'}/{self.total}")

    def end(self) -> None:
        self.entry = ""
        self._pages.text(PAD, DISPLAY, "")

    def offer_keys(self) -> None:
        total = int(self.total or 0)
        self._unit.log(f"[DiscOsdView::DealInputNum] nInputNum={self.number}")
        self._unit.log(f"[DiscOsdView::DealInputNum] totalNum={total}")
        for digit in range(10):
            self._pages.enable(PAD, 510 + (digit or 10), 1 <= self.number * 10 + digit <= total)
        for key in (BACK, OK):
            self._pages.enable(PAD, key, self.number != 0)

    def press(self, control: int, bound: int) -> bool:
        """A digit or the key that takes one back; False for any other key."""
        digit = digit_of(control)
        if digit < 0 and control != BACK:
            return False
        self._unit.beep()
        if digit >= 0:
            wanted = self.number * 10 + digit
            if wanted <= bound:
                self.entry = str(wanted)
                self.show()
        elif not self.entry:
            return True
        else:
            self.entry = self.entry[:-1]
            self.show()
        self.offer_keys()
        return True
