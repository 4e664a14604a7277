# SPDX-License-Identifier: Apache-2.0
"""The real program with a monkey in a hurry, without a terminal: keys through a pipe."""

import re
import subprocess
import time

from conftest import PATIENCE

RED, GREEN, GREY = "\033[1;31m", "\033[1;32m", "\033[0;37m"
MARKED = re.compile(
    re.escape(RED) + "([Cc]md)> " + re.escape(GREEN) + "([A-Z]+):(.*)" + re.escape(GREY) + "\n"
)
STALL = 'Press the "c" key to continue'
FINISHED = "Monkey finished.\n"


class Drawn:
    """A line of the monkey's as the console shows it; `begin` and `end` are its place there."""

    def __init__(self, match):
        self.mark, self.kind, self.line = match.groups()
        self.begin, self.end = match.span()
        self.name = self.line.partition("(")[0]
        self.is_valid = self.kind == "MONKEY"


class Hurried:
    def __init__(self, place, **environment):
        self.place = place
        self.text = ""
        self.output = (place.work / "console.txt").open("wb")
        self.unread = (place.work / "console.txt").open("rb")
        self.rest = b""  # a line that is still being written
        self.process = subprocess.Popen(
            [place.program("hurried-ventrik")],
            stdin=subprocess.PIPE,
            stdout=self.output,
            stderr=subprocess.DEVNULL,
            env=place.environment(**environment),
            cwd=place.work,
        )
        place.started.append(self)
        self.see("Press ENTER")

    # What Place.close asks of a process.
    def poll(self):
        return self.process.poll()

    def send_signal(self, number):
        self.process.send_signal(number)

    def wait(self):
        self.process.wait()

    @property
    def stdout(self):
        return self.output

    @property
    def stderr(self):
        return self.unread

    def take(self):
        """All that has been shown by now."""
        self.rest += self.unread.read()
        cut = self.rest.rfind(b"\n") + 1
        self.text += self.rest[:cut].decode()
        self.rest = self.rest[cut:]
        return self.text + self.rest.decode(errors="replace")

    def until(self, condition, what, patience=PATIENCE):
        end = time.monotonic() + patience
        while not condition(self.take()):
            assert time.monotonic() < end, f"never came: {what}; in:\n{self.take()[-4000:]}"
            assert self.process.poll() is None, f"ended at:\n{self.take()[-4000:]}"
            time.sleep(0.05)

    def see(self, sight, times=1):
        self.until(lambda text: text.count(sight) >= times, f"{sight!r} x {times}")
        return self

    def command(self, line):
        """ENTER, the line, ENTER."""
        self.process.stdin.write(f"\n{line}\n".encode())
        self.process.stdin.flush()
        return self

    def initialise(self):
        return self.command("init").see("initialized successfully")

    def drawn(self):
        return [Drawn(match) for match in MARKED.finditer(self.take())]

    def see_drawn(self, count):
        self.until(lambda _: len(self.drawn()) >= count, f"{count} lines of the monkey")
        return self

    def log(self):
        return (self.place.work / "monkeylog.txt").read_text().splitlines()

    def quit(self):
        self.command("quit")
        assert self.process.wait(timeout=PATIENCE) == 0
        return self.take()
