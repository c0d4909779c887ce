"""Finds what can be changed in a source: a comparison turned, a call left out, a condition negated."""

from __future__ import annotations

import hashlib
from dataclasses import dataclass, replace
from pathlib import Path
from typing import Dict, Iterator, List, Sequence, Tuple

from clang.cindex import Cursor, CursorKind, Index, TranslationUnit  # type: ignore[import]

# What stands in for an operator: the mistakes that people make.
OPERATORS = {
    "<": "<=",
    "<=": "<",
    ">": ">=",
    ">=": ">",
    "==": "!=",
    "!=": "==",
    "+": "-",
    "-": "+",
    "*": "/",
    "/": "*",
    "%": "/",
    "&&": "||",
    "||": "&&",
    "&": "|",
    "|": "&",
}
FUNCTIONS = (
    CursorKind.FUNCTION_DECL,
    CursorKind.CXX_METHOD,
    CursorKind.CONSTRUCTOR,
    CursorKind.DESTRUCTOR,
    CursorKind.CONVERSION_FUNCTION,
    CursorKind.FUNCTION_TEMPLATE,
)
# Where a value has to be known to the compiler.
CONSTANT = (
    CursorKind.CASE_STMT,
    CursorKind.STATIC_ASSERT,
    CursorKind.ENUM_CONSTANT_DECL,
    CursorKind.TEMPLATE_NON_TYPE_PARAMETER,
)


@dataclass(frozen=True)
class Mutant:
    """A change of the bytes from `start` to `end` of a file."""

    file: str
    line: int
    start: int
    end: int
    kind: str
    was: str
    becomes: str
    """The mutated text in words for the report."""
    code: str
    """What is compiled; NUMBER stands for the mutant's number."""
    place: str
    """The line of the source in which it begins."""
    again: int = 1
    """The how manieth of those that are alike in all of this."""

    @property
    def name(self) -> str:
        """What the list of equivalent mutants knows it by: it stays when other lines are added or taken out."""
        was, becomes = " ".join(self.was.split()), " ".join(self.becomes.split())
        place = "" if self.place.rstrip(";") == was else f" in: {self.place}"
        return f"{self.file}: {was} -> {becomes}{place}" + (f" ({self.again})" if self.again > 1 else "")


class Source:
    """The mutants of one file."""

    def __init__(self, file: str, path: Path, unit: TranslationUnit) -> None:
        self.file = file
        self.text = path.read_bytes()
        self.path = str(path)
        self.macros: List[Tuple[int, int]] = []
        self.found: List[Mutant] = []
        self.alike: Dict[str, int] = {}
        mine = [cursor for cursor in unit.cursor.get_children() if self.here(cursor)]
        for cursor in mine:
            if cursor.kind == CursorKind.MACRO_INSTANTIATION:
                self.macros.append((cursor.extent.start.offset, cursor.extent.end.offset))
        for cursor in mine:
            self.walk(cursor, False)

    def here(self, cursor: Cursor) -> bool:
        return cursor.location.file is not None and cursor.location.file.name == self.path

    def part(self, cursor: Cursor) -> str:
        return self.text[cursor.extent.start.offset : cursor.extent.end.offset].decode()

    def add(self, kind: str, cursor: Cursor, becomes: str, code: str, was: str = "") -> None:
        start, end = cursor.extent.start.offset, cursor.extent.end.offset
        if start >= end or any(first < end and start < last for first, last in self.macros):
            return
        was = was or self.part(cursor)
        if "#" in was:
            return  # a directive, or text that could be one
        line = cursor.extent.start.line
        place = " ".join(self.text.splitlines()[line - 1].decode().split())
        made = Mutant(self.file, line, start, end, kind, was, becomes, code, place)
        again = self.alike[made.name] = self.alike.get(made.name, 0) + 1
        self.found.append(replace(made, again=again))

    def walk(self, cursor: Cursor, inside: bool) -> None:
        kind = cursor.kind
        if kind in CONSTANT:
            return
        if kind in FUNCTIONS:
            if "constexpr" in self.part(cursor).partition("{")[0]:
                return
            inside = True
        if kind == CursorKind.VAR_DECL and "constexpr" in self.part(cursor).partition("=")[0]:
            return
        if inside:
            self.mutate(cursor)
        for child in cursor.get_children():
            self.walk(child, inside)

    def mutate(self, cursor: Cursor) -> None:
        kind = cursor.kind
        children = list(cursor.get_children())
        if kind == CursorKind.BINARY_OPERATOR and len(children) == 2:
            self.operator(cursor, *children)
        elif kind == CursorKind.COMPOUND_STMT:
            for child in children:
                self.statement(child)
        elif kind in (CursorKind.IF_STMT, CursorKind.WHILE_STMT) and not self.part(cursor).startswith("if constexpr"):
            self.condition(children[0])
        elif kind == CursorKind.RETURN_STMT and children and children[0].type.spelling == "bool":
            value = self.part(children[0])
            self.add("negation", children[0], f"!({value})", f"(zm::mutation::lives(NUMBER) != bool({value}))")
        elif kind == CursorKind.INTEGER_LITERAL:
            number = self.part(cursor)
            if number.isdigit():
                other = str(int(number) + 1)
                self.add("constant", cursor, other, f"(zm::mutation::lives(NUMBER) ? {other} : {number})")

    def operator(self, whole: Cursor, left: Cursor, right: Cursor) -> None:
        between = self.text[left.extent.end.offset : right.extent.start.offset].decode().strip()
        other = OPERATORS.get(between)
        if other:
            first, second = self.part(left), self.part(right)
            mutated = f"{first} {other} {second}"
            self.add("operator", whole, mutated, f"(zm::mutation::lives(NUMBER) ? ({mutated}) : ({self.part(whole)}))")

    def statement(self, cursor: Cursor) -> None:
        assignment = cursor.kind == CursorKind.COMPOUND_ASSIGNMENT_OPERATOR
        if cursor.kind == CursorKind.BINARY_OPERATOR:
            pair = list(cursor.get_children())
            assignment = (
                len(pair) == 2
                and self.text[pair[0].extent.end.offset : pair[1].extent.start.offset].decode().strip() == "="
            )
        if assignment or cursor.kind == CursorKind.CALL_EXPR or cursor.kind == CursorKind.UNARY_OPERATOR:
            kind = "call" if cursor.kind == CursorKind.CALL_EXPR else "assignment"
            self.add(kind, cursor, "nothing", f"if (!zm::mutation::lives(NUMBER)) {self.part(cursor)}")

    def condition(self, cursor: Cursor) -> None:
        if cursor.kind.is_expression():
            text = self.part(cursor)
            self.add("negation", cursor, f"!({text})", f"zm::mutation::lives(NUMBER) != bool({text})")


def sources(files: Sequence[str], paths: Sequence[Path], arguments: Sequence[str]) -> List[Source]:
    """Sources that are compiled with the same words, parsed as one text: most of the time goes into what they include."""
    together = str(paths[0].parent / "together.cpp")
    text = "".join(f'#include "{path}"\n' for path in paths)
    unit = Index.create().parse(
        together,
        args=list(arguments),
        unsaved_files=[(together, text)],
        options=TranslationUnit.PARSE_DETAILED_PROCESSING_RECORD,
    )
    errors = [str(each) for each in unit.diagnostics if each.severity >= 3]
    if not errors:
        return [Source(file, path, unit) for file, path in zip(files, paths)]
    if len(files) == 1:
        raise SystemExit(f"{files[0]}: {errors[0]}")
    return [sources([file], [path], arguments)[0] for file, path in zip(files, paths)]


def choose(sources: Sequence[Source], wanted: int, seed: int) -> List[Mutant]:
    """So many at random, none within another; as many of a kind as the code has.

    Each has its place in the draw by its name: a change of the code leaves the others' places as they were.
    """
    everything = [each for source in sources for each in source.found]
    everything.sort(key=lambda each: hashlib.sha256(f"{seed} {each.name}".encode()).digest())
    taken: Dict[str, List[Mutant]] = {}
    chosen: List[Mutant] = []
    for each in everything:
        others = taken.setdefault(each.file, [])
        if len(chosen) < wanted and not any(other.start < each.end and each.start < other.end for other in others):
            others.append(each)
            chosen.append(each)
    return sorted(chosen, key=lambda each: (each.file, each.start))


def mutated(text: bytes, mutants: Sequence[Tuple[int, Mutant]]) -> bytes:
    """The source with these numbered mutants, each line where it was."""
    for number, each in sorted(mutants, key=lambda pair: -pair[1].start):
        code = each.code.replace("NUMBER", str(number)).encode()
        text = text[: each.start] + code + text[each.end :]
    # From its own folder: not every room is given the project's.
    up = "../" * mutants[0][1].file.count("/")
    return f'#include "{up}tests/mutation/Mutant.h"\n#line 1\n'.encode() + text


def kinds(mutants: Sequence[Mutant]) -> Iterator[str]:
    for kind in sorted({each.kind for each in mutants}):
        yield f"{sum(each.kind == kind for each in mutants)} {kind}"
