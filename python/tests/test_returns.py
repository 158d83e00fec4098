"""One return: the figures of the command line, and what a result reads like."""

from __future__ import annotations

import datetime
import json
import pickle
import subprocess
import threading
from typing import Any

import pytest
from conftest import CORPUS, as_json, launches, returns, tool
from hypothesis import given

import kvcalcul


@given(returns(), launches)
def test_a_return_is_that_of_the_command_line(amounts: dict[str, int], launch: Any) -> None:
    found = json.loads(tool("run", "--json", "-", stdin=as_json(amounts, launch=launch)))
    result = kvcalcul.compute(amounts, launch=launch)
    assert result.nonzero() == found["outputs"]
    assert kvcalcul.compute(json.loads(as_json(amounts)), launch=launch).nonzero() == result.nonzero()


def test_the_corpus_of_every_interface_is_that_of_the_command_line() -> None:
    documents = subprocess.run([CORPUS, "300"], capture_output=True, text=True, check=True).stdout
    found = [json.loads(line) for line in tool("batch", "--full", stdin=documents).splitlines()]
    returns = [json.loads(line) for line in documents.splitlines()]
    assert len(found) == len(returns) > 1000
    for document, expected in zip(returns, found, strict=True):
        settings = {name: document.pop(name) for name in ("launch", "indexation", "period") if name in document}
        result = kvcalcul.compute(document, **settings)
        outputs = expected["outputs"]
        assert result.nonzero() == {name: line["value"] for name, line in outputs.items() if line["value"] != 0}
        assert result.carried() == expected["carry_forwards"]
        for name in list(outputs)[::7]:
            line = outputs[name]
            assert (result.columns(name), result.text(name)) == ((line["c1"], line["c2"], line["c3"]), line["detail"])


def test_a_result_reads_like_a_mapping(couple: dict[str, int]) -> None:
    result = kvcalcul.compute(couple)
    assert (result["TOT_PAYER"], result["net"], result.net) == (5243, 5243, 5243)
    assert result.columns("RN_SAL") == (37800, 27900, 0)
    assert result["RN_SAL.c2"] == 27900
    assert result.carried()["F11_CE17"] == 65700
    assert result["F11_CE17"] == 65700
    assert result["U_DECOTE"] == 0  # nothing is written there
    assert len(result) == len(list(result)) == 2288
    assert "TOT_PAYER" in result and "TOT_PAYRE" not in result
    assert result.get("TOT_PAYRE", -1) == -1
    assert result.entries == couple
    assert result.text("TOT_PAYER") == "" and result.text("RN_SAL.c1") == ""
    with pytest.raises(kvcalcul.UnknownName, match="TOT_PAYER"):
        result["TOT_PAYRE"]
    with pytest.raises(kvcalcul.UnknownName, match="nearest"):
        result.text("TOT_PAYRE")
    assert result.options is None
    assert kvcalcul.compute({**couple, "C": 1}).warnings() and not result.warnings()


def test_amounts_are_whole_and_of_32_bits(couple: dict[str, int]) -> None:
    same = {"M": True, "Fm": 2.0, "1AJ": 42000, "1BJ": 31000, "2DC": None, "2TR": float("nan")}
    assert kvcalcul.compute(same)["TOT_PAYER"] == 5243
    born = kvcalcul.compute({"AAF1": datetime.date(1940, 5, 17), "1AS": 15000})
    assert born["A_AGEES"] == kvcalcul.compute({"AAF1": 19400517, "1AS": 15000})["A_AGEES"] == 2376
    for value, why in ((1.5, "whole"), (2**31, "32 bits"), ("12", "not a number"), (float("inf"), "whole")):
        with pytest.raises(kvcalcul.BadValue, match=f"1AJ.*{why}"):
            kvcalcul.compute({"1AJ": value})
    with pytest.raises(kvcalcul.UnknownName, match="3 is not the name"):
        kvcalcul.compute({3: 1})  # type: ignore[dict-item]
    with pytest.raises(kvcalcul.UnknownName, match="1AJ"):
        kvcalcul.compute({"1aj": 1})
    with pytest.raises(kvcalcul.BadValue, match="launch"):
        kvcalcul.compute({"1AJ": 1}, launch="sideways")  # type: ignore[arg-type]
    with pytest.raises(kvcalcul.BadValue, match="beside"):
        kvcalcul.compute({"entries": {"1AJ": 1}, "1BJ": 2})


def test_settings_reach_the_computation(couple: dict[str, int]) -> None:
    # 6 000 of dividends: 2 400 off, 14 % of 3 600 and levies; or 12.8 % of 6 000 and levies.
    dividends = {"1AJ": 20000, "2DC": 6000, "AVA": 1}
    options = kvcalcul.compute(dividends, launch="options").options
    assert options is not None and options.applied == ("scale" if options.scale < options.flat_tax else "flat_tax")
    assert kvcalcul.compute(dividends).options is None
    half = kvcalcul.compute(couple, period=("2017-01-01", datetime.date(2017, 6, 30)))
    assert 0 < half["REVENU_REF"] < 65700
    # The threshold of 27 086 rises by a tenth: both declarants' parts end within 14 %.
    assert kvcalcul.compute(couple, indexation=10)["TOT_PAYER"] < 5243
    law = kvcalcul.Law({"quotientFamilial.plafond.demiPart": 1500})
    assert kvcalcul.compute(couple, law=law)["TOT_PAYER"] == 5243 + 2 * 27


def test_why_and_what_if(couple: dict[str, int], tmp_path: Any) -> None:
    file = tmp_path / "couple.json"
    file.write_text(as_json(couple))
    result = kvcalcul.compute(couple)
    explanation = result.explain()
    assert explanation.value == 5243 and explanation.leaves() == {"1AJ": 42000, "1BJ": 31000}
    assert kvcalcul.Explanation.from_json(tool("explain", "--json", str(file))) == explanation
    seen = {line.split("  (voir plus haut)")[0].strip() for line in tool("explain", str(file)).splitlines()}
    assert seen <= {line.strip() for line in str(explanation).splitlines()}
    assert explanation._repr_html_().count("<details") == sum(bool(n._shown()) for n in explanation.walk())
    assert not result.explain("TOT_PAYER", depth=0).terms

    effects = result.effects("TOT_PAYER")
    assert {e.name: e.effect for e in effects}["Fm"] == 5243 - 8297
    more = kvcalcul.compute({**couple, "1AJ": 43000})
    change = kvcalcul.explain_difference(result, more)
    assert change["after"] - change["before"] == 270  # 30 % of 900

    curve = kvcalcul.curve(couple, "1AJ", 0, 5000, 2500, figure="TOT_PAYER")
    assert curve.amounts.tolist() == [0, 2500, 5000]
    assert curve.values.tolist() == [
        kvcalcul.compute({**couple, "1AJ": a})["TOT_PAYER"] for a in curve.amounts.tolist()
    ]
    pieces = kvcalcul.breaks(couple, "1AJ", 0, 60_000)
    expected = [line.split(",") for line in tool("breaks", str(file), "--box", "1AJ", "--to", "60000").split()[1:]]
    assert pieces.starts.tolist() == [int(line[0]) for line in expected]
    assert pieces.stops[-1] == 60_000 and list(pieces.frame().columns) == ["from", "to", "rate", "value"]
    with pytest.raises(kvcalcul.BadValue, match=r"stop.*32 bits"):
        kvcalcul.curve(couple, "1AJ", 0, 2**40)
    with pytest.raises(kvcalcul.UnknownName, match="1AX; nearest"):
        kvcalcul.curve(couple, "1AX")


def test_laws(couple: dict[str, int]) -> None:
    law = kvcalcul.Law().set("decote.plafond.couple", 2000).set("bareme.tranche3.taux", 31)
    assert law.changes() == {"decote.plafond.couple": 2000, "bareme.tranche3.taux": 31}
    assert kvcalcul.Law({"decote.plafond.couple": 1939}).changes() == {}
    copies = [law.copy(), pickle.loads(pickle.dumps(law)), eval(repr(law), {"Law": kvcalcul.Law})]
    assert all(copy == law and hash(copy) == hash(law) for copy in copies)
    copies[0].set("decote.plafond.couple", 1)
    assert law["decote.plafond.couple"] == 2000
    with pytest.raises(kvcalcul.UnknownName, match=r"decote\.plafond\.couple"):
        law.set("decote.plafond.coupel", 1)
    with pytest.raises(kvcalcul.BadValue, match="from 0 to 100"):
        law.set("bareme.tranche3.taux", 131)
    with pytest.raises(kvcalcul.BadValue, match="is not above"):
        kvcalcul.Law({"bareme.tranche3.seuil": 99_999}).validate()
    assert kvcalcul.parameters("decote")["value"].tolist()[:2] == [1177, 1939]

    # What was computed under a law stays so when the law goes on changing.
    result = kvcalcul.compute(couple, law=law)
    law.set("bareme.tranche3.taux", 40)
    again = pickle.loads(pickle.dumps(result))
    assert again.nonzero() == result.nonzero() and again.entries == couple
    assert result["TOT_PAYER"] == 5243 + 115  # 1 % of 11 528


def test_threads_share_a_result(couple: dict[str, int]) -> None:
    shared = kvcalcul.compute(couple)
    found: list[tuple[int, str, int]] = []

    def work() -> None:
        for salary in range(0, 60_000, 1000):
            own = kvcalcul.compute({**couple, "1AJ": salary})
            found.append((shared["TOT_PAYER"], str(shared.explain("RN_SAL", 1)), own["RN_SAL.c2"]))

    threads = [threading.Thread(target=work) for _ in range(4)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert len(found) == 240 and set(found) == {(5243, str(shared.explain("RN_SAL", 1)), 27900)}


def test_boxes_are_found_by_their_words() -> None:
    assert "7DB" in kvcalcul.boxes("emploi DOMICILE")["name"].tolist()
    outputs = kvcalcul.boxes("TOT_PAYER", catalogue="output", frame_kind="dict")
    assert outputs["name"].tolist() == ["TOT_PAYER"] and outputs["step"].tolist()[0].endswith("ImpotAPaye")
    assert kvcalcul.boxes(catalogue="carry", frame_kind="arrow").num_rows == 736
