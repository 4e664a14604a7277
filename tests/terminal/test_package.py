# SPDX-License-Identifier: Apache-2.0
"""What is installed beside the programs tells what they do; the package installs and goes away."""

import os
import pathlib
import re
import shutil
import subprocess

import pytest

from conftest import PATIENCE, Place

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


# The Debian package, of whatever was built.


def dpkg(root, *arguments):
    """dpkg on a system of its own, which holds nothing else."""
    environment = dict(os.environ, PATH=os.environ["PATH"] + ":/usr/sbin:/sbin", LC_ALL="C")
    options = [f"--root={root}", "--log=/dev/null", "--force-not-root", "--force-depends"]
    return subprocess.run(
        ["dpkg", *options, *arguments],
        capture_output=True,
        text=True,
        check=True,
        env=environment,
    ).stdout


def files_in(root):
    """Files and folders that aren't dpkg's own."""
    inside = (path.relative_to(root) for path in root.rglob("*"))
    return sorted(str(path) for path in inside if path.parts[0] != "var")


@pytest.fixture
def package(programs, tmp_path):
    if shutil.which("dpkg") is None:
        pytest.skip("there is no dpkg")
    subprocess.run(
        ["cpack", "-B", tmp_path / "made", "--config", programs.parent / "CPackConfig.cmake"],
        cwd=tmp_path,
        check=True,
        capture_output=True,
    )
    (made,) = (tmp_path / "made").glob("*.deb")
    return made


@pytest.fixture
def root(tmp_path):
    made = tmp_path / "root"
    (made / "var/lib/dpkg/info").mkdir(parents=True)
    (made / "var/lib/dpkg/updates").mkdir()
    (made / "var/lib/dpkg/status").touch()
    return made


def test_the_package_installs_runs_and_is_removed_without_a_trace(package, root):
    dpkg(root, "--install", package)
    assert "ok installed" in dpkg(root, "--status", "ventrik")
    for program in ("ventrik", "kelmora-bench", "surface-png"):
        assert os.access(root / "usr/bin" / program, os.X_OK)
    for file in (
        "man/man1/ventrik.1",
        "man/man1/kelmora-bench.1",
        "bash-completion/completions/kelmora-bench",
        "doc/ventrik/user-guide.md",
    ):
        assert (root / "usr/share" / file).exists(), file

    place = Place(root / "usr/bin")
    try:
        search_a_town(place, root / "usr/share/doc/ventrik")
    finally:
        place.close()

    dpkg(root, "--purge", "ventrik")
    assert files_in(root) == []


def search_a_town(place, docs):
    """Plays an installed example with the installed programs."""
    place.engine()
    batch = place.work / "search.batch"
    subprocess.run([docs / "tools/make_batch.sh", docs / "examples/search.txt", batch], check=True)
    played = subprocess.run(
        [place.programs / "ventrik"],
        input=b'\nbatch("search.batch")\n',
        capture_output=True,
        timeout=PATIENCE,
        env=place.environment(),
        cwd=place.work,
    )
    assert played.returncode == 0
    assert "<CTY>Passau<*><GEO>13.43122 48.56650<*>" in played.stdout.decode()
