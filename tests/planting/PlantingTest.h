/// What the tests of planted files share.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/Modules.h"
#include "tests/planting/Target.h"
#include "tests/support/Bstr.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TempFolder.h"

namespace zupm::test {

inline constexpr const char* kResources = "AgentRes.dll";
inline constexpr const char* kPlantedText = "147\tplanted %s 0x%08X: %s\n149\tplanted %s\n";

/// A program that uses the component. Program and component have a folder each; the current folder and the search path
/// are other folders.
class Planting : public testing::Test {
protected:
    Planting()
    {
        for (const std::filesystem::path& folder : {m_component, m_program, m_current, m_searched}) {
            std::filesystem::create_directory(folder);
        }
        const std::filesystem::path own(OwnModuleFolder());
        std::filesystem::copy_file(own / kComponentName, m_component / kComponentName);
        std::filesystem::copy_file(own / kResources, m_component / kResources);
        std::filesystem::copy_file(PLANTING_VISITOR, m_program / std::filesystem::path(PLANTING_VISITOR).filename());
        SetVariable("ZUPOLICY_LOG", "1:" + Utf8(m_folder.Path(u"log")));
        SetVariable("ZUPM_TRACE", m_folder.Path(u"trace"));
        SetVariable("LC_ALL", "en_US.UTF-8");
        SetVariable(kSearchPathVariable, m_searched);
    }
    ~Planting() override { SetVariable(kSearchPathVariable, m_searchPath); }

    /// A library in place of texts, and the plain text that natively is a resource module.
    static void PlantLibrary(const std::filesystem::path& folder, const char* name = kResources)
    {
        std::filesystem::copy_file(PLANTED_MODULE, folder / name, std::filesystem::copy_options::overwrite_existing);
    }
    static void PlantText(const std::filesystem::path& folder)
    {
        WriteBytes((folder / kResources).u16string(), kPlantedText);
    }

    template <class Plant>
    void PlantEverywhereElse(const Plant& plant) const
    {
        for (const std::filesystem::path& folder : {m_program, m_current, m_searched}) {
            plant(folder);
            std::filesystem::create_directory(folder / "0409");
            plant(folder / "0409");
        }
    }

    /// Has the program load the component; the code of the creation.
    [[nodiscard]] HRESULT Visit() const
    {
        const std::filesystem::path program = m_program / std::filesystem::path(PLANTING_VISITOR).filename();
        const std::u8string component = (m_component / kComponentName).u8string();
        const ChildRun run = RunChild({program, m_current, {}}, {std::string(component.begin(), component.end())});
        EXPECT_EQ(run.exitCode, 0) << run.messages;
        return run.out.empty() ? E_UNEXPECTED : std::stoi(run.out);
    }
    /// The line that the component logged; empty when it logged none.
    [[nodiscard]] std::string Logged() const { return m_folder.Has(u"log") ? m_folder.Read(u"log") : std::string(); }

    TempFolder m_folder;
    std::filesystem::path m_component = m_folder.Folder() / "component";
    std::filesystem::path m_program = m_folder.Folder() / "program";
    std::filesystem::path m_current = m_folder.Folder() / "current";
    std::filesystem::path m_searched = m_folder.Folder() / "searched";
    std::filesystem::path m_searchPath = Variable(kSearchPathVariable);
};

}  // namespace zupm::test
