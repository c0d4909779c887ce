"""Each command does on the bench what its words say."""

import os
import sqlite3
import time
from pathlib import Path
from typing import Dict, Iterator, Tuple

import pytest

from platen_bench import Bench, CommandFailed, ExpectationFailed, Overlay, Page, WrongUsage
from platen_bench.expectations import conditions
from platen_bench.discs import Track, make_disc
from platen_bench.programs import find_bench


@pytest.fixture(scope="module")
def songs() -> Path:
    return make_disc(["Fog", "Rain", Track("Snow", "Ines", "Winter", "Roads/Snow.mp3")])


@pytest.fixture
def music(songs: Path) -> Iterator[Bench]:
    """A disc plays, its music page is shown; the clock stands still."""
    with Bench(songs, clock="stopped") as bench:
        bench.expect(page="music", title="Fog", position="1/2", within=20)
        yield bench


def test_fingers_and_keys(music: Bench) -> None:
    music.key("next")
    music.expect(title="Rain", artist="The Testers", album="Test Disc", position="2/2", within=10)
    music.key(21)
    music.expect(title="Fog", within=10)
    music.tap("Next")
    music.expect(title="Rain", within=10)
    music.tap("Disc")
    assert "Radio" in music.texts()
    music.touch(*music.main.item(99).rectangle.middle)
    music.settle()
    assert "Radio" not in music.texts()
    with music.pps.watch("zelmar/disc/control") as changes:
        music.press(*music.main.item(6524).rectangle.middle)
        music.move(500, 420)
        music.release(*music.main.item(6524).rectangle.middle)
        assert changes.next(10).values["zmcmd"]["cmd"] == 1
    music.expect(title="Snow", artist="Ines", album="Winter", within=10)
    with music.pps.watch("zelmar/disc/control") as changes:
        music.click("main", Page.MUSIC, 6521, 0)
        music.click("main", Page.MUSIC, 6521, 1)
        assert changes.next(10).values["zmcmd"]["cmd"] == 2


def test_back_is_a_button_also_where_a_key_has_its_number_for_a_text(music: Bench) -> None:
    music.key("number-pad")
    music.expect(page="number pad")
    music.tap("Back")
    music.advance(1)
    music.expect(page="list")


def test_what_no_field_says_is_waited_for(music: Bench) -> None:
    before = music.picture()
    music.until(lambda: music.picture() != before, within=20)
    with pytest.raises(ExpectationFailed, match="rain did not hold within 0.05 s"):
        music.until(lambda: False, within=0.05, what="rain")


def test_a_list_is_dragged_and_a_held_key_winds(music: Bench) -> None:
    music.tap("List")
    music.advance(1)
    music.expect(page="list", rows=["1  Fog", "2  Rain", "3  Snow"])
    music.drag(400, 300, 400, 100)
    music.tap("Now playing")
    music.expect(page="music")
    with music.pps.watch("zelmar/disc/control") as changes:
        music.tap("Next", hold=1)
        first = changes.next(10).values["zmcmd"]["cmd"]
    assert first != 1, "held it is no step to the next song"


def test_refusals_are_the_benchs_own_words(music: Bench) -> None:
    with pytest.raises(WrongUsage, match='did you mean "next"'):
        music.key("nxt")
    with pytest.raises(CommandFailed, match="nearest place is 799 240") as failure:
        music.touch(800, 240)
    assert failure.value.words == ["touch", "800", "240"] and failure.value.status == 1
    with pytest.raises(CommandFailed, match="no item to touch"):
        music.tap("Nowhere")
    with pytest.raises(WrongUsage, match="usage: zmctl app"):
        music.app("jump")
    with pytest.raises(WrongUsage, match='no command "dance"'):
        music.command("dance")
    with pytest.raises(CommandFailed, match="no language"):
        music.language("xx")
    with pytest.raises(CommandFailed, match="no page|nearest"):
        music.window("main", 7)
    with pytest.raises(ValueError, match='no page "musik"; there is none, message, music'):
        music.window("main", "musik")


def test_vehicle_and_launcher(music: Bench) -> None:
    music.device("temperature", -55)
    music.time("23:05", 12)
    music.settle()
    assert "-5.5" in music.texts() and "PM" in music.texts() and "11:05" in music.texts()
    music.time("08:30", 24)
    music.language("de")
    music.tap("List")
    music.advance(1)
    assert "Ordner" in music.texts()
    music.language("en")
    night = music.digest()
    music.theme("day")
    music.settle()
    assert music.digest() != night
    music.theme("night")
    music.tap("Now playing")
    music.tap("Home")
    music.settle()
    assert {"op": "QueryLauncher", "app": "zmhome"}.items() <= music.requests(clear=True)[-1].items()
    assert music.requests() == []
    music.drive_off()
    music.park()
    music.device(2, 0, silent=True)
    music.device(2, "fail")


def test_what_is_on_the_screen(music: Bench, tmp_path: Path) -> None:
    screen = music.screen()
    assert screen.main.page is Page.MUSIC and screen.main.visible and Page.MUSIC in screen.main.shown
    assert isinstance(music.overlay.page, Overlay) and not music.overlay.visible
    assert not music.video.posted and not screen.video.visible
    title = screen.main.item(2065)
    assert (title.text, title.kind, title.visible) == ("Fog", "text", True)
    assert screen.main.rows == []
    with pytest.raises(KeyError, match="MUSIC has no item 1"):
        screen.main.item(1)
    assert music.window("main", "parking").item(2103).text == "Show anyway"
    assert [each.text for each in music.seen() if each.id == 2065] == ["Fog"]
    assert music.picture().startswith(b"\x89PNG")
    assert music.picture(tmp_path / "page.jpg")[:2] == b"\xff\xd8"
    music.drawn()


def test_a_step_and_what_it_led_to(music: Bench) -> None:
    music.step(changes=True)
    step = music.step("click", "main", 6, 6524, 1, pixels="010203", changes=True)
    assert [each["op"] for each in step["requests"]] == ["ToBeep"]
    assert {"object": "zelmar/disc/control", "lines": ['zmcmd:json:{"cmd":1,"param1":0,"param2":0}']} in step["changes"]
    assert "nCtrlId=6524" in step["log"][0] and step["exit"] == step["pixels"] == 0 and step["stale"] == {}
    assert step["screen"]["main"]["window"] == 6 and step["screen"]["main"]["windows"]["20"]["items"] == {}
    assert music.step("screen", "main", "999")["exit"] == 1
    with pytest.raises(WrongUsage, match="six hexadecimal digits"):
        music.step(pixels="red")


def test_screens_are_told_when_they_change(music: Bench) -> None:
    titles = []
    for seen in music.screens(seconds=20):
        title = [each.text for each in seen if each.id == 2065][0]
        if title not in titles:
            titles.append(title)
            music.key("next")
        if len(titles) == 2:
            break
    assert titles[0] == "Fog" and titles[1] in ("Rain", "Snow")


def test_pps_objects(music: Bench) -> None:
    assert "zelmar/disc/status" in music.pps.ls()
    assert music.pps.get("zelmar/disc/status")["playstate"]["scan"] == 0
    with music.pps.watch("zelmar/watched", count=2) as changes:
        music.pps.put("zelmar/watched", "a::1", 'b:json:{"c":2}', "d:n:3")
        music.pps.put("zelmar/watched", "-a")
        first, second = list(changes)
    assert first.values == {"a": "1", "b": {"c": 2}, "d": 3} and first.object == "zelmar/watched"
    assert second.lines == ["-a"]
    assert abs(first.time - time.time()) < 60
    assert list(music.pps.watch("zelmar/watched", seconds=0.05)) == []
    with music.pps.watch("zelmar/watched") as changes, pytest.raises(
        TimeoutError, match="not changed within"
    ):
        changes.next(timeout=0.05)
    with pytest.raises(CommandFailed, match="zelmar/none"):
        music.pps.get("zelmar/none")


def test_log_clock_and_processes(music: Bench) -> None:
    entry = music.log(count=1)[0]
    assert len(music.log(count=3)) == 3 and 0 <= entry.severity <= 7 and "T" in entry.time and entry.text
    with music.follow_log() as lines:
        music.key("next")
        while "K_NEXT" not in lines.next(timeout=10).text:
            pass
    with music.follow_log(count=2) as lines:
        assert lines.next(timeout=10) and lines.next(timeout=10)
    music.settle(20)
    music.advance(0.5)
    assert music.processes()["app"].state == "running" and music.processes()["app"].pid > 0


def test_a_killed_application_comes_back(music: Bench) -> None:
    before = music.processes()["app"]
    music.kill("app")
    music.expect("ps.app.deaths", "==", before.deaths + 1, within=20)
    music.expect(app="running", page="music", within=20)
    assert music.processes()["app"].pid not in (0, before.pid)


def test_the_catalogue_is_held_and_released(tmp_path: Path) -> None:
    catalogue = tmp_path / "catalogue.sqlite"
    with sqlite3.connect(catalogue) as database:
        database.execute("CREATE TABLE files (fid INTEGER, folderid INTEGER, ftype INTEGER, filename TEXT)")
        database.executemany("INSERT INTO files VALUES (?, 1, 1, ?)", [(1, "Fog"), (2, "Rain"), (3, "Snow")])
    database.close()
    with Bench(disc_service=False, catalogue=catalogue, clock="stopped") as unit:
        unit.device("parking", 1)
        unit.pps.put("zelmar/disc/device", "disc::1", "mixedtype::2", "mediatype::2")
        unit.pps.put("zelmar/disc/status", "discstate::2")
        unit.expect(page="music", within=20)
        unit.hold_catalogue(2)
        unit.tap("List")
        unit.advance(0.2)
        assert len(unit.main.rows) < 3
        unit.release_catalogue()
        unit.settle()
        unit.advance(0.2)
        unit.expect(rows=["1  Fog", "2  Rain", "3  Snow"])


def test_the_drive(songs: Path, tmp_path: Path) -> None:
    with Bench(clock="stopped") as unit:
        unit.expect(disc="empty", within=10)
        unit.insert(songs)
        drive = unit.disc()
        assert (drive.state, drive.path) == ("loaded", str(songs))
        unit.eject()
        unit.expect(disc="empty", within=20)
        with pytest.raises(CommandFailed, match="empty"):
            (tmp_path / "empty").mkdir()
            unit.insert(tmp_path / "empty")
        demo = Path(find_bench()).parent.parent / "demo"
        if demo.is_dir():
            unit.insert_demo()
            assert unit.disc().path == str(demo)
            unit.eject()
            unit.expect(disc="empty", within=20)
        else:
            with pytest.raises(CommandFailed, match="demo"):
                unit.insert_demo()
        unit.insert(os.path.relpath(songs), wait=False)
        unit.expect(disc="loaded", within=20)
        unit.fault("gone")
        unit.expect("pps.zelmar/disc/drive.drivestate.state", "!=", "loaded", within=20)
        unit.fault("none")
        with pytest.raises(WrongUsage):
            unit.fault("boredom")


def test_the_running_clock_is_not_moved_by_hand() -> None:
    with Bench(disc_service=False) as unit:
        with pytest.raises(CommandFailed, match="clock runs by itself"):
            unit.advance(1)
        with pytest.raises(CommandFailed, match="without a disc service"):
            unit.eject()


def test_zmctls_own_commands(music: Bench, tmp_path: Path) -> None:
    script = tmp_path / "page.zmctl"
    script.write_text("expect screen.main.window == 6\n")
    assert music.run(script) == ""
    script.write_text("expect screen.main.window == 5 within 10\n")
    with pytest.raises(CommandFailed, match="page.zmctl:1"):
        music.run(script)
    assert "touch" in music.help() and "800 ms" in music.help("touch")
    assert music.complete("app", "pa") == ["pause"]
    assert "complete" in music.completion("bash")
    with pytest.raises(WrongUsage, match='did you mean "zsh"'):
        music.completion("fsh")
    begin = time.monotonic()
    music.wait(0.05)
    assert time.monotonic() - begin >= 0.05


def test_the_monkey_is_the_same_for_the_same_seed(songs: Path, tmp_path: Path) -> None:
    with Bench(songs, clock="stopped") as unit:
        assert "7" in unit.monkey(seed=7, seconds=1, file=tmp_path / "monkey.zmctl")
        unit.expect(app="running", within=20)


def test_expectations_by_path(music: Bench) -> None:
    music.expect("screen.main.shown", "contains", 6)
    music.expect("screen.main.shown.size", ">=", 1)
    music.expect("screen.main.windows.6.items.2065.text", "matches", "^F.g$")
    music.expect("screen.main.windows.6.items.2065.rect.-1", "<", 100)
    music.expect("pps.zelmar/disc/status.discstate", "==", 2)
    music.expect("ps.app.state", "!=", "gone")
    assert music.holds(title="Fog") and not music.holds(title="Rain")
    with pytest.raises(ExpectationFailed) as failure:
        music.expect(title="Hail", artist="The Testers", within=0.1)
    assert "expected: screen.main.windows.6.items.2065.text == Hail (within 0.1 s)\nfound:    Fog" in str(
        failure.value
    )
    assert "The Testers" not in str(failure.value), "only what was missed is told"
    for missing in ("screen.main.nowhere", "requests.99.op", "pps.zelmar/none.a"):
        with pytest.raises(ExpectationFailed):
            music.expect(missing, "!=", "x", within=0)
    with pytest.raises(ExpectationFailed, match="found:    no list"):
        music.expect(rows=["1  Fog"], within=0)
    with pytest.raises(ExpectationFailed, match='expected: "Hail" on the screen'):
        music.expect(text="Hail", within=0)


@pytest.mark.parametrize(
    "words, fields, culprit",
    [
        ((), {}, "nothing is expected"),
        ((), {"titel": "Fog"}, 'no field "titel"; there is page, overlay, title'),
        ((), {"page": "musik"}, 'no page "musik"'),
        (("screen.main.window", "=", 6), {}, '"=" is none of ==, !='),
        (("page.6", "==", 6), {}, '"page.6" is no path'),
        (("pps.zelmar/disc/status", "==", 6), {}, "is no path"),
        (("screen.main.window", "<", "six"), {}, '"six" is no number'),
        (("screen.main.window", "<", "nan"), {}, '"nan" is no number'),
        (("screen.main.window", "<", "1_0"), {}, '"1_0" is no number'),
        (("screen.main.window",), {}, "followed by an operator"),
    ],
)
def test_what_cannot_be_expected_is_named(
    words: Tuple[object, ...], fields: Dict[str, object], culprit: str
) -> None:
    with pytest.raises(ValueError, match=culprit):
        conditions(words, fields)
