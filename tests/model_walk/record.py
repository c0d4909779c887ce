"""What the disc service has said, as the application is to remember it."""

from __future__ import annotations

import json
import re
from typing import Any, Dict, List, Optional

_STATUS_NUMBERS = {"updatedb": "catalogue", "audiochannel": "channel", "playspeed": "speed", "msgtip": "tip"}
_TRACK = ["curmediaid", "curmediaids", "mediaid", "mediaids", "chapter", "chapters", "title", "titles", "parentFolder"]
_DVD_TEXTS = ["audiotype", "audiochannel", "curaudiolan", "cursubtitlelan"]
_DVD_NUMBERS = ["curaudiomode", "totalaudiomode", "cursubtitlenum", "totalsubtitle", "curangle", "totalangle"]

_MEDIA_WORDS = {0: "dvd", 1: "cd", 2: "music", 3: "video", 4: "photo", 5: "vcd"}
_STATE_WORDS = {0: "stop", 1: "loading", 2: "play", 10: "play", 11: "play", 6: "pause", 9: "err_device", 20: "ejecting"}


def number(text: str) -> int:
    """The number that a text begins with; 0 without one."""
    found = re.match(r"\s*([+-]?\d+)", text)
    return int(found.group(1)) if found else 0


def members(encoding: str, value: str, numbers: List[str], texts: List[str]) -> Optional[Dict[str, Any]]:
    """All of them from a JSON value; nothing if only one is missing or of another kind, or it is no JSON."""
    if encoding != "json":
        return None
    try:
        data = json.loads(value)
    except ValueError:
        return None
    good = isinstance(data, dict)
    good = good and all(type(data.get(each)) is int for each in numbers)
    good = good and all(isinstance(data.get(each), str) for each in texts)
    return {each: data[each] for each in numbers + texts} if good else None


class Record:
    """The last known state of disc and player."""

    def __init__(self) -> None:
        self.connected = False
        self.disc = False
        self.media = 255
        self.mixed = 128
        self.error = 0
        self.video_mode = 0
        self.state = -1
        self.modes = {"repeat": -1, "shuffle": -1, "scan": -1}
        self.track: Dict[str, int] = dict.fromkeys(_TRACK, 0)
        self.time = {"time": 0, "tracktime": 0, "times": 0}
        self.tags = {"title": "", "artist": "", "album": ""}
        self.dvd: Dict[str, Any] = {**dict.fromkeys(_DVD_TEXTS, ""), **dict.fromkeys(_DVD_NUMBERS, 0)}
        self.root_menu = False
        self.numbers = dict.fromkeys(_STATUS_NUMBERS.values(), 0)
        self.playing_name = ""

    # Each gives the message that the views get, or nothing for an attribute that nobody knows, and what is logged.

    def status(self, name: str, encoding: str, value: str, log: List[str]) -> Optional[int]:
        log.append(f"DiscStatusPPSModule::ParsePPSAttr, attr_name:{name}")
        if name == "discstate":
            self.state = number(value)
        elif name == "playstate":
            self.modes.update(members(encoding, value, list(self.modes), []) or {})
        elif name == "rootmenu":
            self.root_menu = value == "true"
        elif name == "dvdstate":
            self.dvd.update(members(encoding, value, _DVD_NUMBERS, _DVD_TEXTS) or {})
        elif name in _STATUS_NUMBERS:
            self.numbers[_STATUS_NUMBERS[name]] = number(value)
        return {
            "discstate": 1021, "playstate": 1000, "rootmenu": 1004, "parental": 1005, "updatedb": 1006,
            "dvdstate": 1007, "audiochannel": 1008, "playspeed": 1009, "keyinvalid": 1010, "msgtip": 1026,
        }.get(name)  # fmt: skip

    def device(self, name: str, _encoding: str, value: str, log: List[str]) -> Optional[int]:
        log.append(f"DiscDevicePPSModule::ParsePPSAttr, attr_name:{name}")
        what = number(value)
        if name == "mediatype":
            self.media = what
        elif name == "disc":
            self.connected = what in (0, 1)
            self.disc = what == 1
            log.append(f"DiscConnected:{self.connected:d}")
            log.append(f"DiscExisting:{self.disc:d}")
        elif name == "mixedtype":
            self.mixed = what
        elif name == "mixedswitching":
            log.append(f"status.bMixedSwitching={what}=======")
        elif name == "errorstatus":
            log.append(f"status.nErrorStatus=0x{what & 0xFFFFFFFF:x}=======")
            self.error = what
        elif name == "videomode":
            log.append(f"status.nVideoMode={what}=======")
            self.video_mode = what
        return {
            "disc": 1013, "mediatype": 1011, "mixedtype": 1012, "mixedswitching": 1023, "errorstatus": 1024,
            "videomode": 1025,
        }.get(name)  # fmt: skip

    def playing(self, name: str, encoding: str, value: str, log: List[str]) -> Optional[int]:
        if name == "trackinfo":
            self.track.update(members(encoding, value, _TRACK, []) or {})
        elif name == "playtime":
            self.time.update(members(encoding, value, list(self.time), []) or {})
        elif name == "ID3" and encoding == "json":
            tags = members(encoding, value, [], list(self.tags))
            if tags is None:
                log.append("[DiscPlayingPPSModule::SubscribePlayID3] pps_decoder error")
            self.tags.update(tags or {})
        return {"trackinfo": 1015, "playtime": 1016, "ID3": 1017}.get(name)

    def decoder(self, name: str, _encoding: str, _value: str, log: List[str]) -> Optional[int]:
        log.append(f"DiscMpegInfoPPSModule::ParsePPSAttr, attr_name:{name}")
        return {"version": 1018}.get(name)

    # What the application tells the rest of the head unit.

    def media_line(self) -> str:
        word = _MEDIA_WORDS.get(self.media, "unknown")
        now = total = file = files = 0
        if word != "unknown":
            dvd = self.media == 0
            file, files = (self.track["chapter"], self.track["chapters"]) if dvd else (self.track["mediaid"], self.track["mediaids"])
            if word != "photo":
                now, total = self.time["time"], self.time["tracktime"]
        value = {
            "status": _STATE_WORDS.get(self.state, "idle"), "mediatype": word, "playtime": now, "totaltime": total,
            "filenum": file, "totalfilenum": files,
        }  # fmt: skip
        return "zmdisc_mediainfo:json:" + _text(value)

    def text_line(self) -> str:
        title = artist = album = ""
        if self.media in (1, 2):
            title = self.tags["title"] if self.media == 1 else self.playing_name
            artist, album = self.tags["artist"], self.tags["album"]
        return "zmdisc:json:" + _text({"name": "Disc", "info0": title, "info1": artist, "info2": album, "iconpath": ""})


def _text(value: Dict[str, Any]) -> str:
    return json.dumps(value, separators=(",", ":"), ensure_ascii=False)
