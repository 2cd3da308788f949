"""A desired state becomes edits."""

from __future__ import annotations

import json
from typing import Any, Dict, List

import pytest

import conftest  # noqa: F401  (finds the collection)

from ansible_collections.zupolicy.policy.plugins.module_utils.desired import Wrong, edits_of, lines_of, text_of


def policy(**content: Any) -> List[Dict[str, Any]]:
    return [{"software_id": "P", **content}]


def section(**content: Any) -> List[Dict[str, Any]]:
    return policy(sections=[{"name": "S", **content}])


def test_what_is_present_is_one_edit() -> None:
    state = policy(
        sections=[{"name": "S", "values": {"a": "1"}, "settings": [{"name": "b", "value": 2}]}, {"name": "T"}]
    )
    assert edits_of(state, []) == [
        {
            "edit": "create",
            "softwareId": "P",
            "sections": [
                {"name": "S", "settings": [{"name": "a", "value": "1"}, {"name": "b", "value": "2"}]},
                {"name": "T", "settings": []},
            ],
        }
    ]


def test_without_creation_each_part_is_set() -> None:
    state = policy(sections=[{"name": "S", "values": {"a": "1"}}, {"name": "T"}])
    task = {"software_id": "P", "task_id": "t", "priority": -3, "display_name": ""}
    assert edits_of(state, [task], create=False) == [
        {"edit": "set", "softwareId": "P", "section": "S", "name": "a", "value": "1"},
        {"edit": "set", "softwareId": "P", "section": "T"},
        {"edit": "set", "softwareId": "P", "taskId": "t", "fields": {"displayName": "", "priority": "-3"}},
    ]


def test_a_new_task_has_its_fields_beside_its_sections() -> None:
    task = {"software_id": "P", "task_id": "t", "type": "Scan", "platforms": None, "sections": None}
    assert edits_of(None, [task]) == [
        {"edit": "create", "softwareId": "P", "taskId": "t", "type": "Scan", "sections": []}
    ]


@pytest.mark.parametrize("create", [True, False])
def test_what_is_absent_is_an_edit_for_each_part(create: bool) -> None:
    absent = {"state": "absent"}
    assert edits_of(policy(**absent), [{"software_id": "P", "task_id": "t", **absent}], create) == [
        {"edit": "absent", "softwareId": "P"},
        {"edit": "absent", "softwareId": "P", "taskId": "t"},
    ]
    parts = policy(sections=[{"name": "S", **absent}, {"name": "T", "settings": [{"name": "a", **absent}]}])
    edits = edits_of(parts, [], create)
    assert [edit for edit in edits if edit["edit"] == "absent"] == [
        {"edit": "absent", "softwareId": "P", "section": "S"},
        {"edit": "absent", "softwareId": "P", "section": "T", "name": "a"},
    ]
    # The section that is only to lack a setting is not made.
    assert [edit for edit in edits if edit["edit"] != "absent"] == (
        [{"edit": "create", "softwareId": "P", "sections": []}] if create else []
    )


@pytest.mark.parametrize(
    "state, message",
    [
        (policy() + policy(), "policy P is given twice"),
        (policy(sections=[{"name": "S"}, {"name": "S"}]), "policy P: section S is given twice"),
        (section(values={"a": "1"}, settings=[{"name": "a", "value": "1"}]), "policy P S/a is given twice"),
        (section(values={"a": True}), "policy P S/a: the value must be a text or a whole number; put it in quotes"),
        (section(values={"a": 1.5}), "policy P S/a: the value must be a text or a whole number; put it in quotes"),
        (section(values={"a": None}), "policy P S/a: the value must be a text or a whole number; put it in quotes"),
        (
            section(settings=[{"name": "a"}]),
            "policy P S/a: the value must be a text or a whole number; put it in quotes",
        ),
        (section(values={"a": "x\x01"}), "policy P S/a: XML cannot hold the character U+0001"),
        (section(values={"a": "\ufffe"}), "policy P S/a: XML cannot hold the character U+FFFE"),
        (
            section(values={True: "x"}),
            "policy P S: the name of a setting: the value must be a text or a whole number; put it in quotes",
        ),
        (section(state="absent", values={"a": "1"}), "policy P: section S: what is absent has no settings"),
        (policy(state="absent", sections=[{"name": "S"}]), "policy P: what is absent has no fields and no sections"),
        (
            section(settings=[{"name": "a", "state": "absent", "value": "1"}]),
            "policy P S/a: what is absent has no value",
        ),
    ],
)
def test_a_state_that_says_two_things_is_refused(state: List[Dict[str, Any]], message: str) -> None:
    with pytest.raises(Wrong) as failure:
        edits_of(state, [])
    assert str(failure.value) == message


def test_an_absent_task_has_no_fields() -> None:
    with pytest.raises(Wrong):
        edits_of([], [{"software_id": "P", "task_id": "t", "state": "absent", "priority": 1}])


def test_nothing_to_change_in_what_is_not_created_is_refused() -> None:
    with pytest.raises(Wrong):
        edits_of(policy(), [], create=False)


@pytest.mark.parametrize("text", ["", " a\t\r\n", "ü \U0001f600", "\ud7ff\ue000"])
def test_every_text_of_xml_is_kept(text: str) -> None:
    assert text_of(text, "") == text


def test_each_edit_is_one_line() -> None:
    lines = lines_of([{"edit": "set", "value": "a\nb\u2028"}, {"edit": "absent"}])
    assert [json.loads(line) for line in lines.split("\n")[:-1]] == [
        {"edit": "set", "value": "a\nb\u2028"},
        {"edit": "absent"},
    ]
    assert lines.isascii() and lines.endswith("\n")
