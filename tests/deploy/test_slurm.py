"""A suite as an array job of a Slurm cluster, of which a node dies in the middle."""

from __future__ import annotations

import os
import re
import subprocess
import sys
import time
import xml.etree.ElementTree as ElementTree
from collections import Counter
from pathlib import Path
from typing import List

import pytest

sys.path.insert(0, str(Path(__file__).resolve().parent))
from cluster import Cluster

PROJECT = Path(__file__).resolve().parent.parent.parent

# Each test notes where it ran, so that a part that was begun twice is seen.
SUITE = """
import os, time
from pathlib import Path
import pytest

@pytest.mark.parametrize("number", range({tests}))
def test_scenario(number):
    with open(Path(__file__).parent / "starts.txt", "a") as starts:
        starts.write(f"{{number}} {{os.environ['SLURMD_NODENAME']}}\\n")
    time.sleep({seconds})
    assert number != 7
"""

# A real scenario: a head unit of its own, a disc, some steps of a driver, what he then sees.
SCENARIOS = """
import os, random
from pathlib import Path
import pytest

@pytest.mark.disc("Fog", "Rain", "Snow", "Hail", "Wind")
@pytest.mark.parametrize("number", range({tests}))
def test_scenario(unit, number):
    with open(Path(__file__).parent / "starts.txt", "a") as starts:
        starts.write(f"{{number}} {{os.environ['SLURMD_NODENAME']}}\\n")
    titles = ["Fog", "Rain", "Snow", "Hail", "Wind"]
    unit.expect(page="music", title="Fog", within=30)
    place = 0
    for step in random.Random(number).choices([1, -1], k=4):
        unit.key("next" if step == 1 else "previous")
        place = (place + step) % len(titles)
        unit.expect(title=titles[place], within=30)
"""


def submit(cluster: Cluster, run: Path, parts: int, suite: Path, *options: str) -> "subprocess.CompletedProcess[str]":
    return subprocess.run(
        [PROJECT / "deploy/slurm/submit", run, str(parts), suite, *options],
        env={**cluster.environment, "PLATEN_PYTHON": sys.executable},
        capture_output=True,
        text=True,
    )


def running_on(cluster: Cluster, node: str) -> bool:
    said = subprocess.run(
        ["squeue", "-h", "-t", "R", "-w", node, "-n", "platen"], env=cluster.environment, capture_output=True, text=True
    )
    return bool(said.stdout.strip())


def has_ended(cluster: Cluster, run: Path) -> bool:
    """The last line of a summary is there, and no job is left."""
    said = subprocess.run(["squeue", "-h"], env=cluster.environment, capture_output=True, text=True)
    return said.returncode == 0 and not said.stdout.strip() and (run / "output" / "merge.txt").exists()


def names(junit: Path) -> List[str]:
    return [str(case.get("name")) for case in ElementTree.parse(junit).getroot().iter("testcase")]


def test_all_results_are_there_although_a_node_dies(tmp_path: Path) -> None:
    suite = tmp_path / "suite"
    suite.mkdir()
    (suite / "test_many.py").write_text(SUITE.format(tests=24, seconds=0.5))
    run = tmp_path / "run"
    (tmp_path / "slurm").mkdir()
    with Cluster(tmp_path / "slurm", 4) as cluster:
        submitted = submit(cluster, run, 8, suite)
        assert re.fullmatch(r"parts \d+ merge \d+\n", submitted.stdout), submitted
        starts = suite / "starts.txt"
        cluster.wait_for(lambda: starts.exists() and " node2\n" in starts.read_text(), 60, "a test on node2")
        assert running_on(cluster, "node2")
        cluster.kill_node("node2")
        cluster.wait_for(lambda: has_ended(cluster, run), 120, "all parts and the merge")
    assert sorted(names(run / "junit.xml")) == sorted(f"test_scenario[{number}]" for number in range(24))
    summary = (run / "summary.txt").read_text()
    assert summary.startswith("23 passed, 1 failed, 0 skipped; 8 of 8 parts\n"), summary
    assert re.search(r"failed: \S*test_many.test_scenario\[7\]", summary) and "fault:" not in summary
    begun = Counter(line.split()[0] for line in starts.read_text().splitlines())
    assert max(begun.values()) == 2, "the node died before it had begun a part"
    durations = (run / "durations.json").read_text()
    assert durations.count("test_scenario") == 24


def test_what_cannot_be_submitted_is_refused_by_name(tmp_path: Path) -> None:
    words = [str(PROJECT / "deploy/slurm/submit"), str(tmp_path / "run")]
    for more, said in (
        (["8", str(tmp_path / "nothing")], "nothing: no such file or folder"),
        (["0", str(tmp_path)], '"0" is no number of parts'),
        (["x", str(tmp_path)], '"x" is no number of parts'),
        (["8"], "submit RUN PARTS SUITE"),
    ):
        refused = subprocess.run(words + more, capture_output=True, text=True)
        assert refused.returncode == 2 and said in refused.stderr
    (tmp_path / "run" / "parts").mkdir(parents=True)
    again = subprocess.run([*words, "8", str(tmp_path)], capture_output=True, text=True)
    assert again.returncode == 2 and "has a run already" in again.stderr


@pytest.mark.skipif("PLATEN_SCENARIOS" not in os.environ, reason="takes minutes: PLATEN_SCENARIOS=200 runs it")
def test_hundreds_of_head_units(tmp_path: Path) -> None:
    tests = int(os.environ["PLATEN_SCENARIOS"])
    nodes = int(os.environ.get("PLATEN_NODES", "4"))
    dies = os.environ.get("PLATEN_NODE_DIES", "yes") == "yes"
    suite = tmp_path / "suite"
    suite.mkdir()
    (suite / "test_many.py").write_text(SCENARIOS.format(tests=tests))
    run = tmp_path / "run"
    (tmp_path / "slurm").mkdir()
    with Cluster(tmp_path / "slurm", nodes) as cluster:
        began = time.monotonic()
        assert submit(cluster, run, 16, suite).returncode == 0
        starts = suite / "starts.txt"
        if dies:
            cluster.wait_for(
                lambda: starts.exists() and starts.read_text().count("\n") > tests / 2 and running_on(cluster, "node2"),
                3600,
                "half of the scenarios",
            )
            cluster.kill_node("node2")
        cluster.wait_for(lambda: has_ended(cluster, run), 3600, "all parts and the merge")
        print(f"{nodes} nodes: {tests * 60 / (time.monotonic() - began):.1f} scenarios a minute")
    print((run / "summary.txt").read_text())
    assert sorted(names(run / "junit.xml")) == sorted(f"test_scenario[{number}]" for number in range(tests))
    assert (run / "summary.txt").read_text().startswith(f"{tests} passed, 0 failed")
