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

from . import _library as lib
from ._amounts import why_no_amount
from ._frames import need
from ._job import STATUS, Done, Job, compute_part, digest, file_name, written
from ._law import Law
from ._parts import File, Part, files, open_file, parts
from ._table import Task


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
        name: Task(outputs, law, launch, threads=1, keep=keep if place == 0 else (), status=STATUS)
        for place, (name, law) in enumerate(laws.items())
    }


def _opened(inputs: Sequence[str], keep: str | None) -> list[File]:
    """The files with the columns that are read. All have the same; those that pass through are of the same types."""
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
        population.append(file)
        first, types, others = population[0], population[0].schema(), file.schema()
        if set(file.columns) != set(first.columns):
            odd = ", ".join(sorted(set(file.columns) ^ set(first.columns)))
            raise lib.BadValue(f"{path} has not the columns of {first.path}: {odd}")
        for name in kept:
            if others.field(name).type != types.field(name).type:
                raise lib.BadValue(
                    f"{path}: {name} is {others.field(name).type}, and {types.field(name).type} in {first.path}"
                )
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


@dataclass(frozen=True)
class Plan:
    """What is to be computed: the same for the same command, whatever the workers."""

    given: argparse.Namespace
    laws: dict[str, Law | None]
    population: list[File]
    job: Job
    parts: list[Part]

    def changes(self) -> dict[str, dict[str, float]]:
        """What each law changes."""
        return {name: law.changes() if law else {} for name, law in self.laws.items()}

    def key(self, number: int) -> str:
        """What a part depends on: its file holds it, and a file with another one is of another computation."""
        part, given = self.parts[number], self.given
        settings = [version(), given.outputs, given.launch, self.changes(), part.file.kept, part.file.columns]
        source = [part.file.path, part.file.size, part.file.modified, part.start, part.end]
        return hashlib.sha256(json.dumps([settings, source]).encode()).hexdigest()


def _plan(given: argparse.Namespace) -> Plan:
    laws = _laws(given.law)
    population = _opened(given.inputs, given.keep)
    return Plan(given, laws, population, _checked(population, laws, given), parts(population))


def _begun(plan: Plan) -> dict[int, Done]:
    """The parts that an earlier run wrote. The folder is made when there is none."""
    folder = Path(plan.job.folder)
    folder.mkdir(parents=True, exist_ok=True)
    known = {file_name(number) for number in range(len(plan.parts))}
    for path in folder.glob("part-*.parquet"):
        if path.name not in known:
            raise lib.BadValue(f"{path} is of another computation; name another folder")
    found = {number: written(plan.job.folder, number, plan.key(number)) for number in range(len(plan.parts))}
    return {number: done for number, done in found.items() if done is not None}


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


class _Stopped(Exception):
    """Not all parts are written."""

    def __init__(self, why: str, done: int, whole: int) -> None:
        super().__init__(f"{why}\n{done} of {whole} parts are written and stay: the same command goes on from there")


def _bar(plan: Plan, done: dict[int, Done]) -> Any:
    """Rows done, rows a second, time left; on a terminal, or when asked for."""
    given = plan.given
    return need("tqdm", "dask").tqdm(
        total=sum(part.rows for part in plan.parts),
        initial=sum(plan.parts[number].rows for number in done),
        unit=" rows",
        unit_scale=True,
        mininterval=10 if given.progress and not sys.stderr.isatty() else 0.2,
        disable=True if given.quiet else False if given.progress else None,
    )


def _compute(plan: Plan, done: dict[int, Done]) -> dict[str, str]:
    """Hands out the parts that are not done, and the files of the population to be hashed; gives the hashes."""
    missing = [number for number in range(len(plan.parts)) if number not in done]
    digests: dict[str, str] = {}
    with _client(plan.given, len(missing)) as client, _bar(plan, done) as bar:
        submitted = {
            client.submit(compute_part, plan.job, number, plan.parts[number], plan.key(number), pure=False): number
            for number in missing
        }
        hashed = {client.submit(digest, file.path, pure=False): file.path for file in plan.population}
        for future in need("distributed").as_completed([*submitted, *hashed]):
            if future in hashed:
                digests[hashed[future]] = future.result()
                continue
            number = submitted[future]
            error = future.exception()
            if error is not None:
                client.cancel([*submitted, *hashed])
                raise _Stopped(_why(error, plan.parts[number]), len(done), len(plan.parts))
            done[number] = future.result()
            future.release()
            bar.update(plan.parts[number].rows)
    return digests


def _manifest(plan: Plan, done: list[Done], digests: dict[str, str]) -> dict[str, Any]:
    """What there is, and what it was made of."""
    rows = dict.fromkeys((file.path for file in plan.population), 0)
    for part, one in zip(plan.parts, done, strict=True):
        rows[part.file.path] += one.rows
    return {
        "kvcalcul": version(),
        "written": datetime.datetime.now(datetime.timezone.utc).isoformat(timespec="seconds"),
        "outputs": plan.given.outputs.split(","),
        "launch": plan.given.launch,
        "laws": {name or "law": changes for name, changes in plan.changes().items()},
        "rows": sum(one.rows for one in done),
        "refused": sum(one.refused for one in done),
        "inputs": [{"path": path, "rows": count, "sha256": digests[path]} for path, count in rows.items()],
        "parts": [
            {
                "file": file_name(one.number),
                "input": part.file.path,
                "rows": one.rows,
                "refused": one.refused,
                "bytes": one.size,
                "sha256": one.digest,
            }
            for part, one in zip(plan.parts, done, strict=True)
        ],
    }


def _finish(plan: Plan, manifest: dict[str, Any]) -> None:
    """Writes the manifest, and clears away what workers that died left."""
    folder = Path(plan.job.folder)
    for part in manifest["parts"]:
        if not (folder / part["file"]).exists():
            raise lib.Error(f"{part['file']} was written by a worker, and is not in {folder} here: not shared?")
    aside = folder / f"._manifest.{uuid.uuid4().hex}"
    aside.write_text(json.dumps(manifest, indent=1, ensure_ascii=False) + "\n", encoding="utf-8")
    os.replace(aside, folder / "_manifest.json")
    for left in folder.glob(".part-*"):
        left.unlink(missing_ok=True)


def _tell_refused(plan: Plan, done: list[Done]) -> None:
    """The first rows of each part that could not be computed, counted in their file from 1."""
    before = dict.fromkeys((file.path for file in plan.population), 0)
    for part, one in zip(plan.parts, done, strict=True):
        for row, why in one.first:
            print(f"{part.file.path}, row {before[part.file.path] + row + 1}: {why}", file=sys.stderr)
        before[part.file.path] += one.rows


def _run(given: argparse.Namespace) -> int:
    plan = _plan(given)
    done = _begun(plan)
    skipped = len(done)
    digests = _compute(plan, done)
    ordered = [done[number] for number in range(len(plan.parts))]
    manifest = _manifest(plan, ordered, digests)
    _finish(plan, manifest)
    _tell_refused(plan, ordered)
    refused: int = manifest["refused"]
    if not given.quiet:
        told = [f"{manifest['rows']} rows, {len(ordered)} parts"]
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
    except (lib.Error, pa.ArrowException, _Stopped, ImportError, OSError) as error:
        print(f"kvcalcul-population: {error}", file=sys.stderr)
        return 2
