"""Makes edits of a desired state, for machines on which the modules cannot run."""

from __future__ import annotations

from typing import Any, Callable, Dict

from ansible.errors import AnsibleFilterError

from ansible_collections.zupolicy.policy.plugins.module_utils.desired import Wrong, edits_of, lines_of

DOCUMENTATION = r"""
name: edits
short_description: Make edits of a desired state
version_added: 1.0.0
description:
  - Turns policies and tasks, written as for M(zupolicy.policy.policy_file), into the lines that C(zupolicy apply)
    reads.
  - It is for machines without Python, such as Windows machines. Give the lines to C(zupolicy apply --edits -).
options:
  _input:
    description: The desired state, with the members C(policies), C(tasks) and C(create).
    type: dict
    required: true
author:
  - The zuPolicyManager developers (@zupolicy)
"""

EXAMPLES = r"""
- name: Change a policy file without the module
  ansible.builtin.command:
    cmd: zupolicy apply /srv/policies/policy.xml --edits - --json
    stdin: "{{ {'policies': policies} | zupolicy.policy.edits }}"
  register: applied
  changed_when: (applied.stdout | from_json).summary.changed > 0
"""

RETURN = r"""
_value:
  description: The edits, one a line.
  type: str
"""


def edits(state: Dict[str, Any]) -> str:
    if not isinstance(state, dict) or set(state) - {"policies", "tasks", "create"}:
        raise AnsibleFilterError("zupolicy.policy.edits: the state has the members policies, tasks and create")
    try:
        # The engine takes a text that begins with a brace for an object, and makes Python of it.
        return " " + lines_of(edits_of(state.get("policies"), state.get("tasks"), state.get("create", True)))
    except Wrong as wrong:
        raise AnsibleFilterError(f"zupolicy.policy.edits: {wrong}") from wrong
    except (KeyError, TypeError, AttributeError) as wrong:
        raise AnsibleFilterError("zupolicy.policy.edits: the state is not written as for policy_file") from wrong


class FilterModule:
    """The engine asks this class for the filters of this file."""

    def filters(self) -> Dict[str, Callable[..., Any]]:
        return {"edits": edits}
