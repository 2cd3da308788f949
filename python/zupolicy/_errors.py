"""The exceptions of this package."""

from __future__ import annotations

import errno
import re
from contextlib import contextmanager
from typing import Any, Dict, Iterator, Optional, Tuple, Type

from . import _results

# "file:line:column: reason": what the component says about a text that it cannot read. A path may hold colons.
_PLACE = re.compile(r"(?P<file>.*):(?P<line>\d+):(?P<column>\d+): (?P<reason>.*)\Z", re.DOTALL)


class Error(Exception):
    """A call of the component failed.

    `code` is the result code, `code_name` its name (such as "FileChanged") and `sentence` what the code always means.
    `message` says what happened in this case; most often it is the sentence. `file` is the file that was to be read or
    written, if the call was about one. `line` and `column` are set when the component named a place in it.
    """

    code: int
    code_name: str
    sentence: str
    message: str
    file: Optional[str]
    line: Optional[int]
    column: Optional[int]

    def __init__(self, code: int, message: str = "") -> None:
        name, sentence = _results.MEANINGS.get(code, ("", ""))
        self.code = code
        self.code_name = name or f"0x{code & 0xFFFFFFFF:08X}"
        self.sentence = sentence
        self.message = message or sentence or f"The call failed with the code {self.code_name}."
        place = _PLACE.match(self.message)
        self.file = place["file"] if place else None
        self.line = int(place["line"]) if place else None
        self.column = int(place["column"]) if place else None
        super().__init__(self.message)

    def __str__(self) -> str:
        return self.message if self.file is None or self.line is not None else f"{self.file}: {self.message}"

    def __reduce__(self) -> Tuple[Type[Error], Tuple[int, str], Dict[str, Any]]:
        state = dict(self.__dict__)
        if isinstance(self, OSError):
            state.update(errno=self.errno, strerror=self.strerror, filename=self.filename)
        return type(self), (self.code, self.message), state


class Changed(Error):
    """The file on the disk is no longer the one that was loaded. Nothing was written."""


class Locked(Error):
    """Another process is editing the file, and did so until the time was over."""


class ReadOnly(Error):
    """The file was opened read-only."""


class NotFound(Error, KeyError):
    """There is no such policy, task, section or setting."""


class ParseError(Error):
    """The file is no XML that the component reads. `file`, `line` and `column` say where."""


class InvalidText(Error, ValueError):
    """A name or value holds a character that XML cannot hold. What was there before stays."""


class FileMissing(Error, FileNotFoundError):
    """The file or its folder does not exist."""


class AccessDenied(Error, PermissionError):
    """The system denies access to the file or its folder."""


class LibraryNotFound(Error, ImportError):
    """The component's libraries were not found. The message says where they were looked for, and what to do."""

    def __init__(self, code: int = _results.LIBRARY_NOT_FOUND, message: str = "") -> None:
        super().__init__(code, message)


_CLASSES: Dict[int, Type[Error]] = {
    _results.FILE_CHANGED: Changed,
    _results.FILE_LOCKED: Locked,
    _results.READ_ONLY: ReadOnly,
    _results.SECTION_NOT_FOUND: NotFound,
    _results.SETTING_NOT_FOUND: NotFound,
    _results.POLICY_NOT_FOUND: NotFound,
    _results.TASK_NOT_FOUND: NotFound,
    _results.SYNTAX_ERROR: ParseError,
    _results.NOT_VALID_IN_ITS_ENCODING: ParseError,
    _results.FILE_NOT_FOUND: FileMissing,
    _results.PATH_NOT_FOUND: FileMissing,
    _results.ACCESS_DENIED: AccessDenied,
    _results.WRITE_PROTECTED: AccessDenied,
}

_ERRNOS: Dict[int, int] = {
    _results.FILE_NOT_FOUND: errno.ENOENT,
    _results.PATH_NOT_FOUND: errno.ENOENT,
    _results.ACCESS_DENIED: errno.EACCES,
    _results.WRITE_PROTECTED: errno.EROFS,
}


def error_of(code: int, message: str = "") -> Error:
    """The exception for a result code, of the class that fits it best."""
    error = _CLASSES.get(code, Error)(code, message)
    if isinstance(error, OSError):
        error.errno = _ERRNOS[code]
        error.strerror = error.message
    return error


@contextmanager
def about_file(path: str) -> Iterator[None]:
    """Calls in the block are about a file: their exceptions name it."""
    try:
        yield
    except Error as error:
        if error.file is None:
            error.file = path
        if isinstance(error, OSError):
            error.filename = path
        raise


def not_found(code: int, message: str) -> NotFound:
    """The exception for a missing entry, with a message that names it."""
    return NotFound(code, message)
