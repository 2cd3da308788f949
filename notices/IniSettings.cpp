#include "notices/IniSettings.h"

#include <algorithm>

#include "common/PrivateProfile.h"
#include "text/Utf.h"

namespace zupm {

namespace {

/// The section of the fields.
constexpr std::string_view kFieldSection = "Task";

/// An export leaves out a setting with one of these in its section, name or value.
bool IsRefused(std::string_view text) noexcept
{
    constexpr std::string_view kBreaks("\r\n\0", 3);
    return text.find_first_of(kBreaks) != std::string_view::npos;
}

std::string Folded(std::string_view name)
{
    return ToUtf8Lossy(ProfileName(ToUtf16Lossy(name)));
}

}  // namespace

IniSettings::IniSettings() : m_fieldSection(Folded(kFieldSection))
{
    std::ranges::transform(kIniFields, m_fieldNames.begin(), Folded);
}

void IniSettings::Open() noexcept
{
    m_sections.Clear();
    m_names.Clear();
    m_settings.clear();
    m_folded.clear();
    m_isSectionKnown = false;
}

std::optional<IniSettings::First> IniSettings::Add(const IniSetting& setting)
{
    if (IsRefused(setting.section) || IsRefused(setting.name) || IsRefused(setting.value)) {
        return std::nullopt;
    }
    if (!m_isSectionKnown || m_section != setting.section) {
        const std::string_view section = Fold(setting.section);
        m_section = setting.section;
        m_sectionNumber = m_sections.Add(0, section).number;
        m_isFieldSection = section == m_fieldSection;
        m_isSectionKnown = true;
    }
    const std::string_view name = Fold(setting.name);
    if (const std::size_t field = m_isFieldSection ? FindField(name) : kIniFields.size(); field < kIniFields.size()) {
        return First{.setting = nullptr, .field = field};
    }
    const SeenNames::Added added = m_names.Add(m_sectionNumber, name);
    if (added.isNew) {
        m_settings.push_back(setting);
        return std::nullopt;
    }
    const IniSetting& first = m_settings[added.number];
    return first.value == setting.value ? std::nullopt : std::optional(First{.setting = &first});
}

std::string_view IniSettings::Fold(std::string_view name)
{
    return m_folded.emplace_back(Folded(name));
}

std::size_t IniSettings::FindField(std::string_view folded) const noexcept
{
    return static_cast<std::size_t>(std::ranges::find(m_fieldNames, folded) - m_fieldNames.begin());
}

}  // namespace zupm
