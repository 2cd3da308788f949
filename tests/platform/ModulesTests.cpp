#include "platform/Modules.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <ctime>
#include <filesystem>

#include "common/Resources.h"
#include "platform/posix/SystemCalls.h"
#include "tests/platform/TestFolder.h"

namespace zupm::test {
namespace {

namespace fs = std::filesystem;

class Modules : public testing::Test {
protected:
    ~Modules() override
    {
        SetResourceFolder({});
        fs::current_path(m_before);
    }

    [[nodiscard]] std::shared_ptr<const ResourceModule> Load(std::string_view bytes) const
    {
        m_folder.Write("AgentRes.dll", bytes);
        return LoadResourceModule(m_folder.Wide("AgentRes.dll"));
    }

    TestFolder m_folder;
    fs::path m_before = fs::current_path();
};

TEST_F(Modules, ResourceModule_GivesItsTextsByNumber)
{
    const auto module =
        Load("147\t%s: platform error 0x%08X: %s\n149\tUnexpected exception in %s\n0\t\n4294967295\ta\tb \xC3\xA4");
    ASSERT_NE(module, nullptr);
    EXPECT_EQ(module->FindString(147), u"%s: platform error 0x%08X: %s");
    EXPECT_EQ(module->FindString(149), u"Unexpected exception in %s");
    EXPECT_EQ(module->FindString(0), u"");
    EXPECT_EQ(module->FindString(4294967295), u"a\tb \u00E4");
    EXPECT_EQ(module->FindString(148), std::nullopt);
}

TEST_F(Modules, WhatIsNoResourceModule_IsNull)
{
    const std::string_view rows[] = {
        "",
        "\n",
        "149",
        "149 text\n",
        "\ttext\n",
        "-1\ttext\n",
        "+1\ttext\n",
        " 1\ttext\n",
        "1 \ttext\n",
        "0x1\ttext\n",
        "4294967296\ttext\n",
        "1\tone\n1\ttwo\n",
        "1\tone\n\n2\ttwo\n",
        "1\tone\r\n",
        "1\t\xFF\n",
        "\xEF\xBB\xBF"
        "1\tone\n",
        std::string_view("1\ta\0b\n", 6),
        "MZ\x90",
    };
    for (const std::string_view row : rows) {
        EXPECT_EQ(Load(row), nullptr) << row;
    }
}

TEST_F(Modules, ResourceModule_IsLoadedByItsFullPathOnly)
{
    ASSERT_NE(Load("1\tone\n"), nullptr);
    fs::current_path(m_folder.Path(""));
    EXPECT_EQ(LoadResourceModule(u"AgentRes.dll"), nullptr);
    EXPECT_EQ(LoadResourceModule(u"./AgentRes.dll"), nullptr);
    EXPECT_EQ(LoadResourceModule(u""), nullptr);
    EXPECT_EQ(LoadResourceModule(m_folder.Wide("none")), nullptr);
    EXPECT_EQ(LoadResourceModule(m_folder.Wide("")), nullptr);
}

TEST_F(Modules, ResourceModule_OutlivesItsFile)
{
    const auto module = Load("1\tone\n");
    fs::remove(m_folder.Path("AgentRes.dll"));
    EXPECT_EQ(GetResString(module.get(), 1), u"one");
}

time_t g_changed = 0;  ///< the time of the last change that the system reports, in seconds

/// Reports g_changed for every file.
native::SystemCalls CallsWithGivenTimes()
{
    native::SystemCalls calls = native::kSystemCalls;
    calls.fstatat = [](int folder, const char* path, struct stat* status, int flags) {
        const int result = native::kSystemCalls.fstatat(folder, path, status, flags);
        status->st_mtim = status->st_ctim = timespec{g_changed, 0};
        return result;
    };
    return calls;
}

class ModuleTimes : public Modules {
protected:
    ModuleTimes() { native::ReplaceSystemCalls(&m_calls); }
    ~ModuleTimes() override { native::ReplaceSystemCalls(nullptr); }

    native::SystemCalls m_calls = CallsWithGivenTimes();
};

TEST_F(ModuleTimes, ModuleThatIsTheSame_IsNotReadAgain)
{
    g_changed = 1000;
    const auto first = Load("1\told");
    EXPECT_EQ(LoadResourceModule(m_folder.Wide("AgentRes.dll")), first);
    m_folder.Write("Other.dll", "1\told");
    EXPECT_NE(LoadResourceModule(m_folder.Wide("Other.dll")), first);
}

TEST_F(ModuleTimes, ModuleWithAnotherTimeOrSize_IsReadAgain)
{
    g_changed = 2000;
    ASSERT_NE(Load("1\told"), nullptr);
    g_changed = 2001;
    EXPECT_EQ(Load("1\tnew")->FindString(1), u"new");
    EXPECT_EQ(Load("1\tlonger")->FindString(1), u"longer");
    m_folder.Write("AgentRes.dll", "no text");
    EXPECT_EQ(LoadResourceModule(m_folder.Wide("AgentRes.dll")), nullptr);
}

TEST_F(ModuleTimes, ModuleThatWasJustChanged_IsReadAgainBecauseTheNextChangeMayHaveTheSameTime)
{
    g_changed = time(nullptr);
    ASSERT_NE(Load("1\told"), nullptr);
    EXPECT_EQ(Load("1\tnew")->FindString(1), u"new");
}

TEST_F(Modules, ResourceFolder_TheLanguagesFolderComesFirst)
{
    ASSERT_EQ(::mkdir(m_folder.Path("0407").c_str(), 0700), 0);
    ASSERT_EQ(::mkdir(m_folder.Path("0c0a").c_str(), 0700), 0);
    m_folder.Write("AgentRes.dll", "1\tplain\n");
    m_folder.Write("0407/AgentRes.dll", "1\tGerman\n");
    m_folder.Write("0c0a/AgentRes.dll", "no resource module");
    SetResourceFolder(m_folder.Wide("").substr(0, m_folder.Wide("").size() - 1));
    EXPECT_EQ(GetResString(LoadResourceDLLW(u"AgentRes.dll", 0x0407).get(), 1), u"German");
    EXPECT_EQ(GetResString(LoadResourceDLLW(u"AgentRes.dll", 0x0409).get(), 1), u"plain");
    EXPECT_EQ(GetResString(LoadResourceDLLW(u"AgentRes.dll", 0x0C0A).get(), 1), u"plain");
    EXPECT_EQ(LoadResourceDLLW(u"Other.dll", 0x0407), nullptr);
}

TEST_F(Modules, ResourceFolder_TheFolderOfThePackageComesLast)
{
    ASSERT_EQ(::mkdir(m_folder.Path("zuPolicyManager").c_str(), 0700), 0);
    ASSERT_EQ(::mkdir(m_folder.Path("zuPolicyManager/0407").c_str(), 0700), 0);
    m_folder.Write("zuPolicyManager/AgentRes.dll", "1\tpackage\n");
    m_folder.Write("zuPolicyManager/0407/AgentRes.dll", "1\tGerman\n");
    SetResourceFolder(m_folder.Wide("").substr(0, m_folder.Wide("").size() - 1));
    EXPECT_EQ(GetResString(LoadResourceDLLW(u"AgentRes.dll", 0x0407).get(), 1), u"German");
    EXPECT_EQ(GetResString(LoadResourceDLLW(u"AgentRes.dll", 0x0409).get(), 1), u"package");
    m_folder.Write("AgentRes.dll", "1\tbeside\n");
    EXPECT_EQ(GetResString(LoadResourceDLLW(u"AgentRes.dll", 0x0407).get(), 1), u"beside");
}

TEST_F(Modules, ResourceModuleInTheCurrentFolder_IsNotFound)
{
    // A name of its own: the folder of the programs, where the module's own one may lie, is a rightful place.
    m_folder.Write("Planted.dll", "1\tplanted\n");
    ASSERT_NE(LoadResourceModule(m_folder.Wide("Planted.dll")), nullptr);
    fs::current_path(m_folder.Path(""));
    EXPECT_EQ(LoadResourceDLLW(u"Planted.dll", 0x0409), nullptr);
}

TEST_F(Modules, OwnModule_OfAProgramIsTheProgram)
{
    EXPECT_EQ(fs::path(OwnModulePath()), fs::read_symlink("/proc/self/exe"));
    EXPECT_EQ(fs::path(OwnModuleFolder()), fs::read_symlink("/proc/self/exe").parent_path());
}

/// The folder that a module loaded from `path` reports as its own, asked with another current folder.
std::string FolderOfProbe(const std::string& path)
{
    void* const module = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (module == nullptr) {
        return ::dlerror();
    }
    fs::current_path("/");
    using Probe = std::size_t (*)(char16_t*, std::size_t);
    const auto probe = reinterpret_cast<Probe>(::dlsym(module, "ProbeFolder"));
    char16_t text[4096];
    const std::u16string folder(text, probe(text, std::size(text)));
    ::dlclose(module);
    return fs::path(folder).string();
}

TEST_F(Modules, OwnModule_OfAModuleIsTheModule)
{
    EXPECT_EQ(FolderOfProbe(ZUPM_PROBE_MODULE), fs::path(ZUPM_PROBE_MODULE).parent_path());
}

TEST_F(Modules, OwnModule_LoadedByARelativePathIsStillFoundFromElsewhere)
{
    fs::copy_file(ZUPM_PROBE_MODULE, m_folder.Path("probe.so"));
    fs::current_path(m_folder.Path(""));
    EXPECT_EQ(FolderOfProbe("./probe.so") + "/", m_folder.Path(""));
}

}  // namespace
}  // namespace zupm::test
