# SPDX-License-Identifier: Apache-2.0
"""`quit` and signals while a picture is drawn that takes long: the program ends in order."""

import json
import signal
import struct

import pytest

from overlay_session import Session, SharedMemory

AREA = "<GLL>12.0 51.0<*><GUR>14.0 53.0<*>"
PLACE = """\tUpper latitude: 53.0
\tLeft longitude: 12.0
\tLower latitude: 51.0
\tRight longitude: 14.0
"""


@pytest.fixture
def shared():
    memory = SharedMemory()
    yield memory
    memory.close()


def image(lines):
    """An image of 1000 runs in each line, all of one colour."""
    codes = (b"\x01\x01" * 1000 + b"\x00\x00") * lines + b"\x00\x01"
    header = struct.pack("<2sIHHIIiiHHIIiiII", b"BM", 0, 0, 0, 62, 40, 1000, lines, 1, 8, 1,
                         len(codes), 0, 0, 2, 0)
    return header + bytes(4) + b"\x20\x40\x60\x00" + codes


def drawing(place, tmp_path, lines):
    """A session whose listener is in the middle of a picture of so many lines."""
    resources = tmp_path / "resources"
    resources.mkdir()
    (resources / "long.bmp").write_bytes(image(lines))
    (resources / "long.logfile").write_text(PLACE)
    scenario = place.work / "scenario.json"
    rule = {"on": "REQU_USER_INPUT", "send": [{"message": "INFO_MAP_OVERLAY_AREA", "fields": {"eis": AREA}}]}
    scenario.write_text(json.dumps({"state": "start", "rules": [rule]}))
    session = Session(place, ("--scenario", str(scenario)), resources)
    session.command('weather("on")')
    session.command('userinput("")')
    session.see_error("  +resources/long.bmp")
    return session


@pytest.mark.parametrize("turn", range(20))
def test_quit_while_a_picture_is_drawn(place, shared, tmp_path, turn):
    # From pictures that are nearly done to those that the end of the program doesn't wait for.
    session = drawing(place, tmp_path, 50 + turn * 50)
    session.quit()
    assert "AddressSanitizer" not in session.errors()


@pytest.mark.parametrize("number", [signal.SIGINT, signal.SIGTERM])
def test_signal_while_a_picture_is_drawn(place, shared, tmp_path, number):
    session = drawing(place, tmp_path, 500)
    session.tester.signal(number)
    assert session.tester.ends_with() == 0


def test_second_listener_while_a_picture_is_drawn(place, shared, tmp_path):
    session = drawing(place, tmp_path, 300)
    session.command("init")
    session.see_error("creating listener thread", 2)
    session.command('userinput("")')
    session.see_error("  +resources/long.bmp", 2)
    session.quit()
