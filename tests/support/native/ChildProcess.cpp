#include "tests/support/ChildProcess.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/ChildStreams.h"

namespace zupm::test {
namespace {

void Redirect(const char* path, int stream)
{
    const int file = open(path, O_WRONLY | O_CREAT | O_TRUNC, 0600);
    if (file < 0 || dup2(file, stream) < 0) {
        _exit(126);
    }
}

/// Texts as the system takes them: pointers, the last one null.
std::vector<char*> PointersTo(std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

/// This process's environment, with a registry file that does not exist: the program must find the component all the
/// same.
std::vector<std::string> EnvironmentOfChild()
{
    std::vector<std::string> variables;
    for (char* const* variable = environ; *variable != nullptr; ++variable) {
        if (!std::string_view(*variable).starts_with("ZUREGISTRY=")) {
            variables.emplace_back(*variable);
        }
    }
    variables.emplace_back("ZUREGISTRY=no-such-registry");
    return variables;
}

/// What a new process needs. All of it is made before the fork: another thread may hold the lock of the heap at that
/// moment, and nobody would release it in the new process.
struct Start {
    std::string folder;
    std::string program;
    std::string input;
    std::string out;
    std::string messages;
    std::vector<char*> arguments;
    std::vector<char*> environment;
};

[[noreturn]] void Become(const Start& start)
{
    Redirect(start.out.c_str(), STDOUT_FILENO);
    Redirect(start.messages.c_str(), STDERR_FILENO);
    if (!start.input.empty() && dup2(open(start.input.c_str(), O_RDONLY), STDIN_FILENO) < 0) {
        _exit(126);
    }
    if (chdir(start.folder.c_str()) != 0) {
        _exit(126);
    }
    execve(start.program.c_str(), start.arguments.data(), start.environment.data());
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

}  // namespace

ChildRun RunChild(const ChildPlace& place, const std::vector<std::string>& arguments)
{
    std::vector<std::string> texts = {place.program.filename().string()};
    texts.insert(texts.end(), arguments.begin(), arguments.end());
    std::vector<std::string> variables = EnvironmentOfChild();
    const ChildStreams streams(place.folder);
    const Start start{place.folder.string(),
                      place.program.string(),
                      place.input.string(),
                      place.outDevice.empty() ? std::string(streams.Out()) : place.outDevice,
                      std::string(streams.Messages()),
                      PointersTo(texts),
                      PointersTo(variables)};
    const pid_t child = fork();
    if (child < 0) {
        throw std::runtime_error("fork failed");
    }
    if (child == 0) {
        Become(start);
    }
    const int exitCode = WaitFor(child);
    return {exitCode, ChildStreams::TextOf(streams.Out()), ChildStreams::TextOf(streams.Messages())};
}

}  // namespace zupm::test
