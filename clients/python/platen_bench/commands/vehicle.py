"""The vehicle around the head unit."""

from __future__ import annotations

from typing import Optional, Union

from .base import Caller, form


class VehicleCommands(Caller):
    """What the vehicle tells the application."""

    @form("device [--silent] ID|NAME NUMBER|fail")
    def device(self, device: Union[str, int], value: Union[int, str], silent: bool = False) -> None:
        """Sets a vehicle value by the device's name or number; the value "fail" makes reading it fail.

        "parking" (2): 0 while the car drives; "mute" (6): 255 muted; "temperature" (7): tenths of a degree
        Celsius; "bluetooth" (86): 0 off, 1 on, 2 connected. The application gets a message unless `silent`.
        Raises CommandFailed for a number and WrongUsage for a name that no device has.
        """
        self.command("device", *(["--silent"] if silent else []), device, value)

    def drive_off(self) -> None:
        """The car drives off: films and photos leave the screen."""
        self.device("parking", 0)

    def park(self) -> None:
        """The car stands again."""
        self.device("parking", 1)

    @form("volume [LEVEL|up|down|mute]")
    def volume(self, level: Union[int, str, None] = None) -> int:
        """How loud the head unit is, 0 to 100, after it was turned to `level`, a step "up" or "down", or "mute" was
        pressed; None: as it is.

        Raises WrongUsage for another level.
        """
        if level is not None:
            self.command("volume", level)
        return int(self.command("volume"))

    @form("time HH:MM [12|24]")
    def time(self, clock: str, display: Optional[int] = None) -> None:
        """Sets the clock of the head unit, "23:05", and its display, 12 or 24 hours (None: as it was).

        Raises WrongUsage for what is no time of day.
        """
        self.command("time", clock, *([] if display is None else [display]))
