#include "comrt/RegistryStore.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

#include "platform/Files.h"
#include "platform/LogOutput.h"
#include "platform/posix/FileErrors.h"
#include "platform/posix/FileHandle.h"
#include "platform/posix/FolderFlush.h"
#include "platform/posix/NativePath.h"
#include "platform/posix/TargetFiles.h"
#include "text/Utf.h"

namespace zupm::runtime {
namespace {

/// Holds the advisory lock on a file of its own beside the registry: the registry itself is replaced by renaming, and a
/// lock on the old file would keep nobody away from the new one. Closing the file gives up the lock.
class FileLock {
public:
    explicit FileLock(const std::string& path) noexcept
        : m_file(native::OpenBelow(AT_FDCWD, path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW, 0600)),
          m_code(m_file ? native::WaitForLock(m_file) : native::LastError())
    {
    }

    [[nodiscard]] result::Code Code() const { return m_code; }

private:
    native::FileHandle m_file;
    result::Code m_code;
};

/// An environment variable's value, empty when it is unset or may not be trusted.
std::string Variable(const char* name)
{
    return TrustedEnvironmentVariable(name).value_or(std::string());
}

bool IsAbsolute(std::string_view path)
{
    return path.starts_with('/');
}

/// Without this a loss of power could take a new folder away, and with it what was flushed inside.
result::Code FlushNameOf(const std::string& path)
{
    native::FileHandle parent;
    const result::Code code = native::OpenToFlush(AT_FDCWD, native::SplitPath(path).folder.c_str(), parent);
    return code == result::Success ? native::FlushFolder(parent) : code;
}

std::string LocateInUserFolders()
{
    constexpr std::string_view kBelowData = "/zupolicymanager/registry";
    const std::string data = Variable("XDG_DATA_HOME");
    if (IsAbsolute(data)) {
        return data + std::string(kBelowData);
    }
    const std::string home = Variable("HOME");
    return IsAbsolute(home) ? home + "/.local/share" + std::string(kBelowData) : std::string();
}

}  // namespace

result::Code RegistryStore::Locate(std::u16string& path)
{
    std::string found = Variable("ZUREGISTRY");
    if (found.empty()) {
        found = LocateInUserFolders();
    }
    if (found.empty()) {
        return result::FileNotFound;
    }
    auto converted = ToUtf16(found);
    if (!converted || !IsAbsolute(found)) {
        return result::InvalidName;
    }
    path = std::move(*converted);
    return result::Success;
}

result::Code RegistryStore::Read(RegistryText& text) const
{
    std::string bytes;
    const result::Code read = ReadWholeFile(m_path, bytes);
    if (read == result::FileNotFound || read == result::PathNotFound) {
        text = RegistryText();
        return result::Success;
    }
    if (read != result::Success) {
        return read;
    }
    if (FindInvalidUtf8(bytes) != kValid) {
        return kBadRegistryFile;
    }
    auto parsed = RegistryText::Parse(bytes);
    if (!parsed) {
        return kBadRegistryFile;
    }
    text = std::move(*parsed);
    return result::Success;
}

template <class Edit>
result::Code RegistryStore::Change(const Edit& edit) const
{
    const FileLock lock(ToUtf8Lossy(m_path) + ".lock");
    if (lock.Code() != result::Success) {
        return lock.Code();
    }
    RegistryText text;
    result::Code code = Read(text);
    if (code != result::Success) {
        return code;
    }
    const std::string before = text.Serialise();
    code = edit(text);
    if (code != result::Success) {
        return code;
    }
    const std::string after = text.Serialise();
    return after == before ? result::Success : ReplaceFileAtomically(m_path, after);
}

result::Code RegistryStore::CreateKey(std::string_view key) const
{
    const result::Code folders = CreateFolders();
    return folders != result::Success ? folders : Change([&](RegistryText& text) { return text.CreateKey(key); });
}

result::Code RegistryStore::SetValue(std::string_view key, std::string_view name, std::string_view value) const
{
    const result::Code folders = CreateFolders();
    return folders != result::Success ? folders
                                      : Change([&](RegistryText& text) { return text.SetValue(key, name, value); });
}

result::Code RegistryStore::DeleteTree(std::string_view key) const
{
    RegistryText text;
    const result::Code read = Read(text);
    if (read != result::Success || !text.HasKey(key)) {
        return read;
    }
    return Change([&](RegistryText& current) {
        current.DeleteTree(key);
        return result::Success;
    });
}

result::Code RegistryStore::CreateFolders() const
{
    const std::string path = ToUtf8Lossy(m_path);
    for (std::size_t end = path.find('/', 1); end != std::string::npos; end = path.find('/', end + 1)) {
        const std::string folder = path.substr(0, end);
        if (native::Calls().mkdirat(AT_FDCWD, folder.c_str(), 0700) == 0) {
            if (const result::Code code = FlushNameOf(folder); code != result::Success) {
                return code;
            }
            continue;
        }
        if (errno == EEXIST) {
            continue;
        }
        // A folder above may be one that this user cannot write to (EACCES, EROFS) and still exist.
        const int error = errno;
        struct stat existing {};
        if (native::Calls().fstatat(AT_FDCWD, folder.c_str(), &existing, 0) != 0) {
            return native::CodeOfError(error);
        }
    }
    return result::Success;
}

}  // namespace zupm::runtime
