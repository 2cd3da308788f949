"""The result codes of the component: the name of each, its number and its sentence.

A test compares this table with the public C++ header.
"""

from __future__ import annotations

from typing import Dict, NamedTuple


class Meaning(NamedTuple):
    """What a result code means."""

    name: str
    sentence: str


def _signed(bits: int) -> int:
    return bits - (1 << 32)


SUCCESS = 0
UNEXPECTED = -2
ALLOCATION_FAILED = -3
NOT_INITIALISED = -4
READ_ONLY = -5
CURSOR_NOT_INITIALISED = -11
BAD_ARGUMENT = -13
PLATFORM_EXCEPTION = -32
ELEMENT_MISSING = -1100
SYNTAX_ERROR = -1106
LIST_EMPTY = -1111
END_OF_LIST = -1112
RECORD_MISSING = -1113
SECTION_NOT_FOUND = -1200
SETTING_NOT_FOUND = -1201
NOT_CREATED = -1203
SECTION_STILL_MISSING = -1205
POLICY_NOT_FOUND = -1207
TASK_NOT_FOUND = -1208
FILE_LOCKED = -1301
FILE_CHANGED = -1302
WRITTEN_NOT_FLUSHED = -1303
OWNER_NOT_KEPT = -1304
GENERAL_FAILURE = _signed(0x80004005)
OUT_OF_MEMORY = _signed(0x8007000E)
FILE_NOT_FOUND = _signed(0x80070002)
PATH_NOT_FOUND = _signed(0x80070003)
TOO_MANY_OPEN_FILES = _signed(0x80070004)
ACCESS_DENIED = _signed(0x80070005)
WRITE_PROTECTED = _signed(0x80070013)
SHARING_VIOLATION = _signed(0x80070020)
NOT_SUPPORTED = _signed(0x80070032)
DISK_FULL = _signed(0x80070070)
INVALID_NAME = _signed(0x8007007B)
NAME_TOO_LONG = _signed(0x800700CE)
FILE_TOO_LARGE = _signed(0x800700DF)
NOT_VALID_IN_ITS_ENCODING = _signed(0x80070459)
QUOTA_EXCEEDED = _signed(0x8007050F)
INPUT_OUTPUT_ERROR = _signed(0x8007045D)

#: Not of the component: what the runtime answers when it cannot load a library.
LIBRARY_NOT_FOUND = _signed(0x800401F8)

MEANINGS: Dict[int, Meaning] = {
    SUCCESS: Meaning("Success", "The operation succeeded."),
    UNEXPECTED: Meaning(
        "Unexpected",
        "An unexpected exception was caught, memory ran out, or a value holds a character that XML cannot hold.",
    ),
    ALLOCATION_FAILED: Meaning("AllocationFailed", "An allocation failed."),
    NOT_INITIALISED: Meaning(
        "NotInitialised",
        "The object is not initialised: no policy file is loaded, or no data is bound.",
    ),
    READ_ONLY: Meaning("ReadOnly", "The policy file was opened read-only."),
    CURSOR_NOT_INITIALISED: Meaning("CursorNotInitialised", "The section cursor is not initialised."),
    BAD_ARGUMENT: Meaning("BadArgument", "An argument is null, or the object lacks the expected interface."),
    PLATFORM_EXCEPTION: Meaning("PlatformException", "A platform error was caught."),
    ELEMENT_MISSING: Meaning("ElementMissing", "A required element is missing or has the wrong name."),
    SYNTAX_ERROR: Meaning("SyntaxError", "The XML text could not be parsed."),
    LIST_EMPTY: Meaning("ListEmpty", "The task list is empty."),
    END_OF_LIST: Meaning("EndOfList", "The end of the task list is reached."),
    RECORD_MISSING: Meaning("RecordMissing", "A record of the task list is missing."),
    SECTION_NOT_FOUND: Meaning("SectionNotFound", "There is no such section."),
    SETTING_NOT_FOUND: Meaning("SettingNotFound", "There is no such setting."),
    NOT_CREATED: Meaning("NotCreated", "An element or attribute could not be created, or an index entry is empty."),
    SECTION_STILL_MISSING: Meaning("SectionStillMissing", "The section is still missing after it was created."),
    POLICY_NOT_FOUND: Meaning("PolicyNotFound", "There is no product policy with that software ID."),
    TASK_NOT_FOUND: Meaning("TaskNotFound", "There is no task with that software ID and task ID."),
    FILE_LOCKED: Meaning("FileLocked", "Another process is editing the file."),
    FILE_CHANGED: Meaning(
        "FileChanged",
        "The file was changed by something else since it was loaded, and is left alone.",
    ),
    WRITTEN_NOT_FLUSHED: Meaning(
        "WrittenNotFlushed",
        "The file is written, but a loss of power may bring the old one back: its folder was not flushed.",
    ),
    OWNER_NOT_KEPT: Meaning(
        "OwnerNotKept",
        "The file is left alone: a new one in its place could not have its owner and group.",
    ),
    GENERAL_FAILURE: Meaning(
        "GeneralFailure",
        "The operation failed: the resource module or the INI file could not be used.",
    ),
    OUT_OF_MEMORY: Meaning("OutOfMemory", "There is not enough memory."),
    FILE_NOT_FOUND: Meaning("FileNotFound", "The file does not exist."),
    PATH_NOT_FOUND: Meaning("PathNotFound", "The folder does not exist."),
    TOO_MANY_OPEN_FILES: Meaning("TooManyOpenFiles", "Too many files are open."),
    ACCESS_DENIED: Meaning("AccessDenied", "Access to the file is denied."),
    WRITE_PROTECTED: Meaning("WriteProtected", "The file system is read-only."),
    SHARING_VIOLATION: Meaning("SharingViolation", "The file is in use by another process."),
    NOT_SUPPORTED: Meaning("NotSupported", "This kind of file cannot be read."),
    DISK_FULL: Meaning("DiskFull", "The disk is full."),
    INVALID_NAME: Meaning("InvalidName", "The file name is not valid."),
    NAME_TOO_LONG: Meaning("NameTooLong", "The file name is too long."),
    FILE_TOO_LARGE: Meaning("FileTooLarge", "The file is too large."),
    NOT_VALID_IN_ITS_ENCODING: Meaning(
        "NotValidInItsEncoding",
        "The text is not valid in its encoding, or the encoding cannot hold it.",
    ),
    QUOTA_EXCEEDED: Meaning("QuotaExceeded", "The disk quota is exceeded."),
    INPUT_OUTPUT_ERROR: Meaning("InputOutputError", "Reading or writing the file failed."),
}
