"""Which values are secrets, and what a reader gets in their place."""

from __future__ import annotations

import re
from typing import Any, Dict, Iterable, List, NamedTuple, Optional, Sequence, Set

HIDDEN = "***"

#: The fields of a task: the name in this collection, the name in the tool's JSON.
FIELDS = {
    "display_name": "displayName",
    "type": "type",
    "platforms": "platforms",
    "priority": "priority",
    "creator": "creator",
}

#: The component repeats fields of a task as settings of it.
REPEATED = {
    ("Task", "TaskName"): "displayName",
    ("Task", "TaskType"): "type",
    ("Task", "Platforms"): "platforms",
    ("Task", "TaskPriority"): "priority",
    ("General", "TaskType"): "type",
    ("General", "wTaskType"): "type",
}

#: The arguments of the modules that hold no value of a setting.
_PLAIN = frozenset(
    ("path", "paths", "redact", "create", "backup", "jobs", "lock_timeout", "executable", "rules", "strict")
)


class Place(NamedTuple):
    """Where a setting is. A policy has no task ID."""

    software_id: str
    task_id: Optional[str]
    section: str
    name: str


def matches(pattern: str, text: str) -> bool:
    """Whether a pattern with * and ? stands for the whole text."""
    parts = {"*": ".*", "?": "."}
    expression = "".join(parts.get(character, re.escape(character)) for character in pattern)
    return re.fullmatch(expression, text, re.DOTALL) is not None


class Hiding:
    """The secrets: settings and fields that match a pattern, and settings that are marked one by one."""

    def __init__(self, patterns: Sequence[str], marked: Iterable[Place] = ()) -> None:
        self._patterns = list(patterns)
        self._marked: Set[Place] = set(marked)

    def hides(self, place: Place) -> bool:
        if place in self._marked:
            return True
        field = REPEATED.get((place.section, place.name)) if place.task_id is not None else None
        return self.hides_field(field) if field else self._names(place.section, place.name)

    def hides_field(self, field: str) -> bool:
        """The field's name is the one in the tool's JSON."""
        return any(matches(pattern, field) for pattern in self._patterns) or any(
            self._names(section, name) for (section, name), of in REPEATED.items() if of == field
        )

    def _names(self, section: str, name: str) -> bool:
        return any(
            matches(pattern, name) or ("/" in pattern and matches(pattern, f"{section}/{name}"))
            for pattern in self._patterns
        )


def _items(value: Any) -> List[Dict[str, Any]]:
    """The objects of a list; nothing when it is no list."""
    return [item for item in value if isinstance(item, dict)] if isinstance(value, list) else []


def _is_true(value: Any) -> bool:
    """Whether a mark is set. Whatever is not clearly off counts as set."""
    return str(value).lower() not in ("none", "false", "no", "n", "off", "f", "0", "0.0", "")


def hiding_of(arguments: Dict[str, Any]) -> Hiding:
    """What a module's arguments hide. When they are malformed, they are about to be refused, and nothing is shown."""
    patterns = arguments.get("redact") or []
    if isinstance(patterns, str):
        patterns = patterns.split(",")
    if not isinstance(patterns, list) or not all(isinstance(pattern, str) for pattern in patterns):
        return Hiding(["*"])
    marked = [
        Place(str(entry.get("software_id")), _task_id(entry), str(section.get("name")), str(setting.get("name")))
        for entry in _entries(arguments)
        for section in _items(entry.get("sections"))
        for setting in _items(section.get("settings"))
        if _is_true(setting.get("no_log"))
    ]
    return Hiding(patterns, marked)


def _task_id(entry: Dict[str, Any]) -> Optional[str]:
    return None if entry.get("task_id") is None else str(entry["task_id"])


def _entries(arguments: Dict[str, Any]) -> List[Dict[str, Any]]:
    return _items(arguments.get("policies")) + _items(arguments.get("tasks"))


class _Show:
    """Copies arguments without their secrets, and collects these."""

    def __init__(self, hiding: Hiding) -> None:
        self.hiding = hiding
        self.secrets: List[str] = []

    def hide(self, value: Any) -> str:
        if isinstance(value, (list, dict)):
            for part in value.values() if isinstance(value, dict) else value:
                self.hide(part)
        elif value is not None and not isinstance(value, bool) and str(value):
            self.secrets.append(str(value))
        return HIDDEN

    def each(self, value: Any, show: Any) -> Any:
        """The items of a list. What has another form is about to be refused, and is hidden."""
        if value is None:
            return None
        if not isinstance(value, list):
            return self.hide(value)
        return [show(item) if isinstance(item, dict) else self.hide(item) for item in value]

    def entry(self, entry: Dict[str, Any]) -> Dict[str, Any]:
        def show(key: str, value: Any) -> Any:
            if key == "sections":
                return self.each(value, lambda section: self.section(entry, section))
            if key in FIELDS:
                return self.hide(value) if value is not None and self.hiding.hides_field(FIELDS[key]) else value
            return value if key in ("software_id", "task_id", "state") else self.hide(value)

        return {key: show(key, value) for key, value in entry.items()}

    def section(self, entry: Dict[str, Any], section: Dict[str, Any]) -> Dict[str, Any]:
        def place(name: Any) -> Place:
            return Place(str(entry.get("software_id")), _task_id(entry), str(section.get("name")), str(name))

        def setting(item: Dict[str, Any]) -> Dict[str, Any]:
            is_hidden = self.hiding.hides(place(item.get("name")))
            return {key: shown(key, value, is_hidden) for key, value in item.items()}

        def shown(key: str, value: Any, is_hidden: bool) -> Any:
            if key == "value":
                return self.hide(value) if value is not None and is_hidden else value
            return value if key in ("name", "state", "no_log") else self.hide(value)

        def show(key: str, value: Any) -> Any:
            if key == "settings":
                return self.each(value, setting)
            if key == "values" and isinstance(value, dict):
                return {name: shown("value", text, self.hiding.hides(place(name))) for name, text in value.items()}
            return value if key in ("name", "state") or value is None else self.hide(value)

        return {key: show(key, value) for key, value in section.items()}


def without_secrets(arguments: Dict[str, Any]) -> Dict[str, Any]:
    """A module's arguments as they may be shown and logged."""
    show = _Show(hiding_of(arguments))

    def shown(key: str, value: Any) -> Any:
        if key in ("policies", "tasks"):
            return show.each(value, show.entry)
        # What the module does not know may be a setting that is indented wrongly.
        return value if key in _PLAIN or value is None else show.hide(value)

    return {key: shown(key, value) for key, value in arguments.items()}


def secrets_of(arguments: Dict[str, Any]) -> List[str]:
    """The hidden values of a module's arguments, the longest first."""
    show = _Show(hiding_of(arguments))
    for key in ("policies", "tasks"):
        show.each(arguments.get(key), show.entry)
    for key in set(arguments) - {"policies", "tasks", *_PLAIN}:
        show.hide(arguments[key])
    return sorted(set(show.secrets), key=len, reverse=True)


def scrub(text: str, secrets: Iterable[str]) -> str:
    """A text of somebody else, who may quote a secret."""
    for secret in secrets:
        text = text.replace(secret, HIDDEN)
    return text
