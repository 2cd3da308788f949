#include "tools/zupolicy/commands/Input.h"

#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <istream>
#include <string_view>
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

std::string Read(const std::string& name, const std::string& what,
                 const std::function<bool(std::string_view piece)>& isEnough)
{
    const auto unreadable = [&] { return Failure(ExitCode::FileError, name, what + " cannot be read"); };
    if (name == "-") {
        std::string bytes = ReadAll(std::cin, isEnough);
        // The stream takes an error for the end, and a part must not pass for all.
        if (std::ferror(stdin) != 0 || std::cin.bad()) {
            throw unreadable();
        }
        return bytes;
    }
    if (!IsUtf8(name)) {
        throw Failure(ExitCode::FileError, name, "the name is not valid UTF-8");
    }
    std::ifstream file(std::filesystem::path(std::u8string(name.begin(), name.end())), std::ios::binary);
    if (!file) {
        throw unreadable();
    }
    try {
        file.exceptions(std::ios::badbit);
        return ReadAll(file, isEnough);
    } catch (const std::ios_base::failure&) {
        throw unreadable();
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
