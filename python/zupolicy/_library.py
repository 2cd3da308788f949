"""Where the component's libraries are, and the functions of its runtime.

The libraries are loaded by the first call that needs them, from the first of these places:

1. the folder that `use_libraries` named,
2. the folder that the environment variable ZUPOLICY_LIBRARIES names,
3. where the system's loader finds libzuPolicyManager64.so: that is where the Debian package puts it.

A place that is named and lacks the libraries is an error: the next one is not tried. The variable must be an absolute
path. A process that runs with more rights than its user (setuid, setgid, file capabilities) ignores it, as the
system's loader ignores LD_LIBRARY_PATH. A process of root uses it only if root alone may write the folder and the
libraries.
"""

from __future__ import annotations

import ctypes
import os
import stat
import sys
import threading
from typing import Any, Optional, Tuple, Union

from ._errors import LibraryNotFound
from ._interfaces import CLSID_POLICY_FILE, POLICY_FILE

MODULE = "libzuPolicyManager64.so"
RUNTIME = "libzucomrt.so.1"
VARIABLE = "ZUPOLICY_LIBRARIES"

_IN_PROCESS = 1  # CLSCTX_INPROC_SERVER
_AT_SECURE = 23


class Library:
    """The loaded component, and the functions of its runtime.

    The string functions keep the interpreter's lock: they are short and wait for nothing.
    """

    def __init__(self, module: ctypes.CDLL) -> None:
        self._module = module
        # The runtime is a dependency of the module: its functions are found through the module's handle.
        quick = ctypes.PyDLL(RUNTIME, handle=module._handle)
        self.new_string: Any = quick.SysAllocStringLen
        self.new_string.argtypes = [ctypes.c_char_p, ctypes.c_uint32]
        self.new_string.restype = ctypes.c_void_p
        self.free_string: Any = quick.SysFreeString
        self.free_string.argtypes = [ctypes.c_void_p]
        self.free_string.restype = None
        self.byte_length: Any = quick.SysStringByteLen
        self.byte_length.argtypes = [ctypes.c_void_p]
        self.byte_length.restype = ctypes.c_uint32
        self.take_error_info: Any = quick.GetErrorInfo
        self.take_error_info.argtypes = [ctypes.c_uint32, ctypes.c_void_p]
        self.take_error_info.restype = ctypes.c_int32
        self._create: Any = module.CoCreateInstance
        self._create.argtypes = [
            ctypes.c_char_p,
            ctypes.c_void_p,
            ctypes.c_uint32,
            ctypes.c_char_p,
            ctypes.c_void_p,
        ]
        self._create.restype = ctypes.c_int32

    def new_policy_file(self) -> Tuple[int, int]:
        """Creates a policy file object. Returns the result code and a pointer to its IPolicyFile."""
        slot = ctypes.c_void_p()
        code: int = self._create(
            CLSID_POLICY_FILE, None, _IN_PROCESS, POLICY_FILE.identifier, ctypes.byref(slot)
        )
        return code, slot.value or 0


_lock = threading.Lock()
_loaded: Optional[Library] = None
_named: Optional[str] = None


def use_libraries(folder: Union[str, os.PathLike[str]]) -> None:
    """Names the folder with the component's libraries. Call it before anything is opened.

    RuntimeError: the libraries are loaded already.
    """
    global _named
    with _lock:
        if _loaded is not None:
            raise RuntimeError("The component's libraries are loaded already.")
        _named = os.path.abspath(os.fspath(folder))


def library() -> Library:
    """The component, which the first call loads. Raises LibraryNotFound."""
    global _loaded
    if _loaded is None:
        with _lock:
            if _loaded is None:
                _loaded = _load()
    return _loaded


def _load() -> Library:
    if not sys.platform.startswith("linux"):
        raise LibraryNotFound(message="This package works on Linux. On Windows use the component's ProgIDs.")
    folder, origin = _place()
    try:
        module = ctypes.CDLL(os.path.join(folder, MODULE) if folder else MODULE)
    except OSError as error:
        raise LibraryNotFound(message=_explanation(folder, origin, str(error))) from None
    try:
        return Library(module)
    except AttributeError as error:
        raise LibraryNotFound(message=_explanation(folder, origin, str(error))) from None


def _place() -> Tuple[str, str]:
    """The folder to load from, empty for the places of the system's loader, and who named it."""
    if _named is not None:
        return _named, "named by use_libraries"
    folder = os.environ.get(VARIABLE, "")
    if not folder or _runs_with_more_rights():
        return "", "the places of the system's loader"
    if not os.path.isabs(folder):
        raise LibraryNotFound(message=f"The environment variable {VARIABLE} is no absolute path: {folder!r}.")
    if os.geteuid() == 0:
        _require_root_alone(folder)
    return folder, f"named by the environment variable {VARIABLE}"


def _runs_with_more_rights() -> bool:
    if os.getuid() != os.geteuid() or os.getgid() != os.getegid():
        return True
    try:
        ask: Any = ctypes.CDLL(None).getauxval
    except AttributeError:
        return False
    ask.argtypes = [ctypes.c_ulong]
    ask.restype = ctypes.c_ulong
    return bool(ask(_AT_SECURE))


def _require_root_alone(folder: str) -> None:
    for path in (folder, os.path.join(folder, MODULE), os.path.join(folder, RUNTIME)):
        try:
            found = os.stat(path)
        except OSError as error:
            raise LibraryNotFound(message=_explanation(folder, f"named by {VARIABLE}", str(error))) from None
        if found.st_uid != 0 or found.st_mode & (stat.S_IWGRP | stat.S_IWOTH):
            raise LibraryNotFound(
                message=f"{path} can be changed by others than root. A process of root does not load libraries from "
                f"there, although the environment variable {VARIABLE} names the folder."
            )


def _explanation(folder: str, origin: str, reason: str) -> str:
    where = f"{folder} ({origin})" if folder else origin
    return (
        f"{MODULE} with {RUNTIME} cannot be loaded. Searched: {where}. The reason: {reason}. Install the package "
        f"zupolicymanager, or name the folder of the two libraries with zupolicy.use_libraries(folder) or in the "
        f"environment variable {VARIABLE}."
    )
