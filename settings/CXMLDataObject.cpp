#include "settings/CXMLDataObject.h"

#include <new>
#include <utility>

#include "com/Log.h"
#include "common/PrivateProfile.h"
#include "settings/CatchAll.h"
#include "settings/RequireXmlText.h"
#include "settings/Schema.h"

namespace zupm {

using AdvXMLParser::Element;
using AdvXMLParser::ElementChildren;

CXMLDataObject::CXMLDataObject(const Element& container, const void* ownerLink) noexcept
    : m_container(container), m_ownerLink(ownerLink)
{
}

CXMLDataObject::~CXMLDataObject()
{
    Deinitialize();
}

result::Code CXMLDataObject::Initialize() noexcept
{
    const CriticalSectionLock lock(m_lock);
    if (m_initialised) {
        return result::Success;
    }
    const result::Code code = CatchAll(u"CXMLDataObject::Initialize()", [this] { return BuildIndexes(); });
    m_initialised = code >= 0;
    return code;
}

result::Code CXMLDataObject::BuildIndexes()
{
    for (const Element section : ElementChildren(m_container)) {
        if (const result::Code code = IndexSection(section); code < 0) {
            return code;
        }
    }
    return result::Success;
}

result::Code CXMLDataObject::IndexSection(const Element& section)
{
    // Given: see docs/given-oddities.md, "any element is a section".
    std::u16string name;
    if (!section.ReadAttribute(schema::kName, name)) {
        return result::Success;
    }
    std::unique_ptr<CElementMap> settings(new (std::nothrow) CElementMap);
    if (!settings) {
        return result::AllocationFailed;
    }
    const auto [place, isNew] = m_sections.Insert(name, [&] { return std::move(settings); });
    if (!isNew) {
        m_hasDuplicates = true;
        LogDuplicate(u"CXMLDataObject::Initialize() -- Section %s exists already in the section map", name);
    }
    IndexSettings(section, name, **place);
    return result::Success;
}

void CXMLDataObject::IndexSettings(const Element& section, std::u16string_view sectionName, CElementMap& settings)
{
    std::u16string name;
    for (const Element setting : ElementChildren(section)) {
        if (setting.ReadAttribute(schema::kName, name) && !settings.Insert(name, setting)) {
            m_hasDuplicates = true;
            LogDuplicate(
                u"CXMLDataObject::Initialize() -- Setting %s exists already in the setting map for the section %s",
                name, sectionName);
        }
    }
}

result::Code CXMLDataObject::Deinitialize() noexcept
{
    const CriticalSectionLock lock(m_lock);
    m_sections.Clear();
    m_hasDuplicates = false;
    m_initialised = false;
    return result::Success;
}

Element CXMLDataObject::GetSetting(std::u16string_view section, std::u16string_view setting,
                                   result::Code& code) noexcept
{
    code = Refresh();
    return code < 0 ? Element() : Find(section, setting, code);
}

const CElementMap::Index* CXMLDataObject::FindSection(std::u16string_view section, result::Code& code) const noexcept
{
    const std::unique_ptr<CElementMap>* const settings = m_sections.Find(section);
    if (settings == nullptr) {
        code = result::SectionNotFound;
        return nullptr;
    }
    // Given: see docs/given-oddities.md, "null entries".
    if (!*settings) {
        code = result::NotCreated;
        return nullptr;
    }
    return &(*settings)->Settings();
}

Element CXMLDataObject::Find(std::u16string_view section, std::u16string_view setting,
                             result::Code& code) const noexcept
{
    const CElementMap::Index* const settings = FindSection(section, code);
    if (settings == nullptr) {
        return {};
    }
    const std::optional<CElementRef>* const reference = settings->Find(setting);
    if (reference == nullptr) {
        code = result::SettingNotFound;
        return {};
    }
    if (!*reference) {
        code = result::NotCreated;
        return {};
    }
    return (*reference)->GetElement();
}

result::Code CXMLDataObject::GetSettingValue(std::u16string_view section, std::u16string_view setting,
                                             std::u16string& value) noexcept
{
    return CatchAll(u"CXMLDataObject::GetSettingValue()", [&]() -> result::Code {
        result::Code code = result::Success;
        const Element element = GetSetting(section, setting, code);
        if (code < 0) {
            return code;
        }
        if (element.IsNull()) {
            return result::SettingNotFound;
        }
        value = element.GetText();
        return result::Success;
    });
}

result::Code CXMLDataObject::GetSectionNames(NameList& names) noexcept
{
    return CatchAll(u"CXMLDataObject::GetSectionNames()", [&]() -> result::Code {
        if (const result::Code code = Refresh(); code < 0) {
            return code;
        }
        names = NamesOf(m_sections, [](const std::unique_ptr<CElementMap>& settings) { return settings != nullptr; });
        return result::Success;
    });
}

result::Code CXMLDataObject::GetSettingNames(std::u16string_view section, NameList& names) noexcept
{
    return CatchAll(u"CXMLDataObject::GetSettingNames()", [&]() -> result::Code {
        if (const result::Code code = Refresh(); code < 0) {
            return code;
        }
        result::Code code = result::Success;
        if (const CElementMap::Index* const settings = FindSection(section, code); settings != nullptr) {
            names = NamesOf(*settings, [](const std::optional<CElementRef>& setting) { return setting.has_value(); });
        }
        return code;
    });
}

result::Code CXMLDataObject::SetSettingValue(std::u16string_view section, std::u16string_view setting,
                                             std::u16string_view value, std::int32_t create) noexcept
{
    return CatchAll(u"CXMLDataObject::SetSettingValue()", [&]() -> result::Code {
        if (const result::Code code = Refresh(); code < 0) {
            return code;
        }
        result::Code code = result::Success;
        Element element = Find(section, setting, code);
        if (code >= 0) {
            element.SetText(value);
            return code;
        }
        // Given: see docs/given-oddities.md, "a missing section is a missing setting".
        if (create == 0) {
            return result::SettingNotFound;
        }
        RequireXmlText(value);
        element = AddSetting(section, setting, code, value);
        return code >= 0 && element.IsNull() ? result::NotCreated : code;
    });
}

Element CXMLDataObject::AddSetting(std::u16string_view section, std::u16string_view setting, result::Code& code,
                                   std::u16string_view value) noexcept
{
    Element added;
    code = CatchAll(u"CXMLDataObject::AddSetting()", [&] {
        RequireXmlText(section);
        RequireXmlText(setting);
        return AppendSetting(section, setting, value, added);
    });
    return code < 0 ? Element() : added;
}

result::Code CXMLDataObject::AppendSetting(std::u16string_view section, std::u16string_view setting,
                                           std::u16string_view value, Element& added)
{
    for (bool created = false;; created = true) {
        Element match = FindChildByAttribute(m_container, schema::kName, section);
        if (!match.IsNull()) {
            // Name and value are added in one step, so that no setting is left with a wrong value when memory runs out.
            added = match.AddElementInto(schema::kSetting, schema::kName, setting, value);
            if (added.IsNull()) {
                return result::NotCreated;
            }
            return Follow([&] {
                const std::unique_ptr<CElementMap>* const settings = m_sections.Find(section);
                const bool isNew = settings != nullptr && (*settings)->Insert(setting, added);
                return isNew ? result::Success : Reinitialize();
            });
        }
        if (created) {
            return result::SectionStillMissing;
        }
        const Element newSection = m_container.AddElementInto(schema::kSection, schema::kName, section);
        if (newSection.IsNull()) {
            return result::NotCreated;
        }
        // The setting is added next and brings the indexes up to date again. That result counts, not this one.
        static_cast<void>(Follow([&] { return IndexSection(newSection); }));
    }
}

result::Code CXMLDataObject::RemoveSetting(std::u16string_view section, std::u16string_view setting) noexcept
{
    return CatchAll(u"CXMLDataObject::RemoveSetting()", [&]() -> result::Code {
        result::Code code = result::Success;
        Element element = GetSetting(section, setting, code);
        if (code < 0) {
            return code;
        }
        element.Delete();
        return Follow([&] {
            if (const std::unique_ptr<CElementMap>* const settings = m_sections.Find(section); settings != nullptr) {
                (*settings)->Erase(setting);
            }
            return result::Success;
        });
    });
}

bool CXMLDataObject::HoldsEveryElement() noexcept
{
    const CriticalSectionLock lock(m_lock);
    return m_initialised && !m_hasDuplicates && !m_isStale;
}

template <class Update>
result::Code CXMLDataObject::Follow(Update update) noexcept
{
    // Given: see docs/given-oddities.md, "duplicates logged again".
    if (!HoldsEveryElement()) {
        return Reinitialize();
    }
    const result::Code code = CatchAll(u"CXMLDataObject::Initialize()", update);
    m_isStale = code < 0;
    return code;
}

result::Code CXMLDataObject::Reinitialize() noexcept
{
    Deinitialize();
    const result::Code code = Initialize();
    m_isStale = code < 0;
    return code;
}

result::Code CXMLDataObject::Refresh() noexcept
{
    return m_isStale ? Reinitialize() : result::Success;
}

result::Code CXMLDataObject::WriteAllSettingsToIniFile(std::u16string_view path, CIniNames written) noexcept
{
    return CatchAll(u"CXMLDataObject::WriteAllSettingsToIniFile()", [&]() -> result::Code {
        if (const result::Code code = Refresh(); code < 0) {
            return code;
        }
        for (const auto* const section : m_sections.InOrder()) {
            const std::u16string_view sectionName = m_sections.NameOf(*section);
            const CElementMap::Index& settings = section->value->Settings();
            for (const auto* const setting : settings.InOrder()) {
                const std::u16string_view settingName = settings.NameOf(*setting);
                const std::u16string value = setting->value->GetElement().GetText();
                if (WritePrivateProfileStringW(sectionName, settingName, value, path) &&
                    !written.Add(sectionName, settingName, value)) {
                    LogDuplicate(
                        u"CXMLDataObject::WriteAllSettingsToIniFile() -- Setting %s of the section %s replaces another "
                        u"of that name in the INI file",
                        settingName, sectionName);
                }
            }
        }
        return result::Success;
    });
}

}  // namespace zupm
