#include "tests/support/ChildProcess.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <stdexcept>

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

[[noreturn]] void Become(const ChildPlace& place, const ChildStreams& streams, char* const* arguments)
{
    Redirect(place.outDevice.empty() ? streams.Out().c_str() : place.outDevice.c_str(), STDOUT_FILENO);
    Redirect(streams.Messages().c_str(), STDERR_FILENO);
    if (!place.input.empty() && dup2(open(place.input.c_str(), O_RDONLY), STDIN_FILENO) < 0) {
        _exit(126);
    }
    // A registry file that does not exist: the program must find the component all the same.
    if (chdir(place.folder.c_str()) != 0 || setenv("ZUREGISTRY", "no-such-registry", 1) != 0) {
        _exit(126);
    }
    execv(place.program.c_str(), arguments);
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
    std::string name = place.program.filename().string();
    std::vector<std::string> texts = arguments;
    std::vector<char*> pointers{name.data()};
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);

    const ChildStreams streams(place.folder);
    const pid_t child = fork();
    if (child < 0) {
        throw std::runtime_error("fork failed");
    }
    if (child == 0) {
        Become(place, streams, pointers.data());
    }
    const int exitCode = WaitFor(child);
    return {exitCode, ChildStreams::TextOf(streams.Out()), ChildStreams::TextOf(streams.Messages())};
}

}  // namespace zupm::test
