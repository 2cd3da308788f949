/// What policies and tasks have in common for a client.
#pragma once

#include <zuPolicyManager/client/Section.h>
#include <zuPolicyManager/client/Settings.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zupm::client {

/// The members that Policy and Task share. `Derived` is the one or the other, `Interface` what it wraps, and `Own` its
/// class of Settings.
template <class Derived, class Interface, class Own>
class Entry {
public:
    /// The interface, for calls that this header does not have; null for a value that was moved from. It stays valid
    /// as long as a copy of this value lives.
    [[nodiscard]] Interface* Get() const noexcept { return m_settings ? &m_settings->Own() : nullptr; }

    /// The value of a setting, with macros expanded.
    [[nodiscard]] std::string Value(std::string_view section, std::string_view name) const
    {
        return Access().Value(section, name);
    }
    /// The value of a setting as it is stored.
    [[nodiscard]] std::string Stored(std::string_view section, std::string_view name) const
    {
        return Access().Stored(section, name);
    }
    /// As Value; nothing when the section or the setting is missing.
    [[nodiscard]] std::optional<std::string> Find(std::string_view section, std::string_view name) const
    {
        return Access().FindValue(section, name);
    }
    /// As Stored; nothing when the section or the setting is missing.
    [[nodiscard]] std::optional<std::string> FindStored(std::string_view section, std::string_view name) const
    {
        return Access().FindStored(section, name);
    }
    [[nodiscard]] bool Contains(std::string_view section) const { return Access().HasSection(section); }
    [[nodiscard]] bool Contains(std::string_view section, std::string_view name) const
    {
        return Find(section, name).has_value();
    }

    /// Stores a value in the private copy, and makes a missing section or setting. Error (Unexpected): XML cannot hold
    /// the value or a name.
    Derived& Set(std::string_view section, std::string_view name, std::string_view value) &
    {
        Access().Set(section, name, value);
        return Self();
    }
    Derived Set(std::string_view section, std::string_view name, std::string_view value) &&
    {
        return std::move(Set(section, name, value));
    }
    /// Removes a setting from the private copy; a section that becomes empty stays.
    Derived& Remove(std::string_view section, std::string_view name) &
    {
        Access().Remove(section, name);
        return Self();
    }
    Derived Remove(std::string_view section, std::string_view name) && { return std::move(Remove(section, name)); }
    /// Removes a section from the private copy: the first one of that name.
    Derived& Remove(std::string_view section) &
    {
        Access().Remove(section);
        return Self();
    }
    Derived Remove(std::string_view section) && { return std::move(Remove(section)); }

    /// The section of that name, which need not exist.
    [[nodiscard]] zupm::Section Section(std::string_view name) const
    {
        static_cast<void>(Access());
        return {m_settings, name};
    }
    /// Every section that a lookup finds, in file order.
    [[nodiscard]] zupm::Sections Sections() const
    {
        static_cast<void>(Access());
        return zupm::Sections(SectionRows(m_settings));
    }
    [[nodiscard]] std::vector<std::string> SectionNames() const { return Access().SectionNames(); }

    /// The version that it had when it was taken out of its file; empty for a new one.
    [[nodiscard]] std::string TakenVersion() const { return Access().TakenVersion(); }

    /// Puts a copy of it into its file's document, in place of one with the same ID. Nothing is written to disk.
    /// Error (NotInitialised): it belongs to no file; ReadOnly. A policy whose software ID occurs twice in the file
    /// goes after the other one, which is found from then on, and nothing reports that: see PolicyFile::Notices.
    Derived& HandBack() &
    {
        Access().HandBackTo(Access().Owner());
        return Self();
    }
    Derived HandBack() && { return std::move(HandBack()); }
    /// HandBack, then Save of its file: everything that was handed back so far is written. Throws what PolicyFile::Save
    /// throws; the document has the copy then.
    Derived& Save(std::chrono::milliseconds timeout = kPatience) &
    {
        HandBack();
        Access().Owner().Save(timeout);
        return Self();
    }
    Derived Save(std::chrono::milliseconds timeout = kPatience) && { return std::move(Save(timeout)); }

protected:
    explicit Entry(std::shared_ptr<const Own> settings) : m_settings(std::move(settings)) {}

    [[nodiscard]] const Own& Access() const { return Held(m_settings); }
    /// Sets a text of the object, through one of its setters.
    void Put(HRESULT (Interface::*put)(BSTR), std::string_view text) const
    {
        Access().Check((Access().Own().*put)(Argument(text)));
    }

private:
    [[nodiscard]] Derived& Self() noexcept { return static_cast<Derived&>(*this); }

    std::shared_ptr<const Own> m_settings;
};

}  // namespace zupm::client
