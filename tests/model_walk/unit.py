"""The whole unit in the model: clock, vehicle, launcher, disc service's reports, and the two views."""

from __future__ import annotations

from collections import deque
from typing import Any, Callable, Deque, Dict, List, Optional, Set, Tuple

from catalogue import Catalogue, Row
from main_view import MainView
from overlay import Overlay
from pages import Texts, View
from record import Record

PARKING, MUTE, TEMPERATURE, BLUETOOTH = 2, 6, 7, 86


class Outcome:
    """What a step leads to, apart from the pages."""

    def __init__(self) -> None:
        self.view_log: List[str] = []
        self.monitor_log: List[str] = []
        self.worker_log: List[str] = []
        self.capture_log: List[str] = []
        self.video_log: List[str] = []
        self.posted_log: List[str] = []
        self.commands: List[str] = []
        self.captures: List[str] = []
        self.published: List[str] = []
        self.requests: List[Tuple[str, str, str]] = []


class Timers:
    """Periodic ones, on a clock that stands until it is advanced."""

    def __init__(self) -> None:
        self.now = 0
        self._order = 0
        self._due: Dict[int, Tuple[int, int, int]] = {}  # number: due, order, period

    def _next(self) -> int:
        self._order += 1
        return self._order

    def start(self, timer: int, period: int) -> None:
        self._due[timer] = (self.now + period, self._next(), period)

    def stop(self, timer: int) -> None:
        self._due.pop(timer, None)

    def runs(self, timer: int) -> bool:
        return timer in self._due

    def next_within(self, limit: int) -> Optional[int]:
        """Takes the earliest that is due until then."""
        if not self._due:
            return None
        timer = min(self._due, key=lambda each: self._due[each][:2])
        due, _, period = self._due[timer]
        if due > limit:
            return None
        self.now = max(self.now, due)
        self._due[timer] = (due + period, self._next(), period)
        return timer


class Lists:
    """The rows that the application holds of the catalogue, and its worker that fetches them."""

    _SHARED = {0: "music folders", 1: "music folders", 2: "video folders", 3: "video folders", 4: "photo folders",
               5: "photo folders", 6: "music", 7: "photo", 8: "video", 9: "music", 10: "search"}  # fmt: skip
    _SEARCHED = {6: 1, 7: 3, 8: 2, 9: 1}

    def __init__(self, unit: "Unit") -> None:
        self._unit = unit
        self._lists: Dict[str, List[Row]] = {each: [] for each in self._SHARED.values()}
        self.finished = False

    def new_disc(self) -> None:
        """Six of the seven are forgotten, the result of a search is not."""
        for name in self._lists:
            if name != "search":
                self._lists[name] = []
        self.finished = False

    def rows(self, source: int) -> List[Row]:
        return self._lists[self._SHARED[source]]

    def query(self, source: int, rows: List[Row], second: bool = False) -> None:
        """Hands a statement to the worker, which has done its work when everything is at rest again.

        second: in the place of the one that reads what is in a folder, behind its folders.
        """
        out = self._unit.out
        out.view_log.append(f"[DiscQDB::QueryPlayListCmd]--nFromType:{source}")
        out.worker_log.append("[DiscQDB::SetFinishFlag]--bFinish=0")
        name = "GetResultFolderFile" if second else "QueryPlayList"
        out.worker_log.append(f"[DiscQDB::{name}]--nRows={len(rows)}")
        out.worker_log.append("[DiscQDB::SetFinishFlag]--bFinish=1")
        self._lists[self._SHARED[source]] = rows
        self.finished = True

    def position(self, source: int, file: int, folder: int) -> int:
        """From 1; 0 if it is not there."""
        for index, row in enumerate(self.rows(source)):
            if (row.number, row.folder, row.kind) == (file, folder, self._SEARCHED[source]):
                return index + 1
        return 0


class Unit:
    """Steps go in by the methods of this class; pages and `out` tell what they lead to."""

    def __init__(self, screen: Dict[str, Any], catalogue: Catalogue, texts: Texts) -> None:
        self.catalogue = catalogue
        self.texts = texts
        self.devices: Dict[int, Optional[int]] = {PARKING: 1, MUTE: 0, TEMPERATURE: 200, BLUETOOTH: 0}
        self.told: List[int] = []
        self.time = (12, 0, 24)
        self.launcher = "resume"
        self.video_allowed_by_finger = False
        self.out = Outcome()
        self._published: Set[Tuple[str, str]] = set()
        self._start(screen)

    def _start(self, screen: Dict[str, Any]) -> None:
        self.main_pages = View(screen["main"], self.texts, [])
        self.osd_pages = View(screen["osd"], self.texts, [20])
        self.record = Record()
        self.timers = Timers()
        self.lists = Lists(self)
        self.video: Dict[str, Any] = self._no_video()
        self._later: Deque[Callable[[], None]] = deque()
        self.overlay = Overlay(self)
        self.main = MainView(self)
        self.timers.start(8, 40000)
        self.timers.start(7, 15000)

    def started(self) -> None:
        """What the start of an application ends with: the devices that a message was sent about, and the first resume."""
        for device in self.told:
            self.main.device_changed(device, self.devices[device] or 0)
        self.launcher = "resume"
        self.main.launcher_says(0, self.clock_ms)
        self._run_later()
        self.out = Outcome()

    def restart(self, screen: Dict[str, Any]) -> None:
        """The application was killed and has come back; the disc service has taken its reports back before."""
        self._start(screen)
        self.started()

    #: Milliseconds that a pause's distance is measured with; a walk puts in what was measured.
    clock_ms = 0

    @staticmethod
    def _no_video() -> Dict[str, Any]:
        return {"posted": False, "visible": False, "rect": [0, 0, 0, 0], "zorder": 0}

    # ---- what comes from outside ----

    def report(self, thing: str, name: str, encoding: str, value: str) -> None:
        """One attribute of "status", "device", "playing" or "mpeginfo"."""
        self._published.add((thing, name))
        self._parse(thing, name, encoding, value)

    def take_back(self, thing: str, name: str) -> None:
        """A deleted attribute has neither encoding nor value."""
        if (thing, name) in self._published:
            self._published.discard((thing, name))
            self._parse(thing, name, "", "")

    def _parse(self, thing: str, name: str, encoding: str, value: str) -> None:
        parse = {
            "status": self.record.status, "device": self.record.device, "playing": self.record.playing,
            "mpeginfo": self.record.decoder,
        }[thing]  # fmt: skip
        message = parse(name, encoding, value, self.out.monitor_log)
        if message is None:
            return
        if message in (1021, 1011, 1015, 1016):
            self.publish_media()
        if message in (1011, 1017):
            self.publish_text()
        self._message(message)
        self._run_later()

    def launcher_says(self, word: str) -> None:
        self.launcher = word
        self.main.launcher_says(["resume", "pause", "showonly", "hideonly"].index(word), self.clock_ms)
        self._run_later()

    def app_data(self, text: str, options: Dict[str, str], late: bool) -> None:
        self.main.app_data(text, options, late)
        self._run_later()

    def device(self, number: int, value: Optional[int], silent: bool) -> None:
        self.devices[number] = value
        if number == PARKING and value != 0:
            self.video_allowed_by_finger = False
        if not silent:
            if number not in self.told:
                self.told.append(number)
                self.told.sort()
            self.main.device_changed(number, value or 0)
        self._run_later()

    def set_time(self, hour: int, minute: int, style: int) -> None:
        self.time = (hour, minute, style)
        self.main.show_time()
        self.later(lambda: self._message(1022))
        self._run_later()

    def language(self, code: str) -> None:
        self.texts.language = code
        self.main_pages.translate()
        self.osd_pages.translate()

    def key(self, code: int) -> None:
        self.main.input.key(code)
        self._run_later()

    def click(self, view: str, window: int, control: int, state: int) -> None:
        shown = self.main_pages.shown if view == "main" else self.osd_pages.shown
        lifted = state == 1 and window in shown
        (self.main.input.click if view == "main" else self.overlay.click)(window, control, state)
        if lifted and (view, window, control) == ("main", 10, 2103) and self.devices[PARKING] in (0, None):
            self.video_allowed_by_finger |= self.launcher in ("resume", "showonly")
        self._run_later()

    def finger(self, view: str, window: int, control: int, held: bool, down: Tuple[int, int], up: Tuple[int, int], row: Optional[int]) -> None:
        """A whole touch or drag of an item that can be touched, or of a place where there is none (control 0)."""
        if view == "main":
            self.main.input.pressed_at = down
        if row is not None:
            self.main_pages.list(window).select(row)
        click = self.main.input.click if view == "main" else self.overlay.click
        pages = self.main_pages if view == "main" else self.osd_pages
        click(window, control, 0)
        if held:
            click(window, control, 4)
        if view == "main":
            self.main.input.released_at = up
        if held or window in pages.shown:
            self.click(view, window, control, 1)
        self._run_later()

    def advance(self, milliseconds: int) -> None:
        limit = self.timers.now + milliseconds
        while (timer := self.timers.next_within(limit)) is not None:
            self.main.timer(timer)
            self._run_later()
        self.timers.now = limit

    # ---- what the views use ----

    def log(self, text: str) -> None:
        self.out.view_log.append(text)

    def command(self, number: int, first: int = 0, second: int = 0) -> None:
        self.out.commands.append(f'zmcmd:json:{{"cmd":{number},"param1":{_signed(first)},"param2":{_signed(second)}}}')

    def beep(self) -> None:
        self.out.requests.append(("ToBeep", "", ""))

    def ask_for(self, application: str, data: str = "null") -> None:
        self.out.requests.append(("QueryLauncher", application, data))

    def ask_to_close(self) -> None:
        self.out.requests.append(("QueryCloseApp", "zmdisc", "null"))

    def publish_media(self) -> None:
        self.out.published.append(self.record.media_line())

    def publish_text(self) -> None:
        self.out.monitor_log.append("[DiscNowPlayingPPSModule::PublishPlayID3]")
        self.out.published.append(self.record.text_line())

    def later(self, what: Callable[[], None]) -> None:
        """Once the present event has been dealt with."""
        self._later.append(what)

    def overlay_returns(self) -> None:
        self.later(lambda: self._message(1020))

    def capture(self, on: bool) -> None:
        """Asks the video service for the film's window, or to take it away."""
        word = "on" if on else "off"
        self.log(
            f"[OperateVideoCapture]: bStart={on:d},strWndGroupId=1-PID-zelmar-disc,"
            "strWndId=zmdisc_video_win,strSrcName=zmdisc"
        )
        self.out.captures.append(
            f'zmvideo:json:{{"status":"{word}","wndgp_id":"1-PID-zelmar-disc","wnd_id":"zmdisc_video_win","src":"zmdisc"}}'
        )
        self.log("[OperateVideoCapture]: Ret=1")
        self.out.video_log.append("DiscVideoStatusPPSModule::ParsePPSAttr, attr_name:zmdisc")
        self.out.video_log.append("DiscVideoStatusPPSModule::ParsePPSAttr, attr_name:zmvideo")
        self.out.capture_log.append("[DiscView::OnCaptureStateChanged]state=0")
        if not on:
            self.video = self._no_video()
        elif not self.video["posted"]:
            self.video.update(posted=True, rect=[0, 0, 800, 480])
            self.later(self._video_posted)

    def _video_posted(self) -> None:
        self.out.posted_log += [
            "[DiscView::OnChildPost] strChild=zmdisc_video_win",
            "[DiscView::OnChildPost] ================== video view ======",
        ]
        self.video.update(zorder=2, visible=self.main.video_on)

    # ---- the inside ----

    @property
    def locked(self) -> bool:
        """No film is seen, whatever the application asks for."""
        return self.devices[PARKING] in (0, None) and not self.video_allowed_by_finger

    def film_seen(self) -> bool:
        see_through = self.main_pages.shown[-1:] == [17]
        return see_through and self.video["posted"] and self.video["visible"] and not self.locked

    def _message(self, code: int) -> None:
        self.main.message(code)
        self.overlay.message(code)

    def _run_later(self) -> None:
        while self._later:
            self._later.popleft()()


def _signed(value: int) -> int:
    value &= 0xFFFFFFFF
    return value - (1 << 32) if value & 0x80000000 else value
