"""A disc drive made of air: a device of udev, a node to read from, and answers to what the kernel is asked."""

from __future__ import annotations

import os
import shutil
import threading
from pathlib import Path
from typing import Any, List, Optional

import gi

from mock_cd import Cd

gi.require_version("UMockdev", "1.0")
from gi.repository import GLib, UMockdev  # noqa: E402

SYS_PATH = "/sys/devices/pci0000:00/ata2/host1/target1:0:0/1:0:0:0/block/sr0"
DEVICE = f"""P: {SYS_PATH[4:]}
N: sr0
E: DEVNAME=/dev/sr0
E: DEVTYPE=disk
E: ID_CDROM=1
E: MAJOR=11
E: MINOR=0
E: SUBSYSTEM=block
A: dev=11:0

"""

# Of linux/cdrom.h.
EJECT, LOCK_DOOR, DRIVE_STATUS = 0x5309, 0x5329, 0x5326
NO_DISC, TRAY_OPEN, NOT_READY, DISC_OK = 1, 2, 3, 4
EBUSY, ENOTTY, ENOMEDIUM = 16, 25, 123


class _Kernel(UMockdev.IoctlBase):  # type: ignore[misc]
    """Answers on a thread of its own what programs ask the drive."""

    drive: "MockDrive"

    def do_handle_ioctl(self, client: Any) -> bool:
        if self.drive.hangs:
            self.drive.waiting.append(client)
        else:
            self.carry_out(client)
        return True

    def carry_out(self, client: Any) -> None:
        result, error = self.drive.answer(client.get_request(), client.get_arg())
        client.complete(result, error)


class MockDrive:
    """The drive of one test; its methods are what a person's hand does."""

    def __init__(self) -> None:
        self._testbed = UMockdev.Testbed.new()
        self.root: str = self._testbed.get_root_dir()
        self.status = NO_DISC
        self.cd: Optional[Cd] = None  #: a disc with tracks of sound
        self.hangs = False  #: it answers nothing, until `wake`
        self.waiting: List[Any] = []  #: what it has been asked meanwhile
        self.refuses: Optional[int] = None  #: with this error the disc stays inside
        self.asked: List[int] = []  #: all that the kernel was asked, oldest first
        self._kernel = _Kernel()
        self._kernel.drive = self
        self._node = Path(self.root) / "dev" / "sr0"
        self._loop = GLib.MainLoop()
        threading.Thread(target=self._loop.run, daemon=True).start()
        self._testbed.add_from_string(DEVICE)
        os.chmod(self._node, 0o1644)  # so its node counts as a device
        self._testbed.attach_ioctl("/dev/sr0", self._kernel)

    def close(self) -> None:
        self._loop.quit()

    def answer(self, request: int, argument: Any) -> "tuple[int, int]":
        self.asked.append(request)
        if request == DRIVE_STATUS:
            return self.status, 0
        if request == LOCK_DOOR:
            return 0, 0
        if request == EJECT:
            if self.refuses is not None:
                return -1, self.refuses
            self.take_out()
            return 0, 0
        if self.status != DISC_OK:
            return -1, ENOMEDIUM
        return self.cd.answer(request, argument) if self.cd else (-1, ENOTTY)

    def wake(self) -> None:
        """After it has hung."""

        def answer_all() -> bool:
            self.hangs = False
            while self.waiting:
                self._kernel.carry_out(self.waiting.pop(0))
            return False

        GLib.idle_add(answer_all)

    def plug_in(self) -> None:
        self._testbed.uevent(SYS_PATH, "add")

    def pull_out(self) -> None:
        """The drive itself vanishes from the machine, with the disc inside."""
        self.status = NO_DISC
        self.cd = None
        self._node.write_bytes(b"")
        self._testbed.uevent(SYS_PATH, "remove")

    def put_in(self, image: Path, status: int = DISC_OK) -> None:
        """A disc with these bytes."""
        with open(image, "rb") as source, open(self._node, "wb") as node:
            shutil.copyfileobj(source, node)
        self.status = status
        self._change("DISK_MEDIA_CHANGE", "ID_CDROM_MEDIA")

    def put_in_cd(self, cd: Cd, files: Optional[Path] = None, status: int = DISC_OK) -> None:
        """A disc with these tracks, and `files` as the file system of its data track."""
        with open(self._node, "wb") as node:
            node.truncate(min(max(cd.end, 0), 450000) * 2048)
            if files:
                node.seek(cd.begins[min(cd.data) - cd.first] * 2048)
                node.write(files.read_bytes())
        self.cd = cd
        self.status = status
        self._change("DISK_MEDIA_CHANGE", "ID_CDROM_MEDIA")

    def take_out(self) -> None:
        self.status = TRAY_OPEN
        self.cd = None
        self._node.write_bytes(b"")
        self._change("DISK_MEDIA_CHANGE")

    def press_button(self) -> None:
        self._change("DISK_EJECT_REQUEST")

    def _change(self, *properties: str) -> None:
        for name in ("DISK_MEDIA_CHANGE", "ID_CDROM_MEDIA", "DISK_EJECT_REQUEST"):
            self._testbed.set_property(SYS_PATH, name, "1" if name in properties else "")
        self._testbed.uevent(SYS_PATH, "change")
