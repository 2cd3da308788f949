"""Lists that the component hands out: names, and what is odd in a file."""

from __future__ import annotations

import ctypes
from typing import List, NamedTuple

from ._calls import Reference, failure, text_at
from ._library import library


class Notice(NamedTuple):
    """Something odd in a file, which the component read nevertheless.

    `text` says in English what. `line` and `column` say where it is; `software_id` and `task_id` say in which policy
    or task, and are empty where there is none.
    """

    kind: int
    line: int
    column: int
    software_id: str
    task_id: str
    text: str


def names_of(names: Reference) -> List[str]:
    """All names of an IPolicyNames."""
    runtime = library()
    item = names.method("get_Item")
    slot = ctypes.c_void_p()
    place = ctypes.byref(slot)
    found: List[str] = []
    try:
        for index in range(names.number("get_Count")):
            code = item(names.pointer, index, place)
            if code < 0:
                raise failure(code)
            found.append(text_at(runtime, slot.value))
    finally:
        runtime.free_string(slot)
    return found


def notices_of(notices: Reference) -> List[Notice]:
    """All entries of an IPolicyNotices."""
    return [
        Notice(
            notices.number("get_Kind", index),
            notices.number("get_Line", index),
            notices.number("get_Column", index),
            notices.text("get_SoftwareID", index),
            notices.text("get_TaskID", index),
            notices.text("get_Text", index),
        )
        for index in range(notices.number("get_Count"))
    ]
