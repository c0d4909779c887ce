"""Lists of what is on the disc."""

import pytest
from platen_bench.discs import Track

MIXED = ("Fog", "Rain", "Snow", Track("Journey", kind="video", seconds=20))

pytestmark = pytest.mark.disc(*MIXED)


@pytest.fixture
def music_list(unit):
    """The list of music is open; it fills while the clock goes on."""
    unit.expect(title="Fog", within=20)
    unit.tap("List")
    unit.advance(1)
    unit.expect(page="list", rows=["1  Fog", "2  Rain", "3  Snow"])
    return unit


def test_the_playing_song_is_marked(music_list):
    assert music_list.main.item(2000).current == 0
    assert "Fog" in music_list.texts(), "it stands below the list too"


def test_a_touched_row_plays(music_list):
    music_list.tap("3  Snow")
    music_list.expect(page="music", title="Snow", position="3/3", within=10)


def test_the_list_gives_way_to_the_music_after_a_while(music_list):
    music_list.advance(30)
    music_list.expect(page="music", title="Fog")


def test_now_playing_leads_back(music_list):
    music_list.tap("Now playing")
    music_list.expect(page="music", title="Fog")


def test_the_tabs_list_the_other_kinds(music_list):
    music_list.tap("Videos")
    music_list.advance(1)
    music_list.expect(rows=["1  Journey"])
    music_list.tap("Photos")
    music_list.advance(1)
    music_list.expect(rows=[], text="No photos here")


def test_the_encoder_chooses_a_row(music_list):
    music_list.key("down")
    music_list.key("down")
    music_list.key("enter")
    music_list.settle()
    music_list.expect("pps.zelmar/disc/playing.trackinfo.mediaid", ">", 1, within=10)
