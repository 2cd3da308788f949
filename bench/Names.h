/// Names that are in every sample file.
#pragma once

#include <string>

namespace zupm::bench {

[[nodiscard]] inline std::string ProductName(int number)
{
    return "PRODUCT" + std::to_string(1000 + number);
}

[[nodiscard]] inline std::string SettingName(int number)
{
    return "Setting" + std::to_string(number);
}

}  // namespace zupm::bench
