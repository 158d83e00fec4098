"""Frames of the kinds that analysts use: what a table is made of, and one of the same kind made of new columns."""

from __future__ import annotations

import importlib
from collections.abc import Mapping, Sequence
from typing import Any, Literal

import numpy as np
from numpy.typing import NDArray

FrameKind = Literal["pandas", "polars", "arrow", "dict"]


def need(module: str, extra: str | None = None) -> Any:
    """A library that is needed for what was asked, with a message when it is missing."""
    try:
        return importlib.import_module(module)
    except ImportError as error:
        name = module.partition(".")[0]
        hint = f": pip install 'kvcalcul[{extra}]'" if extra else f": pip install {name}"
        raise ImportError(f"this needs {name}, which is not installed{hint}") from error


def frame(columns: Mapping[str, Any], kind: FrameKind = "pandas") -> Any:
    """Columns of one length as a frame."""
    if kind == "pandas":
        return need("pandas", "pandas").DataFrame(dict(columns))
    if kind == "polars":
        return need("polars", "polars").DataFrame(dict(columns))
    if kind == "arrow":
        return need("pyarrow").table(dict(columns))
    if kind == "dict":
        return {name: np.asarray(values) for name, values in columns.items()}
    raise ValueError(f"frame: {kind!r} is none of pandas, polars, arrow, dict")


class Source:
    """A table as it came, its columns as NumPy or Arrow arrays."""

    def __init__(self, table: Any) -> None:
        self.table = table
        self.kind: str
        home = type(table).__module__.partition(".")[0]
        if home == "pandas" and hasattr(table, "columns"):
            self.kind, self.names, self.rows = "pandas", list(table.columns), len(table)
        elif home == "polars" and hasattr(table, "collect"):
            raise TypeError("a lazy frame is not computed yet: collect() it first")
        elif home == "polars" and hasattr(table, "columns"):
            self.kind, self.names, self.rows = "polars", list(table.columns), table.height
        elif isinstance(table, Mapping):
            self.kind, self.names = "dict", list(table)
            self.table = {name: _as_array(values) for name, values in table.items()}
            lengths = {name: len(values) for name, values in self.table.items()}
            self.rows = max(lengths.values(), default=0)
            for name, length in lengths.items():
                if length != self.rows:
                    raise ValueError(f"column {name} has {length} rows, another one {self.rows}")
        else:
            self._read_arrow(table)
        seen: set[str] = set()
        for name in self.names:
            if not isinstance(name, str):
                raise TypeError(f"the column {name!r} is not named by a text")
            if name in seen:
                raise ValueError(f"two columns are named {name}")
            seen.add(name)

    def _read_arrow(self, table: Any) -> None:
        import pyarrow as pa

        self.kind = "arrow"
        if isinstance(table, pa.RecordBatch):
            self.kind = "batch"
        elif not isinstance(table, pa.Table):
            if hasattr(table, "__arrow_c_stream__"):
                self.table = pa.RecordBatchReader.from_stream(table).read_all()
            elif hasattr(table, "__arrow_c_array__"):
                self.kind, self.table = "batch", pa.record_batch(table)
            else:
                raise TypeError(
                    f"{type(table).__name__} is no table: a pandas or Polars frame, an Arrow table or stream, "
                    "a dict of arrays"
                )
        self.names, self.rows = list(self.table.schema.names), self.table.num_rows

    def column(self, name: str) -> Any:
        """A NumPy array, or an Arrow one where the column is none."""
        if self.kind == "dict":
            return self.table[name]
        if self.kind == "pandas":
            series = self.table[name]
            if isinstance(series.dtype, np.dtype):
                return series.to_numpy()
            return _arrow_of_pandas(series)
        column = self.table[name].to_arrow() if self.kind == "polars" else self.table.column(name)
        return _whole(column)

    def where(self, row: int) -> str:
        """A row as a reader finds it again: its place from 0, and its label."""
        if self.kind == "pandas":
            label = self.table.index[row]
            if label != row:
                return f"row {row} (index {label})"
        return f"row {row}"

    def like(self, columns: Mapping[str, NDArray[Any]], keep: Sequence[str] = ()) -> Any:
        """New columns as a table of the same kind, with the index and some columns of this one before them. Integers
        that are masked where there is nothing are nullable; objects are texts."""
        if self.kind == "pandas":
            pandas = need("pandas", "pandas")
            series = {name: _pandas_column(pandas, values) for name, values in columns.items()}
            new = pandas.DataFrame(series, index=self.table.index, copy=False)
            return pandas.concat([self.table[list(keep)], new], axis=1) if keep else new
        if self.kind == "polars":
            polars = need("polars", "polars")
            new = {
                name: values if _plain(values) else polars.Series(_arrow(values)) for name, values in columns.items()
            }
            return polars.DataFrame({**{name: self.table[name] for name in keep}, **new})
        if self.kind == "dict":
            return {**{name: self.table[name] for name in keep}, **columns}
        import pyarrow as pa

        arrays = [self.table.column(name) for name in keep] + [_arrow(values) for values in columns.values()]
        make = pa.RecordBatch.from_arrays if self.kind == "batch" else pa.Table.from_arrays
        return make(arrays, names=[*keep, *columns])


def _plain(values: NDArray[Any]) -> bool:
    return values.dtype.kind != "O" and not isinstance(values, np.ma.MaskedArray)


def _arrow(values: NDArray[Any]) -> Any:
    import pyarrow as pa

    if values.dtype.kind == "O":
        return pa.array(values, pa.string())
    if isinstance(values, np.ma.MaskedArray):
        return pa.array(values.data, mask=np.ma.getmaskarray(values))
    return pa.array(values)


def _pandas_column(pandas: Any, values: NDArray[Any]) -> Any:
    if values.dtype.kind == "O":
        return pandas.array(values, dtype="string")
    if isinstance(values, np.ma.MaskedArray):
        return pandas.arrays.IntegerArray(values.data, np.ma.getmaskarray(values))
    return values


def _as_array(values: Any) -> Any:
    if isinstance(values, np.ndarray):
        if values.ndim != 1:
            raise ValueError("a column has one dimension")
        return values
    if type(values).__module__.partition(".")[0] == "pyarrow":
        return _whole(values)
    if type(values).__module__.partition(".")[0] in ("pandas", "polars"):
        return _of_series(values)
    values = list(values)
    array = np.array(values, dtype=object)
    plain = all(type(value) in (int, bool) for value in values) and bool(values)
    return array.astype(np.int64) if plain and all(-(2**63) <= value < 2**63 for value in values) else array


def _of_series(series: Any) -> Any:
    if type(series).__module__.startswith("polars"):
        return series.to_arrow()
    return series.to_numpy() if isinstance(series.dtype, np.dtype) else _arrow_of_pandas(series)


def _arrow_of_pandas(series: Any) -> Any:
    import pyarrow as pa

    return _whole(pa.array(series, from_pandas=True))


def _whole(column: Any) -> Any:
    """An Arrow column as one array; that of a single chunk is not copied."""
    if not hasattr(column, "num_chunks"):
        return column
    return column.chunk(0) if column.num_chunks == 1 else column.combine_chunks()
