#include <utility>

#include "bench/Names.h"
#include "bench/driver/Process.h"
#include "bench/driver/Rows.h"

namespace zupm::bench {

namespace {

constexpr std::size_t kBytes = 16'000'000;
constexpr int kSettingsOfAProduct = 40;
constexpr int kProduct = 2500;  ///< about the middle of the file
constexpr int kSetting = 20;

/// A process that measures itself, without the start of the interpreter and the imports.
Contender Script(std::string name, const char* script, const Command& arguments)
{
    Command command = {"/usr/bin/python3", std::string(ZUPM_PYTHON_SCRIPTS) + "/" + script};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return {std::move(name), [command] { return SamplesOf(RunProcess(command).output); }};
}

Contest ContestOver(const Setup& setup, const std::string& file)
{
    return {file, setup.isQuick ? 7 : 15, {}, true, true};
}

Contest ListContest(const Setup& setup)
{
    const SampleFile& sample = FileOfSize(kBytes);
    const std::string settings = std::to_string(sample.products * kSettingsOfAProduct);
    Contest contest = ContestOver(setup, sample.path);
    contest.contenders.push_back(Script("zupolicy", "list_with_zupolicy.py", {setup.programs, sample.path, settings}));
    contest.contenders.push_back(
        setup.other.empty() ? Script("Python with lxml", "list_with_lxml.py", {sample.path, settings})
                            : Script("other build", "list_with_zupolicy.py", {setup.other, sample.path, settings}));
    return contest;
}

Contest ChangeContest(const Setup& setup)
{
    const std::string copy = ScratchCopyOf(FileOfSize(kBytes));
    const Command setting = {copy, ProductName(kProduct), "Section0", SettingName(kSetting)};
    const auto with = [&](const std::string& libraries) {
        Command arguments = {libraries};
        arguments.insert(arguments.end(), setting.begin(), setting.end());
        return arguments;
    };
    Contest contest = ContestOver(setup, copy);
    contest.contenders.push_back(Script("zupolicy", "change_with_zupolicy.py", with(setup.programs)));
    contest.contenders.push_back(setup.other.empty()
                                     ? Script("Python with lxml", "change_with_lxml.py", setting)
                                     : Script("other build", "change_with_zupolicy.py", with(setup.other)));
    return contest;
}

}  // namespace

std::vector<Row> PythonRows(const Setup& setup)
{
    return {
        {"Python: read every setting into dictionaries", true, [&setup] { return ListContest(setup); }},
        {"Python: load, change one setting, save", true, [&setup] { return ChangeContest(setup); }},
    };
}

}  // namespace zupm::bench
