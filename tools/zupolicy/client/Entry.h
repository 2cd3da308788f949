/// Policies and tasks, as the component hands them out.
#pragma once

#include <zuPolicyManager/client/PolicyFile.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tools/zupolicy/client/Target.h"
#include "tools/zupolicy/client/Utf8.h"
#include "tools/zupolicy/model/ReadFile.h"
#include "tools/zupolicy/report/Problem.h"

namespace zupm::tool {

/// The sections of settings of one policy or task: a private copy, which goes back into the file with HandBack.
///
/// Errors  Every call that fails throws ProblemFailure, about the subject given at construction. An argument that is
/// not
///         valid UTF-8 throws Failure.
class Entry {
public:
    explicit Entry(tool::Subject subject) : m_subject(std::move(subject)) {}
    Entry(const Entry&) = delete;
    Entry& operator=(const Entry&) = delete;
    virtual ~Entry() = default;

    /// A setting's value; throws when the section or the setting is missing.
    [[nodiscard]] virtual std::string Get(const std::string& section, const std::string& name) = 0;
    /// As Get; nothing when the section or the setting is missing.
    [[nodiscard]] virtual std::optional<std::string> Find(const std::string& section, const std::string& name) = 0;
    /// Creates a missing section and setting.
    virtual void Put(const std::string& section, const std::string& name, const std::string& value) = 0;
    virtual void RemoveSetting(const std::string& section, const std::string& name) = 0;
    virtual void RemoveSection(const std::string& section) = 0;
    /// What the policy or task means, with the fields of a task.
    [[nodiscard]] virtual model::Entry State() const = 0;
    /// Puts a copy into the file's document.
    virtual void HandBack(const zupm::PolicyFile& file) = 0;

protected:
    [[nodiscard]] const tool::Subject& Subject() const noexcept { return m_subject; }

private:
    tool::Subject m_subject;
};

/// What policies and tasks have in common; `Copy` is zupm::Policy or zupm::Task.
template <typename Copy>
class EntryOf : public Entry {
public:
    EntryOf(Copy copy, tool::Subject subject) : Entry(std::move(subject)), m_copy(std::move(copy)) {}

    [[nodiscard]] std::string Get(const std::string& section, const std::string& name) override
    {
        return Calling(Subject(), [&] { return m_copy.Value(Valid(section), Valid(name)); });
    }
    [[nodiscard]] std::optional<std::string> Find(const std::string& section, const std::string& name) override
    {
        return Calling(Subject(), [&] { return m_copy.Find(Valid(section), Valid(name)); });
    }
    void Put(const std::string& section, const std::string& name, const std::string& value) override
    {
        Calling(Subject(), [&] { m_copy.Set(Valid(section), Valid(name), Valid(value)); });
    }
    void RemoveSetting(const std::string& section, const std::string& name) override
    {
        Calling(Subject(), [&] { m_copy.Remove(Valid(section), Valid(name)); });
    }
    void RemoveSection(const std::string& section) override
    {
        Calling(Subject(), [&] { m_copy.Remove(Valid(section)); });
    }
    [[nodiscard]] model::Entry State() const override
    {
        return Calling(Subject(), [&] { return model::Read(m_copy); });
    }
    void HandBack(const zupm::PolicyFile& file) override
    {
        Calling(Subject(), [&] { file.Add(m_copy); });
    }

protected:
    [[nodiscard]] Copy& Own() noexcept { return m_copy; }

private:
    Copy m_copy;
};

using PolicyEntry = EntryOf<zupm::Policy>;

/// One task, with its identity fields.
class TaskEntry final : public EntryOf<zupm::Task> {
public:
    using EntryOf::EntryOf;

    void PutIds(const std::string& softwareId, const std::string& taskId);
    /// Sets each given field whose value differs; returns those that changed.
    std::vector<FieldChange> PutFields(const TaskFields& fields);
    /// Fills in what a new task must not leave as the component's placeholder: the display name becomes the task ID,
    /// the other texts empty.
    void PutDefaults(const std::string& taskId);
    void WriteIni(const std::string& path);

private:
    void PutPriority(std::optional<std::int32_t> priority, std::vector<FieldChange>& changes);
};

}  // namespace zupm::tool
