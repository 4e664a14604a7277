# SPDX-License-Identifier: Apache-2.0
"""The examples, and batch files that are odd in themselves, played by the real program."""

import pathlib
import re
import resource
import shutil
import signal
import subprocess

import pytest

from batch_play import COLOUR, play, play_text, recorded
from conftest import PATIENCE

ROOT = pathlib.Path(__file__).resolve().parents[2]
CONFIGURATION = ("monkey_config.txt", "qconfig.txt", "response_filter.txt")
NO_BATCH_FILES = {*CONFIGURATION, "qhistory.txt", "monkeylog.txt"}
EXAMPLES = sorted(p for p in (ROOT / "examples").glob("*.txt") if p.name not in NO_BATCH_FILES)

GREEN, YELLOW, GREY = "\033[1;32m", "\033[1;33m", "\033[0;37m"
PASSAU = "<GEOS>Bayern<*><CTY>Passau<*>"


def play_example(place, name):
    made = place.work / "example.batch"
    text = ROOT / "examples" / f"{name}.txt"
    subprocess.run([ROOT / "tools/make_batch.sh", text, made], check=True)
    for folder in ("logs", "resources"):
        shutil.copytree(ROOT / "examples" / folder, place.work / folder)
    for file in CONFIGURATION:
        shutil.copy(ROOT / "examples" / file, place.work)
    return play(place, "example.batch")


def in_order(text, *sights):
    """Each sight stands in the text behind the one before it."""
    at = 0
    for sight in sights:
        found = text.find(sight, at)
        assert found >= 0, f"{sight!r} is not behind the others in:\n{text}"
        at = found + len(sight)


def words(*numbers):
    return b"".join(number.to_bytes(4, "little") for number in numbers)


# The examples.

# What they show, in this order; the other examples have tests of their own.
SIGHTS = {
    "tour": [
        'Cmd> batchlog("logs/drive.log", "4")\n',
        'rnew("<GEOC>Germany<*><CTY>Passau<*>")',
        "Batchlog finished\n",
        'Cmd> batchlog("logs/package.log")\n',
        "CMD_PACKAGE_PIECE(",
        "Package loaded!\n",
        "GPS_DATA(",
        "Batchlog finished\n",
        'Cmd> gnlog("logs/raw.log")\n',
        "Warning: corrupt line at 0x116, skipped\n",
        "Extraction finished\nExtraction finished\n",
        "spell(",
        "Batchlog finished\n",
        "Found 1 image controllers\n",
        "WeatherOverlay_Screen::GetSID: start drawing\n",
        "INFO_MAP_OVERLAY_AREA>",
        "INFO_MAP_OVERLAY_SURFACE_INVALID>",
        "RESP_SHUTDOWN>",
    ],
    "replay": [
        "Package loaded!",
        "GPS_DATA(",
        "Batchlog finished",
        'Cmd> batchlog("logs/drive.log")',
        "Batchlog stopped",
        "Warning: corrupt line at 0x116, skipped",
        "Extraction finished",
        "Extraction finished",
        'RESP_GET_SPELL> offeredCharacters: "sau"',
        "Batchlog finished",
    ],
    "weather": [
        'Cmd> weather("off")',
        "INFO_MAP_OVERLAY_AREA>",
        'Cmd> weather("on")',
        "start drawing",
        'INFO_MAP_OVERLAY_SURFACE_INVALID> "<SID>gwx_0<*>"',
        "start drawing",
        'INFO_MAP_OVERLAY_SURFACE_INVALID> "<SID>gwx_1<*>"',
    ],
    "monkey": [
        "Monkey started for 3 rounds.",
        "Cmd> MONKEY:",
        "Infinite monkey started at",
        "Cmd> MONKEY:",
        "Monkey finished.",
        "RESP_SHUTDOWN>",
    ],
}


def docs_show_the_tour(tour, shown):
    """docs/tour.md has all that is typed, but for the waits, and nothing that isn't shown."""
    screen = re.findall(r"^    (.*)$", (ROOT / "docs" / "tour.md").read_text(), re.MULTILINE)
    typed = [line for line in tour.splitlines() if line and not line.startswith("wait")]
    stale = "docs/tour.md is stale"
    assert [line[5:] for line in screen if line.startswith("Cmd> ")] == typed, stale
    lines = {line.rstrip() for line in shown.splitlines()}
    assert [line for line in screen if line.rstrip() not in lines] == [], stale


@pytest.mark.parametrize("example", EXAMPLES, ids=lambda path: path.stem)
def test_example_runs_all_its_lines_and_ends(place, example):
    place.engine()
    shown = play_example(place, example.stem)
    echoes = [  # a comment is yellow, a command green
        f"Cmd> {YELLOW if line[0] == '#' else GREEN}{line}\n{GREY}"
        for line in example.read_text().splitlines()
        if line
    ]
    in_order(shown, *echoes)
    shown = COLOUR.sub("", shown)
    of_the_monkey = shown.count("Cmd> MONKEY:")
    assert shown.count("Cmd> ") == len(echoes) + of_the_monkey + 1, "and the line that was typed"
    in_order(shown, *SIGHTS.get(example.stem, []))
    assert "Can not open" not in shown
    if example.stem == "tour":
        docs_show_the_tour(example.read_text(), shown)
    if example.stem == "weather":
        assert shown.count("start drawing") == 2, "not while it is off"


def test_search_goes_from_letters_to_a_town_and_its_facts(place):
    place.engine()
    shown = COLOUR.sub("", play_example(place, "search"))
    in_order(
        shown,
        'nextAvailableCharacters: "aefilou"',
        "RESP_GET_SPELL> count: 14",
        'nextAvailableCharacters: "dps"',
        'offeredCharacters: "sau"',
        "RESP_GET_SPELL> count: 0",
        "   3. (<GEOS>Bayern<*><CTY>Passau<*>)\n",
        'fieldOptions: "GEO" "POP"',
        "   1. (<CTY>München<*><GEO>11.57549 48.13743<*><POP>1260391<*>)",
        "completeState: off",
        "   4. (<CTY>Würzburg<*>",
        "   1. (<GEOS>Bayern<*><CTY>Passau<*><GEO>13.43122 48.56650<*><POP>50560<*>)",
        "resultCount: 1\n",
        "   1. (<CTY>Passau<*><GEO>13.43122 48.56650<*><POP>50560<*>)",
        "completeState: on",
        "RESP_SHUTDOWN>",
    )
    assert "Error" not in shown


def test_trip_is_calculated_driven_to_its_end_and_taken_away(place):
    place.engine("--record", "record.log")
    shown = COLOUR.sub("", play_example(place, "trip"))
    in_order(
        shown,
        'Item[0]=("<GEOC>Germany<*><CTY>Regensburg<*>",("<NAM>Lunch<*>","<DUR>45<*>"))\n',
        'Item[1]=("<GEOC>Germany<*><CTY>Passau<*>",())\n',
        "Item[0]=fastest|avoidTollroads\nItem[1]=shortest\n",
        'RESP_NEW_TRIP> destinations: 1. ("<GEOC>Germany<*><CTY>Regensburg<*>"',
        '2. ("<GEOC>Germany<*><CTY>Passau<*>")\n',
        'RESP_NEW_TRIP> routeModes: "fastest|avoidTollroads" "shortest"',
        "RESP_NEW_TRIP> handles: 1 2",
        "INFO_CALC_STATE> calcState: Calculating",
        "INFO_CALC_STATE> calcState: Calculated\nINFO_CALC_STATE> calcPercent: 100\n",
        "INFO_DEMO_MODE_STATE> Enabled",
        "INFO_ACTIVE_ROUTE_DESC> routeDesc: (1,",
        "INFO_NEXT_MAN_INFO> timeDist: (",
        "INFO_PROMPT_READY> requestPromptReady sent",
        "INFO_DESTINATION_REACHED> Dest: Regensburg",
        "INFO_DESTINATION_REACHED> Dest: Passau\n"
        "INFO_DESTINATION_REACHED> Element: 2   Total: 2\n",
        "INFO_ACTIVE_ROUTE_DESC> routeDesc: (-1,-1,-1)",
        'No such RouteHandleList: "handles"\n',
        "New SRouteHandleList item is added to 'handles'.",
        "RESP_KILL_TRIP> handles: 1 2",
    )
    assert "Error" not in shown
    messages = recorded(place.work / "record.log")
    typed = [number for number, _ in messages if number not in (306, 501)]
    assert typed == [0, 404, 16, 408, 16, 409, 406, 100], "beside the automatic replies"
    trip = messages[1][1]
    assert trip.startswith(words(2, 2) + b"<GEOC>Germany<*><CTY>Regensburg<*>\0")
    assert b"<NAM>Lunch<*>\0" in trip and b"<DUR>45<*>\0" in trip
    assert trip.endswith(words(0, 0x21, 0x2)), "no attributes, then the route modes"


def test_lists_shows_all_four_kinds_and_shared_attributes(place):
    shown = COLOUR.sub("", play_example(place, "lists"))
    in_order(
        shown,
        "Type: SStringArray\nItem[0]='GEO'\nItem[1]='POP'\n",
        "Type: SRouteHandleList\nItem[0]=7\nItem[1]=16\nItem[2]=0\n",
        "Type: SRouteModeList\nItem[0]=fastest|avoidTollroads\n"
        "Item[1]=avoidFerries|ecoRoute\nItem[2]=0\n",
        'Type: SDestinationElementList\nItem[0]=("Regensburg",())\nItem[1]=("Passau",())\n',
        'Item[0]=("Regensburg",("lunch","45 minutes"))\nItem[1]=("Passau",())\n',
        "Type: SStringArray\nItem[0]='only a text'\nType: SRouteModeList\n",
        "Lists 'modes' were deleted.\nCmd> litem(\"modes\")\nCmd> ",
        'Item[0]=("Regensburg",("lunch","45 minutes"))',
        "Error: Unknown type in the 'item' command!",
        "All list items are deleted.\nCmd> litem(\"stops\")\nCmd> quit",
    )


def test_variables_takes_rows_into_the_next_commands(place):
    place.engine()
    shown = COLOUR.sub("", play_example(place, "variables"))
    in_order(
        shown,
        "Variable 'country' has new value '<GEOC>Germany<*>'.",
        'RESP_GET_SPELL> inputEIS: "<GEOC>Germany<*><CTY>Pas<*>"',
        "Variable 'place' has new value '<GEOC>Germany<*><CTY>Passau<*>'.",
        "Error: Can't find variable ' '3''.",
        "Variable 'full' has new value '<GEOC>Germany<*><CTY>Passau<*>'.",
        "Error: Can't find variable ' '\"<GEOC>Germany<*>\"+town''.",
        "Variable 'sum' has new value '1+13'.",
        "Error: Unknown command!",
        "Variable 'text' is 'one, two'.",
        "Variable 'copy' is 'one, two'.",
        "Variable 'copy' is 'one, two and three3'.",
        "VARIABLE> Variable 'state' has new value '<GEOS>Bayern<*>'.",
        'RESP_GET_LIST> inputEIS: "<GEOC>Germany<*><GEOS>Bayern<*><CTY><*>"',
        "   5. (<CTY>Regensburg<*>)",
        "VARIABLE> Variable 'town' has new value '<CTY>Regensburg<*>'.",
        "   1. (<CTY>Regensburg<*><GEO>12.10161 49.01513<*>)",
        "VARIABLE> Error! Invalid list item number (9).",
        "Variable 'town' is '<CTY>Regensburg<*>'.",
        "Error: Variable 'nosuch' doesn't exist!",
    )


def test_filter_silences_the_heartbeat_until_all_is_shown(place):
    place.engine("--heartbeat", "0.2")
    shown = COLOUR.sub("", play_example(place, "filter"))
    before, rest = shown.split('Cmd> rldresp("off")\n')
    between, behind = rest.split('Cmd> rldresp("on")\n')
    assert "INFO_HEARTBEAT>" not in before
    assert between.count("INFO_HEARTBEAT>") > 2
    # One may have been on its way.
    assert behind.count("INFO_HEARTBEAT>") < 2


def test_every_example_is_listed():
    listed = (ROOT / "examples" / "README.md").read_text()
    for path in (ROOT / "examples").iterdir():
        if path.name not in {"README.md", "qhistory.txt", "monkeylog.txt"}:
            assert f"`{path.name}" in listed, path.name


# List assignments.


def test_row_of_a_list_feeds_the_next_command_of_a_batch_file(place):
    place.engine("--record", "record.log")
    shown = play_text(
        place,
        "init\n"
        'waitresp("1")\n'
        'town=3,list("<GEOC>Germany<*><CTY>Pa<*>","1","5","ascending","none","on")\n'
        'spell("<GEOC>Germany<*>$$town$$")\n'
        'waitresp("303")\n'
        "quit\n",
    )
    in_order(
        shown,
        f"   3. ({PASSAU})\n",
        f"VARIABLE> Variable 'town' has new value '{PASSAU}'.",
        'Cmd> spell("<GEOC>Germany<*>$$town$$")',
        f'RESP_GET_SPELL> inputEIS: "<GEOC>Germany<*>{PASSAU}"',
        "RESP_GET_SPELL> isFullMatch: on",
    )
    number, body = recorded(place.work / "record.log")[-1]
    assert number == 302
    assert body[4:].rstrip(b"\0").decode() == f"<GEOC>Germany<*>{PASSAU}"


@pytest.mark.parametrize("row", ["0", "-1", "4", "x", ""])
def test_row_that_is_not_there_leaves_the_variable_unset(place, row):
    place.engine()
    shown = play_text(
        place,
        'init\nwaitresp("1")\n'
        f'town={row},list("<GEOC>Germany<*><CTY>Pa<*>","1","5","ascending","none","on")\n'
        'var("town")\n'
        "quit\n",
    )
    number = row if row.lstrip("-").isdigit() else "0"
    in_order(
        shown,
        "completeState: on",
        f"VARIABLE> Error! Invalid list item number ({number}).",
        "Error: Can't find variable 'town'.",
    )


def test_next_line_drops_an_assignment_that_had_no_list(place):
    place.engine()
    shown = play_text(
        place,
        'init\nwaitresp("1")\n'
        'town=1,spell("<GEOC>Germany<*><CTY>Pa<*>")\n'
        'waitresp("303")\n'
        'list("<GEOC>Germany<*><CTY>Pa<*>","1","5","ascending","none","on")\n'
        'var("town")\n'
        "quit\n",
    )
    in_order(shown, "RESP_GET_SPELL> count: 3", "completeState: on", "Can't find variable 'town'.")
    assert "has new value" not in shown


def test_silenced_list_answers_the_wait_and_assigns_nothing(place):
    place.engine()
    (place.work / "response_filter.txt").write_text("RESP_GET_LIST 0\n")
    shown = play_text(
        place,
        'init\nwaitresp("1")\n'
        'town=1,list("<GEOC>Germany<*><CTY>Pa<*>","1","5","ascending","none","on")\n'
        'var("town")\n'
        "quit\n",
    )
    assert "Can't find variable 'town'." in shown
    assert "RESP_GET_LIST>" not in shown


# Odd batch files.


def test_line_of_a_megabyte_is_read_echoed_and_sent(place):
    place.engine("--record", "record.log")
    long = "ab" * 500_000
    shown = play_text(
        place,
        f'init\nwaitresp("1")\nx="{long}"\nspell("$$x$$")\nwaitresp("303")\ny="behind it"\nquit',
    )
    in_order(
        shown,
        f'Cmd> x="{long}"\n',
        f"VARIABLE> Variable 'x' has new value '{long}'.\n",
        "RESP_GET_SPELL> validState: invalid",
        "Variable 'y' has new value 'behind it'.",
    )


def test_big_endian_mark_and_other_beginnings_are_refused_and_the_outer_file_goes_on(place):
    (place.work / "big.batch").write_bytes(b"\xfe\xff" + 'x="1"\n'.encode("utf-16-be"))
    (place.work / "utf8.batch").write_text('x="1"\n')
    (place.work / "short.batch").write_bytes(b"\xff")
    (place.work / "empty.batch").write_bytes(b"")
    (place.work / "folder.batch").mkdir()
    files = ["big", "utf8", "short", "empty", "folder", "missing"]
    lines = [f'batch("{file}.batch")\n' for file in files]
    shown = play_text(place, "".join(lines) + 'var("x")\nquit\n')
    not_unicode = "Error: This is not an Unicode file!\n"
    cannot_open = "Error: Can't open file.\n"
    in_order(
        shown,
        'Cmd> batch("big.batch")\n' + not_unicode,
        'Cmd> batch("utf8.batch")\n' + not_unicode,
        'Cmd> batch("short.batch")\n' + cannot_open,
        'Cmd> batch("empty.batch")\n' + cannot_open,
        'Cmd> batch("folder.batch")\n' + cannot_open,
        'Cmd> batch("missing.batch")\n' + cannot_open,
        "Error: Can't find variable 'x'.",
    )
    assert shown.count("is running...") == 1


def test_missing_file_leaves_the_keyboard_to_the_prompt(place):
    tester = place.tester().see("Press ENTER")
    tester.command('batch("missing.batch")').see("Error: Can't open file.")
    tester.command('x="1"').see("Variable 'x' has new value '1'.")
    assert "is running" not in tester.text()


def test_odd_last_byte_is_dropped_and_its_line_runs(place):
    data = b"\xff\xfe" + 'x="odd"'.encode("utf-16-le") + b"A"
    (place.work / "odd.batch").write_bytes(data)
    shown = play_text(place, 'batch("odd.batch")\nvar("x")\nquit\n')
    in_order(shown, 'Cmd> x="odd"\n', "Cmd> var(", "Variable 'x' is 'odd'.")


def test_file_of_the_mark_alone_runs_nothing(place):
    place.batch("nothing.batch", "")
    shown = play_text(place, 'batch("nothing.batch")\nquit\n')
    in_order(shown, "Batch file nothing.batch is running...\nCmd> quit\n")


def test_line_ends_comments_and_a_comment_mark_in_the_wrong_column(place):
    place.batch("ends.batch", 'x="1"\r\n\r\n\n;first\r  # second\r#last')
    shown = play_text(place, 'batch("ends.batch")\nquit\n')
    assert shown.endswith(
        "Batch file ends.batch is running...\n"
        'Cmd> x="1"\n'
        "VARIABLE> Variable 'x' has new value '1'.\n"
        "Cmd> ;first\n"
        "Cmd>   # second\n"
        "Error: Bad syntax!\n"
        "Cmd> #last\n"
        "Cmd> quit\n"
    )


def test_file_that_calls_itself_ends_when_no_more_can_be_opened_and_unwinds(place):
    place.batch("self.batch", 'down=down+"d"\nbatch("self.batch")\nup=up+"u"')
    most = 24

    def few_files():
        resource.setrlimit(resource.RLIMIT_NOFILE, (most, most))

    shown = play_text(
        place,
        'down=""\nup=""\nbatch("self.batch")\nvar("down")\nvar("up")\nbatch("self.batch")\nquit\n',
        preexec_fn=few_files,
    )
    level = "Batch file self.batch is running..."
    first = shown[: shown.index('Cmd> var("down")')]
    depth = first.count(level)
    assert 1 < depth < most
    assert first.count("Error: Can't open file.") == 1
    unwound = ['Cmd> up=up+"u"'] * depth
    in_order(shown, *[level] * depth, "Can't open file.", *unwound, 'Cmd> var("down")')
    in_order(shown, f"Variable 'down' is '{'d' * depth}'.", f"Variable 'up' is '{'u' * depth}'.")
    assert shown.count(level) == 2 * depth, "all files were closed, so it goes as deep again"


# What a list of destinations does when it grows.


def test_eleventh_destination_leaves_the_first_five_and_empty_ones(place):
    lines = [f'item("SDestinationElementList","stops","{n}","")\n' for n in range(11)]
    shown = play_text(place, "".join(lines) + 'litem("stops")\nquit\n')
    kept = ["0", "1", "2", "3", "4", "", "", "", "", "", "10"]
    items = [f'Item[{index}]=("{text}",())\n' for index, text in enumerate(kept)]
    assert "Type: SDestinationElementList\n" + "".join(items) + "Cmd> quit\n" in shown
