// Somebody changes the target, or guesses the temporary's name, while the file is replaced.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <functional>
#include <set>

#include "platform/Files.h"
#include "platform/posix/SystemCalls.h"
#include "tests/platform/TestFolder.h"

namespace zupm::test {
namespace {

using Names = std::vector<std::string>;

/// What happens once, just before the first call that it is meant for.
std::function<void()> g_intrusion;

void Intrude()
{
    if (const std::function<void()> intrusion = std::exchange(g_intrusion, {})) {
        intrusion();
    }
}

/// How the temporaries of a test were made.
struct Creation {
    std::string name;
    int flags;
};

std::vector<Creation> g_creations;

class ReplaceRace : public testing::Test {
protected:
    ReplaceRace()
    {
        m_folder.Write("file", "old");
        m_folder.Write("victim", "untouched");
    }
    ~ReplaceRace() override
    {
        native::ReplaceSystemCalls(nullptr);
        g_intrusion = nullptr;
    }

    /// Replaces the file; `intrusion` runs right before the file is opened.
    [[nodiscard]] result::Code WriteWithIntrusionBeforeOpening(std::function<void()> intrusion)
    {
        m_calls.openat = [](int folder, const char* path, int flags, mode_t mode) {
            if (std::string_view(path) == "file") {
                Intrude();
            }
            return native::kSystemCalls.openat(folder, path, flags, mode);
        };
        return Write(std::move(intrusion));
    }

    /// The same, but `intrusion` runs when everything but the renaming is done.
    [[nodiscard]] result::Code WriteWithIntrusionBeforeRenaming(std::function<void()> intrusion)
    {
        m_calls.renameat = [](int oldFolder, const char* oldName, int newFolder, const char* newName) {
            Intrude();
            return native::kSystemCalls.renameat(oldFolder, oldName, newFolder, newName);
        };
        return Write(std::move(intrusion));
    }

    void RemoveFile() const { ASSERT_EQ(::unlink(m_folder.Path("file").c_str()), 0); }
    void PutLink() const
    {
        RemoveFile();
        ASSERT_EQ(::symlink("victim", m_folder.Path("file").c_str()), 0);
    }
    void PutFolder() const
    {
        RemoveFile();
        ASSERT_EQ(::mkdir(m_folder.Path("file").c_str(), 0700), 0);
    }

    TestFolder m_folder;

private:
    result::Code Write(std::function<void()> intrusion)
    {
        g_intrusion = std::move(intrusion);
        native::ReplaceSystemCalls(&m_calls);
        return ReplaceFileAtomically(m_folder.Wide("file"), "new");
    }

    native::SystemCalls m_calls = native::kSystemCalls;
};

TEST_F(ReplaceRace, LinkMadeBeforeTheFileIsOpened_IsFollowedLikeAnyOther)
{
    EXPECT_EQ(WriteWithIntrusionBeforeOpening([this] { PutLink(); }), result::Success);
    EXPECT_EQ(m_folder.Read("victim"), "new");
    EXPECT_TRUE(m_folder.IsLink("file"));
    EXPECT_EQ(m_folder.Names(), (Names{"file", "victim"}));
}

TEST_F(ReplaceRace, LinkReplacedByAFileWhileItIsRead_IsTakenForThatFile)
{
    ASSERT_EQ(::symlink("victim", m_folder.Path("link").c_str()), 0);
    native::SystemCalls calls = native::kSystemCalls;
    calls.openat = [](int folder, const char* path, int flags, mode_t mode) {
        if ((flags & O_PATH) != 0 && std::string_view(path) == "link") {
            Intrude();
        }
        return native::kSystemCalls.openat(folder, path, flags, mode);
    };
    g_intrusion = [this] {
        m_folder.Write("other", "a file");
        ASSERT_EQ(::rename(m_folder.Path("other").c_str(), m_folder.Path("link").c_str()), 0);
    };
    native::ReplaceSystemCalls(&calls);
    EXPECT_EQ(ReplaceFileAtomically(m_folder.Wide("link"), "new"), result::Success);
    EXPECT_EQ(m_folder.Read("link"), "new");
    EXPECT_EQ(m_folder.Read("victim"), "untouched");
}

TEST_F(ReplaceRace, LinkMadeBeforeTheRenaming_IsReplacedItself)
{
    EXPECT_EQ(WriteWithIntrusionBeforeRenaming([this] { PutLink(); }), result::Success);
    EXPECT_EQ(m_folder.Read("victim"), "untouched");
    EXPECT_FALSE(m_folder.IsLink("file"));
    EXPECT_EQ(m_folder.Read("file"), "new");
}

TEST_F(ReplaceRace, FolderMadeBeforeTheRenaming_IsRefusedAndNoTemporaryStays)
{
    EXPECT_EQ(WriteWithIntrusionBeforeRenaming([this] { PutFolder(); }), result::AccessDenied);
    EXPECT_EQ(m_folder.Names(), (Names{"file", "victim"}));
}

TEST_F(ReplaceRace, PipeMadeBeforeTheFileIsOpened_IsRefusedWithoutWaiting)
{
    const auto putPipe = [this] {
        RemoveFile();
        ASSERT_EQ(::mkfifo(m_folder.Path("file").c_str(), 0600), 0);
    };
    EXPECT_EQ(WriteWithIntrusionBeforeOpening(putPipe), result::NotSupported);
    EXPECT_EQ(m_folder.Names(), (Names{"file", "victim"}));
}

TEST_F(ReplaceRace, FileDeletedBeforeTheRenaming_IsMadeAgainWithItsMode)
{
    ASSERT_EQ(::chmod(m_folder.Path("file").c_str(), 0604), 0);
    EXPECT_EQ(WriteWithIntrusionBeforeRenaming([this] { RemoveFile(); }), result::Success);
    EXPECT_EQ(m_folder.Read("file"), "new");
    EXPECT_EQ(m_folder.Mode("file"), mode_t{0604});
}

TEST_F(ReplaceRace, FileOfAnotherWriterMadeBeforeTheRenaming_IsReplaced)
{
    const auto putOther = [this] {
        m_folder.Write("other", "another writer's");
        ASSERT_EQ(::rename(m_folder.Path("other").c_str(), m_folder.Path("file").c_str()), 0);
    };
    EXPECT_EQ(WriteWithIntrusionBeforeRenaming(putOther), result::Success);
    EXPECT_EQ(m_folder.Read("file"), "new");
    EXPECT_EQ(m_folder.Names(), (Names{"file", "victim"}));
}

TEST_F(ReplaceRace, FolderThatIsMovedAway_TakesTheReplacementWithIt)
{
    ASSERT_EQ(::mkdir(m_folder.Path("here").c_str(), 0700), 0);
    m_folder.Write("here/file", "old");
    native::SystemCalls calls = native::kSystemCalls;
    calls.renameat = [](int oldFolder, const char* oldName, int newFolder, const char* newName) {
        Intrude();
        return native::kSystemCalls.renameat(oldFolder, oldName, newFolder, newName);
    };
    g_intrusion = [this] {
        ASSERT_EQ(::rename(m_folder.Path("here").c_str(), m_folder.Path("there").c_str()), 0);
        ASSERT_EQ(::mkdir(m_folder.Path("here").c_str(), 0700), 0);
        m_folder.Write("here/file", "somebody else's");
    };
    native::ReplaceSystemCalls(&calls);
    EXPECT_EQ(ReplaceFileAtomically(m_folder.Wide("here/file"), "new"), result::Success);
    EXPECT_EQ(m_folder.Read("there/file"), "new");
    EXPECT_EQ(m_folder.Read("here/file"), "somebody else's");
}

TEST_F(ReplaceRace, Temporaries_AreMadeExclusivelyUnderNamesThatNeverRepeat)
{
    constexpr int kWrites = 64;
    native::SystemCalls watched = native::kSystemCalls;
    watched.openat = [](int folder, const char* path, int flags, mode_t mode) {
        if ((flags & O_CREAT) != 0) {
            g_creations.push_back({path, flags});
        }
        return native::kSystemCalls.openat(folder, path, flags, mode);
    };
    g_creations.clear();
    native::ReplaceSystemCalls(&watched);
    for (int i = 0; i < kWrites; ++i) {
        ASSERT_EQ(ReplaceFileAtomically(m_folder.Wide("file"), "new"), result::Success);
    }
    ASSERT_EQ(g_creations.size(), std::size_t{kWrites});
    std::set<std::string> names;
    for (const Creation& creation : g_creations) {
        EXPECT_EQ(creation.flags & (O_EXCL | O_NOFOLLOW | O_CLOEXEC), O_EXCL | O_NOFOLLOW | O_CLOEXEC);
        EXPECT_EQ(creation.name.find_first_not_of("0123456789abcdef", 3), 35U) << creation.name;
        EXPECT_TRUE(creation.name.starts_with(".zu") && creation.name.ends_with(".tmp")) << creation.name;
        names.insert(creation.name);
    }
    EXPECT_EQ(names.size(), g_creations.size());
}

}  // namespace
}  // namespace zupm::test
