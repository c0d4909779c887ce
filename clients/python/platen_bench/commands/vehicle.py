"""The vehicle around the head unit."""

from __future__ import annotations

import os
from dataclasses import dataclass
from typing import Any, Dict, Optional, Union

from .base import Caller, form, lines_of
from .pps import values_of


@dataclass(frozen=True)
class Car:
    """The car's signals and what follows from them."""

    speed: float  #: km/h
    gear: str  #: "park", "reverse", "neutral" or "drive"
    ignition: str  #: "off", "accessory" or "on"
    light: Optional[int]  #: lux; None before the sensor has said anything
    daynight: str  #: colours of the screen, "day" or "night"
    restriction: int  #: 0 none, 1 no film, 2 no typing and no long lists either
    drive: bool  #: a drive from a file goes on

    @staticmethod
    def of(values: Dict[str, Any]) -> "Car":
        """From the attributes of "zelmar/vehicle/status"."""
        return Car(
            float(values["speed"]),
            values["gear"],
            values["ignition"],
            None if values["light"] < 0 else int(values["light"]),
            values["daynight"],
            int(values["restriction"]),
            values["drive"] == "on",
        )


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

    @form(
        "vehicle speed KMH",
        "vehicle gear park|reverse|neutral|drive",
        "vehicle ignition off|accessory|on",
        "vehicle light LUX",
        "vehicle daynight day|night",
    )
    def signal(self, name: str, value: Union[str, float]) -> None:
        """Sets a signal of the car: "speed" (km/h), "gear", "ignition", "light" (lux) or "daynight".

        The car is parked at speed 0 with gear "park" or ignition "off"; "parking" (2) follows where that changes.
        Raises WrongUsage for a signal or a value that there is not.
        """
        self.command("vehicle", name, f"{value:g}" if isinstance(value, float) else value)

    @form("vehicle")
    def car(self) -> Car:
        """The car's signals and what follows from them."""
        return Car.of(values_of(lines_of(self.ask(["vehicle"]))))

    @form("vehicle drive FILE [--speed FACTOR]")
    def begin_drive(self, file: Union[str, "os.PathLike[str]"], speed: float = 1) -> None:
        """Begins to play a signal file beside everything else; `speed` 2 takes half the time.

        It follows real time, with a stopped clock `advance`. `unit.car().drive` tells whether it goes on.
        Raises CommandFailed, which names the line, for a file that is no signal file.
        """
        self.command("vehicle", "drive", os.path.abspath(file), "--speed", f"{speed:g}")

    @form("vehicle drive --stop")
    def end_drive(self) -> None:
        """Ends it before its time; the signals stay as they are. Raises CommandFailed if none runs."""
        self.command("vehicle", "drive", "--stop")

    @form("time HH:MM [12|24]")
    def time(self, clock: str, display: Optional[int] = None) -> None:
        """Sets the clock of the head unit, "23:05", and its display, 12 or 24 hours (None: as it was).

        Raises WrongUsage for what is no time of day.
        """
        self.command("time", clock, *([] if display is None else [display]))
