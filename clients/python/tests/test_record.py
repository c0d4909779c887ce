"""Inputs are recorded by the bench itself, whoever gives them, and repeated."""

import json
import subprocess
from pathlib import Path

import pytest

from platen_bench import Bench, CommandFailed
from platen_bench.discs import make_disc
from platen_bench.programs import find_ctl


def steps(script: str) -> "list[str]":
    return [line for line in script.splitlines() if not line.startswith(("#", "wait "))]


def test_a_record_has_what_others_gave_and_is_repeated(tmp_path: Path) -> None:
    file, traces = tmp_path / "record.zmctl", [tmp_path / "first", tmp_path / "second"]
    with Bench(disc_service=False, clock="stopped") as unit:
        with unit.record(file):
            unit.pps.put("zelmar/disc/device", "disc::1", "mixedtype::2", "mediatype::2")
            unit.settle()
            unit.pps.put("zelmar/disc/status", "discstate::2")
            subprocess.run([find_ctl(None), "--runtime", unit.runtime, "theme", "day"], check=True)
            unit.advance(1)
            unit.expect(page="music")
        unit.key("next")
        assert steps(file.read_text())[-2:] == ["theme day", "clock advance 1000"]
        assert steps(unit.recording())[-1] == "key next"
        [change] = unit.pps.history("zelmar/disc/status")[-1:]
        assert change.values["discstate"] == "2" and change.seconds > 0
        picture = unit.digest()
        assert picture == unit.digest() and len(picture) == 64
    for trace in traces:
        with Bench(disc_service=False, clock="stopped") as unit:
            unit.replay(file, clock=True, trace=trace)
            unit.expect(page="music")
    assert traces[0].read_text() == traces[1].read_text()
    assert json.loads(traces[0].read_text().splitlines()[-1])["main"] == 6


def test_a_script_is_reduced_to_what_matters(tmp_path: Path) -> None:
    long = tmp_path / "long.zmctl"
    long.write_text("#   zmbench --no-disc-service --manual-clock\n" + "theme day\n" * 20 + "key next\n" + "theme night\n" * 20)
    with Bench(disc_service=False) as unit:
        said = unit.shrink(long, until="pps.zelmar/disc/control.zmcmd.cmd > 0")
    assert "1 of 41 steps" in said
    assert steps((tmp_path / "long-small.zmctl").read_text())[0] == "try key next"


def test_a_script_of_a_test_with_a_disc_is_reduced(tmp_path: Path) -> None:
    disc = make_disc(["Fog", "Rain", "Snow"])
    script = tmp_path / "inputs.zmctl"
    text = "screen.main.windows.6.items.2065.text"
    steps_of_the_test = ["expect screen.main.window == 6 within 10000", f"expect {text} == Fog within 10000"]
    steps_of_the_test += ["theme day", "tap 6524", "theme night", f"expect {text} == Snow within 2000"]
    script.write_text("\n".join([f"#   zmbench --disc {disc} --manual-clock", *steps_of_the_test]) + "\n")
    with Bench(disc_service=False) as unit:
        said = unit.shrink(script, until=f"{text} == Rain within 4000")
    assert " of 5 steps" in said
    left = steps((tmp_path / "inputs-small.zmctl").read_text())
    assert "try tap 6524" in left and not any("theme" in line for line in left)


def test_the_car_and_a_recorded_drive(tmp_path: Path) -> None:
    drive = tmp_path / "drive.csv"
    drive.write_text("time,speed,gear\n0,,drive\n3,50,\n")
    with Bench(disc_service=False, clock="stopped") as unit:
        unit.signal("light", 1000)
        assert unit.car().daynight == "day" and unit.car().light == 1000 and unit.car().restriction == 0
        unit.begin_drive(drive)
        assert unit.car().gear == "drive" and unit.car().drive
        unit.advance(3)
        assert unit.car().speed == 50 and unit.car().restriction == 2 and not unit.car().drive
        unit.signal("speed", 7.5)
        assert unit.car().speed == 7.5
        unit.begin_drive(drive, speed=2)
        unit.end_drive()
        with pytest.raises(CommandFailed, match="no drive runs"):
            unit.end_drive()
        drive.write_text("time,sped\n0,1\n")
        with pytest.raises(CommandFailed, match='drive.csv:1: there is no signal "sped"'):
            unit.begin_drive(drive)


def test_a_state_is_kept_and_restored(tmp_path: Path) -> None:
    with Bench(disc_service=False, clock="stopped") as unit:
        unit.theme("day")
        unit.save_snapshot(tmp_path / "day")
        unit.theme("night")
        unit.restore_snapshot(tmp_path / "day")
        assert unit.car().daynight == "day"
        names = [event["name"] for event in unit.timeline()["traceEvents"]]
        assert "theme night" in names and f"snapshot restore {tmp_path}/day" in names
        with pytest.raises(CommandFailed, match="none: No such file"):
            unit.restore_snapshot(tmp_path / "none")


def test_what_cannot_be_recorded_or_replayed_is_named(tmp_path: Path) -> None:
    with Bench(disc_service=False) as unit:
        with pytest.raises(CommandFailed, match="No such file"):
            with unit.record(tmp_path / "nowhere" / "file"):
                pass
        with pytest.raises(CommandFailed, match="No such file"):
            unit.replay(tmp_path / "none")
        (tmp_path / "script").write_text("theme day\n")
        with pytest.raises(CommandFailed, match="--manual-clock"):
            unit.replay(tmp_path / "script", clock=True)
        unit.replay(tmp_path / "script", speed=10)
