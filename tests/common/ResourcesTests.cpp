#include "common/Resources.h"

#include <gtest/gtest.h>

namespace zupm {
namespace {

class OneText final : public ResourceModule {
public:
    [[nodiscard]] std::optional<std::u16string> FindString(std::uint32_t id) const override
    {
        return id == 149 ? std::optional<std::u16string>(u"Unexpected exception in %s") : std::nullopt;
    }
};

TEST(Resources, GetResString_OfANullModuleIsEmpty)
{
    EXPECT_EQ(GetResString(nullptr, 149), u"");
}

TEST(Resources, GetResString_GivesTheTextOrNothing)
{
    const OneText module;
    EXPECT_EQ(GetResString(&module, 149), u"Unexpected exception in %s");
    EXPECT_EQ(GetResString(&module, 147), u"");
}

TEST(Resources, LoadResource_RefusesNamesThatLeadOutOfTheFolder)
{
    for (const std::u16string_view name :
         {u"", u"../AgentRes.dll", u"..\\AgentRes.dll", u"/AgentRes.dll", u"C:AgentRes.dll"}) {
        EXPECT_EQ(LoadResourceDLLW(name, 0x0409), nullptr);
    }
}

TEST(Resources, LoadResource_OfAMissingFileIsNull)
{
    EXPECT_EQ(LoadResourceDLLW(u"NoSuchModule.dll", 0x0409), nullptr);
}

}  // namespace
}  // namespace zupm
