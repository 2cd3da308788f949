#include "tools/zupolicy/report/Redaction.h"

#include <algorithm>
#include <cstddef>
#include <optional>

#include "tools/zupolicy/model/Wildcard.h"

namespace zupm::tool {

bool Redaction::Names(std::string_view section, std::string_view name) const
{
    const std::string both = std::string(section) + "/" + std::string(name);
    return std::ranges::any_of(m_patterns, [&](const std::string& pattern) {
        return model::Matches(pattern, name) || (pattern.find('/') != pattern.npos && model::Matches(pattern, both));
    });
}

bool Redaction::HidesSetting(std::string_view section, std::string_view name, bool isTask) const
{
    if (IsEmpty()) {
        return false;
    }
    const std::optional<model::Repeated> repeated = isTask ? model::RepeatedBy(section, name) : std::nullopt;
    if (repeated && !repeated->isId) {
        return HidesField(model::kFieldNames[static_cast<std::size_t>(repeated->field)]);
    }
    return Names(section, name);
}

bool Redaction::HidesField(std::string_view name) const
{
    const auto* const field = std::ranges::find(model::kFieldNames, name);
    if (IsEmpty() || field == model::kFieldNames.end()) {
        return false;
    }
    bool hides =
        std::ranges::any_of(m_patterns, [&](const std::string& pattern) { return model::Matches(pattern, name); });
    model::ForEachRepeating(
        static_cast<model::Field>(field - model::kFieldNames.begin()),
        [&](std::string_view section, std::string_view setting) { hides = hides || Names(section, setting); });
    return hides;
}

}  // namespace zupm::tool
