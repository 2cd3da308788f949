"""Plays of the real engine against machines that are folders: each has a policy file of its own.

ZUPM_FLEET_HOSTS is their number (12). One of them has a broken file, and the file of another is locked.
"""

from __future__ import annotations

import fcntl
import json
import os
import pathlib
import re
import shutil
import struct
import subprocess
from typing import Any, Dict, Iterator, List, NamedTuple

import pytest

from conftest import ROOT, environment, tool

HOSTS = int(os.environ.get("ZUPM_FLEET_HOSTS", "12"))
SECRET = "swordfish-4711"
OLD_SECRET = "rosebud-0815"

PLAY = """
- name: Change the fleet
  hosts: all
  gather_facts: false
  tasks:
    - name: Change the file
      zupolicy.policy.policy_file:
        path: "{{ folder }}/{{ inventory_hostname }}.xml"
        lock_timeout: 0
        redact: ["*Password*"]
        policies:
          - software_id: PRODUCTA1000
            sections:
              - name: General
                values: {ScanInterval: 15}
              - name: Notify
                state: absent
              - name: Proxy
                values: {Password: "{{ password }}"}
                settings: [{name: Token, value: "{{ password }}", no_log: true}]
        tasks:
          - {software_id: PRODUCTA1000, task_id: "{task-1}", priority: 9}
"""

READ = """
- name: Read the fleet
  hosts: host-1
  gather_facts: false
  tasks:
    - name: Read the file
      zupolicy.policy.policy_facts:
        path: "{{ folder }}/{{ inventory_hostname }}.xml"
        redact: ["*Password*", "Token"]
    - name: Use what was read
      ansible.builtin.assert:
        that: policy_files[folder ~ '/host-1.xml'].policies.PRODUCTA1000.sections.General.ScanInterval == '15'
    - name: Check the file
      zupolicy.policy.policy_check:
        path: "{{ folder }}/{{ inventory_hostname }}.xml"
    - name: Change the file without the module
      ansible.builtin.command:
        argv: [zupolicy, apply, "{{ folder }}/{{ inventory_hostname }}.xml", --edits, "-", --json]
        stdin: "{{ {'policies': policies} | zupolicy.policy.edits }}"
      vars:
        policies: [{software_id: PRODUCTA1000, sections: [{name: General, values: {ScanInterval: 30}}]}]
      register: applied
      changed_when: (applied.stdout | from_json).summary.changed > 0
      failed_when: applied is not changed
"""


class Counts(NamedTuple):
    ok: int
    changed: int
    failed: int


class Played(NamedTuple):
    output: str
    counts: Dict[str, Counts]


class Fleet:
    """An inventory of machines whose files lie in one folder."""

    def __init__(self, folder: pathlib.Path) -> None:
        self.folder = folder
        self.names = [f"host-{number}" for number in range(1, HOSTS + 1)]
        self.broken, self.locked = self.names[3], self.names[-1]
        self.sound = [name for name in self.names if name not in (self.broken, self.locked)]
        for name in self.names:
            shutil.copyfile(ROOT / "examples" / "policy.xml", self.path(name))
        tool("set", self.path("host-2"), "PRODUCTA1000", "Proxy", "Password", OLD_SECRET)
        self.path(self.broken).write_text("<PolicyFile>\n</PolicyRoot>\n")
        (folder / "hosts").write_text("\n".join(self.names) + "\n")
        (folder / "play.yml").write_text(PLAY)
        (folder / "read.yml").write_text(READ)

    def path(self, name: str) -> pathlib.Path:
        return self.folder / f"{name}.xml"

    def files(self) -> Dict[str, Any]:
        paths = [path for path in self.folder.iterdir() if path.suffix != ".yml" and path.is_file()]
        return {path.name: (path.read_bytes(), path.stat().st_mtime_ns, path.stat().st_ino) for path in paths}

    def play(self, book: str, *options: str) -> Played:
        given = json.dumps({"folder": str(self.folder), "password": SECRET})
        (self.folder / "vars.yml").write_text(given)
        settings = {"ANSIBLE_TRANSPORT": "local", "ANSIBLE_FORKS": str(min(HOSTS, 2 * (os.cpu_count() or 1)))}
        finished = subprocess.run(
            ["ansible-playbook", "-vvv", "-i", "hosts", "-e", "@vars.yml", book, *options],
            cwd=self.folder,
            env={**environment(self.folder), **settings},
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            text=True,
            timeout=1200,
            check=False,
        )
        recap = r"^(host-\d+) +: ok=(\d+) +changed=(\d+) +unreachable=0 +failed=(\d+) "
        found = re.findall(recap, finished.stdout, re.MULTILINE)
        return Played(finished.stdout, {name: Counts(*map(int, counts)) for name, *counts in found})


@pytest.fixture(scope="module")
def fleet(tmp_path_factory: pytest.TempPathFactory) -> Fleet:
    return Fleet(tmp_path_factory.mktemp("fleet"))


@pytest.fixture(scope="module")
def lock(fleet: Fleet) -> Iterator[None]:
    """Somebody else edits one file during all plays."""
    with open(fleet.path(fleet.locked), "r+b") as file:
        fcntl.fcntl(file, fcntl.F_OFD_SETLK, struct.pack("hhqqixxxx", fcntl.F_WRLCK, 0, 0, 0, 0))
        yield


class History(NamedTuple):
    """The plays in their order, and the files before and after each of them."""

    check: Played
    run: Played
    again: Played
    files: List[Dict[str, Any]]


@pytest.fixture(scope="module")
def history(fleet: Fleet, lock: None) -> History:
    files = [fleet.files()]

    def play(*options: str) -> Played:
        played = fleet.play("play.yml", *options)
        files.append(fleet.files())
        return played

    return History(play("--check", "--diff"), play("--diff"), play("--diff"), files)


def differences(played: Played, fleet: Fleet) -> Dict[str, str]:
    """The difference of each machine, without the machine's name."""
    found = re.findall(r"^(\S*?(host-\d+)\.xml:\n(?:[-+~ ] .*\n)+)", played.output, re.MULTILINE)
    return {name: text.replace(name, "HOST") for text, name in found}


def messages(played: Played) -> Dict[str, str]:
    """The message of each machine that has failed."""
    found = re.findall(r'^fatal: \[(host-\d+)\].*?^    "msg": "(.*?)"$', played.output, re.MULTILINE | re.DOTALL)
    return dict(found)


def test_the_first_run_changes_every_sound_machine(fleet: Fleet, history: History) -> None:
    assert sorted(history.run.counts) == sorted(fleet.names)
    assert {history.run.counts[name] for name in fleet.sound} == {Counts(1, 1, 0)}
    for name in fleet.sound[:: max(1, len(fleet.sound) // 3)]:
        assert tool("get", fleet.path(name), "PRODUCTA1000", "General", "ScanInterval") == "15"
        assert tool("get", fleet.path(name), "PRODUCTA1000", "Proxy", "Password") == SECRET


def test_the_second_run_changes_nothing(fleet: Fleet, history: History) -> None:
    assert {history.again.counts[name] for name in fleet.sound} == {Counts(1, 0, 0)}
    assert history.files[3] == history.files[2]
    assert not differences(history.again, fleet)


def test_a_check_writes_nothing_and_predicts_the_run(fleet: Fleet, history: History) -> None:
    assert history.files[1] == history.files[0] != history.files[2]
    assert history.check.counts == history.run.counts
    predicted = differences(history.check, fleet)
    assert sorted(predicted) == sorted(fleet.sound)
    assert predicted == differences(history.run, fleet)
    assert messages(history.check) == messages(history.run)


def test_the_difference_is_the_one_in_meaning(fleet: Fleet, history: History) -> None:
    assert (
        differences(history.run, fleet)["host-1"]
        == f"""{fleet.folder}/HOST.xml:
~ policy PRODUCTA1000 General/ScanInterval: "60" -> "15"
- policy PRODUCTA1000 section Notify
+ policy PRODUCTA1000 Proxy/Password: "***"
+ policy PRODUCTA1000 Proxy/Token: "***"
~ task PRODUCTA1000 {{task-1}} priority: "5" -> "9"
"""
    )
    assert '~ policy PRODUCTA1000 Proxy/Password: "***" -> "***"' in differences(history.run, fleet)["host-2"]


def test_a_broken_file_fails_alone_with_its_place(fleet: Fleet, history: History) -> None:
    for played in (history.check, history.run, history.again):
        assert played.counts[fleet.broken] == Counts(0, 0, 1)
        assert messages(played)[fleet.broken].startswith(f"{fleet.path(fleet.broken)}:2:3: ")
        assert "[SyntaxError, 0xFFFFFBAE]" in messages(played)[fleet.broken]
    assert all(files[f"{fleet.broken}.xml"] == history.files[0][f"{fleet.broken}.xml"] for files in history.files)


def test_a_locked_file_fails_alone_with_the_message_of_the_lock(fleet: Fleet, history: History) -> None:
    for played in (history.check, history.run, history.again):
        assert played.counts[fleet.locked] == Counts(0, 0, 1)
        assert messages(played)[fleet.locked].startswith(f"{fleet.path(fleet.locked)}: Another process")
        assert sorted(messages(played)) == sorted([fleet.broken, fleet.locked])
    assert history.files[3][f"{fleet.locked}.xml"] == history.files[0][f"{fleet.locked}.xml"]


def test_no_output_has_a_secret(history: History) -> None:
    for played in (history.check, history.run, history.again):
        assert SECRET not in played.output and OLD_SECRET not in played.output
        # The invocation is there, and only the secret is hidden.
        assert '"Password": "***"' in played.output and '"ScanInterval": 15' in played.output


def test_facts_checks_and_the_filter_work_in_a_play(fleet: Fleet, history: History) -> None:
    played = fleet.play("read.yml")
    assert played.counts == {"host-1": Counts(4, 1, 0)}, played.output
    assert tool("get", fleet.path("host-1"), "PRODUCTA1000", "General", "ScanInterval") == "30"
    assert SECRET not in played.output
