"""A Slurm cluster of this machine alone: one controller and node daemons, each for a node of one processor."""

from __future__ import annotations

import getpass
import os
import signal
import socket
import subprocess
import time
from pathlib import Path
from typing import Callable, Dict, List

CONFIGURATION = """
ClusterName=trial
SlurmctldHost={host}(127.0.0.1)
SlurmUser={user}
SlurmdUser={user}
AuthType=auth/munge
CryptoType=crypto/munge
# A job that is put back waits until its old credential has expired, two minutes if nothing is said.
AuthInfo=socket={folder}/munge/socket,cred_expire=5
StateSaveLocation={folder}/state
SlurmdSpoolDir={folder}/spool-%n
SlurmctldPidFile={folder}/slurmctld.pid
SlurmdPidFile={folder}/slurmd-%n.pid
SlurmctldPort={controller_port}
SlurmctldLogFile={folder}/slurmctld.log
SlurmdLogFile={folder}/slurmd-%n.log
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
MpiDefault=none
SelectType=select/cons_tres
SelectTypeParameters=CR_CPU
SlurmdTimeout={silence}
KillWait=2
ReturnToService=1
SchedulerParameters=requeue_delay=1,batch_sched_delay=1,sched_interval=2,bf_interval=2
SlurmdParameters=config_overrides
{nodes}
PartitionName=all Nodes=ALL Default=YES MaxTime=INFINITE State=UP
"""

# Seconds until the controller takes a node that is silent for dead.
SILENCE = 6


def _free_ports(count: int) -> List[int]:
    sockets = [socket.socket() for _ in range(count)]
    for each in sockets:
        each.bind(("", 0))
    ports = [each.getsockname()[1] for each in sockets]
    for each in sockets:
        each.close()
    return ports


class Cluster:
    """Starts it and waits until all nodes are idle; use it in a `with`."""

    def __init__(self, folder: Path, nodes: int) -> None:
        self.folder = folder
        self.nodes = [f"node{number}" for number in range(1, nodes + 1)]
        self.environment: Dict[str, str] = {**os.environ, "SLURM_CONF": str(folder / "slurm.conf")}
        self._daemons: Dict[str, "subprocess.Popen[bytes]"] = {}

    def __enter__(self) -> "Cluster":
        try:
            self._start()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_: object) -> None:
        if self._daemons:
            subprocess.run(["scancel", "--me"], env=self.environment, capture_output=True)
        for name in list(self._daemons):
            self._end(name)

    def _start(self) -> None:
        controller, *ports = _free_ports(1 + len(self.nodes))
        host = socket.gethostname()
        (self.folder / "state").mkdir()
        lines = [
            f"NodeName={node} NodeHostname={host} NodeAddr=127.0.0.1 Port={port} CPUs=1 RealMemory=1000"
            for node, port in zip(self.nodes, ports)
        ]
        (self.folder / "slurm.conf").write_text(
            CONFIGURATION.format(
                host=host,
                user=getpass.getuser(),
                folder=self.folder,
                controller_port=controller,
                silence=SILENCE,
                nodes="\n".join(lines),
            )
        )
        self._munge()
        self._daemons["controller"] = self._run(["slurmctld", "-D"])
        for node in self.nodes:
            self._daemons[node] = self._run(["slurmd", "-D", "-N", node], PLATEN_NODE=node)
        self.wait_for(lambda: self.states().count("idle") == len(self.nodes), 60, "all nodes idle")

    def _munge(self) -> None:
        folder = self.folder / "munge"
        folder.mkdir(mode=0o755)
        key = folder / "key"
        key.write_bytes(os.urandom(128))
        key.chmod(0o600)
        self._daemons["munged"] = self._run(
            ["munged", "--foreground", "--force", f"--key-file={key}", f"--socket={folder}/socket"]
            + [f"--pid-file={folder}/pid", f"--log-file={folder}/log", f"--seed-file={folder}/seed"]
        )
        self.wait_for((folder / "socket").exists, 20, "munged")

    def _run(self, words: List[str], **variables: str) -> "subprocess.Popen[bytes]":
        environment = {**self.environment, **variables}
        with open(self.folder / "daemons.txt", "ab") as log:
            return subprocess.Popen(words, env=environment, stdout=log, stderr=log, start_new_session=True)

    def _end(self, name: str) -> None:
        daemon = self._daemons.pop(name)
        daemon.terminate()
        try:
            daemon.wait(20)
        except subprocess.TimeoutExpired:
            daemon.kill()
            daemon.wait()

    def states(self) -> List[str]:
        """The state of each node, as sinfo names it."""
        said = subprocess.run(
            ["sinfo", "-h", "-N", "-o", "%T"], env=self.environment, capture_output=True, text=True
        )
        return said.stdout.split()

    def kill_node(self, node: str) -> None:
        """What a power failure does: the node's daemon and all that it has started are gone at once."""
        daemon = self._daemons.pop(node)
        victims = [daemon.pid]
        for pid in (int(each) for each in os.listdir("/proc") if each.isdigit()):
            if _environment(pid).get("SLURMD_NODENAME") == node or _is_step_of(pid, node):
                victims.append(pid)
        for victim in victims:
            try:
                os.kill(victim, signal.SIGKILL)
            except ProcessLookupError:
                pass
        daemon.wait()

    def wait_for(self, condition: Callable[[], bool], seconds: float, what: str) -> None:
        """Raises TimeoutError, which names `what`, if the condition does not come true in time."""
        end = time.monotonic() + seconds
        while not condition():
            if time.monotonic() > end:
                logs = [file.read_text(errors="replace")[-2000:] for file in sorted(self.folder.glob("slurm*.log"))]
                raise TimeoutError(f"{what}: not within {seconds:g} s\n" + "\n".join(logs))
            time.sleep(0.2)


def _environment(pid: int) -> Dict[str, str]:
    try:
        content = Path(f"/proc/{pid}/environ").read_bytes().decode(errors="replace")
    except OSError:
        return {}
    return dict(line.split("=", 1) for line in content.split("\0") if "=" in line)


def _is_step_of(pid: int, node: str) -> bool:
    """slurmstepd has its title in place of its words, and the environment of its daemon."""
    try:
        words = Path(f"/proc/{pid}/cmdline").read_bytes().split(b"\0")
    except OSError:
        return False
    return words[0].startswith(b"slurmstepd") and _environment(pid).get("PLATEN_NODE") == node
