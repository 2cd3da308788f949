#include "settings/CElementMap.h"

namespace zupm {

bool CElementMap::Insert(const std::u16string& name, const AdvXMLParser::Element& setting)
{
    const auto place = m_settings.lower_bound(name);
    if (place != m_settings.end() && place->first == name) {
        return false;
    }
    m_settings.emplace_hint(place, name, std::make_unique<CElementRef>(setting));
    return true;
}

void CElementMap::Erase(std::u16string_view name) noexcept
{
    if (const auto place = m_settings.find(name); place != m_settings.end()) {
        m_settings.erase(place);
    }
}

}  // namespace zupm
