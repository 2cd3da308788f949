#include "platform/Files.h"

#include <windows.h>

#include <algorithm>
#include <new>

#include "platform/win32/Errors.h"
#include "platform/win32/Handle.h"
#include "platform/win32/Paths.h"
#include "platform/win32/Replacement.h"
#include "platform/win32/Wide.h"

namespace zupm {

namespace {

using win32::CodeFromError;
using win32::CodeFromLastError;
using win32::Handle;
using win32::Wide;

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr std::size_t kPiece = std::size_t{16} << 20;
/// For files that grow, or whose size the system does not tell.
constexpr std::size_t kSmallestPiece = 4096;

/// Opens an existing file, waiting a short while for a writer that keeps readers out.
result::Code OpenForReading(const std::u16string& full, Handle& file) noexcept
{
    win32::Patience patience;
    for (;;) {
        file = win32::OwnFile(CreateFileW(Wide(full), GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING,
                                          FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
        if (file != nullptr) {
            return result::Success;
        }
        const DWORD error = GetLastError();
        if (error != ERROR_SHARING_VIOLATION || !patience.Wait()) {
            return CodeFromError(error);
        }
    }
}

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

/// Reads to the end of the file, which may have grown or shrunk since its size was asked.
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
        const auto wanted = static_cast<DWORD>(std::min(bytes.size() - filled, kPiece));
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

result::Code Read(std::u16string_view path, std::string& bytes)
{
    std::u16string full;
    if (const result::Code code = win32::FullPath(path, full); code < 0) {
        return code;
    }
    if (win32::NamesDevice(full)) {
        return result::NotSupported;
    }
    Handle file;
    if (const result::Code code = OpenForReading(full, file); code < 0) {
        return code;
    }
    if (GetFileType(file.get()) != FILE_TYPE_DISK) {
        return result::NotSupported;
    }
    std::size_t size = 0;
    if (const result::Code code = SizeOf(file.get(), size); code < 0) {
        return code;
    }
    // One byte more, so that the end is met without growing.
    bytes.resize(size + 1);
    return ReadToEnd(file.get(), bytes);
}

}  // namespace

result::Code ReadWholeFile(std::u16string_view path, std::string& bytes) noexcept
{
    bytes.clear();
    result::Code code = result::OutOfMemory;
    try {
        code = Read(path, bytes);
    } catch (const std::bad_alloc&) {
        code = result::OutOfMemory;
    } catch (...) {
        code = result::InputOutputError;
    }
    if (code < 0) {
        bytes.clear();
    }
    return code;
}

result::Code ReplaceFileAtomically(std::u16string_view path, std::string_view bytes) noexcept
{
    try {
        std::u16string full;
        if (const result::Code code = win32::FullPath(path, full); code < 0) {
            return code;
        }
        return win32::ReplaceFull(full, bytes);
    } catch (const std::bad_alloc&) {
        return result::OutOfMemory;
    } catch (...) {
        return result::InputOutputError;
    }
}

}  // namespace zupm
