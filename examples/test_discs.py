"""Discs that come and go."""

import pytest


def test_an_empty_drive_says_so_and_the_application_asks_to_be_closed(unit):
    unit.expect(message="No disc inserted", within=20)
    unit.requests(clear=True)
    unit.advance(10)
    assert [request["op"] for request in unit.requests()] == ["QueryCloseApp"]


def test_an_inserted_disc_plays(unit, new_disc):
    unit.expect(disc="empty", within=20)
    unit.insert(new_disc("Fog", "Rain"))
    unit.expect(page="music", title="Fog", position="1/2", within=20)


@pytest.mark.disc("Fog", "Rain")
def test_an_ejected_disc_is_gone(unit):
    unit.expect(title="Fog", within=20)
    unit.eject()
    unit.expect(message="Ejecting disc …", within=10)
    unit.expect(disc="empty", message="No disc inserted", within=20)


@pytest.mark.disc("Fog", "Rain")
def test_another_disc_takes_its_place(unit, new_disc):
    unit.expect(title="Fog", within=20)
    unit.insert(new_disc("Thunder"))
    unit.expect(page="music", title="Thunder", position="1/1", within=20)


@pytest.mark.disc("Fog", "Rain", "Snow")
def test_a_disc_goes_on_where_it_was_left(unit, disc):
    unit.expect(title="Fog", within=20)
    unit.tap("Next")
    unit.expect(title="Rain", within=10)
    unit.eject()
    unit.expect(disc="empty", within=20)
    unit.insert(disc)
    unit.expect(page="music", title="Rain", position="2/3", within=20)
