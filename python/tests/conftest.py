"""Random returns of every kind, and the command line to compare with."""

from __future__ import annotations

import json
import os
import subprocess
from pathlib import Path
from typing import Any

import pytest
from hypothesis import settings
from hypothesis import strategies as st

import kvcalcul
from kvcalcul import _library as lib

os.environ.setdefault("MPLBACKEND", "Agg")
settings.register_profile("project", deadline=None, max_examples=200, database=None)
settings.load_profile("project")

ROOT = Path(__file__).parents[2]
TOOL = os.environ.get("KVCALCUL", str(ROOT / "build" / "release" / "kvcalcul"))
CORPUS = os.environ.get("KVCORPUS", str(Path(TOOL).parent / "tests" / "kv_corpus"))
ENTRIES = kvcalcul.boxes(catalogue="entry", frame_kind="dict")
NAMES: list[str] = ENTRIES["name"].tolist()
KINDS = dict(zip(NAMES, ENTRIES["kind"].tolist(), strict=True))
_BOXES = [lib.describe_box(lib.ENTRY, number) for number in range(len(NAMES))]


def _amount(name: str) -> st.SearchStrategy[int]:
    euros = st.one_of(st.integers(-5000, 80_000), st.integers(-(2**31) + 2, 2**31 - 1))
    return {"tick": st.just(1), "count": st.integers(0, 4), "euros": euros}.get(KINDS[name], st.integers(0, 2018))


@st.composite
def returns(draw: st.DrawFn) -> dict[str, int]:
    """Ordinary boxes and any others, companions, exceptional amounts."""
    names = draw(st.lists(st.sampled_from(["M", "1AJ", "1BJ", "1AS", "2DC", "4BA", "5KO", "7UF"]), unique=True))
    names += draw(st.lists(st.sampled_from(NAMES), max_size=20, unique=True))
    amounts = {name: draw(_amount(name)) for name in names}
    for prefix, place in (("ti", "ti"), ("tix", "tix"), ("tiy", "tix"), ("tk", "tk"), ("tkz", "tk")):
        having = [lib.text(box.name) for box in _BOXES if getattr(box, place) >= 0]
        for name in draw(st.lists(st.sampled_from(having), max_size=1)):
            amounts[f"{prefix}.{name}"] = draw(st.integers(-3000, 50_000))
    having = [lib.text(box.name) for box in _BOXES if box.quotient >= 0]
    for name in draw(st.lists(st.sampled_from(having), max_size=1)):
        amounts[f"quotient.{draw(st.integers(2, 5))}.{name}"] = draw(st.integers(1, 50_000))
    return amounts


launches = st.sampled_from(["normal", "options", "forced", "forced-options"])


def as_json(amounts: dict[str, int], **settings: Any) -> str:
    """A return as the command line reads it."""
    document: dict[str, Any] = {"entries": {}, **settings}
    for name, value in amounts.items():
        area, _, box = name.rpartition(".")
        if area.startswith("quotient"):
            document.setdefault("quotients", {}).setdefault(box, {})[area.partition(".")[2]] = value
        else:
            document.setdefault(area or "entries", {})[box] = value
    return json.dumps(document)


def tool(*arguments: str, stdin: str = "") -> str:
    """What a call of the command line writes."""
    return subprocess.run([TOOL, *arguments], input=stdin, capture_output=True, text=True, check=True).stdout


@pytest.fixture
def couple() -> dict[str, int]:
    """Two children, 42 000 and 31 000: 65 700 over two parts bear 8 297, less twice 1 527."""
    return {"M": 1, "Fm": 2, "1AJ": 42000, "1BJ": 31000}
