// The members of the interfaces: their numbers, names, kinds and slots, in the tables and as objects answer. The one
// place that has every number; the type library is compared with the tables (tests/windows/TypeLibraryTests.cpp).
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <span>

#include "interfaces/InterfaceTables.h"
#include "tests/module/Classes.h"
#include "tests/support/Bstr.h"
#include "tests/support/MemberCall.h"

namespace zupm::test {

namespace {

/// The slot of a virtual function, as both targets' compilers encode it: one more than its offset in the table.
template <class Function>
std::size_t SlotOf(Function function)
{
    std::size_t encoded = 0;
    static_assert(sizeof(function) == 2 * sizeof(encoded));
    std::memcpy(&encoded, &function, sizeof(encoded));
    return (encoded - 1) / sizeof(void*);
}

struct MemberRow {
    DISPID id;
    std::u16string_view name;
    MemberKind kind;
    std::size_t slot;
};

const MemberRow kTaskInfoMembers[] = {
    {1, u"GetFirst", MemberKind::Method, SlotOf(&ITaskInfo::GetFirst)},
    {2, u"GetNext", MemberKind::Method, SlotOf(&ITaskInfo::GetNext)},
};

const MemberRow kPolicyTaskMembers[] = {
    {1, u"CreatorID", MemberKind::PropertyGet, SlotOf(&IPolicyTask::get_CreatorID)},
    {1, u"CreatorID", MemberKind::PropertyPut, SlotOf(&IPolicyTask::put_CreatorID)},
    {2, u"SoftwareID", MemberKind::PropertyGet, SlotOf(&IPolicyTask::get_SoftwareID)},
    {2, u"SoftwareID", MemberKind::PropertyPut, SlotOf(&IPolicyTask::put_SoftwareID)},
    {3, u"TaskID", MemberKind::PropertyGet, SlotOf(&IPolicyTask::get_TaskID)},
    {3, u"TaskID", MemberKind::PropertyPut, SlotOf(&IPolicyTask::put_TaskID)},
    {4, u"DisplayName", MemberKind::PropertyGet, SlotOf(&IPolicyTask::get_DisplayName)},
    {4, u"DisplayName", MemberKind::PropertyPut, SlotOf(&IPolicyTask::put_DisplayName)},
    {5, u"TaskType", MemberKind::PropertyGet, SlotOf(&IPolicyTask::get_TaskType)},
    {5, u"TaskType", MemberKind::PropertyPut, SlotOf(&IPolicyTask::put_TaskType)},
    {6, u"PlatformsSupported", MemberKind::PropertyGet, SlotOf(&IPolicyTask::get_PlatformsSupported)},
    {6, u"PlatformsSupported", MemberKind::PropertyPut, SlotOf(&IPolicyTask::put_PlatformsSupported)},
    {7, u"Priority", MemberKind::PropertyGet, SlotOf(&IPolicyTask::get_Priority)},
    {7, u"Priority", MemberKind::PropertyPut, SlotOf(&IPolicyTask::put_Priority)},
    {8, u"TaskData", MemberKind::PropertyGet, SlotOf(&IPolicyTask::get_TaskData)},
    {9, u"Section", MemberKind::PropertyPut, SlotOf(&IPolicyTask::put_Section)},
    {10, u"GetSetting", MemberKind::Method, SlotOf(&IPolicyTask::GetSetting)},
    {11, u"PutSetting", MemberKind::Method, SlotOf(&IPolicyTask::PutSetting)},
    {12, u"GetSectionSetting", MemberKind::Method, SlotOf(&IPolicyTask::GetSectionSetting)},
    {13, u"PutSectionSetting", MemberKind::Method, SlotOf(&IPolicyTask::PutSectionSetting)},
    {14, u"RemoveSetting", MemberKind::Method, SlotOf(&IPolicyTask::RemoveSetting)},
    {15, u"RemoveSection", MemberKind::Method, SlotOf(&IPolicyTask::RemoveSection)},
    {16, u"WriteTaskDataToIniFile", MemberKind::Method, SlotOf(&IPolicyTask::WriteTaskDataToIniFile)},
    {17, u"Version", MemberKind::PropertyGet, SlotOf(&IPolicyTask::get_Version)},
};

const MemberRow kPolicyProductMembers[] = {
    {1, u"SoftwareID", MemberKind::PropertyGet, SlotOf(&IPolicyProduct::get_SoftwareID)},
    {1, u"SoftwareID", MemberKind::PropertyPut, SlotOf(&IPolicyProduct::put_SoftwareID)},
    {2, u"PolicyData", MemberKind::PropertyGet, SlotOf(&IPolicyProduct::get_PolicyData)},
    {3, u"Section", MemberKind::PropertyPut, SlotOf(&IPolicyProduct::put_Section)},
    {4, u"GetSetting", MemberKind::Method, SlotOf(&IPolicyProduct::GetSetting)},
    {5, u"PutSetting", MemberKind::Method, SlotOf(&IPolicyProduct::PutSetting)},
    {6, u"GetSectionSetting", MemberKind::Method, SlotOf(&IPolicyProduct::GetSectionSetting)},
    {7, u"PutSectionSetting", MemberKind::Method, SlotOf(&IPolicyProduct::PutSectionSetting)},
    {8, u"RemoveSetting", MemberKind::Method, SlotOf(&IPolicyProduct::RemoveSetting)},
    {9, u"RemoveSection", MemberKind::Method, SlotOf(&IPolicyProduct::RemoveSection)},
};

const MemberRow kPolicyFileMembers[] = {
    {1, u"AddTask", MemberKind::Method, SlotOf(&IPolicyFile::AddTask)},
    {2, u"AddPolicy", MemberKind::Method, SlotOf(&IPolicyFile::AddPolicy)},
    {3, u"GetTask", MemberKind::Method, SlotOf(&IPolicyFile::GetTask)},
    {4, u"GetPolicy", MemberKind::Method, SlotOf(&IPolicyFile::GetPolicy)},
    {5, u"RemovePolicy", MemberKind::Method, SlotOf(&IPolicyFile::RemovePolicy)},
    {6, u"RemoveTask", MemberKind::Method, SlotOf(&IPolicyFile::RemoveTask)},
    {7, u"InitializeFile", MemberKind::Method, SlotOf(&IPolicyFile::InitializeFile)},
    {8, u"WriteFile", MemberKind::Method, SlotOf(&IPolicyFile::WriteFile)},
    {9, u"GetTaskInfo", MemberKind::Method, SlotOf(&IPolicyFile::GetTaskInfo)},
    {10, u"CreateTask", MemberKind::Method, SlotOf(&IPolicyFile::CreateTask)},
    {11, u"CreatePolicy", MemberKind::Method, SlotOf(&IPolicyFile::CreatePolicy)},
    {12, u"WriteFileBuffer", MemberKind::Method, SlotOf(&IPolicyFile::WriteFileBuffer)},
    {13, u"VersionTask", MemberKind::PropertyGet, SlotOf(&IPolicyFile::get_VersionTask)},
    {14, u"VersionPolicy", MemberKind::PropertyGet, SlotOf(&IPolicyFile::get_VersionPolicy)},
    {15, u"PolicyAssignmentList", MemberKind::PropertyGet, SlotOf(&IPolicyFile::get_PolicyAssignmentList)},
};

const MemberRow kPolicyFileEditMembers[] = {
    {1011, u"OpenForEdit", MemberKind::Method, SlotOf(&IPolicyFileEdit::OpenForEdit)},
    {1012, u"HasFileChanged", MemberKind::Method, SlotOf(&IPolicyFileEdit::HasFileChanged)},
    {1013, u"RehearseCommit", MemberKind::Method, SlotOf(&IPolicyFileEdit::RehearseCommit)},
    {1014, u"CommitEdit", MemberKind::Method, SlotOf(&IPolicyFileEdit::CommitEdit)},
    {1015, u"EndEdit", MemberKind::Method, SlotOf(&IPolicyFileEdit::EndEdit)},
};

const MemberRow kPolicyFileContentsMembers[] = {
    {1001, u"PolicyIDs", MemberKind::PropertyGet, SlotOf(&IPolicyFileContents::get_PolicyIDs)},
    {1002, u"TaskSoftwareIDs", MemberKind::PropertyGet, SlotOf(&IPolicyFileContents::get_TaskSoftwareIDs)},
    {1003, u"GetTaskIDs", MemberKind::Method, SlotOf(&IPolicyFileContents::GetTaskIDs)},
    {1004, u"HasChangedOnDisk", MemberKind::PropertyGet, SlotOf(&IPolicyFileContents::get_HasChangedOnDisk)},
    {1005, u"WriteIfUnchanged", MemberKind::Method, SlotOf(&IPolicyFileContents::WriteIfUnchanged)},
    {1006, u"Notices", MemberKind::PropertyGet, SlotOf(&IPolicyFileContents::get_Notices)},
    {1007, u"GetStoredPolicySetting", MemberKind::Method, SlotOf(&IPolicyFileContents::GetStoredPolicySetting)},
    {1008, u"GetStoredTaskSetting", MemberKind::Method, SlotOf(&IPolicyFileContents::GetStoredTaskSetting)},
};

const MemberRow kPolicySectionsMembers[] = {
    {1001, u"SectionNames", MemberKind::PropertyGet, SlotOf(&IPolicySections::get_SectionNames)},
    {1002, u"GetSettingNames", MemberKind::Method, SlotOf(&IPolicySections::GetSettingNames)},
    {1003, u"GetStoredSetting", MemberKind::Method, SlotOf(&IPolicySections::GetStoredSetting)},
    {1004, u"TakenVersion", MemberKind::PropertyGet, SlotOf(&IPolicySections::get_TakenVersion)},
};

const MemberRow kPolicyNamesMembers[] = {
    {0, u"Item", MemberKind::PropertyGet, SlotOf(&IPolicyNames::get_Item)},
    {1, u"Count", MemberKind::PropertyGet, SlotOf(&IPolicyNames::get_Count)},
    {-4, u"_NewEnum", MemberKind::PropertyGet, SlotOf(&IPolicyNames::get__NewEnum)},
};

const MemberRow kPolicyNoticesMembers[] = {
    {1, u"Count", MemberKind::PropertyGet, SlotOf(&IPolicyNotices::get_Count)},
    {2, u"Kind", MemberKind::PropertyGet, SlotOf(&IPolicyNotices::get_Kind)},
    {3, u"Line", MemberKind::PropertyGet, SlotOf(&IPolicyNotices::get_Line)},
    {4, u"Column", MemberKind::PropertyGet, SlotOf(&IPolicyNotices::get_Column)},
    {5, u"SoftwareID", MemberKind::PropertyGet, SlotOf(&IPolicyNotices::get_SoftwareID)},
    {6, u"TaskID", MemberKind::PropertyGet, SlotOf(&IPolicyNotices::get_TaskID)},
    {0, u"Text", MemberKind::PropertyGet, SlotOf(&IPolicyNotices::get_Text)},
};

/// An interface that is no class's dual one.
struct OtherInterfaceRow {
    const InterfaceDescription& table;
    std::span<const MemberRow> members;
    std::size_t firstSlot;
};

const OtherInterfaceRow kOtherInterfaces[] = {
    {PolicyFileEditInterface(), kPolicyFileEditMembers, 3},
    {PolicyFileContentsInterface(), kPolicyFileContentsMembers, 3},
    {PolicySectionsInterface(), kPolicySectionsMembers, 3},
    {PolicyNamesInterface(), kPolicyNamesMembers, 7},
    {PolicyNoticesInterface(), kPolicyNoticesMembers, 7},
};

struct InterfaceRow {
    const ClassRow& theClass;
    const InterfaceDescription& table;
    std::span<const MemberRow> members;
};

const InterfaceRow kInterfaces[] = {
    {kClasses[0], TaskInfoInterface(), kTaskInfoMembers},
    {kClasses[1], PolicyTaskInterface(), kPolicyTaskMembers},
    {kClasses[2], PolicyProductInterface(), kPolicyProductMembers},
    {kClasses[3], PolicyFileInterface(), kPolicyFileMembers},
};

/// A class, and an interface that its objects have beside their dual one.
struct BesideRow {
    const InterfaceRow& dual;
    const OtherInterfaceRow& other;
};

const BesideRow kBeside[] = {
    {kInterfaces[3], kOtherInterfaces[0]},
    {kInterfaces[3], kOtherInterfaces[1]},
    {kInterfaces[2], kOtherInterfaces[2]},
    {kInterfaces[1], kOtherInterfaces[2]},
};

void ExpectTable(const InterfaceDescription& table, std::span<const MemberRow> members)
{
    ASSERT_EQ(table.members.size(), members.size()) << Utf8(table.name);
    for (std::size_t i = 0; i < members.size(); ++i) {
        const Member& inTable = table.members[i];
        EXPECT_EQ(inTable.name, members[i].name);
        EXPECT_EQ(inTable.id, members[i].id) << Utf8(inTable.name);
        EXPECT_EQ(inTable.kind, members[i].kind) << Utf8(inTable.name);
    }
}

ComPtr<IDispatch> ObjectOf(const InterfaceRow& row)
{
    ComPtr<IUnknown> object;
    EXPECT_EQ(CreateOf(row.theClass, nullptr, IID_IUnknown, object), S_OK);
    return object.Query<IDispatch>();
}

std::u16string InCase(std::u16string_view name, bool upper)
{
    std::u16string changed(name);
    for (char16_t& unit : changed) {
        const bool change = upper ? unit >= u'a' && unit <= u'z' : unit >= u'A' && unit <= u'Z';
        unit = static_cast<char16_t>(change ? unit ^ 0x20 : unit);
    }
    return changed;
}

}  // namespace

TEST(Members, LieInConsecutiveSlotsAfterTheSevenOfIDispatch)
{
    for (const InterfaceRow& row : kInterfaces) {
        std::size_t expected = 7;
        for (const MemberRow& member : row.members) {
            EXPECT_EQ(member.slot, expected++) << row.theClass.label << " " << Utf8(member.name);
        }
    }
}

TEST(Members, OfTheOtherInterfacesLieInConsecutiveSlotsAfterThoseOfTheirBase)
{
    for (const OtherInterfaceRow& row : kOtherInterfaces) {
        std::size_t expected = row.firstSlot;
        for (const MemberRow& member : row.members) {
            EXPECT_EQ(member.slot, expected++) << Utf8(row.table.name) << " " << Utf8(member.name);
        }
    }
}

TEST(Members, AreInTheTableInSlotOrderWithTheirNumbersAndKinds)
{
    for (const InterfaceRow& row : kInterfaces) {
        ExpectTable(row.table, row.members);
    }
    for (const OtherInterfaceRow& row : kOtherInterfaces) {
        ExpectTable(row.table, row.members);
    }
}

TEST(Members, AreFoundByNameInAnyCaseUnderTheirNumbers)
{
    for (const InterfaceRow& row : kInterfaces) {
        const ComPtr<IDispatch> object = ObjectOf(row);
        for (const MemberRow& member : row.members) {
            EXPECT_EQ(MemberCall::IdOf(object.Get(), member.name), member.id) << Utf8(member.name);
            EXPECT_EQ(MemberCall::IdOf(object.Get(), InCase(member.name, true)), member.id) << Utf8(member.name);
            EXPECT_EQ(MemberCall::IdOf(object.Get(), InCase(member.name, false)), member.id) << Utf8(member.name);
        }
    }
}

TEST(Members, OfInterfacesBesideTheDualOneAreFoundByNameOnTheSameObject)
{
    for (const BesideRow& row : kBeside) {
        const ComPtr<IDispatch> object = ObjectOf(row.dual);
        for (const MemberRow& member : row.other.members) {
            EXPECT_EQ(MemberCall::IdOf(object.Get(), member.name), member.id) << Utf8(member.name);
            EXPECT_EQ(MemberCall::IdOf(object.Get(), InCase(member.name, true)), member.id) << Utf8(member.name);
            EXPECT_EQ(MemberCall::IdOf(object.Get(), InCase(member.name, false)), member.id) << Utf8(member.name);
        }
    }
}

TEST(Members, OfInterfacesBesideTheDualOneHaveNamesAndNumbersOfTheirOwn)
{
    for (const BesideRow& row : kBeside) {
        for (const BesideRow& second : kBeside) {
            const bool isSame = &row.other == &second.other;
            for (const MemberRow& member : row.other.members) {
                const auto clashes = [&](const MemberRow& known) {
                    return InCase(known.name, true) == InCase(member.name, true) || known.id == member.id;
                };
                EXPECT_TRUE(std::ranges::none_of(row.dual.members, clashes)) << Utf8(member.name);
                EXPECT_TRUE(isSame || &row.dual != &second.dual || std::ranges::none_of(second.other.members, clashes))
                    << Utf8(member.name);
            }
        }
    }
}

TEST(Members, OfAnInterfaceThatTheClassLacksDoNotExist)
{
    const ComPtr<IDispatch> tasks = ObjectOf(kInterfaces[0]);
    const ComPtr<IDispatch> file = ObjectOf(kInterfaces[3]);
    EXPECT_EQ(MemberCall::IdOf(tasks.Get(), u"PolicyIDs"), DISPID_UNKNOWN);
    EXPECT_EQ(MemberCall::IdOf(file.Get(), u"SectionNames"), DISPID_UNKNOWN);
    EXPECT_EQ(MemberCall::IdOf(file.Get(), u"Item"), DISPID_UNKNOWN);
}

TEST(Members, OfInterfacesBesideTheDualOneHaveNumberedParameters)
{
    const ComPtr<IDispatch> file = ObjectOf(kInterfaces[3]);
    const Bstr member(u"GetTaskIDs");
    const Bstr parameter(u"strSoftwareID");
    LPOLESTR names[] = {member.Get(), parameter.Get()};
    DISPID ids[] = {77, 77};
    EXPECT_EQ(file->GetIDsOfNames(IID_NULL, names, 2, 0x0409, ids), S_OK);
    EXPECT_EQ(ids[0], 1003);
    EXPECT_EQ(ids[1], 0);
}

TEST(Members, CalledInAKindThatTheyAreNotCannotBeCalled)
{
    const ComPtr<IDispatch> product = ObjectOf(kInterfaces[2]);
    DISPPARAMS none{nullptr, nullptr, 0, 0};
    EXPECT_EQ(product->Invoke(1001, IID_NULL, 0x0409, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr),
              DISP_E_MEMBERNOTFOUND)
        << "SectionNames is a property";
}

TEST(Members, OfOtherNamesDoNotExist)
{
    for (const InterfaceRow& row : kInterfaces) {
        const ComPtr<IDispatch> object = ObjectOf(row);
        for (const char16_t* name : {u"", u"Missing", u"get_SoftwareID", u"GetFirstt", u"Get"}) {
            EXPECT_EQ(MemberCall::IdOf(object.Get(), name), DISPID_UNKNOWN) << row.theClass.label << Utf8(name);
        }
        DISPID id = 0;
        const Bstr missing(u"Missing");
        LPOLESTR names[] = {missing.Get()};
        EXPECT_EQ(object->GetIDsOfNames(IID_NULL, names, 1, 0x0409, &id), DISP_E_UNKNOWNNAME);
        EXPECT_EQ(id, DISPID_UNKNOWN);
    }
}

TEST(Members, WithANumberThatNoneHasCannotBeCalled)
{
    for (const InterfaceRow& row : kInterfaces) {
        const ComPtr<IDispatch> object = ObjectOf(row);
        DISPPARAMS none{nullptr, nullptr, 0, 0};
        for (const DISPID id : {DISPID{0}, row.members.back().id + 1, DISPID{-1}, DISPID{1000}}) {
            EXPECT_EQ(object->Invoke(id, IID_NULL, 0x0409, DISPATCH_METHOD | DISPATCH_PROPERTYGET, &none, nullptr,
                                     nullptr, nullptr),
                      DISP_E_MEMBERNOTFOUND)
                << row.theClass.label << " " << id;
        }
    }
}

TEST(Members, CalledWithTheWrongNumberOfArgumentsAreNotReached)
{
    const ComPtr<IPolicyProduct> product = Create<IPolicyProduct>();
    EXPECT_EQ(MemberCall(product.Get(), u"PutSectionSetting").In(u"S").In(u"x").Call().code, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(MemberCall(product.Get(), u"RemoveSection").Call().code, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(MemberCall(product.Get(), u"RemoveSection").In(u"S").In(u"S").Call().code, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(MemberCall(product.Get(), u"SoftwareID").Put().code, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(MemberCall(product.Get(), u"GetStoredSetting").In(u"S").ForResult().code, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(MemberCall(product.Get(), u"SectionNames").In(u"S").In(u"S").Get().code, DISP_E_BADPARAMCOUNT);
}

}  // namespace zupm::test
