"""Films of the screen and the sound."""

from __future__ import annotations

import os
import re
from contextlib import contextmanager
from dataclasses import dataclass
from typing import Iterator, Union

from .base import Caller, form

_SUMMARY = re.compile(r".*: ([0-9.]+) s, (\d+) frames, (none|\d+) dropped\n", re.DOTALL)


@dataclass
class Film:
    """A film; what it is like is known once it has ended."""

    path: str
    seconds: float = 0.0
    frames: int = 0  #: pictures that are in it, 30 a second
    dropped: int = 0  #: pictures that are missing, because the machine was too slow


class FilmCommands(Caller):
    """Films."""

    @form("film FILE.webm [--seconds SECONDS] [--overwrite]", "film --stop")
    @contextmanager
    def film(self, file: Union[str, "os.PathLike[str]"], overwrite: bool = False) -> Iterator[Film]:
        """Films the screen, with the fingers on it, and the sound while the block runs; WebM, of the screen's size.

            with unit.film("next.webm") as film:
                unit.tap("Next")
            assert film.dropped == 0

        Raises CommandFailed if a film is being made already, for a file that cannot be written or is there (unless
        `overwrite`), and at the end for a film that has ended early (disk full); an exception of the block comes first.
        """
        made = self.begin_film(file, overwrite)
        try:
            yield made
        except BaseException:
            try:
                self.end_film(made)
            except Exception:
                pass  # what went wrong first is told
            raise
        self.end_film(made)

    def begin_film(self, file: Union[str, "os.PathLike[str]"], overwrite: bool = False) -> Film:
        """Begins a film without a block; raises as `film` does."""
        path = os.path.abspath(file)
        self.command("film", path, *(["--overwrite"] if overwrite else []))
        return Film(path)

    def end_film(self, film: Film) -> None:
        """Ends it; `film` then says what it is like. Raises CommandFailed if it has ended early."""
        match = _SUMMARY.fullmatch(self.command("film", "--stop"))
        if match:
            film.seconds, film.frames = float(match[1]), int(match[2])
            film.dropped = 0 if match[3] == "none" else int(match[3])
