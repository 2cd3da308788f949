#include "platform/win32/RenameOver.h"

#include <windows.h>

#include <cstddef>
#include <cstring>
#include <vector>

#include "platform/win32/Handle.h"
#include "platform/win32/Wide.h"

namespace zupm::win32 {

namespace {

// What headers for older systems lack.
constexpr auto kRenameInformation = static_cast<FILE_INFO_BY_HANDLE_CLASS>(22);
constexpr DWORD kReplaceIfExists = 1;
constexpr DWORD kPosixSemantics = 2;

}  // namespace

std::uint32_t RenameOverOpenFile(const std::u16string& from, const std::u16string& to)
{
    const Handle file = OwnFile(CreateFileW(Wide(from), DELETE | SYNCHRONIZE, kShareAll, nullptr, OPEN_EXISTING,
                                            FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    if (file == nullptr) {
        return GetLastError();
    }
    // The structure with the name and its null; the flags lie where older headers have a truth value.
    const std::size_t nameBytes = to.size() * sizeof(char16_t);
    std::vector<std::byte> space(sizeof(FILE_RENAME_INFO) + nameBytes);
    FILE_RENAME_INFO head{};
    head.FileNameLength = static_cast<DWORD>(nameBytes);
    std::memcpy(space.data(), &head, sizeof(head));
    const DWORD flags = kReplaceIfExists | kPosixSemantics;
    std::memcpy(space.data(), &flags, sizeof(flags));
    std::memcpy(space.data() + offsetof(FILE_RENAME_INFO, FileName), to.data(), nameBytes);
    const bool isRenamed =
        SetFileInformationByHandle(file.get(), kRenameInformation, space.data(), static_cast<DWORD>(space.size())) != 0;
    return isRenamed ? ERROR_SUCCESS : GetLastError();
}

}  // namespace zupm::win32
