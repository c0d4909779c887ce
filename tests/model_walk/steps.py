"""Random steps. Which ones are likely depends on where the model stands, so that a walk sees every page."""

from __future__ import annotations

import json
import random
from typing import TYPE_CHECKING, Any, Dict, List, Optional

from catalogue import MUSIC, PHOTO, VIDEO, Catalogue, File, Folder

if TYPE_CHECKING:
    from unit import Unit

Words = List[str]

KEYS = [17, 18, 20, 21, 22, 23, 44, 45, 46, 47, 48, 49, 50, 64, 65, 87, 88, 160, 161, 162, 163, 1, 999]
_SONGS = ["Fog", "Blue Sea", "Long Way", "Nachtfahrt", "夜", "Été", "Rain", "Fire", "Sleep", "Walk", "Home", "a.b"]
_KIND_OF = {2: MUSIC, 3: VIDEO, 4: PHOTO}
_UNSETTLED = (11, 12, 13, 14, 17)
_CONTROLS = [3, 4, 5, 99, 103, 500, 503, 504, 505, 506, 510, 511, 520, 523, 527, 531, 542, 545, 546, 1013, 2069, 2071, 2103,
             5002, 6003, 6503, 6504, 6505, 6508, 6521, 6524, 6525, 6535, 6545, 6551, 6555, 6556, 6557, 6558, 6561, 7777]  # fmt: skip


def random_catalogue(chance: random.Random) -> Catalogue:
    """Music, videos and photos in a few folders, among them an empty one and files whose names are not known yet."""
    files: List[File] = []
    folders: List[Folder] = []
    number = 0
    for folder in range(1, chance.randint(3, 9)):
        for kind in (MUSIC, VIDEO, PHOTO):
            if chance.random() < 0.25:
                continue
            count = chance.choice([0, 1, 3, 5, 7, 12])
            folders.append(Folder(folder, chance.randrange(folder), f"Folder {folder}", kind, 0, count))
            for _ in range(count):
                number += 1
                name = f"{chance.choice(_SONGS)} {number}" if chance.random() < 0.95 else ""
                files.append(File(number, folder, kind, name))
    return Catalogue(files, folders)


class Steps:
    def __init__(self, chance: random.Random) -> None:
        self._chance = chance
        self._planned: List[Words] = []

    def next(self, unit: "Unit") -> Words:
        if self._planned:
            return self._planned.pop(0)
        chance = self._chance
        if unit.main.state in _UNSETTLED and chance.random() < 0.35:
            self._planned = self._insertion()
            return self._planned.pop(0)
        kinds = [
            (self._report, 30), (self._touch, 34), (self._key, 12), (self._time_passes, 11), (self._vehicle, 6),
            (self._launcher, 3), (self._app_data, 2), (self._click, 3), (self._look, 1), (self._restart, 0.4),
        ]  # fmt: skip
        make = chance.choices([each for each, _ in kinds], [weight for _, weight in kinds])[0]
        return make(unit) or self._time_passes(unit)

    # ---- the disc service ----

    @staticmethod
    def _put(thing: str, line: str) -> Words:
        return ["pps", "put", f"zelmar/disc/{thing}", line]

    def _json(self, thing: str, name: str, value: Dict[str, Any]) -> Words:
        chance = self._chance
        encoding = "json"
        if chance.random() < 0.02:
            value.pop(chance.choice(list(value)))
        elif chance.random() < 0.02:
            value[chance.choice(list(value))] = None
        elif chance.random() < 0.01:
            encoding = ""
        return self._put(thing, f"{name}:{encoding}:{json.dumps(value, ensure_ascii=False)}")

    def _insertion(self) -> List[Words]:
        chance = self._chance
        kind = chance.choice([0, 1, 2, 2, 2, 3, 3, 4, 4, 5])
        steps = [self._put("device", "disc::1"), self._put("device", f"mixedtype::{chance.choice([2, 4, 8, 14, 14, 14])}")]
        steps.append(self._put("status", "discstate::1"))
        steps.append(self._put("device", f"mediatype::{kind}"))
        steps.append(self._put("device", f"videomode::{chance.choice([1, 1, 1, 2])}"))
        steps.append(self._put("status", f"discstate::{chance.choice([2, 2, 6])}"))
        return steps if chance.random() < 0.8 else steps[3:]

    def _report(self, unit: "Unit") -> Words:
        chance = self._chance
        kinds = [(self._track, 8), (self._numbers, 10), (self._play_time, 3), (self._tags, 2), (self._modes, 3),
                 (self._dvd, 2), (self._odd, 1), (self._state, 5), (self._device, 5)]  # fmt: skip
        return chance.choices([each for each, _ in kinds], [weight for _, weight in kinds])[0](unit)

    def _state(self, _unit: "Unit") -> Words:
        states = [2] * 12 + [6] * 5 + [0] * 3 + [10, 11, 1, 9, 20, 7]
        return self._put("status", f"discstate::{self._chance.choice(states)}")

    def _device(self, _unit: "Unit") -> Words:
        chance = self._chance
        values = {
            "mediatype": [0, 1, 2, 2, 3, 3, 4, 4, 5, 255], "mixedtype": [0, 2, 4, 6, 8, 14, 14, 14, 128],
            "mixedswitching": [0, 1], "errorstatus": [0, 0, 32, 32, 35, 34, 48, 144, -1], "videomode": [1, 1, 1, 2, 3, 0],
            "disc": [0, 1, 1, 1, 2, 3],
        }  # fmt: skip
        name = chance.choices(list(values), [3, 2, 0.5, 2, 5, 2])[0]
        return self._put("device", f"{name}::{chance.choice(values[name])}")

    def _numbers(self, unit: "Unit") -> Words:
        chance = self._chance
        folder = chance.choice([unit.main.lists.opened, 1, 2])
        values: Dict[str, List[Any]] = {
            "rootmenu": ["true", "false", "TRUE"], "parental": ["true", "false"],
            "updatedb": [folder, folder | 0x10000, 0x10000], "audiochannel": list(range(7)), "playspeed": [0, 1, 2],
            "keyinvalid": [0, 1], "msgtip": list(range(32)),
        }  # fmt: skip
        name = chance.choices(list(values), [2, 1, 0.7, 2, 2, 1, 4])[0]
        return self._put("status", f"{name}::{chance.choice(values[name])}")

    def _file(self, unit: "Unit") -> Optional[File]:
        kind = _KIND_OF.get(unit.main.playing, MUSIC)
        files = [each for each in unit.catalogue.files if each.kind == kind]
        return self._chance.choice(files) if files else None

    def _track(self, unit: "Unit") -> Words:
        chance = self._chance
        file = self._file(unit) if chance.random() < 0.85 else None
        number = chance.choice([0, 1, 2, 5, 12, 99, 100, 150])
        value = {
            "curmediaid": file.number if file else number, "curmediaids": chance.choice([0, 5, 12, 20, 120, 300]),
            "mediaid": chance.choice([0, 1, 3, 12, 99, 100]), "mediaids": chance.choice([0, 3, 12, 99, 100]),
            "chapter": chance.choice([0, 1, 3, 12]), "chapters": chance.choice([0, 1, 3, 12, 120]),
            "title": chance.choice([0, 1, 2, 99]), "titles": chance.choice([0, 2, 9, 99, 100]),
            "parentFolder": file.folder if file else chance.choice([0, 1, 2]),
        }  # fmt: skip
        return self._json("playing", "trackinfo", value)

    def _play_time(self, _unit: "Unit") -> Words:
        chance = self._chance
        times = [0, 1, 59, 60, 185, 3599, 3600, 3661, 40000]
        return self._json("playing", "playtime", {"time": chance.choice(times), "tracktime": chance.choice(times), "times": 0})

    def _tags(self, _unit: "Unit") -> Words:
        chance = self._chance
        texts = ["", "Fog", "Étude", "夜の歌", 'say "so"', "a:b"]
        return self._json("playing", "ID3", {each: chance.choice(texts) for each in ("title", "artist", "album")})

    def _modes(self, _unit: "Unit") -> Words:
        chance = self._chance
        value = {"repeat": chance.choice([0, 1, 2, 4, 8]), "shuffle": chance.choice([0, 1, 2, 4]), "scan": 0}
        return self._json("status", "playstate", value)

    def _dvd(self, _unit: "Unit") -> Words:
        chance = self._chance
        value: Dict[str, Any] = {
            "audiotype": chance.choice(["AC3", "DTS"]), "audiochannel": chance.choice(["2.0", "5.1"]),
            "curaudiolan": chance.choice(["English", "Blank", "blank"]), "curaudiomode": chance.choice([0, 1, 2]),
            "totalaudiomode": chance.choice([0, 2, 3]), "cursubtitlelan": chance.choice(["English", "Deutsch"]),
            "cursubtitlenum": chance.choice([0, 79, 80, 81, 83]), "totalsubtitle": chance.choice([0, 3]),
            "curangle": 1, "totalangle": chance.choice([0, 1, 2, 9]),
        }  # fmt: skip
        return self._json("status", "dvdstate", value)

    def _odd(self, _unit: "Unit") -> Words:
        return self._chance.choice(
            [
                self._put("status", "nothing::1"), self._put("device", "nothing::1"), self._put("playing", "name::Fog"),
                self._put("mpeginfo", "version::1.2"), self._put("status", "-playstate"), self._put("playing", "-playtime"),
                self._put("status", "playstate:json:[1"), self._put("playing", "ID3:json:{}"), self._put("status", "discstate::2x"),
                self._put("playing", "ID3::no JSON"),
            ]
        )  # fmt: skip

    # ---- the driver ----

    def _key(self, _unit: "Unit") -> Words:
        return ["key", str(self._chance.choice(KEYS))]

    def _touch(self, unit: "Unit") -> Optional[Words]:
        """Something that can be touched and is seen: the popup's buttons, if there is one."""
        chance = self._chance
        pages = unit.osd_pages if unit.osd_pages.visible and unit.osd_pages.shown and chance.random() < 0.7 else unit.main_pages
        if not pages.shown:
            return None
        window = pages.shown[-1]
        if pages is unit.main_pages and window == 17:
            at = (chance.randrange(10, 790), chance.randrange(130, 330)) if chance.random() < 0.8 else (30, 30)
            return self._maybe_held(*at)
        items = pages.windows[str(window)]["items"]
        popup = items.get("101")
        inside = popup["rect"] if popup and popup["visible"] else None
        places = []
        for item in items.values():
            x, y, width, height = item["rect"]
            touchable = item["kind"] in ("button", "list") and item["visible"] and item["enabled"] and width > 0
            middle = (x + width // 2, y + height // 2)
            within = inside is not None and all(
                inside[i] <= middle[i] < inside[i] + inside[i + 2] for i in (0, 1)
            )
            part_of_popup = item["rect"] != inside and item is not popup and self._is_source(items, item)
            if touchable and (inside is None) != part_of_popup and (inside is None or within or not part_of_popup):
                places.append(item)
        if not places:
            return None
        item = chance.choice(places)
        x, y, width, height = item["rect"]
        if item["kind"] == "list":
            row = chance.randrange(5)
            return self._maybe_held(x + width // 3, y + height * row // 5 + height // 10)
        if window == 6 and chance.random() < 0.1:
            return ["drag", str(x + width // 2), str(y + height // 2), str(chance.randrange(800)), str(chance.randrange(480))]
        return self._maybe_held(x + width // 2, y + height // 2)

    @staticmethod
    def _is_source(items: Dict[str, Any], item: Dict[str, Any]) -> bool:
        return any(items.get(str(each)) is item for each in (99, 103, 105, 106, 107, 111, 118, 119))

    def _maybe_held(self, x: int, y: int) -> Words:
        return ["touch", str(x), str(y)] + (["--hold", "900"] if self._chance.random() < 0.1 else [])

    def _click(self, unit: "Unit") -> Optional[Words]:
        """What the toolkit could report, also of a page that is not shown."""
        chance = self._chance
        view = chance.choice(["main", "osd"])
        pages = unit.main_pages if view == "main" else unit.osd_pages
        window = int(chance.choice(list(pages.windows)))
        return ["click", view, str(window), str(chance.choice(_CONTROLS)), str(chance.choice([0, 1, 1, 1, 4]))]

    def _app_data(self, unit: "Unit") -> Words:
        chance = self._chance
        number = chance.choice([-1, 0, 1, 2, 3, 12, 99, 400])
        texts = [
            f"--kb_val={number} --kb_ret=1", f"--kb_val={number}", f'--song="{chance.choice(_SONGS)}"',
            f'--song="{chance.choice(_SONGS)}"', '--song="" --singer="Rain"', '--song="No such song"', '--song=""', "--other=1",
        ]  # fmt: skip
        return ["appdata", chance.choice(texts)]

    # ---- the rest of the car ----

    def _time_passes(self, _unit: "Unit") -> Words:
        return ["clock", "advance", str(self._chance.choice([50, 50, 50, 100, 400, 3000, 5000, 8000, 10000, 15000, 40000]))]

    def _vehicle(self, _unit: "Unit") -> Words:
        chance = self._chance
        silent = ["--silent"] if chance.random() < 0.1 else []
        return chance.choice(
            [
                ["device", *silent, "2", chance.choice(["0", "0", "1", "1", "5", "fail"])],
                ["device", *silent, "2", chance.choice(["0", "1"])],
                ["device", *silent, "6", chance.choice(["0", "255", "1"])],
                ["device", *silent, "7", chance.choice(["-400", "-401", "870", "871", "-52", "0", "235"])],
                ["device", *silent, "86", chance.choice(["0", "1", "2", "3"])],
                ["time", chance.choice(["0:05", "12:00", "13:59", "23:05", "24:00", "7:05"]), chance.choice(["12", "24"])],
            ]
        )

    def _launcher(self, _unit: "Unit") -> Words:
        return ["app", self._chance.choice(["resume", "resume", "pause", "showonly", "hideonly"])]

    def _look(self, _unit: "Unit") -> Words:
        chance = self._chance
        return chance.choice([["language", chance.choice(["en", "de", "zh", "ar"])], ["theme", chance.choice(["day", "night"])]])

    def _restart(self, unit: "Unit") -> Words:
        """The application ends and comes back; reports of a disc service would reach it in no certain order: they go before."""
        gone = [
            ("status", ["discstate", "playstate", "rootmenu", "parental", "updatedb", "dvdstate", "audiochannel", "playspeed",
                        "keyinvalid", "msgtip", "nothing"]),
            ("device", ["disc", "mediatype", "mixedtype", "mixedswitching", "errorstatus", "videomode", "nothing"]),
            ("playing", ["trackinfo", "playtime", "ID3", "name"]), ("mpeginfo", ["version"]),
        ]  # fmt: skip
        del unit
        self._planned = [self._put(thing, f"-{name}") for thing, names in gone for name in names]
        self._planned += [["app", "quit"], ["app", "start"]]
        return self._planned.pop(0)
