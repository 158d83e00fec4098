#!/usr/bin/env python3
"""Seeds small faults in the computing sources, one at a time, and tells which ones the tests let through.

    ./kv mutants N [SEED] [GLOB]

A fault is a neighbouring box, another constant, a sign, a comparison, a bound, a dropped term, statement or row of a
table. It counts when it changes a figure of the random returns of kv_accord; N such faults are looked for in the files
that GLOB names (all of the computation). Each processor works in a tree of its own, in build/mutants.
"""

import argparse
import concurrent.futures
import dataclasses
import fnmatch
import json
import os
import pathlib
import random
import re
import shutil
import subprocess
import sys
import threading
import time

PROJECT = pathlib.Path(__file__).resolve().parent.parent
TESTS = ["kv_cases", "kv_tests_interface", "kv_tests"]
RETURNS = "4000"
GOAL = 95

BOX = re.compile(r'"([A-Z0-9][A-Za-z0-9_]*)"')
NUMBER = re.compile(r"(?<![\w.\"'])(\d+)(?![\w.\"'])")
SIGN = re.compile(r" ([+-]=?) (?=[\w(\"])")
COMPARISON = re.compile(r" (<=|>=|<|>|==|!=|&&|\|\|) ")
BOUND = re.compile(r"\b(std::min|std::max|nMin|nMax|nPositif|nPourcent)\b")
TERM = re.compile(r' [+-] (?:\w+(?:::\w+)*)?(?:\["[^"]*"\]|\[\w+\]|\([^()]*\)|\.\w+)*(?=[ ;,)])')
STATEMENT = re.compile(
    r"^\s*(?!return\b|const\b|case\b|using\b|break\b|if\b|for\b|static\b|template\b)[\w:.\[\]\"*]+.*;\s*$"
)
ROW = re.compile(r"^\s*\{.*\},\s*(//.*)?$")
OTHER = {
    "<=": "<", ">=": ">", "<": "<=", ">": ">=", "==": "!=", "!=": "==", "&&": "||", "||": "&&",
    "+": "-", "-": "+", "+=": "-=", "-=": "+=",
    "std::min": "std::max", "std::max": "std::min", "nMin": "nMax", "nMax": "nMin", "nPositif": "", "nPourcent": "nMin",
}  # fmt: skip


@dataclasses.dataclass(frozen=True)
class Fault:
    file: str
    line: int  # from 0
    kind: str
    after: str

    def describe(self, before: str) -> str:
        return f"{self.file}:{self.line + 1}: {self.kind}\n    - {before.strip()}\n    + {self.after.strip()}"


def code_of(line: str) -> str:
    """A line without its comment."""
    return re.sub(r"//.*", "", line)


def neighbours(tool: pathlib.Path) -> dict[str, str]:
    """For each box, the next one of its catalogue, and for the last one the one before."""
    boxes = json.loads(subprocess.run([tool, "boxes", "--json"], check=True, capture_output=True).stdout)
    found = {}
    for catalogue in ("entry", "output", "carry-forward"):
        names = [box["name"] for box in boxes if box["catalogue"].startswith(catalogue[:5])]
        found |= dict(zip(names, names[1:] + names[-2:-1], strict=True))
    return found


def faults_of(file: str, number: int, line: str, boxes: dict[str, str]) -> list[Fault]:
    """The faults that one line can have."""
    code = code_of(line)
    if re.match(r"\s*(#|static_assert|template|//|///|namespace|struct|class|enum)", line) or not code.strip():
        return []

    def swapped(kind, match, group, new):
        return Fault(file, number, kind, line[: match.start(group)] + new + line[match.end(group) :])

    faults = []
    for m in BOX.finditer(code):
        if m[1] in boxes:
            faults.append(swapped("neighbouring box", m, 1, boxes[m[1]]))
    for m in NUMBER.finditer(re.sub(r'"[^"]*"', lambda t: '"' * len(t[0]), code)):
        faults.append(swapped("constant", m, 1, str(int(m[1]) + 1)))
    for kind, pattern in (("sign", SIGN), ("comparison", COMPARISON), ("bound", BOUND)):
        for m in pattern.finditer(code):
            faults.append(swapped(kind, m, 1, OTHER[m[1]]))
    for m in TERM.finditer(code):
        faults.append(swapped("dropped term", m, 0, ""))
    if STATEMENT.match(code):
        faults.append(Fault(file, number, "dropped statement", "\n"))
    if ROW.match(line):
        faults.append(Fault(file, number, "dropped row", "\n"))
    return faults


class Tree:
    """A copy of the project, built, in which one fault after the other is tried."""

    def __init__(self, number: int):
        self.source = PROJECT / f"build/mutants/{number}"
        self.build = self.source / "build"
        listed = subprocess.run(
            ["git", "ls-files", "-co", "--exclude-standard"], cwd=PROJECT, check=True, capture_output=True, text=True
        ).stdout.splitlines()
        for name in listed:
            here, there = PROJECT / name, self.source / name
            if not here.is_file() or (there.is_file() and there.read_bytes() == here.read_bytes()):
                continue
            there.parent.mkdir(parents=True, exist_ok=True)
            shutil.copyfile(here, there)
        if not (self.build / "build.ninja").exists():
            flags = ["-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=-O1", "-DKV_WERROR=OFF"]
            subprocess.run(
                ["cmake", "-G", "Ninja", "-S", self.source, "-B", self.build, *flags], check=True, capture_output=True
            )
        if not self.make("kv_accord") or self.tests_fail():
            sys.exit("the tests do not pass on the project as it is")
        self.figures = self.run("kv_accord", RETURNS)

    def make(self, *targets: str) -> bool:
        return (
            subprocess.run(["ninja", "-C", self.build, "-j1", *targets], capture_output=True, check=False).returncode
            == 0
        )

    def program(self, name: str) -> pathlib.Path:
        return self.build / (name if name == "kv_accord" else f"tests/{name}")

    def run(self, name: str, *arguments: str) -> str | None:
        """What a program prints; None when it fails, or does not end."""
        try:
            done = subprocess.run(
                [self.program(name), *arguments], capture_output=True, text=True, timeout=300, check=False
            )
        except subprocess.TimeoutExpired:
            return None
        return done.stdout if done.returncode == 0 else None

    def tests_fail(self) -> bool:
        """Whether a test fails, or does not compile: an assertion over a table."""
        return any(not self.make(t) or self.run(t, "--gtest_brief=1", "--gtest_fail_fast") is None for t in TESTS)

    def attempt(self, fault: Fault) -> str:
        """refused by the compiler, without effect, caught or SURVIVES."""
        path = self.source / fault.file
        before = path.read_text()
        lines = before.splitlines(keepends=True)
        lines[fault.line] = fault.after if fault.after.endswith("\n") else fault.after + "\n"
        path.write_text("".join(lines))
        try:
            if not self.make("kv_accord"):
                return "refused"
            if self.run("kv_accord", RETURNS) == self.figures:
                return "without effect"
            return "caught" if self.tests_fail() else "SURVIVES"
        finally:
            path.write_text(before)


def main() -> None:
    parser = argparse.ArgumentParser(
        prog="./kv mutants", description=__doc__, formatter_class=argparse.RawTextHelpFormatter
    )
    parser.add_argument("count", type=int, metavar="N")
    parser.add_argument("seed", type=int, nargs="?", default=1)
    parser.add_argument("glob", nargs="?", default="Calcul/*Calcul*/*")
    options = parser.parse_args()

    boxes = neighbours(PROJECT / "build/release/kvcalcul")
    by_line = []
    for path in sorted(PROJECT.glob("Calcul/*Calcul*/*.*")):
        name = str(path.relative_to(PROJECT))
        if not fnmatch.fnmatch(name, options.glob) or "pInitCalcul" in name or path.name.startswith("Catalogue"):
            continue
        for number, line in enumerate(path.read_text().splitlines(keepends=True)):
            if faults := faults_of(name, number, line, boxes):
                by_line.append((line, faults))
    if not by_line:
        sys.exit(f"no source of the computation is named like {options.glob}")
    draw = random.Random(options.seed)
    draw.shuffle(by_line)
    drawn = ((line, draw.choice(faults)) for line, faults in by_line)

    processors = os.cpu_count() or 1
    counts = dict.fromkeys(["refused", "without effect", "caught", "SURVIVES"], 0)
    survivors, lock, begin = [], threading.Lock(), time.monotonic()

    def work(number: int) -> None:
        tree = Tree(number)
        while True:
            with lock:
                if counts["caught"] + counts["SURVIVES"] >= options.count or (next_ := next(drawn, None)) is None:
                    return
            line, fault = next_
            outcome = tree.attempt(fault)
            with lock:
                counts[outcome] += 1
                if outcome == "SURVIVES":
                    survivors.append(fault.describe(line))
                    print(survivors[-1], flush=True)
                elif sys.stderr.isatty():
                    print(f"\r{counts}", end="", file=sys.stderr, flush=True)

    with concurrent.futures.ThreadPoolExecutor(processors) as pool:
        for done in [pool.submit(work, number) for number in range(processors)]:
            done.result()

    changing = counts["caught"] + counts["SURVIVES"]
    share = 100 * counts["caught"] / changing if changing else 100.0
    print(
        f"{changing} faults change a figure of {RETURNS} random returns: {counts['caught']} caught ({share:.1f} %), "
        f"{counts['SURVIVES']} survive. {counts['refused']} others are refused by the compiler, "
        f"{counts['without effect']} change no figure. {time.monotonic() - begin:.0f} s."
    )
    sys.exit(share < GOAL)


if __name__ == "__main__":
    main()
