#include "settings/CSectionParser.h"

#include <new>
#include <utility>

#include "common/Macros.h"

namespace zupm {

namespace {

/// The context that the macro expander gets with every value: a cursor has none of its own.
// Given: see docs/given-oddities.md, "invalid".
constexpr std::u16string_view kMacroContext = u"invalid";

}  // namespace

CSectionParser::CSectionParser(const AdvXMLParser::Element& container, const void* ownerLink) noexcept
    : m_container(container), m_ownerLink(ownerLink)
{
}

CSectionParser::~CSectionParser()
{
    Deinitialize();
}

std::unique_ptr<CSectionParser> CSectionParser::Create(const AdvXMLParser::Element& container,
                                                       const void* ownerLink) noexcept
{
    return std::unique_ptr<CSectionParser>(new (std::nothrow) CSectionParser(container, ownerLink));
}

result::Code CSectionParser::Initialize() noexcept
{
    if (m_initialised) {
        return result::Success;
    }
    const CriticalSectionLock lock(m_lock);
    DropStore();
    m_store.reset(new (std::nothrow) CXMLDataObject(m_container, m_ownerLink));
    if (!m_store) {
        return result::AllocationFailed;
    }
    const result::Code code = m_store->Initialize();
    if (code >= 0) {
        m_initialised = true;
    }
    return code;
}

result::Code CSectionParser::Deinitialize() noexcept
{
    const CriticalSectionLock lock(m_lock);
    DropStore();
    m_initialised = false;
    return result::Success;
}

void CSectionParser::DropStore() noexcept
{
    if (m_store) {
        m_store->Deinitialize();
        m_store.reset();
    }
}

result::Code CSectionParser::GetSettingValue(std::u16string_view section, std::u16string_view setting,
                                             std::u16string& value)
{
    const CriticalSectionLock lock(m_lock);
    std::u16string raw;
    if (const result::Code code = GetStoredValue(section, setting, raw); code < 0) {
        return code;
    }
    int flags = 1;
    value = cmnlib_ExpandMacro(raw, u"<", u">", flags, kMacroContext);
    return result::Success;
}

result::Code CSectionParser::GetStoredValue(std::u16string_view section, std::u16string_view setting,
                                            std::u16string& value) noexcept
{
    const CriticalSectionLock lock(m_lock);
    return m_initialised ? m_store->GetSettingValue(section, setting, value) : result::CursorNotInitialised;
}

result::Code CSectionParser::GetSectionNames(NameList& names) noexcept
{
    const CriticalSectionLock lock(m_lock);
    return m_initialised ? m_store->GetSectionNames(names) : result::CursorNotInitialised;
}

result::Code CSectionParser::GetSettingNames(std::u16string_view section, NameList& names) noexcept
{
    const CriticalSectionLock lock(m_lock);
    return m_initialised ? m_store->GetSettingNames(section, names) : result::CursorNotInitialised;
}

result::Code CSectionParser::SetSettingValue(std::u16string_view section, std::u16string_view setting,
                                             std::u16string_view value) noexcept
{
    constexpr std::int32_t kCreate = 1;
    const CriticalSectionLock lock(m_lock);
    return m_initialised ? m_store->SetSettingValue(section, setting, value, kCreate) : result::CursorNotInitialised;
}

result::Code CSectionParser::RemoveSetting(std::u16string_view section, std::u16string_view setting) noexcept
{
    const CriticalSectionLock lock(m_lock);
    return m_initialised ? m_store->RemoveSetting(section, setting) : result::CursorNotInitialised;
}

result::Code CSectionParser::WriteAllSettingsToIniFile(std::u16string_view path, CIniNames written) noexcept
{
    CXMLDataObject* store = nullptr;
    {
        const CriticalSectionLock lock(m_lock);
        store = m_store.get();
    }
    // Given: see docs/given-oddities.md, "export without lock and state".
    // The export runs outside the lock: it may take as long as the disk takes.
    return store == nullptr ? result::CursorNotInitialised : store->WriteAllSettingsToIniFile(path, std::move(written));
}

}  // namespace zupm
