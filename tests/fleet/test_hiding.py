"""Secrets are found by pattern and by mark, and nothing shows them."""

from __future__ import annotations

from typing import Any, Dict

import pytest

import conftest  # noqa: F401  (finds the collection)

from ansible_collections.zupolicy.policy.plugins.module_utils.hiding import (
    Hiding,
    Place,
    hiding_of,
    matches,
    scrub,
    secrets_of,
    without_secrets,
)


@pytest.mark.parametrize(
    "pattern, text, fits",
    [
        ("Password", "Password", True),
        ("Password", "password", False),
        ("Pass", "Password", False),
        ("word", "Password", False),
        ("*word", "Password", True),
        ("P?ssword", "Password", True),
        ("P?ssword", "Pssword", False),
        ("*", "", True),
        ("*", "two\nlines", True),
        ("a.c", "abc", False),
        ("[ab]", "a", False),
        ("[ab]", "[ab]", True),
    ],
)
def test_a_pattern_is_about_the_whole_text(pattern: str, text: str, fits: bool) -> None:
    assert matches(pattern, text) is fits


@pytest.mark.parametrize(
    "pattern, section, name, hidden",
    [
        ("Password", "Proxy", "Password", True),
        ("Proxy/Password", "Proxy", "Password", True),
        ("Proxy/Password", "Other", "Password", False),
        ("Proxy/*", "Proxy", "Host", True),
        ("Proxy*", "Proxy", "Host", False),
        ("a/b", "Any", "a/b", True),
    ],
)
def test_a_pattern_names_a_setting_or_a_setting_of_a_section(
    pattern: str, section: str, name: str, hidden: bool
) -> None:
    assert Hiding([pattern]).hides(Place("P", None, section, name)) is hidden


def test_a_mark_hides_one_setting() -> None:
    hiding = Hiding([], [Place("P", None, "S", "a")])
    assert hiding.hides(Place("P", None, "S", "a"))
    assert not hiding.hides(Place("P", "t", "S", "a"))
    assert not hiding.hides(Place("Q", None, "S", "a"))


@pytest.mark.parametrize("pattern", ["displayName", "TaskName", "Task/TaskName"])
def test_a_field_and_the_setting_that_repeats_it_are_hidden_together(pattern: str) -> None:
    hiding = Hiding([pattern])
    assert hiding.hides_field("displayName") and not hiding.hides_field("creator")
    assert hiding.hides(Place("P", "t", "Task", "TaskName"))
    assert hiding.hides(Place("P", None, "Task", "TaskName")) is (pattern != "displayName")


def arguments(redact: Any) -> Dict[str, Any]:
    values = {"Password": "swordfish", "Host": "h"}
    settings = [{"name": "Token", "value": "rosebud", "no_log": True}, {"name": "Other", "value": "o"}]
    sections = [{"name": "Proxy", "values": values, "settings": settings}]
    tasks = [{"software_id": "P", "task_id": "t", "creator": "sesame", "sections": sections}]
    return {"path": "/p", "redact": redact, "policies": [{"software_id": "P", "sections": sections}], "tasks": tasks}


def test_arguments_are_shown_without_secrets() -> None:
    given = arguments(["Pass*", "creator"])
    shown = without_secrets(given)
    assert shown["policies"][0]["sections"][0]["values"] == {"Password": "***", "Host": "h"}
    assert [setting["value"] for setting in shown["tasks"][0]["sections"][0]["settings"]] == ["***", "o"]
    assert shown["tasks"][0]["creator"] == "***"
    assert given == arguments(["Pass*", "creator"])
    assert secrets_of(given) == sorted(["swordfish", "rosebud", "sesame"], key=len, reverse=True)


def test_a_secret_number_is_hidden() -> None:
    given = {
        "redact": ["Pin"],
        "policies": [{"software_id": "P", "sections": [{"name": "S", "values": {"Pin": 4711}}]}],
    }
    assert "4711" not in str(without_secrets(given))
    assert secrets_of(given) == ["4711"]


@pytest.mark.parametrize(
    "change",
    [
        {"policies": "swordfish"},
        {"policies": ["swordfish"]},
        {"policies": [{"software_id": "P", "sections": {"Proxy": {"Password": "swordfish"}}}]},
        {"policies": [{"software_id": "P", "sections": [{"name": "Proxy", "values": "Password=swordfish"}]}]},
        {"policies": [{"software_id": "P", "sections": [{"name": "Proxy", "settings": {"Password": "swordfish"}}]}]},
        {"policies": [{"software_id": "P", "sections": [{"name": "Proxy", "Password": "swordfish"}]}]},
        {"policies": [{"software_id": "P", "Password": "swordfish"}]},
        {
            "policies": [
                {
                    "software_id": "P",
                    "sections": [{"name": "S", "settings": [{"name": "Password", "vaule": "swordfish"}]}],
                }
            ]
        },
        {"sections": [{"name": "Proxy", "values": {"Password": "swordfish"}}]},
        {"tasks": [{"software_id": "P", "task_id": "t", "values": ["swordfish"]}]},
    ],
)
def test_arguments_in_a_wrong_form_are_not_shown(change: Dict[str, Any]) -> None:
    given = {**arguments(["Password"]), **change}
    assert "swordfish" not in str(without_secrets(given))
    assert any("swordfish" in secret for secret in secrets_of(given))


@pytest.mark.parametrize("redact", [{"a": "b"}, [1], 7])
def test_patterns_that_cannot_be_read_hide_everything(redact: Any) -> None:
    shown = str(without_secrets(arguments(redact)))
    assert not [secret for secret in ("swordfish", "rosebud", "sesame", "'h'", "'o'") if secret in shown]


def test_patterns_in_one_text_are_read_as_the_engine_does() -> None:
    assert hiding_of({"redact": "a,b"}).hides(Place("P", None, "S", "b"))


@pytest.mark.parametrize(
    "mark, hidden", [(True, True), ("yes", True), ("maybe", True), (False, False), ("no", False), (None, False)]
)
def test_a_mark_that_is_not_clearly_off_hides(mark: Any, hidden: bool) -> None:
    setting = {"name": "Token", "value": "rosebud", "no_log": mark}
    given = {"policies": [{"software_id": "P", "sections": [{"name": "S", "settings": [setting]}]}]}
    assert ("rosebud" not in str(without_secrets(given))) is hidden


def test_the_longest_secret_is_scrubbed_first() -> None:
    given = {
        "redact": ["*"],
        "policies": [{"software_id": "P", "sections": [{"name": "S", "values": {"a": "x", "b": "xyz"}}]}],
    }
    assert scrub("is xyz", secrets_of(given)) == "is ***"
