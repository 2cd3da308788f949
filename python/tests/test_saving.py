"""Writing the file, alone and beside others."""

from __future__ import annotations

import os
import pathlib
import subprocess
import time
from collections import Counter
from typing import Iterator

import pytest

import zupolicy
from conftest import RunScript, start_script

_CHANGE = """
with zupolicy.open(arguments[0]) as file:
    file.policies["PRODUCTB2000"]["General"]["LogLevel"] = arguments[1]
    file.save()
"""

_HOLD = """
with zupolicy.open(arguments[0], lock=True) as file:
    print("locked", flush=True)
    sys.stdin.readline()
    file.policies["PRODUCTB2000"]["General"]["LogLevel"] = "5"
    file.save()
    print("saved", flush=True)
"""


@pytest.fixture
def holder(policy_path: pathlib.Path) -> "Iterator[subprocess.Popen[str]]":
    """Another process that holds the lock until a line is sent to it."""
    process = start_script(_HOLD, policy_path)
    assert process.stdout is not None and process.stdout.readline() == "locked\n"
    yield process
    process.kill()
    process.communicate()


def _interval(path: pathlib.Path) -> str:
    with zupolicy.open(path, read_only=True) as file:
        return file.policies["PRODUCTA1000"]["General"]["ScanInterval"]


def _level(path: pathlib.Path) -> str:
    with zupolicy.open(path, read_only=True) as file:
        return file.policies["PRODUCTB2000"]["General"]["LogLevel"]


def test_a_change_is_saved_and_the_rest_stays_byte_for_byte(policy_path: pathlib.Path) -> None:
    before = Counter(policy_path.read_text(encoding="utf-16").splitlines())
    with zupolicy.open(policy_path) as file:
        file.policies["PRODUCTA1000"]["General"]["ScanInterval"] = "15"
        file.save()
        assert not file.modified
    after = Counter(policy_path.read_text(encoding="utf-16").splitlines())
    # The changed policy is the last one of its group now; its own lines and all others are the same.
    gone = [line.split(">")[0].strip() for line in (before - after).elements()]
    new = [line.strip() for line in (after - before).elements()]
    assert sorted(line.partition(" ")[0] for line in gone) == ["<Policy", "<PolicyRoot", "<Setting"]
    assert len(new) == 3 and '<Setting name="ScanInterval">15</Setting>' in new


def test_a_file_is_saved_again_and_again(policy_path: pathlib.Path) -> None:
    with zupolicy.open(policy_path) as file:
        for interval in ("1", "2", "3"):
            file.policies["PRODUCTA1000"]["General"]["ScanInterval"] = interval
            file.save()
            assert not file.changed_on_disk
            assert _interval(policy_path) == interval


def test_an_exception_in_the_block_writes_nothing(policy_path: pathlib.Path) -> None:
    before = policy_path.read_bytes()
    with pytest.raises(ZeroDivisionError):
        with zupolicy.open(policy_path, lock=True) as file:
            file.policies["PRODUCTA1000"]["General"]["ScanInterval"] = str(1 // 0)
    with pytest.raises(ZeroDivisionError):
        with zupolicy.open(policy_path) as file:
            file.policies["PRODUCTA1000"]["General"]["ScanInterval"] = "15"
            file.save_as(str(1 // 0))
    assert policy_path.read_bytes() == before
    assert file.closed


def test_a_foreign_change_is_noticed_and_kept(policy_path: pathlib.Path, run_script: RunScript) -> None:
    with zupolicy.open(policy_path) as file:
        file.policies["PRODUCTA1000"]["General"]["ScanInterval"] = "15"
        assert not file.changed_on_disk
        run_script(_CHANGE, policy_path, "9")
        assert file.changed_on_disk
        before = policy_path.read_bytes()
        with pytest.raises(zupolicy.Changed) as caught:
            file.save()
        assert caught.value.code_name == "FileChanged"
        assert policy_path.read_bytes() == before
        assert file.modified
        file.reload()
        assert not file.modified
        file.policies["PRODUCTA1000"]["General"]["ScanInterval"] = "15"
        file.save()
    assert (_interval(policy_path), _level(policy_path)) == ("15", "9")


def test_a_removed_file_counts_as_changed(policy_path: pathlib.Path) -> None:
    with zupolicy.open(policy_path) as file:
        file.policies["PRODUCTA1000"]["General"]["ScanInterval"] = "15"
        policy_path.unlink()
        assert file.changed_on_disk
        with pytest.raises(zupolicy.Changed):
            file.save()
        assert not policy_path.exists()
        file.save_as(policy_path)
    assert _interval(policy_path) == "15"


def test_saving_does_not_get_past_the_lock_of_another_process(
    policy_path: pathlib.Path, holder: "subprocess.Popen[str]"
) -> None:
    before = policy_path.read_bytes()
    with zupolicy.open(policy_path) as file:
        file.policies["PRODUCTA1000"]["General"]["ScanInterval"] = "15"
        begin = time.monotonic()
        with pytest.raises(zupolicy.Locked):
            file.save(timeout=0.5)
        assert time.monotonic() - begin >= 0.45
        assert policy_path.read_bytes() == before and file.modified


def test_opening_with_a_lock_waits_for_another_process(
    policy_path: pathlib.Path, holder: "subprocess.Popen[str]"
) -> None:
    with pytest.raises(zupolicy.Locked):
        zupolicy.open(policy_path, lock=True, timeout=0)
    assert holder.stdin is not None
    holder.stdin.write("\n")
    holder.stdin.flush()
    with zupolicy.open(policy_path, lock=True, timeout=None) as file:
        assert file.locked
        file.policies["PRODUCTA1000"]["General"]["ScanInterval"] = "15"
        file.save()
        assert not file.locked and not file.modified
    assert (_interval(policy_path), _level(policy_path)) == ("15", "5")


def test_a_lock_ends_with_the_file(policy_path: pathlib.Path) -> None:
    first = zupolicy.open(policy_path, lock=True)
    with pytest.raises(zupolicy.Locked):
        zupolicy.open(policy_path, lock=True, timeout=0)
    first.close()
    with zupolicy.open(policy_path, lock=True, timeout=0) as second:
        assert second.locked


def test_a_lock_ends_when_nobody_holds_the_file_any_more(policy_path: pathlib.Path) -> None:
    file = zupolicy.open(policy_path, lock=True)
    assert file.locked
    del file
    with zupolicy.open(policy_path, lock=True, timeout=0):
        pass


def test_a_lock_ends_with_a_reload(policy_path: pathlib.Path) -> None:
    with zupolicy.open(policy_path, lock=True) as file:
        file.reload()
        assert not file.locked
        with zupolicy.open(policy_path, lock=True, timeout=0):
            pass


def test_editing_loads_the_file_again_under_the_lock(policy_path: pathlib.Path, run_script: RunScript) -> None:
    with zupolicy.open(policy_path) as file:
        held = file.policies["PRODUCTA1000"]
        run_script(_CHANGE, policy_path, "9")
        with file.edit(timeout=5) as same:
            assert same is file and file.locked
            assert held.file is None
            assert file.policies["PRODUCTB2000"]["General"]["LogLevel"] == "9"
            file.policies["PRODUCTA1000"]["General"]["ScanInterval"] = "15"
            file.save()
        assert not file.locked
        with file.edit():
            assert file.locked
        assert not file.locked
        with zupolicy.open(policy_path, lock=True, timeout=0):
            pass
    assert _interval(policy_path) == "15"


def test_editing_refuses_to_forget_changes(policy_path: pathlib.Path) -> None:
    with zupolicy.open(policy_path) as file:
        file.policies["PRODUCTA1000"]["General"]["ScanInterval"] = "15"
        with pytest.raises(ValueError, match="not saved"):
            with file.edit():
                pass
        assert file.policies["PRODUCTA1000"]["General"]["ScanInterval"] == "15"


def test_an_edit_whose_file_is_closed_inside_ends_quietly(policy_path: pathlib.Path) -> None:
    with zupolicy.open(policy_path) as file:
        with file.edit():
            file.close()
    assert file.closed


def test_a_read_only_file_is_not_locked_for_editing(policy_path: pathlib.Path) -> None:
    with pytest.raises(ValueError, match="read-only"):
        zupolicy.open(policy_path, read_only=True, lock=True)
    with zupolicy.open(policy_path, read_only=True) as file:
        with pytest.raises(zupolicy.ReadOnly) as caught:
            with file.edit():
                pass
        assert caught.value.file == str(policy_path)


def test_saving_as_leaves_the_opened_file_alone(policy_path: pathlib.Path, tmp_path: pathlib.Path) -> None:
    before = policy_path.read_bytes()
    other = tmp_path / "other.xml"
    with zupolicy.open(policy_path) as file:
        file.policies["PRODUCTA1000"]["General"]["ScanInterval"] = "15"
        file.save_as(other)
        assert file.path == str(policy_path) and file.modified
    assert policy_path.read_bytes() == before
    assert _interval(other) == "15"


def test_saving_into_a_missing_folder_is_an_error(policy_path: pathlib.Path, tmp_path: pathlib.Path) -> None:
    with zupolicy.open(policy_path) as file:
        with pytest.raises(FileNotFoundError) as caught:
            file.save_as(tmp_path / "none" / "policy.xml")
        assert caught.value.filename == str(tmp_path / "none" / "policy.xml")


def test_a_file_that_cannot_be_loaded_again_holds_nothing(policy_path: pathlib.Path) -> None:
    with zupolicy.open(policy_path) as file:
        content = policy_path.read_bytes()
        policy_path.unlink()
        with pytest.raises(zupolicy.FileMissing):
            file.reload()
        for use in (lambda: list(file.policies), file.to_xml, file.save):
            with pytest.raises(zupolicy.Error) as caught:
                use()
            assert caught.value.code_name == "NotInitialised"
        policy_path.write_bytes(content)
        file.reload()
        assert len(file.policies) == 3


def test_a_folder_that_takes_no_file_is_an_error_and_the_file_stays(policy_path: pathlib.Path) -> None:
    if os.geteuid() == 0:
        target = "/proc/policy.xml"
    else:
        target = "/policy.xml"
    with zupolicy.open(policy_path) as file:
        with pytest.raises(zupolicy.Error):
            file.save_as(target)
    assert _interval(policy_path) == "60"


def test_an_ordinary_file_has_no_notices(policy_path: pathlib.Path) -> None:
    with zupolicy.open(policy_path) as file:
        assert file.notices == []


def test_two_policies_of_one_software_id_are_a_notice(policy_path: pathlib.Path) -> None:
    text = policy_path.read_text(encoding="utf-16").replace("PRODUCTB2000", "PRODUCTA1000")
    policy_path.write_text(text, encoding="utf-16")
    with zupolicy.open(policy_path) as file:
        notices = [notice for notice in file.notices if not notice.task_id]
        assert notices and isinstance(notices[0], zupolicy.Notice)
        assert notices[0].software_id == "PRODUCTA1000"
        assert notices[0].line > 20 and notices[0].column > 0
        assert "PRODUCTA1000" in notices[0].text
