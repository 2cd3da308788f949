#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <system_error>

#include "tools/zupolicy/client/NativeDescriptor.h"
#include "tools/zupolicy/client/contents/SourceBytes.h"
#include "tools/zupolicy/report/Problem.h"

namespace zupm::tool {
namespace {

[[noreturn]] void Fail(const std::string& path, const std::string& reason)
{
    throw Failure(ExitCode::FileError, path, "cannot be read a second time: " + reason);
}

[[noreturn]] void FailOfSystem(const std::string& path)
{
    Fail(path, std::error_code(errno, std::generic_category()).message());
}

// Without O_NONBLOCK a pipe waits for its writer before anybody can ask what it is.
OwnedDescriptor Open(const std::string& path)
{
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the system's own
    OwnedDescriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    if (!file.IsOpen()) {
        FailOfSystem(path);
    }
    return file;
}

std::size_t SizeOf(const OwnedDescriptor& file, const std::string& path)
{
    struct stat status {};
    if (fstat(file.Get(), &status) != 0) {
        FailOfSystem(path);
    }
    if (!S_ISREG(status.st_mode)) {
        Fail(path, "not a regular file");
    }
    if (static_cast<std::uint64_t>(status.st_size) > kLargestSource) {
        Fail(path, "the file is too large");
    }
    return static_cast<std::size_t>(status.st_size);
}

}  // namespace

std::string ReadBytes(const std::string& path)
{
    const OwnedDescriptor file = Open(path);
    std::string bytes(SizeOf(file, path), '\0');
    for (std::size_t filled = 0; filled < bytes.size();) {
        const ssize_t length = read(file.Get(), bytes.data() + filled, bytes.size() - filled);
        if (length == 0) {
            Fail(path, "it became shorter");
        }
        if (length < 0 && errno != EINTR) {
            FailOfSystem(path);
        }
        filled += length > 0 ? static_cast<std::size_t>(length) : 0;
    }
    return bytes;
}

std::filesystem::path ForOpening(const std::filesystem::path& path)
{
    return path;
}

}  // namespace zupm::tool
