#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""A long run under faults: does anything grow, hang or break?

One engine that commits all its faults now and then, and two testers that play one generated batch
file after the other; the second one quits from time to time and is started anew. Each second the
memory, descriptors, threads and sockets of all three are looked at. In the last part of the run the
faults are over. At its end, descriptors, threads and sockets must be back where they were in the
first minute, memory must hardly have grown, and all three must end well and leave nothing. A tester
keeps each weather surface until it is told of its end, and so those for which the faults kept that
from it: a mapping and a descriptor each. They are counted by themselves and left out of the rest.

    soak.py --programs build/debug/bin [--seed NUMBER] [SECONDS]

A build with sanitizers ends with a bad status or is heard complaining, which fails the run, too. It
needs ASAN_OPTIONS=quarantine_size_mb=1, as freed memory that is kept looks like growth.
"""

import argparse
import collections
import pathlib
import random
import re
import signal
import statistics
import subprocess
import sys
import threading
import time

from conftest import PATIENCE, Place

FIRST_MINUTE = 60  # seconds, or a quarter of a shorter run
CALM = 25  # seconds at the end without faults: what was late by 16 is through, and a batch more
STALLED = 150  # seconds until a batch file counts as hanging; unread requests take 15 each
MOST_GROWTH = 16 * 1024  # KiB of memory behind the first minute
TAIL = 20_000  # bytes kept of what a program printed
LINES = 40  # of a batch file
QUITS_EVERY = 5  # batch files of the second tester
MARK = re.compile(rb"Variable 'mark' has new value '(\w+)'")  # the end of a batch file
ALARM = re.compile(rb"Sanitizer|runtime error:|[Aa]ssertion|terminate called")

# Handshakes are few, answers are many. Hanging, dying and silence cost whole seconds.
FAULTS = (
    "refuse,probability=0.1",
    "slow,probability=0.05,seconds=0.5",
    "unread,probability=0.0005",
    "miscount,probability=0.01",
    "hang,probability=0.001,seconds=2",
    "die,probability=0.001,seconds=1",
    "restart,probability=0.001,seconds=1",
    "drop,probability=0.01",
    "late,probability=0.01",
    "duplicate,probability=0.01",
    "reorder,probability=0.02",
    "flood,probability=0.002",
    "oversize,probability=0.001",
    "unknown,probability=0.01",
    "truncate,probability=0.02",
    "lie,probability=0.03",
    "endless,probability=0.02",
)

# No tester types `list` or `waitresp` here, which wait without limit for an answer that may be
# lost. A list comes along with the letters instead.
SCENARIO = """{"rules": [{"on": "REQU_GET_SPELL", "send": [{"after_ms": [0, 200],
  "message": "RESP_GET_LIST", "fields": {"inputEIS": "<CTY><*>", "validState": 1, "startIndex": 1,
  "resultCount": 2, "fieldOptions": ["GEO", "POP"], "completeState": 1,
  "itemList": ["<CTY>Passau<*><POP>50560<*>", "<CTY>Regensburg<*><POP>129151<*>"]}}]}]}"""

BEGINNING = (
    'server("navigation")',
    "init",
    "citems",
    'item("SStringArray","fields","GEO")',
    'item("SDestinationElementList","stops","<GEOC>Germany<*><CTY>Passau<*>","")',
    'item("SRouteModeList","modes","fastest|avoidFerries")',
    'item("SRouteHandleList","handles","1")',
    'tmci("tmcAllMessages","onChange")',
    'weather("on")',
)

COMMANDS = (
    "vers",
    "verd",
    "stop",
    "begrec",
    "endrec",
    "adac",
    "adar",
    "rrfac",
    'spell("<GEOC>{letter}<*>")',
    'spell("<GEOC>Germany<*><CTY>{letter}<*>")',
    'spell("{long}")',
    'info("<GEOC>{letter}<*>")',
    'opt("<GEOC>Germany<*><CTY>{letter}<*>")',
    'det("<GEOC>Germany<*><CTY>Passau<*>","fields")',
    'rnew("stops","modes")',
    'item("SRouteHandleList","handles","{number}")',
    'rkill("handles")',
    'start("{number}")',
    'demo("on","13.4","48.5")',
    'demo("off","0","0")',
    'blk("AddBlock","fields")',
    'posdet("onChange","1")',
    'posdet("once","1")',
    'map("<MID>map<*><MZ>{number}000<*>")',
    'map("<MID>m{number}<*><MSM>1<*><MSD>90<*><MSS>50<*>")',
    'map("<MID>all<*><MSM>2<*>")',
    'sci("map","12","34","geoCoordinate|locationDetails","60")',
    'wep("map","highlight|zoom","fields")',
    'sshot("map","soak.png")',
    'addsrc("<SRC>{number}<*>")',
    'rmsrc("<SRC>{number}<*>")',
    'lang("LangGerman","{number}")',
    'meas("metric")',
    'volume("<VOL>{number}<*>")',
    'rswarn("valueMode","{number}")',
    'playprompt("{number}")',
    'audio("AudioManual")',
    'update("/map-{number}.pkg")',
    'device_status("status.txt")',
    'tmcdebug("EVENT htmc={number} loc=113 age=1 event_1=401")',
    'tmcdebug("")',
    'tmcm("on","x")',
    'tmca("tmcAvoid","fields")',
    'userinput("key")',
    'server("navigation")',
    'server("nobody")\nserver("navigation")',
    'wait("1")',
)


class Sample(collections.namedtuple("Sample", "memory descriptors threads sockets surfaces")):
    """What a process holds: KiB, and counts."""

    def __str__(self):
        text = "{} KiB, {} descriptors, {} threads, {} sockets, {} surfaces"
        return text.format(*self)


def look_at(process, place):
    """None if it has just gone."""
    folder = pathlib.Path("/proc") / str(process.pid)
    try:
        status = (folder / "status").read_text()
        descriptors = len(list((folder / "fd").iterdir()))
        surfaces = (folder / "maps").read_text().count("/dev/shm/gwx_")
    except OSError:
        return None
    keys = ("VmRSS", "RssShmem", "Threads")
    values = [re.search(rf"^{key}:\s*(\d+)", status, re.M) for key in keys]
    if None in values:
        return None
    memory, shared, threads = (int(value[1]) for value in values)
    sockets = len(list(place.sockets.glob(f"ventrik/c.{process.pid}.*")))
    return Sample(memory - shared, descriptors - surfaces, threads, sockets, surfaces)


class Program:
    """A process, what it prints, and what it held each second."""

    def __init__(self, place, name, *options):
        self.process = subprocess.Popen(
            [place.programs / name, *options],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            env=place.environment(),
            cwd=place.work,
        )
        place.started.append(self.process)
        self.shown = b""
        self.errors = b""
        self.alarm = None  # what no program should ever print
        self.mark = None  # the last one; much may be printed behind it
        self.samples = []
        self.readers = [
            threading.Thread(target=self._read, args=(self.process.stdout, "shown")),
            threading.Thread(target=self._read, args=(self.process.stderr, "errors")),
        ]
        for reader in self.readers:
            reader.start()

    def _read(self, stream, kept):
        while part := stream.read1(65536):
            text = getattr(self, kept) + part
            setattr(self, kept, text[-TAIL:])
            if marks := MARK.findall(text):
                self.mark = marks[-1].decode()
            if ALARM.search(text):
                self.alarm = text.decode(errors="replace")

    def sample(self, place):
        assert not self.alarm, self.alarm
        taken = look_at(self.process, place)
        if taken:
            self.samples.append(taken)

    def ends(self):
        """Waits for a good end."""
        status = self.process.wait(timeout=PATIENCE)
        for reader in self.readers:
            reader.join()
        assert not self.alarm, self.alarm
        assert status == 0, f"status {status}: {self.errors.decode(errors='replace')}"


class Player:
    """A tester and its batch files."""

    def __init__(self, place, name, chance, quits):
        self.place = place
        self.name = name
        self.chance = chance
        self.quits = quits
        self.files = 0
        self.starts = 0
        self.start()

    def start(self):
        self.starts += 1
        self.program = Program(self.place, "ventrik")
        self.play()

    def is_last(self):
        return self.quits and self.files % QUITS_EVERY == 0

    def line(self):
        return self.chance.choice(COMMANDS).format(
            letter=self.chance.choice("ABCDEFGHIKLMNOPRSTUVWZ"),
            number=self.chance.randint(1, 20),
            long="x" * self.chance.choice((5, 500, 50_000)),
        )

    def play(self):
        self.files += 1
        self.mark = f"{self.name}{self.files}"
        self.since = time.monotonic()
        lines = [*BEGINNING, *(self.line() for _ in range(LINES)), 'wait("1")']
        lines.append("quit" if self.is_last() else f'mark="{self.mark}"')
        self.place.batch(f"{self.name}.batch", "\n".join(lines) + "\n")
        self.command(f'batch("{self.name}.batch")')

    def command(self, line):
        self.program.process.stdin.write(f"\n{line}\n".encode())
        self.program.process.stdin.flush()

    def go_on(self):
        """Plays the next file when the last one is through."""
        ended = self.program.process.poll() is not None
        if ended:
            assert self.is_last(), "it ended in the middle"
            self.program.ends()
            self.start()
        elif self.mark == self.program.mark:
            self.play()
        stalled = time.monotonic() - self.since > STALLED
        assert not stalled, f"stalled:\n{self.program.shown.decode(errors='replace')}"

    def finish(self):
        """Lets the file that is open come to its end, and quits."""
        end = time.monotonic() + STALLED
        while self.program.process.poll() is None and self.mark != self.program.mark:
            assert time.monotonic() < end, "the last file has no end"
            time.sleep(0.1)
        if self.program.process.poll() is None:
            self.command("quit")
        self.program.ends()


def compare(name, samples, first):
    """The faults of what was held at the end against the beginning, as texts."""
    early, late = samples[:first], samples[-10:]
    faults = []
    for part in ("threads", "sockets"):
        before, after = (
            statistics.median(getattr(sample, part) for sample in span) for span in (early, late)
        )
        if after != before:
            faults.append(f"{name}: {part} went from {before} to {after}")
    before = max(sample.descriptors for sample in early)
    after = min(sample.descriptors for sample in late)
    if after > before:
        faults.append(f"{name}: descriptors grew from {before} to {after}")
    before = max(sample.memory for sample in early)
    after = min(sample.memory for sample in late)
    if after - before > MOST_GROWTH:
        faults.append(f"{name}: memory grew from {before} to {after} KiB")
    return faults


def reports(errors):
    """The kinds of reports and how often each came, of the last ones."""
    lines = [re.sub(rb"\d+", b"N", line).decode() for line in errors.splitlines()]
    return dict(collections.Counter(lines)) or "nothing"


def soak(place, seconds, seed):
    (place.work / "scenario.json").write_text(SCENARIO)
    options = [f"--fault={fault},until={seconds - CALM}" for fault in FAULTS]
    options += ["--seed", str(seed), "--scenario", "scenario.json", "--heartbeat", "0.5"]
    options += ["--picture-dir", ".", "--log", "messages.log"]
    engine = Program(place, "kelmora-bench", *options)
    while b"serving" not in engine.shown:
        assert engine.process.poll() is None, engine.errors.decode()
        time.sleep(0.05)
    start = time.monotonic()
    first = min(FIRST_MINUTE, seconds // 4)
    steady = Player(place, "steady", random.Random(f"{seed} steady"), quits=False)
    fickle = Player(place, "fickle", random.Random(f"{seed} fickle"), quits=True)
    while (passed := time.monotonic() - start) < seconds:
        time.sleep(1)
        for program in (engine, steady.program, fickle.program):
            program.sample(place)
        if len(engine.samples) % 30 == 1:
            print(f"{passed:5.0f} s  engine {engine.samples[-1]}")
            print(f"         tester {steady.program.samples[-1]}", flush=True)
        assert engine.process.poll() is None, engine.errors.decode()
        for player in (steady, fickle):
            player.go_on()
    for player in (steady, fickle):
        player.finish()
    engine.process.send_signal(signal.SIGTERM)
    engine.ends()
    print(f"batch files: {steady.files} and {fickle.files}; testers: 1 and {fickle.starts}")
    print(f"the engine reported: {reports(engine.errors)}")
    print(re.split(rb"\n +\d+ ", engine.shown[engine.shown.find(b"serving") :])[0].decode())
    faults = compare("the engine", engine.samples, first)
    faults += compare("the tester", steady.program.samples, first)
    if left := place.sockets_left():
        faults.append(f"left in the runtime directory: {left}")
    return faults


def main():
    parser = argparse.ArgumentParser(description="A long run under faults.")
    parser.add_argument("seconds", nargs="?", type=int, default=600)
    parser.add_argument("--programs", required=True)
    parser.add_argument("--seed", type=int, default=int(time.time()))
    arguments = parser.parse_args()
    if arguments.seconds < 2 * CALM:
        parser.error(f"SECONDS is {2 * CALM} or more")
    print(f"{arguments.seconds} seconds, seed {arguments.seed}", flush=True)
    place = Place(arguments.programs)
    try:
        faults = soak(place, arguments.seconds, arguments.seed)
    finally:
        place.close()
    for fault in faults:
        print(fault, file=sys.stderr)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
