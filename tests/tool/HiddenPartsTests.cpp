// Which parts of a file's text are hidden. No command prints them by themselves, so the function is called directly.
#include "tools/zupolicy/report/Redaction.h"

#include <gtest/gtest.h>

namespace zupm::test {
namespace {

using tool::Redaction;

/// The text with kHidden in place of each hidden part.
std::string RedactedSource(const Redaction& redaction, std::string_view text)
{
    std::string result;
    std::size_t copied = 0;
    for (const tool::TextPart& part : HiddenParts(redaction, text)) {
        result += text.substr(copied, part.begin - copied);
        result += tool::kHidden;
        copied = part.end;
    }
    return result.append(text.substr(copied));
}

TEST(HiddenParts, AreEveryHiddenValueAndNothingElse)
{
    const Redaction redaction({"Password", "Task/TaskName"});
    struct Row {
        const char* before;
        const char* after;
    };
    const Row rows[] = {
        {"<S name='L'><s name='Password'>x</s><s name='U'>x</s></S>",
         "<S name='L'><s name='Password'>***</s><s name='U'>x</s></S>"},
        {"<S name='L'>\n<s name='Password'>a\nb<![CDATA[</s>]]><c>x</c></s >\n</S>",
         "<S name='L'>\n<s name='Password'>***</s >\n</S>"},
        {"<S name='L'><s name='Password'/><s name='Password'></s><s name='Password'>y</s></S>",
         "<S name='L'><s name='Password'/><s name='Password'>***</s><s name='Password'>***</s></S>"},
        {"<S name='L'><s name='Pass&#119;ord'>x</s></S>", "<S name='L'><s name='Pass&#119;ord'>***</s></S>"},
        {"<S><s name='Password'>x</s></S>", "<S><s name='Password'>x</s></S>"},
        {"<TaskRoot><TaskGroup DisplayName='a' TaskID=\"T\"/></TaskRoot>",
         "<TaskRoot><TaskGroup DisplayName='***' TaskID=\"T\"/></TaskRoot>"},
        {"<F><TaskRoot><S name='Task'><s name='TaskName'>x</s></S></TaskRoot></F>",
         "<F><TaskRoot><S name='Task'><s name='TaskName'>***</s></S></TaskRoot></F>"},
        // Not well-formed: what follows may be anything.
        {"<S name='L'><s name='Password'>x", "<S name='L'><s name='Password'>***"},
        {"<S name='L'><s name='U'>x</s><s name=\"Password>x</s>", "<S name='L'><s name='U'>x</s>***"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(RedactedSource(redaction, row.before), row.after) << row.before;
        EXPECT_EQ(RedactedSource(Redaction(), row.before), row.before);
    }
}

}  // namespace
}  // namespace zupm::test
