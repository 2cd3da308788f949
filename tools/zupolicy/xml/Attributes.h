/// The attributes of a start tag.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zupm::tool {

/// A view of the name and value pairs that Expat hands out with a start tag.
///
/// Lifetime  Valid during the start tag's callback.
class Attributes {
public:
    /// `count` counts names and values.
    Attributes(const char** pairs, std::size_t count) : m_pairs(pairs), m_count(count) {}

    /// An attribute's value; null when the element does not have it.
    [[nodiscard]] const char* Find(std::string_view name) const
    {
        for (std::size_t i = 0; i + 1 < m_count; i += 2) {
            if (m_pairs[i] == name) {
                return m_pairs[i + 1];
            }
        }
        return nullptr;
    }

    /// An attribute's value; empty when the element does not have it.
    [[nodiscard]] std::string Get(std::string_view name) const
    {
        const char* value = Find(name);
        return value == nullptr ? std::string() : std::string(value);
    }

private:
    const char** m_pairs;
    std::size_t m_count;
};

}  // namespace zupm::tool
