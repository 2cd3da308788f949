#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <stdexcept>

#include "ToolProcess.h"
#include "tests/support/TempFolder.h"

namespace zupm::test {
namespace {

constexpr const char* kOutName = ".out";
constexpr const char* kMessagesName = ".messages";

void Redirect(const std::string& path, int stream)
{
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    if (file < 0 || dup2(file, stream) < 0) {
        _exit(126);
    }
}

[[noreturn]] void Become(const ToolPlace& place, std::vector<char*> arguments)
{
    if (chdir(place.folder.c_str()) != 0) {
        _exit(126);
    }
    Redirect(place.outDevice.empty() ? kOutName : place.outDevice, STDOUT_FILENO);
    Redirect(kMessagesName, STDERR_FILENO);
    // A registry file that does not exist: the tool must find the component all the same.
    setenv("ZUREGISTRY", "no-such-registry", 1);
    execv(ZUPM_TOOL, arguments.data());
    _exit(127);
}

int WaitFor(pid_t child)
{
    int status = 0;
    while (waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) {
            throw std::runtime_error("waitpid failed");
        }
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string Take(const std::filesystem::path& file)
{
    if (!std::filesystem::exists(file)) {
        return {};
    }
    std::string text = ReadBytes(file.u16string());
    std::filesystem::remove(file);
    return text;
}

}  // namespace

ToolRun RunTool(const ToolPlace& place, const std::vector<std::string>& arguments)
{
    std::string name = "zupolicy";
    std::vector<std::string> texts = arguments;
    std::vector<char*> pointers{name.data()};
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);

    const pid_t child = fork();
    if (child < 0) {
        throw std::runtime_error("fork failed");
    }
    if (child == 0) {
        Become(place, pointers);
    }
    const int exitCode = WaitFor(child);
    return {exitCode, Take(place.folder / kOutName), Take(place.folder / kMessagesName)};
}

}  // namespace zupm::test
