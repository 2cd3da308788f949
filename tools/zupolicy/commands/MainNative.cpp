/// Entry of the native tool: the arguments are UTF-8 already.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <iostream>
#include <string>
#include <vector>

#include "tools/zupolicy/client/Failure.h"
#include "tools/zupolicy/commands/Run.h"

namespace {

/// The number of a standard stream that the caller closed would go to the next file that is opened, and the output
/// would land in that file. So the number is taken by a file where the stream's reading or writing fails.
bool HoldStream(int stream)
{
    // NOLINTBEGIN(cppcoreguidelines-pro-type-vararg): the system's own
    if (fcntl(stream, F_GETFD) >= 0 || errno != EBADF) {
        return true;
    }
    return open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY) == stream;
    // NOLINTEND(cppcoreguidelines-pro-type-vararg)
}

}  // namespace

int main(int count, char** arguments)
{
    if (!HoldStream(STDIN_FILENO) || !HoldStream(STDOUT_FILENO) || !HoldStream(STDERR_FILENO)) {
        return static_cast<int>(zupm::tool::ExitCode::Other);
    }
    // A reader that closes the output is a failure to report, not the end of the process: the edit is complete.
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
    // Likewise a file that may not become as large as it has to.
    static_cast<void>(std::signal(SIGXFSZ, SIG_IGN));
    const std::vector<std::string> texts(arguments + (count > 0 ? 1 : 0), arguments + count);
    return zupm::tool::Run(texts, std::cout, std::cerr);
}
