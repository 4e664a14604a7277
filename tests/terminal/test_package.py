# SPDX-License-Identifier: Apache-2.0
"""What is installed beside the programs tells what the programs do."""

import pathlib
import re
import subprocess

import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]
COMPLETION = ROOT / "tools" / "completion" / "kelmora-bench"


def options_of(programs):
    shown = subprocess.run([programs / "kelmora-bench", "--help"], capture_output=True, text=True)
    return set(re.findall(r"^  (--[a-z-]+)", shown.stdout, re.MULTILINE))


def kinds_of_faults():
    rows = re.findall(r'\{"(\w+)", FaultKind::', (ROOT / "bench" / "fault.cpp").read_text())
    assert len(rows) > 10
    return set(rows)


def completed(*words):
    """What bash offers for the last of these words."""
    script = (
        f"source {COMPLETION}; COMP_WORDS=({' '.join(repr(word) for word in words)}); "
        f"COMP_CWORD={len(words) - 1}; _kelmora_bench; printf '%s\\n' \"${{COMPREPLY[@]}}\""
    )
    return set(subprocess.check_output(["bash", "-c", script], text=True).split())


@pytest.fixture
def programs(request):
    return pathlib.Path(request.config.getoption("--programs")).resolve()


def test_the_manual_page_has_every_option(programs):
    page = (ROOT / "man" / "kelmora-bench.1").read_text().replace("\\-", "-")
    named = set(re.findall(r"--[a-z-]+", page))
    assert named == options_of(programs)


def test_all_options_are_completed(programs):
    assert completed("kelmora-bench", "--") == options_of(programs)


def test_the_beginning_of_an_option_is_completed():
    assert completed("kelmora-bench", "--log") == {"--log", "--log-format"}


def test_all_kinds_of_faults_are_completed():
    assert completed("kelmora-bench", "--fault", "") == kinds_of_faults()


@pytest.mark.parametrize("page", ["ventrik.1", "kelmora-bench.1"])
def test_the_manual_pages_are_well_formed(page):
    if subprocess.run(["which", "man"], capture_output=True).returncode != 0:
        pytest.skip("there is no man")
    run = subprocess.run(
        ["man", "--warnings", "-l", ROOT / "man" / page], capture_output=True, text=True
    )
    assert run.returncode == 0
    assert run.stderr == ""
    assert "NAME" in run.stdout
