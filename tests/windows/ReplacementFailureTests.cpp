// A file whose replacement the system refuses, or leaves half done.
#include <gtest/gtest.h>

#include <vector>

#include "platform/Files.h"
#include "tests/support/TempFolder.h"
#include "tests/windows/ReplacementCalls.h"

namespace zupm::test {
namespace {

class ReplacementFailures : public testing::Test {
protected:
    ReplacementFailures() { m_folder.Write(kFile, "old"); }
    ~ReplacementFailures() override { Calls() = {}; }

    [[nodiscard]] result::Code Write() const { return ReplaceFileAtomically(m_folder.Path(kFile), "new"); }

    /// As for a file that somebody has open: nothing can be moved over it.
    static void NothingMovesOverTheFile()
    {
        Calls().move = [](const std::wstring& from, const std::wstring& to) -> DWORD {
            return IsTemporary(from) ? ERROR_ACCESS_DENIED : MoveBySystem(from, to, 0);
        };
    }

    /// Whether the name is one that the documented clean-up deletes.
    static bool IsTemporary(const std::wstring& path)
    {
        const std::wstring name = std::filesystem::path(path).filename().wstring();
        return name.starts_with(L"~") && name.ends_with(L".tmp");
    }

    void ExpectAlone(std::string_view text) const
    {
        EXPECT_EQ(m_folder.Read(kFile), text);
        EXPECT_EQ(m_folder.Names(), std::vector<std::string>{"policy.xml"});
    }

    static constexpr std::u16string_view kFile = u"policy.xml";
    TempFolder m_folder;
};

TEST_F(ReplacementFailures, AccessListThatCannotBeRead_RefusesTheReplacement)
{
    Calls().accessListError = ERROR_ACCESS_DENIED;
    EXPECT_EQ(Write(), result::AccessDenied);
    ExpectAlone("old");
    Calls().accessListError = ERROR_NOT_ENOUGH_MEMORY;
    EXPECT_EQ(Write(), result::OutOfMemory);
    ExpectAlone("old");
}

TEST_F(ReplacementFailures, FileSystemWithoutAccessLists_IsNoObstacle)
{
    Calls().accessListError = ERROR_NOT_SUPPORTED;
    EXPECT_EQ(Write(), result::Success);
    ExpectAlone("new");
}

TEST_F(ReplacementFailures, HeldFile_IsReplacedAndItsBackupDeleted)
{
    NothingMovesOverTheFile();
    std::wstring backup;
    Calls().replace = [&](const std::wstring& target, const std::wstring& replacement, const std::wstring& name) {
        backup = name;
        return ReplaceBySystem(target, replacement, name);
    };
    EXPECT_EQ(Write(), result::Success);
    EXPECT_FALSE(backup.empty());
    ExpectAlone("new");
}

TEST_F(ReplacementFailures, KillWhileAHeldFileIsReplaced_LeavesTheOldOneUnderANameThatTheCleanUpLeaves)
{
    NothingMovesOverTheFile();
    std::vector<std::string> left;
    Calls().replace = [&](const std::wstring& target, const std::wstring&, const std::wstring& backup) -> DWORD {
        EXPECT_EQ(MoveBySystem(target, backup, 0), DWORD{ERROR_SUCCESS});
        // Here the process is killed.
        for (const std::string& name : m_folder.Names()) {
            if (!IsTemporary(std::filesystem::path(name).wstring())) {
                left.push_back(name);
            }
        }
        return ERROR_UNABLE_TO_MOVE_REPLACEMENT_2;
    };
    EXPECT_LT(Write(), 0);
    ASSERT_EQ(left.size(), 1U);
    EXPECT_TRUE(left[0].starts_with("policy.xml.old-")) << left[0];
    EXPECT_EQ(left[0].size(), std::string_view("policy.xml.old-").size() + 32);
    ExpectAlone("old");
}

TEST_F(ReplacementFailures, OldFileThatSomebodyHoldsWhileItGetsItsNameBack_IsWaitedFor)
{
    int restorations = 0;
    Calls().move = [&](const std::wstring& from, const std::wstring& to) -> DWORD {
        if (IsTemporary(from)) {
            return ERROR_ACCESS_DENIED;
        }
        return ++restorations < 3 ? ERROR_SHARING_VIOLATION : MoveBySystem(from, to, 0);
    };
    Calls().replace = [](const std::wstring& target, const std::wstring&, const std::wstring& backup) -> DWORD {
        EXPECT_EQ(MoveBySystem(target, backup, 0), DWORD{ERROR_SUCCESS});
        return ERROR_UNABLE_TO_MOVE_REPLACEMENT_2;
    };
    EXPECT_LT(Write(), 0);
    EXPECT_EQ(restorations, 3);
    ExpectAlone("old");
}

TEST_F(ReplacementFailures, LongestName_HasRoomForItsBackup)
{
    const std::u16string name(255, u'n');
    m_folder.Write(name, "old");
    NothingMovesOverTheFile();
    Calls().replace = [](const std::wstring& target, const std::wstring&, const std::wstring& backup) -> DWORD {
        EXPECT_EQ(std::filesystem::path(backup).filename().wstring().size(), 255U);
        EXPECT_EQ(MoveBySystem(target, backup, 0), DWORD{ERROR_SUCCESS});
        return ERROR_UNABLE_TO_MOVE_REPLACEMENT_2;
    };
    EXPECT_LT(ReplaceFileAtomically(m_folder.Path(name), "new"), 0);
    EXPECT_EQ(m_folder.Read(name), "old");
}

}  // namespace
}  // namespace zupm::test
