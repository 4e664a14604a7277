# SPDX-License-Identifier: Apache-2.0
"""The example configuration against the bench engine, until the monkey has been everywhere."""

import pathlib
import re
import shutil
import signal

import pytest

from conftest import PATIENCE, Place
from hurried import STALL, Hurried
from monkey_session import (
    REQUESTS,
    Session,
    blocked_lines,
    early_invalid_lines,
    lines_out_of_a_route,
    started_handles,
)
from monkey_words import is_as_generated, parameters_of

EXAMPLE = pathlib.Path(__file__).parents[2] / "examples" / "monkey_config.txt"
SECTIONS = re.findall(r"^\[(?![-;]|config)(.*)\]$", EXAMPLE.read_text(), re.M)
FIXED = [section for section in SECTIONS if "(" in section]
ENOUGH = 70  # seconds; it takes about 15

# What the console shows of having been somewhere.
SIGHTS = {
    "a row": r"itemList:\n +\d+\. \(<",
    "a row of what a row has": r'GET_LIST> inputEIS: "<GEOC>[^"]*<\*><(GEOS|CTY)>.*\n'
    r"(.*\n){4}.*itemList:\n +\d+\. \(<",
    "details of a place": r'RESP_GET_DETAILS> outputEIS: ".*<GEO>',
    "a trip to a place of which details were seen": r'RESP_NEW_TRIP> destinations: 1. \("<CTR>',
    "a calculated route": r"calcState: Calculated\n.*calcPercent: 100",
    "a guided route": r"INFO_ACTIVE_ROUTE_DESC> routeDesc: \(\d",
    "an item that killed no route": r'No such RouteHandleList: "rh"',
}


class Person:
    """Types a "c" whenever the monkey asks for one; the main loop waits, and takes no keys."""

    def __init__(self, hurried):
        self.hurried = hurried
        self.typed = 0
        self.missing = []

    def __str__(self):
        return f"all sections and sights, missing {self.missing}"

    def has_seen_all(self, text):
        if text.count(STALL) > self.typed:
            self.typed += 1
            self.hurried.process.stdin.write(b"c")
            self.hurried.process.stdin.flush()
        drawn = {line.line if line.line in FIXED else line.name for line in self.hurried.drawn()}
        self.missing = [section for section in SECTIONS if section not in drawn]
        self.missing += [what for what, sight in SIGHTS.items() if not re.search(sight, text)]
        return not self.missing


@pytest.fixture(scope="module")
def session(request):
    place = Place(request.config.getoption("--programs"))
    request.addfinalizer(place.close)
    shutil.copy(EXAMPLE, place.work)
    log = ["--log", "log.json", "--log-format", "json", "--record", "recording"]
    engine = place.engine(*log, "--picture-dir", ".")
    # In less of a hurry than elsewhere: an answer, which takes 20 ms, comes before the next line.
    hurried = Hurried(place, HURRY="30").initialise()
    hurried.command("monkey").see("Infinite monkey started at ").command('wait("1000")')
    person = Person(hurried)
    hurried.until(person.has_seen_all, person, ENOUGH)
    hurried.process.send_signal(signal.SIGTERM)
    assert hurried.process.wait(timeout=PATIENCE) == 0
    engine.send_signal(signal.SIGTERM)
    assert engine.wait(timeout=PATIENCE) == 0
    assert place.sockets_left() == []
    return Session(place, hurried, engine.stdout.read())


def test_weights_of_the_example_are_in_balance():
    sections = re.findall(r"^\[(?![-;]|config)(.*)\]\n((?:.+\n)+)", EXAMPLE.read_text(), re.M)
    keys = {
        name: {k: float(v) for k, v in re.findall(r"^(\w+) = (.*)$", body, re.M)}
        for name, body in sections
    }
    assert list(keys) == SECTIONS
    defaults = {name: lines.pop("default") for name, lines in keys.items()}
    routes = {name: lines.pop("ifactiveroute", defaults[name]) for name, lines in keys.items()}
    assert sum(routes.values()) == sum(defaults.values())
    for name, factors in keys.items():
        shifted = sum(int(defaults[target] * factor) for target, factor in factors.items())
        assert shifted == sum(defaults[target] for target in factors), name
    groups = {frozenset(factors) for factors in keys.values() if factors}
    assert sum(map(len, groups)) == len(frozenset().union(*groups)), "a group is set as a whole"


def test_every_line_is_marked_and_coloured_as_a_command(session):
    marks = {(drawn.mark, drawn.kind) for drawn in session.lines}
    assert marks <= {("Cmd", "MONKEY"), ("cmd", "INVALID")}
    shown = session.console.count("MONKEY:") + session.console.count("INVALID:")
    assert shown == len(session.lines)


def test_every_line_has_words_and_numbers_of_its_command(session):
    valid = [drawn.line for drawn in session.lines if drawn.is_valid]
    assert [line for line in valid if not is_as_generated(line, FIXED)] == []


def test_the_log_has_the_lines_that_were_shown(session):
    shown = [drawn.line for drawn in session.lines]
    # The signal may have come between the log and the console.
    assert session.monkey_log[: len(shown)] == shown
    assert len(session.monkey_log) - len(shown) in (0, 1)


def test_the_engine_gets_every_line_in_order(session):
    shown = ["REQU_INIT"] + [REQUESTS[drawn.name] for drawn in session.sending_lines()]
    received = [name for name, _ in session.received]
    # And between the console and the engine.
    assert received == shown[: len(received)]
    assert len(shown) - len(received) in (0, 1)


def test_the_engine_gets_the_tagged_text_of_searches(session):
    pairs = list(zip(session.sending_lines(), session.received[1:]))
    for drawn, (name, body) in pairs:
        if drawn.name in ("info", "spell", "opt", "list", "det", "map"):
            assert parameters_of(drawn.line)[0].encode() in body, (drawn.line, name)


def test_lists_are_asked_for_with_the_field_that_the_monkey_defined_at_its_start(session):
    lists = [
        entry["fields"]["fieldNames"]
        for entry in session.log
        if entry["message"] == "REQU_GET_LIST" and "<IFT>" not in entry["fields"]["inputEIS"]
    ]
    # Names are short: a list may have got a second field from another item of its name.
    assert lists and all("Default" in fields for fields in lists)


def test_pages_of_lists_stay_within_the_numbers_that_were_offered(session):
    offered = [
        int(number)
        for entry in session.log
        if entry["message"] == "RESP_GET_AVAILABLE_INFO"
        for number in re.findall(r">(\d+)<\*>", entry["fields"]["availableTypesEIS"])
    ]
    pages = [parameters_of(d.line)[1:3] for d in session.lines if d.name == "list"]
    assert max(int(number) for page in pages for number in page) <= max(offered) + 1


def test_no_blocked_command_is_sent(session):
    assert blocked_lines(session, FIXED) == []


def test_routes_that_are_started_were_calculated(session):
    asked, received = started_handles(session)
    assert [int(handle or 0) for handle in asked][: len(received)] == received
    calculated = {session.log[at]["fields"]["routeHandle"] for at in session.calculated()}
    assert {int(handle) for handle in asked if handle} <= calculated


def test_a_section_for_routes_is_drawn_during_routes_alone(session):
    assert lines_out_of_a_route(session, "blk") == []


def test_trips_go_to_places_whose_details_were_seen(session):
    seen = {
        entry["fields"]["outputEIS"]
        for entry in session.log
        if entry["message"] == "RESP_GET_DETAILS"
    }
    trips = [str(entry) for entry in session.log if entry["message"] == "REQU_NEW_TRIP"]
    assert any(place and place in trip for place in seen for trip in trips)


def test_lines_are_invalid_only_where_the_search_for_an_item_can_miss(session):
    assert early_invalid_lines(session) == []
