#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""A long run of the monkey: does anything grow, stall or break beside it?

The monkey goes by the example configuration, in a hurry. Beside it an engine sends messages unasked,
among them all those that the monkey follows and those that the tester answers by itself, from time to
time a flood of them, and asks for weather, which the example images are drawn for. A person types a
line as soon as the last one has had its effect. Lines also replay a drive, pause, end and replace the
monkey, and the person types the "c" that a stalled search asks for. Each second the tester's memory,
descriptors, threads and sockets are looked at; --samples keeps that as a table with commas, for
tools/plot_samples.sh.

    monkey_soak.py --programs build/asan/bin [--seed NUMBER] [--hurry TIMES] [--samples FILE] [SECONDS]

What fails the run:

- an alarm of a sanitizer, a failed assertion, an end with another status than 0, a leak at the end;
- the monkey, the typed lines or the notifications standing still for two minutes;
- 20 seconds in a row with fewer threads than usual, which are main, listener and monkey; at the end
  another number of threads, or more descriptors or sockets, than once it has settled;
- more overlay surfaces held at the end than the engine has offered at once and one for
  LISTENERS_A_SURFACE listeners: a message that a listener is reading when the next one takes its
  place is lost, and if it was the end of a surface, that is kept;
- memory of its own: the least of the last minute may be above the most of the first ones by
  MOST_GROWTH and RECORD bytes for each record that was made in between. Records are items of lists,
  of which the monkey keeps a note as well, and routes, as the console shows them, and lines of the
  history.

The seed is that of what is typed; the monkey and threads have none.
"""

import argparse
import collections
import json
import os
import pathlib
import random
import re
import shutil
import signal
import statistics
import subprocess
import sys
import threading
import time

from conftest import PATIENCE, Place

EXAMPLES = pathlib.Path(__file__).parents[2] / "examples"
FIRST = 300  # seconds in which memory settles, or a quarter of a shorter run
LAST = 60  # seconds at the end, or as many less
STILL = 120  # seconds until something counts as standing still
LOST = 20  # seconds until a missing thread counts as lost
RETYPED = 10  # seconds until a line is typed again, 1 if a stall came between
MOST_GROWTH = 4 * 1024  # KiB of memory
SURFACE = "/dev/shm/gwx_"  # how the names of their objects begin
SHARED = ("gwx_*", "TORVALE_GLES2")  # all objects of both programs
SURFACES = 70  # that an engine may have been offered and not have ended yet
LISTENERS_A_SURFACE = 50
RECORD = 384  # bytes, at most, with all that the sanitizer adds
TAIL = 20_000  # bytes kept of what a program printed

ALARM = re.compile(rb"Sanitizer|runtime error:|ASSERT FAILED|[Aa]ssertion `|terminate called")
MARK = re.compile(rb"Variable 'mark' has new value '(\d+)'")
STALL = b'Press the "c" key to continue'
# A prompt that a "c" has opened runs the "c", and opens and closes once more for the "x"; one that is
# closed opens and runs the "x".
CLOSE_THE_PROMPT = "\nx\n"
SIGHTS = {
    "lines": (b"MONKEY:", b"INVALID:"),
    "invalid": (b"INVALID:",),
    "finished": (b"Monkey finished.",),
    "notifications": (b"INFO_HEARTBEAT>",),
    "reached": (b"INFO_DESTINATION_REACHED> Dest",),
    "records": (b"item is added to", b"Bad syntax!", b"calcPercent: 100"),
    "listeners": (b"creating listener thread",),
    "pictures": (b"Copying buffer.",),
    "replays": (b"Batchlog finished", b"Batchlog stopped"),
    "maneuvers": (b"INFO_NEXT_MAN_INFO>",),  # what the floods are made of
}
FLOOD = "flood,message=INFO_NEXT_MAN_INFO,probability=0.001,copies=5000"


def every(milliseconds, message, **fields):
    return {"every_ms": milliseconds, "send": [{"message": message, "fields": fields}]}


UNASKED = {
    "rules": [
        every(50, "INFO_NEXT_MAN_INFO", time=9, distance=99, nextManInfo1=1),
        every(300, "INFO_PROMPT_READY", audioSource=1),
        every(500, "INFO_HIGHWAYMODE_UPDATE", state=1),
        every(300, "INFO_VEH_LOC_INFO_DETAILS", posInfo="<JVA>7<*>"),
        every(2000, "INFO_MAP_OVERLAY_AREA", eis="<MID>map<*>"),
        every(2000, "INFO_MAP_OVERLAY_AREA", eis="<GLL>12.5 52.0<*><GUR>14.5 53.0<*>"),
        every(900, "INFO_ACTIVE_ROUTE_DESC", routeDesc1=1, routeDesc2=2, routeDesc3=3),
        every(1300, "INFO_DESTINATION_REACHED", dest="Passau", element=1, total=1),
        every(9000, "INFO_CALC_STATE", routeHandle=777, calcState=4, calcPercent=100),
        # Seldom, as they lead the search astray.
        every(
            7000, "RESP_GET_AVAILABLE_INFO", inputEIS="", availableTypesEIS="<GEOC>3<*><CTY>99<*>"
        ),
        every(5000, "RESP_GET_SPELL", inputEIS="<CTY><*>", nextAvailableCharacters="abcü€"),
        every(
            8000,
            "RESP_GET_LIST",
            inputEIS="<CTY><*>",
            startIndex=1,
            resultCount=2,
            itemList=["<CTY>Passau<*>", "<STR>Am Severinstor<*>"],
        ),
        every(400, "RESP_GET_DETAILS", inputEIS="", outputEIS="<CTY>Passau<*><GEO>13.4 48.5<*>"),
    ]
}

TYPED = (
    "vers",
    "verd",
    'litem("allitem")',
    'litem("de")',
    'citem("rm")',
    'item("SStringArray","allitem","<CTY>")',
    'item("SDestinationElementList","de","<GEO>13.4 48.5<*>","")',
    'info("<GEOC>Germany<*>")',
    'spell("<GEOC>G<*>")',
    'opt("<GEOC>Germany<*><CTY><*>")',
    'det("<GEOC>Germany<*><CTY>Passau<*>","allitem")',
    'map("<MID>map<*><MZ>{number}000<*>")',
    'start("{number}")',
    "stop",
    'prompt("on")',
    'prompt("off")',
    'weather("on")',
    'posdet("onChange","1")',
    'posdet("disable","1")',
    'startlog("typed.log")\nvers\nstoplog',
    'rldresp("on")',
    'rldresp("off")',
    "init",
    'batchlog("drive.log","20")',
    "stopbatchlog",
    'text="{number}"\nvers',
    'row = {number}, list("<GEOC>Germany<*><CTY><*>","1","{number}","ascending","fields","on")',
)
SELDOM = ('stopmonkey("100")', "stopmonkey", 'monkey("200")', "monkey")  # each defines 200 lists
SELDOM_ONE_IN = 80


class Sample(collections.namedtuple("Sample", "memory descriptors threads sockets surfaces")):
    """What a process holds: KiB of memory of its own, and counts; surfaces have a descriptor each,
    which is not among the descriptors."""

    def __str__(self):
        text = "{} KiB, {} descriptors, {} threads, {} sockets".format(*self)
        return text + (f", {self.surfaces} surfaces" if self.surfaces else "")


def look_at(process, place):
    """None if it has just gone."""
    folder = pathlib.Path("/proc") / str(process.pid)
    try:
        status = (folder / "status").read_text()
        files = [os.readlink(entry) for entry in (folder / "fd").iterdir()]
    except OSError:
        return None
    values = [re.search(rf"^{key}:\s*(\d+)", status, re.M) for key in ("RssAnon", "Threads")]
    if None in values:
        return None
    memory, threads = (int(value[1]) for value in values)
    surfaces = sum(SURFACE in file for file in files)
    sockets = len(list(place.sockets.glob(f"ventrik/c.{process.pid}.*")))
    return Sample(memory, len(files) - surfaces, threads, sockets, surfaces)


class Program:
    """A process. Of what it prints, the numbers of all sights, the last mark and the end are kept."""

    def __init__(self, place, name, *options, **environment):
        sanitizer = os.environ.get("ASAN_OPTIONS", "")
        environment["ASAN_OPTIONS"] = f"{sanitizer}:quarantine_size_mb=1"
        kept = place.work / "kept.supp"  # the sets of weather images, which live for ever
        kept.write_text("leak:ventrik::findResourceSets\n")
        environment["LSAN_OPTIONS"] = f"suppressions={kept}:print_suppressions=0"
        self.process = subprocess.Popen(
            [place.program(name), *options],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            env=place.environment(**environment),
            cwd=place.work,
        )
        place.started.append(self.process)
        self.seen = collections.Counter()
        self.mark = 0
        self.stalls = 0
        self.kept = {"stdout": b"", "stderr": b""}
        self.alarm = None  # what no program should ever print
        self.samples = []
        self.readers = [threading.Thread(target=self._read, args=(name,)) for name in self.kept]
        for reader in self.readers:
            reader.start()

    def _read(self, name):
        stream = getattr(self.process, name)
        rest, stalls = b"", 0
        while part := stream.read1(65536):
            text = rest + part
            cut = text.rfind(b"\n") + 1
            lines, rest = text[:cut], text[cut:]
            for sight, texts in SIGHTS.items():
                self.seen[sight] += sum(lines.count(each) for each in texts)
            for mark in MARK.findall(lines):
                self.mark = int(mark)
            stalls += lines.count(STALL)  # the question itself ends no line
            if name == "stdout":
                self.stalls = stalls + rest.count(STALL)
            self.kept[name] = (self.kept[name] + part)[-TAIL:]
            if ALARM.search(text):
                self.alarm = self.alarm or text

    def tail(self):
        return "\n".join(part.decode(errors="replace") for part in self.kept.values())

    def check(self):
        if self.alarm:
            time.sleep(1)  # for the rest of the report
        assert not self.alarm, self.tail()
        assert self.process.poll() is None, f"it has ended: {self.process.poll()}\n{self.tail()}"

    def sample(self, place, records=0):
        self.check()
        if taken := look_at(self.process, place):
            self.samples.append((taken, records))

    def type(self, keys):
        try:
            self.process.stdin.write(keys.encode())
            self.process.stdin.flush()
        except BrokenPipeError:
            pass  # it has ended, which is noticed elsewhere

    def ends(self):
        """Waits for a good end, with time for a search for leaks."""
        status = self.process.wait(timeout=4 * PATIENCE)
        for reader in self.readers:
            reader.join()
        assert status == 0 and not self.alarm, f"status {status}:\n{self.tail()}"


class Progress:
    """Something that is counted and must never stand still."""

    def __init__(self, what, count):
        self.what = what
        self.count = count
        self.last = count()
        self.since = time.monotonic()

    def check(self):
        if (now := self.count()) != self.last:
            self.last, self.since = now, time.monotonic()
        assert time.monotonic() - self.since < STILL, f"{self.what}: no more than {self.last}"


class Person:
    """Types lines, each with a mark behind it that the console shows; starts the monkey again when
    it has finished; types "c" until a monkey that asks for it goes on."""

    def __init__(self, tester, chance):
        self.tester = tester
        self.chance = chance
        self.typed = 0
        self.keyed = 0  # lines with their marks, each in the history
        self.finished = 0  # monkeys that have been followed by another
        self.stalls = 0  # that are over
        self.stalled_at = None  # what the monkey had done when it asked
        self.type_line("monkey")

    def type_line(self, line):
        self.typed += 1
        self.line = line
        self.retype()

    def retype(self):
        self.since = time.monotonic()
        keys = "".join(f"\n{line}\n" for line in self.line.split("\n"))
        self.keyed += self.line.count("\n") + 2
        self.tester.type(f'{keys}\nmark = "{self.typed}"\n')

    def records(self):
        return self.tester.seen["records"] + self.keyed

    def next_line(self):
        if self.tester.seen["finished"] > self.finished:
            self.finished = self.tester.seen["finished"]
            return "monkey"
        lines = TYPED if self.chance.randrange(SELDOM_ONE_IN) else SELDOM
        return self.chance.choice(lines).format(number=self.chance.randint(1, 20))

    def helps(self):
        """Whether a monkey stands still, in which case a "c" is typed."""
        if self.tester.stalls > self.stalls:
            # One that was to stop when it asked finishes without another line.
            done = self.tester.seen["lines"] + self.tester.seen["finished"]
            if self.stalled_at is None:
                self.stalled_at = done
            if done > self.stalled_at:
                self.stalls += 1
                self.stalled_at = None
                self.tester.type(CLOSE_THE_PROMPT)
            else:
                self.tester.type("c")
        return self.stalled_at is not None

    def quit(self):
        end = time.monotonic() + STILL
        since = 0.0
        while self.tester.process.poll() is None:
            assert time.monotonic() < end, f"it does not quit:\n{self.tester.tail()}"
            if not self.helps() and time.monotonic() - since > RETYPED:
                since = time.monotonic()
                self.tester.type("\nquit\n")
            time.sleep(0.25)

    def go_on(self):
        if self.helps():
            self.since = time.monotonic() - RETYPED + 1  # the line may be lost, or run in a moment
        elif self.tester.mark == self.typed:
            self.type_line(self.next_line())
        elif time.monotonic() - self.since > RETYPED:
            self.retype()


def judge_threads(settled, late):
    """`settled` goes to the end. A replay has its thread only for a moment."""
    faults = []
    counts = [sample.threads for sample, _ in settled]
    usual = statistics.median_low(counts)
    for begin in range(len(counts) - LOST):
        span = counts[begin : begin + LOST]
        if max(span) < usual:
            faults.append(f"threads, {usual} as a rule, from second {begin} on: {span}")
            break
    after = statistics.median_low(sample.threads for sample, _ in late)
    if after != usual:
        faults.append(f"threads went from {usual} to {after}")
    return faults


def judge(samples, listeners):
    """What is wrong with what was held, as texts."""
    first = min(FIRST, len(samples) // 4)
    last = min(LAST, len(samples) // 4)
    early, late = samples[:first], samples[-last:]
    faults = judge_threads(samples[first // 2 :], late)
    for part in ("descriptors", "sockets"):
        before = max(getattr(sample, part) for sample, _ in early)
        after = min(getattr(sample, part) for sample, _ in late)
        if after > before:
            faults.append(f"{part} grew from {before} to {after}")
    surfaces = min(sample.surfaces for sample, _ in late)
    print(f"surfaces: {surfaces} at least at the end, after {listeners} listeners")
    if surfaces > SURFACES + listeners // LISTENERS_A_SURFACE:
        faults.append(f"{surfaces} surfaces are held")
    before = max(sample.memory for sample, _ in early)
    after = min(sample.memory for sample, _ in late)
    records = late[-1][1] - early[-1][1]
    allowed = MOST_GROWTH + records * RECORD // 1024
    print(
        f"memory: at most {before} KiB in the first {first} s, at least {after} KiB in the last "
        f"{last} s; {records} records in between allow {allowed} KiB more, and took "
        f"{(after - before) * 1024 // max(1, records)} bytes each"
    )
    if after - before > allowed:
        faults.append(f"memory grew from {before} to {after} KiB, and {allowed} were allowed")
    return faults


def show(passed, tester, engine, typed):
    sample, records = tester.samples[-1]
    print(
        f"{passed:5.0f} s  {sample}; {tester.seen['lines']} lines, {typed} typed, "
        f"{tester.stalls} stalls, {records} records; engine {engine.samples[-1][0]}",
        flush=True,
    )


class Table:
    """What was held each second, and the numbers of records and lines by then, in a file."""

    HEAD = "second,memory_kib,descriptors,threads,sockets,surfaces,shared_objects,engine_memory_kib,"

    def __init__(self, path):
        self.file = open(path, "w", encoding="ascii") if path else None
        self.write(self.HEAD + "records,lines")

    def write(self, row):
        if self.file:
            print(row, file=self.file, flush=True)

    def add(self, passed, tester, engine):
        shared = sum(len(list(pathlib.Path("/dev/shm").glob(name))) for name in SHARED)
        sample, records = tester.samples[-1]
        held = (*sample, shared, engine.samples[-1][0].memory, records, tester.seen["lines"])
        self.write(",".join(str(each) for each in (int(passed), *held)))


def soak(place, seconds, seed, hurry, table):
    shutil.copy(EXAMPLES / "monkey_config.txt", place.work)
    shutil.copy(EXAMPLES / "logs" / "drive.log", place.work)
    shutil.copytree(EXAMPLES / "resources", place.work / "resources")
    (place.work / "unasked.json").write_text(json.dumps(UNASKED))
    options = ["--scenario", "unasked.json", "--heartbeat", "0.5", "--fault", FLOOD]
    engine = Program(place, "kelmora-bench", *options)
    while b"serving" not in engine.kept["stdout"]:
        engine.check()
        time.sleep(0.05)
    # The driver draws on the listener's thread. With threads of its own it puts off up to 300 MiB of
    # work for each picture, more the busier the machine is, and no growth of ours would be seen.
    tester = Program(place, "hurried-ventrik", HURRY=str(hurry), LP_NUM_THREADS="0")
    tester.type('\ninit\n\nweather("on")\n')
    person = Person(tester, random.Random(seed))
    progress = [
        Progress("lines of the monkey", lambda: tester.seen["lines"]),
        Progress("typed lines", lambda: person.typed),
        Progress("notifications", lambda: tester.seen["notifications"]),
    ]
    start = sampled = time.monotonic()
    shown = -60.0
    while (now := time.monotonic()) - start < seconds:
        time.sleep(0.25)
        person.go_on()
        if now - sampled < 1:
            continue
        sampled = now
        engine.sample(place)
        tester.sample(place, person.records())
        table.add(now - start, tester, engine)
        for each in progress:
            each.check()
        if now - shown >= 60:
            shown = now
            show(now - start, tester, engine, person.typed)
    show(time.monotonic() - start, tester, engine, person.typed)
    person.quit()
    tester.ends()
    engine.process.send_signal(signal.SIGTERM)
    engine.ends()
    print(f"seen: {dict(tester.seen)}; stalls: {tester.stalls}; typed: {person.typed}")
    faults = judge(tester.samples, tester.seen["listeners"])
    if left := place.sockets_left():
        faults.append(f"left in the runtime directory: {left}")
    return faults


def main():
    parser = argparse.ArgumentParser(description="A long run of the monkey.")
    parser.add_argument("seconds", nargs="?", type=int, default=3600)
    parser.add_argument("--programs", required=True)
    parser.add_argument("--seed", type=int, default=int(time.time()))
    parser.add_argument("--hurry", type=int, default=100, help="how many times less it sleeps")
    parser.add_argument("--samples", help="the table of what was held each second")
    arguments = parser.parse_args()
    if arguments.seconds < 2 * LOST:
        parser.error(f"SECONDS is {2 * LOST} or more")
    print(f"{arguments.seconds} seconds, seed {arguments.seed}", flush=True)
    place = Place(arguments.programs)
    try:
        table = Table(arguments.samples)
        faults = soak(place, arguments.seconds, arguments.seed, arguments.hurry, table)
    finally:
        place.close()
    for fault in faults:
        print(fault, file=sys.stderr)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
