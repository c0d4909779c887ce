"""The bench of the disc player from Python: `with Bench(disc=...) as unit: unit.tap("Next")` (docs/python.md)."""

from .bench import Bench
from .commands.disc import Drive
from .commands.film import Film
from .commands.pps import Change, Changes
from .commands.system import LogEntry, Process
from .errors import BenchError, CommandFailed, ExpectationFailed, NoBench, ProtocolError, WrongUsage
from .names import CONTROLS, Overlay, Page
from .programs import running_benches
from .screen import Item, Rectangle, Screen, Seen, Video, View

__all__ = [
    "Bench",
    "BenchError",
    "CONTROLS",
    "Change",
    "Changes",
    "CommandFailed",
    "Drive",
    "ExpectationFailed",
    "Film",
    "Item",
    "LogEntry",
    "NoBench",
    "Overlay",
    "Page",
    "Process",
    "ProtocolError",
    "Rectangle",
    "Screen",
    "Seen",
    "Video",
    "View",
    "WrongUsage",
    "running_benches",
]
