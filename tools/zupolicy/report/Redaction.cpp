#include "tools/zupolicy/report/Redaction.h"

#include <algorithm>
#include <cstddef>
#include <optional>

#include "tools/zupolicy/model/Wildcard.h"

namespace zupm::tool {
namespace {

/// Threads that ask about the values of many files do not write the same memory again and again.
void Raise(std::atomic<bool>& flag)
{
    if (!flag.load(std::memory_order_relaxed)) {
        flag.store(true, std::memory_order_relaxed);
    }
}

}  // namespace

Redaction::Redaction(const std::vector<std::string>& patterns)
{
    if (!patterns.empty()) {
        m_use = std::make_shared<Use>();
        for (const std::string& pattern : patterns) {
            m_use->patterns.emplace_back(pattern);
        }
    }
}

std::vector<std::string> Redaction::Unused() const
{
    std::vector<std::string> unused;
    if (m_use && m_use->isAsked) {
        for (const Pattern& pattern : m_use->patterns) {
            if (!pattern.hasHidden) {
                unused.push_back(pattern.text);
            }
        }
    }
    return unused;
}

/// Whether a pattern fits. Each is tried, because each that fits counts as used.
template <class Fits>
bool Redaction::HasOneThat(const Fits& fits) const
{
    bool hides = false;
    Raise(m_use->isAsked);
    for (Pattern& pattern : m_use->patterns) {
        if (fits(pattern.text)) {
            Raise(pattern.hasHidden);
            hides = true;
        }
    }
    return hides;
}

bool Redaction::Names(std::string_view section, std::string_view name) const
{
    const std::string both = std::string(section) + "/" + std::string(name);
    return HasOneThat([&](const std::string& pattern) {
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
    bool hides = HasOneThat([&](const std::string& pattern) { return model::Matches(pattern, name); });
    model::ForEachRepeating(
        static_cast<model::Field>(field - model::kFieldNames.begin()),
        [&](std::string_view section, std::string_view setting) { hides = Names(section, setting) || hides; });
    return hides;
}

}  // namespace zupm::tool
