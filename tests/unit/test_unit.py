"""platen-unit as a service manager, a driver and a power failure meet it."""

from __future__ import annotations

import contextlib
import os
import random
import re
import shutil
import signal
import socket
import sqlite3
import subprocess
import time
from pathlib import Path
from typing import Iterator, List, Sequence, Set

import pytest

from platen_bench import Bench
from platen_bench.discs import Track, make_disc
from platen_bench.programs import find_bench

PROJECT = Path(__file__).resolve().parent.parent.parent
SERVICES = PROJECT / "deploy" / "systemd"
# All hundred take an hour; a usual run is content with some.
KILLS = int(os.environ.get("ZM_KILLS", "4"))
NEVER_OLDER = 10  # seconds


def long_disc() -> Path:
    return make_disc([Track("Long", "The Testers", "Test Disc", seconds=1200)])


class Unit:
    """A platen-unit with a service manager's ear."""

    def __init__(self, folder: Path, *words: str, watchdog: float = 0, tracer: Sequence[str] = ()) -> None:
        self.runtime = folder / "runtime"
        self.state = folder / "state"
        self.sound = folder / "sound"
        self.manager = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
        address = str(folder / "notify")
        if os.path.exists(address):
            os.unlink(address)
        self.manager.bind(address)
        self.manager.settimeout(60)
        program = str(Path(find_bench()).parent / "platen-unit")
        environment = dict(os.environ, NOTIFY_SOCKET=address, STATE_DIRECTORY=str(self.state))
        environment.update(ZM_SOUND=str(self.sound))
        if watchdog:
            environment["WATCHDOG_USEC"] = str(int(watchdog * 1e6))
        self.begun = time.monotonic()
        self.process = subprocess.Popen(
            [*tracer, program, "--runtime", str(self.runtime), *words], env=environment
        )

    def heard(self) -> str:
        """What the manager hears next."""
        return self.manager.recv(4096).decode()

    def until_ready(self) -> None:
        while not self.heard().startswith("READY=1"):
            pass

    def first_sound(self) -> float:
        """Seconds from the start to the first sample that is not silence."""
        while not (self.sound.exists() and any(self.sound.read_bytes())):
            assert time.monotonic() < self.begun + 60, "nothing is heard"
            time.sleep(0.005)
        return time.monotonic() - self.begun

    def family(self) -> List[int]:
        """The process and all that it has started, as long as they belong to it."""
        found = [self.process.pid]
        for pid in found:
            for task in Path(f"/proc/{pid}/task").glob("*/children"):
                found += [int(word) for word in task.read_text().split()]
        return found

    def end(self) -> int:
        self.process.send_signal(signal.SIGTERM)
        status = self.process.wait(30)
        self.manager.close()
        return status


@pytest.fixture
def folder(monitor: str, tmp_path: Path) -> Iterator[Path]:
    yield tmp_path


def sockets_of(pids: List[int]) -> List[str]:
    """The inodes of the sockets that these processes have open."""
    found = []
    for pid in pids:
        for entry in Path(f"/proc/{pid}/fd").iterdir():
            try:
                target = os.readlink(entry)
            except OSError:
                continue
            if target.startswith("socket:["):
                found.append(target[8:-1])
    return found


def test_it_opens_no_port_and_takes_no_commands(folder: Path) -> None:
    unit = Unit(folder, "--disc", str(long_disc()))
    unit.until_ready()
    inodes = sockets_of(unit.family())
    for table in ("tcp", "tcp6", "udp", "udp6"):
        for line in Path(f"/proc/net/{table}").read_text().splitlines()[1:]:
            assert line.split()[9] not in inodes, f"{table}: {line}"
    assert not (unit.runtime / "ctl.sock").exists()
    assert (unit.runtime / "pps.sock").exists(), "looked for in the wrong folder"
    assert unit.end() == 0


def test_the_manager_hears_that_it_lives_and_when_it_hangs(folder: Path) -> None:
    unit = Unit(folder, watchdog=2)
    unit.until_ready()
    for _ in range(3):
        begin = time.monotonic()
        assert unit.heard() == "WATCHDOG=1"
        assert time.monotonic() < begin + 2
    unit.process.send_signal(signal.SIGSTOP)
    time.sleep(0.5)
    unit.manager.setblocking(False)
    with pytest.raises(BlockingIOError):
        while True:
            unit.heard()
    unit.manager.settimeout(1.5)
    with pytest.raises(TimeoutError):
        unit.heard()
    unit.process.send_signal(signal.SIGCONT)
    unit.manager.settimeout(60)
    assert unit.heard() == "WATCHDOG=1"
    unit.process.send_signal(signal.SIGTERM)
    while unit.heard() != "STOPPING=1":
        pass
    assert unit.end() == 0


def test_a_known_disc_is_soon_heard(folder: Path) -> None:
    """The figure is printed (pytest -s); a machine with much else to do may take its time."""
    first = Unit(folder, "--disc", str(long_disc()))
    first.first_sound()
    first.end()
    first.sound.unlink()
    second = Unit(folder, "--disc", str(long_disc()))
    seconds = second.first_sound()
    second.end()
    print(f"from the start to the first sound of a known disc: {seconds:.2f} s")
    assert seconds < 15


def test_wrong_words_are_named(folder: Path) -> None:
    program = str(Path(find_bench()).parent / "platen-unit")
    for words, said in (["--port", "80"], "--port"), (["--drive", "sr0"], "--drive: wrong value"):
        done = subprocess.run([program, *words], capture_output=True, text=True)
        assert done.returncode == 2 and said in done.stderr


@pytest.mark.parametrize("name", ["platen-unit.service", "platen-kiosk.service"])
def test_the_sandbox_is_tight(name: str) -> None:
    words = ["systemd-analyze", "security", "--offline=true", "--threshold=25", "--no-pager"]
    done = subprocess.run([*words, str(SERVICES / name)], capture_output=True, text=True)
    assert done.returncode == 0, done.stdout.splitlines()[-1]


def system_calls(group: str) -> Set[str]:
    """Those of a group of the service manager, with all of the groups in it."""
    words = ["systemd-analyze", "syscall-filter", "--no-pager", group]
    said = subprocess.run(words, capture_output=True, text=True, check=True).stdout
    found: Set[str] = set()
    for line in map(str.strip, said.splitlines()[1:]):
        if line.startswith("@"):
            found |= system_calls(line)
        elif line and not line.startswith("#"):
            found.add(line)
    return found


@pytest.mark.parametrize("name", ["platen-unit.service", "platen-kiosk.service"])
def test_the_filter_lets_through_what_a_playing_unit_calls(folder: Path, name: str) -> None:
    allowed = system_calls("@default")
    for line in (SERVICES / name).read_text().splitlines():
        if line.startswith("SystemCallFilter="):
            words = line.partition("=")[2]
            for word in words.lstrip("~").split():
                calls = system_calls(word) if word.startswith("@") else {word}
                allowed = allowed - calls if words.startswith("~") else allowed | calls
    trace = folder / "trace"
    disc = folder / "disc"
    shutil.copytree(long_disc(), disc)
    sleeve = ["ffmpeg", "-v", "error", "-f", "lavfi", "-i", "testsrc=s=500x500", "-frames:v", "1"]
    subprocess.run([*sleeve, str(disc / "folder.jpg")], check=True)
    unit = Unit(folder, "--disc", str(disc), tracer=["strace", "-f", "-qq", "-o", str(trace)])
    unit.until_ready()
    unit.first_sound()
    time.sleep(2)
    for pid in unit.family()[1:2]:
        os.kill(pid, signal.SIGTERM)
    unit.process.wait(30)
    unit.manager.close()
    assert "zmcover" in trace.read_text(errors="replace"), "no cover was seen"
    called = set(re.findall(r"^[0-9]+ +([a-z_0-9]+)\(", trace.read_text(errors="replace"), re.MULTILINE))
    assert "openat" in called and "seccomp" in called, "too little was seen"
    # That files belong to somebody else is the wish of the superuser alone.
    assert called - allowed <= {"fchown"}


def kept_position(resume: Path) -> float:
    """Seconds into the song, as remembered for the disc that was in last."""
    with sqlite3.connect(resume) as database:
        (milliseconds,) = database.execute("SELECT milliseconds FROM discs ORDER BY used DESC").fetchone()
    return float(milliseconds) / 1000


def test_power_that_fails_costs_no_more_than_ten_seconds(tmp_path: Path) -> None:
    """All processes at once, at random moments; each life goes on where the one before it was."""
    resume = tmp_path / "resume.sqlite"
    chance = random.Random(15)
    place = 0.0
    for number in range(KILLS):
        unit = Bench(disc=long_disc(), resume=resume)
        try:
            unit.expect("pps.zelmar/disc/status.discstate", "==", 2, within=60)
            unit.expect("pps.zelmar/disc/playing.playtime.time", ">", 0, within=60)
            begun = unit.pps.get("zelmar/disc/playing")["playtime"]["time"]
            assert begun >= place - NEVER_OLDER, f"life {number}: it was at {place} s and begins at {begun} s"
            time.sleep(chance.uniform(0, 14))
            place = unit.pps.get("zelmar/disc/playing")["playtime"]["time"]
        finally:
            pids = [unit.pid]
            for pid in pids:
                for task in Path(f"/proc/{pid}/task").glob("*/children"):
                    pids += [int(word) for word in task.read_text().split()]
            # None of them sees another one end, or it would have time to put things in order.
            for how in (signal.SIGSTOP, signal.SIGKILL):
                for pid in reversed(pids):
                    with contextlib.suppress(ProcessLookupError):
                        os.kill(pid, how)
            unit.close()
        kept = kept_position(resume)
        assert place - kept <= NEVER_OLDER, f"life {number}: it was at {place} s, remembered is {kept} s"
        if place > 1000:
            place = 0.0
            resume.unlink()
