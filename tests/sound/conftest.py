"""Lets these tests use the client beside them, and gives them sound servers of their own."""

import os
import signal
import subprocess
import sys
import time
from pathlib import Path
from typing import Iterator, List

import pytest

PROJECT = Path(__file__).resolve().parent.parent.parent
sys.path[:0] = [str(PROJECT / "clients" / "python"), str(Path(__file__).resolve().parent)]

pytest_plugins = ["platen_bench.pytest_plugin"]

# A loudspeaker that nobody hears, of the rate of a CD and of two channels.
SPEAKER = "sink_name=speaker rate=44100 channels=2 format=s16le"


def until_there(words: List[str]) -> None:
    """The server answers and has the loudspeaker."""
    end = time.monotonic() + 30
    while subprocess.run(words, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode != 0:
        assert time.monotonic() < end, "the sound server has not started"
        time.sleep(0.1)


@pytest.fixture
def sound_folder(tmp_path_factory: pytest.TempPathFactory, monkeypatch: pytest.MonkeyPatch) -> Path:
    """What servers and clients of one test share, apart from any server of the machine."""
    folder = tmp_path_factory.mktemp("sound")
    folder.chmod(0o700)
    for name in ("XDG_RUNTIME_DIR", "PULSE_RUNTIME_PATH", "PULSE_STATE_PATH", "PULSE_CONFIG_PATH", "HOME"):
        monkeypatch.setenv(name, str(folder))
    for name in ("DBUS_SESSION_BUS_ADDRESS", "DISPLAY", "ZM_SOUND"):
        monkeypatch.delenv(name, raising=False)
    monkeypatch.setenv("PULSE_SERVER", f"unix:{folder}/native")
    return folder


@pytest.fixture
def pulseaudio(sound_folder: Path) -> Iterator[str]:
    """A PulseAudio server with that loudspeaker; gives its address."""
    server = subprocess.Popen(
        ["pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--disable-shm=yes", "--use-pid-file=no"]
        + ["-L", f"module-native-protocol-unix socket={sound_folder}/native auth-anonymous=1"]
        + ["-L", f"module-null-sink {SPEAKER}"],
        stdout=subprocess.DEVNULL,
        stderr=subprocess.DEVNULL,
    )
    until_there(["pactl", "get-sink-volume", "speaker"])
    yield os.environ["PULSE_SERVER"]
    server.terminate()
    server.wait()


@pytest.fixture
def pipewire(sound_folder: Path, monkeypatch: pytest.MonkeyPatch) -> Iterator[str]:
    """A PipeWire server with that loudspeaker and its interface for PulseAudio; gives its address."""
    monkeypatch.delenv("PULSE_SERVER")
    # The other two end at once where the first does not answer yet.
    first = "until [ -S $XDG_RUNTIME_DIR/pipewire-0 ]; do sleep 0.05; done"
    programs = f"pipewire & {first}; wireplumber & pipewire-pulse & wait"
    server = subprocess.Popen(
        ["dbus-run-session", "--", "sh", "-c", programs],
        stdout=subprocess.DEVNULL,
        stderr=subprocess.DEVNULL,
        start_new_session=True,
    )
    until_there(["pactl", "get-sink-volume", "@DEFAULT_SINK@"])
    subprocess.run(["pactl", "load-module", "module-null-sink", *SPEAKER.split()], check=True)
    until_there(["pactl", "get-sink-volume", "speaker"])
    subprocess.run(["pactl", "set-default-sink", "speaker"], check=True)
    yield f"unix:{sound_folder}/pulse/native"
    os.killpg(server.pid, signal.SIGTERM)
    server.wait()


@pytest.fixture(params=["pulseaudio", "pipewire"])
def server(request: pytest.FixtureRequest) -> str:
    """The test runs with each of them."""
    address: str = request.getfixturevalue(request.param)
    return address
