"""The page of figures: goal and value of each line, as text and as HTML."""

from __future__ import annotations

import html
import textwrap
from typing import Any, Dict, Iterable, List, Sequence

from goals import Goal

_STYLE = """body{font:15px/1.4 sans-serif;margin:2em;color:#222}table{border-collapse:collapse}
td,th{border-bottom:1px solid #ccc;padding:.3em .8em;text-align:left;vertical-align:top}
.held{color:#17692c}.missed{color:#a11;font-weight:bold}.open{color:#777}img{max-width:100%}"""

Results = Dict[str, Dict[str, Any]]


def state(result: Dict[str, Any]) -> str:
    """held, missed, or open: not run, run in short, or a run that says nothing."""
    if not result or result.get("value") is None or result.get("short"):
        return "open"
    return "held" if result["good"] else "missed"


def value(result: Dict[str, Any]) -> str:
    if not result:
        return "not run"
    if result.get("value") is None:
        return f"no figure: the command ended with {result['status']}"
    return str(result["value"]) + (" (only a short run)" if result.get("short") else "")


def _about(result: Dict[str, Any]) -> str:
    return f"{result['time']}, {result['commit']}, {result['seconds'] / 60:.1f} min, load {result['load']:.1f}" if result else ""


def summary(goals: Sequence[Goal], results: Results) -> str:
    states = [state(results.get(goal.name, {})) for goal in goals]
    return f"{len(goals)} goals: {states.count('held')} held, {states.count('missed')} missed, {states.count('open')} open"


def as_text(goals: Sequence[Goal], results: Results) -> str:
    lines: List[str] = []
    for goal in goals:
        result = results.get(goal.name, {})
        lines.append(f"{state(result):7} {goal.area}: {goal.goal}")
        lines += textwrap.wrap(f"{' '.join(goal.command) or 'nothing measures it yet'}: {value(result)}", 110, initial_indent=" " * 8, subsequent_indent=" " * 8)
        if result:
            lines.append(" " * 8 + _about(result))
    return "\n".join(lines + ["", summary(goals, results), ""])


def as_html(goals: Sequence[Goal], results: Results, pictures: Iterable[str]) -> str:
    rows = []
    for goal in goals:
        result = results.get(goal.name, {})
        cells = [goal.area, goal.goal, value(result), state(result), " ".join(goal.command), _about(result)]
        rows.append(f'<tr class="{state(result)}">' + "".join(f"<td>{html.escape(cell)}</td>" for cell in cells) + "</tr>")
    heads = "".join(f"<th>{head}</th>" for head in ("area", "goal", "value", "", "command", "run"))
    images = "".join(f'<p><img src="{html.escape(picture)}" alt="{html.escape(picture)}"></p>' for picture in pictures)
    return (f"<!doctype html><html lang=en><meta charset=utf-8><title>Platen: what is proven</title><style>{_STYLE}</style>"
            f"<h1>What is proven</h1><p>{summary(goals, results)}</p><table><tr>{heads}</tr>{''.join(rows)}</table>{images}</html>\n")
