#include "ToolTest.h"

#include <regex>
#include <stdexcept>

#include "Schema.h"
#include "text/Utf.h"

namespace zupm::test {
namespace {

/// Time stamps of this century that the sample does not have: those of 2025 and later.
std::string WithoutTimes(const std::string& text)
{
    static const std::regex stamp("\"20(2[5-9]|[3-9][0-9])[0-9]{10}\"");
    return std::regex_replace(text, stamp, "\"(now)\"");
}

/// Differences without the indentation, which other tests look at.
std::string Trimmed(const std::string& difference)
{
    static const std::regex indent("(^|\n)([-+]) +");
    return std::regex_replace(difference, indent, "$1$2 ");
}

}  // namespace

ToolTest::ToolTest() : m_sample(ReadBytes(std::filesystem::path(ZUPM_SAMPLE).u16string()))
{
    m_folder.Write(u"policy.xml", m_sample);
}

ToolRun ToolTest::Tool(const std::vector<std::string>& arguments) const
{
    ToolRun run = RunTool({m_folder.Folder(), {}}, arguments);
    ExpectJsonOf(arguments, run);
    return run;
}

ToolRun ToolTest::ToolReading(std::u16string_view file, const std::vector<std::string>& arguments) const
{
    ToolRun run = RunTool({m_folder.Folder(), {}, m_folder.Folder() / file}, arguments);
    ExpectJsonOf(arguments, run);
    return run;
}

std::string ToolTest::Out(const std::vector<std::string>& arguments) const
{
    const ToolRun run = Tool(arguments);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.messages, "");
    return run.out;
}

std::string ToolTest::Changes(std::u16string_view name) const
{
    return Trimmed(WithoutTimes(Difference(Decoded(m_sample), Decoded(Bytes(name)))));
}

testing::Matcher<std::string> MatchesPattern(const std::string& pattern)
{
    return testing::Truly(
        [expression = std::regex(pattern)](const std::string& text) { return std::regex_match(text, expression); });
}

testing::Matcher<const ToolRun&> Fails(int exitCode, const testing::Matcher<std::string>& message)
{
    return testing::AllOf(
        testing::Field("exitCode", &ToolRun::exitCode, exitCode),
        testing::Field("messages", &ToolRun::messages, message),
        testing::Field("out", &ToolRun::out, testing::AnyOf("", testing::StartsWith("{\"schema\": 1, \"error\": {"))));
}

std::string Decoded(std::string_view utf16)
{
    if (utf16.substr(0, 2) != "\xFF\xFE") {
        throw std::runtime_error("the file is not UTF-16 with signature any more");
    }
    std::u16string units;
    for (std::size_t i = 2; i + 1 < utf16.size(); i += 2) {
        const auto low = static_cast<unsigned char>(utf16[i]);
        const auto high = static_cast<unsigned char>(utf16[i + 1]);
        if (const auto unit = static_cast<char16_t>(low | (high << 8)); unit != u'\r') {
            units.push_back(unit);
        }
    }
    return ToUtf8Lossy(units);
}

std::string SmallFile(std::string_view policyContent, std::string_view taskRootContent)
{
    return "<File>\n<PolicyRoot>\n<PolicyGroup>\n<Policy>\n" + std::string(policyContent) +
           "</Policy>\n</PolicyGroup>\n</PolicyRoot>\n<TaskRoot>\n" + std::string(taskRootContent) +
           "</TaskRoot>\n</File>\n";
}

}  // namespace zupm::test
