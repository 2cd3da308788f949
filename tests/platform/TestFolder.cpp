#include "tests/platform/TestFolder.h"

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>

#include "text/Utf.h"

namespace zupm::test {

namespace fs = std::filesystem;

TestFolder::TestFolder()
{
    if (::chmod(m_folder.Folder().c_str(), 0777) != 0) {
        throw std::runtime_error("no folder for the test");
    }
}

std::string TestFolder::Path(std::string_view name) const
{
    return m_folder.Folder().string().append("/").append(name);
}

std::u16string TestFolder::Wide(std::string_view name) const
{
    return ToUtf16(Path(name)).value();
}

void TestFolder::Write(std::string_view name, std::string_view bytes) const
{
    WriteBytes(Wide(name), bytes);
}

std::string TestFolder::Read(std::string_view name) const
{
    return ReadBytes(Wide(name));
}

std::vector<std::string> TestFolder::Names() const
{
    return m_folder.Names();
}

mode_t TestFolder::Mode(std::string_view name) const
{
    struct stat status {};
    if (::stat(Path(name).c_str(), &status) != 0) {
        throw std::runtime_error("no status of " + Path(name));
    }
    return status.st_mode & 07777;
}

bool TestFolder::IsLink(std::string_view name) const
{
    return fs::is_symlink(Path(name));
}

std::size_t OpenFileCount()
{
    const fs::directory_iterator files("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(files), end(files)));
}

int WaitForChild(pid_t child)
{
    int status = 0;
    if (child < 0 || ::waitpid(child, &status, 0) != child || !WIFEXITED(status)) {
        throw std::runtime_error("the process of the test died");
    }
    return WEXITSTATUS(status);
}

int RunWithoutRights(const std::function<int()>& body)
{
    constexpr uid_t kNobody = 65534;
    const pid_t child = ::fork();
    if (child == 0) {
        const bool isRoot = ::geteuid() == 0;
        if (isRoot && (::setresgid(kNobody, kNobody, kNobody) != 0 || ::setresuid(kNobody, kNobody, kNobody) != 0)) {
            ::_exit(255);
        }
        ::_exit(body());
    }
    return WaitForChild(child);
}

}  // namespace zupm::test
