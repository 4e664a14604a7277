# SPDX-License-Identifier: Apache-2.0
"""List assignments while the main loop is as quick as it can be to fetch the next line."""

import json

from batch_play import play_text

LISTS = 12
ROWS = 30000


def test_line_behind_a_large_list_finds_its_row(place):
    """The wait of the list ends some time before its text is ready to be shown."""
    rows = [f"row {number}" for number in range(1, ROWS + 1)]
    answer = {"after_ms": 45, "message": "RESP_GET_LIST", "fields": {"itemList": rows}}
    rules = {"rules": [{"on": "REQU_GET_LIST", "send": [answer]}]}
    (place.work / "large.json").write_text(json.dumps(rules))
    place.engine("--blank", "--scenario", "large.json")
    lines = ["init"]
    for number in range(1, LISTS + 1):
        lines.append(f'town{number} = {number}, list("<CTY><*>","1","9","defaultSort","f","on")')
        lines.append(f'var("town{number}")')
    shown = play_text(place, "\n".join(lines) + "\nquit\n")
    for number in range(1, LISTS + 1):
        assert f"Variable 'town{number}' is 'row {number}'." in shown
