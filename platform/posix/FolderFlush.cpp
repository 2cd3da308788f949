#include "platform/posix/FolderFlush.h"

#include <fcntl.h>

#include <cerrno>

#include "platform/posix/FileErrors.h"

namespace zupm::native {

result::Code OpenToFlush(int folder, const char* path, FileHandle& handle) noexcept
{
    handle = OpenBelow(folder, path, O_RDONLY | O_DIRECTORY);
    return handle || errno == EACCES ? result::Success : LastError();
}

result::Code FlushFolder(const FileHandle& handle) noexcept
{
    if (!handle || Retry([&] { return Calls().fsync(handle.Get()); }) == 0) {
        return result::Success;
    }
    return errno == EINVAL ? result::Success : result::InputOutputError;
}

}  // namespace zupm::native
