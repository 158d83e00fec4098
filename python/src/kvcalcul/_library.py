"""The shared library that the package carries, and the functions of ``kv.h`` as ctypes sees them.

ctypes belongs to Python itself, asks for no compiler and no particular Python, and lets go of the interpreter while a
function runs: one wheel fits every version.
"""

from __future__ import annotations

import ctypes
import sys
from ctypes import POINTER, Structure, byref, c_char_p, c_double, c_int32, c_int64, c_size_t, c_void_p
from pathlib import Path
from typing import Any, NoReturn

OK, BAD_VALUE, TOO_SMALL, UNKNOWN, NO_AMOUNT, NO_MEMORY, CANCELLED = 0, 5, 7, 3, 4, 8, 10
ENTRY, OUTPUT, CARRY = 0, 1, 2
UNSET = -2147483647
LAUNCHES = {"normal": 0, "options": 1, "forced": 2, "forced-options": 3}


class Error(Exception):
    """The library could not do what it was asked for."""


class UnknownName(Error, KeyError):
    """No box, figure or parameter has this name; the message names the nearest."""

    def __str__(self) -> str:
        return str(self.args[0])


class BadValue(Error, ValueError):
    """A value that can't stand where it was put."""


class Box(Structure):
    _fields_ = [
        ("size", c_size_t),
        ("name", c_char_p),
        ("label", c_char_p),
        ("kind", c_int32),
        ("person", c_int32),
        ("kind_name", c_char_p),
        ("person_name", c_char_p),
        ("group", c_char_p),
        ("group_number", c_int32),
        ("linked", c_int32),
        ("quotient", c_int32),
        ("ti", c_int32),
        ("tix", c_int32),
        ("tk", c_int32),
        ("carried", c_int32),
        ("step", c_char_p),
        ("columns", c_char_p * 3),
        ("next", c_char_p),
        ("takes", c_char_p),
    ]


class Parameter(Structure):
    _fields_ = [
        ("size", c_size_t),
        ("name", c_char_p),
        ("unit", c_char_p),
        ("source", c_char_p),
        ("indexed", c_int32),
        ("decimals", c_int32),
        ("value", c_double),
        ("minimum", c_double),
        ("maximum", c_double),
    ]


class Options(Structure):
    _fields_ = [("size", c_size_t), *((name, c_int32) for name in ("compared", "flat_tax", "scale", "applied"))]


class InputColumn(Structure):
    _fields_ = [("name", c_char_p), ("values", c_void_p)]


class OutputColumn(Structure):
    _fields_ = [("name", c_char_p), ("values", c_void_p)]


PROGRESS = ctypes.CFUNCTYPE(c_int32, c_int64, c_int64, c_void_p)


class Columns(Structure):
    _fields_ = [
        ("size", c_size_t),
        ("rows", c_int64),
        ("inputs", POINTER(InputColumn)),
        ("input_count", c_int32),
        ("output_count", c_int32),
        ("outputs", POINTER(OutputColumn)),
        ("statuses", c_void_p),
        ("progress", PROGRESS),
        ("context", c_void_p),
        ("threads", c_int32),
        ("reserved", c_int32),
    ]


class Effect(Structure):
    _fields_ = [
        ("size", c_size_t),
        ("name", c_char_p),
        *((name, c_int32) for name in ("entry", "amount", "without", "change", "changed", "reserved")),
    ]


class Range(Structure):
    _fields_ = [
        ("size", c_size_t),
        ("amount", c_char_p),
        *((name, c_int32) for name in ("from_", "to", "step", "threads")),
        ("figure", c_char_p),
        ("progress", PROGRESS),
        ("context", c_void_p),
    ]


class Piece(Structure):
    _fields_ = [("from_", c_int32), ("to", c_int32), ("rate", c_double), ("value", c_int32)]


_PROTOTYPES: dict[str, list[Any]] = {
    "kv_box_count": [c_int32, POINTER(c_int32)],
    "kv_box_find": [c_int32, c_char_p, POINTER(c_int32)],
    "kv_box_describe": [c_int32, c_int32, POINTER(Box)],
    "kv_box_search": [c_int32, c_char_p, POINTER(c_int32), c_int32, POINTER(c_int32)],
    "kv_parameter_search": [c_char_p, POINTER(c_int32), c_int32, POINTER(c_int32)],
    "kv_parameter_describe": [c_int32, POINTER(Parameter)],
    "kv_law_create": [POINTER(c_void_p)],
    "kv_law_copy": [c_void_p, POINTER(c_void_p)],
    "kv_law_set": [c_void_p, c_char_p, c_double],
    "kv_law_get": [c_void_p, c_char_p, POINTER(c_double)],
    "kv_law_check": [c_void_p],
    "kv_return_create": [POINTER(c_void_p)],
    "kv_set": [c_void_p, c_char_p, c_int32],
    "kv_get": [c_void_p, c_char_p, POINTER(c_int32)],
    "kv_set_box": [c_void_p, c_int32, c_int32, c_int32],
    "kv_set_period": [c_void_p, c_int32, c_int32],
    "kv_set_launch": [c_void_p, c_int32],
    "kv_set_indexation": [c_void_p, c_double],
    "kv_set_law": [c_void_p, c_void_p],
    "kv_check": [c_void_p, POINTER(c_int32)],
    "kv_warning": [c_void_p, c_int32, POINTER(c_char_p)],
    "kv_compute": [c_void_p],
    "kv_read": [c_void_p, c_char_p, POINTER(c_int32)],
    "kv_read_outputs": [c_void_p, c_int32, c_void_p, c_int32],
    "kv_read_text": [c_void_p, c_int32, c_char_p, c_size_t, POINTER(c_size_t)],
    "kv_read_entry": [c_void_p, c_int32, POINTER(c_int32)],
    "kv_read_options": [c_void_p, POINTER(Options)],
    "kv_compute_columns": [c_void_p, POINTER(Columns)],
    "kv_explain": [c_void_p, c_char_p, c_int32, POINTER(c_char_p)],
    "kv_explain_difference": [c_void_p, c_void_p, c_char_p, c_int32, POINTER(c_char_p)],
    "kv_effects": [c_void_p, c_char_p, POINTER(c_int32), POINTER(c_int32)],
    "kv_effect_at": [c_void_p, c_int32, POINTER(Effect)],
    "kv_curve": [c_void_p, POINTER(Range), *([c_void_p] * 4), c_int32, POINTER(c_int32)],
    "kv_breaks": [c_void_p, POINTER(Range), c_void_p, c_int32, POINTER(c_int32)],
}


def _load() -> ctypes.CDLL:
    name = {"win32": "kv.dll", "darwin": "libkv.dylib"}.get(sys.platform, "libkv.so")
    library = ctypes.CDLL(str(Path(__file__).with_name(name)))
    for function, arguments in _PROTOTYPES.items():
        getattr(library, function).argtypes = arguments
        getattr(library, function).restype = c_int32
    for function, arguments in {"kv_version": [], "kv_message": [c_void_p], "kv_law_message": [c_void_p]}.items():
        getattr(library, function).argtypes = arguments
        getattr(library, function).restype = c_char_p
    library.kv_status_text.argtypes, library.kv_status_text.restype = [c_int32], c_char_p
    for function in ("kv_return_free", "kv_law_free"):
        getattr(library, function).argtypes, getattr(library, function).restype = [c_void_p], None
    return library


kv = _load()


def fail(status: int, message: bytes | None = None) -> NoReturn:
    """Raises what a status that is not OK stands for."""
    if status == NO_MEMORY:
        raise MemoryError("kvcalcul: memory is short")
    text = (message or kv.kv_status_text(status)).decode()
    raise {UNKNOWN: UnknownName, NO_AMOUNT: UnknownName, BAD_VALUE: BadValue}.get(status, Error)(text)


def check(status: int) -> None:
    if status != OK:
        fail(status)


def text(value: bytes | None) -> str:
    return (value or b"").decode()


def numbers(search: Any, *arguments: Any) -> list[int]:
    """The numbers that a search of the library finds."""
    count = c_int32()
    status = search(*arguments, None, 0, byref(count))
    if status not in (OK, TOO_SMALL):
        fail(status)
    found = (c_int32 * max(count.value, 1))()
    check(search(*arguments, found, count.value, byref(count)))
    return list(found[: count.value])


def describe_box(catalogue: int, number: int) -> Box:
    box = Box(size=ctypes.sizeof(Box))
    check(kv.kv_box_describe(catalogue, number, byref(box)))
    return box


class Handle:
    """A return of the library."""

    __slots__ = ("pointer",)

    def __init__(self) -> None:
        self.pointer = c_void_p()
        check(kv.kv_return_create(byref(self.pointer)))

    def __del__(self, free: Any = kv.kv_return_free) -> None:
        free(self.pointer)

    def check(self, status: int) -> None:
        if status != OK:
            fail(status, kv.kv_message(self.pointer))
