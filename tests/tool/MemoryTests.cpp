// Runs with little memory. A sanitizer would take more than these have.
#include <sys/wait.h>

#include <cstdlib>
#include <nlohmann/json.hpp>

#include "ToolTest.h"

namespace zupm::test {
namespace {

using nlohmann::json;

class LittleMemory : public ToolTest {};

TEST_F(LittleMemory, IsAFailureAsJsonOnTheLastLine)
{
    std::string sections;
    for (int i = 0; i < 30; ++i) {
        sections += "<Section name='" + std::string(1'000'000, 's') + "'/>";
    }
    Folder().Write(u"large.xml", SmallFile("<Product SoftwareID='P'>" + sections + "</Product>"));
    int failures = 0;
    for (int kilobytes = 40'000; kilobytes < 130'000; kilobytes += 10'000) {
        const std::string line = "cd '" + Folder().Folder().string() + "' && ulimit -v " + std::to_string(kilobytes) +
                                 " && '" ZUPM_TOOL "' check large.xml --json > out 2> messages";
        const int status = std::system(line.c_str());
        ASSERT_TRUE(WIFEXITED(status)) << kilobytes;
        const std::string out = Bytes(u"out");
        if (json::accept(out)) {
            continue;  // the report is complete, perhaps with the component's own failure
        }
        const std::size_t begin = out.size() < 2 ? 0 : out.rfind('\n', out.size() - 2) + 1;
        const json failure = json::parse(out.substr(begin), nullptr, false);
        ASSERT_TRUE(failure.is_object()) << kilobytes << ": " << out.substr(0, 200);
        EXPECT_EQ(failure["error"]["exit"], 4);
        EXPECT_EQ(failure["error"]["name"], "OutOfMemory");
        EXPECT_NE(Bytes(u"messages"), "");
        ++failures;
    }
    EXPECT_GT(failures, 0);
}

}  // namespace
}  // namespace zupm::test
