"""zmbench --display under a real X server, used by xdotool and seen by a grab of the screen."""

from __future__ import annotations

import os
import subprocess
import time
from pathlib import Path
from typing import Callable, Tuple

import pytest

from platen_bench import CONTROLS, Bench
from platen_bench.programs import find_bench
from xwindow import HEIGHT, WIDTH, Picture, XWindow, decoded

pytestmark = [
    pytest.mark.disc("Fog", "Rain", "Snow"),
    pytest.mark.bench(clock="running", display=True, launcher="active"),
    pytest.mark.usefixtures("monitor"),
]


@pytest.fixture
def playing(monitor: str, unit: Bench) -> Tuple[Bench, XWindow]:
    """A unit that plays its first song, and its window."""
    window = XWindow()
    unit.expect(page="music", title="Fog", within=30)
    return unit, window


def paused(unit: Bench) -> None:
    """Nothing moves any more."""
    unit.key("pause")
    unit.expect("pps.zelmar/disc/status.discstate", "==", 6, within=10)
    unit.settle()


def until_equal(wanted: Callable[[], Picture], seen: Callable[[], Picture], what: str) -> None:
    """The window follows the screen by a frame or two."""
    end = time.monotonic() + 10
    while wanted() != seen():
        assert time.monotonic() < end, what
        time.sleep(0.1)


def test_the_window_is_the_screen_pixel_for_pixel(playing: Tuple[Bench, XWindow]) -> None:
    unit, window = playing
    paused(unit)
    assert window.geometry()[2:] == (WIDTH, HEIGHT)
    until_equal(lambda: decoded(unit.picture()), window.picture, "the window shows another picture")
    before = window.picture()
    unit.theme("day")
    unit.settle()
    until_equal(lambda: decoded(unit.picture()), window.picture, "the window has not followed")
    assert window.picture() != before


def computed_by_a_driver(unit: Bench) -> int:
    """Nanoseconds that the threads of a driver for graphics cards have run, which computes where there is no card."""
    tasks = Path(f"/proc/{unit.pid}/task").iterdir()
    drivers = [task for task in tasks if "pipe" in (task / "comm").read_text()]
    return sum(int((task / "schedstat").read_text().split()[0]) for task in drivers)


def test_without_a_graphics_card_no_driver_of_one_computes_pictures(playing: Tuple[Bench, XWindow]) -> None:
    unit, window = playing
    paused(unit)
    until_equal(lambda: decoded(unit.picture()), window.picture, "the window shows another picture")
    before = computed_by_a_driver(unit)
    for theme in ("day", "night", "day"):
        unit.theme(theme)
        unit.settle()
        until_equal(lambda: decoded(unit.picture()), window.picture, "the window has not followed")
    assert computed_by_a_driver(unit) == before


def test_the_volume_keys_of_a_keyboard_turn_the_unit(playing: Tuple[Bench, XWindow]) -> None:
    unit, window = playing

    def until_volume(wanted: int) -> None:
        end = time.monotonic() + 10
        while unit.volume() != wanted:
            assert time.monotonic() < end, f"the volume is {unit.volume()}"
            time.sleep(0.1)

    window.key("XF86AudioLowerVolume")
    until_volume(95)
    window.key("XF86AudioRaiseVolume")
    until_volume(100)
    window.key("XF86AudioMute")
    unit.expect("pps.zelmar/audio/volume.mute", "==", 1, within=10)


def nearly(shot: Picture, seen: Picture, scale: float, left: int) -> bool:
    """Whether the picture is the shot at that scale, by the middles of flat places of 5 pixels or more."""
    checked = 0
    for y in range(10, HEIGHT - 10, 23):
        for x in range(10, WIDTH - 10, 23):
            around = {shot.pixel(x + dx, y + dy) for dx in (-2, 0, 2) for dy in (-2, 0, 2)}
            if len(around) == 1:
                there = seen.pixel(left + int((x + 0.5) * scale), int((y + 0.5) * scale))
                checked += 1
                if max(abs(one - other) for one, other in zip(there, shot.pixel(x, y))) > 2:
                    return False
    return checked > 200


def until_nearly(shot: Picture, seen: Callable[[], Picture], scale: float, left: int = 0) -> None:
    end = time.monotonic() + 10
    while not nearly(shot, seen(), scale, left):
        assert time.monotonic() < end, "the screen shows another picture"
        time.sleep(0.2)


def test_a_larger_window_shows_whole_multiples_and_bars(playing: Tuple[Bench, XWindow]) -> None:
    unit, window = playing
    paused(unit)
    window.resize(2 * WIDTH + 40, 2 * HEIGHT + 10)
    shot = decoded(unit.picture())
    # A hundredth above twice its size: drawn smoothly, with bars on both sides.
    tall = 2 * HEIGHT + 10
    bar = Picture(10, tall, bytes(3 * 10 * tall))
    until_equal(lambda: bar, lambda: window.picture().part(0, 0, 10, tall), "no black bar at the left")
    until_equal(lambda: bar, lambda: window.picture().part(2 * WIDTH + 30, 0, 10, tall), "none at the right")
    until_nearly(shot, window.picture, tall / HEIGHT, (2 * WIDTH + 40 - round(WIDTH * tall / HEIGHT)) // 2)
    window.resize(2 * WIDTH, 2 * HEIGHT)
    until_equal(lambda: shot.enlarged(2), window.picture, "not each pixel twice as large")
    window.resize(2 * WIDTH, 2 * HEIGHT + 100)
    until_equal(
        lambda: shot.enlarged(2), lambda: window.picture().part(0, 50, 2 * WIDTH, 2 * HEIGHT), "not in the middle"
    )
    assert set(window.picture().part(0, 0, 2 * WIDTH, 50).pixels) == {0}


def test_touches_arrive_where_they_were_made(playing: Tuple[Bench, XWindow]) -> None:
    unit, window = playing
    window.touch(*place_of(unit, "Pause"))
    unit.expect("pps.zelmar/disc/status.discstate", "==", 6, within=10)
    window.resize(WIDTH * 3 // 2, HEIGHT * 3 // 2 + 60)
    x, y = place_of(unit, "Next")
    window.touch(x * 3 // 2, y * 3 // 2 + 30)
    unit.expect(title="Rain", within=10)
    # Beside the screen there is nothing to touch.
    window.touch(x * 3 // 2, 10)
    window.touch(x * 3 // 2, HEIGHT * 3 // 2 + 55)
    time.sleep(0.3)
    unit.expect(title="Rain", within=1)


def place_of(unit: Bench, control: str) -> Tuple[int, int]:
    """The middle of a button that `tap` knows by that name."""
    return unit.main.item(CONTROLS[control]).rectangle.middle


def test_keys_media_keys_and_wheel(playing: Tuple[Bench, XWindow]) -> None:
    unit, window = playing
    window.key("n")
    unit.expect(title="Rain", within=10)
    window.key("XF86AudioNext")
    unit.expect(title="Snow", within=10)
    window.key("XF86AudioPrev")
    unit.expect(title="Rain", within=10)
    window.key("XF86AudioPlay")
    unit.expect("pps.zelmar/disc/status.discstate", "==", 6, within=10)
    window.key("XF86AudioPlay")
    unit.expect("pps.zelmar/disc/status.discstate", "==", 2, within=10)
    window.point(400, 200)
    subprocess.run(["xdotool", "click", "5"], check=True)
    unit.expect(title="Snow", within=10)
    window.key("ctrl+b")
    time.sleep(0.3)
    unit.expect(title="Snow", within=1)
    window.key("Up")
    unit.expect(page="list", within=10)


def test_closing_the_window_ends_the_bench(monitor: str, tmp_path: Path) -> None:
    words = [find_bench(None), "--runtime", str(tmp_path / "bench"), "--no-web", "--no-disc-service", "--display"]
    bench = subprocess.Popen(words, stdout=subprocess.PIPE, text=True)
    try:
        assert bench.stdout is not None and bench.stdout.readline() == "ready\n"
        window = XWindow()
        window.close()
        assert bench.wait(20) == 0
    finally:
        bench.kill()
        bench.wait()
        if bench.stdout:
            bench.stdout.close()


def test_without_a_display_it_says_so(tmp_path: Path) -> None:
    environment = {name: value for name, value in os.environ.items() if name not in ("DISPLAY", "WAYLAND_DISPLAY")}
    words = [find_bench(None), "--runtime", str(tmp_path / "bench"), "--no-web", "--display"]
    # A graphics card of its own would do: SDL is told to look for X alone.
    said = subprocess.run(words, env={**environment, "SDL_VIDEODRIVER": "x11"}, capture_output=True, text=True, timeout=60)
    assert said.returncode == 1 and said.stdout == ""
    assert said.stderr.startswith("zmbench: --display: no window can be opened: ") and "DISPLAY" in said.stderr


@pytest.mark.bench(page=True)
def test_page_and_window_show_the_same_at_once(playing: Tuple[Bench, XWindow]) -> None:
    unit, window = playing
    assert unit.address.startswith("http://127.0.0.1:")
    paused(unit)
    until_equal(lambda: decoded(unit.picture()), window.picture, "the window shows another picture")


def test_on_wayland_it_fills_the_desktop_and_takes_touches(wayland: str, unit: Bench) -> None:
    desktop = XWindow("--class", "weston")
    unit.expect(page="music", title="Fog", within=30)
    paused(unit)
    # 1280 x 800 leaves 16 rows above and below the screen at 1.6 times its size.
    shot = decoded(unit.picture())
    until_nearly(shot, lambda: desktop.picture().part(0, 16, 1280, 768), 1.6)
    x, y = place_of(unit, "Next")
    desktop.touch(round(x * 1.6), round(y * 1.6) + 16)
    unit.expect(title="Rain", within=10)
