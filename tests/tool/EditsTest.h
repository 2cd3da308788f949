/// Base of the tests of `diff` and `apply`.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ToolTest.h"

namespace zupm::test {

/// Edits go through a file, edits.jsonl.
class EditsTest : public ToolTest {
protected:
    /// Applies edits to policy.xml.
    [[nodiscard]] ToolRun Apply(std::string_view edits, const std::vector<std::string>& options = {}) const
    {
        return ApplyTo({"policy.xml"}, edits, options);
    }
    [[nodiscard]] ToolRun ApplyTo(const std::vector<std::string>& files, std::string_view edits,
                                  const std::vector<std::string>& options = {}) const
    {
        Folder().Write(u"edits.jsonl", edits);
        std::vector<std::string> arguments = {"apply"};
        arguments.insert(arguments.end(), files.begin(), files.end());
        arguments.insert(arguments.end(), {"--edits", "edits.jsonl"});
        arguments.insert(arguments.end(), options.begin(), options.end());
        return Tool(arguments);
    }
    /// What `diff` prints about two files, without versions.
    [[nodiscard]] std::string Differences(const std::string& before, const std::string& after) const
    {
        const ToolRun run = Tool({"diff", before, after, "--ignore-versions"});
        EXPECT_EQ(run.messages, "");
        EXPECT_EQ(run.exitCode, run.out.empty() ? 0 : 1);
        return run.out;
    }
    /// What `diff` prints about the sample and policy.xml.
    [[nodiscard]] std::string Made() const
    {
        Folder().Write(u"sample.xml", ReadBytes(std::filesystem::path(ZUPM_SAMPLE).u16string()));
        return Differences("sample.xml", "policy.xml");
    }
};

}  // namespace zupm::test
