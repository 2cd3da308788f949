#include "platform/HeldFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "platform/posix/FileErrors.h"
#include "platform/posix/FileMetadata.h"
#include "platform/posix/FileReading.h"
#include "platform/posix/NativePath.h"
#include "platform/posix/Replacement.h"
#include "platform/posix/TargetFiles.h"

namespace zupm {

using namespace native;

struct HeldFile::Handles {
    FilePlace place;
};

namespace {

/// Whether the folder takes a new file, with the rights that the target has. Where the
/// file system has no files without a name, only the right to write is asked for.
result::Code RehearseTemporary(const FilePlace& place, const struct stat& status)
{
    FileHandle nameless;
    if (const result::Code code = CreateNameless(place.folder.Get(), nameless); code != result::Success) {
        return code;
    }
    if (nameless) {
        return CopyMetadata(place.file.Get(), status, nameless.Get());
    }
    const int allowed = Calls().faccessat(place.folder.Get(), ".", W_OK | X_OK, AT_EACCESS);
    return allowed == 0 ? result::Success : LastError();
}

/// Runs what throws only when memory runs out.
template <class Body>
result::Code Guarded(Body body) noexcept
{
    try {
        return body();
    } catch (...) {
        return result::OutOfMemory;
    }
}

}  // namespace

HeldFile::HeldFile() noexcept = default;
HeldFile::~HeldFile() = default;
HeldFile::HeldFile(HeldFile&& other) noexcept = default;
HeldFile& HeldFile::operator=(HeldFile&& other) noexcept = default;

void HeldFile::Close() noexcept
{
    m_handles.reset();
}

result::Code HeldFile::Open(std::u16string_view path) noexcept
{
    Close();
    return Guarded([&]() -> result::Code {
        const std::optional<std::string> name = ToNativePath(path);
        if (!name) {
            return result::InvalidName;
        }
        auto handles = std::make_unique<Handles>();
        FilePlace& place = handles->place;
        if (const result::Code code = OpenPlace(*name, O_RDWR, place); code != result::Success) {
            return code;
        }
        if (!place.file) {
            return result::FileNotFound;
        }
        struct stat status {};
        if (Calls().fstat(place.file.Get(), &status) != 0) {
            return LastError();
        }
        if (!S_ISREG(status.st_mode)) {
            return result::NotSupported;
        }
        m_handles = std::move(handles);
        return result::Success;
    });
}

result::Code HeldFile::TryLock() noexcept
{
    const FilePlace& place = m_handles->place;
    if (const result::Code code = TryWriteLock(place.file); code != result::Success) {
        return code;
    }
    // Whoever held it before may have put a new file in this one's place.
    return CheckSameFile(place);
}

result::Code HeldFile::Read(std::string& bytes) noexcept
{
    bytes.clear();
    return Guarded([&]() -> result::Code {
        std::string text;
        const result::Code code = ReadRegularFile(m_handles->place.file, text);
        if (code == result::Success) {
            bytes = std::move(text);
        }
        return code;
    });
}

result::Code HeldFile::CheckUnchanged(RepeatableBytes& expected) noexcept
{
    return Guarded([&]() -> result::Code {
        const result::Code code = CheckSameFile(m_handles->place);
        return code == result::Success ? CompareOpenFile(m_handles->place.file, expected) : code;
    });
}

result::Code HeldFile::RehearseReplace() noexcept
{
    return Guarded([&]() -> result::Code {
        const FilePlace& place = m_handles->place;
        struct stat status {};
        return Calls().fstat(place.file.Get(), &status) == 0 ? RehearseTemporary(place, status) : LastError();
    });
}

result::Code HeldFile::Replace(ByteSource& bytes, RepeatableBytes* expected, Durability durability) noexcept
{
    return Guarded([&]() -> result::Code {
        Replacement replacement(m_handles->place, bytes, durability);
        const result::Code code =
            replacement.Run([&] { return expected == nullptr ? result::Success : CheckUnchanged(*expected); });
        return code != result::Success && replacement.IsInPlace() ? result::WrittenNotFlushed : code;
    });
}

}  // namespace zupm
