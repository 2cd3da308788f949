// Every operation of the interfaces at once, by 16 threads on objects that they share, each checking what it gets.
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <iostream>
#include <map>
#include <memory>

#include "MixEntries.h"
#include "MixFields.h"
#include "MixReloads.h"
#include "MixSections.h"
#include "tests/support/Effort.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm::test {

namespace {

constexpr int kThreads = 16;
/// Steps a thread before everybody stops and everything is looked at. An edited document keeps what it no longer uses,
/// so the objects are new then.
constexpr int kSteps = 100;
constexpr int kSeconds = 2;

/// One policy and 50 tasks.
std::string FileText()
{
    std::string text =
        "<R><PolicyRoot version='1' AssignmentList='all'><PolicyGroup Path='0_4'><Policy><Product SoftwareID='s1'/>"
        "</Policy></PolicyGroup></PolicyRoot><TaskRoot version='1'>";
    for (int i = 0; i < 50; ++i) {
        const std::string id = std::to_string(i);
        text += "<TaskGroup SoftwareID='s" + id + "' TaskID='" + id + "'><Task/></TaskGroup>";
    }
    return text + "</TaskRoot></R>";
}

struct SharedObjects {
    SharedObjects()
    {
        EXPECT_EQ(file.Load(path), 0);
        EXPECT_EQ(reloaded.Load(path), 0);
        pairs = file.Tasks();
    }

    TempFolder folder;
    std::u16string path = folder.Write(u"policy.xml", FileText());
    PolicyFileClient file;
    PolicyFileClient reloaded;
    ProductClient product{Create<IPolicyProduct>()};
    TaskClient task{Create<IPolicyTask>()};
    TaskInfoClient pairs{Create<ITaskInfo>()};
};

/// One thread: all its parts, and the dice that choose among their steps.
class Worker {
public:
    Worker(SharedObjects& shared, int thread, unsigned seed)
        : m_random(seed * kThreads + static_cast<unsigned>(thread)),
          m_product(ObjectKind::Product, ComPtr<IDispatch>(shared.product.Object()), thread, m_random),
          m_task(ObjectKind::Task, ComPtr<IDispatch>(shared.task.Object()), thread, m_random),
          m_fields(shared.product, shared.task, shared.pairs, m_task, shared.folder, thread, m_random),
          m_entries(shared.file, shared.product, shared.task, shared.folder, thread, m_random),
          m_reloads(shared.reloaded, shared.path, shared.product, shared.folder, m_random)
    {
        for (auto steps : {m_product.Steps(), m_task.Steps(), m_fields.Steps(), m_entries.Steps(), m_reloads.Steps()}) {
            m_steps.insert(m_steps.end(), steps.begin(), steps.end());
        }
        std::vector<int> weights;
        for (const MixStep& step : m_steps) {
            weights.push_back(step.weight);
        }
        m_dice = std::discrete_distribution<std::size_t>(weights.begin(), weights.end());
        m_counts.resize(m_steps.size());
    }
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    void Step()
    {
        const std::size_t step = m_dice(m_random);
        ++m_counts[step];
        m_steps[step].run();
    }

    void Check(const PolicyFileClient& file)
    {
        m_product.Check();
        m_task.Check();
        m_entries.Check(file);
    }

    void AddCounts(std::map<std::string, int>& counts) const
    {
        for (std::size_t step = 0; step < m_steps.size(); ++step) {
            counts[m_steps[step].name] += m_counts[step];
        }
    }

private:
    Random m_random;
    MixSections m_product;
    MixSections m_task;
    MixFields m_fields;
    MixEntries m_entries;
    MixReloads m_reloads;
    std::vector<MixStep> m_steps;
    std::discrete_distribution<std::size_t> m_dice;
    std::vector<int> m_counts;
};

/// How many checks fail in a call, without failing the test.
template <class Call>
int FailuresOf(Call call)
{
    testing::TestPartResultArray failures;
    const testing::ScopedFakeTestPartResultReporter reporter(
        testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &failures);
    call();
    return failures.size();
}

void RunOnce(unsigned seed, std::map<std::string, int>& counts)
{
    SharedObjects shared;
    std::vector<std::unique_ptr<Worker>> workers;
    std::vector<Round> work;
    for (int thread = 0; thread < kThreads; ++thread) {
        Worker& worker = *workers.emplace_back(std::make_unique<Worker>(shared, thread, seed));
        work.emplace_back([&worker](int) { worker.Step(); });
    }
    RunTogether(work, kSteps);

    const std::u16string path = shared.folder.Path(u"end.xml");
    ASSERT_EQ(shared.file.Write(path), 0);
    PolicyFileClient written;
    ASSERT_EQ(written.Load(path), 0);
    for (const std::unique_ptr<Worker>& worker : workers) {
        worker->Check(shared.file);
        worker->Check(written);
        worker->AddCounts(counts);
    }
}

}  // namespace

TEST(Mix, EveryThreadFindsWhatItPutAndNothingThatIsNotAllowed)
{
    using Clock = std::chrono::steady_clock;
    const Clock::time_point end = Clock::now() + std::chrono::seconds(Effort("ZUPM_MIX_SECONDS", kSeconds));
    auto seed = static_cast<unsigned>(Effort("ZUPM_SEED", 1));
    std::map<std::string, int> counts;
    int rounds = 0;
    do {
        RunOnce(seed++, counts);
        ++rounds;
    } while (Clock::now() < end && !HasFailure());

    int total = 0;
    for (const auto& [name, count] : counts) {
        EXPECT_GT(count, 0) << name << " never came";
        total += count;
    }
    std::cout << total << " operations of " << counts.size() << " kinds by " << kThreads << " threads in " << rounds
              << " rounds; each kind at least "
              << std::ranges::min_element(counts, {}, [](const auto& row) { return row.second; })->second << " times\n";
}

TEST(Mix, WhatSomebodyElseChanged_IsNoticedByItsOwner)
{
    SharedObjects shared;
    Worker owner(shared, 0, 1);
    EXPECT_EQ(FailuresOf([&] { owner.Check(shared.file); }), 0);

    ASSERT_EQ(shared.product.Put(u"a0", u"n0", u"an intruder's"), 0);
    EXPECT_GT(FailuresOf([&] { owner.Check(shared.file); }), 0);
    ASSERT_EQ(shared.product.RemoveSection(u"a0"), 0);
    EXPECT_EQ(FailuresOf([&] { owner.Check(shared.file); }), 0);

    ASSERT_EQ(shared.file.Add(shared.file.NewTask(u"thread0", u"thread0-1")), 0);
    EXPECT_GT(FailuresOf([&] { owner.Check(shared.file); }), 0);
}

}  // namespace zupm::test
