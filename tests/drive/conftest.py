"""Lets these tests use the client beside them, and gives them a disc drive that the kernel does not know of.

To be started by umockdev-wrapper, which stands between programs and the kernel.
"""

import shutil
import sys
from pathlib import Path
from typing import Iterator

import pytest

PROJECT = Path(__file__).resolve().parent.parent.parent
sys.path[:0] = [str(PROJECT / "clients" / "python"), str(Path(__file__).resolve().parent)]

pytest_plugins = ["platen_bench.pytest_plugin"]

from mock_drive import MockDrive  # noqa: E402
from platen_bench.programs import find_bench  # noqa: E402


@pytest.fixture(scope="session")
def programs(tmp_path_factory: pytest.TempPathFactory) -> Path:
    """The bench's programs. The decoder is started without what stands between, as it touches no drive; so is the reader of
    DVDs, which that would wait for itself in: it reads the file that stands for the drive's node."""
    built = Path(find_bench()).resolve().parent
    home = tmp_path_factory.mktemp("programs")
    (home / "share").symlink_to(built.parent / "share")
    (home / "bin").mkdir()
    for name in ("zmbench", "Platen", "zmdiscd", "zmctl"):
        shutil.copy2(built / name, home / "bin" / name)
    for name, disc in (("zmdecode", ""), ("zmdvd", '"$UMOCKDEV_DIR$1"')):
        program = home / "bin" / name
        program.write_text(f"#!/bin/sh\nunset LD_PRELOAD\nexec {built}/{name} {disc}\n")
        program.chmod(0o755)
    return home / "bin"


@pytest.fixture
def drive(programs: Path, monkeypatch: pytest.MonkeyPatch) -> Iterator[MockDrive]:
    """A drive /dev/sr0, its tray empty."""
    mock = MockDrive()
    monkeypatch.setenv("UMOCKDEV_DIR", mock.root)
    monkeypatch.setenv("PLATEN_BENCH", str(programs / "zmbench"))
    yield mock
    mock.close()
