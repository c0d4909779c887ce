"""Where zmbench and zmctl lie, and which benches run."""

from __future__ import annotations

import os
import shutil
import sys
from pathlib import Path
from typing import Iterator, List, Optional, Union

from .errors import NoBench

_SOCKET = "/ctl.sock"


def find_bench(program: Optional[Union[str, "os.PathLike[str]"]] = None) -> str:
    """The path of zmbench: `program` (the program or its folder), else `PLATEN_BENCH` (the same), else a build or
    an installation around this package, else the first in PATH.

    Raises NoBench, which says where was looked.
    """
    named = program or os.environ.get("PLATEN_BENCH")
    if named:
        path = Path(named)
        path = path / "zmbench" if path.is_dir() else path
        if not os.access(path, os.X_OK):
            raise NoBench(f"{path}: there is no such program")
        return str(path.resolve())
    for folder in _around():
        if os.access(folder / "zmbench", os.X_OK):
            return str(folder / "zmbench")
    found = shutil.which("zmbench")
    if found:
        return found
    raise NoBench(
        "zmbench was found neither in a build around this package nor in PATH; "
        "name it with Bench(program=...), --bench or PLATEN_BENCH"
    )


def _around() -> Iterator[Path]:
    for folder in Path(__file__).resolve().parents:
        yield folder
        yield folder / "bin"
        yield folder / "build" / "bin"
    yield Path(sys.prefix) / "bin"


def find_ctl(bench: Optional[str]) -> str:
    """The path of the zmctl that lies beside `bench` (None: beside the one that `find_bench` finds)."""
    path = os.path.join(os.path.dirname(bench or find_bench()), "zmctl")
    if os.access(path, os.X_OK):
        return path
    found = shutil.which("zmctl")
    if found:
        return found
    raise NoBench(f"{path}: there is no such program, and none in PATH")


def default_runtime() -> str:
    """The runtime folder that zmbench takes when none is named."""
    if os.environ.get("ZM_RUNTIME"):
        return os.environ["ZM_RUNTIME"]
    if os.environ.get("XDG_RUNTIME_DIR"):
        return os.environ["XDG_RUNTIME_DIR"] + "/zmbench"
    return f"/tmp/zmbench-{os.getuid()}"


def running_benches() -> List[str]:
    """The runtime folders of this user's benches that run now."""
    folders = set()
    with open("/proc/net/unix", encoding="utf-8", errors="surrogateescape") as sockets:
        for line in sockets:
            path = line.rstrip("\n")[line.find("/") :] if "/" in line else ""
            if path.endswith(_SOCKET) and os.access(path, os.W_OK):
                folders.add(path[: -len(_SOCKET)])
    return sorted(folders)
