"""The pytest plugin, by the report and the files of whole runs."""

import json
import os
import re
import subprocess
import sys
import tempfile
import time
import xml.etree.ElementTree as ElementTree
from pathlib import Path
from typing import Dict, Iterator, List

import pytest

from films import difference, frame, frames, gray
from platen_bench import Bench, CommandFailed
from platen_bench.discs import make_disc
from platen_bench.plugin.changes import ChangeLog

PACKAGE = Path(__file__).resolve().parent.parent

FAILING = """
import pytest

@pytest.mark.disc("Fog", "Rain")
def test_hail(unit):
    unit.expect(page="music", title="Fog", within=20)
    unit.key("next")
    unit.expect(title="Hail", within=0.5)
"""


@pytest.fixture(autouse=True)
def environment(monkeypatch: pytest.MonkeyPatch) -> Iterator[None]:
    """The runs inside are runs of their own, not of the workers outside; they leave no runtime folder."""
    monkeypatch.setenv("PYTHONPATH", str(PACKAGE))
    folder = tempfile.mkdtemp(prefix="plugin-")
    monkeypatch.setenv("TMPDIR", folder)
    for name in [name for name in os.environ if name.startswith("PYTEST_")]:
        monkeypatch.delenv(name)
    yield
    os.rmdir(folder)


def run(pytester: pytest.Pytester, *words: str) -> pytest.RunResult:
    return pytester.runpytest_subprocess("-p", "platen_bench.pytest_plugin", *words)


def test_unit_and_disc(pytester: pytest.Pytester) -> None:
    pytester.makepyfile(
        """
        import pytest
        from platen_bench import CommandFailed
        from platen_bench.discs import Track

        @pytest.mark.disc("Fog", Track("Rain", artist="Marlow"))
        def test_what_is_marked_plays(unit, disc):
            unit.expect(page="music", title="Fog", within=20)
            unit.advance(0)  # the clock stands
            assert unit.disc().path == str(disc)

        def test_without_a_mark_the_drive_is_empty(unit, new_disc):
            unit.expect(disc="empty", within=20)
            unit.insert(new_disc("Fog"))
            unit.expect(title="Fog", within=20)

        @pytest.mark.audio_cd("One", "Two")
        @pytest.mark.bench(clock="running")
        def test_options(unit):
            unit.expect(title="One", within=20)
            with pytest.raises(CommandFailed):
                unit.advance(1)

        def test_two(start_bench):
            assert start_bench(disc_service=False).runtime != start_bench(disc_service=False).runtime
        """
    )
    run(pytester, "-W", "error").assert_outcomes(passed=4)
    assert not (pytester.path / "results").exists() and not (pytester.path / "durations.json").exists()


def test_the_manuals_first_test_passes(pytester: pytest.Pytester) -> None:
    manual = (PACKAGE.parent.parent / "docs" / "python.md").read_text(encoding="utf-8")
    blocks = re.findall(r"```python\n(.*?)```", manual, re.DOTALL)
    pytester.makepyfile(blocks[0])
    run(pytester).assert_outcomes(passed=1)
    # And what it does without pytest, with a disc that is there.
    program = blocks[1].replace("/home/me/Music", str(make_disc(["Fog", "Rain"])))
    assert program != blocks[1]
    (pytester.path / "alone.py").write_text(program, encoding="utf-8")
    result = pytester.runpython(pytester.path / "alone.py")
    assert result.ret == 0 and "'cmd': 1" in result.stdout.str()
    assert (pytester.path / "page.png").read_bytes().startswith(b"\x89PNG")


def results(pytester: pytest.Pytester) -> Dict[str, Path]:
    folder = pytester.path / "results" / "test_failing.py-test_hail"
    return {path.name: path for path in folder.iterdir()}


def test_a_failure_leaves_picture_log_changes_and_script(pytester: pytest.Pytester) -> None:
    pytester.makepyfile(test_failing=FAILING)
    result = run(pytester, "--junitxml=report.xml")
    result.assert_outcomes(failed=1)
    files = results(pytester)
    assert files["screen.png"].read_bytes().startswith(b"\x89PNG")
    assert "Rain" in files["screen.txt"].read_text()
    assert "K_NEXT" in files["log.txt"].read_text()
    changes = files["pps.txt"].read_text().splitlines()
    assert any("zelmar/disc/control" in line and '"cmd":1' in line for line in changes)
    moments = [float(line.split(" ")[0]) for line in changes]
    assert moments == sorted(moments)
    # Report and JUnit name each file.
    text = result.stdout.str()
    properties = {
        element.attrib["name"]: element.attrib["value"]
        for element in ElementTree.parse(pytester.path / "report.xml").iter("property")
    }
    for name, file in [
        ("script", "inputs.zmctl"),
        ("record", "record.zmctl"),
        ("picture", "screen.png"),
        ("log", "log.txt"),
        ("pps", "pps.txt"),
    ]:
        assert properties[name] == str(files[file])
        assert re.search(rf"{name}: +{re.escape(str(files[file]))}", text)
    # And the script fails on a fresh bench as the test did.
    with Bench(make_disc(["Fog", "Rain"]), clock="stopped") as unit:
        with pytest.raises(CommandFailed, match="(?s)inputs.zmctl:[0-9]+: expect .*found: +Rain"):
            unit.run(files["inputs.zmctl"])


def test_the_last_changes_are_kept() -> None:
    with Bench(disc_service=False) as unit:
        unit.pps.put("zelmar/test", "n::0")
        log = ChangeLog(unit)
        with unit.pps.watch("zelmar/test") as changes:
            for number in range(1, 251):
                unit.pps.put("zelmar/test", f"n::{number}")
            unit.settle()
            while changes.next(timeout=20).lines != ["n::250"]:
                pass
        deadline = time.monotonic() + 20
        while not any(line.endswith(" n::250") for line in log.lines()) and time.monotonic() < deadline:
            time.sleep(0.02)
        kept = log.lines()
    assert len(kept) == 200 and kept[-1].endswith("zelmar/test n::250") and kept[0].endswith("n::51")


def test_a_failure_without_a_living_bench_says_what_is_missing(pytester: pytest.Pytester) -> None:
    pytester.makepyfile(
        test_failing="""
        import os, signal

        def test_hail(unit):
            unit.theme("day")
            os.kill(unit.pid, signal.SIGKILL)
            unit.key("next")
        """
    )
    result = run(pytester)
    result.assert_outcomes(failed=1)
    assert "theme day" in results(pytester)["inputs.zmctl"].read_text()
    result.stdout.fnmatch_lines(["picture: could not be had: no bench runs in *"])


def test_a_bench_that_cannot_start_is_an_error_in_its_own_words(pytester: pytest.Pytester) -> None:
    pytester.makepyfile("def test_it(unit): pass")
    result = run(pytester, "--bench", "/nowhere/zmbench")
    result.assert_outcomes(errors=1)
    result.stdout.fnmatch_lines(["*/nowhere/zmbench: there is no such program*"])


def test_workers_have_benches_of_their_own_and_one_seed(pytester: pytest.Pytester) -> None:
    pytester.makepyfile(
        """
        import os, pytest

        @pytest.mark.parametrize("number", range(4))
        def test_it(unit, seed, number, worker_id):
            unit.pps.put("zelmar/test", f"by::{worker_id}")
            assert unit.pps.get("zelmar/test") == {"by": worker_id}
            with open("seen", "a") as seen:
                seen.write(f"{seed} {unit.runtime}\\n")
        """
    )
    run(pytester, "-p", "xdist", "-n", "2").assert_outcomes(passed=4)
    seen = [line.split() for line in (pytester.path / "seen").read_text().splitlines()]
    assert len({seed for seed, _ in seen}) == 1
    assert len({folder for _, folder in seen}) == 4


def test_failures_of_workers_are_reported_with_their_files(pytester: pytest.Pytester) -> None:
    pytester.makepyfile(test_failing=FAILING)
    result = run(pytester, "-p", "xdist", "-n", "2", "--junitxml=report.xml")
    result.assert_outcomes(failed=1)
    assert "inputs.zmctl" in (pytester.path / "report.xml").read_text()
    assert "inputs.zmctl" in result.stdout.str() and "inputs.zmctl" in results(pytester)


def test_the_seed_stands_in_the_head_and_is_what_is_given(pytester: pytest.Pytester) -> None:
    pytester.makepyfile("def test_it(seed): assert seed == 7")
    result = run(pytester, "--seed", "7")
    result.assert_outcomes(passed=1)
    result.stdout.fnmatch_lines(["platen: --seed 7"])


FILMED = """
import pytest, time

@pytest.mark.bench(disc_service=False)
def test_passes(unit):
    time.sleep(1)

@pytest.mark.bench(disc_service=False)
def test_fails(unit, start_bench):
    start_bench(disc_service=False)
    time.sleep(1)
    unit.theme("day")
    unit.settle()
    time.sleep(1)
    assert False

def test_without_a_bench():
    pass
"""


def test_films_of_failed_tests_are_kept(pytester: pytest.Pytester) -> None:
    pytester.makepyfile(test_film=FILMED)
    result = run(pytester, "--film", "--junitxml=report.xml")
    result.assert_outcomes(passed=2, failed=1)
    films = sorted(str(file.relative_to(pytester.path)) for file in pytester.path.rglob("*.webm"))
    folder = "results/test_film.py-test_fails"
    assert films == [f"{folder}-2/film.webm", f"{folder}/film.webm"]
    assert frames(pytester.path / films[1]) >= 30 * 1.5
    assert sorted(os.listdir(pytester.path / "results")) == ["test_film.py-test_fails", "test_film.py-test_fails-2"]
    assert f"{folder}/film.webm" in (pytester.path / "report.xml").read_text()
    result.stdout.fnmatch_lines([f"film:*{folder}/film.webm*"])
    # The picture of the failure is the film's last.
    seconds = frames(pytester.path / films[1]) / 30
    picture = gray((pytester.path / folder / "screen.png").read_bytes())
    assert difference(frame(pytester.path / films[1], seconds - 0.3), picture) < 2


def test_all_films_are_kept_if_wanted(pytester: pytest.Pytester) -> None:
    pytester.makepyfile(test_film=FILMED)
    run(pytester, "--film-all", "-k", "passes").assert_outcomes(passed=1)
    assert frames(pytester.path / "results/test_film.py-test_passes/film.webm") >= 15


def test_parts_run_each_test_once_and_keep_their_durations(pytester: pytest.Pytester) -> None:
    pytester.makepyfile(
        """
        import pytest

        @pytest.mark.parametrize("number", range(5))
        def test_it(number):
            with open("ran", "a") as ran:
                ran.write(f"{number}\\n")
        """
    )
    tests = [
        f"test_parts_run_each_test_once_and_keep_their_durations.py::test_it[{number}]" for number in range(5)
    ]
    file = pytester.path / "durations.json"
    file.write_text(json.dumps({**dict.fromkeys(tests, 1.0), tests[3]: 4.0}))

    def ran() -> List[str]:
        numbers = (pytester.path / "ran").read_text().split()
        (pytester.path / "ran").unlink()
        return sorted(numbers)

    run(pytester, "--shard", "1/2").assert_outcomes(passed=1, deselected=4)
    assert ran() == ["3"]
    run(pytester, "--shard", "2/2", "-p", "xdist", "-n", "2").assert_outcomes(passed=4)
    assert ran() == ["0", "1", "2", "4"]
    assert sorted(json.loads((pytester.path / "durations.1-of-2.json").read_text())) == [tests[3]]
    words = [sys.executable, "-m", "platen_bench.merge_durations", str(file)]
    subprocess.run(words, check=True, capture_output=True)
    assert json.loads(file.read_text())[tests[3]] < 1
    result = run(pytester, "--shard", "3/2")
    assert result.ret == pytest.ExitCode.USAGE_ERROR
    result.stderr.fnmatch_lines(['*--shard: "3/2" is no part such as 2/4*'])
    file.write_text("{")
    result = run(pytester, "--shard", "1/2")
    assert (
        result.ret == pytest.ExitCode.USAGE_ERROR
        and "durations.json" in result.stderr.str() + result.stdout.str()
    )


def test_a_whole_run_keeps_durations_only_where_it_is_told(pytester: pytest.Pytester) -> None:
    pytester.makepyfile("def test_it(): pass")
    run(pytester, "--durations-file", "kept.json").assert_outcomes(passed=1)
    assert len(json.loads((pytester.path / "kept.json").read_text())) == 1


def test_installed_it_is_found_by_itself(tmp_path: Path) -> None:
    setuptools = subprocess.run([sys.executable, "-c", "import setuptools, pip"], capture_output=True)
    if setuptools.returncode != 0:
        pytest.skip("setuptools and pip are not installed")
    words = [sys.executable, "-m", "pip", "install", "-q", "--no-deps", "--no-build-isolation", "--no-index"]
    source = tmp_path / "source"
    subprocess.run(["cp", "-r", str(PACKAGE), str(source)], check=True)
    subprocess.run([*words, "--target", str(tmp_path / "site"), str(source)], check=True)
    assert (tmp_path / "site" / "platen_bench" / "py.typed").exists()
    sources = {str(file.relative_to(PACKAGE)) for file in (PACKAGE / "platen_bench").rglob("*.py")}
    assert sources == {
        str(file.relative_to(tmp_path / "site")) for file in (tmp_path / "site" / "platen_bench").rglob("*.py")
    }
    [metadata] = (tmp_path / "site").glob("platen_bench-*.dist-info/METADATA")
    assert "Classifier: Typing :: Typed" in metadata.read_text()
    # Whoever uses it gets its types.
    (tmp_path / "user.py").write_text("from platen_bench import Bench\nreveal_type(Bench.digest)\n")
    checked = subprocess.run(
        [sys.executable, "-m", "mypy", "--cache-dir", str(tmp_path / "cache"), str(tmp_path / "user.py")],
        env={**os.environ, "MYPYPATH": "", "PYTHONPATH": str(tmp_path / "site")},
        cwd=tmp_path / "site",
        capture_output=True,
        encoding="utf-8",
    )
    assert "-> builtins.str" in checked.stdout, checked.stdout + checked.stderr
    result = subprocess.run(
        [sys.executable, "-m", "pytest", "--help"],
        env={**os.environ, "PYTHONPATH": str(tmp_path / "site")},
        capture_output=True,
        encoding="utf-8",
    )
    assert "--shard" in result.stdout
