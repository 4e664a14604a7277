# SPDX-License-Identifier: Apache-2.0
"""Shared objects have one name space for the whole machine. Tests that run beside each other each
get their own: a /dev/shm that only their process and its children see."""

import ctypes
import os

NEW_MOUNTS = 0x20000  # as unshare(2) and mount(2) take them
RECURSIVE_PRIVATE = 0x4000 | 0x40000

libc = ctypes.CDLL(None, use_errno=True)


def _checked(result):
    if result != 0:
        error = ctypes.get_errno()
        raise OSError(error, os.strerror(error))


def take_own_shared_memory():
    """For the calling process, for good. Raises OSError for whoever may not mount."""
    _checked(libc.unshare(NEW_MOUNTS))
    _checked(libc.mount(b"none", b"/", None, RECURSIVE_PRIVATE, None))
    _checked(libc.mount(b"tmpfs", b"/dev/shm", b"tmpfs", 0, b"mode=1777"))


def trouble_with_own_shared_memory():
    """What a process that takes its own is told by the system, or None if it may."""
    child = os.fork()
    if child == 0:
        try:
            take_own_shared_memory()
            os._exit(0)
        except OSError as error:
            os._exit(error.errno)
    error = os.waitstatus_to_exitcode(os.waitpid(child, 0)[1])
    return os.strerror(error) if error else None
