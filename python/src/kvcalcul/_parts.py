"""The files of a population, and the parts that they are computed by."""

from __future__ import annotations

import csv
import decimal
import io
import re
from collections.abc import Iterator, Sequence
from dataclasses import dataclass, replace
from pathlib import Path
from typing import Any

import pyarrow as pa
import pyarrow.compute as pc
import pyarrow.csv
import pyarrow.parquet as pq

from . import _library as lib
from ._amounts import whole

ROWS = 100_000  # a second or so of computation: what it costs to hand a part out is nothing beside it
_MOST_PARTS = 2000
_BLOCK = 4 << 20
_LONGEST_RECORD = 16 << 20
_NUMBER = re.compile(r"[+-]?\d+(\.\d*)?", re.ASCII)
_SUFFIXES = {".parquet": "parquet", ".pq": "parquet", ".csv": "csv", ".tsv": "csv", ".txt": "csv"}


@dataclass(frozen=True)
class File:
    """A file of the population: what it is, its columns, those that are read, those of them that pass through."""

    path: str
    kind: str
    size: int
    modified: int
    names: tuple[str, ...]
    separator: str = ""
    columns: tuple[str, ...] = ()
    kept: tuple[str, ...] = ()

    def schema(self) -> Any:
        """The columns that are read, and their types."""
        if self.kind == "csv":
            return pa.schema([(name, pa.string() if name in self.kept else pa.int32()) for name in self.columns])
        whole_schema = pq.read_schema(self.path)
        return pa.schema([whole_schema.field(name) for name in self.columns])


def open_file(path: Path) -> File:
    """What a file is, from its name and header. BadValue names it."""
    kind = _SUFFIXES.get(path.suffix.lower())
    if kind is None:
        raise lib.BadValue(f"{path}: neither .parquet nor .csv")
    about = path.stat()
    separator = ""
    if kind == "parquet":
        try:
            names = list(pq.read_schema(path).names)
        except pa.ArrowInvalid as error:
            raise lib.BadValue(f"{path}: {error}") from None
    else:
        with open(path, "rb") as file:
            header = _without_mark(file.readline(_LONGEST_RECORD)).decode(errors="replace").rstrip("\r\n")
        separator = next((letter for letter in header if letter in ",;\t"), ",")
        names = next(csv.reader([header], delimiter=separator), [])
    for name in names:
        if names.count(name) > 1:
            raise lib.BadValue(f"{path}: two columns are named {name}")
    return File(str(path.resolve()), kind, about.st_size, about.st_mtime_ns, tuple(names), separator)


def files(inputs: Sequence[str]) -> list[Path]:
    """Files, and those of folders, in the order given."""
    found: list[Path] = []
    for place in map(Path, inputs):
        if place.is_dir():
            inside = sorted(f for f in place.iterdir() if f.suffix.lower() in _SUFFIXES and f.name[0] not in "._")
            if not inside:
                raise lib.BadValue(f"{place}: no .parquet or .csv file in this folder")
            found += inside
        elif place.is_file():
            found.append(place)
        else:
            raise lib.BadValue(f"{place}: no such file")
    return found


@dataclass(frozen=True)
class Part:
    """Some consecutive rows of a file: row groups of a Parquet file, a range of bytes of a CSV file."""

    file: File
    rows: int  # of a CSV file, its lines
    start: int
    end: int

    def tables(self) -> Iterator[tuple[Any, dict[int, str]]]:
        """The columns that are read, some 100 000 rows at a time, with the rows that can't be computed, and why."""
        if not self.rows:
            yield self.file.schema().empty_table(), {}
            return
        if self.file.kind == "csv":
            yield self._csv()
            return
        with pq.ParquetFile(self.file.path) as file:
            columns, groups = list(self.file.columns), list(range(self.start, self.end))
            for batch in file.iter_batches(ROWS, row_groups=groups, columns=columns):
                yield pa.Table.from_batches([batch]).select(columns), {}

    def _csv(self) -> tuple[Any, dict[int, str]]:
        with open(self.file.path, "rb") as file:
            file.seek(self.start)
            data = file.read(self.end - self.start)
        names = list(self.file.names)
        odd: list[Any] = []  # records with a field too many or too few, which Arrow would leave out

        def note(record: Any) -> str:
            odd.append(record)
            return "skip"

        try:
            table = pa.csv.read_csv(
                io.BytesIO(data),
                pa.csv.ReadOptions(column_names=names, use_threads=False),
                pa.csv.ParseOptions(delimiter=self.file.separator, newlines_in_values=True, invalid_row_handler=note),
                pa.csv.ConvertOptions(
                    column_types=dict.fromkeys(names, pa.string()), include_columns=list(self.file.columns)
                ),
            )
        except pa.ArrowInvalid:  # nothing but empty lines, no UTF-8, a record longer than its blocks
            table = None
        refused: dict[int, str] = {}
        if odd or table is None:
            table, refused = self._records(data.decode(errors="replace"))
        columns = {}
        for name in self.file.columns:
            texts = table.column(name)
            columns[name] = texts if name in self.file.kept else _amounts(name, texts, refused)
        return pa.table(columns), refused

    def _records(self, text: str) -> tuple[Any, dict[int, str]]:
        """The same, record by record: those that are not read whole are refused, not left out."""
        names, refused = self.file.names, {}
        columns: list[list[str]] = [[] for _ in names]
        csv.field_size_limit(_LONGEST_RECORD)
        records = csv.reader(io.StringIO(text, newline=""), delimiter=self.file.separator)
        for row, fields in enumerate(record for record in records if record):
            if len(fields) != len(names):
                refused[row] = f"{len(fields)} fields where the header has {len(names)}"
                fields = [*fields, *[""] * len(names)]
            elif any("\ufffd" in field for field in fields):
                refused[row] = "not UTF-8"
            for values, field in zip(columns, fields, strict=False):
                values.append(field)
        table = pa.table({name: pa.array(values, pa.string()) for name, values in zip(names, columns, strict=True)})
        return table.select(list(self.file.columns)), refused


def _amounts(name: str, texts: Any, refused: dict[int, str]) -> Any:
    """A column of texts as amounts; what is none is refused."""
    texts = texts.combine_chunks()
    texts = pc.if_else(pc.equal(texts, ""), pa.scalar(None, pa.string()), texts)
    if not pc.any(pc.match_substring(texts, "x", ignore_case=True)).as_py():  # Arrow would read 0x10 as a number
        try:
            return texts.cast(pa.int32())
        except pa.ArrowInvalid:
            pass
    amounts: list[int | None] = []
    for row, text in enumerate(texts.to_pylist()):
        amount = None
        if text is not None:
            try:
                amount = whole(name, decimal.Decimal(text) if _NUMBER.fullmatch(text) else text)
            except lib.BadValue as error:
                refused.setdefault(row, str(error))
        amounts.append(amount)
    return pa.array(amounts, pa.int32())


def parts(population: Sequence[File]) -> list[Part]:
    """The population in parts of at least some 100 000 rows, the same ones for any number of workers."""
    pieces: list[Part] = []
    for file in population:
        found = list(_groups(file) if file.kind == "parquet" else _blocks(file))
        pieces += found or [Part(file, 0, 0, 0)]
    least = max(ROWS, sum(piece.rows for piece in pieces) // _MOST_PARTS)
    joined: list[Part] = []
    for piece in pieces:
        last = joined[-1] if joined else None
        if last is not None and last.file is piece.file and last.rows < least:
            joined[-1] = replace(last, rows=last.rows + piece.rows, end=piece.end)
        else:
            joined.append(piece)
    return joined


def _groups(file: File) -> Iterator[Part]:
    with pq.ParquetFile(file.path) as opened:
        about = opened.metadata
        for group in range(about.num_row_groups):
            yield Part(file, about.row_group(group).num_rows, group, group + 1)


def _blocks(file: File) -> Iterator[Part]:
    """Whole records of a CSV file, some megabytes at a time."""
    separator = re.escape(file.separator.encode())
    quoted = re.compile(rb'(?:\A|(?<=[\n%s]))"[^"]*(?:""[^"]*)*(?:"(?!")|\Z)' % separator)
    with open(file.path, "rb") as opened:
        place, rest = len(opened.readline(_LONGEST_RECORD)), b""
        while True:
            block = opened.read(_BLOCK)
            data = rest + block
            if not data:
                return
            plain = quoted.sub(lambda field: b"x" * len(field.group()), data) if b'"' in data else data
            size = plain.rfind(b"\n") + 1 if block else len(data)
            if size:
                yield Part(file, plain.count(b"\n", 0, size) + (plain[size - 1] != 10), place, place + size)
            place, rest = place + size, data[size:]
            if len(rest) > _LONGEST_RECORD:
                raise lib.BadValue(
                    f"{file.path}: a record of more than 16 MB after byte {place}: a quote never closed?"
                )


def _without_mark(text: bytes) -> bytes:
    return text.removeprefix(b"\xef\xbb\xbf")
