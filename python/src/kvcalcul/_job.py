"""What a worker does with a part of a population: its figures, in a file that is whole or is not there."""

from __future__ import annotations

import contextlib
import hashlib
import os
import sys
import uuid
from dataclasses import dataclass
from pathlib import Path
from typing import Any

import pyarrow as pa
import pyarrow.parquet as pq

from . import _library as lib
from ._parts import Part
from ._table import Task

STATUS = "status"
_KEY, _REFUSED = b"kvcalcul.part", b"kvcalcul.refused"
_SHOWN = 10  # rows that could not be computed and are told on standard error; the others are in the result


@dataclass(frozen=True)
class Job:
    """What every part is computed with: the laws by name ("" when there is one), and where the result goes."""

    folder: str
    tasks: dict[str, Task]

    def columns(self, table: Any, refused: dict[int, str] | None = None) -> Any:
        """The columns that pass through, the figures under each law, the status."""
        found: Any = None
        for law, task in self.tasks.items():
            figures = task(table, refused)
            if found is None:
                found, status = figures.drop_columns([STATUS]), figures.column(STATUS)
                if law:
                    found = found.rename_columns([_named(name, law, task) for name in found.column_names])
            else:
                for name in task.outputs:
                    found = found.append_column(_named(name, law, task), figures.column(name))
        return found.append_column(STATUS, status)


def _named(name: str, law: str, task: Task) -> str:
    return f"{name}@{law}" if name in task.outputs else name


@dataclass(frozen=True)
class Done:
    """A part that is written."""

    number: int
    rows: int
    refused: int
    size: int
    digest: str
    first: tuple[tuple[int, str], ...] = ()  # rows refused, from 0, and why


def file_name(number: int) -> str:
    return f"part-{number:05}.parquet"


def compute_part(job: Job, number: int, part: Part, key: str) -> Done:
    """Computes and writes a part: aside, then under its name, which it has only when it is whole."""
    place = Path(job.folder) / file_name(number)
    aside = place.with_name(f".{place.name}.{uuid.uuid4().hex}")
    rows, count = 0, 0
    first: list[tuple[int, str]] = []
    try:
        with open(aside, "wb") as file:
            writer: Any = None
            for table, odd in part.tables():
                columns = job.columns(table, odd)
                writer = writer or pq.ParquetWriter(file, columns.schema)
                writer.write_table(columns)
                wrong = [(rows + row, why) for row, why in enumerate(columns.column(STATUS).to_pylist()) if why]
                rows, count, first = rows + columns.num_rows, count + len(wrong), (first + wrong)[:_SHOWN]
            writer.add_key_value_metadata({_KEY: key, _REFUSED: str(count)})
            writer.close()
            file.flush()
            os.fsync(file.fileno())
        done = Done(number, rows, count, aside.stat().st_size, digest(aside), tuple(first))
        os.replace(aside, place)
        return done
    finally:
        with contextlib.suppress(OSError):
            aside.unlink(missing_ok=True)


def written(folder: str, number: int, key: str) -> Done | None:
    """A part that an earlier run wrote; None when there is none. BadValue when it is of another computation."""
    place = Path(folder) / file_name(number)
    if not place.exists():
        return None
    try:
        about = pq.read_metadata(place)
    except pa.ArrowInvalid as error:
        raise lib.BadValue(f"{place} is no whole part: {error}") from None
    known = about.metadata or {}
    if known.get(_KEY, b"").decode() != key:
        raise lib.BadValue(
            f"{place} is of another computation: since then the input, the outputs, the laws or kvcalcul changed; "
            "name another folder"
        )
    return Done(number, about.num_rows, int(known[_REFUSED]), place.stat().st_size, digest(place))


def digest(path: str | Path) -> str:
    """SHA-256 of a file."""
    with open(path, "rb") as file:
        return hashlib.file_digest(file, "sha256").hexdigest() if sys.version_info >= (3, 11) else _digest(file)


def _digest(file: Any) -> str:
    found = hashlib.sha256()
    while block := file.read(1 << 20):
        found.update(block)
    return found.hexdigest()
