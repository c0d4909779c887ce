"""What is seen while the car drives."""

import pytest
from platen_bench.discs import Track

FILM = Track("Journey", kind="video", seconds=40)
film_disc = pytest.mark.disc(FILM)


@film_disc
def test_a_film_leaves_the_screen_when_the_car_drives_off(unit):
    unit.expect(page="video", within=20)
    unit.drive_off()
    unit.expect(page="parking", text="Video is off while driving")
    assert unit.video.locked


@film_disc
def test_it_comes_back_when_the_car_stands(unit):
    unit.expect(page="video", within=20)
    unit.drive_off()
    unit.expect(page="parking")
    unit.park()
    unit.expect(page="video", within=5)
    assert not unit.video.locked


@film_disc
def test_the_driver_may_ask_for_it(unit):
    unit.expect(page="video", within=20)
    unit.drive_off()
    unit.expect(page="parking")
    unit.tap("Show anyway")
    unit.expect(page="video", within=5)
    assert not unit.video.locked


@film_disc
def test_a_restart_while_driving_shows_no_film(unit):
    unit.expect(page="video", within=20)
    unit.drive_off()
    unit.kill("app")
    unit.expect("ps.app.deaths", "==", 1, within=20)
    unit.expect(app="running", page="parking", within=30)
    assert unit.video.locked


@pytest.mark.disc("Fog")
def test_music_plays_on(unit):
    unit.expect(title="Fog", within=20)
    unit.drive_off()
    unit.settle()
    unit.expect(page="music", title="Fog")
