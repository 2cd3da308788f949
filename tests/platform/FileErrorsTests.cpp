#include "platform/posix/FileErrors.h"

#include <gtest/gtest.h>

#include <set>

namespace zupm::native {
namespace {

TEST(FileErrors, EveryErrorNumber_HasANegativeCodeWithASentence)
{
    for (int number = 1; number < 140; ++number) {
        const result::Code code = CodeOfError(number);
        EXPECT_LT(code, 0) << number;
        EXPECT_FALSE(result::SentenceFor(code).empty()) << number;
    }
    EXPECT_EQ(CodeOfError(EIO), result::InputOutputError);
}

TEST(FileErrors, NoErrorNumber_HasTwoRows)
{
    std::set<int> numbers;
    for (const ErrorMeaning& row : kErrorMeanings) {
        EXPECT_TRUE(numbers.insert(row.number).second) << row.number;
        EXPECT_EQ(CodeOfError(row.number), row.code) << row.number;
    }
}

}  // namespace
}  // namespace zupm::native
