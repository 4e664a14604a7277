# SPDX-License-Identifier: Apache-2.0
"""What runs out or goes wrong around the tester: a server that is stopped, answers late or counts
wrong, floods, a full disk, no descriptors, no terminal. It goes on, or ends as it should."""

import json
import os
import pathlib
import resource
import signal
import time

import pexpect
import pytest

from conftest import PATIENCE
from line_sources import QUESTION, SOURCES
from recovery import NO_SERVER, back_to_work, end_in_order, killed, stopped, works_again

SOFTWARE = "RESP_GET_SW_VERSION> swVersion: kelmora-bench"
DATABASE = "RESP_GET_DB_VERSION> dbVersion"


def initialised(place, *options, program="ventrik"):
    engine = place.engine(*options)
    tester = place.tester(program=program).see("Press ENTER")
    tester.command("init").see("initialized successfully")
    return engine, tester


def wrapped(place, script):
    """A program that runs a line of the shell, in which {} stands for ventrik."""
    path = place.path / "wrapped.sh"
    path.write_text("#!/bin/sh\n" + script.format(place.programs / "ventrik"))
    path.chmod(0o755)
    return str(path)


# The server.


def test_stopped_server_costs_a_send_its_time_and_no_more(place):
    engine, tester = initialised(place)
    stopped(engine)
    begin = time.monotonic()
    tester.command("vers")
    tester.keys('\nx="1"\n')  # typed ahead
    tester.settle(13)
    assert "MsgSendv" not in tester.text() and "has new value" not in tester.text()
    tester.see("IPC MsgSendv error(110): Connection timed out").see("Variable 'x' has new value")
    assert 14 < time.monotonic() - begin < 14 + PATIENCE / 2
    engine.send_signal(signal.SIGCONT)
    works_again(place, tester, engine)
    assert SOFTWARE not in tester.text(), "what timed out was not taken"


@pytest.mark.parametrize("source", SOURCES, ids=lambda source: source.__name__)
def test_wrong_counts_lose_each_message_and_nothing_else(place, source):
    engine = place.engine(f"--fault=miscount,message={QUESTION}")
    tester = place.tester(program=source.PROGRAM, **source.ENVIRONMENT).see("Press ENTER")
    tester.command("init").see("initialized successfully")
    lines = source(place, tester).start()
    lines.go()
    lines.goes_on()
    tester.command("verd").see(DATABASE)
    lines.goes_on()
    lines.stop()
    assert SOFTWARE not in tester.text() and "MsgSendv" not in tester.text()
    works_again(place, tester, engine)


def test_late_reply_holds_back_the_line_that_waits_for_it(place):
    engine, tester = initialised(place, "--fault=late,message=RESP_GET_LIST,times=1,seconds=1")
    tester.command('list("<GEOC>Ger<*>","1","1","none","none","on")')
    tester.keys('\nx="1"\n').see("has new value")
    text = tester.text()
    assert text.index("RESP_GET_LIST> itemList") < text.index("has new value")
    works_again(place, tester, engine)


# A flood.

KINDS, COPIES = 1000, 100
REACHED = "INFO_DESTINATION_REACHED"


def read_until(tester, end):
    """What the tester shows up to a text, read as fast as it comes: no terminal draws it."""
    parts = []
    limit = time.monotonic() + 2 * PATIENCE
    while end not in "".join(parts[-2:]):
        assert time.monotonic() < limit, f"never saw {end!r}"
        try:
            parts.append(tester.child.read_nonblocking(65536, timeout=1))
        except pexpect.TIMEOUT:
            pass
    return "".join(parts).replace("\r\n", "\n")


def test_flood_of_100000_leaves_an_open_prompt_alone_and_is_shown_whole_behind_it(place):
    messages = [
        {"after_ms": 1000, "message": REACHED, "fields": {"element": i, "total": KINDS}}
        for i in range(1, KINDS + 1)
    ]
    rule = {"on": "REQU_GET_DB_VERSION", "times": 1, "send": messages}
    (place.work / "flood.json").write_text(json.dumps({"rules": [rule]}))
    engine, tester = initialised(
        place,
        "--scenario=flood.json",
        f"--fault=flood,message={REACHED},copies={COPIES - 1}",
        "--log=engine.log",
    )
    tester.command('startlog("answers.txt")').command("verd").see(DATABASE)
    stopped(engine)
    tester.keys("\n").see("Cmd>", 4).keys("ve").see("Cmd> ve")
    engine.send_signal(signal.SIGCONT)

    with (place.work / "engine.log").open("rb") as engine_log:
        sent = 0
        while sent < KINDS * COPIES:
            tester.settle(0.2)
            sent += engine_log.read().count(f" {REACHED} dest=".encode())
    assert tester.cursor_line() == "Cmd> ve"
    assert REACHED not in tester.text()
    tester.keys("rs\n")
    shown = read_until(tester, SOFTWARE)
    assert shown.index("vers\033[0;37m\n") < shown.index(REACHED)
    tester.command("stoplog").command('x="1"').see("has new value")
    text = f"{REACHED}> Dest: \n{REACHED}> Element: {{}}   Total: {KINDS}\n"
    flood = "".join(text.format(i) * COPIES for i in range(1, KINDS + 1))
    assert flood in shown
    log = (place.work / "answers.txt").read_text()
    assert flood in log and len(log) < len(flood) + 500 and SOFTWARE in log
    works_again(place, tester, engine)


# The disk.


@pytest.mark.skipif(os.getuid() != 0, reason="mounts a small disk")
def test_disk_full_under_the_log_takes_nothing_from_the_console(place):
    (place.work / "disk").mkdir()
    small_disk = "mount -t tmpfs -o size=16k none disk && exec {}"  # seen by the tester alone
    program = wrapped(place, f"exec unshare --mount sh -c '{small_disk}'")
    flood = "--fault=flood,message=RESP_GET_SW_VERSION,copies=299"
    engine, tester = initialised(place, flood, program=program)
    disk = pathlib.Path(f"/proc/{tester.child.pid}/root{place.work}/disk")
    filler = disk / "filler"
    filler.write_bytes(b"x" * 8192)
    log = disk / "answers.txt"
    tester.command('startlog("disk/answers.txt")').command("vers").see(SOFTWARE, 300)
    assert log.stat().st_size == 8192 == 16384 - filler.stat().st_size
    filler.unlink()
    tester.command("verd").see(DATABASE).command("stoplog").command('x="1"').see("has new value")
    text = log.read_text()
    assert text.startswith(f"{SOFTWARE} ") and text.endswith("\n")
    assert text.count(DATABASE) == 1
    works_again(place, tester, engine)


def test_device_that_takes_nothing_as_the_log(place):
    engine, tester = initialised(place, "--fault=flood,message=RESP_GET_SW_VERSION,copies=299")
    tester.command('startlog("/dev/full")').command("vers").see(SOFTWARE, 300)
    tester.command("stoplog").command('startlog("answers.txt")').command("verd").see(DATABASE)
    tester.command("stoplog").command('x="1"').see("has new value")
    assert (place.work / "answers.txt").read_text().count("dbVersion") == 1
    works_again(place, tester, engine)


def contents(folder):
    return {
        path.relative_to(folder): path.read_bytes() if path.is_file() else None
        for path in folder.rglob("*")
    }


@pytest.mark.parametrize("ending", ["quit", "SIGTERM"])
@pytest.mark.parametrize("obstacle", ["a folder", "a link to nowhere", "read-only"])
def test_history_that_cant_be_written_is_left_as_it_is(place, obstacle, ending):
    history = place.work / "qhistory.txt"
    program = "ventrik"
    if obstacle == "a folder":
        history.mkdir()
        (history / "kept.txt").write_text("kept")
    elif obstacle == "a link to nowhere":
        history.symlink_to("nosuch/history.txt")
    else:
        history.write_text("kept\n")
        history.chmod(0o444)
        place.work.chmod(0o555)
        if os.getuid() == 0:
            program = wrapped(place, "exec setpriv --bounding-set=-dac_override {}")
    before = contents(place.work)
    tester = place.tester(program=program).see("Press ENTER")
    tester.command('x="1"').see("has new value")
    if ending == "quit":
        tester.command("quit")
    else:
        tester.signal(signal.SIGTERM)
    assert tester.ends_with() == 0
    place.work.chmod(0o755)
    assert contents(place.work) == before


# Descriptors.


def descriptors(process):
    return {int(name) for name in os.listdir(f"/proc/{process}/fd")}


class NoDescriptors:
    """For a scope, a process can open nothing more."""

    def __init__(self, process):
        self.process = process

    def __enter__(self):
        used = descriptors(self.process)
        first_free = next(number for number in range(len(used) + 1) if number not in used)
        self.before = resource.prlimit(self.process, resource.RLIMIT_NOFILE)
        resource.prlimit(self.process, resource.RLIMIT_NOFILE, (first_free, self.before[1]))

    def __exit__(self, *_):
        resource.prlimit(self.process, resource.RLIMIT_NOFILE, self.before)


def test_without_descriptors_each_command_says_its_word_and_all_work_with_them(place):
    engine, tester = initialised(place)
    place.batch("some.batch", 'y="2"\n')
    (place.work / "raw.log").write_text("")
    files = contents(place.work)
    before = descriptors(tester.child.pid)
    with NoDescriptors(tester.child.pid):
        for line, word in [
            ('batch("some.batch")', "Error: Can't open file."),
            ('gnlog("raw.log")', "Error: Can not open file!"),
            ('gntolog("raw.log","text.txt")', "Extraction finished"),
            (' batchlog("raw.log")', "Error: Can not open file!"),
            ('save_shared("shared.bmp")', "Open /TORVALE_GLES2 failed:Too many open files"),
            ('startlog("answers.txt")', "Cmd>"),
            ("vers", SOFTWARE),
            ("stoplog", "Cmd>"),
            ('rldresp("on")', "Response Filter : ON"),
            ('monkey("1")', "Error: Monkey_config.txt not found!"),
        ]:
            seen = tester.text().count(word)
            tester.command(line).see(word, seen + 1)
    assert contents(place.work) == files
    assert descriptors(tester.child.pid) == before, "none got lost"
    tester.command('startlog("answers.txt")').command("verd").see(DATABASE).command("stoplog")
    tester.command('batch("some.batch")').see("Variable 'y' has new value '2'")
    assert DATABASE in (place.work / "answers.txt").read_text()
    works_again(place, tester, engine)


def test_without_descriptors_nothing_connects_and_with_them_it_does(place):
    engine = place.engine()
    tester = place.tester().see("Press ENTER")
    with NoDescriptors(tester.child.pid):
        tester.command("vers").see(NO_SERVER)
        tester.command('server("navigation")').see("The server is changed")
        tester.command("vers").see(NO_SERVER, 2)
        tester.command("init").see("Listen Error: -1", 3)
    back_to_work(place, tester, engine)
    connected = descriptors(tester.child.pid)
    for _ in range(3):
        back_to_work(place, tester, engine)
    assert len(descriptors(tester.child.pid)) == len(connected), "none gets lost"
    end_in_order(place, tester, engine)


# The terminal.


def hang_up(tester):
    tester.child.ptyproc.fileobj.close()


def until_it_ends(tester):
    end = time.monotonic() + PATIENCE
    while tester.child.isalive():
        assert time.monotonic() < end, "it goes on without a terminal"
        time.sleep(0.02)
    return tester.child


@pytest.mark.parametrize("state", ["idle", "at the prompt", "waiting", "in a stream of errors"])
def test_terminal_that_goes_away_ends_the_tester(place, state):
    engine, tester = initialised(place)
    if state == "at the prompt":
        tester.keys("\n").see("Cmd>", 2).keys("half").see("Cmd> half")
    elif state == "waiting":
        tester.command('waitresp("4711")').see("4711")
    elif state == "in a stream of errors":
        killed(engine)
        tester.command('server("navigation")').see("Listen Error: -1", 3)
    hang_up(tester)
    assert until_it_ends(tester).signalstatus == signal.SIGHUP


def seconds_of_work(process):
    with open(f"/proc/{process}/stat") as file:
        fields = file.read().rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


@pytest.mark.parametrize("state", ["idle", "at the prompt"])
def test_tester_that_is_to_outlive_its_terminal_waits_quietly_for_a_signal(place, state):
    engine = place.engine()
    tester = place.tester(program=wrapped(place, "trap '' HUP; exec {}")).see("Press ENTER")
    tester.command("init").see("initialized successfully")
    if state == "at the prompt":
        tester.keys("\n").see("Cmd>", 2).keys("half").see("Cmd> half")
    hang_up(tester)
    worked = seconds_of_work(tester.child.pid)
    time.sleep(1)
    assert tester.child.isalive()
    assert seconds_of_work(tester.child.pid) - worked < 0.2
    tester.signal(signal.SIGTERM)
    assert until_it_ends(tester).exitstatus == 0
    assert (place.work / "qhistory.txt").read_text() == "init\n"
    engine.terminate()
    assert engine.wait(timeout=PATIENCE) == 0
    assert place.sockets_left() == []
