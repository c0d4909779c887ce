"""Songs that the driver asks for by voice."""

import pytest
from platen_bench.discs import Track


@pytest.mark.disc("Fog", "Rain", "Snow")
def test_a_song_plays_by_its_name(unit):
    unit.expect(title="Fog", within=20)
    unit.say("Snow")
    unit.expect(page="music", title="Snow", within=20)


@pytest.mark.disc("Fog", "Rain", "Snow")
def test_a_song_that_is_nowhere_leaves_the_music_playing(unit):
    unit.expect(title="Fog", within=20)
    unit.say("Hail")
    unit.advance(10)
    unit.expect("screen.main.windows.6.items.2065.text", "==", "Fog")
    unit.expect("pps.zelmar/disc/status.discstate", "==", 2)


@pytest.mark.disc("Fog", "Rain", Track("Journey", kind="video", seconds=20))
def test_a_song_is_found_while_a_film_plays(unit):
    unit.expect(title="Fog", within=20)
    unit.tap("List")
    unit.advance(1)
    unit.tap("Videos")
    unit.advance(1)
    unit.tap("Journey")
    unit.expect(page="video", within=20)
    unit.say("Rain")

    def the_song_plays():
        unit.advance(0.5)
        return unit.holds(page="music", title="Rain")

    unit.until(the_song_plays, within=20, what="the song plays in the place of the film")
