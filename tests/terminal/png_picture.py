# SPDX-License-Identifier: Apache-2.0
"""PNG files of red, green, blue and alpha, a byte each, read without the library that wrote them."""

import dataclasses
import struct
import zlib

PIXEL = 4  # bytes


@dataclasses.dataclass
class Picture:
    width: int
    height: int
    pixels: bytes  # the first row is the upper edge

    def pixel(self, x, y):
        at = PIXEL * (y * self.width + x)
        return tuple(self.pixels[at:at + PIXEL])


def chunks(data):
    assert data[:8] == b"\x89PNG\r\n\x1a\n"
    at = 8
    while at < len(data):
        length, kind = struct.unpack_from(">I4s", data, at)
        content = data[at + 8:at + 8 + length]
        (check,) = struct.unpack_from(">I", data, at + 8 + length)
        assert check == zlib.crc32(kind + content)
        yield kind, content
        at += 12 + length
    assert kind == b"IEND"


def nearest(left, above, corner):
    guess = left + above - corner
    distances = abs(guess - left), abs(guess - above), abs(guess - corner)
    return (left, above, corner)[distances.index(min(distances))]


def without_filter(kind, row, above):
    """A row as it was before it was written as the difference to its neighbours."""
    if kind == 2:
        return bytearray((byte + up) & 255 for byte, up in zip(row, above))
    row = bytearray(row)
    for at in range(len(row) if kind else 0):
        left, corner = (row[at - PIXEL], above[at - PIXEL]) if at >= PIXEL else (0, 0)
        added = {1: left, 3: (left + above[at]) // 2}.get(kind)
        row[at] = (row[at] + (nearest(left, above[at], corner) if added is None else added)) & 255
    return row


def read_picture(path):
    parts = list(chunks(path.read_bytes()))
    width, height, *form = struct.unpack(">IIBBBBB", parts[0][1])
    assert parts[0][0] == b"IHDR"
    assert form == [8, 6, 0, 0, 0], "8 bits, RGBA, not interlaced"
    data = zlib.decompress(b"".join(content for kind, content in parts if kind == b"IDAT"))
    stride = PIXEL * width
    assert len(data) == height * (1 + stride)
    rows, above = [], bytearray(stride)
    for start in range(0, len(data), 1 + stride):
        assert data[start] <= 4
        above = without_filter(data[start], data[start + 1:start + 1 + stride], above)
        rows.append(bytes(above))
    return Picture(width, height, b"".join(rows))
