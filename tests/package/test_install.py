"""What `cmake --install` leaves behind: programs that find each other below any prefix, and all that belongs to them."""

from __future__ import annotations

import os
import re
import subprocess
import urllib.request
from pathlib import Path
from typing import List

import pytest

from platen_bench import Bench, CommandFailed
from platen_bench.discs import Track, make_disc
from platen_bench.programs import find_bench

PROJECT = Path(__file__).resolve().parent.parent.parent
BUILD = Path(find_bench()).parent.parent


@pytest.fixture(scope="module")
def prefix(tmp_path_factory: pytest.TempPathFactory) -> Path:
    """An installation that was moved after it was made."""
    folder = tmp_path_factory.mktemp("installed")
    subprocess.run(
        ["cmake", "--install", str(BUILD), "--prefix", str(folder / "first")],
        check=True,
        stdout=subprocess.DEVNULL,
    )
    (folder / "first").rename(folder / "moved here")
    return folder / "moved here"


def programs(prefix: Path) -> List[Path]:
    return sorted([*(prefix / "bin").iterdir(), *(prefix / "libexec" / "platen").iterdir()])


def said(*words: object) -> str:
    return subprocess.run([str(word) for word in words], check=True, capture_output=True, text=True).stdout


def test_a_bench_plays_a_disc_with_nothing_but_what_is_installed(prefix: Path) -> None:
    disc = make_disc([Track("Installed Song", "The Testers", "Test Disc", seconds=60)])
    with Bench(program=prefix / "bin", disc=disc) as bench:
        bench.expect(page="music", within=30)
        bench.expect(text="Installed Song", within=10)
        family = [bench.pid]
        for pid in family:
            for task in Path(f"/proc/{pid}/task").glob("*/children"):
                family += [int(word) for word in task.read_text().split()]
        assert sorted(Path(os.readlink(f"/proc/{pid}/exe")).relative_to(prefix) for pid in family) == [
            Path("bin/zmbench"),
            Path("libexec/platen/Platen"),
            Path("libexec/platen/zmdecode"),
            Path("libexec/platen/zmdiscd"),
        ]


def test_the_page_is_installed_whole(prefix: Path) -> None:
    with Bench(program=prefix / "bin", page=True) as bench:
        browser = urllib.request.build_opener(urllib.request.HTTPCookieProcessor())
        index = browser.open(bench.address).read().decode()
        scripts = re.findall(r'(?:src|href)="([\w.]+)"', index)
        assert "main.js" in scripts and "style.css" in scripts
        for name in scripts:
            assert browser.open(bench.address.split("?")[0] + name).read() == (PROJECT / "web" / name).read_bytes()


def test_the_demonstration_disc_is_where_the_user_keeps_what_can_be_made_again(
    prefix: Path, tmp_path: Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    monkeypatch.setenv("XDG_CACHE_HOME", str(tmp_path))
    with Bench(program=prefix / "bin") as bench:
        with pytest.raises(CommandFailed, match='"platen-demo-disc" makes it'):
            bench.insert_demo()
        # Making the whole one takes half a minute.
        (tmp_path / "platen").mkdir()
        (tmp_path / "platen" / "demo").symlink_to(make_disc([Track("Demonstration", "The Testers", "Test Disc")]))
        bench.insert_demo()
        bench.expect(text="Demonstration", within=10)


def test_a_folder_of_the_users_own_is_not_emptied_for_the_demonstration_disc(prefix: Path, tmp_path: Path) -> None:
    (tmp_path / "letter").write_text("dear reader")
    made = subprocess.run(
        [prefix / "bin" / "platen-demo-disc", tmp_path], capture_output=True, text=True, check=False
    )
    assert made.returncode == 1
    assert f"{tmp_path} is there and not a demonstration disc" in made.stderr
    assert (tmp_path / "letter").read_text() == "dear reader"


def test_services_start_what_is_installed(prefix: Path) -> None:
    for service in ("user/platen-unit.service", "system/platen-kiosk.service"):
        text = (prefix / "lib" / "systemd" / service).read_text()
        program = re.search(r"^ExecStart=(.*/bin/platen-unit) ", text, re.MULTILINE)
        assert program and Path(program[1]) == prefix.parent / "first" / "bin" / "platen-unit"


def test_every_program_has_a_page_in_the_manual_that_tells_all_its_options(prefix: Path) -> None:
    manual = prefix / "share" / "man"
    for program in programs(prefix):
        section = 1 if program.parent.name == "bin" else 8
        page = (manual / f"man{section}" / f"{program.name}.{section}").read_text().replace("\\-", "-")
        usage = said(program, "-h" if program.name == "Platen" else "--help")
        options = set(re.findall(r"--[a-z][a-z-]+", usage)) if program.name != "zmctl" else set()
        assert [option for option in sorted(options) if option not in page] == []


def test_the_manual_tells_all_commands(prefix: Path) -> None:
    page = (prefix / "share" / "man" / "man1" / "zmctl.1").read_text()
    commands = re.findall(r"^  ([a-z]+) ", said(prefix / "bin" / "zmctl", "help"), re.MULTILINE)
    assert len(commands) > 30
    assert [command for command in commands if f".SS {command}\n" not in page] == []


def test_every_file_format_has_a_page_in_the_manual(prefix: Path) -> None:
    assert sorted(page.name for page in (prefix / "share" / "man" / "man5").iterdir()) == [
        "platen-control.5",
        "platen-recording.5",
        "platen-resources.5",
        "platen-screen.5",
        "platen-script.5",
        "platen-snapshot.5",
    ]


def test_the_manual_is_well_formed(prefix: Path) -> None:
    for page in (prefix / "share" / "man").glob("man*/*"):
        read = subprocess.run(
            ["man", "--warnings", "-E", "UTF-8", "-l", "-Tutf8", "-Z", page],
            capture_output=True,
            text=True,
            check=True,
            env=dict(os.environ, MANROFFSEQ=""),
        )
        assert read.stderr == "", page.name


def test_the_snapshot_in_the_manual_is_one(prefix: Path, tmp_path: Path) -> None:
    source = (PROJECT / "docs" / "man" / "platen-snapshot.5.scd").read_text()
    example = tmp_path / "example.snapshot"
    example.write_text(source.split("```\n")[1])
    with Bench(program=prefix / "bin", disc_service=False) as bench:
        bench.command("snapshot", "restore", str(example))
        assert "discstate::2" in bench.command("pps", "get", "zelmar/disc/status").splitlines()


def test_the_script_in_the_manual_succeeds(prefix: Path, tmp_path: Path) -> None:
    source = (PROJECT / "docs" / "man" / "platen-script.5.scd").read_text()
    example = tmp_path / "example.zmctl"
    example.write_text(source.split("```\n")[1])
    with Bench(program=prefix / "bin", disc_service=False, clock="stopped") as bench:
        bench.run(example)


def test_bash_completes_what_is_typed_behind_zmctl(prefix: Path) -> None:
    script = prefix / "share" / "bash-completion" / "completions" / "zmctl"
    zmctl = prefix / "bin" / "zmctl"
    ask = f"source '{script}'; COMP_WORDS=('{zmctl}' snap); COMP_CWORD=1; _zmctl; echo \"${{COMPREPLY[@]}}\""
    assert said("bash", "-c", ask).strip() == "snapshot"
    assert "compdef zmctl" in (prefix / "share" / "zsh" / "vendor-completions" / "_zmctl").read_text()
    assert "complete -c zmctl" in (prefix / "share" / "fish" / "vendor_completions.d" / "zmctl.fish").read_text()


def test_desktops_find_the_unit(prefix: Path) -> None:
    entry = prefix / "share" / "applications" / "org.platen.unit.desktop"
    about = prefix / "share" / "metainfo" / "org.platen.unit.metainfo.xml"
    said("desktop-file-validate", entry)
    said("appstreamcli", "validate", "--no-net", "--pedantic", about)
    assert (prefix / "share" / "icons" / "hicolor" / "scalable" / "apps" / "org.platen.unit.svg").exists()
    lines = entry.read_text().splitlines()
    assert "Exec=platen-unit" in lines and "Icon=org.platen.unit" in lines


def test_all_that_tell_a_version_tell_the_same(prefix: Path) -> None:
    version = said(prefix / "bin" / "zmctl", "--version").split()[1]
    newest = (PROJECT / "debian" / "changelog").read_text().splitlines()[0]
    assert newest.startswith(f"platen ({version}) ")
    about = (PROJECT / "deploy" / "desktop" / "org.platen.unit.metainfo.xml").read_text()
    assert re.findall(r'<release version="([^"]+)"', about)[0] == version
    assert re.findall(r"^## ([\d.]+)", (PROJECT / "CHANGELOG.md").read_text(), re.MULTILINE)[0] == version
    client = (PROJECT / "clients" / "python" / "pyproject.toml").read_text()
    assert re.findall(r'^version = "([^"]+)"', client, re.MULTILINE) == [version]


def test_packages_are_made_of_what_dev_installs() -> None:
    """Whoever adds a library to ./dev is reminded of debian/control."""
    found = re.search(r"^build_packages=\(([^)]*)\)", (PROJECT / "dev").read_text(), re.MULTILINE)
    assert found
    known = set(re.findall(r"^(?:\w[\w-]*:)? +([a-z0-9][a-z0-9.+-]+)(?: \(.*\))?,?$", control(), re.MULTILINE))
    # Tests are not built for packages; of the rest the compiler is everywhere and the cache nobody's business.
    needless = {"libgtest-dev", "libgmock-dev", "g++", "ccache"}
    assert sorted(set(found[1].split()) - known - needless) == []


def control() -> str:
    return (PROJECT / "debian" / "control").read_text()
