# SPDX-License-Identifier: Apache-2.0
"""A thread of a running program, halted where a test wants it: before or behind a message.

Between the two messages of a send lie microseconds. Something that must happen just then happens
while the thread stands still; nothing else of the program does. Linux, by ptrace.
"""

import ctypes
import os
import platform
import signal
import time

from conftest import PATIENCE

MACHINE = platform.machine()
SENDS = {"x86_64": (44, 46), "aarch64": (206, 211)}.get(MACHINE, ())  # sendto and sendmsg
SLEEP = {"x86_64": 230, "aarch64": 115}.get(MACHINE)
WALL = 0x40000000  # waits for threads as for processes

SEIZE, INTERRUPT, SYSCALL, DETACH, GET_SYSCALL_INFO = 0x4206, 0x4207, 24, 17, 0x420E
TRACE_SYSCALLS = 1  # marks the stops at system calls by a bit of their signal
AT_SYSCALL = signal.SIGTRAP | 0x80
ENTRY, EXIT = 1, 2

libc = ctypes.CDLL(None, use_errno=True)
libc.ptrace.argtypes = [ctypes.c_long, ctypes.c_long, ctypes.c_void_p, ctypes.c_void_p]
libc.ptrace.restype = ctypes.c_long


class SyscallInfo(ctypes.Structure):
    _fields_ = [
        ("op", ctypes.c_uint8),
        ("padding", ctypes.c_uint8 * 3),
        ("arch", ctypes.c_uint32),
        ("instruction", ctypes.c_uint64),
        ("stack", ctypes.c_uint64),
        ("number", ctypes.c_uint64),  # at an entry
        ("arguments", ctypes.c_uint64 * 6),
        ("more", ctypes.c_uint64),
    ]


def threads(process):
    return {int(name) for name in os.listdir(f"/proc/{process}/task")}


class Halted:
    """Stands still from the beginning; goes on when it is told how far, or let go."""

    def __init__(self, thread):
        self.thread = thread
        self._ask(SEIZE, data=TRACE_SYSCALLS)
        self._ask(INTERRUPT)
        self._wait()
        self.is_held = True

    def run_to_message(self, number):
        """To just before the thread sends the message of that number, counted from here, from 1."""
        for _ in range(number):
            self._run_to(ENTRY, SENDS)
        return self

    def run_to_sleep(self):
        """To where it begins to sleep: never in the middle of a send."""
        self._run_to(ENTRY, (SLEEP,))
        return self

    def finish_message(self):
        """To just behind the call that sends the message it stands before."""
        self._run_to(EXIT)
        return self

    def let_go(self):
        if self.is_held:
            self._detach()
        self.is_held = False

    def _detach(self):
        """Also from a thread that runs or has ended, where a test has failed: while it is held, not
        even the end of its program can be waited for."""
        try:
            self._ask(DETACH)
        except OSError:
            if libc.ptrace(INTERRUPT, self.thread, 0, 0) == 0:
                self._wait()
                self._ask(DETACH)
            else:
                os.waitpid(self.thread, WALL | os.WNOHANG)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.let_go()

    def _ask(self, request, address=0, data=0):
        if libc.ptrace(request, self.thread, address, data) == -1:
            error = ctypes.get_errno()
            raise OSError(error, os.strerror(error))

    def _wait(self):
        """Until the thread stops; gives the signal of the stop."""
        end = time.monotonic() + PATIENCE
        while True:
            stopped, status = os.waitpid(self.thread, WALL | os.WNOHANG)
            if stopped:
                assert os.WIFSTOPPED(status), f"the thread is gone: {status}"
                return status
            assert time.monotonic() < end, "the thread never stops"
            time.sleep(0.0005)

    def _run_to(self, end_of_call, numbers=()):
        passed_on = 0
        while True:
            self._ask(SYSCALL, data=passed_on)
            status = self._wait()
            passed_on = 0
            if os.WSTOPSIG(status) == AT_SYSCALL:
                info = SyscallInfo()
                self._ask(GET_SYSCALL_INFO, ctypes.sizeof(info), ctypes.addressof(info))
                if info.op == end_of_call and (not numbers or info.number in numbers):
                    return
            elif status >> 16 == 0:
                passed_on = os.WSTOPSIG(status)
