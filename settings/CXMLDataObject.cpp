#include "settings/CXMLDataObject.h"

#include <new>
#include <utility>

#include "module/host/Log.h"
#include "platform/PrivateProfile.h"
#include "settings/CatchAll.h"
#include "settings/Elements.h"

namespace zupm {

using AdvXMLParser::Attribute;
using AdvXMLParser::Element;
using AdvXMLParser::ElementChildren;

namespace {

/// Appends an element with a "name"; NotCreated when either cannot be made.
result::Code AppendNamed(Element parent, std::u16string_view elementName, std::u16string_view name, Element& added)
{
    Element element = parent.AddElementInto(elementName);
    if (element.IsNull()) {
        return result::NotCreated;
    }
    Attribute attribute = element.CreateAttribute(kNameAttribute);
    if (attribute.IsNull()) {
        return result::NotCreated;
    }
    attribute.SetText(name);
    added = element;
    return result::Success;
}

void IndexSettings(const Element& section, const std::u16string& sectionName, CElementMap& settings)
{
    for (const Element setting : ElementChildren(section)) {
        const Attribute attribute = setting.GetAttribute(kNameAttribute);
        if (attribute.IsNull()) {
            continue;
        }
        const std::u16string name = attribute.GetText();
        if (!settings.Insert(name, setting)) {
            LogDuplicate(
                u"CXMLDataObject::Initialize() -- Setting %s exists already in the setting map for the section %s",
                name, sectionName);
        }
    }
}

}  // namespace

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
    const Attribute attribute = section.GetAttribute(kNameAttribute);
    if (attribute.IsNull()) {
        return result::Success;
    }
    std::unique_ptr<CElementMap> settings(new (std::nothrow) CElementMap);
    if (!settings) {
        return result::AllocationFailed;
    }
    const std::u16string name = attribute.GetText();
    auto place = m_sections.lower_bound(name);
    if (place != m_sections.end() && place->first == name) {
        LogDuplicate(u"CXMLDataObject::Initialize() -- Section %s exists already in the section map", name);
    } else {
        place = m_sections.emplace_hint(place, name, std::move(settings));
    }
    IndexSettings(section, name, *place->second);
    return result::Success;
}

result::Code CXMLDataObject::Deinitialize() noexcept
{
    const CriticalSectionLock lock(m_lock);
    m_sections.clear();
    m_initialised = false;
    return result::Success;
}

Element CXMLDataObject::GetSetting(std::u16string_view section, std::u16string_view setting,
                                   result::Code& code) const noexcept
{
    code = result::Success;
    const auto sectionEntry = m_sections.find(section);
    if (sectionEntry == m_sections.end()) {
        code = result::SectionNotFound;
        return {};
    }
    if (!sectionEntry->second) {
        code = result::NotCreated;
        return {};
    }
    const CElementMap::Index& settings = sectionEntry->second->Settings();
    const auto settingEntry = settings.find(setting);
    if (settingEntry == settings.end()) {
        code = result::SettingNotFound;
        return {};
    }
    if (!settingEntry->second) {
        code = result::NotCreated;
        return {};
    }
    return settingEntry->second->GetElement();
}

result::Code CXMLDataObject::GetSettingValue(std::u16string_view section, std::u16string_view setting,
                                             std::u16string& value) const noexcept
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

result::Code CXMLDataObject::SetSettingValue(std::u16string_view section, std::u16string_view setting,
                                             std::u16string_view value, std::int32_t create) noexcept
{
    return CatchAll(u"CXMLDataObject::SetSettingValue()", [&]() -> result::Code {
        result::Code code = result::Success;
        Element element = GetSetting(section, setting, code);
        if (code >= 0) {
            element.SetText(value);
            return code;
        }
        if (create == 0) {
            return result::SettingNotFound;
        }
        RequireXmlText(value);
        element = AddSetting(section, setting, code);
        if (code < 0) {
            return code;
        }
        if (element.IsNull()) {
            return result::NotCreated;
        }
        element.SetText(value);
        return code;
    });
}

Element CXMLDataObject::AddSetting(std::u16string_view section, std::u16string_view setting,
                                   result::Code& code) noexcept
{
    Element added;
    code = CatchAll(u"CXMLDataObject::AddSetting()", [&] {
        RequireXmlText(section);
        RequireXmlText(setting);
        return AppendSetting(section, setting, added);
    });
    return code < 0 ? Element() : added;
}

result::Code CXMLDataObject::AppendSetting(std::u16string_view section, std::u16string_view setting, Element& added)
{
    for (bool created = false;; created = true) {
        const Element match = FindChildByAttribute(m_container, kNameAttribute, section);
        if (!match.IsNull()) {
            const result::Code code = AppendNamed(match, u"Setting", setting, added);
            return code < 0 ? code : Reinitialize();
        }
        if (created) {
            return result::SectionStillMissing;
        }
        Element newSection;
        if (const result::Code code = AppendNamed(m_container, u"Section", section, newSection); code < 0) {
            return code;
        }
        // The setting comes next and rebuilds the indexes again; that result counts.
        static_cast<void>(Reinitialize());
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
        Deinitialize();
        element.Delete();
        return Initialize();
    });
}

result::Code CXMLDataObject::Reinitialize() noexcept
{
    Deinitialize();
    return Initialize();
}

result::Code CXMLDataObject::WriteAllSettingsToIniFile(std::u16string_view path) const noexcept
{
    return CatchAll(u"CXMLDataObject::WriteAllSettingsToIniFile()", [&]() -> result::Code {
        for (const auto& [sectionName, settings] : m_sections) {
            for (const auto& [settingName, setting] : settings->Settings()) {
                static_cast<void>(
                    WritePrivateProfileStringW(sectionName, settingName, setting->GetElement().GetText(), path));
            }
        }
        return result::Success;
    });
}

}  // namespace zupm
