/// Base of the tool's tests.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "ToolProcess.h"
#include "tests/support/Difference.h"
#include "tests/support/TempFolder.h"

namespace zupm::test {

/// A folder of its own, in which the tool runs, with the sample file as policy.xml.
class ToolTest : public testing::Test {
protected:
    ToolTest();

    /// Runs the tool; what it prints as JSON must fit its schemas.
    [[nodiscard]] ToolRun Tool(const std::vector<std::string>& arguments) const;
    /// As Tool, with a file of the folder as standard input.
    [[nodiscard]] ToolRun ToolReading(std::u16string_view file, const std::vector<std::string>& arguments) const;
    /// Runs the tool, expects success and no message, and returns its output.
    [[nodiscard]] std::string Out(const std::vector<std::string>& arguments) const;

    [[nodiscard]] const TempFolder& Folder() const { return m_folder; }
    [[nodiscard]] std::string Bytes(std::u16string_view name = u"policy.xml") const { return m_folder.Read(name); }
    /// The sample's lines that policy.xml no longer has, and those it has instead; without white space around them and
    /// with each time stamp of this run as "(now)".
    [[nodiscard]] std::string Changes(std::u16string_view name = u"policy.xml") const;

private:
    TempFolder m_folder;
    std::string m_sample;
};

/// A run that failed with this exit code and message, and printed no data, except for the failure as JSON.
testing::Matcher<const ToolRun&> Fails(int exitCode, const testing::Matcher<std::string>& message);

/// The whole text matches an ECMAScript regular expression (GoogleTest's own know no character classes on Windows).
[[nodiscard]] testing::Matcher<std::string> MatchesPattern(const std::string& pattern);

/// UTF-8 with LF of a UTF-16 LE file.
[[nodiscard]] std::string Decoded(std::string_view utf16);

/// A small policy file whose body is this.
[[nodiscard]] std::string SmallFile(std::string_view policyContent, std::string_view taskRootContent = "");

}  // namespace zupm::test
