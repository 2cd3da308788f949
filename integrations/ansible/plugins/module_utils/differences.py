"""Differences in meaning, as a reader sees them: made of what `zupolicy diff --json` prints."""

from __future__ import annotations

import unicodedata
from typing import Any, Dict, Iterator, List, Sequence

from ansible_collections.zupolicy.policy.plugins.module_utils.hiding import HIDDEN, Hiding, Place


def visible(text: str) -> str:
    """The text without what could move a cursor, change the writing direction, break a line or be invisible."""

    def shown(character: str) -> str:
        if unicodedata.category(character) not in ("Cc", "Cf", "Cs", "Zl", "Zp", "Co", "Cn"):
            return character
        number = ord(character)
        short = {"\n": "\\n", "\r": "\\r", "\t": "\\t"}
        return short.get(character) or (f"\\u{number:04x}" if number < 0x10000 else f"\\U{number:08x}")

    return "".join(shown(character) for character in text)


def _quoted(text: str) -> str:
    return '"' + visible(text.replace("\\", "\\\\")) + '"'


def _counted(number: int, word: str) -> str:
    return f"({number} {word}{'' if number == 1 else 's'})"


def _entry(edit: Dict[str, Any]) -> str:
    if "taskId" in edit:
        return visible(f"task {edit['softwareId']} {edit['taskId']}")
    return visible(f"policy {edit['softwareId']}")


def _setting(edit: Dict[str, Any], hiding: Hiding) -> str:
    place = Place(edit["softwareId"], edit.get("taskId"), edit["section"], edit["name"])

    def value(key: str) -> str:
        return f'"{HIDDEN}"' if hiding.hides(place) else _quoted(edit[key])

    name = f"{_entry(edit)} {visible(place.section)}/{visible(place.name)}"
    if edit["edit"] == "absent":
        return f"- {name}" + (f": {value('before')}" if edit.get("before") is not None else "")
    if edit.get("before") is not None:
        return f"~ {name}: {value('before')} -> {value('value')}"
    return f"+ {name}: {value('value')}"


def _fields(edit: Dict[str, Any], hiding: Hiding) -> Iterator[str]:
    for name, after in edit["fields"].items():
        before = (edit.get("before") or {}).get(name) or ""
        pair = [f'"{HIDDEN}"' if hiding.hides_field(name) else _quoted(str(value)) for value in (before, after)]
        yield f"~ {_entry(edit)} {name}: {pair[0]} -> {pair[1]}"


def _lines(edit: Dict[str, Any], hiding: Hiding) -> Iterator[str]:
    if "name" in edit:
        yield _setting(edit, hiding)
    elif "fields" in edit:
        yield from _fields(edit, hiding)
    elif edit["edit"] == "create":
        sections = edit.get("sections") or []
        yield f"+ {_entry(edit)}" + (f" {_counted(len(sections), 'section')}" if sections else "")
        for section in sections:
            for setting in section.get("settings") or []:
                yield "  " + _setting({**edit, "edit": "set", "section": section["name"], **setting}, hiding)
    elif "section" in edit:
        sign = "-" if edit["edit"] == "absent" else "+"
        yield f"{sign} {_entry(edit)} section {visible(edit['section'])}"
    elif edit["edit"] == "absent":
        yield f"- {_entry(edit)}"
    else:
        yield f"~ {visible(str(edit.get('what')))}"


def lines_of(edits: Sequence[Dict[str, Any]], hiding: Hiding) -> List[str]:
    """A line for each difference, as `zupolicy diff` prints it, with the settings of what is new below."""
    return [line for edit in edits for line in _lines(edit, hiding)]


def difference(path: str, edits: Sequence[Dict[str, Any]], hiding: Hiding) -> Dict[str, str]:
    """An item of the engine's diff mode."""
    return {"prepared": "\n".join([f"{visible(path)}:", *lines_of(edits, hiding)]) + "\n"}
