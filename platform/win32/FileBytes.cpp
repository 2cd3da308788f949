#include "platform/win32/FileBytes.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/Comparison.h"
#include "platform/Files.h"
#include "platform/win32/Errors.h"

namespace zupm::win32 {

namespace {

constexpr std::size_t kReadPiece = std::size_t{16} << 20;
constexpr std::size_t kComparedPiece = std::size_t{64} << 10;
/// For files that grow, or whose size the system does not report.
constexpr std::size_t kSmallestPiece = 4096;

result::Code GoToStart(HANDLE file) noexcept
{
    return SetFilePointerEx(file, LARGE_INTEGER{}, nullptr, FILE_BEGIN) == 0 ? CodeFromLastError() : result::Success;
}

}  // namespace

result::Code SizeOf(HANDLE file, std::size_t& size) noexcept
{
    LARGE_INTEGER found{};
    if (GetFileSizeEx(file, &found) == 0) {
        return CodeFromLastError();
    }
    if (found.QuadPart < 0 || static_cast<std::uint64_t>(found.QuadPart) > kLargestFile) {
        return result::FileTooLarge;
    }
    size = static_cast<std::size_t>(found.QuadPart);
    return result::Success;
}

result::Code ReadToEnd(HANDLE file, std::string& bytes)
{
    std::size_t filled = 0;
    for (;;) {
        if (filled == bytes.size()) {
            if (filled > kLargestFile) {
                return result::FileTooLarge;
            }
            bytes.resize(std::min(std::max(filled * 2, kSmallestPiece), kLargestFile + 1));
        }
        const auto wanted = static_cast<DWORD>(std::min(bytes.size() - filled, kReadPiece));
        DWORD got = 0;
        if (ReadFile(file, bytes.data() + filled, wanted, &got, nullptr) == 0) {
            return CodeFromLastError();
        }
        if (got == 0) {
            bytes.resize(filled);
            return result::Success;
        }
        filled += got;
    }
}

result::Code ReadAll(HANDLE file, std::string& bytes)
{
    std::size_t size = 0;
    if (const result::Code code = SizeOf(file, size); code < 0) {
        return code;
    }
    if (const result::Code code = GoToStart(file); code < 0) {
        return code;
    }
    // One byte more, so that the end is seen without growing the buffer.
    bytes.resize(size + 1);
    return ReadToEnd(file, bytes);
}

result::Code Compare(HANDLE file, RepeatableBytes& expected)
{
    if (const result::Code code = GoToStart(file); code < 0) {
        return code;
    }
    std::vector<char> piece(kComparedPiece);
    Comparison comparison(expected);
    for (;;) {
        DWORD got = 0;
        if (ReadFile(file, piece.data(), static_cast<DWORD>(piece.size()), &got, nullptr) == 0) {
            return CodeFromLastError();
        }
        if (got == 0) {
            return comparison.IsAtEnd() ? result::Success : result::FileChanged;
        }
        if (!comparison.GoesOnWith(std::string_view(piece.data(), got))) {
            return result::FileChanged;
        }
    }
}

}  // namespace zupm::win32
