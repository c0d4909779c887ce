"""Films of the unit, looked at again with other programs."""

import os
import resource
import signal
import statistics
import subprocess
import time
from pathlib import Path
from typing import Callable, Iterator, List, Tuple

import pytest

from films import brightness, difference, frame, frames, gray, peaks, streams
from platen_bench import Bench, CommandFailed
from platen_bench.discs import Track, make_disc
from platen_bench.programs import find_ctl

PROJECT = Path(__file__).resolve().parents[3]


@pytest.fixture(scope="module")
def flashes(tmp_path_factory: pytest.TempPathFactory) -> Path:
    """A disc with a film that is white for a fifth of each second, with a tone as long as that."""
    folder = tmp_path_factory.mktemp("flashes")
    now = "lt(mod(t,1),0.2)*gte(t,1)"
    words = ["ffmpeg", "-nostdin", "-v", "error"]
    words += ["-f", "lavfi", "-i", "color=black:s=640x480:r=25:d=120"]
    words += ["-f", "lavfi", "-i", "sine=frequency=1000:sample_rate=44100:duration=120"]
    words += ["-filter_complex", f"[0:v]drawbox=c=white:t=fill:enable='{now}'[v];[1:a]volume='if({now},4,0)':eval=frame[a]"]
    words += ["-map", "[v]", "-map", "[a]", "-c:v", "mpeg4", "-q:v", "3", "-c:a", "pcm_s16le"]
    subprocess.run([*words, str(folder / "Flashes.avi")], check=True)
    return folder


@pytest.fixture
def unit() -> Iterator[Bench]:
    """A bench that the test plays the disc service of."""
    with Bench(disc_service=False, clock="stopped") as bench:
        yield bench


def plays(unit: Bench) -> Bench:
    unit.expect("pps.zelmar/disc/status.discstate", "==", 2, within=30)
    return unit


def filmer(unit: Bench) -> int:
    """The process that makes the film."""
    children = Path(f"/proc/{unit.pid}/task/{unit.pid}/children").read_text().split()
    [found] = [int(pid) for pid in children if Path(f"/proc/{pid}/comm").read_text() == "zmfilm\n"]
    return found


def eventually(condition: Callable[[], bool]) -> None:
    end = time.monotonic() + 20
    while not condition():
        assert time.monotonic() < end
        time.sleep(0.05)


def test_flash_and_beep_are_in_step(flashes: Path, tmp_path: Path) -> None:
    file = tmp_path / "flashes.webm"
    with plays(Bench(disc=flashes)) as unit:
        eventually(lambda: unit.video.visible)
        with unit.film(file) as film:
            time.sleep(10)
    assert film.seconds >= 10 and film.frames == frames(file)
    assert abs(film.frames + film.dropped - film.seconds * 30) < 2
    video, audio = streams(file)
    assert (video["codec_name"], video["width"], video["height"]) == ("vp8", 800, 480)
    assert (audio["codec_name"], audio["channels"]) == ("opus", 2)
    check_steps(file, film.seconds, 8)


def check_steps(file: Path, seconds: float, least: int) -> None:
    """Each flash of the film has its tone within 40 ms."""
    seen = brightness(file, 300, 190, 200, 100)
    white = [now[0] for before, now in zip(seen, seen[1:]) if before[1] <= 128 < now[1]]
    heard = peaks(file)
    tones = [ms / 1000 for ms in range(200, len(heard)) if heard[ms] > 1500 > max(heard[ms - 200 : ms])]
    apart = [min((tone - moment for tone in tones), key=abs) for moment in white if 0.5 < moment < seconds - 0.5]
    assert len(apart) >= least
    # A single one may have been composed late on a busy machine.
    assert abs(statistics.median(apart)) <= 0.040, apart
    assert sorted(abs(each) for each in apart)[len(apart) * 3 // 4] <= 0.060, apart


def test_however_short_a_film_has_a_picture(unit: Bench, tmp_path: Path) -> None:
    none, short, ended = tmp_path / "none.webm", tmp_path / "short.webm", tmp_path / "ended.webm"
    with pytest.raises(CommandFailed, match="--seconds 0: a film has to last longer than that"):
        unit.command("film", none, "--seconds", 0)
    assert not none.exists()
    unit.command("film", short, "--seconds", 0.001)
    assert frames(short) >= 1
    unit.command("film", ended)
    unit.command("film", "--stop")
    assert frames(ended) >= 1


def test_a_dvd_is_in_step_too(tmp_path: Path) -> None:
    disc, file = tmp_path / "dvd", tmp_path / "dvd.webm"
    subprocess.run([PROJECT / "tests" / "disc" / "make-dvd", "sync", disc], check=True, capture_output=True)
    with plays(Bench(disc=f"{disc}.iso")) as unit:
        eventually(lambda: unit.video.visible)
        unit.touch(400, 300)  # the menu's button, all of it: the first title
        time.sleep(1)
        with unit.film(file) as film:
            time.sleep(9)
    check_steps(file, film.seconds, 6)


def test_volume_and_mute_are_as_they_are_heard(tmp_path: Path) -> None:
    disc = make_disc([Track("Long", seconds=60)])
    file = tmp_path / "loud.webm"
    with plays(Bench(disc=disc)) as unit, unit.film(file):
        time.sleep(1.5)
        unit.volume(50)
        time.sleep(1.5)
        unit.device("mute", 255)
        time.sleep(1.5)
        unit.device("mute", 0)
        unit.volume(100)
        time.sleep(1.5)
    heard = peaks(file)
    full, half, muted, again = (max(heard[at : at + 500]) for at in (500, 2200, 3700, 5200))
    assert full > 1000 and muted <= 2 and abs(again - full) < full / 5
    assert abs(half - full / 8) < full / 30


class Times:
    """Moments of a film, which has just begun, whatever the machine is busy with meanwhile."""

    def __init__(self) -> None:
        self._begin = time.monotonic()

    def middle(self, seconds: float = 2) -> float:
        """Waits that long; the moment in the middle."""
        begin = time.monotonic()
        time.sleep(seconds)
        return (begin + time.monotonic()) / 2 - self._begin


def test_the_film_shows_the_screen_and_the_fingers_on_it(unit: Bench, tmp_path: Path) -> None:
    file = tmp_path / "fingers.webm"
    with unit.film(file):
        times = Times()
        before = times.middle()
        png = unit.picture()
        unit.press(200, 240)
        unit.move(600, 240)
        during = times.middle()
        unit.release(600, 240)
        after = times.middle(3) + 0.5
        unit.touch(100, 100)
        touched = times.middle()
    assert difference(frame(file, before), gray(png)) < 2

    def at(spot: List[Tuple[float, int]], moment: float) -> int:
        return min(spot, key=lambda each: abs(each[0] - moment))[1]

    finger = brightness(file, 590, 230, 20, 20)
    assert at(finger, during) > at(finger, before) + 40 and abs(at(finger, after) - at(finger, before)) <= 4
    # The way there, too, and a touch that is over at once.
    line = brightness(file, 390, 236, 20, 8)
    assert at(line, during) > at(line, before) + 40
    touch = brightness(file, 92, 92, 16, 16)
    assert max(value for moment, value in touch if abs(moment - touched) < 2) > at(touch, before) + 20


def test_while_the_car_drives_the_film_shows_what_the_screen_shows(flashes: Path, tmp_path: Path) -> None:
    file = tmp_path / "drive.webm"
    with plays(Bench(disc=flashes)) as unit:
        eventually(lambda: unit.video.visible)
        with unit.film(file):
            times = Times()
            parked = times.middle(3)
            unit.device("parking", 0)
            unit.expect(page="parking", within=10)
            time.sleep(1)
            png = unit.picture()
            driven = times.middle(4)
    flash = brightness(file, 300, 30, 200, 20)
    assert max(value for moment, value in flash if moment < parked + 1) > 200
    assert max(value for moment, value in flash if abs(moment - driven) < 2) < 100
    assert difference(frame(file, driven), gray(png)) < 2


def test_a_hidden_application_and_a_stopped_clock_are_filmed_in_real_time(unit: Bench, tmp_path: Path) -> None:
    file = tmp_path / "hidden.webm"
    with unit.film(file) as film:
        times = Times()
        at_first = times.middle()
        first_png = unit.picture()
        unit.theme("day")
        unit.settle()
        at_last = times.middle()
        last_png = unit.picture()
        unit.kill("app")
        time.sleep(0.5)
    first, last = gray(first_png), gray(last_png)
    assert abs(film.frames + film.dropped - film.seconds * 30) < 2 and film.seconds >= 2.5
    assert difference(first, last) > 10
    assert difference(frame(file, at_first), first) < 2 and difference(frame(file, at_last), last) < 2
    assert max(peaks(file)) <= 2  # nothing plays


def test_what_cannot_be_filmed_is_named(unit: Bench, tmp_path: Path) -> None:
    def refused(words: List[object], why: str, status: int = 1) -> None:
        with pytest.raises(CommandFailed, match=why) as error:
            unit.command("film", *words)
        assert error.value.status == status

    there = tmp_path / "there.webm"
    there.write_text("precious")
    refused([there], "there.webm: there is such a file; --overwrite replaces it")
    refused([tmp_path / "nowhere" / "a.webm"], "nowhere/a.webm: No such file or directory")
    refused([tmp_path / "a.mp4"], "a.mp4: films end with .webm")
    (tmp_path / "folder.webm").mkdir()
    refused([tmp_path / "folder.webm", "--overwrite"], "folder.webm: no plain file")
    refused(["--stop"], "no film is being made")
    refused([], "", 2)
    refused(["--stop", "--seconds", 3], "", 2)
    assert there.read_text() == "precious" and sorted(os.listdir(tmp_path)) == ["folder.webm", "there.webm"]
    with unit.film(there, overwrite=True):
        refused([tmp_path / "b.webm"], f"a film is being made already: {there}; .*--stop")
        time.sleep(0.5)
    assert frames(there) >= 10 and not (tmp_path / "b.webm").exists()
    # Told of once.
    refused(["--stop"], "no film is being made")


def test_a_length_is_waited_for_and_an_interruption_ends_it_in_order(unit: Bench, tmp_path: Path) -> None:
    zmctl = [find_ctl(None), "--runtime", unit.runtime, "film"]
    whole = subprocess.run([*zmctl, "whole.webm", "--seconds", "1.5"], cwd=tmp_path, capture_output=True, encoding="utf-8")
    assert whole.returncode == 0 and whole.stdout.startswith(f"{tmp_path}/whole.webm: 1.")
    assert 40 <= frames(tmp_path / "whole.webm") <= 50
    cut = subprocess.Popen([*zmctl, "cut.webm", "--seconds", "100"], cwd=tmp_path)
    time.sleep(2)
    cut.send_signal(signal.SIGINT)
    cut.wait()
    eventually(lambda: float(streams(tmp_path / "cut.webm")[0]["format"].get("duration", 0)) > 1)
    with unit.film(tmp_path / "next.webm"):
        pass


def test_what_was_filmed_is_kept_when_the_filming_process_is_killed(unit: Bench, tmp_path: Path) -> None:
    file = tmp_path / "killed.webm"
    with pytest.raises(CommandFailed, match="zmfilm was ended by: Killed; what was filmed until then is in .*killed.webm"):
        with unit.film(file):
            picture = gray(unit.picture())
            time.sleep(4)
            os.kill(filmer(unit), signal.SIGKILL)
            eventually(lambda: "zmfilm" in unit.errors)
    assert frames(file) > 60
    assert difference(frame(file, 1.5), picture) < 2
    with unit.film(tmp_path / "next.webm"):
        time.sleep(0.5)


def test_a_full_disk_ends_the_film_and_says_so(unit: Bench, tmp_path: Path) -> None:
    file = tmp_path / "full.webm"
    with pytest.raises(CommandFailed, match="the film ended early: .*full.webm: .*; what was filmed until then is in"):
        with unit.film(file):
            resource.prlimit(filmer(unit), resource.RLIMIT_FSIZE, (40_000, 40_000))
            for theme in ["day", "night"] * 100:
                unit.theme(theme)
                time.sleep(0.1)
                if "ended early" in unit.errors:
                    break
    assert os.path.getsize(file) <= 40_000 and frames(file) > 5


def test_a_film_outlives_the_bench_and_is_whole(tmp_path: Path) -> None:
    for name, end in (("ended", Bench.close), ("killed", lambda bench: os.kill(bench.pid, signal.SIGKILL))):
        file = tmp_path / f"{name}.webm"
        with Bench(disc_service=False) as unit:
            unit.begin_film(file)
            time.sleep(1.5)
            end(unit)
        # Its length is written last.
        eventually(lambda: float(streams(file)[0]["format"].get("duration", 0)) > 1)


def test_nobody_waits_for_a_film_that_is_not_written_and_what_is_missing_is_said(unit: Bench, tmp_path: Path) -> None:
    file = tmp_path / "slow.webm"
    with unit.film(file) as film:
        time.sleep(0.5)
        os.kill(filmer(unit), signal.SIGSTOP)
        begin = time.monotonic()
        for theme in ["day", "night"] * 10:
            unit.theme(theme)
            unit.settle()
        held = time.monotonic() - begin
        time.sleep(1)
        os.kill(filmer(unit), signal.SIGCONT)
        time.sleep(1)
    assert held < 10
    assert 30 * (held + 1) - 10 <= film.dropped and film.frames == frames(file)
    assert abs(film.frames + film.dropped - film.seconds * 30) < 2
