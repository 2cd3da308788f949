// The product object, member by member.
#include "tests/faults/Operation.h"

namespace zupm::test {

namespace {

IPolicyProduct& ProductOf(World& world)
{
    return *world.product.Object();
}

HRESULT GetSoftwareID(World& world)
{
    return ProductOf(world).get_SoftwareID(world.text.Slot());
}

HRESULT PutSoftwareID(World& world)
{
    return ProductOf(world).put_SoftwareID(world.newName.Get());
}

HRESULT GetData(World& world)
{
    return ProductOf(world).get_PolicyData(world.text.Slot());
}

HRESULT PutSection(World& world)
{
    return ProductOf(world).put_Section(world.newName.Get());
}

HRESULT GetSetting(World& world)
{
    return ProductOf(world).GetSetting(world.setting.Get(), world.text.Slot());
}

HRESULT GetSectionSetting(World& world)
{
    return ProductOf(world).GetSectionSetting(world.section.Get(), world.setting.Get(), world.text.Slot());
}

HRESULT PutSetting(World& world)
{
    return ProductOf(world).PutSetting(world.setting.Get(), world.newValue.Get());
}

HRESULT PutNewSetting(World& world)
{
    return ProductOf(world).PutSectionSetting(world.section.Get(), world.newName.Get(), world.newValue.Get());
}

HRESULT PutNewSection(World& world)
{
    return ProductOf(world).PutSectionSetting(world.newName.Get(), world.newName.Get(), world.newValue.Get());
}

HRESULT RemoveSetting(World& world)
{
    return ProductOf(world).RemoveSetting(world.section.Get(), world.setting.Get());
}

HRESULT RemoveSection(World& world)
{
    return ProductOf(world).RemoveSection(world.section.Get());
}

/// Takes the product out of the file again, with a setting that occurs twice: from then on every new or removed element
/// has the product's indexes rebuilt.
void DuplicateASetting(World& world)
{
    constexpr std::string_view kSectionWithout = "<Section name=\"another section, with a long name\"/>";
    constexpr std::string_view kSectionWith =
        "<Section name=\"another section, with a long name\"><Setting name=\"twice\"/><Setting "
        "name=\"twice\"/></Section>";
    std::string bytes = world.folder.Read(kFileName);
    bytes.replace(bytes.find(kSectionWithout), kSectionWithout.size(), kSectionWith);
    world.folder.Write(kFileName, bytes);
    EXPECT_EQ(world.file.Load(world.folder.Path(kFileName)), 0);
    EXPECT_EQ(world.file.GetPolicy(kProduct, world.product), 0);
}

// --- what is left ----------------------------------------------------------------------------------------------------

void TheSlotIsNullAndNothingChanged(World& world, const Sight& before)
{
    EXPECT_TRUE(world.text.Untouched() || world.text.IsNull());
    EXPECT_EQ(world.OfAll(), before);
}

void TheValueIsThereOrNull(World& world)
{
    EXPECT_TRUE(world.text.IsNull() || world.text.Text() == kValue);
}

void TheIdIsThere(World& world)
{
    EXPECT_EQ(world.text.Text(), kProduct);
}

void TheNewIdIsThere(World& world)
{
    EXPECT_EQ(world.product.SoftwareID(), (TextResult{0, kNewName}));
    EXPECT_NE(world.product.Data().text->find(kNewName), std::u16string::npos);
}

void TheTextIsThere(World& world)
{
    EXPECT_EQ(world.text.Text(), world.product.Data().text);
}

void TheNewSectionIsCurrent(World& world)
{
    EXPECT_EQ(world.product.GetCurrent(kSetting).code, result::SectionNotFound);
}

void TheValueIsReplaced(World& world)
{
    EXPECT_EQ(world.product.GetCurrent(kSetting), (TextResult{0, kNewValue}));
    EXPECT_EQ(world.product.GetCurrent(kOtherSetting), (TextResult{0, u"untouched"}));
}

/// A new setting stands in the document whole, name and value, or not at all; every other one is found as before.
void TheNewSettingIsWholeOrNotThere(World& world, const char16_t* section)
{
    EXPECT_EQ(world.product.Get(kSection, kSetting), (TextResult{0, kValue}));
    EXPECT_EQ(world.product.Get(kSection, kOtherSetting), (TextResult{0, u"untouched"}));
    const TextResult added = world.product.Get(section, kNewName);
    EXPECT_TRUE(added.code == result::SectionNotFound || added.code == result::SettingNotFound ||
                added.text == kNewValue);
    const std::u16string data = world.product.Data().text.value_or(std::u16string());
    EXPECT_EQ(data.find(u"<Setting/>"), data.npos);
    EXPECT_EQ(data.find(u"<Section/>"), data.npos);
    EXPECT_EQ(data.find(u"name=\"\""), data.npos);
    EXPECT_EQ(added.code == 0, data.find(kNewValue) != data.npos);
}

void InAnOldSection(World& world, const Sight&)
{
    TheNewSettingIsWholeOrNotThere(world, kSection);
}

void InANewSection(World& world, const Sight&)
{
    TheNewSettingIsWholeOrNotThere(world, kNewName);
}

template <const char16_t* const& section>
void TheNewSettingIsThereOnce(World& world)
{
    EXPECT_EQ(world.product.Get(section, kNewName), (TextResult{0, kNewValue}));
    EXPECT_EQ(world.product.Get(kSection, kSetting), (TextResult{0, kValue}));
    const std::u16string data = world.product.Data().text.value_or(std::u16string());
    EXPECT_EQ(data.find(kNewValue), data.rfind(kNewValue));
}

void TheSettingIsThereOrGone(World& world, const Sight&)
{
    EXPECT_EQ(world.product.Get(kSection, kOtherSetting), (TextResult{0, u"untouched"}));
    const TextResult removed = world.product.Get(kSection, kSetting);
    EXPECT_TRUE(removed.code == result::SettingNotFound || removed.text == kValue);
}

void PutTheSettingBack(World& world)
{
    EXPECT_EQ(world.product.Put(kSection, kSetting, kValue), 0);
}

void TheSettingIsGone(World& world)
{
    EXPECT_EQ(world.product.Get(kSection, kSetting).code, result::SettingNotFound);
    EXPECT_EQ(world.product.Get(kSection, kOtherSetting), (TextResult{0, u"untouched"}));
}

/// A cursor that could not be opened again refuses until the next RemoveSection opens one.
void TheSectionIsThereOrGone(World& world, const Sight& before)
{
    const TextResult value = world.product.Get(kSection, kSetting);
    if (value.code == 0) {
        EXPECT_EQ(world.OfAll(), before);
        return;
    }
    EXPECT_TRUE(value.code == result::CursorNotInitialised || value.code == result::SectionNotFound);
    const std::u16string data = world.product.Data().text.value_or(std::u16string());
    EXPECT_NE(data.find(u"another section, with a long name"), data.npos);
}

void PutTheSectionBack(World& world)
{
    static_cast<void>(world.product.RemoveSection(kNewName));  // opens a cursor
    EXPECT_EQ(world.product.Put(kSection, kSetting, kValue), 0);
}

void TheSectionIsGone(World& world)
{
    EXPECT_EQ(world.product.Get(kSection, kSetting).code, result::SectionNotFound);
    EXPECT_EQ(world.product.Put(u"another section, with a long name", kNewName, kNewValue), 0);
}

const std::vector<Operation> kOperations = {
    {.name = "GetSoftwareID",
     .run = GetSoftwareID,
     .codes = {result::OutOfMemory, result::AllocationFailed},
     .afterFailure = TheSlotIsNullAndNothingChanged,
     .afterSuccess = TheIdIsThere,
     .fewestFailures = 2},
    {.name = "PutSoftwareID",
     .run = PutSoftwareID,
     .codes = {result::OutOfMemory},
     .afterFailure = EverythingIsAsBefore,
     .afterSuccess = TheNewIdIsThere,
     .fewestFailures = 3},
    {.name = "PolicyData",
     .run = GetData,
     .codes = {result::OutOfMemory, result::AllocationFailed},
     .afterFailure = TheSlotIsNullAndNothingChanged,
     .afterSuccess = TheTextIsThere,
     .fewestFailures = 3},
    {.name = "PutSection",
     .run = PutSection,
     .codes = {result::OutOfMemory},
     .afterFailure = EverythingIsAsBefore,
     .afterSuccess = TheNewSectionIsCurrent,
     .fewestFailures = 2},
    {.name = "GetSetting",
     .run = GetSetting,
     .codes = {result::OutOfMemory, result::Unexpected},
     .afterFailure = TheSlotIsNullAndNothingChanged,
     .afterSuccess = TheValueIsThereOrNull,
     .fewestFailures = 3},
    {.name = "GetSectionSetting",
     .run = GetSectionSetting,
     .codes = {result::OutOfMemory, result::Unexpected},
     .afterFailure = TheSlotIsNullAndNothingChanged,
     .afterSuccess = TheValueIsThereOrNull,
     .fewestFailures = 4},
    {.name = "PutSetting_InPlaceOfAnOldValue",
     .run = PutSetting,
     .codes = {result::OutOfMemory, result::Unexpected},
     .afterFailure = EverythingIsAsBefore,
     .afterSuccess = TheValueIsReplaced,
     .fewestFailures = 4},
    {.name = "PutSectionSetting_NewSetting",
     .run = PutNewSetting,
     .codes = {result::OutOfMemory, result::Unexpected},
     .afterFailure = InAnOldSection,
     .afterSuccess = TheNewSettingIsThereOnce<kSection>,
     .fewestFailures = 10},
    {.name = "PutSectionSetting_NewSection",
     .run = PutNewSection,
     .codes = {result::OutOfMemory, result::Unexpected},
     .afterFailure = InANewSection,
     .afterSuccess = TheNewSettingIsThereOnce<kNewName>,
     .fewestFailures = 10},
    {.name = "RemoveSetting",
     .run = RemoveSetting,
     .codes = {result::OutOfMemory},
     .afterFailure = EverythingIsAsBefore,
     .afterSuccess = TheSettingIsGone,
     .fewestFailures = 2},
    {.name = "PutSectionSetting_BesideDuplicates",
     .run = PutNewSetting,
     .codes = {result::OutOfMemory, result::Unexpected, result::AllocationFailed},
     .afterFailure = InAnOldSection,
     .afterSuccess = TheNewSettingIsThereOnce<kSection>,
     .prepare = DuplicateASetting,
     .fewestFailures = 10},
    {.name = "RemoveSetting_BesideDuplicates",
     .run = RemoveSetting,
     .codes = {result::OutOfMemory, result::Unexpected, result::AllocationFailed},
     .afterFailure = TheSettingIsThereOrGone,
     .afterSuccess = TheSettingIsGone,
     .prepare = DuplicateASetting,
     .recover = PutTheSettingBack,
     .fewestFailures = 5},
    {.name = "RemoveSection",
     .run = RemoveSection,
     .codes = {result::OutOfMemory, result::Unexpected, result::AllocationFailed},
     .afterFailure = TheSectionIsThereOrGone,
     .afterSuccess = TheSectionIsGone,
     .recover = PutTheSectionBack,
     .fewestFailures = 5},
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(Product, FailingMemory, testing::ValuesIn(kOperations), NameOf);

}  // namespace zupm::test
