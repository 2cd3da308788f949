/// Entry of the native tool: the arguments are UTF-8 already.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <iostream>
#include <string>
#include <vector>

#include "ExitCode.h"
#include "Run.h"

namespace {

/// A standard stream that the caller closed would lend its number to the next file that is opened, and what is printed
/// would land in that file. Each gets a place where reading and writing fail.
bool HoldStandardStreams()
{
    // NOLINTBEGIN(cppcoreguidelines-pro-type-vararg): the system's own
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) < 0 && errno == EBADF) {
            const int wrongWay = stream == STDIN_FILENO ? O_WRONLY : O_RDONLY;
            if (open("/dev/null", wrongWay) != stream) {
                return false;
            }
        }
    }
    // NOLINTEND(cppcoreguidelines-pro-type-vararg)
    return true;
}

}  // namespace

int main(int count, char** arguments)
{
    if (!HoldStandardStreams()) {
        return static_cast<int>(zupm::tool::ExitCode::Other);
    }
    const std::vector<std::string> texts(arguments + (count > 0 ? 1 : 0), arguments + count);
    return zupm::tool::Run(texts, std::cout, std::cerr);
}
