"""A figure as one amount grows, and the straight pieces it is made of."""

from __future__ import annotations

from collections.abc import Mapping
from ctypes import byref, c_int32, sizeof
from dataclasses import dataclass
from typing import Any

import numpy as np
from numpy.typing import NDArray

from . import _library as lib
from ._amounts import Int32, flatten, whole
from ._frames import FrameKind, frame
from ._law import Law
from ._result import Launch, Period, figure_name, fill, prepare


@dataclass(frozen=True)
class Curve:
    """A figure (euros) at each amount, its average rate (figure / amount) and its marginal rate (what the next step
    adds / the step), both in euros per euro."""

    box: str
    figure: str
    amounts: Int32
    values: Int32
    average: NDArray[np.float64]
    marginal: NDArray[np.float64]

    def frame(self, kind: FrameKind = "pandas") -> Any:
        """As a frame: amount, value, average, marginal."""
        columns = {"amount": self.amounts, "value": self.values, "average": self.average, "marginal": self.marginal}
        return frame(columns, kind)


@dataclass(frozen=True)
class Breaks:
    """Straight pieces: at every whole amount from ``starts`` to ``stops``, both included, the figure is
    ``values + rates * (amount - starts)``, to one euro."""

    box: str
    figure: str
    starts: Int32
    stops: Int32
    rates: NDArray[np.float64]
    values: Int32

    def __len__(self) -> int:
        return len(self.starts)

    def frame(self, kind: FrameKind = "pandas") -> Any:
        """As a frame: from, to, rate, value."""
        return frame({"from": self.starts, "to": self.stops, "rate": self.rates, "value": self.values}, kind)


def _range(
    entries: Mapping[str, Any],
    box: str,
    start: int,
    stop: int,
    step: int,
    figure: str | None,
    threads: int,
    **settings: Any,
) -> tuple[lib.Handle, lib.Range]:
    handle = prepare(**settings)
    fill(handle, flatten(entries))
    start, stop, step = whole("start", start), whole("stop", stop), whole("step", step)
    asked = lib.Range(
        size=sizeof(lib.Range),
        amount=box.encode(),
        from_=start,
        to=stop,
        step=step,
        threads=threads,
        figure=figure_name(figure),
    )
    return handle, asked


def curve(
    entries: Mapping[str, Any],
    box: str,
    start: int = 0,
    stop: int = 200_000,
    step: int = 500,
    *,
    figure: str | None = None,
    launch: Launch = "normal",
    law: Law | None = None,
    indexation: float = -1.0,
    period: Period | None = None,
    threads: int = 0,
) -> Curve:
    """A figure of a return, the net amount by default, for each amount of a box from start to stop, both included."""
    settings = {"launch": launch, "law": law, "indexation": indexation, "period": period}
    handle, asked = _range(entries, box, start, stop, step, figure, threads, **settings)
    count = c_int32()
    status = lib.kv.kv_curve(handle.pointer, byref(asked), None, None, None, None, 0, byref(count))
    if status not in (lib.OK, lib.TOO_SMALL):
        handle.check(status)
    n = count.value
    amounts, values = np.empty(n, np.int32), np.empty(n, np.int32)
    average, marginal = np.empty(n, np.float64), np.empty(n, np.float64)
    places = [array.ctypes.data for array in (amounts, values, average, marginal)]
    handle.check(lib.kv.kv_curve(handle.pointer, byref(asked), *places, n, byref(count)))
    return Curve(box, figure or "net", amounts, values, average, marginal)


def breaks(
    entries: Mapping[str, Any],
    box: str,
    start: int = 0,
    stop: int = 200_000,
    *,
    figure: str | None = None,
    launch: Launch = "normal",
    law: Law | None = None,
    indexation: float = -1.0,
    period: Period | None = None,
    threads: int = 0,
) -> Breaks:
    """The straight pieces of a figure of a return, the net amount by default, as a box goes from start to stop. Every
    whole amount is computed."""
    settings = {"launch": launch, "law": law, "indexation": indexation, "period": period}
    handle, asked = _range(entries, box, start, stop, 1, figure, threads, **settings)
    count, room = c_int32(), 4096
    while True:
        pieces = (lib.Piece * room)()
        status = lib.kv.kv_breaks(handle.pointer, byref(asked), pieces, room, byref(count))
        if status != lib.TOO_SMALL:
            break
        room = count.value
    handle.check(status)
    found = pieces[: count.value]
    return Breaks(
        box,
        figure or "net",
        np.array([p.from_ for p in found], np.int32),
        np.array([p.to for p in found], np.int32),
        np.array([p.rate for p in found], np.float64),
        np.array([p.value for p in found], np.int32),
    )
