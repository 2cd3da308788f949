/// Comparing short stretches of bytes.
#pragma once

#include <cstdint>
#include <cstring>

namespace AdvXMLParser {

template <class Word>
[[nodiscard]] inline Word WordAt(const char* at) noexcept
{
    Word word;
    std::memcpy(&word, at, sizeof(word));
    return word;
}

/// Word by word, the last word overlapping the one before it; `length` is at least that of a word.
template <class Word>
[[nodiscard]] inline bool AreWordsSame(const char* left, const char* right, std::uint32_t length) noexcept
{
    constexpr std::uint32_t kBytes = sizeof(Word);
    for (std::uint32_t at = 0; at + kBytes < length; at += kBytes) {
        if (WordAt<Word>(left + at) != WordAt<Word>(right + at)) {
            return false;
        }
    }
    return WordAt<Word>(left + length - kBytes) == WordAt<Word>(right + length - kBytes);
}

/// As std::memcmp finds them; without a call, since names are short.
[[nodiscard]] inline bool AreBytesSame(const char* left, const char* right, std::uint32_t length) noexcept
{
    if (length >= sizeof(std::uint64_t)) {
        return AreWordsSame<std::uint64_t>(left, right, length);
    }
    if (length >= sizeof(std::uint32_t)) {
        return AreWordsSame<std::uint32_t>(left, right, length);
    }
    return length == 0 || AreWordsSame<char>(left, right, length);
}

}  // namespace AdvXMLParser
