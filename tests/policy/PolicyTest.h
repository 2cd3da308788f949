/// What the tests of product policies share.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "tests/support/Difference.h"
#include "tests/support/ErrorInfo.h"
#include "tests/support/FixedClock.h"
#include "tests/support/ForeignObjects.h"
#include "tests/support/LogCapture.h"
#include "tests/support/MemberCall.h"
#include "tests/support/PolicyFileClient.h"
#include "tests/support/TempFolder.h"

namespace zupm::test {

/// A policy file object with a file of its own, a stopped clock and a captured log.
class PolicyTest : public testing::Test {
protected:
    /// Loads a file whose one "PolicyGroup" holds `policies`.
    void LoadPolicies(std::string_view policies)
    {
        const std::string text = "<File>\n<PolicyRoot>\n<PolicyGroup Path=\"p\">\n" + std::string(policies) +
                                 "</PolicyGroup>\n</PolicyRoot>\n</File>\n";
        ASSERT_EQ(m_file.Load(m_folder.Write(u"policy.xml", text)), 0);
        m_before = Utf8(m_file.Buffer().value());
    }
    /// The lines by which the file's document differs from what was loaded.
    [[nodiscard]] std::string Changes() const { return Difference(m_before, Utf8(m_file.Buffer().value())); }

    FixedClock m_clock;
    LogCapture m_log;
    TempFolder m_folder;
    PolicyFileClient m_file;
    std::string m_before;
};

[[nodiscard]] inline TextResult Ok(std::u16string_view text)
{
    return {0, std::u16string(text)};
}

}  // namespace zupm::test
