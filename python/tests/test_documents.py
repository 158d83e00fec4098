"""The examples of the documents, as they stand."""

from __future__ import annotations

import doctest
import re
from pathlib import Path
from typing import Any

import pytest
from conftest import ROOT

import kvcalcul


def test_the_page(tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.chdir(tmp_path)
    options = doctest.ELLIPSIS | doctest.NORMALIZE_WHITESPACE
    found = doctest.testfile(str(ROOT / "docs" / "python.md"), module_relative=False, optionflags=options)
    assert found.attempted > 30 and found.failed == 0


def test_the_readme() -> None:
    code = re.findall(r"```python\n(.*?)```", (ROOT / "python" / "README.md").read_text(), re.S)
    names: dict[str, Any] = {"households": {"1AJ": [60000]}}
    exec("\n".join(code), names)
    assert names["result"]["TOT_PAYER"] == 5243 and names["figures"]["TOT_PAYER"].tolist() == [10493]


def test_every_public_name_says_what_it_is() -> None:
    for name in kvcalcul.__all__:
        assert getattr(kvcalcul, name).__doc__, name
    assert all(not name.startswith("_") or name == "__version__" for name in kvcalcul.__all__)
