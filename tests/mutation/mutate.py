#!/usr/bin/python3
"""Says which changes of a room's code no test notices.

All mutants are compiled into one build and sleep; one run of the tests shows which of them each test reaches, and
then each mutant is woken in turn for the tests that reach it.
"""

from __future__ import annotations

import argparse
import json
import os
import re
import shlex
import signal
import subprocess
import sys
import threading
import time
from concurrent.futures import ProcessPoolExecutor, ThreadPoolExecutor
from dataclasses import dataclass
from pathlib import Path
from typing import Dict, List, Optional, Sequence, Set, Tuple

from mutants import Mutant, Source, choose, kinds, mutated

PROJECT = Path(__file__).resolve().parent.parent.parent
# The test programs that hold a room, the quickest first.
PROGRAMS = (
    ("mpu", ("model", "walk", "anomaly", "views", "pictures")),
    ("base", ("base",)),
    ("platform/linux/pps", ("pps",)),
    ("platform/linux/qdb", ("qdb",)),
    ("platform/linux/slog", ("slog",)),
    ("platform/linux/screen", ("screen", "framework")),
    ("platform/linux/toolkit", ("toolkit", "pictures", "views", "walk")),
    ("platform/linux/framework", ("framework", "walk")),
    ("services/bench", ("bench", "screen", "walk", "system")),
    ("services/ctl", ("bench", "system")),
    ("services/film", ("film", "system")),
    ("services/disc", ("disc", "system")),
)
# The walks beside the model, by their seeds, which CI walks, too; each is a test of the program `walk`.
WALKS = (1, 2, 3, 4)
WALK_STEPS = 500
# So many seconds, and four times what it usually takes, has a test until it counts as one that does not end.
PATIENCE = 20


@dataclass
class Test:
    program: str
    name: str
    milliseconds: int
    reaches: Set[int]


@dataclass
class Verdict:
    mutant: Mutant
    state: str
    """killed, lived, unreached or equivalent"""
    by: str = ""
    earlier: bool = False
    """Found by an earlier run."""


def say(text: str) -> None:
    print(text, flush=True)


def programs_of(room: str) -> List[str]:
    rows = [row for row in PROGRAMS if row[0].startswith(room) or room.startswith(row[0])]
    if not rows:
        raise SystemExit(f"mutate: no tests are named for {room}; known are {', '.join(row[0] for row in PROGRAMS)}")
    names: List[str] = []
    for _, programs in rows:
        names += [name for name in programs if name not in names]
    return names


def git_files(*patterns: str) -> List[str]:
    words = ["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard", *patterns]
    return [name for name in subprocess.check_output(words, cwd=PROJECT, text=True).split("\0") if name]


def put(path: Path, text: bytes) -> None:
    """What is as it was keeps its time, so that it is not compiled again."""
    if not path.exists() or path.read_bytes() != text:
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(text)


class Tree:
    """A copy of the project in which mutants sleep."""

    def __init__(self, path: Path, jobs: int) -> None:
        self.path = path
        self.jobs = jobs
        self.texts: Dict[str, bytes] = {}
        """The sources as they were copied, whatever becomes of them meanwhile."""

    def copy(self) -> None:
        for name in git_files():
            source = PROJECT / name
            if source.is_file():
                self.texts[name] = source.read_bytes()
                put(self.path / name, self.texts[name])
                (self.path / name).chmod(source.stat().st_mode)

    def arguments(self) -> Dict[str, List[str]]:
        """What each source is compiled with, one at a time."""
        subprocess.run(["cmake", "--preset", "lint"], cwd=self.path, check=True, stdout=subprocess.DEVNULL)
        rows = json.loads((self.path / "build/lint/compile_commands.json").read_text())
        found: Dict[str, List[str]] = {}
        for row in rows:
            words = shlex.split(row["command"])
            flags = [word for word in words if word.startswith(("-I", "-D", "-std"))]
            flags += [word for at, word in enumerate(words) if word == "-isystem" or words[at - 1] == "-isystem"]
            found[str(Path(row["file"]).relative_to(self.path))] = flags
        return found

    def write(self, mutants: Sequence[Tuple[int, Mutant]], files: Sequence[str]) -> None:
        for file in files:
            inside = [pair for pair in mutants if pair[1].file == file]
            text = self.texts[file]
            put(self.path / file, mutated(text, inside) if inside else text)

    def build(self, targets: Sequence[str]) -> str:
        """What the compiler says, or nothing."""
        words = ["cmake", "-S", ".", "-B", "build", "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release", "-DZM_MUTATION=ON"]
        subprocess.run(words, cwd=self.path, check=True, stdout=subprocess.DEVNULL)
        words = ["ninja", "-C", "build", "-k", "0", f"-j{self.jobs}", *targets]
        done = subprocess.run(words, cwd=self.path, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        return done.stdout if done.returncode != 0 else ""


def compiled(tree: Tree, mutants: List[Mutant], targets: Sequence[str]) -> List[Tuple[int, Mutant]]:
    """The mutants that the compiler takes."""
    numbered = list(enumerate(mutants))
    files = sorted({each.file for each in mutants})
    while True:
        tree.write(numbered, files)
        said = tree.build(targets)
        if not said:
            return numbered
        places = {(name, int(line)) for name, line in re.findall(r"(\S+?\.cpp):(\d+):\d+: error:", said)}
        bad = {
            number
            for number, each in numbered
            for name, line in places
            if name.endswith(each.file) and each.line <= line <= each.line + each.was.count("\n")
        }
        if not bad:
            wrong = [line for line in said.splitlines() if re.search(r"error|undefined|FAILED", line)]
            raise SystemExit("mutate: the copy does not build:\n" + "\n".join(wrong[:40]))
        say(f"  {len(bad)} do not compile")
        numbered = [pair for pair in numbered if pair[0] not in bad]


class Watch:
    """Ends a test program, with the programs that it has started, when a test does not end."""

    all: Set["Watch"] = set()

    def __init__(self, group: int) -> None:
        self.group = group
        self.all.add(self)
        self.timer: Optional[threading.Timer] = None

    def allow(self, seconds: float) -> None:
        if self.timer:
            self.timer.cancel()
        self.timer = threading.Timer(seconds, self.kill)
        self.timer.daemon = True
        self.timer.start()

    def kill(self) -> None:
        try:
            os.killpg(self.group, signal.SIGKILL)
        except ProcessLookupError:
            pass

    def end(self) -> None:
        if self.timer:
            self.timer.cancel()
        self.kill()
        self.all.discard(self)


def interrupted(number: int, _: object) -> None:
    """Nothing runs on without the one who would end it."""
    for watch in list(Watch.all):
        watch.kill()
    os._exit(128 + number)


class Runner:
    """Runs tests of the copy."""

    def __init__(self, tree: Tree, folder: Path) -> None:
        self.tree = tree
        self.folder = folder
        self.killers: Dict[Tuple[str, str], int] = {}
        """How many mutants of a file a test has killed."""
        self.frequency: Dict[str, int] = {}
        """How many tests have a word in their name."""

    def learn(self, tests: Sequence[Test]) -> None:
        for test in tests:
            for word in self.words(test.name):
                self.frequency[word] = self.frequency.get(word, 0) + 1

    def environment(self, **more: str) -> Dict[str, str]:
        return {**os.environ, **more}

    def trace(self, program: str, count: int, shards: int, names: str) -> List[Test]:
        """Each test that passes, with the mutants that it reaches."""
        if program == "walk":
            return [test for test in map(self.trace_walk, range(len(WALKS)), [count] * len(WALKS)) if test]

        def run(shard: int) -> Path:
            reached = self.folder / f"reached-{program}-{shard}"
            reached.write_bytes(bytes(count))
            tests = self.folder / f"tests-{program}-{shard}"
            environment = self.environment(
                ZM_MUTANT_REACHED=str(reached),
                ZM_MUTANT_TESTS=str(tests),
                GTEST_TOTAL_SHARDS=str(shards),
                GTEST_SHARD_INDEX=str(shard),
            )
            subprocess.run(
                [str(self.tree.path / "build/bin" / f"test_{program}"), "--gtest_brief=1", f"--gtest_filter={names}"],
                env=environment,
                stdout=subprocess.DEVNULL,
                stderr=subprocess.DEVNULL,
            )
            return tests

        with ThreadPoolExecutor(shards) as pool:
            files = list(pool.map(run, range(shards)))
        found = []
        for file in files:
            for line in file.read_text().splitlines():
                name, good, milliseconds, *reaches = line.split()
                if good == "good":
                    found.append(Test(program, name, int(milliseconds), {int(each) for each in reaches}))
        return found

    def fails(self, number: int, tests: Sequence[Test]) -> str:
        """The test of one program that notices the mutant, or nothing."""
        program = tests[0].program
        if program == "walk":
            return next((test.name for test in tests if not self.walk(test, ZM_MUTANT=str(number))), "")
        flags = self.folder / f"flags-{program}-{number}"
        flags.write_text(f"--gtest_filter={':'.join(test.name for test in tests)}\n--gtest_fail_fast\n")
        words = [str(self.tree.path / "build/bin" / f"test_{program}"), f"--gtest_flagfile={flags}"]
        limits = {test.name: PATIENCE + 4 * test.milliseconds / 1000 for test in tests}
        running = ""
        with subprocess.Popen(
            words,
            env=self.environment(ZM_MUTANT=str(number)),
            stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL,
            errors="replace",
            text=True,
            start_new_session=True,
        ) as process:
            watch = Watch(process.pid)
            watch.allow(PATIENCE)
            assert process.stdout
            for line in process.stdout:
                said = re.match(r"\[ (?:RUN     | FAILED ) \] ([^\s,]+)", line)
                if not said:
                    continue
                running = said.group(1)
                if "FAILED" in line:
                    process.kill()
                    break
                watch.allow(limits.get(running, PATIENCE))
            failed = process.wait() != 0
            watch.end()
        return (running or f"{program}: dies") if failed else ""

    def rank(self, test: Test, mutant: Mutant) -> Tuple[float, float, int]:
        """Those first that killed others of the file; then those that are called as the code is, the rarer the words
        the better; then those that reach little else."""
        words = self.words(f"{Path(mutant.file).stem} {mutant.place}") & self.words(test.name)
        return (
            -self.killers.get((mutant.file, test.name), 0),
            -sum(1 / self.frequency[word] for word in words),
            len(test.reaches),
        )

    @staticmethod
    def words(text: str) -> Set[str]:
        return {word.lower() for word in re.findall(r"[A-Z]?[a-z]{3,}", text)}

    def walk(self, test: Test, **environment: str) -> bool:
        """Whether unit and model stay together."""
        script = str(self.tree.path / "tests/model_walk/walk.py")
        with subprocess.Popen(
            ["/usr/bin/python3", script, str(WALK_STEPS), test.name.partition(".")[2], "--tries", "0"],
            env=self.environment(PLATEN_BENCH=str(self.tree.path / "build/bin"), **environment),
            cwd=self.folder,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
            start_new_session=True,
        ) as process:
            watch = Watch(process.pid)
            watch.allow(max(10 * PATIENCE, PATIENCE + 4 * test.milliseconds / 1000))
            good = process.wait() == 0
            watch.end()
        return good

    def trace_walk(self, at: int, count: int) -> Optional[Test]:
        reached = self.folder / f"reached-walk-{at}"
        reached.write_bytes(bytes(count))
        test = Test("walk", f"walk.{WALKS[at]}", 0, set())
        start = time.monotonic()
        if not self.walk(test, ZM_MUTANT_REACHED=str(reached)):
            return None
        test.milliseconds = int(1000 * (time.monotonic() - start))
        test.reaches = {number for number, byte in enumerate(reached.read_bytes()) if byte}
        return test

    def judge(self, number: int, mutant: Mutant, tests: Sequence[Test], seconds: int) -> Verdict:
        reaching = [test for test in tests if number in test.reaches]
        if not reaching:
            return Verdict(mutant, "unreached")
        by_name = {test.name: test for test in reaching}
        for program in dict.fromkeys(test.program for test in reaching):
            left = seconds * 1000
            chosen = []
            mine = [test for test in reaching if test.program == program]
            mine.sort(key=lambda test: self.rank(test, mutant))
            for test in mine:
                if test.milliseconds <= left:
                    left -= test.milliseconds
                    chosen.append(test)
            while chosen:
                by = self.fails(number, chosen)
                if not by:
                    break
                # A test that fails now and then says nothing.
                if by not in by_name or self.fails(number, [by_name[by]]):
                    self.killers[mutant.file, by] = self.killers.get((mutant.file, by), 0) + 1
                    return Verdict(mutant, "killed", by)
                chosen = [test for test in chosen if test.name != by]
        return Verdict(mutant, "lived", f"{len(reaching)} tests reach it")


def equivalents() -> Dict[str, str]:
    """Mutants that change nothing which anybody can notice: `NAME` in one line, the reason indented below."""
    found: Dict[str, str] = {}
    name = ""
    for line in (Path(__file__).parent / "equivalent.txt").read_text().splitlines():
        if line.startswith("#") or not line.strip():
            continue
        if not line.startswith(" "):
            name = line.strip()
        else:
            found[name] = line.strip()
    return found


def earlier(path: Path) -> Dict[str, str]:
    """The mutants that were killed in earlier runs, each with the test."""
    return dict(json.loads(path.read_text())) if path.exists() else {}


def report(verdicts: Sequence[Verdict], room: str, goal: Optional[float], path: Path) -> int:
    lines = []
    for state in ("lived", "unreached", "equivalent"):
        for each in verdicts:
            if each.state == state:
                lines.append(f"{state}: {each.mutant.name}\n    line {each.mutant.line}; {each.by}")
    states = ("killed", "lived", "unreached", "equivalent")
    counts = {state: sum(each.state == state for each in verdicts) for state in states}
    judged = len(verdicts) - counts["equivalent"]
    share = 100 * counts["killed"] / judged if judged else 100.0
    old = sum(each.earlier for each in verdicts)
    lines.append(
        f"{room}: {counts['killed']} of {judged} mutants killed ({share:.1f} %), {counts['lived']} lived,"
        f" {counts['unreached']} reached by no test; {counts['equivalent']} more are equivalent"
        + (f"; {old} were killed by an earlier run" if old else "")
    )
    path.with_suffix(".txt").write_text("\n".join(lines) + "\n")
    killed = {each.mutant.name: each.by for each in verdicts if each.state == "killed"}
    path.with_suffix(".json").write_text(json.dumps(killed, indent=1))
    say("\n".join(lines))
    return 0 if goal is None or share >= goal else 1


def main() -> int:
    parser = argparse.ArgumentParser(prog="./dev mutate", description=__doc__)
    parser.add_argument("room", nargs="?", default="mpu", help="a folder; default mpu")
    parser.add_argument("count", nargs="?", type=int, default=100, help="how many mutants; default 100")
    parser.add_argument("--seed", type=int, default=1, help="which mutants; default 1")
    parser.add_argument("--seconds", type=int, default=60, help="a program's tests for a mutant, at most; default 60")
    cores = os.cpu_count() or 1
    parser.add_argument("--jobs", type=int, default=2 * cores, help="test programs at a time; default twice the cores")
    parser.add_argument("--lived", action="store_true", help="what an earlier run killed counts as killed")
    parser.add_argument("--filter", default="*", help="only the tests that GoogleTest's filter names, to try new ones")
    parser.add_argument("--programs", help="only these test programs: pps,qdb")
    parser.add_argument("--goal", type=float, help="fails when fewer percent are killed")
    options = parser.parse_args()
    room = options.room.rstrip("/")
    programs = options.programs.split(",") if options.programs else programs_of(room)
    files = [name for name in git_files(f"{room}/*.cpp") if not name.endswith("main.cpp")]
    if not files:
        raise SystemExit(f"mutate: {room} holds no source")

    for number in (signal.SIGINT, signal.SIGTERM):
        signal.signal(number, interrupted)
    folder = PROJECT / "build/mutation"
    tree = Tree(folder / "tree", min(options.jobs, cores))
    tree.copy()
    arguments = tree.arguments()
    start = time.monotonic()
    with ProcessPoolExecutor(cores) as parsers:
        named = [name for name in files if name in arguments]
        paths, words = [tree.path / name for name in named], [arguments[name] for name in named]
        sources = list(parsers.map(Source, named, paths, words))
    chosen = choose(sources, options.count, options.seed)
    say(f"{sum(len(each.found) for each in sources)} mutants in {len(sources)} sources of {room}, {len(chosen)} taken:"
        f" {', '.join(kinds(chosen))} ({time.monotonic() - start:.0f} s)")

    start = time.monotonic()
    targets = [f"test_{name}" for name in programs if name != "walk"]
    targets += ["Platen", "zmbench", "zmctl"] if "walk" in programs else []
    numbered = compiled(tree, chosen, targets)
    say(f"built in {time.monotonic() - start:.0f} s")

    runner = Runner(tree, folder)
    tests: List[Test] = []
    for program in programs:
        start = time.monotonic()
        tests += runner.trace(program, len(chosen), options.jobs, options.filter)
        say(f"test_{program} traced in {time.monotonic() - start:.0f} s")

    runner.learn(tests)
    known = equivalents()
    result = folder / room.replace("/", "-")
    killed = earlier(result.with_suffix(".json")) if options.lived else {}
    verdicts: List[Verdict] = []

    def judge(pair: Tuple[int, Mutant]) -> Verdict:
        if pair[1].name in known:
            verdict = Verdict(pair[1], "equivalent", known[pair[1].name])
        elif pair[1].name in killed:
            verdict = Verdict(pair[1], "killed", killed[pair[1].name], True)
        else:
            verdict = runner.judge(pair[0], pair[1], tests, options.seconds)
        verdicts.append(verdict)
        say(f"{len(verdicts)}/{len(numbered)} {verdict.state}: {verdict.mutant.name} ({verdict.by})")
        return verdict

    with ThreadPoolExecutor(options.jobs) as pool:
        done = list(pool.map(judge, numbered))
    return report(done, room, options.goal, result)


if __name__ == "__main__":
    sys.exit(main())
