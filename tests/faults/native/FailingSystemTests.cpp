// Every system call of a public operation fails: the first, the second, and so on until the operation passes. It
// then gives a code of its own, opens no file that it does not close, and leaves what its row says.
#include "tests/faults/native/FailingSystemTest.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <span>

#include "platform/posix/FileErrors.h"
#include "tests/platform/FaultySystem.h"
#include "tests/platform/TestFolder.h"
#include "tests/support/Effort.h"
#include "tests/support/FixedClock.h"

namespace zupm::test {

namespace {

constexpr int kMostCalls = 5000;
constexpr int kErrors[] = {EIO, ENOSPC, EDQUOT, EACCES, EMFILE, EROFS, ENOMEM};

/// Nothing fails, and nothing waits for the disk.
constexpr Fault kQuick{.skipsFlushes = true};

}  // namespace

void PrintTo(const FileOperation& operation, std::ostream* out)
{
    *out << operation.name;
}

std::string NameOf(const testing::TestParamInfo<FileOperation>& info)
{
    return info.param.name;
}

Outcome FailingSystem::RunWith(int call, int error, bool forEver)
{
    const FileOperation& operation = GetParam();
    std::optional<FaultySystem> quick(kQuick);
    World world(m_folder);
    if (operation.prepare != nullptr) {
        operation.prepare(world);
    }
    const Sight before = world.OfAll();
    quick.reset();
    const std::size_t openBefore = OpenFileCount();
    Outcome outcome{S_OK, error, forEver, {}};
    {
        const FaultySystem system({.call = call, .error = error, .forEver = forEver, .skipsFlushes = true});
        outcome.code = operation.run(world);
        outcome.failedCall = system.FailedCall();
    }
    EXPECT_EQ(OpenFileCount(), openBefore);
    EXPECT_TRUE(outcome.code == S_OK || !outcome.failedCall.empty());
    quick.emplace(kQuick);
    operation.check(world, before, outcome);
    return outcome;
}

void FailingSystem::FailEachCall(int error, bool forEver)
{
    const int stride = FaultStride(GetParam().stride);
    for (int call = 0; !HasFailure(); call += stride) {
        ASSERT_LT(call, kMostCalls) << "it never passed";
        SCOPED_TRACE(testing::Message() << "call " << call << (forEver ? " and all later ones" : "") << ", error "
                                        << error);
        if (const Outcome outcome = RunWith(call, error, forEver); outcome.failedCall.empty()) {
            EXPECT_EQ(outcome.code, S_OK);
            EXPECT_GT(call, 2) << "the operation makes hardly any calls";
            RecordProperty(std::string("failures of error ") + std::to_string(error) + (forEver ? " for good" : ""),
                           call / stride);
            return;
        }
    }
}

TEST_P(FailingSystem, OnceOrForGood_IsReportedAndNothingIsLostTornOrLeftOpen)
{
    const FixedClock clock;
    for (const int error : std::span(kErrors).first(GetParam().errors)) {
        FailEachCall(error, false);
        FailEachCall(error, true);
    }
}

TEST_P(FailingSystem, ASignalDuringAnyCall_ChangesNothingOrIsReported)
{
    const FixedClock clock;
    FailEachCall(EINTR, false);
}

TEST_P(FailingSystem, ReadingAndWritingOneByteAtATime_IsNotNoticed)
{
    const FixedClock clock;
    World world(m_folder);
    if (GetParam().prepare != nullptr) {
        GetParam().prepare(world);
    }
    const Sight before = world.OfAll();
    HRESULT code = S_OK;
    {
        const FaultySystem system({.oneByOne = true, .skipsFlushes = true});
        code = GetParam().run(world);
    }
    EXPECT_EQ(code, S_OK);
    GetParam().check(world, before, {});
}

std::string NativePath(const World& world, std::u16string_view name)
{
    return Utf8(world.folder.Path(name));
}

void ExpectCodeOfTheError(const Outcome& outcome)
{
    if (outcome.code != S_OK) {
        EXPECT_TRUE(outcome.code == native::CodeOfError(outcome.error) || outcome.code == result::InputOutputError)
            << std::hex << outcome.code << " for " << outcome.failedCall;
        EXPECT_FALSE(result::SentenceFor(outcome.code).empty());
    }
}

void ExpectNoTemporary(const World& world, const Outcome& outcome)
{
    const std::vector<std::string> names = world.folder.Names();
    const auto count = std::ranges::count_if(names, [](const std::string& name) { return name.ends_with(".tmp"); });
    EXPECT_LE(count, outcome.forEver || outcome.failedCall == "unlinkat" ? 1 : 0);
}

void ExpectNothingLost(const World& world, const Sight& before)
{
    const Sight file = world.OfFile();
    EXPECT_TRUE(std::equal(file.lookups.begin(), file.lookups.end(), before.lookups.begin()));
    const PolicyFileClient reader = world.ReadBack();
    EXPECT_EQ(reader.Policy(kProduct).Data(), world.product.Data());
    EXPECT_EQ(reader.Tasks().All(), world.file.Tasks().All());
    EXPECT_EQ(reader.Task(kProduct, kTask).Get(kSection, kSetting), (TextResult{0, kValue}));
}

}  // namespace zupm::test
