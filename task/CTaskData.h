/// The model of one task.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "settings/CPrivateCopy.h"
#include "task/TaskFields.h"
#include "xml/Node.h"
#include "zuPolicyManager/Results.h"

namespace zupm {

/// One task: its identity fields, and a private copy of its element.
///
/// Lifetime   Never points into the policy file; valid after the file is closed.
/// Threads    None of its own; the owning CPolicyTask holds its lock around every call.
/// Errors     Result codes. Initialize (element form) and CopyData turn any exception into Unexpected. The other
///            operations pass out exceptions of memory and of fields that XML cannot hold.
/// Invariants The private "TaskGroup" has at most one child, the task.
class CTaskData {
public:
    /// `ownerLink` goes to every cursor; nobody reads it. Throws std::bad_alloc.
    explicit CTaskData(const void* ownerLink);
    virtual ~CTaskData() = default;
    CTaskData(const CTaskData&) = delete;
    CTaskData& operator=(const CTaskData&) = delete;

    /// Reads the fields from the elements' attributes and copies the task. On failure (AllocationFailed, Unexpected,
    /// the cursor's code) the object is not initialised and keeps the fields that were read.
    [[nodiscard]] result::Code Initialize(const AdvXMLParser::Element& group,
                                          const AdvXMLParser::Element& task) noexcept;

    /// Reads the first "Task" of the first "TaskGroup" that has one, of a text such as GetTaskDataXml gives.
    /// ElementMissing, and SyntaxError (with "text:line:column: reason" in `detail`), leave the object as it was.
    /// Otherwise the codes of the element form.
    [[nodiscard]] result::Code Initialize(std::u16string_view xml, std::u16string& detail);

    /// Drops the task; the fields stay. Always Success.
    result::Code Deinitialize();

    [[nodiscard]] TaskFields& Fields() noexcept { return m_fields; }

    /// The cursor's operations and codes; NotInitialised.
    [[nodiscard]] result::Code GetSectionSetting(std::u16string_view section, std::u16string_view name,
                                                 std::u16string& value);
    [[nodiscard]] result::Code GetStoredSetting(std::u16string_view section, std::u16string_view name,
                                                std::u16string& value);
    [[nodiscard]] result::Code GetSectionNames(NameList& names);
    [[nodiscard]] result::Code GetSettingNames(std::u16string_view section, NameList& names);
    [[nodiscard]] result::Code PutSectionSetting(std::u16string_view section, std::u16string_view name,
                                                 std::u16string_view value);
    [[nodiscard]] result::Code RemoveSetting(std::u16string_view section, std::u16string_view name);

    /// Deletes the first section of that name and reopens the cursor. NotInitialised, SectionNotFound. AllocationFailed
    /// and the cursor's codes: the section is gone, but the cursor could not be reopened.
    [[nodiscard]] result::Code RemoveSection(std::u16string_view name);

    /// Writes the fields and a new time stamp into the private copy, then gives the whole private document as text.
    /// ElementMissing without a task; `text` is untouched on failure.
    [[nodiscard]] result::Code GetTaskDataXml(std::u16string& text);

    /// Replaces everything inside a "TaskGroup" of another document by a copy of the task, then writes the fields and a
    /// new time stamp into the group. `version` gets the stamp as a number. NotInitialised; ElementMissing when `group`
    /// is no "TaskGroup"; AllocationFailed, Unexpected.
    [[nodiscard]] result::Code CopyData(AdvXMLParser::Element group, std::uint64_t& version) noexcept;

    /// Writes the fields and all settings into an INI file. GeneralFailure for an empty path, and for a field that
    /// could not be written: the fields before it stay in the file. CursorNotInitialised without a task.
    [[nodiscard]] result::Code WriteTaskDataToIniFile(std::u16string_view path);

private:
    /// The write-back: stamps the group and its first "Task", and writes the fields into both. ElementMissing for
    /// another element or a group without "Task", with nothing changed; AllocationFailed, the cursor's codes. Throws
    /// InvalidCharacterException before anything changes.
    [[nodiscard]] result::Code UpdateTaskGroupElement(const AdvXMLParser::Element& group, std::uint64_t& version);
    void WriteFields(const AdvXMLParser::Element& group, CSectionParser& settings, std::u16string_view stamp) const;

    TaskFields m_fields;
    CPrivateCopy m_copy;
};

}  // namespace zupm
