"""Sound by real sound servers: what their loudspeaker plays is recorded and measured."""

from __future__ import annotations

import array
import os
import subprocess
import time
from pathlib import Path
from typing import Iterator, List

import pytest

from heard import RATE, TONE, Recording, listen, milliseconds
from platen_bench import Bench

SOURCE_OFF = 'zmcmd:json:{"cmd":187,"param1":0,"param2":0}'


@pytest.fixture(scope="session")
def tone(tmp_path_factory: pytest.TempPathFactory) -> Path:
    """A disc with one long, loud tone."""
    folder = tmp_path_factory.mktemp("tone")
    source = f"sine=frequency={TONE}:sample_rate={RATE}:duration=300,volume=4"
    words = ["ffmpeg", "-nostdin", "-v", "error", "-f", "lavfi", "-i", source, "-ac", "2"]
    subprocess.run([*words, str(folder / "Tone.flac")], check=True)
    return folder


def samples_of(file: Path) -> bytes:
    words = ["ffmpeg", "-nostdin", "-v", "error", "-i", str(file), "-f", "s16le", "-ac", "1", "-t", "20", "-"]
    return subprocess.run(words, check=True, capture_output=True).stdout


def until_level(least: int, most: int, speaker: str = "speaker") -> None:
    """The tone is that loud, at the latest after a while."""
    end = time.monotonic() + 30
    while True:
        peaks = listen(0.4, speaker).peaks()[-20:]
        if peaks and least <= min(peaks) and max(peaks) <= most:
            return
        assert time.monotonic() < end, f"it is {min(peaks or [0])} to {max(peaks or [0])} loud"


def playing(disc: Path, **options: object) -> Bench:
    unit = Bench(disc=disc, **options)  # type: ignore[arg-type]
    unit.expect("pps.zelmar/disc/status.discstate", "==", 2, within=30)
    return unit


@pytest.fixture
def unit(server: str, tone: Path) -> Iterator[Bench]:
    with playing(tone) as bench:
        until_level(Full - 60, Full + 60)
        yield bench


Full = 11583  # of the tone as it is on the disc


def test_volume_and_mute_are_heard(unit: Bench) -> None:
    assert unit.volume() == 100
    unit.volume(50)
    until_level(Full // 8 - 20, Full // 8 + 20)  # the third power of a half
    assert unit.volume("up") == 55 and unit.volume("down") == 50
    unit.volume(0)
    until_level(0, 0)
    unit.volume(100)
    until_level(Full - 60, Full + 60)
    unit.device("mute", 255)
    until_level(0, 0)
    unit.device("mute", 0)
    until_level(Full - 60, Full + 60)
    unit.volume("mute")
    until_level(0, 0)
    unit.volume("mute")
    until_level(Full - 60, Full + 60)


def test_a_mixer_names_the_application(unit: Bench) -> None:
    """Who turns one program down looks for its name, not for that of the part which plays."""
    words = ["pactl", "list", "sink-inputs"]
    said = subprocess.run(words, check=True, capture_output=True, text=True, env={**os.environ, "LC_ALL": "C"}).stdout
    assert 'application.name = "Platen"' in said, said


def fade(recording: Recording) -> float:
    """How many milliseconds lie between the last full wave and silence that lasts."""
    peaks = recording.peaks()
    full = max(at for at, peak in enumerate(peaks) if peak > 0.95 * Full)
    silent = next(at for at, peak in enumerate(peaks) if at > full and peak == 0)
    assert all(one >= other for one, other in zip(peaks[full:silent], peaks[full + 1 : silent]))
    assert not any(peaks[silent:]), "something is heard after the silence"
    return milliseconds(silent - full)


def clicks(recording: Recording) -> List[int]:
    """Where the sound jumps in the last 100 ms before silence and behind them.

    The tone rises by 6.3 % of its height from one sample to the next where it is steepest.
    """
    samples = recording.samples
    begin = max(at for at, sample in enumerate(samples) if sample) - RATE // 10
    steps = enumerate(zip(samples[begin:], samples[begin + 1 :]))
    return [at for at, (one, other) in steps if abs(one - other) > 0.07 * Full]


@pytest.mark.parametrize("how", ["source off", "ejected", "muted"])
def test_the_sound_fades_in_twenty_milliseconds(unit: Bench, how: str) -> None:
    with Recording() as recording:
        time.sleep(1)
        if how == "source off":
            unit.pps.put("zelmar/disc/control", SOURCE_OFF)
        elif how == "ejected":
            unit.eject()
        else:
            unit.device("mute", 255)
        time.sleep(1.5)
    assert 15 <= fade(recording) <= 27
    assert not clicks(recording)


@pytest.mark.usefixtures("pulseaudio")
@pytest.mark.parametrize("rate", [44100, 48000])
def test_samples_arrive_as_they_are_on_the_disc(tmp_path: Path, rate: int) -> None:
    """At the device's own rate nothing is converted: the bytes are those of the file."""
    subprocess.run(
        ["pactl", "load-module", "module-null-sink", "sink_name=own", f"rate={rate}", "channels=2", "format=s16le"],
        check=True,
    )
    noise = ["-f", "lavfi", "-i", f"anoisesrc=r={rate}:d=20:a=0.3:seed=5", "-ac", "1", "-sample_fmt", "s16"]
    file = tmp_path / "Noise.flac"
    subprocess.run(["ffmpeg", "-nostdin", "-v", "error", *noise, str(file)], check=True)
    with playing(tmp_path, audio_device="pulse:own"):
        recorder = ["parec", "-d", "own.monitor", "--format=s16le", f"--rate={rate}", "--channels=2", "--raw"]
        with subprocess.Popen(recorder, stdout=subprocess.PIPE) as process:
            assert process.stdout
            heard = array.array("h", process.stdout.read(rate * 4 * 2))[::2].tobytes()
            process.terminate()
    piece = heard[len(heard) // 2 : len(heard) // 2 + rate // 2]
    assert piece.strip(b"\0"), "nothing is heard"
    assert piece in samples_of(file), "the samples have been changed"


@pytest.mark.usefixtures("pulseaudio")
def test_a_device_is_chosen_by_its_name(tone: Path) -> None:
    subprocess.run(["pactl", "load-module", "module-null-sink", "sink_name=other", "rate=44100"], check=True)
    with playing(tone, audio_device="pulse:other"):
        until_level(Full - 60, Full + 60, "other")
        assert not any(listen(0.5).samples), "the default device plays, too"


@pytest.mark.usefixtures("sound_folder")
def test_without_a_server_it_plays_on_silently_and_says_so(tone: Path) -> None:
    with playing(tone, audio_device="pulse") as unit:
        assert any("the sound device pulse cannot be opened: playing silently" in each.text for each in unit.log())
    with playing(tone, audio_device="none") as unit:
        assert any("no sound is wanted: playing silently" in each.text for each in unit.log())


@pytest.mark.usefixtures("sound_folder")
def test_the_volume_outlasts_a_restart(tmp_path: Path) -> None:
    remembered = tmp_path / "resume.sqlite"
    with Bench(resume=remembered) as unit:
        assert unit.volume(35) == 35
    with Bench(resume=remembered) as unit:
        assert unit.volume() == 35
        assert unit.pps.get("zelmar/audio/volume")["volume"] in (35, "35")
    with Bench() as unit:
        assert unit.volume() == 100, "another unit has its own"
