/// The members that products and tasks have alike: their settings, by section and name.
#pragma once

#include <vector>

#include "tests/faults/FailingMemoryTest.h"

namespace zupm::test {

/// Rows over the object that `object` names: &World::product or &World::task.
template <auto object>
class SectionOperations {
public:
    [[nodiscard]] static std::vector<Operation> Rows()
    {
        return {
            {.name = "PutSection",
             .run = [](World& world) -> HRESULT { return Of(world).put_Section(world.newName.Get()); },
             .codes = {result::OutOfMemory},
             .afterFailure = EverythingIsAsBefore,
             .afterSuccess = TheNewSectionIsCurrent,
             .fewestFailures = 1},
            {.name = "GetSetting",
             .run = GetSetting,
             .codes = {result::OutOfMemory, result::Unexpected},
             .afterFailure = TheSlotIsNullAndNothingChanged,
             .afterSuccess = TheValueIsThereOrNull,
             .fewestFailures = 3},
            {.name = "GetSectionSetting",
             .run = [](World& world) -> HRESULT {
                 return Of(world).GetSectionSetting(world.section.Get(), world.setting.Get(), world.text.Slot());
             },
             .codes = {result::OutOfMemory, result::Unexpected},
             .afterFailure = TheSlotIsNullAndNothingChanged,
             .afterSuccess = TheValueIsThereOrNull,
             .fewestFailures = 4},
            {.name = "PutSetting_InPlaceOfAnOldValue",
             .run = [](World& world) -> HRESULT {
                 return Of(world).PutSetting(world.setting.Get(), world.newValue.Get());
             },
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
             .run = [](World& world) -> HRESULT {
                 return Of(world).PutSectionSetting(world.newName.Get(), world.newName.Get(), world.newValue.Get());
             },
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
        };
    }

    /// Rows for an object that holds a setting twice: from then on every new or removed element has its indexes
    /// rebuilt.
    [[nodiscard]] static std::vector<Operation> RowsBesideDuplicates(void (*duplicateASetting)(World& world))
    {
        return {
            {.name = "PutSectionSetting_BesideDuplicates",
             .run = PutNewSetting,
             .codes = {result::OutOfMemory, result::Unexpected, result::AllocationFailed},
             .afterFailure = InAnOldSection,
             .afterSuccess = TheNewSettingIsThereOnce<kSection>,
             .prepare = duplicateASetting,
             .fewestFailures = 10},
            {.name = "RemoveSetting_BesideDuplicates",
             .run = RemoveSetting,
             .codes = {result::OutOfMemory, result::Unexpected, result::AllocationFailed},
             .afterFailure = TheSettingIsThereOrGone,
             .afterSuccess = TheSettingIsGone,
             .prepare = duplicateASetting,
             .recover = PutTheSettingBack,
             .fewestFailures = 5},
        };
    }

    static HRESULT RemoveSection(World& world) { return Of(world).RemoveSection(world.section.Get()); }

    static void TheSlotIsNullAndNothingChanged(World& world, const Sight& before)
    {
        EXPECT_TRUE(world.text.Untouched() || world.text.IsNull());
        EXPECT_EQ(world.OfAll(), before);
    }

    static void PutTheSettingBack(World& world) { EXPECT_EQ((world.*object).Put(kSection, kSetting, kValue), 0); }

private:
    static auto& Of(World& world) { return *(world.*object).Object(); }

    static HRESULT GetSetting(World& world) { return Of(world).GetSetting(world.setting.Get(), world.text.Slot()); }

    static HRESULT PutNewSetting(World& world)
    {
        return Of(world).PutSectionSetting(world.section.Get(), world.newName.Get(), world.newValue.Get());
    }

    static HRESULT RemoveSetting(World& world)
    {
        return Of(world).RemoveSetting(world.section.Get(), world.setting.Get());
    }

    static std::u16string Data(World& world) { return (world.*object).Data().text.value_or(std::u16string()); }

    static void ExpectTheOtherSetting(World& world)
    {
        EXPECT_EQ((world.*object).Get(kSection, kOtherSetting), (TextResult{0, u"untouched"}));
    }

    static void TheNewSectionIsCurrent(World& world) { EXPECT_EQ(GetSetting(world), result::SectionNotFound); }

    static void TheValueIsThereOrNull(World& world) { EXPECT_TRUE(world.text.IsNull() || world.text.Text() == kValue); }

    static void TheValueIsReplaced(World& world)
    {
        EXPECT_EQ((world.*object).Get(kSection, kSetting), (TextResult{0, kNewValue}));
        ExpectTheOtherSetting(world);
    }

    /// A new setting is in the document whole, name and value, or not at all; every other one is found as before.
    static void TheNewSettingIsWholeOrNotThere(World& world, const char16_t* section)
    {
        EXPECT_EQ((world.*object).Get(kSection, kSetting), (TextResult{0, kValue}));
        ExpectTheOtherSetting(world);
        const TextResult added = (world.*object).Get(section, kNewName);
        EXPECT_TRUE(added.code == result::SectionNotFound || added.code == result::SettingNotFound ||
                    added.text == kNewValue);
        const std::u16string data = Data(world);
        EXPECT_EQ(data.find(u"<Setting/>"), data.npos);
        EXPECT_EQ(data.find(u"<Section/>"), data.npos);
        EXPECT_EQ(data.find(u"name=\"\""), data.npos);
        EXPECT_EQ(added.code == 0, data.find(kNewValue) != data.npos);
    }

    static void InAnOldSection(World& world, const Sight&) { TheNewSettingIsWholeOrNotThere(world, kSection); }
    static void InANewSection(World& world, const Sight&) { TheNewSettingIsWholeOrNotThere(world, kNewName); }

    template <const char16_t* const& section>
    static void TheNewSettingIsThereOnce(World& world)
    {
        EXPECT_EQ((world.*object).Get(section, kNewName), (TextResult{0, kNewValue}));
        EXPECT_EQ((world.*object).Get(kSection, kSetting), (TextResult{0, kValue}));
        const std::u16string data = Data(world);
        EXPECT_EQ(data.find(kNewValue), data.rfind(kNewValue));
    }

    static void TheSettingIsThereOrGone(World& world, const Sight&)
    {
        ExpectTheOtherSetting(world);
        const TextResult removed = (world.*object).Get(kSection, kSetting);
        EXPECT_TRUE(removed.code == result::SettingNotFound || removed.text == kValue);
    }

    static void TheSettingIsGone(World& world)
    {
        EXPECT_EQ((world.*object).Get(kSection, kSetting).code, result::SettingNotFound);
        ExpectTheOtherSetting(world);
    }
};

}  // namespace zupm::test
