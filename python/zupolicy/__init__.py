"""Reads and changes the policy file of a management agent.

    with zupolicy.open("policy.xml") as file:
        file.policies["PRODUCTA1000"]["General"]["ScanInterval"] = "15"
        for task in file.tasks:
            print(task.software_id, task.id, task.display_name)
        file.save()

What was not edited stays as it was, byte for byte. `save` replaces the file in one step, and only if nobody else has
changed it meanwhile: otherwise it raises `Changed` and leaves the file alone.
"""

from __future__ import annotations

import os
from typing import Optional, Union

from ._collections import Policies, Tasks
from ._entries import Policy, Task
from ._errors import (
    AccessDenied,
    Changed,
    Error,
    FileMissing,
    InvalidText,
    LibraryNotFound,
    Locked,
    NotFound,
    ParseError,
    ReadOnly,
)
from ._file import File
from ._library import use_libraries
from ._names import Notice
from ._settings import Section

__all__ = [
    "AccessDenied",
    "Changed",
    "Error",
    "File",
    "FileMissing",
    "InvalidText",
    "LibraryNotFound",
    "Locked",
    "NotFound",
    "Notice",
    "ParseError",
    "Policies",
    "Policy",
    "ReadOnly",
    "Section",
    "Task",
    "Tasks",
    "open",
    "use_libraries",
]


def open(
    path: Union[str, os.PathLike[str]],
    *,
    read_only: bool = False,
    lock: bool = False,
    timeout: Optional[float] = 10.0,
) -> File:
    """Loads a policy file.

    With `read_only`, changes cannot be handed back to the file. With `lock`, no other editor gets the file until it is
    saved or closed; the call waits up to `timeout` seconds for an editor that has it, and None waits for ever.

    FileMissing, AccessDenied, ParseError; Locked: another process was editing the file all the time; LibraryNotFound.
    ValueError: `read_only` and `lock` at once.
    """
    return File(path, read_only, lock, timeout)
