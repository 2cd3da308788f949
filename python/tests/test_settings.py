"""Policies, sections and settings as mappings."""

from __future__ import annotations

import pathlib
from typing import Iterator

import pytest

import zupolicy

ODD = """<?xml version="1.0" encoding="UTF-8"?>
<PolicyFile><PolicyRoot version="1"><PolicyGroup Path="0_4"><Policy PathID="0_4" PolicyVersion="7">
<Product SoftwareID="P">
  <Section name="Twice"><Setting name="a">1</Setting><Setting name="a">2</Setting></Section>
  <Section name="Once"><Setting name="x">&lt;&amp;<!-- no --><![CDATA[<]]></Setting></Section>
  <Section name="Twice"><Setting name="b">3</Setting></Section>
  <Section name=""><Setting name="">empty</Setting></Section>
  <Section><Setting name="nameless">no</Setting></Section>
</Product></Policy></PolicyGroup></PolicyRoot><TaskRoot version="1"/></PolicyFile>
"""


@pytest.fixture
def file(policy_path: pathlib.Path) -> Iterator[zupolicy.File]:
    with zupolicy.open(policy_path) as opened:
        yield opened


@pytest.fixture
def policy(file: zupolicy.File) -> zupolicy.Policy:
    return file.policies["PRODUCTA1000"]


@pytest.fixture
def odd(tmp_path: pathlib.Path) -> zupolicy.Policy:
    path = tmp_path / "odd.xml"
    path.write_text(ODD, encoding="utf-8")
    with zupolicy.open(path) as opened:
        return opened.policies["P"]


def test_a_policy_maps_names_to_sections_in_file_order(policy: zupolicy.Policy) -> None:
    assert list(policy) == ["General", "Exclusions", "Notify"]
    assert len(policy) == 3
    assert "Notify" in policy and "notify" not in policy and 7 not in policy
    assert policy["General"].name == "General"


def test_a_section_maps_names_to_texts_in_file_order(policy: zupolicy.Policy) -> None:
    assert list(policy["General"].items()) == [
        ("Enabled", "1"),
        ("ScanInterval", "60"),
        ("Greeting", "Grüß Gott & willkommen"),
        ("GreetingJa", "ようこそ"),
    ]
    assert list(policy["General"]) == ["Enabled", "ScanInterval", "Greeting", "GreetingJa"]
    assert len(policy["General"]) == 4
    assert policy["Notify"]["Message"] == "<b>Fertig!</b> & weiter 🚀"
    assert policy["General"].to_dict() == dict(policy["General"])
    assert policy.to_dict()["Exclusions"]["Path1"] == "/srv/共有/一時"


def test_equal_sections_are_merged_and_the_first_of_equal_settings_counts(odd: zupolicy.Policy) -> None:
    assert odd.to_dict() == {"Twice": {"a": "1", "b": "3"}, "Once": {"x": "<&<"}, "": {"": "empty"}}


@pytest.mark.parametrize("name", ["None", "no\0ne", "\ud800", "🗓", ""])
def test_a_missing_name_is_a_key_error_that_names_it(policy: zupolicy.Policy, name: str) -> None:
    for use in (
        lambda: policy[name],
        lambda: policy["General"][name],
        lambda: policy["General"].expanded(name),
        lambda: policy.stored(name, "x"),
        lambda: policy.remove("General", name),
        lambda: policy.__delitem__(name),
    ):
        with pytest.raises(KeyError) as caught:
            use()
        assert isinstance(caught.value, zupolicy.NotFound)
        assert caught.value.code_name in ("SectionNotFound", "SettingNotFound")
        assert repr(name) in str(caught.value) or repr(name) in ascii(str(caught.value))
    assert policy.get(name) is None
    assert policy["General"].get(name, "default") == "default"
    assert not policy.changed


@pytest.mark.parametrize(
    "text",
    ["", " a ", "line\nline", "𝔘 🗓", "]]>", "%WINDIR%", "\t", "🗓x" * 50000],
    ids=lambda text: ascii(text)[:20],
)
def test_what_is_put_is_read_again(policy: zupolicy.Policy, text: str) -> None:
    policy["General"]["ScanInterval"] = text
    assert policy["General"]["ScanInterval"] == text


@pytest.mark.parametrize("bad", ["a\0b", "\ud800", "\udfff\ud800", "\x01", "\ufffe"])
def test_what_xml_cannot_hold_is_a_value_error_and_changes_nothing(policy: zupolicy.Policy, bad: str) -> None:
    before = policy.to_dict()
    for use in (
        lambda: policy.put("General", "ScanInterval", bad),
        lambda: policy.put("General", bad, "x"),
        lambda: policy.put(bad, "x", "x"),
    ):
        with pytest.raises(ValueError) as caught:
            use()
        assert isinstance(caught.value, zupolicy.InvalidText)
    assert policy.to_dict() == before
    assert not policy.changed


@pytest.mark.parametrize("value", [15, None, b"15"])
def test_a_value_that_is_no_text_is_a_type_error(policy: zupolicy.Policy, value: object) -> None:
    with pytest.raises(TypeError):
        policy["General"]["ScanInterval"] = value  # type: ignore[assignment]
    with pytest.raises(TypeError):
        policy["General"] = {"ScanInterval": value}  # type: ignore[dict-item]
    assert policy["General"]["ScanInterval"] == "60"


def test_a_macro_is_stored_as_it_is_and_expanded_on_request(policy: zupolicy.Policy) -> None:
    section = policy["General"]
    section["Folder"] = "<%SoftwareID%>"
    assert section["Folder"] == "<%SoftwareID%>"
    assert section.expanded("Folder") == policy.expanded("General", "Folder")


def test_a_section_is_created_by_its_first_setting(policy: zupolicy.Policy) -> None:
    section = policy.section("New")
    assert len(section) == 0 and "New" not in policy
    section["a"] = "1"
    assert policy["New"] == {"a": "1"}


def test_assigning_a_mapping_makes_the_section_hold_exactly_that(policy: zupolicy.Policy) -> None:
    policy["General"] = {"Enabled": "1", "ScanInterval": "15", "Added": "x"}
    assert policy["General"] == {"Enabled": "1", "ScanInterval": "15", "Added": "x"}
    policy["Empty"] = {}
    assert policy["Empty"] == {} and "Empty" in policy
    policy["General"] = policy["General"]
    assert len(policy["General"]) == 3


def test_replace_makes_the_policy_hold_exactly_that(policy: zupolicy.Policy) -> None:
    policy.replace({"General": {"Enabled": "0"}, "Other": {"a": "b"}})
    assert policy.to_dict() == {"General": {"Enabled": "0"}, "Other": {"a": "b"}}


def test_deleting_removes_all_of_a_name(odd: zupolicy.Policy) -> None:
    del odd["Twice"]["a"]
    assert odd["Twice"] == {"b": "3"}
    del odd["Twice"]
    assert list(odd) == ["Once", ""]


def test_the_mixed_in_methods_work(policy: zupolicy.Policy) -> None:
    section = policy["General"]
    assert section.pop("Enabled") == "1"
    section.update({"ScanInterval": "5"}, Greeting="Hallo")
    assert section.setdefault("GreetingJa", "no") == "ようこそ"
    assert section == {"ScanInterval": "5", "Greeting": "Hallo", "GreetingJa": "ようこそ"}
    assert list(section.values()) == ["5", "Hallo", "ようこそ"]
    section.clear()
    assert len(section) == 0 and "General" in policy
    policy.clear()
    assert list(policy) == []


def test_a_view_of_a_removed_section_is_empty(policy: zupolicy.Policy) -> None:
    section = policy["General"]
    del policy["General"]
    assert dict(section) == {} and list(section.items()) == []


def test_two_policies_with_the_same_settings_are_two(file: zupolicy.File) -> None:
    first, second = file.policies.create("A"), file.policies.create("B")
    assert first != second
    assert len({first, second}) == 2


def test_a_policy_has_the_version_that_it_was_taken_with(file: zupolicy.File, policy: zupolicy.Policy) -> None:
    assert policy.version == "20240311081500"
    assert file.policies["PRODUCTC3000"].version == "20231120174210"
    assert file.policies.create("NEW").version == ""


def test_a_policy_is_xml_too(policy: zupolicy.Policy) -> None:
    assert "<!-- Scanner" not in policy.to_xml()
    assert '<Setting name="ScanInterval">60</Setting>' in policy.to_xml()


def test_representations_name_what_they_show(policy: zupolicy.Policy) -> None:
    assert repr(policy) == "<zupolicy.Policy 'PRODUCTA1000'>"
    assert repr(policy["General"]) == "<zupolicy.Section 'General' of <zupolicy.Policy 'PRODUCTA1000'>>"


def test_what_xml_cannot_hold_is_refused_before_anything_changes(file: zupolicy.File) -> None:
    policy = file.policies["PRODUCTA1000"]
    before = policy.to_dict()
    for bad in ("b\0", "\ud800", "\x1f", "\uffff"):
        with pytest.raises(zupolicy.InvalidText):
            file.policies["PRODUCTA1000"] = {"General": {"a": "1"}, "X": {"b": bad}}  # type: ignore[assignment]
        with pytest.raises(zupolicy.InvalidText):
            policy.replace({"General": {"a": "1"}, "X": {bad: "b"}})
        with pytest.raises(zupolicy.InvalidText):
            policy["Notify"] = {"a": "1", "b": bad}  # type: ignore[assignment]
        assert policy.to_dict() == before
