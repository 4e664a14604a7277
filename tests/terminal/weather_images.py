# SPDX-License-Identifier: Apache-2.0
"""Weather images, read by the rules of their two files and by nothing that the program has."""

import dataclasses
import functools
import re
import struct

KEYS = ("Upper latitude", "Left longitude", "Lower latitude", "Right longitude")


@dataclasses.dataclass
class Image:
    header: dict
    palette: list  # red, green, blue
    lines: list  # from south to north; pairs of length and palette index
    file_size: int

    @property
    def width(self):
        return self.header["width"]

    @property
    def height(self):
        return self.header["height"]

    def colour(self, x, y):
        """Of the pixel in column x of line y, counted from the south."""
        return self.palette[self.pixels[y][x]]

    @functools.cached_property
    def pixels(self):
        return [bytes(index for length, index in line for _ in range(length)) for line in self.lines]


def read_image(path):
    """The image in a BMP file of nothing but runs, ends of lines and one end of bitmap, its last code."""
    data = path.read_bytes()
    names = ("type", "fileSize", "reserved1", "reserved2", "dataOffset", "headerSize", "width", "height",
             "planes", "bitCount", "compression", "imageSize", "xResolution", "yResolution",
             "coloursUsed", "coloursImportant")
    header = dict(zip(names, struct.unpack_from("<2sIHHIIiiHHIIiiII", data)))
    entries = [data[54 + 4 * number:58 + 4 * number] for number in range(header["coloursUsed"])]
    palette = [(red, green, blue) for blue, green, red, _ in entries]
    codes = data[54 + 4 * len(palette):]
    assert len(codes) % 2 == 0
    lines, line, ended = [], [], False
    for first, second in zip(codes[::2], codes[1::2]):
        assert not ended, "something behind the end of the bitmap"
        if first:
            line.append((first, second))
        elif second == 0:
            lines.append(line)
            line = []
        else:
            assert second == 1, f"code 0 {second}"
            ended = True
    assert ended and not line
    return Image(header, palette, lines, len(data))


def read_rect(path):
    """West, south, east and north in degrees, out of the text file."""
    text = path.read_text(encoding="ascii")
    found = {key: re.findall(rf"^\t{key}: (-?\d+\.\d+)$", text, re.MULTILINE) for key in KEYS}
    assert all(len(values) == 1 for values in found.values()), text
    north, west, south, east = (float(found[key][0]) for key in KEYS)
    return west, south, east, north
