"""Discs for tests, made by ffmpeg from a list of tracks and kept in a cache."""

from __future__ import annotations

import hashlib
import json
import os
import shutil
import subprocess
import tempfile
from dataclasses import asdict, dataclass
from pathlib import Path
from typing import Callable, List, Optional, Sequence, Union

from .errors import BenchError

# Counted up whenever the same tracks would give other files, so that old discs are made anew.
_RECIPE = 2
_CD_RATE = 44100
_PITCHES = (220, 247, 262, 294, 330, 349, 392)


@dataclass(frozen=True)
class Track:
    """A song, video or photo of a disc.

    `file` is its name on the disc, with folders: "Roads/01 Bridge.mp3"; without one it is made from the title, of
    a song with its number in front. `seconds` is its length (of a photo nothing).
    """

    title: str
    artist: str = ""
    album: str = ""
    file: Optional[str] = None
    seconds: int = 60
    kind: str = "music"  #: "music", "video" or "photo"
    colour: str = "red"  #: of a video or photo, as ffmpeg names it


TrackLike = Union[str, Track]


def default_cache() -> Path:
    """`PLATEN_DISCS`, else platen-bench/discs in the user's cache folder."""
    named = os.environ.get("PLATEN_DISCS")
    home = os.environ.get("XDG_CACHE_HOME") or os.path.expanduser("~/.cache")
    return Path(named) if named else Path(home) / "platen-bench" / "discs"


def make_disc(tracks: Sequence[TrackLike], cache: Optional[Path] = None) -> Path:
    """A folder with these tracks; a text is a song with that title, by "The Testers", from "Test Disc".

    The folder is made once and then taken from the cache, as long as the list stays the same: nobody may change
    what is in it. Several processes may ask at once. Raises BenchError with ffmpeg's words if it cannot be made,
    ValueError for a track of an unknown kind.
    """
    whole = [_track(track) for track in tracks]
    return _cached("disc", whole, cache, _write_files)


def make_audio_cd(tracks: Sequence[TrackLike], cache: Optional[Path] = None) -> Path:
    """The image of an audio CD with these tracks and their titles (CD-Text): a .cue file. As `make_disc` else."""
    whole = [_track(track) for track in tracks]
    return _cached("cd", whole, cache, _write_cd) / "disc.cue"


def _track(track: TrackLike) -> Track:
    return Track(track, "The Testers", "Test Disc") if isinstance(track, str) else track


def _cached(
    kind: str, tracks: List[Track], cache: Optional[Path], write: Callable[[Path, List[Track]], None]
) -> Path:
    recipe = json.dumps([_RECIPE, kind, [asdict(track) for track in tracks]], sort_keys=True)
    home = default_cache() if cache is None else cache
    target = home / f"{kind}-{hashlib.sha256(recipe.encode()).hexdigest()[:20]}"
    if target.is_dir():
        return target
    home.mkdir(parents=True, exist_ok=True)
    # Made beside its place and moved there when it is whole; whoever comes second finds it there.
    making = Path(tempfile.mkdtemp(prefix=".making-", dir=home))
    try:
        write(making, tracks)
        making.chmod(0o755)
        try:
            making.rename(target)
        except OSError:
            if not target.is_dir():
                raise
    finally:
        shutil.rmtree(making, ignore_errors=True)
    return target


def _ffmpeg(*words: str) -> None:
    command = ["ffmpeg", "-nostdin", "-v", "error", "-y", *words]
    try:
        result = subprocess.run(command, capture_output=True, encoding="utf-8", errors="replace")
    except OSError as error:
        raise BenchError(f"ffmpeg, which makes discs: {error.strerror or error}") from error
    if result.returncode != 0:
        raise BenchError(f"ffmpeg could not make {words[-1]}: {result.stderr.strip()}")


def _tone(number: int, seconds: int) -> List[str]:
    return ["-f", "lavfi", "-i", f"sine=frequency={_PITCHES[number % len(_PITCHES)]}:duration={seconds}"]


def _write_files(folder: Path, tracks: List[Track]) -> None:
    for number, track in enumerate(tracks):
        make = {"music": _write_song, "video": _write_video, "photo": _write_photo}.get(track.kind)
        if make is None:
            raise ValueError(f'{track.title}: a track is "music", "video" or "photo", not "{track.kind}"')
        # Songs keep their order by their number; of videos and photos it would be part of the name on the screen.
        name = f"{number + 1:02} {track.title}.mp3"
        if track.kind != "music":
            name = track.title + {"video": ".mpg", "photo": ".png"}[track.kind]
        path = folder / (track.file or name)
        path.parent.mkdir(parents=True, exist_ok=True)
        make(path, number, track)


def _write_song(path: Path, number: int, track: Track) -> None:
    tags = {"title": track.title, "artist": track.artist, "album": track.album, "track": str(number + 1)}
    words = [word for name, value in tags.items() if value for word in ("-metadata", f"{name}={value}")]
    _ffmpeg(*_tone(number, track.seconds), "-ac", "2", *words, str(path))


def _write_video(path: Path, number: int, track: Track) -> None:
    picture = f"color={track.colour}:size=320x240:rate=25:duration={track.seconds}"
    _ffmpeg("-f", "lavfi", "-i", picture, *_tone(number, track.seconds),
            "-c:v", "mpeg2video", "-b:v", "800k", "-c:a", "mp2", "-f", "vob", str(path))  # fmt: skip


def _write_photo(path: Path, _: int, track: Track) -> None:
    _ffmpeg("-f", "lavfi", "-i", f"color={track.colour}:size=800x480", "-frames:v", "1", str(path))


def _write_cd(folder: Path, tracks: List[Track]) -> None:
    first = tracks[0] if tracks else Track("")
    cue = [f'TITLE "{first.album}"', f'PERFORMER "{first.artist}"', 'FILE "disc.bin" BINARY']
    second = 0
    with open(folder / "disc.bin", "wb") as image:
        for number, track in enumerate(tracks):
            sound = folder / "sound.raw"
            _ffmpeg(
                *_tone(number, track.seconds), "-ac", "2", "-ar", str(_CD_RATE), "-f", "s16le", str(sound)
            )
            image.write(sound.read_bytes())
            sound.unlink()
            cue.append(f"TRACK {number + 1:02} AUDIO")
            cue += [f'TITLE "{track.title}"'] if track.title else []
            cue += [f'PERFORMER "{track.artist}"'] if track.artist else []
            cue.append(f"INDEX 01 {second // 60:02}:{second % 60:02}:00")
            second += track.seconds
    (folder / "disc.cue").write_text("\n".join(cue) + "\n", encoding="utf-8")
