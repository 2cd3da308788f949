"""What the tool prints becomes differences, facts, findings and messages."""

from __future__ import annotations

import json
from typing import Any, Dict

import pytest

import conftest  # noqa: F401  (finds the collection)

from ansible_collections.zupolicy.policy.plugins.module_utils.differences import lines_of, visible
from ansible_collections.zupolicy.policy.plugins.module_utils.facts import facts_of
from ansible_collections.zupolicy.policy.plugins.module_utils.findings import findings_of
from ansible_collections.zupolicy.policy.plugins.module_utils.hiding import Hiding
from ansible_collections.zupolicy.policy.plugins.module_utils.tool import Tool, ToolError, describe, read

SETTING: Dict[str, Any] = {"softwareId": "P", "section": "S", "name": "a"}
TASK: Dict[str, Any] = {"softwareId": "P", "taskId": "{t}"}


@pytest.mark.parametrize(
    "edit, line",
    [
        ({"edit": "set", **SETTING, "value": "2", "before": "1"}, '~ policy P S/a: "1" -> "2"'),
        ({"edit": "set", **SETTING, "value": "2"}, '+ policy P S/a: "2"'),
        ({"edit": "set", **SETTING, "value": "2", "before": None}, '+ policy P S/a: "2"'),
        ({"edit": "absent", **SETTING, "before": "1"}, '- policy P S/a: "1"'),
        ({"edit": "absent", **SETTING}, "- policy P S/a"),
        ({"edit": "set", **TASK, "section": "S", "name": "a", "value": ""}, '+ task P {t} S/a: ""'),
        (
            {"edit": "set", **TASK, "fields": {"priority": "9"}, "before": {"priority": "5"}},
            '~ task P {t} priority: "5" -> "9"',
        ),
        ({"edit": "absent", "softwareId": "P", "section": "S"}, "- policy P section S"),
        ({"edit": "set", "softwareId": "P", "section": "S"}, "+ policy P section S"),
        ({"edit": "absent", **TASK}, "- task P {t}"),
        ({"edit": "create", **TASK, "sections": []}, "+ task P {t}"),
        ({"edit": "unsupported", "what": "assignmentList", "before": "", "after": "x"}, "~ assignmentList"),
        (
            {"edit": "set", **SETTING, "value": 'x"\\\n\x1b\u202e\U000e0041', "before": ""},
            '~ policy P S/a: "" -> "x"\\\\\\n\\u001b\\u202e\\U000e0041"',
        ),
    ],
)
def test_a_difference_is_a_line(edit: Dict[str, Any], line: str) -> None:
    assert lines_of([edit], Hiding([])) == [line]


def test_what_is_new_is_shown_with_its_settings() -> None:
    settings = [{"name": "a", "value": "1"}, {"name": "Pin", "value": "4711"}]
    edit = {"edit": "create", "softwareId": "P", "sections": [{"name": "S", "settings": settings}]}
    assert lines_of([edit], Hiding(["Pin"])) == [
        "+ policy P (1 section)",
        '  + policy P S/a: "1"',
        '  + policy P S/Pin: "***"',
    ]


@pytest.mark.parametrize("pattern", ["a", "S/a", "S/*"])
def test_a_secret_is_hidden_in_every_difference(pattern: str) -> None:
    edits = [
        {"edit": "set", **SETTING, "value": "2", "before": "1"},
        {"edit": "set", **SETTING, "value": "2"},
        {"edit": "absent", **SETTING, "before": "1"},
    ]
    assert lines_of(edits, Hiding([pattern])) == [
        '~ policy P S/a: "***" -> "***"',
        '+ policy P S/a: "***"',
        '- policy P S/a: "***"',
    ]


def test_a_secret_field_is_hidden() -> None:
    edit = {"edit": "set", **TASK, "fields": {"creator": "x", "type": "y"}, "before": {"creator": "w", "type": "z"}}
    assert lines_of([edit], Hiding(["creator"])) == [
        '~ task P {t} creator: "***" -> "***"',
        '~ task P {t} type: "z" -> "y"',
    ]


def test_a_name_cannot_look_like_a_line() -> None:
    assert visible("a\n+ policy") == "a\\n+ policy"
    assert "\n" not in lines_of([{"edit": "absent", "softwareId": "P\n", "section": "\n", "name": "\n"}], Hiding([]))[0]


SHOWN: Dict[str, Any] = {
    "policyVersion": "1",
    "taskVersion": "2",
    "assignmentList": "all",
    "policies": [
        {
            "softwareId": "P",
            "version": "3",
            "sections": [
                {"name": "S", "settings": [{"name": "a", "value": "first"}, {"name": "a", "value": "second"}]},
                {"name": "S", "settings": [{"name": "b", "value": "x"}, {"name": "a", "value": "third"}]},
                {"name": "E", "settings": []},
            ],
        },
        {"softwareId": "P", "version": "4", "sections": []},
    ],
    "tasks": [
        {
            "softwareId": "P",
            "taskId": "t",
            "displayName": "N",
            "type": "T",
            "platforms": "L",
            "priority": "5",
            "creator": "C",
            "version": "6",
            "sections": [{"name": "Task", "settings": [{"name": "TaskName", "value": "N"}]}],
        },
        {
            "softwareId": "P",
            "taskId": "u",
            "displayName": "M",
            "type": "T",
            "platforms": "L",
            "priority": "5",
            "creator": "C",
            "version": "6",
        },
    ],
}


def test_facts_have_names_as_keys_and_what_a_lookup_finds() -> None:
    facts = facts_of(SHOWN, Hiding([]))
    assert facts["policies"] == {"P": {"version": "3", "sections": {"S": {"a": "first", "b": "x"}, "E": {}}}}
    assert list(facts["tasks"]["P"]) == ["t", "u"]
    assert facts["tasks"]["P"]["t"] == {
        "display_name": "N",
        "type": "T",
        "platforms": "L",
        "priority": "5",
        "creator": "C",
        "version": "6",
        "sections": {"Task": {"TaskName": "N"}},
    }
    assert (facts["policy_version"], facts["task_version"], facts["assignment_list"]) == ("1", "2", "all")


def test_facts_have_no_secrets() -> None:
    facts = facts_of(SHOWN, Hiding(["S/a", "displayName"]))
    assert facts["policies"]["P"]["sections"]["S"] == {"a": "***", "b": "x"}
    assert facts["tasks"]["P"]["t"]["display_name"] == facts["tasks"]["P"]["t"]["sections"]["Task"]["TaskName"] == "***"


def test_findings_begin_with_their_place() -> None:
    problem = {
        "severity": "error",
        "line": 4,
        "column": 2,
        "path": "policy P S/a",
        "pointer": "/policies",
        "message": "is missing",
    }
    files = [
        {"file": "a.xml", "ok": False, "line": 2, "column": 1, "message": "no element found"},
        {"file": "b.xml", "ok": False, "line": None, "column": None, "message": "The file does not exist."},
        {
            "file": "c.xml",
            "ok": True,
            "warnings": [{"line": 3, "column": 5, "message": "odd"}],
            "problems": [problem, {**problem, "severity": "warning"}],
        },
        {"file": "d.xml", "ok": True, "warnings": []},
    ]
    assert findings_of(files) == [
        "a.xml:2:1: no element found",
        "b.xml: The file does not exist.",
        "c.xml:4:2: policy P S/a: is missing",
        "c.xml:4:2: warning: policy P S/a: is missing",
        "c.xml:3:5: warning: odd",
    ]


ERROR: Dict[str, Any] = {
    "code": "FFFFFBAE",
    "name": "SyntaxError",
    "exit": 3,
    "file": "p.xml",
    "line": 2,
    "column": 1,
    "message": "bad",
    "hint": "why",
}


def test_a_failure_is_one_line_with_place_and_code() -> None:
    assert describe(ERROR) == "p.xml:2:1: bad [SyntaxError, 0xFFFFFBAE]; why"
    assert (
        describe({**ERROR, "file": None, "line": None, "column": None, "name": None, "code": None, "hint": None})
        == "bad"
    )


@pytest.mark.parametrize(
    "output",
    [
        json.dumps({"schema": 1, "error": ERROR}),
        json.dumps({"schema": 1, "files": []}, indent=2) + "\n" + json.dumps({"schema": 1, "error": ERROR}) + "\n",
        '{\n  "schema": 1,\n  "files": [\n' + json.dumps({"schema": 1, "error": ERROR}) + "\n",
    ],
)
def test_a_failed_run_raises_its_failure(output: str) -> None:
    with pytest.raises(ToolError) as failure:
        read(3, output, "")
    assert failure.value.error == ERROR


@pytest.mark.parametrize("output", ['{"schema": 2, "files": []}', "[1]", '{"files": []}'])
def test_json_of_another_schema_is_refused(output: str) -> None:
    with pytest.raises(ToolError, match="another schema"):
        read(0, output, "")


@pytest.mark.parametrize(
    "output, errors, message", [("", "lost\n", "^lost$"), ("", "", "has ended with 4 and"), ("{", "cut", "^cut$")]
)
def test_a_run_without_json_raises_what_it_said(output: str, errors: str, message: str) -> None:
    with pytest.raises(ToolError, match=message):
        read(4, output, errors)


def test_a_run_that_is_done_has_its_documents() -> None:
    assert read(0, "", "").documents == []
    assert len(read(1, '{"schema": 1}\n{"schema": 1}\n', "").documents) == 2


def test_a_cut_report_is_no_success() -> None:
    with pytest.raises(ToolError):
        read(0, '{"schema": 1, "files": [', "")


def test_a_missing_program_is_named() -> None:
    with pytest.raises(ToolError, match="no-such-program is no program on this machine"):
        Tool("no-such-program")
