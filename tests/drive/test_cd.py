"""Audio CDs in a drive of this machine: everything is as with the image of one."""

from __future__ import annotations

import array
import subprocess
import time
from pathlib import Path
from typing import Iterator, List

import pytest

from mock_cd import READ_AUDIO, RATE, SECTOR, SECTORS_A_SECOND, SESSION_GAP, Cd, cd_text, three_tones, tone
from mock_drive import DISC_OK, EJECT, NOT_READY, MockDrive
from platen_bench import Bench
from platen_bench.discs import make_disc
from unit_with_drive import EJECTING, ERROR, LOADING, STATE, disc, plays, until


@pytest.fixture
def heard(tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> Path:
    """The sound that the unit plays."""
    monkeypatch.setenv("ZM_SOUND", str(tmp_path / "heard"))
    return tmp_path / "heard"


@pytest.fixture
def unit(drive: MockDrive, heard: Path) -> Iterator[Bench]:
    with Bench(drive="auto") as bench:
        yield bench


def plays_from(unit: Bench, second: int) -> None:
    end = time.monotonic() + 60
    while unit.pps.get("zelmar/disc/playing")["playtime"]["time"] < second:
        assert time.monotonic() < end, "the time does not go on"
        time.sleep(0.1)


def tones(heard: Path) -> List[int]:
    """The tones that were heard, one after the other."""
    samples = array.array("h", heard.read_bytes()[: heard.stat().st_size // 4 * 4])[::2]
    found: List[int] = []
    step = RATE // 10
    for at in range(0, len(samples) - step, step):
        part = samples[at : at + step + 1]
        if max(part) < 1000:
            continue
        waves = sum(1 for one, two in zip(part, part[1:]) if one < 0 <= two)
        nearest = min((441, 882, 1323), key=lambda each: abs(each - waves * 10))
        if abs(nearest - waves * 10) <= 20 and (not found or found[-1] != nearest):
            found.append(nearest)
    return found


def until_heard(heard: Path, sound: bytes) -> None:
    """These bytes, not one more or less between them."""
    end = time.monotonic() + 60
    while not heard.exists() or sound not in heard.read_bytes():
        assert time.monotonic() < end, f"heard were {tones(heard) if heard.exists() else 'nothing'}"
        time.sleep(0.5)


def test_a_cd_is_played_track_by_track(drive: MockDrive, unit: Bench, heard: Path) -> None:
    until(unit, state="empty")
    cd = three_tones()
    drive.put_in_cd(cd)
    plays(unit, "Track 01")
    said = disc(unit)
    assert said["path"] == "/dev/sr0" and said["kind"] == "audio CD" and said["form"] == "CD in a drive"
    assert unit.pps.get("zelmar/disc/playing")["playtime"]["tracktime"] == 8
    until_heard(heard, cd.sound[5 * SECTOR : 599 * SECTOR])
    plays(unit, "Track 02")
    until_heard(heard, cd.sound[590 * SECTOR : 610 * SECTOR])
    unit.key("next")
    plays(unit, "Track 03")
    until_heard(heard, cd.sound[1201 * SECTOR : 1300 * SECTOR])
    assert tones(heard) == [441, 882, 1323]
    assert all(count <= SECTORS_A_SECOND and 0 <= first and first + count <= 1800 for first, count in cd.read)
    unit.eject()
    until(unit, state="empty")
    assert EJECT in drive.asked


def test_its_texts_are_shown(drive: MockDrive, unit: Bench) -> None:
    titles = ["Weather", "Fog over the bridge", "Rain", "Snow"]
    performers = ["Ann", "Ann", "Ann", "Bob"]
    drive.put_in_cd(three_tones(texts=cd_text(titles, performers)))
    plays(unit, "Fog over the bridge")
    unit.expect("pps.zelmar/disc/playing.ID3", "contains", "Weather", within=10)
    unit.key("next")
    plays(unit, "Rain")


def test_damaged_texts_cost_the_texts_alone(drive: MockDrive, unit: Bench) -> None:
    texts = cd_text(["Weather", "Fog", "Rain", "Snow"], ["Ann"] * 4)
    drive.put_in_cd(three_tones(texts=texts[:10] + b"?" + texts[11:]))
    plays(unit, "Track 01")
    assert any("/dev/sr0: CD-TEXT: pack 1: its check sum is wrong" in each.text for each in unit.log())


def test_sound_before_the_first_track_comes_last(drive: MockDrive, unit: Bench, heard: Path) -> None:
    sound = tone(1323, 5) + tone(441, 8) + tone(882, 8)
    drive.put_in_cd(Cd([375, 975], 1575, sound))
    plays(unit, "Track 01")
    unit.key("previous")
    plays(unit, "Hidden track")
    until_heard(heard, sound[10 * SECTOR : 300 * SECTOR])


def test_a_cd_with_sound_and_files_is_both(drive: MockDrive, unit: Bench, tmp_path: Path) -> None:
    begin = 600 + SESSION_GAP
    image = tmp_path / "files.iso"
    folder = make_disc(["Fog", "Rain"])
    words = ["genisoimage", "-quiet", "-J", "-r", "-V", "EXTRA", "-C", f"0,{begin}", "-o", str(image), str(folder)]
    subprocess.run(words, check=True)
    end = begin + image.stat().st_size // 2048
    cd = Cd([0, begin], end, tone(441, 8), data={2}, later_session=begin)
    drive.put_in_cd(cd, image)
    plays(unit, "Track 01")
    assert disc(unit)["form"] == "CD in a drive, files: CD in a drive, ISO 9660 with Rock Ridge"
    assert unit.pps.get("zelmar/disc/playing")["playtime"]["tracktime"] == 8, "what lies between sessions is no sound"
    unit.key("next")
    plays(unit, "Fog")
    unit.key("next")
    plays(unit, "Rain")


def test_a_sector_that_cannot_be_read_is_tried_again_and_silent(drive: MockDrive, unit: Bench, heard: Path) -> None:
    cd = three_tones(bad={150})
    drive.put_in_cd(cd)
    plays(unit, "Track 01")
    until_heard(heard, cd.sound[152 * SECTOR : 300 * SECTOR])
    until_heard(heard, cd.sound[20 * SECTOR : 148 * SECTOR])
    assert cd.read.count((150, 1)) == 2
    plays(unit, "Track 01")


def test_a_track_without_any_sound_is_skipped(drive: MockDrive, unit: Bench, heard: Path) -> None:
    cd = three_tones(bad=set(range(600, 1200)))
    drive.put_in_cd(cd)
    plays(unit, "Track 01")
    plays(unit, "Track 03")
    assert any("sector 600" in each.text for each in unit.log())
    until_heard(heard, cd.sound[1201 * SECTOR : 1300 * SECTOR])
    assert tones(heard) == [441, 1323]


def test_taken_out_while_it_plays(drive: MockDrive, unit: Bench) -> None:
    drive.put_in_cd(three_tones())
    plays(unit, "Track 01")
    drive.take_out()
    until(unit, state="empty")
    unit.expect("pps.zelmar/disc/device.disc", "==", 0, within=20)
    drive.put_in_cd(three_tones())
    plays(unit, "Track 01")
    drive.pull_out()
    unit.expect("pps.zelmar/disc/device.disc", "==", 2, within=20)
    until(unit, state="empty", device="none")


def test_ejected_while_a_read_hangs(drive: MockDrive, unit: Bench) -> None:
    drive.put_in_cd(three_tones())
    plays(unit, "Track 01")
    drive.hangs = True
    unit.key("next")
    end = time.monotonic() + 20
    while not any(client.get_request() == READ_AUDIO for client in drive.waiting):
        assert time.monotonic() < end, "nothing is read"
        time.sleep(0.05)
    asked = time.monotonic()
    unit.eject()
    unit.expect(STATE, "==", EJECTING, within=10)
    assert time.monotonic() < asked + 5, "the unit waits for the drive"
    time.sleep(1)
    drive.wake()
    until(unit, state="empty")
    assert EJECT in drive.asked


def test_a_cd_that_takes_its_time_to_spin_up(drive: MockDrive, unit: Bench) -> None:
    until(unit, state="empty")
    drive.put_in_cd(three_tones(), status=NOT_READY)
    until(unit, state="reading", text="the drive gets ready")
    unit.expect(STATE, "==", LOADING, within=10)
    time.sleep(3)
    drive.status = DISC_OK
    plays(unit, "Track 01")


def test_it_goes_on_where_it_was_left(drive: MockDrive, unit: Bench, heard: Path) -> None:
    drive.put_in_cd(three_tones())
    plays(unit, "Track 01")
    unit.key("next")
    plays(unit, "Track 02")
    plays_from(unit, 3)
    unit.eject()
    until(unit, state="empty")
    drive.put_in_cd(three_tones())
    plays(unit, "Track 02")
    assert unit.pps.get("zelmar/disc/playing")["playtime"]["time"] >= 2


SENSELESS = "/dev/sr0: the disc's table of contents makes no sense: "
HOSTILE = {
    "no track": (Cd([0], 600, first=3, last=1), "no track"),
    "an early end": (Cd([0, 600], 600), "the end of the disc at sector 600, its last track at sector 600"),
}


@pytest.mark.parametrize("name", HOSTILE)
def test_a_table_without_sense_is_refused(drive: MockDrive, unit: Bench, name: str) -> None:
    cd, reason = HOSTILE[name]
    until(unit, state="empty")
    drive.put_in_cd(cd)
    until(unit, state="error", text=SENSELESS + reason)
    unit.expect(STATE, "==", ERROR, within=10)
    assert not cd.read
    unit.eject()
    until(unit, state="empty")
