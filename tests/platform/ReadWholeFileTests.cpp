#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>

#include "platform/Files.h"
#include "platform/posix/SystemCalls.h"
#include "tests/platform/TestFolder.h"

namespace zupm::test {
namespace {

class ReadWhole : public testing::Test {
protected:
    ~ReadWhole() override { native::ReplaceSystemCalls(nullptr); }

    [[nodiscard]] result::Code Read(std::string_view name) { return ReadWholeFile(m_folder.Wide(name), m_bytes); }

    void ExpectRefused(std::u16string_view path, result::Code code)
    {
        m_bytes = "what was there before";
        EXPECT_EQ(ReadWholeFile(path, m_bytes), code);
        EXPECT_EQ(m_bytes, "");
    }

    TestFolder m_folder;
    std::string m_bytes = "what was there before";
};

TEST_F(ReadWhole, FilesOfManySizes_AreReadByteForByte)
{
    for (const std::size_t size : {0u, 1u, 4095u, 4096u, 4097u, 1u << 20}) {
        std::string bytes(size, '\0');
        for (std::size_t i = 0; i < size; ++i) {
            bytes[i] = static_cast<char>(i * 31);
        }
        m_folder.Write("file", bytes);
        ASSERT_EQ(Read("file"), result::Success);
        EXPECT_EQ(m_bytes, bytes);
    }
}

TEST_F(ReadWhole, FileOfUnknownSize_IsReadToItsEnd)
{
    EXPECT_EQ(ReadWholeFile(u"/proc/self/status", m_bytes), result::Success);
    EXPECT_TRUE(m_bytes.starts_with("Name:"));
    EXPECT_TRUE(m_bytes.ends_with("\n"));
}

TEST_F(ReadWhole, FileOfUnknownSizeWithoutEnd_IsTooLarge)
{
    native::SystemCalls endless = native::kSystemCalls;
    endless.fstat = [](int, struct stat* status) {
        *status = {};
        status->st_mode = S_IFREG;
        return 0;
    };
    endless.read = [](int, void* bytes, std::size_t count) -> ssize_t {
        std::memset(bytes, 'x', count);
        return static_cast<ssize_t>(count);
    };
    m_folder.Write("file", "");
    native::ReplaceSystemCalls(&endless);
    ExpectRefused(m_folder.Wide("file"), result::FileTooLarge);
}

TEST_F(ReadWhole, NameOfManyScripts_IsFound)
{
    m_folder.Write("\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80", "text");
    EXPECT_EQ(ReadWholeFile(m_folder.Wide("") + u"\u00E4\u20AC\U0001F600", m_bytes), result::Success);
    EXPECT_EQ(m_bytes, "text");
}

TEST_F(ReadWhole, MissingFileAndMissingFolder_GiveDifferentCodes)
{
    ExpectRefused(m_folder.Wide("none"), result::FileNotFound);
    ExpectRefused(m_folder.Wide("none/file"), result::PathNotFound);
    ExpectRefused(u"/there is no such file", result::FileNotFound);
    m_folder.Write("file", "");
    ExpectRefused(m_folder.Wide("file/file"), result::PathNotFound);
    ASSERT_EQ(::symlink("none", m_folder.Path("dangling").c_str()), 0);
    ExpectRefused(m_folder.Wide("dangling"), result::FileNotFound);
}

TEST_F(ReadWhole, NamesThatNoFileCanHave_AreRefused)
{
    ExpectRefused(u"", result::InvalidName);
    ExpectRefused(std::u16string(u"/etc/hosts\0x", 12), result::InvalidName);
    ExpectRefused(std::u16string{u'/', 0xD800}, result::InvalidName);
    ExpectRefused(m_folder.Wide(std::string(256, 'x')), result::NameTooLong);
    ASSERT_EQ(::symlink("loop", m_folder.Path("loop").c_str()), 0);
    ExpectRefused(m_folder.Wide("loop"), result::InvalidName);
}

TEST_F(ReadWhole, WhatIsNoFile_IsRefusedWithoutWaiting)
{
    ExpectRefused(m_folder.Wide(""), result::AccessDenied);
    ASSERT_EQ(::mkfifo(m_folder.Path("pipe").c_str(), 0666), 0);
    ExpectRefused(m_folder.Wide("pipe"), result::NotSupported);
    ExpectRefused(u"/dev/zero", result::NotSupported);
    ExpectRefused(u"/dev/null", result::NotSupported);
}

TEST_F(ReadWhole, Socket_IsRefused)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, m_folder.Path("socket").c_str(), sizeof(address.sun_path) - 1);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    ExpectRefused(m_folder.Wide("socket"), result::NotSupported);
    ::close(socket);
}

TEST_F(ReadWhole, FileOfTwoGigabytes_IsTooLarge)
{
    m_folder.Write("file", "");
    ASSERT_EQ(::truncate(m_folder.Path("file").c_str(), off_t{kLargestFile} + 1), 0);
    ExpectRefused(m_folder.Wide("file"), result::FileTooLarge);
}

TEST_F(ReadWhole, FileThatMayNotBeRead_IsDenied)
{
    m_folder.Write("file", "secret");
    ASSERT_EQ(::chmod(m_folder.Path("file").c_str(), 0), 0);
    EXPECT_EQ(RunWithoutRights([&] { return Read("file") == result::AccessDenied && m_bytes.empty() ? 0 : 1; }), 0);
}

constinit const char* g_changing = nullptr;

TEST_F(ReadWhole, FileThatGrowsWhileItIsRead_IsReadToItsEnd)
{
    m_folder.Write("file", "begin");
    const std::string path = m_folder.Path("file");
    g_changing = path.c_str();
    native::SystemCalls growing = native::kSystemCalls;
    growing.read = [](int file, void* bytes, std::size_t count) {
        if (g_changing != nullptr) {
            EXPECT_EQ(::truncate(g_changing, 100'000), 0);
            g_changing = nullptr;
        }
        return ::read(file, bytes, count);
    };
    native::ReplaceSystemCalls(&growing);
    ASSERT_EQ(Read("file"), result::Success);
    EXPECT_EQ(m_bytes, "begin" + std::string(99'995, '\0'));
}

TEST_F(ReadWhole, FileThatShrinksWhileItIsRead_IsReadToItsEnd)
{
    m_folder.Write("file", std::string(100'000, 'x'));
    const std::string path = m_folder.Path("file");
    g_changing = path.c_str();
    native::SystemCalls shrinking = native::kSystemCalls;
    shrinking.read = [](int file, void* bytes, std::size_t count) {
        EXPECT_EQ(::truncate(g_changing, 10), 0);
        return ::read(file, bytes, count);
    };
    native::ReplaceSystemCalls(&shrinking);
    ASSERT_EQ(Read("file"), result::Success);
    EXPECT_EQ(m_bytes, std::string(10, 'x'));
}

}  // namespace
}  // namespace zupm::test
