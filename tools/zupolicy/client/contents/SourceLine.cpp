#include "tools/zupolicy/client/contents/SourceLine.h"

#include <cstddef>
#include <exception>
#include <filesystem>
#include <string_view>
#include <utility>

#include "tools/zupolicy/client/Utf8.h"
#include "tools/zupolicy/client/contents/SourceBytes.h"
#include "tools/zupolicy/client/contents/SourceText.h"

namespace zupm::tool {
namespace {

constexpr std::uintmax_t kLargestSource = std::uintmax_t{64} << 20U;

std::optional<std::string> DecodedFile(const std::string& path)
{
    if (std::filesystem::file_size(ForOpening(std::filesystem::path(FromUtf8(path)))) > kLargestSource) {
        return std::nullopt;
    }
    std::string bytes = ReadBytes(path);
    if (std::optional<std::string> text = DecodeSource(bytes)) {
        return text;
    }
    bytes.pop_back();  // UTF-16 with half a unit at its end
    return DecodeSource(std::move(bytes));
}

/// The line ends that XML knows: LF, CR LF and CR.
std::optional<std::string> LineOf(std::string_view text, std::uint32_t line)
{
    for (std::uint32_t left = line;; --left) {
        const std::size_t end = text.find_first_of("\r\n");
        if (left == 1) {
            return std::string(text.substr(0, end));
        }
        if (end == text.npos) {
            return std::nullopt;
        }
        text.remove_prefix(end + (text.substr(end, 2) == "\r\n" ? 2 : 1));
    }
}

}  // namespace

std::optional<std::string> SourceLine(const std::string& path, std::uint32_t line) noexcept
{
    try {
        const std::optional<std::string> text = DecodedFile(path);
        return text ? LineOf(*text, line) : std::nullopt;
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

}  // namespace zupm::tool
