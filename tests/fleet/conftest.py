"""What the tests of the collection share. ZUPOLICY_TEST_TOOL is the built program."""

from __future__ import annotations

import json
import os
import pathlib
import shutil
import subprocess
import sys
from typing import Any, Callable, Dict, NamedTuple

import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]
COLLECTION = ROOT / "integrations" / "ansible"
TOOL = os.environ["ZUPOLICY_TEST_TOOL"]

#: The one name that finds the collection without an installation.
_LINKS = pathlib.Path(os.environ["ZUPOLICY_TEST_FOLDER"])


def link_collection(folder: pathlib.Path) -> pathlib.Path:
    """A folder in which Python and the engine find the collection's sources."""
    link = folder / "ansible_collections" / "zupolicy" / "policy"
    link.parent.mkdir(parents=True, exist_ok=True)
    if not link.is_symlink():
        try:
            link.symlink_to(COLLECTION)
        except FileExistsError:
            pass  # another test was faster
    return folder


COLLECTIONS = link_collection(_LINKS)
sys.path.insert(0, str(COLLECTIONS))


class Outcome(NamedTuple):
    code: int
    result: Dict[str, Any]
    #: Everything that the process printed.
    output: str


RunModule = Callable[..., Outcome]


def environment(home: pathlib.Path) -> Dict[str, str]:
    """For the engine's programs: this collection, this tool, no settings of the user."""
    path = os.pathsep.join([os.path.dirname(TOOL), "/usr/bin", "/bin", "/usr/sbin", "/sbin"])
    return {
        "PATH": path,
        "HOME": str(home),
        "LC_ALL": "C.UTF-8",
        "PYTHONDONTWRITEBYTECODE": "1",
        "PYTHONPATH": str(COLLECTIONS),
        "ANSIBLE_COLLECTIONS_PATH": str(COLLECTIONS),
        "ANSIBLE_HOME": str(home / "ansible"),
        "ANSIBLE_LOCAL_TEMP": str(home / "local"),
        "ANSIBLE_REMOTE_TEMP": str(home / "remote"),
        "ANSIBLE_PYTHON_INTERPRETER": "/usr/bin/python3",
        "ANSIBLE_PIPELINING": "1",
        "ANSIBLE_NOCOLOR": "1",
        "ANSIBLE_LOCALHOST_WARNING": "0",
    }


@pytest.fixture
def policy_path(tmp_path: pathlib.Path) -> pathlib.Path:
    """A copy of the sample file."""
    path = tmp_path / "policy.xml"
    shutil.copyfile(ROOT / "examples" / "policy.xml", path)
    return path


@pytest.fixture
def run_module(tmp_path: pathlib.Path) -> RunModule:
    """Runs a module as the engine does on a managed machine, without the engine."""

    def run(name: str, check: bool = False, diff: bool = False, **arguments: Any) -> Outcome:
        arguments = {"executable": TOOL, **arguments}
        inside: Dict[str, Any] = {"_ansible_check_mode": check, "_ansible_diff": diff, "_ansible_verbosity": 3}
        inside["_ansible_remote_tmp"] = str(tmp_path / "remote")
        finished = subprocess.run(
            [sys.executable, "-m", f"ansible_collections.zupolicy.policy.plugins.modules.{name}"],
            input=json.dumps({"ANSIBLE_MODULE_ARGS": {**arguments, **inside}}),
            capture_output=True,
            text=True,
            env=environment(tmp_path),
            timeout=300,
            check=False,
        )
        assert finished.stderr == ""
        return Outcome(finished.returncode, json.loads(finished.stdout), finished.stdout)

    return run


def tool(*arguments: object) -> str:
    """What the tool prints."""
    finished = subprocess.run([TOOL, *map(str, arguments)], capture_output=True, text=True, timeout=120, check=False)
    assert finished.returncode == 0, finished.stderr
    return finished.stdout.rstrip("\n")
