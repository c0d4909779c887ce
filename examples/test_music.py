"""Music that plays: the page, the buttons below it and the hard keys."""

import pytest

pytestmark = pytest.mark.disc("Fog", "Rain", "Snow")


def test_the_first_song_plays_by_itself(unit):
    unit.expect(page="music", title="Fog", artist="The Testers", album="Test Disc", within=20)
    unit.expect(position="1/3", length="01:00", within=5)


def test_next_and_previous(unit):
    unit.expect(title="Fog", within=20)
    unit.tap("Next")
    unit.expect(title="Rain", position="2/3", within=10)
    unit.tap("Previous")
    unit.expect(title="Fog", position="1/3", within=10)


def test_the_keys_do_what_the_buttons_do(unit):
    unit.expect(title="Fog", within=20)
    unit.key("next")
    unit.expect(title="Rain", within=10)
    unit.key("previous")
    unit.expect(title="Fog", within=10)


def test_behind_the_last_song_comes_the_first(unit):
    unit.expect(title="Fog", within=20)
    unit.tap("Previous")
    unit.expect(title="Snow", position="3/3", within=10)
    unit.tap("Next")
    unit.expect(title="Fog", position="1/3", within=10)


def test_a_pause_holds_the_song(unit):
    unit.expect(title="Fog", within=20)
    unit.tap("Pause")
    unit.expect("pps.zelmar/disc/status.discstate", "==", 6, within=10)
    unit.settle()  # the page follows the disc service
    assert not unit.main.item(6523).visible, "there is a button to play in the place of pause"
    unit.tap("Play")
    unit.expect("pps.zelmar/disc/status.discstate", "==", 2, within=10)


def test_fast_forward_goes_faster_with_each_press_and_play_ends_it(unit):
    unit.expect(title="Fog", within=20)
    unit.key("forward")
    unit.expect("pps.zelmar/disc/status.playspeed", "==", 2, within=10)
    unit.key("forward")
    unit.expect("pps.zelmar/disc/status.playspeed", "==", 4, within=10)
    unit.key("play")
    unit.expect("pps.zelmar/disc/status.playspeed", "==", 1, within=10)


def test_repeat_and_shuffle_change_their_modes(unit):
    unit.expect(title="Fog", within=20)
    before = unit.pps.get("zelmar/disc/status")["playstate"]
    unit.tap("Repeat")
    unit.expect("pps.zelmar/disc/status.playstate.repeat", "!=", before["repeat"], within=10)
    unit.tap("Shuffle")
    unit.expect("pps.zelmar/disc/status.playstate.shuffle", "!=", before["shuffle"], within=10)
