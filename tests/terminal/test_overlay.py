# SPDX-License-Identifier: Apache-2.0
"""Weather over the map: the engine asks for an area, ventrik draws it into shared memory."""

import json
import pathlib
import re
import struct
import subprocess
import time

import pytest

from batch_play import recorded
from overlay_session import ROOT, SHARED, Session, SharedMemory
from png_picture import read_picture
from weather_picture import Weather, check_frame, compare

RESOURCES = ROOT / "examples/resources"
SIZE = 640 * 480 * 4
SURFACE = 125  # REQU_MAP_OVERLAY_SURFACE
AREA = re.compile(r"<GLL>(\S+) (\S+)<\*><GUR>(\S+) (\S+)<\*>")


@pytest.fixture
def shared():
    memory = SharedMemory()
    yield memory
    memory.close()


@pytest.fixture
def session(place, shared):
    started = []

    def start(*engine_options, **more):
        started.append(Session(place, engine_options, **more))
        return started[-1]

    yield start
    for each in started:
        each.remove_surfaces()


def offered(session):
    """The texts of all REQU_MAP_OVERLAY_SURFACE that the engine got."""
    bodies = [body for number, body in recorded(session.record) if number == SURFACE]
    texts = [(struct.unpack_from("<I", body)[0], body[4:].rstrip(b"\0")) for body in bodies]
    assert all(length == len(text) for length, text in texts)
    return [text.decode() for _, text in texts]


def scenario(place, *rules, state="start"):
    """The engine's options for these rules beside its own answers."""
    path = place.work / "scenario.json"
    path.write_text(json.dumps({"state": state, "rules": rules}))
    return "--scenario", str(path)


def message(name, eis):
    return {"message": name, "fields": {"eis": eis}}


def area_message(west=12.5, south=52.0, east=14.5, north=53.0):
    return message("INFO_MAP_OVERLAY_AREA", f"<GLL>{west} {south}<*><GUR>{east} {north}<*>")


def asked(session, number=-1):
    """The area that the engine asked for: west, south, east, north, as ventrik has shown it."""
    return tuple(map(float, AREA.findall(session.tester.raw)[number]))


def save_surface(place, sid):
    """The shared surface, as the tool for looking at it saves it."""
    subprocess.run([place.programs / "surface-png", sid, "looked-at.png"], cwd=place.work, check=True)
    return place.work / "looked-at.png"


# Areas and surfaces.


def test_an_area_is_answered_with_the_rain_over_it(place, session):
    session = session(resources=RESOURCES)
    session.command('weather("on")')
    session.command('map("<MZ>200000<*>")').see("INFO_MAP_OVERLAY_AREA>")
    session.see_error("SID=gwx_0\n")
    session.see_picture("gwx_0")
    looked_at = save_surface(place, "gwx_0")
    shared = (SHARED / "gwx_0").read_bytes()
    assert (SHARED / "gwx_0").stat().st_mode & 0o777 == 0o777
    picture = session.picture("gwx_0")
    assert read_picture(looked_at).pixels == picture.pixels == shared
    west, south, east, north = area = asked(session)
    assert east - west > 2 and north - south > 0.8
    rain, dry = compare(picture, Weather(RESOURCES), area)
    assert rain > 3000 and dry > 3000
    session.quit()
    (text,) = offered(session)
    assert text.startswith("<MID>map<*><GLL>") and text.endswith("<*><SID>gwx_0<*>")
    assert f'INFO_MAP_OVERLAY_AREA> "{text[:-len("<SID>gwx_0<*>")]}"' in session.tester.raw
    errors = session.errors()
    assert errors.count("new file:resources/rain/rain_") == 2
    assert "findResourceSets set:0 dir:resources/rain\n" in errors
    rect = "  rect 11.000000 51.399999 - 13.400000 53.599995\n"  # what was cut off is a metre at most
    assert f"new file:resources/rain/rain_a\n{rect}" in errors


def test_what_is_told_on_the_way_to_the_first_surface(session):
    session = session(resources=RESOURCES)
    session.command('weather("on")')
    session.command('map("<MID>map<*>")').see("Copying buffer.")
    text = session.tester.text()
    for sight in ("Found config.", "GL ext:  ", "pbuffer ok", "make current ok", "Real size 640*480",
                  "Found 1 image controllers", "stride: 2560",
                  "WeatherOverlay_Screen::GetSID: start drawing"):
        assert sight in text, sight
    session.see_error("SID=gwx_0\n")
    errors = session.errors()
    told = ["new SID = gwx_0\n", "Init buffer:gwx_0\n", "CWeatherImageController::render\n",
            "  requested area=\n  ll=13.407,52.523 ur=13.414,52.525\n",
            "  +resources/rain/rain_b.bmp\n", "  image=\n  ll=13.400,51.400 ur=15.800,53.600\n",
            "  shared=\n  ll=13.407,52.523 ur=13.414,52.525\n", "SID=gwx_0\n"]
    places = [errors.find(line) for line in told]
    assert -1 not in places and places == sorted(places), errors
    assert "rain_a.bmp" not in errors, "it isn't in the area"
    session.quit()


def test_a_surface_goes_when_the_map_moves_on(session):
    session = session()
    session.command('weather("on")')
    session.command('map("<MZ>1000<*>")')
    session.see_picture("gwx_0")
    session.command('map("<MZ>2000<*>")').see('INFO_MAP_OVERLAY_SURFACE_INVALID> "<SID>gwx_0<*>"')
    session.see_error('WeatherOverlay_Screen::DropSid("gwx_0")\n  found buffeerClose buffer:gwx_0\n')
    session.see_picture("gwx_1")
    assert session.surfaces() == ["gwx_1"]
    session.command('map("<MVI>0<*>")').see('INFO_MAP_OVERLAY_SURFACE_INVALID> "<SID>gwx_1<*>"')
    session.see_error("Close buffer:gwx_1\n")
    assert session.surfaces() == []
    session.command('map("<MVI>1<*>")')
    session.see_picture("gwx_2")
    session.quit()


def test_two_areas_are_two_surfaces_and_as_many_at_a_time(place, session):
    ask = {"on": "REQU_USER_INPUT", "send": [area_message(), area_message()]}
    session = session(*scenario(place, ask), resources=RESOURCES)
    session.command('weather("on")')
    session.command('userinput("")')
    session.see_picture("gwx_1")
    assert session.surfaces() == ["gwx_0", "gwx_1"]
    first, second = session.picture("gwx_0"), session.picture("gwx_1")
    assert first.pixels == second.pixels, "the same area, the same picture"
    rain, dry = compare(first, Weather(RESOURCES), (12.5, 52.0, 14.5, 53.0))
    assert rain > 3000 and dry > 3000
    for sid in ("gwx_0", "gwx_1"):
        session.see_error(f"Close buffer:{sid}\n")  # once the engine has had it for five seconds
    assert session.surfaces() == []
    session.quit()


def test_without_weather_the_area_is_only_shown(place, session):
    session = session(resources=RESOURCES)
    session.command('map("<MID>map<*>")').see("ur=13.4").see("INFO_MAP_OVERLAY_AREA>")
    session.command('weather("on")')
    session.command('weather("off")')
    session.command('weather("maybe")')
    session.command('map("<MZ>1000<*>")').see("INFO_MAP_OVERLAY_AREA>", 2)
    session.command("vers").see("RESP_GET_SW_VERSION> swVersion:")
    session.quit()
    assert offered(session) == []
    assert "SID" not in session.errors() and "pbuffer" not in session.tester.raw
    assert list(session.overlays.iterdir()) == []


def test_a_word_that_is_neither_on_nor_off_leaves_the_weather_on(session):
    session = session()
    session.command('weather("on")')
    session.command('weather("maybe")')
    session.command('map("<MID>map<*>")')
    session.see_error("SID=gwx_0\n")
    session.quit()


def test_without_images_there_is_the_frame(session):
    session = session()
    session.command('weather("on")')
    session.command('map("<MID>map<*>")').see("Found 0 image controllers")
    picture = session.picture("gwx_0")
    check_frame(picture)
    assert "CWeatherImageController" not in session.errors()
    session.quit()


@pytest.mark.parametrize(
    "eis",
    [
        "", "<GLL>nan nan<*><GUR>inf -inf<*>", "<GLL>13 52<*><GUR>13 53<*>",
        "<GLL>13 52<*><GUR>14 52<*>", "<GLL>14 53<*><GUR>13 52<*>",
        "<GLL>-1e30 -1e30<*><GUR>1e30 1e30<*>", "<GUR>14 53<*><GLL>13 52<*>", "<GLL>13 52",
    ],
)
def test_an_area_that_is_none_is_answered_with_the_frame(place, session, eis):
    ask = {"on": "REQU_USER_INPUT", "send": [message("INFO_MAP_OVERLAY_AREA", eis)]}
    session = session(*scenario(place, ask), resources=RESOURCES)
    session.command('weather("on")')
    session.command('userinput("")')
    picture = session.picture("gwx_0")
    check_frame(picture)
    session.command("vers").see("RESP_GET_SW_VERSION> swVersion:")
    session.quit()
    assert offered(session) == [eis + "<SID>gwx_0<*>"]


def test_the_end_of_a_surface_that_is_not_there_is_told_and_changes_nothing(place, session):
    end = [message("INFO_MAP_OVERLAY_SURFACE_INVALID", f"<SID>{sid}<*>") for sid in ("gwx_0", "x")]
    session = session(*scenario(place, {"on": "REQU_USER_INPUT", "send": end}))
    session.command('userinput("")').see("pbuffer ok")
    session.see_error('WeatherOverlay_Screen::DropSid("gwx_0")\n')
    session.see_error('WeatherOverlay_Screen::DropSid("x")\n')
    assert "Close buffer" not in session.errors()
    session.quit()


def test_a_second_listener_draws_as_well(session):
    session = session(resources=RESOURCES)
    session.command('weather("on")')
    session.command('map("<MZ>200000<*>")')
    first = session.picture("gwx_0")
    session.command("init").see("initialized successfully", 2)
    session.command('map("<MZ>100000<*>")')
    session.see_picture("gwx_1")
    session.command('map("<MZ>200000<*>")')
    assert session.picture("gwx_2").pixels == first.pixels
    session.quit()
    assert session.tester.raw.count("pbuffer ok") == 1


def test_overlay_sends_its_text_as_it_is(session):
    session = session()
    session.command('overlay("<SID>x<*>")').see('INFO_MAP_OVERLAY_SURFACE_INVALID> "<SID>x<*>"')
    session.command('overlay("no tag at all, Zürich")')
    session.command("vers").see("RESP_GET_SW_VERSION> swVersion:")
    session.quit()
    texts = offered(session)
    assert texts == ["<SID>x<*>", "no tag at all, Zürich"]
    assert "SID" not in session.errors()


# save_shared.


def test_save_shared_writes_the_shared_screen_as_it_lies(place, session):
    session = session()
    session.command('save_shared("screen.bmp")')
    session.command("vers").see("RESP_GET_SW_VERSION> swVersion:")
    saved = (place.work / "screen.bmp").read_bytes()
    assert len(saved) == 1228854
    assert saved[:54] == bytes.fromhex(
        "424d 36c01200 0000 0000 36000000 28000000 80020000 e0010000 0100 2000 00000000 00c01200"
        "10270000 10270000 00000000 00000000"
    )
    assert saved[54:] == (SHARED / "TORVALE_GLES2").read_bytes()
    session.command('save_shared("none/screen.bmp")')
    session.see_error("Failed to open none/screen.bmp")
    session.quit()
    assert session.errors().count("Failed") == 1


def test_save_shared_without_a_shared_screen(place, shared):
    if not shared.without_screen():
        pytest.skip("a server on this machine shares its screen")
    tester = place.tester()
    tester.see("Press ENTER")
    tester.command('save_shared("screen.bmp")')
    tester.see("Open /TORVALE_GLES2 failed:No such file or directory")
    tester.command("quit")
    assert tester.ends_with() == 0
    assert not (place.work / "screen.bmp").exists()


# In the long run.


class Use:
    """What a process holds of the system."""

    def __init__(self, process):
        folder = pathlib.Path(f"/proc/{process}")
        self.descriptors = sorted(path.readlink().name for path in (folder / "fd").iterdir())
        self.mappings = (folder / "maps").read_text().splitlines()
        self.megabytes = int((folder / "statm").read_text().split()[0]) * 4096 >> 20

    def surfaces(self):
        return [text for text in (*self.descriptors, *self.mappings) if "gwx_" in text]


def test_a_thousand_surfaces_leave_nothing_behind(place, session):
    subprocess.run([ROOT / "tools/make_weather.py", place.work / "small/rain", "--size", "60", "45"],
                   check=True, stdout=subprocess.DEVNULL)
    warm_up, measured = 70, 1000  # surfaces; each one that is offered asks for the next
    session = session(
        *scenario(
            place,
            {"on": "REQU_USER_INPUT", "contains": "warm up", "to": "warm", "send": [area_message()]},
            {"on": "REQU_USER_INPUT", "contains": "measure", "to": "on", "send": [area_message()]},
            {"on": "REQU_MAP_OVERLAY_SURFACE", "in": "warm", "times": warm_up - 1,
             "send": [area_message()]},
            {"on": "REQU_MAP_OVERLAY_SURFACE", "in": "on", "times": measured - 1,
             "send": [area_message()]},
        ),
        resources=place.work / "small",
        keeps_pictures=False,
    )
    process = session.tester.child.pid
    session.command('weather("on")')

    session.command('userinput("warm up")')
    session.see_error("DropSid", warm_up)
    before = Use(process)
    start = time.monotonic()
    session.command('userinput("measure")')
    session.see_error("DropSid", warm_up + measured, patience=300)
    after = Use(process)
    print(f"{measured} surfaces in {time.monotonic() - start:.1f} s; {before.megabytes} MiB before, "
          f"{after.megabytes} MiB after; mappings {len(before.mappings)}, {len(after.mappings)}")

    errors = session.errors()
    assert errors.count("SID=gwx_") == errors.count("Close buffer:gwx_") == warm_up + measured
    assert before.surfaces() == after.surfaces() == []
    assert after.descriptors == before.descriptors
    assert len(after.mappings) <= len(before.mappings) + 3
    assert after.megabytes - before.megabytes < 32  # one surface that stayed is more than one
    assert session.surfaces() == []
    session.quit()
