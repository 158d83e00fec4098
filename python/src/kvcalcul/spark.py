"""Populations in Spark: ``kvcalcul.spark.compute(frame, outputs=["TOT_PAYER"])``."""

from __future__ import annotations

from collections.abc import Iterator, Sequence
from typing import Any

from ._frames import need
from ._law import Law
from ._result import Launch, Period
from ._table import Task


class _Batches:
    """What runs on an executor, over the Arrow batches of a partition."""

    def __init__(self, task: Task) -> None:
        self._task = task

    def __call__(self, batches: Iterator[Any]) -> Iterator[Any]:
        return map(self._task, batches)


def compute(
    sdf: Any,
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
    """The figures of a Spark DataFrame, as another one.

    Arguments and columns are those of ``kvcalcul.compute_table``, which computes each Arrow batch on its executor
    (``spark.sql.execution.arrow.maxRecordsPerBatch`` rows: 10 000 unless set; 100 000 serve better). Figures are
    integers of 32 bits. Wrong names are errors at once; a wrong amount fails the job, which names the column and its
    row in the batch: ``status`` lets the other rows through and keeps the reason beside what identifies the row.
    threads: of one batch; an executor computes several at a time. The law travels with the work; an executor with
    another version of kvcalcul refuses it.
    """
    types = need("pyspark.sql.types", "spark")
    convert = need("pyspark.sql.pandas.types", "spark").to_arrow_schema
    task = Task(outputs, law, launch, indexation, period, threads, keep=keep, status=status)
    kept = task(convert(sdf.schema).empty_table()).schema.names
    fields = {field.name: field for field in sdf.schema.fields}
    figures = {name: types.StructField(name, types.IntegerType()) for name in task.outputs}
    if status is not None:
        figures[status] = types.StructField(status, types.StringType())
    return sdf.mapInArrow(_Batches(task), types.StructType([{**fields, **figures}[name] for name in kept]))
