// The product object, member by member.
#include "tests/faults/SectionOperations.h"

namespace zupm::test {

namespace {

using Sections = SectionOperations<&World::product>;

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

/// Takes the product out of the file again, with a setting that occurs twice.
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
     .afterFailure = Sections::TheSlotIsNullAndNothingChanged,
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
     .afterFailure = Sections::TheSlotIsNullAndNothingChanged,
     .afterSuccess = TheTextIsThere,
     .fewestFailures = 3},
    {.name = "RemoveSection",
     .run = Sections::RemoveSection,
     .codes = {result::OutOfMemory, result::Unexpected, result::AllocationFailed},
     .afterFailure = TheSectionIsThereOrGone,
     .afterSuccess = TheSectionIsGone,
     .recover = PutTheSectionBack,
     .fewestFailures = 5},
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(Product, FailingMemory, testing::ValuesIn(kOperations), NameOf);
INSTANTIATE_TEST_SUITE_P(ProductSettings, FailingMemory, testing::ValuesIn(Sections::Rows()), NameOf);
INSTANTIATE_TEST_SUITE_P(ProductWithDuplicates, FailingMemory,
                         testing::ValuesIn(Sections::RowsBesideDuplicates(DuplicateASetting)), NameOf);

}  // namespace zupm::test
