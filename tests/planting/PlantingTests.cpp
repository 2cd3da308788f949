// Resource modules and libraries that somebody put where a careless program would find them.
#include "tests/planting/PlantingTest.h"

namespace zupm::test {

TEST_F(Planting, InTheCurrentFolderOnThePathOrBesideTheProgram_IsNotUsedInPlaceOfTheComponentsOwn)
{
    PlantEverywhereElse([](const std::filesystem::path& folder) { PlantLibrary(folder); });
    EXPECT_EQ(Visit(), S_OK);
    EXPECT_EQ(Logged().find("Unexpected exception in CXMLDataObject::") != std::string::npos, kLogsAreWritten);
    EXPECT_EQ(Logged().find("planted"), std::string::npos);
    EXPECT_FALSE(m_folder.Has(u"trace")) << "its code ran";
}

TEST_F(Planting, InTheCurrentFolderOnThePathOrBesideTheProgram_IsNotUsedWhenTheComponentHasNone)
{
    std::filesystem::remove(m_component / kResources);
    PlantEverywhereElse([](const std::filesystem::path& folder) { PlantLibrary(folder); });
    EXPECT_EQ(Visit(), result::GeneralFailure);
    PlantEverywhereElse([](const std::filesystem::path& folder) { PlantText(folder); });
    EXPECT_EQ(Visit(), result::GeneralFailure);
    EXPECT_EQ(Logged(), "");
    EXPECT_FALSE(m_folder.Has(u"trace")) << "its code ran";
}

TEST_F(Planting, InTheComponentsOwnFolder_GivesTextsAtMostAndNeverRuns)
{
    PlantLibrary(m_component);
    EXPECT_EQ(Visit(), kLibrariesHaveTexts ? S_OK : result::GeneralFailure);
    EXPECT_EQ(Logged().find("planted CXMLDataObject::") != std::string::npos, kLibrariesHaveTexts && kLogsAreWritten);
    EXPECT_FALSE(m_folder.Has(u"trace")) << "its code ran";
}

TEST_F(Planting, InAFolderOfTheUsersLanguage_NeverRunsEither)
{
    std::filesystem::create_directory(m_component / "0409");
    PlantLibrary(m_component / "0409");
    EXPECT_EQ(Visit(), S_OK);
    EXPECT_EQ(Logged().find("CXMLDataObject::") != std::string::npos, kLogsAreWritten);
    EXPECT_FALSE(m_folder.Has(u"trace")) << "its code ran";
}

TEST_F(Planting, ALanguageThatIsAPath_LeadsNowhere)
{
    const std::string away = "../../searched";
    PlantText(m_searched);
    for (const char* const variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        SetVariable(variable, away);
    }
    EXPECT_EQ(Visit(), S_OK);
    EXPECT_EQ(Logged().find("planted"), std::string::npos);
}

TEST_F(Planting, ALibraryOfTheSystemsNameInTheCurrentFolderOrOnThePath_IsNotLoaded)
{
    for (const std::filesystem::path& folder : {m_current, m_searched}) {
        for (const char* const name :
             {"bcrypt.dll", "version.dll", "uxtheme.dll", "cryptbase.dll", "bcryptprimitives.dll", "libgcc_s_seh-1.dll",
              "libstdc++-6.dll", "libexpat.dll"}) {
            PlantLibrary(folder, name);
        }
    }
    EXPECT_EQ(Visit(), S_OK);
    EXPECT_FALSE(m_folder.Has(u"trace")) << "its code ran";
}

TEST_F(Planting, ThePlantedLibrary_TellsWhenItIsLoadedAsOne)
{
    EXPECT_EQ(LoadComponent(PLANTED_MODULE), nullptr) << "it has no such entry point";
    EXPECT_TRUE(m_folder.Has(u"trace"));
}

}  // namespace zupm::test
