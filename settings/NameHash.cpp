#include "settings/NameHash.h"

#include <chrono>
#include <cstddef>
#include <cstring>
#include <random>

namespace zupm {

namespace {

/// A number that no file can know.
std::uint64_t Seed() noexcept
{
    try {
        std::random_device random;
        return std::uint64_t{random()} << 32 | random();
    } catch (...) {
        return static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
    }
}

/// Both halves of the product, folded together.
std::uint64_t Mix(std::uint64_t one, std::uint64_t other) noexcept
{
    __extension__ using Wide = unsigned __int128;
    const Wide product = Wide{one} * other;
    return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

template <class Character>
std::uint32_t HashOf(std::basic_string_view<Character> name) noexcept
{
    static const std::uint64_t seed = Seed();
    constexpr std::uint64_t kSpread = 0x9E3779B97F4A7C15;
    std::uint64_t hash = seed ^ name.size();
    std::uint64_t words[2];
    constexpr std::size_t kBlock = 16 / sizeof(Character);
    for (; name.size() > kBlock; name.remove_prefix(kBlock)) {
        std::memcpy(words, name.data(), sizeof(words));
        hash = Mix(words[0] ^ seed ^ kSpread, words[1] ^ hash);
    }
    words[0] = words[1] = 0;
    std::memcpy(words, name.data(), name.size() * sizeof(Character));
    hash = Mix(words[0] ^ seed ^ kSpread, words[1] ^ hash);
    return static_cast<std::uint32_t>(Mix(hash, kSpread));
}

}  // namespace

std::uint32_t NameHash(std::u16string_view name) noexcept
{
    return HashOf(name);
}

std::uint32_t NameHash(std::string_view name) noexcept
{
    return HashOf(name);
}

}  // namespace zupm
