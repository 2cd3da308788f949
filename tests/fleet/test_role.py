"""The role puts rules on a machine, checks the program there, and does nothing the second time.

The installation of packages is not tested here, because it changes the system; the engine's own modules do it.
"""

from __future__ import annotations

import pathlib
import re
import subprocess

from conftest import environment

ROLE = """
- name: {name}
  hosts: machine
  gather_facts: false
  check_mode: {check}
  roles:
    - role: zupolicy.policy.install
      install_rules: "{{{{ playbook_dir }}}}/rules.json"
      install_rules_path: "{{{{ playbook_dir }}}}/etc/zupolicy/rules.json"
      install_executable: {executable}
"""

# The engine takes longer to start than to play.
PLAYS = [
    ROLE.format(name="Check", check="true", executable="zupolicy"),
    ROLE.format(name="Prepare", check="false", executable="zupolicy"),
    ROLE.format(name="Prepare again", check="false", executable="zupolicy"),
    ROLE.format(name="Fail", check="false", executable="/no/zupolicy"),
]


def test_the_role_puts_the_rules_on_the_machine_once(tmp_path: pathlib.Path) -> None:
    (tmp_path / "plays.yml").write_text("".join(PLAYS))
    (tmp_path / "rules.json").write_text("{}\n")
    command = ["ansible-playbook", "-i", "machine,", "-c", "local", "plays.yml"]
    finished = subprocess.run(
        command,
        cwd=tmp_path,
        env=environment(tmp_path),
        stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT,
        text=True,
        timeout=600,
        check=False,
    )
    _, *played = re.split(r"^PLAY ", finished.stdout, flags=re.MULTILINE)
    results = [re.findall(r"^(changed|fatal): \[machine\]", play, re.MULTILINE) for play in played[: len(PLAYS)]]
    assert results == [["changed", "changed"], ["changed", "changed"], [], ["fatal"]], finished.stdout
    assert "/no/zupolicy" in played[3]
    assert (tmp_path / "etc" / "zupolicy" / "rules.json").read_text() == "{}\n"
