// The text of a file without secrets. No command prints it by itself, so the function is called directly.
#include "tools/zupolicy/report/Redaction.h"

#include <gtest/gtest.h>

namespace zupm::test {
namespace {

using tool::RedactedSource;
using tool::Redaction;

TEST(RedactedSource, ReplacesEveryHiddenValueAndNothingElse)
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
