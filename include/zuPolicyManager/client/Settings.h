/// The sections and settings of a policy or a task, read and changed through its interface: one type for both.
#pragma once

#include <zuPolicyManager/Owners.h>
#include <zuPolicyManager/client/Error.h>
#include <zuPolicyManager/client/File.h>
#include <zuPolicyManager/client/Names.h>
#include <zuPolicyManager/client/Runtime.h>
#include <zuPolicyManager/client/Text.h>
#include <zuPolicyManager/zuPolicyManager.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zupm::client {

/// The sections and settings of one policy or task object.
///
/// Lifetime  Shared by the Policy or Task, its Sections and its Settings.
/// Threads   Immutable; the object has locks of its own.
/// Errors    Each call throws what Error.h lists.
class Settings {
public:
    /// `file` is the one that the object was taken from, or made for; null for none.
    explicit Settings(std::shared_ptr<const File> file) : m_file(std::move(file)) {}
    Settings(const Settings&) = delete;
    Settings& operator=(const Settings&) = delete;
    virtual ~Settings() = default;

    /// The file to hand the object back to. Throws Error when there is none.
    [[nodiscard]] const File& Owner() const
    {
        if (!m_file) {
            Throw({result::NotInitialised, Describe(), "It belongs to no file.", {}});
        }
        return *m_file;
    }

    [[nodiscard]] std::string Value(std::string_view section, std::string_view name) const
    {
        return Read(section, name, [this](auto... arguments) { return GetValue(arguments...); });
    }
    [[nodiscard]] std::string Stored(std::string_view section, std::string_view name) const
    {
        const ComPtr<IPolicySections> sections = Sections();
        return Read(section, name, [&](auto... arguments) { return sections->GetStoredSetting(arguments...); });
    }
    [[nodiscard]] std::optional<std::string> FindValue(std::string_view section, std::string_view name) const
    {
        return Find(section, name, [this](auto... arguments) { return GetValue(arguments...); });
    }
    [[nodiscard]] std::optional<std::string> FindStored(std::string_view section, std::string_view name) const
    {
        const ComPtr<IPolicySections> sections = Sections();
        return Find(section, name, [&](auto... arguments) { return sections->GetStoredSetting(arguments...); });
    }
    void Set(std::string_view section, std::string_view name, std::string_view value) const
    {
        Check(PutValue(Argument(section), Argument(name), Argument(value)), section, name);
    }
    void Remove(std::string_view section, std::string_view name) const
    {
        Check(RemoveOne(Argument(section), Argument(name)), section, name);
    }
    void Remove(std::string_view section) const { Check(RemoveAll(Argument(section)), section); }

    [[nodiscard]] std::vector<std::string> SectionNames() const
    {
        ComPtr<IPolicyNames> names;
        Check(Sections()->get_SectionNames(names.Put()));
        return NamesOf(*names, [this](HRESULT result) { Check(result); });
    }
    [[nodiscard]] std::vector<std::string> SettingNames(std::string_view section) const
    {
        ComPtr<IPolicyNames> names;
        Check(Sections()->GetSettingNames(Argument(section), names.Put()), section);
        return NamesOf(*names, [&](HRESULT result) { Check(result, section); });
    }
    [[nodiscard]] bool HasSection(std::string_view section) const
    {
        ComPtr<IPolicyNames> names;
        const HRESULT result = Sections()->GetSettingNames(Argument(section), names.Put());
        if (result == result::SectionNotFound) {
            static_cast<void>(TakeDescription());
            return false;
        }
        Check(result, section);
        return true;
    }
    [[nodiscard]] std::string TakenVersion() const
    {
        Bstr version;
        Check(Sections()->get_TakenVersion(version.Slot()));
        return ToText(version);
    }

    /// Throws for a negative result; the message names the section and the setting.
    void Check(HRESULT result, std::optional<std::string_view> section = {},
               std::optional<std::string_view> name = {}) const
    {
        if (result >= 0) {
            return;
        }
        // First of all, because asking for the subject calls the object again.
        const std::string description = TakeDescription();
        std::string subject = m_file ? m_file->Subject(Describe()) : Describe();
        subject += section ? Join(": section \"", *section, "\"") : "";
        subject += name ? Join(", setting \"", *name, "\"") : "";
        ThrowFailed(static_cast<result::Code>(result), description, std::move(subject),
                    m_file ? m_file->Path() : std::string());
    }

private:
    /// "policy PRODUCTA1000", for messages.
    [[nodiscard]] virtual std::string Describe() const = 0;
    [[nodiscard]] virtual IUnknown& Object() const noexcept = 0;
    [[nodiscard]] virtual HRESULT GetValue(BSTR section, BSTR name, BSTR* value) const = 0;
    [[nodiscard]] virtual HRESULT PutValue(BSTR section, BSTR name, BSTR value) const = 0;
    [[nodiscard]] virtual HRESULT RemoveOne(BSTR section, BSTR name) const = 0;
    [[nodiscard]] virtual HRESULT RemoveAll(BSTR section) const = 0;

    [[nodiscard]] ComPtr<IPolicySections> Sections() const
    {
        return Require<IPolicySections>(ComPtr<IUnknown>(&Object()));
    }

    template <class Call>
    [[nodiscard]] std::string Read(std::string_view section, std::string_view name, const Call& call) const
    {
        Bstr value;
        Check(call(Argument(section), Argument(name), value.Slot()), section, name);
        return ToText(value);
    }

    /// As Read; nothing when the section or the setting is missing.
    template <class Call>
    [[nodiscard]] std::optional<std::string> Find(std::string_view section, std::string_view name,
                                                  const Call& call) const
    {
        Bstr value;
        const HRESULT result = call(Argument(section), Argument(name), value.Slot());
        if (result == result::SectionNotFound || result == result::SettingNotFound) {
            static_cast<void>(TakeDescription());
            return std::nullopt;
        }
        Check(result, section, name);
        return ToText(value);
    }

    std::shared_ptr<const File> m_file;
};

/// The settings of an object with this interface: IPolicyProduct or IPolicyTask.
template <class Interface>
class SettingsOf : public Settings {
public:
    SettingsOf(ComPtr<Interface> object, std::shared_ptr<const File> file)
        : Settings(std::move(file)), m_object(std::move(object))
    {
        if (!m_object) {
            ThrowEmpty();
        }
    }

    [[nodiscard]] Interface& Own() const noexcept { return *m_object; }

    /// A text of the object, through one of its getters.
    [[nodiscard]] std::string Text(HRESULT (Interface::*get)(BSTR*)) const
    {
        Bstr text;
        Check((Own().*get)(text.Slot()));
        return ToText(text);
    }

protected:
    /// As Text, for messages: nothing that fails ends in an exception.
    [[nodiscard]] std::string Shown(HRESULT (Interface::*get)(BSTR*)) const
    {
        Bstr text;
        const HRESULT result = (Own().*get)(text.Slot());
        return result < 0 ? "?" : ToUtf8Lossy(text.Get(), SysStringLen(text.Get()));
    }

private:
    [[nodiscard]] IUnknown& Object() const noexcept override { return *m_object; }
    [[nodiscard]] HRESULT GetValue(BSTR section, BSTR name, BSTR* value) const override
    {
        return m_object->GetSectionSetting(section, name, value);
    }
    [[nodiscard]] HRESULT PutValue(BSTR section, BSTR name, BSTR value) const override
    {
        return m_object->PutSectionSetting(section, name, value);
    }
    [[nodiscard]] HRESULT RemoveOne(BSTR section, BSTR name) const override
    {
        return m_object->RemoveSetting(section, name);
    }
    [[nodiscard]] HRESULT RemoveAll(BSTR section) const override { return m_object->RemoveSection(section); }

    ComPtr<Interface> m_object;
};

/// What a value refers to. Throws Error (NotInitialised) when the value was moved from.
template <class Kind>
[[nodiscard]] const Kind& Held(const std::shared_ptr<const Kind>& object)
{
    if (!object) {
        ThrowEmpty();
    }
    return *object;
}

}  // namespace zupm::client
