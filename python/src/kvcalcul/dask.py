"""Populations in Dask: ``kvcalcul.dask.compute(frame, outputs=["TOT_PAYER"])``."""

from __future__ import annotations

from collections.abc import Sequence
from typing import Any

from ._frames import need
from ._law import Law
from ._result import Launch, Period
from ._table import Task


def compute(
    ddf: Any,
    outputs: Sequence[str],
    *,
    law: Law | None = None,
    launch: Launch = "normal",
    indexation: float = -1.0,
    period: Period | None = None,
    threads: int = 1,
    keep: bool | Sequence[str] = False,
    status: str | None = None,
) -> Any:
    """The figures of a ``dask.dataframe``, as another one: partitions, index and divisions stay.

    Arguments, columns and dtypes are those of ``kvcalcul.compute_table``, which computes each partition on its worker.
    Wrong names are errors at once, wrong amounts when the partition is computed: they name the row of the partition and
    its index. threads: of one partition; workers compute several at a time. The law travels with the work; a worker
    with another version of kvcalcul refuses it.
    """
    need("dask.dataframe", "dask")
    task = Task(outputs, law, launch, indexation, period, threads, keep=keep, status=status)
    return ddf.map_partitions(task, meta=task(ddf._meta))
