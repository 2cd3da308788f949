// Several writers of one registry file at once.
#include <sys/wait.h>
#include <unistd.h>

#include <thread>
#include <vector>

#include "tests/comrt/RegistryTest.h"
#include "zuPolicyManager/Owners.h"

namespace zupm::test {
namespace {

constexpr int kWriters = 2;
constexpr int kValues = 40;

class RegistrySharing : public RegistryTest {
protected:
    static std::u16string NameOf(int writer, int value)
    {
        return Utf16("writer " + std::to_string(writer) + " value " + std::to_string(value));
    }
    /// Whether every value was written.
    static bool WriteAll(int writer)
    {
        bool all = true;
        for (int value = 0; value < kValues; ++value) {
            const std::u16string name = NameOf(writer, value);
            all = ZuRegistrySetValue(u"Shared\\Key", name.c_str(), name.c_str()) == S_OK && all;
        }
        return all;
    }
    static void ExpectAll()
    {
        for (int writer = 0; writer < kWriters; ++writer) {
            for (int value = 0; value < kValues; ++value) {
                const std::u16string name = NameOf(writer, value);
                EXPECT_EQ(Value(u"Shared\\Key", name.c_str()), name);
            }
        }
    }
};

TEST_F(RegistrySharing, TwoProcessesLoseNoChangeAndAReaderNeverSeesABadFile)
{
    pid_t children[kWriters]{};
    for (int writer = 0; writer < kWriters; ++writer) {
        children[writer] = ::fork();
        ASSERT_GE(children[writer], 0);
        if (children[writer] == 0) {
            ::_exit(WriteAll(writer) ? 0 : 1);
        }
    }
    int running = kWriters;
    while (running > 0) {
        Bstr value;
        const HRESULT read = ZuRegistryGetValue(u"Shared\\Key", NameOf(0, 0).c_str(), value.Put());
        EXPECT_TRUE(read == S_OK || read == static_cast<HRESULT>(0x80070002u)) << read;
        int status = 0;
        if (const pid_t ended = ::waitpid(-1, &status, WNOHANG); ended > 0) {
            EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
            --running;
        }
    }
    ExpectAll();
}

TEST_F(RegistrySharing, TwoThreadsLoseNoChange)
{
    std::vector<std::thread> threads;
    for (int writer = 0; writer < kWriters; ++writer) {
        threads.emplace_back([writer] { EXPECT_TRUE(WriteAll(writer)); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    ExpectAll();
}

}  // namespace
}  // namespace zupm::test
