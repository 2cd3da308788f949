/// Policy files and calls that want to use up time or memory.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/PolicyFileClient.h"

namespace zupm::test {

inline constexpr std::size_t kCounted = std::size_t{256} << 10;
/// For attacks whose first 100 or 200 KiB cost less, or a fixed amount, and for tokens as long as the file: the parser
/// reads a short one at once, a long one in pieces.
inline constexpr std::size_t kCountedLarge = std::size_t{2} << 20;

/// One attack: a policy file of any size, what is done with it, and the code that must come out at every size.
struct Attack {
    std::string_view label;
    /// The file's bytes: about `size` of them.
    std::string (*file)(std::size_t size);
    /// Attacks the component with the file; where it writes, it writes beside it.
    HRESULT (*run)(const std::u16string& path);
    HRESULT code;
    /// How many of the calls that it makes read or write everything that the file holds.
    int calls = 1;
    /// How often the content is in memory at once, as documents: the file's own, an object's private copy, the text on
    /// its way back.
    int documents = 1;
    /// The size at which its cost is counted, and compared with that of half the size.
    std::size_t countedSize = kCounted;
};

// Where the attacks are listed, by what they use.
[[nodiscard]] std::span<const Attack> EntityAttacks();
[[nodiscard]] std::span<const Attack> MarkupAttacks();
[[nodiscard]] std::span<const Attack> EncodingAttacks();
[[nodiscard]] std::span<const Attack> IndexAttacks();
[[nodiscard]] std::span<const Attack> EditAttacks();

/// All of them.
[[nodiscard]] std::vector<Attack> AllAttacks();
/// The one with that label; null when there is none.
[[nodiscard]] const Attack* FindAttack(std::string_view label);

// --- what attacks are made of ----------------------------------------------------------------------------------------

/// Loads the file.
[[nodiscard]] HRESULT LoadOnly(const std::u16string& path);
/// Loads the file and writes it; the first code that is not 0.
[[nodiscard]] HRESULT LoadAndWrite(const std::u16string& path);

/// `piece` as often as it fits into `size` bytes.
[[nodiscard]] std::string Repeated(std::string_view piece, std::size_t size);

/// The text between `before` and `after` that `piece(number)` gives for 0, 1, 2, ..., until the whole has `size` bytes.
template <class Piece>
[[nodiscard]] std::string Series(std::string_view before, Piece piece, std::string_view after, std::size_t size)
{
    std::string text(before);
    text.reserve(size + 64);
    for (std::size_t number = 0; text.size() + after.size() < size; ++number) {
        text += piece(number);
    }
    return text.append(after);
}

/// A number in as few letters as it takes: names that are all different and short.
[[nodiscard]] std::string Letters(std::size_t number);

// A policy file around products, around one product's content, and around tasks.
inline constexpr std::string_view kBeforeProducts = "<F><PolicyRoot><PolicyGroup><Policy>";
inline constexpr std::string_view kAfterProducts = "</Policy></PolicyGroup></PolicyRoot><TaskRoot/></F>";
inline constexpr std::string_view kBeforeContent = "<F><PolicyRoot><PolicyGroup><Policy><Product SoftwareID='P'>";
inline constexpr std::string_view kAfterContent = "</Product></Policy></PolicyGroup></PolicyRoot><TaskRoot/></F>";
inline constexpr std::string_view kBeforeTasks = "<F><PolicyRoot/><TaskRoot>";
inline constexpr std::string_view kAfterTasks = "</TaskRoot></F>";

}  // namespace zupm::test
