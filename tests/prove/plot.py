"""Series of numbers over time as a picture (SVG), each in a field of its own."""

from __future__ import annotations

import html
from typing import Dict, List, Sequence, Tuple

_WIDTH, _HEIGHT, _LEFT, _TOP = 900, 150, 90, 34
_COLOURS = ("#1b6ca8", "#b3541e", "#2e7d32", "#7b1fa2")

# Name of a line, and its points: time and value.
Lines = Dict[str, Sequence[Tuple[float, float]]]


def _field(title: str, unit: str, lines: Lines, place: int) -> str:
    points = [point for line in lines.values() for point in line]
    top = max((value for _, value in points), default=0) * 1.1 or 1
    last = max((time for time, _ in points), default=0) or 1
    y = place * (_HEIGHT + _TOP + 16) + _TOP
    parts = [f'<text x="{_LEFT}" y="{y - 10}" font-weight="bold">{html.escape(title)}</text>',
             f'<rect x="{_LEFT}" y="{y}" width="{_WIDTH}" height="{_HEIGHT}" fill="none" stroke="#bbb"/>',
             f'<text x="{_LEFT - 6}" y="{y + 10}" text-anchor="end">{top:.0f} {html.escape(unit)}</text>',
             f'<text x="{_LEFT - 6}" y="{y + _HEIGHT}" text-anchor="end">0</text>']
    for number, (name, line) in enumerate(lines.items()):
        colour = _COLOURS[number % len(_COLOURS)]
        path = " ".join(f"{_LEFT + time / last * _WIDTH:.1f},{y + _HEIGHT - value / top * _HEIGHT:.1f}" for time, value in line)
        parts.append(f'<polyline points="{path}" fill="none" stroke="{colour}" stroke-width="1.5"/>')
        parts.append(f'<text x="{_LEFT + 160 + 110 * number}" y="{y - 10}" fill="{colour}">{html.escape(name)}</text>')
    return "".join(parts)


def plot(fields: Sequence[Tuple[str, str, Lines]]) -> str:
    """`fields`: title, unit and lines of each; all begin at 0."""
    height = len(fields) * (_HEIGHT + _TOP + 16)
    drawn: List[str] = [_field(title, unit, lines, place) for place, (title, unit, lines) in enumerate(fields)]
    return (f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {_WIDTH + _LEFT + 20} {height}" font-family="sans-serif" font-size="12">'
            f'<rect width="100%" height="100%" fill="white"/>{"".join(drawn)}</svg>\n')
