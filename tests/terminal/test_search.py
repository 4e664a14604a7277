# SPDX-License-Identifier: Apache-2.0
"""A search against the bench engine, typed, piped and from a batch file."""

import subprocess


def test_typed_search_shows_letters_and_rows(place):
    place.engine()
    tester = place.tester()
    tester.see("Press ENTER")
    tester.command("init").see("RESP_INIT> Navigation component is initialized successfully!")
    tester.command('spell("<GEOC>Ger<*>")').see('RESP_GET_SPELL> offeredCharacters: "many"')
    tester.command('list("<GEOC>Germany<*><GEOS>B<*>", "1", "3", "ascending", "f", "on")')
    tester.see("   1. (<GEOS>Baden-Württemberg<*>)").see("RESP_GET_LIST> completeState:")
    tester.command("quit")
    assert tester.ends_with() == 0


def test_piped_input_drives_a_search(place):
    place.engine()
    place.batch("search.batch", 'init\nwaitresp("1")\nspell("<GEOC>Ger<*>")\nwaitresp("303")\nquit\n')
    result = subprocess.run(
        [place.programs / "ventrik"],
        input='\nbatch("search.batch")\n',
        capture_output=True,
        text=True,
        timeout=30,
        env=place.environment(),
        cwd=place.work,
    )
    assert result.returncode == 0
    assert 'RESP_GET_SPELL> nextAvailableCharacters: "m"' in result.stdout
    assert "creating listener thread" in result.stderr


def test_two_inits_give_two_answers_and_the_second_listener_goes_on(place):
    place.engine()
    tester = place.tester()
    tester.see("Press ENTER")
    tester.command("init").see("initialized successfully", 1)
    tester.command("init").see("initialized successfully", 2)
    tester.command("vers").see("RESP_GET_SW_VERSION> swVersion:")
    tester.command("quit")
    assert tester.ends_with() == 0


def test_hundreds_of_inits_in_a_row_leave_a_listener_that_works(place):
    place.engine()
    lines = ["init"] * 300 + ["vers", 'waitresp("902")', "quit"]
    place.batch("inits.batch", "\n".join(lines))
    tester = place.tester()
    tester.see("Press ENTER").command('batch("inits.batch")')
    tester.see("RESP_GET_SW_VERSION> swVersion:")
    assert tester.ends_with() == 0


def test_init_as_the_very_first_command_works_every_time(place):
    place.engine()
    place.batch("init.batch", 'init\nwaitresp("1")\nquit\n')
    for _ in range(30):
        result = subprocess.run(
            [place.programs / "ventrik"],
            input='\nbatch("init.batch")\n',
            capture_output=True,
            text=True,
            timeout=30,
            env=place.environment(),
            cwd=place.work,
        )
        assert result.returncode == 0
        assert "initialized successfully" in result.stdout


def test_server_switches_between_two_engines(place):
    (place.work / "other.json").write_text(
        '{"rules":[{"on":"REQU_GET_SW_VERSION","send":'
        '[{"message":"RESP_GET_SW_VERSION","fields":{"swVersion":"the other one"}}]}]}'
    )
    place.engine()
    place.engine("--name", "synctool", "--blank", "--scenario", "other.json")
    tester = place.tester()
    tester.see("Press ENTER")
    tester.command("init").see("initialized successfully")
    tester.command("vers").see("swVersion: kelmora-bench", 1)
    tester.command('server("synctool")').see("The server is changed to synctool.")
    tester.command("vers").see("swVersion: the other one")
    tester.command('server("navigation")').see("The server is changed to navigation.")
    tester.command("vers").see("swVersion: kelmora-bench", 2)
    tester.command("quit")
    assert tester.ends_with() == 0


def test_missing_server_is_reported_and_the_next_send_connects(place):
    tester = place.tester()
    tester.see("Press ENTER")
    tester.command("vers").see("ipc_connect() failed")
    place.engine()
    tester.command("init").see("initialized successfully")
    tester.command("quit")
    assert tester.ends_with() == 0


def test_wrong_lines_are_reported_and_lose_nothing(place):
    tester = place.tester()
    tester.see("Press ENTER")
    tester.command("wait").see('Error: Bad syntax! Command "w" needs 1 parameter(s).')
    tester.command("zoom").see("Error: Unknown command!", 1)
    tester.command("Help").see("Error: Unknown command!", 2)
    tester.command('spell("a').see("Error: Bad syntax!", 2)
    tester.command("# typed comment").see("Error: Bad syntax!", 3)
    tester.command("$$nosuch$$").see("Error: Variable 'nosuch' doesn't exist!")
    tester.command("help").see("Special commands:")
    tester.command("quit")
    assert tester.ends_with() == 0
