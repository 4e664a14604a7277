# SPDX-License-Identifier: Apache-2.0
"""Recordings played to the bench engine, and raw logs taken apart, by the real program."""

import importlib.util
import os
import pathlib
import shutil
import signal
import subprocess
import time

import pytest

from batch_play import play_text, recorded
from conftest import PATIENCE, Place
from recovery import stopped

ROOT = pathlib.Path(__file__).resolve().parents[2]
LOGS = ROOT / "examples" / "logs"

CANNOT_OPEN = "Error: Can not open file!\n"
EXTRACTED = "Extraction finished\n"
FINISHED = "Batchlog finished\n"
SKIPPED = "Warning: corrupt line at 0x116, skipped\n"


def load_make_logs():
    spec = importlib.util.spec_from_file_location("make_logs", ROOT / "tools" / "make_logs.py")
    module = importlib.util.module_from_spec(spec)
    spec.loader.exec_module(module)
    return module


make_logs = load_make_logs()


@pytest.fixture
def places(request):
    """As many as a test asks for."""
    made = []

    def make():
        made.append(Place(request.config.getoption("--programs")))
        return made[-1]

    yield make
    for place in made:
        place.close()


def with_logs(place):
    for log in LOGS.glob("*.log"):
        shutil.copy(log, place.work)
    return place


def times(path):
    return [int(line[:8], 16) for line in path.read_text().splitlines()]


def span(path):
    return times(path)[-1] - times(path)[0]


def behind(shown, line):
    """What is printed behind a line of the batch file."""
    return shown.split(f"Cmd> {line}\n", 1)[1]


# Replay.


def test_drive_is_the_same_at_the_other_side_at_any_speed(places):
    runs = []
    for speed in (1, 2, 100):
        place = with_logs(places())
        place.engine("--blank", "--record", "received.log")
        place.batch("replay.batch", f' batchlog("drive.log","{speed}")\nquit\n')
        process = subprocess.Popen(
            [place.programs / "ventrik"],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            env=place.environment(),
            cwd=place.work,
            text=True,
        )
        place.started.append(process)
        process.stdin.write('\nbatch("replay.batch")\n')
        process.stdin.close()
        process.stdin = None
        runs.append((place, process, speed))
    expected = recorded(LOGS / "drive.log")
    for place, process, speed in runs:
        shown, _ = process.communicate(timeout=4 * PATIENCE)
        received = place.work / "received.log"
        assert recorded(received) == expected
        assert FINISHED in shown
        assert shown.count("pos: 0x") == len(expected), "each is shown once"
        gaps = len(expected) - 1  # each delay is cut to milliseconds
        assert span(received) >= span(LOGS / "drive.log") / speed - gaps


def test_drive_replayed_to_an_engine_is_driven_again(place):
    with_logs(place).engine()
    shown = play_text(
        place, 'init\nwaitresp("1")\nbatchlog("drive.log")\nwaitresp("421")\nwait("1")\nquit\n'
    )
    assert 'rnew("' in shown and "RESP_NEW_TRIP> handles: 1" in shown
    assert "INFO_DESTINATION_REACHED> Dest: Passau" in shown


def test_package_is_sent_first_and_the_recording_when_the_engine_has_loaded_it(place):
    with_logs(place).engine("--record", "received.log")
    tester = place.tester(columns=200)
    tester.command("init").see("RESP_INIT")
    tester.command('batchlog("package.log","4")').see("Batchlog finished")
    text = tester.text()
    assert text.index("CMD_PACKAGE_PIECE(") < text.index("Package loaded!")
    assert text.index("Package loaded!") < text.index("GPS_DATA(")
    assert "Package loaded!" not in text.split("GPS_DATA(", 1)[1]
    tester.see("<GEO>13.43122 48.56650")
    sent = [message for message in recorded(LOGS / "package.log") if message[0] != 9013]
    assert recorded(place.work / "received.log") == [(0, b""), *sent]
    assert tester.command("quit").ends_with() == 0


def test_package_that_is_never_loaded_can_be_stopped(place):
    with_logs(place).engine("--blank", "--record", "received.log")
    tester = place.tester()
    tester.command('batchlog("package.log","1000")').see("CMD_PACKAGE_PIECE(", 3)
    tester.settle(1.5)  # the delay behind the package's end, and then the wait
    assert "Batchlog" not in tester.text()
    tester.command("stopbatchlog").see("Batchlog stopped")
    assert [number for number, _ in recorded(place.work / "received.log")] == [9011] + 3 * [9012]
    assert tester.command("quit").ends_with() == 0


def test_second_replay_takes_the_place_of_one_that_waits_for_the_engine(place):
    with_logs(place).engine("--blank", "--record", "received.log")
    (place.work / "one.log").write_text(make_logs.record(0, make_logs.message(900)))
    tester = place.tester()
    tester.command('batchlog("one.log")').see("Batchlog finished")
    tester.command('batchlog("package.log","1000")').see("CMD_PACKAGE_PIECE(", 3)
    tester.settle(1.5)
    # Both phases stay, so this one waits for a package as well, until it is stopped.
    tester.command('batchlog("one.log")').settle(0.5)
    assert tester.text().count("Batchlog") == 1
    tester.command("stopbatchlog").see("Batchlog stopped")
    tester.command('batchlog("one.log")').see("Batchlog finished", 2)
    assert tester.command("quit").ends_with() == 0


def test_typed_commands_get_through_beside_a_replay_and_quit_ends_it(place):
    (place.work / "slow.log").write_text(
        make_logs.record(0, make_logs.message(900)) + make_logs.record(3_600_000, b"\0\0\0\0")
    )
    place.engine("--blank", "--record", "received.log")
    tester = place.tester()
    tester.command('batchlog("slow.log")').see("delay 3600000 ms", 2)
    tester.command('x="1"').see("Variable 'x' has new value '1'.")
    tester.command("stopbatchlog").settle(0.3)
    assert "Batchlog" not in tester.text(), "it takes effect behind the delay"
    start = time.monotonic()
    assert tester.command("quit").ends_with() == 0
    assert time.monotonic() - start < 10
    assert recorded(place.work / "received.log") == [(900, b"")]


def test_replay_cancelled_in_a_send_leaves_no_lock_behind(place):
    (place.work / "one.log").write_text(make_logs.record(0, make_logs.message(900)))
    engine = place.engine("--blank")
    tester = place.tester()
    tester.command('batchlog("one.log")').see("Batchlog finished")
    stopped(engine)  # sends are not answered from here on
    tester.command('batchlog("one.log")').see("vers(", 2)
    tester.settle(0.3)
    tester.command('batchlog("nosuch.log")').see("Can not open file!")
    tester.command('x="1"').see("Variable 'x' has new value '1'.")
    engine.send_signal(signal.SIGCONT)
    tester.command('batchlog("one.log")').see("Batchlog finished", 2)
    assert tester.command("quit").ends_with() == 0


@pytest.mark.parametrize("name", ["folder", "missing.log", ""])
def test_what_is_no_file_cant_be_opened(place, name):
    (place.work / "folder").mkdir()
    line = f' batchlog("{name}")'
    shown = play_text(place, f"{line}\nquit\n")
    assert behind(shown, line) == f"{CANNOT_OPEN}Cmd> quit\n"


def test_odd_files_end_a_replay_with_its_words(place):
    os.mkfifo(place.work / "pipe")
    (place.work / "empty").write_bytes(b"")
    (place.work / "binary").write_bytes(bytes(range(256)) * 300)
    (place.work / "cut").write_text("00000000000000")
    (place.work / "large").write_text("0000000000002001" + 16386 * "0" + "\n")
    words = {
        "pipe": FINISHED,
        "empty": FINISHED,
        "binary": "GnLog to batchlog converter has missed something" + FINISHED,
        "cut": "GnLog to batchlog converter has missed something" + FINISHED,
        "large": "Error, can't read 2*8193 bytes, file must be corrupt or ventrik needs upgrade "
        "(at pos 0x10)" + FINISHED,
    }
    lines = {name: f' batchlog("{name}")' for name in words}
    shown = play_text(place, "".join(f"{line}\n" for line in lines.values()) + "quit\n")
    for name, expected in words.items():
        assert behind(shown, lines[name]).startswith(expected), name


# Extraction.


def test_gnlog_writes_both_channels_and_plays_the_records(place):
    with_logs(place).engine("--blank", "--record", "received.log")
    line = 'gnlog("raw.log")'
    shown = play_text(place, f"{line}\nquit\n")
    assert behind(shown, line).startswith(SKIPPED + 2 * EXTRACTED + "Cmd>")
    assert FINISHED in shown
    assert [number for number, _ in recorded(place.work / "received.log")] == [900, 302, 9001]
    assert b"Germany" in recorded(place.work / "received.log")[1][1]
    text = (place.work / "ext_dullog.txt").read_bytes()
    assert text == (
        b"00:01.180 session opened\r\n00:01.310 heap 41 %\r\n"
        b"00:01.505 spell\r\n00:01.920 position 13.43122 48.56650\r\n"
    )
    batch = (place.work / "ext_batch.log").read_bytes()
    assert batch.count(b"\n") == 3
    assert batch.startswith(b"4B0     4       84030000\n")


def test_each_extraction_writes_its_files(place):
    with_logs(place)
    shown = play_text(
        place,
        'gnext("raw.log","sound.log")\ngnext("raw.log","all.log","1")\n'
        'gntolog("raw.log","text.txt")\ngne("raw.log","both.txt")\nquit\n',
    )
    assert behind(shown, 'gnext("raw.log","sound.log")').startswith(SKIPPED + EXTRACTED)
    kept = SKIPPED.replace(", skipped", "")
    assert behind(shown, 'gnext("raw.log","all.log","1")').startswith(kept + EXTRACTED)
    assert behind(shown, 'gne("raw.log","both.txt")').startswith(SKIPPED + 3 * EXTRACTED)

    def lines(name):
        return (place.work / name).read_bytes().count(b"\n")

    assert lines("sound.log") == 3 and lines("all.log") == 4
    assert lines("text.txt") == 4 and lines("both.txt") == 8
    sound = (place.work / "sound.log").read_bytes()
    assert (place.work / "extracted_batch.log").read_bytes() == sound
    text = (place.work / "text.txt").read_bytes()
    assert (place.work / "extracted_dullog.txt").read_bytes() == text


def test_outputs_that_cant_be_written_are_passed_over_and_inputs_told(place):
    with_logs(place)
    (place.work / "folder").mkdir()
    before = sorted(path.name for path in place.work.iterdir())
    shown = play_text(
        place,
        'gntolog("raw.log","folder")\ngntolog("raw.log","nosuch/out")\n'
        'gntolog("raw.log","/dev/full")\ngntolog("folder","out")\ngnlog("folder")\n'
        'gnlog("missing.log")\nquit\n',
    )
    for output in ("folder", "nosuch/out", "/dev/full"):
        assert behind(shown, f'gntolog("raw.log","{output}")').startswith(EXTRACTED + "Cmd>")
    assert behind(shown, 'gntolog("folder","out")').startswith(CANNOT_OPEN + EXTRACTED)
    assert behind(shown, 'gnlog("folder")').startswith(CANNOT_OPEN + "Cmd>")
    assert behind(shown, 'gnlog("missing.log")').startswith(CANNOT_OPEN + "Cmd>")
    names = sorted(path.name for path in place.work.iterdir())
    assert [name for name in names if name not in before] == ["played.batch", "qhistory.txt"]


# The example logs.


def test_logs_can_be_made_anew(place):
    made = place.work / "made"
    made.mkdir()
    subprocess.run(
        [ROOT / "tools/make_logs.py", "--programs", place.programs, "--output", made],
        check=True,
        timeout=4 * PATIENCE,
    )
    for name in ("package.log", "raw.log"):
        assert (made / name).read_bytes() == (LOGS / name).read_bytes(), name

    def typed(path):  # beside the automatic replies, whose moments are the engine's
        return [message for message in recorded(path) if message[0] not in (306, 501)]

    assert typed(made / "drive.log") == typed(LOGS / "drive.log")


def test_worked_example_of_the_formats_is_a_record_of_the_package_log(place):
    text = (ROOT / "docs" / "file-formats.md").read_text()
    last = (LOGS / "package.log").read_text().splitlines()[-1]
    assert f"    {last} LF\n" in text
    with_logs(place).engine()
    shown = play_text(
        place, 'init\nbatchlog("package.log","10")\nwaitresp("9014")\nwait("2")\nquit\n'
    )
    line = next(line for line in shown.splitlines() if "+13.43122 +48.56650" in line)
    assert line.rstrip() in text


@pytest.mark.parametrize("arguments", [["--programs", "/nosuch"], ["--output", "/nosuch"], ["x"]])
def test_wrong_arguments_of_the_maker_of_logs_are_told(place, arguments):
    given = arguments if "--programs" in arguments else ["--programs", place.programs, *arguments]
    result = subprocess.run([ROOT / "tools/make_logs.py", *given], capture_output=True, text=True)
    assert result.returncode == 2
    assert result.stderr.startswith("usage: ")
