"""The catalogue of a disc: what the application reads from it, and the file that it is read from."""

from __future__ import annotations

import sqlite3
from typing import List, NamedTuple, Optional

MUSIC, VIDEO, PHOTO = 1, 2, 3
FOLDER = 4  # of a list's row, never of the catalogue


class File(NamedTuple):
    number: int
    folder: int
    kind: int
    name: str


class Folder(NamedTuple):
    number: int
    parent: int
    name: str
    kind: int
    folders: int
    files: int


class Row(NamedTuple):
    """One row of a list."""

    number: int
    folder: int
    kind: int
    name: str


class Catalogue:
    """Files and folders in the order in which they lie in the file."""

    def __init__(self, files: List[File], folders: List[Folder]) -> None:
        self.files = files
        self.folders = folders

    def write(self, path: str) -> None:
        """Makes the file anew; who has the old one open goes on reading from it."""
        database = sqlite3.connect(path)
        database.executescript(
            "drop table if exists files; drop table if exists folders;"
            "create table files (fid integer, folderid integer, ftype integer, filename text);"
            "create table folders (folderid integer, parentid integer, foldername text, ftype integer,"
            " foldercount integer, filecount integer);"
        )
        database.executemany("insert into files values (?,?,?,?)", self.files)
        database.executemany("insert into folders values (?,?,?,?,?,?)", self.folders)
        database.commit()
        database.close()

    def all_of(self, kind: int) -> List[Row]:
        """The files of a kind that have a name, by folder and number."""
        rows = [Row(*each) for each in self.files if each.kind == kind and each.name]
        return sorted(rows, key=lambda row: (row.folder, row.number))

    def tracks(self, kind: int) -> List[Row]:
        """The same by number alone."""
        return sorted((Row(*each) for each in self.files if each.kind == kind and each.name), key=lambda row: row.number)

    def inside(self, kind: int, folder: int) -> List[Row]:
        rows = [Row(*each) for each in self.files if each.kind == kind and each.folder == folder and each.name]
        return sorted(rows, key=lambda row: row.number)

    def folder_rows(self, kind: int) -> List[Row]:
        return [Row(each.number, each.parent, FOLDER, each.name) for each in self.folders if each.kind == kind]

    def matches(self, text: str) -> List[Row]:
        """The songs whose names contain a text without wild cards, in whatever letters."""
        return [row for row in self.all_of(MUSIC) if text.lower() in row.name.lower()]

    def name(self, kind: int, number: int, folder: int) -> str:
        """Of a file; empty if there is none of that number in that folder."""
        for each in self.files:
            if (each.kind, each.number, each.folder) == (kind, number, folder):
                return each.name
        return ""

    def folder(self, kind: int, number: int) -> Optional[Folder]:
        for each in self.folders:
            if (each.kind, each.number) == (kind, number):
                return each
        return None
