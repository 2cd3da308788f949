"""What the tests share. ZUPOLICY_TEST_LIBRARIES is the folder with the built libraries."""

from __future__ import annotations

import os
import pathlib
import shutil
import subprocess
import sys
from typing import Callable, Dict

import pytest

import zupolicy

ROOT = pathlib.Path(__file__).resolve().parents[2]
LIBRARIES = os.environ["ZUPOLICY_TEST_LIBRARIES"]

zupolicy.use_libraries(LIBRARIES)

#: Runs a script in a new interpreter; the arguments are in `arguments`, and what it prints is returned.
RunScript = Callable[..., str]

_PROLOGUE = """
import sys
import zupolicy
zupolicy.use_libraries(sys.argv[1])
arguments = sys.argv[2:]
"""


def environment() -> Dict[str, str]:
    return {**os.environ, "PYTHONPATH": str(ROOT / "python")}


@pytest.fixture
def policy_path(tmp_path: pathlib.Path) -> pathlib.Path:
    """A copy of the sample file."""
    path = tmp_path / "policy.xml"
    shutil.copyfile(ROOT / "examples" / "policy.xml", path)
    return path


@pytest.fixture
def run_script() -> RunScript:
    def run(script: str, *arguments: object) -> str:
        command = [sys.executable, "-c", _PROLOGUE + script, LIBRARIES, *map(str, arguments)]
        finished = subprocess.run(command, env=environment(), capture_output=True, text=True, timeout=120)
        assert finished.returncode == 0, finished.stderr
        assert finished.stderr == ""
        return finished.stdout

    return run


def start_script(script: str, *arguments: object) -> "subprocess.Popen[str]":
    """Starts a script like `run_script`; it talks through its standard input and output."""
    command = [sys.executable, "-c", _PROLOGUE + script, LIBRARIES, *map(str, arguments)]
    return subprocess.Popen(
        command, env=environment(), stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True
    )
