// The example that the demo works on.
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/Difference.h"
#include "tests/support/PolicyFileClient.h"
#include "tests/support/TempFolder.h"

namespace zupm::test {
namespace {

TEST(ExampleFile, WritesBackByteIdenticalWhenNothingIsEdited)
{
    const std::u16string example = std::filesystem::path(ZUPM_EXAMPLE).u16string();
    const TempFolder folder;
    PolicyFileClient file;
    ASSERT_EQ(file.Load(example), 0);
    ASSERT_EQ(file.Write(folder.Path(u"out.xml")), 0);
    const std::string before = ReadBytes(example);
    const std::string after = folder.Read(u"out.xml");
    ASSERT_FALSE(before.empty());
    EXPECT_TRUE(before == after) << Difference(before, after);
}

}  // namespace
}  // namespace zupm::test
