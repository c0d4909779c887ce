"""Some of the calls that `./dev anomaly` has go wrong, one of each kind in each program: what CI has time for."""

from __future__ import annotations

import os
import random
import sys
from pathlib import Path
from typing import Iterator

import pytest

HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE))

from faults import CALLS, CHANCE, KINDS, PROGRAMS, SHARES, Case, prepared, run  # noqa: E402

# Another sample with each number.
SEED = int(os.environ.get("ZM_ANOMALY_SEED", "1"))


@pytest.fixture(scope="session")
def template(tmp_path_factory: pytest.TempPathFactory) -> Iterator[Path]:
    yield prepared(tmp_path_factory.mktemp("anomaly"))


def drawn(kind: str, program: str) -> Case:
    chance = random.Random(f"{kind} {program} {SEED}")
    if kind in CHANCE:
        return Case(kind, program, chance.randrange(1 << 31), SHARES[kind][1])
    return Case(kind, program, chance.randrange(1, CALLS[kind, program] + 1))


@pytest.mark.parametrize("kind, program", [(kind, program) for kind in KINDS for program in PROGRAMS if kind in CHANCE or (kind, program) in CALLS])
def test_a_call_goes_wrong(kind: str, program: str, template: Path) -> None:
    case = drawn(kind, program)
    outcome = run(case, template)
    assert not outcome.fault, f"{case}: {outcome.fault}\n{outcome.where}\n{outcome.said}"
    assert outcome.calls, f"{case}: {program} makes no such call any more"


def test_who_finds_no_memory_says_so_and_is_started_again(template: Path) -> None:
    outcome = run(Case("memory", "zmdiscd", 5000), template)
    assert not outcome.fault, outcome.said
    assert outcome.verdict == "ended with a word"
    assert "zmdiscd: out of memory: no " in outcome.said
    assert "zmdiscd ended with status 71; started again" in outcome.said
