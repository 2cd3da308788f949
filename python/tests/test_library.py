"""Where the component's libraries are looked for."""

from __future__ import annotations

import os
import pathlib
import shutil
import subprocess
import sys
from typing import Dict

import pytest

import zupolicy
from conftest import LIBRARIES, environment

_OPEN = """
import sys
import zupolicy
try:
    with zupolicy.open(sys.argv[1]) as file:
        print(len(file.policies), "policies")
except zupolicy.LibraryNotFound as error:
    print(error)
"""


def _run(path: pathlib.Path, **variables: str) -> str:
    variables_of_child: Dict[str, str] = {**environment(), **variables}
    finished = subprocess.run(
        [sys.executable, "-c", _OPEN, str(path)], env=variables_of_child, capture_output=True, text=True, check=True
    )
    return finished.stdout


@pytest.fixture
def libraries(tmp_path: pathlib.Path) -> pathlib.Path:
    """A copy of the libraries that this user alone may write."""
    folder = tmp_path / "libraries"
    shutil.copytree(LIBRARIES, folder, ignore=lambda _, names: [name for name in names if not _is_needed(name)])
    folder.chmod(0o755)
    for file in folder.glob("*.so"):
        file.chmod(0o644)
    return folder


def _is_needed(name: str) -> bool:
    return name in ("libzuPolicyManager64.so", "libzucomrt.so.1", "AgentRes.dll")


def test_the_variable_names_the_folder(policy_path: pathlib.Path, libraries: pathlib.Path) -> None:
    assert _run(policy_path, ZUPOLICY_LIBRARIES=str(libraries)) == "3 policies\n"


def test_the_libraries_are_found_in_the_places_of_the_loader(policy_path: pathlib.Path) -> None:
    assert _run(policy_path, LD_LIBRARY_PATH=LIBRARIES) == "3 policies\n"


def test_a_folder_without_the_libraries_is_an_error_that_says_what_to_do(
    policy_path: pathlib.Path, tmp_path: pathlib.Path
) -> None:
    empty = tmp_path / "empty"
    empty.mkdir()
    text = _run(policy_path, ZUPOLICY_LIBRARIES=str(empty), LD_LIBRARY_PATH=LIBRARIES)
    assert str(empty) in text
    assert "Install the package zupolicymanager" in text and "ZUPOLICY_LIBRARIES" in text


def test_a_folder_that_is_not_absolute_is_refused(policy_path: pathlib.Path) -> None:
    assert "no absolute path" in _run(policy_path, ZUPOLICY_LIBRARIES="libraries")


@pytest.mark.parametrize("name", ["libzuPolicyManager64.so", "libzucomrt.so.1"])
def test_root_loads_only_what_root_alone_may_write(
    policy_path: pathlib.Path, libraries: pathlib.Path, name: str
) -> None:
    (libraries / name).chmod(0o666)
    wanted = "changed by others than root" if os.geteuid() == 0 else "3 policies"
    assert wanted in _run(policy_path, ZUPOLICY_LIBRARIES=str(libraries))


def test_libraries_in_the_current_folder_are_not_found(
    policy_path: pathlib.Path, libraries: pathlib.Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    monkeypatch.chdir(libraries)
    monkeypatch.delenv("LD_LIBRARY_PATH", raising=False)
    finished = subprocess.run([sys.executable, "-c", _OPEN, str(policy_path)], env=environment(), capture_output=True)
    if pathlib.Path("/usr/lib/x86_64-linux-gnu/libzuPolicyManager64.so").exists():
        assert b"3 policies" in finished.stdout
    else:
        assert b"cannot be loaded" in finished.stdout


def test_a_library_that_is_no_component_is_refused(policy_path: pathlib.Path, libraries: pathlib.Path) -> None:
    shutil.copyfile(libraries / "libzucomrt.so.1", libraries / "libzuPolicyManager64.so")
    text = _run(policy_path, ZUPOLICY_LIBRARIES=str(libraries), ZUREGISTRY="/nonexistent/registry")
    assert "cannot create a policy file object" in text


def test_naming_the_folder_too_late_is_an_error(policy_path: pathlib.Path) -> None:
    with zupolicy.open(policy_path):
        with pytest.raises(RuntimeError, match="already"):
            zupolicy.use_libraries("/elsewhere")


def test_a_missing_library_is_an_import_error_and_an_error_of_this_package() -> None:
    error = zupolicy.LibraryNotFound(message="gone")
    assert isinstance(error, ImportError) and isinstance(error, zupolicy.Error)
    assert str(error) == "gone"
