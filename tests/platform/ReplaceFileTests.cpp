#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <thread>

#include "platform/Files.h"
#include "platform/posix/SystemCalls.h"
#include "tests/platform/TestFolder.h"

namespace zupm::test {
namespace {

using Names = std::vector<std::string>;

class Replace : public testing::Test {
protected:
    ~Replace() override { native::ReplaceSystemCalls(nullptr); }

    [[nodiscard]] result::Code Write(std::string_view name, std::string_view bytes) const
    {
        return ReplaceFileAtomically(m_folder.Wide(name), bytes);
    }

    TestFolder m_folder;
};

TEST_F(Replace, NewFile_IsCreated)
{
    EXPECT_EQ(Write("file", "text"), result::Success);
    EXPECT_EQ(m_folder.Read("file"), "text");
    EXPECT_EQ(m_folder.Names(), Names{"file"});
}

TEST_F(Replace, BareName_IsAFileInTheCurrentFolder)
{
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(m_folder.Path(""));
    EXPECT_EQ(ReplaceFileAtomically(u"file", "text"), result::Success);
    std::filesystem::current_path(before);
    EXPECT_EQ(m_folder.Read("file"), "text");
}

TEST_F(Replace, AnySize_IsWrittenWhole)
{
    for (const std::size_t size : {0u, 1u, 4096u, 8u << 20}) {
        const std::string bytes(size, 'x');
        EXPECT_EQ(Write("file", bytes), result::Success);
        EXPECT_TRUE(m_folder.Read("file") == bytes) << size;
    }
    EXPECT_EQ(m_folder.Names(), Names{"file"});
}

TEST_F(Replace, LongestName_IsWritten)
{
    const std::string name(255, 'x');
    EXPECT_EQ(Write(name, "text"), result::Success);
    EXPECT_EQ(m_folder.Read(name), "text");
    EXPECT_EQ(Write(name + "x", "text"), result::NameTooLong);
}

TEST_F(Replace, LinkToAFile_StaysAndItsTargetIsReplaced)
{
    m_folder.Write("file", "old");
    ASSERT_EQ(::symlink("file", m_folder.Path("one").c_str()), 0);
    ASSERT_EQ(::symlink(m_folder.Path("one").c_str(), m_folder.Path("two").c_str()), 0);
    EXPECT_EQ(Write("two", "new"), result::Success);
    EXPECT_EQ(m_folder.Read("file"), "new");
    EXPECT_TRUE(m_folder.IsLink("one"));
    EXPECT_TRUE(m_folder.IsLink("two"));
    EXPECT_FALSE(m_folder.IsLink("file"));
}

TEST_F(Replace, LinkIntoAnotherFolder_PutsTheTemporaryThere)
{
    ASSERT_EQ(::mkdir(m_folder.Path("folder").c_str(), 0700), 0);
    m_folder.Write("folder/file", "old");
    ASSERT_EQ(::symlink("folder/file", m_folder.Path("link").c_str()), 0);
    ASSERT_EQ(::chmod(m_folder.Path("").c_str(), 0555), 0);
    const bool isRoot = ::geteuid() == 0;
    EXPECT_EQ(Write("link", "new"), result::Success) << (isRoot ? "as root" : "as a user");
    ASSERT_EQ(::chmod(m_folder.Path("").c_str(), 0777), 0);
    EXPECT_EQ(m_folder.Read("folder/file"), "new");
}

TEST_F(Replace, DanglingLink_CreatesItsTarget)
{
    ASSERT_EQ(::symlink("none", m_folder.Path("link").c_str()), 0);
    EXPECT_EQ(Write("link", "text"), result::Success);
    EXPECT_EQ(m_folder.Names(), (Names{"link", "none"}));
    EXPECT_TRUE(m_folder.IsLink("link"));
    EXPECT_EQ(m_folder.Read("none"), "text");
}

TEST_F(Replace, LinkBelowALinkToItsFolder_LeadsWhereTheSystemSaysItDoes)
{
    ASSERT_EQ(::mkdir(m_folder.Path("one").c_str(), 0700), 0);
    ASSERT_EQ(::mkdir(m_folder.Path("one/two").c_str(), 0700), 0);
    m_folder.Write("one/file", "old");
    m_folder.Write("file", "untouched");
    ASSERT_EQ(::symlink("../file", m_folder.Path("one/two/link").c_str()), 0);
    ASSERT_EQ(::symlink("one/two", m_folder.Path("short").c_str()), 0);
    EXPECT_EQ(Write("short/link", "new"), result::Success);
    EXPECT_EQ(m_folder.Read("one/file"), "new");
    EXPECT_EQ(m_folder.Read("file"), "untouched");
}

TEST_F(Replace, LinkIntoAMissingFolderOrToAFolder_IsRefused)
{
    ASSERT_EQ(::symlink("none/file", m_folder.Path("dangling").c_str()), 0);
    ASSERT_EQ(::symlink(".", m_folder.Path("folder").c_str()), 0);
    EXPECT_EQ(Write("dangling", "text"), result::PathNotFound);
    EXPECT_EQ(Write("folder", "text"), result::AccessDenied);
    EXPECT_EQ(m_folder.Names(), (Names{"dangling", "folder"}));
}

TEST_F(Replace, LinksThatNeverEnd_AreRefused)
{
    ASSERT_EQ(::symlink("two", m_folder.Path("one").c_str()), 0);
    ASSERT_EQ(::symlink("one", m_folder.Path("two").c_str()), 0);
    EXPECT_EQ(Write("one", "text"), result::InvalidName);
    EXPECT_EQ(m_folder.Names(), (Names{"one", "two"}));
}

TEST_F(Replace, LinkWhoseTextCannotBeAPath_IsRefused)
{
    m_folder.Write("file", "old");
    ASSERT_EQ(::symlink("file", m_folder.Path("link").c_str()), 0);
    native::SystemCalls odd = native::kSystemCalls;
    odd.readlinkat = [](int, const char*, char*, std::size_t) -> ssize_t { return 0; };
    native::ReplaceSystemCalls(&odd);
    EXPECT_EQ(Write("link", "new"), result::NameTooLong);
    odd.readlinkat = [](int, const char*, char* target, std::size_t capacity) -> ssize_t {
        std::memset(target, 'x', capacity);
        return static_cast<ssize_t>(capacity);
    };
    EXPECT_EQ(Write("link", "new"), result::NameTooLong);
    EXPECT_EQ(m_folder.Read("file"), "old");
}

TEST_F(Replace, HardLink_KeepsTheOldFile)
{
    m_folder.Write("file", "old");
    ASSERT_EQ(::link(m_folder.Path("file").c_str(), m_folder.Path("other").c_str()), 0);
    EXPECT_EQ(Write("file", "new"), result::Success);
    EXPECT_EQ(m_folder.Read("file"), "new");
    EXPECT_EQ(m_folder.Read("other"), "old");
}

TEST_F(Replace, PathsThatLeadNowhere_AreRefused)
{
    m_folder.Write("file", "old");
    EXPECT_EQ(ReplaceFileAtomically(u"", "x"), result::InvalidName);
    EXPECT_EQ(ReplaceFileAtomically(std::u16string{u'a', 0xDC00}, "x"), result::InvalidName);
    EXPECT_EQ(Write("none/file", "x"), result::PathNotFound);
    EXPECT_EQ(Write("file/file", "x"), result::PathNotFound);
    EXPECT_EQ(Write("file/", "x"), result::PathNotFound);
    EXPECT_EQ(Write("none/", "x"), result::PathNotFound);
    EXPECT_EQ(m_folder.Names(), Names{"file"});
    EXPECT_EQ(m_folder.Read("file"), "old");
}

TEST_F(Replace, Folder_IsRefused)
{
    ASSERT_EQ(::mkdir(m_folder.Path("folder").c_str(), 0700), 0);
    for (const char* name : {"", ".", "..", "folder", "folder/"}) {
        EXPECT_EQ(Write(name, "x"), result::AccessDenied) << name;
    }
    EXPECT_EQ(m_folder.Names(), Names{"folder"});
}

TEST_F(Replace, DiskThatTakesNothing_LeavesTheOldFile)
{
    m_folder.Write("file", "old");
    native::SystemCalls full = native::kSystemCalls;
    full.write = [](int, const void*, std::size_t) -> ssize_t { return 0; };
    native::ReplaceSystemCalls(&full);
    EXPECT_EQ(Write("file", "new"), result::InputOutputError);
    EXPECT_EQ(m_folder.Read("file"), "old");
    EXPECT_EQ(m_folder.Names(), Names{"file"});
}

TEST_F(Replace, FileSystemThatCannotFlushFolders_IsNoObstacle)
{
    native::SystemCalls odd = native::kSystemCalls;
    odd.fsync = [](int file) {
        struct stat status {};
        EXPECT_EQ(::fstat(file, &status), 0);
        if (S_ISDIR(status.st_mode)) {
            errno = EINVAL;
            return -1;
        }
        return ::fsync(file);
    };
    native::ReplaceSystemCalls(&odd);
    EXPECT_EQ(Write("file", "text"), result::Success);
    EXPECT_EQ(m_folder.Read("file"), "text");
}

TEST_F(Replace, AReader_SeesTheOldOrTheNewFile)
{
    const std::array<std::string, 2> versions{std::string(300'000, 'a'), std::string(200'000, 'b')};
    m_folder.Write("file", versions[0]);
    std::atomic<bool> done{false};
    std::thread writer([&] {
        for (std::size_t i = 1; i <= 100; ++i) {
            EXPECT_EQ(Write("file", versions[i % 2]), result::Success);
        }
        done = true;
    });
    int reads = 0;
    std::string bytes;
    while (!done) {
        ASSERT_EQ(ReadWholeFile(m_folder.Wide("file"), bytes), result::Success);
        ASSERT_TRUE(bytes == versions[0] || bytes == versions[1]);
        ++reads;
    }
    writer.join();
    EXPECT_GT(reads, 0);
}

constinit int g_draws = 0;

TEST_F(Replace, PlantedTemporary_IsNotTouched)
{
    const std::string planted = ".zu" + std::string(32, '0') + ".tmp";
    m_folder.Write("victim", "untouched");
    ASSERT_EQ(::symlink("victim", m_folder.Path(planted).c_str()), 0);
    native::SystemCalls guessable = native::kSystemCalls;
    g_draws = 0;
    guessable.getrandom = [](void* bytes, std::size_t count, unsigned) {
        std::memset(bytes, g_draws++ == 0 ? 0 : 0xAB, count);
        return static_cast<ssize_t>(count);
    };
    native::ReplaceSystemCalls(&guessable);
    EXPECT_EQ(Write("file", "text"), result::Success);
    EXPECT_EQ(g_draws, 2);
    EXPECT_EQ(m_folder.Read("victim"), "untouched");
    EXPECT_EQ(m_folder.Read("file"), "text");
    EXPECT_TRUE(m_folder.IsLink(planted));
}

TEST_F(Replace, NoFreeTemporaryName_EndsAfterSomeTries)
{
    m_folder.Write(".zu" + std::string(32, '0') + ".tmp", "planted");
    native::SystemCalls guessable = native::kSystemCalls;
    guessable.getrandom = [](void* bytes, std::size_t count, unsigned) {
        std::memset(bytes, 0, count);
        return static_cast<ssize_t>(count);
    };
    native::ReplaceSystemCalls(&guessable);
    EXPECT_LT(Write("file", "text"), 0);
    EXPECT_EQ(m_folder.Names().size(), 1u);
}

}  // namespace
}  // namespace zupm::test
