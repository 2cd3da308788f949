"""The policies of a file, and what becomes of changes."""

from __future__ import annotations

import gc
import pathlib
from typing import Iterator

import pytest

import zupolicy


@pytest.fixture
def file(policy_path: pathlib.Path) -> Iterator[zupolicy.File]:
    with zupolicy.open(policy_path) as opened:
        yield opened


def test_the_policies_are_in_file_order(file: zupolicy.File) -> None:
    assert list(file.policies) == ["PRODUCTA1000", "PRODUCTB2000", "PRODUCTC3000"]
    assert len(file.policies) == 3
    assert [policy.software_id for policy in file.policies.values()] == list(file.policies)


def test_a_missing_policy_is_a_key_error(file: zupolicy.File) -> None:
    with pytest.raises(KeyError) as caught:
        file.policies["NONE"]
    assert isinstance(caught.value, zupolicy.NotFound)
    assert caught.value.code_name == "PolicyNotFound"
    assert "'NONE'" in str(caught.value) and file.path in str(caught.value)
    with pytest.raises(KeyError):
        del file.policies["NONE"]
    assert "NONE" not in file.policies and file.policies.get("NONE") is None
    assert 7 not in file.policies


def test_looking_a_policy_up_again_gives_the_same_object(file: zupolicy.File) -> None:
    policy = file.policies["PRODUCTA1000"]
    assert file.policies["PRODUCTA1000"] is policy
    assert policy.file is file


def test_a_change_is_kept_although_nobody_holds_the_policy(file: zupolicy.File) -> None:
    file.policies["PRODUCTA1000"]["General"]["ScanInterval"] = "15"
    gc.collect()
    assert file.policies["PRODUCTA1000"]["General"]["ScanInterval"] == "15"
    assert file.modified


def test_reading_is_no_change(file: zupolicy.File) -> None:
    for policy in file.policies.values():
        policy.to_dict()
        assert not policy.changed
    assert not file.modified


def test_changes_are_handed_back_in_their_order(file: zupolicy.File) -> None:
    file.policies["PRODUCTB2000"]["General"]["Enabled"] = "7"
    file.policies["PRODUCTA1000"]["General"]["Enabled"] = "8"
    file.policies["PRODUCTB2000"]["General"]["LogLevel"] = "9"
    handed = []
    put = file.put

    def record(entry: zupolicy.Policy) -> None:
        handed.append(entry.software_id)
        put(entry)

    file.put = record  # type: ignore[assignment, method-assign]
    file.commit()
    assert handed == ["PRODUCTB2000", "PRODUCTA1000"]
    assert '<Setting name="LogLevel">9</Setting>' in file.to_xml()


def test_committing_a_policy_hands_back_that_one_alone(file: zupolicy.File) -> None:
    first, second = file.policies["PRODUCTA1000"], file.policies["PRODUCTB2000"]
    first["General"]["Enabled"] = second["General"]["Enabled"] = "x"
    first.commit()
    assert (first.changed, second.changed) == (False, True)
    assert file.modified
    file.commit()
    assert not second.changed


def test_a_policy_is_created(file: zupolicy.File) -> None:
    policy = file.policies.create("NEW", {"General": {"a": "1"}})
    policy["General"]["b"] = "2"
    assert file.policies["NEW"] is policy
    assert "NEW" in list(file.policies)
    text = file.to_xml()
    assert 'SoftwareID="NEW"' in text and '<Setting name="b">2</Setting>' in text


def test_a_policy_is_not_created_twice(file: zupolicy.File) -> None:
    with pytest.raises(ValueError, match="already"):
        file.policies.create("PRODUCTA1000")


@pytest.mark.parametrize("software_id", ["a\0b", "\ud800"])
def test_a_policy_whose_id_xml_cannot_hold_is_not_created(file: zupolicy.File, software_id: str) -> None:
    with pytest.raises(zupolicy.InvalidText):
        file.policies.create(software_id)
    assert len(file.policies) == 3


def test_assigning_a_mapping_replaces_or_creates_a_policy(file: zupolicy.File) -> None:
    file.policies["PRODUCTA1000"] = {"General": {"Enabled": "1"}}
    file.policies["NEW"] = file.policies["PRODUCTA1000"]
    file.policies["PRODUCTA1000"]["General"]["Enabled"] = "0"
    assert file.policies["NEW"].to_dict() == {"General": {"Enabled": "1"}}
    assert file.policies["PRODUCTA1000"].to_dict() == {"General": {"Enabled": "0"}}


def test_a_policy_that_is_removed_while_held_stays_readable(file: zupolicy.File) -> None:
    policy = file.policies["PRODUCTA1000"]
    policy["General"]["ScanInterval"] = "15"
    del file.policies["PRODUCTA1000"]
    assert policy.file is None
    assert policy["General"]["ScanInterval"] == "15"
    policy["General"]["ScanInterval"] = "16"
    with pytest.raises(ValueError, match="no file"):
        policy.commit()
    file.commit()
    assert "PRODUCTA1000" not in file.policies
    file.put(policy)
    assert policy.file is file and not policy.changed
    assert file.policies["PRODUCTA1000"] is policy
    assert policy["General"]["ScanInterval"] == "16"


def test_popping_a_policy_removes_it(file: zupolicy.File) -> None:
    policy = file.policies.pop("PRODUCTB2000")
    assert policy["General"]["LogLevel"] == "3"
    assert list(file.policies) == ["PRODUCTA1000", "PRODUCTC3000"]


def test_a_policy_goes_into_another_file(file: zupolicy.File, tmp_path: pathlib.Path) -> None:
    file.save_as(tmp_path / "other.xml")
    policy = file.policies["PRODUCTA1000"]
    policy["General"]["ScanInterval"] = "15"
    with zupolicy.open(tmp_path / "other.xml") as other:
        replaced = other.policies["PRODUCTA1000"]
        other.put(policy)
        assert replaced.file is None
        assert other.policies["PRODUCTA1000"] is not policy
        assert other.policies["PRODUCTA1000"]["General"]["ScanInterval"] == "15"
    assert policy.file is file and policy.changed


def test_changes_of_a_read_only_file_cannot_be_handed_back(policy_path: pathlib.Path) -> None:
    with zupolicy.open(policy_path, read_only=True) as file:
        policy = file.policies["PRODUCTA1000"]
        policy["General"]["ScanInterval"] = "15"
        for use in (file.commit, policy.commit, file.save, lambda: file.policies.create("NEW")):
            with pytest.raises(zupolicy.ReadOnly):
                use()
        with pytest.raises(zupolicy.ReadOnly):
            del file.policies["PRODUCTA1000"]
        assert policy.changed
        assert file.policies["PRODUCTA1000"] is policy


def test_a_read_only_file_with_changed_copies_can_be_read(policy_path: pathlib.Path) -> None:
    with zupolicy.open(policy_path, read_only=True) as file:
        before = file.to_xml()
        listed = file.policies.to_dict()
        file.policies["PRODUCTA1000"]["General"]["ScanInterval"] = "15"
        file.tasks["PRODUCTA1000", "{task-1}"].display_name = "New"
        assert file.to_xml() == before
        listed["PRODUCTA1000"]["General"]["ScanInterval"] = "15"
        assert file.policies.to_dict() == listed == {name: policy.to_dict() for name, policy in file.policies.items()}


def test_the_document_has_the_changes(file: zupolicy.File) -> None:
    file.policies["PRODUCTA1000"]["General"]["Greeting"] = "a < b"
    assert '<Setting name="Greeting">a &lt; b</Setting>' in file.to_xml()


def test_only_a_policy_or_a_task_is_put_into_a_file(file: zupolicy.File) -> None:
    for thing in (None, {"General": {}}, file.policies["PRODUCTA1000"]["General"]):
        with pytest.raises(TypeError, match="Policy or a Task"):
            file.put(thing)  # type: ignore[arg-type]
