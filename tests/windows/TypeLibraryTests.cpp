// The type library in the module against the dispatch tables: what scripts and .NET see is what the code does.
#include <gtest/gtest.h>
#include <windows.h>

#include <oleauto.h>

#include <string>
#include <vector>

#include "interfaces/InterfaceTables.h"
#include "tests/support/Bstr.h"
#include "tests/support/ComPtr.h"
#include "tests/windows/Registration.h"

namespace zupm::test {

namespace {

constexpr int kUnknownSlots = 3;
constexpr int kDispatchSlots = 7;

/// One parameter as either side describes it.
struct ParameterText {
    std::u16string name;
    std::string type;
    bool isResult;

    friend bool operator==(const ParameterText&, const ParameterText&) = default;
};

/// One member as either side describes it.
struct MemberText {
    std::u16string name;
    DISPID id;
    int kind;
    int slot;
    std::string help;
    std::vector<ParameterText> parameters;

    friend bool operator==(const MemberText&, const MemberText&) = default;
};

void PrintTo(const MemberText& member, std::ostream* out)
{
    *out << Utf8(member.name) << " id " << member.id << " kind " << member.kind << " slot " << member.slot << " \""
         << member.help << "\" (";
    for (const ParameterText& parameter : member.parameters) {
        *out << parameter.type << " " << Utf8(parameter.name) << (parameter.isResult ? " result, " : ", ");
    }
    *out << ")";
}

/// The name of one of the interfaces that objects are handed out by.
std::string NameOf(REFIID iid)
{
    for (const auto described : {&TaskInfoInterface, &PolicyTaskInterface, &PolicyProductInterface,
                                 &PolicyFileInterface, &PolicyNamesInterface, &PolicyNoticesInterface}) {
        if (described().iid == iid) {
            return Utf8(described().name);
        }
    }
    return "?";
}

std::string TypeName(const Parameter& parameter)
{
    switch (parameter.type) {
        case ParameterType::String:
            return "BSTR";
        case ParameterType::Number:
            return "LONG";
        case ParameterType::Object:
            return "IUnknown*";
        case ParameterType::StringSlot:
            return "out BSTR*";
        case ParameterType::NumberSlot:
            return "out LONG*";
        case ParameterType::ObjectSlot:
            return "out IUnknown**";
        case ParameterType::DispatchSlot:
            return "out " + NameOf(*parameter.slotInterface) + "**";
    }
    return "?";
}

/// `baseSlots`: how many slots the interface has from its base.
std::vector<MemberText> FromTable(const InterfaceDescription& description, int baseSlots)
{
    std::vector<MemberText> members;
    for (const Member& row : description.members) {
        MemberText member{std::u16string(row.name),   row.id,
                          static_cast<int>(row.kind), baseSlots + static_cast<int>(members.size()),
                          std::string(row.help),      {}};
        for (const Parameter& parameter : row.parameters) {
            member.parameters.push_back({std::u16string(parameter.name), TypeName(parameter), parameter.isResult});
        }
        members.push_back(std::move(member));
    }
    return members;
}

std::string TypeName(ITypeInfo& info, const TYPEDESC& type)
{
    switch (type.vt) {
        case VT_PTR:
            return TypeName(info, *type.lptdesc) + "*";
        case VT_BSTR:
            return "BSTR";
        case VT_I4:
            return "LONG";
        case VT_UNKNOWN:
            return "IUnknown*";
        case VT_HRESULT:
            return "HRESULT";
        case VT_USERDEFINED: {
            ComPtr<ITypeInfo> named;
            info.GetRefTypeInfo(type.hreftype, named.Put());
            Bstr name;
            named->GetDocumentation(MEMBERID_NIL, name.Slot(), nullptr, nullptr, nullptr);
            return Utf8(name.Text());
        }
        default:
            return "vt " + std::to_string(type.vt);
    }
}

ParameterText FromElement(ITypeInfo& info, const ELEMDESC& element, const std::u16string& name)
{
    const USHORT flags = element.paramdesc.wParamFlags;
    const bool isOut = (flags & PARAMFLAG_FOUT) != 0;
    return {name, (isOut ? "out " : "") + TypeName(info, element.tdesc), (flags & PARAMFLAG_FRETVAL) != 0};
}

MemberText MemberOf(ITypeInfo& info, UINT index)
{
    FUNCDESC* function = nullptr;
    EXPECT_EQ(info.GetFuncDesc(index, &function), S_OK);
    EXPECT_EQ(TypeName(info, function->elemdescFunc.tdesc), "HRESULT");
    Bstr name;
    Bstr help;
    info.GetDocumentation(function->memid, name.Slot(), help.Slot(), nullptr, nullptr);
    MemberText member{name.Text(),       function->memid,
                      function->invkind, function->oVft / static_cast<int>(sizeof(void*)),
                      Utf8(help.Text()), {}};
    std::vector<BSTR> names(static_cast<std::size_t>(function->cParams) + 1);
    UINT got = 0;
    info.GetNames(function->memid, names.data(), static_cast<UINT>(names.size()), &got);
    for (SHORT i = 0; i < function->cParams; ++i) {
        // Names are asked for by dispatch number, and a put shares its number with the get.
        const auto place = static_cast<std::size_t>(i) + 1;
        const bool isPut = function->invkind == INVOKE_PROPERTYPUT;
        const std::u16string parameter = isPut ? u"newVal" : place < got ? Text(names[place]) : u"";
        member.parameters.push_back(FromElement(info, function->lprgelemdescParam[i], parameter));
    }
    for (BSTR text : names) {
        SysFreeString(text);
    }
    info.ReleaseFuncDesc(function);
    return member;
}

/// A dual interface as direct callers see it, without the members of IDispatch.
ComPtr<ITypeInfo> DirectOf(ITypeInfo& dispatch)
{
    HREFTYPE reference = 0;
    EXPECT_EQ(dispatch.GetRefTypeOfImplType(static_cast<UINT>(-1), &reference), S_OK);
    ComPtr<ITypeInfo> direct;
    EXPECT_EQ(dispatch.GetRefTypeInfo(reference, direct.Put()), S_OK);
    return direct;
}

/// The members of an interface; all of `flags` must be set.
std::vector<MemberText> FromLibrary(ITypeInfo& info, WORD flags)
{
    TYPEATTR* attributes = nullptr;
    EXPECT_EQ(info.GetTypeAttr(&attributes), S_OK);
    EXPECT_EQ(attributes->typekind, TKIND_INTERFACE);
    EXPECT_EQ(attributes->wTypeFlags & flags, flags);
    std::vector<MemberText> members;
    for (UINT i = 0; i < attributes->cFuncs; ++i) {
        members.push_back(MemberOf(info, i));
    }
    info.ReleaseTypeAttr(attributes);
    return members;
}

ComPtr<ITypeLib> Library()
{
    ComPtr<ITypeLib> library;
    EXPECT_EQ(LoadTypeLibEx(ModulePath().c_str(), REGKIND_NONE, library.Put()), S_OK);
    return library;
}

struct Documentation {
    std::u16string name;
    std::u16string help;

    friend bool operator==(const Documentation&, const Documentation&) = default;
};

Documentation DocumentationOf(ITypeInfo& info)
{
    Bstr name;
    Bstr help;
    EXPECT_EQ(info.GetDocumentation(MEMBERID_NIL, name.Slot(), help.Slot(), nullptr, nullptr), S_OK);
    return {name.Text(), help.Text()};
}

/// How many interfaces a class lists.
UINT InterfacesOf(ITypeInfo& coclass)
{
    TYPEATTR* attributes = nullptr;
    EXPECT_EQ(coclass.GetTypeAttr(&attributes), S_OK);
    const UINT count = attributes->cImplTypes;
    coclass.ReleaseTypeAttr(attributes);
    return count;
}

using Describe = const InterfaceDescription& (*)() noexcept;

class TypeLibraryInterfaceTest : public testing::TestWithParam<Describe> {};
class TypeLibraryDirectInterfaceTest : public testing::TestWithParam<Describe> {};

void ExpectMembers(const std::vector<MemberText>& library, const std::vector<MemberText>& table)
{
    ASSERT_EQ(library.size(), table.size());
    for (std::size_t i = 0; i < table.size(); ++i) {
        EXPECT_EQ(library[i], table[i]);
    }
}

}  // namespace

TEST(TypeLibraryTest, Library_HasItsIdentifierVersionNameAndHelp)
{
    const auto library = Library();
    TLIBATTR* attributes = nullptr;
    ASSERT_EQ(library->GetLibAttr(&attributes), S_OK);
    EXPECT_TRUE(attributes->guid == LIBID_ZUPOLICYMANAGERLib);
    EXPECT_EQ(attributes->wMajorVerNum, 1);
    EXPECT_EQ(attributes->wMinorVerNum, 0);
    EXPECT_EQ(attributes->syskind, SYS_WIN64);
    library->ReleaseTLibAttr(attributes);
    Bstr name;
    Bstr help;
    library->GetDocumentation(-1, name.Slot(), help.Slot(), nullptr, nullptr);
    EXPECT_EQ(name.Text(), u"ZUPOLICYMANAGERLib");
    EXPECT_EQ(help.Text(), u"zuPolicyManager 1.0 Type Library");
}

TEST(TypeLibraryTest, Library_DescribesNineInterfacesAndFourClasses)
{
    EXPECT_EQ(Library()->GetTypeInfoCount(), 13u);
}

TEST(TypeLibraryTest, Enumerator_IsHiddenFromMacroLanguages)
{
    ComPtr<ITypeInfo> info;
    ASSERT_EQ(Library()->GetTypeInfoOfGuid(IID_IPolicyNames, info.Put()), S_OK);
    const ComPtr<ITypeInfo> direct = DirectOf(*info);
    FUNCDESC* function = nullptr;
    ASSERT_EQ(direct->GetFuncDesc(2, &function), S_OK);
    EXPECT_EQ(function->memid, DISPID_NEWENUM);
    EXPECT_NE(function->wFuncFlags & FUNCFLAG_FRESTRICTED, 0);
    direct->ReleaseFuncDesc(function);
}

TEST(TypeLibraryTest, Classes_HaveTheirDescriptionAndOneInterface)
{
    struct Row {
        const CLSID& clsid;
        Documentation documentation;
        const IID& iid;
    };
    const Row rows[] = {
        {CLSID_TaskInfo, {u"TaskInfo", u"TaskInfo Class"}, IID_ITaskInfo},
        {CLSID_PolicyTask, {u"PolicyTask", u"Task Class"}, IID_IPolicyTask},
        {CLSID_PolicyProduct, {u"PolicyProduct", u"PolicyProduct Class"}, IID_IPolicyProduct},
        {CLSID_PolicyFile, {u"PolicyFile", u"PolicyFile Class"}, IID_IPolicyFile},
    };
    const auto library = Library();
    for (const Row& row : rows) {
        ComPtr<ITypeInfo> coclass;
        ASSERT_EQ(library->GetTypeInfoOfGuid(row.clsid, coclass.Put()), S_OK) << Utf8(row.documentation.name);
        EXPECT_EQ(DocumentationOf(*coclass.Get()), row.documentation);
        EXPECT_EQ(InterfacesOf(*coclass.Get()), 1u) << Utf8(row.documentation.name);
        HREFTYPE reference = 0;
        ASSERT_EQ(coclass->GetRefTypeOfImplType(0, &reference), S_OK);
        ComPtr<ITypeInfo> served;
        ASSERT_EQ(coclass->GetRefTypeInfo(reference, served.Put()), S_OK);
        TYPEATTR* attributes = nullptr;
        ASSERT_EQ(served->GetTypeAttr(&attributes), S_OK);
        EXPECT_TRUE(attributes->guid == row.iid) << Utf8(row.documentation.name);
        served->ReleaseTypeAttr(attributes);
    }
}

TEST_P(TypeLibraryInterfaceTest, Members_AreThoseOfTheDispatchTable)
{
    const InterfaceDescription& description = GetParam()();
    ComPtr<ITypeInfo> info;
    ASSERT_EQ(Library()->GetTypeInfoOfGuid(description.iid, info.Put()), S_OK);
    EXPECT_EQ(DocumentationOf(*info.Get()).name, description.name);
    ExpectMembers(FromLibrary(*DirectOf(*info), TYPEFLAG_FDUAL), FromTable(description, kDispatchSlots));
}

TEST_P(TypeLibraryDirectInterfaceTest, Members_AreThoseOfTheTableAfterThoseOfIUnknown)
{
    const InterfaceDescription& description = GetParam()();
    ComPtr<ITypeInfo> info;
    ASSERT_EQ(Library()->GetTypeInfoOfGuid(description.iid, info.Put()), S_OK);
    EXPECT_EQ(DocumentationOf(*info),
              (Documentation{std::u16string(description.name), std::u16string(description.name) + u" Interface"}));
    // The flag is what the type library's marshaller asks for.
    ExpectMembers(FromLibrary(*info, TYPEFLAG_FOLEAUTOMATION), FromTable(description, kUnknownSlots));
    HREFTYPE reference = 0;
    ASSERT_EQ(info->GetRefTypeOfImplType(0, &reference), S_OK);
    ComPtr<ITypeInfo> base;
    ASSERT_EQ(info->GetRefTypeInfo(reference, base.Put()), S_OK);
    EXPECT_EQ(DocumentationOf(*base).name, u"IUnknown");
}

INSTANTIATE_TEST_SUITE_P(All, TypeLibraryInterfaceTest,
                         testing::Values(&TaskInfoInterface, &PolicyTaskInterface, &PolicyProductInterface,
                                         &PolicyFileInterface, &PolicyNamesInterface, &PolicyNoticesInterface));
INSTANTIATE_TEST_SUITE_P(All, TypeLibraryDirectInterfaceTest,
                         testing::Values(&PolicyFileEditInterface, &PolicyFileContentsInterface,
                                         &PolicySectionsInterface));

}  // namespace zupm::test
