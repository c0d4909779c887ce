"""The client has every command of zmctl, in each of its forms."""

import importlib
import pkgutil
import re
import subprocess
from typing import Set

import platen_bench
import platen_bench.commands.pps
from platen_bench.commands.base import FORMS
from platen_bench.programs import find_ctl


def forms_of_zmctl() -> Set[str]:
    ctl = find_ctl(None)
    overview = subprocess.run([ctl, "help"], capture_output=True, check=True, encoding="utf-8").stdout
    names = re.findall(r"^  (\S+) ", overview, re.MULTILINE)
    assert len(names) > 30
    forms: Set[str] = set()
    for name in names:
        text = subprocess.run([ctl, "help", name], capture_output=True, check=True, encoding="utf-8").stdout
        usage = text.split("\n\n")[0]
        forms.update(line.split("zmctl ", 1)[1] for line in usage.splitlines())
    return forms


def test_every_form_of_every_command_has_a_method() -> None:
    for module in pkgutil.walk_packages(platen_bench.__path__, "platen_bench."):
        if ".commands." in module.name:
            importlib.import_module(module.name)
    zmctl = forms_of_zmctl()
    missing, unknown = sorted(zmctl - set(FORMS)), sorted(set(FORMS) - zmctl)
    assert not missing, "no method stands for what zmctl has: " + "; ".join(missing)
    assert not unknown, "methods stand for what zmctl does not have: " + "; ".join(unknown)


def test_the_methods_that_stand_for_them_are_the_benchs() -> None:
    for usage, name in FORMS.items():
        owner, _, method = name.rpartition(".")
        where = platen_bench.commands.pps.Pps if owner == "Pps" else platen_bench.Bench
        assert callable(getattr(where, method)), usage
        assert getattr(where, method).__doc__, f"{name} has no words on what it does"
