#!/usr/bin/python
"""Checks policy files."""
# Copyright (c) 2026 The zuPolicyManager developers
# MIT License (see LICENSE)

from __future__ import annotations

DOCUMENTATION = r"""
module: policy_check
short_description: Check policy files
version_added: 1.0.0
description:
  - Checks with C(zupolicy check) that policy files can be loaded, that nothing in them is odd, and that they keep
    rules.
  - Fails when a file does not pass. All files are checked, and the message has a line for each finding.
options:
  strict:
    description: Whether a file with a warning fails.
    type: bool
    default: true
  rules:
    description: A file with rules on the managed machine, as C(zupolicy check --rules) takes it.
    type: path
  redact:
    description:
      - Settings whose values are secrets, as patterns with C(*) and C(?) of C(NAME) or C(SECTION/NAME).
      - They are hidden in messages about broken rules, where C(***) takes their place. Other messages have no values.
extends_documentation_fragment: zupolicy.policy.files
attributes:
  check_mode:
    description: Changes nothing in any mode.
    support: full
seealso:
  - module: zupolicy.policy.policy_file
  - module: zupolicy.policy.policy_facts
author:
  - The zuPolicyManager developers (@zupolicy)
"""

EXAMPLES = r"""
- name: Check that nothing in the file is odd
  zupolicy.policy.policy_check:
    path: /srv/policies/policy.xml

- name: Check that all files keep the rules of the site
  zupolicy.policy.policy_check:
    paths:
      - /srv/policies/office.xml
      - /srv/policies/laboratory.xml
    rules: /etc/zupolicy/rules.json
    redact: ["*Password*"]
"""

RETURN = r"""
findings:
  description: Everything that was found, one line each, C(file:line:column) first.
  returned: always
  type: list
  elements: str
  sample: ["/srv/policies/policy.xml:2:1: no element found"]
files:
  description: What C(zupolicy check --json) reports about each file.
  returned: when the tool has reported on files
  type: list
  elements: dict
"""

from typing import Any, Dict

from ansible_collections.zupolicy.policy.plugins.module_utils.findings import findings_of
from ansible_collections.zupolicy.policy.plugins.module_utils.guarded import GuardedModule
from ansible_collections.zupolicy.policy.plugins.module_utils.tool import ToolError, pattern_options

ARGUMENTS: Dict[str, Any] = {"strict": {"type": "bool", "default": True}, "rules": {"type": "path"}}


def main() -> None:
    module = GuardedModule(ARGUMENTS)
    parameters = module.params
    options = ["--json"] + (["--strict"] if parameters["strict"] else [])
    if parameters["rules"] is not None:
        options += [f"--rules={parameters['rules']}", *pattern_options(parameters["redact"])]
    try:
        run = module.tool().run("check", *options, "--", *module.files())
    except ToolError as failure:
        module.fail_with(failure, findings=[])
    files = run.documents[0]["files"]
    findings = findings_of(files)
    if run.code != 0:
        module.fail("; ".join(findings), findings=findings, files=files)
    module.exit_json(changed=False, findings=findings, files=files)


if __name__ == "__main__":
    main()
