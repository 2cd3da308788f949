/// What the tests of product policies and those of tasks share.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "tests/support/Difference.h"
#include "tests/support/ErrorInfo.h"
#include "tests/support/FixedClock.h"
#include "tests/support/LogCapture.h"
#include "tests/support/MemberCall.h"
#include "tests/support/Outs.h"
#include "tests/support/PolicyFileClient.h"
#include "tests/support/TempFolder.h"

namespace zupm::test {

/// A policy file object with a file of its own, a stopped clock and a captured log.
class EntryTest : public testing::Test {
protected:
    void Load(std::string_view text)
    {
        ASSERT_EQ(m_file.Load(m_folder.Write(u"policy.xml", text)), 0);
        m_before = Utf8(m_file.Buffer().value());
    }
    /// The lines by which the file's document differs from what was loaded.
    [[nodiscard]] std::string Changes() const { return Difference(m_before, Utf8(m_file.Buffer().value())); }

    /// The members of a product or task that list its sections.
    template <class Client>
    [[nodiscard]] static ComPtr<IPolicySections> SectionsOf(const Client& entry)
    {
        return ComPtr<IUnknown>(entry.Object()).Query<IPolicySections>();
    }
    template <class Client>
    [[nodiscard]] static std::u16string TakenVersionOf(const Client& entry)
    {
        OutText version;
        EXPECT_EQ(SectionsOf(entry)->get_TakenVersion(version.Slot()), 0);
        return version.Text();
    }
    /// `source` is the program ID of the object's class.
    static void ExpectNullSlotsAreRefused(IPolicySections& sections, std::u16string_view source)
    {
        const Bstr missing(u"missing");
        EXPECT_EQ(sections.get_SectionNames(nullptr), result::BadArgument);
        EXPECT_EQ(sections.GetSettingNames(missing.Get(), nullptr), result::BadArgument);
        EXPECT_EQ(sections.GetStoredSetting(missing.Get(), missing.Get(), nullptr), result::BadArgument);
        EXPECT_EQ(sections.get_TakenVersion(nullptr), result::BadArgument);
        const ErrorInformation information = TakeErrorInformation();
        EXPECT_EQ(information.description, result::SentenceFor(result::BadArgument));
        EXPECT_TRUE(information.interfaceId == IID_IPolicySections);
        EXPECT_EQ(information.source, source);
    }

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
