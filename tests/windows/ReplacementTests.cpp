// What a file is besides its bytes, before and after it is replaced on Windows.
#include <windows.h>

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "platform/Files.h"
#include "platform/win32/Handle.h"
#include "tests/support/TempFolder.h"

namespace zupm::test {
namespace {

using win32::Handle;
using win32::OwnFile;

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

class Replacement : public testing::Test {
protected:
    Replacement() { m_folder.Write(u"file", "old"); }

    [[nodiscard]] result::Code Write(std::u16string_view name = u"file") const
    {
        return ReplaceFileAtomically(m_folder.Path(name), "new");
    }

    [[nodiscard]] std::wstring Wide(std::u16string_view name = u"file") const
    {
        return std::filesystem::path(m_folder.Path(name)).wstring();
    }

    [[nodiscard]] Handle Hold(DWORD access, DWORD share) const
    {
        return OwnFile(CreateFileW(Wide().c_str(), access, share, nullptr, OPEN_EXISTING, 0, nullptr));
    }

    void ExpectOldFileAlone() const
    {
        EXPECT_EQ(m_folder.Read(u"file"), "old");
        EXPECT_EQ(m_folder.Names(), std::vector<std::string>{"file"});
    }

    void ExpectNewFileAlone() const
    {
        EXPECT_EQ(m_folder.Read(u"file"), "new");
        EXPECT_EQ(m_folder.Names(), std::vector<std::string>{"file"});
    }

    TempFolder m_folder;
};

TEST_F(Replacement, HiddenSystemAndArchive_AreKept)
{
    for (const DWORD attributes : {DWORD{FILE_ATTRIBUTE_HIDDEN}, DWORD{FILE_ATTRIBUTE_SYSTEM},
                                   DWORD{FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE}}) {
        ASSERT_TRUE(SetFileAttributesW(Wide().c_str(), attributes));
        const DWORD before = GetFileAttributesW(Wide().c_str());
        EXPECT_EQ(Write(), result::Success);
        // The system marks every new file for the archive.
        EXPECT_EQ(GetFileAttributesW(Wide().c_str()) | FILE_ATTRIBUTE_ARCHIVE, before | FILE_ATTRIBUTE_ARCHIVE);
        ExpectNewFileAlone();
    }
}

TEST_F(Replacement, ReadOnlyFile_IsRefused)
{
    ASSERT_TRUE(SetFileAttributesW(Wide().c_str(), FILE_ATTRIBUTE_READONLY));
    EXPECT_EQ(Write(), result::AccessDenied);
    EXPECT_NE(GetFileAttributesW(Wide().c_str()) & FILE_ATTRIBUTE_READONLY, 0U);
    ExpectOldFileAlone();
    SetFileAttributesW(Wide().c_str(), FILE_ATTRIBUTE_NORMAL);
}

/// A file's access list, byte for byte; empty when there is none.
std::vector<std::byte> AccessListOf(const std::wstring& path)
{
    DWORD size = 0;
    GetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
    std::vector<std::byte> list(size);
    if (size == 0 || !GetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, list.data(), size, &size)) {
        list.clear();
    }
    return list;
}

TEST_F(Replacement, AccessListThatLetsNobodyElseIn_IsKept)
{
    const std::vector<std::byte> ofAnyFile = AccessListOf(Wide());
    alignas(TOKEN_USER) std::byte user[256];
    DWORD size = 0;
    ASSERT_TRUE(GetTokenInformation(GetCurrentProcessToken(), TokenUser, user, sizeof(user), &size));
    const PSID owner = reinterpret_cast<TOKEN_USER*>(user)->User.Sid;
    alignas(ACL) std::byte space[256]{};
    const auto list = reinterpret_cast<ACL*>(space);
    ASSERT_TRUE(InitializeAcl(list, sizeof(space), ACL_REVISION));
    ASSERT_TRUE(AddAccessAllowedAce(list, ACL_REVISION, FILE_ALL_ACCESS, owner));
    SECURITY_DESCRIPTOR descriptor;
    ASSERT_TRUE(InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION));
    ASSERT_TRUE(SetSecurityDescriptorDacl(&descriptor, TRUE, list, FALSE));
    ASSERT_TRUE(SetFileSecurityW(Wide().c_str(), DACL_SECURITY_INFORMATION, &descriptor));
    const std::vector<std::byte> before = AccessListOf(Wide());
    ASSERT_NE(before, ofAnyFile) << "the list made no difference";

    EXPECT_EQ(Write(), result::Success);
    EXPECT_EQ(AccessListOf(Wide()), before);
    ExpectNewFileAlone();
}

TEST_F(Replacement, HardLink_KeepsTheOldFile)
{
    ASSERT_TRUE(CreateHardLinkW(Wide(u"other").c_str(), Wide().c_str(), nullptr));
    EXPECT_EQ(Write(), result::Success);
    EXPECT_EQ(m_folder.Read(u"file"), "new");
    EXPECT_EQ(m_folder.Read(u"other"), "old");
}

TEST_F(Replacement, SymbolicLink_StaysAndItsFileIsReplaced)
{
    // Wine says that it made one, and did not.
    if (!CreateSymbolicLinkW(Wide(u"link").c_str(), L"file", SYMBOLIC_LINK_FLAG_ALLOW_UNPRIVILEGED_CREATE) ||
        GetFileAttributesW(Wide(u"link").c_str()) == INVALID_FILE_ATTRIBUTES) {
        GTEST_SKIP() << "no symbolic links here";
    }
    EXPECT_EQ(Write(u"link"), result::Success);
    EXPECT_NE(GetFileAttributesW(Wide(u"link").c_str()) & FILE_ATTRIBUTE_REPARSE_POINT, 0U);
    EXPECT_EQ(m_folder.Read(u"file"), "new");
}

TEST_F(Replacement, FolderOrPathThatLeadsNowhere_IsRefused)
{
    EXPECT_EQ(ReplaceFileAtomically(m_folder.Folder().u16string(), "new"), result::AccessDenied);
    EXPECT_EQ(Write(u"none\\file"), result::PathNotFound);
    ExpectOldFileAlone();
}

TEST_F(Replacement, Device_IsWrittenDirectly)
{
    EXPECT_EQ(ReplaceFileAtomically(u"NUL", "text"), result::Success);
}

TEST_F(Replacement, FileThatAReaderHoldsAndLetsOthersDelete_IsReplacedBesideIt)
{
    Handle reader = Hold(GENERIC_READ, kShareAll);
    ASSERT_TRUE(reader != nullptr);
    EXPECT_EQ(Write(), result::Success);
    char bytes[4]{};
    DWORD count = 0;
    EXPECT_TRUE(ReadFile(reader.get(), bytes, sizeof(bytes), &count, nullptr));
    EXPECT_EQ(std::string_view(bytes, count), "old") << "the reader goes on with the file that it opened";
    reader.reset();
    ExpectNewFileAlone();
}

TEST_F(Replacement, FileThatSomebodyKeepsToHimself_IsRefusedInTheEnd)
{
    const Handle holder = Hold(GENERIC_READ, FILE_SHARE_READ);
    ASSERT_TRUE(holder != nullptr);
    EXPECT_LT(Write(), 0);
    ExpectOldFileAlone();
}

TEST_F(Replacement, FileThatSomebodyKeepsToHimselfForAMoment_IsReplacedAfterwards)
{
    Handle holder = Hold(GENERIC_READ, FILE_SHARE_READ);
    ASSERT_TRUE(holder != nullptr);
    std::thread release([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        holder.reset();
    });
    EXPECT_EQ(Write(), result::Success);
    release.join();
    ExpectNewFileAlone();
}

}  // namespace
}  // namespace zupm::test
