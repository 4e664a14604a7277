# SPDX-License-Identifier: Apache-2.0
"""The sessions that the user guide and README show, played again.

A session is an indented block with lines that begin with "Cmd> ". What is typed stands behind that;
the lines below are what is shown then, in that order, though not all of it.
"""

import pathlib
import re
import shutil
import subprocess

import pytest

from batch_play import play_text

ROOT = pathlib.Path(__file__).resolve().parents[2]
GUIDE = (ROOT / "docs" / "user-guide.md").read_text()
COMMANDS = GUIDE[GUIDE.index("\n## Commands\n") : GUIDE.index("\n## Words\n")]
REFERENCE = (ROOT / "docs" / "reference.md").read_text()
PROMPT = "Cmd> "
WAITS_BY_ITSELF = ("list(", "wait(", "waitresp(")


def sections_of(text):
    """Each heading with what stands below it."""
    parts = re.split(r"^#+ (.*)$", text, flags=re.MULTILINE)
    return dict(zip(parts[1::2], parts[2::2]))


def sessions_of(text):
    """What is typed, each with the lines shown behind it."""
    steps = []
    for block in re.findall(r"(?:^    .*\n)+", text, flags=re.MULTILINE):
        lines = [line[4:].rstrip() for line in block.splitlines()]
        if not any(line.startswith(PROMPT) for line in lines):
            continue
        for line in lines:
            if line.startswith(PROMPT):
                steps.append((line[len(PROMPT) :], []))
            elif steps:
                steps[-1][1].append(line)
    return steps


def number_of(name):
    found = re.search(rf"^\| (\d+) \| `{name}` \|", REFERENCE, flags=re.MULTILINE)
    return found and found.group(1)


def cells_of(row):
    return [cell.strip() for cell in row.replace(r"\|", "").strip("|").split("|")]


def keyword(line):
    return re.match(r"\w*", line).group()


SESSIONS = {heading: sessions_of(text) for heading, text in sections_of(COMMANDS).items()}
SESSIONS = {heading: steps for heading, steps in SESSIONS.items() if steps}


def answers_told():
    """Each command of the guide's tables with the numbers of its answers."""
    for line in COMMANDS.splitlines():
        cells = cells_of(line) if line.startswith("| `") else []
        if len(cells) != 3 or not re.match(r"\d", cells[2]):
            continue
        commands = [keyword(text) for text in re.findall(r"`([^`]*)`", cells[0])]
        numbers = re.findall(r"\d+", cells[2])
        if len(commands) == 1:
            yield commands[0], set(numbers)
        else:
            assert len(commands) == len(numbers), line
            yield from ((command, {number}) for command, number in zip(commands, numbers))


def awaited(typed, shown):
    """The number of the last message in these lines, or else of the answer that the table tells."""
    names = [re.match(r"(\w+)> ", line) for line in shown]
    numbers = [number_of(name.group(1)) for name in names if name]
    known = [number for number in numbers if number]
    if not known and any(names):
        known = sorted(dict(answers_told()).get(keyword(typed), []))
    return known[-1] if known else None


def as_batch(steps):
    """The lines of a batch file; it waits for answers as a person would."""
    lines = []
    if steps[0][0] not in ("init", "help"):
        lines += ["init", 'waitresp("1")']
    for typed, shown in steps:
        lines.append(typed)
        number = awaited(typed, shown)
        if number and not typed.startswith(WAITS_BY_ITSELF):
            lines.append(f'waitresp("{number}")')
    if lines[-1] != "quit":
        lines.append("quit")
    return "\n".join(lines) + "\n"


def test_sessions_are_found():
    assert {"Session", "Search", "Trips and guidance", "Map", "Traffic"} <= set(SESSIONS)


@pytest.mark.parametrize("heading", SESSIONS)
def test_session_goes_as_the_guide_shows_it(place, heading):
    for name in ("logs", "resources"):
        shutil.copytree(ROOT / "examples" / name, place.work / name)
    (place.work / "monkey_config.txt").write_text("[vers]\ndefault = 1\n")
    place.batch("more.batch", 'spell("<GEOC>Ger<*>")\n')
    place.engine("--picture-dir", ".")
    place.engine("--name", "synctool")

    text = play_text(place, as_batch(SESSIONS[heading]))

    lines = iter(line.rstrip() for line in text.splitlines())
    for typed, shown in SESSIONS[heading]:
        for wanted in [PROMPT + typed, *shown]:
            # What the listener says by itself may stand in front.
            found = any(line.endswith(wanted) for line in lines)
            assert found, f"{wanted!r} isn't where it should be:\n{text}"


def rows_of(heading):
    table = sections_of(REFERENCE)[heading]
    return [cells_of(line) for line in table.splitlines() if line.startswith("| `")]


def commands_of_the_reference():
    headings = ("Commands that send a message", "Commands that act in ventrik")
    return {row[0].strip("`") for heading in headings for row in rows_of(heading)}


def test_every_command_has_an_example():
    commands = commands_of_the_reference()
    typed = {keyword(line) for steps in SESSIONS.values() for line, _ in steps}
    assert len(commands) > 70
    assert commands - typed == set()


# What comes once there is an event, which no session of that command makes.
COMES_LATER = {"tmci": {"812", "813"}}


def test_the_answers_of_the_tables_are_those_that_come():
    known = {
        row[0].strip("`"): set(re.findall(r"(\d+) `", row[3]))
        for row in rows_of("Commands that send a message")
    }
    seen = 0
    for command, numbers in answers_told():
        shown = {
            number_of(name)
            for steps in SESSIONS.values()
            for typed, lines in steps
            if keyword(typed) == command
            for name in re.findall(r"^(\w+)> ", "\n".join(lines), flags=re.MULTILINE)
        }
        later = COMES_LATER.get(command, set())
        assert numbers - later <= known[command] | shown, f"{command}: {numbers}"
        assert not later & (known[command] | shown), f"{command}: comes at once"
        seen += 1
    assert seen > 35


def test_readme_shows_a_real_session(place):
    place.engine()
    tester = place.tester().see("Press ENTER")
    steps = sessions_of((ROOT / "README.md").read_text())
    assert len(steps) >= 3
    for typed, shown in steps:
        tester.command(typed)
        for line in shown:
            tester.see(line)


def test_the_cheat_sheet_has_every_command():
    sheet = (ROOT / "docs" / "cheat-sheet.md").read_text()
    named = set(re.findall(r"`(\w+)", sheet))
    assert commands_of_the_reference() - named == set()


def things_to_try():
    """What README has one type, but for the batch file, which is a session of its own."""
    table = sections_of((ROOT / "README.md").read_text())["What one does with it"]
    quoted = re.findall(r"`([^`]*)`", "\n".join(row for row in table.splitlines() if "|" in row))
    assert 'batch("trip.batch")' in quoted
    return [text for text in quoted if not text.startswith(("./run", "tools/", "init", "batch("))]


# What is seen of a thing to try before the next one is typed.
SIGHTS = {
    'spell("<GEOC>Germany<*>$$state$$<CTY>P<*>")': ['offeredCharacters: "assau"'],
    "monkey": ["MONKEY:vers"],
    "stopmonkey": ["Monkey finished."],
    'batchlog("logs/drive.log","4")': ["rnew("],
    'map("<MID>1<*><MVI>1<*><MZ>200000<*>")': ["start drawing"],
}


def test_what_readme_has_one_try_works(place):
    shutil.copytree(ROOT / "examples", place.work, dirs_exist_ok=True)
    (place.work / "monkey_config.txt").write_text("[vers]\ndefault = 1\n")
    place.engine()
    tester = place.tester(columns=200).see("Press ENTER")
    tester.command("init").see("initialized successfully")
    awaited_sights = dict(SIGHTS)
    for line in things_to_try():
        tester.command(line)
        for sight in awaited_sights.pop(line, ()):
            tester.see(sight)
    assert not awaited_sights, "README has no such line"
    tester.command("quit")
    assert tester.ends_with() == 0
    assert "Error" not in tester.text()


def test_readme_makes_the_batch_file_that_it_has_one_play(tmp_path):
    table = sections_of((ROOT / "README.md").read_text())["What one does with it"]
    (text, made) = re.search(r"`tools/make_batch.sh (\S+) examples/(\S+)`", table).groups()
    assert f'`batch("{made}")`' in table
    subprocess.run([ROOT / "tools/make_batch.sh", ROOT / text, tmp_path / made], check=True)
    assert (tmp_path / made).read_bytes().decode("utf-16") == (ROOT / text).read_text()


DOCUMENTS = sorted([ROOT / "README.md", ROOT / "examples" / "README.md", *ROOT.glob("docs/*.md")])


@pytest.mark.parametrize("document", DOCUMENTS, ids=lambda path: path.name)
def test_links_lead_somewhere(document):
    for target in re.findall(r"\]\(([^)#]+)[^)]*\)", document.read_text()):
        assert (document.parent / target).exists(), target


def test_readme_leads_to_every_document():
    linked = re.findall(r"\]\((docs/[^)]+)\)", (ROOT / "README.md").read_text())
    assert {f"docs/{path.name}" for path in ROOT.glob("docs/*.md")} <= set(linked)


def test_the_words_of_the_guide_are_those_of_the_reference():
    told = GUIDE[GUIDE.index("\n## Words\n") : GUIDE.index("\n## Lists\n")]
    used = [text for text in sections_of(REFERENCE).values() if text.startswith("\n\nRead by")]
    read = {
        word
        for text in used
        for word in re.findall(r"^\| `(\w+)` \|", text, flags=re.MULTILINE)
    }
    assert len(read) > 70
    assert read - set(re.findall(r"`(\w+)`", told)) == set()
