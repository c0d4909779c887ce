"""Makes a signal file for `zmctl vehicle drive` of what candump has recorded.

    python3 -m platen_bench.can_drive drive.log car.dbc speed=VehicleSpeed gear=GearLever > drive.csv

The DBC file says where in the frames the signals are; it is read by Debian's python3-canmatrix.
"""

from __future__ import annotations

import contextlib
import csv
import difflib
import io
import re
import sys
from typing import Any, Dict, Iterator, List, NamedTuple, Optional, Sequence, TextIO, Tuple

# "(1436509052.249713) can0 123#DEADBEEF" of a log file, "(1436509052.249713)  can0  123   [4]  DE AD BE EF" of a
# terminal.
_FRAME = re.compile(
    r"\s*\((?P<time>\d+\.\d+)\)\s+\S+\s+(?P<id>[0-9A-Fa-f]{3}|[0-9A-Fa-f]{8})"
    r"(?:##?(?P<data>[0-9A-Fa-f]*|R\d?)(?:\s+[RT])?|\s+\[\d+\]\s+(?P<bytes>(?:[0-9A-Fa-f]{2}\s?)*))\s*"
)

_NUMBERS = ("speed", "light")
#: The words of the bench and what car makers call them.
_WORDS: Dict[str, Dict[str, Tuple[str, ...]]] = {
    "gear": {
        "park": ("p", "park", "parking"),
        "reverse": ("r", "reverse", "rear"),
        "neutral": ("n", "neutral"),
        "drive": ("d", "drive", "forward", "sport", "s"),
    },
    "ignition": {
        "off": ("off", "lock", "locked"),
        "accessory": ("acc", "accessory"),
        "on": ("on", "run", "running", "start", "crank"),
    },
    "daynight": {"day": ("day",), "night": ("night",)},
}


class DriveError(Exception):
    """What is wrong with a file or a word; names it."""


class Frame(NamedTuple):
    """One line of candump."""

    line: int
    seconds: float
    identifier: int
    extended: bool
    data: bytes


def read_log(lines: Sequence[str], name: str) -> Iterator[Frame]:
    """The frames of a candump log. Raises DriveError, which names the line, for one that is none."""
    for number, line in enumerate(lines, 1):
        if not line.strip() or line.startswith("#"):
            continue
        match = _FRAME.fullmatch(line.rstrip("\n"))
        if not match:
            raise DriveError(f"{name}:{number}: this is no frame of candump: {line.strip()[:60]}")
        text = match["data"] if match["bytes"] is None else match["bytes"].replace(" ", "")
        if text.startswith("R"):
            continue  # asks for a frame and carries none
        if len(text) % 2:
            raise DriveError(f"{name}:{number}: the data has half a byte: {text}")
        extended = len(match["id"]) > 3
        yield Frame(number, float(match["time"]), int(match["id"], 16), extended, bytes.fromhex(text))


def read_dbc(file: str) -> Any:
    """The matrix in a DBC file."""
    try:
        # The library tells on its way in which other formats it lacks parts for.
        with contextlib.redirect_stderr(io.StringIO()), contextlib.redirect_stdout(io.StringIO()):
            import canmatrix.formats  # type: ignore[import]
    except ImportError as error:
        raise DriveError(f"DBC files need the Debian package python3-canmatrix ({error})") from error
    try:
        with open(file, "rb") as stream:
            matrix = canmatrix.formats.load_flat(stream, "dbc")
    except OSError as error:
        raise DriveError(f"{file}: {error.strerror}") from error
    except Exception as error:  # the library raises whatever its parser does
        raise DriveError(f"{file}: cannot be read as DBC: {error}") from error
    if not matrix.frames:
        raise DriveError(f"{file}: there is no frame in it")
    return matrix


def wanted_signals(words: Sequence[str], matrix: Any, dbc: str) -> Dict[str, str]:
    """From "speed=VehicleSpeed": the DBC's names by those of the bench."""
    known = sorted({signal.name for frame in matrix.frames for signal in frame.signals})
    wanted: Dict[str, str] = {}
    for word in words:
        name, equals, signal = word.partition("=")
        if not equals or (name not in _NUMBERS and name not in _WORDS):
            raise DriveError(f'"{word}" is not SIGNAL=NAME; SIGNAL is one of {", ".join([*_NUMBERS, *_WORDS])}')
        if signal not in known:
            near = difflib.get_close_matches(signal, known, 1)
            remedy = f'did you mean "{near[0]}"?' if near else "there is " + ", ".join(known)
            raise DriveError(f'{dbc}: there is no signal "{signal}"; {remedy}')
        wanted[name] = signal
    if not wanted:
        raise DriveError("no signal is named, as in speed=VehicleSpeed")
    return wanted


def _value(name: str, decoded: Any) -> str:
    if name == "speed":
        return f"{round(float(decoded.phys_value), 2):g}"
    if name == "light":
        return str(round(float(decoded.phys_value)))
    given = str(decoded.named_value)
    for word, others in _WORDS[name].items():
        if given.lower() in others:
            return word
    raise DriveError(f'the {name} "{given}" is none of {", ".join(_WORDS[name])}')


def convert(frames: Iterator[Frame], matrix: Any, wanted: Dict[str, str], log: str, out: TextIO) -> int:
    """Writes the signal file, a line for each frame in which something changes; gives how many."""
    by_number = {(frame.arbitration_id.id, bool(frame.arbitration_id.extended)): frame for frame in matrix.frames}
    writer = csv.writer(out, lineterminator="\n")
    writer.writerow(["time", *wanted])
    begin: Optional[float] = None
    before: Dict[str, str] = {}
    written = 0
    for frame in frames:
        begin = frame.seconds if begin is None else begin
        layout = by_number.get((frame.identifier, frame.extended))
        if layout is None:
            continue
        try:
            decoded = layout.decode(frame.data)
            now = {name: _value(name, decoded[signal]) for name, signal in wanted.items() if signal in decoded}
        except DriveError as error:
            raise DriveError(f"{log}:{frame.line}: {error}") from error
        except Exception as error:
            raise DriveError(f"{log}:{frame.line}: frame {frame.identifier:X} does not fit: {error}") from error
        changed = {name: value for name, value in now.items() if before.get(name) != value}
        if changed:
            writer.writerow([f"{frame.seconds - begin:.3f}", *(changed.get(name, "") for name in wanted)])
            before.update(changed)
            written += 1
    if not written:
        raise DriveError(f"{log}: none of the signals is in it")
    return written


def main(words: List[str], out: TextIO) -> int:
    """Exit status: 2 for wrong usage, 1 for a file that cannot be used."""
    if len(words) < 3:
        print("usage: python3 -m platen_bench.can_drive LOG DBC SIGNAL=NAME... > FILE.csv", file=sys.stderr)
        return 2
    log, dbc, *signals = words
    made = io.StringIO()
    try:
        try:
            with open(log, encoding="ascii", errors="replace") as stream:
                lines = stream.readlines()
        except OSError as error:
            raise DriveError(f"{log}: {error.strerror}") from error
        matrix = read_dbc(dbc)
        convert(read_log(lines, log), matrix, wanted_signals(signals, matrix, dbc), log, made)
    except DriveError as error:
        print(f"can_drive: {error}", file=sys.stderr)
        return 1
    out.write(made.getvalue())
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:], sys.stdout))
