"""A policy file: open it, change it, save it."""

from __future__ import annotations

import math
import os
import threading
import time
from contextlib import contextmanager
from types import TracebackType
from typing import Callable, Dict, Iterator, List, Optional, Tuple, Type, Union

from . import _interfaces as table
from ._calls import Reference, new_policy_file, require_xml_text
from ._collections import Policies, Sections, Tasks
from ._entries import Entry, Policy, Task, absolute
from ._errors import Error, InvalidText, Locked, NotFound, about_file, error_of
from ._held import HeldEntries
from ._names import Notice, names_of, notices_of
from ._results import NOT_INITIALISED, READ_ONLY, UNEXPECTED, WRITTEN_NOT_FLUSHED
from ._text import AllSettings, products_of, sections_of

Key = Tuple[str, str]

#: How long one call waits for a lock, so that Ctrl+C has an effect between two of them.
_SLICE = 0.2


class File:
    """A policy file in memory. `zupolicy.open` makes it; use it in a `with` block, or call `close`.

    Lifetime  Leaving the block closes the file and writes nothing: what was not saved is gone. A closed file raises
              ValueError. Policies and tasks are private copies and may be read after that.
    Threads   Any thread may use it. Each call is one step: while one thread saves, another one waits.
    Fork      It belongs to the process that opened it. A child process gets RuntimeError.
    """

    def __init__(self, path: Union[str, os.PathLike[str]], read_only: bool, lock: bool, timeout: Optional[float]):
        if read_only and lock:
            raise ValueError("A file that is opened read-only cannot be locked for editing.")
        self._path = absolute(path)
        self._read_only = read_only
        self._lock = threading.RLock()
        self._entries = HeldEntries()
        self._modified = False
        self._locked = False
        self._others: Dict[str, Reference] = {}
        self._reference: Optional[Reference] = new_policy_file()
        if lock:
            self._load_locked(timeout)
        else:
            self._load()

    # Opening and closing

    @property
    def path(self) -> str:
        """The path that was opened, from the root."""
        return self._path

    @property
    def read_only(self) -> bool:
        """Whether the file was opened read-only."""
        return self._read_only

    @property
    def closed(self) -> bool:
        """Whether the file is closed."""
        return self._reference is None

    @property
    def locked(self) -> bool:
        """Whether this object holds the editors' lock."""
        return self._locked

    def close(self) -> None:
        """Gives the lock back and forgets the document. Nothing is written. Closing again does nothing."""
        reference = self._reference
        if reference is None:
            return
        if reference.is_usable():
            with self._lock:
                self._end_edit()
        self._others = {}
        self._reference = None

    def __enter__(self) -> File:
        self._object()
        return self

    def __exit__(
        self,
        type_: Optional[Type[BaseException]],
        value: Optional[BaseException],
        traceback: Optional[TracebackType],
    ) -> None:
        self.close()

    def __repr__(self) -> str:
        return f"<zupolicy.File {self._path!r}{' closed' if self.closed else ''}>"

    # What the file holds

    @property
    def policies(self) -> Policies:
        """The policies, by software ID."""
        self._object()
        return Policies(self)

    @property
    def tasks(self) -> Tasks:
        """The tasks."""
        self._object()
        return Tasks(self)

    @property
    def policy_version(self) -> str:
        """The version of the policies."""
        return self._object().text("get_VersionPolicy")

    @property
    def task_version(self) -> str:
        """The version of the tasks."""
        return self._object().text("get_VersionTask")

    @property
    def assignment_list(self) -> str:
        """The assignment list; empty when the file has none."""
        return self._object().text("get_PolicyAssignmentList")

    @property
    def notices(self) -> List[Notice]:
        """What is odd in the file as it was loaded, such as two policies of one software ID."""
        return notices_of(self._contents().obtain("get_Notices", table.POLICY_NOTICES))

    def to_xml(self) -> str:
        """The document as text, with the changes handed back. Its version attributes are not up to date.

        A file that was opened read-only takes no changes back: its text is without them.
        """
        if not self._read_only:
            self.commit()
        text = self._object().text("WriteFileBuffer")
        if not text:
            raise Error(NOT_INITIALISED)
        return text

    # Changing and writing

    @property
    def modified(self) -> bool:
        """Whether there are changes that were not saved."""
        return self._modified or bool(self._entries.waiting)

    @property
    def changed_on_disk(self) -> bool:
        """Whether the file on the disk is no longer the one that was loaded or saved."""
        with about_file(self._path):
            return self._contents().number("get_HasChangedOnDisk") != 0

    def put(self, entry: Entry) -> None:
        """Puts a copy of a policy or task into the document, in place of one with the same IDs.

        It may come from another file. One that belongs to no file belongs to this one then.
        """
        reference = self._object()
        if not isinstance(entry, (Policy, Task)):
            raise TypeError(f"expected a Policy or a Task, not {type(entry).__name__}")
        with self._lock:
            is_own = entry._file is self
            if is_own:
                # Before the call: what another thread changes during it is handed back next time.
                self._entries.note_return(entry)
            try:
                reference.call("AddTask" if isinstance(entry, Task) else "AddPolicy", entry._reference, 1)
            except Error:
                if is_own:
                    self._entries.note_change(entry)
                raise
            self._modified = True
            if not is_own:
                self._replace(entry)

    def commit(self) -> None:
        """Hands every changed policy and task back to the document, in the order of their first changes."""
        self._object()
        with self._lock:
            for entry in self._entries.waiting:
                self.put(entry)

    def save(self, timeout: Optional[float] = 10.0) -> None:
        """Hands the changes back and replaces the file, if it is still the one that was loaded.

        Readers see the old file or the new one. Waits up to `timeout` seconds for another editor; None waits for ever.
        A lock that was taken by `open` or `edit` ends with a successful save.

        Changed: the file was changed by something else, and is left alone. Locked: another process is editing it.
        ReadOnly. Any other Error: the file is as it was, except after "WrittenNotFlushed": then the new file is in
        place, but may be lost with the power.
        """
        contents = self._contents()
        with self._lock:
            self.commit()
            try:
                with about_file(self._path):
                    _wait(timeout, lambda milliseconds: contents.call("WriteIfUnchanged", milliseconds))
            except Error as error:
                if error.code != WRITTEN_NOT_FLUSHED:
                    raise
                self._locked = self._modified = False
                raise
            self._locked = self._modified = False

    def save_as(self, path: Union[str, os.PathLike[str]]) -> None:
        """Hands the changes back and writes the document to a path, whatever is there.

        `path` and `save` go on to mean the file that was opened.
        """
        reference = self._object()
        target = absolute(path)
        with self._lock:
            self.commit()
            with about_file(target):
                reference.call("WriteFile", target, 0)

    def reload(self) -> None:
        """Loads the file again. Changes that were not saved are gone, and a lock ends.

        Policies and tasks that were taken before belong to no file then.
        """
        self._object()
        with self._lock:
            self._load()

    @contextmanager
    def edit(self, timeout: Optional[float] = 10.0) -> Iterator[File]:
        """Locks the file against other editors and loads it again; the lock ends with `save` or with the block.

        Waits up to `timeout` seconds for another editor; None waits for ever. ValueError: there are changes that were
        not saved. Locked: another process is editing the file; nothing is loaded then. ReadOnly.
        """
        self._object()
        with self._lock:
            if self._read_only:
                with about_file(self._path):
                    raise error_of(READ_ONLY)
            if self.modified:
                raise ValueError("There are changes that were not saved. Save them, or call reload().")
            self._load_locked(timeout)
        try:
            yield self
        finally:
            if not self.closed:
                with self._lock:
                    self._end_edit()

    # For the collections and the entries

    def _policy_ids(self) -> List[str]:
        return names_of(self._contents().obtain("get_PolicyIDs", table.POLICY_NAMES))

    def _task_software_ids(self) -> List[str]:
        return names_of(self._contents().obtain("get_TaskSoftwareIDs", table.POLICY_NAMES))

    def _task_ids(self, software_id: str) -> List[str]:
        return names_of(self._contents().obtain("GetTaskIDs", table.POLICY_NAMES, software_id))

    def _policy(self, software_id: str) -> Policy:
        reference = self._object()
        with self._lock:
            policy = self._entries.find((software_id,))
            if policy is None:
                try:
                    found = reference.obtain("GetPolicy", table.POLICY_PRODUCT, software_id)
                except NotFound as error:
                    raise NotFound(error.code, f"There is no policy {software_id!r} in {self!r}.") from None
                policy = Policy(found, software_id, self)
                self._entries.attach(policy, self)
            assert isinstance(policy, Policy)
            return policy

    def _all_settings(self) -> AllSettings:
        with self._lock:
            document = self.to_xml()
            # A file that was opened read-only takes no changes back, so its document is without them.
            changed = {entry.key for entry in self._entries.waiting}
            found: AllSettings = {}
            for software_id, sections in products_of(document, self._policy_ids()):
                if sections is None or (software_id,) in changed:
                    sections = self._policy(software_id).to_dict()
                found[software_id] = sections
            return found

    def _task(self, key: Key) -> Task:
        reference = self._object()
        with self._lock:
            task = self._entries.find(key)
            if task is None:
                try:
                    found = reference.obtain("GetTask", table.POLICY_TASK, *key)
                except NotFound as error:
                    raise NotFound(error.code, f"There is no task {key!r} in {self!r}.") from None
                task = Task(found, key, self)
                self._entries.attach(task, self)
            assert isinstance(task, Task)
            return task

    def _create_policy(self, software_id: str, sections: Sections) -> Policy:
        with self._lock:
            if software_id in self.policies:
                raise ValueError(f"There is a policy {software_id!r} already.")
            new = self._object().obtain("CreatePolicy", table.POLICY_PRODUCT)
            new.call("put_SoftwareID", software_id)
            if new.text("get_SoftwareID") != software_id:
                raise InvalidText(UNEXPECTED, "The software ID holds a character that XML cannot hold.")
            policy = Policy(new, software_id, None)
            policy.replace(sections)
            self.put(policy)
            return policy

    def _set_policy(self, software_id: str, sections: Sections) -> None:
        with self._lock:
            if software_id in self.policies:
                self._policy(software_id).replace(sections)
            else:
                self._create_policy(software_id, sections)

    def _create_task(self, key: Key, fields: Dict[str, str], priority: int, sections: Sections) -> Task:
        with self._lock:
            if key in self.tasks:
                raise ValueError(f"There is a task {key!r} already.")
            require_xml_text(*key)
            new = self._object().obtain("CreateTask", table.POLICY_TASK)
            new.call("put_SoftwareID", key[0])
            new.call("put_TaskID", key[1])
            task = Task(new, key, None)
            for name, text in fields.items():
                setattr(task, name, text)
            task.priority = priority
            task.replace(sections)
            self.put(task)
            return task

    def _remove_policy(self, software_id: str) -> None:
        with self._lock:
            policy = self._policy(software_id)
            self._object().call("RemovePolicy", software_id)
            self._modified = True
            self._entries.detach(policy)

    def _remove_task(self, key: Key) -> None:
        with self._lock:
            task = self._task(key)
            self._object().call("RemoveTask", *key)
            self._modified = True
            self._entries.detach(task)

    def _note_change(self, entry: Entry) -> None:
        if not self.closed:
            self._entries.note_change(entry)

    # The object and its state

    def _object(self) -> Reference:
        reference = self._reference
        if reference is None:
            raise ValueError(f"The policy file is closed: {self._path!r}")
        reference.check_process()
        return reference

    def _other(self, interface: table.Interface) -> Reference:
        reference = self._object()
        found = self._others.get(interface.name)
        if found is None:
            found = self._others[interface.name] = reference.query(interface)
        return found

    def _contents(self) -> Reference:
        return self._other(table.POLICY_FILE_CONTENTS)

    def _load(self) -> None:
        self._forget_entries()
        with about_file(self._path):
            self._object().call("InitializeFile", self._path, int(self._read_only))

    def _load_locked(self, timeout: Optional[float]) -> None:
        edit = self._other(table.POLICY_FILE_EDIT)
        self._forget_entries()
        with about_file(self._path):
            _wait(timeout, lambda milliseconds: edit.call("OpenForEdit", self._path, milliseconds))
        self._locked = True

    def _end_edit(self) -> None:
        if self._locked:
            self._locked = False
            self._other(table.POLICY_FILE_EDIT).call("EndEdit")

    def _forget_entries(self) -> None:
        self._entries.detach_all()
        self._modified = self._locked = False

    def _replace(self, entry: Entry) -> None:
        """Notes that the document holds a copy of an entry that did not belong to this file."""
        old = self._entries.find(entry.key)
        if old is not None:
            self._entries.detach(old)
        if entry._file is None:
            entry._changed = False
            self._entries.attach(entry, self)


def _wait(timeout: Optional[float], call: Callable[[int], None]) -> None:
    """Calls with a number of milliseconds to wait, again and again until the time is over."""
    end = math.inf if timeout is None else time.monotonic() + timeout
    while True:
        remaining = end - time.monotonic()
        try:
            call(max(0, round(1000 * min(remaining, _SLICE))))
            return
        except Locked:
            if remaining <= _SLICE:
                raise
