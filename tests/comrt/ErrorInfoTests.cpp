#include <gtest/gtest.h>

#include <thread>

#include "tests/comrt/CountedObject.h"
#include "tests/support/Bstr.h"
#include "tests/support/ComPtr.h"

namespace zupm::test {

namespace {

OLECHAR g_description[] = u"Größe falsch";
OLECHAR g_source[] = u"Toy.1";
OLECHAR g_helpFile[] = u"toy.txt";

ComPtr<ICreateErrorInfo> NewErrorInfo()
{
    ComPtr<ICreateErrorInfo> info;
    EXPECT_EQ(CreateErrorInfo(info.Put()), S_OK);
    return info;
}

std::u16string DescriptionOf(IErrorInfo* info)
{
    Bstr text;
    EXPECT_EQ(info->GetDescription(text.Slot()), S_OK);
    return text.Text();
}

TEST(ErrorInformation, EverythingThatWasSetIsReadBack)
{
    const auto writer = NewErrorInfo();
    EXPECT_EQ(writer->SetGUID(IID_IDispatch), S_OK);
    EXPECT_EQ(writer->SetDescription(g_description), S_OK);
    EXPECT_EQ(writer->SetSource(g_source), S_OK);
    EXPECT_EQ(writer->SetHelpFile(g_helpFile), S_OK);
    EXPECT_EQ(writer->SetHelpContext(77), S_OK);

    const auto reader = writer.Query<IErrorInfo>();
    ASSERT_TRUE(reader);
    GUID guid{};
    Bstr source;
    Bstr file;
    DWORD context = 0;
    EXPECT_EQ(reader->GetGUID(&guid), S_OK);
    EXPECT_EQ(reader->GetSource(source.Slot()), S_OK);
    EXPECT_EQ(reader->GetHelpFile(file.Slot()), S_OK);
    EXPECT_EQ(reader->GetHelpContext(&context), S_OK);
    EXPECT_EQ(guid, IID_IDispatch);
    EXPECT_EQ(DescriptionOf(reader.Get()), g_description);
    EXPECT_EQ(source.Text(), g_source);
    EXPECT_EQ(file.Text(), g_helpFile);
    EXPECT_EQ(context, 77u);
}

TEST(ErrorInformation, WhatWasNeverSetIsNullOrZero)
{
    const auto reader = NewErrorInfo().Query<IErrorInfo>();
    BSTR text = reinterpret_cast<BSTR>(std::uintptr_t{0x10});
    EXPECT_EQ(reader->GetDescription(&text), S_OK);
    EXPECT_EQ(text, nullptr);
    GUID guid = IID_IDispatch;
    EXPECT_EQ(reader->GetGUID(&guid), S_OK);
    EXPECT_EQ(guid, GUID_NULL);
}

TEST(ErrorInformation, SettingNullTextClearsIt)
{
    const auto writer = NewErrorInfo();
    EXPECT_EQ(writer->SetDescription(g_description), S_OK);
    EXPECT_EQ(writer->SetDescription(nullptr), S_OK);
    EXPECT_EQ(DescriptionOf(writer.Query<IErrorInfo>().Get()), u"");
}

TEST(ErrorInformation, NullOutsAreRefused)
{
    const auto writer = NewErrorInfo();
    const auto reader = writer.Query<IErrorInfo>();
    EXPECT_EQ(reader->GetDescription(nullptr), E_POINTER);
    EXPECT_EQ(reader->GetGUID(nullptr), E_POINTER);
    EXPECT_EQ(reader->GetHelpContext(nullptr), E_POINTER);
    EXPECT_EQ(writer->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
    EXPECT_EQ(CreateErrorInfo(nullptr), E_POINTER);
    EXPECT_EQ(GetErrorInfo(0, nullptr), E_POINTER);
}

TEST(ErrorInformation, BothInterfacesAreOneObject)
{
    const auto writer = NewErrorInfo();
    const auto reader = writer.Query<IErrorInfo>();
    EXPECT_EQ(writer.Query<IUnknown>().Get(), reader.Query<IUnknown>().Get());
    EXPECT_EQ(reader.Query<ICreateErrorInfo>().Get(), writer.Get());
    EXPECT_FALSE(writer.Query<IDispatch>());
}

TEST(ErrorInformation, GetHandsOutWhatWasSetOnce)
{
    const auto writer = NewErrorInfo();
    const auto info = writer.Query<IErrorInfo>();
    EXPECT_EQ(SetErrorInfo(0, info.Get()), S_OK);
    ComPtr<IErrorInfo> taken;
    EXPECT_EQ(GetErrorInfo(0, taken.Put()), S_OK);
    EXPECT_EQ(taken.Get(), info.Get());
    ComPtr<IErrorInfo> again(info.Get());
    EXPECT_EQ(GetErrorInfo(0, again.Put()), S_FALSE);
    EXPECT_FALSE(again);
}

TEST(ErrorInformation, SetReplacesAndNullClears)
{
    const auto first = NewErrorInfo().Query<IErrorInfo>();
    const auto second = NewErrorInfo().Query<IErrorInfo>();
    EXPECT_EQ(SetErrorInfo(0, first.Get()), S_OK);
    EXPECT_EQ(SetErrorInfo(0, second.Get()), S_OK);
    ComPtr<IErrorInfo> taken;
    EXPECT_EQ(GetErrorInfo(0, taken.Put()), S_OK);
    EXPECT_EQ(taken.Get(), second.Get());
    EXPECT_EQ(SetErrorInfo(0, first.Get()), S_OK);
    EXPECT_EQ(SetErrorInfo(0, nullptr), S_OK);
    EXPECT_EQ(GetErrorInfo(0, taken.Put()), S_FALSE);
}

TEST(ErrorInformation, ReservedArgumentsMustBeZero)
{
    ComPtr<IErrorInfo> taken;
    EXPECT_EQ(SetErrorInfo(1, nullptr), E_INVALIDARG);
    EXPECT_EQ(GetErrorInfo(1, taken.Put()), E_INVALIDARG);
}

TEST(ErrorInformation, EachThreadHasItsOwnAndGivesItUpAtItsEnd)
{
    const auto writer = NewErrorInfo();
    const auto info = writer.Query<IErrorInfo>();
    EXPECT_EQ(SetErrorInfo(0, info.Get()), S_OK);
    std::thread([&] {
        ComPtr<IErrorInfo> taken;
        EXPECT_EQ(GetErrorInfo(0, taken.Put()), S_FALSE);
        EXPECT_EQ(SetErrorInfo(0, info.Get()), S_OK);
    }).join();
    ComPtr<IErrorInfo> taken;
    EXPECT_EQ(GetErrorInfo(0, taken.Put()), S_OK);
    // The ended thread's reference is gone: what is left are the three held here.
    EXPECT_EQ(taken->AddRef(), 4u);
    taken->Release();
}

}  // namespace
}  // namespace zupm::test
