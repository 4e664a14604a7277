# SPDX-License-Identifier: Apache-2.0
"""ventrik and a bench engine with weather between them, and what they leave in shared memory."""

import fcntl
import os
import pathlib
import re
import shutil
import tempfile
import time

from conftest import PATIENCE
from png_picture import read_picture

ROOT = pathlib.Path(__file__).resolve().parents[2]
SHARED = pathlib.Path("/dev/shm")

# Standard error to a file of its own. Without a display ventrik draws with what the machine has.
WRAPPER = """#!/bin/sh
unset DISPLAY WAYLAND_DISPLAY EGL_PLATFORM
exec '{program}' 2>>errors.log
"""


class SharedMemory:
    """For one test at a time, as all testers count their surfaces from 0."""

    def __init__(self):
        path = pathlib.Path(tempfile.gettempdir()) / f"ventrik-overlay-tests-{os.getuid()}.lock"
        self.lock = path.open("w")
        fcntl.flock(self.lock, fcntl.LOCK_EX)

    def without_screen(self):
        """Whether no server shares its screen; what a killed one has left is removed."""
        screen = SHARED / "TORVALE_GLES2"
        try:
            with screen.open("rb") as file:
                fcntl.flock(file, fcntl.LOCK_EX | fcntl.LOCK_NB)
                screen.unlink()
        except FileNotFoundError:
            return True
        except BlockingIOError:
            return False
        return True

    def close(self):
        self.lock.close()


class Session:
    def __init__(self, place, engine_options=(), resources=None, keeps_pictures=True):
        self.place = place
        self.overlays = place.work / "overlays"
        self.overlays.mkdir()
        self.record = place.work / "record.log"
        if resources:
            shutil.copytree(resources, place.work / "resources")
        wrapper = place.work / "ventrik.sh"
        wrapper.write_text(WRAPPER.format(program=place.programs / "ventrik"))
        wrapper.chmod(0o755)
        (place.work / "errors.log").write_text("")
        keeping = ["--overlay-dir", str(self.overlays)] if keeps_pictures else []
        self.engine = place.engine("--record", str(self.record), *keeping, *engine_options)
        self.tester = place.tester(program=str(wrapper))
        self.tester.see("Press ENTER")
        self.command("init").see("initialized successfully")

    def command(self, line):
        return self.tester.command(line)

    def errors(self):
        return (self.place.work / "errors.log").read_text()

    def until(self, condition, what, patience=PATIENCE):
        """Waits until `condition` holds, and goes on reading what ventrik says meanwhile."""
        end = time.monotonic() + patience
        while not condition():
            self.tester.settle(0.02)
            assert time.monotonic() < end, f"never came: {what}; in:\n{self.errors()[-4000:]}"
        return self

    def see_error(self, text, times=1, **more):
        return self.until(lambda: self.errors().count(text) >= times, f"{text!r} x {times}", **more)

    def surfaces(self):
        """The surfaces that ventrik has made and that are still shared."""
        made = re.findall("^new SID = (.*)$", self.errors(), re.MULTILINE)
        return [sid for sid in made if (SHARED / sid).exists()]

    def remove_surfaces(self):
        for sid in self.surfaces():
            (SHARED / sid).unlink(missing_ok=True)

    def see_picture(self, sid):
        """Waits until the engine has taken a surface, which it then uses for five seconds."""
        path = self.overlays / f"{sid}.png"
        self.until(path.exists, path.name)
        return path

    def picture(self, sid):
        """What the engine has kept of a surface."""
        return read_picture(self.see_picture(sid))

    def quit(self):
        """Ends both programs, so that the engine has removed what it shared and took over."""
        self.command("quit")
        status = self.tester.ends_with()
        assert status == 0, self.errors()[-4000:]
        self.engine.terminate()
        assert self.engine.wait(PATIENCE) == 0
