"""Tables of every kind: what comes in comes out, with the figures of one return a row."""

from __future__ import annotations

import csv
import datetime
import decimal
import io
import pickle
import signal
import subprocess
import sys
import threading
from typing import Any

import duckdb
import numpy as np
import pandas as pd
import polars as pl
import pyarrow as pa
import pytest
from conftest import launches, returns, tool
from hypothesis import given, settings
from hypothesis import strategies as st

import kvcalcul
from kvcalcul import _amounts, _frames, _library

FIGURES = ["TOT_PAYER", "net", "CO_19.c2", "F11_CE17", "REVENU_REF", "TAUX_PAS"]


@settings(max_examples=100)
@given(st.lists(returns(), min_size=1, max_size=12), launches, st.integers(0, 3))
def test_a_table_is_its_returns_and_that_of_the_command_line(
    rows: list[dict[str, int]], launch: Any, threads: int
) -> None:
    figures = [name for name in FIGURES if name in kvcalcul.compute({}) or name == "net"]
    frame = pd.DataFrame([{"1AJ": 0, **amounts} for amounts in rows])
    found = kvcalcul.compute_table(frame, figures, launch=launch, threads=threads)
    for row, amounts in enumerate(rows):
        single = kvcalcul.compute(amounts, launch=launch)
        assert found.iloc[row].to_dict() == {name: single[name] for name in figures}
    text = frame.astype("Int64").to_csv(index=False)
    plain = [name for name in figures if name != "net"]
    written = tool("table", "-", "--outputs", ",".join(plain), "--launch", launch, stdin=text)
    lines = list(csv.DictReader(io.StringIO(written)))
    assert [[int(line[name]) for name in plain] for line in lines] == found[plain].to_numpy().tolist()


def households() -> dict[str, Any]:
    return {"1AJ": np.array([30000, 60000, 0], np.int32), "M": np.array([1, 0, 0], np.int32), "id": ["a", "b", "c"]}


# 27 000 and 54 000 over two parts and one; nothing.
NETS = [0, 10493, 0]


def test_what_comes_in_comes_out() -> None:
    made = households()
    frame = pd.DataFrame(made, index=[7, 5, 6])
    out = kvcalcul.compute_table(frame, ["RN_SAL", "TOT_PAYER"], keep=["id"])
    assert isinstance(out, pd.DataFrame) and out.index.tolist() == [7, 5, 6]
    assert (
        out["id"].tolist() == ["a", "b", "c"]
        and out["TOT_PAYER"].tolist() == NETS
        and out.dtypes["TOT_PAYER"] == np.int32
    )
    assert list(kvcalcul.compute_table(frame, ["TOT_PAYER"], keep=True)) == ["1AJ", "M", "id", "TOT_PAYER"]

    polars = kvcalcul.compute_table(pl.DataFrame(made), ["TOT_PAYER"], keep=["id"])
    assert (
        isinstance(polars, pl.DataFrame)
        and polars["TOT_PAYER"].to_list() == NETS
        and polars.columns == ["id", "TOT_PAYER"]
    )
    with pytest.raises(TypeError, match="collect"):
        kvcalcul.compute_table(pl.DataFrame(made).lazy(), ["TOT_PAYER"])

    table = pa.table(made)
    assert kvcalcul.compute_table(table, ["TOT_PAYER"], keep=["id"]).equals(
        pa.table({"id": ["a", "b", "c"], "TOT_PAYER": pa.array(NETS, pa.int32())})
    )
    assert isinstance(kvcalcul.compute_table(table.to_batches()[0], ["TOT_PAYER"]), pa.RecordBatch)
    stream = kvcalcul.compute_table(table.to_reader(max_chunksize=2), ["TOT_PAYER"], keep=["id"])
    assert isinstance(stream, pa.RecordBatchReader)
    assert [batch.column("TOT_PAYER").to_pylist() for batch in stream] == [NETS[:2], NETS[2:]]
    chunked = pa.concat_tables([table, table])
    assert kvcalcul.compute_table(chunked, ["TOT_PAYER"])["TOT_PAYER"].to_pylist() == NETS * 2
    assert list(kvcalcul.compute_table(made, iter(["TOT_PAYER", "net"]))) == ["TOT_PAYER", "net"]  # type: ignore[arg-type]
    relation: Any = duckdb.sql('select range * 30000 as "1AJ" from range(3)')
    assert kvcalcul.compute_table(relation, ["RN_SAL"])["RN_SAL"].to_pylist() == [0, 27000, 54000]

    arrays = kvcalcul.compute_table({**made, "M": pd.Series(made["M"])}, ["TOT_PAYER"])
    assert arrays["TOT_PAYER"].tolist() == NETS
    nothing = kvcalcul.compute_table({"1AJ": np.array([], np.int32)}, ["TOT_PAYER"])
    assert nothing["TOT_PAYER"].tolist() == []
    with pytest.raises(TypeError, match="no table"):
        kvcalcul.compute_table(7, ["TOT_PAYER"])


def never(row: int, why: str) -> None:
    raise AssertionError(why)


def test_integers_are_read_where_they_are() -> None:
    values = np.arange(1000, dtype=np.int32)
    pandas, polars = pd.DataFrame({"1AJ": values}), pl.DataFrame({"1AJ": values})
    tables: list[tuple[Any, Any]] = [
        ({"1AJ": values}, values),
        (pa.table({"1AJ": pa.array(values)}), values),
        (pandas, pandas["1AJ"].to_numpy()),
        (polars, polars["1AJ"].to_numpy(allow_copy=False)),
    ]
    for table, place in tables:
        column = _amounts.column("1AJ", _frames.Source(table).column("1AJ"), never)
        assert np.shares_memory(column, place)


NAN = float("nan")
EMPTY = _library.UNSET
COLUMNS: list[tuple[Any, list[int]]] = [
    ([1, None, 3], [1, EMPTY, 3]),
    ([True, False], [1, 0]),
    (np.array([1, 2], np.uint8), [1, 2]),
    (np.array([1, -2], np.int64)[::-1], [-2, 1]),
    (np.array([5.0, NAN], np.float32), [5, EMPTY]),
    (np.array([1.0, -0.0]), [1, 0]),
    (np.ma.MaskedArray([4, 9], mask=[False, True]), [4, EMPTY]),
    (np.array([decimal.Decimal("12.00"), None], object), [12, EMPTY]),
    (np.array(["1950-02-03", "NaT"], "datetime64[ns]"), [19500203, EMPTY]),
    ([datetime.date(1950, 12, 31)], [19501231]),
    (pd.Series([1, None, 3], dtype="Int64"), [1, EMPTY, 3]),
    (pd.Series([1.0, None]), [1, EMPTY]),
    (pd.Series([True, None], dtype="boolean"), [1, EMPTY]),
    (pd.Series([7, None], dtype="int32[pyarrow]"), [7, EMPTY]),
    (pd.Series([2, 2, 5]).astype("category"), [2, 2, 5]),
    (pa.array([1, None], pa.int32()), [1, EMPTY]),
    (pa.array([None, None]), [EMPTY, EMPTY]),
    (pa.array([1.0, None, NAN]), [1, EMPTY, EMPTY]),
    (pa.array([True, None]), [1, EMPTY]),
    (pa.array([decimal.Decimal("3.00")]), [3]),
    (pa.array([datetime.date(1950, 2, 3), None]), [19500203, EMPTY]),
    (pa.array([5, 6]).dictionary_encode(), [5, 6]),
    (pd.Series(pd.to_datetime(["1940-01-06 00:30"]).tz_localize("Europe/Paris")), [19400106]),
    (pa.array([9, 5, 6], pa.int32())[1:], [5, 6]),
    (np.array([5, 6], ">i4"), [5, 6]),
    (pa.chunked_array([[1], [2]]), [1, 2]),
    (pl.Series([1, None], dtype=pl.Int16), [1, EMPTY]),
]


@pytest.mark.parametrize(("values", "amounts"), COLUMNS, ids=lambda value: type(value).__name__)
def test_dtypes(values: Any, amounts: list[int]) -> None:
    column = _amounts.column("1AJ", _frames.Source({"1AJ": values}).column("1AJ"), never)
    assert column.dtype == np.int32 and column.tolist() == amounts
    if isinstance(values, (pd.Series, pl.Series)):
        frame = pd.DataFrame({"1AJ": values}) if isinstance(values, pd.Series) else pl.DataFrame({"1AJ": values})
        assert _amounts.column("1AJ", _frames.Source(frame).column("1AJ"), never).tolist() == amounts


@pytest.mark.parametrize(
    ("values", "why"),
    [
        ([1, 2.5], "row 1: 2.5 is not a whole"),
        (np.array([1, NAN, 0.25]), "row 2: 0.25 is not a whole"),
        (np.array([1.0, np.inf]), "row 1: inf"),
        (np.array([0, 2**31]), "row 1: 2147483648 does not fit"),
        (np.array([2.0**31], np.float32), "row 0: 2147483648.0 does not fit"),
        (np.array([2**63], np.uint64), "row 0: .* does not fit"),
        ([0, 10**30], "row 1: .* does not fit"),
        (["12"], "row 0: '12' is not a number"),
        (np.array(["12"]), "no column of numbers"),
        (pa.array(["12"]), "no column of numbers"),
        (pa.array([0, 2**40, None]), "row 1: .* does not fit"),
    ],
)
def test_an_amount_that_can_t_be_one_names_its_column_and_row(values: Any, why: str) -> None:
    with pytest.raises(kvcalcul.BadValue, match=f"column 1AJ.*{why}"):
        kvcalcul.compute_table({"1AJ": values}, ["TOT_PAYER"])
    if not isinstance(values, pa.Array):
        with pytest.raises(kvcalcul.BadValue, match="index x"):
            kvcalcul.compute_table(pd.DataFrame({"1AJ": [0, 0.5]}, index=["w", "x"]), ["TOT_PAYER"])


def test_columns_that_are_no_boxes() -> None:
    table = households()
    for name in ("1aj", "1AX", "1AJ ", "ti.1ZZ", "quotients.4.1AJ", "fm"):
        with pytest.raises(kvcalcul.UnknownName, match="no box needs another name"):
            kvcalcul.compute_table({**table, name: [0, 0, 0]}, ["TOT_PAYER"])
        kept = kvcalcul.compute_table({**table, name: [7, 8, 9]}, ["TOT_PAYER"], keep=[name])
        assert list(kept) == [name, "TOT_PAYER"]
    for name in ("w", "region", "1st", "2017", "id.x"):
        assert list(kvcalcul.compute_table({**table, name: [0, 0, 0]}, ["TOT_PAYER"])) == ["TOT_PAYER"]
    wrong: list[tuple[Any, dict[str, Any], type[Exception], str]] = [
        (table, {"outputs": ["TOT_PAYRE"]}, kvcalcul.UnknownName, "TOT_PAYER"),
        (table, {"outputs": ["TOT_PAYER", "TOT_PAYER"]}, kvcalcul.BadValue, "twice"),
        (table, {"outputs": "TOT_PAYER"}, TypeError, "list"),
        (table, {"outputs": ["net"], "keep": ["nobody"]}, kvcalcul.UnknownName, "nobody"),
        ({**table, "TOT_PAYER": [1, 2, 3]}, {"outputs": ["TOT_PAYER"], "keep": True}, kvcalcul.BadValue, "two columns"),
        ({"a": [1]}, {"outputs": ["net"]}, kvcalcul.BadValue, "no column is a box"),
        ({"1AJ": [1], "1BJ": [1, 2]}, {"outputs": ["net"]}, ValueError, "rows"),
        (table, {"outputs": ["net"], "threads": -1}, kvcalcul.BadValue, "threads"),
    ]
    for given_table, arguments, error, why in wrong:
        with pytest.raises(error, match=why):
            kvcalcul.compute_table(given_table, **arguments)
    with pytest.raises(ValueError, match="two columns are named 1AJ"):
        kvcalcul.compute_table(pd.DataFrame([[1, 2]], columns=["1AJ", "1AJ"]), ["net"])


def test_threads_progress_and_a_function_that_fails() -> None:
    table = {"1AJ": np.arange(20_000, dtype=np.int32)}
    alone = kvcalcul.compute_table(table, ["TOT_PAYER"], threads=1)["TOT_PAYER"]
    told: list[tuple[int, int]] = []
    found: list[Any] = []

    def work() -> None:
        found.append(kvcalcul.compute_table(table, ["TOT_PAYER"], threads=2)["TOT_PAYER"])

    threads = [threading.Thread(target=work) for _ in range(2)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    shown = kvcalcul.compute_table(table, ["TOT_PAYER"], progress=lambda done, rows: told.append((done, rows)))
    assert all(np.array_equal(alone, values) for values in (*found, shown["TOT_PAYER"]))
    assert told[0] == (0, 20_000) and told[-1] == (20_000, 20_000) and told == sorted(told)

    def stop(done: int, rows: int) -> None:
        raise RuntimeError("enough")

    with pytest.raises(RuntimeError, match="enough"):
        kvcalcul.compute_table(table, ["TOT_PAYER"], progress=stop)


def test_ctrl_c_stops_a_long_computation() -> None:
    program = (
        "import numpy as np, kvcalcul\n"
        "def told(done, rows):\n"
        "    if done: print('begun', flush=True)\n"
        "kvcalcul.compute_table({'1AJ': np.arange(30_000_000, dtype=np.int32)}, ['TOT_PAYER'], progress=told)\n"
    )
    child = subprocess.Popen([sys.executable, "-c", program], stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
    assert child.stdout is not None and child.stdout.readline() == "begun\n"
    child.send_signal(signal.SIGINT)
    _, errors = child.communicate(timeout=20)  # it would take minutes
    assert child.returncode != 0 and "KeyboardInterrupt" in errors


def test_reforms_worked_out_by_hand() -> None:
    # Alone: 54 000 bear 10 493.26, 90 000 bear 23 205.39; 1 % of what lies in the third bracket is 269.14 and 455.31.
    table = pd.DataFrame({"1AJ": [60000, 100000, 20000], "w": [2.0, 1.0, 7.0]}, index=["a", "b", "c"])
    law = kvcalcul.Law({"bareme.tranche3.taux": 31})
    changed = kvcalcul.reform(table, law, weights="w")
    assert changed.rows["difference"].to_dict() == {"a": 269, "b": 456, "c": 0}
    assert changed.rows["decile"].tolist() == [9, 10, 4]  # the middles of 7, 2 and 1 tenths
    summary = changed.summary("dict")
    assert {name: float(summary[name][0]) for name in ("households", "winners", "losers", "cost", "losses")} == {
        "households": 10, "winners": 0, "losers": 3, "cost": -994, "losses": 994,
    }  # fmt: skip
    assert changed.cost == -994 and changed.deciles()["cost"].tolist() == [0, -538, -456]
    back = kvcalcul.reform(table, kvcalcul.Law(), baseline=law, weights=table["w"].to_numpy(), figure="TOT_PAYER")
    assert back.cost == 994 and back.rows["difference"].tolist() == [-269, -456, 0]
    assert isinstance(kvcalcul.reform(pa.table({"1AJ": [60000]}), law).rows, pa.Table)
    assert kvcalcul.reform(pa.table({"1AJ": [60000]}).to_reader(), law).cost == -269
    assert pickle.loads(pickle.dumps(changed)).cost == -994
    for weights in (pa.array([2, 1, 7]), pl.Series([2, 1, 7]), pd.Series([2, 1, 7]), [2, 1, 7]):
        assert kvcalcul.reform(table, law, weights=weights).cost == -994
    with pytest.raises(kvcalcul.BadValue, match=r"weights, row 2 \(index c\)"):
        kvcalcul.reform(table, law, weights=np.array([1, 1, -1.0]))
    with pytest.raises(kvcalcul.UnknownName, match="weights"):
        kvcalcul.reform(table, law, weights="weight")


def test_pictures_show_the_figures() -> None:
    changed = kvcalcul.reform({"1AJ": [60000, 100000]}, kvcalcul.Law({"bareme.tranche3.taux": 31}))
    bars = kvcalcul.plot_deciles(changed).patches
    assert sorted(bar.get_height() for bar in bars if bar.get_height() != 0) == [-456, -269]
    curve = kvcalcul.curve({}, "1AJ", 40_000, 42_000, 1000)
    marginal, average, _ = kvcalcul.plot_marginal_rate(curve).lines
    assert marginal.get_ydata()[0] == pytest.approx(27)  # 30 % of nine tenths
    assert average.get_ydata()[-1] == pytest.approx(100 * curve.values[-1] / 42_000)


def test_what_is_missing_is_named(monkeypatch: pytest.MonkeyPatch) -> None:
    for module, call in (
        ("pandas", lambda: kvcalcul.boxes("7DB")),
        ("polars", lambda: kvcalcul.boxes("7DB", frame_kind="polars")),
        ("matplotlib.pyplot", lambda: kvcalcul.plot_marginal_rate(kvcalcul.curve({}, "1AJ", 0, 10, 5))),
        ("tqdm.auto", lambda: kvcalcul.compute_table(households(), ["net"], progress=True)),
    ):
        with monkeypatch.context() as without:
            without.setitem(sys.modules, module, None)
            with pytest.raises(ImportError, match=r"pip install 'kvcalcul\["):
                call()
