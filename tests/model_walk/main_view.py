"""The main view: its pages, what the disc service's reports change, timers, launcher and vehicle."""

from __future__ import annotations

from typing import TYPE_CHECKING, Dict

from main_input import Input
from main_lists import Lists
from overlay import single, unbounded
from pad import OK, PAD, CLOSE, CAPTION, Pad
from status_bar import clock_text, show_clock, temperature

if TYPE_CHECKING:
    from unit import Unit

LOADING_PAGE, MUSIC_PAGE, PARKING_PAGE, VIDEO_PAGE, ERROR_PAGE = 1, 6, 10, 17, 22
FILES_PAGE, FOLDER_PAGE, TRACKS_PAGE = 24, 25, 27

MUSIC_STATE, VIDEO_STATE, PHOTO_STATE, PAD_STATE, LOADING, EXIT, NO_DISC, BROKEN, WRONG_REGION = 5, 6, 7, 10, 11, 12, 13, 14, 17
LIST_STATES = (2, 3, 4)

DVD, CD, SONGS, FILMS, PHOTOS, VCD = 0, 1, 2, 3, 4, 5
_DISC_FILMS = (DVD, FILMS, VCD)

_REPEAT = {1: (161, 162), 2: (53, 54), 4: (85, 86), 8: (83, 84)}
_SHUFFLE = {0: (94, 95), 1: (165, 166), 2: (87, 88)}


class MainView:
    def __init__(self, unit: "Unit") -> None:
        self.unit = unit
        self.pages = unit.main_pages
        self.page = LOADING_PAGE
        self.state = LOADING
        self.playing = 255  # type of what plays
        self.video_allowed = True
        self.paused = False
        self.hidden = False
        self.state_before_pause = 0
        self.last_pause = unit.clock_ms
        self.source_requested = False
        self.seen_before = False
        self.voice_waits = False
        self.voice = ""
        self.overlay_on = False
        self.video_on = False
        self.state_behind_pad = 0
        self.pad = Pad(unit, self.pages)
        self.lists = Lists(self)
        self.input = Input(self)

    # ---- pages ----

    def show(self, page: int) -> None:
        self.pages.show(page)
        self._on_show(page)

    def hide(self, page: int) -> None:
        behind = self.pages.behind(page)
        self.pages.hide(page)
        self.unit.log(f"[DiscView::OnShow] dwWndId={page},bShow=0")
        if behind:
            self.show(behind)

    def _on_show(self, page: int) -> None:
        unit, pages = self.unit, self.pages
        unit.log(f"[DiscView::OnShow] dwWndId={page},bShow=1")
        self.page = page
        pages.show_item(page, 101, False)
        if page == MUSIC_PAGE:
            self._modes()
            self._track()
            self._times()
        elif page == PARKING_PAGE and self.playing in (DVD, PHOTOS, VCD):
            pages.show_item(page, 4, self.playing == PHOTOS)
            pages.show_item(page, 3, self.playing != PHOTOS)
        elif page == PAD:
            pages.show_item(page, 4, True)
            pages.show_item(page, 3, False)
        elif page == ERROR_PAGE:
            pages.text_of(page, 7034, 13007)
        elif page in (FILES_PAGE, FOLDER_PAGE):
            self.lists.fill_page(page)
        elif page == TRACKS_PAGE:
            pages.show_item(page, 2073, True)
            self.lists.mark(self.lists.source)
        self.show_mute()
        self.show_bluetooth()
        self.show_temperature()
        self.show_time()
        unit.log("[DiscView::OnShow] end")

    def _message_page(self, text: int, icon: int, busy: bool, state: int) -> None:
        self.pages.text_of(LOADING_PAGE, 7004, text)
        self.pages.icon(LOADING_PAGE, 7004, icon)
        self.pages.show_item(LOADING_PAGE, 7003, busy)
        self.show(LOADING_PAGE)
        self.state = state

    def _no_disc(self) -> None:
        self._message_page(34, 133, False, NO_DISC)
        self.unit.timers.start(6, 3000)

    def music_page(self) -> None:
        self.unit.log("[OnGotoAudioPlayPage]--------------")
        self.state = MUSIC_STATE
        self.show(MUSIC_PAGE)

    def video_page(self, kind: int) -> None:
        self.unit.log(f"[GotoVideoPage]  nType={kind}")
        if not self.paused:
            self.unit.capture(True)
        if kind in _DISC_FILMS:
            self.state = VIDEO_STATE
        elif kind == PHOTOS:
            self.state = PHOTO_STATE
        if self.video_allowed:
            self.show_video(True)
            self.show(VIDEO_PAGE)
        else:
            self.parking_page()

    def parking_page(self) -> None:
        self.unit.log("[OnGotoParkingView]")
        if self.overlay_on:
            self.show_overlay(False)
        self.show_video(False)
        self.show(PARKING_PAGE)

    def leave_parking_page(self) -> None:
        self.unit.log("[OnHideParkingView]")
        if self.overlay_on:
            self.show_overlay(False)
        self.show_video(True)
        self.show(VIDEO_PAGE)

    def obey_parking(self) -> None:
        if self.video_allowed:
            self.leave_parking_page()
        else:
            self.parking_page()

    def show_video(self, shown: bool) -> None:
        self.video_on = shown
        if self.unit.video["posted"]:
            self.unit.video["visible"] = shown
        self.unit.log(f"[DiscView::SetVisibleVideo] ===============m_bVideoIsVisible={shown:d}===========")

    def show_overlay(self, shown: bool) -> None:
        if shown:
            self.unit.timers.start(4, 10000)
        self.overlay_on = shown
        self.unit.osd_pages.visible = shown
        self.unit.overlay.show_bar(shown)
        self.unit.log(f"[DiscView::SetVisibleOsd] ===============m_bVideoOsd={shown:d}===========")

    # ---- status bar ----

    def show_mute(self) -> None:
        value = self.unit.devices[6] or 0
        self.unit.log(f"[DiscView::UpdateMuteStatus]-----status:{value}")
        self.pages.show_item(self.page, 17, value == 255)

    def show_bluetooth(self) -> None:
        self.unit.log("[DiscView::UpdateBTStatus]")
        self.pages.text(self.page, 15, str(self.unit.devices[86] or 0))

    def show_temperature(self) -> None:
        value = self.unit.devices[7]
        self.unit.log(f"[DiscView::UpdateCarTemp]-----status:{999 if value is None else value}")
        self.pages.text(self.page, 20, temperature(value))

    def show_time(self) -> None:
        show_clock(self.pages, self.page, self.unit.time)

    def device_changed(self, device: int, value: int) -> None:
        unit = self.unit
        if device == 2:
            unit.log(f"[OnAppsMessage] parking update:{value}")
            if (value != 0) != self.video_allowed:
                self.video_allowed = value != 0
                if self.state in (VIDEO_STATE, PHOTO_STATE):
                    self.obey_parking()
            return
        changes = {
            6: ("mute", self.show_mute, unit.overlay.show_mute),
            7: ("car temp", self.show_temperature, unit.overlay.show_temperature),
            86: ("BT", self.show_bluetooth, unit.overlay.show_bluetooth),
        }
        if device in changes:
            name, main, overlay = changes[device]
            unit.log(f"[OnAppsMessage] {name} update:{value}")
            main()
            overlay()

    # ---- timers ----

    def timer(self, timer: int) -> None:
        unit = self.unit
        if timer == 2:
            self.lists.look()
        elif timer == 3:
            unit.timers.stop(3)
            unit.overlay.hide_picture()
        elif timer == 4:
            unit.timers.stop(4)
            unit.overlay.close_pad()
            self.show_overlay(False)
        elif timer == 5:
            self._back_to_play_page()
        elif timer == 6:
            unit.timers.stop(6)
            if self.state in (NO_DISC, 15):
                unit.ask_to_close()
            elif self.state in (BROKEN, 16, WRONG_REGION):
                unit.command(13)
        elif timer == 7:
            unit.log("[DiscView::OnTimer] ENUM_TIMER_WAIT_DEVICESTATE")
            unit.timers.stop(7)
            if self.state == LOADING:
                self._no_disc()
        elif timer == 8:
            unit.log("[DiscView::OnTimer] ENUM_TIMER_LOADING")
            unit.timers.stop(8)
            if self.state == LOADING:
                self.show(ERROR_PAGE)
                self.state = BROKEN
                unit.timers.start(6, 3000)
        elif timer == 9:
            unit.timers.stop(9)
            self.pages.show_item(self.page, 101, False)
            unit.overlay.close_sources()

    def _back_to_play_page(self) -> None:
        lists = self.lists
        if self.state not in LIST_STATES or lists.none_of_type or self.playing != lists.browsed:
            return
        lists.remember_top()
        if self.playing in (CD, SONGS):
            self.music_page()
        elif self.unit.record.state in (2, 6) and self.video_allowed:
            self.video_page(self.playing)

    # ---- launcher ----

    def launcher_says(self, status: int, now: int) -> None:
        unit = self.unit
        unit.log(f"[OnAppsMessage] APPSMSG_APPSTATUS Param1={status}")
        name = ["RESUME", "PAUSE", "SHOWONLY", "HIDEONLY"][status]
        unit.log(f"[OnAppsMessage] =====================APPS_STATUS_{name}========================")
        if status == 0:
            self._resume()
        elif status == 3:
            self._hide_only()
        elif not self.paused:
            self._pause(now)

    def _resume(self) -> None:
        unit, state = self.unit, self.unit.record.state
        if self.paused:
            self.paused = False
            if self.state_before_pause in (2, 10, 11) and state != 2:
                unit.command(5)
                unit.log("[OnAppsMessage] -------------------- Play() -------------")
        self.hidden = False
        if self.playing in (DVD, VCD):
            if self.seen_before:
                unit.overlay.close_sources()
            if self.state == VIDEO_STATE:
                unit.capture(True)
                self.obey_parking()
        elif self.playing in (FILMS, PHOTOS) and self.state in (VIDEO_STATE, PHOTO_STATE):
            if self.seen_before:
                unit.overlay.close_sources()
            self.obey_parking()
            unit.capture(True)
        elif self.playing in (CD, SONGS, FILMS, PHOTOS) and self.seen_before:
            self.pages.show_item(self.page, 101, False)
        if not self.source_requested and unit.record.disc:
            self._request_source()
        if not self.seen_before:
            self.seen_before = True
            if state > 1:
                self._disc_state()
        unit.publish_media()
        unit.publish_text()

    def _pause(self, now: int) -> None:
        unit, state = self.unit, self.unit.record.state
        self.paused = True
        if self.state == LOADING:
            return
        unit.log(f"************* itv={now - self.last_pause} *************")
        if now - self.last_pause > 1200:
            self.state_before_pause = state
        self.last_pause = now
        self.hidden = False
        if state == 2:
            unit.command(5)
            unit.log("[OnAppsMessage] -------------------- pause() -------------")
        self.show_overlay(False)
        unit.capture(False)

    def _hide_only(self) -> None:
        if self.hidden:
            return
        self.hidden = True
        if self.paused:
            self.paused = False
            if self.state_before_pause == 2 and self.unit.record.state != 2:
                self.unit.command(131)
        self.show_overlay(False)

    def _request_source(self) -> None:
        self.unit.log("************* RequestSource on *************")
        self.source_requested = True
        self.unit.command(187, 1, 0)

    def app_data(self, text: str, options: Dict[str, str], late: bool) -> None:
        self.unit.log("[OnAppsMessage] APPSMSG_APPDATA")
        if text:
            self.unit.log(f"[OnAppsMessage]--APPSMSG_APPDATA--input:{text}")
            self.lists.app_data(options, late)

    # ---- the disc service's reports ----

    def message(self, code: int) -> None:
        unit = self.unit
        named = {1006: "UPDATEDB", 1011: "CLIPSTYPE", 1012: "MIXEDTYPE", 1013: "DEVICE", 1023: "MIXEDSWITCHING"}
        if code in named:
            unit.log(f"[DiscView::OnUserMessage]-------DISC_VMSG_{named[code]}")
        if code == 1000:
            self._modes()
        elif code == 1004 and unit.record.root_menu:
            self.show_overlay(False)
        elif code == 1006:
            self.lists.catalogue_changed()
        elif code == 1011:
            self.playing = self.lists.browsed = unit.record.media
            unit.log(f"[DiscView::OnUserMessage]------set m_nCurPlayType={self.playing}")
            self.lists.show_tabs(FILES_PAGE)
            self.lists.show_tabs(FOLDER_PAGE)
            self.lists.return_to = {SONGS: 0, FILMS: 1, PHOTOS: 2}.get(self.playing, self.lists.return_to)
        elif code == 1012:
            self.lists.on_disc = unit.record.mixed
            unit.log(f"[DiscView::OnUserMessage]------m_nMixedType=0x{unit.record.mixed & 0xFFFFFFFF:x}")
        elif code == 1013:
            self._device()
        elif code == 1015:
            self._track()
        elif code == 1016:
            self._times()
        elif code == 1017:
            self._tags()
        elif code == 1020:
            self._overlay_returned()
        elif code == 1021:
            self._disc_state()
        elif code == 1024:
            self._error()
        elif code == 1025:
            self._video_mode()

    def _device(self) -> None:
        unit = self.unit
        unit.log(f"[DiscView::OnUserMsgDeviceState]-------bDiscExisting={unit.record.disc:d}------")
        unit.timers.stop(7)
        if unit.record.disc:
            if not self.source_requested:
                unit.lists.new_disc()
                self._request_source()
        elif self.state == LOADING:
            self._no_disc()

    def _disc_state(self) -> None:
        unit, state, kind = self.unit, self.unit.record.state, self.playing
        unit.log(f"[OnUserMsgDiscState]  playStatus.nPlayStatus={state}")
        if kind in _DISC_FILMS and state == 0:
            if self.page != PARKING_PAGE and self.state == VIDEO_STATE:
                self.show_overlay(True)
        elif state in (2, 6) and self.state == LOADING:
            if state == 6:
                unit.command(131)
            if kind in (CD, SONGS):
                unit.timers.stop(8)
                self.music_page()
                self.lists.return_to = 6 if kind == CD else 0
            elif kind == PHOTOS:
                self.lists.return_to = 2
                unit.timers.stop(8)
                self.video_page(kind)
            elif kind in _DISC_FILMS and unit.record.video_mode == 1:
                self.lists.return_to = 1
                unit.timers.stop(8)
                self.video_page(kind)
        if state in (0, 6, 10, 11):
            self._play_button(True)
        elif state == 1:
            unit.timers.stop(6)
            self._message_page(33, 0, True, LOADING)
            unit.timers.start(8, 40000)
        elif state == 2:
            if self.voice_waits and kind == SONGS:
                self.voice_waits = False
                self.lists.play_voice(self.voice)
            self._play_button(False)
        elif state == 9:
            self._broken()
        elif state == 20:
            self._ejecting()

    def _play_button(self, shown: bool) -> None:
        if self.playing in (CD, SONGS):
            self.pages.show_item(MUSIC_PAGE, 6522, shown)
            self.pages.show_item(MUSIC_PAGE, 6523, not shown)

    def _broken(self) -> None:
        unit = self.unit
        unit.log("[DiscError]")
        for timer in (1, 2, 4):
            unit.timers.stop(timer)
        unit.capture(False)
        self.show_overlay(False)
        self.show(ERROR_PAGE)
        self.state = BROKEN
        unit.timers.start(6, 3000)

    def _ejecting(self) -> None:
        unit = self.unit
        unit.log("[DiscExit]")
        for timer in (1, 2, 3, 4):
            unit.timers.stop(timer)
        self._message_page(110, 134, False, EXIT)
        self.show_video(False)
        self.overlay_on = False
        unit.osd_pages.visible = False
        unit.capture(False)

    def _modes(self) -> None:
        if self.playing not in (CD, SONGS):
            return
        modes = self.unit.record.modes
        for button, pairs, mode in ((6504, _REPEAT, modes["repeat"]), (6503, _SHUFFLE, modes["shuffle"])):
            if mode in pairs:
                first, second = pairs[mode]
                for state, picture in ((2, first), (3, first), (1, second)):
                    self.pages.icon(MUSIC_PAGE, button, picture, state)
        if self.state == MUSIC_STATE and self.playing == SONGS:
            self._file_position()

    def _file_position(self) -> None:
        track = self.unit.record.track
        self.pages.text(MUSIC_PAGE, 2075, unbounded(track["curmediaid"], track["curmediaids"]))

    def _track(self) -> None:
        unit, track = self.unit, self.unit.record.track
        unit.log(
            f"[DiscView::OnUserMsgTrackInfo]----m_nCurListFrom={self.lists.source},track:{track['mediaid']}/{track['mediaids']}"
        )
        if self.state in LIST_STATES:
            self.lists.mark(self.lists.source)
            page = {0: 24, 4: 24, 6: 24, 7: 24, 10: 24, 1: 25, 5: 25}.get(self.lists.source)
            if page:
                self.lists.playing_title(page)
        elif self.state == MUSIC_STATE:
            if self.playing in (SONGS, FILMS, PHOTOS):
                self._file_position()
            if self.playing == SONGS:
                name = unit.catalogue.name(1, track["curmediaid"], track["parentFolder"])
                unit.record.playing_name = name
                self.pages.text(MUSIC_PAGE, 2065, name or "unknown title")
            elif self.playing == CD:
                now, total = track["mediaid"], track["mediaids"]
                text = "--/--"
                if 1 <= total <= 99 and 0 <= now <= 99:
                    text = f"{now or '--'}/{total}"
                self.pages.text(MUSIC_PAGE, 2075, text)
        unit.log("[DiscView::OnUserMsgTrackInfo]----end------")

    def _times(self) -> None:
        if self.state != MUSIC_STATE:
            return
        now, total = self.unit.record.time["time"], self.unit.record.time["tracktime"]
        self.pages.text(MUSIC_PAGE, 2067, clock_text(now))
        self.pages.text(MUSIC_PAGE, 2068, clock_text(total))
        percent = int(single(single(single(now) / single(total)) * 100)) if total >= 1 else 0
        self.pages.progress(MUSIC_PAGE, 2069, percent)

    def _tags(self) -> None:
        log, tags = self.unit.log, self.unit.record.tags
        log(f"[DiscView::OnUserMsgID3] title={tags['title']},artist={tags['artist']},album={tags['album']}")
        if self.playing == CD:
            for page, item in ((MUSIC_PAGE, 2065), (24, 2073), (25, 2073), (27, 2073)):
                self.pages.text(page, item, tags["title"] or "unknown title")
        for name, item in (("artist", 2061), ("album", 2063)):
            if tags[name]:
                log(f"[DiscView::OnUserMsgID3]{name}")
                self.pages.text(MUSIC_PAGE, item, tags[name])
                log(f"[DiscView::OnUserMsgID3]{name} SetItemText end")
            else:
                log(f"[DiscView::OnUserMsgID3] {name} empty")
                self.pages.text(MUSIC_PAGE, item, f"unknown {name}")
        log("[DiscView::OnUserMsgID3] end")

    def _overlay_returned(self) -> None:
        unit = self.unit
        unit.log(f"DISC_VMSG_OSDRETURN m_nCurPlayType={self.playing}")
        if self.playing not in (FILMS, PHOTOS):
            return
        unit.timers.start(5, 8000)
        self.overlay_on = False
        unit.osd_pages.visible = False
        self.show_video(False)
        if self.playing not in self.lists.complete:
            unit.command(186, self.playing, 1)
        self.lists.go_back()

    def _error(self) -> None:
        unit, track, error = self.unit, self.unit.record.track, self.unit.record.error
        names = {32: "READ", 35: "READ", 34: "SURFACE", 48: "TEMP", 144: "REGION_CODE"}
        if error in names:
            unit.log(f"[DiscView::OnUserMessage]-------{names[error]}_ERROR")
        if error == 144:
            unit.log("[RegionError]")
            self._message_page(13067, 125, False, WRONG_REGION)
            unit.timers.start(6, 3000)
        elif error in (32, 35) and self.playing in (CD, VCD):
            now, total = track["mediaid"], track["mediaids"]
            if now <= total:
                unit.command(182, now + 1 if now < total else 1, 0)
        elif error in (32, 35) and self.playing in (SONGS, FILMS, PHOTOS):
            now, total = track["curmediaid"], track["curmediaids"]
            if now < total:
                unit.command(182, now + 1, track["parentFolder"])
            elif now == total:
                unit.command(182, 1, now + 1)

    def _video_mode(self) -> None:
        unit, mode = self.unit, self.unit.record.video_mode
        unit.log(f"[DiscView::OnUserMsgVideoMode]-------videomode={mode}")
        if mode == 2:
            self.show_video(False)
            unit.capture(False)
        elif mode == 3 and self.playing == FILMS and self.state == VIDEO_STATE:
            unit.timers.start(5, 8000)
            self.show_overlay(False)
            self.show_video(False)
            if FILMS not in self.lists.complete:
                unit.command(186, 3, 1)
            self.lists.go_back()
        elif mode == 1 and self.playing in _DISC_FILMS and unit.record.state in (2, 6):
            unit.timers.stop(8)
            self.lists.return_to = 1
            self.video_page(self.playing)

    # ---- number pad ----

    def _pad_total(self) -> int:
        track = self.unit.record.track
        if self.playing == CD:
            return track["mediaids"]
        return track["curmediaids"] if self.playing in (SONGS, FILMS, PHOTOS) else 0

    def open_pad(self) -> None:
        self.pad.begin(self._pad_total(), 14122)
        if self.state != PAD_STATE:
            self.state_behind_pad = self.state
        self.state = PAD_STATE
        self.pad.offer_keys()
        self.show(PAD)

    def _close_pad(self) -> None:
        """The page behind comes back with its state; a film's page obeys a car that has started or stopped meanwhile."""
        self.pad.end()
        on_pad = self.state == PAD_STATE
        if on_pad:
            self.state = self.state_behind_pad
        self.hide(PAD)
        if on_pad and self.state in (VIDEO_STATE, PHOTO_STATE) and (not self.video_allowed or self.page == PARKING_PAGE):
            self.obey_parking()

    def pad_key(self, control: int) -> None:
        if self.pad.press(control, self._pad_total()) or control == CAPTION:
            return
        if control == OK:
            self.unit.beep()
            if 1 <= self.pad.number <= self._pad_total():
                self._go_to(self.pad.number)
                self._close_pad()
        elif control == CLOSE:
            self.unit.beep()
            self.unit.timers.start(5, 8000)
            self.lists.go_back()
        else:
            self.input.source_group(control)

    def _go_to(self, number: int) -> None:
        track = self.unit.record.track
        if self.playing == CD:
            self.lists.play_row(1, 9, number - 1)
        elif self.playing in (SONGS, FILMS, PHOTOS) and number != track["curmediaid"]:
            packed = number + (track["parentFolder"] << 16)
            self.unit.log(f"[DiscView::OnClickGotoWnd] wParam=0x{packed & 0xFFFFFFFF:x}")
            self.unit.command(182, packed, {SONGS: 1, PHOTOS: 2, FILMS: 3}[self.playing])
            if self.playing == SONGS:
                self.music_page()
            else:
                self.video_page(self.playing)
