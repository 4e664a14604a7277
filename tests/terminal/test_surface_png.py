# SPDX-License-Identifier: Apache-2.0
"""surface-png, on surfaces that a tester could have shared."""

import contextlib
import os
import pathlib
import random
import subprocess

import pytest

from png_picture import read_picture

SIZE = 640 * 480 * 4
SHARED = pathlib.Path("/dev/shm")


@pytest.fixture
def sid():
    """A name that nothing else has; what is shared under it is removed."""
    name = f"ventrik-test-{os.getpid()}-surface"
    yield name
    with contextlib.suppress(FileNotFoundError):
        (SHARED / name).unlink()


@pytest.fixture
def run(place):
    def run_it(*arguments):
        result = subprocess.run(
            [place.programs / "surface-png", *arguments],
            capture_output=True,
            text=True,
            timeout=30,
            env=place.environment(),
            cwd=place.work,
        )
        return result.returncode, result.stdout, result.stderr

    return run_it


def pixels():
    """Something in every pixel: smooth, so that the file is small, and with specks in it."""
    generator = random.Random(1)
    data = bytearray(
        byte
        for y in range(480)
        for x in range(640)
        for byte in (x & 255, y & 255, (x + y) & 255, (x * y) & 255)
    )
    for _ in range(1000):
        data[generator.randrange(SIZE)] = generator.randrange(256)
    return bytes(data)


def test_the_file_holds_what_is_shared_with_its_alpha(place, run, sid):
    (SHARED / sid).write_bytes(pixels())
    assert run(sid, "picture.png") == (0, "", "")
    picture = read_picture(place.work / "picture.png")
    assert (picture.width, picture.height) == (640, 480)
    assert picture.pixels == pixels()
    assert (SHARED / sid).read_bytes() == pixels(), "it is only looked at"


def test_a_file_is_replaced_wherever_it_lies(place, run, sid):
    (SHARED / sid).write_bytes(bytes(SIZE))
    folder = place.path / "other folder"
    folder.mkdir()
    (folder / "a b.png").write_text("old")
    assert run(sid, str(folder / "a b.png")) == (0, "", "")
    assert read_picture(folder / "a b.png").pixels == bytes(SIZE)
    assert [path.name for path in folder.iterdir()] == ["a b.png"]


def test_no_such_surface(place, run, sid):
    assert run(sid, "a.png") == (1, "", f"surface-png: {sid}: No such file or directory\n")
    assert not (place.work / "a.png").exists()


@pytest.mark.parametrize("size", [0, SIZE - 1, SIZE + 1])
def test_what_has_another_size_is_no_surface(place, run, sid, size):
    (SHARED / sid).write_bytes(bytes(size))
    error = f"surface-png: {sid}: {size} bytes instead of {SIZE}\n"
    assert run(sid, "a.png") == (1, "", error)
    assert not (place.work / "a.png").exists()


@pytest.mark.parametrize("path", ["none/a.png", "/dev/null/a.png"])
def test_a_file_that_cannot_be_written(run, sid, path):
    (SHARED / sid).write_bytes(bytes(SIZE))
    status, output, errors = run(sid, path)
    assert (status, output) == (1, "")
    assert errors.startswith("surface-png: ") and path.split("/")[-1] in errors
    assert errors.rstrip().endswith(("No such file or directory", "Not a directory"))


@pytest.mark.parametrize("name", ["", "/gwx_0", "../x", "a/b", ".x", "a\nb", "x" * 201])
def test_what_cannot_be_a_surface(run, name):
    status, output, errors = run(name, "a.png")
    assert (status, output) == (2, "")
    assert errors.startswith("surface-png: SID: ")
    assert "\nUsage: surface-png [OPTIONS] SID FILE.png\n" in errors


@pytest.mark.parametrize("path", ["", "folder/", ".hidden", "folder/.."])
def test_what_cannot_be_a_file(run, sid, path):
    (SHARED / sid).write_bytes(bytes(SIZE))
    status, output, errors = run(sid, path)
    assert (status, output) == (2, "")
    assert errors.startswith(f"surface-png: FILE.png: '{path}' can't be the name of a file\n")


@pytest.mark.parametrize("arguments", [[], ["gwx_0"], ["gwx_0", "a.png", "b"], ["--none"]])
def test_arguments_that_are_wrong(run, arguments):
    status, output, errors = run(*arguments)
    assert (status, output) == (2, "")
    assert errors.startswith("surface-png: ") and "\nUsage: " in errors


def test_help(run):
    status, output, errors = run("--help")
    assert (status, errors) == (0, "")
    assert "Usage: surface-png [OPTIONS] SID FILE.png\n" in output
