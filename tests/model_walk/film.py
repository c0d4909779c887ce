"""A decoder that shows one picture of one colour, so that a film on the screen is told by its pixels."""

from __future__ import annotations

import fcntl
import json
import mmap
import os
import socket

#: No page draws it.
COLOUR = "fe01d7"

_WIDTH, _HEIGHT, _BUFFERS = 800, 480, 3
_WHOLE_MESSAGE = b"\0"


class Film:
    """A client of screen.sock with the role "video" (docs/protocols.md)."""

    def __init__(self, runtime: str) -> None:
        self._socket = socket.socket(socket.AF_UNIX, socket.SOCK_SEQPACKET)
        self._socket.connect(os.path.join(runtime, "screen.sock"))
        size = _WIDTH * 4 * _HEIGHT * _BUFFERS
        memory = os.memfd_create("film", os.MFD_ALLOW_SEALING)
        os.ftruncate(memory, size)
        with mmap.mmap(memory, size) as pixels:
            pixels.write((bytes.fromhex(COLOUR)[::-1] + b"\xff") * (size // 4))
        fcntl.fcntl(memory, fcntl.F_ADD_SEALS, fcntl.F_SEAL_SHRINK | fcntl.F_SEAL_GROW | fcntl.F_SEAL_SEAL)
        self._send({"t": "hello", "role": "video", "pid": os.getpid()})
        window = {"t": "window", "window": 1, "name": "video", "width": _WIDTH, "height": _HEIGHT}
        window.update(stride=_WIDTH * 4, order=0, alpha=False, visible=True)
        self._send(window, memory)
        os.close(memory)
        self._send({"t": "commit", "window": 1, "buffer": 0, "seq": 1, "damage": [[0, 0, _WIDTH, _HEIGHT]]})
        self._send({"t": "sync", "id": 1})
        while b"synced" not in (answer := self._socket.recv(65536)):
            if not answer or b'"error"' in answer:
                raise RuntimeError(f"the compositor did not take the film: {answer!r}")

    def _send(self, message: object, *descriptors: int) -> None:
        socket.send_fds(self._socket, [_WHOLE_MESSAGE + json.dumps(message).encode()], list(descriptors))

    def close(self) -> None:
        self._socket.close()
