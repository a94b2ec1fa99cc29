#!/usr/bin/env python3
"""Prints a table of the benchmark results in JSON files of Google Benchmark.

Usage: python3 table.py FILE...
"""

import json
import sys
from pathlib import Path
from typing import NamedTuple


class Goal(NamedTuple):
    """The largest allowed ratio of library time to baseline time, and the sizes it applies to."""

    ratio: float
    smallest: int = 0
    largest: int = sys.maxsize


GOALS = {
    "Cutting": Goal(3, smallest=1_000),
    "Load": Goal(2, smallest=1_000),
    "Identity": Goal(3),
    "News": Goal(3, smallest=1_000, largest=1_000),
    "Display": Goal(4, smallest=1_000),
    "Layout": Goal(1.5, smallest=1_000),
    "State": Goal(3),
    "KeyOrder": Goal(2),
    "Lint": Goal(2, smallest=10_000),
    "Panel": Goal(2, smallest=10_000),
}

# For each subject: a small size, a large size, and the largest allowed ratio of the times per row. The
# ratio is the time at the large size divided by the time at the small size.
GROWTH = {"Load": (10_000, 1_000_000, 1.8), "Display": (10_000, 1_000_000, 2.5)}

# The largest allowed memory per row in bytes. The size of the data file is subtracted first.
MEMORY_GOAL = 650
# The largest allowed startup time of a program with the library, minus that of an empty program, in
# milliseconds.
START_GOAL = 0.3
# The largest allowed time to open the panel, in milliseconds, by the number of changes.
PANEL_GOALS = {300: 16, 10_000: 1_000}
# The largest allowed 99th percentile of the processor times of the scroll steps, in milliseconds.
SCROLL_GOAL = 16
# The largest allowed fraction of an open panel's memory that remains allocated after the panel is closed.
CLOSED_MEMORY_GOAL = 0.01


def read(paths: list[Path]) -> dict[tuple[str, int], dict]:
    """Returns the median of each benchmark by name and size. A benchmark without a size has the size 0."""
    results = {}
    for path in paths:
        for run in json.loads(path.read_text())["benchmarks"]:
            if run.get("error_occurred"):
                sys.exit(f"{run['name']}: {run['error_message']}")
            if run.get("aggregate_name") != "median":
                continue
            name, *arguments = run["run_name"].split("/")
            sizes = [int(argument) for argument in arguments if argument.isdecimal()]
            results[name, sizes[0] if sizes else 0] = run
    return results


def nanoseconds(run: dict) -> float:
    """Returns the time in nanoseconds for one row, or for one element of another kind."""
    return 1e9 / run["items_per_second"]


def baseline_name(name: str, names: set[str]) -> str | None:
    """Returns the name of the baseline of a benchmark, or None if it has none."""
    baseline = "Baseline." + name
    return baseline if baseline in names else None


def verdict(figure: float, goal: float) -> str:
    return "met" if figure <= goal else "missed"


def ratio_rows(results: dict) -> list[list[str]]:
    rows = []
    names = {name for name, _ in results}
    for (name, size), run in sorted(results.items()):
        baseline = baseline_name(name, names)
        if baseline is None:
            continue
        time, baseline_time = nanoseconds(run), nanoseconds(results[baseline, size])
        ratio = time / baseline_time
        goal = GOALS.get(name)
        row = [name, f"{size:,}" if size else "", f"{time:,.1f} ns", f"{baseline_time:,.1f} ns",
               f"{ratio:.2f}x"]
        if goal and goal.smallest <= size <= goal.largest:
            row += [f"{goal.ratio:g}x", verdict(ratio, goal.ratio)]
        rows.append(row)
    return rows


def growth_rows(results: dict) -> list[list[str]]:
    rows = []
    for name, (small, large, goal) in GROWTH.items():
        if (name, small) not in results or (name, large) not in results:
            continue
        at_small, at_large = (nanoseconds(results[name, size]) for size in (small, large))
        rows.append([f"{name}, one row", f"{large:,} to {small:,}", f"{at_large:,.1f} ns",
                     f"{at_small:,.1f} ns", f"{at_large / at_small:.2f}x", f"{goal:g}x",
                     verdict(at_large / at_small, goal)])
    return rows


def memory_rows(results: dict) -> list[list[str]]:
    return [["Memory", f"{size:,}", f"{run['bytes']:.0f} bytes", "", "",
             f"{MEMORY_GOAL} bytes", verdict(run["bytes"], MEMORY_GOAL)]
            for (name, size), run in sorted(results.items()) if name == "Memory"]


def start_rows(results: dict) -> list[list[str]]:
    if ("Start", 0) not in results:
        return []
    milliseconds = {program: 1e3 * results["Start", 0]["start_" + program]
                    for program in ("runtime", "bare", "third_party", "library")}
    empty = milliseconds["runtime"]
    rows = []
    for name, program in (("Start, C library", "bare"), ("Start, dependencies", "third_party"),
                          ("Start", "library")):
        time = milliseconds[program]
        rows.append([name, "", f"{time:.2f} ms", f"{empty:.2f} ms", f"{time - empty:+.2f} ms"])
    rows[-1] += [f"+{START_GOAL} ms", verdict(time - empty, START_GOAL)]
    return rows


def panel_rows(results: dict) -> list[list[str]]:
    rows = []
    for (name, size), run in sorted(results.items()):
        if name == "Panel":
            time = nanoseconds(run) * size / 1e6
            goal = PANEL_GOALS[size]
            rows.append(["Panel, open", f"{size:,}", f"{time:,.1f} ms", "", "", f"{goal:,} ms",
                         verdict(time, goal)])
        elif name == "CompletePanel":
            time = nanoseconds(run) * size / 1e6
            rows.append(["Panel, layout complete", f"{size:,}", f"{time:,.1f} ms"])
        elif name == "Scroll":
            time = 1e3 * run["p99"]
            rows.append(["Panel, scroll step", f"{size:,}", f"{time:,.1f} ms", "", "",
                         f"{SCROLL_GOAL} ms", verdict(time, SCROLL_GOAL)])
        elif name == "PanelMemory":
            ratio = run["closed"] / run["open"]
            rows.append(["Panel, closed", f"{size:,}", f"{run['closed']:,.0f} bytes",
                         f"{run['open']:,.0f} bytes", f"{ratio:.2f}x", f"{CLOSED_MEMORY_GOAL:g}x",
                         verdict(ratio, CLOSED_MEMORY_GOAL)])
    return rows


def markdown(rows: list[list[str]]) -> str:
    header = ["Subject", "Size", "Library", "Baseline", "Ratio", "Goal", "Result"]
    table = [header] + [row + [""] * (len(header) - len(row)) for row in rows]
    widths = [max(len(row[column]) for row in table) for column in range(len(header))]
    lines = ["| " + " | ".join(cell.ljust(width) for cell, width in zip(row, widths)) + " |"
             for row in table]
    lines.insert(1, "|" + "|".join("-" * (width + 2) for width in widths) + "|")
    return "\n".join(lines)


def main() -> None:
    results = read([Path(argument) for argument in sys.argv[1:]])
    print(markdown(ratio_rows(results) + growth_rows(results) + memory_rows(results)
                   + start_rows(results) + panel_rows(results)))


if __name__ == "__main__":
    main()
