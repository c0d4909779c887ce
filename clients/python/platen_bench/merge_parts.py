"""python3 -m platen_bench.merge_parts RUN N: brings the N parts of a suite together.

Writes RUN/junit.xml, RUN/durations.json and RUN/summary.txt. Exit status 0 if all tests of all parts passed, 1 if one
failed, 2 if a part is missing or a test was run twice; what is there is merged all the same.
"""

from __future__ import annotations

import json
import sys
import xml.etree.ElementTree as ElementTree
from dataclasses import dataclass
from pathlib import Path
from typing import Any, Dict, List, Tuple

from .plugin.shards import read_durations, write_durations
from .run_part import part_folder

_COUNTS = ("tests", "failures", "errors", "skipped")


@dataclass
class Part:
    """One part as the try that counts left it."""

    number: int
    folder: Path
    facts: Dict[str, Any]
    suites: List[ElementTree.Element]

    def cases(self) -> List[ElementTree.Element]:
        """Its tests."""
        return [case for suite in self.suites for case in suite.iter("testcase")]


def read_part(run: Path, number: int, parts: int) -> Part:
    """Raises ValueError for a part that has not been run to its end."""
    folder = part_folder(run, number, parts)
    try:
        facts = json.loads((folder / "part.json").read_text(encoding="utf-8"))
        root = ElementTree.parse(folder / "junit.xml").getroot()
    except (OSError, ValueError, ElementTree.ParseError) as error:
        raise ValueError(f"part {number} of {parts} is missing: {error}") from error
    return Part(number, folder, facts, list(root.iter("testsuite")))


def merge(run: Path, parts: int) -> Tuple[int, str]:
    """Merges the parts; gives the exit status and the summary."""
    there: List[Part] = []
    faults: List[str] = []
    for number in range(1, parts + 1):
        try:
            there.append(read_part(run, number, parts))
        except ValueError as error:
            faults.append(str(error))
    faults += _repeated(there)
    totals = _write_junit(run / "junit.xml", there)
    _merge_durations(run, there)
    failed = totals["failures"] + totals["errors"]
    summary = _summary(there, parts, totals, faults)
    (run / "summary.txt").write_text(summary, encoding="utf-8")
    return 2 if faults else 1 if failed else 0, summary


def _name(case: ElementTree.Element) -> str:
    return f"{case.get('classname')}.{case.get('name')}"


def _repeated(there: List[Part]) -> List[str]:
    owner: Dict[str, int] = {}
    faults = []
    for part in there:
        # pytest has two entries for a test that fails and whose end fails, too; they are one test.
        for name in sorted({_name(case) for case in part.cases()}):
            if name in owner:
                faults.append(f"{name} was run by parts {owner[name]} and {part.number}")
            owner[name] = part.number
    return faults


def _write_junit(file: Path, there: List[Part]) -> Dict[str, int]:
    totals = dict.fromkeys(_COUNTS, 0)
    root = ElementTree.Element("testsuites")
    for part in there:
        for suite in part.suites:
            suite.set("name", f"part {part.number}")
            suite.set("hostname", str(part.facts["machine"]))
            root.append(suite)
            for count in _COUNTS:
                totals[count] += int(suite.get(count) or 0)
    ElementTree.ElementTree(root).write(file, encoding="utf-8", xml_declaration=True)
    return totals


def _merge_durations(run: Path, there: List[Part]) -> None:
    file = run / "durations.json"
    durations = read_durations(file)
    for part in there:
        durations.update(read_durations(part.folder / str(part.facts["durations"])))
    if durations:
        write_durations(file, durations)


def _summary(there: List[Part], parts: int, totals: Dict[str, int], faults: List[str]) -> str:
    failed = totals["failures"] + totals["errors"]
    passed = totals["tests"] - failed - totals["skipped"]
    lines = [f"{passed} passed, {failed} failed, {totals['skipped']} skipped; {len(there)} of {parts} parts"]
    if there:
        seconds = max(part.facts["ended"] for part in there) - min(part.facts["began"] for part in there)
        machines = sorted({str(part.facts["machine"]) for part in there})
        rate = totals["tests"] * 60 / seconds if seconds > 0 else 0.0
        lines.append(f"{seconds:.0f} s on {', '.join(machines)}: {rate:.0f} tests a minute")
        for part in there:
            took = part.facts["ended"] - part.facts["began"]
            lines.append(f"part {part.number}: {len(part.cases())} tests, {took:.0f} s, {part.facts['machine']}")
    for part in there:
        for case in part.cases():
            if case.find("failure") is not None or case.find("error") is not None:
                lines.append(f"failed: {_name(case)} ({part.folder.resolve() / 'results'})")
    return "\n".join(lines + [f"fault: {fault}" for fault in faults]) + "\n"


def main(words: List[str]) -> int:
    """The command line."""
    if len(words) != 2 or not words[1].isdigit() or int(words[1]) < 1:
        print(__doc__, file=sys.stderr)
        return 2
    run = Path(words[0])
    if not run.is_dir():
        print(f"merge_parts: {run}: no such folder", file=sys.stderr)
        return 2
    try:
        status, summary = merge(run, int(words[1]))
    except (OSError, ValueError) as error:
        print(f"merge_parts: {error}", file=sys.stderr)
        return 2
    print(summary, end="")
    return status


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
