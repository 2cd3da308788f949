"""The package is typed, for its own code and for its clients."""

from __future__ import annotations

import pathlib
import subprocess
from typing import List

import zupolicy
from conftest import environment

_GOOD = """
from typing import Dict, Optional

import zupolicy


def interval(path: str) -> Optional[str]:
    with zupolicy.open(path, lock=True, timeout=None) as file:
        file.policies["A"] = {"General": {"Enabled": "1"}}
        file.policies["B"] = file.policies["A"]
        file.policies["A"]["General"] = {"Enabled": "0"}
        file.policies["A"]["General"].update({"Enabled": "2"})
        priorities: Dict[str, int] = {task.id: task.priority for task in file.tasks}
        task = file.tasks["A", "1"]
        task.display_name = f"{priorities}"
        task.export_ini("task.ini")
        try:
            file.save()
        except zupolicy.Changed as error:
            print(error.code, error.file, error.line)
        for notice in file.notices:
            print(notice.line, notice.text)
        return file.policies["A"]["General"].get("ScanInterval")
"""

_BAD = [
    'zupolicy.open(b"policy.xml")',
    'zupolicy.open("policy.xml", True)',
    'zupolicy.open("policy.xml").policies["A"]["General"]["Enabled"] = 1',
    'zupolicy.open("policy.xml").tasks["A"]',
    'zupolicy.open("policy.xml").tasks["A", "1"].priority = "1"',
    'zupolicy.open("policy.xml").tasks["A", "1"].id = "2"',
    'number: int = zupolicy.open("policy.xml").tasks["A", "1"].display_name',
]


def _mypy(tmp_path: pathlib.Path, *arguments: str) -> "subprocess.CompletedProcess[str]":
    command: List[str] = ["/usr/bin/mypy", "--strict", "--python-version", "3.9", f"--cache-dir={tmp_path}/cache"]
    return subprocess.run([*command, *arguments], cwd=tmp_path, env=environment(), capture_output=True, text=True)


def test_the_package_is_clean_under_strict_checks(tmp_path: pathlib.Path) -> None:
    finished = _mypy(tmp_path, "-p", "zupolicy")
    assert finished.returncode == 0, finished.stdout


def test_a_client_is_clean_under_strict_checks(tmp_path: pathlib.Path) -> None:
    (tmp_path / "client.py").write_text(_GOOD, encoding="utf-8")
    finished = _mypy(tmp_path, "client.py")
    assert finished.returncode == 0, finished.stdout


def test_mistakes_of_a_client_are_found(tmp_path: pathlib.Path) -> None:
    (tmp_path / "client.py").write_text("\n".join(["import zupolicy", *_BAD]) + "\n", encoding="utf-8")
    output = _mypy(tmp_path, "client.py").stdout
    for line in range(2, len(_BAD) + 2):
        assert f"client.py:{line}: error" in output, _BAD[line - 2]


def test_every_public_name_is_documented() -> None:
    for name in zupolicy.__all__:
        thing = getattr(zupolicy, name)
        assert thing.__doc__, name
        for member, value in vars(thing).items() if isinstance(thing, type) else ():
            if not member.startswith("_") and (callable(value) or isinstance(value, property)):
                assert value.__doc__, f"{name}.{member}"
