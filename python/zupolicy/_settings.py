"""Sections of settings, as mappings: what a policy and a task have in common."""

from __future__ import annotations

import ctypes
from typing import Callable, Dict, ItemsView, Iterator, List, Mapping, MutableMapping, Optional, Tuple

from . import _interfaces as table
from ._calls import Reference, failure, new_text, require_xml_text, text_at
from ._errors import NotFound
from ._library import library
from ._names import names_of
from ._results import SECTION_NOT_FOUND, SETTING_NOT_FOUND


class Section(MutableMapping[str, str]):
    """The settings of one section, from their names to their texts, in the order of the file.

    A view: it reads and changes the policy or task that it was taken from. `section[name]` is the text as the file
    stores it; `section.expanded(name)` is the value with macros expanded. A section that does not exist is empty, and
    is created by the first setting that is put into it.
    """

    __slots__ = ("_owner", "_name")

    def __init__(self, owner: Settings, name: str) -> None:
        self._owner = owner
        self._name = name

    @property
    def name(self) -> str:
        """The name of the section."""
        return self._name

    def expanded(self, name: str) -> str:
        """The value of a setting, with macros expanded. Raises NotFound."""
        return self._owner.expanded(self._name, name)

    def to_dict(self) -> Dict[str, str]:
        """A copy: the names and the stored texts. Faster than `dict(section)`."""
        return dict(self._owner._read_section(self._name))

    def items(self) -> ItemsView[str, str]:
        """The names with the stored texts."""
        return _Items(self)

    def __getitem__(self, name: str) -> str:
        return self._owner.stored(self._name, name)

    def __setitem__(self, name: str, text: str) -> None:
        self._owner.put(self._name, name, text)

    def __delitem__(self, name: str) -> None:
        self._owner.remove(self._name, name)

    def __iter__(self) -> Iterator[str]:
        return iter(self._owner._setting_names(self._name))

    def __len__(self) -> int:
        return len(self._owner._setting_names(self._name))

    def __repr__(self) -> str:
        return f"<zupolicy.Section {self._name!r} of {self._owner!r}>"


class _Items(ItemsView[str, str]):
    """The items of a section, read in one go."""

    _mapping: Section

    def __iter__(self) -> Iterator[Tuple[str, str]]:
        return iter(self._mapping._owner._read_section(self._mapping._name))


class Settings(MutableMapping[str, Section]):
    """The sections of one policy or task, from their names to `Section` objects, in the order of the file.

    `settings[name] = mapping` makes a section hold exactly those settings; what is equal already stays as it is.
    `del settings[name]` removes every section of that name.
    """

    __slots__ = ("_reference", "_sections", "__weakref__")

    def __init__(self, reference: Reference) -> None:
        self._reference = reference
        self._sections: Optional[Reference] = None

    def section(self, name: str) -> Section:
        """The section of that name, whether it exists or not. Putting a setting into it creates it."""
        return Section(self, name)

    def stored(self, section: str, name: str) -> str:
        """The text of a setting as the file stores it. Raises NotFound."""
        return self._ask(section, name, self._reading, "GetStoredSetting")

    def expanded(self, section: str, name: str) -> str:
        """The value of a setting, with macros expanded. Raises NotFound."""
        return self._ask(section, name, self._reference, "GetSectionSetting")

    def put(self, section: str, name: str, text: str) -> None:
        """Stores a text, and creates the setting and its section if they are missing. Raises InvalidText."""
        self._reference.call("PutSectionSetting", section, name, text)
        self._note_change()

    def remove(self, section: str, name: str) -> None:
        """Removes every setting of that name from the section. An empty section stays. Raises NotFound."""
        self._remove_all(lambda: self._reference.call("RemoveSetting", section, name), f"{section!r}, {name!r}")

    def replace(self, sections: Mapping[str, Mapping[str, str]]) -> None:
        """Makes the mapping hold exactly those sections and settings. What is equal already stays as it is."""
        wanted = {name: dict(settings) for name, settings in sections.items()}
        for name, settings in wanted.items():
            require_xml_text(name, *settings, *settings.values())
        for name in self:
            if name not in wanted:
                del self[name]
        for name, settings in wanted.items():
            self._set_section(name, settings)

    def to_dict(self) -> Dict[str, Dict[str, str]]:
        """A copy: every section with the stored texts of its settings."""
        return {name: dict(self._read_section(name)) for name in self}

    def __getitem__(self, name: str) -> Section:
        if not self._has_section(name):
            raise NotFound(SECTION_NOT_FOUND, f"There is no section {name!r} in {self!r}.")
        return Section(self, name)

    def __setitem__(self, name: str, settings: Mapping[str, str]) -> None:
        self._set_section(name, dict(settings))

    def __delitem__(self, name: str) -> None:
        self._remove_all(lambda: self._reference.call("RemoveSection", name), repr(name))

    def __contains__(self, name: object) -> bool:
        return isinstance(name, str) and self._has_section(name)

    def __iter__(self) -> Iterator[str]:
        return iter(names_of(self._reading.obtain("get_SectionNames", table.POLICY_NAMES)))

    def __len__(self) -> int:
        return self._reading.obtain("get_SectionNames", table.POLICY_NAMES).number("get_Count")

    # Two of them with the same settings are still two.
    def __eq__(self, other: object) -> bool:
        return self is other

    def __hash__(self) -> int:
        return id(self)

    @property
    def _reading(self) -> Reference:
        """The interface that lists and reads what is stored."""
        if self._sections is None:
            self._sections = self._reference.query(table.POLICY_SECTIONS)
        return self._sections

    def _set_section(self, name: str, wanted: Dict[str, str]) -> None:
        require_xml_text(name, *wanted, *wanted.values())
        section = Section(self, name)
        present = section.to_dict()
        if not wanted and not self._has_section(name):
            # An empty section stays when its last setting is removed: that is how one is made.
            self.put(name, "Setting", "")
            self.remove(name, "Setting")
        for setting, text in wanted.items():
            if present.get(setting) != text:
                section[setting] = text
        for setting in present:
            if setting not in wanted:
                del section[setting]

    def _note_change(self) -> None:
        """Called after every change."""

    def _ask(self, section: str, name: str, reference: Reference, method: str) -> str:
        try:
            return reference.text(method, section, name)
        except NotFound as error:
            raise NotFound(error.code, f"{error.sentence[:-1]}: {section!r}, {name!r} in {self!r}.") from None

    def _has_section(self, name: str) -> bool:
        try:
            self._reading.text("GetStoredSetting", name, "")
        except NotFound as error:
            return error.code == SETTING_NOT_FOUND
        return True

    def _setting_names(self, section: str) -> List[str]:
        try:
            return names_of(self._reading.obtain("GetSettingNames", table.POLICY_NAMES, section))
        except NotFound:
            return []

    def _remove_all(self, remove_first: Callable[[], None], what: str) -> None:
        """Calls until nothing of that name is left, because of equal names only the first one is removed."""
        count = 0
        try:
            while True:
                remove_first()
                count += 1
        except NotFound as error:
            if count == 0:
                raise NotFound(error.code, f"{error.sentence[:-1]}: {what} in {self!r}.") from None
        finally:
            if count:
                self._note_change()

    def _read_section(self, name: str) -> List[Tuple[str, str]]:
        """The names and stored texts of a section, without a Python call for each of them."""
        reading = self._reading
        try:
            names = reading.obtain("GetSettingNames", table.POLICY_NAMES, name)
        except NotFound:
            return []
        runtime = library()
        item, stored = names.method("get_Item"), reading.method("GetStoredSetting")
        name_slot, text_slot = ctypes.c_void_p(), ctypes.c_void_p()
        name_place, text_place = ctypes.byref(name_slot), ctypes.byref(text_slot)
        found: List[Tuple[str, str]] = []
        section = new_text(runtime, name)
        try:
            for index in range(names.number("get_Count")):
                code = item(names.pointer, index, name_place)
                if code >= 0:
                    code = stored(reading.pointer, section, name_slot, text_place)
                if code == SETTING_NOT_FOUND or code == SECTION_NOT_FOUND:
                    continue  # another thread removed it meanwhile
                if code < 0:
                    raise failure(code)
                found.append((text_at(runtime, name_slot.value), text_at(runtime, text_slot.value)))
        finally:
            runtime.free_string(section)
            runtime.free_string(name_slot)
            runtime.free_string(text_slot)
        return found
