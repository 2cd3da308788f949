"""What `zupolicy show --json` prints, with names as keys."""

from __future__ import annotations

from typing import Any, Dict, Optional

from ansible_collections.zupolicy.policy.plugins.module_utils.hiding import FIELDS, HIDDEN, Hiding, Place

Facts = Dict[str, Any]


def _sections(entry: Facts, hiding: Hiding) -> Facts:
    task_id: Optional[str] = entry.get("taskId")
    sections: Facts = {}
    for section in entry.get("sections") or []:
        values = sections.setdefault(section["name"], {})
        for setting in section["settings"]:
            place = Place(entry["softwareId"], task_id, section["name"], setting["name"])
            # Of two with one name a lookup finds the first.
            values.setdefault(setting["name"], HIDDEN if hiding.hides(place) else setting["value"])
    return sections


def _task(task: Facts, hiding: Hiding) -> Facts:
    fields = {name: HIDDEN if hiding.hides_field(key) else task[key] for name, key in FIELDS.items()}
    return {**fields, "version": task["version"], "sections": _sections(task, hiding)}


def facts_of(shown: Facts, hiding: Hiding) -> Facts:
    """The content of one file, without its secrets."""
    policies: Facts = {}
    for policy in shown["policies"]:
        content = {"version": policy["version"], "sections": _sections(policy, hiding)}
        policies.setdefault(policy["softwareId"], content)
    tasks: Facts = {}
    for task in shown["tasks"]:
        tasks.setdefault(task["softwareId"], {}).setdefault(task["taskId"], _task(task, hiding))
    return {
        "policy_version": shown["policyVersion"],
        "task_version": shown["taskVersion"],
        "assignment_list": shown["assignmentList"],
        "policies": policies,
        "tasks": tasks,
    }
