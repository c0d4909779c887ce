#!/usr/bin/python3
"""Says which changes of a room's code no test notices.

All mutants are compiled into one build and sleep; one run of the tests shows which of them each test reaches, and
then each mutant is woken in turn for the tests that reach it.
"""

from __future__ import annotations

import argparse
import hashlib
import json
import os
import pickle
import random
import re
import shlex
import signal
import subprocess
import sys
import threading
import time
from concurrent.futures import ProcessPoolExecutor, ThreadPoolExecutor
from dataclasses import dataclass
from fnmatch import fnmatchcase
from pathlib import Path
from typing import Dict, List, Optional, Sequence, Set, Tuple

from mutants import Mutant, choose, kinds, mutated, sources

PROJECT = Path(__file__).resolve().parent.parent.parent
# The test programs that hold a room, the quickest first; a folder holds tests in Python, each file of which is a test.
PROGRAMS = (
    ("mpu", ("model", "walk", "anomaly", "views", "pictures")),
    ("base", ("base",)),
    ("platform/linux/pps", ("pps",)),
    ("platform/linux/qdb", ("qdb",)),
    ("platform/linux/slog", ("slog",)),
    ("platform/linux/screen", ("screen", "framework")),
    ("platform/linux/toolkit", ("toolkit", "pictures", "views", "walk")),
    ("platform/linux/framework", ("framework", "walk")),
    ("services/bench", ("bench", "screen", "walk", "clients/python/tests", "system")),
    ("services/bench/display", ("bench", "tests/display")),
    ("services/bench/mpris", ("tests/mpris",)),
    ("services/ctl", ("bench", "clients/python/tests", "system")),
    ("services/film", ("film", "clients/python/tests", "system")),
    ("services/filmer", ("film", "clients/python/tests", "system")),
    ("services/unit", ("tests/unit",)),
    ("services/disc", ("disc", "system")),
    ("services/disc/mechanism", ("tests/drive",)),
    ("services/cover", ("disc", "system")),
    ("services/decoder", ("disc", "system")),
    ("services/dvd", ("disc",)),
    ("services/jail", ("disc",)),
)
# What the tests in Python start, and what stands between them and the machine.
PYTHON_TARGETS = ("Platen", "zmbench", "zmctl", "zmdiscd", "zmcover", "zmdecode", "zmdvd", "platen-unit")
AROUND_PYTHON = {"tests/drive": ["umockdev-wrapper"], "tests/mpris": ["dbus-run-session", "--"]}
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
    return united(rows)


def programs_of_file(file: str) -> List[str]:
    """Those that are closest to it first."""
    rows = [row for row in PROGRAMS if file.startswith(f"{row[0]}/")]
    return united(sorted(rows, key=lambda row: -len(row[0])))


def united(rows: Sequence[Tuple[str, Sequence[str]]]) -> List[str]:
    return list(dict.fromkeys(name for _, programs in rows for name in programs))


def groups(files: Sequence[str], arguments: Dict[str, List[str]]) -> List[List[str]]:
    """Files of one folder that are compiled alike, a few at a time."""
    alike: Dict[Tuple[str, Tuple[str, ...]], List[str]] = {}
    for file in files:
        if file in arguments:
            alike.setdefault((os.path.dirname(file), tuple(arguments[file])), []).append(file)
    return [some[at : at + 12] for some in alike.values() for at in range(0, len(some), 12)]


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

    def __init__(self, path: Path, jobs: int, room: str) -> None:
        self.path = path
        self.room = room
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
        words = ["cmake", "-S", ".", "-B", "build", "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release"]
        words.append(f"-DZM_MUTATION={self.room}")
        subprocess.run(words, cwd=self.path, check=True, stdout=subprocess.DEVNULL)
        words = ["ninja", "-C", "build", "-k", "0", f"-j{self.jobs}", *targets]
        done = subprocess.run(words, cwd=self.path, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        return done.stdout if done.returncode != 0 else ""


def drawn(tree: Tree, files: Sequence[str], room: str, count: int, seed: int) -> List[Mutant]:
    """The mutants of a draw, which is kept: another run of the same sources does not parse them all again."""
    arguments = tree.arguments()
    key = hashlib.sha256(f"{files} {count} {seed} {[arguments.get(file) for file in files]}".encode())
    key.update(Path(__file__).with_name("mutants.py").read_bytes())
    for name in sorted(tree.texts):
        if name in files or name.endswith(".h") and not name.startswith("tests/"):
            key.update(tree.texts[name])
    kept = tree.path.parent / f"{room.replace('/', '-')}.drawn"
    if kept.exists():
        of, mutants = pickle.loads(kept.read_bytes())
        if of == key.digest():
            return list(mutants)

    start = time.monotonic()
    with ProcessPoolExecutor(os.cpu_count() or 1) as parsers:
        together = groups(files, arguments)
        paths = [[tree.path / name for name in names] for names in together]
        words = [arguments[names[0]] for names in together]
        found = [each for some in parsers.map(sources, together, paths, words) for each in some]
    chosen = choose(found, count, seed)
    kept.write_bytes(pickle.dumps((key.digest(), chosen)))
    say(f"{sum(len(each.found) for each in found)} mutants in {len(found)} sources of {room}, {len(chosen)} taken:"
        f" {', '.join(kinds(chosen))} ({time.monotonic() - start:.0f} s)")
    return chosen


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


def is_script(program: str) -> bool:
    return program == "walk" or "/" in program


def waves(tests: Sequence[Test], seconds: int) -> List[List[Test]]:
    """Of tests in the order in which they are to be tried those that take so long at most: the first few by themselves,
    because a program runs what it is given in its own order."""
    first: List[Test] = []
    others: List[Test] = []
    left = seconds * 1000
    for test in tests:
        if test.milliseconds <= left:
            wave = first if not others and seconds * 1000 - left < seconds * 100 else others
            left -= test.milliseconds
            wave.append(test)
    return [first, others]


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
        if is_script(program):
            scripts = [name for name in self.scripts(program) if fnmatchcase(name, names)]
            with ThreadPoolExecutor(shards) as pool:
                traced = list(pool.map(self.trace_script, [program] * len(scripts), scripts, [count] * len(scripts)))
            return [test for test in traced if test]

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
            with subprocess.Popen(
                [str(self.tree.path / "build/bin" / f"test_{program}"), "--gtest_brief=1", f"--gtest_filter={names}"],
                env=environment,
                stdout=subprocess.DEVNULL,
                stderr=subprocess.DEVNULL,
                start_new_session=True,
            ) as process:
                watch = Watch(process.pid)
                process.wait()
                watch.end()
            return tests

        with ThreadPoolExecutor(shards) as pool:
            files = list(pool.map(run, range(shards)))
        found = []
        for file in files:
            for line in file.read_text().splitlines():
                name, good, milliseconds, *reaches = line.split()
                if good == "bad":
                    say(f"  {name} does not pass")
                if good == "good":
                    found.append(Test(program, name, int(milliseconds), {int(each) for each in reaches}))
        return found

    def fails(self, number: int, tests: Sequence[Test]) -> str:
        """The test of one program that notices the mutant, or nothing."""
        program = tests[0].program
        if is_script(program):
            return next((test.name for test in tests if not self.script(test, ZM_MUTANT=str(number))), "")
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

    def scripts(self, program: str) -> List[str]:
        if program == "walk":
            return [f"walk.{seed}" for seed in WALKS]
        return sorted(str(path.relative_to(self.tree.path)) for path in (self.tree.path / program).glob("test_*.py"))

    def script(self, test: Test, **environment: str) -> bool:
        """Whether a walk finds unit and model together, or the tests of a file in Python pass."""
        words = ["/usr/bin/python3"]
        if test.program == "walk":
            words += [str(self.tree.path / "tests/model_walk/walk.py"), str(WALK_STEPS), test.name.partition(".")[2]]
            words += ["--tries", "0"]
        else:
            words = [*AROUND_PYTHON.get(test.program, []), *words, "-m", "pytest", "-q", "-x", "-p", "no:cacheprovider"]
            words.append(str(self.tree.path / test.name))
        build = self.tree.path / "build"
        with subprocess.Popen(
            words,
            env=self.environment(
                PLATEN_BENCH=str(build / "bin"),
                PLATEN_DISCS=str(build / "discs"),
                PYTHONDONTWRITEBYTECODE="1",
                **environment,
            ),
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

    def trace_script(self, program: str, name: str, count: int) -> Optional[Test]:
        reached = self.folder / f"reached-{name.replace('/', '-')}"
        reached.write_bytes(bytes(count))
        test = Test(program, name, 0, set())
        start = time.monotonic()
        if not self.script(test, ZM_MUTANT_REACHED=str(reached)):
            say(f"  {name} does not pass")
            return None
        test.milliseconds = int(1000 * (time.monotonic() - start))
        test.reaches = {number for number, byte in enumerate(reached.read_bytes()) if byte}
        return test

    def judge(self, number: int, mutant: Mutant, tests: Sequence[Test], seconds: int) -> Verdict:
        reaching = [test for test in tests if number in test.reaches]
        if not reaching:
            return Verdict(mutant, "unreached")
        by_name = {test.name: test for test in reaching}
        named = programs_of_file(mutant.file)
        for program in dict.fromkeys(named or (test.program for test in reaching)):
            mine = [test for test in reaching if test.program == program]
            mine.sort(key=lambda test: self.rank(test, mutant))
            for wave in waves(mine, seconds):
                while wave:
                    by = self.fails(number, wave)
                    if not by:
                        break
                    # A test that fails now and then says nothing.
                    if by not in by_name or self.fails(number, [by_name[by]]):
                        self.killers[mutant.file, by] = self.killers.get((mutant.file, by), 0) + 1
                        return Verdict(mutant, "killed", by)
                    wave = [test for test in wave if test.name != by]
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


def keep(verdicts: Sequence[Verdict], path: Path) -> None:
    """For `--lived`, also of a run that is ended early."""
    killed = {each.mutant.name: each.by for each in list(verdicts) if each.state == "killed"}
    path.with_suffix(".json").write_text(json.dumps(killed, indent=1))


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
    tree = Tree(folder / "tree", min(options.jobs, cores), room)
    tree.copy()
    chosen = drawn(tree, files, room, options.count, options.seed)
    start = time.monotonic()
    targets = [f"test_{name}" for name in programs if not is_script(name)]
    targets += PYTHON_TARGETS if any(is_script(name) for name in programs) else ()
    numbered = compiled(tree, chosen, targets)
    say(f"built in {time.monotonic() - start:.0f} s")

    runner = Runner(tree, folder)
    tests: List[Test] = []
    for program in programs:
        start = time.monotonic()
        tests += runner.trace(program, len(chosen), options.jobs, options.filter)
        say(f"{program} traced in {time.monotonic() - start:.0f} s")

    runner.learn(tests)
    known = equivalents()
    result = folder / room.replace("/", "-")
    killed = earlier(result.with_suffix(".json")) if options.lived else {}
    verdicts: List[Verdict] = []
    judged = threading.Lock()
    # One file after the other would make the first ones the sample of a run that is ended early.
    random.Random(options.seed).shuffle(numbered)

    def judge(pair: Tuple[int, Mutant]) -> Verdict:
        if pair[1].name in known:
            verdict = Verdict(pair[1], "equivalent", known[pair[1].name])
        elif pair[1].name in killed:
            verdict = Verdict(pair[1], "killed", killed[pair[1].name], True)
        else:
            verdict = runner.judge(pair[0], pair[1], tests, options.seconds)
        with judged:
            verdicts.append(verdict)
            keep(verdicts, result)
        say(f"{len(verdicts)}/{len(numbered)} {verdict.state}: {verdict.mutant.name} ({verdict.by})")
        return verdict

    with ThreadPoolExecutor(options.jobs) as pool:
        done = list(pool.map(judge, numbered))
    done.sort(key=lambda each: (each.mutant.file, each.mutant.line))
    return report(done, room, options.goal, result)


if __name__ == "__main__":
    sys.exit(main())
