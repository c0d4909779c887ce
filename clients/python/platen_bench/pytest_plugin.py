"""The bench in pytest: fixtures, options, and what a failed test leaves behind (docs/python.md)."""

from __future__ import annotations

import random
from pathlib import Path
from typing import Any, Callable, Dict, Generator, Iterator, List, Optional

import pytest

from .bench import Bench
from .discs import TrackLike, default_cache, make_audio_cd, make_disc
from .plugin import shards
from .plugin.evidence import Watched, folder_of, keep

_Benches = pytest.StashKey[List[Watched]]()
_Durations = pytest.StashKey[Dict[str, float]]()
_Seed = pytest.StashKey[int]()

_HIGHEST_SEED = 2**31 - 1


def pytest_addoption(parser: pytest.Parser) -> None:
    group = parser.getgroup("platen", "disc player on the bench")
    group.addoption("--bench", metavar="PATH", help="zmbench or its folder; else PLATEN_BENCH, a build, PATH")
    group.addoption("--film", action="store_true", help="a film of each failed test")
    group.addoption("--film-all", action="store_true", help="a film of every test")
    group.addoption(
        "--seed", type=int, metavar="N", help="what the fixture `seed` gives; else a random number"
    )
    group.addoption(
        "--results", default="results", metavar="DIR", help="what failed tests leave; default results"
    )
    group.addoption("--shard", metavar="I/N", help="runs the I-th of N parts of the suite only")
    group.addoption(
        "--durations-file",
        metavar="FILE",
        help="seconds of each test by which parts are balanced, kept after each run; with --shard durations.json",
    )


def pytest_configure(config: pytest.Config) -> None:
    config.addinivalue_line("markers", "disc(*tracks): what is on the disc in the drive of `unit`")
    config.addinivalue_line("markers", "audio_cd(*tracks): the same with an audio CD")
    config.addinivalue_line(
        "markers", 'bench(**options): options of Bench for `unit`, such as clock="running"'
    )
    if config.getoption("--shard"):
        try:
            shards.parse_shard(config.getoption("--shard"))
        except ValueError as error:
            raise pytest.UsageError(f"--shard: {error}") from error
    nothing: Dict[str, float] = {}
    config.stash[_Durations] = nothing
    # All workers of one run have the same seed: the first process chooses it.
    given = getattr(config, "workerinput", {}).get("platen_seed", config.getoption("--seed"))
    config.stash[_Seed] = random.randint(1, _HIGHEST_SEED) if given is None else int(given)


@pytest.hookimpl(optionalhook=True)  # type: ignore[misc]
def pytest_configure_node(node: Any) -> None:
    node.workerinput["platen_seed"] = node.config.stash[_Seed]


def pytest_report_header(config: pytest.Config) -> str:
    return f"platen: --seed {config.stash[_Seed]}"


@pytest.hookimpl(trylast=True)  # type: ignore[misc]
def pytest_collection_modifyitems(config: pytest.Config, items: List[pytest.Item]) -> None:
    if not config.getoption("--shard"):
        return
    number, parts = shards.parse_shard(config.getoption("--shard"))
    try:
        durations = shards.read_durations(_durations_file(config))
    except ValueError as error:
        raise pytest.UsageError(f"--durations-file: {error}") from error
    mine = set(shards.part_of([item.nodeid for item in items], durations, number, parts))
    config.hook.pytest_deselected(items=[item for item in items if item.nodeid not in mine])
    items[:] = [item for item in items if item.nodeid in mine]


def _durations_file(config: pytest.Config) -> Path:
    return config.invocation_params.dir / (config.getoption("--durations-file") or "durations.json")


def pytest_runtest_logreport(report: pytest.TestReport) -> None:
    if _session_config is not None:
        durations = _session_config.stash[_Durations]
        durations[report.nodeid] = durations.get(report.nodeid, 0.0) + report.duration


# The hook above is not told of the configuration.
_session_config: Optional[pytest.Config] = None


def pytest_sessionstart(session: pytest.Session) -> None:
    global _session_config
    # Under xdist the first process hears of every test; its workers keep nothing.
    _session_config = None if hasattr(session.config, "workerinput") else session.config


def pytest_sessionfinish(session: pytest.Session) -> None:
    config = session.config
    durations = config.stash[_Durations]
    wanted = config.getoption("--durations-file") or config.getoption("--shard")
    if not durations or not wanted:
        return
    file = _durations_file(config)
    if config.getoption("--shard"):
        shards.write_durations(
            shards.part_file(file, *shards.parse_shard(config.getoption("--shard"))), durations
        )
        return
    try:
        kept = shards.read_durations(file)
    except ValueError:
        kept = {}  # what is no such file is replaced
    shards.write_durations(file, {**kept, **durations})


def _folder(item: pytest.Item, number: int) -> Path:
    """Where a test's bench with that number leaves things."""
    results = item.config.invocation_params.dir / str(item.config.getoption("--results"))
    return folder_of(results, item.nodeid, number)


@pytest.hookimpl(hookwrapper=True)  # type: ignore[misc]
def pytest_runtest_makereport(item: pytest.Item, call: Any) -> Generator[None, Any, None]:
    outcome = yield
    report: pytest.TestReport = outcome.get_result()
    none: List[Watched] = []
    benches = item.stash.get(_Benches, none)
    if not report.failed or report.when == "teardown":
        return
    for number, watched in enumerate(benches):
        lines = []
        for name, path in keep(_folder(item, number), watched):
            item.user_properties.append((name, path))
            lines.append(f"{name + ':':<9}{path}")
        report.sections.append(("What the bench left", "\n".join(lines)))


@pytest.fixture(scope="session")
def disc_cache() -> Path:
    """The folder in which discs are kept between runs."""
    return default_cache()


@pytest.fixture
def disc(request: pytest.FixtureRequest, disc_cache: Path) -> Optional[Path]:
    """The disc that is in the drive of `unit` from the start, made from the marks `disc` or `audio_cd`.

    None, an empty drive, without a mark. A module may have a fixture of its own of this name.
    """
    for name, make in (("disc", make_disc), ("audio_cd", make_audio_cd)):
        mark = request.node.get_closest_marker(name)
        if mark:
            return make(list(mark.args), disc_cache)
    return None


@pytest.fixture
def new_disc(disc_cache: Path) -> Callable[..., Path]:
    """Makes a further disc: `new_disc("Fog", Track("Rain", artist="Marlow"))` gives its path."""

    def make(*tracks: TrackLike) -> Path:
        return make_disc(tracks, disc_cache)

    return make


@pytest.fixture
def start_bench(request: pytest.FixtureRequest) -> Iterator[Callable[..., Bench]]:
    """Starts a bench: `start_bench(disc=..., clock="stopped")`. It ends with the test, and if that fails it leaves
    what `unit` would."""
    benches: List[Watched] = request.node.stash.setdefault(_Benches, [])
    config = request.config
    program = config.getoption("--bench")
    every = bool(config.getoption("--film-all"))
    films = every or bool(config.getoption("--film"))

    def start(**options: Any) -> Bench:
        film = _folder(request.node, len(benches)) / "film.webm" if films else None
        bench = Bench(**{"program": program, **options})
        benches.append(_watched(bench, film))
        return bench

    try:
        yield start
    finally:
        for watched in benches:
            if every:
                watched.keep_film()
            watched.bench.close()
            watched.drop_film()
        benches.clear()


def _watched(bench: Bench, film: Optional[Path]) -> Watched:
    try:
        return Watched(bench, film)
    except BaseException:
        bench.close()
        raise


@pytest.fixture
def unit(request: pytest.FixtureRequest, start_bench: Callable[..., Bench], disc: Optional[Path]) -> Bench:
    """A head unit of this test's own, ready, with `disc` in its drive and a stopped clock.

    The mark `bench` gives other options: @pytest.mark.bench(clock="running", launcher="active").
    """
    options: Dict[str, Any] = {"disc": disc, "clock": "stopped"}
    for mark in reversed(list(request.node.iter_markers("bench"))):
        options.update(mark.kwargs)
    return start_bench(**options)


@pytest.fixture
def seed(request: pytest.FixtureRequest) -> int:
    """The number that stands in the report's head: the same for all tests of a run, or the one of --seed."""
    return request.config.stash[_Seed]
