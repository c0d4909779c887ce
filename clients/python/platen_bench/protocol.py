"""The control socket's messages (docs/protocols.md): one command a connection, answered as it goes on."""

from __future__ import annotations

import json
import os
import socket
import time
from dataclasses import dataclass
from typing import Optional, Sequence, Tuple

from .errors import NoBench, ProtocolError

#: The version of the messages that this package writes and reads.
VERSION = 1

_PACKET_BYTES = 64 * 1024
_LAST_PACKET = b"\0"
_MORE_PACKETS = b"\1"
_MEMBERS = {"out", "err", "exit"}


def request(words: Sequence[str], folder: str) -> str:
    """The message that asks for a command; relative paths in it count from `folder`."""
    return json.dumps({"v": VERSION, "argv": list(words), "cwd": folder})


@dataclass(frozen=True)
class Part:
    """One message of an answer: a piece of output, of errors, or the exit status, which comes last."""

    out: str = ""
    err: str = ""
    status: Optional[int] = None


def parse(text: str) -> Part:
    """Reads a message of an answer.

    Raises ProtocolError, which names the member, for one that this version does not have.
    """
    try:
        message = json.loads(text)
    except ValueError as error:
        raise ProtocolError(f"the bench's answer is no JSON: {error}") from error
    if not isinstance(message, dict):
        raise ProtocolError(f"the bench's answer is no object: {text[:200]}")
    unknown = sorted(set(message) - _MEMBERS)
    if unknown:
        raise ProtocolError(
            f'the bench\'s answer has "{unknown[0]}", which version {VERSION} of the protocol does not have'
        )
    out, err, status = message.get("out", ""), message.get("err", ""), message.get("exit")
    fits = isinstance(out, str) and isinstance(err, str) and (status is None or type(status) is int)
    if not fits:
        raise ProtocolError(f"the bench's answer has a member of the wrong kind: {text[:200]}")
    return Part(out, err, status)


class Connection:
    """A connection to ctl.sock that carries one command. Not for several threads at once."""

    def __init__(self, path: str) -> None:
        """Connects; raises NoBench if nobody serves `path`."""
        self._socket = socket.socket(socket.AF_UNIX, socket.SOCK_SEQPACKET)
        try:
            self._socket.connect(path)
        except OSError as error:
            self._socket.close()
            folder = os.path.dirname(path)
            raise NoBench(f"no bench runs in {folder} ({path}: {error.strerror or error})") from error

    def send(self, text: str) -> None:
        """Sends one message, in as many packets as it needs."""
        rest = text.encode("utf-8", "surrogateescape")
        try:
            while True:
                packet, rest = rest[:_PACKET_BYTES], rest[_PACKET_BYTES:]
                self._socket.sendall((_MORE_PACKETS if rest else _LAST_PACKET) + packet)
                if not rest:
                    return
        except OSError as error:
            raise NoBench(f"the bench has gone: {error.strerror or error}") from error

    def receive(self, timeout: Optional[float] = None) -> Optional[Part]:
        """The next message of the answer; None if there is none within `timeout` seconds (None: waits for ever).

        Raises NoBench when the bench goes away before its answer is complete.
        """
        deadline = None if timeout is None else time.monotonic() + timeout
        whole = b""
        while True:
            self._socket.settimeout(None if deadline is None else max(deadline - time.monotonic(), 0.001))
            try:
                packet = self._socket.recv(_PACKET_BYTES + 1)
            except socket.timeout:
                if whole:
                    continue  # the rest of a message that has begun is on its way
                return None
            except OSError as error:
                raise NoBench(f"the bench has gone: {error.strerror or error}") from error
            if not packet:
                raise NoBench("the bench has gone: connection closed")
            whole += packet[1:]
            if packet[:1] == _LAST_PACKET:
                return parse(whole.decode("utf-8", "replace"))

    def close(self) -> None:
        """Closes it; a command that still runs ends."""
        self._socket.close()


def run(path: str, words: Sequence[str], timeout: Optional[float] = None) -> Tuple[int, str, str]:
    """Runs one command; gives its exit status, output and errors.

    Raises NoBench without a bench, TimeoutError if the answer is not complete within `timeout` seconds.
    """
    deadline = None if timeout is None else time.monotonic() + timeout
    connection = Connection(path)
    out, err = [], []
    try:
        connection.send(request(words, os.getcwd()))
        while True:
            part = connection.receive(None if deadline is None else max(deadline - time.monotonic(), 0))
            if part is None:
                raise TimeoutError(f"{' '.join(words)}: no answer within {timeout} s")
            out.append(part.out)
            err.append(part.err)
            if part.status is not None:
                return part.status, "".join(out), "".join(err)
    finally:
        connection.close()
