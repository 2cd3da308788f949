// zupolicy doctor, with an installation that is sound and one that is broken at each step.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "Installed.h"
#include "tests/support/TempFolder.h"

namespace zupm::test {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using testing::HasSubstr;

constexpr const char* kPolicyTask = "{04D18721-749F-4140-AEB0-CAC099CA4741}";
constexpr const char* kTaskInfo = "{2D417134-0D48-4856-B6F5-04E63171E24C}";

class Doctor : public testing::Test {
protected:
    /// Runs the doctor, which must print the same outcome in both forms; the JSON form.
    [[nodiscard]] json Report(int exitCode) const
    {
        const ToolRun text = m_installed.Tool({"doctor"});
        const ToolRun run = m_installed.Tool({"doctor", "--json"});
        EXPECT_EQ(text.exitCode, exitCode) << text.out << text.messages;
        EXPECT_EQ(run.exitCode, exitCode) << run.out;
        EXPECT_EQ(text.messages + run.messages, "");
        EXPECT_THAT(text.out, HasSubstr(exitCode == 0 ? "\nNothing is wrong.\n" : "\nWhat to do: "));
        const json report = json::parse(run.out, nullptr, false);
        EXPECT_EQ(report["ok"], exitCode == 0);
        return report;
    }
    /// The steps of one module: "found ok", "word size failed", ...
    [[nodiscard]] static std::vector<std::string> Steps(const json& report, const std::string& usedBy)
    {
        std::vector<std::string> steps;
        for (const json& module : report["modules"]) {
            for (const json& step : module["steps"]) {
                if (module["usedBy"] == usedBy) {
                    steps.push_back(step["step"].get<std::string>() + " " + step["outcome"].get<std::string>());
                }
            }
        }
        return steps;
    }
    /// The text and the advice of the step that failed.
    [[nodiscard]] static std::string Failure(const json& report)
    {
        for (const json& module : report["modules"]) {
            for (const json& step : module["steps"]) {
                if (step["outcome"] == "failed") {
                    EXPECT_NE(step["advice"], "");
                    return step["text"];
                }
            }
        }
        return {};
    }

    /// Copies a file over another (copy_file of the cross compiler's library does not overwrite).
    static void Replace(const fs::path& from, const fs::path& to)
    {
        fs::remove(to);
        fs::copy_file(from, to);
    }
    void Write(const fs::path& path, const std::string& bytes) const { WriteBytes(path.u16string(), bytes); }
    void Remove(const char* name) const { fs::remove(m_installed.Folder() / name); }

    Installed m_installed;
};

using List = std::vector<std::string>;

const List kSoundModule = {"found ok",      "word size ok",  "resource module ok",
                           "loads ok",      "PolicyFile ok", "PolicyProduct ok",
                           "PolicyTask ok", "TaskInfo ok",   "registration note"};
const List kSoundRegistration = {"registered ok", "found ok",         "word size ok",  "resource module ok", "names ok",
                                 "PolicyFile ok", "PolicyProduct ok", "PolicyTask ok", "TaskInfo ok"};

TEST_F(Doctor, WithoutRegistration_FindsNothingWrong)
{
    const json report = Report(0);
    EXPECT_EQ(Steps(report, "zupolicy"), kSoundModule);
    EXPECT_EQ(Steps(report, "registered"), (List{"registered note"}));
}

TEST_F(Doctor, Registered_FindsNothingWrong)
{
    m_installed.Register();
    const json report = Report(0);
    EXPECT_EQ(Steps(report, "zupolicy"), kSoundModule);
    EXPECT_EQ(Steps(report, "registered"), kSoundRegistration);
}

TEST_F(Doctor, WithoutAModule_NamesTheFoldersItLookedIn)
{
    Remove(kModuleFileName);
    const json report = Report(4);
    EXPECT_EQ(Steps(report, "zupolicy"), (List{"found failed"}));
    EXPECT_THAT(Failure(report), HasSubstr(m_installed.Folder().string()));
}

TEST_F(Doctor, AModuleThatIsNoLibrary_FailsAtTheWordSize)
{
    Write(m_installed.Module(), "no library at all");
    const json report = Report(4);
    EXPECT_EQ(Steps(report, "zupolicy"), (List{"found ok", "word size failed"}));
    EXPECT_THAT(Failure(report), HasSubstr("cannot be read, or is no library of this system"));
}

TEST_F(Doctor, AModuleOf32Bits_FailsAtTheWordSize)
{
    Write(m_installed.Module(), kHeaderOf32Bits);
    const json report = Report(4);
    EXPECT_EQ(Steps(report, "zupolicy"), (List{"found ok", "word size failed"}));
    EXPECT_THAT(Failure(report), HasSubstr("is for another processor: 32 bits"));
}

TEST_F(Doctor, WithoutTheResourceModule_NamesIt)
{
    Remove("AgentRes.dll");
    const json report = Report(4);
    EXPECT_EQ(Steps(report, "zupolicy"), (List{"found ok", "word size ok", "resource module failed"}));
    EXPECT_THAT(Failure(report), HasSubstr("there is no AgentRes.dll in "));
}

TEST_F(Doctor, AResourceModuleWithoutTexts_IsNamed)
{
    const fs::path resources = m_installed.Folder() / "AgentRes.dll";
    for (const std::string& bytes :
         {std::string(), std::string("no texts"), std::string("no texts\n"), kHeaderOf32Bits}) {
        Write(resources, bytes);
        const json report = Report(4);
        EXPECT_EQ(Steps(report, "zupolicy"), (List{"found ok", "word size ok", "resource module failed"})) << bytes;
        EXPECT_THAT(Failure(report), HasSubstr(resources.string())) << bytes;
    }
    Replace(ZUPM_OTHER_LIBRARY, resources);
    EXPECT_EQ(Steps(Report(4), "zupolicy"), (List{"found ok", "word size ok", "resource module failed"}));
}

TEST_F(Doctor, AResourceModuleThatIsCutOff_IsNamed)
{
    const fs::path resources = m_installed.Folder() / "AgentRes.dll";
    for (const std::uintmax_t kept : {fs::file_size(resources) / 2, std::uintmax_t{20}}) {
        fs::resize_file(resources, kept);
        const json report = Report(4);
        EXPECT_EQ(Steps(report, "zupolicy"), (List{"found ok", "word size ok", "resource module failed"})) << kept;
        EXPECT_THAT(Failure(report), HasSubstr(resources.string() + " ")) << kept;
    }
}

TEST_F(Doctor, AModuleWithoutTheClasses_FailsAtTheFirstOne)
{
    Replace(ZUPM_OTHER_SERVER, m_installed.Module());
    const json report = Report(4);
    EXPECT_EQ(Steps(report, "zupolicy"),
              (List{"found ok", "word size ok", "resource module ok", "loads ok", "PolicyFile failed"}));
    EXPECT_THAT(Failure(report), HasSubstr("0x80040111]"));
}

TEST_F(Doctor, AModuleThatIsCutOff_DoesNotLoad)
{
    fs::resize_file(m_installed.Module(), 4096);
    const json report = Report(4);
    EXPECT_EQ(Steps(report, "zupolicy"), (List{"found ok", "word size ok", "resource module ok", "loads failed"}));
    EXPECT_THAT(Failure(report), HasSubstr("is cut off"));
}

TEST_F(Doctor, AnotherLibraryInPlaceOfTheModule_HasNoEntry)
{
    Replace(ZUPM_OTHER_LIBRARY, m_installed.Module());
    const json report = Report(4);
    EXPECT_EQ(Steps(report, "zupolicy"), (List{"found ok", "word size ok", "resource module ok", "loads failed"}));
    EXPECT_THAT(Failure(report), HasSubstr("it has no function DllGetClassObject"));
}

TEST_F(Doctor, ARegisteredModuleThatIsGone_IsNamed)
{
    m_installed.Register();
    TempFolder other;
    const fs::path gone = other.Folder() / kModuleFileName;
    for (const char* const clsid :
         {kPolicyTask, kTaskInfo, "{1161A96C-CBA5-4CA7-BB39-BC9280348E73}", "{A5B589D5-CFB6-4E9A-9455-39963CBF74CB}"}) {
        m_installed.SetRegistered(clsid, gone);
    }
    json report = Report(4);
    EXPECT_EQ(Steps(report, "zupolicy"), kSoundModule);
    EXPECT_EQ(Steps(report, "registered"), (List{"registered ok", "found failed"}));
    EXPECT_THAT(Failure(report), HasSubstr(gone.string()));

    Write(gone, kHeaderOf32Bits);
    report = Report(4);
    EXPECT_EQ(Steps(report, "registered"), (List{"registered ok", "found ok", "word size failed"}));

    Replace(m_installed.Module(), gone);
    report = Report(4);
    EXPECT_EQ(Steps(report, "registered"),
              (List{"registered ok", "found ok", "word size ok", "resource module failed"}));

    Write(other.Folder() / "AgentRes.dll", "no texts");
    report = Report(4);
    EXPECT_EQ(Steps(report, "zupolicy"), kSoundModule);
    EXPECT_EQ(Steps(report, "registered"),
              (List{"registered ok", "found ok", "word size ok", "resource module failed"}));

    Replace(m_installed.Folder() / "AgentRes.dll", other.Folder() / "AgentRes.dll");
    EXPECT_EQ(Steps(Report(0), "registered"), kSoundRegistration);

    Replace(ZUPM_OTHER_SERVER, gone);
    report = Report(4);
    EXPECT_EQ(Steps(report, "zupolicy"), kSoundModule);
    EXPECT_EQ(Steps(report, "registered"), (List{"registered ok", "found ok", "word size ok", "resource module ok",
                                                 "names ok", "PolicyFile failed"}));
}

TEST_F(Doctor, AClassThatIsNotRegistered_IsNamed)
{
    m_installed.Register();
    m_installed.SetRegistered(kTaskInfo, {});
    const json report = Report(4);
    EXPECT_EQ(Steps(report, "registered"), (List{"registered failed"}));
    EXPECT_THAT(Failure(report), HasSubstr("Missing: TaskInfo"));
}

TEST_F(Doctor, ClassesOfTwoModules_AreNamed)
{
    m_installed.Register();
    m_installed.SetRegistered(kPolicyTask, m_installed.Folder() / "other");
    const json report = Report(4);
    EXPECT_EQ(Steps(report, "registered"), (List{"registered failed"}));
    EXPECT_THAT(Failure(report), HasSubstr("names two modules: "));
}

TEST_F(Doctor, IsNamedByCommandsThatDoNotFindTheModuleOrItsTexts)
{
    Write(m_installed.Folder() / "policy.xml", "<F><PolicyRoot/></F>");
    for (const char* const name : {"AgentRes.dll", kModuleFileName}) {
        Remove(name);
        const ToolRun run = m_installed.Tool({"get", "policy.xml", "P", "S", "N"});
        EXPECT_EQ(run.exitCode, 4) << name;
        EXPECT_THAT(run.messages,
                    testing::AllOf(HasSubstr("the component "), HasSubstr("; zupolicy doctor says more\n")));
    }
}

TEST_F(Doctor, ATextOfAPathCannotDisturbTheTerminal)
{
    m_installed.Register();
    for (const char* const clsid :
         {kPolicyTask, kTaskInfo, "{1161A96C-CBA5-4CA7-BB39-BC9280348E73}", "{A5B589D5-CFB6-4E9A-9455-39963CBF74CB}"}) {
        m_installed.SetRegistered(clsid, m_installed.Folder() / "a\x1B[1mb\nc");
    }
    const ToolRun run = m_installed.Tool({"doctor"});
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_THAT(run.out, HasSubstr("a\\u001b[1mb\\nc"));
    EXPECT_EQ(run.out.find('\x1B'), std::string::npos);
}

}  // namespace
}  // namespace zupm::test
