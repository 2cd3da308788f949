#include <poll.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <set>

#include "tools/zupolicy/client/FolderWatch.h"

namespace zupm::tool {
namespace {

constexpr std::uint32_t kEvents = IN_CREATE | IN_MODIFY | IN_CLOSE_WRITE | IN_ATTRIB | IN_MOVED_FROM | IN_MOVED_TO |
                                  IN_DELETE | IN_DELETE_SELF | IN_MOVE_SELF;

std::uint64_t Nanoseconds(const timespec& time)
{
    return static_cast<std::uint64_t>(time.tv_sec) * 1'000'000'000U + static_cast<std::uint64_t>(time.tv_nsec);
}

}  // namespace

FileStamp StampOfFile(const std::string& path)
{
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) {
        return {};
    }
    return {true,
            {status.st_dev, status.st_ino, static_cast<std::uint64_t>(status.st_size), Nanoseconds(status.st_mtim),
             Nanoseconds(status.st_ctim), status.st_mode}};
}

struct FolderWatch::System {
    int notifications = -1;  ///< negative when the system gives none
    std::set<std::filesystem::path> folders;

    /// A folder that was replaced is another one, so the names are followed anew. One that is watched already stays as
    /// it is.
    void AddAll() const
    {
        for (const std::filesystem::path& folder : folders) {
            static_cast<void>(inotify_add_watch(notifications, folder.c_str(), kEvents | IN_ONLYDIR));
        }
    }

    /// Takes what has been reported; returns whether there was something.
    [[nodiscard]] bool Drain() const
    {
        alignas(inotify_event) std::array<char, 4096> events{};
        bool hasOne = false;
        while (read(notifications, events.data(), events.size()) > 0) {
            hasOne = true;
        }
        return hasOne;
    }
};

FolderWatch::FolderWatch(const std::vector<std::filesystem::path>& folders) : m_system(std::make_unique<System>())
{
    m_system->folders.insert(folders.begin(), folders.end());
    m_system->notifications = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    m_system->AddAll();
}

FolderWatch::~FolderWatch()
{
    if (m_system->notifications >= 0) {
        close(m_system->notifications);
    }
}

bool FolderWatch::Wait(std::chrono::milliseconds longest)
{
    m_system->AddAll();
    // A negative number is passed over, and the call only waits.
    pollfd waited{m_system->notifications, POLLIN, 0};
    static_cast<void>(poll(&waited, 1, static_cast<int>(longest.count())));
    return m_system->notifications >= 0 && m_system->Drain();
}

}  // namespace zupm::tool
