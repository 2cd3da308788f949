// zupolicy doctor with what only this target has: a registry file, and resource modules that are text files.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Installed.h"

namespace zupm::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;

struct BrokenFile {
    const char* name;
    const char* bytes;
};

constexpr BrokenFile kBrokenFiles[] = {
    {"another format", "<registry/>\n"},
    {"cut off in a line", "[CLSID]\n[CLSID\\{A5B589D5-CFB6"},
    {"a value before the first key", "@=\"x\"\n"},
    {"no UTF-8", "[CLSID]\n@=\"\xFF\"\n"},
};

TEST(BrokenRegistry, IsNamedWithWhatToDo)
{
    const Installed installed;
    const std::filesystem::path registry = installed.RegistryFile();
    for (const BrokenFile& broken : kBrokenFiles) {
        WriteBytes(registry.u16string(), broken.bytes);
        const ToolRun run = installed.Tool({"doctor"});
        EXPECT_EQ(run.exitCode, 4) << broken.name;
        EXPECT_THAT(run.out, AllOf(HasSubstr("registered       FAILED  the registry file " + registry.string() +
                                             " cannot be read: it is not in the format of a registry file\n"),
                                   HasSubstr("What to do: Restore it from a copy, or remove it and register the module "
                                             "again.\n")))
            << broken.name;
    }
}

TEST(BrokenRegistry, AFolderInItsPlaceIsNamed)
{
    const Installed installed;
    std::filesystem::create_directories(installed.RegistryFile());
    const ToolRun run = installed.Tool({"doctor"});
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_THAT(run.out, HasSubstr(" cannot be read: Access to the file is denied."));
}

TEST(CutOffTexts, AreNamedWhereverTheFileEnds)
{
    const Installed installed;
    const std::filesystem::path resources = installed.Folder() / "AgentRes.dll";
    for (auto kept = std::filesystem::file_size(resources); kept-- > 0;) {
        std::filesystem::resize_file(resources, kept);
        const ToolRun run = installed.Tool({"doctor"});
        EXPECT_EQ(run.exitCode, 4) << kept;
        EXPECT_THAT(run.out, HasSubstr("resource module  FAILED  " + resources.string() + " ")) << kept;
    }
}

}  // namespace
}  // namespace zupm::test
