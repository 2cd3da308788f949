"""The commands of the guide run one after the other, and print what the guide says."""

from __future__ import annotations

import pathlib
import re
import shutil
import stat
import subprocess
from typing import Any, Dict, List, NamedTuple

import yaml

from conftest import COLLECTION, ROOT, environment

GUIDE = (ROOT / "docs" / "fleet.md").read_text(encoding="utf-8")
_BLOCK = re.compile(r"^```sh\n(.*?)^```\n(?:\n```text\n(.*?)^```\n)?", re.MULTILINE | re.DOTALL)

# Runs the command in the machine's folder.
SSH = """#!/bin/sh
cd "fleet/$1" && shift && exec "$@"
"""


class Step(NamedTuple):
    commands: str
    lines: List[str]


STEPS = [Step(found.group(1), (found.group(2) or "").splitlines()) for found in _BLOCK.finditer(GUIDE)]


def missing_from(output: str, lines: List[str]) -> List[str]:
    """The lines that the output does not have in this order. A line may be a part of one, and the engine may wrap it."""
    missing = []
    output = " ".join(output.split())
    for line in lines:
        _, found, rest = output.partition(" ".join(line.split()))
        if found:
            output = rest
        else:
            missing.append(line)
    return missing


def prepare(folder: pathlib.Path) -> Dict[str, str]:
    """What the guide begins with: a folder with a policy file and the archive. It installs the archive itself."""
    settings = environment(folder)
    for name in ("ANSIBLE_COLLECTIONS_PATH", "PYTHONPATH"):
        del settings[name]
    source = folder / "source"
    shutil.copytree(COLLECTION, source, ignore=shutil.ignore_patterns("__pycache__", ".*"))
    work = folder / "work"
    work.mkdir()
    command = ["ansible-galaxy", "collection", "build", str(source), "--output-path", str(work)]
    subprocess.run(command, env=settings, check=True, capture_output=True, timeout=300)
    shutil.copyfile(ROOT / "examples" / "policy.xml", work / "policy.xml")
    ssh = folder / "bin" / "ssh"
    ssh.parent.mkdir()
    ssh.write_text(SSH)
    ssh.chmod(0o755)
    return {**settings, "PATH": f"{ssh.parent}:{settings['PATH']}"}


def test_no_block_of_the_guide_is_overlooked() -> None:
    assert len(STEPS) == GUIDE.count("```sh\n") == 9
    assert sum(bool(step.lines) for step in STEPS) == GUIDE.count("```text\n") == 8


def test_the_guide_leads_from_an_empty_inventory_to_a_changed_fleet(tmp_path: pathlib.Path) -> None:
    settings = prepare(tmp_path)
    work = tmp_path / "work"
    everything = ""
    for step in STEPS:
        # What a step exports counts in those after it.
        script = f"set -e\n. ../exported 2> /dev/null || true\n{step.commands}\nexport -p > ../exported\n"
        finished = subprocess.run(
            ["bash", "-c", script],
            cwd=work,
            env=settings,
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            text=True,
            timeout=600,
            check=False,
        )
        assert finished.returncode == 0, step.commands + finished.stdout
        assert missing_from(finished.stdout, step.lines) == [], finished.stdout
        everything += finished.stdout
    assert "open sesame" not in everything
    assert stat.S_IMODE((work / "secrets.yml").stat().st_mode) == 0o600


def test_lines_in_another_order_are_missing() -> None:
    assert missing_from("a\nb\nc\n", ["a", "c"]) == []
    assert missing_from("a\nb\nc\n", ["c", "a"]) == ["a"]


def test_the_recipes_for_other_engines_are_well_formed() -> None:
    blocks: List[Any] = [
        yaml.safe_load(text) for text in re.findall(r"^```yaml\n(.*?)^```$", GUIDE, re.MULTILINE | re.DOTALL)
    ]
    windows, salt = blocks
    (task,) = windows[0]["tasks"]
    assert task["ansible.windows.win_command"]["argv"][1] == "apply" and task["no_log"] is True
    assert [*salt] == ["/etc/zupolicy/edits.jsonl", "change the policy file"]


def test_the_archive_of_the_guide_is_the_one_that_is_built() -> None:
    galaxy = yaml.safe_load((COLLECTION / "galaxy.yml").read_text())
    assert f"{galaxy['namespace']}-{galaxy['name']}-{galaxy['version']}.tar.gz" in GUIDE
    project = (ROOT / "CMakeLists.txt").read_text(encoding="utf-8")
    assert f"project(zuPolicyManager VERSION {galaxy['version']} " in project
