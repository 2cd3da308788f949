// A language folder that leads elsewhere.
#include "tests/planting/PlantingTest.h"

namespace zupm::test {

TEST_F(Planting, AtTheEndOfALinkedLanguageFolder_GivesTextsAndNeverRuns)
{
    // What the component's folder holds, links included, is its owner's choice: followed, but as data.
    PlantLibrary(m_searched);
    std::filesystem::create_directory_symlink(m_searched, m_component / "0409");
    EXPECT_EQ(Visit(), S_OK);
    EXPECT_FALSE(m_folder.Has(u"trace")) << "its code ran";
    PlantText(m_searched);
    EXPECT_EQ(Visit(), S_OK);
    EXPECT_NE(Logged().find("planted CXMLDataObject::"), std::string::npos) << Logged();
}

}  // namespace zupm::test
