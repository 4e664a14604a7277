# SPDX-License-Identifier: Apache-2.0
"""The system has no memory for what a line or a message needs: that one is dropped, with a word,
and the tester goes on."""

import json
import re
import resource

import pytest

from recovery import works_again

OUT_OF_MEMORY = "Error: Out of memory!"
SOFTWARE = "RESP_GET_SW_VERSION> swVersion:"


def used(process):
    """Bytes of address space."""
    with open(f"/proc/{process}/status") as file:
        (size,) = [line.split()[1] for line in file if line.startswith("VmSize:")]
    return int(size) * 1024


class NoMemory:
    """For a scope, a process gets no more address space than it has, or little more."""

    def __init__(self, process, more=0):
        self.process = process
        self.more = more

    def __enter__(self):
        self.before = resource.prlimit(self.process, resource.RLIMIT_AS)
        limit = used(self.process) + self.more
        resource.prlimit(self.process, resource.RLIMIT_AS, (limit, self.before[1]))

    def __exit__(self, *_):
        resource.prlimit(self.process, resource.RLIMIT_AS, self.before)


def test_init_without_the_memory_for_a_block_is_dropped(place):
    engine = place.engine()
    tester = place.tester().see("Press ENTER")
    with NoMemory(tester.child.pid):
        tester.command("init").see(OUT_OF_MEMORY)
        assert "creating listener thread" not in tester.text()
        tester.command("verd")
        tester.command('x="1"').see("Variable 'x' has new value '1'")
    works_again(place, tester, engine)


def test_line_that_grows_beyond_memory_is_dropped_and_what_it_was_to_change_is_kept(place):
    engine = place.engine()
    tester = place.tester().see("Press ENTER")
    double = 'varconcat("x","$$x$$")\n'
    place.batch("grow.batch", 'x="0123456789"\n' + double * 20 + 'y="2"\n')
    with NoMemory(tester.child.pid):
        tester.command('batch("grow.batch")').see("Variable 'y' has new value '2'")
    assert tester.text().count(OUT_OF_MEMORY) > 1
    tester.command('var("x")').see("Variable 'x' is '").settle(0.3)
    (value,) = re.findall(r"Variable 'x' is '([0-9\s]+)'", tester.text())
    value = re.sub(r"\s", "", value)
    assert value == "0123456789" * (len(value) // 10)
    assert (len(value) // 10).bit_count() == 1, "doubled each time, or not at all"
    works_again(place, tester, engine)


def test_line_of_a_file_that_is_too_long_for_memory_is_dropped_to_its_end(place):
    engine = place.engine()
    tester = place.tester().see("Press ENTER")
    place.batch("long.batch", "#" + "no command, " * 400_000 + '\nz="2"\n')
    with NoMemory(tester.child.pid, more=1 << 20):
        tester.command('batch("long.batch")').see(OUT_OF_MEMORY)
        tester.see("Variable 'z' has new value '2'")
    assert tester.text().count("Error:") == 1, "no part of it is run"
    works_again(place, tester, engine)


def answered_at_length(place, message, fields):
    """A rule that answers a question for the version with as much as a message holds, once, and
    late enough for a line that waits for it."""
    long = {"after_ms": 1000, "message": message, "fields": fields}
    rule = {"on": "REQU_GET_SW_VERSION", "times": 1, "instead": True, "send": [long]}
    (place.work / "long.json").write_text(json.dumps({"rules": [rule]}))
    return place.engine("--scenario=long.json")


ITEMS = ["<CTY>" + "x" * 90 + "<*>"] * 4500

LONG = {
    "text": ("RESP_GET_SW_VERSION", {"swVersion": "x" * 500000}),
    "list": ("RESP_GET_LIST", {"validState": 1, "resultCount": 4500, "itemList": ITEMS}),
}


@pytest.mark.parametrize("what", LONG)
def test_message_too_long_for_memory_is_dropped_and_the_next_one_shown(place, what):
    message, fields = LONG[what]
    engine = answered_at_length(place, message, fields)
    tester = place.tester().see("Press ENTER")
    with NoMemory(tester.child.pid, more=1 << 20):
        tester.command("init").see("initialized successfully")
        tester.command("vers")
        if what == "list":
            tester.command('waitresp("307")')
        tester.see(OUT_OF_MEMORY).command("verd").see("RESP_GET_DB_VERSION>")
        assert f"{message}>" not in tester.text()
    tester.command("vers").see(SOFTWARE)
    works_again(place, tester, engine)
