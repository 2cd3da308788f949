/// Sections and settings, as a policy or a task has them.
#pragma once

#include <zuPolicyManager/client/Iterator.h>
#include <zuPolicyManager/client/Settings.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zupm {

/// The name of a setting in a section of a policy or task. Its value is asked for with each call.
///
/// Lifetime  A value that owns the policy's or task's object; copies mean the same setting.
/// Threads   Any thread may call it; only assignment needs care, as with any value.
/// Errors    Each call throws what Error.h lists; NotFound when the setting is gone.
class Setting {
public:
    Setting(std::shared_ptr<const client::Settings> entry, std::shared_ptr<const std::string> section, std::string name)
        : m_entry(std::move(entry)), m_section(std::move(section)), m_name(std::move(name))
    {
    }

    [[nodiscard]] const std::string& Name() const noexcept { return m_name; }
    [[nodiscard]] const std::string& SectionName() const
    {
        static_cast<void>(Entry());
        return *m_section;
    }
    /// The value, with macros expanded.
    [[nodiscard]] std::string Value() const { return Entry().Value(SectionName(), m_name); }
    /// The value as it is stored.
    [[nodiscard]] std::string Stored() const { return Entry().Stored(SectionName(), m_name); }
    /// Stores a value in the private copy; what is gone is made again.
    void Set(std::string_view value) const { Entry().Set(SectionName(), m_name, value); }
    /// Removes the setting from the private copy.
    void Remove() const { Entry().Remove(SectionName(), m_name); }

private:
    [[nodiscard]] const client::Settings& Entry() const { return client::Held(m_entry); }

    std::shared_ptr<const client::Settings> m_entry;
    std::shared_ptr<const std::string> m_section;
    std::string m_name;
};

namespace client {

/// The settings of a section, as rows.
class SettingRows {
public:
    using value_type = Setting;

    SettingRows(std::shared_ptr<const Settings> entry, std::shared_ptr<const std::string> section)
        : m_entry(std::move(entry)), m_section(std::move(section)), m_names(m_entry->SettingNames(*m_section))
    {
    }

    [[nodiscard]] std::size_t Count() const noexcept { return m_names.size(); }
    [[nodiscard]] std::optional<Setting> Make(std::size_t row) const
    {
        return Setting(m_entry, m_section, m_names[row]);
    }

private:
    std::shared_ptr<const Settings> m_entry;
    std::shared_ptr<const std::string> m_section;
    std::vector<std::string> m_names;
};

}  // namespace client

/// A section of a policy or task, by name. It need not exist: Set makes it.
///
/// As a range it holds its settings, in file order. begin() takes the list of names, so a loop may change, remove and
/// add settings: it visits the names that there were when it began, and Value() is the value at that moment.
///
/// Lifetime  A value that owns the policy's or task's object; copies mean the same section.
/// Threads   Any thread may call it; only assignment needs care, as with any value.
/// Errors    Each call throws what Error.h lists; NotFound when the section or setting is missing.
class Section {
public:
    using iterator = client::Iterator<client::SettingRows>;
    using const_iterator = iterator;
    using value_type = Setting;

    Section(std::shared_ptr<const client::Settings> entry, std::string_view name)
        : m_entry(std::move(entry)), m_name(std::make_shared<const std::string>(name))
    {
    }

    [[nodiscard]] const std::string& Name() const
    {
        static_cast<void>(Entry());
        return *m_name;
    }
    [[nodiscard]] bool Exists() const { return Entry().HasSection(Name()); }
    /// The names of its settings, in file order.
    [[nodiscard]] std::vector<std::string> Names() const { return Entry().SettingNames(Name()); }

    [[nodiscard]] iterator begin() const
    {
        static_cast<void>(Entry());
        return iterator(std::make_shared<const client::SettingRows>(m_entry, m_name));
    }
    [[nodiscard]] iterator end() const noexcept { return {}; }

    /// The value of a setting, with macros expanded.
    [[nodiscard]] std::string Value(std::string_view name) const { return Entry().Value(Name(), name); }
    /// The value of a setting as it is stored.
    [[nodiscard]] std::string Stored(std::string_view name) const { return Entry().Stored(Name(), name); }
    /// As Value; nothing when the setting or the section is missing.
    [[nodiscard]] std::optional<std::string> Find(std::string_view name) const
    {
        return Entry().FindValue(Name(), name);
    }
    [[nodiscard]] bool Contains(std::string_view name) const { return Find(name).has_value(); }
    /// Stores a value in the private copy, and makes what is missing.
    const Section& Set(std::string_view name, std::string_view value) const
    {
        Entry().Set(Name(), name, value);
        return *this;
    }
    /// Removes a setting from the private copy; a section that becomes empty stays.
    void Remove(std::string_view name) const { Entry().Remove(Name(), name); }
    /// Removes the section: the first one of its name.
    void Remove() const { Entry().Remove(Name()); }

private:
    [[nodiscard]] const client::Settings& Entry() const { return client::Held(m_entry); }

    std::shared_ptr<const client::Settings> m_entry;
    std::shared_ptr<const std::string> m_name;
};

namespace client {

/// The sections of a policy or task, as rows.
class SectionRows {
public:
    using value_type = Section;

    explicit SectionRows(std::shared_ptr<const Settings> entry)
        : m_entry(std::move(entry)), m_names(m_entry->SectionNames())
    {
    }

    [[nodiscard]] std::size_t Count() const noexcept { return m_names.size(); }
    [[nodiscard]] std::optional<Section> Make(std::size_t row) const { return Section(m_entry, m_names[row]); }

private:
    std::shared_ptr<const Settings> m_entry;
    std::vector<std::string> m_names;
};

}  // namespace client

/// A range of Section values, in file order. It holds the names that there were when it was made.
using Sections = client::Range<client::SectionRows>;

}  // namespace zupm
