# SPDX-License-Identifier: Apache-2.0
"""What each command of the monkey's may be followed by: its parameters, one by one."""

import re

EUROPE = (-8, 40), (37, 57)  # degrees of longitude and of latitude
EIS = r"(?:<[A-Z]+>[^<]*<\*>)*"
SEARCH = rf"{EIS}(?:[^<]*<\*>)?"  # what is being spelled may have lost its tag


def text(pattern):
    whole = re.compile(pattern)
    return lambda parameter: bool(whole.fullmatch(parameter))


def one_of(words):
    return lambda parameter: parameter in words.split()


def letters(count):
    return text(f"[a-y]{{{count}}}")


def number(low, high):
    return lambda parameter: (
        bool(re.fullmatch(r"-?(0|[1-9]\d*)", parameter)) and low <= int(parameter) <= high
    )


def degrees(bounds):
    """Six decimals, and the sign of the whole part: from the lower bound up to the upper one."""
    low, high = bounds
    form = re.compile(r"(-?\d+)\.\d{6}")

    def check(parameter):
        match = form.fullmatch(parameter)
        return bool(match) and low <= int(match[1]) < high

    return check


def pair(tag, low1, high1, low2, high2):
    return tag, lambda value: (
        value.count(",") == 1
        and number(low1, high1)(value.split(",")[0])
        and number(low2, high2)(value.split(",")[1])
    )


empty = text("")
on_off = one_of("off on")
sending_mode = one_of("disable once onChange frequency")

CONTROLS = dict(
    [
        ("MID", one_of("all map")),
        ("MZ", lambda value: value in ("-1", "-2", "-3") or number(100, 1000000)(value)),
        ("MVT", one_of("1 2 4 8")),
        ("MH", one_of("1 2 4")),
        ("MVI", number(0, 1)),
        pair("MP", 0, 240, 0, 120),
        pair("MR", 240, 480, 120, 240),
        ("MSD", number(0, 359)),
        ("MSM", one_of("1 2 4 8")),
        ("MSS", number(1, 100)),
        ("MEV", number(0, 90)),
        ("MAS", number(1, 2)),
        ("M3L", number(0, 1)),
        ("M3T", number(0, 1)),
        ("M3C", number(0, 1)),
        ("MLR", number(0, 2)),
        ("MSP", number(0, 1)),
        ("MSC", number(0, 1)),
        ("MTI", number(0, 1)),
        ("MTF", number(0, 1)),
        ("MSL", number(0, 2)),
        pair("MVR", 240, 479, 120, 239),
        pair("MVP", 0, 240, 0, 120),
        pair("MEP", 5, 475, 5, 235),
        ("MRT", number(0, 1)),
        ("PRE", number(0, 0)),
    ]
)


def controls(parameter):
    """A map control has its fields in one order, each at most once, the map first."""
    fields = re.findall(r"<([A-Z0-9]+)>([^<]*)<\*>", parameter)
    tags = [tag for tag, _ in fields]
    rebuilt = "".join(f"<{tag}>{value}<*>" for tag, value in fields)
    in_order = tags == [tag for tag in CONTROLS if tag in tags]
    # The widest window comes with the place that leaves room for it.
    widest = "<MR>480,240<*>" not in parameter or "<MP>0,0<*>" in parameter
    values = all(CONTROLS[tag](value) for tag, value in fields if tag in CONTROLS)
    return rebuilt == parameter and tags[:1] == ["MID"] and in_order and widest and values


LANGUAGES = """LangDansk LangGerman LangEngGB LangEngUS LangSpanish LangSpanishUS LangFrench
    LangItalian LangNetherlands LangPortuguese LangSwedish LangTurkish LangFlemish LangArabic
    LangChineseTraditional LangChineseSimple LangKorean LangJapanese LangUndef"""
SORT_ORDERS = "ascending descending nearFirst farFirst defaultSort"
MESSAGE_CLASSES = """tmcOnRoute tmcSignificent tmcNonSignificent tmcAllMessages tmcAvoided
    tmcIgnoredMessages"""

PARAMETERS = {
    "adas": [on_off],
    "audio": [one_of("AudioIdle AudioAutomatic AudioManual")],
    "blk": [one_of("AddBlock RemoveBlock"), empty],
    "citem": [letters(3)],
    "demo": [on_off, degrees(EUROPE[0]), degrees(EUROPE[1])],
    "det": [text(SEARCH), text("allitem")],
    "info": [text(SEARCH)],
    "lang": [one_of(LANGUAGES), number(0, 5)],
    "list": [
        text(SEARCH),
        number(1, 2**31 - 1),
        number(-1, 2**31 - 1),
        one_of(SORT_ORDERS),
        letters(3),
        on_off,
    ],
    "map": [controls],
    "meas": [one_of("imperialyards imperialfeet metric")],
    "opt": [text(SEARCH)],
    "overlay": [empty],
    "posdet": [sending_mode, number(0, 10)],
    "rkill": [text("rh")],
    "rnew": [text("de"), text("rm")],
    "rswarn": [one_of("warningsOff valueMode"), number(10, 100)],
    "savevolthlog": [empty],
    "sci": [
        empty,
        number(0, 480),
        number(0, 240),
        one_of("geoCoordinate locationDetails poiData tmcData weatherData"),
        number(1, 11),
    ],
    "spell": [text(SEARCH)],
    "sscm": [one_of("safetyWarningsOn safetyWarningsOff")],
    "sshot": [empty, letters(5)],
    "start": [text(r"\d*")],
    "tmca": [one_of("tmcAuto tmcAvoid tmcIgnore"), letters(3)],
    "tmci": [one_of(MESSAGE_CLASSES), sending_mode],
    "tmcrm": [one_of("tmcOff tmcStatic tmcAutomatic tmcDelay"), number(0, 10)],
    "tmctm": [one_of("tmcTuningManual tmcTuningAutomatic"), empty],
    "weather": [on_off],
}
BARE = ["adac", "adar", "citems", "init", "stop", "verd", "vers"]
MAP_WEP = text(r'wep\("<MID>map<\*>", "zoom\|highlight\|visible", "[a-y]{3}"\)')
TEMPORARY_WEP = text(r'wep\("<MID>all<\*>", "setTemporaryItems\|zoom", "temp"\)')


def parameters_of(line):
    """The parameters as the monkey writes them, with a blank behind each comma."""
    return line[line.index('("') + 2 : -2].split('", "')


def is_as_generated(line, fixed):
    """Whether the monkey may have written the line; `fixed` are sections that are whole lines."""
    name = line.partition("(")[0]
    if line in fixed or line in BARE:
        return True
    if name == "wep":
        return MAP_WEP(line) or TEMPORARY_WEP(line)
    if name not in PARAMETERS or not line.startswith(name + '("') or not line.endswith('")'):
        return False
    found, checks = parameters_of(line), PARAMETERS[name]
    return len(found) == len(checks) and all(check(text) for check, text in zip(checks, found))
