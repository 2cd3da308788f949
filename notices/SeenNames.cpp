#include "notices/SeenNames.h"

#include <algorithm>
#include <utility>

#include "settings/NameHash.h"

namespace zupm {

namespace {

std::uint32_t HashIn(std::uint32_t scope, std::string_view name) noexcept
{
    constexpr std::uint32_t kSpread = 0x9E3779B1U;
    return NameHash(name) ^ scope * kSpread;
}

}  // namespace

SeenNames::Added SeenNames::Add(std::uint32_t scope, std::string_view name)
{
    if (m_names.size() >= m_places.size() / 2) {
        Grow();
    }
    const std::uint32_t hash = HashIn(scope, name);
    Place& place = FindPlace(scope, name, hash);
    if (place.serial >= m_first) {
        return {place.serial - m_first, false};
    }
    const auto number = static_cast<std::uint32_t>(m_names.size());
    m_names.push_back({name.data(), static_cast<std::uint32_t>(name.size()), scope});
    place = {hash, m_first + number};
    return {number, true};
}

void SeenNames::Clear() noexcept
{
    m_first += static_cast<std::uint32_t>(m_names.size());
    m_names.clear();
}

SeenNames::Place& SeenNames::FindPlace(std::uint32_t scope, std::string_view name, std::uint32_t hash) noexcept
{
    for (std::size_t at = hash;; ++at) {
        Place& place = m_places[at & (m_places.size() - 1)];
        if (place.serial < m_first) {
            return place;
        }
        const std::uint32_t number = place.serial - m_first;
        if (place.hash == hash && m_names[number].scope == scope && Name(number) == name) {
            return place;
        }
    }
}

SeenNames::Place& SeenNames::FreePlace(std::uint32_t hash) noexcept
{
    std::size_t at = hash;
    while (m_places[at & (m_places.size() - 1)].serial >= m_first) {
        ++at;
    }
    return m_places[at & (m_places.size() - 1)];
}

void SeenNames::Grow()
{
    constexpr std::size_t kFirst = 64;
    const std::vector<Place> old = std::exchange(m_places, std::vector<Place>(std::max(kFirst, 2 * m_places.size())));
    for (const Place& place : old) {
        if (place.serial >= m_first) {
            FreePlace(place.hash) = place;
        }
    }
}

}  // namespace zupm
