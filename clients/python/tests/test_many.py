"""Many benches on one machine do not get in each other's way, and leave nothing behind."""

import json
import os
import subprocess
import tempfile
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path
from typing import List
from urllib.parse import urlparse

from platen_bench import Bench
from platen_bench.programs import find_bench

ROOT = Path(__file__).resolve().parents[3]


def test_benches_started_at_once_have_their_own_folders_and_ports() -> None:
    with ThreadPoolExecutor(4) as pool:
        benches = list(pool.map(lambda _: Bench(disc_service=False, page=True), range(4)))
    try:
        assert len({bench.runtime for bench in benches}) == 4
        assert len({urlparse(bench.address).port for bench in benches}) == 4
        for number, bench in enumerate(benches):
            bench.pps.put("which/one", f"number::{number}")
        for number, bench in enumerate(benches):
            assert bench.pps.get("which/one") == {"number": str(number)}
    finally:
        for bench in benches:
            bench.close()


def test_without_a_port_each_finds_a_free_one() -> None:
    with tempfile.TemporaryDirectory(prefix="ports-") as folder:
        running: "List[subprocess.Popen[str]]" = []
        try:
            for name in ("a", "b", "c"):
                words = [find_bench(None), "--no-disc-service", "--runtime", os.path.join(folder, name)]
                running.append(subprocess.Popen(words, stdout=subprocess.PIPE, encoding="utf-8"))
            lines = [process.stdout.readline() for process in running if process.stdout]
            ports = {urlparse(line.split()[1]).port for line in lines}
            assert len(ports) == 3
        finally:
            for process in running:
                process.terminate()
                process.wait()
                if process.stdout:
                    process.stdout.close()


def test_the_measurement_finds_nothing_left_and_music_in_time() -> None:
    words = [str(ROOT / "benchmarks" / "many-benches"), "--sizes", "2", "--seconds", "3", "--cycles", "6"]
    result = subprocess.run(words, capture_output=True, encoding="utf-8", timeout=600)
    figures = {each["figure"]: each for each in map(json.loads, result.stdout.splitlines())}
    for left in ("processes", "files", "shared memory"):
        assert figures[f"6 starts and ends: {left} left"]["value"] == 0, result.stdout
    assert 1 < figures["2 benches idle: memory of each"]["value"] < 500
    assert figures["2 benches playing: processor of all"]["value"] > 0
    assert "2 benches playing: slowest behind the clock" in figures, result.stdout + result.stderr
