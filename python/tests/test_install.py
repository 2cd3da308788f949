"""The package installs from the source folder, without a network."""

from __future__ import annotations

import pathlib
import re
import shutil
import subprocess
import sys

from conftest import LIBRARIES, ROOT


def test_the_version_is_that_of_the_component() -> None:
    cmake = (ROOT / "CMakeLists.txt").read_text(encoding="utf-8")
    project = (ROOT / "python" / "pyproject.toml").read_text(encoding="utf-8")
    component = re.search(r"project\(zuPolicyManager VERSION ([\d.]+)", cmake)
    package = re.search(r'^version = "([\d.]+)"', project, re.MULTILINE)
    assert component is not None and package is not None
    assert component.group(1) == package.group(1)


def test_pip_installs_it_into_an_environment(tmp_path: pathlib.Path, policy_path: pathlib.Path) -> None:
    source, environment = tmp_path / "python", tmp_path / "environment"
    # Building leaves files in the source folder.
    shutil.copytree(ROOT / "python", source, ignore=shutil.ignore_patterns("__pycache__", "tests"))

    def run(*command: object) -> str:
        finished = subprocess.run(
            list(map(str, command)),
            cwd=tmp_path,
            env={"PATH": "/usr/bin:/bin", "HOME": str(tmp_path), "LANG": "C.UTF-8"},
            capture_output=True,
            text=True,
        )
        assert finished.returncode == 0, finished.stdout + finished.stderr
        return finished.stdout

    run(sys.executable, "-m", "venv", "--system-site-packages", "--without-pip", environment)
    python = environment / "bin" / "python3"
    run(python, "-m", "pip", "install", "--no-index", "--no-build-isolation", source)
    script = (
        "import sys, zupolicy, importlib.metadata as metadata\n"
        "zupolicy.use_libraries(sys.argv[1])\n"
        "with zupolicy.open(sys.argv[2]) as file:\n"
        "    print(metadata.version('zupolicy'), len(file.policies), zupolicy.__file__)\n"
    )
    version, policies, place = run(python, "-c", script, LIBRARIES, policy_path).split()
    assert (version, policies) == ("1.0.0", "3")
    assert place.startswith(str(environment))
    assert list(pathlib.Path(place).parent.glob("py.typed")) != []
