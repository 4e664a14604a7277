# SPDX-License-Identifier: Apache-2.0
"""What a server's death looks like to the tester, and the way back to work."""

import os
import signal

from conftest import PATIENCE

NO_SERVER = "ipc_connect() failed"  # nobody to connect to
NO_PROCESS = "IPC MsgSendv error(3): No such process"  # nobody at the other end any more
CHANGED = "The server is changed to navigation."


def killed(engine):
    engine.send_signal(signal.SIGKILL)
    assert engine.wait(timeout=PATIENCE) == -signal.SIGKILL


def stopped(engine):
    """Stands still, all of its threads, once this returns; SIGCONT lets it go on."""
    engine.send_signal(signal.SIGSTOP)
    _, status = os.waitpid(engine.pid, os.WUNTRACED)
    assert os.WIFSTOPPED(status), f"the engine is gone: {status}"


def back_to_work(place, tester, engine=None):
    """Names the server anew, a fresh one unless it is given, and has it answer a question."""
    engine = engine or place.engine()
    changed = tester.text().count(CHANGED)
    tester.command('server("navigation")').see(CHANGED, changed + 1)
    initialised = tester.text().count("initialized successfully")
    tester.command("init").see("initialized successfully", initialised + 1)
    tester.command('spell("<GEOC>Ger<*>")').see('RESP_GET_SPELL> inputEIS: "<GEOC>Ger<*>"')
    return engine


def end_in_order(place, tester, engine):
    """Both programs end with status 0 and leave no socket, also none of the killed ones."""
    tester.command("quit")
    assert tester.ends_with() == 0
    engine.terminate()
    assert engine.wait(timeout=PATIENCE) == 0
    assert place.sockets_left() == []


def works_again(place, tester, engine=None):
    end_in_order(place, tester, back_to_work(place, tester, engine))
