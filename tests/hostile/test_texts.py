"""Titles that break programs: each is shown as it stands, and what it would do elsewhere does not happen."""

from __future__ import annotations

import shutil
import subprocess
import time
from pathlib import Path
from typing import Iterator, List

import pytest

from platen_bench import Bench

TEXTS = [
    # What is taken for a value, a name or nothing.
    *("undefined", "null", "NULL", "nil", "None", "true", "false", "NaN", "Infinity", "-1", "0", "1/0", "0x0", "1e1000"),
    *("2147483648", "-9223372036854775809", "1,000.00", "COM1", "CON", "aux", "__proto__", "constructor", "hasOwnProperty"),
    # Commands of databases, shells, pages, printf and the unit's own messages.
    *("'; DROP TABLE audio; --", "1' OR '1'='1", '"; SELECT 1; "', "%s%s%s%n%p%d", "%", "%%", "${HOME}", "$(reboot)"),
    *("`reboot`", "; ls", "| cat", "&& exit", "<script>alert(1)</script>", "<b>bold</b>", "&lt;&amp;&#65;", "]]>", "{{7*7}}"),
    *("@playing", "-ID3", "[n]ID3:json:{}", "a::b", '{"title":"x"}', "\\", "\\n\\t\\x41", '"', "''", "*", "?", "~", "#", "!"),
    # Writing of every kind.
    *("Ω≈ç√∫˜µ≤≥÷", "田中さんにあげて下さい", "사회과학원", "الكل في المجمو عة", "הָיְתָהtestالصفحات", "Zażółć gęślą jaźń"),
    *("ﬁ ﬂ ǆ ſ ß İı", "ก็่้๊๋์ กำ", "देवनागरी क्षि", "👩‍👩‍👧‍👦 👍🏽 🇨🇳", "🏴󠁧󠁢󠁳󠁣󠁴󠁿", "𝕬𝖇𝖈 𝟜𝟚", "ÅÅÅ", "Ạ̀́̂̃̄̅̆̇̈̉̊̋̌̍̎̏"),
    *("\u202eright to left\u202c", "a\u200bb\u200cc\u200dd\ufeffe", "\u2066isolate\u2069", "soft\u00adhyphen", "\ufffd\uffff"),
    *("tab\u00a0no break", "\u3000wide blank", "﷽﷽﷽", "﴾x﴿", "①②③ ㍿ ㎏", "\U0010fffd", "\ue000 private", "e\u0301\u0301\u0301\u0301"),
]


@pytest.fixture(scope="module")
def sound(tmp_path_factory: pytest.TempPathFactory) -> Path:
    path = tmp_path_factory.mktemp("sound") / "silence.flac"
    words = ["ffmpeg", "-v", "error", "-f", "lavfi", "-i", "anullsrc=r=8000:cl=mono", "-t", "90", str(path)]
    subprocess.run(words, check=True)
    return path


def played(unit: Bench, expected: List[str]) -> None:
    for place, title in enumerate(expected, 1):
        unit.expect(page="music", title=title, position=f"{place}/{len(expected)}", within=40)
        if place < len(expected):
            unit.key("next")


def shown(unit: Bench, expected: List[str]) -> None:
    """The list says the same, and every part of it can be drawn."""
    unit.tap("List")
    unit.expect(page="list", within=20)
    unit.expect(rows=[f"{place}  {title}" for place, title in enumerate(expected, 1)], within=40)
    for _ in range(0, len(expected), 4):
        assert unit.picture().startswith(b"\x89PNG")
        unit.drag(400, 300, 400, 60)


def test_titles_in_tags_stay_what_they_are(sound: Path, tmp_path: Path) -> None:
    for place, text in enumerate(TEXTS):
        words = ["ffmpeg", "-v", "error", "-i", str(sound), "-c", "copy", "-metadata", f"title={text}"]
        subprocess.run([*words, str(tmp_path / f"{place:03}.flac")], check=True)
    expected = TEXTS
    with Bench(disc=tmp_path, launcher="active") as unit:
        played(unit, expected)
        shown(unit, expected)
        assert unit.errors == ""


def test_names_of_files_stay_what_they_are(sound: Path, tmp_path: Path) -> None:
    # In their order, and so that the number is no track's.
    names = [f"t{place:03} {text}" for place, text in enumerate(TEXTS) if "/" not in text]
    for name in names:
        shutil.copy(sound, tmp_path / f"{name}.flac")
    with Bench(disc=tmp_path, launcher="active") as unit:
        played(unit, names)
        assert unit.errors == ""
