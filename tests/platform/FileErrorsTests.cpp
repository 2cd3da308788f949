#include "platform/posix/FileErrors.h"

#include <gtest/gtest.h>

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

// On some systems two names are one number.
TEST(FileErrors, NoErrorNumber_HasTwoCodes)
{
    for (const ErrorMeaning& row : kErrorMeanings) {
        EXPECT_EQ(CodeOfError(row.number), row.code) << row.number;
    }
}

}  // namespace
}  // namespace zupm::native
