"""Pictures: the marginal rate along a curve, the gains of a reform by decile."""

from __future__ import annotations

from typing import Any

import numpy as np

from ._curves import Curve
from ._frames import need
from ._reform import Reform

_VALUE, _RATE, _GAIN, _LOSS, _NET = "#1f5a96", "#c4561a", "#2f7d4f", "#b03a2e", "#222222"


def _axes(ax: Any) -> Any:
    pyplot = need("matplotlib.pyplot", "plot")
    return ax if ax is not None else pyplot.subplots(figsize=(8, 4.5), layout="constrained")[1]


def _thousands(axis: Any) -> None:
    ticker = need("matplotlib.ticker", "plot")
    axis.set_major_formatter(
        ticker.FuncFormatter(lambda value, _: f"{value:,.0f}".replace(",", "\N{NARROW NO-BREAK SPACE}"))
    )


def _finish(ax: Any) -> Any:
    ax.legend(frameon=False, ncols=3, loc="lower left", bbox_to_anchor=(0, 1))
    for side in ("top", "right"):
        ax.spines[side].set_visible(False)
    return ax


def plot_marginal_rate(curve: Curve, ax: Any = None, *, limit: float = 1.0) -> Any:
    """Draws the marginal and the average rate of a curve, in percent, as its amount grows; gives the axes back. limit:
    rates beyond it, both ways, are cut: a jump of a few euros is a large rate over a small step."""
    ax = _axes(ax)
    marginal = np.clip(curve.marginal, -limit, limit)
    ax.step(curve.amounts, 100 * marginal, where="post", color=_RATE, linewidth=1.4, label="marginal rate")
    ax.plot(curve.amounts, 100 * curve.average, color=_VALUE, linewidth=1.8, label="average rate")
    ax.axhline(0, color="grey", linewidth=0.6)
    ax.set_xlabel(f"{curve.box} (euros)")
    ax.set_ylabel(f"rate of {'the net amount' if curve.figure == 'net' else curve.figure} (%)")
    ax.margins(x=0)
    _thousands(ax.xaxis)
    return _finish(ax)


def plot_deciles(reform: Reform, ax: Any = None) -> Any:
    """Draws what a reform changes by decile, euros a household: what winners gain above, what losers lose below, both
    spread over all households of the decile, and the balance; gives the axes back."""
    ax = _axes(ax)
    table = reform.deciles("dict")
    households = np.where(table["households"] > 0, table["households"], 1.0)
    gains, losses = table["gains"] / households, table["losses"] / households
    ax.bar(table["decile"], gains, color=_GAIN, width=0.7, label="gains")
    ax.bar(table["decile"], -losses, color=_LOSS, width=0.7, label="losses")
    ax.plot(table["decile"], gains - losses, "o-", color=_NET, markersize=4, linewidth=1, label="balance")
    ax.axhline(0, color="grey", linewidth=0.6)
    ax.set_xticks(table["decile"])
    ax.set_xlabel(f"decile of {reform.by}")
    ax.set_ylabel("euros a household")
    _thousands(ax.yaxis)
    return _finish(ax)
