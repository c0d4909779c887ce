"""A drive of this machine: discs that come and go by hand, by the button and by the unit."""

from __future__ import annotations

import os
import subprocess
import time
from pathlib import Path
from typing import Iterator

import pytest

from mock_drive import EBUSY, EJECT, LOCK_DOOR, NOT_READY, DISC_OK, MockDrive
from platen_bench import Bench
from platen_bench.discs import make_disc
from unit_with_drive import LOADING, STATE, disc, plays, until

PRESENT = "pps.zelmar/disc/device.disc"


@pytest.fixture(scope="session")
def image(tmp_path_factory: pytest.TempPathFactory) -> Path:
    file = tmp_path_factory.mktemp("image") / "disc.iso"
    folder = make_disc(["Fog", "Rain", "Snow"])
    subprocess.run(["genisoimage", "-quiet", "-J", "-r", "-V", "SONGS", "-o", str(file), str(folder)], check=True)
    return file


@pytest.fixture(scope="session")
def dvd(tmp_path_factory: pytest.TempPathFactory) -> Path:
    folder = tmp_path_factory.mktemp("dvd") / "menus"
    words = [Path(__file__).resolve().parent.parent / "disc" / "make-dvd", "menus", folder]
    subprocess.run(words, check=True, capture_output=True)
    return folder.with_suffix(".iso")


@pytest.fixture
def unit(drive: MockDrive) -> Iterator[Bench]:
    with Bench(drive="auto") as bench:
        yield bench


def test_a_disc_is_put_in_and_taken_out_by_hand(drive: MockDrive, unit: Bench, image: Path) -> None:
    until(unit, device="/dev/sr0", state="empty")
    drive.put_in(image)
    plays(unit)
    assert disc(unit)["path"] == "/dev/sr0" and disc(unit)["kind"] == "files: music"
    drive.take_out()
    until(unit, state="empty")
    unit.expect(PRESENT, "==", 0, within=20)
    drive.put_in(image)
    plays(unit)


def test_a_disc_that_is_inside_at_the_start_plays(drive: MockDrive, image: Path) -> None:
    drive.put_in(image)
    with Bench(drive="/dev/sr0") as unit:
        plays(unit)


def test_a_disc_put_in_by_hand_comes_to_the_front(drive: MockDrive, unit: Bench, image: Path) -> None:
    until(unit, state="empty")
    unit.app("pause")
    drive.put_in(image)
    plays(unit)


def test_the_unit_gives_the_disc_out(drive: MockDrive, unit: Bench, image: Path) -> None:
    drive.put_in(image)
    plays(unit)
    drive.asked.clear()
    unit.eject()
    until(unit, state="empty")
    assert EJECT in drive.asked
    assert drive.asked.index(LOCK_DOOR) < drive.asked.index(EJECT), "a locked tray stays shut"


def test_the_button_of_the_drive_ejects(drive: MockDrive, unit: Bench, image: Path) -> None:
    drive.put_in(image)
    plays(unit)
    drive.press_button()
    until(unit, state="empty")
    assert EJECT in drive.asked


def test_a_disc_that_does_not_come_out_plays_on(drive: MockDrive, unit: Bench, image: Path) -> None:
    drive.put_in(image)
    plays(unit)
    unit.key("next")
    plays(unit, "Rain")
    drive.refuses = EBUSY
    unit.eject()
    until(unit, text="/dev/sr0: the disc does not come out: Device or resource busy", state="loaded")
    plays(unit, "Rain")
    drive.refuses = None
    unit.eject()
    until(unit, state="empty")


def test_a_drive_that_vanishes_and_comes_back(drive: MockDrive, unit: Bench, image: Path) -> None:
    drive.put_in(image)
    plays(unit)
    drive.pull_out()
    unit.expect(PRESENT, "==", 2, within=20)
    until(unit, state="empty", device="none")
    drive.plug_in()
    until(unit, device="/dev/sr0")
    drive.put_in(image)
    plays(unit)


def test_a_disc_that_takes_20_seconds_to_spin_up(drive: MockDrive, unit: Bench, image: Path) -> None:
    until(unit, state="empty")
    drive.put_in(image, NOT_READY)
    begin = time.monotonic()
    unit.expect(STATE, "==", LOADING, within=10)
    until(unit, state="reading", text="the drive gets ready")
    while time.monotonic() < begin + 20:
        asked = time.monotonic()
        unit.screen()
        assert time.monotonic() < asked + 5, "the screen waits for the drive"
        unit.expect(STATE, "==", LOADING, within=1)
        time.sleep(1)
    drive.status = DISC_OK
    plays(unit)


def until_coloured(unit: Bench, *wanted: int) -> None:
    """The film has that colour, more or less, beside the menu's buttons."""
    shot = "crop=8:8:496:236,scale=1:1"
    end = time.monotonic() + 40
    while True:
        words = ["ffmpeg", "-v", "error", "-i", "-", "-vf", shot, "-f", "rawvideo", "-pix_fmt", "rgb24", "-"]
        seen = subprocess.run(words, input=unit.picture(now=True), capture_output=True, check=True).stdout
        if all(abs(each - right) < 40 for each, right in zip(seen, wanted)):
            return
        assert time.monotonic() < end, f"the colour is {list(seen)}"
        time.sleep(0.2)


# What stands between programs and the kernel ends those that look for a sound card, as the service does for a DVD.
@pytest.fixture
def silent(drive: MockDrive) -> Iterator[Bench]:
    with Bench(drive="auto", audio_device="none") as bench:
        yield bench


def test_a_dvd_is_played_from_its_menu(drive: MockDrive, silent: Bench, dvd: Path) -> None:
    unit = silent
    drive.put_in(dvd)
    unit.expect("pps.zelmar/disc/status.rootmenu", "==", "true", within=60)
    assert disc(unit)["path"] == "/dev/sr0" and disc(unit)["kind"].startswith("DVD-Video")
    until_coloured(unit, 0x20, 0x20, 0x60)
    unit.touch(240, 233)  # the second button: title 2
    until_coloured(unit, 0, 255, 255)
    unit.eject()
    until(unit, state="empty")
    unit.expect(PRESENT, "==", 0, within=20)
    assert EJECT in drive.asked


def test_sectors_that_cannot_be_read_are_passed_over(
    drive: MockDrive, image: Path, tmp_path: Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    """Each try takes the drive a while; meanwhile the screen answers, and then the song goes on."""
    song = next(make_disc(["Fog", "Rain", "Snow"]).glob("01*")).read_bytes()
    first = (image.read_bytes().find(song[:4096]) + len(song) // 8) // 2048
    failing = tmp_path / "failing_reads.so"
    source = Path(__file__).with_name("failing_reads.c")
    subprocess.run(["cc", "-shared", "-fPIC", "-o", str(failing), str(source)], check=True)
    tries = tmp_path / "tries"
    monkeypatch.setenv("LD_PRELOAD", f"{os.environ['LD_PRELOAD']}:{failing}")
    monkeypatch.setenv("BAD_SECTORS", f"{first} {first + 8} {tries}")
    drive.put_in(image)
    with Bench(drive="auto") as unit:
        plays(unit)
        end = time.monotonic() + 60
        while unit.pps.get("zelmar/disc/playing")["playtime"]["time"] < 15:
            asked = time.monotonic()
            unit.screen()
            assert time.monotonic() < asked + 5, "the screen waits for the drive"
            assert time.monotonic() < end, "the song does not go on"
            time.sleep(0.3)
        unit.expect(page="music", title="Fog", within=1)
    assert tries.stat().st_size > 1, "a place that cannot be read is tried once more"


def test_without_a_drive_one_line_says_so(drive: MockDrive) -> None:
    with Bench(drive="/dev/sr7") as unit:
        lines = [each.text for each in unit.log() if "disc drive" in each.text]
        assert lines == ["there is no disc drive /dev/sr7"]
        assert disc(unit)["device"] == "none"
