# SPDX-License-Identifier: Apache-2.0
"""The weather images of the examples, and the tool that makes them."""

import pathlib
import re
import subprocess

import pytest

from weather_images import read_image, read_rect

ROOT = pathlib.Path(__file__).resolve().parents[2]
TOOL = ROOT / "tools/make_weather.py"
RAIN = ROOT / "examples/resources/rain"
IMAGES = sorted(RAIN.glob("*.bmp"))
BERLIN = (13.41053, 52.52437)  # where the bench engine's vehicle stands


def run(*arguments):
    return subprocess.run(
        ["/usr/bin/python3", TOOL, *map(str, arguments)], capture_output=True, text=True, timeout=120
    )


def made(folder, *options):
    result = run(folder, *options)
    assert (result.returncode, result.stderr) == (0, "")
    return {path.name: path.read_bytes() for path in sorted(folder.iterdir())}


# What is shipped.


def test_there_is_one_set_of_pairs_and_it_is_small():
    folders = [path for path in (ROOT / "examples/resources").rglob("*") if path.is_dir()]
    assert folders == [RAIN], "only the first set that the system lists would ever be drawn"
    assert [path.stem for path in IMAGES] == ["rain_a", "rain_b"]
    files = sorted(RAIN.iterdir())
    assert files == sorted(path.with_suffix(end) for path in IMAGES for end in (".bmp", ".logfile"))
    assert sum(path.stat().st_size for path in files) < 300_000


@pytest.mark.parametrize("path", IMAGES, ids=lambda path: path.stem)
def test_header_and_runs_fit_each_other(path):
    image = read_image(path)
    colours = len(image.palette)
    assert image.header == {
        "type": b"BM", "fileSize": image.file_size, "reserved1": 0, "reserved2": 0,
        "dataOffset": 54 + 4 * colours, "headerSize": 40, "width": 400, "height": 300, "planes": 1,
        "bitCount": 8, "compression": 1, "imageSize": image.file_size - 54 - 4 * colours,
        "xResolution": 2835, "yResolution": 2835, "coloursUsed": colours, "coloursImportant": 0,
    }
    assert len(image.lines) == 300
    for line in image.lines:
        assert sum(length for length, _ in line) == 400
        assert all(index < colours for _, index in line)


@pytest.mark.parametrize("path", IMAGES, ids=lambda path: path.stem)
def test_it_rains_in_part_and_in_every_strength(path):
    image = read_image(path)
    assert image.palette[0] == (0, 0, 0), "what isn't drawn"
    assert len(set(image.palette)) == len(image.palette)
    pixels = [sum(line.count(index) for line in image.pixels) for index in range(len(image.palette))]
    assert all(pixels)
    assert 0.3 < pixels[0] / (400 * 300) < 0.8


def test_they_lie_side_by_side_and_it_rains_where_the_vehicle_stands():
    rects = [read_rect(path.with_suffix(".logfile")) for path in IMAGES]
    assert rects == [(11.0, 51.4, 13.4, 53.6), (13.4, 51.4, 15.8, 53.6)]
    west, south, east, north = rects[1]
    image = read_image(IMAGES[1])
    x = int((BERLIN[0] - west) / (east - west) * image.width)
    y = int((BERLIN[1] - south) / (north - south) * image.height)
    assert image.colour(x, y) == (255, 112, 32)


def test_the_picture_goes_on_from_one_to_the_next():
    west, east = (read_image(path) for path in IMAGES)
    same = sum(west.colour(399, y) == east.colour(0, y) for y in range(300))
    assert same > 200


def test_the_tool_makes_what_is_shipped(tmp_path):
    shipped = {path.name: path.read_bytes() for path in RAIN.iterdir()}
    assert made(tmp_path / "new" / "folder") == shipped


def test_the_worked_example_of_the_manual_is_what_it_says(tmp_path):
    text = (ROOT / "docs/file-formats.md").read_text()
    example = re.search(r"A picture of 3 by 2 pixels.*?\n\n(.*?)\n\n", text, re.DOTALL)[1]
    codes = "".join(re.match(r" {4}((?:[0-9A-F]{2} +)+)", line)[1] for line in example.splitlines())
    (tmp_path / "example.bmp").write_bytes(bytes.fromhex(codes))
    image = read_image(tmp_path / "example.bmp")
    assert (image.width, image.height) == (3, 2)
    black, red, blue = (0, 0, 0), (255, 0, 0), (0, 0, 255)
    south, north = ([image.colour(x, y) for x in range(3)] for y in range(2))
    assert (north, south) == ([blue, blue, blue], [black, black, red])
    header = image.header
    assert (header["fileSize"], header["dataOffset"]) == (image.file_size, 66)
    assert header["imageSize"] == image.file_size - 66


# The tool's options.


def test_another_seed_is_other_weather_in_the_same_place(tmp_path):
    first, again, other = (
        made(tmp_path / name, "--seed", seed) for name, seed in (("a", 1), ("b", 1), ("c", 2))
    )
    assert first == again
    assert first.keys() == other.keys()
    assert all(first[name] != other[name] for name in first if name.endswith(".bmp"))
    assert read_rect(tmp_path / "a/rain_a.logfile") == read_rect(tmp_path / "c/rain_a.logfile")


def test_long_lines_are_several_runs(tmp_path):
    made(tmp_path, "--images", 1, "--size", 2000, 2)
    lengths = [sum(length for length, _ in line) for line in read_image(tmp_path / "rain_a.bmp").lines]
    assert lengths == [2000, 2000]


def test_the_smallest_and_the_most_images(tmp_path):
    names = made(tmp_path, "--images", 9, "--size", 1, 1, "--area", -180, -90, 180, 90)
    assert len(names) == 18
    for number, letter in enumerate("abcdefghi"):
        image = read_image(tmp_path / f"rain_{letter}.bmp")
        assert (image.width, image.height, len(image.lines)) == (1, 1, 1)
        rect = read_rect(tmp_path / f"rain_{letter}.logfile")
        assert rect == (-180.0 + 40 * number, -90.0, -140.0 + 40 * number, 90.0)


@pytest.mark.parametrize(
    "options, error",
    [
        (["--area", 12, 50, 11, 51], "--area: longitudes"),
        (["--area", -181, 50, 11, 51], "--area: longitudes"),
        (["--area", 11, 50, "nan", 51], "--area: longitudes"),
        (["--area", 11, 51, 12, 51], "--area: latitudes"),
        (["--area", 11, 50, 12, 91], "--area: latitudes"),
        (["--area", 11, 50, 12], "expected 4 arguments"),
        (["--size", 0, 5], "--size: 1 to 2000"),
        (["--size", 5, 2001], "--size: 1 to 2000"),
        (["--size", 5, "x"], "invalid int value"),
        (["--images", 0], "--images: 1 to 9"),
        (["--images", 10], "--images: 1 to 9"),
        (["--seed", -1], "--seed: 0 or more"),
        (["--seed", "x"], "invalid int value"),
        (["--none"], "unrecognized arguments"),
    ],
)
def test_wrong_options_are_told_and_nothing_is_written(tmp_path, options, error):
    result = run(tmp_path / "new", *options)
    assert (result.returncode, result.stdout) == (2, "")
    assert "usage: make_weather.py" in result.stderr and error in result.stderr
    assert not (tmp_path / "new").exists()


def test_no_folder_is_an_error():
    assert run().returncode == 2


def test_help_tells_the_options():
    result = run("--help")
    assert result.returncode == 0
    for option in ("--seed", "--images", "--size", "--area"):
        assert option in result.stdout


def test_a_folder_that_cannot_be_made_is_told(tmp_path):
    (tmp_path / "file").write_text("")
    result = run(tmp_path / "file" / "folder")
    assert result.returncode == 1
    assert result.stderr.startswith("make_weather.py: ") and "Not a directory" in result.stderr
