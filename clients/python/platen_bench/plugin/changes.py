"""The last changes of all PPS objects, kept while a test runs."""

from __future__ import annotations

import threading
from collections import deque
from typing import Deque, List

from ..bench import Bench
from ..commands.pps import Change, Changes
from ..errors import BenchError

#: How many changes are kept.
KEPT = 200


class ChangeLog:
    """Watches the objects that there are now, each with a thread that waits for its next change."""

    def __init__(self, bench: Bench) -> None:
        self._kept: Deque[Change] = deque(maxlen=KEPT)
        self._watches: List[Changes] = []
        self._threads: List[threading.Thread] = []
        for name in bench.pps.ls():
            watch = bench.pps.watch(name)
            thread = threading.Thread(target=self._follow, args=(watch,), daemon=True, name=f"watch {name}")
            self._watches.append(watch)
            self._threads.append(thread)
            thread.start()

    def _follow(self, watch: Changes) -> None:
        try:
            for change in watch:
                self._kept.append(change)
        except BenchError:
            pass  # the bench has ended: what came until then is kept
        finally:
            watch.close()

    def lines(self) -> List[str]:
        """The changes, oldest first: moment in seconds since the epoch, object, lines."""
        changes = sorted(self._kept.copy(), key=lambda change: change.time)
        return [f"{change.time:.3f} {change.object} {'  '.join(change.lines)}" for change in changes]
