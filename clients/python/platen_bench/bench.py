"""The bench: the head unit around the application, from Python."""

from __future__ import annotations

import os
import subprocess
import time
import weakref
from typing import List, Optional, Sequence, Type, TypeVar, Union

from . import protocol
from .commands.base import Stream
from .commands.disc import DiscCommands
from .commands.film import FilmCommands
from .commands.input import InputCommands
from .commands.launcher import LauncherCommands
from .commands.local import LocalCommands
from .commands.pps import Pps
from .commands.screen import ScreenCommands
from .commands.system import SystemCommands
from .commands.vehicle import VehicleCommands
from .errors import CommandFailed, NoBench, WrongUsage
from .process import BenchProcess
from .programs import default_runtime, find_bench, find_ctl, running_benches
from .scripts import WRONG_USAGE, Recorder

PathLike = Union[str, "os.PathLike[str]"]
_Self = TypeVar("_Self", bound="Bench")


class _Answer(Stream):
    """The answer of a command that goes on."""

    def __init__(self, connection: protocol.Connection, words: Sequence[str]) -> None:
        self._connection = connection
        self._words = words
        self._errors = ""
        self._ended = False

    def next(self, timeout: Optional[float]) -> Optional[str]:
        deadline = None if timeout is None else time.monotonic() + timeout
        while not self._ended:
            part = self._connection.receive(None if deadline is None else max(deadline - time.monotonic(), 0))
            if part is None:
                return None
            self._errors += part.err
            if part.status is not None:
                self.close()
                _check(self._words, part.status, self._errors)
            if part.out:
                return part.out
        raise StopIteration

    def close(self) -> None:
        self._ended = True
        self._connection.close()


def _check(words: Sequence[str], status: int, errors: str) -> None:
    if status != 0:
        kind = WrongUsage if status == WRONG_USAGE else CommandFailed
        raise kind(words, status, errors.strip())


class Bench(
    InputCommands,
    DiscCommands,
    LauncherCommands,
    VehicleCommands,
    ScreenCommands,
    SystemCommands,
    FilmCommands,
    LocalCommands,
):
    """A running bench. Every command of `zmctl` is a method; times are seconds, places are pixels.

        with Bench(disc="/home/me/Music") as unit:
            unit.expect(page="music", within=10)
            unit.tap("Next")
            print(unit.main.page, unit.texts())

    Each bench has a runtime folder of its own, so any number may run at once. At the end of the block, however it
    is left, the bench and its programs have ended and the folder is gone; also when this process is killed.
    """

    def __init__(
        self,
        disc: Optional[PathLike] = None,
        *,
        clock: str = "running",
        launcher: Optional[str] = None,
        disc_service: bool = True,
        insert_stays: bool = False,
        catalogue: Optional[PathLike] = None,
        resume: Optional[PathLike] = None,
        resources: Optional[PathLike] = None,
        app_args: Optional[str] = None,
        audio_device: Optional[str] = None,
        drive: Optional[str] = None,
        mpris: bool = False,
        screen: Optional[str] = None,
        page: bool = False,
        display: bool = False,
        program: Optional[PathLike] = None,
        timeout: float = 60,
    ) -> None:
        """Starts a bench and returns when it is ready: the application runs and has been resumed.

        disc          folder, image or file that is in the drive from the start
        clock         "running", or "stopped": the application's timers stand still until `advance`
        launcher      "active" or "passive" (only records); None: active, but passive with a stopped clock
        disc_service  False: the test plays the disc service with `pps.put`
        insert_stays  an inserted disc brings nothing to the front
        catalogue     SQLite file that the application reads, without a disc service
        resume        SQLite file in which it is kept where discs were left
        resources     folder of the views' resource files, read again whenever one of them changes
        app_args      words behind `Platen disc`, separated and quoted as in a shell
        audio_device  what sound is played on: "auto", "none", "pulse", "pulse:NAME", "alsa", "alsa:NAME"
        drive         a disc drive of this machine, "/dev/sr0", or "auto": the first
        mpris         True: the desktop's media keys and applets reach the player
        screen        its size, "800x480" (without it), "1024x600" or "1280x720"
        page          True: with the page for a browser, at `address`, on any free port
        display       True: with a window on this machine, which DISPLAY or WAYLAND_DISPLAY names
        program       zmbench or its folder; else `PLATEN_BENCH`, a build around this package, PATH
        timeout       seconds that it may take to be ready

        Raises NoBench with the bench's own sentence if it cannot start, ValueError for a wrong `clock` or
        `launcher`.
        """
        if clock not in ("running", "stopped"):
            raise ValueError(f'the clock is "running" or "stopped", not "{clock}"')
        if launcher not in (None, "active", "passive"):
            raise ValueError(f'the launcher is "active" or "passive", not "{launcher}"')
        self._program: Optional[str] = find_bench(program)
        words = [self._program]
        words += ["--disc", os.path.abspath(disc)] if disc is not None else []
        words += ["--manual-clock"] if clock == "stopped" else []
        words += ["--launcher", launcher] if launcher else []
        words += [] if disc_service else ["--no-disc-service"]
        words += ["--insert-stays"] if insert_stays else []
        words += ["--catalogue", os.path.abspath(catalogue)] if catalogue is not None else []
        words += ["--resume", os.path.abspath(resume)] if resume is not None else []
        words += ["--resources", os.path.abspath(resources)] if resources is not None else []
        words += ["--app-args", app_args] if app_args is not None else []
        words += ["--audio-device", audio_device] if audio_device is not None else []
        words += ["--drive", drive] if drive is not None else []
        words += ["--mpris"] if mpris else []
        words += ["--screen", screen] if screen is not None else []
        words += ["--port", "0"] if page else ["--no-web"]
        words += ["--display"] if display else []
        process = BenchProcess(words, timeout, {})
        self._process: Optional[BenchProcess] = process
        # Whoever forgets to close it: it ends with this object, or with the interpreter.
        self._finalizer = weakref.finalize(self, process.end)
        self.address = process.address  #: of the page; empty without one
        self._begin(process.runtime, ["zmbench", *words[1:]])

    @classmethod
    def connect(cls: Type[_Self], runtime: Optional[PathLike] = None) -> _Self:
        """A bench that somebody else has started, by its runtime folder (None: the one zmbench takes itself).

        It goes on running when it is closed here. Raises NoBench, which names those that do run, if there is none.
        """
        bench = cls.__new__(cls)
        folder = os.path.abspath(runtime if runtime is not None else default_runtime())
        bench._program = None
        bench._process = None
        bench.address = ""
        bench._begin(folder, [])
        try:
            protocol.Connection(bench._socket).close()
        except NoBench as error:
            others = running_benches()
            remedy = "; others run: " + ", ".join(others) if others else "; no other one runs either"
            raise NoBench(f"{error}{remedy}") from error
        return bench

    def _begin(self, runtime: str, start: List[str]) -> None:
        self.runtime = runtime  #: the folder of sockets, catalogue and log
        self._socket = os.path.join(runtime, "ctl.sock")
        self.recorder = Recorder(start)  #: what was sent; `recorder.script()` repeats it

    def close(self) -> None:
        """Ends the bench if it was started here, and removes its folder. Closing twice does no harm."""
        if self._process:
            self._process = None
            self._finalizer()

    def __enter__(self: _Self) -> _Self:
        return self

    def __exit__(self, *_: object) -> None:
        self.close()

    @property
    def pps(self) -> Pps:
        """The PPS objects: `unit.pps.get("zelmar/disc/status")`."""
        return Pps(self)

    @property
    def pid(self) -> int:
        """The process number of zmbench; 0 of one that was not started here or has been closed."""
        return self._process.pid if self._process else 0

    @property
    def errors(self) -> str:
        """What zmbench has written to standard error: children that died, errors. Empty if not started here."""
        return self._process.errors() if self._process else ""

    def command(self, *words: object, timeout: Optional[float] = None) -> str:
        texts = [str(word) for word in words]
        begin = self.recorder.now()
        status = 1
        try:
            output = self._run(texts, timeout)
            status = 0
            return output
        except CommandFailed as error:
            status = error.status
            raise
        finally:
            self.recorder.add(texts, begin, status)

    def ask(self, words: Sequence[str]) -> str:
        return self._run(list(words), None)

    def _run(self, words: List[str], timeout: Optional[float]) -> str:
        if not words:
            raise ValueError("a command has at least one word")
        status, out, errors = protocol.run(self._socket, words, timeout)
        _check(words, status, errors)
        return out

    def stream(self, words: Sequence[str]) -> Stream:
        connection = protocol.Connection(self._socket)
        connection.send(protocol.request(words, os.getcwd()))
        # Commands are taken in the order in which they come: once this one is answered, the other has begun.
        self.ask(["ps"])
        return _Answer(connection, words)

    def local(self, words: Sequence[str], timeout: Optional[float] = None) -> str:
        begin = self.recorder.now()
        result = subprocess.run(
            [find_ctl(self._program), "--runtime", self.runtime, *words],
            stdin=subprocess.DEVNULL,
            capture_output=True,
            timeout=timeout,
            encoding="utf-8",
            errors="replace",
        )
        self.recorder.add(words, begin, result.returncode)
        _check(words, result.returncode, result.stderr.strip())
        return result.stdout

    def note(self, words: Sequence[str], begin: float, status: int) -> None:
        self.recorder.add(words, begin, status)

    def moment(self) -> float:
        return self.recorder.now()
