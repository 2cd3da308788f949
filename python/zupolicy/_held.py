"""The policies and tasks that a file has handed out."""

from __future__ import annotations

from typing import TYPE_CHECKING, Dict, List, Optional, Tuple
from weakref import WeakValueDictionary

from ._entries import Entry

if TYPE_CHECKING:
    from ._file import File


class HeldEntries:
    """What belongs to a file: the entries that somebody holds, and those with changes that were not handed back.

    A changed entry is kept although nobody holds it.

    Threads  The file's lock guards everything but `note_change`, which is one step.
    """

    def __init__(self) -> None:
        self._held: WeakValueDictionary[Tuple[str, ...], Entry] = WeakValueDictionary()
        self._waiting: Dict[int, Entry] = {}

    def find(self, key: Tuple[str, ...]) -> Optional[Entry]:
        """The entry of that key, if somebody holds it or it has changes."""
        return self._held.get(key)

    def attach(self, entry: Entry, file: File) -> None:
        """Makes an entry belong to the file."""
        self._held[entry.key] = entry
        entry._file = file

    def detach(self, entry: Entry) -> None:
        """Makes an entry belong to no file. Its changes are not handed back any more."""
        entry._file = None
        self._waiting.pop(id(entry), None)
        if self._held.get(entry.key) is entry:
            del self._held[entry.key]

    def detach_all(self) -> None:
        """Makes every entry belong to no file."""
        for entry in list(self._held.values()):
            entry._file = None
        self._held.clear()
        self._waiting.clear()

    def note_change(self, entry: Entry) -> None:
        """The entry has a change that was not handed back."""
        entry._changed = True
        self._waiting.setdefault(id(entry), entry)

    def note_return(self, entry: Entry) -> None:
        """The entry is being handed back."""
        entry._changed = False
        self._waiting.pop(id(entry), None)

    @property
    def waiting(self) -> List[Entry]:
        """The entries with changes that were not handed back, in the order of their first changes."""
        return list(self._waiting.values())
