"""What candump has recorded becomes a drive of the bench."""

import io
import sys
from pathlib import Path

import pytest

from platen_bench import Bench
from platen_bench.can_drive import main

DBC = """VERSION ""

NS_ :

BS_:

BU_: Car

BO_ 256 Motion: 8 Car
 SG_ VehicleSpeed : 0|16@1+ (0.01,0) [0|400] "km/h" Car
 SG_ GearLever : 16|4@1+ (1,0) [0|15] "" Car

BO_ 2147483905 Light: 4 Car
 SG_ Sensor : 7|16@0+ (10,0) [0|200000] "lx" Car

VAL_ 256 GearLever 0 "P" 1 "R" 2 "N" 3 "D" 9 "Broken" ;
"""

LOG = """(1436509052.000000) can0 100#0000000000000000
(1436509052.100000) can0 7FF#11
(1436509052.250000) can0 00000101#00640000
(1436509053.000000) can0 100#0000030000000000
 (1436509054.500000)  can0  100   [8]  88 13 03 00 00 00 00 00
(1436509055.000000) can0 100#8813030000000000
(1436509056.000000) can0 100#0000000000000000
"""


def convert(folder: Path, log: str = LOG, dbc: str = DBC, *signals: str) -> "tuple[int, str]":
    (folder / "a.log").write_text(log)
    (folder / "a.dbc").write_text(dbc)
    out = io.StringIO()
    names = signals or ("speed=VehicleSpeed", "gear=GearLever", "light=Sensor")
    return main([str(folder / "a.log"), str(folder / "a.dbc"), *names], out), out.getvalue()


def test_changes_of_the_signals_become_lines(tmp_path: Path) -> None:
    status, text = convert(tmp_path)
    assert status == 0
    assert text.splitlines() == [
        "time,speed,gear,light",
        "0.000,0,park,",
        "0.250,,,1000",
        "1.000,,drive,",
        "2.500,50,,",
        "4.000,0,park,",
    ]


def test_the_bench_drives_so(tmp_path: Path) -> None:
    (tmp_path / "drive.csv").write_text(convert(tmp_path)[1])
    with Bench(disc_service=False, clock="stopped") as unit:
        unit.begin_drive(tmp_path / "drive.csv")
        unit.advance(2.5)
        assert (unit.car().speed, unit.car().gear, unit.car().daynight) == (50, "drive", "day")
        unit.advance(2)
        assert unit.car().restriction == 0 and not unit.car().drive


@pytest.mark.parametrize(
    "log, dbc, signals, why",
    [
        ("nonsense\n", DBC, (), "a.log:1: this is no frame of candump: nonsense"),
        (LOG + "(1.0) can0 100#123\n", DBC, (), "a.log:8: the data has half a byte: 123"),
        (LOG + "(1.0) can0 100#0000090000000000\n", DBC, (), 'a.log:8: the gear "Broken" is none of park'),
        ("(1.0) can0 7FF#00\n", DBC, (), "a.log: none of the signals is in it"),
        (LOG, "nonsense", (), "a.dbc: "),
        (LOG, DBC, ("speed=VehicleSped",), 'a.dbc: there is no signal "VehicleSped"; did you mean "VehicleSpeed"?'),
        (LOG, DBC, ("sped=VehicleSpeed",), '"sped=VehicleSpeed" is not SIGNAL=NAME'),
    ],
)
def test_what_is_wrong_is_named(
    tmp_path: Path,
    capsys: pytest.CaptureFixture[str],
    log: str,
    dbc: str,
    signals: "tuple[str, ...]",
    why: str,
) -> None:
    assert convert(tmp_path, log, dbc, *signals) == (1, "")
    assert why in capsys.readouterr().err


def test_files_that_are_missing_are_named(tmp_path: Path, capsys: pytest.CaptureFixture[str]) -> None:
    assert main([str(tmp_path / "none"), "b", "speed=c"], sys.stdout) == 1
    assert f"{tmp_path}/none: No such file" in capsys.readouterr().err
    assert main([], sys.stdout) == 2
