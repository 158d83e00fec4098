"""Populations by parts: on two worker processes, and through what goes wrong on the way."""

from __future__ import annotations

import io
import json
import os
import pickle
import resource
import signal
import subprocess
import sys
import threading
import time
from collections.abc import Iterator
from pathlib import Path
from typing import Any

import dask
import dask.dataframe as dd
import distributed
import pandas as pd
import pyarrow as pa
import pyarrow.csv
import pyarrow.parquet as pq
import pytest
from conftest import tool

import kvcalcul
from kvcalcul import _job, _parts, _population, _table

FIGURES = ["TOT_PAYER", "net", "CO_19.c2", "F11_CE17"]
LAW = {"bareme.tranche3.taux": 31, "decote.plafond.couple": 2000}


@pytest.fixture(scope="module")
def cluster() -> Iterator[Any]:
    with distributed.LocalCluster(n_workers=2, threads_per_worker=1, dashboard_address=":0") as started:
        yield started


@pytest.fixture(scope="module")
def households() -> pd.DataFrame:
    """Made-up ones, with boxes that are empty and a column of texts."""
    text = tool("population", "60000")
    frame: pd.DataFrame = pa.csv.read_csv(pa.py_buffer(text.encode())).to_pandas()
    return frame.assign(region=["N", "S", "É"] * 20_000)


def run(*arguments: Any) -> int:
    return _population.main([str(argument) for argument in arguments])


def result(folder: Path) -> pa.Table:
    return pq.read_table(folder)


def split(households: pd.DataFrame, folder: Path, files: int) -> Path:
    folder.mkdir()
    rows = len(households) // files
    for number in range(files):
        households.iloc[number * rows : (number + 1) * rows].to_parquet(folder / f"{number:02}.parquet", index=False)
    return folder


def test_dask_is_one_process_row_for_row(cluster: Any, households: pd.DataFrame, tmp_path: Path) -> None:
    law = kvcalcul.Law(LAW)
    with distributed.Client(cluster):
        parted = dd.read_parquet(split(households, tmp_path / "in", 6))
        whole = parted.compute()  # texts are those of Dask
        expected = kvcalcul.compute_table(whole, FIGURES, law=law, launch="options", keep=["id", "region"])
        lazy = kvcalcul.dask.compute(parted, FIGURES, law=law, launch="options", keep=["id", "region"])
        pd.testing.assert_frame_equal(lazy._meta, expected.iloc[:0])
        found, before = dask.compute(lazy, kvcalcul.dask.compute(parted, ["TOT_PAYER"]))
        pd.testing.assert_frame_equal(found, expected)
        pd.testing.assert_frame_equal(before, kvcalcul.compute_table(whole, ["TOT_PAYER"]))
        assert before["TOT_PAYER"].sum() < found["TOT_PAYER"].sum()
        assert expected["id"].tolist() == households["id"].tolist()

        with pytest.raises(kvcalcul.UnknownName, match="nearest: TOT_PAYER"):
            kvcalcul.dask.compute(parted, ["TOT_PAYRE"])
        wrong = dd.from_pandas(pd.DataFrame({"1AJ": [1.0, 30000.0, 0.5, 60000.0]}, index=[7, 8, 9, 10]), npartitions=2)
        with pytest.raises(kvcalcul.BadValue, match=r"column 1AJ, row 0 \(index 9\): 0.5 is not a whole number"):
            kvcalcul.dask.compute(wrong, ["RN_SAL"]).compute()
        marked = kvcalcul.dask.compute(wrong, ["RN_SAL"], status="why").compute()
        assert marked["why"].tolist() == ["", "", "1AJ: 0.5 is not a whole number", ""]
        assert marked["RN_SAL"].fillna(-1).tolist() == [0, 27000, -1, 54000]


def test_a_task_is_for_the_library_that_sent_it(monkeypatch: pytest.MonkeyPatch) -> None:
    task = _table.Task(["TOT_PAYER"], kvcalcul.Law({"bareme.tranche3.taux": 31}))
    here = pickle.loads(pickle.dumps(task))
    # 54 000 bear 10 493.26, and 1 % of the 26 914 above 27 086 more.
    assert here({"1AJ": [60000]})["TOT_PAYER"].tolist() == [10762]
    name, (_, *arguments) = task.__reduce__()
    with pytest.raises(kvcalcul.Error, match=r"sent the work 2016\.9\.0"):
        name("2016.9.0", *arguments)


@pytest.mark.parametrize("kind", ["pandas", "polars", "arrow", "dict"])
def test_a_row_that_can_t_be_computed_has_a_status(kind: Any) -> None:
    frame = kvcalcul._frames.frame({"id": [1, 2, 3], "1AJ": [30000.0, 0.5, 60000.0]}, kind)
    table = kvcalcul.compute_table(frame, ["RN_SAL"], keep=["id"], status="status")
    columns = {name: list(table[name]) for name in ("id", "status")}
    assert [str(text) for text in columns["status"]] == ["", "1AJ: 0.5 is not a whole number", ""]
    figures = pd.Series([27000, None, 54000], dtype="Int64")
    found = (
        table["RN_SAL"].to_pylist()
        if kind == "arrow"
        else table["RN_SAL"].tolist()
        if kind == "dict"
        else list(table["RN_SAL"])
    )
    assert pd.Series(found, dtype="Int64").equals(figures)
    with pytest.raises(kvcalcul.BadValue, match="two columns"):
        kvcalcul.compute_table(frame, ["RN_SAL"], keep=["id"], status="id")


def test_a_population_under_several_laws(cluster: Any, households: pd.DataFrame, tmp_path: Path) -> None:
    reform = tmp_path / "reform.json"
    reform.write_text(json.dumps(LAW))
    households.iloc[:25_000].to_parquet(tmp_path / "a.parquet", index=False, row_group_size=10_000)
    other = households.iloc[25_000:, ::-1].assign(Fm=households["Fm"].fillna(0).astype("int8"))
    other.to_parquet(tmp_path / "b.parquet", index=False)
    folder = tmp_path / "figures"
    outputs = ",".join(FIGURES)
    command = [tmp_path / "a.parquet", tmp_path / "b.parquet", "-o", folder, "--outputs", outputs]
    command += ["--law", "year", "--law", reform, "--scheduler", cluster.scheduler_address]
    assert run(*command, "--keep", "region,id") == 0
    written = result(folder)
    assert written.column_names == [
        *("region", "id"),
        *(f"{name}@year" for name in FIGURES),
        *(f"{name}@reform" for name in FIGURES),
        "status",
    ]
    assert written["id"].to_pylist() == households["id"].tolist()
    for name, law in {"year": None, "reform": kvcalcul.Law(LAW)}.items():
        expected = kvcalcul.compute_table(households, FIGURES, law=law)
        for figure in FIGURES:
            assert written[f"{figure}@{name}"].to_pylist() == expected[figure].tolist()
    manifest = json.loads((folder / "_manifest.json").read_text())
    assert (manifest["rows"], manifest["refused"], manifest["kvcalcul"]) == (60_000, 0, kvcalcul.__version__)
    assert manifest["laws"] == {"year": {}, "reform": LAW}
    assert [(one["rows"], one["sha256"]) for one in manifest["parts"]] == [
        (rows, _job.digest(folder / one["file"])) for rows, one in zip((25_000, 35_000), manifest["parts"], strict=True)
    ]
    for one in manifest["inputs"]:
        assert one["sha256"] == _job.digest(one["path"])


def test_a_csv_population_is_that_of_the_table_command(tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> None:
    """Cut anywhere, with line ends and separators between quotes."""
    monkeypatch.setattr(_parts, "_BLOCK", 700)
    monkeypatch.setattr(_parts, "ROWS", 40)
    lines = tool("population", "500").splitlines()
    names = ["one", '"two\nlines"', '"a ""quoted"" , word\n\n"', 'e"e', '""', ""]
    text = "\ufeffname," + "\r\n".join([lines[0], *(f"{names[row % 6]},{line}" for row, line in enumerate(lines[1:]))])
    (tmp_path / "in.csv").write_bytes(text.encode())
    population = _population._opened([str(tmp_path / "in.csv")], None)
    cut = _parts.parts(population)
    assert len(cut) > 8 and [part.end for part in cut[:-1]] == [part.start for part in cut[1:]]
    job = _job.Job(str(tmp_path), {"": _table.Task(["TOT_PAYER"], keep=population[0].kept, status="status")})
    for number, part in enumerate(cut):
        assert _job.compute_part(job, number, part, "key").rows == part.rows
    found = pa.concat_tables([pq.read_table(path) for path in sorted(tmp_path.glob("part-*"))]).to_pandas()
    written = pd.read_csv((tmp_path / "in.csv"), dtype=str, keep_default_na=False, usecols=["name", "id", "weight"])
    assert found[["name", "id", "weight"]].to_numpy().tolist() == written.to_numpy().tolist()
    table = tool("table", str(tmp_path / "in.csv"), "--outputs", "TOT_PAYER")
    expected = pd.read_csv(io.StringIO(table))
    assert found["TOT_PAYER"].tolist() == expected["TOT_PAYER"].tolist() and not any(found["status"])


def test_a_bad_row_does_not_stop_a_part(tmp_path: Path, capfd: pytest.CaptureFixture[str]) -> None:
    (tmp_path / "in.csv").write_bytes(
        b"id;M;1AJ\na;;30000\nb;;12,5\nc;;60000;7\nd\ne;1;60000.00\n\nf;;0x10\ng;;9999999999\nh\xe9;;1\n"
    )
    (tmp_path / "only-a-header.csv").write_text("id;M;1AJ\n\n")
    assert run(tmp_path, "-o", tmp_path / "out", "--outputs", "RN_SAL,TOT_PAYER", "--workers", 1) == 1
    rows = result(tmp_path / "out").to_pylist()
    assert [row["id"] for row in rows] == [*"abcdefg", "h\ufffd"]
    # 27 000 alone bear 2 407.02; 54 000 over two parts twice as much, 4 814.04.
    assert [(row["RN_SAL"], row["TOT_PAYER"]) for row in rows if not row["status"]] == [(27000, 2407), (54000, 4814)]
    refused = {row["id"]: row["status"] for row in rows if row["status"]}
    assert refused == {
        "b": "1AJ: '12,5' is not a number",
        "c": "4 fields where the header has 3",
        "d": "1 fields where the header has 3",
        "f": "1AJ: '0x10' is not a number",
        "g": "1AJ: 9999999999 does not fit in 32 bits",
        "h\ufffd": "not UTF-8",
    }
    assert all(row["RN_SAL"] is None for row in rows if row["status"])
    told = capfd.readouterr().err
    assert f"{tmp_path / 'in.csv'}, row 2: 1AJ: '12,5' is not a number" in told and "6 rows not computed" in told


def test_a_worker_that_is_killed_costs_nothing(cluster: Any, households: pd.DataFrame, tmp_path: Path) -> None:
    source, folder = split(households, tmp_path / "in", 12), tmp_path / "out"
    ended: list[int] = []
    command = (source, "-o", folder, "--outputs", "TOT_PAYER", "--scheduler", cluster.scheduler_address)
    thread = threading.Thread(target=lambda: ended.append(run(*command)))
    with distributed.Client(cluster) as client:
        before = set(client.run(os.getpid).values())
        thread.start()
        while not list(folder.glob("part-*")):
            time.sleep(0.01)
        os.kill(min(before), signal.SIGKILL)
        thread.join(120)
        client.wait_for_workers(2, timeout=60)
        assert set(client.run(os.getpid).values()) != before
    assert ended == [0]
    assert (
        result(folder)["TOT_PAYER"].to_pylist()
        == kvcalcul.compute_table(households, ["TOT_PAYER"])["TOT_PAYER"].tolist()
    )
    assert not [path for path in folder.iterdir() if path.name.startswith(".")]


COMMAND = [sys.executable, "-c", "from kvcalcul._population import main; raise SystemExit(main())"]


def test_ctrl_c_in_a_terminal_leaves_what_is_written(households: pd.DataFrame, tmp_path: Path) -> None:
    source, folder = split(households, tmp_path / "in", 12), tmp_path / "out"
    command = [*COMMAND, str(source), "-o", str(folder), "--outputs", "TOT_PAYER", "--workers", "1", "--quiet"]
    child = subprocess.Popen(command, stderr=subprocess.PIPE, text=True, start_new_session=True)
    while not list(folder.glob("part-*")):
        time.sleep(0.01)
    os.killpg(child.pid, signal.SIGINT)
    _, told = child.communicate(timeout=60)
    assert (child.returncode, told.count("\n")) == (130, 1) and told.startswith("stopped: what is written stays")
    assert 0 < len(list(folder.glob("part-*"))) < 12
    assert run(*command[3:]) == 0
    expected = kvcalcul.compute_table(households, ["TOT_PAYER"])
    assert result(folder)["TOT_PAYER"].to_pylist() == expected["TOT_PAYER"].tolist()


def test_a_full_disk_is_reported_and_a_restart_completes(households: pd.DataFrame, tmp_path: Path) -> None:
    source, folder = tmp_path / "in", tmp_path / "out"
    source.mkdir()
    households.iloc[:1000].to_parquet(source / "a.parquet", index=False)
    households.to_parquet(source / "b.parquet", index=False)
    command = [*COMMAND, str(source), "-o", str(folder), "--outputs", "TOT_PAYER,REVENU_REF", "--workers", "1"]

    def small() -> None:  # a file that grows beyond this fails in the middle of its writing
        resource.setrlimit(resource.RLIMIT_FSIZE, (100_000, resource.RLIM_INFINITY))

    stopped = subprocess.run(command, preexec_fn=small, capture_output=True, text=True)
    assert stopped.returncode == 2
    assert "the disk is full" in stopped.stderr and "1 of 2 parts are written" in stopped.stderr
    assert [path.name for path in folder.iterdir()] == ["part-00000.parquet"]
    kept = (folder / "part-00000.parquet").stat()
    again = subprocess.run(command, capture_output=True, text=True)
    assert again.returncode == 0 and "1 of them written before" in again.stderr
    assert (folder / "part-00000.parquet").stat().st_ino == kept.st_ino
    expected = kvcalcul.compute_table(households, ["TOT_PAYER"])["TOT_PAYER"].tolist()
    assert result(folder)["TOT_PAYER"].to_pylist() == expected[:1000] + expected


def test_what_a_population_is_refused_for(tmp_path: Path, capsys: pytest.CaptureFixture[str]) -> None:
    for name, header in {"a": "id,1AJ", "b": "id,1BJ", "c": "id,1aj", "d": "1AJ,1AJ", "e": "id"}.items():
        (tmp_path / f"{name}.csv").write_text(f"{header}\n1,2\n")
    (tmp_path / "law.json").write_text('{"decote.plafond.couples": 1}')
    (tmp_path / "no.parquet").write_text("PAR")
    (tmp_path / "other").mkdir()
    a, out = tmp_path / "a.csv", ["--outputs", "TOT_PAYER"]
    wrong: list[tuple[list[Any], str]] = [
        ([a, tmp_path / "b.csv", *out], "b.csv has not the columns of .*a.csv: 1AJ, 1BJ"),
        ([tmp_path / "c.csv", *out], 'c.csv: column "1aj".*nearest'),
        ([tmp_path / "d.csv", *out], "d.csv: two columns are named 1AJ"),
        ([tmp_path / "e.csv", *out], "e.csv: no column is a box"),
        ([tmp_path / "no.parquet", *out], "no.parquet: "),
        ([tmp_path / "none.csv", *out], "none.csv: no such file"),
        ([tmp_path / "other", *out], "other: no .parquet"),
        ([a, "--outputs", "TOT_PAYRE"], "nearest: TOT_PAYER"),
        ([a, *out, "--law", tmp_path / "law.json"], "law.json: .*decote.plafond.couple"),
        ([a, *out, "--law", "year", "--law", "year"], "year stands twice"),
        ([a, *out, "--keep", "nobody"], 'no column is named "nobody"'),
        ([a, *out, "--scheduler", "tcp://127.0.0.1:9"], "no scheduler answers at tcp://127.0.0.1:9"),
    ]
    for arguments, why in wrong:
        with dask.config.set({"distributed.comm.timeouts.connect": "1s"}):
            assert run(*arguments, "-o", tmp_path / "out") == 2
        told = capsys.readouterr().err
        assert pd.Series([told]).str.contains(why).all(), told
    (tmp_path / "out").mkdir(exist_ok=True)
    pq.write_table(pa.table({"a": [1]}), tmp_path / "out" / "part-00000.parquet")
    assert run(a, "-o", tmp_path / "out", *out) == 2
    assert "is of another computation" in capsys.readouterr().err
