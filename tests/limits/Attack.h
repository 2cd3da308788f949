/// Policy files and calls that try to use up time or memory.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/PolicyFileClient.h"

namespace zupm::test {

inline constexpr std::size_t kCounted = std::size_t{256} << 10;
/// For attacks whose first 100 or 200 KiB cost less or a fixed amount, and for tokens as long as the file: the parser
/// reads a short token at once and a long one in pieces.
inline constexpr std::size_t kCountedLarge = std::size_t{2} << 20;

/// One attack: a policy file of any size, a run on it, and the code that the run must return at every size.
struct Attack {
    std::string_view label;
    /// The bytes of the file, about `size` of them.
    std::string (*file)(std::size_t size);
    /// Attacks the component with the file. It writes only next to the file.
    HRESULT (*run)(const std::u16string& path);
    HRESULT code;
    /// The number of its calls that read or write everything in the file.
    int calls = 1;
    /// The number of documents with that content in memory at once: the file's own, an object's private copy, the text
    /// that is written back.
    int documents = 1;
    /// The size at which its cost is counted; the cost of half the size is compared with it.
    std::size_t countedSize = kCounted;
};

// The attacks by what they use.
[[nodiscard]] std::span<const Attack> EntityAttacks();
[[nodiscard]] std::span<const Attack> MarkupAttacks();
[[nodiscard]] std::span<const Attack> EncodingAttacks();
[[nodiscard]] std::span<const Attack> IndexAttacks();
[[nodiscard]] std::span<const Attack> EditAttacks();

/// All of them.
[[nodiscard]] std::vector<Attack> AllAttacks();
/// The attack with that label, or null.
[[nodiscard]] const Attack* FindAttack(std::string_view label);

// --- parts of attacks ------------------------------------------------------------------------------------------------

/// Loads the file.
[[nodiscard]] HRESULT LoadOnly(const std::u16string& path);
/// Loads the file and writes it; the first code that is not 0.
[[nodiscard]] HRESULT LoadAndWrite(const std::u16string& path);

/// `piece`, repeated as often as it fits into `size` bytes.
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

/// A number in the fewest letters: different names that are short.
[[nodiscard]] std::string Letters(std::size_t number);

// The policy file around products, around the content of one product, and around tasks.
inline constexpr std::string_view kBeforeProducts = "<F><PolicyRoot><PolicyGroup><Policy>";
inline constexpr std::string_view kAfterProducts = "</Policy></PolicyGroup></PolicyRoot><TaskRoot/></F>";
inline constexpr std::string_view kBeforeContent = "<F><PolicyRoot><PolicyGroup><Policy><Product SoftwareID='P'>";
inline constexpr std::string_view kAfterContent = "</Product></Policy></PolicyGroup></PolicyRoot><TaskRoot/></F>";
inline constexpr std::string_view kBeforeTasks = "<F><PolicyRoot/><TaskRoot>";
inline constexpr std::string_view kAfterTasks = "</TaskRoot></F>";

}  // namespace zupm::test
