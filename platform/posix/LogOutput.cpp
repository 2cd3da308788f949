#include "platform/LogOutput.h"

#include <fcntl.h>
#include <unistd.h>

#include "platform/posix/FileHandle.h"
#include "platform/posix/SignalGuard.h"

namespace zupm {

void AppendLogLine(const char* path, std::string_view line) noexcept
{
    const native::SignalGuard guard;
    if (*path == '\0') {
        static_cast<void>(native::Calls().write(STDERR_FILENO, line.data(), line.size()));
        return;
    }
    const native::FileHandle file = native::OpenBelow(AT_FDCWD, path, O_WRONLY | O_APPEND | O_CREAT, 0600);
    if (file) {
        static_cast<void>(native::Calls().write(file.Get(), line.data(), line.size()));
    }
}

}  // namespace zupm
