// A task that was created on its own, and its properties.
#include "tests/task/TaskTest.h"

namespace zupm::test {

namespace {

class TaskProperties : public TaskTest {
protected:
    [[nodiscard]] std::u16string Get(const TextProperty& property)
    {
        OutText slot;
        EXPECT_EQ((m_task.Get()->*property.get)(slot.Slot()), 0) << Utf8(property.name);
        EXPECT_FALSE(slot.Untouched()) << Utf8(property.name);
        return slot.Text();
    }
    [[nodiscard]] HRESULT Put(const TextProperty& property, const Bstr& text)
    {
        return (m_task.Get()->*property.put)(text.Get());
    }

    ComPtr<IPolicyTask> m_task = Create<IPolicyTask>();
};

}  // namespace

TEST_F(TaskProperties, OfANewTaskAreInvalidPriorityIsZeroAndTheVersionEmpty)
{
    for (const TextProperty& property : kTextProperties) {
        EXPECT_EQ(Get(property), u"invalid") << Utf8(property.name);
    }
    OutNumber priority;
    EXPECT_EQ(m_task->get_Priority(priority.Slot()), 0);
    EXPECT_EQ(priority.Value(), 0);
    EXPECT_EQ(TaskClient(m_task).Version(), Ok(u""));
}

TEST_F(TaskProperties, ReadBackWhatWasPutAndNothingElseChanges)
{
    for (std::size_t i = 0; i < std::size(kTextProperties); ++i) {
        ASSERT_EQ(Put(kTextProperties[i], Utf16("text " + std::to_string(i))), 0);
        for (std::size_t other = 0; other < std::size(kTextProperties); ++other) {
            EXPECT_EQ(Get(kTextProperties[other]), other <= i ? Utf16("text " + std::to_string(other)) : u"invalid");
        }
    }
}

TEST_F(TaskProperties, KeepAnyText)
{
    using namespace std::literals;
    for (const std::u16string_view text : {u""sv, u"a\0b"sv, u"\U0001F600\u00E4"sv, u"<&>\r\n\t "sv, u"\uFFFF"sv}) {
        for (const TextProperty& property : kTextProperties) {
            ASSERT_EQ(Put(property, text), 0);
            EXPECT_EQ(Get(property), text) << Utf8(property.name);
        }
    }
}

TEST_F(TaskProperties, TakeANullStringAsTheEmptyOne)
{
    for (const TextProperty& property : kTextProperties) {
        ASSERT_EQ(Put(property, Bstr()), 0);
        OutText slot;
        EXPECT_EQ((m_task.Get()->*property.get)(slot.Slot()), 0);
        EXPECT_FALSE(slot.IsNull()) << Utf8(property.name);
        EXPECT_EQ(slot.Text(), u"") << Utf8(property.name);
    }
}

TEST_F(TaskProperties, WorkByName)
{
    for (const TextProperty& property : kTextProperties) {
        EXPECT_EQ(MemberCall(m_task.Get(), property.name).In(Bstr(property.name)).Put().code, 0);
        const CallOutcome outcome = MemberCall(m_task.Get(), property.name).Get();
        EXPECT_EQ(outcome.code, 0);
        EXPECT_EQ(outcome.type, VT_BSTR);
        EXPECT_EQ(outcome.text, property.name);
        EXPECT_EQ(Get(property), property.name);
    }
    EXPECT_EQ(MemberCall(m_task.Get(), u"Version").Get().text, u"");
    EXPECT_EQ(MemberCall(m_task.Get(), u"Version").Get().type, VT_BSTR);
}

TEST_F(TaskProperties, PriorityIsASigned32BitNumber)
{
    for (const LONG value : {0, 1, -5, INT32_MAX, INT32_MIN}) {
        OutNumber slot;
        ASSERT_EQ(m_task->put_Priority(value), 0);
        EXPECT_EQ(m_task->get_Priority(slot.Slot()), 0);
        EXPECT_EQ(slot.Value(), value);
        EXPECT_EQ(MemberCall(m_task.Get(), u"Priority").In(value).Put().code, 0);
        const CallOutcome outcome = MemberCall(m_task.Get(), u"Priority").Get();
        EXPECT_EQ(outcome.type, VT_I4);
        EXPECT_EQ(outcome.number, value);
    }
}

TEST_F(TaskProperties, WithoutAPutOrGet_GiveMemberNotFound)
{
    EXPECT_EQ(MemberCall(m_task.Get(), u"Version").In(u"x").Put().code, DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(MemberCall(m_task.Get(), u"TaskData").In(u"x").Put().code, DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(MemberCall(m_task.Get(), u"Section").Get().code, DISP_E_MEMBERNOTFOUND);
}

TEST_F(TaskProperties, ANullSlotIsABadArgument)
{
    for (const TextProperty& property : kTextProperties) {
        EXPECT_EQ((m_task.Get()->*property.get)(nullptr), result::BadArgument) << Utf8(property.name);
        EXPECT_EQ(TakeErrorInformation().description, result::SentenceFor(result::BadArgument));
    }
    const Bstr text(u"Task");
    const Bstr name(u"TaskID");
    EXPECT_EQ(m_task->get_Version(nullptr), result::BadArgument);
    EXPECT_EQ(m_task->get_TaskData(nullptr), result::BadArgument);
    EXPECT_EQ(m_task->get_Priority(nullptr), result::BadArgument);
    EXPECT_EQ(m_task->put_Section(text.Get()), 0);
    EXPECT_EQ(m_task->GetSetting(name.Get(), nullptr), result::BadArgument);
    EXPECT_EQ(m_task->GetSectionSetting(text.Get(), name.Get(), nullptr), result::BadArgument);
}

TEST_F(TaskProperties, GetVersion_OverwritesTheSlotWithoutFreeingWhatItHeld)
{
    const Bstr held(u"still the caller's");
    BSTR slot = held.Get();
    ASSERT_EQ(m_task->get_Version(&slot), 0);
    const Bstr version = [&] {
        Bstr owner;
        *owner.Slot() = slot;
        return owner;
    }();
    EXPECT_NE(version.Get(), held.Get());
    EXPECT_EQ(held.Text(), u"still the caller's");
    EXPECT_EQ(version.Text(), u"");
}

TEST_F(TaskProperties, AFailureLeavesErrorInformationAndASuccessClearsIt)
{
    OutText slot;
    const Bstr name(u"x");
    LeaveStaleErrorInformation();
    EXPECT_EQ(m_task->GetSetting(name.Get(), slot.Slot()), result::SectionNotFound);
    const ErrorInformation failure = TakeErrorInformation();
    EXPECT_EQ(failure.description, result::SentenceFor(result::SectionNotFound));
    EXPECT_EQ(failure.source, u"ZuPolicyManager.PolicyTask");
    EXPECT_TRUE(failure.interfaceId == IID_IPolicyTask);
    LeaveStaleErrorInformation();
    EXPECT_EQ(m_task->put_Priority(1), 0);
    EXPECT_FALSE(TakeErrorInformation().present);
}

}  // namespace zupm::test
