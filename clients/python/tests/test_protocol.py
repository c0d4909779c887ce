"""The messages of the control socket, against a peer that answers what a test says."""

import json
import socket
import subprocess
import threading
import urllib.error
import urllib.request
from pathlib import Path
from typing import Iterator, List, Tuple

import pytest

from platen_bench import Bench, NoBench, ProtocolError, protocol
from platen_bench.programs import find_ctl


class Peer:
    """Serves one connection: keeps the request and answers with raw packets, then closes."""

    def __init__(self, folder: Path) -> None:
        self.path = str(folder / "ctl.sock")
        self.packets: List[bytes] = []
        self.answer: List[bytes] = []
        self._listener = socket.socket(socket.AF_UNIX, socket.SOCK_SEQPACKET)
        self._listener.bind(self.path)
        self._listener.listen()
        self._thread = threading.Thread(target=self._serve, daemon=True)
        self._thread.start()

    def _serve(self) -> None:
        connection, _ = self._listener.accept()
        with connection:
            while True:
                packet = connection.recv(65537)
                self.packets.append(packet[1:])
                if packet[:1] == b"\0":
                    break
            for packet in self.answer:
                connection.send(packet)

    def request(self) -> object:
        self._thread.join(5)
        return json.loads(b"".join(self.packets))

    def says(self, *messages: str) -> None:
        self.answer = [b"\0" + message.encode() for message in messages]

    def close(self) -> None:
        self._listener.close()


@pytest.fixture
def peer(tmp_path: Path) -> Iterator[Peer]:
    peer = Peer(tmp_path)
    yield peer
    peer.close()


def test_a_request_names_its_version(peer: Peer, monkeypatch: pytest.MonkeyPatch, tmp_path: Path) -> None:
    monkeypatch.chdir(tmp_path)
    peer.says('{"exit":0}')
    assert protocol.run(peer.path, ["key", "next"]) == (0, "", "")
    assert peer.request() == {"v": 1, "argv": ["key", "next"], "cwd": str(tmp_path)}


def test_output_and_errors_come_in_pieces(peer: Peer) -> None:
    peer.says('{"out":"a"}', '{"err":"x"}', '{"out":"b","err":"y"}', '{"exit":1}')
    assert protocol.run(peer.path, ["ps"]) == (1, "ab", "xy")


def test_messages_longer_than_a_packet_go_both_ways(peer: Peer) -> None:
    text = "é" * 100_000
    whole = json.dumps({"out": text, "exit": 0}).encode()
    pieces = [whole[at : at + 65536] for at in range(0, len(whole), 65536)]
    peer.answer = [(b"\1" if piece is not pieces[-1] else b"\0") + piece for piece in pieces]
    assert protocol.run(peer.path, ["appdata", text]) == (0, text, "")
    assert peer.request() == {"v": 1, "argv": ["appdata", text], "cwd": str(Path.cwd())}
    assert len(peer.packets) > 1


@pytest.mark.parametrize(
    "message, culprit",
    [
        ('{"exit":0,"picture":1}', '"picture"'),
        ("[1]", "no object"),
        ("nonsense", "no JSON"),
        ('{"exit":"0"}', "wrong kind"),
        ('{"out":1}', "wrong kind"),
    ],
)
def test_what_the_version_does_not_have_is_named(peer: Peer, message: str, culprit: str) -> None:
    peer.says(message)
    with pytest.raises(ProtocolError, match=culprit):
        protocol.run(peer.path, ["ps"])


def test_a_bench_that_goes_away_is_no_answer(peer: Peer) -> None:
    peer.says('{"out":"half"}')
    with pytest.raises(NoBench, match="the bench has gone"):
        protocol.run(peer.path, ["ps"])


def test_time_that_is_up_is_an_error(tmp_path: Path) -> None:
    listener = socket.socket(socket.AF_UNIX, socket.SOCK_SEQPACKET)
    listener.bind(str(tmp_path / "ctl.sock"))
    listener.listen()
    with listener, pytest.raises(TimeoutError, match="ps: no answer within 0.1 s"):
        protocol.run(str(tmp_path / "ctl.sock"), ["ps"], timeout=0.1)


def test_without_a_bench_the_folder_is_named(tmp_path: Path) -> None:
    with pytest.raises(NoBench, match=f"no bench runs in {tmp_path}"):
        protocol.run(str(tmp_path / "ctl.sock"), ["ps"])


def answer(connection: protocol.Connection, message: str) -> Tuple[str, str, int]:
    connection.send(message)
    out = err = ""
    while True:
        part = connection.receive(timeout=20)
        assert part is not None
        out, err = out + part.out, err + part.err
        if part.status is not None:
            return out, err, part.status


def test_the_bench_refuses_what_it_does_not_know_by_name_and_goes_on() -> None:
    with Bench(disc_service=False) as unit:
        connection = protocol.Connection(unit.runtime + "/ctl.sock")
        for message, sentence in [
            (
                '{"v":2,"argv":["ps"]}',
                "zmctl: version 2 of the control protocol is not known; this bench speaks 1\n",
            ),
            ('{"argv":["ps"],"timeout":5}', 'zmctl: a command has no member "timeout"; it is '),
            ('{"argv":"ps"}', 'zmctl: "argv" is no list of texts; '),
            ("nonsense", "zmctl: a command is "),
        ]:
            out, err, status = answer(connection, message)
            assert err.startswith(sentence) and err.endswith("\n") and (out, status) == ("", 2)
        for message in ('{"v":1,"argv":["ps"],"cwd":"/"}', '{"argv":["ps"]}'):
            out, err, status = answer(connection, message)
            assert out.startswith("app ") and (err, status) == ("", 0)
        connection.close()


def test_zmctl_speaks_the_same(peer: Peer) -> None:
    peer.says('{"exit":0,"picture":1}')
    result = subprocess.run(
        [find_ctl(None), "--runtime", str(Path(peer.path).parent), "key", "next"],
        capture_output=True,
        encoding="utf-8",
    )
    assert peer.request() == {"v": 1, "argv": ["key", "next"], "cwd": str(Path.cwd())}
    assert result.returncode == 1
    assert 'answer has "picture", which version 1 of the protocol does not have' in result.stderr


def test_the_server_of_the_page_speaks_the_same() -> None:
    with Bench(disc_service=False, page=True) as unit:
        place, _, token = unit.address.partition("?token=")
        headers = {"Authorization": f"Bearer {token}", "Content-Type": "application/json"}

        def post(body: str) -> Tuple[int, str]:
            asked = urllib.request.Request(place + "api/command", body.encode(), headers)
            try:
                with urllib.request.urlopen(asked, timeout=20) as answered:
                    return answered.status, answered.read().decode()
            except urllib.error.HTTPError as error:
                with error:
                    return error.code, error.read().decode()

        status, text = post('{"v":1,"argv":["key","nxt"]}')
        assert status == 200 and json.loads(text)["exit"] == 2 and "next" in json.loads(text)["err"]
        assert post('{"v":2,"argv":["ps"]}') == (
            400,
            "version 2 of the control protocol is not known; this bench speaks 1",
        )
        assert post('{"v":1,"argv":[]}') == (400, "a command has words")
