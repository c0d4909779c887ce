"""The pad on which a track's number is typed."""

import pytest


@pytest.fixture
def pad(unit):
    """The pad lies over the music."""
    unit.expect(title="Fog", within=20)
    unit.key("number-pad")
    unit.expect(page="number pad", within=5)
    return unit


pytestmark = pytest.mark.disc("Fog", "Rain", "Snow")


def test_a_typed_number_plays(pad):
    pad.tap("3")
    pad.expect(entry="3/3")
    pad.tap("Enter")
    pad.expect(page="music", title="Snow", within=10)


def test_a_digit_is_taken_back(pad):
    pad.tap("2")
    pad.expect(entry="2/3")
    pad.tap("Delete")
    pad.expect("screen.main.windows.20.items.510.text", "!=", "2/3")


def test_a_number_that_no_track_has_cannot_be_typed(pad):
    assert pad.main.item(513).enabled, "3 is a track"
    assert not pad.main.item(514).enabled, "4 is none"


def test_back_leads_to_the_list_and_leaves_the_song_alone(pad):
    pad.tap("Back")
    pad.advance(1)
    pad.expect(page="list", text="Fog")
