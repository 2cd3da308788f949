// WriteFile and WriteFileBuffer.

#include "PolicyFileTest.h"
#include "platform/Files.h"
#include "xml/FileBuffer.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm::test {

namespace {

using namespace std::literals;

class PolicyFileWriting : public PolicyFileTest {};

/// A text, and what WriteFile makes of it.
struct StampRow {
    const char* label;
    const char* before;
    const char* after;
};

constexpr StampRow kStampRows[] = {
    {"nothing to stamp", "<R><Other version='1'/></R>", "<R><Other version='1'/></R>"},
    {"up to date", "<R><TaskRoot version='0'/><PolicyRoot version='3'/></R>",
     "<R><TaskRoot version='0'/><PolicyRoot version='3'/></R>"},
    {"versions are created", "<R><TaskRoot/><PolicyRoot/></R>",
     "<R><TaskRoot version=\"0\"/><PolicyRoot version=\"0\"/></R>"},
    {"a negative policy version", "<R><PolicyRoot version='-1'/></R>",
     "<R><PolicyRoot version='18446744073709551615'/></R>"},
    {"leading zeros and letters go", "<R><PolicyRoot version='007b'/></R>", "<R><PolicyRoot version='7'/></R>"},
    {"the last version goes into every PolicyRoot",
     "<R><PolicyRoot version='1'/><PolicyRoot/><PolicyRoot version='2'/></R>",
     "<R><PolicyRoot version='2'/><PolicyRoot version=\"2\"/><PolicyRoot version='2'/></R>"},
    {"the highest task version of all roots",
     "<R><TaskRoot version='9'><TaskGroup TaskVersion='3'/></TaskRoot><TaskRoot>"
     "<TaskGroup TaskVersion='10x'/><TaskGroup/><Other TaskVersion='99'/></TaskRoot></R>",
     "<R><TaskRoot version='10'><TaskGroup TaskVersion='3'/></TaskRoot><TaskRoot version=\"10\">"
     "<TaskGroup TaskVersion='10x'/><TaskGroup/><Other TaskVersion='99'/></TaskRoot></R>"},
    {"task versions are compared unsigned",
     "<R><TaskRoot><TaskGroup TaskVersion='3'/><TaskGroup TaskVersion='-1'/>"
     "<TaskGroup TaskVersion='10'/></TaskRoot></R>",
     "<R><TaskRoot version=\"18446744073709551615\"><TaskGroup TaskVersion='3'/><TaskGroup TaskVersion='-1'/>"
     "<TaskGroup TaskVersion='10'/></TaskRoot></R>"},
    {"a missing Path is created",
     "<R><PolicyRoot version='1'><PolicyGroup/><PolicyGroup Path=''/><PolicyGroup Path='x'/>"
     "<Other/></PolicyRoot></R>",
     "<R><PolicyRoot version='1'><PolicyGroup Path=\"0_4\"/><PolicyGroup Path=''/><PolicyGroup Path='x'/>"
     "<Other/></PolicyRoot></R>"},
    {"groups of every PolicyRoot get a missing Path",
     "<R><PolicyRoot version='1'/><PolicyRoot version='1'><PolicyGroup Path='x'/><PolicyGroup/></PolicyRoot>"
     "<PolicyRoot version='1'><PolicyGroup/></PolicyRoot></R>",
     "<R><PolicyRoot version='1'/><PolicyRoot version='1'><PolicyGroup Path='x'/><PolicyGroup "
     "Path=\"0_4\"/></PolicyRoot>"
     "<PolicyRoot version='1'><PolicyGroup Path=\"0_4\"/></PolicyRoot></R>"},
    {"only the root's children count", "<R><X><TaskRoot/><PolicyRoot><PolicyGroup/></PolicyRoot></X><PolicyGroup/></R>",
     "<R><X><TaskRoot/><PolicyRoot><PolicyGroup/></PolicyRoot></X><PolicyGroup/></R>"},
};

}  // namespace

TEST_F(PolicyFileWriting, VersionsAndMissingPaths_AreBroughtUpToDateAndNothingElse)
{
    for (const StampRow& row : kStampRows) {
        PolicyFileClient file;
        ASSERT_EQ(file.Load(m_folder.Write(u"in.xml", row.before)), 0) << row.label;
        ASSERT_EQ(file.Write(m_folder.Path(u"out.xml")), 0) << row.label;
        EXPECT_EQ(m_folder.Read(u"out.xml"), row.after) << row.label;
    }
}

TEST_F(PolicyFileWriting, StampedTaskVersion_BecomesTheObjectsTaskVersion)
{
    ASSERT_EQ(LoadText("<R><TaskRoot version='99'><TaskGroup TaskVersion='3'/></TaskRoot></R>"), 0);
    EXPECT_EQ(m_file.VersionTask(), (TextResult{0, u"99"}));
    EXPECT_EQ(WriteOut(), "<R><TaskRoot version='3'><TaskGroup TaskVersion='3'/></TaskRoot></R>");
    EXPECT_EQ(m_file.VersionTask(), (TextResult{0, u"3"}));
}

TEST_F(PolicyFileWriting, FileWithoutTaskRoot_KeepsTheObjectsTaskVersion)
{
    ASSERT_EQ(LoadText("<R><TaskRoot version='99'/></R>"), 0);
    ASSERT_EQ(LoadText("<R/>"), 0);
    EXPECT_EQ(WriteOut(), "<R/>");
    EXPECT_EQ(m_file.VersionTask(), (TextResult{0, u"99"}));
}

TEST_F(PolicyFileWriting, UseInternal_NeverChangesWhereTheFileIsWritten)
{
    const std::string before = "<R><PolicyRoot/></R>";
    for (const LONG useInternal : {0, 1, -1}) {
        const std::u16string target = u"target" + Utf16(std::to_string(useInternal)) + u".xml";
        ASSERT_EQ(LoadText(before), 0);
        EXPECT_EQ(m_file.Write(m_folder.Path(target), useInternal), 0) << useInternal;
        EXPECT_EQ(m_folder.Read(target), "<R><PolicyRoot version=\"0\"/></R>") << useInternal;
        EXPECT_EQ(m_folder.Read(u"policy.xml"), before) << useInternal << ": the loaded file is not touched";
    }
}

TEST_F(PolicyFileWriting, FileOpenedReadOnly_IsStillWritten)
{
    ASSERT_EQ(LoadText("<R><PolicyRoot/></R>", 1), 0);
    EXPECT_EQ(m_file.Write(m_folder.Path(u"policy.xml")), 0);
    EXPECT_EQ(m_folder.Read(u"policy.xml"), "<R><PolicyRoot version=\"0\"/></R>");
}

TEST_F(PolicyFileWriting, NothingLoaded_GivesNotInitialisedAndTouchesNoFile)
{
    m_folder.Write(u"target.xml", "old");
    EXPECT_EQ(m_file.Write(m_folder.Path(u"target.xml")), result::NotInitialised);
    EXPECT_EQ(m_folder.Read(u"target.xml"), "old");
    EXPECT_EQ(m_file.Write(m_folder.Path(u"new.xml"), 1), result::NotInitialised);
    EXPECT_FALSE(m_folder.Has(u"new.xml"));
}

TEST_F(PolicyFileWriting, FailedWrite_GivesTheFileCodeAndKeepsTheStampsAndTheDocument)
{
    ASSERT_EQ(LoadText("<R><PolicyRoot version='7x'/></R>"), 0);
    EXPECT_EQ(m_file.Write(m_folder.Path(u"no/such/folder.xml")), result::PathNotFound);
    EXPECT_EQ(m_file.Buffer(), u"<R><PolicyRoot version='7'/></R>");
    EXPECT_EQ(m_file.Write(u""), result::InvalidName);
    EXPECT_EQ(WriteOut(), "<R><PolicyRoot version='7'/></R>");
    EXPECT_EQ(m_folder.Names(), (std::vector{"out.xml"s, "policy.xml"s})) << "no temporary file stays";
}

TEST_F(PolicyFileWriting, FolderAsTarget_IsRefused)
{
    ASSERT_EQ(LoadText("<R/>"), 0);
    EXPECT_LT(m_file.Write(m_folder.Path(u"")), 0);
    EXPECT_EQ(m_folder.Names(), (std::vector{"policy.xml"s}));
}

TEST_F(PolicyFileWriting, Utf16File_IsWrittenBackAsUtf16)
{
    const std::string text = "\xFF\xFE<\0R\0>\0\xE4\0<\0/\0R\0>\0"s;
    ASSERT_EQ(LoadText(text), 0);
    EXPECT_EQ(WriteOut(), text);
}

TEST_F(PolicyFileWriting, EncodingOfTheLastFileRead_IsTheOneWritten)
{
    ASSERT_EQ(LoadText("\xFF\xFE<\0R\0/\0>\0"s), 0);
    ASSERT_EQ(LoadText("<R/>"), 0);
    EXPECT_EQ(WriteOut(), "<R/>");
}

TEST_F(PolicyFileWriting, Buffer_IsTheDocumentWithoutNewStamps)
{
    const std::string text = "<R>\r\n\t<PolicyRoot version='7x' /><!-- \xC3\xA4 --></R>\n";
    ASSERT_EQ(LoadText(text), 0);
    EXPECT_EQ(Utf8(m_file.Buffer().value()), text);
}

TEST_F(PolicyFileWriting, Buffer_ReplacesWhatTheSlotHeldAndIsNullWhenNothingIsLoaded)
{
    OutText loaded;
    ASSERT_EQ(LoadText("<R/>"), 0);
    EXPECT_EQ(m_file.Object()->WriteFileBuffer(loaded.Slot()), 0);
    EXPECT_EQ(loaded.Text(), u"<R/>");

    OutText nothing;
    EXPECT_EQ(Create<IPolicyFile>()->WriteFileBuffer(nothing.Slot()), 0);
    EXPECT_TRUE(nothing.IsNull());
}

TEST_F(PolicyFileWriting, BufferOfAUtf16File_IsItsText)
{
    ASSERT_EQ(LoadText("\xFE\xFF\0<\0R\0>\xD8\x3D\xDE\0\0<\0/\0R\0>"s), 0);
    EXPECT_EQ(m_file.Buffer(), u"<R>\U0001F600</R>");
}

TEST_F(PolicyFileWriting, WrittenFile_LoadsAgainWithTheSameContent)
{
    ASSERT_EQ(LoadText("<R><PolicyRoot><PolicyGroup><Policy/></PolicyGroup></PolicyRoot><TaskRoot/></R>"), 0);
    ProductClient product = m_file.NewPolicy(u"<A&\"'>\t\U0001F600");
    ASSERT_EQ(product.Put(u"s \n", u"]]>", u"\r\n<&>\"' \u0085\u2028"), 0);
    ASSERT_EQ(m_file.Add(product), 0);
    ASSERT_EQ(m_file.Add(m_file.NewTask(u"B", u"{1}")), 0);
    static_cast<void>(WriteOut());

    PolicyFileClient again;
    ASSERT_EQ(again.Load(m_folder.Path(u"out.xml")), 0);
    EXPECT_EQ(again.Policy(u"<A&\"'>\t\U0001F600").Get(u"s \n", u"]]>"), (TextResult{0, u"\r\n<&>\"' \u0085\u2028"}));
    EXPECT_EQ(again.Tasks().All(), (std::vector{u"B/{1}"s}));
    EXPECT_EQ(again.VersionPolicy(), m_file.VersionPolicy());
    EXPECT_EQ(again.VersionTask(), m_file.VersionTask());
}

TEST_F(PolicyFileWriting, DocumentThatCouldNotBeLoadedAgain_IsRefusedBeforeTheFileIsTouched)
{
    const std::string_view text = "<R><PolicyRoot version='0'/></R>";
    ASSERT_EQ(LoadText(text), 0);
    m_folder.Write(u"out.xml", "old");
    AdvXMLParser::LimitWrittenFiles(text.size() - 1);
    EXPECT_EQ(m_file.Write(m_folder.Path(u"out.xml")), result::FileTooLarge);
    EXPECT_EQ(LastErrorDescription(), result::SentenceFor(result::FileTooLarge));
    EXPECT_EQ(m_folder.Read(u"out.xml"), "old");
    EXPECT_EQ(m_folder.Names(), (std::vector{"out.xml"s, "policy.xml"s})) << "no temporary";
    EXPECT_EQ(m_file.Write(m_folder.Path(u"new.xml")), result::FileTooLarge);
    EXPECT_FALSE(m_folder.Has(u"new.xml"));
    EXPECT_EQ(Utf8(m_file.Buffer().value_or(u"")), text) << "the document stays loaded";
    AdvXMLParser::LimitWrittenFiles(kLargestFile);
    EXPECT_EQ(WriteOut(), text);
}

}  // namespace zupm::test
