"""``kvcalcul-population``: the figures of a whole population, by parts, on the processors of a machine or a cluster."""

from __future__ import annotations

import argparse
import contextlib
import datetime
import errno
import hashlib
import json
import logging
import os
import signal
import sys
import threading
import uuid
from collections.abc import Iterator, Sequence
from dataclasses import dataclass, replace
from pathlib import Path
from typing import Any

import pyarrow as pa
import pyarrow.parquet as pq

from . import _library as lib
from ._amounts import why_no_amount
from ._frames import need
from ._law import Law
from ._parts import File, Part, files, open_file, parts
from ._table import Task

_KEY, _REFUSED, _STATUS = b"kvcalcul.part", b"kvcalcul.refused", "status"
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
                found, status = figures.drop_columns([_STATUS]), figures.column(_STATUS)
                if law:
                    found = found.rename_columns([_named(name, law, task) for name in found.column_names])
            else:
                for name in task.outputs:
                    found = found.append_column(_named(name, law, task), figures.column(name))
        return found.append_column(_STATUS, status)


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


def _file_name(number: int) -> str:
    return f"part-{number:05}.parquet"


def compute_part(job: Job, number: int, part: Part, key: str) -> Done:
    """Computes and writes a part: aside, then under its name, which it has only when it is whole."""
    place = Path(job.folder) / _file_name(number)
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
                wrong = [(rows + row, why) for row, why in enumerate(columns.column(_STATUS).to_pylist()) if why]
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
    place = Path(folder) / _file_name(number)
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


def version() -> str:
    """That of the library, where this is called."""
    return lib.text(lib.kv.kv_version())


def _arguments(arguments: Sequence[str] | None) -> argparse.Namespace:
    parser = argparse.ArgumentParser(
        prog="kvcalcul-population",
        description="Computes the figures of a population, Parquet or CSV, into a folder of Parquet files. "
        "The same command begun again after a stop goes on from what is written.",
        epilog="Status 1: some rows could not be computed, as their status says. Status 2: not all is done.",
    )
    add = parser.add_argument
    add("inputs", nargs="+", metavar="IN", help="files, or folders of them; columns as for kvcalcul table")
    add("-o", dest="folder", required=True, metavar="FOLDER", help="where the result goes; made when there is none")
    add("--outputs", required=True, help="figures, separated by commas: TOT_PAYER,CO_19.c2,net")
    add("--keep", help="columns that pass through, separated by commas (default: all that are no box)")
    add(
        "--law",
        action="append",
        default=[],
        metavar="FILE",
        help="a reform, or year for the law of the year; several: figures are named TOT_PAYER@FILE without its suffix",
    )
    add("--launch", default="normal", choices=list(lib.LAUNCHES))
    add(
        "--workers",
        type=int,
        default=os.cpu_count() or 1,
        metavar="N",
        help="processes here (default: one a processor)",
    )
    add(
        "--scheduler",
        metavar="ADDRESS",
        help="a Dask scheduler instead, tcp://host:8786; its workers see IN and FOLDER",
    )
    add("--progress", action="store_true", help="how far it is even where standard error is no terminal")
    add("--quiet", action="store_true", help="nothing but errors")
    add("--version", action="version", version=f"kvcalcul {version()}")
    given = parser.parse_args(arguments)
    if given.workers < 1:
        parser.error("--workers is at least 1")
    return given


def _laws(names: Sequence[str]) -> dict[str, Law | None]:
    laws: dict[str, Law | None] = {}
    for name in names or ["year"]:
        law = Path(name).stem
        if law in laws:
            raise lib.BadValue(f"--law: {law} stands twice")
        laws[law] = None if name == "year" else Law.read(name)
    return laws if len(laws) > 1 else {"": next(iter(laws.values()))}


def _tasks(laws: dict[str, Law | None], outputs: list[str], launch: str, keep: tuple[str, ...]) -> dict[str, Task]:
    """The first law's task hands on the columns that pass through."""
    return {
        name: Task(outputs, law, launch, threads=1, keep=keep if place == 0 else (), status=_STATUS)
        for place, (name, law) in enumerate(laws.items())
    }


def _opened(inputs: Sequence[str], keep: str | None) -> list[File]:
    """The files with the columns that are read. All have the same, of the same types."""
    population: list[File] = []
    for path in files(inputs):
        file = open_file(path)
        boxes = [name for name in file.names if not why_no_amount(name)]
        kept = [name for name in file.names if name not in boxes] if keep is None else keep.split(",") if keep else []
        for name in kept:
            if name not in file.names:
                raise lib.UnknownName(f'{path}: --keep: no column is named "{name}"')
        chosen = {name for name in boxes if name not in kept} | set(kept)
        file = replace(file, columns=tuple(name for name in file.names if name in chosen), kept=tuple(kept))
        if population and file.schema() != population[0].schema():
            raise lib.BadValue(f"{path} has not the columns of {population[0].path}, or not of their types")
        population.append(file)
    return population


def _checked(population: Sequence[File], laws: dict[str, Law | None], given: argparse.Namespace) -> Job:
    """What to compute; errors in names are found here, before anything is."""
    first, outputs = population[0], given.outputs.split(",")
    job = Job(str(Path(given.folder).resolve()), _tasks(laws, outputs, given.launch, first.kept))
    try:
        if given.keep is None:  # a column that looks like a box and is none must be meant
            Task(outputs)(pa.schema([(name, pa.int32()) for name in first.names]).empty_table())
        job.columns(first.schema().empty_table())
    except lib.Error as error:
        raise type(error)(f"{first.path}: {error}") from None
    return job


def _key(part: Part, given: argparse.Namespace, laws: dict[str, Law | None]) -> str:
    """What a part depends on."""
    changes = {name: law.changes() if law else {} for name, law in laws.items()}
    settings = [version(), given.outputs, given.launch, changes, part.file.kept, part.file.columns]
    source = [part.file.path, part.file.size, part.file.modified, part.start, part.end]
    return hashlib.sha256(json.dumps([settings, source]).encode()).hexdigest()


@contextlib.contextmanager
def _without_ctrl_c() -> Iterator[None]:
    """Processes started within are deaf to Ctrl-C, which a terminal sends to all: this one stops them."""
    if threading.current_thread() is not threading.main_thread():
        yield
        return
    before = signal.signal(signal.SIGINT, signal.SIG_IGN)
    try:
        yield
    finally:
        signal.signal(signal.SIGINT, before)


@contextlib.contextmanager
def _client(given: argparse.Namespace, tasks: int) -> Iterator[Any]:
    """The workers: processes of this machine, or those of a scheduler."""
    distributed = need("distributed", "dask")
    logging.getLogger("distributed").setLevel(logging.CRITICAL)
    if given.scheduler is None:
        count = max(1, min(given.workers, tasks))
        with _without_ctrl_c():
            cluster = distributed.LocalCluster(
                n_workers=count, threads_per_worker=1, dashboard_address=":0", silence_logs=logging.CRITICAL
            )
        with cluster, distributed.Client(cluster) as client:
            yield client
        return
    try:
        client = distributed.Client(given.scheduler)
    except (OSError, ValueError) as error:
        raise lib.Error(f"no scheduler answers at {given.scheduler}: {error}") from None
    with client:
        try:
            client.wait_for_workers(1, timeout=60)
            found = set(client.run(version).values())
        except Exception as error:
            raise lib.Error(f"the workers of {given.scheduler} are none, or have no kvcalcul: {error}") from None
        if found != {version()}:
            raise lib.Error(f"the workers have kvcalcul {', '.join(sorted(found))}, this machine {version()}")
        yield client


def _why(error: BaseException, part: Part) -> str:
    """What stopped a part."""
    where = f"{part.file.path}: " if part.file.path not in str(error) else ""
    if type(error).__name__ == "KilledWorker":
        return f"{where}the workers that computed its rows died, several in a row: is their memory short?"
    if isinstance(error, OSError) and error.errno in (errno.ENOSPC, errno.EDQUOT, errno.EFBIG):
        return f"the disk is full: {error}"
    return f"{where}{error}"


def _run(given: argparse.Namespace) -> int:
    laws = _laws(given.law)
    population = _opened(given.inputs, given.keep)
    job = _checked(population, laws, given)
    whole = parts(population)
    keys = [_key(part, given, laws) for part in whole]
    Path(job.folder).mkdir(parents=True, exist_ok=True)
    known = {_file_name(number) for number in range(len(whole))}
    for path in Path(job.folder).glob("part-*.parquet"):
        if path.name not in known:
            raise lib.BadValue(f"{path} is of another computation; name another folder")
    done: dict[int, Done] = {}
    for number, key in enumerate(keys):
        found = written(job.folder, number, key)
        if found is not None:
            done[number] = found
    skipped = len(done)
    bar = need("tqdm", "dask").tqdm(
        total=sum(part.rows for part in whole),
        initial=sum(whole[number].rows for number in done),
        unit=" rows",
        unit_scale=True,
        mininterval=10 if given.progress and not sys.stderr.isatty() else 0.2,
        disable=True if given.quiet else False if given.progress else None,
    )
    digests: dict[str, str] = {}
    with _client(given, len(whole) - skipped) as client, bar:
        submitted = {
            client.submit(compute_part, job, number, part, keys[number], pure=False): number
            for number, part in enumerate(whole)
            if number not in done
        }
        hashed = {client.submit(digest, file.path, pure=False): file.path for file in population}
        for future in need("distributed").as_completed([*submitted, *hashed]):
            if future in hashed:
                digests[hashed[future]] = future.result()
                continue
            number = submitted[future]
            error = future.exception()
            if error is not None:
                client.cancel([*submitted, *hashed])
                raise _Stopped(_why(error, whole[number]), len(done), len(whole))
            done[number] = future.result()
            future.release()
            bar.update(whole[number].rows)
    return _finish(given, job, whole, [done[number] for number in range(len(whole))], laws, digests, skipped)


class _Stopped(Exception):
    """Not all parts are written."""

    def __init__(self, why: str, done: int, whole: int) -> None:
        super().__init__(f"{why}\n{done} of {whole} parts are written and stay: the same command goes on from there")


def _finish(
    given: argparse.Namespace,
    job: Job,
    whole: Sequence[Part],
    done: Sequence[Done],
    laws: dict[str, Law | None],
    digests: dict[str, str],
    skipped: int,
) -> int:
    """Writes the manifest, and tells what there is."""
    folder = Path(job.folder)
    for one in done:
        if not (folder / _file_name(one.number)).exists():
            raise lib.Error(
                f"{_file_name(one.number)} was written by a worker, and is not in {folder} here: not shared?"
            )
    rows: dict[str, int] = {}
    for part, one in zip(whole, done, strict=True):
        for row, why in one.first:
            print(f"{part.file.path}, row {rows.get(part.file.path, 0) + row + 1}: {why}", file=sys.stderr)
        rows[part.file.path] = rows.get(part.file.path, 0) + one.rows
    refused = sum(one.refused for one in done)
    manifest = {
        "kvcalcul": version(),
        "written": datetime.datetime.now(datetime.timezone.utc).isoformat(timespec="seconds"),
        "outputs": given.outputs.split(","),
        "launch": given.launch,
        "laws": {name or "law": law.changes() if law else {} for name, law in laws.items()},
        "rows": sum(one.rows for one in done),
        "refused": refused,
        "inputs": [{"path": path, "rows": count, "sha256": digests[path]} for path, count in rows.items()],
        "parts": [
            {
                "file": _file_name(one.number),
                "input": part.file.path,
                "rows": one.rows,
                "refused": one.refused,
                "bytes": one.size,
                "sha256": one.digest,
            }
            for part, one in zip(whole, done, strict=True)
        ],
    }
    aside = folder / f"._manifest.{uuid.uuid4().hex}"
    aside.write_text(json.dumps(manifest, indent=1, ensure_ascii=False) + "\n", encoding="utf-8")
    os.replace(aside, folder / "_manifest.json")
    for left in folder.glob(".part-*"):  # of workers that died
        left.unlink(missing_ok=True)
    if not given.quiet:
        told = [f"{manifest['rows']} rows, {len(done)} parts"]
        told += [f"{skipped} of them written before"] if skipped else []
        told += [f"{refused} rows not computed"] if refused else []
        print(", ".join(told), file=sys.stderr)
    return 1 if refused else 0


def main(arguments: Sequence[str] | None = None) -> int:
    """The command. 0: all is computed; 1: all but some rows; 2: an error, told on standard error; 130: Ctrl-C."""
    given = _arguments(arguments)
    try:
        return _run(given)
    except KeyboardInterrupt:
        print("stopped: what is written stays, and the same command goes on from there", file=sys.stderr)
        return 130
    except (lib.Error, _Stopped, ImportError, OSError) as error:
        print(f"kvcalcul-population: {error}", file=sys.stderr)
        return 2
