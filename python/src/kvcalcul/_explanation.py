"""Why a figure is what it is: a tree that prints, and opens branch by branch in a notebook."""

from __future__ import annotations

import html
import json
from collections.abc import Iterator
from dataclasses import dataclass, field
from typing import Any

_ROLES = {
    "base": "base",
    "rate": "taux",
    "amount": "montant",
    "numerator": "fois",
    "denominator": "sur",
    "among": "entre",
    "income": "revenu",
    "parts": "parts",
    "count": "nombre",
    "threshold": "seuil",
    "effect": "effet",
    "option": "option",
}


@dataclass(frozen=True)
class Explanation:
    """A figure and what makes it: its terms, each an explanation too.

    ``rule`` says how the terms make the value (``sum``, ``rate``, ``share``, ...: kv.h tells each one), ``formula`` the
    same in words and numbers, ``law`` the legal source, ``box`` and ``column`` the box that it is, ``run`` the other
    computation that it comes from.
    """

    value: int
    label: str
    rule: str
    formula: str = ""
    law: str = ""
    box: str = ""
    column: int = 0
    sign: int = 1
    role: str = ""
    step: str = ""
    run: str = ""
    terms: tuple[Explanation, ...] = field(default=(), repr=False)

    @classmethod
    def from_json(cls, text: str) -> Explanation:
        """Reads the text of ``kv_explain`` and of ``kvcalcul explain --json``."""
        return cls._of(json.loads(text))

    @classmethod
    def _of(cls, node: dict[str, Any]) -> Explanation:
        members = {name: node[name] for name in cls.__dataclass_fields__ if name in node and name != "terms"}
        return cls(**members, terms=tuple(cls._of(term) for term in node.get("terms", ())))

    def walk(self) -> Iterator[Explanation]:
        """This node and all those below it."""
        yield self
        for term in self.terms:
            yield from term.walk()

    def leaves(self) -> dict[str, int]:
        """The boxes of the return that the figure comes from, and what they hold."""
        return {node.box: node.value for node in self.walk() if node.rule == "box" and node.role != "effect"}

    def _line(self, root: bool) -> str:
        role = _ROLES.get(self.role, "")
        lead = f"{role}: " if role else "- " if self.sign < 0 else "" if root else "+ "
        name = f"{self.box}.c{self.column}" if self.column else self.box
        alone = self.rule == "law" and not self.column
        label = name if alone else f"{self.label} ({name})" if name else self.label
        rate = self.role == "rate" and self.formula
        line = f"{lead}{self.formula if rate else self.value}  {label}"
        if self.formula and not rate:
            line += f" = {self.formula}"
        for beside in (self.step if self.rule == "step" else "", self.run, self.law if self.rule != "law" else ""):
            if beside:
                line += f"  [{beside}]"
        return line

    def _shown(self) -> list[Explanation]:
        told = ("base", "rate")  # "14 % de 34558" has told a rate and a base without terms of their own
        return [t for t in self.terms if not (t.role in told and t.rule == "part" and not t.terms)]

    def __str__(self) -> str:
        lines: list[str] = []

        def write(node: Explanation, indent: int) -> None:
            lines.append("  " * indent + node._line(indent == 0))
            for term in node._shown():
                write(term, indent + 1)

        write(self, 0)
        return "\n".join(lines)

    def _repr_html_(self) -> str:
        def write(node: Explanation, depth: int) -> str:
            line = html.escape(node._line(depth == 0))
            terms = node._shown()
            if not terms:
                return f"<div style='margin-left:1.2em'>{line}</div>"
            inner = "".join(write(term, depth + 1) for term in terms)
            opened = " open" if depth < 2 else ""
            return f"<details{opened} style='margin-left:1.2em'><summary>{line}</summary>{inner}</details>"

        return f"<div style='font-family:monospace'>{write(self, 0)}</div>"
