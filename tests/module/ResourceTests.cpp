// The resource module that every object needs at its creation.
#include <gtest/gtest.h>

#include <filesystem>

#include "platform/Modules.h"
#include "tests/module/Classes.h"
#include "tests/support/ComponentHost.h"
#include "tests/support/MemberCall.h"
#include "tests/support/PolicyFileClient.h"
#include "tests/support/TempFolder.h"

namespace zupm::test {

namespace {

class ResourceModuleOf : public testing::Test {
protected:
    TempFolder m_empty;
    TempFolder m_folder;
};

}  // namespace

TEST_F(ResourceModuleOf, EveryClass_IsNeededForItsCreation)
{
    const ResourceFolder missing(m_empty.Folder().u16string());
    for (const ClassRow& row : kClasses) {
        ComPtr<IUnknown> object;
        EXPECT_EQ(CreateOf(row, nullptr, row.iid, object), result::GeneralFailure) << row.label;
        EXPECT_FALSE(object) << row.label;
    }
}

TEST_F(ResourceModuleOf, OneObject_IsReleasedByAnyOtherThatGoes)
{
    const ComPtr<IPolicyFile> file = Create<IPolicyFile>();
    ComPtr<ITaskInfo> first = Create<ITaskInfo>();
    {
        const ResourceFolder missing(m_empty.Folder().u16string());
        ComPtr<ITaskInfo> second;
        EXPECT_EQ(TryCreate(second), S_OK) << "the module that is loaded serves";
        first.Reset();
        ComPtr<ITaskInfo> third;
        EXPECT_EQ(TryCreate(third), result::GeneralFailure) << "the object that went released it";
    }
    ComPtr<ITaskInfo> fourth;
    EXPECT_EQ(TryCreate(fourth), S_OK) << "the next creation loads it again";
}

TEST_F(ResourceModuleOf, ObjectsThatLive_IsNotNeededAnyMore)
{
    ProductClient product(Create<IPolicyProduct>());
    Create<ITaskInfo>().Reset();
    const ResourceFolder missing(m_empty.Folder().u16string());
    EXPECT_EQ(product.Put(u"S", u"x", u"1"), 0);
    EXPECT_EQ(product.Get(u"S", u"x"), (TextResult{0, u"1"}));
}

TEST_F(ResourceModuleOf, TheUsersLanguage_ComesBeforeTheOthers)
{
    // Both objects say the same, but only the language's own folder has a module here.
    constexpr std::u16string_view kDigits = u"0123456789abcdef";
    std::u16string language;
    for (int shift = 12; shift >= 0; shift -= 4) {
        language += kDigits[static_cast<std::size_t>(GetUserDefaultLangID() >> shift) & 0xF];
    }
    const std::filesystem::path own(OwnModuleFolder());
    std::filesystem::create_directory(m_folder.Path(language));
    std::filesystem::copy_file(own / "AgentRes.dll", std::filesystem::path(m_folder.Path(language)) / "AgentRes.dll");
    const ResourceFolder folder(m_folder.Folder().u16string());
    ComPtr<ITaskInfo> object;
    EXPECT_EQ(TryCreate(object), S_OK);
}

TEST_F(ResourceModuleOf, APolicyFileThatLostIt_CreateTaskSaysSuccessWithANullSlotAndCreatePolicyFails)
{
    const ComPtr<IPolicyFile> file = Create<IPolicyFile>();
    Create<ITaskInfo>().Reset();
    const ResourceFolder missing(m_empty.Folder().u16string());
    OutObject<IPolicyTask> task;
    OutObject<IPolicyProduct> product;
    EXPECT_EQ(file->CreateTask(task.Slot()), 0);
    EXPECT_TRUE(task.IsNull());
    EXPECT_EQ(file->CreatePolicy(product.Slot()), result::GeneralFailure);
    EXPECT_TRUE(product.IsNull());
}

TEST_F(ResourceModuleOf, APolicyFileThatLostIt_HandsNothingOut)
{
    PolicyFileClient file;
    ASSERT_EQ(file.Load(m_folder.Write(u"policy.xml",
                                       "<F><PolicyRoot><PolicyGroup><Policy><Product SoftwareID='A'/></Policy>"
                                       "</PolicyGroup></PolicyRoot><TaskRoot><TaskGroup SoftwareID='A' TaskID='1'>"
                                       "<Task/></TaskGroup></TaskRoot></F>")),
              0);
    Create<ITaskInfo>().Reset();
    const ResourceFolder missing(m_empty.Folder().u16string());
    const Bstr a(u"A");
    const Bstr one(u"1");
    OutObject<IUnknown> slot;
    EXPECT_EQ(file.Object()->GetPolicy(a.Get(), slot.Slot()), result::GeneralFailure);
    EXPECT_TRUE(slot.Untouched());
    EXPECT_EQ(file.Object()->GetTask(a.Get(), one.Get(), slot.Slot()), result::GeneralFailure);
    EXPECT_TRUE(slot.Untouched());
    EXPECT_EQ(file.Object()->GetTaskInfo(slot.Slot()), result::GeneralFailure);
    EXPECT_TRUE(slot.IsNull());
}

}  // namespace zupm::test
