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

/// Up to eight units. Those of two words that overlap, or of four bytes that do, are loaded twice: copies of lengths
/// that the compiler knows need no call. The length is in the hash, so no two names of one length give the same words.
void LoadRest(std::u16string_view units, std::uint64_t (&words)[2]) noexcept
{
    const char* const bytes = reinterpret_cast<const char*>(units.data());
    const std::size_t size = units.size() * sizeof(char16_t);
    words[0] = words[1] = 0;
    if (size >= sizeof(std::uint64_t)) {
        std::memcpy(&words[0], bytes, sizeof(std::uint64_t));
        std::memcpy(&words[1], bytes + size - sizeof(std::uint64_t), sizeof(std::uint64_t));
    } else if (size >= sizeof(std::uint32_t)) {
        std::memcpy(&words[0], bytes, sizeof(std::uint32_t));
        std::memcpy(&words[1], bytes + size - sizeof(std::uint32_t), sizeof(std::uint32_t));
    } else if (size > 0) {
        std::memcpy(&words[0], bytes, sizeof(char16_t));
    }
}

}  // namespace

std::uint32_t NameHash(std::u16string_view name) noexcept
{
    static const std::uint64_t seed = Seed();
    constexpr std::uint64_t kSpread = 0x9E3779B97F4A7C15;
    constexpr std::size_t kBlock = 8;
    std::uint64_t hash = seed ^ name.size();
    std::uint64_t words[2];
    for (; name.size() > kBlock; name.remove_prefix(kBlock)) {
        std::memcpy(words, name.data(), sizeof(words));
        hash = Mix(words[0] ^ seed ^ kSpread, words[1] ^ hash);
    }
    LoadRest(name, words);
    hash = Mix(words[0] ^ seed ^ kSpread, words[1] ^ hash);
    return static_cast<std::uint32_t>(Mix(hash, kSpread));
}

}  // namespace zupm
