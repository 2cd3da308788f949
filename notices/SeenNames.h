/// Names that were seen before.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace zupm {

/// A set of names, each within a scope, numbered from 0 in the order in which they were added.
///
/// Lifetime  Keeps no text: the names outlive it, or the next Clear.
/// Errors    Add throws std::bad_alloc.
/// Invariant At most half of the places are taken.
class SeenNames {
public:
    struct Added {
        std::uint32_t number;
        bool isNew;
    };

    /// The name's number, after adding it if it is new in its scope.
    Added Add(std::uint32_t scope, std::string_view name);
    [[nodiscard]] std::string_view Name(std::uint32_t number) const noexcept
    {
        return {m_names[number].text, m_names[number].size};
    }
    [[nodiscard]] std::size_t Count() const noexcept { return m_names.size(); }
    /// Forgets every name, at no cost: the places stay.
    void Clear() noexcept;

private:
    /// Small: a hostile file may have a million.
    struct Entry {
        const char* text;
        std::uint32_t size;
        std::uint32_t scope;
    };
    struct Place {
        std::uint32_t hash = 0;
        std::uint32_t serial = 0;  ///< the place is free when this is below m_first; otherwise m_first + number
    };

    [[nodiscard]] Place& FindPlace(std::uint32_t scope, std::string_view name, std::uint32_t hash) noexcept;
    [[nodiscard]] Place& FreePlace(std::uint32_t hash) noexcept;
    void Grow();

    std::vector<Entry> m_names;
    std::vector<Place> m_places;
    /// One more than all names that were forgotten; a text of 2 GB has not enough of them to reach the end.
    std::uint32_t m_first = 1;
};

}  // namespace zupm
