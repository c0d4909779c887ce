"""Films looked at again: what was seen and heard in them."""

import array
import json
import subprocess
from pathlib import Path
from typing import Any, Dict, List, Tuple

RATE = 48000
WIDTH, HEIGHT = 800, 480


def _ffmpeg(*words: str) -> bytes:
    return subprocess.run(["ffmpeg", "-nostdin", "-v", "error", *words], check=True, capture_output=True).stdout


def streams(film: Path) -> List[Dict[str, Any]]:
    """What ffprobe says of the streams; "nb_read_packets" is their number of packets."""
    words = ["ffprobe", "-v", "error", "-count_packets", "-show_streams", "-show_format", "-of", "json", str(film)]
    said = json.loads(subprocess.run(words, check=True, capture_output=True).stdout)
    return [dict(stream, format=said["format"]) for stream in said["streams"]]


def frames(film: Path) -> int:
    return int(streams(film)[0]["nb_read_packets"])


def brightness(film: Path, x: int, y: int, width: int, height: int) -> List[Tuple[float, int]]:
    """Moment and mean brightness (0 to 255) of a part of each frame."""
    area = f"crop={width}:{height}:{x}:{y},scale=1:1:flags=area"
    values = _ffmpeg("-i", str(film), "-vf", area, "-f", "rawvideo", "-pix_fmt", "gray", "-vsync", "0", "-")
    words = ["ffprobe", "-v", "error", "-select_streams", "v", "-show_entries", "packet=pts_time", "-of", "csv=p=0"]
    times = subprocess.run([*words, str(film)], check=True, capture_output=True, encoding="ascii").stdout
    return list(zip([float(line.strip(",")) for line in times.split()], values))


def frame(film: Path, seconds: float) -> bytes:
    """The frame at that moment: gray, a byte a pixel."""
    return _ffmpeg("-ss", f"{seconds}", "-i", str(film), "-frames:v", "1", "-f", "rawvideo", "-pix_fmt", "gray", "-")


def gray(picture: bytes) -> bytes:
    """The same of a PNG."""
    words = ["ffmpeg", "-v", "error", "-f", "png_pipe", "-i", "-", "-f", "rawvideo", "-pix_fmt", "gray", "-"]
    return subprocess.run(words, input=picture, check=True, capture_output=True).stdout


def difference(one: bytes, other: bytes) -> float:
    """How far two pictures are apart on average, in steps of gray."""
    assert len(one) == len(other) == WIDTH * HEIGHT
    return sum(abs(a - b) for a, b in zip(one, other)) / len(one)


def peaks(film: Path) -> List[int]:
    """The loudest sample of each millisecond of the sound, from the film's beginning on."""
    sound = array.array("h")
    sound.frombytes(_ffmpeg("-i", str(film), "-map", "0:a", "-f", "s16le", "-ac", "1", "-ar", str(RATE), "-"))
    step = RATE // 1000
    return [max(abs(value) for value in sound[i : i + step]) for i in range(0, len(sound) - step, step)]
