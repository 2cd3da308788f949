// Edits of files that are written in unusual ways: what the edit does not name stays as it was typed.
#include <gtest/gtest.h>

#include "tests/support/Difference.h"
#include "tests/support/FixedClock.h"
#include "tests/support/PolicyFileClient.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TextEdit.h"

namespace zupm::test {

namespace {

/// A file, and what it is after S/N of A was set to "new", A was added and the file was written.
struct OddEdit {
    const char* label;
    const char* before;
    const char* after;
};

constexpr OddEdit kOddEdits[] = {
    {"single quotes and blanks around =",
     "<R ><PolicyRoot version = '1'  ><PolicyGroup Path=''><Policy  PathID = '0_4'\tPolicyVersion\n=\n'5' >"
     "<Product SoftwareID = 'A' x='\"' ><Section  name='S'><Setting name = 'N' >old</Setting ></Section\t></Product "
     "></Policy>"
     "</PolicyGroup></PolicyRoot ></R >",
     "<R ><PolicyRoot version = '20260102030405'  ><PolicyGroup Path=''><Policy  PathID = '0_4'\tPolicyVersion\n=\n"
     "'20260102030405' ><Product SoftwareID = 'A' x='\"' ><Section  name='S'><Setting name = 'N' >new</Setting "
     "></Section\t>"
     "</Product ></Policy></PolicyGroup></PolicyRoot ></R >"},
    {"comments and instructions around everything",
     "<!-- 1 --><R><!-- 2 --><PolicyRoot version=\"1\"><!-- 3 --><PolicyGroup Path=''><?p 4?><Policy PathID='0_4' "
     "PolicyVersion='5'><!-- 5 --><Product SoftwareID='A'><!-- 6 --><Section name='S'><!-- 7 --><Setting name='N'>old"
     "</Setting><!-- 8 --></Section><!-- 9 --></Product></Policy></PolicyGroup></PolicyRoot></R><!-- 10 -->",
     "<!-- 1 --><R><!-- 2 --><PolicyRoot version=\"20260102030405\"><!-- 3 --><PolicyGroup Path=''><?p 4?><Policy "
     "PathID='0_4' PolicyVersion='20260102030405'><!-- 5 --><Product SoftwareID='A'><!-- 6 --><Section name='S'><!-- 7 "
     "-->"
     "<Setting name='N'>new</Setting><!-- 8 --></Section><!-- 9 --></Product></Policy></PolicyGroup></PolicyRoot></R>"
     "<!-- 10 -->"},
    {"references, CDATA and extra attributes next to the setting",
     "<R><PolicyRoot version='1'><PolicyGroup Path='&#48;'><Policy PathID='0&#x5F;4' PolicyVersion='5' "
     "note='&lt;&#10;'>"
     "<Product SoftwareID='&#65;' n:x='1' xmlns:n='u'><Section name='&#83;'><Setting "
     "name='M'><![CDATA[]]]]><![CDATA[>]]>"
     "</Setting><Setting type=\"s\" name='N'>ol<!-- no -->d</Setting></Section></Product></Policy></PolicyGroup>"
     "</PolicyRoot></R>",
     "<R><PolicyRoot version='20260102030405'><PolicyGroup Path='&#48;'><Policy PathID='0&#x5F;4' "
     "PolicyVersion='20260102030405' note='&lt;&#10;'><Product SoftwareID='&#65;' n:x='1' xmlns:n='u'>"
     "<Section name='&#83;'><Setting name='M'><![CDATA[]]]]><![CDATA[>]]></Setting><Setting type=\"s\" name='N'>new"
     "</Setting></Section></Product></Policy></PolicyGroup></PolicyRoot></R>"},
    {"an empty setting element in a file with one blank a step",
     "<R>\n <PolicyRoot version='1'>\n  <PolicyGroup Path=''>\n   <Policy PathID='0_4' PolicyVersion='5'>\n"
     "    <Product SoftwareID='A'>\n     <Section name='S'>\n      <Setting name='N'/>\n     </Section>\n    "
     "</Product>\n"
     "   </Policy>\n  </PolicyGroup>\n </PolicyRoot>\n</R>",
     "<R>\n <PolicyRoot version='20260102030405'>\n  <PolicyGroup Path=''>\n   <Policy PathID='0_4' "
     "PolicyVersion='20260102030405'>\n    <Product SoftwareID='A'>\n     <Section name='S'>\n      <Setting "
     "name='N'>new"
     "</Setting>\n     </Section>\n    </Product>\n   </Policy>\n  </PolicyGroup>\n </PolicyRoot>\n</R>"},
    {"a DOCTYPE",
     "<?xml version='1.0'?>\r\n<!DOCTYPE R [<!ELEMENT R ANY>\r\n<!ATTLIST Setting kind CDATA "
     "'text'>]>\r\n<R><PolicyRoot "
     "version='1'><PolicyGroup Path=''><Policy PathID='0_4' PolicyVersion='5'><Product SoftwareID='A'><Section "
     "name='S'>"
     "<Setting name='N'>old</Setting></Section></Product></Policy></PolicyGroup></PolicyRoot></R>",
     "<?xml version='1.0'?>\r\n<!DOCTYPE R [<!ELEMENT R ANY>\r\n<!ATTLIST Setting kind CDATA "
     "'text'>]>\r\n<R><PolicyRoot "
     "version='20260102030405'><PolicyGroup Path=''><Policy PathID='0_4' PolicyVersion='20260102030405'>"
     "<Product SoftwareID='A'><Section name='S'><Setting name='N'>new</Setting></Section></Product></Policy>"
     "</PolicyGroup></PolicyRoot></R>"},
};

}  // namespace

TEST(OddEdits, ChangedSetting_LeavesEverythingElseAsItWasTyped)
{
    const FixedClock clock;
    const TempFolder folder;
    for (const OddEdit& row : kOddEdits) {
        PolicyFileClient file;
        ASSERT_EQ(file.Load(folder.Write(u"in.xml", row.before)), 0) << row.label;
        ProductClient product = file.Policy(u"A");
        ASSERT_EQ(product.Put(u"S", u"N", u"new"), 0) << row.label;
        ASSERT_EQ(file.Add(product), 0) << row.label;
        ASSERT_EQ(file.Write(folder.Path(u"out.xml")), 0) << row.label;
        EXPECT_EQ(folder.Read(u"out.xml"), row.after) << row.label;
    }
}

TEST(OddEdits, CharacterThatLatin1CannotHold_IsWrittenAsAReference)
{
    const FixedClock clock;
    const TempFolder folder;
    const std::string before =
        "<?xml version='1.0' encoding='ISO-8859-1'?><R><PolicyRoot version='1'><PolicyGroup Path=''><Policy "
        "PathID='0_4' PolicyVersion='5'><Product SoftwareID='A'><Section name='S'><Setting name='N'>\xE4</Setting>"
        "</Section></Product></Policy></PolicyGroup></PolicyRoot></R>";
    PolicyFileClient file;
    ASSERT_EQ(file.Load(folder.Write(u"in.xml", before)), 0);
    ProductClient product = file.Policy(u"A");
    ASSERT_EQ(product.Put(u"S", u"N", u"\u00E4\u20AC\U0001F600"), 0);
    ASSERT_EQ(file.Add(product), 0);
    ASSERT_EQ(file.Write(folder.Path(u"out.xml")), 0);
    PolicyFileClient again;
    ASSERT_EQ(again.Load(folder.Path(u"out.xml")), 0);
    EXPECT_EQ(again.Policy(u"A").Get(u"S", u"N"), (TextResult{0, u"\u00E4\u20AC\U0001F600"}));
    const std::string written = folder.Read(u"out.xml");
    EXPECT_NE(written.find(">\xE4&#"), std::string::npos) << "what fits stays one byte";
    EXPECT_TRUE(written.starts_with("<?xml version='1.0' encoding='ISO-8859-1'?>"));
}

TEST(OddEdits, DocumentThatLatin1CannotHold_IsRefusedAndTheFileStays)
{
    const TempFolder folder;
    const std::string before =
        "<?xml version='1.0' encoding='ISO-8859-1'?><R><PolicyRoot><PolicyGroup><Policy/>"
        "</PolicyGroup></PolicyRoot></R>";
    PolicyFileClient other;
    ASSERT_EQ(other.Load(folder.Write(u"other.xml",
                                      "<R><PolicyRoot><PolicyGroup><Policy><Product SoftwareID='A'>"
                                      "<!-- \xE2\x82\xAC --></Product></Policy></PolicyGroup></PolicyRoot></R>")),
              0);
    PolicyFileClient file;
    ASSERT_EQ(file.Load(folder.Write(u"policy.xml", before)), 0);
    ASSERT_EQ(file.Add(other.Policy(u"A")), 0);
    EXPECT_EQ(file.Write(folder.Path(u"policy.xml")), result::NotValidInItsEncoding) << "a comment has no references";
    EXPECT_EQ(folder.Read(u"policy.xml"), before);
    EXPECT_EQ(folder.Names(), (std::vector<std::string>{"other.xml", "policy.xml"}));
}

}  // namespace zupm::test
