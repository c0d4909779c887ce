"""What was sent is kept as a script that zmctl repeats."""

import shlex
from pathlib import Path

import pytest

from platen_bench import Bench, BenchError, CommandFailed, ExpectationFailed, WrongUsage
from platen_bench.discs import make_disc
from platen_bench.scripts import Recorder, line_of


def commands(script: str) -> "list[list[str]]":
    return [shlex.split(line) for line in script.splitlines() if not line.startswith("#")]


@pytest.mark.parametrize("word", ["next", "a b", "it's", "", "#1", "$HOME", 'say "x"', "\\", "日本"])
def test_words_are_quoted_as_a_shell_reads_them(word: str) -> None:
    assert shlex.split(line_of(["appdata", word])) == ["appdata", word]


def test_inputs_stand_in_order_with_pauses_and_questions_do_not(monkeypatch: pytest.MonkeyPatch) -> None:
    moments = iter([100.0, 100.5, 103.0, 103.0, 103.2, 104.0, 104.0])
    monkeypatch.setattr("platen_bench.scripts.time.monotonic", lambda: next(moments))
    recorder = Recorder(["zmbench", "--disc", "/a disc"])
    recorder.add(["key", "next"], 0.4)
    recorder.add(["screen"], 0.6)
    recorder.add(["eject"], 2.0, status=1)
    recorder.add(["key", "nxt"], 3.1, status=2)
    recorder.add(["appdata", "a\nb"], 4.0)
    script = recorder.script()
    assert "zmbench --disc '/a disc'" in script.splitlines()[1]
    assert commands(script) == [["wait", "400"], ["key", "next"], ["wait", "1500"], ["try", "eject"],
                                ["wait", "100"], ["wait", "800"]]  # fmt: skip
    assert "# 2.000\ntry eject" in script and "# refused: key nxt" in script
    assert "# left out, as no script can hold a line feed: ['appdata', 'a\\nb']" in script


@pytest.mark.parametrize(
    "words, kept",
    [
        (["disc"], False),
        (["disc", "--json"], False),
        (["disc", "fault", "gone"], True),
        (["requests"], False),
        (["requests", "--clear"], True),
        (["pps", "get", "a"], False),
        (["pps", "put", "a", "b::1"], True),
        (["settle"], True),
        (["shot", "/x.png"], False),
        (["run", "x.zmctl"], False),
    ],
)
def test_what_changes_something_is_kept(words: "list[str]", kept: bool) -> None:
    recorder = Recorder()
    recorder.add(words, 0)
    assert commands(recorder.script()) == ([words] if kept else [])


def test_a_script_repeats_what_happened(tmp_path: Path) -> None:
    disc = make_disc(["Fog", "Rain", "Snow"])
    file = tmp_path / "again.zmctl"
    with Bench(disc, clock="stopped") as unit:
        unit.expect(page="music", title="Fog", within=20)
        unit.tap("Next")
        unit.expect(title="Rain", text="2/3", within=20)
        with pytest.raises(CommandFailed):
            unit.tap("Nowhere")
        with pytest.raises(WrongUsage):
            unit.key("nxt")
        unit.tap("List")
        unit.advance(1)
        unit.expect(rows=["1  Fog", "2  Rain", "3  Snow"], text="3  Snow")
        unit.tap("3  Snow")
        unit.appdata("""--song="It's" """)
        unit.expect("pps.zelmar/disc/status.discstate", "==", 2, within=20)
        file.write_text(unit.recorder.script())
    with Bench(disc, clock="stopped") as unit:
        unit.run(file)
        assert unit.main.item(2065).text in ("Snow", "Rain", "Fog")


def test_a_script_of_a_failure_fails_in_the_same_way(tmp_path: Path) -> None:
    disc = make_disc(["Fog", "Rain", "Snow"])
    file = tmp_path / "again.zmctl"
    for text in (True, False):
        with Bench(disc, clock="stopped") as unit:
            unit.expect(title="Fog", within=20)
            unit.key("next")
            with pytest.raises(ExpectationFailed):
                unit.expect(**({"text": "Hail"} if text else {"title": "Hail"}), within=0.5)
            file.write_text(unit.recorder.script())
        with Bench(disc, clock="stopped") as unit:
            with pytest.raises(BenchError, match="again.zmctl:[0-9]+: expect screen.*Hail"):
                unit.run(file)
