"""Music in folders."""

import pytest
from platen_bench.discs import Track

pytestmark = pytest.mark.disc(
    "Fog",
    Track("Bridge", file="Roads/1 Bridge.mp3"),
    Track("Tunnel", file="Roads/2 Tunnel.mp3"),
    Track("Shore", file="Sea/1 Shore.mp3"),
)


@pytest.fixture
def folders(unit):
    """The list of folders is open."""
    unit.expect(title="Fog", within=20)
    unit.tap("List")
    unit.advance(1)
    unit.tap("Folders")
    unit.advance(1)
    return unit


def test_folders_are_listed_by_their_names(folders):
    texts = " ".join(folders.main.rows)
    assert "Roads" in texts and "Sea" in texts


def test_a_song_of_a_folder_plays(folders):
    folders.tap("Roads")
    folders.advance(1)
    folders.expect(page="folder", rows=["1  Bridge", "2  Tunnel"])
    folders.tap("Tunnel")
    folders.expect(page="music", title="Tunnel", within=10)


def test_a_folder_is_left_upwards(folders):
    folders.tap("Sea")
    folders.advance(1)
    folders.expect(page="folder", rows=["1  Shore"])
    folders.tap("Up")
    folders.advance(1)
    folders.expect(page="list")
    assert any("Roads" in row for row in folders.main.rows)
