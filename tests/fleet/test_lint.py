"""The collection passes the engine's own checks, without a network."""

from __future__ import annotations

import pathlib
import re
import shutil
import subprocess
import tarfile
from typing import Any, Dict, List

import pytest
import yaml

from conftest import COLLECTION, COLLECTIONS, environment

MODULES = ["policy_check", "policy_facts", "policy_file"]


def run(folder: pathlib.Path, home: pathlib.Path, *command: str) -> "subprocess.CompletedProcess[str]":
    # The build folder lies in a repository that ignores it, and the linter would look at nothing.
    settings = {**environment(home), "MYPYPATH": str(COLLECTIONS), "GIT_DIR": str(home / "no-repository")}
    return subprocess.run(command, cwd=folder, env=settings, capture_output=True, text=True, timeout=600, check=False)


@pytest.fixture
def copy(tmp_path: pathlib.Path) -> pathlib.Path:
    """The collection in a folder of its own, where the linter finds every file by itself."""
    folder = tmp_path / "lint" / "ansible_collections" / "zupolicy" / "policy"
    shutil.copytree(COLLECTION, folder, ignore=shutil.ignore_patterns("__pycache__", ".*"))
    return folder


def lint(copy: pathlib.Path, home: pathlib.Path) -> "subprocess.CompletedProcess[str]":
    return run(copy, home, "ansible-lint", "--offline", "--profile", "production", "--strict", "--nocolor", "-p")


def test_the_linter_finds_nothing_with_its_strictest_profile(copy: pathlib.Path, tmp_path: pathlib.Path) -> None:
    finished = lint(copy, tmp_path)
    assert finished.returncode == 0, finished.stdout + finished.stderr
    assert "Passed with production profile: 0 failure(s), 0 warning(s)" in finished.stdout + finished.stderr
    (seen,) = re.findall(r"on (\d+) files", finished.stdout + finished.stderr)
    assert int(seen) >= len([path for path in copy.rglob("*") if path.suffix in (".yml", ".py", ".md")])


def test_the_linter_notices_a_fault(copy: pathlib.Path, tmp_path: pathlib.Path) -> None:
    tasks = copy / "roles" / "install" / "tasks" / "main.yml"
    tasks.write_text(tasks.read_text().replace('        mode: "0644"\n', "", 1))
    finished = lint(copy, tmp_path)
    assert finished.returncode != 0 and "risky-file-permissions" in finished.stdout


@pytest.fixture(scope="module")
def documentation(tmp_path_factory: pytest.TempPathFactory) -> Dict[str, Any]:
    """What the engine reads out of the documentation blocks."""
    home = tmp_path_factory.mktemp("documentation")
    names = [f"zupolicy.policy.{name}" for name in MODULES]
    finished = run(home, home, "ansible-doc", "--json", *names)
    assert finished.returncode == 0, finished.stderr
    found: Dict[str, Any] = yaml.safe_load(finished.stdout)
    return {name.rsplit(".", 1)[-1]: block for name, block in found.items()}


def test_the_engine_renders_every_module_and_the_filter(tmp_path: pathlib.Path) -> None:
    shown = run(tmp_path, tmp_path, "ansible-doc", *(f"zupolicy.policy.{name}" for name in MODULES))
    assert shown.returncode == 0, shown.stderr
    for part in (
        "- lock_timeout",
        "- redact",
        "- strict",
        "EXAMPLES:",
        "RETURN VALUES:",
        "- policy_files",
        "REQUIREMENTS:",
    ):
        assert part in shown.stdout
    shown = run(tmp_path, tmp_path, "ansible-doc", "-t", "filter", "zupolicy.policy.edits")
    assert shown.returncode == 0 and "_input" in shown.stdout


def options_of(arguments: Dict[str, Any]) -> Dict[str, Any]:
    """The arguments that a module takes, in the form of the documentation."""
    kept = ("type", "elements", "required", "default", "choices")
    return {
        name: {
            **{key: option[key] for key in kept if key in option},
            **({"suboptions": options_of(option["options"])} if "options" in option else {}),
        }
        for name, option in arguments.items()
    }


def documented(options: Dict[str, Any]) -> Dict[str, Any]:
    kept = ("type", "elements", "required", "default", "choices")
    return {
        name: {
            **{key: option[key] for key in kept if key in option},
            **({"suboptions": documented(option["suboptions"])} if "suboptions" in option else {}),
        }
        for name, option in options.items()
    }


@pytest.mark.parametrize("name", MODULES)
def test_the_documentation_has_the_options_that_the_module_takes(name: str, documentation: Dict[str, Any]) -> None:
    from importlib import import_module

    from ansible_collections.zupolicy.policy.plugins.module_utils.guarded import COMMON

    module = import_module(f"ansible_collections.zupolicy.policy.plugins.modules.{name}")
    arguments = {**COMMON, **getattr(module, "ARGUMENTS", {})}
    assert documented(documentation[name]["doc"]["options"]) == options_of(arguments)


@pytest.mark.parametrize("name", MODULES)
def test_the_examples_are_tasks_with_options_that_exist(name: str, documentation: Dict[str, Any]) -> None:
    tasks: List[Dict[str, Any]] = yaml.safe_load(documentation[name]["examples"])
    used = [task[f"zupolicy.policy.{name}"] for task in tasks if f"zupolicy.policy.{name}" in task]
    assert used
    for arguments in used:
        assert set(arguments) <= set(documentation[name]["doc"]["options"])


def test_the_modules_are_typed_for_the_oldest_python(tmp_path: pathlib.Path) -> None:
    options = ["--strict", "--namespace-packages", "--explicit-package-bases", "--python-version=3.9"]
    options += ["--ignore-missing-imports", f"--cache-dir={tmp_path}"]
    finished = run(COLLECTIONS, tmp_path, "mypy", *options, "ansible_collections/zupolicy/policy/plugins")
    assert finished.returncode == 0, finished.stdout
    assert re.search(r"no issues found in 1\d source files", finished.stdout), finished.stdout


def test_the_modules_import_nothing_but_the_standard_library_and_the_engine() -> None:
    import sys

    for path in [*COLLECTION.glob("plugins/modules/*.py"), *COLLECTION.glob("plugins/module_utils/*.py")]:
        for name in re.findall(r"^\s*(?:from|import) ([\w]+)", path.read_text(encoding="utf-8"), re.MULTILINE):
            assert name in (*sys.stdlib_module_names, "ansible", "ansible_collections"), f"{path.name}: {name}"


def test_the_archive_has_every_file_and_can_be_installed(copy: pathlib.Path, tmp_path: pathlib.Path) -> None:
    built = run(copy, tmp_path, "ansible-galaxy", "collection", "build", "--output-path", str(tmp_path))
    assert built.returncode == 0, built.stderr
    (archive,) = tmp_path.glob("zupolicy-policy-*.tar.gz")
    with tarfile.open(archive) as contents:
        names = {member.name for member in contents.getmembers() if member.isfile()}
    wanted = {str(path.relative_to(copy)) for path in copy.rglob("*") if path.is_file()} - {"galaxy.yml"}
    assert names == wanted | {"MANIFEST.json", "FILES.json"}
    target = tmp_path / "installed"
    installed = run(
        tmp_path, tmp_path, "ansible-galaxy", "collection", "install", str(archive), "-p", str(target), "--offline"
    )
    assert installed.returncode == 0, installed.stderr
    assert (target / "ansible_collections/zupolicy/policy/plugins/modules/policy_file.py").exists()
