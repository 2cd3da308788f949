#include "tools/zupolicy/rules/ReadRules.h"

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string_view>

#include "tools/zupolicy/client/contents/PlaceFinder.h"
#include "tools/zupolicy/report/Problem.h"

namespace zupm::rules {
namespace {

using tool::ExitCode;
using tool::Problem;
using tool::ProblemFailure;

constexpr std::size_t kLargest = std::size_t{16} << 20U;

[[noreturn]] void Fail(const std::string& path, const char* message)
{
    throw ProblemFailure({{}, ExitCode::FileError, path, 0, 0, message, {}});
}

std::string ReadText(const std::string& path)
{
    std::ifstream file(std::filesystem::path(std::u8string(path.begin(), path.end())), std::ios::binary);
    // One byte more than there may be. A device that never ends is no longer than that either.
    std::string text(kLargest + 1, '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    if (!file.eof() && !file) {
        Fail(path, "the rules cannot be read");
    }
    text.resize(static_cast<std::size_t>(file.gcount()));
    if (text.size() > kLargest) {
        Fail(path, "the rules are larger than 16 MiB");
    }
    return text;
}

RuleSet Parse(std::string_view text)
{
    // The reader takes a null character for the end of its text.
    if (const std::size_t null = text.find('\0'); null != text.npos) {
        throw model::JsonComplaint{null, "a null character is not JSON"};
    }
    return RuleSet(text);
}

}  // namespace

RuleSet ReadRules(const std::string& path)
{
    const std::string text = ReadText(path);
    // Some editors begin a file of UTF-8 with this mark, which JSON does not know.
    constexpr std::string_view kMark = "\xEF\xBB\xBF";
    const std::string_view json = std::string_view(text).substr(text.starts_with(kMark) ? kMark.size() : 0);
    try {
        return Parse(json);
    } catch (const model::JsonComplaint& complaint) {
        const tool::LineAndColumn place = tool::PlaceFinder(json).PlaceOf(complaint.at);
        throw ProblemFailure({result::SyntaxError,
                              ExitCode::FileError,
                              path,
                              static_cast<std::uint32_t>(place.line),
                              static_cast<std::uint32_t>(place.column),
                              complaint.message,
                              {}});
    }
}

}  // namespace zupm::rules
