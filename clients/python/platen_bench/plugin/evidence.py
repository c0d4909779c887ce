"""What a failed test leaves behind."""

from __future__ import annotations

import re
from pathlib import Path
from typing import Callable, List, Optional, Tuple

from ..bench import Bench
from ..commands.film import Film
from ..errors import BenchError
from .changes import ChangeLog

_LOG_LINES = 2000


class Watched:
    """A bench of a test, with the PPS changes that come meanwhile and, if there is a file for it, a film of all."""

    def __init__(self, bench: Bench, film: Optional[Path] = None) -> None:
        self.bench = bench
        self.changes = ChangeLog(bench)
        self._film: Optional[Film] = None
        self._film_kept = False
        if film:
            film.parent.mkdir(parents=True, exist_ok=True)
            self._film = bench.begin_film(film, overwrite=True)

    def keep_film(self) -> List[Tuple[str, str]]:
        """Ends the film; gives name and path, and what is wrong with it."""
        if not self._film or self._film_kept:
            return []
        self._film_kept = True
        try:
            self.bench.end_film(self._film)
        except BenchError as error:
            return [("film", f"{self._film.path} ({str(error).strip()})")]
        missing = f" ({self._film.dropped} pictures are missing)" if self._film.dropped else ""
        return [("film", self._film.path + missing)]

    def drop_film(self) -> None:
        """Removes the film unless it was kept, and its folders if nothing else is in them. After the bench's end."""
        if not self._film or self._film_kept:
            return
        file = Path(self._film.path)
        file.unlink(missing_ok=True)
        for folder in list(file.parents)[:2]:
            try:
                folder.rmdir()
            except OSError:
                return


def folder_of(results: Path, test: str, number: int) -> Path:
    """The folder for the test with that id; `number` counts its benches from 0."""
    name = re.sub(r"[^A-Za-z0-9_.=-]+", "-", test).strip("-")[-150:]
    return results / (name if number == 0 else f"{name}-{number + 1}")


def keep(folder: Path, watched: Watched) -> List[Tuple[str, str]]:
    """Writes all that can still be had into `folder`; gives name and path of each file, or name and why not."""
    bench = watched.bench
    folder.mkdir(parents=True, exist_ok=True)
    # The script first: what is asked below is none of the test's.
    pieces: List[Tuple[str, str, Callable[[], bytes]]] = [
        ("script", "inputs.zmctl", lambda: bench.recorder.script().encode("utf-8", "replace")),
        ("record", "record.zmctl", lambda: bench.recording().encode("utf-8", "replace")),
        ("picture", "screen.png", bench.picture),
        ("texts", "screen.txt", lambda: _text(bench.ask(["screen", "--text"]).splitlines())),
        ("log", "log.txt", lambda: _text(bench.ask(["log", "--time", "-n", str(_LOG_LINES)]).splitlines())),
        ("pps", "pps.txt", lambda: _text(watched.changes.lines())),
        ("bench", "bench.txt", lambda: _text(bench.errors.splitlines())),
    ]
    kept = watched.keep_film()
    for name, file, content in pieces:
        try:
            (folder / file).write_bytes(content())
            kept.append((name, str(folder / file)))
        except (BenchError, OSError) as error:
            kept.append((name, f"could not be had: {str(error).strip()}"))
    return kept


def _text(lines: List[str]) -> bytes:
    return ("\n".join(lines) + "\n").encode("utf-8", "replace")
