"""The commands that zmctl carries out itself."""

from __future__ import annotations

import os
import time
from typing import Callable, List, Optional, Union

from ..errors import ExpectationFailed
from ..expectations import conditions, wait_for
from .base import Caller, form, lines_of


class LocalCommands(Caller):
    """Waiting, and what the zmctl program does without the bench's help."""

    @form("wait MS")
    def wait(self, seconds: float) -> None:
        """Lets real time pass. A test that waits for a condition (`expect`) is faster and surer."""
        time.sleep(seconds)

    @form("expect PATH OP VALUE [within MS]")
    def expect(self, *path: object, within: float = 2, **fields: object) -> None:
        """Waits until something holds, at most `within` seconds; all conditions must hold at once.

        By field: `expect(page="music", title="Fog", within=5)`. The fields are `page`, `overlay` (names of
        `Page` and `Overlay`), `title`, `artist`, `album`, `position`, `time`, `length`, `message`, `folder`,
        `entry` (what stands there on the page that has it), `rows` (list of a list's texts), `text` (something
        that can be read anywhere on the screen), `disc` (the drive's state), `app` and `service` (a process's
        state, "running").
        By path, as zmctl has it: `expect("pps.zelmar/disc/status.discstate", "==", 2)`, `expect("requests.-1.app",
        "contains", "home")`; the operators are ==, !=, <, <=, >, >=, contains and matches.

        Raises ExpectationFailed, which says what was expected and what was found; ValueError for a field, an
        operator or a path that does not exist.
        """
        wait_for(self, conditions(path, fields), within)

    def holds(self, *path: object, **fields: object) -> bool:
        """Whether that is so now; written as for `expect`."""
        return all(condition.found(self).good for condition in conditions(path, fields))

    def until(self, condition: Callable[[], bool], within: float = 2, what: str = "the condition") -> None:
        """Waits until `condition()` holds, at most `within` seconds; for what no field or path of `expect` says.

        Raises ExpectationFailed, which names `what`. A script that repeats the test does not have it.
        """
        deadline = time.monotonic() + within
        while not condition():
            if time.monotonic() >= deadline:
                raise ExpectationFailed(f"{what} did not hold within {within:g} s")
            time.sleep(0.02)

    @form("run FILE")
    def run(self, file: Union[str, "os.PathLike[str]"]) -> str:
        """Carries out a script of zmctl commands; returns its output.

        Raises CommandFailed, whose text names the line with what was expected and found, and WrongUsage,
        before anything is carried out, for a script with a line that is no command.
        """
        return self.local(["run", os.path.abspath(file)])

    @form("replay FILE [--speed FACTOR] [--clock] [--trace FILE]")
    def replay(
        self,
        file: Union[str, "os.PathLike[str]"],
        *,
        speed: Optional[float] = None,
        clock: bool = False,
        trace: Optional[Union[str, "os.PathLike[str]"]] = None,
    ) -> str:
        """Repeats what `record` wrote, or another script, with its pauses; returns its output.

        speed  2 takes half the time
        clock  the pauses pass on the stopped clock instead, and the bench settles after each step
        trace  file that gets what followed each step, a JSON object a line: equal replays leave equal files

        Raises as `run` does, and CommandFailed for `clock` with a clock that runs.
        """
        words = ["replay", os.path.abspath(file)]
        words += [] if speed is None else ["--speed", str(speed)]
        words += ["--clock"] if clock else []
        words += [] if trace is None else ["--trace", os.path.abspath(trace)]
        return self.local(words)

    @form("shrink FILE --until EXPECTATION [--to FILE] [--bench WORDS]")
    def shrink(
        self,
        file: Union[str, "os.PathLike[str]"],
        until: str,
        *,
        to: Optional[Union[str, "os.PathLike[str]"]] = None,
        bench: Optional[str] = None,
    ) -> str:
        """Leaves of a script only the steps that it needs until an expectation holds; returns what it found.

        until  as behind `zmctl expect`: "ps.app.deaths > 0"
        to     the smaller script; None: NAME-small.zmctl beside `file`
        bench  arguments of zmbench for the tries; None: what the script's head says

        Each try has a fresh bench of its own: this one is not touched. Raises CommandFailed if the expectation
        never holds.
        """
        words = ["shrink", os.path.abspath(file), "--until", until]
        words += [] if to is None else ["--to", os.path.abspath(to)]
        words += [] if bench is None else ["--bench", bench]
        return self.local(words)

    @form("monkey [--seed N] [--seconds S] [--file FILE]")
    def monkey(
        self,
        seed: Optional[int] = None,
        seconds: float = 60,
        file: Optional[Union[str, "os.PathLike[str]"]] = None,
    ) -> str:
        """Gives random input for `seconds`, the same for the same `seed`; returns what it says of its run.

        Raises CommandFailed when a program dies, hangs or shows something wrong; the text names the step, and
        `file` (default: monkey-SEED.zmctl in the present folder) then repeats it.
        """
        words = ["monkey", "--seconds", str(seconds)]
        words += [] if seed is None else ["--seed", str(seed)]
        words += [] if file is None else ["--file", os.path.abspath(file)]
        return self.local(words)

    @form("completion SHELL")
    def completion(self, shell: str) -> str:
        """What makes "bash", "zsh" or "fish" complete zmctl's commands. Raises WrongUsage for another shell."""
        return self.local(["completion", shell])

    @form("complete [WORD...]")
    def complete(self, *words: str) -> List[str]:
        """What may be written for the last word behind the others."""
        return lines_of(self.local(["complete", *words]))

    @form("help [COMMAND]")
    def help(self, command: Optional[str] = None) -> str:
        """The list of commands, or how one is used. Raises WrongUsage for one that does not exist."""
        return self.local(["help"] + ([] if command is None else [command]))
