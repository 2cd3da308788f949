"""The policies and the tasks of a file, as collections."""

from __future__ import annotations

from typing import (
    TYPE_CHECKING,
    Collection,
    Dict,
    Iterator,
    List,
    Mapping,
    MutableMapping,
    Optional,
    Tuple,
    TypeVar,
    Union,
)

from ._entries import Policy, Task
from ._errors import NotFound

if TYPE_CHECKING:
    from ._file import File

_Default = TypeVar("_Default")

#: The sections of a policy or task, each with its settings. A Policy and a Task are such mappings too.
Sections = Mapping[str, Mapping[str, str]]


class Policies(MutableMapping[str, Policy]):
    """The policies of a file, from software IDs to `Policy` objects, in the order of the file.

    While somebody holds a policy, or has changed it, looking it up again gives the same object.
    `policies[software_id] = sections` makes the policy hold exactly those settings, and creates it if it is missing.
    """

    __slots__ = ("_file",)

    def __init__(self, file: File) -> None:
        self._file = file

    def create(self, software_id: str, sections: Optional[Sections] = None) -> Policy:
        """Adds a policy to the file's document. ValueError: there is one already."""
        return self._file._create_policy(software_id, sections or {})

    def to_dict(self) -> Dict[str, Dict[str, Dict[str, str]]]:
        """A copy: every policy with its sections and the stored texts of its settings.

        Many times as fast as asking for each of them.
        """
        return self._file._all_settings()

    def __getitem__(self, software_id: str) -> Policy:
        return self._file._policy(software_id)

    def __setitem__(self, software_id: str, sections: Sections) -> None:
        self._file._set_policy(software_id, sections)

    def __delitem__(self, software_id: str) -> None:
        self._file._remove_policy(software_id)

    def __contains__(self, software_id: object) -> bool:
        return isinstance(software_id, str) and super().__contains__(software_id)

    def __iter__(self) -> Iterator[str]:
        return iter(self._file._policy_ids())

    def __len__(self) -> int:
        return len(self._file._policy_ids())

    def __repr__(self) -> str:
        return f"<the policies of {self._file!r}>"


class Tasks(Collection[Task]):
    """The tasks of a file: iterating gives `Task` objects, ordered by software ID as the file first names it.

    `tasks[software_id, task_id]` is one task. While somebody holds a task, or has changed it, looking it up again gives
    the same object.
    """

    __slots__ = ("_file",)

    def __init__(self, file: File) -> None:
        self._file = file

    def create(
        self,
        software_id: str,
        task_id: str,
        *,
        display_name: Optional[str] = None,
        type: str = "",
        creator_id: str = "",
        platforms: str = "",
        priority: int = 0,
        sections: Optional[Sections] = None,
    ) -> Task:
        """Adds a task to the file's document; without a display name it gets its ID as one.

        ValueError: there is one already. InvalidText: XML cannot hold an ID, a field or a setting.
        """
        name = task_id if display_name is None else display_name
        fields = {"display_name": name, "type": type, "creator_id": creator_id, "platforms": platforms}
        return self._file._create_task((software_id, task_id), fields, priority, sections or {})

    def of(self, software_id: str) -> List[Task]:
        """The tasks of one software ID, in the order of the file; empty when it has none."""
        return list(self._tasks((software_id, task_id) for task_id in self._file._task_ids(software_id)))

    def keys(self) -> List[Tuple[str, str]]:
        """The software ID and task ID of every task."""
        return [(software, task) for software in self.software_ids() for task in self._file._task_ids(software)]

    def software_ids(self) -> List[str]:
        """The software IDs that have tasks."""
        return self._file._task_software_ids()

    def get(self, key: Tuple[str, str], default: Optional[_Default] = None) -> Union[Task, Optional[_Default]]:
        """The task of that software ID and task ID, or the default."""
        try:
            return self[key]
        except NotFound:
            return default

    def __getitem__(self, key: Tuple[str, str]) -> Task:
        software_id, task_id = key
        return self._file._task((software_id, task_id))

    def __delitem__(self, key: Tuple[str, str]) -> None:
        software_id, task_id = key
        self._file._remove_task((software_id, task_id))

    def __contains__(self, item: object) -> bool:
        """Whether there is a task of that key, or of the key of that task."""
        key = item.key if isinstance(item, Task) else item
        if not isinstance(key, tuple) or len(key) != 2 or not all(isinstance(part, str) for part in key):
            return False
        return self.get((key[0], key[1])) is not None

    def __iter__(self) -> Iterator[Task]:
        return self._tasks(iter(self.keys()))

    def __len__(self) -> int:
        return len(self.keys())

    def __repr__(self) -> str:
        return f"<the tasks of {self._file!r}>"

    def _tasks(self, keys: Iterator[Tuple[str, str]]) -> Iterator[Task]:
        for key in keys:
            task = self.get(key)
            if task is not None:  # it may have been removed meanwhile
                yield task
