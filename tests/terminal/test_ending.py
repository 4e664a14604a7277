# SPDX-License-Identifier: Apache-2.0
"""How the program ends: status, terminal, threads and sockets, from every state."""

import os
import signal
import subprocess
import termios
import time

import pytest

from conftest import PATIENCE
from recovery import stopped


def until(condition):
    end = time.monotonic() + PATIENCE
    while not condition():
        assert time.monotonic() < end
        time.sleep(0.02)


def ended_in_order(place, tester):
    assert tester.ends_with() == 0
    engines = [p for p in place.started if isinstance(p, subprocess.Popen)]
    for engine in engines:
        engine.send_signal(signal.SIGTERM)
        assert engine.wait(timeout=30) == 0
    assert place.sockets_left() == []


@pytest.mark.parametrize("number", [signal.SIGINT, signal.SIGTERM])
def test_signal_before_any_key(place, number):
    tester = place.tester().see("Press ENTER")
    tester.signal(number)
    ended_in_order(place, tester)


@pytest.mark.parametrize("number", [signal.SIGINT, signal.SIGTERM])
def test_signal_at_the_open_prompt_restores_the_terminal(place, number):
    tester = place.tester().see("Press ENTER")
    descriptor = os.dup(tester.child.child_fd)
    flags = termios.tcgetattr(descriptor)[:4]
    flags[3] |= termios.ICANON | termios.ECHO  # the program may stand in a raw read by now
    tester.keys("\n").see("Cmd>").keys("half a li").see("half a li")
    tester.signal(number)
    ended_in_order(place, tester)
    assert termios.tcgetattr(descriptor)[:4] == flags
    os.close(descriptor)


@pytest.mark.parametrize("line", ['wait("1000")', 'waitresp("4711")', 'wait("-1")'])
def test_signal_in_a_wait_state(place, line):
    place.engine()
    tester = place.tester().see("Press ENTER")
    tester.command("init").see("initialized successfully")
    tester.command(line).see(line)
    tester.signal(signal.SIGINT)
    ended_in_order(place, tester)


def test_signal_while_the_server_is_away(place):
    tester = place.tester().see("Press ENTER")
    tester.command("init").see("Listen Error: -1", 3)
    tester.signal(signal.SIGINT)
    ended_in_order(place, tester)


def test_signal_while_the_server_takes_nothing(place):
    engine = place.engine()
    tester = place.tester().see("Press ENTER")
    tester.command("init").see("initialized successfully")
    stopped(engine)
    tester.command("vers").see("vers")
    tester.signal(signal.SIGINT)
    assert tester.ends_with() == 0
    engine.send_signal(signal.SIGCONT)


def test_second_signal_kills(place):
    # An empty history entry makes the saving wait for ever: the first signal's handler is stuck.
    (place.work / "qhistory.txt").write_text("first\n\nsecond\n")
    tester = place.tester().see("Press ENTER")
    tester.signal(signal.SIGTERM)
    until(lambda: (place.work / "qhistory.txt").read_text() == "first\n")
    tester.signal(signal.SIGTERM)
    assert tester.ends_with() == -signal.SIGTERM


def test_quit_ends_with_the_listener_running(place):
    place.engine()
    tester = place.tester().see("Press ENTER")
    tester.command("init").see("initialized successfully")
    tester.command("quit")
    ended_in_order(place, tester)


def test_quit_in_a_batch_file_ends_the_program(place):
    place.batch("quit.batch", "help\nquit\nhelp\n")
    tester = place.tester().see("Press ENTER")
    tester.command('batch("quit.batch")')
    assert tester.ends_with() == 0
    assert tester.text().count("Special commands:") == 1


def test_history_is_saved_by_signals_and_by_quit(place):
    tester = place.tester().see("Press ENTER")
    tester.command('x="1"').see("has new value")
    tester.signal(signal.SIGINT)
    assert tester.ends_with() == 0
    assert (place.work / "qhistory.txt").read_text() == 'x="1"\n'
    tester = place.tester().see("Press ENTER")
    tester.command('y="€"').see("has new value '€'")
    tester.command("quit")
    assert tester.ends_with() == 0
    assert (place.work / "qhistory.txt").read_text() == 'x="1"\ny="€"\nquit\n'


def test_fault_signal_from_outside_saves_the_history_once_and_the_second_kills(place):
    tester = place.tester().see("Press ENTER")
    tester.command('x="1"').see("has new value")
    tester.signal(signal.SIGSEGV)
    tester.command('y="2"').see("Variable 'y' has new value")
    assert (place.work / "qhistory.txt").read_text() == 'x="1"\n'
    tester.signal(signal.SIGSEGV)
    assert tester.ends_with() == -signal.SIGSEGV


def test_end_of_input_reads_on_until_a_signal(place):
    process = subprocess.Popen(
        [place.programs / "ventrik"],
        stdin=subprocess.DEVNULL,
        stdout=subprocess.PIPE,
        stderr=subprocess.PIPE,
        env=place.environment(),
        cwd=place.work,
    )
    place.started.append(process)
    while b"Cmd> " not in process.stdout.readline(4096):
        pass
    assert process.poll() is None
    process.send_signal(signal.SIGTERM)
    process.communicate(timeout=30)
    assert process.returncode == 0


def test_signal_while_the_terminal_takes_no_output(place):
    tester = place.tester().see("Press ENTER")
    tester.command("init").see("Listen Error: -1", 3)
    time.sleep(1)  # nobody reads: the stream of errors fills the terminal
    tester.signal(signal.SIGTERM)
    # Not ends_with(), which would read what is waiting.
    until(lambda: not tester.child.isalive())
    assert tester.child.exitstatus == 0
