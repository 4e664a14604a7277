#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Makes weather images, as ventrik draws them over a map: pictures of rain that lie side by side.

Each image is two files: a BMP file of runs, and a text file that says where on the earth it lies.
Without options they are those in examples/resources/rain, around the place where the bench engine's
vehicle stands at first.

The same options give the same bytes on any machine: all numbers come from one seeded generator, and
only such operations are done on them as every processor rounds alike.
"""

import argparse
import pathlib
import random
import struct
import sys

AREA = (11.0, 51.4, 15.8, 53.6)  # degrees: west, south, east, north
SEED = 7
NAMES = "abcdefghi"  # of images from west to east

# From drizzle to hail, as red, green, blue; each from a share of the greatest strength on. Index 0 of the
# palette is black, which is not drawn.
LEVELS = [
    (0.30, (152, 251, 152)),
    (0.36, (96, 224, 96)),
    (0.42, (32, 184, 48)),
    (0.49, (16, 136, 40)),
    (0.56, (250, 240, 70)),
    (0.63, (255, 184, 40)),
    (0.70, (255, 112, 32)),
    (0.77, (224, 32, 32)),
    (0.84, (176, 24, 152)),
]
PALETTE = [(0, 0, 0)] + [colour for _, colour in LEVELS]

LONGEST_RUN = 255  # pixels
HEADERS = 14 + 40  # bytes
PIXELS_PER_METRE = 2835
LARGEST = 2000  # pixels of a side
MOST_IMAGES = len(NAMES)


class Failure(Exception):
    """What went wrong, in words for the person who runs the tool."""


# Noise: smooth hills of random height, in several sizes.


class Noise:
    """Heights from 0 to 1 over the plane, about one hill to each unit."""

    def __init__(self, generator, columns, rows):
        self.heights = [[generator.random() for _ in range(columns + 2)] for _ in range(rows + 2)]

    def row(self, y, xs):
        """The heights along one line."""
        lower, upper = self.heights[int(y)], self.heights[int(y) + 1]
        part = ease(y - int(y))
        blended = [low + (high - low) * part for low, high in zip(lower, upper)]
        for x in xs:
            left = int(x)
            yield blended[left] + (blended[left + 1] - blended[left]) * ease(x - left)


def ease(part):
    return part * part * (3 - 2 * part)


class Rain:
    """How strong it rains, from 0 to 1, in a frame that is `width` units wide and `height` high.

    A winding front lies across it from the south-west to the north-east through the middle, with
    showers around it.
    """

    SIZES = ((6, 0.44), (13, 0.28), (29, 0.16), (67, 0.09), (151, 0.03))  # hills a side; weight
    BENDS = 4  # of the front

    def __init__(self, seed):
        generator = random.Random(seed)
        self.layers = [(hills, weight, Noise(generator, 2 * hills, hills))
                       for hills, weight in self.SIZES]
        self.bends = Noise(generator, 2 * self.BENDS, self.BENDS)

    def row(self, v, us):
        """Along one line: v from 0 at the southern edge to 1, each u from 0 at the western edge to 1."""
        strengths = [0.0] * len(us)
        for hills, weight, noise in self.layers:
            heights = noise.row(v * hills, (2 * u * hills for u in us))
            strengths = [sum_ + weight * height for sum_, height in zip(strengths, heights)]
        bends = self.bends.row(v * self.BENDS, (2 * u * self.BENDS for u in us))
        return [1.6 * (strength - 0.36) + front(u, v, bend)
                for u, strength, bend in zip(us, strengths, bends)]


def front(u, v, bend):
    """The more, the nearer to the front."""
    away = (u - 0.5) - 0.35 * (v - 0.5) + 0.2 * (bend - 0.5)
    near = 1 - away * away / (0.12 * 0.12)
    return 0.3 * near if near > 0 else 0.0


def level(strength):
    """The palette's index for a strength."""
    index = 0
    while index < len(LEVELS) and strength >= LEVELS[index][0]:
        index += 1
    return index


# Files.


def runs(line):
    """A line of palette indices as pairs of a length and an index, none longer than a byte can say."""
    start = 0
    while start < len(line):
        end = start + 1
        while end < len(line) and line[end] == line[start] and end - start < LONGEST_RUN:
            end += 1
        yield end - start, line[start]
        start = end


def encode(lines):
    """The bytes of the picture: each line's runs, an end of line, and an end of bitmap at last."""
    data = bytearray()
    for line in lines:
        for length, index in runs(line):
            data += bytes((length, index))
        data += b"\0\0"
    return bytes(data + b"\0\1")


def bmp(width, height, data):
    palette = b"".join(struct.pack("4B", blue, green, red, 0) for red, green, blue in PALETTE)
    offset = HEADERS + len(palette)
    return (
        struct.pack("<2sIHHI", b"BM", offset + len(data), 0, 0, offset)
        + struct.pack("<IiiHHIIiiII", 40, width, height, 1, 8, 1, len(data), PIXELS_PER_METRE,
                      PIXELS_PER_METRE, len(PALETTE), 0)
        + palette
        + data
    )


def log(name, width, height, rect, size):
    """What a converter would tell of its work; the four lines behind a tab are what counts."""
    west, south, east, north = rect
    return (
        f"Converting radar picture {name}\n"
        f"Width: {width}, height: {height}, colours: {len(PALETTE)}\n"
        "Area:\n"
        f"\tUpper latitude: {north:.5f}\n"
        f"\tLeft longitude: {west:.5f}\n"
        f"\tLower latitude: {south:.5f}\n"
        f"\tRight longitude: {east:.5f}\n"
        f"Written: {name}.bmp, {size} bytes\n"
        "Done, no warnings\n"
    )


def make(arguments):
    """The files of all images: name and bytes of each."""
    west, south, east, north = arguments.area
    width, height = arguments.size
    rain = Rain(arguments.seed)
    step = (east - west) / arguments.images
    for number in range(arguments.images):
        us = [(number + (x + 0.5) / width) / arguments.images for x in range(width)]
        lines = ([level(strength) for strength in rain.row((y + 0.5) / height, us)]
                 for y in range(height))
        picture = bmp(width, height, encode(lines))
        rect = (west + number * step, south, west + (number + 1) * step, north)
        name = f"rain_{NAMES[number]}"
        yield f"{name}.bmp", picture
        yield f"{name}.logfile", log(name, width, height, rect, len(picture)).encode()


def check(arguments):
    west, south, east, north = arguments.area
    if not -180 <= west < east <= 180:
        raise Failure("--area: longitudes go from -180 to 180, the western one first")
    if not -90 <= south < north <= 90:
        raise Failure("--area: latitudes go from -90 to 90, the southern one first")
    if not all(1 <= side <= LARGEST for side in arguments.size):
        raise Failure(f"--size: 1 to {LARGEST} pixels")
    if not 1 <= arguments.images <= MOST_IMAGES:
        raise Failure(f"--images: 1 to {MOST_IMAGES}")
    if arguments.seed < 0:
        raise Failure("--seed: 0 or more")


def main():
    parser = argparse.ArgumentParser(
        description="Makes weather images: pairs of a BMP file and a text file with its place."
    )
    parser.add_argument("folder", type=pathlib.Path,
                        help="where they are written; below a directory \"resources\" ventrik finds them")
    parser.add_argument("--seed", type=int, default=SEED, metavar="N",
                        help="another number is other weather (default: %(default)s)")
    parser.add_argument("--images", type=int, default=2, metavar="N",
                        help=f"how many, 1 to {MOST_IMAGES}, side by side (default: %(default)s)")
    parser.add_argument("--size", type=int, nargs=2, default=(400, 300),
                        metavar=("WIDTH", "HEIGHT"),
                        help="of each image, in pixels (default: 400 300)")
    parser.add_argument("--area", type=float, nargs=4, default=AREA,
                        metavar=("WEST", "SOUTH", "EAST", "NORTH"),
                        help="of all images together, in degrees (default: %s %s %s %s)" % AREA)
    arguments = parser.parse_args()
    try:
        check(arguments)
    except Failure as failure:
        parser.error(str(failure))
    try:
        arguments.folder.mkdir(parents=True, exist_ok=True)
        for name, data in make(arguments):
            (arguments.folder / name).write_bytes(data)
            print(f"{arguments.folder / name}: {len(data)} bytes")
    except OSError as error:
        print(f"make_weather.py: {error}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
