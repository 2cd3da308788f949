#include "notices/SeenNames.h"

#include <algorithm>

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
    if (place.round == m_round) {
        return {place.number, false};
    }
    const auto number = static_cast<std::uint32_t>(m_names.size());
    m_names.push_back({name, scope, hash});
    place = {hash, number, m_round};
    return {number, true};
}

void SeenNames::Clear() noexcept
{
    m_names.clear();
    if (++m_round == 0) {
        std::fill(m_places.begin(), m_places.end(), Place());
        m_round = 1;
    }
}

SeenNames::Place& SeenNames::FindPlace(std::uint32_t scope, std::string_view name, std::uint32_t hash) noexcept
{
    for (std::size_t at = hash;; ++at) {
        Place& place = m_places[at & (m_places.size() - 1)];
        if (place.round != m_round) {
            return place;
        }
        if (place.hash == hash) {
            const Name& known = m_names[place.number];
            if (known.scope == scope && known.text == name) {
                return place;
            }
        }
    }
}

SeenNames::Place& SeenNames::FreePlace(std::uint32_t hash) noexcept
{
    std::size_t at = hash;
    while (m_places[at & (m_places.size() - 1)].round == m_round) {
        ++at;
    }
    return m_places[at & (m_places.size() - 1)];
}

void SeenNames::Grow()
{
    constexpr std::size_t kFirst = 64;
    std::vector<Place> places(std::max(kFirst, 2 * m_places.size()));
    m_places.swap(places);
    for (std::uint32_t number = 0; number < m_names.size(); ++number) {
        const std::uint32_t hash = m_names[number].hash;
        FreePlace(hash) = {hash, number, m_round};
    }
}

}  // namespace zupm
