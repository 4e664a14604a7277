# SPDX-License-Identifier: Apache-2.0
"""Keys in, screen out: the prompt, the line editor, the history, the keys that move the map."""

import signal

import pytest

UP, DOWN, RIGHT, LEFT = "\033[A", "\033[B", "\033[C", "\033[D"
HOME, INSERT, DELETE, END = "\033[1~", "\033[2~", "\033[3~", "\033[4~"
BACKSPACE = "\177"


def opened(place, columns=80, **environment):
    """ventrik with its prompt open."""
    tester = place.tester(columns, **environment).see("Press ENTER")
    return tester.keys("\n").see("Cmd>")


def until_cursor_line(tester, line):
    return tester.until(lambda: tester.cursor_line() == line, line)


def until_cursor_at(tester, column):
    return tester.until(lambda: tester.screen.cursor.x == column, f"cursor in column {column}")


def recorded(place):
    """What the engine has taken: each message's number and the bytes behind it."""
    lines = (place.work / "record.log").read_text().split("\n")
    return [(int.from_bytes(bytes.fromhex(line[16:24]), "little"), bytes.fromhex(line[24:]))
            for line in lines if line]


def map_controls(place):
    """The texts of the map controls that the engine has taken."""
    return [body[4:].rstrip(b"\0").decode() for number, body in recorded(place) if number == 702]


def test_first_key_only_opens_the_prompt_and_is_lost(place):
    tester = place.tester().see("Press ENTER")
    tester.keys("x").see("Cmd>")
    tester.keys("var(").see("var(")
    until_cursor_line(tester, "Cmd> var(")


def test_enter_with_an_empty_line_does_nothing(place):
    tester = opened(place)
    tester.keys("\n")
    tester.command("foo").see("Error: Unknown command!")
    assert "Bad syntax" not in tester.text()


def test_cursor_keys_home_end_and_deleting(place):
    tester = opened(place)
    tester.keys("abcd" + LEFT + LEFT + "X")
    until_cursor_line(tester, "Cmd> abXcd")
    until_cursor_at(tester, 8)
    tester.keys(HOME + "1" + END + "2")
    until_cursor_line(tester, "Cmd> 1abXcd2")
    until_cursor_at(tester, 12)
    tester.keys(BACKSPACE + HOME + DELETE)
    until_cursor_line(tester, "Cmd> abXcd")
    tester.keys(RIGHT + RIGHT + BACKSPACE)
    until_cursor_line(tester, "Cmd> aXcd")
    until_cursor_at(tester, 6)
    tester.keys(END + DELETE + RIGHT)
    until_cursor_at(tester, 9)


def test_insert_toggles_overwriting(place):
    tester = opened(place)
    tester.keys("abc" + HOME + INSERT + "XY")
    until_cursor_line(tester, "Cmd> XYc")
    tester.keys("ZW")
    until_cursor_line(tester, "Cmd> XYZW")
    tester.keys(HOME + INSERT + "_")
    until_cursor_line(tester, "Cmd> _XYZW")


def test_history_goes_up_and_down_and_survives_a_restart(place):
    tester = place.tester().see("Press ENTER")
    tester.command('one="1"').see("'one' has new value")
    tester.command('two="2"').see("'two' has new value")
    tester.command("quit")
    assert tester.ends_with() == 0
    tester = opened(place)
    tester.keys(UP)
    until_cursor_line(tester, "Cmd> quit")
    tester.keys(UP + UP)
    until_cursor_line(tester, 'Cmd> one="1"')
    tester.keys(UP)
    until_cursor_line(tester, 'Cmd> one="1"')
    tester.keys(DOWN)
    until_cursor_line(tester, 'Cmd> two="2"')
    tester.keys(DOWN + DOWN)
    until_cursor_line(tester, "Cmd>")
    tester.keys(UP + UP + "\n").see("'two' has new value")


def test_every_line_enters_the_history_repeats_included(place):
    tester = place.tester().see("Press ENTER")
    for _ in range(2):
        tester.command("foo")
    tester.see("Unknown command", 2)
    tester.keys("\n").keys("\n")
    tester.command("quit")
    assert tester.ends_with() == 0
    assert (place.work / "qhistory.txt").read_text() == "foo\nfoo\nquit\n"


def test_long_line_scrolls_sideways_and_is_printed_whole(place):
    tester = opened(place, 80, COLUMNS="20")
    tester.keys("abcdefghijklmn")
    until_cursor_line(tester, "Cmd> abcdefghijklmn")
    tester.keys("op")
    until_cursor_line(tester, "Cmd> cdefghijklmnop")
    until_cursor_at(tester, 19)
    tester.keys(HOME)
    until_cursor_line(tester, "Cmd> abcdefghijklmn")
    tester.keys("\n").see("Cmd> abcdefghijklmnop")


@pytest.mark.parametrize("columns", ["0", "text", "6", "20"])
def test_lines_run_whatever_the_width(place, columns):
    tester = opened(place, 80, COLUMNS=columns)
    tester.keys('x="some value"\n').see("Variable 'x' has new value 'some value'.")


def test_non_ascii_keys_leave_the_numbers_of_their_bytes(place):
    tester = opened(place)
    tester.keys("é€")
    tester.until(lambda: "130 172 " in tester.raw, "the numbers of the second character")
    assert "169 " in tester.raw
    until_cursor_line(tester, "Cmd> é€")
    tester.keys("\n")
    tester.command("quit")
    assert tester.ends_with() == 0
    assert (place.work / "qhistory.txt").read_text() == "é€\nquit\n"


def test_responses_wait_while_the_prompt_is_open_and_come_with_the_next_one(place):
    (place.work / "late.json").write_text(
        '{"rules":[{"on":"REQU_GET_SW_VERSION","send":[{"after_ms":300,'
        '"message":"RESP_GET_SW_VERSION","fields":{"swVersion":"held back"}}]}]}'
    )
    place.engine("--scenario", "late.json", "--blank", "--record", "record.log")
    tester = place.tester().see("Press ENTER")
    tester.command("init").command("vers")
    tester.keys("\n").see("Cmd>", 3)
    tester.keys("typing")
    until_cursor_line(tester, "Cmd> typing")
    tester.until(lambda: any(number == 900 for number, _ in recorded(place)), "the request")
    tester.settle(1)  # the response is long there; nothing on the screen says so
    assert "held back" not in tester.text()
    tester.keys("\n").see("Unknown command")
    assert "held back" not in tester.text(), "the end of the prompt shows nothing either"
    tester.command("vers").see("held back", 2)


@pytest.mark.parametrize(
    "key, moves",
    [
        ("8", ["<MID>map<*><MSD>0<*><MSM>1<*><MSS>10<*>", "<MID>map<*><MSM>2<*>"]),
        ("6", ["<MID>map<*><MSD>90<*><MSM>1<*><MSS>10<*>", "<MID>map<*><MSM>2<*>"]),
        ("2", ["<MID>map<*><MSD>180<*><MSM>1<*><MSS>10<*>", "<MID>map<*><MSM>2<*>"]),
        ("4", ["<MID>map<*><MSD>270<*><MSM>1<*><MSS>10<*>", "<MID>map<*><MSM>2<*>"]),
        ("+", ["<MID>map<*><MZ>454<*>"]),
        ("-", ["<MID>map<*><MZ>550<*>"]),
        ("5", []),
        ("a", []),
    ],
)
def test_special_key_moves_the_map_and_opens_a_prompt_whose_line_is_not_run(place, key, moves):
    place.engine("--record", "record.log")
    tester = place.tester().see("Press ENTER")
    tester.command('scroll("on")').see("Scrolling : ON")
    tester.keys(key).see("Cmd>", 2)
    tester.keys('z="not run"\n').see('Cmd> z="not run"')
    tester.command('var("z")').see("Can't find variable 'z'")
    tester.command("vers")
    tester.until(lambda: any(number == 900 for number, _ in recorded(place)), "the last request")
    assert map_controls(place) == moves
    tester.command("quit")
    assert tester.ends_with() == 0
    assert 'z="not run"' in (place.work / "qhistory.txt").read_text()


def test_autoscroll_keeps_moving_until_it_is_toggled_off(place):
    place.engine("--record", "record.log")
    tester = place.tester().see("Press ENTER")
    tester.command('scroll("on")').see("Scrolling : ON")
    for count, key in enumerate("585"):
        tester.keys(key).see("Cmd>", 2 + count)
        tester.keys("\n")
    moving = ["<MID>map<*><MSD>0<*><MSM>1<*><MSS>10<*>", "<MID>map<*><MSM>2<*>"]
    tester.until(lambda: map_controls(place) == moving, f"{moving}")


def test_zoom_keeps_within_its_limits(place):
    place.engine("--record", "record.log")
    tester = place.tester().see("Press ENTER")
    tester.command('scroll("on")').see("Scrolling : ON")
    for count in range(19):
        tester.keys("+").see("Cmd>", 2 + count)
        tester.keys("\n")
    tester.until(lambda: len(map_controls(place)) == 19, "19 requests")
    scales = [int(text[text.index("<MZ>") + 4 : -3]) for text in map_controls(place)]
    assert scales[:3] == [454, 412, 374]
    assert min(scales) == 100
    assert scales[-2:] == [100, 100]


def test_keys_do_nothing_special_with_scrolling_off(place):
    place.engine("--record", "record.log")
    tester = place.tester().see("Press ENTER")
    tester.keys("+").see("Cmd>")
    tester.keys("vers\n")
    tester.until(lambda: any(number == 900 for number, _ in recorded(place)), "the request")
    assert map_controls(place) == []


def test_signal_abandons_the_line(place):
    tester = opened(place)
    tester.keys("foo").see("foo")
    tester.signal(signal.SIGTERM)
    assert tester.ends_with() == 0
    assert "Unknown command" not in tester.text()
    assert (place.work / "qhistory.txt").read_text() == ""


def test_abort_saves_the_history_and_the_second_one_kills(place):
    tester = place.tester().see("Press ENTER")
    tester.command('x="1"').see("has new value")
    tester.signal(signal.SIGABRT)
    tester.until((place.work / "qhistory.txt").exists, "the history file")
    tester.signal(signal.SIGABRT)
    assert tester.ends_with() == -signal.SIGABRT
    assert (place.work / "qhistory.txt").read_text() == 'x="1"\n'
