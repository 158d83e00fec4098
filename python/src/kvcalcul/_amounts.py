"""Amounts as the library takes them: 32-bit integers, one that stands for an empty box."""

from __future__ import annotations

import datetime
import math
import numbers
from collections.abc import Callable, Mapping
from ctypes import byref, c_int32
from functools import cache, lru_cache
from typing import Any, cast

import numpy as np
from numpy.typing import NDArray

from . import _library as lib

Int32 = NDArray[np.int32]
Refuse = Callable[[int, str], None]  # what becomes of a row, and why its amount can't be one

_LOW, _HIGH = -(2**31), 2**31 - 1
_AREAS = ("entries", "ti", "tix", "tiy", "tk", "tkz", "quotient", "quotients")
_ORDINALS = ("st", "nd", "rd", "th", "er", "re", "e")


@cache
def entry_number(name: str) -> int:
    """The number of the entry box of this name, -1 when it is none (a companion, say)."""
    number = c_int32(-1)
    status = lib.kv.kv_box_find(lib.ENTRY, name.encode(), byref(number))
    return number.value if status == lib.OK else -1


@lru_cache(maxsize=1)
def _entry_names() -> frozenset[str]:
    count = c_int32()
    lib.check(lib.kv.kv_box_count(lib.ENTRY, byref(count)))
    return frozenset(lib.text(lib.describe_box(lib.ENTRY, i).name).lower() for i in range(count.value))


def why_no_amount(name: str) -> str:
    """Nothing when a return can set an amount of this name, else why not, with the nearest names."""
    scratch, value = lib.Handle(), c_int32()
    if "\0" in name:
        return f"unknown box {name!r}"
    status = lib.kv.kv_get(scratch.pointer, name.encode(), byref(value))
    return "" if status == lib.OK else lib.text(lib.kv.kv_message(scratch.pointer))


def resembles_box(name: str) -> bool:
    """Whether a column that is no box looks like one that was meant: ``1aj``, ``1AX``, ``quotients.4.1AJ``. A single
    letter does not: ``w`` is a weight."""
    lower = name.lower()
    if "." in lower and lower.partition(".")[0].strip() in _AREAS:
        return True
    words = "".join(c if c.isascii() and c.isalnum() else " " for c in lower).split()
    letters = "".join(words)
    if len(letters) > 1 and letters in _entry_names():
        return True
    return any(
        3 <= len(word) <= 5 and word[0].isdigit() and word[1].isalpha() and word[1:] not in _ORDINALS for word in words
    )


def whole(name: str, value: Any) -> int:
    """One amount of a return: whole and of 32 bits; a date as AAAAMMJJ; None and NaN are an empty box."""
    if type(value) is int:
        number = value
    elif value is None:
        return lib.UNSET
    elif isinstance(value, datetime.date):
        number = value.year * 10000 + value.month * 100 + value.day
    elif isinstance(value, (numbers.Integral, np.integer, np.bool_)):
        number = int(value)
    elif isinstance(value, (numbers.Real, np.floating)) or type(value).__name__ == "Decimal":
        if math.isnan(value):
            return lib.UNSET
        if not math.isfinite(value) or value != math.floor(value):
            raise lib.BadValue(f"{name}: {value} is not a whole number of euros")
        number = int(value)
    elif type(value).__name__ in ("NAType", "NaTType"):
        return lib.UNSET
    else:
        raise lib.BadValue(f"{name}: {value!r} is not a number")
    if not _LOW <= number <= _HIGH:
        raise lib.BadValue(f"{name}: {number} does not fit in 32 bits")
    return number


def flatten(entries: Mapping[str, Any]) -> dict[str, Any]:
    """A return as the command line reads it (``{"entries": {...}, "ti": {...}, "quotients": {...}}``) or by names
    (``1AJ``, ``ti.1AW``, ``quotient.4.1AJ``): by names."""
    if not any(isinstance(value, Mapping) for value in entries.values()):
        return dict(entries)
    flat: dict[str, Any] = {}
    for area, amounts in entries.items():
        if not isinstance(amounts, Mapping) or area not in _AREAS:
            raise lib.BadValue(f'"{area}" stands beside "entries": give names and amounts, or the areas of a return')
        for name, amount in amounts.items():
            if area == "entries":
                flat[name] = amount
            elif area.startswith("quotient"):
                flat.update({f"quotient.{coefficient}.{name}": value for coefficient, value in amount.items()})
            else:
                flat[f"{area}.{name}"] = amount
    return flat


def _refuse_all(wrong: NDArray[np.bool_], values: NDArray[Any], why: str, refuse: Refuse) -> NDArray[Any]:
    """Refuses the rows that are wrong, and gives the values with zeros in their place."""
    if not wrong.any():
        return values
    for row in np.flatnonzero(wrong):
        refuse(int(row), f"{values[row]} {why}")
    return np.where(wrong, 0, values)


def column(name: str, values: Any, refuse: Refuse) -> Int32:
    """A column of amounts. 32-bit integers without nulls are taken as they are, without a copy; others are converted.
    A row whose amount can't be one is refused, and 0 here."""
    if not isinstance(values, np.ndarray):
        values = _from_arrow(name, values)
    if isinstance(values, np.ma.MaskedArray):
        mask = np.ma.getmaskarray(values)
        converted = column(name, np.where(mask, 0, values.data), refuse).copy()
        converted[mask] = lib.UNSET
        return converted
    kind = values.dtype.kind
    if kind == "b":
        return cast(Int32, values.astype(np.int32))
    if kind == "M":
        return _dates(values)
    if kind == "O":
        return _objects(values, refuse)
    if kind not in "iuf":
        raise lib.BadValue(f"column {name}: {values.dtype} is no column of numbers")
    empty = None
    if kind == "f":
        values = values.astype(np.float64, copy=False)  # which holds every bound exactly
        empty = np.isnan(values)
        if not empty.any():
            empty = None
        else:
            values = np.where(empty, 0, values)
        fraction = values != np.floor(values)  # an infinity is no fraction, and out of range
        values = _refuse_all(fraction, values, "is not a whole number", refuse)
    if values.size and values.dtype != np.int32 and (values.min() < _LOW or values.max() > _HIGH):
        values = _refuse_all((values < _LOW) | (values > _HIGH), values, "does not fit in 32 bits", refuse)
    amounts = np.ascontiguousarray(values, dtype=np.int32)
    if empty is not None:
        amounts[empty] = lib.UNSET
    return amounts


def _dates(values: NDArray[Any]) -> Int32:
    empty = np.isnat(values)
    days = np.where(empty, np.datetime64("2000-01-01"), values).astype("datetime64[D]")
    months = days.astype("datetime64[M]")
    year = days.astype("datetime64[Y]").astype(np.int64) + 1970
    month = months.astype(np.int64) % 12 + 1
    day = (days - months).astype(np.int64) + 1
    amounts = (year * 10000 + month * 100 + day).astype(np.int32)
    amounts[empty] = lib.UNSET
    return cast(Int32, amounts)


def _objects(values: NDArray[Any], refuse: Refuse) -> Int32:
    amounts = np.zeros(len(values), dtype=np.int32)
    for row, value in enumerate(values):
        try:
            amounts[row] = whole("", value)
        except lib.BadValue as error:
            refuse(row, str(error).removeprefix(": "))
    return amounts


def _from_arrow(name: str, values: Any) -> NDArray[Any]:
    import pyarrow as pa
    import pyarrow.compute as pc

    kind = values.type
    if pa.types.is_dictionary(kind):
        return _from_arrow(name, values.dictionary_decode())
    if pa.types.is_null(kind):
        return np.full(len(values), lib.UNSET, dtype=np.int32)
    if pa.types.is_boolean(kind):
        values = values.cast(pa.int8())
    elif pa.types.is_decimal(kind):
        return np.array(values.to_pylist(), dtype=object)
    elif pa.types.is_date(kind) or pa.types.is_timestamp(kind):
        if getattr(kind, "tz", None) is not None:
            values = pc.local_timestamp(values)  # the day where it was written
        return np.asarray(values.cast(pa.timestamp("s"), safe=False).to_numpy(zero_copy_only=False))
    elif not (pa.types.is_integer(kind) or pa.types.is_floating(kind)):
        raise lib.BadValue(f"column {name}: {kind} is no column of numbers")
    if values.null_count == 0:
        return np.asarray(values.to_numpy(zero_copy_only=not pa.types.is_float16(kind)))
    if pa.types.is_floating(kind):
        return np.asarray(values.to_numpy(zero_copy_only=False))
    return np.asarray(pc.fill_null(values.cast(pa.int64(), safe=False), lib.UNSET).to_numpy())
