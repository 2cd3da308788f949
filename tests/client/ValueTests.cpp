// The client header's classes as values: copies, what was moved from, lifetimes, threads, changes during a walk.
#include <atomic>
#include <functional>
#include <thread>

#include "ClientTest.h"

namespace zupm::test {
namespace {

using Values = ClientTest;

TEST_F(Values, Copies_ShareTheirObject)
{
    const PolicyFile file = Open();
    const PolicyFile same = file;  // NOLINT(performance-unnecessary-copy-initialization): what it is for
    Policy policy = file.Policy("Scanner");
    const Policy copy = policy;
    policy.Set("General", "Mode", "quick");
    EXPECT_EQ(copy.Value("General", "Mode"), "quick");
    EXPECT_EQ(copy.Get(), policy.Get());
    EXPECT_EQ(file.Get(), same.Get());
    same.RemovePolicy("Updater");
    EXPECT_EQ(file.PolicyIds(), Texts{"Scanner"});
}

TEST_F(Values, WhatWasMovedFrom_IsEmptyAndRefusesEveryCall)
{
    PolicyFile file = Open();
    Policy policy = file.Policy("Scanner");
    Task task = file.Task("Scanner", "Daily");
    Section section = policy.Section("General");
    Setting setting = *section.begin();
    const PolicyFile newFile = std::move(file);
    const Policy newPolicy = std::move(policy);
    const Task newTask = std::move(task);
    const Section newSection = std::move(section);
    const Setting newSetting = std::move(setting);
    // NOLINTBEGIN(bugprone-use-after-move): what it is for
    EXPECT_EQ(file.Get(), nullptr);
    EXPECT_EQ(policy.Get(), nullptr);
    EXPECT_EQ(task.Get(), nullptr);
    const std::function<void()> calls[] = {
        [&] { static_cast<void>(file.Path()); },
        [&] { static_cast<void>(file.Text()); },
        [&] { static_cast<void>(file.Policy("Scanner")); },
        [&] { static_cast<void>(file.FindTask("Scanner", "Daily")); },
        [&] { static_cast<void>(file.Policies()); },
        [&] { static_cast<void>(file.Tasks("Scanner")); },
        [&] { static_cast<void>(file.CreatePolicy("x")); },
        [&] { file.Add(newPolicy); },
        [&] { newFile.Add(policy); },
        [&] { newFile.Add(task); },
        [&] { file.Save(); },
        [&] { file.SaveAs(Path()); },
        [&] { static_cast<void>(policy.SoftwareId()); },
        [&] { static_cast<void>(policy.Section("General")); },
        [&] { static_cast<void>(policy.Sections()); },
        [&] { policy.Set("General", "Mode", "x"); },
        [&] { policy.HandBack(); },
        [&] { policy.Save(); },
        [&] { static_cast<void>(task.Priority()); },
        [&] { task.SetPriority(1); },
        [&] { static_cast<void>(section.Name()); },
        [&] { static_cast<void>(section.begin()); },
        [&] { static_cast<void>(section.Exists()); },
        [&] { section.Set("Mode", "x"); },
        [&] { static_cast<void>(setting.SectionName()); },
        [&] { static_cast<void>(setting.Value()); },
        [&] { setting.Remove(); },
        [&] { static_cast<void>(Edit(file, kPatience)); },
    };
    for (const auto& call : calls) {
        EXPECT_EQ(Thrown<Error>(call).Code(), result::NotInitialised) << &call - calls;
    }
    // NOLINTEND(bugprone-use-after-move)
}

TEST_F(Values, WhatWasMovedTo_Works)
{
    PolicyFile file = Open();
    Policy policy = file.Policy("Updater");
    policy = file.Policy("Scanner");
    Section section = policy.Section("Empty");
    section = policy.Section("General");
    file = PolicyFile(std::move(file));
    EXPECT_EQ(section.Value("Mode"), "full");
    EXPECT_EQ(policy.SoftwareId(), "Scanner");
    EXPECT_EQ(file.PolicyIds().size(), 2u);
}

TEST_F(Values, WhatWasTaken_OutlivesItsFileAndItsPolicy)
{
    const Setting setting = *Open().Policy("Scanner").Section("General").begin();
    EXPECT_EQ(setting.Value(), "1");
    setting.Set("0");
    EXPECT_EQ(setting.Value(), "0");
    Policy policy = Open().Policy("Scanner");
    policy.Set("General", "Mode", "quick").Save();
    EXPECT_EQ(Open().Policy("Scanner").Value("General", "Mode"), "quick");
}

TEST_F(Values, Walk_VisitsTheSettingsThatThereWereWhenItBegan)
{
    const Section section = Open().Policy("Scanner").Section("General");
    Texts seen;
    for (auto& setting : section) {
        seen.push_back(setting.Name());
        section.Set("Added to " + setting.Name(), "x");
        setting.Remove();
    }
    EXPECT_EQ(seen, (Texts{"Enabled", "Mode", "Folder"}));
    EXPECT_EQ(section.Names(), (Texts{"Added to Enabled", "Added to Mode", "Added to Folder"}));
}

TEST_F(Values, Walk_GivesASettingThatIsGoneWithoutAValue)
{
    const Section section = Open().Policy("Scanner").Section("General");
    auto place = section.begin();
    section.Remove("Mode");
    ++place;
    EXPECT_EQ(place->Name(), "Mode");
    EXPECT_THROW(static_cast<void>(place->Value()), NotFound);
}

TEST_F(Values, WalkOverAFile_PassesOverWhatIsGone)
{
    const PolicyFile file = Open();
    Texts policies;
    for (const Policy& policy : file.Policies()) {
        policies.push_back(policy.SoftwareId());
        file.RemovePolicy("Updater");
        file.CreatePolicy("Added").HandBack();
        break;
    }
    const Policies later = file.Policies();
    file.RemovePolicy("Scanner");
    for (const Policy& policy : later) {
        policies.push_back(policy.SoftwareId());
    }
    EXPECT_EQ(policies, (Texts{"Scanner", "Added"}));
    for (auto& task : file.Tasks()) {
        file.RemoveTask(task.SoftwareId(), task.TaskId());
    }
    EXPECT_EQ(file.TaskSoftwareIds(), Texts());
}

TEST_F(Values, WalkOverSections_MayRemoveThem)
{
    Policy policy = Open().Policy("Scanner");
    for (auto& section : policy.Sections()) {
        section.Remove();
    }
    EXPECT_EQ(policy.SectionNames(), Texts());
}

TEST_F(Values, TwoThreads_UseOneFileAndOnePolicy)
{
    constexpr int kRounds = 200;
    const PolicyFile file = Open();
    const Policy policy = file.Policy("Scanner");
    std::atomic<int> failures = 0;
    const auto work = [&](const std::string& name) {
        const Runtime runtime;
        for (int round = 0; round < kRounds; ++round) {
            try {
                policy.Section("General").Set(name, std::to_string(round));
                failures += policy.Value("General", name) == std::to_string(round) ? 0 : 1;
                for (auto& setting : policy.Section("General")) {
                    static_cast<void>(setting.Value());
                }
                file.CreateTask("Scanner", name).HandBack();
                failures += file.Task("Scanner", name).TaskId() == name ? 0 : 1;
                failures += file.FindPolicy("Nobody") ? 1 : 0;
            } catch (const Error&) {
                ++failures;
            }
        }
    };
    std::thread first(work, "first");
    std::thread second(work, "second");
    first.join();
    second.join();
    EXPECT_EQ(failures, 0);
    EXPECT_EQ(policy.Value("General", "first"), policy.Value("General", "second"));
}

TEST_F(Values, ErrorOfAThread_IsItsOwn)
{
    const PolicyFile file = Open();
    std::string other;
    const auto mine = Thrown<NotFound>([&] {
        std::thread([&] {
            const Runtime runtime;
            other = Thrown<NotFound>([&] { static_cast<void>(file.Task("No", "No")); }).Name();
        }).join();
        static_cast<void>(file.Policy("No"));
    });
    EXPECT_EQ(mine.Name(), "PolicyNotFound");
    EXPECT_EQ(other, "TaskNotFound");
}

TEST_F(Values, Runtimes_MayBeNested)
{
    const Runtime outer;
    {
        const Runtime inner;
        EXPECT_EQ(Open().PolicyIds().size(), 2u);
    }
    EXPECT_EQ(Open().PolicyIds().size(), 2u);
}

#ifndef _WIN32
TEST_F(Values, Objects_OutliveTheRuntimeOnTheNativeTarget)
{
    std::optional<Runtime> runtime(std::in_place);
    const Policy policy = Open().Policy("Scanner");
    runtime.reset();
    EXPECT_EQ(policy.Value("General", "Mode"), "full");
}
#endif

}  // namespace
}  // namespace zupm::test
