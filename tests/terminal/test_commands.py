# SPDX-License-Identifier: Apache-2.0
"""Every command that sends a request, typed once, and the bytes that reach the server."""

from batch_play import play_text, recorded

LISTS = """
item("SStringArray","s","NAME")
item("SStringArray","s","Öl")
item("SStringArray","more","x")
item("SRouteHandleList","h","7")
item("SRouteHandleList","h","-1")
item("SRouteModeList","m","shortest")
item("SRouteModeList","m","avoidFerries")
item("SDestinationElementList","d","home","more")
item("SDestinationElementList","d","work","")
"""

STRINGS = "'NAME' 00000000 C396 'l' 00"  # the list s
MODES = "02000000 10000000"  # the list m

# Lines and what they send: pairs of hexadecimal digits and texts in single quotes. `init` comes
# first, because it starts the listener. `list` comes last, because nothing more is read from the
# file until its answer is there, and what is answered has been recorded.
REQUESTS = (
    ("init", "00000000"),
    ("adac", "F8010000"),
    ("adar", "F9010000"),
    ('adas("on")', "F6010000 01000000"),
    ('addsrc("usb")', "38010000 03000000 'usb' 00"),
    ('audio("AudioSafetyCamera")', "F5010000 03000000"),
    ("begrec", "A0010000"),
    ('blk("AddBlock","s")', f"92010000 00000000 02000000 {STRINGS}"),
    ('connaval("1","umts")', "60020000 01000000 04000000 'umts' 00000000"),
    ('connavail("2","wlan0")', "60020000 02000000 05000000 'wlan0' 000000"),
    ('conninf("gprs")', "61020000 04000000 'gprs' 00000000"),
    ('conninfo("lte")', "61020000 03000000 'lte' 00"),
    ('demo("on","8.5","49.25")', "10000000 01000000 0000000000002140 0000000000A04840"),
    ('det("<A>1<*>","s")', f"34010000 07000000 02000000 '<A>1<*>' 00 {STRINGS}"),
    ('device_status("/tmp")', "EB030000 04000000 '/tmp' 00000000"),
    ("endrec", "A1010000"),
    ('info("ab")', "2C010000 02000000 'ab' 0000"),
    ('lang("LangHindi","7")', "58020000 1A000000 07000000"),
    ('map("<MID>left<*>")', "BE020000 0C000000 '<MID>left<*>' 00000000"),
    ('meas("metric")', "03000000 08000000"),
    ('opt("a")', "30010000 01000000 'a' 000000"),
    ('overlay("<SID>5<*>")', "7D000000 09000000 '<SID>5<*>' 000000"),
    ('playprompt("100000")', "FB010000 A0860100"),
    ('posdet("frequency","1000")', "CA000000 04000000 E8030000"),
    ('rfnew("/a.trip","m")', f"9E010000 07000000 02000000 '/a.trip' 00 {MODES}"),
    ('rkill("h")', "96010000 02000000 07000000 FFFFFFFF"),
    ('rmsrc("card")', "3A010000 04000000 'card' 00000000"),
    (
        'rnew("d","m")',
        "94010000 02000000 02000000 'home' 00000000 01000000 'x' 000000"
        f" 'work' 00000000 00000000 {MODES}",
    ),
    ("rrfac", "78000000"),
    ('rswarn("valueMode","130")', "5B020000 01000000 82000000"),
    ('savevolthlog("5")', "2B230000 05000000"),
    (
        'sci("main","12","-34","poiData|tmcData","60")',
        "BC020000 04000000 0C000000 DEFFFFFF 0C000000 3C000000 'main' 00000000",
    ),
    ('spell("<GEOC>Ö<*>")', "2E010000 0B000000 '<GEOC>' C396 '<*>' 00"),
    ('ssca("beep")', "76020000 04000000 'beep' 00000000"),
    ('sscm("safetyWarningsOff")', "5D020000 00000000"),
    ('sshot("map1","a.bmp")', "76000000 04000000 05000000 'map1' 00000000 'a.bmp' 000000"),
    ('start("7")', "98010000 07000000"),
    ("stop", "99010000"),
    ('tmca("tmcIgnore","s")', f"29030000 02000000 02000000 {STRINGS}"),
    ('tmcdebug("EVENT htmc=1")', "2A230000 0C000000 'EVENT htmc=1' 00"),
    ('tmci("tmcAvoided","onChange")', "2B030000 10000000 02000000"),
    ('tmcm("on","abc")', "20030000 01000000 03000000"),
    ('tmcrm("tmcDelay","600")', "22030000 04000000 58020000"),
    ('tmctm("tmcTuningManual","fm")', "2F030000 02000000 02000000 'fm' 0000"),
    ('update("/fs/usb")', "E8030000 07000000 '/fs/usb' 00"),
    ('userinput("key")', "5F020000 03000000 'key' 00"),
    ("verd", "85030000"),
    ("vers", "84030000"),
    ('volume("<VOL>30<*>")', "62020000 0A000000 '<VOL>30<*>' 0000"),
    ('vrloc("town")', "36010000 04000000 'town' 00000000"),
    ('wep("eis","visible","s")', f"74000000 03000000 04000000 02000000 'eis' 00 {STRINGS}"),
    ("done", "64000000"),
    (
        'list("<GEOC>G<*>","1","3","ascending","s","off")',
        "32010000 0A000000 01000000 03000000 01000000 00000000 02000000 '<GEOC>G<*>' 0000",
    ),
)


def to_bytes(notation):
    parts = notation.split("'")
    return b"".join(
        part.encode() if index % 2 else bytes.fromhex(part) for index, part in enumerate(parts)
    )


def test_every_request_reaches_the_server_as_its_bytes(place):
    keywords = {line.split("(")[0] for line, _ in REQUESTS}
    assert len(keywords) == len(REQUESTS) == 53
    place.engine("--record", "requests.rec")
    lines = "\n".join(line for line, _ in REQUESTS)
    shown = play_text(place, f"{LISTS.strip()}\n{lines}\nquit\n")
    assert "Error" not in shown
    assert "IPC" not in shown
    messages = recorded(place.work / "requests.rec")
    for (line, notation), message in zip(REQUESTS, messages):
        number, body = message
        assert number.to_bytes(4, "little") + body == to_bytes(notation), line
    assert len(messages) == len(REQUESTS)
