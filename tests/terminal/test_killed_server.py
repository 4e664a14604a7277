# SPDX-License-Identifier: Apache-2.0
"""The server is killed at every moment of an exchange: the tester says so, goes on, and works
again with a server that is started anew and a server() line."""

import pytest

from halted_thread import SENDS, Halted, threads
from line_sources import QUESTION, SOURCES
from recovery import (
    NO_PROCESS,
    NO_SERVER,
    back_to_work,
    end_in_order,
    killed,
    stopped,
    works_again,
)

pytestmark = pytest.mark.skipif(not SENDS, reason="no system call numbers for this processor")

LOG = ("--log", "engine.log")


@pytest.fixture(params=SOURCES, ids=lambda source: source.__name__)
def source(request, place):
    tester = place.tester(program=request.param.PROGRAM, **request.param.ENVIRONMENT)
    return request.param(place, tester.see("Press ENTER"))


def struck(place, fault):
    """Whether the engine has committed a fault by now."""
    return f" {fault}" in (place.work / "engine.log").read_text()


def goes_on_without_a_server(source, sight):
    """Each line fails with its own message, and the next one is taken."""
    before = source.tester.text().count(sight)
    source.goes_on()
    source.tester.see(sight, before + 1)


def let_go(source, thread, sight):
    """Lets a thread go after its server was killed, and sees what it says of that."""
    source.tester.settle(0.1)
    before = source.tester.text().count(sight)
    thread.let_go()
    source.tester.see(sight, before + 1)


# From a line: the tester connects, and sends.


@pytest.mark.parametrize("message", [1, 2], ids=["handshake", "first message"])
def test_server_killed_just_before(place, source, message):
    source.start()
    with source.halted() as thread:
        engine = place.engine()
        source.go()
        thread.run_to_message(message)
        killed(engine)
        sight = NO_SERVER if message == 1 else NO_PROCESS
        let_go(source, thread, sight)
    goes_on_without_a_server(source, sight)
    works_again(place, source.tester)


def test_server_killed_in_the_handshake(place, source):
    source.start()
    engine = place.engine("--fault=slow,seconds=60", *LOG)
    source.go()
    source.tester.until(lambda: struck(place, "slow"), "a handshake")
    before = source.tester.text().count(NO_SERVER)
    killed(engine)
    source.tester.see(NO_SERVER, before + 1)
    goes_on_without_a_server(source, NO_SERVER)
    works_again(place, source.tester)


def connected(place, source, *options):
    engine = place.engine(*options)
    source.tester.command("init").see("initialized successfully")
    source.start()
    return engine


def test_server_killed_with_a_message_that_it_has_not_read(place, source):
    engine = connected(place, source, f"--fault=unread,message={QUESTION}", *LOG)
    source.go()
    source.tester.until(lambda: struck(place, "unread"), "a message")
    assert NO_PROCESS not in source.tester.text()
    killed(engine)
    source.tester.see(NO_PROCESS)
    goes_on_without_a_server(source, NO_PROCESS)
    works_again(place, source.tester)


def test_server_killed_between_data_part_and_end_marker(place, source):
    engine = connected(place, source)
    with source.halted() as thread:
        source.go()
        thread.run_to_message(2)
        killed(engine)
        source.tester.settle(0.1)
        assert NO_PROCESS not in source.tester.text()
    goes_on_without_a_server(source, NO_PROCESS)
    works_again(place, source.tester)


def test_server_killed_with_an_end_marker_that_it_has_not_read(place, source):
    engine = connected(place, source)
    with source.halted() as thread:
        source.go()
        thread.run_to_message(2)
        stopped(engine)
        thread.finish_message()
    source.tester.settle(0.3)
    assert NO_PROCESS not in source.tester.text()
    killed(engine)
    goes_on_without_a_server(source, NO_PROCESS)
    works_again(place, source.tester)


def test_server_killed_while_idle(place, source):
    engine = connected(place, source)
    with source.halted():
        killed(engine)
    source.go()
    source.tester.see(NO_PROCESS)
    goes_on_without_a_server(source, NO_PROCESS)
    works_again(place, source.tester)


# Towards the tester.

SOFTWARE = "RESP_GET_SW_VERSION> swVersion: kelmora-bench"


def listening(place, *options):
    """An initialised tester, its engine, and the listener's thread."""
    engine = place.engine(*options)
    tester = place.tester().see("Press ENTER")
    before = threads(tester.child.pid)
    tester.command("init").see("initialized successfully")
    (listener,) = threads(tester.child.pid) - before
    return tester, engine, listener


def test_server_killed_in_a_flood(place):
    engine = place.engine("--fault=flood,message=RESP_GET_SW_VERSION,copies=100000")
    tester = place.tester().see("Press ENTER")
    tester.command("init").see("initialized successfully")
    tester.command("vers").see(SOFTWARE, 20)
    killed(engine)
    tester.settle(0.3)
    assert "Listen Error" not in tester.text()
    tester.command("verd").see(NO_PROCESS)
    works_again(place, tester)


@pytest.mark.parametrize("answers", [1, 2], ids=["data part", "end marker"])
def test_server_killed_before_the_tester_answers_its(place, answers):
    tester, engine, listener = listening(place)
    with Halted(listener) as thread:
        tester.command("vers")
        thread.run_to_message(answers)
        killed(engine)
    tester.see(SOFTWARE)
    tester.command("verd").see(NO_PROCESS)
    works_again(place, tester)


def test_server_killed_before_it_sends_its_end_marker(place):
    tester, engine, listener = listening(place)
    with Halted(listener) as thread:
        tester.command("vers")
        thread.run_to_message(1)
        stopped(engine)
    tester.settle(0.3)
    killed(engine)
    tester.command("verd").see(NO_PROCESS)
    assert SOFTWARE not in tester.text(), "the message isn't whole without it"
    engine = back_to_work(place, tester)
    tester.see(SOFTWARE)  # with the connection goes the wait
    end_in_order(place, tester, engine)
