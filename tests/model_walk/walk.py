#!/usr/bin/env python3
"""Walks at random through the unit and through a model of it, and says where they part (README.md)."""

from __future__ import annotations

import argparse
import copy
import os
import random
import re
import shlex
import sys
import tempfile
import time
from typing import Any, Dict, List, Optional, Tuple

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))

from apply import Implausible, apply  # noqa: E402
from bench import OPTIONS, RESOURCES, Bench  # noqa: E402
from catalogue import Catalogue  # noqa: E402
from compare import differences  # noqa: E402
from pages import Texts  # noqa: E402
from smallest import smallest  # noqa: E402
from start import start_differences  # noqa: E402
from steps import Steps, Words, random_catalogue  # noqa: E402
from unit import Outcome, Unit  # noqa: E402


class Parted(Exception):
    """Unit and model are not the same any more."""

    def __init__(self, steps: List[Words], what: List[str]) -> None:
        super().__init__("\n".join(what))
        self.steps = steps
        #: Where they part first; what else differs there may be less in fewer steps.
        self.kind = re.sub(r"\d+", "", what[0].partition(": ")[0])


class Walk:
    """The real unit and the model, side by side."""

    def __init__(self, catalogue: Catalogue, folder: str) -> None:
        self._bench = Bench(catalogue, os.path.join(folder, f"catalogue-{os.getpid()}.sqlite"))
        self.done: List[Words] = []
        screen = self._bench.step([])["screen"]
        self._found(start_differences(screen))
        self.unit = Unit(copy.deepcopy(screen), catalogue, Texts(RESOURCES))
        self.unit.started()

    def _found(self, what: List[str]) -> None:
        if what:
            raise Parted(self.done, what)

    def go(self, words: Words) -> None:
        """One step of both. Raises Parted if it does not lead to the same."""
        self.done.append(words)
        answer: Dict[str, Any] = self._bench.step(words)
        if words == ["app", "quit"]:
            return
        if words == ["app", "start"]:
            screen = answer["screen"]
            self._found([] if screen else ["the application did not come back"])
            self._found(start_differences(screen))
            self.unit.restart(copy.deepcopy(screen))
        else:
            self.unit.out = Outcome()
            try:
                apply(self.unit, words, answer)
            except Implausible as error:
                self._found([str(error)])
        if words[:2] == ["app", "start"]:
            answer.update(log=[], changes=[], requests=[])
        self._found(differences(self.unit, answer))

    def close(self) -> None:
        self._bench.close()


def walk(catalogue: Catalogue, steps: List[Words], folder: str) -> Optional[Parted]:
    """Those steps on a fresh bench; where unit and model part."""
    side_by_side = Walk(catalogue, folder)
    try:
        for words in steps:
            side_by_side.go(words)
    except Parted as parted:
        return parted
    finally:
        side_by_side.close()
    return None


def random_walk(seed: int, count: int, folder: str) -> Tuple[Catalogue, Optional[Parted]]:
    chance = random.Random(seed)
    catalogue = random_catalogue(chance)
    side_by_side = Walk(catalogue, folder)
    steps = Steps(chance)
    try:
        for _ in range(count):
            side_by_side.go(steps.next(side_by_side.unit))
    except Parted as parted:
        return catalogue, parted
    finally:
        side_by_side.close()
    return catalogue, None


def write_script(file: str, seed: int, catalogue: Catalogue, parted: Parted) -> None:
    """A script for `zmctl run` and for --replay; its catalogue lies beside it."""
    database = os.path.splitext(file)[0] + ".sqlite"
    if os.path.exists(database):
        os.remove(database)
    catalogue.write(database)
    with open(file, "w", encoding="utf-8") as stream:
        stream.write("# Unit and model part at the last step of this script. It wants a fresh bench:\n")
        stream.write(f"#   zmbench {shlex.join(OPTIONS)} --catalogue {shlex.quote(os.path.abspath(database))}\n")
        stream.write(f"# seed {seed}\n")
        for line in str(parted).splitlines():
            stream.write(f"# {line}\n")
        for words in parted.steps:
            stream.write(f"{shlex.join(words)}\nsettle\n")


def read_script(file: str) -> Tuple[int, List[Words]]:
    with open(file, encoding="utf-8") as stream:
        lines = stream.read().splitlines()
    seed = next(int(line.split()[2]) for line in lines if line.startswith("# seed "))
    return seed, [shlex.split(line) for line in lines if line and line[0] != "#" and line != "settle"]


def report(seed: int, catalogue: Catalogue, parted: Parted, folder: str, tries: int) -> None:
    print(f"seed {seed}: unit and model part at step {len(parted.steps)}: {shlex.join(parted.steps[-1]) if parted.steps else 'the start'}")
    print(parted)
    small = smallest(parted, lambda steps: walk(catalogue, steps, folder), tries)
    file = f"walk-{seed}.zmctl"
    write_script(file, seed, catalogue, small)
    print(f"{len(small.steps)} of {len(parted.steps)} steps lead there: {file}")
    for words in small.steps:
        print(f"  {shlex.join(words)}")
    print(small, flush=True)


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("steps", nargs="?", type=int, default=10000, help="how many steps (10000)")
    parser.add_argument("seed", nargs="?", type=int, default=1, help="of the first walk (1)")
    parser.add_argument("--length", type=int, default=500, help="steps of one walk, with a bench and a catalogue of its own (500)")
    parser.add_argument("--tries", type=int, default=200, help="how many times a difference is tried to be had in fewer steps (200)")
    parser.add_argument("--go-on", action="store_true", help="walk on with the next seed after a difference")
    parser.add_argument("--replay", metavar="FILE", help="repeat a script that a walk has left")
    arguments = parser.parse_args()
    with tempfile.TemporaryDirectory(prefix="platen-walk-") as folder:
        if arguments.replay:
            seed, steps = read_script(arguments.replay)
            parted = walk(random_catalogue(random.Random(seed)), steps, folder)
            print(parted or "unit and model do not part")
            return 1 if parted else 0
        began, walked, seed, faults = time.monotonic(), 0, arguments.seed, 0
        while walked < arguments.steps:
            length = min(arguments.length, arguments.steps - walked)
            catalogue, parted = random_walk(seed, length, folder)
            walked += len(parted.steps) if parted else length
            if parted:
                faults += 1
                report(seed, catalogue, parted, folder, arguments.tries)
                if not arguments.go_on:
                    break
            seed += 1
        seconds = time.monotonic() - began
        print(f"{walked} steps from seed {arguments.seed} in {seconds:.0f} s ({1000 * seconds / walked:.1f} ms each), {faults} differences")
        return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
