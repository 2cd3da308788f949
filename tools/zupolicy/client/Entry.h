/// Policies and tasks, as the component hands them out.
#pragma once

#include <zuPolicyManager/Owners.h>
#include <zuPolicyManager/zuPolicyManager.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tools/zupolicy/client/CallError.h"
#include "tools/zupolicy/client/Target.h"

namespace zupm::tool {

/// The sections of settings of one policy or task: a private copy, which goes back into the file with HandBack.
///
/// Errors  Every call that fails throws CallError; its message begins with the subject given at construction.
class Entry {
public:
    explicit Entry(std::string subject) : m_subject(std::move(subject)) {}
    Entry(const Entry&) = delete;
    Entry& operator=(const Entry&) = delete;
    virtual ~Entry() = default;

    /// A setting's value; throws when the section or the setting is missing.
    [[nodiscard]] virtual std::u16string Get(std::u16string_view section, std::u16string_view name) = 0;
    /// Creates a missing section and setting.
    virtual void Put(std::u16string_view section, std::u16string_view name, std::u16string_view value) = 0;
    virtual void RemoveSetting(std::u16string_view section, std::u16string_view name) = 0;
    virtual void RemoveSection(std::u16string_view section) = 0;
    /// Puts a copy into the file's document.
    virtual void HandBack(IPolicyFile& file) = 0;

    /// As Get; nothing when the section or the setting is missing.
    [[nodiscard]] std::optional<std::u16string> Find(std::u16string_view section, std::u16string_view name);

protected:
    [[nodiscard]] const std::string& Subject() const noexcept { return m_subject; }

private:
    std::string m_subject;
};

/// What policies and tasks have in common, member for member.
template <typename Interface>
class EntryOf : public Entry {
public:
    EntryOf(ComPtr<Interface> object, std::string subject) : Entry(std::move(subject)), m_object(std::move(object)) {}

    [[nodiscard]] std::u16string Get(std::u16string_view section, std::u16string_view name) override
    {
        Bstr value;
        Check(m_object->GetSectionSetting(Bstr(section).Get(), Bstr(name).Get(), value.Slot()), Subject());
        return value.Text();
    }
    void Put(std::u16string_view section, std::u16string_view name, std::u16string_view value) override
    {
        Check(m_object->PutSectionSetting(Bstr(section).Get(), Bstr(name).Get(), Bstr(value).Get()), Subject());
    }
    void RemoveSetting(std::u16string_view section, std::u16string_view name) override
    {
        Check(m_object->RemoveSetting(Bstr(section).Get(), Bstr(name).Get()), Subject());
    }
    void RemoveSection(std::u16string_view section) override
    {
        Check(m_object->RemoveSection(Bstr(section).Get()), Subject());
    }

protected:
    [[nodiscard]] Interface* Object() const noexcept { return m_object.Get(); }

private:
    ComPtr<Interface> m_object;
};

/// One product's policy.
class PolicyEntry final : public EntryOf<IPolicyProduct> {
public:
    using EntryOf::EntryOf;

    void HandBack(IPolicyFile& file) override { Check(file.AddPolicy(Object(), 1), Subject()); }
    void PutSoftwareId(std::u16string_view softwareId)
    {
        Check(Object()->put_SoftwareID(Bstr(softwareId).Get()), Subject());
    }
};

/// One task, with its identity fields.
class TaskEntry final : public EntryOf<IPolicyTask> {
public:
    using EntryOf::EntryOf;

    void HandBack(IPolicyFile& file) override { Check(file.AddTask(Object(), 1), Subject()); }
    void PutIds(std::u16string_view softwareId, std::u16string_view taskId);
    /// Sets each given field whose value differs; returns those that changed.
    std::vector<FieldChange> PutFields(const TaskFields& fields);
    /// Fills in what a new task must not leave as the component's placeholder: the display name becomes the task ID,
    /// the other texts empty.
    void PutDefaults(std::u16string_view taskId);
    void WriteIni(std::u16string_view path);

private:
    void PutPriority(std::optional<std::int32_t> priority, std::vector<FieldChange>& changes);
};

}  // namespace zupm::tool
