#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstring>
#include <thread>

#include "platform/Files.h"
#include "platform/posix/SystemCalls.h"
#include "tests/platform/TestFolder.h"

namespace zupm::test {
namespace {

class ReplaceSpecial : public testing::Test {
protected:
    ReplaceSpecial() { EXPECT_EQ(::mkfifo(m_folder.Path("pipe").c_str(), 0600), 0); }
    ~ReplaceSpecial() override { native::ReplaceSystemCalls(nullptr); }

    TestFolder m_folder;
};

TEST_F(ReplaceSpecial, Devices_AreWrittenDirectly)
{
    EXPECT_EQ(ReplaceFileAtomically(u"/dev/null", "text"), result::Success);
    EXPECT_EQ(ReplaceFileAtomically(u"/dev/full", "text"), result::DiskFull);
    struct stat status {};
    ASSERT_EQ(::stat("/dev/null", &status), 0);
    EXPECT_TRUE(S_ISCHR(status.st_mode));
}

TEST_F(ReplaceSpecial, LinkToADevice_IsWrittenDirectly)
{
    ASSERT_EQ(::symlink("/dev/full", m_folder.Path("link").c_str()), 0);
    EXPECT_EQ(ReplaceFileAtomically(m_folder.Wide("link"), "text"), result::DiskFull);
    EXPECT_TRUE(m_folder.IsLink("link"));
}

TEST_F(ReplaceSpecial, PipeWithASlowReader_GetsEverything)
{
    const std::string bytes(1 << 20, 'x');
    std::string received;
    std::thread reader([&] {
        const int pipe = ::open(m_folder.Path("pipe").c_str(), O_RDONLY);
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        char buffer[65536];
        for (ssize_t count = 0; (count = ::read(pipe, buffer, sizeof(buffer))) > 0;) {
            received.append(buffer, static_cast<std::size_t>(count));
        }
        ::close(pipe);
    });
    result::Code code = result::NotSupported;
    for (int tries = 0; code == result::NotSupported && tries < 1000; ++tries) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        code = ReplaceFileAtomically(m_folder.Wide("pipe"), bytes);
    }
    reader.join();
    EXPECT_EQ(code, result::Success);
    EXPECT_TRUE(received == bytes);
}

TEST_F(ReplaceSpecial, PipeThatNobodyReads_IsRefusedWithoutWaiting)
{
    EXPECT_EQ(ReplaceFileAtomically(m_folder.Wide("pipe"), "text"), result::NotSupported);
}

TEST_F(ReplaceSpecial, PipeWhoseReaderCloses_EndsTheCallAndNotTheProcess)
{
    const int pipe = ::open(m_folder.Path("pipe").c_str(), O_RDONLY | O_NONBLOCK);
    std::thread reader([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        ::close(pipe);
    });
    EXPECT_EQ(ReplaceFileAtomically(m_folder.Wide("pipe"), std::string(1 << 20, 'x')), result::InputOutputError);
    reader.join();
    sigset_t pending;
    ASSERT_EQ(::sigpending(&pending), 0);
    EXPECT_EQ(sigismember(&pending, SIGPIPE), 0);
}

TEST_F(ReplaceSpecial, PipeWhoseReaderDoesNotRead_EndsTheCallAfterAWhile)
{
    const int pipe = ::open(m_folder.Path("pipe").c_str(), O_RDONLY | O_NONBLOCK);
    native::SystemCalls hasty = native::kSystemCalls;
    hasty.poll = [](pollfd* files, nfds_t count, int timeout) {
        EXPECT_GT(timeout, 0);
        return ::poll(files, count, 1);
    };
    native::ReplaceSystemCalls(&hasty);
    EXPECT_EQ(ReplaceFileAtomically(m_folder.Wide("pipe"), std::string(1 << 20, 'x')), result::SharingViolation);
    ::close(pipe);
}

TEST_F(ReplaceSpecial, BrokenPipeSignalOfTheCaller_StaysPending)
{
    sigset_t pipeSignal;
    sigset_t before;
    sigset_t pending;
    sigemptyset(&pipeSignal);
    sigaddset(&pipeSignal, SIGPIPE);
    ASSERT_EQ(::pthread_sigmask(SIG_BLOCK, &pipeSignal, &before), 0);
    ASSERT_EQ(std::raise(SIGPIPE), 0);
    EXPECT_EQ(ReplaceFileAtomically(u"/dev/null", "text"), result::Success);
    ASSERT_EQ(::sigpending(&pending), 0);
    EXPECT_EQ(sigismember(&pending, SIGPIPE), 1);
    int taken = 0;
    ASSERT_EQ(::sigwait(&pipeSignal, &taken), 0);
    ASSERT_EQ(::pthread_sigmask(SIG_SETMASK, &before, nullptr), 0);
}

TEST_F(ReplaceSpecial, OpenPipeByItsNumber_IsWrittenDirectly)
{
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    const std::string number = std::to_string(ends[1]);
    const std::u16string path = u"/proc/self/fd/" + std::u16string(number.begin(), number.end());
    EXPECT_EQ(ReplaceFileAtomically(path, "text"), result::Success);
    char buffer[16];
    EXPECT_EQ(::read(ends[0], buffer, sizeof(buffer)), 4);
    EXPECT_EQ(std::memcmp(buffer, "text", 4), 0);
    ::close(ends[0]);
    ::close(ends[1]);
}

TEST_F(ReplaceSpecial, Socket_IsRefused)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, m_folder.Path("socket").c_str(), sizeof(address.sun_path) - 1);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    EXPECT_EQ(ReplaceFileAtomically(m_folder.Wide("socket"), "text"), result::NotSupported);
    ::close(socket);
}

}  // namespace
}  // namespace zupm::test
