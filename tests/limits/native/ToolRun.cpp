#include "tests/limits/ToolRun.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>
#include <string>

#include "tests/limits/Attack.h"
#include "tests/limits/native/Seconds.h"
#include "tests/support/TempFolder.h"

namespace zupm::test {

namespace {

const std::vector<const char*> kCheck = {"check", "--json", "in.xml"};
const std::vector<const char*> kShow = {"show", "--json", "in.xml"};
const std::vector<const char*> kShowText = {"show", "in.xml"};
const std::vector<const char*> kSetTask = {"set",    "in.xml", "NEW",      "S",        "N",      "1",
                                           "--task", "NEW",    "--create", "--output", "out.xml"};

constexpr int kFileError = 3;

const ToolAttack kAttacks[] = {
    {"levels", kCheck},
    {"levels", kShow},
    {"levels closed wrongly", kCheck, kFileError},
    {"elements", kCheck},
    {"elements", kShow},
    {"many attributes", kCheck},
    {"references in an attribute", kShow},
    {"one text", kShow},
    {"ISO-8859-1 of high letters", kCheck},
    {"UTF-16 of surrogate pairs", kShow},
    {"lone surrogate in UTF-16", kCheck, kFileError},
    {"products", kCheck},
    {"products", kShow},
    {"products of one key", kCheck},
    {"tasks", kCheck},
    {"tasks", kShow},
    {"tasks of many products", kShow},
    {"tasks in one group with a long key", kCheck},
    {"sections, every one read", kCheck},
    {"sections, every one read", kShow},
    {"sections of one name, one changed", kShow},
    {"settings, one changed", kCheck},
    {"settings, one changed", kShow},
    {"settings, one changed", kShowText},
    {"settings of one name, one changed", kCheck},
    {"settings of one INI name", kCheck},
    {"settings of one long INI name", kCheck},
    {"deep product changed", kShow},
    {"many tasks, one added and removed", kSetTask, 0, 3, 2},
};

void Become(const std::filesystem::path& folder, const std::vector<const char*>& command)
{
    std::vector<char*> arguments = {const_cast<char*>("zupolicy")};
    for (const char* argument : command) {
        arguments.push_back(const_cast<char*>(argument));
    }
    arguments.push_back(nullptr);
    const int nowhere = open("/dev/null", O_WRONLY);
    if (nowhere >= 0 && dup2(nowhere, STDOUT_FILENO) >= 0 && dup2(nowhere, STDERR_FILENO) >= 0 &&
        chdir(folder.c_str()) == 0) {
        execv(ZUPM_TOOL, arguments.data());
    }
    _exit(127);
}

}  // namespace

std::span<const ToolAttack> ToolAttacks()
{
    return kAttacks;
}

ToolCost RunToolAttack(const ToolAttack& attack, std::size_t size)
{
    const TempFolder folder;
    folder.Write(u"in.xml", FindAttack(attack.file)->file(size));
    const pid_t child = fork();
    if (child == 0) {
        Become(folder.Folder(), attack.command);
    }
    int status = 0;
    rusage usage{};
    if (child < 0 || wait4(child, &status, 0, &usage) != child) {
        throw std::runtime_error("the tool cannot be run");
    }
    // The peak includes the memory of this process when it made the child; that is less than any child needs.
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, Seconds(usage.ru_utime) + Seconds(usage.ru_stime),
            static_cast<std::uint64_t>(usage.ru_maxrss) * 1024};
}

}  // namespace zupm::test
