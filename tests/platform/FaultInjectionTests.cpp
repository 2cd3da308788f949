// A replacement whose process is killed before each of its calls, and a setting written while each call fails. What
// else happens when calls fail is part of tests/faults/native.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <functional>

#include "common/PrivateProfile.h"
#include "platform/Files.h"
#include "tests/platform/FaultySystem.h"
#include "tests/platform/TestFolder.h"

namespace zupm::test {
namespace {

constexpr std::string_view kOld = "the old bytes";
constexpr std::string_view kNew = "the new bytes, which are more";

/// A file reached through a link, with a mode, and an attribute where the file system has any.
class FaultInjection : public testing::Test {
protected:
    void Prepare() const
    {
        ::unlink(m_folder.Path("file").c_str());
        ::unlink(m_folder.Path("link").c_str());
        m_folder.Write("file", kOld);
        ASSERT_EQ(::chmod(m_folder.Path("file").c_str(), 0640), 0);
        ASSERT_EQ(::symlink("file", m_folder.Path("link").c_str()), 0);
        static_cast<void>(::setxattr(m_folder.Path("file").c_str(), "user.zupm", "x", 1, 0));
    }

    /// Runs `body` on a fresh file with the first, the second, ... call failing, until it passes without a failure.
    void FailEveryCall(int error, const std::function<void()>& body) const
    {
        for (int call = 0; call < 1000; ++call) {
            Prepare();
            const std::size_t openBefore = OpenFileCount();
            std::string failedCall;
            {
                const FaultySystem system({.call = call, .error = error});
                m_operation();
                failedCall = system.FailedCall();
            }
            SCOPED_TRACE(testing::Message() << "call " << call << ", " << failedCall << ", error " << error);
            ASSERT_EQ(OpenFileCount(), openBefore);
            body();
            if (HasFatalFailure() || failedCall.empty()) {
                EXPECT_GT(call, 3) << "the operation made hardly any calls";
                return;
            }
        }
        FAIL() << "the operation never ends";
    }

    TestFolder m_folder;
    std::function<void()> m_operation;
};

constexpr int kErrors[] = {EIO, ENOSPC, EACCES, ENOMEM, EROFS, EDQUOT, EMFILE};

class KilledReplacement : public FaultInjection {
protected:
    KilledReplacement()
    {
        m_operation = [this] { m_code = ReplaceFileAtomically(m_folder.Wide("link"), kNew); };
    }

    result::Code m_code = result::Success;
};

TEST_F(KilledReplacement, BeforeAnyCall_LeavesTheOldOrTheNewFileAndAtMostItsTemporary)
{
    for (int call = 0; call < 1000; ++call) {
        Prepare();
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            const FaultySystem system({.call = call, .oneByOne = true, .kills = true});
            m_operation();
            ::_exit(m_code == result::Success ? 0 : 1);
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        const std::string bytes = m_folder.Read("file");
        ASSERT_TRUE(bytes == kOld || bytes == kNew) << call << ": " << bytes;
        ASSERT_EQ(m_folder.Mode("file"), mode_t{0640}) << call;
        ASSERT_TRUE(m_folder.IsLink("link")) << call;
        const std::vector<std::string> names = m_folder.Names();
        ASSERT_LE(names.size(), 3U) << call;
        if (WIFEXITED(status)) {
            EXPECT_EQ(WEXITSTATUS(status), 0);
            EXPECT_EQ(bytes, kNew);
            EXPECT_EQ(names.size(), 2U) << "a call that returns leaves no temporary";
            EXPECT_GT(call, static_cast<int>(kNew.size())) << "the process was hardly ever killed";
            return;
        }
        if (names.size() == 3) {
            ::unlink(m_folder.Path(names.front()).c_str());
        }
    }
    FAIL() << "the operation never ends";
}

class ProfileFaults : public FaultInjection {
protected:
    ProfileFaults()
    {
        m_operation = [this] { m_written = WritePrivateProfileStringW(u"S", u"k", u"v", m_folder.Wide("link")); };
    }

    bool m_written = false;
};

TEST_F(ProfileFaults, AnyCallFailing_WritesTheSettingOrLeavesTheFile)
{
    for (const int error : kErrors) {
        FailEveryCall(error, [&] {
            const std::string withSetting = std::string(kOld) + "\r\n[S]\r\nk=v\r\n";
            EXPECT_EQ(m_folder.Read("file"), m_written ? withSetting : std::string(kOld));
            EXPECT_EQ(m_folder.Names(), (std::vector<std::string>{"file", "link"}));
        });
        EXPECT_TRUE(m_written);
    }
}

}  // namespace
}  // namespace zupm::test
