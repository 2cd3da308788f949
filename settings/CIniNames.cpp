#include "settings/CIniNames.h"

#include <functional>

#include "common/PrivateProfile.h"

namespace zupm {

bool CIniNames::Add(std::u16string_view section, std::u16string_view key, std::u16string_view value)
{
    const std::size_t hash = std::hash<std::u16string_view>()(value);
    const auto [place, isNew] = m_values.try_emplace({ProfileName(section), ProfileName(key)}, hash);
    const bool isLoss = !isNew && place->second != hash;
    place->second = hash;
    return !isLoss;
}

}  // namespace zupm
