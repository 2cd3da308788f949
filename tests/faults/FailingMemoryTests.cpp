// Every allocation of a public operation fails: the first, the second, and so on until the operation passes. It then
// gives a code that is documented, leaks nothing, leaves no stale error information, and leaves what its row says.
#include <algorithm>

#include "tests/faults/FailingMemoryTest.h"
#include "tests/support/Effort.h"
#include "tests/support/ErrorInfo.h"
#include "tests/support/FailingAllocations.h"
#include "tests/support/FixedClock.h"
#include "tests/support/LogCapture.h"

namespace zupm::test {

namespace {

/// Longer than any operation takes.
constexpr int kMostAllocations = 1'000'000;

/// A failing call says what failed or, when it has no memory for that, says nothing.
void ExpectErrorInformation(HRESULT code)
{
    const ErrorInformation left = TakeErrorInformation();
    if (code >= 0) {
        EXPECT_FALSE(left.present);
    } else if (left.present) {
        EXPECT_EQ(left.description, result::SentenceFor(code));
        if (code == result::Unexpected) {
            EXPECT_NE(left.description.find(u"memory"), left.description.npos) << "the sentence names what happened";
        }
    }
}

}  // namespace

void PrintTo(const Operation& operation, std::ostream* out)
{
    *out << operation.name;
}

std::string NameOf(const testing::TestParamInfo<Operation>& info)
{
    return info.param.name;
}

bool FailingMemory::RunWith(int number, bool forEver)
{
    const Operation& operation = GetParam();
    World world(m_folder);
    if (operation.prepare != nullptr) {
        operation.prepare(world);
    }
    const Sight before = world.OfAll();
    LeaveStaleErrorInformation();
    HRESULT code = S_OK;
    bool happened = false;
    {
        const FailingAllocation failing(number, forEver);
        code = operation.run(world);
        happened = failing.Happened();
    }
    if (operation.isMember) {
        ExpectErrorInformation(code);
    }
    if (code >= 0) {
        operation.afterSuccess(world);
        return happened;
    }
    EXPECT_TRUE(happened);
    NoteCode(code);
    operation.afterFailure(world, before);
    if (operation.recover != nullptr) {
        operation.recover(world);
    }
    EXPECT_EQ(operation.run(world), S_OK);
    operation.afterSuccess(world);
    return happened;
}

void FailingMemory::NoteCode(HRESULT code)
{
    const std::vector<HRESULT>& known = GetParam().codes;
    const auto place = std::ranges::find(known, code);
    ASSERT_TRUE(place != known.end()) << "the code " << code << " is not one of the operation's";
    m_isSeen[static_cast<std::size_t>(place - known.begin())] = true;
}

void FailingMemory::ExpectEveryCode() const
{
    for (std::size_t i = 0; i < m_isSeen.size(); ++i) {
        EXPECT_TRUE(m_isSeen[i]) << "the code " << GetParam().codes[i] << " was never returned";
    }
}

void FailingMemory::FailEachAllocation(bool forEver)
{
    LogCapture log;                      // so that log lines are made, and allocate
    RunWith(kMostAllocations, forEver);  // fills what is kept for good
    static_cast<void>(TakeErrorInformation());
    static_cast<void>(log.Take());
    const int stride = FaultStride(GetParam().stride);
    int number = 1;
    int failures = -1;
    for (bool happened = true; happened && !HasFailure(); number += stride, ++failures) {
        ASSERT_LT(number, kMostAllocations) << "it never passed";
        SCOPED_TRACE(testing::Message() << "allocation " << number << (forEver ? " and all later ones" : ""));
        const long live = LiveAllocations();
        happened = RunWith(number, forEver);
        static_cast<void>(TakeErrorInformation());
        static_cast<void>(log.Take());
        // The framework keeps failures in memory of its own.
        EXPECT_TRUE(HasFailure() || LiveAllocations() == live) << LiveAllocations() - live << " blocks were not freed";
    }
    EXPECT_TRUE(HasFailure() || failures >= GetParam().fewestFailures) << failures;
    RecordProperty(forEver ? "failures for good" : "failures for once", failures);
}

void EverythingIsAsBefore(World& world, const Sight& before)
{
    EXPECT_EQ(world.OfAll(), before);
}

TEST_P(FailingMemory, IsReportedWithoutALossALeakOrHalfAChange)
{
    const FixedClock clock;
    FailEachAllocation(false);
    FailEachAllocation(true);
    ExpectEveryCode();
}

}  // namespace zupm::test
