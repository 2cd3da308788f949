"""The tasks of a file."""

from __future__ import annotations

import pathlib
from typing import Iterator

import pytest

import zupolicy

KEYS = [("PRODUCTA1000", "{task-1}"), ("PRODUCTA1000", "{task-2}"), ("PRODUCTB2000", "{task-1}")]

#: Texts that XML cannot hold.
_NO_XML = ["a\0b", "\x1b", "\ud800", "\ufffe"]


@pytest.fixture
def file(policy_path: pathlib.Path) -> Iterator[zupolicy.File]:
    with zupolicy.open(policy_path) as opened:
        yield opened


def test_iterating_gives_the_tasks(file: zupolicy.File) -> None:
    assert [task.key for task in file.tasks] == file.tasks.keys() == KEYS
    assert len(file.tasks) == 3
    assert file.tasks.software_ids() == ["PRODUCTA1000", "PRODUCTB2000"]
    assert [task.id for task in file.tasks.of("PRODUCTA1000")] == ["{task-1}", "{task-2}"]
    assert file.tasks.of("NONE") == []


def test_a_task_has_its_fields(file: zupolicy.File) -> None:
    task = file.tasks["PRODUCTA1000", "{task-2}"]
    assert (task.software_id, task.id, task.display_name) == ("PRODUCTA1000", "{task-2}", "定期更新 🗓")
    assert (task.type, task.creator_id, task.platforms, task.priority) == ("Update", "SITEADMIN", "WIN", -2)
    assert task.version == "20240215120000"
    assert task.to_dict() == {"Schedule": {"Weekday": "Mo"}}
    assert repr(task) == "<zupolicy.Task 'PRODUCTA1000', '{task-2}'>"


def test_a_missing_task_is_a_key_error(file: zupolicy.File) -> None:
    with pytest.raises(KeyError) as caught:
        file.tasks["PRODUCTA1000", "none"]
    assert isinstance(caught.value, zupolicy.NotFound) and caught.value.code_name == "TaskNotFound"
    with pytest.raises(KeyError):
        del file.tasks["PRODUCTA1000", "none"]
    assert file.tasks.get(("PRODUCTA1000", "none")) is None
    assert file.tasks.get(("PRODUCTA1000", "none"), 7) == 7
    assert ("PRODUCTA1000", "none") not in file.tasks
    assert KEYS[0] in file.tasks and file.tasks[KEYS[0]] in file.tasks
    assert "PRODUCTA1000" not in file.tasks and (1, 2) not in file.tasks


def test_looking_a_task_up_again_gives_the_same_object(file: zupolicy.File) -> None:
    task = file.tasks[KEYS[0]]
    assert file.tasks[KEYS[0]] is task and next(iter(file.tasks)) is task


def test_changed_fields_and_settings_are_handed_back(file: zupolicy.File) -> None:
    task = file.tasks[KEYS[0]]
    assert not task.changed
    task.display_name = "New name"
    task.type, task.creator_id, task.platforms, task.priority = "T", "C", "P", 2147483647
    task["Schedule"]["Hour"] = "3"
    assert task.changed and file.modified
    text = file.to_xml()
    assert 'DisplayName="New name"' in text and 'TaskPriority="2147483647"' in text
    assert '<Setting name="Hour">3</Setting>' in text


@pytest.mark.parametrize("priority", [1 << 31, -(1 << 31) - 1])
def test_a_priority_beyond_32_bits_is_refused(file: zupolicy.File, priority: int) -> None:
    task = file.tasks[KEYS[0]]
    with pytest.raises(OverflowError):
        task.priority = priority
    assert task.priority == 5 and not task.changed


def test_a_field_that_is_no_text_is_a_type_error(file: zupolicy.File) -> None:
    task = file.tasks[KEYS[0]]
    with pytest.raises(TypeError):
        task.display_name = 7  # type: ignore[assignment]
    assert not task.changed


def test_a_task_is_created(file: zupolicy.File) -> None:
    task = file.tasks.create("NEW", "{1}", display_name="Name", priority=3, sections={"Schedule": {"Hour": "4"}})
    assert task.file is file and not task.changed
    assert file.tasks["NEW", "{1}"] is task
    assert (task.type, task.creator_id, task.platforms, task.priority) == ("", "", "", 3)
    assert file.tasks.keys()[-1] == ("NEW", "{1}")
    assert 'DisplayName="Name"' in file.to_xml()
    with pytest.raises(ValueError, match="already"):
        file.tasks.create("NEW", "{1}")


def test_a_task_that_xml_cannot_hold_is_not_created(file: zupolicy.File) -> None:
    for text in _NO_XML:
        with pytest.raises(zupolicy.InvalidText):
            file.tasks.create("NEW", text)
        with pytest.raises(zupolicy.InvalidText):
            file.tasks.create(text, "{1}")
        with pytest.raises(zupolicy.InvalidText):
            file.tasks.create("NEW", "{1}", platforms=text)
    assert file.tasks.keys() == KEYS and not file.modified


@pytest.mark.parametrize("field", ["display_name", "type", "creator_id", "platforms"])
def test_a_field_that_xml_cannot_hold_is_refused_at_the_assignment(file: zupolicy.File, field: str) -> None:
    task = file.tasks[KEYS[0]]
    before = getattr(task, field)
    for text in _NO_XML:
        with pytest.raises(zupolicy.InvalidText):
            setattr(task, field, text)
    assert getattr(task, field) == before and not task.changed
    setattr(task, field, "\t\n é \ufffd \U0010ffff")
    assert task.changed
    file.commit()


def test_a_task_without_a_display_name_has_its_id_as_one(file: zupolicy.File) -> None:
    assert file.tasks.create("NEW", "{1}").display_name == "{1}"
    assert file.tasks.create("NEW", "{2}", display_name="").display_name == ""


def test_a_task_that_is_removed_while_held_stays_readable(file: zupolicy.File) -> None:
    task = file.tasks[KEYS[0]]
    task["Schedule"]["Hour"] = "3"
    del file.tasks[KEYS[0]]
    assert file.tasks.keys() == KEYS[1:]
    assert task.file is None and task["Schedule"]["Hour"] == "3" and task.display_name == "Nächtliche Prüfung"
    file.put(task)
    assert file.tasks[KEYS[0]] is task


def test_removing_tasks_while_iterating_skips_them(file: zupolicy.File) -> None:
    seen = []
    for task in file.tasks:
        seen.append(task.key)
        for key in KEYS[1:]:
            if key in file.tasks:
                del file.tasks[key]
    assert seen == KEYS[:1]


def test_a_task_is_exported_as_ini(file: zupolicy.File, tmp_path: pathlib.Path) -> None:
    path = tmp_path / "task.ini"
    file.tasks["PRODUCTB2000", "{task-1}"].export_ini(path)
    text = path.read_text(encoding="utf-8")
    assert "[Task]" in text and "TaskName=Inventory" in text and "AtStart=1" in text


def test_a_task_is_xml_too(file: zupolicy.File) -> None:
    assert 'TaskID="{task-1}"' in file.tasks[KEYS[0]].to_xml()
