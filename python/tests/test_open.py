"""Opening and closing a policy file."""

from __future__ import annotations

import os
import pathlib
import pickle
import shutil
from typing import Callable

import pytest

import zupolicy


def test_a_file_says_what_it_is(policy_path: pathlib.Path) -> None:
    with zupolicy.open(policy_path) as file:
        assert file.path == str(policy_path)
        assert (file.closed, file.read_only, file.locked, file.modified) == (False, False, False, False)
        assert file.policy_version == "20240311081500"
        assert file.task_version == "20240402060000"
        assert file.assignment_list == "all;site=süd"
        assert repr(file) == f"<zupolicy.File {str(policy_path)!r}>"


def test_a_missing_file_is_a_file_not_found_error(tmp_path: pathlib.Path) -> None:
    with pytest.raises(FileNotFoundError) as caught:
        zupolicy.open(tmp_path / "nothing.xml")
    error = caught.value
    assert isinstance(error, zupolicy.FileMissing)
    assert (error.code_name, error.sentence) == ("FileNotFound", "The file does not exist.")
    assert error.errno == 2
    assert error.file == error.filename == str(tmp_path / "nothing.xml")
    assert str(error) == f"{error.file}: The file does not exist."
    copy = pickle.loads(pickle.dumps(error))
    assert (copy.errno, copy.filename, str(copy)) == (2, error.filename, str(error))


def test_every_failure_about_a_file_names_it(policy_path: pathlib.Path, tmp_path: pathlib.Path) -> None:
    with zupolicy.open(policy_path) as file:
        calls: "list[tuple[Callable[[], object], pathlib.Path]]" = [
            (lambda: zupolicy.open(tmp_path), tmp_path),
            (lambda: zupolicy.open(tmp_path / "none", lock=True), tmp_path / "none"),
            (lambda: file.tasks["PRODUCTA1000", "{task-1}"].export_ini(tmp_path), tmp_path),
            (lambda: file.save_as(tmp_path), tmp_path),
        ]
        for call, path in calls:
            with pytest.raises(zupolicy.Error) as caught:
                call()
            assert caught.value.file == str(path)
        policy_path.unlink()
        for lost in (file.save, file.reload):
            with pytest.raises(zupolicy.Error) as caught:
                lost()
            assert caught.value.file == str(policy_path)


def test_a_malformed_file_says_where(tmp_path: pathlib.Path) -> None:
    path = tmp_path / "a:7:b.xml"
    path.write_text("<PolicyFile>\n  <PolicyRoot>\n</PolicyFile>\n", encoding="utf-8")
    with pytest.raises(zupolicy.ParseError) as caught:
        zupolicy.open(path)
    error = caught.value
    assert (error.code, error.code_name, error.sentence) == (-1106, "SyntaxError", "The XML text could not be parsed.")
    assert (error.file, error.line) == (str(path), 3)
    assert error.column is not None and error.column > 0
    assert str(error) == error.message == f"{path}:{error.line}:{error.column}: mismatched tag"


def test_bytes_that_are_not_valid_in_their_encoding_are_a_parse_error(tmp_path: pathlib.Path) -> None:
    path = tmp_path / "policy.xml"
    path.write_bytes(b'<?xml version="1.0" encoding="UTF-8"?>\n<PolicyFile>\xff</PolicyFile>\n')
    with pytest.raises(zupolicy.ParseError) as caught:
        zupolicy.open(path)
    assert (caught.value.code_name, caught.value.line) == ("NotValidInItsEncoding", 2)


def test_an_error_survives_pickling(tmp_path: pathlib.Path) -> None:
    for error in (zupolicy.Changed(-1302), zupolicy.LibraryNotFound(message="gone"), zupolicy.NotFound(-1207, "no")):
        copy = pickle.loads(pickle.dumps(error))
        assert (type(copy), copy.code, str(copy)) == (type(error), error.code, str(error))


def test_an_unknown_code_has_a_number_for_a_name() -> None:
    assert zupolicy.Error(-2147467259 + 1).code_name == "0x80004006"


@pytest.mark.parametrize("path", [b"policy.xml", 7, None])
def test_a_path_that_is_no_text_is_a_type_error(path: object) -> None:
    with pytest.raises(TypeError):
        zupolicy.open(path)  # type: ignore[arg-type]


def test_a_path_with_a_null_is_a_value_error() -> None:
    with pytest.raises(ValueError, match="null"):
        zupolicy.open("policy.xml\0")


def test_a_path_that_is_no_text_for_the_system_is_refused(tmp_path: pathlib.Path) -> None:
    path = os.path.join(os.fsencode(tmp_path), b"\xff.xml")
    with open(path, "wb") as output:
        output.write(b"<PolicyFile/>")
    with pytest.raises(zupolicy.Error) as caught:
        zupolicy.open(os.fsdecode(path))
    assert caught.value.code_name == "InvalidName"


def test_a_path_beyond_the_first_plane_is_opened(policy_path: pathlib.Path) -> None:
    path = policy_path.with_name("Richtlinie 🗓 定期.xml")
    shutil.copyfile(policy_path, path)
    with zupolicy.open(path) as file:
        assert file.policies["PRODUCTA1000"]["General"]["ScanInterval"] == "60"


def test_a_relative_path_means_the_same_after_a_change_of_the_folder(
    policy_path: pathlib.Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    monkeypatch.chdir(policy_path.parent)
    with zupolicy.open("policy.xml") as file:
        monkeypatch.chdir("/")
        file.reload()
        assert file.path == str(policy_path)


def test_leaving_the_block_closes_the_file(policy_path: pathlib.Path) -> None:
    with zupolicy.open(policy_path) as file:
        pass
    assert file.closed
    assert repr(file).endswith(" closed>")


def test_closing_again_does_nothing(policy_path: pathlib.Path) -> None:
    file = zupolicy.open(policy_path)
    file.close()
    file.close()
    assert file.closed


USES = {
    "policies": lambda file: file.policies,
    "tasks": lambda file: file.tasks,
    "policy_version": lambda file: file.policy_version,
    "task_version": lambda file: file.task_version,
    "assignment_list": lambda file: file.assignment_list,
    "notices": lambda file: file.notices,
    "changed_on_disk": lambda file: file.changed_on_disk,
    "to_xml": lambda file: file.to_xml(),
    "commit": lambda file: file.commit(),
    "save": lambda file: file.save(),
    "save_as": lambda file: file.save_as("other.xml"),
    "reload": lambda file: file.reload(),
    "edit": lambda file: file.edit().__enter__(),
    "enter": lambda file: file.__enter__(),
    "put": lambda file: file.put(None),
}


@pytest.mark.parametrize("use", sorted(USES))
def test_a_closed_file_raises_value_error(policy_path: pathlib.Path, use: str) -> None:
    file = zupolicy.open(policy_path)
    file.close()
    with pytest.raises(ValueError, match="closed"):
        USES[use](file)


def test_collections_of_a_closed_file_raise_value_error(policy_path: pathlib.Path) -> None:
    with zupolicy.open(policy_path) as file:
        policies, tasks = file.policies, file.tasks
        policy = policies["PRODUCTA1000"]
    for use in (
        lambda: len(policies),
        lambda: policies["PRODUCTA1000"],
        lambda: policies.create("NEW"),
        lambda: list(tasks),
        lambda: tasks["PRODUCTA1000", "{task-1}"],
        policy.commit,
    ):
        with pytest.raises(ValueError, match="closed"):
            use()


def test_a_policy_may_be_read_after_its_file_is_closed(policy_path: pathlib.Path) -> None:
    with zupolicy.open(policy_path) as file:
        policy = file.policies["PRODUCTA1000"]
    policy["General"]["ScanInterval"] = "15"
    assert policy["General"]["ScanInterval"] == "15"
    assert policy.changed
