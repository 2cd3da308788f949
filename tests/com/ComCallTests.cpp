// The guard around interface methods: exceptions, error information, log lines.
#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "Toy.h"
#include "com/ObjectForms.h"
#include "common/Resources.h"
#include "zuPolicyManager/Owners.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm::test {
namespace {

struct Line {
    std::uint32_t subsystem;
    std::int32_t level;
    std::u16string text;

    friend bool operator==(const Line&, const Line&) = default;
};

class Calls : public testing::Test {
protected:
    Calls()
    {
        g_toyScript = {};
        CzuLogger::SetSink([this](const LogMessage& message) {
            lines.push_back({message.subsystem, message.level, std::u16string(message.text)});
        });
        EXPECT_EQ(CreateObject<CToy>(nullptr, IID_ITaskInfo, toy.PutVoid()), S_OK);
    }
    ~Calls() override
    {
        toy.Reset();
        CzuLogger::SetSink({});
        g_toyScript = {};
    }

    HRESULT GetFirst(result::Code code, std::u16string detail = {})
    {
        g_toyScript.onGetFirst = [=](BSTR*, BSTR*, std::u16string& out) {
            out = detail;
            return code;
        };
        return toy->GetFirst(nullptr, nullptr);
    }

    [[nodiscard]] static std::u16string Description()
    {
        ComPtr<IErrorInfo> info;
        if (GetErrorInfo(0, info.Put()) != S_OK) {
            return u"(none)";
        }
        Bstr text;
        EXPECT_EQ(info->GetDescription(text.Put()), S_OK);
        return text.Text();
    }

    ComPtr<ITaskInfo> toy;
    std::vector<Line> lines;
};

TEST_F(Calls, FailingCall_LeavesTheSentenceTheSourceAndTheInterface)
{
    EXPECT_EQ(GetFirst(result::TaskNotFound), result::TaskNotFound);
    ComPtr<IErrorInfo> info;
    ASSERT_EQ(GetErrorInfo(0, info.Put()), S_OK);
    Bstr text;
    EXPECT_EQ(info->GetDescription(text.Put()), S_OK);
    EXPECT_EQ(text.Text(), result::SentenceFor(result::TaskNotFound));
    EXPECT_EQ(info->GetSource(text.Put()), S_OK);
    EXPECT_EQ(text.Text(), u"ZuPolicyManager.Toy");
    GUID iid{};
    EXPECT_EQ(info->GetGUID(&iid), S_OK);
    EXPECT_TRUE(iid == IID_ITaskInfo);
    EXPECT_TRUE(lines.empty());
}

TEST_F(Calls, FailingCall_LeavesTheDetailInPlaceOfTheSentence)
{
    EXPECT_EQ(GetFirst(result::SyntaxError, u"policy.xml:3:7: not closed"), result::SyntaxError);
    EXPECT_EQ(Description(), u"policy.xml:3:7: not closed");
}

TEST_F(Calls, FailingCall_NamesAPlatformCodeThatHasNoSentence)
{
    EXPECT_EQ(GetFirst(static_cast<result::Code>(0x80070057u)), static_cast<result::Code>(0x80070057u));
    EXPECT_EQ(Description(), u"The platform reported error 0x80070057.");
}

TEST_F(Calls, SucceedingCall_ClearsWhatAnEarlierCallLeft)
{
    EXPECT_EQ(GetFirst(result::TaskNotFound), result::TaskNotFound);
    EXPECT_EQ(GetFirst(result::Success, u"nothing to say"), result::Success);
    EXPECT_EQ(Description(), u"(none)");
}

TEST_F(Calls, BadAlloc_BecomesOutOfMemoryWithoutALogLine)
{
    g_toyScript.onGetFirst = [](BSTR*, BSTR*, std::u16string&) -> result::Code { throw std::bad_alloc(); };
    EXPECT_EQ(toy->GetFirst(nullptr, nullptr), result::OutOfMemory);
    EXPECT_EQ(Description(), result::SentenceFor(result::OutOfMemory));
    EXPECT_TRUE(lines.empty());
}

TEST_F(Calls, AnyOtherException_BecomesUnexpectedAndIsLoggedWithTheOperation)
{
    ASSERT_EQ(ResourceModuleUse::EnsureLoaded(), result::Success);
    const auto module = ResourceModuleUse::Current();
    const std::u16string format = GetResString(module.get(), 149);
    ASSERT_FALSE(format.empty());
    g_toyScript.onGetFirst = [](BSTR*, BSTR*, std::u16string&) -> result::Code { throw 7; };
    EXPECT_EQ(toy->GetFirst(nullptr, nullptr), result::Unexpected);
    EXPECT_EQ(Description(), result::SentenceFor(result::Unexpected));
    const LogArgument argument[] = {LogArgument(std::u16string_view(u"CToy::GetFirst()"))};
    EXPECT_EQ(lines, (std::vector<Line>{{0x800, 1, CzuLogger::Format(format, argument)}}));
}

TEST_F(Calls, ByName_ReachesTheSameMethodWithTheSameErrorInformation)
{
    WideLiteral name{"getfirst"};
    LPOLESTR names[] = {name.text};
    DISPID id = 0;
    ASSERT_EQ(toy->GetIDsOfNames(IID_NULL, names, 1, 0, &id), S_OK);
    EXPECT_EQ(id, 1);
    Bstr first;
    Bstr second;
    VARIANTARG arguments[2]{};
    arguments[0].vt = VT_BSTR | VT_BYREF;
    arguments[0].pbstrVal = second.Slot();
    arguments[1].vt = VT_BSTR | VT_BYREF;
    arguments[1].pbstrVal = first.Slot();
    DISPPARAMS parameters{arguments, nullptr, 2, 0};
    EXPECT_EQ(toy->Invoke(id, IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr), S_OK);
    EXPECT_EQ(first.Text(), u"first");
    EXPECT_EQ(second.Text(), u"second");

    g_toyScript.onGetFirst = [](BSTR*, BSTR*, std::u16string&) { return result::ListEmpty; };
    EXCEPINFO exception{};
    EXPECT_EQ(toy->Invoke(id, IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, &exception, nullptr),
              DISP_E_EXCEPTION);
    EXPECT_EQ(exception.scode, result::ListEmpty);
    EXPECT_EQ(TextOf(exception.bstrDescription), result::SentenceFor(result::ListEmpty));
    EXPECT_EQ(TextOf(exception.bstrSource), u"ZuPolicyManager.Toy");
    ClearString(&exception.bstrDescription);
    ClearString(&exception.bstrSource);
    ClearString(&exception.bstrHelpFile);
}

TEST_F(Calls, ErrorInformation_IsPromisedForTheOwnInterfaceAlone)
{
    ComPtr<ISupportErrorInfo> support;
    ASSERT_EQ(toy.Query(IID_ISupportErrorInfo, support), S_OK);
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID_ITaskInfo), S_OK);
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID_IPolicyFile), S_FALSE);
}

}  // namespace
}  // namespace zupm::test
