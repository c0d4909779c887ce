"""The overlay: bars, counters, the picture that answers a key, its number pad."""

from __future__ import annotations

import struct
from typing import TYPE_CHECKING

from pad import CAPTION, CLOSE, OK, PAD, Pad
from status_bar import clock_text, show_clock, temperature

if TYPE_CHECKING:
    from unit import Unit

DVD, VIDEO, PHOTO, VCD = 0, 3, 4, 5
_BARS = {DVD: 1, VIDEO: 2, PHOTO: 11, VCD: 4}
_STATE_TIMER, _OVERLAY_TIMER, _SOURCE_TIMER = 3, 4, 9
_SOURCES = {103: "zmradio", 105: "zmusb", 106: "zmbttel", 107: "zmnavi", 111: "zmasr", 118: "zmaux1", 119: "zmaircond"}
#: picture, text, whether it goes after three seconds
_TIPS = {
    1: (275, 163, True), 2: (263, 114, True), 3: (262, 113, True), 4: (272, 133, False), 5: (259, 112, False),
    6: (268, 129, True), 7: (258, 156, True), 8: (265, 155, True), 9: (267, 154, True), 10: (265, 164, True),
    11: (270, 156, True), 12: (264, 157, True), 29: (276, 161, True), 30: (276, 162, True),
}  # fmt: skip
_SPEEDS = ["x2", "x4", "x8", "x20"]


def single(value: float) -> float:
    """As a number of single precision."""
    return struct.unpack("f", struct.pack("f", value))[0]


def two_digits(now: int, total: int) -> str:
    if 1 <= total <= 99:
        if 1 <= now <= 99:
            return f"{now}/{total}"
        if now == 0:
            return f"--/{total}"
    return "--/--"


def unbounded(now: int, total: int) -> str:
    if total < 1:
        return "--/--"
    return f"{now}/{total}" if now >= 1 else f"--/{total}"


class Overlay:
    def __init__(self, unit: "Unit") -> None:
        self._unit = unit
        self.pages = unit.osd_pages
        self.clip = 255
        self.key = 0
        self.bar = 1
        self.pad = Pad(unit, self.pages)
        self.pad_counts = 2  # 1 tracks, 2 titles, 3 chapters
        self.pad_shown = True  # the start shows it
        self.last_state = 0
        self.next_chapter = 0
        self.pause_shown = False
        self.read_error = False

    # ---- windows ----

    def _show(self, window: int, shown: bool) -> None:
        if shown:
            dropped = self.pages.dropped_by(window)
            self.pages.show(window)
            for each in dropped:
                self._on_show(each, False)
        else:
            self.pages.hide(window)
        self._on_show(window, shown)

    def _on_show(self, window: int, shown: bool) -> None:
        self._unit.log(f"[DiscOsdView::OnShow] dwWndId={window},bShow={shown:d}")
        if window in (1, 2, 4, 11):
            self.pages.show_item(window, 101, False)
            self._counters()
            if window in (1, 4):
                self._times()
            self.show_time()
            self.show_bluetooth()
            self.show_mute()
            self.show_temperature()
        elif window == PAD:
            self.pad_shown = shown
        self._unit.log("[DiscOsdView::OnShow] end")

    def show_bar(self, shown: bool) -> None:
        self._show(self.bar, shown)

    def close_sources(self) -> None:
        self.pages.show_item(self.bar, 101, False)

    # ---- status bar ----

    def show_time(self) -> None:
        show_clock(self.pages, self.bar, self._unit.time)

    def show_bluetooth(self) -> None:
        value = self._unit.devices[86]
        if value in (0, 1, 2):
            self.pages.text(self.bar, 15, str(value))

    def show_mute(self) -> None:
        self.pages.show_item(self.bar, 17, self._unit.devices[6] == 255)

    def show_temperature(self) -> None:
        self.pages.text(self.bar, 20, temperature(self._unit.devices[7]))

    # ---- messages ----

    def message(self, code: int) -> None:
        unit = self._unit
        if code in (1000, 1021):
            self._play_state()
        elif code == 1004:
            self._answer_key()
        elif code in (1007, 1008, 1009):
            name = {1007: "DvdState", 1008: "AudioChannel", 1009: "PlaySpeed"}[code]
            unit.log(f"[DiscOsdView::OnUserMsg{name}]")
            if self.clip in (DVD, VCD):
                self._answer_key()
        elif code == 1011:
            self.clip = unit.record.media
            unit.log(f"[DiscOsdView::OnUserMessage]-------set m_nCurPlayType={self.clip}")
            self.hide_picture()
            self.bar = _BARS.get(self.clip, self.bar)
        elif code == 1015:
            self._counters()
            if self.clip in (DVD, VIDEO, VCD):
                self._answer_key()
        elif code == 1016:
            self._times()
        elif code == 1022:
            self.show_time()
        elif code == 1024 and unit.record.error in (32, 35):
            unit.log("[DiscView::OnUserMessage]-------READ_ERROR")
            self.read_error |= self.clip == DVD
        elif code == 1026:
            unit.log("[DiscOsdView::OnUserMessage]-------DISC_VMSG_MSGTIP")
            self._tip()

    def _counters(self) -> None:
        track = self._unit.record.track
        if self.clip == DVD:
            title, titles, chapter, chapters = (track[each] for each in ("title", "titles", "chapter", "chapters"))
            self._unit.log(f"[DiscOsdView::OnUserMsgTrackInfo]t:{title}/{titles}  c:{chapter}/{chapters}")
            self.pages.text(self.bar, 2152, two_digits(title, titles))
            self.pages.text(self.bar, 2154, two_digits(chapter, chapters))
        elif self.clip == VIDEO:
            self.pages.text(self.bar, 2152, unbounded(track["curmediaid"], track["curmediaids"]))
        elif self.clip == PHOTO:
            self.pages.text(self.bar, 2152, unbounded(track["mediaid"], track["mediaids"]))
        elif self.clip == VCD:
            self._unit.log(f"[DiscOsdView::OnUserMsgTrackInfo]----  track:{track['mediaid']}/{track['mediaids']}")
            self.pages.text(self.bar, 2152, two_digits(track["mediaid"], track["mediaids"]))

    def _times(self) -> None:
        if self.clip not in (DVD, VIDEO, VCD):
            return
        now, total = self._unit.record.time["time"], self._unit.record.time["tracktime"]
        self.pages.text(self.bar, 2067, clock_text(now))
        self.pages.text(self.bar, 2068, clock_text(total))
        percent = int(single(single(single(now) / single(total)) * 100)) if total else 100 if now > 0 else 0
        self.pages.progress(self.bar, 2069, percent)

    def _play_state(self) -> None:
        unit, track, state = self._unit, self._unit.record.track, self._unit.record.state
        if self.clip in (VIDEO, PHOTO):
            self.pages.text(self.bar, 2152, unbounded(track["curmediaid"], track["curmediaids"]))
        if self.clip in (DVD, VIDEO, VCD) and state == 0:
            self.pause_shown = True
            self._picture_of(259, 112)
            unit.timers.stop(_STATE_TIMER)
        if state != 0 and self.pause_shown:
            self.hide_picture()
            self.pause_shown = False
        if self.clip not in (DVD, VIDEO, PHOTO, VCD):
            return
        if state in (0, 2, 6, 10, 11):
            self.pages.show_item(self.bar, 6522, state != 2)
            self.pages.show_item(self.bar, 6523, state == 2)
        if state == 0 and self.clip == DVD and unit.record.error != 0:
            unit.command(131)
        if state == 2:
            if self.clip == DVD and self.read_error:
                self.read_error = False
                if self.next_chapter < track["chapters"]:
                    unit.command(183, self.next_chapter + 1)
                    self.next_chapter += 1
                elif self.next_chapter == track["chapters"]:
                    unit.command(184, track["title"] + 1)
                    self.next_chapter = 2
            else:
                self.next_chapter = track["chapter"] + 1

    def _tip(self) -> None:
        self._unit.log("[DiscOsdView::OnUserMsgMsgTip]")
        tip = self._unit.record.numbers["tip"]
        if self.clip not in (DVD, VIDEO, VCD):
            return
        if tip in _TIPS:
            picture, text, timed = _TIPS[tip]
            self._picture_of(picture, text)
        elif 18 <= tip <= 25:
            timed = False
            self._picture(256 if tip < 22 else 257, _SPEEDS[(tip - 18) % 4])
        else:
            return
        if timed:
            self._unit.timers.start(_STATE_TIMER, 3000)
        else:
            self._unit.timers.stop(_STATE_TIMER)

    # ---- the state picture ----

    def _picture(self, picture: int, text: str) -> None:
        self._unit.log(f"[DiscOsdView::ShowStateView]  nPicID={picture}")
        self.pages.text(self.bar, 2155, text)
        self._put(picture)

    def _picture_of(self, picture: int, text: int) -> None:
        self._unit.log(f"[DiscOsdView::ShowStateView2]  nPicID={picture}")
        self.pages.text_of(self.bar, 2155, text)
        self._put(picture)

    def _put(self, picture: int) -> None:
        self.pages.icon(self.bar, 2078, picture)
        self.pages.show_item(self.bar, 2078, True)

    def hide_picture(self) -> None:
        self.set_key(0)

    def set_key(self, key: int) -> None:
        """Which control is to be answered; the answer to the one before goes."""
        self._unit.timers.stop(_STATE_TIMER)
        self.pages.text(self.bar, 2155, " ")
        self.pages.icon(self.bar, 2078, 0)
        self.pages.show_item(self.bar, 2078, False)
        self.key = key

    def _answer_key(self) -> None:
        dvd = self._unit.record.dvd
        if self.key == 11:
            if not dvd["curaudiomode"] or not dvd["totalaudiomode"]:
                self._picture_of(275, 163)
            elif dvd["curaudiolan"] != "Blank":
                words = f"{dvd['audiotype']} {dvd['audiochannel']} {dvd['curaudiolan']}"
                self._picture(266, f"{dvd['curaudiomode']}/{dvd['totalaudiomode']} {words}")
        elif self.key == 12:
            if dvd["totalangle"] > 1:
                self._picture(277, f"{dvd['curangle']}/{dvd['totalangle']}")
            else:
                self._picture_of(275, 163)
        elif self.key == 18:
            number, total, language = dvd["cursubtitlenum"], dvd["totalsubtitle"], dvd["cursubtitlelan"]
            if number <= 79:
                self._picture_of(260, 160)
            else:
                self._picture(260, f"{number - 80}/{total}  {language}" if total else language)
        elif self.key == 69:
            channel = self._unit.record.numbers["channel"]
            answers = {0: (275, 163), 1: (266, 170), 2: (266, 169), 3: (266, 171), 4: (266, 171)}
            if channel in answers:
                self._picture_of(*answers[channel])
        else:
            return
        self._unit.timers.start(_STATE_TIMER, 3000)

    # ---- touches ----

    def click(self, window: int, control: int, state: int) -> None:
        self._unit.log(f"[DiscOsdView::OnClick]--nWndId={window},nCtrlId={control},nBtState={state}")
        self._unit.timers.start(_OVERLAY_TIMER, 10000)
        if window in (1, 4):
            self._disc_bar(control, state)
        elif window == 2:
            self._video_bar(control, state)
        elif window == 11 and state == 1:
            self._photo_bar(control)
        elif window == PAD and state == 1:
            self._pad_key(control)
        self.last_state = state

    def _skip(self, control: int, state: int) -> bool:
        if control not in (6521, 6524):
            return False
        unit, back = self._unit, control == 6521
        if state == 4:
            unit.beep()
            unit.log("long touch")
            unit.command(4 if back else 3)
        elif state == 1 and self.last_state != 4:
            unit.beep()
            unit.log("touch")
            self.next_chapter = unit.record.track["chapter"] + (-1 if back else 1)
            unit.command(2 if back else 1)
        return True

    def _common(self, control: int) -> bool:
        """What the bars of disc and video have alike."""
        unit = self._unit
        keys = {6522: (5, 5), 6523: (5, 5), 6503: (7, 7), 6504: (9, 9), 6551: (22, 22)}
        if control in keys:
            unit.beep()
            number, key = keys[control]
            unit.command(number)
            self.set_key(key)
        elif control == 6505:
            unit.beep()
            self.open_pad()
        elif control == 6525:
            unit.beep()
            unit.ask_for("zmeq")
        elif control != 2069:
            return False
        return True

    def _disc_bar(self, control: int, state: int) -> None:
        unit = self._unit
        if self._skip(control, state) or state != 1 or self._common(control):
            return
        silent = {6506, 6507, 5007, 5008}
        plain = {6555: (18, 18), 6556: (12, 12), 6557: (21, 21)}
        if control in silent:
            unit.beep()
        elif control == 3:
            unit.beep()
            unit.ask_for("zmhome")
        elif control == 6535:
            unit.beep()
            if self.clip in (VCD, DVD):
                unit.command(11)
                self.set_key(69 if self.clip == VCD else 11)
        elif control in plain:
            unit.beep()
            unit.command(plain[control][0])
            self.set_key(plain[control][1])
        elif control == 6558:
            unit.beep()
            self._picture_of(275, 163)
            unit.timers.start(_STATE_TIMER, 3000)
        elif control == 6561:
            unit.beep()
            unit.command(19)
        else:
            self._source_group(control)

    def _video_bar(self, control: int, state: int) -> None:
        if self._skip(control, state) or state != 1 or self._common(control):
            return
        if control == 4:
            self._unit.beep()
            self._unit.overlay_returns()
        elif control in (6506, 6603):
            self._unit.beep()
        else:
            self._source_group(control)

    def _photo_bar(self, control: int) -> None:
        commands = {6522: 5, 6523: 5, 6521: 2, 6524: 1, 6571: 20, 6574: 163}
        if control in commands:
            self._unit.beep()
            self._unit.command(commands[control])
        elif control == 4:
            self._unit.beep()
            self._unit.overlay_returns()
        else:
            self._source_group(control)

    def _source_group(self, control: int) -> None:
        unit = self._unit
        if control == 5:
            unit.beep()
            unit.timers.start(_SOURCE_TIMER, 5000)
            self.pages.show_item(self.bar, 101, True)
        elif control == 99:
            unit.beep()
            self.pages.show_item(self.bar, 101, False)
        elif control in _SOURCES:
            unit.beep()
            unit.ask_for(_SOURCES[control])

    # ---- number pad ----

    def _total(self) -> int:
        track = self._unit.record.track
        if self.clip == DVD:
            return track["chapters"] if self.pad_counts == 3 else track["titles"]
        return track["curmediaids"] if self.clip == VIDEO else track["mediaids"]

    def open_pad(self) -> None:
        self.pad_counts = 2 if self.clip == DVD else 1
        self.pad.begin(self._total(), 166 if self.clip == DVD else 168)
        self.pad.offer_keys()
        self._show(PAD, True)

    def close_pad(self) -> None:
        if self.pad_shown:
            self.pad.end()
            self._show(PAD, False)

    def _pad_key(self, control: int) -> None:
        self.pad.total = str(self._total())
        if self.pad.press(control, int(self.pad.total)):
            return
        if control == OK:
            self._unit.beep()
            if 1 <= self.pad.number <= int(self.pad.total):
                self._go_to(self.pad.number)
                self.pad.end()
                self._show(PAD, False)
        elif control == CLOSE:
            self._unit.beep()
            self.pad.entry = ""
            self.pad.show()
            self._show(PAD, False)
        elif control == CAPTION:
            self._unit.beep()
            if self.clip == DVD:
                self.pad_counts = 3 if self.pad_counts == 2 else 2
                self.pad.begin(self._total(), 167 if self.pad_counts == 3 else 166)
                self.pad.offer_keys()

    def _go_to(self, number: int) -> None:
        unit, track = self._unit, self._unit.record.track
        if self.pad_counts == 2:
            self.next_chapter = 1
            unit.command(184, number)
        elif self.pad_counts == 3:
            self.next_chapter = number
            unit.command(183, number)
        elif self.clip == VCD:
            unit.command(182, number, 0)
        elif self.clip == VIDEO and number != track["curmediaid"]:
            packed = number + (track["parentFolder"] << 16)
            unit.log(f"[DiscView::OnClickGotoWnd] wParam=0x{packed & 0xFFFFFFFF:x}")
            unit.command(182, packed, 3)
