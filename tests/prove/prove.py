#!/usr/bin/python3
"""Runs what takes longer than a change may wait for, and writes one page that states goal and value of each line.

    ./dev prove                  every goal, in hours
    ./dev prove NAME...          only these; what others found earlier stays on the page
    ./dev prove --short [NAME...] each in minutes, to see that it works; the page says that it proves less
    ./dev prove --page           nothing; writes the page of what was found so far

The page is build/prove/index.html and page.txt, what the commands printed lies beside it. Exit status 1 if a goal that
was run is missed.
"""

from __future__ import annotations

import argparse
import json
import os
import subprocess
import sys
import time
from pathlib import Path
from typing import Any, Dict, Sequence

import page
from goals import GOALS, Goal, Run

ROOT = Path(__file__).resolve().parents[2]


def commit() -> str:
    return subprocess.run(["git", "describe", "--always", "--dirty"], cwd=ROOT, stdout=subprocess.PIPE, text=True).stdout.strip()


def command_of(goal: Goal, short: bool) -> Sequence[str]:
    return goal.short if short and goal.short else goal.command


def run(words: Sequence[str], log: Path) -> Run:
    """Once; its output goes to the terminal and into the log."""
    begin = time.monotonic()
    with open(log, "w", encoding="utf-8", errors="replace") as stream:
        process = subprocess.Popen(words, cwd=ROOT, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace")
        assert process.stdout
        for line in process.stdout:
            stream.write(line)
            sys.stdout.write(line)
            sys.stdout.flush()
        status = process.wait()
    return Run(log.read_text(encoding="utf-8"), status, time.monotonic() - begin)


def prove(goals: Sequence[Goal], short: bool, folder: Path, results: page.Results) -> None:
    runs: Dict[Sequence[str], Run] = {}
    for goal in goals:
        words = command_of(goal, short)
        if not words:
            print(f"prove: {goal.name}: nothing measures it yet", flush=True)
            continue
        if words not in runs:
            print(f"prove: {goal.name}: {' '.join(words)}", flush=True)
            runs[words] = run(words, folder / f"{goal.name}.log")
        done = runs[words]
        value = goal.read(done)
        results[goal.name] = {
            "value": value.text if value else None, "good": bool(value and value.good), "status": done.status,
            "short": words != goal.command, "seconds": round(done.seconds, 1), "load": os.getloadavg()[0],
            "time": time.strftime("%Y-%m-%d %H:%M"), "commit": commit(),
        }
        write(folder, results)


def write(folder: Path, results: page.Results) -> None:
    (folder / "results.json").write_text(json.dumps(results, indent=1, ensure_ascii=False) + "\n", encoding="utf-8")
    (folder / "page.txt").write_text(page.as_text(GOALS, results), encoding="utf-8")
    pictures = sorted(each.name for each in folder.glob("*.svg"))
    (folder / "index.html").write_text(page.as_html(GOALS, results, pictures), encoding="utf-8")


def read(folder: Path) -> Dict[str, Any]:
    """What earlier runs found of goals that there still are."""
    try:
        found = json.loads((folder / "results.json").read_text(encoding="utf-8"))
    except FileNotFoundError:
        return {}
    known = {goal.name for goal in GOALS}
    return {name: result for name, result in found.items() if name in known}


def main() -> int:
    parser = argparse.ArgumentParser(prog="./dev prove", description="Runs what takes longer than a change may wait for.")
    parser.add_argument("--short", action="store_true", help="each in minutes, to see that it works")
    parser.add_argument("--page", action="store_true", help="run nothing, write the page")
    parser.add_argument("--folder", type=Path, default=ROOT / "build" / "prove", help="where page and logs go; default build/prove")
    parser.add_argument("names", nargs="*", metavar="NAME", help=", ".join(goal.name for goal in GOALS))
    options = parser.parse_args()
    known = {goal.name: goal for goal in GOALS}
    for name in options.names:
        if name not in known:
            parser.error(f"there is no goal {name}; there are {', '.join(known)}")
    options.folder.mkdir(parents=True, exist_ok=True)
    results = read(options.folder)
    goals = [] if options.page else [known[name] for name in options.names] or list(GOALS)
    prove(goals, options.short, options.folder, results)
    write(options.folder, results)
    print(page.as_text(GOALS, results))
    print(f"the page: {options.folder / 'index.html'}")
    return 1 if any(page.state(results.get(goal.name, {})) == "missed" for goal in goals) else 0


if __name__ == "__main__":
    sys.exit(main())
