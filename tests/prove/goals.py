"""What is proven beyond the tests that every change must pass: each goal with its command and what of its output counts."""

from __future__ import annotations

import re
from dataclasses import dataclass
from typing import Callable, Optional, Tuple


@dataclass(frozen=True)
class Value:
    text: str
    good: bool


@dataclass(frozen=True)
class Run:
    """What a command printed, how it ended and how long it took."""

    output: str
    status: int
    seconds: float


# Nothing: the run says nothing of the goal.
Reader = Callable[[Run], Optional[Value]]


@dataclass(frozen=True)
class Goal:
    name: str  # a word, as `./dev prove NAME` takes it
    area: str
    goal: str
    command: Tuple[str, ...]  # none: nothing measures it yet
    read: Reader
    short: Tuple[str, ...] = ()  # the same in a few minutes, to see that it works; it proves less and the page says so


def at_least(pattern: str, least: float, unit: str = "%") -> Reader:
    """The last number that the pattern's group finds."""

    def read(run: Run) -> Optional[Value]:
        found = re.findall(pattern, run.output)
        if not found:
            return None
        value = float(found[-1])
        return Value(f"{value:g}{unit}", value >= least)

    return read


def at_most(pattern: str, most: float, unit: str) -> Reader:
    """The largest number that the pattern's group finds."""

    def read(run: Run) -> Optional[Value]:
        found = [float(each) for each in re.findall(pattern, run.output)]
        return Value(f"{max(found):g}{unit}", max(found) <= most) if found else None

    return read


def passes(pattern: str) -> Reader:
    """The command succeeds; the last match of the pattern is the value."""

    def read(run: Run) -> Optional[Value]:
        found = re.findall(pattern, run.output)
        return Value(found[-1], run.status == 0) if found else None

    return read


def within(minutes: float) -> Reader:
    """The command succeeds in so many minutes."""

    def read(run: Run) -> Optional[Value]:
        took = run.seconds / 60
        return Value(f"{took:.0f} min" + ("" if run.status == 0 else ", failed"), run.status == 0 and took <= minutes)

    return read


def _mutation(name: str, room: str, count: int, least: int) -> Goal:
    return Goal(name, "mutation", f"{count} random mutants of {room}/, at least {least} % killed",
                ("./dev", "mutate", room, str(count), "--goal", str(least)),
                at_least(r"killed \((\d+(?:\.\d+)?) %\)", least), ("./dev", "mutate", room, "5"))


def _anomaly(kind: str, what: str, runs: int) -> Goal:
    return Goal(f"anomaly-{kind}", "anomaly", f"{runs} {what}: nothing hangs, is lost or wrong", ("./dev", "anomaly", kind, "--runs", str(runs)),
                passes(r"anomaly: .*"), ("./dev", "anomaly", kind, "--runs", "6"))


def _coverage(name: str, room: str, lines: int, branches: int) -> Goal:
    def read(run: Run) -> Optional[Value]:
        found = re.search(rf"^{room}: (\d+\.\d) % of \d+ lines, (\d+\.\d) % of \d+ branches$", run.output, re.MULTILINE)
        return Value(f"{found[1]}%, {found[2]}%", float(found[1]) >= lines and float(found[2]) >= branches) if found else None

    return Goal(f"coverage-{name}", "coverage", f"{room}/: {lines} % of the lines, {branches} % of the branches", ("./dev", "test", "--coverage"), read)


_TESTS = r"\d+% tests passed, \d+ tests failed out of \d+"

GOALS = (
    Goal("walk", "model", "1,000,000 random steps of unit and model, no difference", ("./dev", "walk", "1000000"),
         passes(r"\d+ steps from seed .*"), ("./dev", "walk", "1000")),
    _mutation("mutate-application", "mpu", 400, 95),
    _mutation("mutate-platform", "platform", 300, 90),
    _mutation("mutate-services", "services", 300, 90),
    _coverage("application", "mpu", 100, 98),
    _coverage("platform", "platform", 95, 88),
    _coverage("services", "services", 95, 88),
    Goal("coverage-page", "coverage", "scripts of the page: 90 % of the lines", ("./dev", "test", "--page-coverage"),
         at_least(r"page scripts: (\d+(?:\.\d+)?) %", 90)),
    _anomaly("memory", "allocations that fail, one a story, in three programs", 3000),
    _anomaly("disk", "a disk that is full from each write on", 600),
    _anomaly("sockets", "stories with interrupted and short calls of sockets", 300),
    _anomaly("clock", "stories with clocks that jump both ways", 300),
    Goal("schedules", "schedules", "10,000 orders of the threads, no story fails", ("./dev", "schedules", "10000"),
         passes(r"schedules: .*"), ("./dev", "schedules", "100")),
    Goal("annotations", "schedules", "locks are annotated, and clang's -Wthread-safety says nothing", ("tests/annotations/run",),
         passes(r"annotations: .*")),
    Goal("tsan", "schedules", "no race in any test", ("./dev", "test", "--sanitize", "tsan"), passes(_TESTS),
         ("./dev", "test", "--sanitize", "tsan", "-L", "^base$")),
    Goal("asan", "hostile", "no leak and no wild access in any test", ("./dev", "test", "--sanitize", "asan"), passes(_TESTS),
         ("./dev", "test", "--sanitize", "asan", "-L", "^base$")),
    Goal("hostile", "hostile", "public and hostile corpora: nothing crashes, hangs or is silently wrong",
         ("./dev", "test", "-R", "python.hostile|Json|Hostile|Damaged|ImagesWithoutARoot|InsertedImages|ChangedDvd"), passes(_TESTS)),
    Goal("damaged-images", "hostile", "every structure of every form of image damaged in every way: read or refused within 2 s, no file another",
         ("tests/images/run", "10"), passes(r"damaged images of .*"), ("tests/images/run", "1")),
    Goal("fuzz", "fuzzing", "every target for an hour, no finding", ("./dev", "fuzz", "all", "3600"),
         passes(r"fuzzing: .*"), ("./dev", "fuzz", "json", "5")),
    Goal("soak", "soak", "a simulated week in 30 minutes: memory, descriptors, threads and disk stay flat", ("tests/prove/soak.py",),
         passes(r"soak: \d+ discs, .* grew"), ("tests/prove/soak.py", "--minutes", "2")),
    Goal("ci", "time", "what every change must pass takes at most 40 minutes", (".ci/run",), within(40)),
    Goal("frames", "benchmarks", "no frame lost in 20 s of a film beside a busy core", ("./dev", "bench", "video-busy"),
         at_most(r'frames lost in 20 s, beside a busy core", "value": ([\d.]+)', 0, " frames")),
    Goal("dvd-frames", "benchmarks", "no picture lost in a minute of an interlaced DVD", ("env", "ZM_FILM_SECONDS=60", "./dev", "bench", "dvd-unit"),
         at_most(r'pictures lost in \d+ s of interlaced film", "value": ([\d.]+)', 0, " pictures"), ("./dev", "bench", "dvd-unit")),
    Goal("motion", "benchmarks", "in a minute of flings and changes of pages no frame later than the screen's next",
         ("./dev", "bench", "motion"), at_most(r"frames later than the screen's next\", \"value\": ([\d.]+)", 0, " frames")),
    Goal("drawing", "benchmarks", "a frame that moves is drawn in at most 4 ms, half of them",
         ("./dev", "bench", "motion"), at_most(r', a frame", "value": ([\d.]+)', 4, " ms")),
    Goal("latency", "benchmarks", "99th percentile of a PPS change's way to a frame at most 15 ms beside a busy core",
         ("./dev", "bench", "unit-busy"), at_most(r'99th percentile, beside a busy core", "value": ([\d.]+)', 15, " ms")),
)
