# SPDX-License-Identifier: Apache-2.0
"""What makes lines for the server: a person, the monkey, a replay. Each asks for the version, over
and over, and nothing else, so that its thread's messages can be counted."""

import re

from halted_thread import Halted, threads

QUESTION = "REQU_GET_SW_VERSION"


class Typed:
    """Stands at the open prompt until it goes on; what it sends then is one line."""

    PROGRAM = "ventrik"
    ENVIRONMENT = {}

    def __init__(self, place, tester):
        self.tester = tester
        self.typed = 0

    def start(self):
        self._open_prompt()
        return self

    def _open_prompt(self):
        before = self.tester.text().count("Cmd>")
        self.tester.keys("\n").see("Cmd>", before + 1)

    def halted(self):
        return Halted(self.tester.child.pid)

    def go(self):
        self.tester.keys("vers\n")

    def goes_on(self):
        """The next line is taken."""
        self.typed += 1
        self.tester.command(f'x="{self.typed}"').see(f"Variable 'x' has new value '{self.typed}'")
        self.tester.command("vers")

    def stop(self):
        pass


class OwnThread:
    """A source that needs nobody to go on."""

    def __init__(self, place, tester):
        self.tester = tester
        self.prepare(place)

    def start(self):
        before = threads(self.tester.child.pid)
        self.tester.command(self.LINE).see(self.SAYS)
        self.tester.until(lambda: self._new(before), "a thread of its own")
        (self.thread,) = self._new(before)
        return self

    def _new(self, before):
        return threads(self.tester.child.pid) - before

    def halted(self):
        return Halted(self.thread).run_to_sleep()

    def go(self):
        pass

    def lines(self):
        return len(re.findall(self.SIGHT, self.tester.text()))

    def goes_on(self):
        before = self.lines()
        self.tester.until(lambda: self.lines() > before + 1, "two more lines")


class FromMonkey(OwnThread):
    PROGRAM = "hurried-ventrik"
    ENVIRONMENT = {"HURRY": "5"}
    LINE, SAYS, SIGHT = "monkey", "Infinite monkey started", "MONKEY:vers"

    @staticmethod
    def prepare(place):
        sections = "[config]\ncontent = eu\n\n[vers]\ndefault = 10\n"
        (place.work / "monkey_config.txt").write_text(sections)

    def stop(self):
        self.tester.command("stopmonkey").see("Monkey finished.")


class FromReplay(OwnThread):
    PROGRAM = "ventrik"
    ENVIRONMENT = {}
    LINE, SAYS, SIGHT = 'batchlog("vers.log")', "batchlog(", r"Cmd>00 : 00 : \d\d"

    @staticmethod
    def prepare(place):
        record = "{:08X}0000000484030000\n"
        log = "".join(record.format(time) for time in range(0, 59000, 200))
        (place.work / "vers.log").write_text(log)

    def stop(self):
        self.tester.command("stopbatchlog").see("Batchlog stopped")


SOURCES = [Typed, FromMonkey, FromReplay]
