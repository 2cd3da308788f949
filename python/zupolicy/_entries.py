"""Policies and tasks."""

from __future__ import annotations

import os
from typing import TYPE_CHECKING, Any, Dict, Optional, Tuple, Union

from . import _interfaces as table
from ._calls import Reference, require_xml_text
from ._errors import about_file
from ._settings import Settings

if TYPE_CHECKING:
    from ._file import File


class Entry(Settings):
    """What a policy and a task have in common: they are private copies of an entry of a file.

    Changes reach the file's document when they are handed back: by `File.save`, by `File.commit`, or at once by
    `commit`. A copy may be used after its file is closed, but not handed back then.
    """

    __slots__ = ("_file", "_changed", "_software_id")

    def __init__(self, reference: Reference, software_id: str, file: Optional[File]) -> None:
        super().__init__(reference)
        self._software_id = software_id
        self._file = file
        self._changed = False

    @property
    def file(self) -> Optional[File]:
        """The file that the entry belongs to. None after it was removed or replaced there."""
        return self._file

    @property
    def changed(self) -> bool:
        """Whether there are changes that were not handed back yet."""
        return self._changed

    @property
    def software_id(self) -> str:
        """The software ID. It never changes."""
        return self._software_id

    @property
    def key(self) -> Tuple[str, ...]:
        """What finds the entry in its file."""
        return (self._software_id,)

    def commit(self) -> None:
        """Hands the changes back to the file's document now. The file on the disk is written by `File.save`.

        ValueError: the entry belongs to no file, or the file is closed.
        """
        if self._file is None:
            raise ValueError(f"{self!r} belongs to no file. Hand it to one with file.put().")
        self._file.put(self)

    def _note_change(self) -> None:
        self._changed = True
        if self._file is not None:
            self._file._note_change(self)


class Policy(Entry):
    """The policy of one product: a mapping from the names of its sections to `Section` objects.

    Threads  Any thread may use it; each call is one step, and several calls are not.
    """

    __slots__ = ()

    @property
    def version(self) -> str:
        """The version that the policy had when it was taken out of the file; empty for a new one."""
        return self._reading.text("get_TakenVersion")

    def to_xml(self) -> str:
        """The policy as the text of an XML document."""
        return self._reference.text("get_PolicyData")

    def __repr__(self) -> str:
        return f"<zupolicy.Policy {self._software_id!r}>"


#: The fields of a task that may be changed, with the names that the interface has for them.
_FIELDS: Dict[str, str] = {
    "display_name": "DisplayName",
    "type": "TaskType",
    "creator_id": "CreatorID",
    "platforms": "PlatformsSupported",
}


def _field(name: str, description: str) -> Any:
    member = _FIELDS[name]

    def get(task: Task) -> str:
        return task._reference.text(f"get_{member}")

    def put(task: Task, text: str) -> None:
        # The component keeps any text and refuses it when the task is handed back.
        require_xml_text(text)
        task._reference.call(f"put_{member}", text)
        task._note_change()

    return property(get, put, doc=description)


class Task(Entry):
    """One task: its fields, and a mapping from the names of its sections to `Section` objects.

    A field raises InvalidText for a text that XML cannot hold, and keeps what it had.

    Threads  Any thread may use it; each call is one step, and several calls are not.
    """

    __slots__ = ("_id",)

    def __init__(self, reference: Reference, key: Tuple[str, str], file: Optional[File]) -> None:
        super().__init__(reference, key[0], file)
        self._id = key[1]

    display_name: str = _field("display_name", "The name that users see.")
    type: str = _field("type", "The type of the task.")
    creator_id: str = _field("creator_id", "Who created the task.")
    platforms: str = _field("platforms", "The platforms that the task is for, as the file has them.")

    @property
    def id(self) -> str:
        """The task ID. It is unique among the tasks of one software ID."""
        return self._id

    @property
    def key(self) -> Tuple[str, str]:
        """The software ID and the task ID: what finds the task in `File.tasks`."""
        return self._software_id, self._id

    @property
    def priority(self) -> int:
        """The priority, a signed 32-bit number."""
        return self._reference.number("get_Priority")

    @priority.setter
    def priority(self, value: int) -> None:
        if not -(1 << 31) <= value < 1 << 31:
            raise OverflowError("The priority of a task is a signed 32-bit number.")
        self._reference.call("put_Priority", int(value))
        self._note_change()

    @property
    def version(self) -> str:
        """The time stamp that the task had when it was taken out of the file; empty for a new one."""
        return self._reference.text("get_Version")

    def to_xml(self) -> str:
        """The task as the text of an XML document, with a fresh time stamp."""
        return self._reference.text("get_TaskData")

    def export_ini(self, path: Union[str, os.PathLike[str]]) -> None:
        """Writes the fields and all settings into an INI file. An existing file keeps its other settings."""
        target = absolute(path)
        with about_file(target):
            self._reference.call("WriteTaskDataToIniFile", target)

    def __repr__(self) -> str:
        return f"<zupolicy.Task {self._software_id!r}, {self._id!r}>"


def absolute(path: Union[str, os.PathLike[str]]) -> str:
    """The path from the root, so that it means the same after a change of the current folder."""
    text = os.fspath(path)
    if not isinstance(text, str):
        raise TypeError("A path is a str or a path-like object, not bytes.")
    if "\0" in text:
        raise ValueError("embedded null character in the path")
    return os.path.join(os.getcwd(), text) if text else text
