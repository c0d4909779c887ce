"""A bench that this process started and ends."""

from __future__ import annotations

import os
import selectors
import shutil
import subprocess
import tempfile
import time
from typing import Dict, List, Optional, Sequence

from .errors import NoBench

# How long a bench may take to end its children in order before it is killed.
_END_SECONDS = 10.0
# A socket's path has at most 107 bytes; this is what "/ctl.sock" and the folder's own name leave of it.
_LONGEST_FOLDER = 70

# Ends the bench and removes its folder when whoever started it has died without doing so: the pipe on standard
# input then ends without a line.
_WATCHDOG = """
read -r line && exit
kill "$1" 2>/dev/null
for i in 1 2 3 4 5 6 7 8 9 10; do kill -0 "$1" 2>/dev/null || break; sleep 1; done
kill -9 "$1" 2>/dev/null
rm -rf "$2"
"""


class BenchProcess:
    """zmbench in a private folder, with a watchdog that outlives this process."""

    def __init__(self, words: Sequence[str], timeout: float, environment: Dict[str, str]) -> None:
        """Starts it and waits for its line "ready", at most `timeout` seconds.

        Raises NoBench with what it wrote if it ends before or does not get ready.
        """
        base = tempfile.gettempdir()
        self.folder = tempfile.mkdtemp(prefix="platen-", dir=base if len(base) < _LONGEST_FOLDER else "/tmp")
        self.runtime = os.path.join(self.folder, "bench")
        self.words: List[str] = [*words, "--runtime", self.runtime]
        self.address = ""  #: of the page, if it has one
        self._owner = os.getpid()
        self._errors = os.path.join(self.folder, "errors")
        self._process: Optional["subprocess.Popen[bytes]"] = None
        self._watchdog: Optional["subprocess.Popen[bytes]"] = None
        try:
            self._start(environment)
            self._wait_ready(timeout)
        except BaseException:
            self.end()
            raise

    def _start(self, environment: Dict[str, str]) -> None:
        # A session of its own: Ctrl-C in the terminal is for the test, which then ends the bench in order.
        with open(self._errors, "wb") as errors:
            try:
                self._process = subprocess.Popen(
                    self.words,
                    stdin=subprocess.DEVNULL,
                    stdout=subprocess.PIPE,
                    stderr=errors,
                    env={**os.environ, **environment},
                    start_new_session=True,
                )
            except OSError as error:
                raise NoBench(f"{self.words[0]}: {error.strerror or error}") from error
        self._watchdog = subprocess.Popen(
            ["/bin/sh", "-c", _WATCHDOG, "platen-watchdog", str(self._process.pid), self.folder],
            stdin=subprocess.PIPE,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
            start_new_session=True,
        )

    def _wait_ready(self, timeout: float) -> None:
        process = self._process
        assert process is not None and process.stdout is not None
        deadline = time.monotonic() + timeout
        line = b""
        with selectors.DefaultSelector() as selector:
            selector.register(process.stdout, selectors.EVENT_READ)
            while not line.endswith(b"\n"):
                if not selector.select(max(deadline - time.monotonic(), 0)):
                    raise NoBench(f"zmbench was not ready within {timeout:g} s\n{self.errors()}".rstrip())
                piece = os.read(process.stdout.fileno(), 4096)
                if not piece:
                    status = process.wait()
                    raise NoBench(self.errors() or f"zmbench ended with status {status} before it was ready")
                line += piece
        self.address = line.decode().strip().partition(" ")[2]

    def errors(self) -> str:
        """What it has written to standard error."""
        try:
            with open(self._errors, encoding="utf-8", errors="replace") as stream:
                return stream.read().strip()
        except OSError:
            return ""

    @property
    def pid(self) -> int:
        """The process number of zmbench; 0 once it has been ended."""
        return self._process.pid if self._process else 0

    def end(self) -> None:
        """Ends bench and watchdog and removes the folder; does so also if it is interrupted meanwhile.

        A fork of the process that started it has no say in this.
        """
        if os.getpid() != self._owner:
            return
        process, self._process = self._process, None
        watchdog, self._watchdog = self._watchdog, None
        try:
            if process:
                process.terminate()
                process.wait(_END_SECONDS)
        except subprocess.TimeoutExpired:
            pass
        finally:
            if process:
                process.kill()
                process.wait()
                if process.stdout:
                    process.stdout.close()
            if watchdog and watchdog.stdin:
                try:
                    watchdog.stdin.write(b"done\n")
                    watchdog.stdin.close()
                except OSError:
                    pass  # it is gone already
                watchdog.wait()
            shutil.rmtree(self.folder, ignore_errors=True)
