#include "settings/CIniNames.h"

#include "platform/PrivateProfile.h"

namespace zupm {

bool CIniNames::Add(std::u16string_view section, std::u16string_view key)
{
    return m_names.emplace(ProfileName(section), ProfileName(key)).second;
}

}  // namespace zupm
