# SPDX-License-Identifier: Apache-2.0
"""What the engine does wrong on purpose, as the tester meets it, which has to live on."""

import json
import re
import signal
import subprocess

import pytest

from batch_play import COLOUR, recorded
from conftest import PATIENCE

INIT = 'init\nwaitresp("1")\n'
SOFTWARE = 'vers\nwaitresp("902")\n'
DATABASE = 'verd\nwaitresp("903")\n'
LIST = 'list("<GEOC>Germany<*><CTY>Pa<*>","1","5","ascending","none","on")\n'

SOFTWARE_TEXT = "RESP_GET_SW_VERSION> swVersion: kelmora-bench 0.1.0\n"
UNHANDLED = "Error: Unhandled response or info ("

KINDS = (
    "refuse slow unread miscount hang die restart drop late duplicate reorder flood oversize unknown"
    " truncate lie endless"
).split()


class Play:
    """A batch file, run by a tester of its own to the end."""

    def __init__(self, place, text):
        place.batch("faults.batch", f'startlog("answers.txt")\n{text}stoplog\nquit\n')
        result = subprocess.run(
            [place.programs / "ventrik"],
            input=b'\nbatch("faults.batch")\n',
            capture_output=True,
            timeout=4 * PATIENCE,
            env=place.environment(),
            cwd=place.work,
        )
        assert result.returncode == 0
        self.shown = COLOUR.sub("", result.stdout.decode(errors="replace"))
        self.errors = result.stderr.decode()
        answers = (place.work / "answers.txt").read_bytes()
        self.answers = COLOUR.sub("", answers.decode(errors="replace"))


def faulty(place, *faults, seed=7, options=()):
    return place.engine(*[f"--fault={fault}" for fault in faults], f"--seed={seed}", *options)


def summary(engine):
    """What the engine prints behind its first line, when it is ended."""
    engine.send_signal(signal.SIGTERM)
    assert engine.wait(timeout=PATIENCE) == 0
    return engine.stdout.read()


def faults_done(output):
    (line,) = [line for line in output.splitlines() if line.startswith("kelmora-bench: faults:")]
    return line.removeprefix("kelmora-bench: faults:").strip()


def table(output):
    """The summary's rows: message, way, count and bytes."""
    return [
        tuple(line.split())
        for line in output.splitlines()
        if line and not line.startswith("kelmora-bench:")
    ]


def logged(place, strikes=False):
    """The messages of the log, or what it tells of faults that struck."""
    entries = [json.loads(line) for line in (place.work / "log.json").read_text().splitlines()]
    return [entry for entry in entries if ("fault" in entry) == strikes]


LOG = ("--log", "log.json", "--log-format", "json")


# Handshakes.


def test_refused_handshake_fails_one_command_and_the_next_connects(place):
    engine = faulty(place, "refuse,times=1")
    play = Play(place, "vers\n" + INIT + SOFTWARE)
    assert play.errors.count("ipc_connect() failed\n") == 1
    assert "RESP_INIT> Navigation component is initialized successfully!" in play.answers
    assert play.answers.endswith(SOFTWARE_TEXT)
    output = summary(engine)
    assert faults_done(output) == "refuse 1"
    assert "2 messages received, 2 sent, 1 connections" in output
    assert place.sockets_left() == []


def test_slow_handshake_holds_up_the_command_and_loses_nothing(place):
    engine = faulty(place, "slow,times=1,seconds=1", options=LOG)
    play = Play(place, "verd\n" + INIT + SOFTWARE)
    assert "ipc_connect() failed" not in play.errors
    names = [entry["message"] for entry in logged(place) if "from" in entry]
    assert names == ["REQU_GET_DB_VERSION", "REQU_INIT", "REQU_GET_SW_VERSION"]
    assert logged(place)[0]["ms"] >= 1000, "nothing is received during the handshake"
    assert "dbVersion" in play.answers
    assert [entry["fault"] for entry in logged(place, strikes=True)] == ["slow"]
    assert faults_done(summary(engine)) == "slow 1"


# Requests.


def test_request_with_a_wrong_count_is_lost_and_the_next_is_answered(place):
    engine = faulty(place, "miscount,message=REQU_GET_SW_VERSION,times=1")
    play = Play(place, INIT + "vers\n" + DATABASE + SOFTWARE)
    assert play.answers.count("RESP_GET_SW_VERSION>") == 1
    assert play.answers.endswith(SOFTWARE_TEXT)
    output = summary(engine)
    assert faults_done(output) == "miscount 1"
    assert ("900", "REQU_GET_SW_VERSION", "received", "1", "4", "bytes") in table(output)


def test_engine_that_hangs_for_a_while_answers_late(place):
    engine = faulty(place, "hang,message=REQU_GET_SW_VERSION,times=1,seconds=1", options=LOG)
    play = Play(place, INIT + SOFTWARE + SOFTWARE)
    assert play.answers.count(SOFTWARE_TEXT) == 2
    assert "MsgSendv" not in play.shown
    answered, asked = logged(place)[1:3]
    assert (answered["message"], asked["message"]) == ("RESP_INIT", "REQU_GET_SW_VERSION")
    assert asked["ms"] - answered["ms"] >= 900, "it stood still before it read"
    (strike,) = logged(place, strikes=True)
    assert (strike["fault"], strike["message"]) == ("hang", "REQU_GET_SW_VERSION")
    assert strike["client"] == asked["from"]
    assert faults_done(summary(engine)) == "hang 1"


def test_request_that_is_never_read_times_out_and_the_next_is_answered(place):
    engine = faulty(place, "unread,message=REQU_GET_SW_VERSION,times=1")
    play = Play(place, INIT + "vers\n" + SOFTWARE)
    assert play.shown.count("IPC MsgSendv error(110): Connection timed out\n") == 1
    assert play.answers.count(SOFTWARE_TEXT) == 1
    assert faults_done(summary(engine)) == "unread 1"
    assert place.sockets_left() == []


def test_engine_that_dies_and_comes_back_is_connected_to_anew_by_server(place):
    engine = faulty(place, "die,message=REQU_GET_SW_VERSION,times=1,seconds=0.5")
    dead = 'lang("LangGerman","1")\nwaitresp("601")\nvers\nwait("2")\nverd\n'
    play = Play(place, INIT + dead + 'server("navigation")\n' + DATABASE + SOFTWARE)
    no_process = "IPC MsgSendv error(3): No such process\n"
    assert play.shown.count(no_process) == 2, "the dead connection stays until server()"
    assert play.answers.count("dbVersion") == 1
    assert play.answers.endswith(SOFTWARE_TEXT)
    output = summary(engine)
    assert faults_done(output) == "die 1"
    assert ", 2 connections\n" in output
    assert place.sockets_left() == []


def test_engine_that_is_started_again_has_forgotten_its_trips(place):
    stop = 'item("SDestinationElementList","stops","<GEOC>Germany<*><CTY>Potsdam<*>","")\n'
    trip = stop + 'item("SRouteModeList","modes","fastest")\nrnew("stops","modes")\n'
    again = 'vers\nwait("2")\nserver("navigation")\n' + INIT + 'start("1")\nwaitresp("410")\n'
    for fault, described in (("die", "(1,"), ("restart", "(-1,-1,-1)")):
        engine = faulty(place, f"{fault},message=REQU_GET_SW_VERSION,times=1,seconds=0.5")
        play = Play(place, INIT + trip + 'waitresp("405")\nwait("1")\n' + again)
        (line,) = [each for each in play.answers.splitlines() if "INFO_ACTIVE_ROUTE_DESC>" in each]
        assert described in line
        output = summary(engine)
        assert f"not answered: 1 of REQU_GET_SW_VERSION, struck by {fault}\n" in output
        assert faults_done(output) == f"{fault} 1"


@pytest.mark.parametrize("fault", ["hang", "die", "restart", "slow", "unread"])
def test_engine_ends_in_the_middle_of_a_fault(place, fault):
    engine = faulty(place, f"{fault},times=1" + (",seconds=60" if fault != "unread" else ""))
    tester = place.tester().see("Press ENTER")
    tester.command("vers").see("vers")
    if fault in ("die", "restart"):
        tester.see("No such process")
    else:
        tester.settle(1)
    assert faults_done(summary(engine)) == f"{fault} 1"
    tester.signal(signal.SIGINT)
    assert tester.ends_with() == 0
    assert place.sockets_left() == []


def test_requests_that_faults_let_pass_are_read_to_the_byte(place):
    """All kinds of lengths, and a request fault that looks at each of them."""
    lines = [f'spell("{"x" * length}")\n' for length in (0, 1, 2, 3, 4, 5, 4000)]
    text = INIT + "".join(lines) + LIST + SOFTWARE
    messages = []
    for record, faults in (("plain.log", []), ("faulty.log", ["miscount,message=REQU_SHUTDOWN"])):
        engine = faulty(place, *faults, options=("--record", record))
        Play(place, text)
        summary(engine)
        messages.append(recorded(place.work / record))
    assert messages[0] == messages[1]
    assert len(messages[0]) == 10


# Answers.


def versions(place, fault, wait):
    """What comes of the two questions for a version when the answer to the first is damaged."""
    engine = faulty(place, f"{fault},message=RESP_GET_SW_VERSION")
    play = Play(place, INIT + f'vers\nverd\nwaitresp("{wait}")\n')
    first, *lines = play.answers.splitlines()
    assert first.startswith("RESP_INIT>")
    return lines, summary(engine)


SW = SOFTWARE_TEXT.rstrip()


@pytest.mark.parametrize(
    "fault, wait, before, behind",
    [
        ("duplicate", 903, [SW, SW], []),
        ("flood,copies=3", 903, [SW, SW, SW, SW], []),
        ("drop", 903, [], []),
        ("late,seconds=1", 902, [], [SW]),
        ("reorder", 902, [], [SW]),
        ("endless", 903, [SW], []),
    ],
)
def test_answer_comes_at_another_time_or_number(place, fault, wait, before, behind):
    lines, output = versions(place, fault, wait)
    (at,) = [index for index, line in enumerate(lines) if line.startswith("RESP_GET_DB_VERSION>")]
    assert (lines[:at], lines[at + 1 :]) == (before, behind)
    assert faults_done(output) == fault.split(",")[0] + " 1"


def test_endless_answer_is_short_of_its_last_byte_and_shown_whole(place):
    _, output = versions(place, "endless", 903)
    text = SW.split("swVersion: ")[1]
    sent = [row for row in table(output) if row[1:3] == ("RESP_GET_SW_VERSION", "sent")]
    assert sent == [("902", "RESP_GET_SW_VERSION", "sent", "1", str(8 + len(text)), "bytes")]


def test_unknown_number_is_reported_and_the_next_answer_shown(place):
    lines, output = versions(place, "unknown", 903)
    assert lines[0].startswith(UNHANDLED)
    assert lines[-1].startswith("RESP_GET_DB_VERSION>")
    assert any(row[1] == "(unknown)" for row in table(output))
    assert faults_done(output) == "unknown 1"


def test_truncated_answers_are_shown_as_far_as_they_go(place):
    engine = faulty(place, "truncate,message=RESP_GET_SW_VERSION")
    play = Play(place, INIT + "vers\n" * 20 + DATABASE)
    lines = play.answers.splitlines()[1:]
    assert len(lines) == 21
    for line in lines[:-1]:
        assert SW.startswith(line.rstrip()) or line.startswith(UNHANDLED), line
    assert len(set(lines)) > 5, "they are cut at different places"
    assert lines[-1].startswith("RESP_GET_DB_VERSION>")
    assert faults_done(summary(engine)) == "truncate 20"


def test_lying_answers_are_shown_otherwise_and_nothing_breaks(place):
    engine = faulty(place, "lie,message=RESP_GET_LIST")
    play = Play(place, INIT + LIST * 30 + DATABASE)
    texts = play.answers.split("RESP_GET_LIST> inputEIS")[1:]
    assert len(texts) == 30
    assert len(set(texts)) > 5
    assert "RESP_GET_DB_VERSION> dbVersion: GeoNames" in texts[-1]
    assert faults_done(summary(engine)) == "lie 30"


def test_oversize_answer_is_refused_by_the_listener_until_server_connects_anew(place):
    engine = faulty(place, "oversize,message=RESP_GET_SW_VERSION,times=1")
    play = Play(place, INIT + 'vers\nwait("1")\nserver("navigation")\n' + DATABASE + SOFTWARE)
    assert "Listen Error: -2\n" in play.shown
    assert play.answers.count(SOFTWARE_TEXT) == 1
    assert "dbVersion" in play.answers
    assert faults_done(summary(engine)) == "oversize 1"
    assert place.sockets_left() == []


# Chance.

CHANCE = tuple(
    f"{kind},message=RESP_GET_SPELL,probability=0.4"
    for kind in ("drop", "duplicate", "unknown", "truncate", "lie", "endless")
)
SPELLS = INIT + "".join(f'spell("<GEOC>{letter}<*>")\n' for letter in "ABCDEFGHIJKLMNOPQRSTUVWZ")


def by_chance(place, seed, *more):
    engine = faulty(place, *CHANCE, *more, seed=seed)
    play = Play(place, SPELLS + DATABASE)
    assert play.answers.splitlines()[-1].startswith("RESP_GET_DB_VERSION>")
    output = summary(engine)
    assert f"kelmora-bench: seed {seed}\n" in output
    return play.answers, faults_done(output), table(output)


def test_seed_brings_the_same_faults_again_and_another_one_others(place):
    once = by_chance(place, 42)
    assert by_chance(place, 42) == once
    assert by_chance(place, 43)[:2] != once[:2]
    for kind in ("drop", "duplicate", "unknown", "truncate", "lie", "endless"):
        assert re.search(rf"\b{kind} \d", once[1]), once[1]


def test_other_faults_leave_those_of_chance_as_they_are(place):
    once = by_chance(place, 42)
    more = by_chance(place, 42, "drop,message=INFO_HEARTBEAT", "miscount,probability=0")
    assert more == once


@pytest.mark.parametrize("zero", ["probability=0", "times=0"])
def test_fault_at_zero_changes_nothing(place, zero):
    text = SPELLS + LIST + 'lang("LangGerman","1")\nwaitresp("601")\n' + SOFTWARE + DATABASE
    plain = place.engine("--record", "plain.log")
    expected = Play(place, text)
    expected_table = table(summary(plain))
    engine = faulty(place, *[f"{kind},{zero}" for kind in KINDS], options=("--record", "zero.log"))
    play = Play(place, text)
    output = summary(engine)
    assert play.answers == expected.answers
    assert play.errors == expected.errors
    assert table(output) == expected_table
    assert faults_done(output) == "none"
    assert recorded(place.work / "zero.log") == recorded(place.work / "plain.log")


# Options.


@pytest.mark.parametrize(
    "option, value, reason",
    [
        ("--fault", "drown", "no fault 'drown'; there are refuse slow"),
        ("--fault", "", "--fault: "),
        ("--fault", "drop,often=1", "drop: no condition 'often'; there are message"),
        ("--fault", "drop,message=RESP_NONE", "drop: message takes the name or the number"),
        ("--fault", "drop,probability=2", "drop: probability takes a number from 0 to 1"),
        ("--fault", "late,seconds=-1", "late: seconds takes seconds, 0 to 86400"),
        ("--fault", "flood,copies=x", "flood: copies takes a whole number"),
        ("--fault", "refuse,message=REQU_INIT", "refuse: message has no effect on this kind"),
        ("--fault", "drop,seconds=1", "drop: seconds has no effect on this kind"),
        ("--fault", "late,copies=1", "late: copies has no effect on this kind"),
        ("--fault", "hang,message=RESP_INIT", "hang: strikes requests, and RESP_INIT is none"),
        ("--fault", "lie,message=REQU_INIT", "lie: strikes what the engine sends"),
        ("--fault", "lie,from=5,until=4", "lie: until is not behind from"),
        ("--log-format", "xml", "--log-format"),
        ("--picture-dir", "missing", "--picture-dir"),
        ("--overlay-dir", "missing", "--overlay-dir"),
        ("--picture-dir", "a file", "--picture-dir"),
        ("--seed", "-1", "'-1' is no seed"),
    ],
)
def test_bad_value_gets_its_reason_and_the_usage(place, option, value, reason):
    (place.work / "a file").write_text("")
    result = subprocess.run(
        [place.programs / "kelmora-bench", f"{option}={value}"],
        capture_output=True,
        timeout=PATIENCE,
        env=place.environment(),
        cwd=place.work,
        text=True,
    )
    assert (result.returncode, result.stdout) == (2, "")
    assert reason in result.stderr.splitlines()[0]
    assert "\nUsage: kelmora-bench [OPTIONS]\n" in result.stderr
    assert place.sockets_left() == []


def test_engine_ends_by_itself_behind_the_answer_to_shutdown(place):
    engine = place.engine("--exit-on-shutdown")
    play = Play(place, INIT + SOFTWARE + 'done\nwaitresp("101")\n')
    assert "RESP_SHUTDOWN>" in play.answers
    assert engine.wait(timeout=PATIENCE) == 0
    assert engine.stderr.read() == ""
    counts = "kelmora-bench: 3 messages received, 3 sent, 1 connections\n"
    assert engine.stdout.read().startswith(counts)
    assert place.sockets_left() == []


# Two testers.


def test_two_testers_get_their_own_answers_and_both_the_notifications(place):
    engine = place.engine()
    first = place.tester().see("Press ENTER")
    second = place.tester().see("Press ENTER")
    for tester in (first, second):
        tester.command("init").see("initialized successfully")
    first.command("vers").see("RESP_GET_SW_VERSION>")
    second.command("verd").see("RESP_GET_DB_VERSION>")
    first.command('lang("LangGerman","1")')
    for tester in (first, second):
        tester.see("INFO_LANGUAGE_INFO>")
    second.command('meas("imperialfeet")')
    for tester in (first, second):
        tester.see("INFO_MEASUREMENT_SYSTEM>")
    assert "RESP_GET_DB_VERSION>" not in first.text()
    assert "RESP_GET_SW_VERSION>" not in second.text()
    for tester in (first, second):
        tester.command("quit")
        assert tester.ends_with() == 0
    assert "6 messages received, 8 sent, 2 connections" in summary(engine)
    assert place.sockets_left() == []


def test_two_testers_at_once_get_all_of_their_own_answers_and_no_others(place):
    engine = place.engine()
    testers = {}
    for name in ("Ger", "Can"):
        line = f'spell("<GEOC>{name}<*>")\nwaitresp("303")\n'
        place.batch(f"{name}.batch", f'startlog("{name}.txt")\n{INIT}{line * 60}stoplog\nquit\n')
        process = subprocess.Popen(
            [place.programs / "ventrik"],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            env=place.environment(),
            cwd=place.work,
        )
        place.started.append(process)
        process.stdin.write(f'\nbatch("{name}.batch")\n'.encode())
        process.stdin.flush()
        testers[name] = process
    for name, process in testers.items():
        process.communicate(timeout=4 * PATIENCE)
        assert process.returncode == 0
        answers = (place.work / f"{name}.txt").read_text()
        asked = re.findall(r'RESP_GET_SPELL> inputEIS: "<GEOC>(\w*)<\*>"', answers)
        assert asked == [name] * 60
    assert "122 messages received, 122 sent, 2 connections" in summary(engine)


def test_faults_of_one_tester_leave_the_other_alone(place):
    engine = faulty(place, "unknown,message=RESP_GET_SW_VERSION", "drop,message=RESP_GET_SPELL")
    first = place.tester().see("Press ENTER")
    second = place.tester().see("Press ENTER")
    for tester in (first, second):
        tester.command("init").see("initialized successfully")
    first.command("vers").see("Unhandled response or info")
    first.command('spell("<GEOC>Ger<*>")')
    second.command("verd").see("RESP_GET_DB_VERSION>")
    first.command("verd").see("RESP_GET_DB_VERSION>")
    assert "Unhandled" not in second.text()
    assert "RESP_GET_SPELL>" not in first.text()
    assert faults_done(summary(engine)) == "unknown 1, drop 1"
