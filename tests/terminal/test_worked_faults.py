# SPDX-License-Identifier: Apache-2.0
"""The faults that the manual shows do what it says, and the engine says of them what it says."""

import pathlib
import re
import shlex

import pytest

from test_faults import SOFTWARE_TEXT, Play, summary

MANUAL = pathlib.Path(__file__).resolve().parents[2] / "docs/bench-engine.md"


def worked_faults():
    """Of each example its title, the engine's options, the tester's lines and the last words."""
    chapter = MANUAL.read_text().split("\n## Faults\n")[1].split("\n## ")[0]
    found = {}
    for section in chapter.split("\n### ")[1:]:
        title, text = section.split("\n", 1)
        blocks = re.findall(r"(?:^    .*\n)+", text + "\n", re.M)
        command, lines, said = [re.sub("^    ", "", block, flags=re.M) for block in blocks]
        assert command.startswith("kelmora-bench ")
        found[title] = shlex.split(command)[1:], lines, said
    return found


WORKED = {
    "A server that crashes on the way": [
        "RESP_NEW_TRIP>",
        "routeDesc: (-1,-1,-1)",
    ],
    "An answer that gets lost, once": ['"<GEOC>Can<*>"'],
    "Letters that come when nobody waits any more": [
        '"<GEOC>Ger<*>"',
        SOFTWARE_TEXT,
        '"<GEOC>Can<*>"',
    ],
    "Chance, and the same chance again": ["RESP_GET_SPELL>", SOFTWARE_TEXT],
}


def test_manual_has_the_worked_faults():
    assert list(worked_faults()) == list(WORKED)


@pytest.mark.parametrize("title", WORKED)
def test_worked_fault_does_what_the_manual_says(place, title):
    options, lines, said = worked_faults()[title]
    engine = place.engine(*options)
    play = Play(place, lines)
    at = 0
    for sight in WORKED[title]:
        at = play.answers.find(sight, at)
        assert at >= 0, f"{sight} is not behind the others in:\n{play.answers}"
        at += len(sight)
    if "lost" in title:
        assert "<GEOC>Ger<*>" not in play.answers
    remarks = [
        line + "\n"
        for line in summary(engine).splitlines()
        if re.match("kelmora-bench: (not |never |faults: )", line)
    ]
    assert "".join(remarks) == said
