/// The policy manager component: four classes that read and edit the policy file of a management agent.
///
///     class           interface             an object is
///     PolicyFile      IPolicyFile           a policy file in memory: load it, edit it, write it
///                     IPolicyFileEdit       the same object, for a file that others edit too
///                     IPolicyFileContents   the same object, to list what the file has
///     PolicyProduct   IPolicyProduct        a private copy of one product's policy
///                     IPolicySections       the same object, to list its sections and settings
///     PolicyTask      IPolicyTask           a private copy of one task
///                     IPolicySections       the same object, as for a product
///     TaskInfo        ITaskInfo             an enumerator over the tasks of a file
///     -               IPolicyNames          a list of names that one of the others handed out
///     -               IPolicyNotices        what is odd in a policy file, handed out by it
///
/// A client creates a policy file object with CoCreateInstance and gets the other objects from it. It calls the methods
/// directly or by name (IDispatch); the number in brackets before each method is its dispatch number. Owners.h has C++
/// owners for references and strings.
///
/// The first interface of each class is the one that coclasses list, and the one that IDispatch describes. The others
/// are found by QueryInterface. The IDispatch of the same object calls their members too: after its own, whose names
/// and numbers they do not use.
///
/// Results     Every method returns a signed 32-bit result: 0 is success, a negative code is failure. Results.h lists
///             every code with a sentence. A method that lists its codes may also fail for lack of memory: with
///             E_OUTOFMEMORY (0x8007000E), with -3, or with -2 from a step that turns every exception into -2 (filling
///             an index, copying a product or task, reading and writing settings).
///             A failing call also leaves error information for the thread (GetErrorInfo): the sentence of its code.
///             For XML that cannot be parsed, and for bytes that are not valid in their encoding, it is
///             "file:line:column: reason".
/// Strings     In: the caller keeps the string; null counts as the empty string.
///             Out: the method frees the string that the slot holds and stores a new one, which the caller frees with
///             SysFreeString. Set a slot to null before its first use. After a failure the slot holds what it held,
///             unless the method says otherwise. A null slot gives -13.
/// Objects     Out: the slot gets a reference that the caller releases; the old pointer in the slot is not released.
///             Every object that is handed out has a private copy, which outlives the policy file object.
/// Numbers     `LONG` is a signed 32-bit integer. A version is an unsigned 64-bit number as decimal text.
/// Threads     Any thread may call any object; each object serialises its calls. The lock order is policy file, then
///             product or task, then what lies inside it. AddPolicy and AddTask keep the policy file's lock while they
///             call the object that they are given. If that object is of the client's own class, it may call the
///             policy file on the same thread, but must not wait for another thread that uses the policy file: both
///             would wait for ever.
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

inline constexpr IID IID_IPolicyFileContents{
    0x41583961, 0x2B96, 0x427D, {0xB6, 0xBA, 0x1A, 0x0D, 0x1B, 0xB3, 0xA3, 0x8D}};
inline constexpr IID IID_IPolicySections{0x0139F444, 0x35AA, 0x4C9F, {0xA4, 0x59, 0xAF, 0xFD, 0xCB, 0x26, 0xF8, 0xAD}};
inline constexpr IID IID_IPolicyNames{0xD6582BDA, 0xFE76, 0x418E, {0xB0, 0x32, 0x0B, 0x1E, 0xF3, 0x25, 0xC8, 0x1D}};
inline constexpr IID IID_IPolicyNotices{0x509EE37F, 0x9974, 0x4DDF, {0x94, 0xA3, 0x80, 0xFD, 0x65, 0x27, 0xB1, 0x81}};

inline constexpr GUID LIBID_ZUPOLICYMANAGERLib{
    0x7DB1286A, 0xCBEF, 0x4823, {0x96, 0xAA, 0x27, 0x09, 0x3A, 0x54, 0x67, 0x41}};

namespace zupm {

/// A null-terminated wide text made from an ASCII literal, in the wide character type of the target.
template <std::size_t Size>
struct WideLiteral {
    OLECHAR text[Size]{};

    constexpr WideLiteral(const char (&ascii)[Size])  // NOLINT(google-explicit-constructor): made from a literal
    {
        for (std::size_t i = 0; i < Size; ++i) {
            text[i] = static_cast<OLECHAR>(ascii[i]);
        }
    }
    [[nodiscard]] constexpr const OLECHAR* c_str() const { return text; }
};

/// The ProgIDs of the classes.
inline constexpr WideLiteral kProgIdTaskInfo{"ZuPolicyManager.TaskInfo.1"};
inline constexpr WideLiteral kProgIdPolicyTask{"ZuPolicyManager.PolicyTask.1"};
inline constexpr WideLiteral kProgIdPolicyProduct{"ZuPolicyManager.PolicyProduct.1"};
inline constexpr WideLiteral kProgIdPolicyFile{"ZuPolicyManager.PolicyFile.1"};

}  // namespace zupm

/// A forward-only enumerator over the tasks of a policy file: a snapshot of their pairs of software ID and task ID,
/// sorted by software ID and then by task ID in code-unit order. One that a client creates itself is empty.
struct ITaskInfo : IDispatch {
    /// [1] Goes to the first pair and hands it out. Call it again at any time to start over. -1111 the list is empty
    /// (the slots are untouched); -3 a string could not be allocated (both slots are written).
    virtual HRESULT GetFirst(BSTR* pbstrSoftwareID, BSTR* pbstrTaskID) = 0;

    /// [2] Goes to the next pair and hands it out. -1112 there is no next pair, or GetFirst was not called before (the
    /// slots are untouched); -3 as for GetFirst.
    virtual HRESULT GetNext(BSTR* pbstrSoftwareID, BSTR* pbstrTaskID) = 0;
};

/// One task: identity fields, and sections of settings in a private copy of the task's XML. A new one
/// (from CreateTask or CoCreateInstance) has the text "invalid" in every identity field, priority 0, an empty version
/// and no sections.
struct IPolicyTask : IDispatch {
    /// [1] to [6] Identity fields. A put changes the object only; the XML gets the new value with the next TaskData or
    /// AddTask. get: -3 the string could not be allocated (the slot is null then). put: always 0.
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

    /// [8] The task as XML text: a "TaskData" document with one "TaskGroup" and its "Task". The call first writes the
    /// identity fields and a fresh time stamp into the private copy. -1100 no task is bound; -2 a field holds a
    /// character that XML cannot hold; -3 the string could not be allocated.
    virtual HRESULT get_TaskData(BSTR* pVal) = 0;

    /// [9] Sets the section that GetSetting and PutSetting use; at first it is "invalid". The section need not exist.
    /// Always 0.
    virtual HRESULT put_Section(BSTR newVal) = 0;

    /// [10] GetSectionSetting in the current section.
    virtual HRESULT GetSetting(BSTR strName, BSTR* pstrValue) = 0;
    /// [11] PutSectionSetting in the current section.
    virtual HRESULT PutSetting(BSTR strName, BSTR strValue) = 0;

    /// [12] Returns the value of a setting, with macros expanded. -4 no task is bound; -1200 no such section; -1201 no
    /// such setting.
    virtual HRESULT GetSectionSetting(BSTR strSection, BSTR strName, BSTR* pstrValue) = 0;
    /// [13] Stores a value as it is given, and creates a missing section or setting. -4 no task is bound; -2 the value
    /// or a name holds a character that XML cannot hold (the old value stays).
    virtual HRESULT PutSectionSetting(BSTR strSection, BSTR strName, BSTR strValue) = 0;
    /// [14] Removes one setting; a section that becomes empty stays. -4 no task is bound; -1200 no such section; -1201
    /// no such setting.
    virtual HRESULT RemoveSetting(BSTR strSection, BSTR strName) = 0;
    /// [15] Removes the first section of that name. -4 no task is bound; -1200 no such section.
    virtual HRESULT RemoveSection(BSTR strName) = 0;

    /// [16] Writes the identity fields (section "Task") and all settings into an INI file. A missing file is created;
    /// an existing one keeps its other settings. 0x80004005 the path is empty, or an identity field could not be
    /// written to the file.
    ///
    /// The bytes are those that WritePrivateProfileStringW of the system would write, with raw values: who reads them
    /// with the system's function gets a value without the blanks at its ends and without a pair of quotes around it.
    /// Names that differ only in case are one setting: the later value replaces the earlier one (a log line of level
    /// 8). Two things are different: a name or value with CR, LF or NUL is refused (a log line of level 7; a setting is
    /// left out), and an 8-bit file that cannot hold a text becomes UTF-16.
    virtual HRESULT WriteTaskDataToIniFile(BSTR bstrFileName) = 0;

    /// [17] The time stamp that the task had when it was bound. Unlike every other getter this one overwrites the slot
    /// without freeing the string that it holds. -3 the string could not be allocated.
    virtual HRESULT get_Version(BSTR* pstrValue) = 0;
};

/// One product's policy: sections of settings in a private copy of the product's XML. A new one (from
/// CreatePolicy or CoCreateInstance) has the software ID "SoftwareID" and no sections.
struct IPolicyProduct : IDispatch {
    /// [1] The software ID. get: -3 the string could not be allocated. put: always 0, also when it changes nothing: on
    /// an object whose binding failed, and for an ID with a character that XML cannot hold (which is logged). Read the
    /// ID back where that matters.
    virtual HRESULT get_SoftwareID(BSTR* pVal) = 0;
    virtual HRESULT put_SoftwareID(BSTR newVal) = 0;

    /// [2] The policy as XML text: a "PolicyData" document with one "Policy" and its "Product". -3 the string could not
    /// be allocated.
    virtual HRESULT get_PolicyData(BSTR* pVal) = 0;

    /// [3] Sets the section that GetSetting and PutSetting use; at first it is "invalid". The section need not exist.
    /// Always 0.
    virtual HRESULT put_Section(BSTR newVal) = 0;

    /// [4] GetSectionSetting in the current section.
    virtual HRESULT GetSetting(BSTR strName, BSTR* pstrValue) = 0;
    /// [5] PutSectionSetting in the current section.
    virtual HRESULT PutSetting(BSTR strName, BSTR strValue) = 0;

    /// [6] Returns the value of a setting, with macros expanded. -4 no policy is bound; -1200 no such section; -1201 no
    /// such setting.
    virtual HRESULT GetSectionSetting(BSTR strSectionName, BSTR strName, BSTR* pstrValue) = 0;
    /// [7] Stores a value as it is given, and creates a missing section or setting. -4 no policy is bound; -2 the value
    /// or a name holds a character that XML cannot hold (the old value stays).
    virtual HRESULT PutSectionSetting(BSTR strSectionName, BSTR strName, BSTR strValue) = 0;
    /// [8] Removes one setting; a section that becomes empty stays. -4 no policy is bound; -1200 no such section; -1201
    /// no such setting.
    virtual HRESULT RemoveSetting(BSTR strSectionName, BSTR strName) = 0;
    /// [9] Removes the first section of that name. -4 no policy is bound; -1200 no such section.
    virtual HRESULT RemoveSection(BSTR strSectionName) = 0;
};

/// The policy file: one XML document that is loaded whole, edited in memory and written whole.
struct IPolicyFile : IDispatch {
    /// [1] Puts a copy of a task into the document. It replaces a task with the same software ID and task ID, whatever
    /// `bOverwrite` says. `pTask` stays the caller's.
    /// -5 the document was loaded read-only; -13 `pTask` is null or has no IPolicyTask; -4 nothing is loaded; -1100 the
    /// document has no "TaskRoot"; -2 an ID holds a character that XML cannot hold (nothing is changed); or the code of
    /// one of the task's own getters.
    ///
    /// A task that throws gives -2 (0x8007000E for lack of memory). A task that makes this object load a file while it
    /// is being asked gives -4; that file is loaded then, without the task. A failure after the old task was removed is
    /// not undone: no task is found any more until AddTask or RemoveTask succeeds or a file is loaded.
    virtual HRESULT AddTask(IUnknown* pTask, LONG bOverwrite) = 0;

    /// [2] Puts a copy of a product policy into the document, and makes its time stamp the policy version. It replaces
    /// a policy with the same software ID, whatever `bOverwrite` says. `pPolicy` stays the caller's.
    /// -5 the document was loaded read-only; -4 nothing is loaded; -13 `pPolicy` is null or has no IPolicyProduct;
    /// -1100 the document has no "Policy" to put it into; -2 as for AddTask. A policy that throws or loads a file, and
    /// a late failure, have the effects that AddTask describes.
    virtual HRESULT AddPolicy(IUnknown* pPolicy, LONG bOverwrite) = 0;

    /// [3] Hands out a task as an IPolicyTask object with a private copy. -4 nothing is loaded; -1208 no such task;
    /// 0x80004005 the resource module is missing.
    virtual HRESULT GetTask(BSTR strSoftwareID, BSTR strTaskID, IUnknown** pTask) = 0;

    /// [4] Hands out a product policy as an IPolicyProduct object with a private copy. -4 nothing is loaded; -1207 no
    /// such policy; 0x80004005 the resource module is missing.
    virtual HRESULT GetPolicy(BSTR strSoftwareID, IUnknown** pPolicy) = 0;

    /// [5] Removes a product policy from the document; the "Policy" element around it stays. -5 the document was loaded
    /// read-only; -4 nothing is loaded; -1207 no such policy.
    virtual HRESULT RemovePolicy(BSTR strSoftwareID) = 0;

    /// [6] Removes a task from the document, with its whole "TaskGroup". -5 the document was loaded read-only; -4
    /// nothing is loaded; -1208 no such task.
    virtual HRESULT RemoveTask(BSTR strSoftwareID, BSTR strTaskID) = 0;

    /// [7] Loads a policy file, after dropping what was loaded before. If `bReadOnly` is not 0, every edit is
    /// refused with -5.
    /// -1106 the text is not well-formed, declares entities or names an encoding that is not supported; 0x80070459 the
    /// bytes are not valid in their encoding; a file code such as 0x80070002; -2 memory ran out while the indexes were
    /// built. After a failure nothing is loaded; after -2 alone WriteFile and WriteFileBuffer have the new document.
    virtual HRESULT InitializeFile(BSTR strPolicyFile, LONG bReadOnly) = 0;

    /// [8] Brings the version attributes up to date and writes the document to `strPolicyFile`, in the encoding in
    /// which it was read. The path is always that one, whatever `bUseInternal` says, and a file that was loaded
    /// read-only is written too. The file is replaced in one step: a reader sees the old one or the new one.
    /// -4 nothing is loaded; 0x800700DF the file would be too large to be loaded again; or another file code. After a
    /// failure the old file is intact.
    virtual HRESULT WriteFile(BSTR strPolicyFile, LONG bUseInternal) = 0;

    /// [9] Hands out an enumerator (ITaskInfo) over the tasks as they are now. -4, -32 and -2 set the slot to null.
    virtual HRESULT GetTaskInfo(IUnknown** pTaskInfo) = 0;

    /// [10] Creates an empty task that belongs to no file. Always 0, so check the slot: it is null when the platform
    /// could not create the task.
    virtual HRESULT CreateTask(IPolicyTask** pTask) = 0;

    /// [11] Creates an empty product policy that belongs to no file. The result is that of the platform's creation.
    virtual HRESULT CreatePolicy(IPolicyProduct** pPolicy) = 0;

    /// [12] The document as text, as it is: the version attributes are not brought up to date. Always 0; the slot is
    /// null when nothing is loaded or memory ran out.
    virtual HRESULT WriteFileBuffer(BSTR* pbstrFileBuffer) = 0;

    /// [13] The task version. 0x8007000E the string could not be allocated.
    virtual HRESULT get_VersionTask(BSTR* pVal) = 0;
    /// [14] The policy version. 0x8007000E the string could not be allocated.
    virtual HRESULT get_VersionPolicy(BSTR* pVal) = 0;
    /// [15] The assignment list of the last "PolicyRoot" that was read; empty when that has none. 0x8007000E the string
    /// could not be allocated.
    virtual HRESULT get_PolicyAssignmentList(BSTR* pVal) = 0;
};

/// Editing a policy file in place while others edit it too: a second interface of every policy file object, found by
/// QueryInterface. It works on the same document as IPolicyFile:
///
///     OpenForEdit(path, 10000)   opens the file once, locks it, loads it
///     AddPolicy, RemoveTask ...  of IPolicyFile
///     CommitEdit(0)              replaces the file if it is still the one that was loaded
///
/// Lock     Editors that use this interface take turns. The lock is on the file itself, belongs to this object and ends
///          with the edit, the object or the process; it leaves nothing on disk. Readers and WriteFile take no lock.
///          Natively it is a write lock of the open file over all bytes (fcntl, F_OFD_SETLK): anybody who may write the
///          file can take it. On Windows it is one byte far beyond the end (LockFileEx), which disturbs no reader:
///          anybody who may read the file can take it.
/// Links    A link at the end of the path is followed, and stays. One that somebody else planted in a folder that
///          everybody may write (sticky) gives 0x80070005.
/// Ends     A CommitEdit that succeeds, EndEdit, InitializeFile, the next OpenForEdit and the end of the object each
///          end the edit.
struct IPolicyFileEdit : IUnknown {
    /// [1011] Ends an edit, opens `strPolicyFile` with its folder, waits up to `lTimeout` milliseconds (0 or less: not
    /// at all) for whoever is editing it, locks it and loads it, writable, from what was opened. The call keeps the
    /// object's lock all the time. -1301 another process was editing the file all the time; 0x80070032 it is no regular
    /// file, or its file system has no locks; 0x80070005 it may not be read and written; and every code of
    /// IPolicyFile::InitializeFile. After a failure nothing is loaded and nothing is locked.
    virtual HRESULT OpenForEdit(BSTR strPolicyFile, LONG lTimeout) = 0;

    /// [1012] Sets `*plChanged` to 1 when the file is no longer the one that was loaded (other bytes, another file of
    /// that name, or none), otherwise to 0. The slot is written on success only. -4 no edit is open; -13 the slot is
    /// null; a file code when the answer cannot be found out.
    virtual HRESULT HasFileChanged(LONG* plChanged) = 0;

    /// [1013] Answers whether CommitEdit(bForce) would be refused, and leaves no trace. It cannot foresee a full disk,
    /// or what only the replacement itself meets. -1302 the file was changed by something else; 0x80070005 the folder
    /// takes no new file; -1304 the file's owner or group cannot be kept; -4 no edit is open or nothing is loaded.
    virtual HRESULT RehearseCommit(LONG bForce) = 0;

    /// [1014] Brings the version attributes up to date and replaces the file as IPolicyFile::WriteFile does, through
    /// what was opened. After 0 and -1303 the edit is over and the file unlocked; after any other code the edit stays
    /// open and the file is as it was. A change in the moment between the last check and the replacement is not
    /// noticed. -1302 the file was changed by something else since it was loaded and is left alone, unless `bForce` is
    /// not 0; -1303 the new file is in place, but its folder could not be flushed; -4 no edit is open or nothing is
    /// loaded; -1304 the file's owner or group cannot be kept; -1301 (on a share that cannot rename over an open file)
    /// another machine took the lock in the moment of the replacement; and every code of IPolicyFile::WriteFile.
    virtual HRESULT CommitEdit(LONG bForce) = 0;

    /// [1015] Ends the edit without writing; the document stays loaded. Always 0.
    virtual HRESULT EndEdit() = 0;
};

/// A list of names: a snapshot that never changes and that the client keeps as long as it likes, whatever becomes of
/// the object that handed it out. Scripts go over it with "for each", or by index.
struct IPolicyNames : IDispatch {
    /// [0] The name at a place, counted from 0. -13 there is no such place; -3 the string could not be allocated.
    virtual HRESULT get_Item(LONG lIndex, BSTR* pVal) = 0;

    /// [1] The number of names.
    virtual HRESULT get_Count(LONG* pVal) = 0;

    /// [-4] An enumerator (IEnumVARIANT) at the first name; each value is a string. Its Next gives E_OUTOFMEMORY when a
    /// string could not be allocated.
    virtual HRESULT get__NewEnum(IUnknown** pVal) = 0;  // NOLINT(bugprone-reserved-identifier): named as its member
};

/// What is odd in a policy file that loads all the same, in the order of the file: a snapshot that never changes and
/// that the client keeps as long as it likes. Every notice has a place, counted from 0; -13 there is no such place.
///
///     kind   what is odd                                                        its start tag
///     1      a policy whose software ID occurred before: only the first is used  "Product"
///     2      a task whose IDs occurred before, likewise                          "Task"
///     3      a section whose name occurred before: both are read as one          the section's
///     4      a setting whose name occurred before: only the first is used        the setting's
///     5      neither "PolicyRoot" nor "TaskRoot": perhaps no policy file         the document element's
///     6      a version that is no number                                         the one with that attribute
///     7      a task's setting that an INI file takes for an earlier one          the setting's
///     8      a task's setting that an INI file takes for a field of the task     the setting's
///
/// Later versions may know more kinds.
struct IPolicyNotices : IDispatch {
    /// [1] The number of notices.
    virtual HRESULT get_Count(LONG* pVal) = 0;

    /// [2] The kind: a row of the table above.
    virtual HRESULT get_Kind(LONG lIndex, LONG* pVal) = 0;

    /// [3] [4] Where the start tag begins, in the document's text; both count from 1. A column counts characters, as in
    /// the error information of a file that cannot be parsed.
    virtual HRESULT get_Line(LONG lIndex, LONG* pVal) = 0;
    virtual HRESULT get_Column(LONG lIndex, LONG* pVal) = 0;

    /// [5] [6] The IDs of the policy or task that the notice is about; empty when there is none. A policy has no task
    /// ID. -3 the string could not be allocated.
    virtual HRESULT get_SoftwareID(LONG lIndex, BSTR* pVal) = 0;
    virtual HRESULT get_TaskID(LONG lIndex, BSTR* pVal) = 0;

    /// [0] The notice as an English sentence for people. Names in it are as in the file, which may mean control
    /// characters, and cut when they are very long. -3 the string could not be allocated.
    virtual HRESULT get_Text(LONG lIndex, BSTR* pVal) = 0;
};

/// What a policy file has, and the file on disk: a second interface of every policy file object, found by
/// QueryInterface. It lists what IPolicyFile::GetPolicy and GetTask find at the moment of the call, in the order of the
/// file; of equal IDs the first. After an edit that failed half way that may be nothing (see IPolicyFile::AddTask).
struct IPolicyFileContents : IUnknown {
    /// [1001] The software IDs of the product policies. -4 nothing is loaded.
    virtual HRESULT get_PolicyIDs(IPolicyNames** pVal) = 0;

    /// [1002] The software IDs that have tasks, each in the place of its first task. -4 nothing is loaded.
    virtual HRESULT get_TaskSoftwareIDs(IPolicyNames** pVal) = 0;

    /// [1003] The task IDs of one software ID; an empty list when it has no tasks. -4 nothing is loaded.
    virtual HRESULT GetTaskIDs(BSTR strSoftwareID, IPolicyNames** pNames) = 0;

    /// [1004] 1 when the file is no longer the one that was loaded (other bytes, or none), otherwise 0; edits of the
    /// object are no change of the file. The file is the one at the path that was loaded, taken as it was in the folder
    /// that was the current one then; links in it are followed anew. While an edit is open it is
    /// IPolicyFileEdit::HasFileChanged, for which another file with the same bytes is a change, too. -4 nothing is
    /// loaded; a file code when the answer cannot be found out.
    virtual HRESULT get_HasChangedOnDisk(LONG* pVal) = 0;

    /// [1005] Writes the document to where it was loaded from, unless somebody else changed the file meanwhile: takes
    /// the lock of IPolicyFileEdit, waiting up to `lTimeout` milliseconds (0 or less: not at all) for whoever has it,
    /// compares as HasChangedOnDisk does, brings the version attributes up to date, replaces the file and unlocks it.
    /// After 0 and -1303 the file that was written counts as the one that was loaded, so the call can be repeated;
    /// after any other code the file is as it was. While an edit is open this is IPolicyFileEdit::CommitEdit(0).
    /// -1302 the file was changed by something else or is gone, and nothing was written; -1301 another process was
    /// editing the file all the time; -5 the document was loaded read-only; -4 nothing is loaded; and every code of
    /// OpenForEdit for opening and of CommitEdit. A change in the moment between the last check and the replacement is
    /// not noticed. A file that IPolicyFile::WriteFile wrote does not count as loaded.
    virtual HRESULT WriteIfUnchanged(LONG lTimeout) = 0;

    /// [1006] What is odd in the document, as it is at the moment of the call. Nothing is read from the disk: the call
    /// goes over the whole text in memory. -4 nothing is loaded.
    virtual HRESULT get_Notices(IPolicyNotices** pVal) = 0;

    /// [1007] A setting of a policy as the document has it: what IPolicySections::GetStoredSetting of a copy that
    /// GetPolicy makes would give, but without that copy. It searches the policy's text, so for many settings of one
    /// policy a copy is faster. -4 nothing is loaded; -1207 no such policy; -1200 no such section; -1201 no such
    /// setting; -3 the string could not be allocated (the slot holds what it held).
    virtual HRESULT GetStoredPolicySetting(BSTR strSoftwareID, BSTR strSection, BSTR strName, BSTR* pstrValue) = 0;

    /// [1008] The same for a task and GetTask. -1208 no such task; otherwise the codes of GetStoredPolicySetting.
    virtual HRESULT GetStoredTaskSetting(BSTR strSoftwareID, BSTR strTaskID, BSTR strSection, BSTR strName,
                                         BSTR* pstrValue) = 0;
};

/// The sections of a product policy or task: a second interface of every such object, found by QueryInterface. It lists
/// what GetSectionSetting of the same object finds at the moment of the call, in the order of the XML text; of equal
/// names the first. Sections of one name count as one.
struct IPolicySections : IUnknown {
    /// [1001] The names of the sections, those without settings included. -4 no policy or task is bound.
    virtual HRESULT get_SectionNames(IPolicyNames** pVal) = 0;

    /// [1002] The names of the settings of a section. -4 no policy or task is bound; -1200 no such section.
    virtual HRESULT GetSettingNames(BSTR strSection, IPolicyNames** pNames) = 0;

    /// [1003] The value of a setting as it is stored: macros are not expanded. -4 no policy or task is bound; -1200 no
    /// such section; -1201 no such setting; -3 the string could not be allocated (the slot holds what it held).
    virtual HRESULT GetStoredSetting(BSTR strSection, BSTR strName, BSTR* pstrValue) = 0;

    /// [1004] The version that the entry had when it was taken out of a file: the "PolicyVersion" of a product's
    /// policy, the time stamp of a task (as IPolicyTask's Version). Empty for a new object, and for an entry without
    /// one. It stays the same whatever is done with the object. -3 the string could not be allocated (the slot holds
    /// what it held).
    virtual HRESULT get_TakenVersion(BSTR* pVal) = 0;
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
template <>
struct InterfaceTraits<IPolicyFileContents> {
    static constexpr const IID& Id() { return IID_IPolicyFileContents; }
};
template <>
struct InterfaceTraits<IPolicySections> {
    static constexpr const IID& Id() { return IID_IPolicySections; }
};
template <>
struct InterfaceTraits<IPolicyNotices> {
    static constexpr const IID& Id() { return IID_IPolicyNotices; }
};
template <>
struct InterfaceTraits<IPolicyNames> {
    static constexpr const IID& Id() { return IID_IPolicyNames; }
};

}  // namespace zupm
