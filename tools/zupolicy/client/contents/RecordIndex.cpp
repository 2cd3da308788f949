#include "tools/zupolicy/client/contents/RecordIndex.h"

#include <algorithm>
#include <cstring>
#include <random>

namespace zupm::tool {
namespace {

std::uint64_t Mixed(std::uint64_t number)
{
    number = (number ^ (number >> 33u)) * 0xFF51AFD7ED558CCDu;
    number = (number ^ (number >> 29u)) * 0xC4CEB9FE1A85EC53u;
    return number ^ (number >> 32u);
}

std::uint64_t Seed()
{
    std::random_device random;
    return (std::uint64_t{random()} << 32u) | random();
}

}  // namespace

std::uint32_t KeyOf(std::uint64_t number, std::string_view text)
{
    static const std::uint64_t seed = Seed();
    std::uint64_t key = Mixed(seed ^ number) + text.size();
    while (!text.empty()) {
        std::uint64_t word = 0;
        const std::size_t length = std::min(text.size(), sizeof(word));
        std::memcpy(&word, text.data(), length);
        key = Mixed((key ^ word) + seed);
        text.remove_prefix(length);
    }
    return static_cast<std::uint32_t>(key);
}

void RecordIndex::Add(std::uint32_t key, std::uint32_t number)
{
    if (2 * (m_count + 1) > m_places.size()) {
        Grow();
    }
    Put({key, number});
    ++m_count;
}

void RecordIndex::Put(const Place& place)
{
    std::size_t at = place.key;
    while (m_places[at & Mask()].number != kNone) {
        ++at;
    }
    m_places[at & Mask()] = place;
}

void RecordIndex::Grow()
{
    std::vector<Place> places(std::max<std::size_t>(16, 2 * m_places.size()));
    m_places.swap(places);
    for (const Place& place : places) {
        if (place.number != kNone) {
            Put(place);
        }
    }
}

}  // namespace zupm::tool
