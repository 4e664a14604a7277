# SPDX-License-Identifier: Apache-2.0
"""One long session of the monkey as the console, the engine and the files tell it, and its rules.

The engine's log has the order of causes: what the monkey follows was sent before it followed. It
may follow a little later than it was sent, though, and draw some lines in between; SLACK is how
many.
"""

import json
import re
import struct

from batch_play import recorded

SLACK = 8  # lines
# What the tester also sends by itself, to a prompt, a weather surface, or a highway.
BY_ITSELF = ["REQU_PROMPT_READY", "REQU_MAP_OVERLAY_SURFACE"]
ALSO_BY_ITSELF = {"REQU_GET_LIST": b"<IFT>HWM<*>", "REQU_MAP_CONTROLS": b"<SJV>"}

REQUESTS = {
    "adac": "REQU_CANCEL_ADA",
    "adar": "REQU_REPEAT_ADA",
    "adas": "REQU_SET_ADA",
    "blk": "REQU_BLOCK_ROUTE",
    "demo": "REQU_SET_DEMO_MODE",
    "det": "REQU_GET_DETAILS",
    "device_status": "REQU_STORE_DEVICE_STATUS",
    "info": "REQU_GET_AVAILABLE_INFO",
    "init": "REQU_INIT",
    "lang": "REQU_SET_LANGUAGE",
    "list": "REQU_GET_LIST",
    "map": "REQU_MAP_CONTROLS",
    "meas": "REQU_SET_MEASUREMENT_SYSTEM",
    "opt": "REQU_GET_LIST_INFO",
    "playprompt": "REQU_PLAY_PROMPT",
    "posdet": "REQU_VEH_LOC_INFO_DETAILS",
    "rnew": "REQU_NEW_TRIP",
    "rswarn": "REQU_SET_VEH_SPEED_MODE",
    "savevolthlog": "SAVE_VOLTH_LOG",
    "sci": "REQU_PICK_INFO",
    "spell": "REQU_GET_SPELL",
    "sscm": "REQU_SET_SAFETY_CAMERA_MODE",
    "sshot": "REQU_SCREEN_SHOT",
    "start": "REQU_START_GUIDANCE",
    "stop": "REQU_STOP_GUIDANCE",
    "tmca": "REQU_TMC_AVOIDS",
    "tmcdebug": "TMC_DATA",
    "tmci": "REQU_TMC_SET_INFO_NOTIFICATION",
    "tmcm": "REQU_SET_TMC_MODE",
    "tmcrm": "REQU_SET_TMC_ROUTE_MODE",
    "tmctm": "REQU_TMC_TUNING_MODE",
    "verd": "REQU_GET_DB_VERSION",
    "vers": "REQU_GET_SW_VERSION",
    "vrloc": "REQU_RESOLVE_LOCATION",
    "wep": "REQU_SET_WORLD_PROPERTIES",
}
SILENT = ["audio", "overlay", "rkill", "weather"]  # nothing, or what the tester sends as well


def names_of_messages(summary):
    """From the engine's table of all messages by number."""
    rows = re.findall(r"^ *(\d+) (\w+) +(?:received|sent)", summary, re.M)
    return {int(number): name for number, name in rows}


class Session:
    def __init__(self, place, hurried, summary):
        self.lines = hurried.drawn()
        self.console = hurried.take()
        self.monkey_log = hurried.log()
        names = names_of_messages(summary)
        self.received = [
            (names[number], body)
            for number, body in recorded(place.work / "recording")
            if self.is_the_monkeys(names[number], body)
        ]
        self.log = [json.loads(line) for line in (place.work / "log.json").read_text().splitlines()]
        self.places = self.places_in_the_log()

    @staticmethod
    def is_the_monkeys(name, body):
        return name not in BY_ITSELF and ALSO_BY_ITSELF.get(name, b"\0nothing") not in body

    def sending_lines(self):
        return [drawn for drawn in self.lines if drawn.is_valid and drawn.name not in SILENT]

    def places_in_the_log(self):
        """Where each line that sends stands in the log, behind the `init` that was typed."""
        received = [
            at
            for at, entry in enumerate(self.log)
            if "from" in entry and self.is_the_monkeys(entry["message"], str(entry).encode())
        ]
        return received[1:]

    def sent(self, message, condition=lambda fields: True):
        """The places in the log of what the engine sent."""
        return [
            at
            for at, entry in enumerate(self.log)
            if "to" in entry and entry["message"] == message and condition(entry["fields"])
        ]

    def calculated(self):
        return self.sent(
            "INFO_CALC_STATE", lambda f: f["calcState"] == 4 and f["calcPercent"] == 100
        )

    def with_places(self):
        """Each line with its place in the log; a line that sends nothing has the next one's."""
        places = iter(self.places)
        waiting, placed = [], []
        for drawn in self.lines:
            waiting.append(drawn)
            if drawn.is_valid and drawn.name not in SILENT:
                at = next(places, len(self.log))
                placed += [(each, at) for each in waiting]
                waiting = []
        return placed + [(drawn, len(self.log)) for drawn in waiting]

    def early(self, index, placed):
        """From where on a message counts that the monkey may have followed behind line `index`."""
        return placed[index - SLACK][1] if index >= SLACK else 0


def has_between(places, begin, end):
    return any(begin <= at < end for at in places)


def blocked_lines(session, fixed):
    """Lines that were sent while they were blocked; `fixed` are sections that never are."""
    placed = session.with_places()
    calculated = session.calculated()
    reached = session.sent("INFO_DESTINATION_REACHED")
    since = {"start": 0, "rkill": 0}  # from which place on a release counts, by name
    most_handles, followed = 0, 0
    wrong = []
    for index, (drawn, at) in enumerate(placed):
        freeing = {
            "rnew": calculated,
            "demo": calculated,
            "start": calculated + reached,
            "rkill": calculated,
        }.get(drawn.name)
        if freeing is not None and drawn.name in since and drawn.line not in fixed:
            if not has_between(freeing, since[drawn.name], at):
                wrong.append(drawn.line)
        if drawn.name == "stop":
            since.pop("rnew", None)
        if drawn.name == "rnew":
            since["rnew"] = since["demo"] = session.early(index, placed)
        if drawn.name == "rkill":
            most_handles += sum(followed <= each < at for each in calculated)
            followed = at
            taken = handles_taken(session, index)
            if not 1 <= taken <= most_handles:
                wrong.append(f"{drawn.line} of {taken} in {most_handles}")
            most_handles -= 1
            if most_handles == 0:
                since["start"] = since["rkill"] = session.early(index, placed)
    return wrong


def handles_taken(session, index):
    """How many items line `index` has made: each one's text ends in a parenthesis too many."""
    begin = session.lines[index - 1].end if index else 0
    return session.console.count("Error: Bad syntax!\n", begin, session.lines[index].begin)


def early_invalid_lines(session):
    """Invalid lines that lack no item, or do while the search for one can't miss.

    The search goes out from a random item. Among the 200 of the start it always meets one of each
    kind; it can miss only when about as many others stand behind these.
    """
    others, wrong = 0, []
    for index, drawn in enumerate(session.lines):
        if drawn.name == "rnew":
            others += 6  # at most
        if drawn.name == "rkill":
            others += handles_taken(session, index)
        if drawn.name == "item":
            others += 1
        lacks_an_item = drawn.name in ("list", "wep") and '""' in drawn.line[len('list(""') :]
        if not drawn.is_valid and not (lacks_an_item and others >= 190):
            wrong.append(drawn.line)
    return wrong


def lines_out_of_a_route(session, name):
    """Lines of a section that has a weight during a route alone, without a route."""
    placed = session.with_places()
    active = session.sent("INFO_ACTIVE_ROUTE_DESC", lambda fields: -1 not in fields.values())
    since, wrong = 0, []
    for index, (drawn, at) in enumerate(placed):
        if drawn.name == "stop":
            since = session.early(index, placed)
        if drawn.name == name and not has_between(active, since, at):
            wrong.append(drawn.line)
    return wrong


def started_handles(session):
    """The handles that lines started, and those that the engine received for them."""
    asked = [line.line[7:-2] for line in session.sending_lines() if line.name == "start"]
    received = [body for name, body in session.received if name == "REQU_START_GUIDANCE"]
    return asked, [struct.unpack_from("<i", body)[0] for body in received]
