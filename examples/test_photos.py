"""Photos."""

import pytest
from platen_bench.discs import Track

pytestmark = pytest.mark.disc(
    Track("Coast", kind="photo", colour="green"), Track("Hills", kind="photo", colour="blue")
)


def test_the_first_photo_is_shown(unit):
    unit.expect(page="video", within=20)
    unit.expect("screen.video.visible", "==", True, within=10)
    unit.expect("pps.zelmar/disc/device.mediatype", "==", 4)


def test_next_shows_the_other_one(unit):
    unit.expect(page="video", within=20)
    unit.expect("screen.video.visible", "==", True, within=10)
    first = unit.picture()
    unit.key("next")
    unit.expect("pps.zelmar/disc/playing.trackinfo.mediaid", "==", 2, within=10)
    unit.until(lambda: unit.picture() != first, within=10, what="another picture")


def test_photos_are_off_while_driving(unit):
    unit.expect(page="video", within=20)
    unit.drive_off()
    unit.expect(page="parking", text="Photos are off while driving")
