"""The law: the figures of the year, or others laid over them."""

from __future__ import annotations

import json
from collections.abc import Iterator, Mapping
from ctypes import byref, c_double, c_void_p, sizeof
from functools import lru_cache
from pathlib import Path
from typing import Any

from . import _library as lib
from ._frames import FrameKind, frame


@lru_cache(maxsize=1)
def _names() -> tuple[str, ...]:
    return tuple(lib.text(_describe(i).name) for i in lib.numbers(lib.kv.kv_parameter_search, b""))


def _describe(number: int) -> lib.Parameter:
    parameter = lib.Parameter(size=sizeof(lib.Parameter))
    lib.check(lib.kv.kv_parameter_describe(number, byref(parameter)))
    return parameter


class Law(Mapping[str, float]):
    """The law of the year, with the figures that a reform changes.

    It reads like a mapping of parameters to values, as a reader writes them: 1939 euros, 12.8 percent, 65 years.

        Law().set("decote.plafond.couple", 2000)
        Law({"bareme.tranche3.taux": 31})

    Unknown names raise UnknownName with the nearest, values that can't stand BadValue. Copies are independent; a law is
    for one thread at a time.
    """

    __slots__ = ("_pointer",)

    def __init__(self, changes: Mapping[str, float] | None = None) -> None:
        self._pointer = c_void_p()
        lib.check(lib.kv.kv_law_create(byref(self._pointer)))
        for name, value in (changes or {}).items():
            self.set(name, value)

    def __del__(self, free: Any = lib.kv.kv_law_free) -> None:
        free(self._pointer)

    def _check(self, status: int) -> None:
        if status != lib.OK:
            lib.fail(status, lib.kv.kv_law_message(self._pointer))

    def set(self, parameter: str, value: float) -> Law:
        """Sets a figure and gives the law back, to set the next one."""
        self._check(lib.kv.kv_law_set(self._pointer, parameter.encode(), float(value)))
        return self

    @classmethod
    def read(cls, path: str | Path) -> Law:
        """A law file, as the command line reads it: a JSON object of parameters and values. Errors name the file."""
        try:
            changes = json.loads(Path(path).read_text(encoding="utf-8"), object_pairs_hook=_once)
            if not isinstance(changes, dict):
                raise lib.BadValue("a reform is an object of parameters and values")
            for name, value in changes.items():
                if isinstance(value, bool) or not isinstance(value, (int, float)):
                    raise lib.BadValue(f"{name}: {json.dumps(value)} is not a number")
            return cls(changes).validate()
        except (lib.Error, ValueError) as error:  # JSON and UTF-8 errors are ValueErrors
            kind = type(error) if isinstance(error, lib.Error) else lib.BadValue
            raise kind(f"{path}: {error}") from None

    def validate(self) -> Law:
        """Raises BadValue when the law can't be applied: thresholds that do not ascend."""
        self._check(lib.kv.kv_law_check(self._pointer))
        return self

    def copy(self) -> Law:
        return Law(self.changes())

    def changes(self) -> dict[str, float]:
        """What differs from the law of the year."""
        year = _year()
        return {name: value for name, value in self.items() if value != year[name]}

    def __getitem__(self, parameter: str) -> float:
        value = c_double()
        self._check(lib.kv.kv_law_get(self._pointer, parameter.encode(), byref(value)))
        return value.value

    def __iter__(self) -> Iterator[str]:
        return iter(_names())

    def __len__(self) -> int:
        return len(_names())

    def __eq__(self, other: object) -> bool:
        return isinstance(other, Law) and self.changes() == other.changes()

    def __hash__(self) -> int:
        return hash(frozenset(self.changes().items()))

    def __repr__(self) -> str:
        changes = self.changes()
        return f"Law({changes})" if changes else "Law()"

    def __reduce__(self) -> tuple[type[Law], tuple[dict[str, float]]]:
        return Law, (self.changes(),)


def _once(pairs: list[tuple[str, Any]]) -> dict[str, Any]:
    changes = dict(pairs)
    if len(changes) < len(pairs):
        names = [name for name, _ in pairs]
        raise lib.BadValue(f"{next(name for name in names if names.count(name) > 1)} stands twice")
    return changes


@lru_cache(maxsize=1)
def _year() -> dict[str, float]:
    return {name: _describe(i).value for i, name in enumerate(_names())}


def parameters(words: str = "", frame_kind: FrameKind = "pandas") -> Any:
    """The figures of the law whose name or source contains a text, as a frame: name, value, unit, indexed, source."""
    found = [_describe(i) for i in lib.numbers(lib.kv.kv_parameter_search, words.encode())]
    columns: dict[str, list[Any]] = {
        "name": [lib.text(p.name) for p in found],
        "value": [p.value for p in found],
        "unit": [lib.text(p.unit) for p in found],
        "indexed": [bool(p.indexed) for p in found],
        "source": [lib.text(p.source) for p in found],
    }
    return frame(columns, frame_kind)
