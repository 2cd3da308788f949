"""The desired state as edits: the objects that `zupolicy apply` reads, one a line."""

from __future__ import annotations

import json
import re
from typing import Any, Dict, Iterator, List, Optional, Sequence, Set

from ansible_collections.zupolicy.policy.plugins.module_utils.hiding import FIELDS

Edit = Dict[str, Any]

# What XML 1.0 cannot hold.
_NOT_IN_XML = re.compile("[^\t\n\r\x20-\ud7ff\ue000-\ufffd\U00010000-\U0010ffff]")


class Wrong(ValueError):
    """A desired state that is no set of edits. The message names the place, and never a value."""


def text_of(value: Any, place: str) -> str:
    """The text of a YAML value. YAML has changed some texts before this is called, so these are refused."""
    if isinstance(value, int) and not isinstance(value, bool):
        return str(value)
    if not isinstance(value, str):
        raise Wrong(f"{place}: the value must be a text or a whole number; put it in quotes")
    found = _NOT_IN_XML.search(value)
    if found:
        raise Wrong(f"{place}: XML cannot hold the character U+{ord(found.group()):04X}")
    return value


def _once(name: str, names: Set[str], place: str) -> None:
    if name in names:
        raise Wrong(f"{place} is given twice")
    names.add(name)


def _describe(entry: Dict[str, Any]) -> str:
    if "task_id" in entry:
        return f"task {entry['software_id']} {entry['task_id']}"
    return f"policy {entry['software_id']}"


def _is_absent(item: Dict[str, Any]) -> bool:
    return item.get("state") == "absent"


class _Entry:
    """The edits of one policy or task: one for what it is to hold, and one for each part that it is not to hold."""

    def __init__(self, entry: Dict[str, Any]) -> None:
        self._entry = entry
        self._place = _describe(entry)
        self._key: Edit = {"softwareId": text_of(entry["software_id"], self._place)}
        if "task_id" in entry:
            self._key["taskId"] = text_of(entry["task_id"], self._place)
        self._fields = self._read_fields()
        self._sections: List[Dict[str, Any]] = []
        self._absent: List[Edit] = []
        names: Set[str] = set()
        for section in entry.get("sections") or []:
            _once(section["name"], names, f"{self._place}: section {section['name']}")
            self._add(section)

    def edits(self, create: bool) -> Iterator[Edit]:
        if _is_absent(self._entry):
            if self._fields or self._sections or self._absent:
                raise Wrong(f"{self._place}: what is absent has no fields and no sections")
            yield {"edit": "absent", **self._key}
            return
        yield from self._created() if create else self._changed()
        yield from self._absent

    def _created(self) -> Iterator[Edit]:
        yield {"edit": "create", **self._key, **self._fields, "sections": self._sections}

    def _changed(self) -> Iterator[Edit]:
        if not self._fields and not self._sections and not self._absent:
            raise Wrong(f"{self._place}: it is not to be created, and nothing in it is to be changed")
        if self._fields:
            yield {"edit": "set", **self._key, "fields": self._fields}
        for section in self._sections:
            for setting in section["settings"]:
                yield {"edit": "set", **self._key, "section": section["name"], **setting}
            if not section["settings"]:
                yield {"edit": "set", **self._key, "section": section["name"]}

    def _read_fields(self) -> Edit:
        given = {FIELDS[name]: self._entry[name] for name in FIELDS if self._entry.get(name) is not None}
        return {name: text_of(value, f"{self._place}: {name}") for name, value in given.items()}

    def _add(self, section: Dict[str, Any]) -> None:
        name = text_of(section["name"], f"{self._place}: the name of a section")
        settings = [*_settings(section, f"{self._place} {name}")]
        if _is_absent(section):
            if settings:
                raise Wrong(f"{self._place}: section {name}: what is absent has no settings")
            self._absent.append({"edit": "absent", **self._key, "section": name})
            return
        present = [setting for setting in settings if setting["value"] is not None]
        # A section that is only to lack a setting is not made for it.
        if present or not settings:
            self._sections.append({"name": name, "settings": present})
        for setting in settings:
            if setting["value"] is None:
                self._absent.append({"edit": "absent", **self._key, "section": name, "name": setting["name"]})


def _settings(section: Dict[str, Any], place: str) -> Iterator[Dict[str, Any]]:
    """Each setting of a section, with the value None when it is to be absent."""
    names: Set[str] = set()
    for name, value in (section.get("values") or {}).items():
        name = text_of(name, f"{place}: the name of a setting")
        _once(name, names, f"{place}/{name}")
        yield {"name": name, "value": text_of(value, f"{place}/{name}")}
    for setting in section.get("settings") or []:
        name = text_of(setting["name"], f"{place}: the name of a setting")
        _once(name, names, f"{place}/{name}")
        if _is_absent(setting):
            if setting.get("value") is not None:
                raise Wrong(f"{place}/{name}: what is absent has no value")
            yield {"name": name, "value": None}
        else:
            yield {"name": name, "value": text_of(setting.get("value"), f"{place}/{name}")}


def edits_of(
    policies: Optional[Sequence[Dict[str, Any]]], tasks: Optional[Sequence[Dict[str, Any]]], create: bool = True
) -> List[Edit]:
    """The edits that give a file the desired state. Throws Wrong."""
    keys: Set[str] = set()
    edits: List[Edit] = []
    for entry in [*(policies or []), *(tasks or [])]:
        _once(_describe(entry), keys, _describe(entry))
        edits.extend(_Entry(entry).edits(create))
    return edits


def lines_of(edits: Sequence[Edit]) -> str:
    return "".join(json.dumps(edit) + "\n" for edit in edits)
