#include "settings/CElementMap.h"

namespace zupm {

bool CElementMap::Insert(std::u16string_view name, const AdvXMLParser::Element& setting)
{
    return m_settings.Insert(name, [&] { return CElementRef(setting); }).second;
}

void CElementMap::Reserve(std::size_t settings)
{
    m_settings.Reserve(settings);
}

void CElementMap::Erase(std::u16string_view name) noexcept
{
    m_settings.Erase(name);
}

}  // namespace zupm
