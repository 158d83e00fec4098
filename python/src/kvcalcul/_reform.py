"""What a reform changes: household by household, in all, and by decile of income."""

from __future__ import annotations

from dataclasses import dataclass
from typing import Any

import numpy as np
from numpy.typing import NDArray

from . import _library as lib
from ._amounts import Int32
from ._frames import FrameKind, Source, frame
from ._law import Law
from ._result import Launch, Period
from ._table import Progress, Run, amounts_of

Floats = NDArray[np.float64]


@dataclass(frozen=True)
class Reform:
    """What a reform changes of a figure that households pay.

    ``rows``: a table of the kind that was given, a row a household: ``baseline``, ``reform``, ``difference`` (reform
    less baseline: negative for a winner) and ``decile``. ``summary()`` and ``deciles()`` are frames.
    """

    rows: Any
    figure: str
    by: str
    baseline: Int32
    reform: Int32
    weights: Floats
    income: Int32
    decile: Int32

    def _line(self, chosen: NDArray[np.bool_]) -> dict[str, float]:
        weights = self.weights[chosen]
        difference = self.reform[chosen].astype(np.int64) - self.baseline[chosen]
        households = float(weights.sum())

        def mean(values: NDArray[Any]) -> float:
            return float(np.dot(weights, values)) / households if households else 0.0

        return {
            "households": households,
            "baseline": mean(self.baseline[chosen]),
            "reform": mean(self.reform[chosen]),
            "difference": mean(difference),
            "winners": float(weights[difference < 0].sum()),
            "losers": float(weights[difference > 0].sum()),
            "gains": float(np.dot(weights, np.maximum(-difference, 0))),
            "losses": float(np.dot(weights, np.maximum(difference, 0))),
            "cost": float(np.dot(weights, -difference)),
        }

    @property
    def cost(self) -> float:
        """What the reform costs the state, euros: baseline less reform, weighted; negative when it brings in more."""
        return self._line(np.ones(len(self.weights), dtype=bool))["cost"]

    def summary(self, kind: FrameKind = "pandas") -> Any:
        """All households on one row: how many, the mean figures and their difference, winners and losers (households),
        what they gain and lose, the cost (euros, weighted)."""
        line = self._line(np.ones(len(self.weights), dtype=bool))
        return frame({name: [value] for name, value in line.items()}, kind)

    def deciles(self, kind: FrameKind = "pandas") -> Any:
        """The same for each decile of the income that households are ordered by, with its bounds."""
        columns: dict[str, list[float]] = {"decile": [], "from": [], "to": []}
        for decile in np.unique(self.decile):
            chosen = self.decile == decile
            columns["decile"].append(int(decile))
            columns["from"].append(int(self.income[chosen].min()))
            columns["to"].append(int(self.income[chosen].max()))
            for name, value in self._line(chosen).items():
                columns.setdefault(name, []).append(value)
        return frame(columns, kind)


def _deciles(income: Int32, weights: Floats) -> Int32:
    """The weighted decile of each household, 1 to 10: the tenth of the weight in which the middle of its own falls."""
    order = np.argsort(income, kind="stable")
    middle = np.cumsum(weights[order]) - weights[order] / 2
    decile = np.empty(len(income), dtype=np.int32)
    total = float(weights.sum())
    decile[order] = np.minimum(np.floor(10 * middle / total).astype(np.int32) + 1, 10) if total > 0 else 1
    return decile


def _weights(source: Source, weights: str | Any | None) -> tuple[Floats, list[str]]:
    if weights is None:
        return np.ones(source.rows), []
    named = isinstance(weights, str)
    if named and weights not in source.names:
        raise lib.UnknownName(f'weights: no column is named "{weights}"')
    values: Any = source.column(str(weights)) if named else weights
    if type(values).__module__.startswith("pyarrow"):
        values = values.to_pylist()
    array = np.asarray(values, dtype=np.float64)
    if array.shape != (source.rows,):
        raise lib.BadValue(f"weights: {array.shape} values for {source.rows} rows")
    wrong = ~(np.isfinite(array) & (array >= 0))
    if wrong.any():
        raise lib.BadValue(f"weights, {source.where(int(np.argmax(wrong)))}: a weight is a number from 0 up")
    return array, [weights] if named else []


def reform(
    table: Any,
    law: Law,
    *,
    weights: str | Any | None = None,
    figure: str = "net",
    by: str = "REVENU_REF",
    baseline: Law | None = None,
    launch: Launch = "normal",
    indexation: float = -1.0,
    period: Period | None = None,
    threads: int = 0,
    progress: Progress = False,
) -> Reform:
    """Computes each household of a table under the law of the year (or another ``baseline``) and under a reform.

    table: as in ``compute_table``. weights: a column that says how many households a row stands for, or an array; 1
    each by default. figure: what is compared, the net amount by default; it is taken as something that households pay.
    by: the figure of the baseline that orders households into weighted deciles.
    """
    if hasattr(table, "read_next_batch"):
        table = table.read_all()
    source = Source(table)
    weight, named = _weights(source, weights)
    amounts = amounts_of(source, others=named)
    settings: dict[str, Any] = {"launch": launch, "indexation": indexation, "period": period, "threads": threads}
    before = Run(law=baseline, progress=progress, **settings)
    after = Run(law=law, progress=progress, **settings)
    figures = before.compute(amounts, source.rows, before.check_outputs(list(dict.fromkeys([figure, by]))))
    changed = after.compute(amounts, source.rows, [figure])[figure]
    decile = _deciles(figures[by], weight)
    rows = source.like(
        {
            "baseline": figures[figure],
            "reform": changed,
            "difference": changed - figures[figure],
            "decile": decile,
        }
    )
    return Reform(rows, figure, by, figures[figure], changed, weight, figures[by], decile)
