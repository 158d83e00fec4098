"""One return: what it sets, and what its computation finds."""

from __future__ import annotations

import datetime
from collections.abc import Iterator, Mapping
from ctypes import byref, c_char_p, c_int32, c_size_t, create_string_buffer, sizeof
from dataclasses import dataclass
from functools import lru_cache
from threading import RLock
from typing import Any, Literal

from . import _library as lib
from ._amounts import entry_number, flatten, whole
from ._explanation import Explanation
from ._frames import FrameKind, frame
from ._law import Law

Launch = Literal["normal", "options", "forced", "forced-options"]
Period = tuple["str | int | datetime.date", "str | int | datetime.date"]


@lru_cache(maxsize=4)
def names(catalogue: int) -> tuple[str, ...]:
    """The names of the boxes of a catalogue, in its order."""
    count = c_int32()
    lib.check(lib.kv.kv_box_count(catalogue, byref(count)))
    return tuple(lib.text(lib.describe_box(catalogue, i).name) for i in range(count.value))


@lru_cache(maxsize=1)
def _output_numbers() -> dict[str, int]:
    return {name: number for number, name in enumerate(names(lib.OUTPUT))}


def _day(value: str | int | datetime.date) -> int:
    if isinstance(value, datetime.date):
        return value.year * 10000 + value.month * 100 + value.day
    digits = str(value).replace("-", "")
    if not digits.isdigit():
        raise lib.BadValue(f"period: {value!r} is not a date")
    return int(digits)


def prepare(
    launch: str = "normal", law: Law | None = None, indexation: float = -1.0, period: Period | None = None
) -> lib.Handle:
    """A return that sets nothing, launched so."""
    handle = lib.Handle()
    if launch != "normal":
        if launch not in lib.LAUNCHES:
            raise lib.BadValue(f"launch: {launch!r} is none of {', '.join(lib.LAUNCHES)}")
        handle.check(lib.kv.kv_set_launch(handle.pointer, lib.LAUNCHES[launch]))
    if law is not None:
        handle.check(lib.kv.kv_set_law(handle.pointer, law._pointer))
    if indexation != -1.0:
        handle.check(lib.kv.kv_set_indexation(handle.pointer, indexation))
    if period is not None:
        handle.check(lib.kv.kv_set_period(handle.pointer, _day(period[0]), _day(period[1])))
    return handle


def fill(handle: lib.Handle, entries: Mapping[str, Any]) -> None:
    """Sets the amounts of a return."""
    pointer, set_box, set_name = handle.pointer, lib.kv.kv_set_box, lib.kv.kv_set
    for name, value in entries.items():
        if type(value) is not int or not -(2**31) <= value < 2**31:
            value = whole(name, value)
        if not isinstance(name, str):
            raise lib.UnknownName(f"{name!r} is not the name of a box")
        number = entry_number(name)
        if number >= 0:
            status = set_box(pointer, 0, number, value)
        else:
            status = set_name(pointer, name.encode().replace(b"\0", b"?"), value)
        if status != lib.OK:
            handle.check(status)


@dataclass(frozen=True)
class Effect:
    """What an amount of a return does to a figure: the figure without it, and with some more of it (``change``: 100
    euros, 1 of a count, the other state of a tick)."""

    name: str
    amount: int
    value: int
    without: int
    change: int
    changed: int

    @property
    def effect(self) -> int:
        """What the amount adds to the figure."""
        return self.value - self.without


class Effects(tuple[Effect, ...]):
    """The effects of the amounts of a return on a figure, the most telling first."""

    def frame(self, kind: FrameKind = "pandas") -> Any:
        """As a frame: name, amount, value, without, effect, change, changed."""
        fields = ("name", "amount", "value", "without", "effect", "change", "changed")
        return frame({field: [getattr(effect, field) for effect in self] for field in fields}, kind)


@dataclass(frozen=True)
class Options:
    """What the comparison of the flat tax and the scale found: both net amounts, euros, and the one that applies."""

    flat_tax: int
    scale: int
    applied: Literal["flat_tax", "scale"]


class Result(Mapping[str, int]):
    """What the computation of a return found.

    It reads like a mapping of every figure by its name: an output (``TOT_PAYER``), one of its columns (``CO_19.c2``), a
    box of next year's return (``F11_6FL``); 0 where nothing is written. ``net`` is what is paid, or refunded when
    negative. Iterating gives the 2288 outputs. A result pickles as the return that it is of, and may be read from
    several threads.
    """

    __slots__ = ("_entries", "_handle", "_lock", "_settings")

    def __init__(self, entries: Mapping[str, Any], settings: Mapping[str, Any]) -> None:
        self._entries, self._settings, self._lock = entries, settings, RLock()
        self._handle = prepare(**settings)
        fill(self._handle, entries)
        self._handle.check(lib.kv.kv_compute(self._handle.pointer))

    # ---- Figures.

    def __getitem__(self, name: str) -> int:
        if name == "net":
            return self.net
        if not isinstance(name, str):
            raise lib.UnknownName(f"{name!r} is not the name of a figure")
        value = c_int32()
        with self._lock:
            status = lib.kv.kv_read(self._handle.pointer, name.encode().replace(b"\0", b"?"), byref(value))
            if status != lib.OK:
                self._handle.check(status)
        return value.value

    def __iter__(self) -> Iterator[str]:
        return iter(names(lib.OUTPUT))

    def __len__(self) -> int:
        return len(names(lib.OUTPUT))

    def __contains__(self, name: object) -> bool:
        try:
            return isinstance(name, str) and self[name] is not None
        except lib.UnknownName:
            return False

    @property
    def net(self) -> int:
        """What the household pays, euros; negative: what it is refunded."""
        return self["S_NET_A_PAYER"] - self["S_NET_RESTITUE"]

    def columns(self, output: str) -> tuple[int, int, int]:
        """The three columns of an output; ``boxes`` tells what they hold."""
        return self[f"{output}.c1"], self[f"{output}.c2"], self[f"{output}.c3"]

    def text(self, output: str) -> str:
        """How an output was found, in French: "7.5% x 1000"; "" for one without a text."""
        number = _output_numbers().get(output)
        if number is None:
            self[output]  # a column or a carry-forward has none; another name raises
            return ""
        buffer, length = create_string_buffer(256), c_size_t()
        with self._lock:
            self._handle.check(lib.kv.kv_read_text(self._handle.pointer, number, buffer, 256, byref(length)))
        return buffer.value.decode()

    def nonzero(self) -> dict[str, int]:
        """The outputs that are not 0."""
        count = len(self)
        values = (c_int32 * count)()
        with self._lock:
            self._handle.check(lib.kv.kv_read_outputs(self._handle.pointer, 0, values, count))
        return {name: value for name, value in zip(self, values, strict=True) if value != 0}

    def carried(self) -> dict[str, int]:
        """What next year's return takes over: the carry-forward boxes that are not 0."""
        return {name: value for name in names(lib.CARRY) if (value := self[name]) != 0}

    @property
    def entries(self) -> dict[str, Any]:
        """What the return set."""
        return dict(self._entries)

    @property
    def options(self) -> Options | None:
        """The two options on capital income, where they were compared."""
        options = lib.Options(size=sizeof(lib.Options))
        with self._lock:
            self._handle.check(lib.kv.kv_read_options(self._handle.pointer, byref(options)))
        if not options.compared:
            return None
        return Options(options.flat_tax, options.scale, "flat_tax" if options.applied == 1 else "scale")

    def warnings(self) -> list[str]:
        """What can't be true of the return: two family situations, a date in the future, ..."""
        with self._lock:
            count, message = c_int32(), c_char_p()
            self._handle.check(lib.kv.kv_check(self._handle.pointer, byref(count)))
            texts = []
            for i in range(count.value):
                self._handle.check(lib.kv.kv_warning(self._handle.pointer, i, byref(message)))
                texts.append(lib.text(message.value))
        return texts

    # ---- Why, and what if.

    def explain(self, figure: str | None = None, depth: int = -1) -> Explanation:
        """The tree of what makes a figure, of the net amount by default. depth: how many levels, all when negative."""
        return Explanation.from_json(self._json(lib.kv.kv_explain, figure, depth))

    def _json(self, function: Any, figure: str | None, depth: int, *before: Any) -> str:
        text = c_char_p()
        with self._lock:
            self._handle.check(function(*before, self._handle.pointer, figure_name(figure), depth, byref(text)))
            return lib.text(text.value)

    def effects(self, figure: str | None = None) -> Effects:
        """What each amount of the return does to a figure, to the net amount by default."""
        value, count = c_int32(), c_int32()
        with self._lock:
            pointer = self._handle.pointer
            self._handle.check(lib.kv.kv_effects(pointer, figure_name(figure), byref(value), byref(count)))
            found = []
            for i in range(count.value):
                e = lib.Effect(size=sizeof(lib.Effect))
                self._handle.check(lib.kv.kv_effect_at(pointer, i, byref(e)))
                found.append(Effect(lib.text(e.name), e.amount, value.value, e.without, e.change, e.changed))
        return Effects(found)

    # ---- As an object.

    def __reduce__(self) -> tuple[type[Result], tuple[dict[str, Any], dict[str, Any]]]:
        return Result, (dict(self._entries), dict(self._settings))

    def __repr__(self) -> str:
        return f"<kvcalcul.Result net={self.net} TOT_PAYER={self['TOT_PAYER']} of {len(self._entries)} amounts>"

    def _repr_html_(self) -> str:
        from html import escape

        rows = "".join(
            f"<tr><td>{escape(name)}</td><td>{escape(lib.text(lib.describe_box(lib.OUTPUT, number).label))}</td>"
            f"<td style='text-align:right'>{value}</td></tr>"
            for number, name in enumerate(self)
            if (value := self[name]) != 0
        )
        return f"<table><thead><tr><th>box</th><th></th><th>euros</th></tr></thead><tbody>{rows}</tbody></table>"


def figure_name(figure: str | None) -> bytes | None:
    """A figure as the library names it; none for the net amount."""
    return None if figure in (None, "net") else str(figure).encode().replace(b"\0", b"?")


def compute(
    entries: Mapping[str, Any],
    *,
    launch: Launch = "normal",
    law: Law | None = None,
    indexation: float = -1.0,
    period: Period | None = None,
) -> Result:
    """Computes one return.

        compute({"M": 1, "Fm": 2, "1AJ": 42000, "1BJ": 31000})["TOT_PAYER"]

    entries: amounts in whole euros by the name of their box, companions as ``ti.1AW``, exceptional amounts as
    ``quotient.4.1AJ``; ticks 1, dates AAAAMMJJ or ``datetime.date``; None and NaN are empty boxes. The object of the
    command line, ``{"entries": {...}, "quotients": {...}}``, is taken too. launch: what is done with the options on
    capital income (``options`` applies those that the return sets). indexation: percent by which the indexed amounts of
    the law rise. period: the first and last day of the income.

    UnknownName names the nearest boxes, BadValue the box whose value can't stand.
    """
    flat = flatten(entries)
    settings = {
        "launch": launch,
        "law": None if law is None else law.copy(),
        "indexation": indexation,
        "period": period,
    }
    return Result(flat, settings)


def explain_difference(before: Result, after: Result, figure: str | None = None, depth: int = -1) -> dict[str, Any]:
    """The branches of two explanations that differ, as ``kv_explain_difference`` tells them: ``before``, ``after``,
    ``terms``."""
    import json

    with before._lock:
        found: dict[str, Any] = json.loads(
            after._json(lib.kv.kv_explain_difference, figure, depth, before._handle.pointer)
        )
    return found


def boxes(
    words: str = "",
    catalogue: Literal["entry", "output", "carry"] = "entry",
    frame_kind: FrameKind = "pandas",
) -> Any:
    """What boxes mean, as a frame: all of them, or those whose name contains a text, or whose label its words; accents
    and case do not matter. catalogue: the boxes of the return, the figures of the computation, the boxes of next year's
    return."""
    number = {"entry": lib.ENTRY, "output": lib.OUTPUT, "carry": lib.CARRY}[catalogue]
    chosen = lib.numbers(lib.kv.kv_box_search, number, words.encode()) if words.strip() else range(len(names(number)))
    found = [lib.describe_box(number, i) for i in chosen]
    columns: dict[str, list[str]] = {
        "name": [lib.text(box.name) for box in found],
        "label": [lib.text(box.label) for box in found],
        "kind": [lib.text(box.kind_name) for box in found],
        "person": [lib.text(box.person_name) for box in found],
        "group": [lib.text(box.group) for box in found],
    }
    if catalogue == "output":
        columns["step"] = [lib.text(box.step) for box in found]
        for k in range(3):
            columns[f"c{k + 1}"] = [lib.text(box.columns[k]) for box in found]
    return frame(columns, frame_kind)
