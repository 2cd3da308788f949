// Objects that come and go on many threads, and the log that is written meanwhile.
#include <gtest/gtest.h>

#include "Together.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TempFolder.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm::test {

namespace {

constexpr int kThreads = 8;
constexpr int kRounds = 100;

}  // namespace

TEST(Lifetimes, ObjectsCreatedAndDestroyedByManyThreads_AlwaysComeToLife)
{
    std::vector<Round> work;
    for (int thread = 0; thread < kThreads; ++thread) {
        work.emplace_back([](int) {
            const ComPtr<IPolicyFile> file = Create<IPolicyFile>();
            const ComPtr<ITaskInfo> tasks = Create<ITaskInfo>();
            EXPECT_EQ(TaskClient(Create<IPolicyTask>()).TaskID(), (TextResult{0, u"invalid"}));
            EXPECT_EQ(ProductClient(Create<IPolicyProduct>()).SoftwareID(), (TextResult{0, u"SoftwareID"}));
        });
    }
    RunTogether(work, kRounds);
}

TEST(Lifetimes, LastReferenceReleasedOnAnyThread_DestroysTheObjectOnce)
{
    for (int i = 0; i < kRounds; ++i) {
        const ComPtr<IPolicyProduct> shared = Create<IPolicyProduct>();
        RunTogether(std::vector<Round>(kThreads,
                                       [copy = shared](int) {
                                           const ComPtr<IDispatch> dispatch = copy.Query<IDispatch>();
                                           EXPECT_TRUE(dispatch);
                                       }),
                    3);
    }
}

TEST(Lifetimes, LogWrittenWhileTheResourceModuleComesAndGoes_HasItsTextOrTheOperationAlone)
{
    const TempFolder folder;
    const std::u16string duplicates = folder.Write(
        u"policy.xml",
        "<R><PolicyRoot><PolicyGroup><Policy><Product SoftwareID='A'/><Product SoftwareID='A'/></Policy></PolicyGroup>"
        "</PolicyRoot></R>");
    LogCapture log;
    std::vector<Round> work;
    for (int thread = 0; thread < kThreads; ++thread) {
        work.emplace_back([&duplicates, thread](int) {
            if (thread % 2 == 0) {
                ProductClient product(Create<IPolicyProduct>());
                EXPECT_EQ(product.Put(u"S", u"N", u"\x01"), result::Unexpected);
            } else {
                PolicyFileClient file;
                EXPECT_EQ(file.Load(duplicates), 0);
            }
        });
    }
    RunTogether(work, kRounds);

    const std::string operation = "CXMLDataObject::SetSettingValue()";
    const LogLine duplicate{8, "CPolicyFile::InitializePolicyMap() -- SoftwareID A exists already in the policy map"};
    std::size_t exceptions = 0;
    for (const LogLine& line : log.Take()) {
        if (line != duplicate) {
            ++exceptions;
            EXPECT_TRUE(line == (LogLine{1, operation}) || line == (LogLine{1, "Unexpected exception in " + operation}))
                << line.text;
        }
    }
    EXPECT_EQ(exceptions, static_cast<std::size_t>(kThreads / 2 * kRounds));
}

TEST(Lifetimes, FilesLoadedEditedAndDroppedByManyThreads_DoNotMeet)
{
    const TempFolder folder;
    const std::u16string path =
        folder.Write(u"policy.xml", "<R><PolicyRoot><PolicyGroup><Policy/></PolicyGroup></PolicyRoot><TaskRoot/></R>");
    std::vector<Round> work;
    for (int thread = 0; thread < kThreads; ++thread) {
        const std::u16string id = Utf16(std::to_string(thread));
        work.emplace_back([&folder, &path, id](int) {
            PolicyFileClient file;
            ASSERT_EQ(file.Load(path), 0);
            ASSERT_EQ(file.Add(file.NewPolicy(id)), 0);
            ASSERT_EQ(file.Add(file.NewTask(id, id)), 0);
            ASSERT_EQ(file.Write(folder.Path(id + u".xml")), 0);
            PolicyFileClient again;
            ASSERT_EQ(again.Load(folder.Path(id + u".xml")), 0);
            EXPECT_EQ(again.FindPolicy(id), 0);
            EXPECT_EQ(again.Tasks().All(), (std::vector<std::u16string>{id + u"/" + id}));
        });
    }
    RunTogether(work, kRounds / 4);
}

}  // namespace zupm::test
