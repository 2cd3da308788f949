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
    /// Forgets every name, at no cost: the places stay.
    void Clear() noexcept;

private:
    struct Name {
        std::string_view text;
        std::uint32_t scope;
        std::uint32_t hash;
    };
    struct Place {
        std::uint32_t hash = 0;
        std::uint32_t number = 0;
        std::uint32_t round = 0;  ///< the place is taken when this is the current round
    };

    [[nodiscard]] Place& FindPlace(std::uint32_t scope, std::string_view name, std::uint32_t hash) noexcept;
    [[nodiscard]] Place& FreePlace(std::uint32_t hash) noexcept;
    void Grow();

    std::vector<Name> m_names;
    std::vector<Place> m_places;
    std::uint32_t m_round = 1;
};

}  // namespace zupm
