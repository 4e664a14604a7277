# SPDX-License-Identifier: Apache-2.0
"""The engine's log: every message as it passes, for a person or a program."""

import json
import re
import subprocess

from conftest import PATIENCE
from test_faults import DATABASE, INIT, LIST, LOG, SOFTWARE, Play, faulty, logged, summary

SESSION = INIT + 'spell("<GEOC>Ger<*>")\nwaitresp("303")\n' + LIST + SOFTWARE


def test_log_of_text_has_a_line_for_each_message(place):
    engine = place.engine("--log", "log.txt")
    Play(place, SESSION)
    summary(engine)
    lines = (place.work / "log.txt").read_text().splitlines()
    parts = [re.fullmatch(r" *\d+\.\d{3} (<-|->) (\d+) (\w+)(.*)", line) for line in lines]
    assert all(parts), lines
    assert [part.group(1, 3) for part in parts] == [
        ("<-", "REQU_INIT"),
        ("->", "RESP_INIT"),
        ("<-", "REQU_GET_SPELL"),
        ("->", "RESP_GET_SPELL"),
        ("<-", "REQU_GET_LIST"),
        ("->", "RESP_GET_LIST"),
        ("<-", "REQU_GET_SW_VERSION"),
        ("->", "RESP_GET_SW_VERSION"),
    ]
    assert len({part[2] for part in parts}) == 1, "one client"
    assert parts[2][4] == " inputEIS='<GEOC>Ger<*>'"
    assert "nextAvailableCharacters='m'" in parts[3][4]


def test_log_of_json_has_each_message_with_its_fields(place):
    engine = place.engine(*LOG)
    Play(place, SESSION)
    summary(engine)
    entries = logged(place)
    assert [("from" in entry, entry["message"]) for entry in entries[:4]] == [
        (True, "REQU_INIT"),
        (False, "RESP_INIT"),
        (True, "REQU_GET_SPELL"),
        (False, "RESP_GET_SPELL"),
    ]
    assert len({entry.get("from", entry.get("to")) for entry in entries}) == 1
    times = [entry["ms"] for entry in entries]
    assert times == sorted(times)
    assert entries[2]["fields"] == {"inputEIS": "<GEOC>Ger<*>"}
    assert entries[3]["fields"]["offeredCharacters"] == "many"
    assert entries[5]["fields"]["itemList"][2] == "<GEOS>Bayern<*><CTY>Passau<*>"


def test_log_to_standard_output_stands_between_the_first_line_and_the_summary(place):
    engine = place.engine("--log", "-", "--log-format", "json")
    Play(place, INIT)
    lines = summary(engine).splitlines()
    assert [json.loads(line)["message"] for line in lines[:2]] == ["REQU_INIT", "RESP_INIT"]
    assert lines[2].startswith("kelmora-bench: 1 messages received")


def test_log_shows_damaged_messages_by_their_bytes(place):
    engine = faulty(place, "unknown,message=RESP_GET_SW_VERSION", options=LOG)
    Play(place, INIT + "vers\n" + DATABASE)
    summary(engine)
    (damaged,) = [entry for entry in logged(place) if "hex" in entry]
    assert damaged["number"] == 0x40000000 + 902
    assert bytes.fromhex(damaged["hex"])[8:].startswith(b"kelmora-bench")


def test_log_that_cannot_be_made_keeps_the_engine_from_starting(place):
    result = subprocess.run(
        [place.programs / "kelmora-bench", "--log", "."],
        capture_output=True,
        timeout=PATIENCE,
        env=place.environment(),
        cwd=place.work,
        text=True,
    )
    assert result.returncode == 2
    assert result.stderr == "kelmora-bench: .: Is a directory\n"
    assert place.sockets_left() == []
