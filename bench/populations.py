"""How fast a population is computed: one process, one worker, two; and Tax-Calculator, of another country, beside it.

./kv bench populations [ROWS] runs it (two million unless said). Each measure is a process of its own, one after the
other, so that its memory is its own; ratios within one run are what to read.
"""

from __future__ import annotations

import json
import resource
import shutil
import subprocess
import sys
import time
from pathlib import Path
from typing import Any

PLACE = Path("build/bench/populations")
OUTPUTS = ["TOT_PAYER", "REVENU_REF", "TOT_R_IMPOS", "net"]


def peak() -> int:
    """Most memory of this process, or of one that it waited for, MB."""
    both = (resource.getrusage(who).ru_maxrss for who in (resource.RUSAGE_SELF, resource.RUSAGE_CHILDREN))
    return max(both) // 1024


def made(rows: int) -> Path:
    """A made-up population in Parquet, row groups of 100 000."""
    path = PLACE / f"{rows}.parquet"
    if not path.exists():
        import pyarrow.csv
        import pyarrow.parquet as pq

        text = PLACE / "made.csv"
        subprocess.run(
            ["build/release/kvcalcul", "population", str(rows), "-o", str(text)], check=True, capture_output=True
        )
        pq.write_table(pyarrow.csv.read_csv(text), path, row_group_size=100_000)
        text.unlink()
    return path


def one_process(rows: int) -> dict[str, Any]:
    """Part by part in this process, without a scheduler: how much of the time computes."""
    from kvcalcul import _job, _parts, _population, _table

    population = _population._opened([str(made(rows))], "id,weight")
    spent = 0.0

    class Timed(_table.Run):
        def _compute_columns(self, *arguments: Any) -> int:
            nonlocal spent
            begun = time.perf_counter()
            status = super()._compute_columns(*arguments)
            spent += time.perf_counter() - begun
            return status

    task = _table.Task(OUTPUTS, threads=1, keep=population[0].kept, status="status")
    task._run = Timed(threads=1)
    job = _job.Job(str(PLACE), {"": task})
    begun = time.perf_counter()
    for number, part in enumerate(_parts.parts(population)):
        _job.compute_part(job, number, part, "")
    seconds = time.perf_counter() - begun
    return {"seconds": seconds, "computes": spent / seconds, "MB": peak()}


def workers(rows: int, count: int) -> dict[str, Any]:
    """The command, from its start to its manifest."""
    command = [str(Path(sys.executable).with_name("kvcalcul-population")), str(made(rows)), "-o", str(PLACE / "out")]
    command += ["--outputs", ",".join(OUTPUTS), "--keep", "id,weight", "--workers", str(count), "--quiet"]
    shutil.rmtree(PLACE / "out", ignore_errors=True)
    begun = time.perf_counter()
    subprocess.run(command, check=True)
    return {"seconds": time.perf_counter() - begun, "MB": peak()}


def salaries(rows: int) -> tuple[Any, Any, Any]:
    """Who is married, and what both earn, of one distribution for both countries."""
    import numpy as np

    random = np.random.default_rng(2017)
    married = random.random(rows) < 0.35
    first, second = (random.lognormal(centre, 0.6, rows).astype(np.int32) for centre in (10, 9.8))
    return married, first, np.where(married, second, 0).astype(np.int32)


def this_library(rows: int) -> dict[str, Any]:
    import kvcalcul

    married, first, second = salaries(rows)
    table = {"M": married, "1AJ": first, "1BJ": second}
    begun = time.perf_counter()
    kvcalcul.compute_table(table, ["TOT_PAYER"], threads=1)
    return {"seconds": time.perf_counter() - begun, "MB": peak()}


def tax_calculator(rows: int) -> dict[str, Any]:
    """Compiled and warm; from the columns to the liabilities, and the computation alone."""
    import pandas as pd
    import taxcalc

    def run(married: Any, first: Any, second: Any) -> dict[str, Any]:
        persons = married + 1
        columns = {"RECID": range(1, len(first) + 1), "MARS": persons, "XTOT": persons, "FLPDYR": 2017}
        columns |= {"e00200p": first * 1.0, "e00200s": second * 1.0, "e00200": first + second * 1.0}
        frame = pd.DataFrame(columns)
        begun = time.perf_counter()
        records = taxcalc.Records(data=frame, start_year=2017, gfactors=None, weights=None)
        calculator = taxcalc.Calculator(policy=taxcalc.Policy(), records=records)
        ready = time.perf_counter()
        calculator.calc_all()
        ended = time.perf_counter()
        return {"seconds": ended - begun, "computes": (ended - ready) / (ended - begun)}

    run(*salaries(1000))
    return {**run(*salaries(rows)), "MB": peak()}


def measure(name: str, rows: int, python: str = sys.executable) -> dict[str, Any]:
    """One of the functions above in a process of its own."""
    command = [python, __file__, str(rows), name]
    answer = subprocess.run(command, check=True, capture_output=True, text=True).stdout
    found: dict[str, Any] = json.loads(answer.splitlines()[-1])
    share = f", {found['computes']:.0%} of it computes" if "computes" in found else ""
    print(
        f"{name:16} {rows / 1e6:4.1f} M rows {found['seconds']:6.1f} s {rows / found['seconds']:9,.0f} rows/s"
        f" {found['MB']:6} MB{share}"
    )
    return found


def main() -> None:
    rows = int(sys.argv[1]) if len(sys.argv) > 1 else 2_000_000
    if len(sys.argv) > 2:
        name, *count = sys.argv[2].split(":")
        print(json.dumps(globals()[name](rows, *map(int, count)), default=str))
        return
    PLACE.mkdir(parents=True, exist_ok=True)
    subprocess.run([sys.executable, __file__, str(rows), "made"], check=True, capture_output=True)
    one = measure("one_process", rows)
    measure("workers:1", rows)
    two = measure("workers:2", rows)
    print(f"{'':16} two workers are {one['seconds'] / two['seconds']:.2f} times as fast as one process")
    measure("this_library", rows // 4)
    measure("tax_calculator", rows // 4, "build/bench/env/bin/python")


if __name__ == "__main__":
    main()
