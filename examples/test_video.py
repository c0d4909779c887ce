"""Films and the bar over them."""

import pytest
from platen_bench.discs import Track

pytestmark = pytest.mark.disc(
    Track("Journey", kind="video", seconds=30, colour="red"),
    Track("Return", kind="video", seconds=30, colour="blue"),
)


@pytest.fixture
def film(unit):
    """The first film plays and is on the screen."""
    unit.expect(page="video", within=20)
    unit.expect("screen.video.visible", "==", True, within=10)
    return unit


def test_a_film_fills_the_screen(film):
    assert not film.video.locked
    assert (film.video.rectangle.width, film.video.rectangle.height) == (800, 480)


def test_its_pictures_come_one_after_the_other(film):
    before = film.video.frames
    film.expect("screen.video.frames", ">", before + 10, within=10)


def test_a_touch_shows_the_bar_and_time_hides_it(film):
    film.advance(30)
    assert not film.overlay.visible
    film.touch(400, 200)
    film.settle()
    film.expect(overlay="video")
    film.advance(30)
    assert not film.overlay.visible


def test_the_bar_pauses_the_film(film):
    film.advance(30)
    film.touch(400, 200)
    film.settle()
    film.tap("Pause")
    film.expect("pps.zelmar/disc/status.discstate", "==", 6, within=10)


def test_next_shows_the_other_film(film):
    film.key("next")
    film.expect("pps.zelmar/disc/playing.trackinfo.mediaid", "==", 2, within=10)
    film.expect(page="video")
