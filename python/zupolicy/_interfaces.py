"""The interfaces of the component, as this package calls them: identifiers and methods in the order of their slots.

This table is the only place that knows a slot. A test compares it with the public C++ headers.
"""

from __future__ import annotations

from typing import Dict, NamedTuple, Tuple

# The kinds of parameters. An output is the last parameter of its method.
TEXT = "text"  #: a string that the caller keeps
NUMBER = "number"  #: a signed 32-bit integer
OBJECT = "object"  #: an interface pointer that stays the caller's
TEXT_OUT = "text out"
NUMBER_OUT = "number out"
OBJECT_OUT = "object out"


class Method(NamedTuple):
    """One method: its name and the kinds of its parameters."""

    name: str
    parameters: Tuple[str, ...]


class Interface(NamedTuple):
    """One interface: how many slots its base has, and its own methods in the order of their slots."""

    name: str
    identifier: bytes
    base: str
    methods: Tuple[Method, ...]


#: The number of slots of the bases.
BASE_SLOTS: Dict[str, int] = {"IUnknown": 3, "IDispatch": 7}

QUERY_INTERFACE_SLOT = 0
RELEASE_SLOT = 2


def identifier_of(text: str) -> bytes:
    """An identifier as it lies in memory: three numbers with their low bytes first, then eight bytes."""
    data = bytes.fromhex(text.replace("-", ""))
    return data[3::-1] + data[5:3:-1] + data[7:5:-1] + data[8:]


CLSID_POLICY_FILE = identifier_of("A5B589D5-CFB6-4E9A-9455-39963CBF74CB")


def _method(name: str, *parameters: str) -> Method:
    return Method(name, parameters)


POLICY_FILE = Interface(
    "IPolicyFile",
    identifier_of("9F576BE8-B305-4494-93D8-A7A623BDFB9C"),
    "IDispatch",
    (
        _method("AddTask", OBJECT, NUMBER),
        _method("AddPolicy", OBJECT, NUMBER),
        _method("GetTask", TEXT, TEXT, OBJECT_OUT),
        _method("GetPolicy", TEXT, OBJECT_OUT),
        _method("RemovePolicy", TEXT),
        _method("RemoveTask", TEXT, TEXT),
        _method("InitializeFile", TEXT, NUMBER),
        _method("WriteFile", TEXT, NUMBER),
        _method("GetTaskInfo", OBJECT_OUT),
        _method("CreateTask", OBJECT_OUT),
        _method("CreatePolicy", OBJECT_OUT),
        _method("WriteFileBuffer", TEXT_OUT),
        _method("get_VersionTask", TEXT_OUT),
        _method("get_VersionPolicy", TEXT_OUT),
        _method("get_PolicyAssignmentList", TEXT_OUT),
    ),
)

POLICY_FILE_EDIT = Interface(
    "IPolicyFileEdit",
    identifier_of("BCFAFCBC-1EDB-483E-8196-C2EB685A9521"),
    "IUnknown",
    (
        _method("OpenForEdit", TEXT, NUMBER),
        _method("HasFileChanged", NUMBER_OUT),
        _method("RehearseCommit", NUMBER),
        _method("CommitEdit", NUMBER),
        _method("EndEdit"),
    ),
)

POLICY_FILE_CONTENTS = Interface(
    "IPolicyFileContents",
    identifier_of("41583961-2B96-427D-B6BA-1A0D1BB3A38D"),
    "IUnknown",
    (
        _method("get_PolicyIDs", OBJECT_OUT),
        _method("get_TaskSoftwareIDs", OBJECT_OUT),
        _method("GetTaskIDs", TEXT, OBJECT_OUT),
        _method("get_HasChangedOnDisk", NUMBER_OUT),
        _method("WriteIfUnchanged", NUMBER),
        _method("get_Notices", OBJECT_OUT),
        _method("GetStoredPolicySetting", TEXT, TEXT, TEXT, TEXT_OUT),
        _method("GetStoredTaskSetting", TEXT, TEXT, TEXT, TEXT, TEXT_OUT),
    ),
)

POLICY_PRODUCT = Interface(
    "IPolicyProduct",
    identifier_of("C7FDCCDA-FD1D-4A9A-A9B0-6B6D74A28B00"),
    "IDispatch",
    (
        _method("get_SoftwareID", TEXT_OUT),
        _method("put_SoftwareID", TEXT),
        _method("get_PolicyData", TEXT_OUT),
        _method("put_Section", TEXT),
        _method("GetSetting", TEXT, TEXT_OUT),
        _method("PutSetting", TEXT, TEXT),
        _method("GetSectionSetting", TEXT, TEXT, TEXT_OUT),
        _method("PutSectionSetting", TEXT, TEXT, TEXT),
        _method("RemoveSetting", TEXT, TEXT),
        _method("RemoveSection", TEXT),
    ),
)

POLICY_TASK = Interface(
    "IPolicyTask",
    identifier_of("2A1631CC-F7D9-440C-AE86-3A88EAE3F5D8"),
    "IDispatch",
    (
        _method("get_CreatorID", TEXT_OUT),
        _method("put_CreatorID", TEXT),
        _method("get_SoftwareID", TEXT_OUT),
        _method("put_SoftwareID", TEXT),
        _method("get_TaskID", TEXT_OUT),
        _method("put_TaskID", TEXT),
        _method("get_DisplayName", TEXT_OUT),
        _method("put_DisplayName", TEXT),
        _method("get_TaskType", TEXT_OUT),
        _method("put_TaskType", TEXT),
        _method("get_PlatformsSupported", TEXT_OUT),
        _method("put_PlatformsSupported", TEXT),
        _method("get_Priority", NUMBER_OUT),
        _method("put_Priority", NUMBER),
        _method("get_TaskData", TEXT_OUT),
        _method("put_Section", TEXT),
        _method("GetSetting", TEXT, TEXT_OUT),
        _method("PutSetting", TEXT, TEXT),
        _method("GetSectionSetting", TEXT, TEXT, TEXT_OUT),
        _method("PutSectionSetting", TEXT, TEXT, TEXT),
        _method("RemoveSetting", TEXT, TEXT),
        _method("RemoveSection", TEXT),
        _method("WriteTaskDataToIniFile", TEXT),
        _method("get_Version", TEXT_OUT),
    ),
)

POLICY_SECTIONS = Interface(
    "IPolicySections",
    identifier_of("0139F444-35AA-4C9F-A459-AFFDCB26F8AD"),
    "IUnknown",
    (
        _method("get_SectionNames", OBJECT_OUT),
        _method("GetSettingNames", TEXT, OBJECT_OUT),
        _method("GetStoredSetting", TEXT, TEXT, TEXT_OUT),
        _method("get_TakenVersion", TEXT_OUT),
    ),
)

POLICY_NAMES = Interface(
    "IPolicyNames",
    identifier_of("D6582BDA-FE76-418E-B032-0B1EF325C81D"),
    "IDispatch",
    (
        _method("get_Item", NUMBER, TEXT_OUT),
        _method("get_Count", NUMBER_OUT),
        _method("get__NewEnum", OBJECT_OUT),
    ),
)

POLICY_NOTICES = Interface(
    "IPolicyNotices",
    identifier_of("509EE37F-9974-4DDF-94A3-80FD6527B181"),
    "IDispatch",
    (
        _method("get_Count", NUMBER_OUT),
        _method("get_Kind", NUMBER, NUMBER_OUT),
        _method("get_Line", NUMBER, NUMBER_OUT),
        _method("get_Column", NUMBER, NUMBER_OUT),
        _method("get_SoftwareID", NUMBER, TEXT_OUT),
        _method("get_TaskID", NUMBER, TEXT_OUT),
        _method("get_Text", NUMBER, TEXT_OUT),
    ),
)

#: Of the runtime, not of the component: what a failed call leaves for its thread. Only the description is read.
ERROR_INFO = Interface(
    "IErrorInfo",
    identifier_of("1CF2B120-547D-101B-8E65-08002B2BD119"),
    "IUnknown",
    (
        _method("GetGUID", OBJECT),
        _method("GetSource", TEXT_OUT),
        _method("GetDescription", TEXT_OUT),
        _method("GetHelpFile", TEXT_OUT),
        _method("GetHelpContext", NUMBER_OUT),
    ),
)

INTERFACES: Tuple[Interface, ...] = (
    POLICY_FILE,
    POLICY_FILE_EDIT,
    POLICY_FILE_CONTENTS,
    POLICY_PRODUCT,
    POLICY_TASK,
    POLICY_SECTIONS,
    POLICY_NAMES,
    POLICY_NOTICES,
    ERROR_INFO,
)
