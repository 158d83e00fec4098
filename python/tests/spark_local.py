"""Spark on two threads of this machine; "./kv python spark" runs it."""

from __future__ import annotations

import os
import sys
from collections.abc import Iterator
from typing import Any

import pandas as pd
import pyarrow as pa
import pyarrow.csv
import pytest
from conftest import tool
from pyspark.sql import SparkSession

import kvcalcul


@pytest.fixture(scope="module")
def session() -> Iterator[Any]:
    builder = SparkSession.builder.master("local[2]").config("spark.ui.enabled", "false")
    os.environ["PYSPARK_PYTHON"] = sys.executable
    started = builder.getOrCreate()
    started.sparkContext.setLogLevel("OFF")
    yield started
    started.stop()


def test_spark_is_one_process_row_for_row(session: Any) -> None:
    figures = ["TOT_PAYER", "net", "CO_19.c2", "F11_CE17"]
    made = pa.csv.read_csv(pa.py_buffer(tool("population", "30000").encode()))
    law = kvcalcul.Law({"bareme.tranche3.taux": 31})
    expected = kvcalcul.compute_table(made, figures, law=law, launch="options", keep=["id", "weight"])
    frame = session.createDataFrame(made).repartition(5)
    computed = kvcalcul.spark.compute(frame, figures, law=law, launch="options", keep=["id", "weight"])
    assert computed.columns == expected.schema.names
    assert [field.dataType.simpleString() for field in computed.schema][2:] == ["int"] * 4
    found = computed.toPandas().sort_values("id", ignore_index=True)
    pd.testing.assert_frame_equal(found, expected.to_pandas())


def test_what_is_wrong_is_told(session: Any) -> None:
    frame = session.createDataFrame([(1, 30000.0), (2, 0.5), (3, 60000.0)], ["id", "1AJ"])
    with pytest.raises(kvcalcul.UnknownName, match="nearest: TOT_PAYER"):
        kvcalcul.spark.compute(frame, ["TOT_PAYRE"])
    with pytest.raises(Exception, match=r"column 1AJ, row \d: 0\.5 is not a whole number"):
        kvcalcul.spark.compute(frame, ["RN_SAL"]).collect()
    rows = kvcalcul.spark.compute(frame, ["RN_SAL"], keep=["id"], status="why").orderBy("id").collect()
    assert [tuple(row) for row in rows] == [(1, 27000, ""), (2, None, "1AJ: 0.5 is not a whole number"), (3, 54000, "")]
