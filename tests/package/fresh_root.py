"""The Debian packages on a machine that has nothing else: `./dev package --test`, as root. Needs what `./dev package` has built."""

from __future__ import annotations

import hashlib
import os
import re
import subprocess
from pathlib import Path
from typing import Dict, Iterator

import pytest

PROJECT = Path(__file__).resolve().parent.parent.parent
PACKAGES = PROJECT / "build" / "packages"
OURS = ("platen", "platen-bench", "python3-platen-bench")

# What package tools and the programs of others change as they like.
RESTLESS = re.compile(
    r"/(proc|sys|dev|run|tmp|home|root|packages)(/|$)"
    r"|/var/(cache|log|backups|lib/apt|lib/dpkg|lib/systemd/catalog)(/|$)"
    r"|/etc/(passwd|shadow|group|gshadow|subuid|subgid)-$|/etc/\.pwd\.lock$|__pycache__"
)

PLAYS = """
set -eu
platen-demo-disc
zmbench --no-web --audio-device none >/tmp/ready &
until grep -q ^ready /tmp/ready; do sleep 0.2; done
zmctl insert --demo --wait
zmctl expect pps.zelmar/disc/status.discstate == 2 within 20000
zmctl screen --text
zmctl pps watch zelmar/disc/playing -t 3
zmctl expect ps.app.deaths == 0
zmctl expect ps.disc.deaths == 0
kill $!
wait $!
"""

IN_PYTHON = """
from platen_bench import Bench
with Bench(disc="/home/driver/.cache/platen/demo") as unit:
    unit.expect(page="music", within=30)
    unit.key("next")
    print(unit.texts())
"""


class Root:
    """A Debian in a folder."""

    def __init__(self, folder: Path) -> None:
        self.folder = folder

    def run(self, command: str, user: str = "root", timeout: float = 900) -> str:
        """Carries out a shell's command inside; all that it has started ends with it. Returns what it printed."""
        enter = (
            'mount -t proc proc "$0/proc" && mount --rbind /dev "$0/dev" && mount -t tmpfs tmpfs "$0/tmp" && '
            'exec chroot "$0" su - "$1" -s /bin/bash -c "$2"'
        )
        words = ["unshare", "--mount", "--pid", "--fork", "--kill-child", "sh", "-c", enter]
        done = subprocess.run(
            [*words, str(self.folder), user, command],
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            text=True,
            timeout=timeout,
            check=False,
        )
        assert done.returncode == 0, f"{command}\n{done.stdout[-6000:]}"
        return done.stdout

    def install(self, *what: str) -> str:
        options = "-y -q -o APT::Install-Recommends=false -o APT::Sandbox::User=root"
        return self.run(f"DEBIAN_FRONTEND=noninteractive apt-get {what[0]} {options} " + " ".join(what[1:]))

    def files(self) -> Dict[str, str]:
        """Every file with a digest of what is in it."""
        found = {}
        for place, folders, names in os.walk(self.folder):
            inside = "/" + os.path.relpath(place, self.folder) + "/"
            folders[:] = [name for name in folders if not RESTLESS.search(os.path.normpath(inside + name))]
            for name in [*folders, *names]:
                path = os.path.normpath(inside + name)
                real = os.path.join(place, name)
                if not RESTLESS.search(path):
                    plain = os.path.isfile(real) and not os.path.islink(real)
                    found[path] = hashlib.sha256(Path(real).read_bytes()).hexdigest() if plain else ""
        return found


def sources() -> Path:
    """Where this machine has its own Debian from."""
    for name in ("sources.list.d/debian.sources", "sources.list"):
        if (Path("/etc/apt") / name).exists():
            return Path("/etc/apt") / name
    raise AssertionError("this machine's own source of Debian packages is not known")


@pytest.fixture
def root(tmp_path: Path) -> Iterator[Root]:
    assert os.geteuid() == 0, "a fresh root is made by root"
    assert list(PACKAGES.glob("*.deb")), "./dev package builds the packages first"
    folder = tmp_path / "root"
    release = dict(
        line.split("=", 1) for line in Path("/etc/os-release").read_text().splitlines() if "=" in line
    )
    # The machine's way to its packages is the root's.
    settings = tmp_path / "settings"
    known = subprocess.run(["apt-config", "dump", "Acquire"], check=True, capture_output=True, text=True).stdout
    settings.write_text("".join(line for line in known.splitlines(True) if "Proxy" in line))
    words = ["mmdebstrap", "--mode=root", "--variant=minbase", "--quiet", f"--aptopt={settings}"]
    subprocess.run([*words, release["VERSION_CODENAME"], str(folder), str(sources())], check=True)
    for name in ("resolv.conf", "hosts"):
        (folder / "etc" / name).write_bytes((Path("/etc") / name).read_bytes())
    (folder / "packages").mkdir()
    for package in PACKAGES.glob("*.deb"):
        if "-dbgsym" not in package.name:
            os.link(package, folder / "packages" / package.name)
    fresh = Root(folder)
    fresh.run("useradd --create-home driver")
    yield fresh
    subprocess.run(["rm", "-rf", "--one-file-system", str(folder)], check=True)


def depends(package: Path) -> str:
    text = subprocess.run(
        ["dpkg-deb", "-f", str(package), "Depends"], check=True, capture_output=True, text=True
    ).stdout
    return ", ".join(each for each in text.strip().split(", ") if not each.startswith("platen"))


def test_they_are_installed_play_and_are_gone(root: Root) -> None:
    packages = sorted((root.folder / "packages").glob("*.deb"))
    assert {package.name.split("_")[0] for package in packages} == set(OURS)
    root.install("update")
    # What they need comes first, so that what they leave is seen afterwards.
    root.install("satisfy", *(f"'{depends(package)}'" for package in packages), "ffmpeg")
    before = root.files()
    installed = root.install("install", "/packages/*.deb")
    assert f"0 upgraded, {len(OURS)} newly installed" in installed, installed

    played = root.run(PLAYS, user="driver")
    assert "Harbour Lights" in played, played
    times = re.findall(r'^playtime:json:\{"time":(\d+)', played, re.MULTILINE)
    assert len(set(times)) >= 2, played
    root.run(f"python3 - <<'E'\n{IN_PYTHON}\nE", user="driver")
    told = root.run("python3 -c 'from importlib.metadata import version; print(version(\"platen-bench\"))'")
    assert told.strip() == root.run("dpkg-query -W -f '${Version}' python3-platen-bench").strip()
    for page in ("man1/platen-unit.1.gz", "man1/zmctl.1.gz", "man8/zmdiscd.8.gz", "man5/platen-resources.5.gz"):
        assert (root.folder / "usr/share/man" / page).exists()
    assert "platen:" in (root.folder / "etc/passwd").read_text()

    root.install("purge", *OURS)
    assert {path: what for path, what in root.files().items() if before.get(path) != what} == {}
    assert sorted(before.keys() - root.files().keys()) == []
    assert root.run("dpkg-query -W -f '${Package} ${Status}\\n'").count("platen") == 0


CLONE_RUNS = """
set -eu
cd /root/platen
./dev run --no-web --audio-device none >/root/ready 2>/root/log &
until grep -q ^ready /root/ready; do
  kill -0 $! 2>/dev/null || { cat /root/log; exit 1; }
  sleep 1
done
build/bin/zmctl expect pps.zelmar/disc/status.discstate == 2 within 20000
build/bin/zmctl screen --text
kill $!
"""


def test_a_fresh_clone_runs(root: Root) -> None:
    """`./dev run` installs all that it needs, builds and plays."""
    for name in ("platen", "ffmpeg", "cmake"):
        assert f"{name} install ok" not in root.run("dpkg-query -W -f '${Package} ${Status}\\n'")
    root.install("update")
    root.install("install", "git", "ca-certificates")
    subprocess.run(["git", "clone", "--quiet", str(PROJECT), str(root.folder / "root/platen")], check=True)
    root.run("chown -R root: /root/platen")
    assert "Harbour Lights" in root.run(CLONE_RUNS, timeout=3600)
