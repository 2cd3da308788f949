/// What the tests of the policy file object share.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/support/ErrorInfo.h"
#include "tests/support/FixedClock.h"
#include "tests/support/LogCapture.h"
#include "tests/support/Outs.h"
#include "tests/support/PolicyFileClient.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TextEdit.h"

namespace zupm::test {

/// The stamp of FixedClock's time.
inline constexpr char kStamp[] = "20260102030405";

/// A policy file object, and a folder for the files that it loads and writes.
class PolicyFileTest : public ::testing::Test {
protected:
    /// Loads a file with that text; the result of the load.
    HRESULT LoadText(std::string_view text, LONG readOnly = 0)
    {
        return m_file.Load(m_folder.Write(u"policy.xml", text), readOnly);
    }

    /// Writes another file, which must succeed, and gives its bytes.
    [[nodiscard]] std::string WriteOut()
    {
        EXPECT_EQ(m_file.Write(m_folder.Path(u"out.xml")), result::Success);
        return m_folder.Has(u"out.xml") ? m_folder.Read(u"out.xml") : std::string();
    }

    TempFolder m_folder;
    PolicyFileClient m_file;
};

/// The description of the last failing call of this thread.
[[nodiscard]] inline std::u16string LastErrorDescription()
{
    return TakeErrorInformation().description;
}

}  // namespace zupm::test
