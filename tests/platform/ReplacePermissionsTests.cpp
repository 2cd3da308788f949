#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <optional>
#include <utility>

#include "platform/Files.h"
#include "platform/posix/SystemCalls.h"
#include "tests/platform/TestFolder.h"

namespace zupm::test {
namespace {

constexpr const char* kAccessList = "system.posix_acl_access";
constexpr const char* kDefaultList = "system.posix_acl_default";

/// An access list in the system's form: owner rw-, user 1234 r--, group ---, mask r--, others ---.
constexpr unsigned char kList[] = {
    2,  0, 0, 0,                          //
    1,  0, 6, 0, 0xFF, 0xFF, 0xFF, 0xFF,  //
    2,  0, 4, 0, 0xD2, 0x04, 0,    0,     //
    4,  0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF,  //
    16, 0, 4, 0, 0xFF, 0xFF, 0xFF, 0xFF,  //
    32, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF,  //
};

class ReplacePermissions : public testing::Test {
protected:
    ~ReplacePermissions() override
    {
        native::ReplaceSystemCalls(nullptr);
        ::umask(m_umask);
    }

    [[nodiscard]] result::Code Write(std::string_view bytes) const
    {
        return ReplaceFileAtomically(m_folder.Wide("file"), bytes);
    }

    void SetMode(mode_t mode) const { ASSERT_EQ(::chmod(m_folder.Path("file").c_str(), mode), 0); }

    [[nodiscard]] std::optional<std::string> Attribute(const char* name) const
    {
        std::string value(1000, '\0');
        const ssize_t length = ::getxattr(m_folder.Path("file").c_str(), name, value.data(), value.size());
        if (length < 0) {
            return std::nullopt;
        }
        value.resize(static_cast<std::size_t>(length));
        return value;
    }

    TestFolder m_folder;
    mode_t m_umask = ::umask(022);
};

TEST_F(ReplacePermissions, NewFile_GetsWhatTheUmaskLeaves)
{
    for (const mode_t mask : {mode_t{0}, mode_t{022}, mode_t{027}, mode_t{077}}) {
        ::unlink(m_folder.Path("file").c_str());
        ::umask(mask);
        ASSERT_EQ(Write("text"), result::Success);
        EXPECT_EQ(m_folder.Mode("file"), 0666 & ~mask);
    }
}

TEST_F(ReplacePermissions, ExistingFile_KeepsItsMode)
{
    for (const mode_t mode : {0600u, 0604u, 0640u, 0666u, 0755u, 0200u, 04755u, 02755u, 01644u}) {
        m_folder.Write("file", "old");
        SetMode(mode);
        ASSERT_EQ(Write("new"), result::Success) << std::oct << mode;
        EXPECT_EQ(m_folder.Mode("file"), mode) << std::oct << mode;
        SetMode(0600);
        EXPECT_EQ(m_folder.Read("file"), "new");
    }
}

TEST_F(ReplacePermissions, Temporary_IsForItsOwnerAloneWhileItIsWritten)
{
    m_folder.Write("file", "old");
    SetMode(0666);
    ::umask(0);
    native::SystemCalls watched = native::kSystemCalls;
    watched.write = [](int file, const void* bytes, std::size_t count) {
        struct stat status {};
        EXPECT_EQ(::fstat(file, &status), 0);
        EXPECT_EQ(status.st_mode & 07777, mode_t{0600});
        return ::write(file, bytes, count);
    };
    native::ReplaceSystemCalls(&watched);
    EXPECT_EQ(Write("new"), result::Success);
    EXPECT_EQ(m_folder.Mode("file"), mode_t{0666});
}

TEST_F(ReplacePermissions, AsRoot_TheOwnerAndGroupStay)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root gives files to others";
    }
    m_folder.Write("file", "old");
    ASSERT_EQ(::chown(m_folder.Path("file").c_str(), 1234, 4321), 0);
    SetMode(06751);
    ASSERT_EQ(Write("new"), result::Success);
    struct stat status {};
    ASSERT_EQ(::stat(m_folder.Path("file").c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, 1234u);
    EXPECT_EQ(status.st_gid, 4321u);
    EXPECT_EQ(m_folder.Mode("file"), mode_t{06751});
}

TEST_F(ReplacePermissions, FileThatMayNotBeWritten_IsRefused)
{
    m_folder.Write("file", "old");
    SetMode(0444);
    EXPECT_EQ(RunWithoutRights([&] { return Write("new") == result::AccessDenied ? 0 : 1; }), 0);
    EXPECT_EQ(m_folder.Read("file"), "old");
    EXPECT_EQ(m_folder.Names(), std::vector<std::string>{"file"});
}

TEST_F(ReplacePermissions, FolderThatMayNotBeWritten_IsRefused)
{
    m_folder.Write("file", "old");
    SetMode(0666);
    ASSERT_EQ(::chmod(m_folder.Path("").c_str(), 0555), 0);
    EXPECT_EQ(RunWithoutRights([&] { return Write("new") == result::AccessDenied ? 0 : 1; }), 0);
    ASSERT_EQ(::chmod(m_folder.Path("").c_str(), 0777), 0);
    EXPECT_EQ(m_folder.Read("file"), "old");
}

TEST_F(ReplacePermissions, FolderThatMayNotBeListed_IsNoObstacle)
{
    ASSERT_EQ(::chmod(m_folder.Path("").c_str(), 0333), 0);
    EXPECT_EQ(RunWithoutRights([&] { return Write("new") == result::Success ? 0 : 1; }), 0);
    ASSERT_EQ(::chmod(m_folder.Path("").c_str(), 0777), 0);
    EXPECT_EQ(m_folder.Read("file"), "new");
}

TEST_F(ReplacePermissions, SomebodyElsesFile_IsRefusedBecauseItsOwnerCannotBeKept)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root has files that are somebody else's to the test";
    }
    m_folder.Write("file", "old");
    SetMode(0666);
    EXPECT_EQ(RunWithoutRights([&] { return Write("new") == result::AccessDenied ? 0 : 1; }), 0);
    EXPECT_EQ(m_folder.Read("file"), "old");
    EXPECT_EQ(m_folder.Names(), std::vector<std::string>{"file"});
}

TEST_F(ReplacePermissions, ExtendedAttributes_AreKept)
{
    m_folder.Write("file", "old");
    if (::setxattr(m_folder.Path("file").c_str(), "user.one", "1", 1, 0) != 0) {
        GTEST_SKIP() << "the file system has no attributes";
    }
    const std::string value(900, 'x');
    ASSERT_EQ(::setxattr(m_folder.Path("file").c_str(), "user.two", value.data(), value.size(), 0), 0);
    ASSERT_EQ(::setxattr(m_folder.Path("file").c_str(), "user.empty", "", 0, 0), 0);
    ASSERT_EQ(Write("new"), result::Success);
    EXPECT_EQ(Attribute("user.one"), "1");
    EXPECT_EQ(Attribute("user.two"), value);
    EXPECT_EQ(Attribute("user.empty"), "");
}

TEST_F(ReplacePermissions, AttributesThatVouchForTheOldBytes_AreNotCopied)
{
    m_folder.Write("file", "old");
    if (::setxattr(m_folder.Path("file").c_str(), "security.ima", "1", 1, 0) != 0) {
        GTEST_SKIP() << "the file system or the user's rights allow no such attribute";
    }
    ASSERT_EQ(Write("new"), result::Success);
    EXPECT_EQ(Attribute("security.ima"), std::nullopt);
}

TEST_F(ReplacePermissions, FileSystemWithoutAttributes_IsNoObstacle)
{
    m_folder.Write("file", "old");
    native::SystemCalls plain = native::kSystemCalls;
    plain.flistxattr = [](int, char*, std::size_t) -> ssize_t { return errno = EOPNOTSUPP, -1; };
    plain.fremovexattr = [](int, const char*) { return errno = EOPNOTSUPP, -1; };
    native::ReplaceSystemCalls(&plain);
    EXPECT_EQ(Write("new"), result::Success);
    EXPECT_EQ(m_folder.Read("file"), "new");
}

TEST_F(ReplacePermissions, AsRoot_GroupThatCannotBeKept_IsRefused)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root gives files to others";
    }
    m_folder.Write("file", "old");
    ASSERT_EQ(::chown(m_folder.Path("file").c_str(), 0, 4321), 0);
    native::SystemCalls refusing = native::kSystemCalls;
    refusing.fchown = [](int, uid_t, gid_t) { return errno = EPERM, -1; };
    native::ReplaceSystemCalls(&refusing);
    EXPECT_EQ(Write("new"), result::AccessDenied);
    EXPECT_EQ(m_folder.Read("file"), "old");
    EXPECT_EQ(m_folder.Names(), std::vector<std::string>{"file"});
    refusing.fchown = [](int, uid_t, gid_t) { return errno = EIO, -1; };
    EXPECT_EQ(Write("new"), result::InputOutputError);
    EXPECT_EQ(m_folder.Read("file"), "old");
    native::ReplaceSystemCalls(nullptr);
    ASSERT_EQ(Write("new"), result::Success);
    struct stat status {};
    ASSERT_EQ(::stat(m_folder.Path("file").c_str(), &status), 0);
    EXPECT_EQ(status.st_gid, 4321u);
}

/// A system where the file has one attribute, whatever the file system has. Reading it gives `value` on every file, or
/// fails with `readError`; setting it fails with `setError`.
struct OneAttribute {
    const char* value = "1";
    int readError = 0;
    int setError = 0;
};

constinit OneAttribute g_attribute;
constinit bool g_isOriginal = true;
constinit int g_attributesSet = 0;

class OddAttributes : public ReplacePermissions {
protected:
    [[nodiscard]] result::Code WriteWith(const OneAttribute& attribute) const
    {
        m_folder.Write("file", "old");
        g_attribute = attribute;
        g_isOriginal = true;
        g_attributesSet = 0;
        native::SystemCalls odd = native::kSystemCalls;
        odd.flistxattr = [](int, char* names, std::size_t) -> ssize_t {
            static constexpr char kNames[] = "user.odd";
            std::copy(std::begin(kNames), std::end(kNames), names);
            return sizeof(kNames);
        };
        // Of the file first, and then of the one that is to replace it.
        odd.fgetxattr = [](int, const char*, void* value, std::size_t) -> ssize_t {
            const bool isOriginal = std::exchange(g_isOriginal, false);
            if (g_attribute.readError != 0) {
                return errno = g_attribute.readError, -1;
            }
            *static_cast<char*>(value) = isOriginal ? '1' : *g_attribute.value;
            return 1;
        };
        odd.fsetxattr = [](int, const char*, const void*, std::size_t, int) {
            ++g_attributesSet;
            errno = g_attribute.setError;
            return g_attribute.setError == 0 ? 0 : -1;
        };
        odd.fremovexattr = [](int, const char*) { return errno = ENODATA, -1; };
        native::ReplaceSystemCalls(&odd);
        const result::Code code = Write("new");
        native::ReplaceSystemCalls(nullptr);
        EXPECT_EQ(m_folder.Read("file"), code == result::Success ? "new" : "old");
        EXPECT_EQ(m_folder.Names(), std::vector<std::string>{"file"});
        return code;
    }
};

TEST_F(OddAttributes, ThatTheNewFileHasAlready_AreNotSetAgain)
{
    EXPECT_EQ(WriteWith({.value = "1", .setError = EPERM}), result::Success);
    EXPECT_EQ(g_attributesSet, 0);
}

TEST_F(OddAttributes, ThatDiffer_AreSetOrTheReplacementIsRefused)
{
    EXPECT_EQ(WriteWith({.value = "2"}), result::Success);
    EXPECT_EQ(g_attributesSet, 1);
    EXPECT_EQ(WriteWith({.value = "2", .setError = EPERM}), result::AccessDenied);
    EXPECT_EQ(WriteWith({.value = "2", .setError = ENOSPC}), result::DiskFull);
}

TEST_F(OddAttributes, ThatTheFileSystemOnlyLists_AreNoObstacle)
{
    EXPECT_EQ(WriteWith({.value = "2", .setError = EOPNOTSUPP}), result::Success);
    EXPECT_EQ(WriteWith({.readError = EOPNOTSUPP}), result::Success);
    EXPECT_EQ(WriteWith({.readError = ENOSYS}), result::Success);
}

TEST_F(OddAttributes, ThatVanishMeanwhile_AreNoObstacle)
{
    EXPECT_EQ(WriteWith({.readError = ENODATA}), result::Success);
}

TEST_F(OddAttributes, ThatCannotBeRead_MakeTheReplacementFail)
{
    EXPECT_EQ(WriteWith({.readError = EACCES}), result::AccessDenied);
}

class AccessLists : public ReplacePermissions {
protected:
    void SetUp() override
    {
        m_folder.Write("file", "old");
        if (::setxattr(m_folder.Path("").c_str(), kDefaultList, kList, sizeof(kList), 0) != 0) {
            GTEST_SKIP() << "the file system has no access lists";
        }
    }
};

TEST_F(AccessLists, TheFilesOwnList_IsKept)
{
    ASSERT_EQ(::setxattr(m_folder.Path("file").c_str(), kAccessList, kList, sizeof(kList), 0), 0);
    const auto before = Attribute(kAccessList);
    ASSERT_TRUE(before.has_value());
    ASSERT_EQ(Write("new"), result::Success);
    EXPECT_EQ(Attribute(kAccessList), before);
    EXPECT_EQ(m_folder.Mode("file"), mode_t{0640});
}

TEST_F(AccessLists, TheFoldersDefaultList_IsNotGivenToAFileThatHadNone)
{
    SetMode(0640);
    ASSERT_EQ(Write("new"), result::Success);
    EXPECT_EQ(Attribute(kAccessList), std::nullopt);
    EXPECT_EQ(m_folder.Mode("file"), mode_t{0640});
}

TEST_F(AccessLists, TheFoldersDefaultList_IsGivenToANewFile)
{
    ::unlink(m_folder.Path("file").c_str());
    ASSERT_EQ(Write("new"), result::Success);
    EXPECT_NE(Attribute(kAccessList), std::nullopt);
}

}  // namespace
}  // namespace zupm::test
