"""python3 -m platen_bench.merge_durations FILE: adds what the parts of a suite kept beside FILE to it."""

from __future__ import annotations

import re
import sys
from pathlib import Path
from typing import List

from .plugin.shards import read_durations, write_durations


def merge(file: Path) -> int:
    """Adds the durations of FILE.I-of-N.json to the file and removes those files; gives their number."""
    form = re.compile(re.escape(file.stem) + r"\.\d+-of-\d+" + re.escape(file.suffix))
    parts = sorted(each for each in file.parent.iterdir() if form.fullmatch(each.name))
    durations = read_durations(file)
    for part in parts:
        durations.update(read_durations(part))
    if parts:
        write_durations(file, durations)
    for part in parts:
        part.unlink()
    return len(parts)


def main(words: List[str]) -> int:
    """The command line."""
    if len(words) != 1:
        print(__doc__, file=sys.stderr)
        return 2
    try:
        print(f"{merge(Path(words[0]))} parts merged into {words[0]}")
    except (OSError, ValueError) as error:
        print(f"merge_durations: {error}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
