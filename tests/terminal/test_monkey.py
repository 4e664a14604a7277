# SPDX-License-Identifier: Apache-2.0
"""The monkey's commands, its files, and how it ends."""

import contextlib
import re
import signal
import time

import pytest

from conftest import PATIENCE
from hurried import FINISHED, GREEN, GREY, MARKED, RED, STALL, Hurried

NOT_FOUND = RED + "Error: Monkey_config.txt not found!\n" + GREY
EMPTY = "monkey_config.txt not found or empty\n"


def configure(place, *sections):
    text = "[config]\ncontent = eu\n\n"
    (place.work / "monkey_config.txt").write_text(
        text + "".join(f"[{section}]\ndefault = 10\n\n" for section in sections)
    )


@pytest.fixture
def engine(place):
    return place.engine("--record", "recording")


def requests_by_now(place):
    return (place.work / "recording").read_text().count("\n") - 1  # less the `init`


def requests(place, engine):
    engine.send_signal(signal.SIGTERM)
    assert engine.wait(timeout=PATIENCE) == 0
    return requests_by_now(place)


def behind(hurried, sight):
    """The monkey's lines behind the last place of a text."""
    begin = hurried.take().rindex(sight)
    return [drawn for drawn in hurried.drawn() if drawn.begin > begin]


# How long.


def test_count_is_the_number_of_lines(place, engine):
    configure(place, "list", "wep", "vers")
    hurried = Hurried(place).initialise().command('monkey("5")').see(FINISHED)
    assert "Monkey started for 5 rounds.\n" in hurried.take()
    lines = [drawn.line for drawn in hurried.drawn()]
    assert len(lines) == 5
    assert hurried.log() == lines
    hurried.quit()
    assert requests(place, engine) == 5
    # Each list and item goes by a name of those that were defined before the first line.
    assert "INVALID:" not in hurried.take()


def test_count_of_nothing_only_defines_the_items(place, engine):
    configure(place, "vers")
    hurried = Hurried(place).initialise().command('monkey("0")').see(FINISHED)
    assert "Monkey started for 0 rounds.\n" in hurried.take()
    assert hurried.drawn() == [] and hurried.log() == []
    hurried.quit()
    assert requests(place, engine) == 0


def test_without_a_count_it_goes_on_until_it_is_stopped(place, engine):
    configure(place, "vers")
    hurried = Hurried(place).initialise().command("monkey").see("Infinite monkey started at 20")
    hurried.see_drawn(20).command("stopmonkey").see(FINISHED)
    lines = len(hurried.drawn())
    assert behind(hurried, FINISHED) == []
    hurried.quit()
    assert len(hurried.drawn()) == lines
    assert hurried.take().count(FINISHED) == 1
    assert requests(place, engine) == lines


def test_stopping_for_seconds_is_a_pause(place, engine):
    configure(place, "vers")
    pause = "Monkey stopped for 40 seconds.\n"
    hurried = Hurried(place).initialise().command("monkey").see_drawn(3)
    hurried.command('stopmonkey("40")').see(pause)
    hurried.until(lambda _: behind(hurried, pause), "a line behind the pause")
    hurried.command('stopmonkey("-3")').see(FINISHED)
    hurried.quit()
    assert hurried.take().count(pause) == 1
    assert hurried.take().count(FINISHED) == 1


def test_pause_counts_no_rounds(place, engine):
    configure(place, "vers")
    hurried = Hurried(place, HURRY="20").initialise().command('monkey("20")').see_drawn(1)
    hurried.command('stopmonkey("2")').see("Monkey stopped for 2 seconds.\n").see(FINISHED)
    hurried.quit()
    assert len(hurried.drawn()) == 20


def test_second_monkey_takes_the_place_of_the_first(place, engine):
    configure(place, "vers")
    hurried = Hurried(place).initialise().command("monkey").see_drawn(3)
    configure(place, "verd")
    hurried.command('monkey("3")').see(FINISHED)
    lines = [drawn.line for drawn in hurried.drawn()]
    assert lines[-3:] == ["verd"] * 3 and set(lines[:-3]) == {"vers"}
    assert hurried.log() == lines[-3:]
    hurried.quit()
    assert len(hurried.drawn()) == len(lines), "the first one goes on"
    assert hurried.take().count(FINISHED) == 1


# How it ends with the program.


def test_quit_ends_a_monkey_that_runs(place, engine):
    configure(place, "vers", "list", "map", "wep")
    hurried = Hurried(place).initialise().command("monkey").see_drawn(10)
    hurried.quit()
    engine.send_signal(signal.SIGTERM)
    assert engine.wait(timeout=PATIENCE) == 0
    assert place.sockets_left() == []


def test_signal_ends_a_monkey_that_pauses(place, engine):
    configure(place, "vers")
    hurried = Hurried(place).initialise().command("monkey").see_drawn(1)
    hurried.command('stopmonkey("4000")').see("Monkey stopped for 4000 seconds.\n")
    hurried.process.send_signal(signal.SIGINT)
    assert hurried.process.wait(timeout=PATIENCE) == 0


def test_signal_ends_a_monkey_that_waits_for_a_person(place, engine):
    configure(place, "list")
    hurried = Hurried(place).initialise().command("monkey").see(STALL)
    hurried.process.send_signal(signal.SIGTERM)
    assert hurried.process.wait(timeout=PATIENCE) == 0
    assert len(hurried.drawn()) == 21


def test_monkey_that_draws_quit_ends_the_program_with_the_next_key(place, engine):
    configure(place, "quit")
    hurried = Hurried(place).initialise().command("monkey").see_drawn(1)
    # A line is shown before it is run, so the first key may come too early and open the prompt.
    end = time.monotonic() + PATIENCE
    while hurried.process.poll() is None and time.monotonic() < end:
        with contextlib.suppress(BrokenPipeError):
            hurried.process.stdin.write(b"\n")
            hurried.process.stdin.flush()
        time.sleep(0.1)
    assert hurried.process.poll() == 0
    assert [drawn.line for drawn in hurried.drawn()] == ["quit"]
    assert hurried.log() == ["quit"]


# What it draws from.


def test_without_a_configuration_there_is_nothing_to_send(place, engine):
    hurried = Hurried(place).initialise().command('monkey("5")').see(FINISHED)
    assert NOT_FOUND in hurried.take()
    assert hurried.drawn() == [] and hurried.log() == []
    assert EMPTY not in hurried.take()
    hurried.quit()
    assert requests(place, engine) == 0


def test_configuration_that_is_gone_leaves_empty_lines(place, engine):
    configure(place, "vers")
    hurried = Hurried(place).initialise().command('monkey("1")').see(FINISHED)
    (place.work / "monkey_config.txt").unlink()
    hurried.command('monkey("4")').see(FINISHED, 2)
    assert hurried.take().count(NOT_FOUND) == 1
    assert hurried.take().count(EMPTY) == 4
    assert [drawn.line for drawn in hurried.drawn()] == ["vers"] + [""] * 4
    assert hurried.log() == []
    hurried.quit()
    assert requests(place, engine) == 1


def test_lines_that_name_lost_items_are_invalid_and_stay_here(place, engine):
    configure(place, "citems", "list", "wep", "vers")
    hurried = Hurried(place).initialise().command('monkey("150")').see(FINISHED)
    lines = hurried.drawn()
    lost = [drawn.name for drawn in lines].index("citems")
    for at, drawn in enumerate(lines):
        # Without its item a line is marked in lower case; before, and without items, it is not.
        needs_items = drawn.name in ("list", "wep")
        invalid = ("cmd", "INVALID") if needs_items and at > lost else ("Cmd", "MONKEY")
        assert (drawn.mark, drawn.kind) == invalid, drawn.line
        if not drawn.is_valid:
            assert '""' in drawn.line, "where the name would be"
    assert {drawn.name for drawn in lines if not drawn.is_valid} == {"list", "wep"}
    assert hurried.log() == [drawn.line for drawn in lines], "the log has invalid ones as well"
    hurried.quit()
    sent = [drawn for drawn in lines if drawn.is_valid and drawn.name != "citems"]
    assert requests(place, engine) == len(sent)


def test_section_that_is_switched_off_is_never_drawn(place, engine):
    configure(place, "vers", "-verd", ";meas")
    hurried = Hurried(place).initialise().command('monkey("60")').see(FINISHED)
    assert {drawn.line for drawn in hurried.drawn()} == {"vers"}
    hurried.quit()


def test_lines_of_a_batch_section_go_before_drawn_ones_and_not_into_the_log(place, engine):
    place.batch("two.batch", 'verd\nlitem("x")')
    section = 'batch("two.batch")'
    configure(place, section)
    hurried = Hurried(place).initialise().command('monkey("6")').see(FINISHED)
    lines = [drawn.line for drawn in hurried.drawn()]
    assert lines == [section, "verd", 'litem("x")'] * 2
    assert hurried.log() == [section] * 2
    hurried.quit()


# The stall.


def test_search_that_stalls_waits_for_a_person(place, engine):
    configure(place, "list")
    tester = place.tester(program="hurried-ventrik", columns=200).see("Press ENTER")
    tester.command("init").see("initialized successfully")
    tester.command('monkey("45")').see(STALL)

    def lines():
        return [match[3] for match in MARKED.finditer(tester.raw.replace("\r\n", "\n"))]

    assert len(lines()) == 21 and all(line.startswith('list("", ') for line in lines())
    tester.settle(1)
    assert len(lines()) == 21 and requests_by_now(place) == 20

    def type_c_until(condition):
        """The prompt takes its share of the keys, so one may not do."""

        def typed():
            tester.keys("c").settle(0.2)
            return condition()

        tester.until(typed, "the monkey goes on")

    # The line that asked is the first of the next twenty-one.
    type_c_until(lambda: tester.raw.count(STALL) == 2)
    assert len(lines()) == 41
    type_c_until(lambda: FINISHED.strip() in tester.text())
    assert len(lines()) == 45
    assert tester.raw.count(STALL) == 2
    tester.signal(signal.SIGTERM)
    assert tester.ends_with() == 0
    assert requests(place, engine) == 45


def test_key_for_a_stall_needs_an_enter_while_the_main_loop_reads_no_keys(place, engine):
    configure(place, "list")
    place.batch("night.batch", 'monkey\nwait("1000")\n')
    tester = place.tester(program="hurried-ventrik", columns=200).see("Press ENTER")
    tester.command("init").see("initialized successfully")
    tester.command('batch("night.batch")').see(STALL)
    tester.keys("c").settle(1)  # which the terminal keeps until a line is whole
    assert tester.raw.count("MONKEY:") == 21 and requests_by_now(place) == 20
    tester.keys("\n").see(STALL, 2)
    assert tester.raw.count("MONKEY:") == 41
    tester.signal(signal.SIGTERM)
    assert tester.ends_with() == 0


# A trip.


def test_drive_that_arrives_ends_the_route_for_the_monkey(place, engine):
    """A typed trip is started and followed by the monkey, which has one line for the time that it
    lasts."""
    (place.work / "monkey_config.txt").write_text(
        "[start]\ndefault = 1\nifactiveroute = 0\n\n"
        "[vers]\ndefault = 1\nifactiveroute = 0\n\n"
        "[verd]\ndefault = 0\nifactiveroute = 2\n\n"
    )
    hurried = Hurried(place).initialise().command("monkey").see_drawn(10)
    assert {drawn.name for drawn in hurried.drawn()} == {"vers"}
    hurried.command('demo("on","0","0")')
    hurried.command('item("SDestinationElementList","stops","<GEO>11.57 48.13<*>","")')
    hurried.command('rnew("stops","modes")')
    arrived = re.compile(r"INFO_DESTINATION_REACHED> Dest: (?s:.*)MONKEY:(start|vers)")
    hurried.until(arrived.search, "a line of no route behind an arrival", 2 * PATIENCE)
    shown = hurried.take()
    arrival = arrived.search(shown).start()
    departure = re.search(r"routeDesc: \(\d", shown).end()
    names = [drawn.name for drawn in hurried.drawn() if departure < drawn.begin < arrival]
    # It may have been at a line when either came.
    assert set(names[1:-1]) == {"verd"} and len(names) > 100
    hurried.quit()
