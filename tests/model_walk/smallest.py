"""The fewest steps that a difference needs, by delta debugging."""

from __future__ import annotations

from typing import Callable, List, Optional, TypeVar

Found = TypeVar("Found")


def smallest(found: Found, again: Callable[[List[List[str]]], Optional[Found]], tries: int) -> Found:
    """`found` has the `steps` that it took and its `kind`; `again` does other ones and gives what it found there.

    Without any single one of the steps that are left there is no difference, if the tries were enough to see to that.
    """
    steps: List[List[str]] = found.steps  # type: ignore[attr-defined]
    size = max(len(steps) // 2, 1)
    while tries > 0 and len(steps) > 1:
        at, smaller = 0, False
        while at < len(steps) and tries > 0:
            rest = steps[:at] + steps[at + size :]
            tries -= 1
            other = again(rest) if rest else None
            if other is None or other.kind != found.kind:  # type: ignore[attr-defined]
                at += size
            else:
                found, smaller = other, True
                steps = found.steps  # type: ignore[attr-defined]
        if size == 1 and not smaller:
            break
        size = max(size // 2, 1)
    return found
