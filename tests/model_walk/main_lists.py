"""The lists of the main view: files, folders, tracks, search; and what is played from them."""

from __future__ import annotations

from typing import TYPE_CHECKING, Dict, List, Optional, Set

from catalogue import Row

if TYPE_CHECKING:
    from main_view import MainView
    from pages import List_

FOLDERS = (0, 2, 4)
INSIDE = (1, 3, 5)
SEARCH = 10
_ICONS = {0: 138, 2: 138, 4: 138, 1: 140, 6: 140, 9: 140, 10: 140, 3: 139, 8: 139, 5: 137, 7: 137}
_PAGES = {0: 24, 2: 24, 4: 24, 6: 24, 7: 24, 8: 24, 10: 24, 1: 25, 3: 25, 5: 25, 9: 27}
PLAYING_MARK = 143
#: by browsed type: kind in the catalogue, list of all, list of folders, text for none, bit of the disc, list to return to
_KINDS = {2: (1, 6, 0, 71, 2, 0), 3: (2, 8, 2, 72, 4, 1), 4: (3, 7, 4, 70, 8, 2)}
_FILES = "SELECT fid,folderid,ftype,filename from files"
_ALL = {542: 2, 545: 3, 546: 4}


class Lists:
    def __init__(self, main: "MainView") -> None:
        self._main = main
        self._unit = main.unit
        self._pages = main.pages
        self._catalogue = main.unit.catalogue
        self.source = 6
        self.return_to = 0
        self.browsed = 255
        self.on_disc = 0
        self.opened = 1
        self.top = -1
        self.folder_top = -1
        self.folder_row = -1
        self.none_of_type = False
        self.follow = False
        self.complete: Set[int] = set()
        self._waiting = False
        self._waited = 0

    def control(self, source: int) -> Optional["List_"]:
        return self._pages.list(_PAGES[source]) if source in _PAGES else None

    # ---- queries ----

    def _query(self, operation: str, statement: str, rows: List[Row]) -> None:
        self._unit.log(f"[{operation}]--m_szListSql:{statement}")
        self._unit.lists.query(self.source, rows, second=operation == "OnQueryAudiosInFolder")
        self._waited = 0
        self._waiting = True
        self._unit.timers.start(2, 50)

    def query_all(self, browsed: int) -> None:
        kind, self.source = _KINDS[browsed][:2]
        name = {2: "OnQueryAudioList", 3: "OnQueryVideoList", 4: "OnQueryPictureList"}[browsed]
        equal = "=" if browsed == 2 else "=="
        self._query(name, f"{_FILES} WHERE ftype {equal} {kind} AND filename <> '' ORDER BY folderid, fid;", self._catalogue.all_of(kind))

    def query_tracks(self) -> None:
        self._pages.list(27).clear()
        cd = self._main.playing == 1
        # Without a CD the list's source is asked for as it was.
        self.source = 9 if cd else self.source
        statement = f"{_FILES} WHERE ftype == {cd:d} AND filename <> '' ORDER BY fid;"
        self._query("OnQueryCurAudioList", statement, self._catalogue.tracks(int(cd)))

    def _query_folders(self) -> None:
        self._pages.list(24).clear()
        kind = 1
        if self.browsed in _KINDS:
            kind, _, self.source = _KINDS[self.browsed][:3]
        rows = self._catalogue.folder_rows(kind)
        if self.source > 5:
            # Read as files, whose name is one column further.
            rows = [Row(each.number, each.folder, 0, "") for each in rows]
        self._query("OnQueryFolderList", f"select folderid,parentid,foldername from folders where ftype = {kind};", rows)

    def _query_inside(self, folder: int) -> None:
        kind = {3: 2, 4: 3}.get(self.browsed, 1)
        self.source = {1: 1, 2: 3, 3: 5}[kind]
        statement = f"{_FILES} WHERE ftype == {kind} AND folderid == {folder} AND filename <> '' ORDER BY fid;"
        self._query("OnQueryAudiosInFolder", statement, self._catalogue.inside(kind, folder))

    def look(self) -> None:
        """The timer that waits for the worker."""
        if not self._waiting:
            return
        unit = self._unit
        finished = unit.lists.finished
        if finished:
            self._waited = 0
            self._waiting = False
            unit.timers.stop(2)
        unit.log(f"[DiscView::FileQueryWait] m_nCurListFrom={self.source}")
        if unit.lists.rows(self.source):
            self.insert(self.source)
        else:
            unit.log("[DiscView::FileQueryWait] nCount=0")
        if not finished:
            self._waited += 1
            unit.log(f"[DiscView::FileQueryWait] not finish: m_nQueWaitTime={self._waited}")
            if self._waited > 5:
                self._waited = 0
                unit.timers.stop(2)
                unit.log("[DiscView::FileQueryWait] KillTimer")
        self._main.show(_PAGES[self.source])

    def insert(self, source: int) -> None:
        unit, log = self._unit, self._unit.log
        log(f"[DiscView::InsertUIListData]----UIListFrom={source}")
        control, rows = self.control(source), unit.lists.rows(source)
        assert control is not None
        if source == SEARCH:
            control.clear()
        start = len(control.rows)
        if len(rows) > start:
            log(f"[DiscView::InsertUIListData]----nCount={len(rows)}, nStartIndex={start},nInsertCount={len(rows) - start}")
            for index in range(start, len(rows)):
                control.append(f"{index + 1}  {rows[index].name}", _ICONS[source])
            for page in (24, 25):
                self._pages.show_item(page, 2003, False)
            self.mark(self.source)
        log("[DiscView::InsertUIListData]----end")

    # ---- the playing row ----

    def mark(self, source: int) -> None:
        if source in (6, 7, 8, 9):
            self._mark_file(source)
        else:
            self._mark_in_folder(source)

    def _mark_file(self, source: int) -> None:
        unit, track = self._unit, self._unit.record.track
        unit.log(f"[OnFunc_ListJump_Index]--nUiFrom:{source}")
        control = self.control(source)
        assert control is not None
        position = unit.lists.position(source, track["curmediaid"], track["parentFolder"])
        if not 1 <= position <= len(control.rows):
            return
        self._mark_only(control, position - 1)
        unit.log(f"[OnFunc_ListJump_Index]--SetCurSel:{position - 1}")
        if self.follow:
            self.follow = False
            control.select(position - 1)
            near = self.top >= 0 and self.top < position < self.top + 5
            control.scroll_to(self.top if near else position - 4)

    @staticmethod
    def _mark_only(control: "List_", row: int) -> None:
        for index in range(len(control.rows)):
            control.mark(index, 0)
        if row >= 0:
            control.mark(row, PLAYING_MARK)

    def _mark_in_folder(self, source: int) -> None:
        unit, track = self._unit, self._unit.record.track
        control, rows = self.control(source), unit.lists.rows(source)
        assert control is not None
        margin = 2 if source in INSIDE else 3
        folders = source in FOLDERS
        kind = 4 if folders else {1: 1, 3: 2, 5: 3, 10: 1}[source]
        for index in range(min(len(control.rows), len(rows))):
            row = rows[index]
            if folders:
                match = row.number == track["parentFolder"] == self.opened
            else:
                match = (row.number, row.folder) == (track["curmediaid"], track["parentFolder"])
            if not match or row.kind != kind:
                continue
            if not folders:
                self._mark_only(control, index)
            unit.log(f"[OnFunc_FolderListJump_Index]--SetCurSel:{index}")
            if self.follow:
                self.follow = False
                control.select(index)
                top = self.folder_top if folders else self.top
                control.scroll_to(top if top >= 0 and 0 <= index - top <= margin else index - margin)
            return
        self._mark_only(control, -1)
        if self.follow:
            self.follow = False
            if folders:
                control.select(self.folder_row)
                near = self.folder_top >= 0 and 0 <= self.folder_row - self.folder_top <= margin
                control.scroll_to(self.folder_top if near else self.folder_row - margin)
            else:
                control.select(0)

    # ---- keys ----

    def _moved_by_keys(self) -> Optional["List_"]:
        return None if self.source == SEARCH else self.control(self.source)

    def step_down(self) -> None:
        control = self._moved_by_keys()
        if control and 0 <= control.selected and control.selected + 1 < len(control.rows):
            control.select(control.selected + 1)
            control.scroll_to(control.top + (control.selected - control.top >= 5))

    def step_up(self) -> None:
        control = self._moved_by_keys()
        if control and control.selected >= 1:
            control.select(control.selected - 1)
            control.scroll_to(control.top - (control.selected < control.top))

    def enter(self) -> None:
        if self.source in INSIDE:
            self.click_folder(2000)
        elif self.source < SEARCH:
            self.click_files(2000)

    # ---- playing a row ----

    def play_row(self, what: int, source: int, line: int) -> None:
        """`what`: 1 music, 2 video, 3 a photo."""
        unit, main, track = self._unit, self._main, self._unit.record.track
        name = {1: "Audio", 2: "Video", 3: "Picture"}[what]
        unit.log(f"[DiscView::OnHandleUIListClick] nPlayType={what},nUiFrom={source},nLine={line}")
        rows = unit.lists.rows(source)
        file, folder = (rows[line].number, rows[line].folder) if 0 <= line < len(rows) else (-1, -1)
        unit.log(f"[DiscView::OnHandleUIListClick{name}] nUiFrom={source},nLine={line}")
        unit.log(f"[DiscView::OnHandleUIListClick{name}] nFid={file},nFolder={folder}")
        packed = file + (folder << 16)
        if what == 3:
            unit.command(182, file, folder)
            main.video_page(4)
            return
        if what == 1 and main.playing == 1:
            if file != track["mediaid"]:
                unit.command(182, file, 1)
        elif what == 2 or (file, folder) != (track["curmediaid"], track["parentFolder"]):
            unit.log(f"[DiscView::OnHandleUIListClickAudio] wParam=0x{packed & 0xFFFFFFFF:x}")
            unit.command(182, packed, 1 if what == 1 else 3)
        if what == 1:
            main.music_page()
        elif unit.record.video_mode == 1:
            main.video_page(3)

    def _open(self, source: int, line: int) -> None:
        unit = self._unit
        unit.log(f"[DiscView::OnOpenFolder] nListFrom={source},nLine={line}")
        rows = unit.lists.rows(source)
        if not 0 <= line < len(rows):
            return
        row = rows[line]
        if row.kind == 4:
            self.opened = row.number
            unit.command(186, self.browsed, self.opened)
            self._folder_page(self.opened)
        else:
            self.play_row({1: 1, 2: 2, 3: 3}[row.kind], {1: 1, 2: 3, 3: 5}[row.kind], line)
            self.return_to = {1: 3, 2: 4, 3: 5}[row.kind]

    def _folder_page(self, folder: int) -> None:
        pages, catalogue = self._pages, self._unit.catalogue
        if folder == 0:
            self._query_folders()
            self.show_menu(24, self.source)
        else:
            pages.list(25).clear()
            self._query_inside(folder)
            menu, text, kind = {2: (1, 71, 1), 3: (3, 72, 2), 4: (5, 70, 3)}.get(self.browsed, (1, 71, 2))
            found = catalogue.folder(kind, folder)
            if found and not found.folders and not found.files:
                self.show_menu(25, menu)
                pages.text_of(25, 2003, text)
                pages.show_item(25, 2003, True)
            pages.text(25, 1012, found.name if found else "")
            self.show_menu(25, self.source)
            self.opened = folder
        self.follow = True

    # ---- what stands around a list ----

    def fill_page(self, page: int) -> None:
        same = not self.none_of_type and self._main.playing == self.browsed
        self._pages.show_item(page, 2073, same)
        self.playing_title(page)
        icons = {3: 80, 4: 55, 2: 90}
        if self.browsed in icons:
            self._pages.icon(page, 2071, icons[self.browsed])
        self.show_tabs(page)

    def playing_title(self, page: int) -> None:
        kind = {2: 1, 3: 2, 4: 3}.get(self._main.playing)
        if kind:
            track = self._unit.record.track
            name = self._unit.catalogue.name(kind, track["curmediaid"], track["parentFolder"])
            self._pages.text(page, 2073, name or "unknown title")

    def show_tabs(self, page: int) -> None:
        if self.browsed in _KINDS:
            for browsed, tab in ((2, 503), (3, 504), (4, 505)):
                self._pages.state(page, tab, 3 if browsed == self.browsed else 2)

    def show_menu(self, page: int, source: int) -> None:
        pages = self._pages
        shown = {0: 542, 1: 542, 6: 542, 10: 542, 2: 545, 3: 545, 8: 545, 4: 546, 5: 546, 7: 546}.get(source)
        if shown is None:
            return
        for item in (542, 545, 546):
            pages.show_item(page, item, item == shown)
        pages.state(page, shown, 3 if source in (6, 7, 8) else 2)
        pages.state(page, 506, 3 if source <= 5 else 2)

    def remember_top(self) -> None:
        page = self._main.page
        if page == 24:
            top = self._pages.list(24).top
            if self.source in FOLDERS:
                self.folder_top = top
            else:
                self.top = top
        elif page in (25, 27):
            self.top = self._pages.list(page).top

    # ---- changing the list ----

    def change_to(self, browsed: int) -> None:
        """A tab: music, videos or photos of the disc."""
        unit, main, pages = self._unit, self._main, self._pages
        kind, source, _, none, bit, return_to = _KINDS[browsed]
        if browsed != 4:
            unit.log(f"[OnHandleChangeTo{'Music' if browsed == 2 else 'Video'}]--m_uiCurState:{main.state}")
        self.browsed = browsed
        if not self.on_disc & bit:
            self.none_of_type = True
            pages.list(24).clear()
            main.state = browsed
            self.source = source
            self.show_menu(24, source)
            pages.text_of(24, 2003, none)
            pages.show_item(24, 2003, True)
            main.show(24)
        elif main.state != browsed:
            self.none_of_type = False
            pages.text_of(24, 2003, 33)
            pages.show_item(24, 2003, True)
            if browsed == 4:
                unit.command(142, 4)
            else:
                unit.command(186, browsed, 1)
            pages.list(24).clear()
            self.query_all(browsed)
            main.state = browsed
            self.return_to = return_to
            self.show_menu(24, self.source)
            main.show(24)
            self.follow = True

    def go_back(self) -> None:
        """From a play page to its list."""
        unit, main = self._unit, self._main
        unit.log(f"[OnHandleUIReturnList]--m_nPlayListFrom:{self.return_to}")
        self.follow = True
        self.browsed = main.playing
        if self.return_to in (0, 1, 2):
            browsed = self.return_to + 2
            if browsed not in self.complete:
                unit.command(186, main.playing, 1)
            self._pages.list(24).clear()
            self.query_all(browsed)
            main.state = browsed
            self.show_menu(24, self.source)
        elif self.return_to in (3, 4, 5):
            self._folder_page(unit.record.track["parentFolder"])
            main.state = self.return_to - 1
        elif self.return_to == 6:
            self.query_tracks()
            main.state = 2
        else:
            self._pages.list(24).clear()
            self.source = SEARCH
            self.insert(SEARCH)
            main.state = 2
            self.show_menu(24, self.source)
            main.show(24)

    def catalogue_changed(self) -> None:
        unit, main = self._unit, self._main
        unit.log(
            f"[DiscView::OnUserMsgUpdateDb] m_nClickFolderId={self.opened},m_uiCurState={main.state},m_nCurListFrom={self.source}"
        )
        unit.log(f"[DiscView::OnUserMsgUpdateDb] m_nCurType={self.browsed}")
        value = unit.record.numbers["catalogue"]
        folder = value & 0xFFFF if value & 0x10000 else value
        if self.browsed not in _KINDS:
            return
        if value & 0x10000:
            self.complete.add(self.browsed)
        if main.state != self.browsed:
            return
        _, source, folders = _KINDS[self.browsed][:3]
        if self.source == source:
            self.query_all(self.browsed)
        elif self.source == folders + 1 and folder == self.opened:
            self._query_inside(folder)

    # ---- touches ----

    def click_files(self, control: int) -> None:
        unit, main, pages = self._unit, self._main, self._pages
        same = main.playing == self.browsed
        if control == 2000:
            unit.beep()
            self._row_of_files(pages.list(24))
        elif control == 2071:
            unit.beep()
            if not self.none_of_type and same:
                self._remember_files()
                self._to_playing()
        elif control in _ALL:
            unit.beep()
            if not self.none_of_type:
                self._all(_ALL[control])
        elif control == 506:
            unit.beep()
            if not self.none_of_type:
                self._to_folders()
        elif control == 6505:
            unit.beep()
            if not self.none_of_type and same:
                self._remember_files()
                main.open_pad()
        elif control == 6545:
            unit.beep()
            if not self.none_of_type:
                main.open_pad()
        else:
            self._common(24, control)

    def _remember_files(self) -> None:
        top = self._pages.list(24).top
        if self.source in FOLDERS:
            self.folder_top = top
        else:
            self.top = top

    def _row_of_files(self, control: "List_") -> None:
        line = control.selected
        self.top = control.top
        source = self.source
        if self.browsed == 1:
            self.play_row(1, 9, line)
        elif self.browsed in _KINDS and source == _KINDS[self.browsed][1]:
            self.play_row(self.browsed - 1, source, line)
            self.return_to = _KINDS[self.browsed][5]
        elif self.browsed in _KINDS and source == _KINDS[self.browsed][2]:
            self.opened = 1
            self._open(source, line)
            self.folder_row = line
            self.folder_top = control.top
        elif self.browsed == 2 and source == SEARCH:
            self.play_row(1, SEARCH, line)
            self.return_to = 7

    def click_folder(self, control: int) -> None:
        unit, main, pages = self._unit, self._main, self._pages
        unit.log(f"[DiscView::OnClickFolderListWnd] nCtrlId={control},m_nCurListFrom={self.source}")
        same = main.playing == self.browsed and not self.none_of_type
        if control == 2000:
            unit.beep()
            unit.log(f"[DiscView::OnClickFolderListWnd] m_nCurType={self.browsed},m_nCurListFrom={self.source}")
            line = pages.list(25).selected
            self.top = pages.list(25).top
            if self.browsed in _KINDS and self.source == _KINDS[self.browsed][2] + 1:
                self._open(self.source, line)
        elif control == 1013:
            unit.beep()
            if self.browsed in _KINDS:
                main.state = self.browsed
            self._folder_page(0)
        elif control == 506:
            unit.beep()
            self._to_folders()
        elif control in _ALL:
            unit.beep()
            self._all(_ALL[control])
        elif control == 2071:
            unit.beep()
            if same:
                self.top = pages.list(25).top
                self._to_playing()
        elif control == 6505:
            unit.beep()
            if same:
                self.top = pages.list(25).top
                main.open_pad()
        elif control == 6545:
            unit.beep()
            main.open_pad()
        else:
            self._common(25, control)

    def click_tracks(self, control: int) -> None:
        unit, main = self._unit, self._main
        tracks = self._pages.list(27)
        if control == 2000:
            unit.beep()
            if main.playing == 1:
                self.top = tracks.top
                self.play_row(1, 9, tracks.selected)
        elif control == 2071:
            unit.beep()
            self.top = tracks.top
            main.music_page()
        elif control in (542, 6003, 6004, 6005):
            unit.beep()
        elif control in (6505, 6545):
            unit.beep()
            main.open_pad()
        elif control == 3:
            unit.beep()
            unit.ask_for("zmhome")
        else:
            main.input.source_group(control)

    def _common(self, page: int, control: int) -> None:
        """What the pages of files and of a folder have alike."""
        unit, pages = self._unit, self._pages
        if control in (503, 504, 505):
            unit.beep()
            self.change_to(control - 501)
        elif control in (5002, 500):
            unit.beep()
            if control == 5002:
                self.show_tabs(page)
            pages.show_item(page, 501, control == 500)
            pages.show_item(page, 500, control == 5002)
        elif control in (6003, 6004, 6005):
            unit.beep()
        elif control == 3:
            unit.beep()
            unit.ask_for("zmhome")
        else:
            self._main.input.source_group(control)

    def _to_playing(self) -> None:
        main = self._main
        if main.playing in (1, 2):
            main.music_page()
        elif main.playing in (3, 4) and self._unit.record.state in (2, 6):
            main.video_page(main.playing)

    def _all(self, browsed: int) -> None:
        self._pages.list(24).clear()
        self.query_all(browsed)
        self._main.state = browsed
        self.show_menu(24, self.source)
        self.follow = True

    def _to_folders(self) -> None:
        if self.browsed in _KINDS:
            self._main.state = self.browsed
        self.opened = self._unit.record.track["parentFolder"]
        self._folder_page(0)

    # ---- numbers and names that others ask for ----

    def app_data(self, options: Dict[str, str], late: bool) -> None:
        unit, main = self._unit, self._main
        self._late = late
        if "kb_val" in options and "kb_ret" in options:
            unit.log(f"[OnAppsMessage]--APPSMSG_APPDATA--m_szSearch:{options['kb_val']}")
            self._number(int(options["kb_val"]))
        elif "song" in options or "singer" in options:
            main.voice = options.get("song") or options.get("singer", "")
            if main.playing != 2:
                main.voice_waits = bool(main.voice)
                self.change_to(2)
            elif main.voice:
                self.play_voice(main.voice)
            else:
                unit.command(131)

    def _number(self, number: int) -> None:
        unit, main = self._unit, self._main
        if not 0 < number <= unit.record.track["mediaids"]:
            return
        if main.playing in (1, 2):
            unit.command(182, number, 0)
            main.music_page()
        elif main.playing == 3:
            self.play_row(2, 8, number - 1)
            main.video_page(3)
        elif main.playing == 4:
            self.play_row(3, 7, number - 1)
            main.video_page(4)

    #: The worker may begin later than the view waits: then what was asked for is not found.
    _late = False

    def play_voice(self, name: str) -> None:
        unit, main, track = self._unit, self._main, self._unit.record.track
        unit.log("[DiscView::OnHandleVoicePlay]")
        before, self.source = self.source, SEARCH
        unit.log(
            "[OnQuerySongName]--m_szListSql:SELECT fid,folderid,ftype,filename from files WHERE ftype == 1 AND filename LIKE "
            f"'%%{name}%%' ORDER BY folderid, fid;"
        )
        unit.lists.query(SEARCH, unit.catalogue.matches(name))
        unit.log("[DiscView::OnHandleQueryResult]  i=N")
        rows = unit.lists.rows(SEARCH)
        if not rows or self._late:
            self.source = before
            unit.log("not found this song.")
            return
        self.browsed = 2
        if not self.on_disc & 2:
            return
        self.none_of_type = False
        file, folder = rows[0].number, rows[0].folder
        unit.log(f"[OnHandleVoicePlay]fileID={file},folderID={folder}")
        if (file, folder) != (track["curmediaid"], track["parentFolder"]):
            unit.command(182, file, folder)
        self.follow = True
        self.return_to = 7
        main.music_page()
