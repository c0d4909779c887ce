"""Discs and drives that fail, programs that crash."""

import pytest
from platen_bench import CommandFailed

pytestmark = pytest.mark.disc("Fog", "Rain")


def test_a_disc_of_another_region_is_told(unit):
    unit.expect(title="Fog", within=20)
    unit.fault("region")
    unit.expect(message="Disc is made for another region", within=20)


def test_a_disc_without_anything_to_play_is_told(unit, tmp_path):
    unit.expect(title="Fog", within=20)
    with pytest.raises(CommandFailed):
        unit.insert(tmp_path)
    unit.expect(page="error", text="This disc cannot be read", within=20)


def test_a_drive_that_is_gone_means_no_disc(unit):
    unit.expect(title="Fog", within=20)
    unit.fault("gone")
    unit.expect(message="No disc inserted", within=20)


def test_an_application_that_crashes_is_back_with_the_same_song(unit):
    unit.expect(title="Fog", within=20)
    unit.key("next")
    unit.expect(title="Rain", within=10)
    unit.kill("app")
    unit.expect("ps.app.deaths", "==", 1, within=20)
    unit.expect(app="running", page="music", title="Rain", within=30)


def test_a_disc_service_that_crashes_finds_the_disc_again(unit):
    unit.expect(title="Fog", within=20)
    unit.kill("disc")
    unit.expect("ps.disc.deaths", "==", 1, within=20)
    unit.expect(service="running", disc="loaded", within=30)
    unit.expect(page="music", title="Fog", within=20)
