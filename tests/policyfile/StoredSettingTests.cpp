// Settings of policies and tasks that stay in the file: GetStoredPolicySetting and GetStoredTaskSetting.
#include "PolicyFileTest.h"
#include "common/Macros.h"
#include "tests/support/MemberCall.h"
#include "tests/support/Names.h"

namespace zupm::test {

namespace {

class StoredSettings : public PolicyFileTest {
protected:
    /// What the slot holds after the call; no text when it was left alone.
    template <class Call>
    [[nodiscard]] static TextResult ResultOf(const Call& call)
    {
        OutText slot;
        const HRESULT code = call(slot.Slot());
        return {code, slot.Untouched() ? std::nullopt : std::optional(slot.Text())};
    }
    [[nodiscard]] TextResult OfPolicy(std::u16string_view id, std::u16string_view section,
                                      std::u16string_view name) const
    {
        return ResultOf([&](BSTR* slot) {
            return Contents()->GetStoredPolicySetting(Bstr(id).Get(), Bstr(section).Get(), Bstr(name).Get(), slot);
        });
    }
    [[nodiscard]] TextResult OfTask(std::u16string_view softwareId, std::u16string_view taskId,
                                    std::u16string_view section, std::u16string_view name) const
    {
        return ResultOf([&](BSTR* slot) {
            return Contents()->GetStoredTaskSetting(Bstr(softwareId).Get(), Bstr(taskId).Get(), Bstr(section).Get(),
                                                    Bstr(name).Get(), slot);
        });
    }
    /// The same from a private copy.
    template <class Client>
    [[nodiscard]] static TextResult OfCopy(const Client& copy, std::u16string_view section, std::u16string_view name)
    {
        const auto sections = ComPtr<IUnknown>(copy.Object()).template Query<IPolicySections>();
        return ResultOf(
            [&](BSTR* slot) { return sections->GetStoredSetting(Bstr(section).Get(), Bstr(name).Get(), slot); });
    }
    [[nodiscard]] ComPtr<IPolicyFileContents> Contents() const
    {
        return ComPtr<IPolicyFile>(m_file.Object()).Query<IPolicyFileContents>();
    }
    /// Loads a file whose policy and task have the same sections, on one line and on lines of their own.
    void Load(const std::string& sections, const std::string& lineBreak = "")
    {
        ASSERT_EQ(
            LoadText("<R><PolicyRoot><PolicyGroup><Policy>" + lineBreak + "<Product SoftwareID='Long ID of one'>" +
                     sections + "</Product></Policy></PolicyGroup></PolicyRoot><TaskRoot>" + lineBreak +
                     "<TaskGroup SoftwareID='Long ID of one' TaskID='{task}'><Task>" + sections +
                     "</Task></TaskGroup></TaskRoot></R>"),
            0);
    }
    [[nodiscard]] static TextResult Missing(HRESULT code) { return {code, std::nullopt}; }
};

constexpr char kSections[] =
    "<Section name='General'><Setting name='Mode'>full</Setting><Setting name='Empty'/></Section>";

}  // namespace

TEST_F(StoredSettings, AreFoundWhereTheyAre)
{
    for (const char* lineBreak : {"", "\n"}) {
        Load(kSections, lineBreak);
        EXPECT_EQ(OfPolicy(u"Long ID of one", u"General", u"Mode"), (TextResult{0, u"full"}));
        EXPECT_EQ(OfPolicy(u"Long ID of one", u"General", u"Empty"), (TextResult{0, u""}));
        EXPECT_EQ(OfTask(u"Long ID of one", u"{task}", u"General", u"Mode"), (TextResult{0, u"full"}));
        EXPECT_EQ(OfTask(u"Long ID of one", u"{task}", u"General", u"Empty"), (TextResult{0, u""}));
    }
}

TEST_F(StoredSettings, WhatIsMissing_HasACodeOfItsOwnAndLeavesTheSlotAlone)
{
    Load(kSections);
    EXPECT_EQ(OfPolicy(u"Other", u"General", u"Mode"), Missing(result::PolicyNotFound));
    EXPECT_EQ(LastErrorDescription(), result::SentenceFor(result::PolicyNotFound));
    EXPECT_EQ(OfPolicy(u"Long ID of one", u"general", u"Mode"), Missing(result::SectionNotFound));
    EXPECT_EQ(OfPolicy(u"Long ID of one", u"General", u"mode"), Missing(result::SettingNotFound));
    EXPECT_EQ(OfTask(u"Other", u"{task}", u"General", u"Mode"), Missing(result::TaskNotFound));
    EXPECT_EQ(OfTask(u"Long ID of one", u"{other}", u"General", u"Mode"), Missing(result::TaskNotFound));
    EXPECT_EQ(OfTask(u"Long ID of one", u"{task}", u"general", u"Mode"), Missing(result::SectionNotFound));
    EXPECT_EQ(OfTask(u"Long ID of one", u"{task}", u"General", u"mode"), Missing(result::SettingNotFound));
}

TEST_F(StoredSettings, FailWhileNothingIsLoadedAndWithoutASlot)
{
    EXPECT_EQ(OfPolicy(u"A", u"S", u"x"), Missing(result::NotInitialised));
    EXPECT_EQ(OfTask(u"A", u"1", u"S", u"x"), Missing(result::NotInitialised));
    EXPECT_TRUE(TakeErrorInformation().interfaceId == IID_IPolicyFileContents);
    EXPECT_EQ(Contents()->GetStoredPolicySetting(nullptr, nullptr, nullptr, nullptr), result::BadArgument);
    EXPECT_EQ(Contents()->GetStoredTaskSetting(nullptr, nullptr, nullptr, nullptr, nullptr), result::BadArgument);
}

TEST_F(StoredSettings, ExpandNoMacros)
{
    Load("<Section name='S'><Setting name='x'>&lt;Home&gt;</Setting></Section>");
    RegisterMacro(u"Home", u"/home");
    const TextResult read = OfPolicy(u"Long ID of one", u"S", u"x");
    UnregisterAllMacros();
    EXPECT_EQ(read, (TextResult{0, u"<Home>"}));
}

TEST_F(StoredSettings, AreThoseOfAPrivateCopy)
{
    const char* const sections[] = {
        kSections,
        "",
        "text alone",
        "<Section name='S'/>",
        "<Section/><Section name=''><Setting name=''>1</Setting><Setting>2</Setting></Section>",
        // Of equal names the first counts, and sections of one name are one.
        "<Section name='S'><Setting name='x'>1</Setting><Setting name='x'>2</Setting></Section><Section name='T'>"
        "<Setting name='x'>3</Setting></Section><Section name='S'><Setting name='x'>4</Setting><Setting name='y'>5"
        "</Setting></Section>",
        // Elements of any name.
        "<a name='S'><b name='x'>1</b><Section name='T'><Setting name='x'>2</Setting></Section></a>",
        "<Section name='S'><Setting name='a'>1<Setting name='x'>2</Setting>3</Setting><q><Setting "
        "name='y'>4</Setting></q>"
        "</Section><Section name='T'><Section name='S'><Setting name='y'>5</Setting></Section></Section>",
        "<!-- <Section name='S'> --><?pi <Section name='S'?><Section name='S'><![CDATA[<Setting name='x'>]]>"
        "<Setting name='x'> a<![CDATA[<b>]]><i>c</i><!-- d -->&#xE4;&amp;\r\n </Setting></Section>",
        "\n  <Section\n name = \"S\" other='&gt;'\n>\n    <Setting name='x'>1\n2</Setting>\n  </Section>\n",
        "<Section name='&#x53;'><Setting name='&#120;&amp;&quot;'>1</Setting><Setting name='x'>&#x1F680;</Setting>"
        "</Section>",
    };
    const std::u16string_view names[] = {u"S", u"T", u"General", u"", u"a", u"x", u"y", u"x&\"", u"Mode"};
    for (const char* text : sections) {
        for (const char* lineBreak : {"", "\n"}) {
            Load(text, lineBreak);
            const ProductClient policy = m_file.Policy(u"Long ID of one");
            const TaskClient task = m_file.Task(u"Long ID of one", u"{task}");
            for (const std::u16string_view section : names) {
                for (const std::u16string_view name : names) {
                    EXPECT_EQ(OfPolicy(u"Long ID of one", section, name), OfCopy(policy, section, name)) << text;
                    EXPECT_EQ(OfTask(u"Long ID of one", u"{task}", section, name), OfCopy(task, section, name)) << text;
                }
            }
        }
    }
}

TEST_F(StoredSettings, OfAnIDThatOccursTwice_AreThoseOfThePolicyThatIsFound)
{
    const auto sectionWith = [](const char* value) {
        return "<Section name='S'><Setting name='x'>" + std::string(value) + "</Setting></Section>";
    };
    ASSERT_EQ(LoadText("<R><PolicyRoot><PolicyGroup><Policy><Other SoftwareID='A'>" + sectionWith("1") +
                       "</Other><Product SoftwareID='A'>" + sectionWith("2") + "</Product></Policy></PolicyGroup>" +
                       "</PolicyRoot><TaskRoot><TaskGroup SoftwareID='A' TaskID='1'><Task>" + sectionWith("3") +
                       "</Task><Task>" + sectionWith("4") + "</Task></TaskGroup></TaskRoot></R>"),
              0);
    // An element of another name takes the place of the product after it, as it does for a copy.
    EXPECT_EQ(OfPolicy(u"A", u"S", u"x"), (TextResult{0, u"1"}));
    EXPECT_EQ(OfCopy(m_file.Policy(u"A"), u"S", u"x"), (TextResult{0, u"1"}));
    EXPECT_EQ(OfTask(u"A", u"1", u"S", u"x"), (TextResult{0, u"3"}));
}

TEST_F(StoredSettings, FollowTheDocumentAndNotTheCopies)
{
    Load(kSections);
    ProductClient policy = m_file.Policy(u"Long ID of one");
    TaskClient task = m_file.Task(u"Long ID of one", u"{task}");
    ASSERT_EQ(policy.Put(u"General", u"Mode", u"new"), 0);
    ASSERT_EQ(task.Put(u"New", u"x", u"1"), 0);
    EXPECT_EQ(OfPolicy(u"Long ID of one", u"General", u"Mode"), (TextResult{0, u"full"})) << "it was not handed back";
    ASSERT_EQ(m_file.Add(policy), 0);
    ASSERT_EQ(m_file.Add(task), 0);
    EXPECT_EQ(OfPolicy(u"Long ID of one", u"General", u"Mode"), (TextResult{0, u"new"}));
    EXPECT_EQ(OfTask(u"Long ID of one", u"{task}", u"New", u"x"), (TextResult{0, u"1"}));
    ASSERT_EQ(m_file.RemovePolicy(u"Long ID of one"), 0);
    EXPECT_EQ(OfPolicy(u"Long ID of one", u"General", u"Mode"), Missing(result::PolicyNotFound));
}

TEST_F(StoredSettings, ReadingThemChangesNoByte)
{
    Load(kSections, "\r\n");
    const std::string before = WriteOut();
    EXPECT_EQ(OfPolicy(u"Long ID of one", u"General", u"Mode"), (TextResult{0, u"full"}));
    EXPECT_EQ(OfTask(u"Long ID of one", u"{task}", u"General", u"Mode"), (TextResult{0, u"full"}));
    EXPECT_EQ(WriteOut(), before);
}

TEST_F(StoredSettings, AreReadByName)
{
    Load(kSections);
    const auto member = [&](std::u16string_view name) { return MemberCall(m_file.Object(), name); };
    EXPECT_EQ(member(u"GetStoredPolicySetting").In(u"Long ID of one").In(u"General").In(u"Mode").ForResult().text,
              u"full");
    EXPECT_EQ(
        member(u"getstoredtasksetting").In(u"Long ID of one").In(u"{task}").In(u"General").In(u"Mode").ForResult().text,
        u"full");
    OutText slot;
    EXPECT_EQ(member(u"GetStoredTaskSetting")
                  .In(u"Long ID of one")
                  .In(u"{task}")
                  .In(u"General")
                  .In(u"Mode")
                  .Out(slot)
                  .Call()
                  .code,
              0);
    EXPECT_EQ(slot.Text(), u"full");
}

}  // namespace zupm::test
