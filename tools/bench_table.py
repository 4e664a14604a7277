#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Makes the table of ./benchmark: the results of the benchmark programs beside their goals.

The goals are lines "ROW GOAL WORDS ..." under headings "[PROGRAM]", where GOAL is "<= NUMBER",
">= NUMBER" or "report". They are held against a row's ratio, or against its own figure where it
stands beside nothing.
"""
import argparse
import json
import os
import re
import sys

GOAL_LINE = re.compile(r"(?P<row>\S+)\s+(?:(?P<sign>[<>]=)\s*(?P<limit>\d+(?:\.\d+)?)|report)\s+"
                       r"(?P<says>\S.*)")
# What Google Benchmark adds to a name.
ADDED = re.compile(r"/(iterations:\d+|repeats:\d+|manual_time|process_time|real_time|threads:\d+)")
FIGURES = ("ours", "anchor", "ratio", "ratio_low", "ratio_high", "tenfold", "allocations")


class Trouble(Exception):
    pass


def read_text(path):
    try:
        with open(path, encoding="utf-8") as file:
            return file.read()
    except (OSError, UnicodeDecodeError) as error:
        raise Trouble(f"{path}: {error}") from error


def read_goals(path):
    """The goals by program and row, in the order of the file."""
    goals = {}
    program = None
    for number, line in enumerate(read_text(path).splitlines(), 1):
        line = line.strip()
        if not line or line.startswith("#"):
            continue
        heading = re.fullmatch(r"\[(\w+)\]", line)
        if heading:
            program = goals.setdefault(heading[1], {})
            continue
        found = GOAL_LINE.fullmatch(line)
        if not found or program is None:
            raise Trouble(f"{path}:{number}: not a goal: {line}")
        if found["row"] in program:
            raise Trouble(f"{path}:{number}: {found['row']} has a goal already")
        program[found["row"]] = {
            "sign": found["sign"],
            "limit": float(found["limit"]) if found["limit"] else None,
            "says": found["says"],
        }
    return goals


def read_results(path):
    """The rows that one program wrote, and what it says of the machine."""
    try:
        whole = json.loads(read_text(path))
        return whole["context"], [read_row(result) for result in whole["benchmarks"]]
    except (ValueError, KeyError, TypeError) as error:
        raise Trouble(f"{path}: not a benchmark's results: {error!r}") from error


def read_row(result):
    row = {"row": ADDED.sub("", result["name"]), "unit": result.get("label", "")}
    if result.get("error_occurred"):
        row["error"] = result.get("error_message", "")
    else:
        row["ours"] = result["ours"]
        row.update({name: result[name] for name in FIGURES if name in result})
    return row


def judge(row, goal, judged):
    row["says"] = goal["says"] if goal else row["row"]
    row["goal"] = None
    row["met"] = None
    if not goal or goal["limit"] is None:
        return
    row["goal"] = f"{goal['sign']} {goal['limit']:g}"
    if judged and "error" not in row:
        figure = row.get("ratio", row["ours"])
        row["met"] = figure <= goal["limit"] if goal["sign"] == "<=" else figure >= goal["limit"]


def collect(goals, paths, judged):
    """All rows of all programs, and the machine."""
    machine = {}
    rows = []
    for path in paths:
        program = os.path.splitext(os.path.basename(path))[0]
        context, results = read_results(path)
        machine = {
            "date": context.get("date"),
            "cpus": context.get("num_cpus"),
            "mhz": context.get("mhz_per_cpu"),
            "load": context.get("load_avg"),
        }
        wanted = goals.get(program, {})
        given = {row["row"] for row in results}
        for row in results:
            row["program"] = program
            judge(row, wanted.get(row["row"]), judged)
            rows.append(row)
        for name in wanted:
            if name not in given:
                row = {"row": name, "program": program, "unit": "", "absent": True}
                judge(row, wanted[name], False)
                rows.append(row)
    return machine, rows


def figure(number):
    if number is None:
        return ""
    if number >= 100:
        return f"{number:.0f}"
    return f"{number:.3g}"


def verdict(row):
    if "error" in row:
        return "FAILED"
    if "absent" in row:
        return "not here"
    return {True: "met", False: "missed", None: "-"}[row["met"]]


def line_of(row):
    ratio = f"{row['ratio']:.3f}" if "ratio" in row else "-"
    spread = f"{row['ratio_low']:.2f}..{row['ratio_high']:.2f}" if "ratio_low" in row else ""
    unit = row["unit"]
    if "allocations" in row:
        unit += f", allocations: {figure(row['allocations'])}"
    return (ratio, spread, row["goal"] or "report", verdict(row), figure(row.get("ours")),
            figure(row.get("anchor")), unit, row["says"])


HEADS = ("ratio", "half of all", "goal", "", "ours", "anchor", "unit", "what")


def print_table(rows):
    lines = [line_of(row) for row in rows]
    widths = [max(len(line[i]) for line in [HEADS, *lines]) for i in range(len(HEADS))]
    to_the_right = (True, False, False, False, True, True, False, False)

    def show(line):
        cells = (text.rjust(width) if right else text.ljust(width)
                 for text, width, right in zip(line, widths, to_the_right))
        print("  ".join(cells).rstrip())

    show(HEADS)
    program = None
    for row, line in zip(rows, lines):
        if row["program"] != program:
            program = row["program"]
            print(f"{program}:")
        show(line)


def print_summary(rows, judged):
    for row in rows:
        if "error" in row:
            print(f"failed: {row['row']}: {row['error']}")
    if not judged:
        print("A moment of each: nothing is judged.")
        return
    judged_rows = [row for row in rows if row["met"] is not None]
    met = sum(row["met"] for row in judged_rows)
    print(f"{met} of {len(judged_rows)} goals are met.")
    absent = sum("absent" in row for row in rows)
    if absent:
        print(f"{absent} rows are not here: a library was missing when the benchmarks were built.")


def main():
    parser = argparse.ArgumentParser(description="Prints benchmark results beside their goals.")
    parser.add_argument("goals", help="the goals, benchmarks/goals.txt")
    parser.add_argument("results", nargs="+",
                        help="what programs wrote with --benchmark_out, named after the program")
    parser.add_argument("--json", help="where all of it goes as JSON as well")
    parser.add_argument("--quick", action="store_true", help="show the goals, but judge nothing")
    options = parser.parse_args()
    try:
        machine, rows = collect(read_goals(options.goals), options.results, not options.quick)
        if options.json:
            with open(options.json, "w", encoding="utf-8") as file:
                json.dump({"machine": machine, "quick": options.quick, "rows": rows}, file, indent=1)
                file.write("\n")
    except (Trouble, OSError) as error:
        sys.exit(f"bench_table.py: {error}")
    print_table(rows)
    print()
    print_summary(rows, not options.quick)
    return 1 if any("error" in row for row in rows) else 0


if __name__ == "__main__":
    sys.exit(main())
