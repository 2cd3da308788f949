#!/usr/bin/python
"""Returns what policy files hold."""
# Copyright (c) 2026 The zuPolicyManager developers
# MIT License (see LICENSE)

from __future__ import annotations

DOCUMENTATION = r"""
module: policy_facts
short_description: Return what policy files hold
version_added: 1.0.0
description:
  - Reads policy files with C(zupolicy show) and returns their policies and tasks as facts.
options:
  redact:
    description:
      - Settings whose values are secrets, as patterns with C(*) and C(?) of C(NAME) or C(SECTION/NAME), or of the name
        of a task's field in C(zupolicy show --json). The facts have C(***) in place of such a value.
extends_documentation_fragment: zupolicy.policy.files
attributes:
  check_mode:
    description: Changes nothing in any mode.
    support: full
  facts:
    description: Returns facts, which later tasks of the play can use.
    support: full
seealso:
  - module: zupolicy.policy.policy_file
  - module: zupolicy.policy.policy_check
author:
  - The zuPolicyManager developers (@zupolicy)
"""

EXAMPLES = r"""
- name: Read the policy file
  zupolicy.policy.policy_facts:
    path: /srv/policies/policy.xml
    redact: ["*Password*"]

- name: Show how often the product scans
  ansible.builtin.debug:
    msg: "{{ policy_files['/srv/policies/policy.xml'].policies.PRODUCTA1000.sections.General.ScanInterval }}"
"""

RETURN = r"""
ansible_facts:
  description: Facts about the files.
  returned: success
  type: dict
  contains:
    policy_files:
      description:
        - The content of each file by its path.
        - Every value is a text. A section or setting that occurs twice is here once, as a lookup finds it.
      type: dict
      returned: success
      sample:
        /srv/policies/policy.xml:
          policy_version: "20240311081500"
          task_version: "20240402060000"
          assignment_list: all
          policies:
            PRODUCTA1000:
              version: "20240311081500"
              sections: {General: {Enabled: "1", ScanInterval: "60"}}
          tasks:
            PRODUCTA1000:
              "{task-1}":
                display_name: Nightly scan
                type: Scan
                platforms: WIN|LNX
                priority: "5"
                creator: SITEADMIN
                version: "20240402060000"
                sections: {Schedule: {Hour: "2", Minute: "30"}}
"""

from typing import Any, Dict

from ansible_collections.zupolicy.policy.plugins.module_utils.facts import facts_of
from ansible_collections.zupolicy.policy.plugins.module_utils.guarded import GuardedModule
from ansible_collections.zupolicy.policy.plugins.module_utils.hiding import Hiding
from ansible_collections.zupolicy.policy.plugins.module_utils.tool import ToolError


def main() -> None:
    module = GuardedModule({})
    tool = module.tool()
    hiding = Hiding(module.params["redact"])
    files: Dict[str, Any] = {}
    try:
        for path in module.files():
            files[path] = facts_of(tool.run("show", "--json", "--", path).documents[0], hiding)
    except ToolError as failure:
        module.fail_with(failure)
    module.exit_json(changed=False, ansible_facts={"policy_files": files})


if __name__ == "__main__":
    main()
