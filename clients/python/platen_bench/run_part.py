"""python3 -m platen_bench.run_part RUN I/N SUITE [PYTEST OPTIONS]: runs the I-th of N parts of a suite for a scheduler.

RUN is a folder that all machines of the run see. A part that has been run to its end is not run again, so a scheduler
may start any part as often as it likes, also twice at a time: one try counts. docs/farm.md shows the whole.
"""

from __future__ import annotations

import json
import os
import socket
import subprocess
import sys
import time
from pathlib import Path
from typing import List

from .plugin.shards import part_file, parse_shard

# pytest ended by itself: all passed, some failed, or this part has no tests. Without a report it did not: a Python
# that has no pytest ends with 1, too.
_ENDED = (0, 1, 5)


def part_folder(run: Path, number: int, parts: int) -> Path:
    """Where the try that counts is found: a link, made once the part has been run to its end."""
    return run / "parts" / f"{number}-of-{parts}"


def run_part(run: Path, number: int, parts: int, suite: str, options: List[str]) -> int:
    """Runs the part if none has run it to its end yet; gives pytest's exit status, 0 for a part without tests."""
    done = part_folder(run, number, parts)
    if done.is_symlink():
        print(f"part {number} of {parts} has been run already: {done}")
        return _status(done)
    tried = run / "tries" / f"{number}-of-{parts}.{socket.gethostname()}.{os.getpid()}.{time.time_ns()}"
    tried.mkdir(parents=True)
    began = time.time()
    durations = _durations_for(run, tried)
    words = [sys.executable, "-m", "pytest", "-p", "platen_bench.pytest_plugin", suite, "--shard", f"{number}/{parts}"]
    words += ["--durations-file", str(durations), "--results", str(tried / "results")]
    words += ["--junitxml", str(tried / "junit.xml"), "-o", "junit_family=xunit1", *options]
    status = subprocess.call(words)
    if status not in _ENDED or not (tried / "junit.xml").exists():
        print(f"part {number} of {parts}: pytest ended with {status}; nothing of this try counts", file=sys.stderr)
        return status if status > 1 else 2
    (tried / "part.json").write_text(
        json.dumps(
            {
                "status": 0 if status == 5 else status,
                "machine": os.environ.get("PLATEN_MACHINE", socket.gethostname()),
                "began": round(began, 3),
                "ended": round(time.time(), 3),
                "durations": part_file(durations, number, parts).name,
            }
        ),
        encoding="utf-8",
    )
    done.parent.mkdir(parents=True, exist_ok=True)
    try:
        done.symlink_to(Path("..") / "tries" / tried.name)
    except FileExistsError:
        print(f"part {number} of {parts} has been run meanwhile; nothing of this try counts")
    return _status(done)


def _status(done: Path) -> int:
    return int(json.loads((done / "part.json").read_text(encoding="utf-8"))["status"])


def _durations_for(run: Path, tried: Path) -> Path:
    """The try's own copy of what the run was balanced by: its new durations are written beside that."""
    durations = tried / "durations.json"
    known = run / "durations.json"
    if known.exists():
        durations.write_bytes(known.read_bytes())
    return durations


def main(words: List[str]) -> int:
    """The command line."""
    if len(words) < 3:
        print(__doc__, file=sys.stderr)
        return 2
    try:
        number, parts = parse_shard(words[1])
        run = Path(words[0]).resolve()
        if not run.is_dir():
            raise ValueError(f"{run}: no such folder")
        return run_part(run, number, parts, words[2], words[3:])
    except (OSError, ValueError) as error:
        print(f"run_part: {error}", file=sys.stderr)
        return 2


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
