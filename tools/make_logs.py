#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Makes the logs in examples/logs anew.

  drive.log    what the bench engine recorded while ventrik played drive.txt
  package.log  a package of engine state, and a track of positions behind it
  raw.log      a raw log of an engine: text, records, and what is to be left out of both

A drive takes as long as it takes, and no two are recorded alike to the millisecond; the other two
are the same each time. docs/file-formats.md tells the formats.
"""

import argparse
import os
import pathlib
import struct
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[1]
LOGS = ROOT / "examples" / "logs"

REQU_VEH_LOC_INFO_DETAILS, REQU_GET_SPELL, REQU_GET_SW_VERSION = 202, 302, 900
GPS_DATA, CMD_STATE_PACKAGE, CMD_PACKAGE_PIECE, CMD_PACKAGE_END = 9001, 9011, 9012, 9013
ON_CHANGE = 2  # how positions are to be told

# Longitude and latitude along the Danube, in hundred-thousandths of a degree.
TRACK = [
    (1210161, 4901513), (1224000, 4898000), (1242000, 4894000), (1257000, 4888000),
    (1275000, 4884000), (1296000, 4883000), (1313000, 4868000), (1343122, 4856650),
]


def message(number, *words):
    return struct.pack("<i", number) + struct.pack(f"<{len(words)}i", *words)


def text_message(number, text):
    data = text.encode()
    padded = data + b"\0" * (4 - len(data) % 4)
    return struct.pack("<iI", number, len(data)) + padded


def position(longitude, latitude):
    return message(GPS_DATA, 0, 0, 0, latitude, longitude)


def record(milliseconds, payload):
    return f"{milliseconds:08X}{len(payload):08X}{payload.hex().upper()}\n"


def with_nuls(milliseconds, payload):
    """The same as a raw log has it: short fields, filled with NUL bytes."""
    time = f"{milliseconds:X}".ljust(8, "\0")
    length = f"{len(payload):X}".ljust(8, "\0")
    return f"{time}{length}{payload.hex().upper()}\n".encode()


def package_log():
    pieces = [b"route 1 of 1\0\0\0\0", b"language English", b"volume 50\0\0\0"]
    records = [record(0, message(CMD_STATE_PACKAGE, len(pieces)))]
    for number, piece in enumerate(pieces, 1):
        records.append(record(100 * number, message(CMD_PACKAGE_PIECE, number) + piece))
    records.append(record(400, message(CMD_PACKAGE_END)))
    records.append(record(500, message(REQU_VEH_LOC_INFO_DETAILS, ON_CHANGE, 1)))
    for step, (longitude, latitude) in enumerate(TRACK):
        records.append(record(600 + 250 * step, position(longitude, latitude)))
    return "".join(records)


def raw_log():
    text, batch, other = b"\xE5" b"3", b"\xE5" b"4", b"\xE5" b"5"
    first = with_nuls(1200, message(REQU_GET_SW_VERSION))
    second = with_nuls(1500, text_message(REQU_GET_SPELL, "<GEOC>Germany<*><CTY>Pas<*>"))
    third = with_nuls(1900, position(*TRACK[-1]))
    return b"".join([
        text, b"00:01.180 session opened\r\n",
        batch, first,
        text, b"00:01.310 heap 41 %", b"\xE6" b"3" b"(seen by nobody)" b"\xE6" b"0", b"\r\n",
        other, b"\x01\x02\x03 of a channel that nobody reads",
        # A record that is interrupted by a text and by a stretch to leave out.
        batch, second[:30], text, b"00:01.505 spell\r\n", batch, second[30:40],
        b"\xE6" b"1" b"0A0B" b"\xE6" b"0", second[40:],
        # A corrupt one: a lower-case digit.
        b"00000640" b"00000004" b"8403000a\n",
        third,
        text, b"00:01.920 position 13.43122 48.56650\r\n",
    ])


def environment(folder):
    sockets = folder / "sockets"
    sockets.mkdir(mode=0o700)
    return dict(os.environ, XDG_RUNTIME_DIR=str(sockets))


def record_drive(programs, output):
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        surroundings = environment(folder)
        subprocess.run([ROOT / "tools/make_batch.sh", LOGS / "drive.txt", folder / "drive.batch"],
                       check=True)
        engine = subprocess.Popen(
            [programs / "kelmora-bench", "--record", output],
            env=surroundings, stdout=subprocess.PIPE, text=True,
        )
        try:
            if "serving" not in engine.stdout.readline():
                sys.exit("make_logs.py: the engine doesn't serve")
            subprocess.run(
                [programs / "ventrik"], input=b'\nbatch("drive.batch")\n', env=surroundings,
                cwd=folder, stdout=subprocess.DEVNULL, timeout=120, check=True,
            )
        finally:
            engine.terminate()
            engine.communicate()


def main():
    parser = argparse.ArgumentParser(description="Makes the logs in examples/logs anew.")
    parser.add_argument("--programs", type=pathlib.Path, default=ROOT / "build/release/bin",
                        help="the folder of ventrik and kelmora-bench (build/release/bin)")
    parser.add_argument("--output", type=pathlib.Path, default=LOGS,
                        help="where to write them (examples/logs)")
    options = parser.parse_args()
    for program in ("ventrik", "kelmora-bench"):
        if not (options.programs / program).is_file():
            parser.error(f"there is no {program} in {options.programs}")
    if not options.output.is_dir():
        parser.error(f"there is no folder {options.output}")
    output = options.output.resolve()
    record_drive(options.programs.resolve(), output / "drive.log")
    (output / "package.log").write_text(package_log(), newline="")
    (output / "raw.log").write_bytes(raw_log())


if __name__ == "__main__":
    main()
