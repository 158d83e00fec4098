"""The French income tax of a household, income of 2017, and of millions of them.

``compute({"M": 1, "Fm": 2, "1AJ": 42000, "1BJ": 31000})["TOT_PAYER"]`` is one return,
``compute_table(households, outputs=["TOT_PAYER", "REVENU_REF"])`` a table of them.
"""

from . import _library, dask, spark
from ._curves import Breaks, Curve, breaks, curve
from ._explanation import Explanation
from ._law import Law, parameters
from ._library import BadValue, Error, UnknownName
from ._plots import plot_deciles, plot_marginal_rate
from ._reform import Reform, reform
from ._result import Effect, Effects, Options, Result, boxes, compute, explain_difference
from ._table import compute_table

for _name, _public in list(globals().items()):  # as a reader imports them
    if isinstance(_public, type):
        _public.__module__ = __name__

__version__ = _library.text(_library.kv.kv_version())

__all__ = [
    "BadValue",
    "Breaks",
    "Curve",
    "Effect",
    "Effects",
    "Error",
    "Explanation",
    "Law",
    "Options",
    "Reform",
    "Result",
    "UnknownName",
    "__version__",
    "boxes",
    "breaks",
    "compute",
    "compute_table",
    "curve",
    "dask",
    "explain_difference",
    "parameters",
    "plot_deciles",
    "plot_marginal_rate",
    "reform",
    "spark",
]
