"""An audio CD with titles."""

import pytest
from platen_bench.discs import Track

pytestmark = pytest.mark.audio_cd(
    Track("One", "Ann", "Three Tones", seconds=20),
    Track("Two", "Ben", "Three Tones", seconds=20),
    Track("Three", "Cleo", "Three Tones", seconds=20),
)


def test_its_titles_are_shown(unit):
    unit.expect(page="music", title="One", artist="Ann", album="Three Tones", position="1/3", within=20)


def test_the_time_runs(unit):
    unit.expect(title="One", length="00:20", within=20)
    unit.expect("screen.main.windows.6.items.2067.text", "matches", "00:0[1-9]", within=10)


def test_its_list_plays_a_track(unit):
    unit.expect(title="One", within=20)
    unit.tap("List")
    unit.advance(1)
    unit.expect(page="cd", rows=["1  One", "2  Two", "3  Three"])
    unit.tap("3  Three")
    unit.expect(page="music", title="Three", artist="Cleo", within=10)
