# SPDX-License-Identifier: Apache-2.0
"""The real programs: a bench engine in a place of its own, and ventrik in a pseudo-terminal.

A test types keys and waits for what the screen shows, never for a time.
"""

import os
import pathlib
import re
import shutil
import signal
import subprocess
import tempfile
import time

import pexpect
import pyte
import pytest

from own_shared_memory import take_own_shared_memory, trouble_with_own_shared_memory

NEGATIVE_MOVE = re.compile(r"\x1b\[-\d+C")
UNFINISHED = re.compile(r"\x1b(\[-?\d*)?$")
# Seconds until a test counts as hanging. Programs that are watched or counted are slower.
PATIENCE = int(os.environ.get("VENTRIK_TESTS_PATIENCE", "30"))
# What is left running at a test's end gets this. Programs that count coverage write it down first.
END = signal.SIGUSR2 if os.environ.get("VENTRIK_COUNTS_COVERAGE") else signal.SIGKILL


def pytest_addoption(parser):
    parser.addoption("--programs", required=True, help="the folder of ventrik and kelmora-bench")


def pytest_configure(config):
    if "PYTEST_XDIST_WORKER" in os.environ:
        take_own_shared_memory()
    elif config.getoption("numprocesses", None):
        trouble = trouble_with_own_shared_memory()
        if trouble:
            pytest.exit(f"-n needs the right to mount a /dev/shm for each worker: {trouble}", 4)


class Place:
    """A directory to run in, with sockets of its own."""

    def __init__(self, programs):
        self.programs = pathlib.Path(programs).resolve()
        self.path = pathlib.Path(tempfile.mkdtemp(prefix="ventrik-terminal-"))
        self.sockets = self.path / "sockets"
        self.sockets.mkdir(mode=0o700)
        self.work = self.path / "work"
        self.work.mkdir()
        self.started = []

    def environment(self, **more):
        environment = {k: v for k, v in os.environ.items() if k != "COLUMNS"}
        environment.update(XDG_RUNTIME_DIR=str(self.sockets), TERM="xterm", LC_ALL="C", **more)
        return environment

    def engine(self, *options):
        engine = subprocess.Popen(
            [self.programs / "kelmora-bench", *options],
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            env=self.environment(),
            cwd=self.work,
            text=True,
        )
        self.started.append(engine)
        assert "serving" in engine.stdout.readline()
        return engine

    def program(self, name):
        """One of the programs, or of those that are built with the tests beside them."""
        built = self.programs / name
        return built if built.exists() else self.programs.parent / "tests" / name

    def tester(self, columns=80, program="ventrik", **environment):
        return Tester(self, columns, program, environment)

    def sockets_left(self):
        return [entry.name for entry in self.sockets.rglob("*") if entry.name != "ventrik"]

    def batch(self, name, text):
        data = b"\xff\xfe" + text.encode("utf-16-le")
        (self.work / name).write_bytes(data)

    def close(self):
        for process in self.started:
            if process.poll() is None:
                process.send_signal(END)
                process.send_signal(signal.SIGCONT)  # one that was stopped takes no other
            process.wait()
            process.stdout.close()
            process.stderr.close()
        shutil.rmtree(self.path)


class Screen(pyte.HistoryScreen):
    """A screen that keeps one cursor position, as terminals do for CSI s and CSI u."""

    kept = (0, 0)

    def keep_cursor(self, *_, **__):
        self.kept = (self.cursor.y, self.cursor.x)

    def recall_cursor(self, *_, **__):
        self.cursor_position(self.kept[0] + 1, self.kept[1] + 1)


class Stream(pyte.Stream):
    csi = dict(pyte.Stream.csi, s="keep_cursor", u="recall_cursor")
    events = pyte.Stream.events | {"keep_cursor", "recall_cursor"}


class Tester:
    """ventrik in a pseudo-terminal, seen as a person sees it."""

    def __init__(self, place, columns, program, environment):
        self.screen = Screen(columns, 24, history=5000)
        self.stream = Stream(self.screen)
        self.raw = ""
        self.unread = ""  # the beginning of an escape sequence
        self.child = pexpect.spawn(
            str(place.program(program)),
            env=place.environment(**environment),
            cwd=str(place.work),
            dimensions=(24, columns),
            encoding="utf-8",
            timeout=PATIENCE,
        )
        self.child.delaybeforesend = None
        place.started.append(self)

    # What Place.close asks of a process.
    def poll(self):
        return None if self.child.isalive() else 0

    def send_signal(self, number):
        self.child.kill(number)

    def wait(self):
        end = time.monotonic() + PATIENCE
        while END != signal.SIGKILL and self._is_running() and time.monotonic() < end:
            self._take()  # it may stand in a write to a terminal that is full
        self.child.close(force=True)

    def _is_running(self):
        """Without waiting for it, as one with a thread that is traced has no end."""
        status = pathlib.Path(f"/proc/{self.child.pid}/stat")
        return status.exists() and status.read_text().rpartition(")")[2].split()[0] != "Z"

    class _Nothing:
        @staticmethod
        def close():
            pass

    stdout = stderr = _Nothing

    def _take(self):
        try:
            text = self.child.read_nonblocking(65536, timeout=0.05)
        except (pexpect.TIMEOUT, pexpect.EOF):
            return
        self.raw += text
        self.stream.feed(self._as_a_terminal_reads(text))

    def _as_a_terminal_reads(self, text):
        """Without the moves by -1, which terminals ignore and the emulator takes for text."""
        text = self.unread + text
        begun = UNFINISHED.search(text)
        self.unread = text[begun.start() :] if begun else ""
        return NEGATIVE_MOVE.sub("", text[: len(text) - len(self.unread)])

    def text(self):
        """Everything shown so far, line by line, scrolled-off lines included."""
        columns = range(self.screen.columns)
        lines = [
            "".join(row[column].data for column in columns).rstrip()
            for row in self.screen.history.top
        ]
        return "\n".join(lines + [row.rstrip() for row in self.screen.display])

    def see(self, sight, times=1):
        """Waits until the text holds `sight` so many times."""
        end = time.monotonic() + PATIENCE
        while self.text().count(sight.rstrip()) < times:
            self._take()
            assert time.monotonic() < end, f"never saw {sight!r} x {times} in:\n{self.text()}"
        return self

    def until(self, condition, what):
        """Waits until `condition` holds."""
        end = time.monotonic() + PATIENCE
        while not condition():
            self._take()
            assert time.monotonic() < end, f"never came: {what}; in:\n{self.text()}"
        return self

    def settle(self, seconds):
        """Takes what comes for a while, for what must not come."""
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            self._take()

    def cursor_line(self):
        return self.screen.display[self.screen.cursor.y].rstrip()

    def keys(self, keys):
        self.child.send(keys)
        return self

    def command(self, line):
        """ENTER, the line, ENTER; waits for the prompt in between."""
        before = self.text().count("Cmd>")
        self.keys("\n").see("Cmd>", before + 1)
        return self.keys(line + "\n")

    def signal(self, number):
        self.child.kill(number)
        return self

    def ends_with(self):
        """The exit status, or minus the signal that ended it."""
        end = time.monotonic() + PATIENCE
        while self.child.isalive():
            self._take()
            assert time.monotonic() < end, f"does not end:\n{self.text()}"
        self._take()
        if self.child.signalstatus is not None:
            return -self.child.signalstatus
        return self.child.exitstatus


@pytest.fixture
def place(request):
    created = Place(request.config.getoption("--programs"))
    yield created
    created.close()
