"""Many returns: a table in, a table of the same kind out."""

from __future__ import annotations

import threading
from collections.abc import Callable, Sequence
from ctypes import byref, c_int32, sizeof
from typing import Any, TypeVar, cast

import numpy as np

from . import _library as lib
from ._amounts import Int32, column, resembles_box, why_no_amount
from ._frames import Source, need
from ._law import Law
from ._result import Launch, Period, prepare

Table = TypeVar("Table")
Progress = bool | Callable[[int, int], None]
Refused = dict[int, str]  # rows that could not be computed, and why

_DIRECT = 4096  # below so many rows the call is shorter than the thread that Ctrl-C would want


def amounts_of(source: Source, others: Sequence[str] = (), refused: Refused | None = None) -> dict[str, Int32]:
    """The columns of a table that are amounts of a return, checked and converted. others: columns that are none,
    whatever their names. A row with an amount that can't be one is an error, or noted in ``refused``."""
    amounts: dict[str, Int32] = {}
    for name in source.names:
        if name in others:
            continue
        why = why_no_amount(name)
        if not why:

            def refuse(row: int, why: str, name: str = name) -> None:
                if refused is None:
                    raise lib.BadValue(f"column {name}, {source.where(row)}: {why}")
                refused.setdefault(row, f"{name}: {why}")

            amounts[name] = column(name, source.column(name), refuse)
        elif resembles_box(name):
            raise lib.UnknownName(f'column "{name}": {why}; a column that is no box needs another name, or to be kept')
    if not amounts:
        raise lib.BadValue("no column is a box: name them 1AJ, ti.1AW, quotient.4.1AJ, ...")
    return amounts


class Run:
    """How the returns of a table are computed."""

    def __init__(
        self,
        launch: str = "normal",
        law: Law | None = None,
        indexation: float = -1.0,
        period: Period | None = None,
        threads: int = 0,
        progress: Progress = False,
    ) -> None:
        if threads < 0:
            raise lib.BadValue(f"threads: {threads} is negative")
        self._handle = prepare(launch, law, indexation, period)
        self._threads, self._progress = threads, progress

    def check_outputs(self, outputs: Sequence[str]) -> list[str]:
        """The figures asked for; UnknownName names the nearest."""
        if isinstance(outputs, str):
            raise TypeError("outputs is a list of names")
        figures = list(outputs)
        scratch = prepare()
        scratch.check(lib.kv.kv_compute(scratch.pointer))
        value = c_int32()
        for name in figures:
            if name != "net":
                scratch.check(lib.kv.kv_read(scratch.pointer, str(name).encode(), byref(value)))
            if figures.count(name) > 1:
                raise lib.BadValue(f"outputs: {name} stands twice")
        return figures

    def compute(
        self, amounts: dict[str, Int32], rows: int, outputs: Sequence[str], refused: Refused | None = None
    ) -> dict[str, Int32]:
        """The figures of each row. ``net`` is what is paid less what is refunded. A row that the library could not
        compute is an error, or noted in ``refused``."""
        read = [name for name in outputs if name != "net"]
        if "net" in outputs:
            read += [name for name in ("S_NET_A_PAYER", "S_NET_RESTITUE") if name not in read]
        figures = {name: np.empty(rows, dtype=np.int32) for name in read}
        if rows:
            statuses = None if refused is None else np.zeros(rows, dtype=np.int32)
            status = self._compute_columns(amounts, rows, figures, statuses)
            if refused is None or statuses is None or not statuses.any():
                self._handle.check(status)
            else:
                for row in np.flatnonzero(statuses):
                    refused.setdefault(int(row), lib.text(lib.kv.kv_status_text(int(statuses[row]))))
        if "net" in outputs:
            figures["net"] = figures["S_NET_A_PAYER"] - figures["S_NET_RESTITUE"]
        return {name: figures[name] for name in outputs}

    def _compute_columns(
        self, amounts: dict[str, Int32], rows: int, figures: dict[str, Int32], statuses: Int32 | None
    ) -> int:
        inputs = (lib.InputColumn * len(amounts))()
        for place, (name, values) in enumerate(amounts.items()):
            inputs[place].name, inputs[place].values = name.encode(), values.ctypes.data
        outputs = (lib.OutputColumn * len(figures))()
        for place, (name, values) in enumerate(figures.items()):
            outputs[place].name, outputs[place].values = name.encode(), values.ctypes.data
        told = _Progress(self._progress, rows)
        columns = lib.Columns(
            size=sizeof(lib.Columns),
            rows=rows,
            inputs=inputs,
            input_count=len(amounts),
            output_count=len(figures),
            outputs=outputs,
            statuses=None if statuses is None else statuses.ctypes.data,
            threads=self._threads,
            progress=told.function,
        )
        with told:
            return told.run(lambda: lib.kv.kv_compute_columns(self._handle.pointer, byref(columns)))


class _Progress:
    """Tells how far a computation is, and stops it on Ctrl-C.

    A signal reaches Python code of the main thread alone, which must not be within the library then: the computation
    has a thread of its own, and asks here from time to time whether to go on.
    """

    def __init__(self, progress: Progress, rows: int) -> None:
        self._rows, self._stop, self._done, self._bar = rows, False, 0, None
        self._told: Callable[[int, int], None] | None = None
        self._fault: BaseException | None = None
        if progress is True:
            self._bar = need("tqdm.auto", "progress").tqdm(total=rows, unit=" returns", unit_scale=True)
        elif progress is not False:
            self._told = progress
        self.function = lib.PROGRESS(self._step)

    def _step(self, done: int, rows: int, context: int | None) -> int:
        try:
            if self._bar is not None:
                self._bar.update(done - self._done)
            if self._told is not None:
                self._told(done, rows)
            self._done = done
        except BaseException as fault:  # it can't pass through the library: it is raised after it
            self._fault, self._stop = fault, True
        return int(self._stop)

    def run(self, call: Callable[[], int]) -> int:
        answers: list[int] = []
        if self._rows < _DIRECT or threading.current_thread() is not threading.main_thread():
            answers.append(call())
        else:
            thread = threading.Thread(target=lambda: answers.append(call()), name="kvcalcul", daemon=True)
            thread.start()
            try:
                while thread.is_alive():
                    thread.join(0.1)
            except BaseException:
                self._stop = True
                thread.join()
                raise
        if self._fault is not None:
            raise self._fault
        return answers[0]

    def __enter__(self) -> None:
        return None

    def __exit__(self, *_: object) -> None:
        if self._bar is not None:
            self._bar.close()


def _kept(source: Source, keep: bool | Sequence[str]) -> list[str]:
    if keep is True:
        return source.names
    kept = list(keep or ())
    for name in kept:
        if name not in source.names:
            raise lib.UnknownName(f'keep: no column is named "{name}"')
    return kept


class Task:
    """What each piece of a table is computed with, as it travels to where the piece is: another process or machine.
    ``compute_table``, ``kvcalcul.dask``, ``kvcalcul.spark`` and ``kvcalcul-population`` all call it."""

    def __init__(
        self,
        outputs: Sequence[str],
        law: Law | None = None,
        launch: str = "normal",
        indexation: float = -1.0,
        period: Period | None = None,
        threads: int = 0,
        progress: Progress = False,
        keep: bool | Sequence[str] = False,
        status: str | None = None,
    ) -> None:
        law = law.copy() if law is not None else None
        self._run = Run(launch, law, indexation, period, threads, progress)
        self._settings = (law, launch, indexation, period, threads, progress)
        self.outputs = self._run.check_outputs(outputs)
        self._keep, self._status = keep, status
        if isinstance(keep, str):
            raise TypeError("keep is True, or a list of columns")
        if status in self.outputs:
            raise lib.BadValue(f"the column {status} is the status and asked for: two columns would have its name")

    def __call__(self, table: Any, refused: Refused | None = None) -> Any:
        """The figures of a table, as a table of the same kind. refused: with a status, rows that can't be computed
        whatever their amounts."""
        source = Source(table)
        kept = _kept(source, self._keep)
        for name in kept:
            if name in self.outputs or name == self._status:
                raise lib.BadValue(f"the column {name} is kept and asked for: two columns would have its name")
        others = () if self._keep is True else kept
        if self._status is None:
            amounts = amounts_of(source, others)
            return source.like(self._run.compute(amounts, source.rows, self.outputs), kept)
        refused = dict(refused or {})
        amounts = amounts_of(source, others, refused)
        figures = self._run.compute(amounts, source.rows, self.outputs, refused)
        return source.like(_with_status(figures, source.rows, refused, self._status), kept)

    def __reduce__(self) -> tuple[Any, ...]:
        version = lib.text(lib.kv.kv_version())
        return _unpickled, (version, self.outputs, *self._settings, self._keep, self._status)


def _unpickled(version: str, *arguments: Any) -> Task:
    """A task that arrives: the figures must be those of the library that sent it."""
    here = lib.text(lib.kv.kv_version())
    if here != version:
        raise lib.Error(f"this process has kvcalcul {here}, the one that sent the work {version}: install the same")
    return Task(*arguments)


def _with_status(figures: dict[str, Int32], rows: int, refused: Refused, status: str) -> dict[str, Any]:
    """The figures without those of the rows refused, and why they were."""
    mask = np.zeros(rows, dtype=bool)
    texts = np.full(rows, "", dtype=object)
    for row, why in refused.items():
        mask[row], texts[row] = True, why
    masked: dict[str, Any] = {name: np.ma.MaskedArray(values, mask) for name, values in figures.items()}
    return {**masked, status: texts}


def compute_table(
    table: Table,
    outputs: Sequence[str],
    *,
    law: Law | None = None,
    launch: Launch = "normal",
    indexation: float = -1.0,
    period: Period | None = None,
    threads: int = 0,
    progress: Progress = False,
    keep: bool | Sequence[str] = False,
    status: str | None = None,
) -> Table:
    """Computes a return for each row of a table, and gives the figures as a table of the same kind.

    table: a pandas or Polars frame, an Arrow table or record batch, an Arrow stream (a ``RecordBatchReader`` is
    computed batch by batch as it is read), anything with the Arrow PyCapsule interface (a DuckDB relation: the figures
    are an Arrow table), or a dict of arrays. Columns are named by boxes (``1AJ``), companions (``ti.1AW``) and
    exceptional amounts (``quotient.4.1AJ``); the others are left out unless they are kept, and a name that looks like
    that of a box and is none is an error. NaN and null are empty boxes; a number that is not whole or not of 32 bits is
    an error that names the column and the row, counted from 0. Index and order stay.

    outputs: outputs (``TOT_PAYER``), their columns (``CO_19.c2``), boxes of next year's return (``F11_6FL``), ``net``;
    each a column of 32-bit integers, 0 where nothing is written. law, launch, indexation, period: those of every
    return, as in ``compute``. threads: 0 for one a processor; the figures are the same for any number. progress: True
    for a bar (tqdm), or a function of the rows computed and their number. keep: columns that pass through before the
    figures, all of them when True. status: the name of a last column, of texts: why a row could not be computed, empty
    when it was; such a row has no figures then (integers are nullable) instead of being an error. Ctrl-C stops the
    computation.
    """
    task = Task(outputs, law, launch, indexation, period, threads, progress, keep, status)
    if type(table).__module__.startswith("pyarrow") and hasattr(table, "read_next_batch"):
        return cast(Table, _stream(table, task))
    return cast(Table, task(table))


def _stream(reader: Any, task: Task) -> Any:
    """The figures of a stream as a stream: each batch is computed when it is asked for."""
    import pyarrow as pa

    empty = pa.RecordBatch.from_pylist([], schema=reader.schema)
    return pa.RecordBatchReader.from_batches(task(empty).schema, map(task, reader))
