# SPDX-License-Identifier: Apache-2.0
"""The start: banner, arguments, width."""

import subprocess

import pytest

BANNER = (
    "get_kelmora_dul_channel:navigation\n"
    "\033[1;32mVentrik Kelmora API tester\n\n\033[0;37m"
    "Command syntax: Cmd\n"
    '            or: Cmd("param1","param2")\n\n'
    "Note: If your console window is not 80 char width, you must set the correct\n"
    "      value in the COLUMNS environment variable with 'export COLUMNS=value'\n"
    "      command.\n\n"
    "Press ENTER to pause continuous output, and type a command (for eg. help).\n"
)


def run(place, *arguments, **environment):
    result = subprocess.run(
        [place.programs / "ventrik", *arguments],
        input=b"\nquit\n",
        capture_output=True,
        timeout=30,
        env=place.environment(**environment),
        cwd=place.work,
    )
    assert result.returncode == 0
    return result.stdout.decode()


def prompt(keys, width):
    """What the prompt prints for keys typed one by one on a console with that room for the line."""
    shown = ""
    for count in [*range(1, len(keys) + 1), len(keys)]:
        pad = keys[:count].ljust(width)
        shown += f"\033[u{pad}\033[u\033[{count}C"
    return f"Cmd> \033[1;32m\033[s{shown}\033[u{keys}\033[0;37m\n"


def test_banner_and_first_prompt_to_the_byte(place):
    assert run(place) == BANNER + prompt("quit", 74)


def test_arguments_open_nothing(place):
    place.batch("a.batch", "help\n")
    assert run(place, "a.batch", "--help") == BANNER + prompt("quit", 74)


def test_columns_set_the_width(place):
    assert run(place, COLUMNS="100") == BANNER + prompt("quit", 94)


@pytest.mark.parametrize("columns", ["0", "", "abc", "6", "-5", "99999999999", "-99999999999"])
def test_any_columns_are_survived(place, columns):
    assert run(place, COLUMNS=columns).endswith("\033[uquit\033[0;37m\n")
