// A load that runs out of memory while it builds the indexes, and what the loads after it leave.
#include <gtest/gtest.h>

#include <memory>

#include "tests/support/FailingAllocations.h"
#include "tests/support/LogCapture.h"
#include "tests/support/PolicyFileClient.h"
#include "tests/support/TempFolder.h"

namespace zupm::test {

namespace {

constexpr std::u16string_view kFirst =
    u"<R><PolicyRoot><PolicyGroup><Policy><Product SoftwareID='a product of the first file'><Section name='S'>"
    u"<Setting name='N'>first</Setting></Section></Product></Policy></PolicyGroup></PolicyRoot>"
    u"<TaskRoot><TaskGroup SoftwareID='a product of the first file' TaskID='a task of the first file'><Task/>"
    u"</TaskGroup></TaskRoot></R>";

constexpr std::string_view kSecond =
    "<R><PolicyRoot version='0'><PolicyGroup Path='x'><Policy><Product SoftwareID='second'/></Policy></PolicyGroup>"
    "</PolicyRoot></R>";

constexpr std::u16string_view kFirstProduct = u"a product of the first file";

/// A file as UTF-16 with a signature.
std::string Utf16File(std::u16string_view text)
{
    std::string bytes("\xFF\xFE");
    for (const char16_t unit : text) {
        bytes += {static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)};
    }
    return bytes;
}

class LoadAfterAFailedOne : public testing::Test {
protected:
    /// A file object whose load failed as late as it could, so that its policy index has an entry.
    void SetUp() override
    {
        const LogCapture log;
        const Bstr path(m_folder.Write(u"first.xml", Utf16File(kFirst)));
        bool happened = true;
        for (int number = 1; happened; ++number) {
            auto file = std::make_unique<PolicyFileClient>();
            HRESULT code = 0;
            {
                const FailingAllocation failing(number);
                code = file->Object()->InitializeFile(path.Get(), 0);
                happened = failing.Happened();
            }
            if (code == result::Unexpected) {
                m_file = std::move(file);
            }
        }
        ASSERT_TRUE(m_file);
    }

    HRESULT LoadSecond() { return m_file->Load(m_folder.Write(u"second.xml", kSecond)); }

    void ExpectNoDocument()
    {
        EXPECT_EQ(m_file->Buffer(), std::nullopt);
        EXPECT_EQ(m_file->Write(m_folder.Path(u"out.xml")), result::NotInitialised);
        EXPECT_FALSE(m_folder.Has(u"out.xml"));
        EXPECT_EQ(m_file->FindPolicy(kFirstProduct), result::NotInitialised);
    }

    void ExpectTheSecondFileBesideTheFirstOnesEntries()
    {
        EXPECT_EQ(m_file->FindPolicy(u"second"), 0);
        EXPECT_EQ(m_file->Policy(kFirstProduct).Get(u"S", u"N"), (TextResult{0, u"first"}));
        EXPECT_EQ(m_file->Write(m_folder.Path(u"out.xml")), 0);
        EXPECT_EQ(m_folder.Read(u"out.xml"), kSecond) << "in its own encoding";
    }

    TempFolder m_folder;
    std::unique_ptr<PolicyFileClient> m_file;
};

}  // namespace

TEST_F(LoadAfterAFailedOne, FailureWhileIndexing_KeepsTheDocumentAndRefusesLookups)
{
    EXPECT_EQ(m_file->FindPolicy(kFirstProduct), result::NotInitialised);
    EXPECT_EQ(m_file->Buffer(), kFirst);
    EXPECT_EQ(m_file->Write(m_folder.Path(u"out.xml")), 0);
    EXPECT_TRUE(m_folder.Read(u"out.xml").starts_with("\xFF\xFE")) << "in the encoding that it was read in";
}

TEST_F(LoadAfterAFailedOne, TextThatCannotBeParsed_LeavesNoDocument)
{
    EXPECT_EQ(m_file->Load(m_folder.Write(u"broken.xml", "<R>")), result::SyntaxError);
    ExpectNoDocument();
    ASSERT_EQ(LoadSecond(), 0);
    ExpectTheSecondFileBesideTheFirstOnesEntries();
}

TEST_F(LoadAfterAFailedOne, FileThatCannotBeRead_LeavesNoDocument)
{
    EXPECT_EQ(m_file->Load(m_folder.Path(u"missing.xml")), result::FileNotFound);
    ExpectNoDocument();
    ASSERT_EQ(LoadSecond(), 0);
    ExpectTheSecondFileBesideTheFirstOnesEntries();
}

TEST_F(LoadAfterAFailedOne, GoodFile_IsLoadedBesideTheEntriesOfTheFailedLoad)
{
    ASSERT_EQ(LoadSecond(), 0);
    ExpectTheSecondFileBesideTheFirstOnesEntries();
    ASSERT_EQ(LoadSecond(), 0);
    EXPECT_EQ(m_file->FindPolicy(kFirstProduct), result::PolicyNotFound) << "a load after a good one starts anew";
}

TEST_F(LoadAfterAFailedOne, MemoryThatRunsOut_LeavesTheDocumentOfBeforeOrNone)
{
    const Bstr path(m_folder.Write(u"second.xml", kSecond));
    const LogCapture log;
    bool happened = true;
    for (int number = 1; happened; ++number) {
        PolicyFileClient file;
        ASSERT_EQ(file.Load(m_folder.Path(u"missing.xml")), result::FileNotFound);
        HRESULT code = 0;
        {
            const FailingAllocation failing(number);
            code = file.Object()->InitializeFile(path.Get(), 0);
            happened = failing.Happened();
        }
        if (code < 0) {
            EXPECT_EQ(file.Buffer().has_value(), code == result::Unexpected) << "allocation " << number;
        }
    }
}

}  // namespace zupm::test
