"""Calls through the vtables of the component's objects.

Lifetime  A `Reference` owns one reference to an object and releases it when Python drops the `Reference`. Who calls a
          method holds the `Reference` meanwhile, so an object is never released during a call.
Threads   Any thread may call any object: the objects serialise their calls, and no state here is shared but caches.
          A call releases the interpreter's lock, so other Python threads run meanwhile.
Fork      An object belongs to the process that made it. A child process neither calls nor releases it: a lock in it
          that another thread held at the fork would never be free again.
"""

from __future__ import annotations

import codecs
import ctypes
import os
import re
from typing import Any, Callable, Dict, List, Optional, Tuple, Type, Union

from . import _interfaces as table
from ._errors import Error, InvalidText, LibraryNotFound, error_of
from ._library import Library, library
from ._results import UNEXPECTED

#: The codec of the component's strings. Lone halves of pairs pass in both directions.
_CODEC = "utf-16-le"
_LONE = "surrogatepass"

#: A string counts its bytes in 32 bits.
_MOST_BYTES = 0xFFFFFFF0

#: From this number of bytes on, a copy in between costs more than a view.
_LARGE = 1 << 16

# What XML cannot hold: control characters, halves of surrogate pairs, U+FFFE and U+FFFF.
_FORBIDDEN = re.compile("[^\t\n\r\x20-\ud7ff\ue000-\ufffd\U00010000-\U0010ffff]")

_POINTER_BYTES = ctypes.sizeof(ctypes.c_void_p)

_TYPES: Dict[str, Any] = {
    table.TEXT: ctypes.c_void_p,
    table.NUMBER: ctypes.c_int32,
    table.OBJECT: ctypes.c_void_p,
    table.TEXT_OUT: ctypes.c_void_p,
    table.NUMBER_OUT: ctypes.c_void_p,
    table.OBJECT_OUT: ctypes.c_void_p,
}

Argument = Union[str, int, "Reference"]
Function = Callable[..., int]

_query_type = ctypes.CFUNCTYPE(ctypes.c_int32, ctypes.c_void_p, ctypes.c_char_p, ctypes.c_void_p)
_release_type = ctypes.CFUNCTYPE(ctypes.c_uint32, ctypes.c_void_p)


class _Process:
    """How many forks lie between the process that imported this module and this one."""

    forks = 0


def _count_fork() -> None:
    _Process.forks += 1


os.register_at_fork(after_in_child=_count_fork)

def _function(vtable: int, slot: int, type_: Any) -> Function:
    address = ctypes.c_void_p.from_address(vtable + slot * _POINTER_BYTES).value
    function: Function = type_(address)
    return function


class _Methods(Dict[str, Tuple[Function, Tuple[str, ...]]]):
    """The methods of one interface in one vtable, by name. Each is made when it is first called."""

    def __init__(self, vtable: int, interface: table.Interface) -> None:
        super().__init__()
        self._vtable = vtable
        self._first = table.BASE_SLOTS[interface.base]
        self._slots = {method.name: slot for slot, method in enumerate(interface.methods)}
        self._interface = interface
        self.query = _function(vtable, table.QUERY_INTERFACE_SLOT, _query_type)
        self.release = _function(vtable, table.RELEASE_SLOT, _release_type)

    def __missing__(self, name: str) -> Tuple[Function, Tuple[str, ...]]:
        slot = self._slots[name]
        kinds = self._interface.methods[slot].parameters
        type_ = ctypes.CFUNCTYPE(ctypes.c_int32, ctypes.c_void_p, *(_TYPES[kind] for kind in kinds))
        found = self[name] = _function(self._vtable, self._first + slot, type_), kinds
        return found


# Objects of one class share a vtable, so there are a few entries. The component is never unloaded.
_methods: Dict[Tuple[int, str], _Methods] = {}


def _methods_of(pointer: int, interface: table.Interface) -> _Methods:
    vtable = ctypes.c_void_p.from_address(pointer).value
    assert vtable is not None
    found = _methods.get((vtable, interface.name))
    if found is None:
        found = _methods[vtable, interface.name] = _Methods(vtable, interface)
    return found


def new_text(runtime: Library, text: str) -> int:
    """A new string of the component, which the caller frees."""
    if not isinstance(text, str):
        raise TypeError(f"expected a str, not {type(text).__name__}")
    data = text.encode(_CODEC, _LONE)
    string: Optional[int] = runtime.new_string(data, len(data) // 2) if len(data) <= _MOST_BYTES else None
    if not string:
        raise MemoryError
    return string


def text_at(runtime: Library, string: Optional[int]) -> str:
    """The text of a string of the component; the null string is empty."""
    if not string:
        return ""
    length = runtime.byte_length(string)
    if length < _LARGE:
        return ctypes.string_at(string, length).decode(_CODEC, _LONE)
    return codecs.decode((ctypes.c_char * length).from_address(string), _CODEC, _LONE)


class Reference:
    """One reference to an object, by one of its interfaces."""

    __slots__ = ("pointer", "_methods", "_forks", "__weakref__")

    def __init__(self, pointer: int, interface: table.Interface) -> None:
        """Takes over a reference that the caller owns."""
        self.pointer = pointer
        self._methods = _methods_of(pointer, interface)
        self._forks = _Process.forks

    # The defaults keep alive what is needed when the interpreter ends.
    def __del__(self, process: Type[_Process] = _Process) -> None:
        if self._forks == process.forks:
            self._methods.release(self.pointer)

    def method(self, name: str) -> Function:
        """The bare function of a method: takes the pointer and what the slot takes. For loops that must be fast."""
        self.check_process()
        return self._methods[name][0]

    def call(self, name: str, *arguments: Argument) -> None:
        """Calls a method without a result. Raises `Error`."""
        self._invoke(name, arguments, None)

    def text(self, name: str, *arguments: Argument) -> str:
        """Calls a method whose result is a text. Raises `Error`."""
        runtime = library()
        slot = ctypes.c_void_p()
        try:
            self._invoke(name, arguments, slot)
            return text_at(runtime, slot.value)
        finally:
            runtime.free_string(slot)

    def number(self, name: str, *arguments: Argument) -> int:
        """Calls a method whose result is a number. Raises `Error`."""
        slot = ctypes.c_int32()
        self._invoke(name, arguments, slot)
        return slot.value

    def obtain(self, name: str, interface: table.Interface, *arguments: Argument) -> Reference:
        """Calls a method whose result is an object, and asks the object for an interface. Raises `Error`."""
        slot = ctypes.c_void_p()
        self._invoke(name, arguments, slot)
        if not slot.value:
            raise MemoryError
        return Reference(slot.value, _UNKNOWN).query(interface)

    def query(self, interface: table.Interface) -> Reference:
        """Another interface of the same object. Raises LibraryNotFound when the component is too old to have it."""
        self.check_process()
        slot = ctypes.c_void_p()
        code = self._methods.query(self.pointer, interface.identifier, ctypes.byref(slot))
        if code < 0 or not slot.value:
            raise LibraryNotFound(code, f"The component that was loaded is too old: it has no {interface.name}.")
        return Reference(slot.value, interface)

    def _invoke(self, name: str, arguments: Tuple[Argument, ...], slot: Any) -> None:
        self.check_process()
        runtime = library()
        function, kinds = self._methods[name]
        values: List[Any] = []
        strings: List[int] = []
        try:
            for kind, argument in zip(kinds, arguments):
                if kind == table.TEXT:
                    strings.append(new_text(runtime, argument))  # type: ignore[arg-type]
                    values.append(strings[-1])
                elif isinstance(argument, Reference):
                    values.append(argument.pointer)
                else:
                    values.append(argument)
            if slot is not None:
                values.append(ctypes.byref(slot))
            code = function(self.pointer, *values)
            if code < 0:
                raise failure(code, *(text for text in arguments if isinstance(text, str)))
        finally:
            for string in strings:
                runtime.free_string(string)

    def is_usable(self) -> bool:
        """Whether this is the process that made the object."""
        return self._forks == _Process.forks

    def check_process(self) -> None:
        """Raises RuntimeError in a child of the process that made the object."""
        if self._forks != _Process.forks:
            raise RuntimeError("The object belongs to the process that opened the file, not to its child.")


_UNKNOWN = table.Interface("IUnknown", table.POLICY_FILE.identifier, "IUnknown", ())


def new_policy_file() -> Reference:
    """Creates a policy file object. Raises `Error`."""
    code, pointer = library().new_policy_file()
    if code < 0:
        raise LibraryNotFound(code, f"The component cannot create a policy file object: 0x{code & 0xFFFFFFFF:08X}.")
    return Reference(pointer, table.POLICY_FILE)


def failure(code: int, *texts: str) -> Error:
    """The exception for the call of this thread that has just failed; `texts` were its arguments."""
    message = _description()
    if code == UNEXPECTED:
        try:
            require_xml_text(*texts)
        except InvalidText as error:
            return error
    return error_of(code, message)


def _description() -> str:
    """What the component left for the calling thread; empty when it left nothing."""
    slot = ctypes.c_void_p()
    if library().take_error_info(0, ctypes.byref(slot)) != 0 or not slot.value:
        return ""
    return Reference(slot.value, table.ERROR_INFO).text("GetDescription")


def require_xml_text(*texts: str) -> None:
    """Raises InvalidText for a text that XML cannot hold, and TypeError for what is no text."""
    for text in texts:
        if not isinstance(text, str):
            raise TypeError(f"expected a str, not {type(text).__name__}")
        if _FORBIDDEN.search(text):
            raise InvalidText(UNEXPECTED, "A name or value holds a character that XML cannot hold.")
