#include "MixFields.h"
#include "zuPolicyManager/zuPolicyManager.h"

#include <gtest/gtest.h>

namespace zupm::test {

namespace {

struct TextProperty {
    HRESULT (IPolicyTask::*get)(BSTR*);
    HRESULT (IPolicyTask::*put)(BSTR);
    char16_t letter;
};

constexpr TextProperty kTexts[] = {
    {&IPolicyTask::get_CreatorID, &IPolicyTask::put_CreatorID, u'c'},
    {&IPolicyTask::get_SoftwareID, &IPolicyTask::put_SoftwareID, u's'},
    {&IPolicyTask::get_TaskID, &IPolicyTask::put_TaskID, u't'},
    {&IPolicyTask::get_DisplayName, &IPolicyTask::put_DisplayName, u'd'},
    {&IPolicyTask::get_TaskType, &IPolicyTask::put_TaskType, u'y'},
    {&IPolicyTask::get_PlatformsSupported, &IPolicyTask::put_PlatformsSupported, u'p'},
};

/// What the objects hold before anybody puts something.
constexpr std::u16string_view kFirstTexts[] = {u"invalid", u"SoftwareID"};

/// Four texts a property, so that few tasks come of them.
std::u16string AnyText(char16_t letter, Random& random)
{
    const std::size_t digit = Pick(random, 4);
    return letter + std::u16string(20 + 10 * digit, static_cast<char16_t>(u'0' + digit));
}

bool IsSomebodys(char16_t letter, const std::u16string& text)
{
    if (text == kFirstTexts[0] || text == kFirstTexts[1]) {
        return true;
    }
    return text.size() > 20 && text.front() == letter && text.find_first_not_of(text[1], 1) == text.npos &&
           text.size() == 21 + 10 * static_cast<std::size_t>(text[1] - u'0');
}

}  // namespace

MixFields::MixFields(ProductClient product, TaskClient task, TaskInfoClient pairs, const MixSections& settings,
                     const TempFolder& folder, int thread, Random& random)
    : m_product(std::move(product)),
      m_task(std::move(task)),
      m_pairs(std::move(pairs)),
      m_settings(&settings),
      m_folder(&folder),
      m_thread(thread),
      m_random(&random)
{
}

std::vector<MixStep> MixFields::Steps()
{
    return {
        {"task: put a text", 6, [this] { PutText(); }},
        {"task: get a text", 6, [this] { GetText(); }},
        {"task: put Priority", 1, [this] { PutPriority(); }},
        {"task: get Priority", 1, [this] { GetPriority(); }},
        {"task: Version", 1, [this] { GetVersion(); }},
        {"task: write the INI file", 1, [this] { WriteIniFile(); }},
        {"product: put and get SoftwareID", 2, [this] { ProductId(); }},
        {"enumerator: GetFirst or GetNext", 4, [this] { Enumerate(); }},
    };
}

void MixFields::PutText()
{
    const TextProperty& row = kTexts[Pick(*m_random, std::size(kTexts))];
    EXPECT_EQ((m_task.Object()->*row.put)(Bstr(AnyText(row.letter, *m_random)).Get()), 0);
}

void MixFields::GetText()
{
    const TextProperty& row = kTexts[Pick(*m_random, std::size(kTexts))];
    OutText text;
    EXPECT_EQ((m_task.Object()->*row.get)(text.Slot()), 0);
    EXPECT_TRUE(IsSomebodys(row.letter, text.Text())) << Utf8(text.Text());
}

void MixFields::PutPriority()
{
    EXPECT_EQ(m_task.Object()->put_Priority(static_cast<LONG>(Pick(*m_random, 100))), 0);
}

void MixFields::GetPriority()
{
    LONG priority = -1;
    EXPECT_EQ(m_task.Object()->get_Priority(&priority), 0);
    EXPECT_TRUE(priority >= 0 && priority < 100) << priority;
}

void MixFields::GetVersion()
{
    EXPECT_EQ(m_task.Version(), (TextResult{0, u""})) << "the task was bound to no file";
}

void MixFields::WriteIniFile()
{
    const std::u16string name = Numbered(u"task", m_thread) + u".ini";
    EXPECT_EQ(m_task.Object()->WriteTaskDataToIniFile(Bstr(m_folder->Path(name)).Get()), 0);
    const std::u16string text = Utf16(m_folder->Read(name));
    EXPECT_TRUE(text.starts_with(u"[Task]"));
    EXPECT_TRUE(m_settings->IsAllIn(text));
}

void MixFields::ProductId()
{
    EXPECT_EQ(m_product.PutSoftwareID(AnyText(u'p', *m_random)), 0);
    const TextResult id = m_product.SoftwareID();
    EXPECT_EQ(id.code, 0);
    EXPECT_TRUE(IsSomebodys(u'p', id.text.value_or(u""))) << Utf8(id.text.value_or(u""));
}

void MixFields::Enumerate()
{
    const PairResult pair = Pick(*m_random, 20) == 0 ? m_pairs.First() : m_pairs.Next();
    if (pair.code == 0) {
        EXPECT_EQ(pair.softwareId, u"s" + pair.taskId);
    } else {
        EXPECT_EQ(pair.code, result::EndOfList);
    }
}

}  // namespace zupm::test
