// Depth: nothing recurses, so a million levels work on a small stack.
#include <gtest/gtest.h>

#include "OddFileParts.h"
#include "tests/support/PolicyFileClient.h"
#include "tests/support/SmallStackThread.h"
#include "tests/support/TempFolder.h"

namespace zupm::test {

namespace {

constexpr std::size_t kLevels = ZUPM_DEEP_LEVELS;

/// A policy file whose product and task each hold a tree of that depth.
std::string DeepFile(const std::string& tree)
{
    return "<R><PolicyRoot version='12'><PolicyGroup Path=''><Policy PathID='0_4' PolicyVersion='12'>"
           "<Product SoftwareID='P1'>" +
           tree +
           "<Section name='S'><Setting name='N'>V</Setting></Section></Product></Policy></PolicyGroup>"
           "</PolicyRoot><TaskRoot version='0'><TaskGroup SoftwareID='P1' TaskID='T1'><Task>" +
           tree + "</Task></TaskGroup></TaskRoot></R>";
}

}  // namespace

TEST(DeepDocuments, MillionLevels_LoadAndAreWrittenByteIdenticalOnASmallStack)
{
    const TempFolder folder;
    const std::string bytes = DeepFile(Nested(kLevels));
    folder.Write(u"in.xml", bytes);
    RunOnSmallStack([&] {
        PolicyFileClient file;
        ASSERT_EQ(file.Load(folder.Path(u"in.xml")), 0);
        ASSERT_EQ(file.Write(folder.Path(u"out.xml")), 0);
    });
    EXPECT_TRUE(folder.Read(u"out.xml") == bytes);
}

TEST(DeepDocuments, MillionLevels_AreHandedOutAsObjectsAndAddedBackOnASmallStack)
{
    const TempFolder folder;
    const std::string tree = Nested(kLevels);
    folder.Write(u"in.xml", DeepFile(tree));
    RunOnSmallStack([&] {
        PolicyFileClient file;
        ASSERT_EQ(file.Load(folder.Path(u"in.xml")), 0);
        ProductClient product = file.Policy(u"P1");
        ASSERT_EQ(product.Put(u"S", u"N", u"new"), 0);
        ASSERT_EQ(file.Add(product), 0);
        ASSERT_EQ(file.Add(file.Task(u"P1", u"T1")), 0);
        ASSERT_EQ(file.RemoveTask(u"P1", u"T1"), 0);
        ASSERT_EQ(file.Write(folder.Path(u"out.xml")), 0);
    });
    const std::string written = folder.Read(u"out.xml");
    EXPECT_NE(written.find(tree + "<Section name='S'><Setting name='N'>new</Setting>"), std::string::npos);
    EXPECT_NE(written.find("<TaskRoot version='0'></TaskRoot>"), std::string::npos);
}

TEST(DeepDocuments, MillionLevelsThatAreNeverClosed_AreASyntaxErrorOnASmallStack)
{
    const TempFolder folder;
    std::string text;
    for (std::size_t i = 0; i < kLevels; ++i) {
        text += "<d>";
    }
    folder.Write(u"in.xml", text);
    RunOnSmallStack([&] {
        PolicyFileClient file;
        EXPECT_EQ(file.Load(folder.Path(u"in.xml")), result::SyntaxError);
        EXPECT_EQ(file.Buffer(), std::nullopt);
    });
}

}  // namespace zupm::test
