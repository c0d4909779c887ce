"""A bench with a screen larger than the usual one, from Python."""

from __future__ import annotations

import struct
import time
from pathlib import Path

import pytest

from films import streams
from platen_bench import Bench, NoBench


def size_of(png: bytes) -> "tuple[int, int]":
    width, height = struct.unpack(">II", png[16:24])
    return width, height


@pytest.mark.parametrize("size", [(1024, 600), (1280, 720)])
def test_pictures_films_and_touches_have_its_size(size: "tuple[int, int]", tmp_path: Path) -> None:
    width, height = size
    with Bench(disc_service=False, screen=f"{width}x{height}") as unit:
        assert unit.screen().size == size
        assert size_of(unit.picture()) == size
        unit.touch(width - 1, height - 1)
        with unit.film(tmp_path / "film.webm"):
            time.sleep(1)
        video = streams(tmp_path / "film.webm")[0]
        assert (video["width"], video["height"]) == size
        assert f"--screen {width}x{height}" in unit.recorder.script()


def test_without_one_it_is_the_usual_one() -> None:
    with Bench(disc_service=False) as unit:
        assert unit.screen().size == (800, 480)
        assert size_of(unit.picture()) == (800, 480)


def test_a_size_that_there_is_not_is_named() -> None:
    with pytest.raises(NoBench, match="expected 800x480, 1024x600 or 1280x720"):
        Bench(disc_service=False, screen="640x480")
