"""An audio CD for the drive made of air: its table of contents, sound and texts, as the kernel gives them."""

from __future__ import annotations

import array
import math
import struct
from dataclasses import dataclass, field
from typing import Any, Dict, List, Optional, Set, Tuple

# Of linux/cdrom.h and scsi/sg.h.
READ_TOC_HEADER, READ_TOC_ENTRY, READ_AUDIO, MULTI_SESSION, SG_IO = 0x5305, 0x5306, 0x530E, 0x5310, 0x2285
LEAD_OUT = 0xAA
DATA_TRACK = 4  # of an entry's control bits
EIO, ENOTTY, EINVAL, ENOMEDIUM = 5, 25, 22, 123

SECTOR = 2352
SECTORS_A_SECOND = 75
RATE = 44100
SESSION_GAP = 11400  # sectors between the sound of one session and the first track of the next

Answer = Tuple[int, int]


def tone(frequency: int, seconds: int) -> bytes:
    """Sound of both sides, of a frequency that has whole waves in a second."""
    second = array.array("h")
    for at in range(RATE):
        sample = round(8000 * math.sin(2 * math.pi * frequency * at / RATE))
        second.extend((sample, sample))
    return second.tobytes() * seconds


def _sum(pack: bytes) -> int:
    total = 0
    for byte in pack:
        total ^= byte << 8
        for _ in range(8):
            total = (total << 1 ^ 0x1021 if total & 0x8000 else total << 1) & 0xFFFF
    return total ^ 0xFFFF


def cd_text(titles: List[str], performers: List[str]) -> bytes:
    """Of the disc and its tracks, in packs with the drive's header."""
    packs = b""
    for kind, texts in ((0x80, titles), (0x81, performers)):
        whole = b"".join(each.encode("latin-1") + b"\0" for each in texts)
        for at in range(0, len(whole), 12):
            track = whole[:at].count(b"\0")
            pack = bytes((kind, track, len(packs) // 18, 0)) + whole[at : at + 12].ljust(12, b"\0")
            packs += pack + struct.pack(">H", _sum(pack))
    return struct.pack(">HBB", len(packs) + 2, 0, 0) + packs


@dataclass
class Cd:
    """`begins` are the sectors where tracks begin, those in `data` without sound; sound lies from sector 0 on."""

    begins: List[int]
    end: int
    sound: bytes = b""
    first: int = 1
    last: Optional[int] = None  #: number of the last track, if it is another one
    data: Set[int] = field(default_factory=set)  #: numbers of tracks
    later_session: Optional[int] = None
    texts: bytes = b""
    bad: Set[int] = field(default_factory=set)  #: sectors that cannot be read
    read: List[Tuple[int, int]] = field(default_factory=list)  #: first sector and count of each try

    def answer(self, request: int, argument: Any) -> Answer:
        handlers = {
            READ_TOC_HEADER: self._header,
            READ_TOC_ENTRY: self._entry,
            MULTI_SESSION: self._session,
            READ_AUDIO: self._sound,
            SG_IO: self._texts,
        }
        handler = handlers.get(request)
        return handler(argument) if handler else (-1, ENOTTY)

    def _header(self, argument: Any) -> Answer:
        last = self.first + len(self.begins) - 1 if self.last is None else self.last
        argument.resolve(0, 2).update(0, bytes((self.first, last)))
        return 0, 0

    def _entry(self, argument: Any) -> Answer:
        entry = argument.resolve(0, 12)
        number = bytes(entry.retrieve())[0]
        places: Dict[int, int] = {self.first + at: begin for at, begin in enumerate(self.begins)}
        places[LEAD_OUT] = self.end
        if number not in places:
            return -1, EINVAL
        control = DATA_TRACK if number in self.data else 0
        entry.update(1, bytes((control << 4 | 1,)))
        entry.update(4, struct.pack("<i", places[number]))
        return 0, 0

    def _session(self, argument: Any) -> Answer:
        argument.resolve(0, 8).update(0, struct.pack("<iB", self.later_session or 0, self.later_session is not None))
        return 0, 0

    def _sound(self, argument: Any) -> Answer:
        asked = argument.resolve(0, 24)
        first, _, count = struct.unpack("<iB3xi", bytes(asked.retrieve())[:12])
        self.read.append((first, count))
        if first < 0 or not 0 < count <= SECTORS_A_SECOND:
            return -1, EINVAL
        sound = self.sound[first * SECTOR : (first + count) * SECTOR]
        if len(sound) < count * SECTOR or self.bad.intersection(range(first, first + count)):
            return -1, EIO
        asked.resolve(16, count * SECTOR).update(0, sound)
        return 0, 0

    def _texts(self, argument: Any) -> Answer:
        request = argument.resolve(0, 88)
        words = bytes(request.retrieve())
        size = struct.unpack_from("<I", words, 12)[0]
        command = bytes(request.resolve(24, words[8]).retrieve())
        if not self.texts or command[0] != 0x43 or command[2] != 5:
            request.update(64, b"\x02")  # the drive refuses the command
            return 0, 0
        given = self.texts[:size]
        request.resolve(16, size).update(0, given)
        request.update(72, struct.pack("<i", size - len(given)))
        return 0, 0


def three_tones(**rest: Any) -> Cd:
    """Tracks of 8 s each, of 441, 882 and 1323 Hz."""
    sound = b"".join(tone(frequency, 8) for frequency in (441, 882, 1323))
    return Cd([0, 600, 1200], 1800, sound, **rest)
