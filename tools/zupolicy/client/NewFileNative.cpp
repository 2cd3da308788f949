#include "tools/zupolicy/client/NewFileNative.h"

#include <fcntl.h>
#include <sys/random.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <string_view>

namespace zupm::tool {
namespace {

/// Empty when the system has no random bytes.
std::string UnguessableName()
{
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::array<unsigned char, 16> bytes{};
    if (getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
        return {};
    }
    std::string name = ".zu";
    for (const unsigned byte : bytes) {
        name.push_back(kDigits[byte >> 4u]);
        name.push_back(kDigits[byte & 0xFu]);
    }
    return name + ".tmp";
}

}  // namespace

NewFile::NewFile(int folder, mode_t mode) : m_folder(folder), m_name(UnguessableName())
{
    if (!m_name.empty()) {
        constexpr int kFlags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the system's own
        m_file = OwnedDescriptor(openat(folder, m_name.c_str(), kFlags, mode));
    }
}

NewFile::~NewFile()
{
    if (m_file.IsOpen() && !m_hasOtherName) {
        unlinkat(m_folder, m_name.c_str(), 0);
    }
}

bool NewFile::Replace(const std::string& name)
{
    m_hasOtherName = renameat(m_folder, m_name.c_str(), m_folder, name.c_str()) == 0;
    return m_hasOtherName;
}

bool NewFile::TakeFreeName(const std::string& name)
{
    m_hasOtherName = renameat2(m_folder, m_name.c_str(), m_folder, name.c_str(), RENAME_NOREPLACE) == 0;
    if (m_hasOtherName || (errno != EINVAL && errno != ENOSYS)) {
        return m_hasOtherName;
    }
    // A file system of another machine may not know such a renaming: a second name, and the first one goes.
    return linkat(m_folder, m_name.c_str(), m_folder, name.c_str(), 0) == 0;
}

}  // namespace zupm::tool
