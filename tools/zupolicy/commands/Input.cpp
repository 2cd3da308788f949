#include "tools/zupolicy/commands/Input.h"

#include <zuPolicyManager/client/Error.h>

#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <istream>
#include <string_view>
#include <system_error>
#include <vector>

#include "tools/zupolicy/client/Failure.h"
#include "tools/zupolicy/client/Utf8.h"

namespace zupm::tool {
namespace {

/// Reads to the end, or until `isEnough`.
std::string ReadAll(std::istream& in, const std::function<bool(std::string_view piece)>& isEnough)
{
    constexpr std::size_t kPiece = std::size_t{64} << 10u;
    std::vector<char> piece(kPiece);
    std::string bytes;
    while (in) {
        in.read(piece.data(), static_cast<std::streamsize>(piece.size()));
        const std::string_view got(piece.data(), static_cast<std::size_t>(in.gcount()));
        bytes += got;
        if (isEnough(got)) {
            break;
        }
    }
    return bytes;
}

/// Why a file cannot be opened, in the words that failures of policy files have.
std::string ReasonFor(const std::filesystem::path& path)
{
    std::error_code error;
    const std::filesystem::file_type type = std::filesystem::status(path, error).type();
    if (type == std::filesystem::file_type::directory) {
        return ": is a folder";
    }
    if (type == std::filesystem::file_type::not_found) {
        return ": " + client::SentenceOf(result::FileNotFound);
    }
    // A name that is too long, or links that lead to each other.
    return error ? ": " + client::SentenceOf(result::InvalidName) : "";
}

std::string Read(const std::string& name, const std::string& what,
                 const std::function<bool(std::string_view piece)>& isEnough)
{
    const auto unreadable = [&](const std::string& reason) {
        return Failure(ExitCode::FileError, name, what + " cannot be read" + reason);
    };
    if (name == "-") {
        std::string bytes = ReadAll(std::cin, isEnough);
        // The stream takes an error for the end, and a part must not pass for all.
        if (std::ferror(stdin) != 0 || std::cin.bad()) {
            throw unreadable("");
        }
        return bytes;
    }
    if (!IsUtf8(name)) {
        throw Failure(ExitCode::FileError, name, "the name is not valid UTF-8");
    }
    const std::filesystem::path path(std::u8string(name.begin(), name.end()));
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw unreadable(ReasonFor(path));
    }
    try {
        file.exceptions(std::ios::badbit);
        return ReadAll(file, isEnough);
    } catch (const std::ios_base::failure&) {
        throw unreadable(ReasonFor(path));
    }
}

}  // namespace

std::string ReadInput(const std::string& name, const std::string& what)
{
    return Read(name, what, [](std::string_view /*piece*/) { return false; });
}

std::string ReadValue(const std::string& name)
{
    constexpr std::string_view kMark = "\xEF\xBB\xBF";
    const auto hasNull = [](std::string_view text) { return text.find('\0') != text.npos; };
    std::string value = Read(name, "the value", hasNull);
    if (hasNull(value)) {
        throw Failure(ExitCode::FileError, name, "the value has a null character, which no policy file can hold");
    }
    if (const std::size_t invalid = FindInvalidUtf8(value); invalid != kValid) {
        throw Failure(ExitCode::FileError, name, "the value is not valid UTF-8 at byte " + std::to_string(invalid + 1));
    }
    value.erase(0, value.starts_with(kMark) ? kMark.size() : 0);
    if (value.ends_with('\n')) {
        value.erase(value.size() - (value.ends_with("\r\n") ? 2 : 1));
    }
    return value;
}

}  // namespace zupm::tool
