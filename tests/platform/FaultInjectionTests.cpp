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
    void FailEveryCall(int error, bool forEver, const std::function<void(const std::string& failedCall)>& body) const
    {
        for (int call = 0; call < 1000; ++call) {
            Prepare();
            const std::size_t openBefore = OpenFileCount();
            std::string failedCall;
            {
                const FaultySystem system({.call = call, .error = error, .forEver = forEver});
                m_operation();
                failedCall = system.FailedCall();
            }
            SCOPED_TRACE(testing::Message() << "call " << call << ", " << failedCall << ", error " << error);
            ASSERT_EQ(OpenFileCount(), openBefore);
            body(failedCall);
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

class ReplaceFaults : public FaultInjection {
protected:
    ReplaceFaults()
    {
        m_operation = [this] { m_code = ReplaceFileAtomically(m_folder.Wide("link"), kNew); };
    }

    /// Old file with a failure, new file with success. Only the folder's flush may fail after the new file is there.
    void ExpectOldOrNew(const std::string& failedCall) const
    {
        const std::string bytes = m_folder.Read("file");
        if (m_code == result::Success) {
            EXPECT_EQ(bytes, kNew);
        } else if (bytes == kNew) {
            EXPECT_EQ(failedCall, "fsync");
            EXPECT_EQ(m_code, result::InputOutputError);
        } else {
            EXPECT_EQ(bytes, kOld);
        }
        // Success is only said when all of these went well.
        for (const std::string_view needed : {"getrandom", "write", "flistxattr", "fchmod", "fsync", "renameat"}) {
            EXPECT_FALSE(m_code == result::Success && failedCall == needed);
        }
        EXPECT_EQ(m_folder.Mode("file"), mode_t{0640});
        EXPECT_TRUE(m_folder.IsLink("link"));
    }

    result::Code m_code = result::Success;
};

TEST_F(ReplaceFaults, AnyCallFailingOnce_LeavesTheOldOrTheNewFileAndNoTemporary)
{
    for (const int error : kErrors) {
        FailEveryCall(error, false, [&](const std::string& failedCall) {
            ExpectOldOrNew(failedCall);
            EXPECT_EQ(m_folder.Names(), (std::vector<std::string>{"file", "link"}));
        });
        EXPECT_EQ(m_code, result::Success);
    }
}

TEST_F(ReplaceFaults, AllCallsFailingFromOneOn_LeaveTheOldOrTheNewFile)
{
    for (const int error : kErrors) {
        FailEveryCall(error, true, [&](const std::string& failedCall) { ExpectOldOrNew(failedCall); });
    }
}

TEST_F(ReplaceFaults, AProcessKilledBeforeAnyCall_LeavesTheOldOrTheNewFileAndAtMostItsTemporary)
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
            EXPECT_GT(call, static_cast<int>(kNew.size())) << "hardly any kill came";
            return;
        }
        if (names.size() == 3) {
            ::unlink(m_folder.Path(names.front()).c_str());
        }
    }
    FAIL() << "the operation never ends";
}

TEST_F(ReplaceFaults, ASignalDuringAnyCall_ChangesNothing)
{
    FailEveryCall(EINTR, false, [&](const std::string& failedCall) {
        // These calls do not wait, so no signal interrupts them.
        if (failedCall != "fstat" && failedCall != "readlinkat" && !failedCall.ends_with("xattr")) {
            EXPECT_EQ(m_code, result::Success);
        }
        EXPECT_EQ(m_folder.Read("file"), m_code == result::Success ? kNew : kOld);
    });
}

TEST_F(ReplaceFaults, WritesOfOneByte_WriteEverything)
{
    Prepare();
    const FaultySystem system({.oneByOne = true});
    m_operation();
    EXPECT_EQ(m_code, result::Success);
    EXPECT_EQ(m_folder.Read("file"), kNew);
}

class ReadFaults : public FaultInjection {
protected:
    ReadFaults()
    {
        m_operation = [this] {
            m_bytes = "what was there before";
            m_code = ReadWholeFile(m_folder.Wide("file"), m_bytes);
        };
    }

    result::Code m_code = result::Success;
    std::string m_bytes;
};

TEST_F(ReadFaults, AnyCallFailing_GivesACodeAndNoBytes)
{
    for (const int error : kErrors) {
        FailEveryCall(error, false, [&](const std::string& failedCall) {
            // What a close after reading says changes nothing.
            const bool fails = !failedCall.empty() && failedCall != "close";
            EXPECT_EQ(m_code == result::Success, !fails);
            EXPECT_EQ(m_bytes, fails ? std::string_view() : kOld);
        });
    }
}

TEST_F(ReadFaults, ReadsOfOneByte_ReadEverything)
{
    Prepare();
    const FaultySystem system({.oneByOne = true});
    m_operation();
    EXPECT_EQ(m_code, result::Success);
    EXPECT_EQ(m_bytes, kOld);
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
        FailEveryCall(error, false, [&](const std::string&) {
            const std::string withSetting = std::string(kOld) + "\r\n[S]\r\nk=v\r\n";
            EXPECT_EQ(m_folder.Read("file"), m_written ? withSetting : std::string(kOld));
            EXPECT_EQ(m_folder.Names(), (std::vector<std::string>{"file", "link"}));
        });
        EXPECT_TRUE(m_written);
    }
}

}  // namespace
}  // namespace zupm::test
