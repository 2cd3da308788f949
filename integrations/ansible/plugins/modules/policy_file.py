#!/usr/bin/python
"""Gives policy files a desired state."""
# Copyright (c) 2026 The zuPolicyManager developers
# MIT License (see LICENSE)

from __future__ import annotations

DOCUMENTATION = r"""
module: policy_file
short_description: Give policy files a desired state
version_added: 1.0.0
description:
  - Changes policies, tasks, sections and settings of policy files. What is not mentioned stays as it is, byte for byte.
  - Each file is replaced in one step. All changes of a file are made, or none.
  - A file that is as it is wanted is not written and keeps its time stamps.
  - C(zupolicy apply) is run once on the managed machine, for all files. It locks each file against other editors.
options:
  paths:
    description: Several policy files, which get the same state. A file that fails does not keep the others from it.
  policies:
    description: Policies of products.
    type: list
    elements: dict
    default: []
    suboptions:
      software_id:
        description: The product.
        type: str
        required: true
      state:
        description: Whether the policy exists.
        type: str
        choices: [present, absent]
        default: present
      sections: &sections
        description: Sections. Others stay as they are.
        type: list
        elements: dict
        suboptions:
          name:
            description: The name of the section.
            type: str
            required: true
          state:
            description: Whether the section exists.
            type: str
            choices: [present, absent]
            default: present
          values:
            description:
              - Settings and their values. Other settings stay as they are.
              - A value is a text or a whole number. YAML makes C(true) of C(yes) and 8 of C(010), so put anything but a
                plain number in quotes.
            type: dict
          settings:
            description: The long form of I(values), for settings that are to be absent or whose values are secret.
            type: list
            elements: dict
            suboptions:
              name:
                description: The name of the setting.
                type: str
                required: true
              value:
                description: The value, as in I(values).
                type: raw
              state:
                description: Whether the setting exists.
                type: str
                choices: [present, absent]
                default: present
              no_log:
                description: Whether the value is a secret, as if I(redact) named this setting.
                type: bool
                default: false
  tasks:
    description: Tasks of products.
    type: list
    elements: dict
    default: []
    suboptions:
      software_id:
        description: The product.
        type: str
        required: true
      task_id:
        description: The task.
        type: str
        required: true
      state:
        description: Whether the task exists.
        type: str
        choices: [present, absent]
        default: present
      display_name:
        description: The task's name for people. A new task has its ID as one.
        type: str
      type:
        description: The task's type.
        type: str
      platforms:
        description: The task's platforms.
        type: str
      priority:
        description: The task's priority. A new task has 0.
        type: int
      creator:
        description: The software ID of the task's creator.
        type: str
      sections: *sections
  create:
    description:
      - Whether a missing policy or task is created. Without it a missing one is a failure, which also finds mistyped
        IDs.
      - A missing section or setting is always added.
    type: bool
    default: true
  redact:
    description:
      - Settings whose values are secrets, as patterns with C(*) and C(?) of C(NAME) or C(SECTION/NAME), or of the name
        of a task's field in C(zupolicy show --json).
      - A hidden value is C(***) in the result, the difference, the log and the invocation that C(-vvv) shows.
  backup:
    description:
      - Whether a file that changes is copied first. The copy is in the same folder, with the suffix C(.bak). When a copy
        of that name exists, its name gets a number.
      - A text that is no boolean is another suffix.
    type: raw
    default: false
  lock_timeout:
    description: The longest wait for another editor of a file, in seconds.
    type: int
    default: 10
  jobs:
    description: The number of files that are changed at the same time.
    type: int
    default: 1
extends_documentation_fragment: zupolicy.policy.files
attributes:
  check_mode:
    description: Runs C(apply --dry-run), which does all but the writing and so fails where the run would fail.
    support: full
  diff_mode:
    description:
      - Shows what has changed in meaning. Order, layout and encoding do not count, and neither do versions.
      - The file before the run is compared with the file after it.
    support: full
seealso:
  - module: zupolicy.policy.policy_facts
  - module: zupolicy.policy.policy_check
author:
  - The zuPolicyManager developers (@zupolicy)
"""

EXAMPLES = r"""
- name: Scan every fifteen minutes, and send no mail
  zupolicy.policy.policy_file:
    path: /srv/policies/policy.xml
    policies:
      - software_id: PRODUCTA1000
        sections:
          - name: General
            values:
              ScanInterval: 15
              Enabled: "1"
          - name: Notify
            state: absent

- name: Set the proxy of every file, and keep its password secret
  zupolicy.policy.policy_file:
    paths:
      - /srv/policies/office.xml
      - /srv/policies/laboratory.xml
    policies:
      - software_id: PRODUCTB2000
        sections:
          - name: Proxy
            values:
              Host: proxy.example.org
              Password: "{{ proxy_password }}"
            settings:
              - name: OldHost
                state: absent
    redact: ["Proxy/Password"]
    backup: true

- name: Make the nightly scan more urgent
  zupolicy.policy.policy_file:
    path: /srv/policies/policy.xml
    create: false
    tasks:
      - software_id: PRODUCTA1000
        task_id: "{task-1}"
        priority: 7
        sections:
          - name: Schedule
            values:
              Hour: 3
"""

RETURN = r"""
files:
  description: What has become of each file, in the order of the arguments.
  returned: when the tool has reported on files
  type: list
  elements: dict
  contains:
    file:
      description: The file.
      type: str
      returned: always
    result:
      description: C(changed), C(unchanged), C(failed) or C(not done).
      type: str
      returned: always
    edits:
      description: The number of edits that have made a difference.
      type: int
      returned: always
    backup:
      description: The copy of the old bytes.
      type: str
      returned: always
    error:
      description: Why the file has failed. Its members are those of C(error) in the JSON of C(zupolicy).
      type: dict
      returned: when the file has failed
  sample: [{"file": "/srv/policies/policy.xml", "result": "changed", "edits": 2, "backup": null}]
"""

import os
import shutil
from typing import Any, Dict, List, Optional

from ansible_collections.zupolicy.policy.plugins.module_utils.desired import Wrong, edits_of, lines_of
from ansible_collections.zupolicy.policy.plugins.module_utils.differences import difference
from ansible_collections.zupolicy.policy.plugins.module_utils.guarded import GuardedModule
from ansible_collections.zupolicy.policy.plugins.module_utils.hiding import hiding_of
from ansible_collections.zupolicy.policy.plugins.module_utils.tool import Tool, ToolError, describe

STATE: Dict[str, Any] = {"type": "str", "choices": ["present", "absent"], "default": "present"}
NAME: Dict[str, Any] = {"type": "str", "required": True}
SETTINGS: Dict[str, Any] = {
    "name": NAME,
    "value": {"type": "raw"},
    "state": STATE,
    "no_log": {"type": "bool", "default": False},
}
SECTIONS: Dict[str, Any] = {
    "type": "list",
    "elements": "dict",
    "options": {
        "name": NAME,
        "state": STATE,
        "values": {"type": "dict"},
        "settings": {"type": "list", "elements": "dict", "options": SETTINGS},
    },
}
FIELDS: Dict[str, Any] = {
    "display_name": {"type": "str"},
    "type": {"type": "str"},
    "platforms": {"type": "str"},
    "priority": {"type": "int"},
    "creator": {"type": "str"},
}


def entries(**options: Any) -> Dict[str, Any]:
    options = {"software_id": NAME, "state": STATE, "sections": SECTIONS, **options}
    return {"type": "list", "elements": "dict", "default": [], "options": options}


ARGUMENTS: Dict[str, Any] = {
    "policies": entries(),
    "tasks": entries(task_id=NAME, **FIELDS),
    "create": {"type": "bool", "default": True},
    "backup": {"type": "raw", "default": False},
    "lock_timeout": {"type": "int", "default": 10},
    "jobs": {"type": "int", "default": 1},
}


def backup_options(backup: Any) -> List[str]:
    text = str(backup).lower()
    if text in ("false", "no", "n", "off", "f", "0", "none", ""):
        return []
    if text in ("true", "yes", "y", "on", "t", "1"):
        return ["--backup"]
    return [f"--backup={backup}"]


class Differences:
    """What changes in the files, for the engine's diff mode. Copies of the files lie in the module's own folder."""

    def __init__(self, module: GuardedModule, tool: Tool, paths: List[str]) -> None:
        self._module = module
        self._tool = tool
        self._hiding = hiding_of(module.params)
        self._before = {path: self._copy(path, f"before-{number}") for number, path in enumerate(paths)}

    def _copy(self, path: str, name: str) -> Optional[str]:
        """A copy, or None for a file that cannot be read: the tool says why."""
        copy: str = os.path.join(self._module.tmpdir, name)
        if not os.path.isfile(path):
            return None
        try:
            shutil.copyfile(path, copy)
        except OSError:
            return None
        return copy

    def of(self, changed: List[str], edits: str, is_prediction: bool) -> List[Dict[str, str]]:
        copies = {path: copy for path, copy in self._before.items() if path in changed and copy is not None}
        afters = {path: copy + "-after" if is_prediction else path for path, copy in copies.items()}
        if is_prediction and copies:
            for path, copy in copies.items():
                shutil.copyfile(copy, afters[path])
            self._tool.run("apply", "--edits", "-", "--json", "--", *afters.values(), text=edits)
        return [
            difference(path, self._tool.differences(copy, afters[path]), self._hiding) for path, copy in copies.items()
        ]


def clean(module: GuardedModule, report: Dict[str, Any]) -> Dict[str, Any]:
    """The parts of the tool's report that the module returns."""
    files = [{**file, "error": module.clean(file["error"])} if "error" in file else file for file in report["files"]]
    return {"files": files, "changed": any(file["result"] == "changed" for file in files)}


def apply(module: GuardedModule, tool: Tool, edits: str) -> Dict[str, Any]:
    """What has become of the files."""
    parameters = module.params
    options = ["--edits", "-", "--json", "--keep-going", f"--jobs={parameters['jobs']}"]
    options += [f"--lock-timeout={parameters['lock_timeout']}", *backup_options(parameters["backup"])]
    if module.check_mode:
        options.append("--dry-run")
    return clean(module, tool.run("apply", *options, "--", *module.files(), text=edits).documents[0])


def work(module: GuardedModule) -> None:
    try:
        edits = edits_of(module.params["policies"], module.params["tasks"], module.params["create"])
    except Wrong as wrong:
        module.fail(str(wrong))
    tool = module.tool()
    result: Dict[str, Any] = {"changed": False}
    try:
        differences = Differences(module, tool, module.files()) if module._diff else None
        result = apply(module, tool, lines_of(edits))
        if differences is not None:
            changed = [file["file"] for file in result["files"] if file["result"] == "changed"]
            result["diff"] = differences.of(changed, lines_of(edits), module.check_mode)
    except ToolError as failure:
        if failure.documents:
            # The run was ended: some files may be changed.
            result = clean(module, failure.documents[0])
        module.fail_with(failure, **result)
    errors = [describe(file["error"]) for file in result["files"] if "error" in file]
    if errors:
        module.fail("; ".join(errors), **result)
    module.exit_json(**result)


def main() -> None:
    work(GuardedModule(ARGUMENTS))


if __name__ == "__main__":
    main()
