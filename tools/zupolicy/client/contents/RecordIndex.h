/// Finds records by their text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "tools/zupolicy/client/contents/FileContents.h"

namespace zupm::tool {

/// Mixes a text and a number into a key. Each run of the tool mixes differently, so no file can be made whose keys all
/// meet.
[[nodiscard]] std::uint32_t KeyOf(std::uint64_t number, std::string_view text);

/// A set of record numbers, eight bytes for each place. The records themselves lie elsewhere.
///
/// Invariant At most half of the places are taken.
class RecordIndex {
public:
    /// The record with this key for which `isSame(number)` holds; kNone when there is none.
    template <typename IsSame>
    [[nodiscard]] std::uint32_t Find(std::uint32_t key, IsSame isSame) const
    {
        for (std::size_t at = key; !m_places.empty() && m_places[at & Mask()].number != kNone; ++at) {
            const Place& place = m_places[at & Mask()];
            if (place.key == key && isSame(place.number)) {
                return place.number;
            }
        }
        return kNone;
    }

    /// Takes in a record that Find does not find.
    void Add(std::uint32_t key, std::uint32_t number);

    /// As Find; takes `number` in when there is none.
    template <typename IsSame>
    [[nodiscard]] std::uint32_t FindOrAdd(std::uint32_t key, std::uint32_t number, IsSame isSame)
    {
        const std::uint32_t known = Find(key, isSame);
        if (known == kNone) {
            Add(key, number);
        }
        return known;
    }

private:
    struct Place {
        std::uint32_t key = 0;
        std::uint32_t number = kNone;
    };

    [[nodiscard]] std::size_t Mask() const { return m_places.size() - 1; }
    void Put(const Place& place);
    void Grow();

    std::vector<Place> m_places;
    std::size_t m_count = 0;
};

}  // namespace zupm::tool
