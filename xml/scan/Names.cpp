#include "xml/scan/Names.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>

#include "xml/scan/NameRanges.h"

namespace AdvXMLParser {

namespace {

enum class Role : std::uint8_t { None, Follower, Start };

constexpr std::array<Role, 0x80> RolesOfAscii()
{
    std::array<Role, 0x80> roles{};
    const auto set = [&](char first, char last, Role role) {
        for (char c = first; c <= last; ++c) {
            roles[static_cast<unsigned char>(c)] = role;
        }
    };
    set('a', 'z', Role::Start);
    set('A', 'Z', Role::Start);
    set('_', '_', Role::Start);
    set(':', ':', Role::Start);
    set('0', '9', Role::Follower);
    set('-', '-', Role::Follower);
    set('.', '.', Role::Follower);
    return roles;
}
constexpr std::array<Role, 0x80> kAscii = RolesOfAscii();

template <std::size_t count>
bool IsIn(const NameRange (&ranges)[count], char16_t character) noexcept
{
    const NameRange* const range =
        std::lower_bound(std::begin(ranges), std::end(ranges), character,
                         [](const NameRange& candidate, char16_t wanted) { return candidate.last < wanted; });
    return range != std::end(ranges) && range->first <= character;
}

Role RoleOf(char16_t character) noexcept
{
    if (IsIn(kNameStarts, character)) {
        return Role::Start;
    }
    return IsIn(kNameFollowers, character) ? Role::Follower : Role::None;
}

/// What a character is in a name, and how many bytes it takes.
struct Step {
    Role role;
    std::size_t bytes;
};

constexpr std::uint32_t kNoContinuation = 0xFFFF'0000;

/// The six bits of a continuation byte.
std::uint32_t Continuation(char byte) noexcept
{
    const auto value = static_cast<unsigned char>(byte);
    return (value & 0xC0u) == 0x80u ? value & 0x3Fu : kNoContinuation;
}

/// Characters of two and three bytes; bytes that are no UTF-8 have no role. Every byte is looked at before the next
/// one: the zero byte that ends the text is no continuation.
Step StepOfSeveralBytes(const char* at) noexcept
{
    const auto lead = static_cast<unsigned char>(at[0]);
    const std::uint32_t second = Continuation(at[1]);
    if (second == kNoContinuation || lead < 0xC2 || lead >= 0xF0) {
        return {Role::None, 0};
    }
    if (lead < 0xE0) {
        return {RoleOf(static_cast<char16_t>((lead & 0x1Fu) << 6 | second)), 2};
    }
    const std::uint32_t third = Continuation(at[2]);
    const std::uint32_t character = (lead & 0x0Fu) << 12 | second << 6 | third;
    constexpr std::uint32_t kFirstOfThreeBytes = 0x800;
    if (third == kNoContinuation || character < kFirstOfThreeBytes) {
        return {Role::None, 0};
    }
    return {RoleOf(static_cast<char16_t>(character)), 3};
}

Step StepAt(const char* at) noexcept
{
    const auto byte = static_cast<unsigned char>(*at);
    return byte < kAscii.size() ? Step{kAscii[byte], 1} : StepOfSeveralBytes(at);
}

}  // namespace

std::size_t NameLengthAt(const char* at) noexcept
{
    Step step = StepAt(at);
    if (step.role != Role::Start) {
        return 0;
    }
    std::size_t length = 0;
    for (; step.role != Role::None; step = StepAt(at + length)) {
        length += step.bytes;
    }
    return length;
}

}  // namespace AdvXMLParser
