# SPDX-License-Identifier: Apache-2.0
"""Every message that is printed, on the console and in the log, and what is answered by itself."""

import json
import pathlib
import re

from printed_messages import GREY, MESSAGES, RED

ROOT = pathlib.Path(__file__).resolve().parents[2]
COLOUR = re.compile("\033\\[[01];3[17]m")

LOG = "".join(text for _, _, text in MESSAGES)

CORNERS = "tl=1 2 -> 1.000000 2.000000\nur=3.5 -4 -> 3.500000 -4.000000\n"
CONSOLE = COLOUR.sub("", LOG.replace("INFO_MAP_OVERLAY_AREA> ", CORNERS + "INFO_MAP_OVERLAY_AREA> "))

# A surface's end makes the renderer, which tells about itself at once: how depends on the machine.
RENDERER = re.compile('Found config[.]\n.*?WeatherOverlay_Screen::DropSid[(]"gwx_0"[)]\n', re.DOTALL)

# What is answered, in the order of MESSAGES: the junction view, the highway mode, the prompt.
JUNCTION_VIEW = (702, b"\x14\0\0\0<MID>map<*><SJV>5<*>\0\0\0\0")
HIGHWAY_LIST = (
    306,
    b"\x13\0\0\0\1\0\0\0\3\0\0\0\0\0\0\0\1\0\0\0\2\0\0\0<IFT>HWM<*><EXT><*>\0Default\0",
)
PROMPT = (501, b"\2\0\0\0")
REPLIES = [JUNCTION_VIEW, HIGHWAY_LIST, PROMPT]


def engine(place):
    """Sends the messages each time that `rrfac` is typed."""
    sent = [{"message": name, "fields": fields} for name, fields, _ in MESSAGES]
    rules = [
        {"on": "REQU_INIT", "send": [{"message": "RESP_INIT"}]},
        {"on": "REQU_RESTORE_FACTORY", "send": sent},
    ]
    (place.work / "messages.json").write_text(json.dumps({"rules": rules}))
    place.engine("--blank", "--scenario", "messages.json", "--record", "record.log")


def start(place):
    tester = place.tester(columns=200).see("Press ENTER")
    return tester.command("init").see("initialized successfully")


def answered(place):
    """What the engine has got beside typed requests: numbers, and the bytes behind them."""
    messages = [bytes.fromhex(line[16:]) for line in (place.work / "record.log").read_text().split()]
    numbered = [(int.from_bytes(m[:4], "little"), m[4:]) for m in messages]
    return [(number, rest) for number, rest in numbered if number not in (0, 120)]


def without_renderer(shown):
    without, count = RENDERER.subn("", shown)
    assert count == 1
    return without


def as_seen(text):
    return "\n".join(line.rstrip() for line in text.split("\n"))


def test_messages_here_are_all_that_are_printed():
    printers = (ROOT / "messages" / "printers.h").read_text()
    printed = re.findall(r"^void (\w+)\(const ReceivedBlock&", printers, re.MULTILINE)
    assert sorted(name for name, _, _ in MESSAGES) == sorted(printed)
    assert len(printed) == 62


def test_every_message_shows_on_the_console_and_in_the_log(place):
    engine(place)
    tester = start(place)
    tester.command('startlog("shown.log")').command("rrfac").see("Package loaded!")
    assert "rrfac\n" + as_seen(CONSOLE) in without_renderer(tester.text() + "\n")
    tester.command("stoplog").command("quit")
    assert tester.ends_with() == 0
    assert (place.work / "shown.log").read_text(encoding="utf-8") == LOG


def test_messages_come_in_the_colours_of_the_log(place):
    engine(place)
    tester = start(place)
    tester.command("rrfac").see("Package loaded!")
    shown = without_renderer(tester.raw.replace("\r\n", "\n").replace(CORNERS, ""))
    assert LOG in shown


def test_without_a_log_nothing_is_written(place):
    engine(place)
    tester = start(place)
    tester.command('startlog("shown.log")').command("stoplog")
    tester.command("rrfac").see("Package loaded!")
    tester.command("quit")
    assert tester.ends_with() == 0
    assert (place.work / "shown.log").read_bytes() == b""


def test_three_messages_are_answered_and_no_other(place):
    engine(place)
    tester = start(place)
    tester.command("rrfac").see("Package loaded!", 1)
    assert answered(place) == REPLIES
    tester.command("rrfac").see("Package loaded!", 2)
    assert answered(place) == REPLIES * 2


def test_with_prompts_off_only_the_junction_view_is_asked_for(place):
    engine(place)
    tester = start(place)
    tester.command('prompt("off")').command("rrfac").see("Package loaded!", 1)
    assert answered(place) == [JUNCTION_VIEW]
    assert "requestPromptReady" not in tester.text()
    tester.command('prompt("on")').command("rrfac").see("Package loaded!", 2)
    assert answered(place) == [JUNCTION_VIEW, *REPLIES]


def test_junction_view_is_asked_for_on_the_map_that_was_named(place):
    engine(place)
    tester = start(place)
    tester.command('map("<MID>left<*>")').command("rrfac").see("Package loaded!")
    controls = [rest for number, rest in answered(place) if number == 702]
    assert controls[1] == b"\x15\0\0\0<MID>left<*><SJV>5<*>\0\0\0"


def test_silenced_messages_neither_show_nor_are_answered(place):
    silenced = ["INFO_PROMPT_READY", "INFO_HIGHWAYMODE_UPDATE", "INFO_VEH_LOC_INFO_DETAILS"]
    (place.work / "response_filter.txt").write_text("".join(f"{name} 0\n" for name in silenced))
    engine(place)
    tester = start(place)
    tester.command("rrfac").see("Package loaded!", 1)
    left = "".join(text for name, _, text in MESSAGES if name not in silenced)
    assert left in without_renderer(tester.raw.replace("\r\n", "\n").replace(CORNERS, ""))
    assert answered(place) == []
    tester.command('rldresp("off")').command("rrfac").see("Package loaded!", 2)
    assert answered(place) == REPLIES


def test_reply_can_set_off_the_next_message(place):
    ping = {"message": "INFO_PROMPT_READY", "fields": {"audioSource": 1}}
    rules = [
        {"on": "REQU_RESTORE_FACTORY", "send": [ping]},
        {"on": "REQU_PROMPT_READY", "times": 200, "send": [ping]},
    ]
    (place.work / "ping.json").write_text(json.dumps({"rules": rules}))
    place.engine("--scenario", "ping.json", "--record", "record.log")
    tester = start(place)
    tester.command("rrfac").see("requestPromptReady sent", 201)
    assert answered(place) == [(501, b"\1\0\0\0")] * 201


def test_message_that_nobody_prints_shows_as_an_error_in_red(place):
    rules = [{"on": "REQU_RESTORE_FACTORY", "send": [{"hex": "41424300"}]}]
    (place.work / "unknown.json").write_text(json.dumps({"rules": rules}))
    place.engine("--scenario", "unknown.json", "--record", "record.log")
    tester = start(place)
    answer = "RESP_RESTORE_FACTORY> Response received."  # the engine's own, behind the rule's
    tester.command('startlog("shown.log")').command("rrfac").see("(ABC)!").see(answer)
    tester.command("stoplog").command("quit")
    assert tester.ends_with() == 0
    expected = f"{RED}Error: Unhandled response or info (ABC)!\n{GREY}{answer}\n"
    assert (place.work / "shown.log").read_text() == expected
    assert answered(place) == []
