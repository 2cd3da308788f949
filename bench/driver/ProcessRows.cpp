#include <chrono>
#include <utility>

#include "bench/Names.h"
#include "bench/PlainFiles.h"
#include "bench/driver/Rows.h"

namespace zupm::bench {

namespace {

constexpr std::size_t kBytes = 17'000'000;
constexpr int kProduct = 2500;  ///< about the middle of the file
constexpr int kSetting = 20;
constexpr const char* kSection = "Section0";

Contest ContestOver(const Setup& setup, const std::string& file, std::vector<Contender> contenders)
{
    return {file, setup.isQuick ? 7 : 9, std::move(contenders), false, true};
}

std::string Tool(const std::string& folder)
{
    return folder + "/zupolicy";
}

std::string SettingValue()
{
    return "value of setting " + std::to_string(kSetting);
}

Command GetCommand(const std::string& folder, const std::string& file)
{
    return {Tool(folder), "get", file, ProductName(kProduct), kSection, SettingName(kSetting)};
}

std::string SettingPath()
{
    return "/PolicyFile/PolicyRoot/PolicyGroup/Policy/Product[@SoftwareID='" + ProductName(kProduct) +
           "']/Section[@name='" + kSection + "']/Setting[@name='" + SettingName(kSetting) + "']";
}

/// Changes the setting to a value that it does not have.
Contender SetOf(const std::string& name, const std::string& folder, const std::string& file)
{
    return {name, [folder, file, turn = 0]() mutable {
                const Command command = {Tool(folder),
                                         "set",
                                         file,
                                         ProductName(kProduct),
                                         kSection,
                                         SettingName(kSetting),
                                         "value " + std::to_string(++turn)};
                return Samples{{RunProcess(command).seconds}, {}};
            }};
}

/// What `set` cannot do without: loading, and replacing the file safely.
Contender GetThenReplace(const std::string& folder, const std::string& file)
{
    return {"zupolicy get, then write, fsync, rename",
            [command = GetCommand(folder, file), target = file + ".written", bytes = BytesOf(file)] {
                const auto begin = std::chrono::steady_clock::now();
                static_cast<void>(RunProcess(command));
                ReplaceFlushed(target, bytes);
                const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - begin;
                return Samples{{passed.count()}, {}};
            }};
}

Contest GetContest(const Setup& setup)
{
    const std::string& file = FileOfSize(kBytes).path;
    const std::string value = SettingValue();
    std::vector<Contender> contenders = {WholeProcess("zupolicy", GetCommand(setup.programs, file), value)};
    if (!setup.other.empty()) {
        contenders.push_back(WholeProcess("other build", GetCommand(setup.other, file), value));
        return ContestOver(setup, file, std::move(contenders));
    }
    contenders.push_back(
        WholeProcess("xmlstarlet sel", {"xmlstarlet", "sel", "-t", "-v", SettingPath(), "-n", file}, value));
    contenders.push_back(
        WholeProcess("xmllint --xpath", {"xmllint", "--xpath", "string(" + SettingPath() + ")", file}, value));
    contenders.push_back(WholeProcess(
        "Python with lxml",
        {"/usr/bin/python3", ZUPM_LXML_SCRIPT, file, ProductName(kProduct), kSection, SettingName(kSetting)}, value));
    return ContestOver(setup, file, std::move(contenders));
}

Contest CheckContest(const Setup& setup)
{
    const std::string& file = FileOfSize(kBytes).path;
    std::vector<Contender> contenders = {WholeProcess("zupolicy", {Tool(setup.programs), "check", file}, "")};
    contenders.push_back(setup.other.empty() ? WholeProcess("xmllint --noout", {"xmllint", "--noout", file}, "")
                                             : WholeProcess("other build", {Tool(setup.other), "check", file}, ""));
    return ContestOver(setup, file, std::move(contenders));
}

Contest SetContest(const Setup& setup)
{
    const std::string copy = ScratchCopyOf(FileOfSize(kBytes));
    std::vector<Contender> contenders = {SetOf("zupolicy", setup.programs, copy)};
    contenders.push_back(setup.other.empty() ? GetThenReplace(setup.programs, copy)
                                             : SetOf("other build", setup.other, copy));
    return ContestOver(setup, copy, std::move(contenders));
}

}  // namespace

std::vector<Row> ProcessRows(const Setup& setup)
{
    return {
        {"zupolicy get, whole process", false, [&setup] { return GetContest(setup); }},
        {"zupolicy check, whole process", false, [&setup] { return CheckContest(setup); }},
        {"zupolicy set, whole process", false, [&setup] { return SetContest(setup); }},
    };
}

}  // namespace zupm::bench
