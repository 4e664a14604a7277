# SPDX-License-Identifier: Apache-2.0
"""Batch files, played by the real program without a terminal."""

import re
import struct
import subprocess

from conftest import PATIENCE

COLOUR = re.compile("\033\\[[01];3[1-7]m")


def play(place, name, **options):
    """What ventrik prints while it runs a batch file of the place that ends with quit."""
    result = subprocess.run(
        [place.programs / "ventrik"],
        input=f'\nbatch("{name}")\n'.encode(),
        capture_output=True,
        timeout=4 * PATIENCE,
        env=place.environment(),
        cwd=place.work,
        **options,
    )
    assert result.returncode == 0
    return result.stdout.decode()


def play_text(place, text, **options):
    place.batch("played.batch", text)
    return COLOUR.sub("", play(place, "played.batch", **options))


def recorded(path):
    """The messages of an engine's recording: each one's number and the bytes behind it."""
    messages = []
    for line in path.read_text().splitlines():
        message = bytes.fromhex(line[16:])
        assert len(message) == struct.unpack(">I", bytes.fromhex(line[8:16]))[0]
        messages.append((int.from_bytes(message[:4], "little"), message[4:]))
    return messages
