"""Languages, colours, and what the status bar says."""

import pytest

pytestmark = pytest.mark.disc("Fog", "Rain")


@pytest.mark.parametrize("language, word", [("de", "Ordner"), ("zh", "文件夹"), ("ar", "مجلدات")])
def test_the_pages_speak_the_chosen_language(unit, language, word):
    unit.expect(title="Fog", within=20)
    unit.language(language)
    unit.tap("List")
    unit.advance(1)
    unit.expect(page="list", text=word)


def test_day_and_night_look_different_and_come_back(unit):
    unit.expect(title="Fog", within=20)
    unit.tap("Pause")
    unit.expect("pps.zelmar/disc/status.discstate", "==", 6, within=10)
    # The song's cover comes when it has been found and drawn.
    unit.expect("pps.zelmar/disc/cover.cover.kind", "==", "drawn", within=10)
    unit.theme("day")
    unit.settle()
    day = unit.digest()
    unit.theme("night")
    unit.settle()
    night = unit.digest()
    assert night != day
    unit.theme("day")
    unit.until(lambda: unit.digest() == day, within=10, what="the day's picture")
    unit.theme("night")
    unit.until(lambda: unit.digest() == night, within=10, what="the night's picture")


def test_the_clock_has_twelve_or_twenty_four_hours(unit):
    unit.expect(title="Fog", within=20)
    unit.time("23:05", 12)
    unit.settle()
    unit.expect(text="11:05")
    unit.expect(text="PM")
    unit.time("23:05", 24)
    unit.settle()
    unit.expect(text="23:05")


def test_the_temperature_is_shown(unit):
    unit.expect(title="Fog", within=20)
    unit.device("temperature", -55)
    unit.settle()
    unit.expect(text="-5.5")
