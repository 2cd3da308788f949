#include "MixSections.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/Names.h"

namespace zupm::test {

namespace {

constexpr const char16_t* kShared = u"Shared";
constexpr const char16_t* kName = u"N";
/// What all values of the shared settings begin with.
constexpr const char16_t* kSharedValue = u"shared";

bool IsMissing(HRESULT code)
{
    return IsOneOf(code, {result::SectionNotFound, result::SettingNotFound});
}

}  // namespace

MixSections::MixSections(ObjectKind kind, const ComPtr<IDispatch>& object, int thread, Random& random)
    : m_kind(kind), m_sections{Numbered(u"a", thread), Numbered(u"b", thread)}, m_random(&random)
{
    for (const CallForm form : {CallForm::Slot, CallForm::ByReference, CallForm::ForResult}) {
        m_forms.push_back(CallsOf(kind, form, object));
    }
}

std::vector<MixStep> MixSections::Steps()
{
    const std::string object = m_kind == ObjectKind::Product ? "product: " : "task: ";
    return {
        {object + "put own setting", 6, [this] { PutOwn(); }},
        {object + "get own setting", 6, [this] { GetOwn(AnySection(), AnyName()); }},
        {object + "remove own setting", 2, [this] { RemoveOwnSetting(); }},
        {object + "remove own section", 1, [this] { RemoveOwnSection(); }},
        {object + "put shared setting", 3, [this] { PutShared(); }},
        {object + "get shared setting", 3, [this] { GetShared(); }},
        {object + "remove shared setting or section", 2, [this] { RemoveShared(); }},
        {object + "choose section", 2, [this] { ChooseSection(); }},
        {object + "put in chosen section", 2, [this] { PutCurrent(); }},
        {object + "get from chosen section", 2, [this] { GetCurrent(); }},
        {object + "data", 1, [this] { GetData(); }},
        {object + "list sections and settings", 3, [this] { List(); }},
    };
}

template <class Call>
HRESULT MixSections::In(Call call)
{
    SectionMembers& members = *m_forms[Pick(*m_random, m_forms.size())];
    const HRESULT code = call(members);
    EXPECT_EQ(members.Failure().empty(), code == 0) << "error information of another thread's call: " << code;
    return code;
}

HRESULT MixSections::Expected(const std::u16string& section, const std::u16string& name) const
{
    const auto found = m_own.find(section);
    if (found == m_own.end()) {
        return result::SectionNotFound;
    }
    return found->second.contains(name) ? 0 : result::SettingNotFound;
}

void MixSections::PutOwn()
{
    const std::u16string section = AnySection();
    const std::u16string name = AnyName();
    const std::u16string value = section + Numbered(u"-", ++m_values) + std::u16string(Pick(*m_random, 300), u'x');
    EXPECT_EQ(In([&](SectionMembers& members) { return members.PutSectionSetting(section, name, value); }), 0);
    m_own[section][name] = value;
}

void MixSections::GetOwn(const std::u16string& section, const std::u16string& name)
{
    OutText value;
    const HRESULT code = In([&](SectionMembers& members) { return members.GetSectionSetting(section, name, value); });
    EXPECT_EQ(code, Expected(section, name)) << Utf8(section) << " " << Utf8(name);
    if (code == 0 && Expected(section, name) == 0) {
        EXPECT_EQ(value.Text(), m_own[section][name]);
    }
}

void MixSections::RemoveOwnSetting()
{
    const std::u16string section = AnySection();
    const std::u16string name = AnyName();
    EXPECT_EQ(In([&](SectionMembers& members) { return members.RemoveSetting(section, name); }),
              Expected(section, name));
    if (Expected(section, name) == 0) {
        m_own[section].erase(name);
    }
}

void MixSections::RemoveOwnSection()
{
    const std::u16string section = AnySection();
    const HRESULT expected = m_own.contains(section) ? 0 : result::SectionNotFound;
    EXPECT_EQ(In([&](SectionMembers& members) { return members.RemoveSection(section); }), expected);
    m_own.erase(section);
}

void MixSections::PutShared()
{
    const std::u16string value = kSharedValue + std::u16string(Pick(*m_random, 300), u'y');
    EXPECT_EQ(In([&](SectionMembers& members) { return members.PutSectionSetting(kShared, kName, value); }), 0);
}

void MixSections::GetShared()
{
    OutText value;
    const HRESULT code = In([&](SectionMembers& members) { return members.GetSectionSetting(kShared, kName, value); });
    EXPECT_TRUE(code == 0 ? value.Text().starts_with(kSharedValue) : IsMissing(code)) << code;
}

void MixSections::RemoveShared()
{
    const HRESULT code = In([&](SectionMembers& members) {
        return Pick(*m_random, 2) == 0 ? members.RemoveSetting(kShared, kName) : members.RemoveSection(kShared);
    });
    EXPECT_TRUE(code == 0 || IsMissing(code)) << code;
}

void MixSections::ChooseSection()
{
    const Bstr section(Pick(*m_random, 2) == 0 ? kShared : u"Shared too");
    EXPECT_EQ(In([&](SectionMembers& members) { return members.PutSection(section); }), 0);
}

void MixSections::PutCurrent()
{
    EXPECT_EQ(In([&](SectionMembers& members) { return members.PutSetting(kName, kSharedValue); }), 0);
}

void MixSections::GetCurrent()
{
    OutText value;
    const HRESULT code = In([&](SectionMembers& members) { return members.GetSetting(kName, value); });
    EXPECT_TRUE(code == 0 ? value.Text().starts_with(kSharedValue) : IsMissing(code)) << code;
}

void MixSections::GetData()
{
    OutText data;
    EXPECT_EQ(In([&](SectionMembers& members) { return members.GetData(data); }), 0);
    const std::u16string root = m_kind == ObjectKind::Product ? u"PolicyData>" : u"TaskData>";
    EXPECT_TRUE(data.Text().starts_with(u"<" + root) && data.Text().ends_with(u"</" + root));
    EXPECT_TRUE(IsAllIn(data.Text()));
}

void MixSections::List()
{
    OutObject<IPolicyNames> sections;
    EXPECT_EQ(In([&](SectionMembers& members) { return members.GetSectionNames(sections); }), 0);
    const Names all = ReadNames(*sections.Take());
    for (const std::u16string& section : m_sections) {
        EXPECT_EQ(std::ranges::count(all, section), m_own.contains(section) ? 1 : 0) << Utf8(section);
        OutObject<IPolicyNames> settings;
        const HRESULT code = In([&](SectionMembers& members) { return members.GetSettingNames(section, settings); });
        EXPECT_EQ(code, m_own.contains(section) ? 0 : result::SectionNotFound) << Utf8(section);
        if (code == 0) {
            Names names = ReadNames(*settings.Take());
            std::ranges::sort(names);
            Names expected;
            for (const auto& [name, value] : m_own[section]) {
                expected.push_back(name);
            }
            EXPECT_EQ(names, expected) << Utf8(section);
        }
    }
}

bool MixSections::IsAllIn(std::u16string_view text) const
{
    for (const auto& [section, settings] : m_own) {
        for (const auto& [name, value] : settings) {
            if (text.find(value) == text.npos) {
                return false;
            }
        }
    }
    return true;
}

void MixSections::Check()
{
    for (const std::u16string& section : m_sections) {
        for (int name = 0; name < 4; ++name) {
            GetOwn(section, Numbered(u"n", name));
        }
    }
}

}  // namespace zupm::test
