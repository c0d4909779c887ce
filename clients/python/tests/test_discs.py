"""Discs are made once from their list of tracks."""

import os
import threading
from pathlib import Path
from typing import List

import pytest

from platen_bench import Bench, BenchError
from platen_bench.discs import Track, make_audio_cd, make_disc


def names(disc: Path) -> List[str]:
    return sorted(str(path.relative_to(disc)) for path in disc.rglob("*") if path.is_file())


def test_a_list_of_tracks_becomes_files(tmp_path: Path) -> None:
    disc = make_disc(
        [
            Track("Fog", seconds=1),
            Track("Snow", file="Roads/1.mp3", seconds=1),
            Track("Film", kind="video", seconds=1),
            Track("View", kind="photo"),
        ],
        tmp_path,
    )
    assert names(disc) == ["01 Fog.mp3", "Film.mpg", "Roads/1.mp3", "View.png"]
    assert [each.name for each in tmp_path.iterdir()] == [disc.name], "nothing else is left in the cache"


def test_the_same_list_is_the_same_disc_and_another_is_another(tmp_path: Path) -> None:
    one = make_disc([Track("Fog", seconds=1)], tmp_path)
    (one / "mark").touch()
    assert (make_disc([Track("Fog", seconds=1)], tmp_path) / "mark").exists()
    assert make_disc([Track("Fog", seconds=2)], tmp_path) != one
    assert make_disc([Track("Fog", artist="Marlow", seconds=1)], tmp_path) != one


def test_several_may_make_it_at_once(tmp_path: Path) -> None:
    made: List[Path] = []
    threads = [
        threading.Thread(target=lambda: made.append(make_disc([Track("Fog", seconds=1)], tmp_path)))
        for _ in range(4)
    ]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert len(made) == 4 and len(set(made)) == 1
    assert [each.name for each in tmp_path.iterdir()] == [made[0].name]


def test_what_cannot_be_made_is_named_and_leaves_nothing(
    tmp_path: Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    with pytest.raises(ValueError, match='Fog: a track is "music", "video" or "photo", not "smell"'):
        make_disc([Track("Fog", kind="smell")], tmp_path)
    with pytest.raises(BenchError, match="ffmpeg could not make .*fog.nonsense"):
        make_disc([Track("Fog", file="fog.nonsense")], tmp_path)
    monkeypatch.setenv("PATH", str(tmp_path))
    with pytest.raises(BenchError, match="ffmpeg, which makes discs"):
        make_disc([Track("Fog")], tmp_path)
    assert os.listdir(tmp_path) == []


def test_the_drive_takes_both_kinds() -> None:
    cd = make_audio_cd([Track("One", "Ann", "Tones", seconds=20), Track("Two", seconds=20)])
    with Bench(make_disc(["Fog"]), clock="stopped") as unit:
        unit.expect(title="Fog", artist="The Testers", album="Test Disc", within=20)
        unit.insert(cd)
        unit.expect(page="music", title="One", artist="Ann", album="Tones", position="1/2", within=20)
