// Special files: devices, pipes, sockets, and files of the system.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>

#include "tests/limits/Measure.h"
#include "tests/support/PolicyFileClient.h"
#include "tests/support/TempFolder.h"

namespace zupm::test {
namespace {

class SpecialFiles : public testing::Test {
protected:
    [[nodiscard]] std::string Path(const char* name) const { return (m_folder.Folder() / name).string(); }

    /// Loads and expects the code, with little memory. A load that waits fails the test.
    static void ExpectRefused(std::u16string_view path, HRESULT code)
    {
        const std::uint64_t before = PeakMemory();
        PolicyFileClient file;
        EXPECT_EQ(file.Load(path), code) << std::string(path.begin(), path.end());
        EXPECT_LT(PeakMemory() - before, std::uint64_t{64} << 20);
    }

    TempFolder m_folder;
};

TEST_F(SpecialFiles, Devices_AreNotRead)
{
    for (const std::u16string_view device : {u"/dev/zero", u"/dev/null", u"/dev/full", u"/dev/random", u"/dev/tty"}) {
        PolicyFileClient file;
        const HRESULT code = file.Load(device);
        EXPECT_EQ(code, result::NotSupported) << std::string(device.begin(), device.end());
    }
}

TEST_F(SpecialFiles, Pipe_IsNotWaitedFor)
{
    ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
    ExpectRefused(m_folder.Path(u"pipe"), result::NotSupported);
}

TEST_F(SpecialFiles, PipeThatNobodyReads_IsGivenUp)
{
    ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
    const int reader = open(Path("pipe").c_str(), O_RDONLY | O_NONBLOCK);
    PolicyFileClient file;
    ASSERT_EQ(file.Load(m_folder.Write(u"in.xml", "<F>" + std::string(1 << 20, ' ') + "</F>")), 0);
    EXPECT_EQ(file.Write(m_folder.Path(u"pipe")), result::SharingViolation);
    close(reader);
}

TEST_F(SpecialFiles, Socket_IsNotRead)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, Path("socket").c_str(), sizeof(address.sun_path) - 1);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    ExpectRefused(m_folder.Path(u"socket"), result::NotSupported);
    close(socket);
}

TEST_F(SpecialFiles, SparseFileOfTwoGigabytes_IsTooLarge)
{
    m_folder.Write(u"sparse", "");
    ASSERT_EQ(truncate(Path("sparse").c_str(), off_t{3} << 30), 0);
    ExpectRefused(m_folder.Path(u"sparse"), result::FileTooLarge);
}

TEST_F(SpecialFiles, FilesOfTheSystem_EndInACode)
{
    ExpectRefused(u"/proc/self/status", result::SyntaxError);
    ExpectRefused(u"/proc/self/mem", result::InputOutputError);
    ExpectRefused(u"/proc/self/task", result::AccessDenied);
}

TEST_F(SpecialFiles, EndlessFileOfTheSystem_IsTooLargeBeforeItFillsTheMemory)
{
    // It has 8 bytes for every page that the process could have: hundreds of gigabytes, and it reports no size.
    ExpectRefused(u"/proc/self/pagemap", result::FileTooLarge);
}

TEST_F(SpecialFiles, FullDevice_IsAFullDisk)
{
    PolicyFileClient file;
    ASSERT_EQ(file.Load(m_folder.Write(u"in.xml", "<F/>")), 0);
    EXPECT_EQ(file.Write(u"/dev/full"), result::DiskFull);
    EXPECT_EQ(file.Write(u"/dev/null"), 0);
}

}  // namespace
}  // namespace zupm::test
