#include "tools/zupolicy/rules/ReadRules.h"

#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <istream>
#include <optional>
#include <string_view>
#include <utility>

#include "tools/zupolicy/client/PolicyFile.h"
#include "tools/zupolicy/client/StandardInput.h"
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

/// Nothing when the stream fails before its end.
std::optional<std::string> ReadText(std::istream& in)
{
    // One byte more than there may be. A device that never ends is no longer than that either.
    std::string text(kLargest + 1, '\0');
    in.read(text.data(), static_cast<std::streamsize>(text.size()));
    if (!in.eof() && !in) {
        return std::nullopt;
    }
    text.resize(static_cast<std::size_t>(in.gcount()));
    return text;
}

std::string ReadStandardInput(const std::string& path)
{
    std::optional<std::string> text = ReadText(std::cin);
    // The stream takes an error for the end, and a part must not pass for all.
    if (!text || std::ferror(stdin) != 0) {
        Fail(path, "standard input cannot be read");
    }
    return *std::move(text);
}

std::string ReadFile(const std::string& path)
{
    tool::RequireName(path);
    std::ifstream file(std::filesystem::path(std::u8string(path.begin(), path.end())), std::ios::binary);
    std::optional<std::string> text = file ? ReadText(file) : std::nullopt;
    if (!text) {
        // The component says why, as it does about a policy file.
        const tool::PolicyFile opened(path, tool::Access::ReadOnly);
        Fail(path, "the rules cannot be read");
    }
    return *std::move(text);
}

std::string ReadSource(const std::string& path)
{
    std::string text = path == tool::kStandardInput ? ReadStandardInput(path) : ReadFile(path);
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
    const std::string text = ReadSource(path);
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
