#include <windows.h>

#include <algorithm>
#include <map>
#include <set>

#include "tools/zupolicy/client/FolderWatch.h"
#include "tools/zupolicy/client/Utf8.h"
#include "tools/zupolicy/client/contents/SourceBytes.h"

namespace zupm::tool {
namespace {

constexpr DWORD kEvents = FILE_NOTIFY_CHANGE_FILE_NAME | FILE_NOTIFY_CHANGE_SIZE | FILE_NOTIFY_CHANGE_LAST_WRITE |
                          FILE_NOTIFY_CHANGE_DIR_NAME;
/// Ctrl-C is noticed by another thread, so a wait is cut into pieces.
constexpr DWORD kPiece = 250;

std::uint64_t Joined(DWORD high, DWORD low)
{
    return static_cast<std::uint64_t>(high) << 32U | low;
}

}  // namespace

FileStamp StampOfFile(const std::string& path)
{
    // Opened for nothing, so no other program is in the way or hindered.
    const HANDLE file = CreateFileW(ForOpening(std::filesystem::path(FromUtf8(path))).c_str(), 0,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                    FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return {};
    }
    BY_HANDLE_FILE_INFORMATION about{};
    const bool isKnown = GetFileInformationByHandle(file, &about) != 0;
    CloseHandle(file);
    if (!isKnown) {
        return {};
    }
    return {true,
            {about.dwVolumeSerialNumber, Joined(about.nFileIndexHigh, about.nFileIndexLow),
             Joined(about.nFileSizeHigh, about.nFileSizeLow),
             Joined(about.ftLastWriteTime.dwHighDateTime, about.ftLastWriteTime.dwLowDateTime),
             Joined(about.ftCreationTime.dwHighDateTime, about.ftCreationTime.dwLowDateTime), about.dwFileAttributes}};
}

struct FolderWatch::System {
    std::set<std::filesystem::path> folders;
    std::map<std::filesystem::path, HANDLE> notifications;

    void AddAll()
    {
        for (const std::filesystem::path& folder : folders) {
            if (notifications.contains(folder) || notifications.size() == MAXIMUM_WAIT_OBJECTS) {
                continue;
            }
            const HANDLE notification = FindFirstChangeNotificationW(folder.c_str(), FALSE, kEvents);
            if (notification != INVALID_HANDLE_VALUE) {
                notifications.emplace(folder, notification);
            }
        }
    }

    /// Asks for the next change; a folder that is gone is tried again later.
    void Renew(HANDLE notification)
    {
        if (FindNextChangeNotification(notification) != 0) {
            return;
        }
        FindCloseChangeNotification(notification);
        std::erase_if(notifications, [&](const auto& each) { return each.second == notification; });
    }

    /// Whether something happened before the time is over.
    [[nodiscard]] bool WaitForOne(DWORD time)
    {
        std::vector<HANDLE> handles;
        for (const auto& [folder, notification] : notifications) {
            handles.push_back(notification);
        }
        if (handles.empty()) {
            Sleep(time);
            return false;
        }
        const auto count = static_cast<DWORD>(handles.size());
        const DWORD which = WaitForMultipleObjects(count, handles.data(), FALSE, time);
        if (which == WAIT_FAILED) {
            Sleep(time);
        }
        if (which >= count) {
            return false;
        }
        Renew(handles[which]);
        return true;
    }
};

FolderWatch::FolderWatch(const std::vector<std::filesystem::path>& folders) : m_system(std::make_unique<System>())
{
    m_system->folders.insert(folders.begin(), folders.end());
    m_system->AddAll();
}

FolderWatch::~FolderWatch()
{
    for (const auto& [folder, notification] : m_system->notifications) {
        FindCloseChangeNotification(notification);
    }
}

bool FolderWatch::Wait(std::chrono::milliseconds longest)
{
    m_system->AddAll();
    return m_system->WaitForOne(std::min(static_cast<DWORD>(longest.count()), kPiece));
}

}  // namespace zupm::tool
