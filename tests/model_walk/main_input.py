"""Keys and touches of the main view."""

from __future__ import annotations

from typing import TYPE_CHECKING

if TYPE_CHECKING:
    from main_view import MainView

_APPLICATIONS = {
    103: ("zmradio", "null"), 105: ("zmusb", "null"), 106: ("zmbttel", "null"), 107: ("zmnavi", "null"),
    111: ("zmasr", "--type=ui"), 118: ("zmaux1", "null"), 119: ("zmaircond", "null"),
}  # fmt: skip
#: of hard keys: name in the log, command, key of the overlay, how often, whether the play page's timer begins anew
_SKIPS = {
    20: ("------OnKeyboard::K_NEXT", 1, 1, 1, True),
    21: ("------OnKeyboard::K_PREV---------", 2, 2, 1, True),
    22: ("------OnKeyboard::K_FASTF", 3, 3, 1, False),
    23: ("------OnKeyboard::K_FASTB", 4, 4, 1, False),
    64: ("------OnKeyboard::K_PRESET_UP---------", 2, 0, 2, True),
    65: ("------OnKeyboard::K_PRESET_DN", 1, 0, 1, True),
}
_PLAIN = {17: [(131, 0)], 18: [(130, 0)], 160: [(7, 1), (9, 4)], 161: [(9, 2)], 162: [(7, 4)]}
LIST_STATES, MUSIC, FILMS = (2, 3, 4), 5, (6, 7)


class Input:
    def __init__(self, main: "MainView") -> None:
        self._main = main
        self._unit = main.unit
        self.pressed_at = (0, 0)
        self.released_at = (0, 0)
        self._last_state = 0

    # ---- keys ----

    def key(self, code: int) -> None:
        unit, main = self._unit, self._main
        unit.log(f"[DiscView::OnKeyboard]: nKey={code}")
        if code in (45, 46, 49, 87, 88):
            unit.timers.start(5, 8000)
        if code in _SKIPS:
            name, command, answer, times, again = _SKIPS[code]
            unit.log(name)
            if again:
                unit.timers.start(5, 8000)
                main.lists.follow = True
            for _ in range(times):
                unit.command(command)
            if answer:
                unit.overlay.set_key(answer)
        elif code in _PLAIN:
            for command, value in _PLAIN[code]:
                unit.command(command, value)
        elif code == 163:
            unit.command(182, unit.record.track["curmediaid"], 0)
        elif code == 44 and not main.lists.none_of_type:
            main.open_pad()
        elif code == 50:
            self._return()
        elif code in (45, 46, 47, 48, 49, 87, 88):
            self._direction(code)

    def _direction(self, code: int) -> None:
        unit, main = self._unit, self._main
        if code == 87:
            unit.log("------OnKeyboard::K_ENCODER_INC")
        elif code == 88:
            unit.log("------OnKeyboard::K_ENCODER_DEC")
        if main.state in LIST_STATES:
            if code in (46, 87):
                main.lists.step_down()
            elif code in (45, 88):
                main.lists.step_up()
            elif code == 49:
                main.lists.enter()
        elif main.state == MUSIC and code == 45:
            main.lists.go_back()
        elif main.state == MUSIC and code == 46:
            unit.command(9, 0)
        elif main.state == MUSIC and code == 47:
            unit.command(7, 0)
        elif main.state == MUSIC and code == 48:
            unit.ask_for("zmeq")
        elif main.state == MUSIC or main.state in FILMS:
            skips = {49: 5, 87: 1, 88: 2}
            if code in skips:
                unit.command(skips[code])

    def _return(self) -> None:
        unit, main = self._unit, self._main
        if main.state in (2, 3, 4, 5, 11, 12, 13, 14) or (main.state == 6 and main.playing in (0, 5)):
            unit.ask_for("zmhome")
        elif main.state == 7:
            unit.timers.start(5, 8000)
            main.show_overlay(False)
            main.show_video(False)
            if 4 not in main.lists.complete:
                unit.command(186, main.playing, 1)
            main.lists.go_back()
        elif main.state == 10:
            unit.timers.start(5, 8000)
            main.lists.go_back()

    # ---- touches ----

    def click(self, window: int, control: int, state: int) -> None:
        self._unit.log(f"[DiscView::OnClick]--nWndId={window},nCtrlId={control},nBtState={state}")
        main = self._main
        if window == 6:
            self._play_page(control, state)
        elif state != 1:
            return
        elif window in (1, 22):
            if control == 3:
                self._home()
            else:
                self.source_group(control)
        elif window == 10:
            self._parking(control)
        elif window == 17:
            self._video_page()
        elif window == 20:
            main.pad_key(control)
        elif window in (24, 25, 27):
            self._unit.timers.start(5, 8000)
            {24: main.lists.click_files, 25: main.lists.click_folder, 27: main.lists.click_tracks}[window](control)

    def _home(self) -> None:
        self._unit.beep()
        self._unit.ask_for("zmhome")

    def _play_page(self, control: int, state: int) -> None:
        fast = control in (6521, 6524)
        if state == 4 and fast:
            self._unit.command(4 if control == 6521 else 3)
        elif state == 1 and fast:
            if self._last_state == 0:
                self._play_control(control)
        elif state == 1:
            self._play_control(control)
            across = self.released_at[0] - self.pressed_at[0]
            if control != 2069 and self.released_at[1] < 380 and abs(across) > 100:
                self._unit.beep()
                self._unit.command(2 if across > 0 else 1)
        self._last_state = state

    def _play_control(self, control: int) -> None:
        unit, main = self._unit, self._main
        commands = {6503: (7, 0), 6504: (9, 0), 6521: (2, 0), 6522: (5, 0), 6523: (5, 0), 6524: (1, 0)}
        if control == 3:
            self._home()
        elif control == 2069:
            unit.beep()
        elif control in commands:
            unit.beep()
            unit.command(*commands[control])
        elif control == 6508:
            unit.beep()
            unit.timers.start(5, 8000)
            main.lists.go_back()
        elif control == 6525:
            unit.beep()
            unit.ask_for("zmeq")
        else:
            self.source_group(control)

    def source_group(self, control: int) -> None:
        unit, main = self._unit, self._main
        if control == 5:
            unit.beep()
            main.pages.show_item(main.page, 101, True)
            unit.timers.start(9, 5000)
        elif control == 99:
            unit.beep()
            main.pages.show_item(main.page, 101, False)
        elif control in _APPLICATIONS:
            unit.beep()
            unit.ask_for(*_APPLICATIONS[control])

    def _parking(self, control: int) -> None:
        unit, main = self._unit, self._main
        if control in (3, 4):
            unit.beep()
            if main.playing == 4:
                main.show_overlay(False)
                main.show_video(False)
                unit.command(186, 4, 1)
                main.lists.go_back()
                unit.timers.start(5, 8000)
            else:
                unit.ask_for("zmhome")
        elif control == 2103:
            unit.beep()
            main.leave_parking_page()
        else:
            self.source_group(control)

    def _video_page(self) -> None:
        unit, main = self._unit, self._main
        unit.beep()
        if unit.record.root_menu and main.playing == 0:
            x, y = self.released_at
            unit.log(f"[DiscView::OnLButtonUp]--X={x},Y={y}")
            corner = x < 200 and y < 80
            self._show_bar(corner and not main.overlay_on)
            unit.command(188, x * 720 // 800, y)
        else:
            self._show_bar(not main.overlay_on)

    def _show_bar(self, shown: bool) -> None:
        self._main.show_overlay(shown)
        if not shown:
            self._unit.overlay.close_pad()
