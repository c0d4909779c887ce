"""A bench begins and ends with its block, whatever happens in it, and leaves nothing behind."""

import os
import signal
import subprocess
import sys
import tempfile
import time
from pathlib import Path
from typing import Callable, Iterator, List

import pytest

from platen_bench import Bench, BenchError, NoBench, running_benches

PACKAGE = Path(__file__).resolve().parent.parent


def eventually(condition: Callable[[], bool], seconds: float = 30) -> bool:
    deadline = time.monotonic() + seconds
    while not condition():
        if time.monotonic() > deadline:
            return False
        time.sleep(0.02)
    return True


def alive(pid: int) -> bool:
    try:
        return Path(f"/proc/{pid}/stat").read_text().split(") ")[1][0] != "Z"
    except OSError:
        return False


def all_pids(bench: Bench) -> List[int]:
    return [bench.pid, *(process.pid for process in bench.processes().values())]


@pytest.fixture(autouse=True)
def folder(tmp_path_factory: pytest.TempPathFactory, monkeypatch: pytest.MonkeyPatch) -> Iterator[Path]:
    """Where runtime folders are made; nothing is left in it after a test."""
    tmp_path_factory.getbasetemp()  # else pytest's own folder would be made in there
    with tempfile.TemporaryDirectory(prefix="life-") as name:
        monkeypatch.setenv("TMPDIR", name)
        monkeypatch.setattr(tempfile, "tempdir", None)
        yield Path(name)
        assert eventually(lambda: not list(Path(name).iterdir())), "nothing is left behind"
        monkeypatch.undo()
        tempfile.tempdir = None


def test_ends_with_its_block() -> None:
    with Bench(disc_service=False) as unit:
        pids = all_pids(unit)
        assert Path(unit.runtime).is_dir() and all(alive(pid) for pid in pids)
        assert unit.runtime in running_benches()
        assert unit.errors == ""
    assert not any(alive(pid) for pid in pids)
    assert not Path(unit.runtime).exists()
    assert unit.pid == 0
    unit.close()
    with pytest.raises(NoBench, match="no bench runs in"):
        unit.key("next")


@pytest.mark.parametrize("error", [ValueError, KeyboardInterrupt, SystemExit])
def test_ends_when_the_block_is_left_by(error: "type[BaseException]") -> None:
    with pytest.raises(error):
        with Bench(disc_service=False) as unit:
            pids = all_pids(unit)
            raise error()
    assert not any(alive(pid) for pid in pids)


def test_ends_although_its_child_hangs() -> None:
    with Bench(disc_service=False) as unit:
        pids = all_pids(unit)
        os.kill(unit.processes()["app"].pid, signal.SIGSTOP)
    assert eventually(lambda: not any(alive(pid) for pid in pids))


def test_ends_with_the_last_reference() -> None:
    unit = Bench(disc_service=False)
    pids = all_pids(unit)
    del unit
    assert eventually(lambda: not any(alive(pid) for pid in pids))


def test_a_fork_of_its_owner_does_not_end_it() -> None:
    program = (
        "import os, sys\n"
        "from platen_bench import Bench\n"
        "unit = Bench(disc_service=False)\n"
        "child = os.fork()\n"
        "if not child: sys.exit()\n"
        "os.waitpid(child, 0)\n"
        "unit.key('next')\n"
        "unit.close()\n"
    )
    environment = {**os.environ, "PYTHONPATH": str(PACKAGE)}
    subprocess.run([sys.executable, "-c", program], env=environment, check=True, timeout=60)


@pytest.mark.parametrize("number", [signal.SIGKILL, signal.SIGTERM, signal.SIGINT])
def test_ends_when_its_owner_is_killed(number: signal.Signals) -> None:
    program = (
        "from platen_bench import Bench\n"
        "unit = Bench(disc_service=False)\n"
        "print(unit.pid, *(each.pid for each in unit.processes().values()), flush=True)\n"
        "input()\n"
    )
    owner = subprocess.Popen(
        [sys.executable, "-c", program],
        env={**os.environ, "PYTHONPATH": str(PACKAGE)},
        stdin=subprocess.PIPE,
        stdout=subprocess.PIPE,
        stderr=subprocess.DEVNULL,
    )
    assert owner.stdout is not None
    pids = [int(word) for word in owner.stdout.readline().split()]
    assert pids
    owner.send_signal(number)
    owner.wait()
    assert eventually(lambda: not any(alive(pid) for pid in pids))


def test_several_at_once_do_not_disturb_each_other() -> None:
    with Bench(disc_service=False) as one, Bench(disc_service=False, page=True) as two, Bench(
        disc_service=False, page=True
    ) as three:
        assert len({one.runtime, two.runtime, three.runtime}) == 3
        assert one.address == "" and two.address.startswith("http://127.0.0.1:")
        assert two.address != three.address
        one.pps.put("zelmar/test", "which::1")
        two.pps.put("zelmar/test", "which::2")
        assert one.pps.get("zelmar/test") == {"which": "1"}
        assert two.pps.get("zelmar/test") == {"which": "2"}


def test_a_running_one_is_joined_and_goes_on(monkeypatch: pytest.MonkeyPatch) -> None:
    with Bench(disc_service=False) as unit:
        with Bench.connect(unit.runtime) as other:
            other.pps.put("zelmar/test", "by::other")
        assert unit.pps.get("zelmar/test") == {"by": "other"}
        monkeypatch.setenv("ZM_RUNTIME", unit.runtime)
        assert Bench.connect().runtime == unit.runtime
        with pytest.raises(NoBench, match="others run: .*" + unit.runtime):
            Bench.connect("/nowhere")


def test_what_cannot_start_says_why_in_the_benchs_words(tmp_path: Path) -> None:
    with pytest.raises(NoBench, match="no-such-disc"):
        Bench(disc=tmp_path / "no-such-disc")
    with pytest.raises(ValueError, match='"running" or "stopped", not "slow"'):
        Bench(clock="slow")
    with pytest.raises(NoBench, match="zmbench: there is no such program"):
        Bench(program=tmp_path)


def test_one_that_does_not_get_ready_is_ended(tmp_path: Path) -> None:
    program = tmp_path / "zmbench"
    program.write_text("#!/bin/sh\necho not yet >&2\nexec sleep 60\n")
    program.chmod(0o755)
    with pytest.raises(NoBench, match="not ready within 0.5 s\nnot yet"):
        Bench(program=program, timeout=0.5)


def test_the_program_is_found_by_option_environment_and_path(
    tmp_path: Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    program = tmp_path / "zmbench"
    program.write_text("#!/bin/sh\necho it was me >&2\nexit 1\n")
    program.chmod(0o755)
    with pytest.raises(BenchError, match="it was me"):
        Bench(program=tmp_path)
    monkeypatch.setenv("PLATEN_BENCH", str(program))
    with pytest.raises(BenchError, match="it was me"):
        Bench()
    # Somewhere without a build around it, the package looks in PATH.
    monkeypatch.delenv("PLATEN_BENCH")
    monkeypatch.setattr("platen_bench.programs._around", lambda: iter([]))
    monkeypatch.setenv("PATH", str(tmp_path))
    with pytest.raises(BenchError, match="it was me"):
        Bench()


def test_a_bench_that_dies_is_named_by_the_next_command() -> None:
    with Bench(disc_service=False) as unit:
        os.kill(unit.pid, signal.SIGKILL)
        assert eventually(lambda: not alive(unit.pid))
        with pytest.raises(NoBench, match="no bench runs in|the bench has gone"):
            unit.key("next")
