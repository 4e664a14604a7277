# SPDX-License-Identifier: Apache-2.0
"""What a picture of weather has to show, reckoned from the images and the frame's colours."""

from weather_images import read_image, read_rect

WIDTH, HEIGHT = 640, 480
RAIN_ALPHA = 0.8
TOLERANCE = 2  # of 255, for each of the colours and alpha

# The frame's corners as red, green, blue and alpha; its edge is a hundredth of the picture inside.
LOWER_LEFT = (1, 0, 0, 0.75)
UPPER_LEFT = (0.1, 0.1, 0.1, 0.75)
LOWER_RIGHT = (0, 1, 0, 0.25)
UPPER_RIGHT = (0.1, 0.1, 0.1, 0.25)
OUTLINE = (255, 255, 25.5, 255)


class Weather:
    """All images of a folder, as colours over the earth."""

    def __init__(self, folder):
        self.images = [
            (read_image(path), read_rect(path.with_suffix(".logfile")))
            for path in (sorted(folder.rglob("*.bmp")) if folder else ())
        ]

    def colours_near(self, longitude, latitude, wide, high):
        """Those in a rectangle around a place."""
        return {self.colour(longitude + x * wide, latitude + y * high)
                for x in (-0.5, 0, 0.5) for y in (-0.5, 0, 0.5)}

    def colour(self, longitude, latitude):
        """Black where it doesn't rain, or no image tells."""
        for image, (west, south, east, north) in self.images:
            if west <= longitude < east and south <= latitude < north:
                x = int((longitude - west) / (east - west) * image.width)
                y = int((latitude - south) / (north - south) * image.height)
                return image.colour(x, y)
        return 0, 0, 0


def plane(corner, along_x, along_y, x, y):
    return [here + x * (right - here) + y * (up - here)
            for here, right, up in zip(corner, along_x, along_y)]


def frame(x, y):
    """Of the frame alone, in the middle of a pixel. Two triangles meet from the upper left corner to
    the lower right one."""
    across = ((x + 0.5) / WIDTH - 0.01) / 0.98
    up = ((HEIGHT - y - 0.5) / HEIGHT - 0.01) / 0.98
    if across + up <= 1:
        colour = plane(LOWER_LEFT, LOWER_RIGHT, UPPER_LEFT, across, up)
    else:
        colour = plane(UPPER_RIGHT, UPPER_LEFT, LOWER_RIGHT, 1 - across, 1 - up)
    return [255 * colour[3] * part for part in colour]


def expected(x, y, rain):
    beneath = frame(x, y)
    if rain == (0, 0, 0):
        return beneath
    own = (*rain, 255 * RAIN_ALPHA)
    return [RAIN_ALPHA * part + (1 - RAIN_ALPHA) * below for part, below in zip(own, beneath)]


def is_like(pixel, wanted):
    return all(abs(have - want) <= TOLERANCE for have, want in zip(pixel, wanted))


def compare(picture, weather, area):
    """Compares every fourth pixel each way within the outline, but for those in which two colours of
    an image meet. The numbers of pixels, with rain and without."""
    assert (picture.width, picture.height) == (WIDTH, HEIGHT)
    west, south, east, north = area
    wide, high = (east - west) / WIDTH, (north - south) / HEIGHT
    counts = {True: 0, False: 0}
    for y in range(16, HEIGHT - 16, 4):
        for x in range(16, WIDTH - 16, 4):
            place = west + (x + 0.5) * wide, north - (y + 0.5) * high
            rain, *others = weather.colours_near(*place, wide, high)
            if others:
                continue
            counts[rain != (0, 0, 0)] += 1
            wanted, have = expected(x, y, rain), picture.pixel(x, y)
            assert is_like(have, wanted), f"pixel {x} {y} is {have} and not {wanted}, with {rain}"
    return counts[True], counts[False]


def check_frame(picture):
    """The frame alone, and nothing outside it."""
    compare(picture, Weather(None), (0, 0, 1, 1))
    for x, y in ((6, 240), (633, 240), (320, 4), (320, 475)):
        assert is_like(picture.pixel(x, y), OUTLINE), (x, y, picture.pixel(x, y))
    for x, y in ((0, 0), (639, 0), (0, 479), (639, 479)):
        assert picture.pixel(x, y) == (0, 0, 0, 0), (x, y)
