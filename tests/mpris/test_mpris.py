"""The player on the desktop's bus, driven by playerctl."""

from __future__ import annotations

import json
import re
import subprocess
import time
import urllib.request
from pathlib import Path
from typing import Callable, Iterator

import pytest

from platen_bench import Bench

PROJECT = Path(__file__).resolve().parent.parent.parent
STATE = "pps.zelmar/disc/status.discstate"


def ask(*words: str) -> str:
    done = subprocess.run(["playerctl", "-p", "platen", *words], capture_output=True, text=True, timeout=60)
    assert done.returncode == 0, f"playerctl {words}: {done.stderr}"
    return done.stdout.strip()


def until(found: Callable[[], object], wanted: object) -> None:
    end = time.monotonic() + 30
    while found() != wanted:
        assert time.monotonic() < end, f"it stays {found()!r}"
        time.sleep(0.1)


def meta(name: str) -> str:
    return ask("metadata", name)


def wire(interface: str, name: str) -> str:
    """A property as gdbus writes it."""
    words = ["gdbus", "call", "--session", "-d", "org.mpris.MediaPlayer2.platen", "-o", "/org/mpris/MediaPlayer2"]
    words += ["-m", "org.freedesktop.DBus.Properties.Get", interface, name]
    return subprocess.run(words, capture_output=True, text=True, timeout=60, check=True).stdout


def can(name: str) -> bool:
    return "true" in wire("org.mpris.MediaPlayer2.Player", name)


@pytest.fixture
def unit() -> Iterator[Bench]:
    from platen_bench.discs import make_disc

    with Bench(disc=make_disc(["Fog", "Rain", "Snow"]), mpris=True, launcher="active") as bench:
        bench.expect(page="music", title="Fog", within=40)
        bench.expect(STATE, "==", 2, within=40)
        yield bench


def test_what_plays_is_told(unit: Bench) -> None:
    until(lambda: ask("status"), "Playing")
    until(lambda: meta("xesam:title"), "Fog")
    assert meta("xesam:artist") == "The Testers" and meta("xesam:album") == "Test Disc"
    assert meta("xesam:trackNumber") == "1"
    until(lambda: round(int(meta("mpris:length")) / 1e6), 60)
    first = float(ask("position"))
    time.sleep(3)
    assert 2 <= float(ask("position")) - first <= 4.5


def test_what_plays_has_its_cover(unit: Bench) -> None:
    def cover() -> str:
        found = re.search(r"'mpris:artUrl': <'([^']*)'>", wire("org.mpris.MediaPlayer2.Player", "Metadata"))
        return found[1] if found else ""

    until(lambda: cover() != "", True)
    first = urllib.request.url2pathname(cover().replace("file://", "", 1))
    assert first == json.loads(unit.command("pps", "get", "zelmar/disc/cover").partition("json:")[2])["path"]
    assert Path(first).read_bytes().startswith(b"\x89PNG")
    unit.key("next")
    until(lambda: cover().rpartition("/")[2] not in ("", Path(first).name), True)
    unit.eject()
    until(cover, "")


def test_its_buttons_are_those_of_the_steering_wheel(unit: Bench) -> None:
    before = meta("mpris:trackid")
    ask("next")
    unit.expect(page="music", title="Rain", within=20)
    until(lambda: meta("xesam:title"), "Rain")
    assert meta("mpris:trackid") != before, "each item has its own"
    ask("previous")
    until(lambda: meta("xesam:title"), "Fog")
    ask("pause")
    unit.expect(STATE, "==", 6, within=20)
    until(lambda: ask("status"), "Paused")
    ask("play")
    unit.expect(STATE, "==", 2, within=20)
    ask("play-pause")
    until(lambda: ask("status"), "Paused")
    ask("play-pause")
    until(lambda: ask("status"), "Playing")
    ask("stop")
    unit.expect(STATE, "==", 0, within=20)
    until(lambda: ask("status"), "Stopped")


def test_seeking_is_heard_of(unit: Bench) -> None:
    ask("position", "40")
    until(lambda: 39 <= float(ask("position")) <= 50, True)
    ask("position", "20-")
    until(lambda: 15 <= float(ask("position")) <= 32, True)
    unit.expect("pps.zelmar/disc/playing.playtime.time", "<", 35, within=5)


def test_seeking_beyond_the_end_goes_to_the_next_song(unit: Bench) -> None:
    words = ["gdbus", "call", "--session", "-d", "org.mpris.MediaPlayer2.platen", "-o", "/org/mpris/MediaPlayer2"]
    seek = [*words, "-m", "org.mpris.MediaPlayer2.Player.Seek"]
    until(lambda: float(ask("position")) > 1, True)
    subprocess.run([*seek, str(2**63 - 1)], timeout=60, check=True)
    unit.expect(page="music", title="Rain", within=20)
    subprocess.run([*seek, "--", str(-(2**63))], timeout=60, check=True)
    unit.expect("pps.zelmar/disc/playing.playtime.time", "<", 5, within=20)
    unit.expect(page="music", title="Rain", within=5)


def test_loop_shuffle_and_volume_both_ways(unit: Bench) -> None:
    for loop, mode in (("Track", 8), ("None", 1), ("Playlist", 2)):
        ask("loop", loop)
        unit.expect("pps.zelmar/disc/status.playstate.repeat", "==", mode, within=10)
        until(lambda: ask("loop"), loop)
    ask("shuffle", "On")
    unit.expect("pps.zelmar/disc/status.playstate.shuffle", "!=", 0, within=10)
    until(lambda: ask("shuffle"), "On")
    ask("shuffle", "Off")
    until(lambda: ask("shuffle"), "Off")
    unit.expect("pps.zelmar/disc/status.playstate.shuffle", "==", 0, within=10)
    ask("volume", "0.3")
    until(lambda: unit.volume(), 30)
    unit.volume(80)
    until(lambda: float(ask("volume")), 0.8)


def test_it_can_what_it_says(unit: Bench) -> None:
    for name in ("CanGoNext", "CanGoPrevious", "CanPlay", "CanPause", "CanSeek"):
        until(lambda: can(name), True)
    unit.eject()
    for name in ("CanGoNext", "CanGoPrevious", "CanPlay", "CanPause", "CanSeek"):
        until(lambda: can(name), False)
    assert ask("status") == "Stopped"


def test_desktops_find_the_menu_entry(unit: Bench) -> None:
    entry = PROJECT / "deploy" / "desktop" / "org.platen.unit.desktop"
    assert entry.exists() and f"'{entry.stem}'" in wire("org.mpris.MediaPlayer2", "DesktopEntry")


def test_a_hundred_changes_are_followed(unit: Bench) -> None:
    """The desktop asks once and then believes the signals alone."""
    words = ["playerctl", "-p", "platen", "--follow", "metadata", "--format", "{{title}}"]
    with subprocess.Popen(words, stdout=subprocess.PIPE, text=True) as follower:
        assert follower.stdout
        assert follower.stdout.readline().strip() == "Fog"
        titles = ["Fog", "Rain", "Snow"]
        for number in range(1, 101):
            unit.key("next")
            wanted = titles[number % 3]
            end = time.monotonic() + 30
            while follower.stdout.readline().strip() != wanted:
                assert time.monotonic() < end, f"change {number}: not {wanted}"
        follower.terminate()


def test_without_a_bus_one_line_says_so(monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.delenv("DBUS_SESSION_BUS_ADDRESS")
    monkeypatch.delenv("XDG_RUNTIME_DIR", raising=False)
    with Bench(mpris=True) as unit:
        lines = unit.errors.strip().splitlines()
        assert lines == ["zmbench: no session bus: the desktop's controls do not reach the player"]
