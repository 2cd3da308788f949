#include <windows.h>

#include <string>
#include <system_error>

#include "tools/zupolicy/client/WindowsHandle.h"
#include "tools/zupolicy/client/contents/SourceBytes.h"
#include "tools/zupolicy/report/Problem.h"

namespace zupm::tool {
namespace {

[[noreturn]] void Fail(const std::string& path, const std::string& reason)
{
    throw Failure(ExitCode::FileError, path, "cannot be read a second time: " + reason);
}

[[noreturn]] void FailOfSystem(const std::string& path)
{
    Fail(path, std::system_category().message(static_cast<int>(GetLastError())));
}

/// Others may change or delete the file at the same time.
OwnedHandle Open(const std::string& path)
{
    OwnedHandle file(CreateFileW(Wide(path).c_str(), GENERIC_READ,
                                 FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                 FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file.IsOpen()) {
        FailOfSystem(path);
    }
    return file;
}

std::size_t SizeOf(const OwnedHandle& file, const std::string& path)
{
    if (GetFileType(file.Get()) != FILE_TYPE_DISK) {
        Fail(path, "not a regular file");
    }
    LARGE_INTEGER size{};
    if (GetFileSizeEx(file.Get(), &size) == 0) {
        FailOfSystem(path);
    }
    if (static_cast<std::uint64_t>(size.QuadPart) > kLargestSource) {
        Fail(path, "the file is too large");
    }
    return static_cast<std::size_t>(size.QuadPart);
}

}  // namespace

std::string ReadBytes(const std::string& path)
{
    const OwnedHandle file = Open(path);
    std::string bytes(SizeOf(file, path), '\0');
    for (std::size_t filled = 0; filled < bytes.size();) {
        DWORD length = 0;
        const auto wanted = static_cast<DWORD>(bytes.size() - filled);
        if (ReadFile(file.Get(), bytes.data() + filled, wanted, &length, nullptr) == 0) {
            FailOfSystem(path);
        }
        if (length == 0) {
            Fail(path, "it became shorter");
        }
        filled += length;
    }
    return bytes;
}

// Without the prefix a path ends at 260 characters. With it the system takes the path as it is, so it must be complete.
std::filesystem::path ForOpening(const std::filesystem::path& path)
{
    std::wstring full(32768, L'\0');
    full.resize(GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
    if (full.size() < MAX_PATH || full.starts_with(L"\\\\")) {
        return path;
    }
    return L"\\\\?\\" + full;
}

}  // namespace zupm::tool
