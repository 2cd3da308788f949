#include "common/LogSettings.h"

#include <algorithm>

namespace zupm {

std::optional<LogSettings> ParseLogSettings(std::string_view value) noexcept
{
    constexpr std::size_t kMostDigits = 9;
    if (value.empty()) {
        return LogSettings{};
    }
    const std::size_t colon = std::min(value.find(':'), value.size());
    if (colon == 0 || colon > kMostDigits) {
        return std::nullopt;
    }
    LogSettings settings;
    for (const char digit : value.substr(0, colon)) {
        if (digit < '0' || digit > '9') {
            return std::nullopt;
        }
        settings.level = settings.level * 10 + (digit - '0');
    }
    settings.file = value.substr(std::min(colon + 1, value.size()));
    return settings;
}

}  // namespace zupm
