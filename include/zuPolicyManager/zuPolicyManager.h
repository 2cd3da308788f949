/// The policy manager component: four creatable classes that read and change a management agent's policy file.
///
/// Results     Every method returns a signed 32-bit result: 0 is success, negative is failure (Results.h has them all,
///             with a sentence each). Where a method lists codes, one for lack of memory may always come instead:
///             E_OUTOFMEMORY (0x8007000E), -3, or -2 from steps that turn every exception into -2 (filling an index,
///             copying a product or task, reading and writing settings).
///             A failing call also leaves error information for the thread (GetErrorInfo): the sentence, and for XML
///             that cannot be parsed, and bytes that are not valid in their encoding, "file:line:column: reason".
/// Strings     In: the caller's; null counts as the empty string. Out: a string that the slot already holds is freed,
///             and a new one stored, which the caller frees with SysFreeString; so initialise slots to null. On failure
///             a slot keeps what it held unless the method says otherwise. A null slot gives -13.
/// Objects     Out interface pointers carry a reference that the caller releases; a slot's old pointer is not released.
///             Objects handed out own private copies and stay valid after the policy file object is gone.
/// Threads     Any thread may call any object; each object serialises itself. The lock order is policy file, then
///             product or task, then what lies inside it. AddPolicy and AddTask keep the policy file's lock while they
///             call the incoming object: one of another maker's must not wait in such a call for a thread that uses the
///             same policy file, or both wait for ever. It may call the policy file on its own thread.
/// Numbers     `LONG` is a signed 32-bit integer; versions are decimal texts of unsigned 64-bit numbers.
#pragma once

#include <zuPolicyManager/ComBase.h>
#include <zuPolicyManager/Results.h>
#include <cstddef>

inline constexpr CLSID CLSID_TaskInfo{0x2D417134, 0x0D48, 0x4856, {0xB6, 0xF5, 0x04, 0xE6, 0x31, 0x71, 0xE2, 0x4C}};
inline constexpr CLSID CLSID_PolicyTask{0x04D18721, 0x749F, 0x4140, {0xAE, 0xB0, 0xCA, 0xC0, 0x99, 0xCA, 0x47, 0x41}};
inline constexpr CLSID CLSID_PolicyProduct{
    0x1161A96C, 0xCBA5, 0x4CA7, {0xBB, 0x39, 0xBC, 0x92, 0x80, 0x34, 0x8E, 0x73}};
inline constexpr CLSID CLSID_PolicyFile{0xA5B589D5, 0xCFB6, 0x4E9A, {0x94, 0x55, 0x39, 0x96, 0x3C, 0xBF, 0x74, 0xCB}};

inline constexpr IID IID_ITaskInfo{0x8DCAD88B, 0xD477, 0x40BE, {0xB9, 0x78, 0x31, 0x18, 0x95, 0x49, 0xED, 0x15}};
inline constexpr IID IID_IPolicyTask{0x2A1631CC, 0xF7D9, 0x440C, {0xAE, 0x86, 0x3A, 0x88, 0xEA, 0xE3, 0xF5, 0xD8}};
inline constexpr IID IID_IPolicyProduct{0xC7FDCCDA, 0xFD1D, 0x4A9A, {0xA9, 0xB0, 0x6B, 0x6D, 0x74, 0xA2, 0x8B, 0x00}};
inline constexpr IID IID_IPolicyFile{0x9F576BE8, 0xB305, 0x4494, {0x93, 0xD8, 0xA7, 0xA6, 0x23, 0xBD, 0xFB, 0x9C}};

inline constexpr IID IID_IPolicyFileEdit{0xBCFAFCBC, 0x1EDB, 0x483E, {0x81, 0x96, 0xC2, 0xEB, 0x68, 0x5A, 0x95, 0x21}};

inline constexpr GUID LIBID_ZUPOLICYMANAGERLib{
    0x7DB1286A, 0xCBEF, 0x4823, {0x96, 0xAA, 0x27, 0x09, 0x3A, 0x54, 0x67, 0x41}};

namespace zupm {

/// A null-terminated wide text made from an ASCII literal, in the wide character type of the target.
template <std::size_t Size>
struct WideLiteral {
    OLECHAR text[Size]{};

    constexpr WideLiteral(const char (&ascii)[Size])  // NOLINT(google-explicit-constructor): stands for a literal
    {
        for (std::size_t i = 0; i < Size; ++i) {
            text[i] = static_cast<OLECHAR>(ascii[i]);
        }
    }
    [[nodiscard]] constexpr const OLECHAR* c_str() const { return text; }
};

/// The names under which registration makes the classes known.
inline constexpr WideLiteral kProgIdTaskInfo{"ZuPolicyManager.TaskInfo.1"};
inline constexpr WideLiteral kProgIdPolicyTask{"ZuPolicyManager.PolicyTask.1"};
inline constexpr WideLiteral kProgIdPolicyProduct{"ZuPolicyManager.PolicyProduct.1"};
inline constexpr WideLiteral kProgIdPolicyFile{"ZuPolicyManager.PolicyFile.1"};

}  // namespace zupm

/// A forward-only enumerator over the (software ID, task ID) pairs of a policy file's tasks: a snapshot, sorted by
/// software ID and then task ID in code-unit order. One created directly is empty.
struct ITaskInfo : IDispatch {
    /// [1] Goes to the first pair and hands it out; may be called again at any time to start over.
    /// -1111 the list is empty (slots untouched); -3 a string could not be allocated (both slots are written).
    virtual HRESULT GetFirst(BSTR* pbstrSoftwareID, BSTR* pbstrTaskID) = 0;

    /// [2] Goes one pair on and hands it out. -1112 at the end, past it, and before GetFirst (slots untouched); -3.
    virtual HRESULT GetNext(BSTR* pbstrSoftwareID, BSTR* pbstrTaskID) = 0;
};

/// One task: identity fields, and sections of settings in a private copy of the task's XML. A task created on its own
/// has the text "invalid" in every identity field, priority 0, an empty version and no sections.
struct IPolicyTask : IDispatch {
    /// [1] to [6] Identity fields. A put changes the object only; XML has it after the next TaskData or AddTask.
    /// get: -3 the string could not be allocated (the slot is null then). put: always 0.
    virtual HRESULT get_CreatorID(BSTR* pVal) = 0;
    virtual HRESULT put_CreatorID(BSTR newVal) = 0;
    virtual HRESULT get_SoftwareID(BSTR* pVal) = 0;
    virtual HRESULT put_SoftwareID(BSTR newVal) = 0;
    virtual HRESULT get_TaskID(BSTR* pVal) = 0;
    virtual HRESULT put_TaskID(BSTR newVal) = 0;
    virtual HRESULT get_DisplayName(BSTR* pVal) = 0;
    virtual HRESULT put_DisplayName(BSTR newVal) = 0;
    virtual HRESULT get_TaskType(BSTR* pVal) = 0;
    virtual HRESULT put_TaskType(BSTR newVal) = 0;
    virtual HRESULT get_PlatformsSupported(BSTR* pVal) = 0;
    virtual HRESULT put_PlatformsSupported(BSTR newVal) = 0;

    /// [7] The priority, a signed 32-bit number. Always 0.
    virtual HRESULT get_Priority(LONG* pVal) = 0;
    virtual HRESULT put_Priority(LONG newVal) = 0;

    /// [8] The task as XML text: a "TaskData" document with one "TaskGroup" and its "Task". Reading it first writes the
    /// identity fields and a fresh time stamp into the private copy. -1100 no task is bound; -2 a field holds a
    /// character that XML cannot hold; -3 the string could not be allocated.
    virtual HRESULT get_TaskData(BSTR* pVal) = 0;

    /// [9] Sets the section that GetSetting and PutSetting use ("invalid" at first). It need not exist. Always 0.
    virtual HRESULT put_Section(BSTR newVal) = 0;

    /// [10] GetSectionSetting on the current section.
    virtual HRESULT GetSetting(BSTR strName, BSTR* pstrValue) = 0;
    /// [11] PutSectionSetting on the current section.
    virtual HRESULT PutSetting(BSTR strName, BSTR strValue) = 0;

    /// [12] A setting's value, macros expanded. -4 no task is bound; -1200 no such section; -1201 no such setting.
    virtual HRESULT GetSectionSetting(BSTR strSection, BSTR strName, BSTR* pstrValue) = 0;
    /// [13] Stores a value as it stands; a missing section and setting are created. -4; -2 the value or a name holds a
    /// character that XML cannot hold (the old value stays).
    virtual HRESULT PutSectionSetting(BSTR strSection, BSTR strName, BSTR strValue) = 0;
    /// [14] Removes one setting; an emptied section stays. -4; -1200; -1201.
    virtual HRESULT RemoveSetting(BSTR strSection, BSTR strName) = 0;
    /// [15] Removes the first section of that name. -4; -1200 no such section.
    virtual HRESULT RemoveSection(BSTR strName) = 0;

    /// [16] Writes the identity fields (section "Task") and all settings into an INI file, which is created when
    /// missing and keeps its other settings. The bytes are those of the system's WritePrivateProfileStringW, values
    /// raw: a reader gets no blanks from a value's ends and no pair of quotes around it, and names that differ in case
    /// only are one (the later replaces the earlier, with a log line of level 8). Not so: a part with CR, LF or NUL is
    /// refused (a log line of level 7; a setting is left out); text that an 8-bit file cannot hold turns it into
    /// UTF-16. 0x80004005 empty path, or an identity field could not be written.
    virtual HRESULT WriteTaskDataToIniFile(BSTR bstrFileName) = 0;

    /// [17] The time stamp that the task carried when it was bound. Unlike every other getter this one overwrites the
    /// slot without freeing what it held. -3.
    virtual HRESULT get_Version(BSTR* pstrValue) = 0;
};

/// One product's policy: sections of settings in a private copy of the product's XML. An object created on its own has
/// the software ID "SoftwareID" and no sections.
struct IPolicyProduct : IDispatch {
    /// [1] The software ID. get: -3 the string could not be allocated. put: always 0; it changes nothing on an object
    /// whose binding failed, nor for an ID with a character that XML cannot hold (which is logged). Read the ID back
    /// where that matters.
    virtual HRESULT get_SoftwareID(BSTR* pVal) = 0;
    virtual HRESULT put_SoftwareID(BSTR newVal) = 0;

    /// [2] The policy as XML text: a "PolicyData" document with one "Policy" and its "Product". -3.
    virtual HRESULT get_PolicyData(BSTR* pVal) = 0;

    /// [3] Sets the section that GetSetting and PutSetting use ("invalid" at first). It need not exist. Always 0.
    virtual HRESULT put_Section(BSTR newVal) = 0;

    /// [4] GetSectionSetting on the current section.
    virtual HRESULT GetSetting(BSTR strName, BSTR* pstrValue) = 0;
    /// [5] PutSectionSetting on the current section.
    virtual HRESULT PutSetting(BSTR strName, BSTR strValue) = 0;

    /// [6] A setting's value, macros expanded. -4 no policy is bound; -1200 no such section; -1201 no such setting.
    virtual HRESULT GetSectionSetting(BSTR strSectionName, BSTR strName, BSTR* pstrValue) = 0;
    /// [7] Stores a value as it stands; a missing section and setting are created. -4; -2 the value or a name holds a
    /// character that XML cannot hold (the old value stays).
    virtual HRESULT PutSectionSetting(BSTR strSectionName, BSTR strName, BSTR strValue) = 0;
    /// [8] Removes one setting; an emptied section stays. -4; -1200; -1201.
    virtual HRESULT RemoveSetting(BSTR strSectionName, BSTR strName) = 0;
    /// [9] Removes the first section of that name. -4; -1200 no such section.
    virtual HRESULT RemoveSection(BSTR strSectionName) = 0;
};

/// The policy file: one XML document, loaded whole, edited in memory, written whole.
struct IPolicyFile : IDispatch {
    /// [1] Puts a copy of a task into the document, in place of one with the same software ID and task ID, whatever
    /// `bOverwrite` says. `pTask` stays the caller's. -5 read-only; -13 null or no IPolicyTask; -4 nothing is loaded;
    /// -1100 the document has no "TaskRoot"; -2 an ID holds a character that XML cannot hold (nothing changed); or the
    /// code of the task's own getters. A task that throws gives -2 (memory: 0x8007000E). One that has this object load
    /// a file while it is asked gives -4; that file is loaded then, without the task. A failure after the old task was
    /// taken out is not rolled back, and tasks are not found again until AddTask or RemoveTask succeeds or a file is
    /// loaded.
    virtual HRESULT AddTask(IUnknown* pTask, LONG bOverwrite) = 0;

    /// [2] Puts a copy of a product policy into the document, in place of one with the same software ID, whatever
    /// `bOverwrite` says, and makes its time stamp the policy version. -5; -4; -13 null or no IPolicyProduct;
    /// -1100 the document has no "Policy" to put it in; -2 as for AddTask. As AddTask for a policy that throws or
    /// loads, and after a late failure.
    virtual HRESULT AddPolicy(IUnknown* pPolicy, LONG bOverwrite) = 0;

    /// [3] Hands out a task as an IPolicyTask object with a private copy. -4 nothing is loaded; -1208 no such task;
    /// 0x80004005 the resource module is missing.
    virtual HRESULT GetTask(BSTR strSoftwareID, BSTR strTaskID, IUnknown** pTask) = 0;

    /// [4] Hands out a product policy as an IPolicyProduct object with a private copy. -4; -1207 no such policy;
    /// 0x80004005 the resource module is missing.
    virtual HRESULT GetPolicy(BSTR strSoftwareID, IUnknown** pPolicy) = 0;

    /// [5] Takes a product policy out of the document; its "Policy" element stays. -5; -4; -1207.
    virtual HRESULT RemovePolicy(BSTR strSoftwareID) = 0;

    /// [6] Takes a task out of the document, with its whole "TaskGroup". -5; -4; -1208.
    virtual HRESULT RemoveTask(BSTR strSoftwareID, BSTR strTaskID) = 0;

    /// [7] Loads a policy file; what was loaded before is dropped first. `bReadOnly` other than 0 refuses later edits.
    /// -1106 the text is not well-formed, declares entities or names an encoding that is not supported;
    /// 0x80070459 the bytes are not valid in their encoding; a file code such as 0x80070002; -2 memory ran out while
    /// the indexes were built. Nothing is loaded after a failure; after -2 alone WriteFile and WriteFileBuffer have the
    /// new document.
    virtual HRESULT InitializeFile(BSTR strPolicyFile, LONG bReadOnly) = 0;

    /// [8] Writes the document to `strPolicyFile` (always to that path, whatever `bUseInternal` says, and also when it
    /// was loaded read-only) in the encoding it was read in, after bringing the version attributes up to date. The file
    /// is replaced in one step: a reader sees the old or the new one. -4 nothing is loaded; 0x800700DF the file would
    /// be too large to be loaded again; or another file code. The old file is intact then.
    virtual HRESULT WriteFile(BSTR strPolicyFile, LONG bUseInternal) = 0;

    /// [9] Hands out an enumerator (ITaskInfo) over the tasks as they are now. -4, -32 and -2 leave the slot null.
    virtual HRESULT GetTaskInfo(IUnknown** pTaskInfo) = 0;

    /// [10] Creates an empty task that belongs to no file. Always 0: look at the slot, which is null when the platform
    /// could not create it.
    virtual HRESULT CreateTask(IPolicyTask** pTask) = 0;

    /// [11] Creates an empty product policy that belongs to no file; the platform's creation result.
    virtual HRESULT CreatePolicy(IPolicyProduct** pPolicy) = 0;

    /// [12] The document as text, as it stands (versions are not brought up to date). Always 0; the slot is null when
    /// nothing is loaded or memory ran out.
    virtual HRESULT WriteFileBuffer(BSTR* pbstrFileBuffer) = 0;

    /// [13] The task version. 0x8007000E the string could not be allocated.
    virtual HRESULT get_VersionTask(BSTR* pVal) = 0;
    /// [14] The policy version. 0x8007000E.
    virtual HRESULT get_VersionPolicy(BSTR* pVal) = 0;
    /// [15] The assignment list of the last "PolicyRoot" that was read, empty when it has none. 0x8007000E.
    virtual HRESULT get_PolicyAssignmentList(BSTR* pVal) = 0;
};

/// Editing a policy file where it lies, beside others who edit it. A second interface of every policy file object,
/// found by QueryInterface; it works on the same document as IPolicyFile:
///
///     OpenForEdit(path, 10000)   opens the file once, locks it, loads it
///     AddPolicy, RemoveTask ...  of IPolicyFile
///     CommitEdit(0)              replaces the file if it is still the one that was loaded
///
/// Lock     Editors that use this interface take turns. The lock is on the file itself, belongs to this object and ends
///          with the edit, the object or the process; it leaves nothing on disk. Readers and WriteFile take none.
///          Natively it is a write lock of the open file over all bytes (fcntl, F_OFD_SETLK), which whoever may write
///          the file can take; on Windows one byte far beyond the end (LockFileEx), which disturbs no reader and which
///          whoever may read the file can take.
/// Links    A link that the path ends with is followed, and stays, except one that somebody else planted in a folder
///          that everybody may write (sticky): 0x80070005.
/// Ends     An edit ends with CommitEdit that succeeds, EndEdit, InitializeFile, the next OpenForEdit, and the object.
struct IPolicyFileEdit : IUnknown {
    /// Ends an edit, opens `strPolicyFile` with its folder, waits up to `lTimeout` milliseconds (0 or less: not at all)
    /// for whoever edits it, locks it and loads it from what was opened, writable. The object's lock is held meanwhile.
    /// -1301 another process was editing it all the time. 0x80070032 it is no regular file, or its file system has no
    /// locks; 0x80070005 it may not be read and written; and every code of IPolicyFile::InitializeFile. After a failure
    /// nothing is loaded and nothing is held.
    virtual HRESULT OpenForEdit(BSTR strPolicyFile, LONG lTimeout) = 0;

    /// Sets `*plChanged` to 1 when the file is no longer the one that was loaded (other bytes, another file under its
    /// name, none), otherwise to 0. -4 no edit is open; -13; a file code when that cannot be found out. The slot is
    /// written on success only.
    virtual HRESULT HasFileChanged(LONG* plChanged) = 0;

    /// Answers whether CommitEdit(bForce) would be refused, and leaves no trace: -1302 the file was changed by
    /// something else; 0x80070005 the folder takes no new file; -1304 the file's owner or group cannot be kept. Not
    /// foreseen: a full disk, and what only the replacement itself meets. -4 no edit is open or nothing is loaded.
    virtual HRESULT RehearseCommit(LONG bForce) = 0;

    /// Brings the version attributes up to date and replaces the file as IPolicyFile::WriteFile does, through what was
    /// opened. -1302 the file was changed by something else since it was loaded and is left alone, unless `bForce` is
    /// not 0. -1303 the new file is in place, but its folder could not be flushed. -4 no edit is open or nothing is
    /// loaded; the codes of WriteFile; -1304 the file's owner or group cannot be kept; -1301 (a share that cannot
    /// rename over an open file) another machine took the lock in the moment of the replacement. After 0 and -1303 the
    /// edit is over and its lock free; after any other code it stays open and the file is as it was. A change in the
    /// moment between the last look and the replacement is not noticed.
    virtual HRESULT CommitEdit(LONG bForce) = 0;

    /// Ends the edit without writing; the document stays. Always 0.
    virtual HRESULT EndEdit() = 0;
};

namespace zupm {

template <>
struct InterfaceTraits<ITaskInfo> {
    static constexpr const IID& Id() { return IID_ITaskInfo; }
    static constexpr const CLSID& Class() { return CLSID_TaskInfo; }
};
template <>
struct InterfaceTraits<IPolicyTask> {
    static constexpr const IID& Id() { return IID_IPolicyTask; }
    static constexpr const CLSID& Class() { return CLSID_PolicyTask; }
};
template <>
struct InterfaceTraits<IPolicyProduct> {
    static constexpr const IID& Id() { return IID_IPolicyProduct; }
    static constexpr const CLSID& Class() { return CLSID_PolicyProduct; }
};
template <>
struct InterfaceTraits<IPolicyFile> {
    static constexpr const IID& Id() { return IID_IPolicyFile; }
    static constexpr const CLSID& Class() { return CLSID_PolicyFile; }
};
template <>
struct InterfaceTraits<IPolicyFileEdit> {
    static constexpr const IID& Id() { return IID_IPolicyFileEdit; }
};

}  // namespace zupm
