#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""What the tests have run, folder by folder, from the counters of a build with the preset `coverage`.

    tools/coverage.py BUILD REPORT

Has gcovr write the report into the directory REPORT, index.html with a page for each source and
coverage.txt, prints lines and branches of each folder, and fails if one of the tester's own is below
LINES or BRANCHES. Branches that only an exception takes aren't counted: there is one exception, memory
that ran out, and most of what the compiler makes for it can't be reached.
"""

import argparse
import collections
import json
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[1]
OWN = ("platform", "state", "console", "ipc", "messages", "command", "monkey", "replay", "overlay", "shell")
BESIDE = ("bench",)  # told, and held to nothing
LINES, BRANCHES = 95, 85  # per cent


def report(build, place):
    """By folder, what gcovr has summed up of each file."""
    place.mkdir(parents=True, exist_ok=True)
    summary = place / "summary.json"
    folders = [option for name in OWN + BESIDE for option in ("--filter", f"{ROOT}/{name}/")]
    subprocess.run(
        ["gcovr", "--root", ROOT, "--object-directory", build, *folders]
        + ["--exclude-throw-branches", "--exclude-unreachable-branches"]
        + ["--exclude-branches-by-pattern", r"\s*} catch \(.*"]  # an exception's, too
        + ["--html-details", place / "index.html", "--txt", place / "coverage.txt"]
        + ["--json-summary", summary, build],
        check=True,
        cwd=place,
    )
    files = collections.defaultdict(list)
    for file in json.loads(summary.read_text())["files"]:
        files[pathlib.PurePath(file["filename"]).parts[0]].append(file)
    return files


def share(files, what):
    """Covered and all, and per cent."""
    covered = sum(file[f"{what}_covered"] for file in files)
    total = sum(file[f"{what}_total"] for file in files)
    return covered, total, 100 * covered / total if total else 100.0


def show(name, files):
    parts = (share(files, what) for what in ("line", "branch"))
    cells = "   ".join(f"{covered:5} of {total:5}  {rate:5.1f} %" for covered, total, rate in parts)
    print(f"{name:<10} {cells}")


def main():
    parser = argparse.ArgumentParser(description="What the tests have run, folder by folder.")
    parser.add_argument("build", type=pathlib.Path)
    parser.add_argument("report", type=pathlib.Path)
    arguments = parser.parse_args()
    files = report(arguments.build.resolve(), arguments.report.resolve())
    print(f"{'':<10} {'lines':<23}   branches")
    for name in OWN + BESIDE:
        show(name, files[name])
    show("the tester", [file for name in OWN for file in files[name]])
    low = [
        f"{name}: {rate:.1f} % of its {what}, and {least} are wanted"
        for name in OWN
        for what, key, least in (("lines", "line", LINES), ("branches", "branch", BRANCHES))
        if (rate := share(files[name], key)[2]) < least
    ]
    for line in low:
        print(line, file=sys.stderr)
    return 1 if low else 0


if __name__ == "__main__":
    sys.exit(main())
